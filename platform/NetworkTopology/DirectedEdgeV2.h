// The directed links from one port base to others.
#pragma once

#include <optional>

#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap2018One.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopology {

class StatusV2;

class VEL_EXPORT DirectedEdgeV2 final : public Vel::Entity, public Vel::AllocTracked<DirectedEdgeV2> {
public:
    using Ptr = Vel::Ptr<DirectedEdgeV2>;
    using PtrConst = Vel::Ptr<DirectedEdgeV2 const>;
    class NotifieeConst;
    struct ToPortTag {
        static constexpr bool kMostlyOne = true;
    };
    using ToPort = Vel::HashMap2018<ToPortTag, Vel::Ptr<PortBaseV2 const>, bool>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // An edge that no status holds yet. `fromPort` may be null.
    static Vel::Ptr<DirectedEdgeV2> DirectedEdgeV2Is(Vel::Ptr<PortBaseV2 const> fromPort);

    // Where the links begin: the key in the status, by identity of the object. Counted; never changes.
    Vel::Ptr<PortBaseV2 const> const & fromPort() const noexcept { return fromPort_; }
    Vel::Ptr<PortBaseV2 const> const & collectionKey() const noexcept { return fromPort_; }
    // What collections make of it.
    std::uint32_t fromPortHash() const noexcept { return collectionHash(); }

    // Where the links end: port bases, counted, by identity, each with a flag. A destination whose flag is
    // false is there all the same.
    ToPort::Range toPort() const noexcept { return {toPort_, *this}; }
    // The flag of a destination; nothing when it is not there.
    std::optional<bool> toPort(Vel::Ptr<PortBaseV2 const> const & port) const noexcept;
    // The entry of a destination; null when it is not there. Valid until one is added or
    // removed.
    ToPort::Node const * toPortEntry(Vel::Ptr<PortBaseV2 const> const & port) const noexcept {
        return toPort_[port];
    }
    // Adds a destination, or changes its flag.
    void toPortIs(Vel::Ptr<PortBaseV2 const> port, bool flag);
    void toPortDel(Vel::Ptr<PortBaseV2 const> port);
    void toPortDelAll();

private:
    friend struct Mutation;

    explicit DirectedEdgeV2(Vel::Ptr<PortBaseV2 const> fromPort) noexcept;
    ~DirectedEdgeV2() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;

    Vel::Ptr<PortBaseV2 const> const fromPort_;
    StatusV2 * owner_ = nullptr;  // Not counted. The status clears it when it lets go of us.
    ToPort toPort_;
};

class VEL_EXPORT DirectedEdgeV2::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    NotifieeConst() noexcept = default;

    // Binds to `notifier` if it is a DirectedEdgeV2; unbinds otherwise.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override;

    virtual void onToPort(Vel::Ptr<PortBaseV2 const> const & port);
    virtual void onToPortvelImmediate();
    virtual void onToPort();

    // Null while unbound.
    DirectedEdgeV2 const * notifier() const noexcept {
        return static_cast<DirectedEdgeV2 const *>(notifierObject().get());
    }
};

}  // namespace NetworkTopology
