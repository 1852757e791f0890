// A set of directed links from one port base to others, each known by its key.
#pragma once

#include <optional>

#include "platform/NetworkTopologyV3/PortKey.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap2018One.h"
#include "platform/Vel/NotifieeConst.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopologyV3 {

class VEL_EXPORT DirectedEdge final : public Vel::Entity, public Vel::AllocTracked<DirectedEdge> {
public:
    using Ptr = Vel::Ptr<DirectedEdge>;
    using PtrConst = Vel::Ptr<DirectedEdge const>;
    class NotifieeConst;

    struct ToPortTag {
        static constexpr bool kMostlyOne = true;
    };
    using ToPort = Vel::HashMap2018<ToPortTag, PortKey, bool>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // Where the links start: the edge's key in its status.
    PortKey const & fromPort() const noexcept { return fromPort_; }
    PortKey const & collectionKey() const noexcept { return fromPort_; }

    // Where they end, each with a flag.
    ToPort::Range toPort() const noexcept { return ToPort::Range(toPort_, *this); }
    // The flag of a destination; nothing when it is not one.
    std::optional<bool> toPort(PortKey const & key) const noexcept;
    void toPortIs(PortKey const & key, bool flag);
    void toPortDel(PortKey const & key);
    void toPortDelAll();

private:
    friend class Status;
    friend struct Mutation;

    explicit DirectedEdge(PortKey fromPort) noexcept;
    ~DirectedEdge() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;

    PortKey const fromPort_;
    ToPort toPort_;
};

class VEL_EXPORT DirectedEdge::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    // An object of another class counts as null.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
    DirectedEdge const * notifier() const noexcept {
        return static_cast<DirectedEdge const *>(notifierObject().get());
    }

    virtual void onToPort(PortKey const &) {}
    virtual void onToPortvelImmediate() {}
    virtual void onToPort() {}
};

}  // namespace NetworkTopologyV3
