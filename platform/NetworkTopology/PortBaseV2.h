// What ports, port groups and MLAGs have in common.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/NetworkTopology/PortTypeV2.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopology {

class HostV2;
class MlagV2;
class PortBaseVisitor;
class PortGroupV2;
class PortV2;

// There are exactly three kinds: PortV2, PortGroupV2 and MlagV2.
//
// A port base that has been removed from its host stays as it is while it is referenced; only `host()` is
// null from then on. As a key it stands for itself, not for its name.
class VEL_EXPORT PortBaseV2 : public Vel::Entity {
public:
    using Ptr = Vel::Ptr<PortBaseV2>;
    using PtrConst = Vel::Ptr<PortBaseV2 const>;
    class NotifieeConst;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // The key in the collection of its host. Never changes; may be empty.
    Vel::Name const & name() const noexcept { return name_; }
    Vel::Name const & collectionKey() const noexcept { return name_; }
    // What collections make of the name, at hand without a look at its bytes.
    std::uint32_t nameHash() const noexcept { return collectionHash(); }

    // What the writer says that this is. Not tied to the class, and not always one of the enumerators.
    PortTypeV2 type() const noexcept { return type_; }
    void typeIs(PortTypeV2 value);

    // Whether the owner of the port asked for it, as opposed to one that was found.
    bool addedByOwner() const noexcept { return addedByOwner_; }
    void addedByOwnerIs(bool value);

    // The host that holds this object. Null when none does: before it is added, from the removal on (and
    // already when the removal is delivered), and when the host is gone.
    virtual HostV2 * host() const;
    // The same, compiled into those who include HostV2.h.
    inline HostV2 * holder() const noexcept;
    // Calls the one operation of `visitor` that is for this object's class; nothing for null.
    virtual void accept(Vel::Ptr<PortBaseVisitor> const & visitor) const = 0;

private:
    friend class MlagV2;
    friend class PortGroupV2;
    friend class PortV2;
    friend struct Mutation;

    enum class Kind : std::uint8_t { any, port, portGroup, mlag };

    PortBaseV2(Kind kind, Vel::Name name) noexcept : Entity(name), name_(std::move(name)), kind_(kind) {}
    ~PortBaseV2() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;
    // Delivers a change that only `Reactor`, the reactor class of this object's own kind, has a callback for.
    template <class Reactor, class... Callbacks>
    void notifyKind(Callbacks const &... callbacks) const;

    Vel::Name const name_;
    HostV2 * owner_ = nullptr;  // Not counted. The host clears it when it lets go of us.
    PortTypeV2 type_ = PortTypeV2::unknown;
    bool addedByOwner_ = false;
    Kind const kind_;
};

// Follows a port base of any kind. The reactor classes of the three kinds derive from this one; each binds to
// objects of its kind alone.
class VEL_EXPORT PortBaseV2::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    NotifieeConst() noexcept : NotifieeConst(Kind::any) {}

    // Binds to `notifier` if it is of the class that this reactor follows; unbinds otherwise.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override;

    virtual void onType();
    virtual void onAddedByOwner();

    // Null while unbound.
    PortBaseV2 const * notifier() const noexcept {
        return static_cast<PortBaseV2 const *>(notifierObject().get());
    }

private:
    friend class MlagV2;
    friend class PortBaseV2;
    friend class PortGroupV2;
    friend class PortV2;

    explicit NotifieeConst(Kind follows) noexcept
        : Vel::PtrInterface::NotifieeConst(static_cast<unsigned>(follows)) {}

    Kind follows() const noexcept { return static_cast<Kind>(mark()); }
};

template <class Reactor, class... Callbacks>
void PortBaseV2::notifyKind(Callbacks const &... callbacks) const {
    // Reactors of one object follow either its kind or any; those of the latter have no such callback.
    notifiees().notify<NotifieeConst>(*this, [&callbacks](NotifieeConst & reactor) {
        if (reactor.follows() != Kind::any) [[likely]]
            callbacks(static_cast<Reactor &>(reactor));
    }...);
}

}  // namespace NetworkTopology
