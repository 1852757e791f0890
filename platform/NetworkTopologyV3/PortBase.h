// The common base of ports, port groups and MLAG ports.
#pragma once

#include <cstdint>

#include "platform/NetworkTopologyV3/PortKey.h"
#include "platform/NetworkTopologyV3/PortType.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/NotifieeConst.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/String.h"

namespace NetworkTopologyV3 {

class Host;

// There are exactly three kinds: Port, PortGroup and MlagPort. All are made by a host, and stay as they are
// while they are referenced, also after they have left it; only `host()` is null from then on.
class VEL_EXPORT PortBase : public Vel::Entity {
public:
    using Ptr = Vel::Ptr<PortBase>;
    using PtrConst = Vel::Ptr<PortBase const>;
    class NotifieeConst;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // The key in the collection of its host. May be empty.
    Vel::Name const & name() const noexcept { return name_; }
    Vel::Name const & collectionKey() const noexcept { return name_; }

    // The host that holds this port base. Null from the removal on (and already when the removal is
    // delivered), and when the host is gone.
    Host * host() const noexcept;

    // The key of the place that the host gave to this port base, also when the two have parted. Throws
    // std::bad_alloc on the first call; later ones allocate nothing.
    PortKey const & portKey() const {
        if (key_.empty()) [[unlikely]]
            makeKey();
        return key_;
    }
    // Whether it has been asked for.
    bool hasPortKey() const noexcept { return !key_.empty(); }
    // That of the key, which need not have been asked for.
    std::uint32_t portKeyHash() const noexcept;

    // What the writer says that this is. Not tied to the class, and not always one of the enumerators.
    PortType type() const noexcept { return type_; }
    void typeIs(PortType type);

protected:
    // The concrete class: that of a port base, or the one that a reactor follows.
    enum class Kind : std::uint8_t { any, port, portGroup, mlag };

    PortBase(Vel::Name name, Host & host, Kind kind) noexcept;
    ~PortBase() override;

    // Delivers to the reactors that follow the concrete class of this object, whose reactor class is
    // `Reactor`. Those that follow any port base have none of its callbacks.
    template <class Reactor, class... Callbacks>
    void notifyKind(Callbacks const &... callbacks) const;

private:
    friend class Host;

    void hostDel() noexcept;
    void makeKey() const;
    // REQUIRES: there is a host, or no key yet.
    Vel::String const & hostName() const noexcept;
    PortKey::Kind keyKind() const noexcept;

    // There are millions of these: what keeps objects small is in the order and the sharing of these fields.
    Vel::Name const name_;  // First, because lookups compare it.
    PortType type_ = PortType::unknown;
    Kind const kind_;
    bool hasHost_ = true;
    mutable PortKey key_;  // Empty until it is asked for.
    union {
        Host * host_;           // While `hasHost_`. Not counted; lets us go before it dies.
        Vel::String hostName_;  // From then on, until there is a key: all that the key needs of it.
    };
};

// Follows any port base. The reactor classes of ports, port groups and MLAG ports derive from it and follow
// objects of their class alone.
class VEL_EXPORT PortBase::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    NotifieeConst() noexcept : NotifieeConst(Kind::any) {}

    // An object of another class than the one that this reactor follows counts as null.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
    PortBase const * notifier() const noexcept {
        return static_cast<PortBase const *>(notifierObject().get());
    }

    virtual void onType() {}

protected:
    explicit NotifieeConst(Kind follows) noexcept
        : Vel::PtrInterface::NotifieeConst(static_cast<unsigned>(follows)) {}

private:
    friend class PortBase;

    Kind follows() const noexcept { return static_cast<Kind>(mark()); }
};

template <class Reactor, class... Callbacks>
void PortBase::notifyKind(Callbacks const &... callbacks) const {
    notifiees().notifySeldom<NotifieeConst>(*this, [this, &callbacks](NotifieeConst & reactor) {
        if (reactor.follows() == kind_) callbacks(static_cast<Reactor &>(reactor));
    }...);
}

}  // namespace NetworkTopologyV3
