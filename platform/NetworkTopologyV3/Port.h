// A physical port of a version-3 host.
#pragma once

#include "platform/NetworkTopologyV3/PortBase.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/WeakPtr.h"

namespace NetworkTopologyV3 {

class PortGroup;

class VEL_EXPORT Port final : public PortBase, public Vel::AllocTracked<Port> {
public:
    using Ptr = Vel::Ptr<Port>;
    using PtrConst = Vel::Ptr<Port const>;
    class NotifieeConst;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // The group that this port belongs to; null when it belongs to none, or its group has died. Not counted.
    PortGroup * portGroup() const noexcept;
    void portGroupIs(PortGroup * portGroup);

private:
    friend class Host;

    Port(Vel::Name name, Host & host) noexcept;
    ~Port() override;

    Vel::WeakPtr<PortGroup> portGroup_;
};

class VEL_EXPORT Port::NotifieeConst : public PortBase::NotifieeConst {
public:
    NotifieeConst() noexcept : PortBase::NotifieeConst(Kind::port) {}
    ~NotifieeConst() override;

    Port const * notifier() const noexcept { return static_cast<Port const *>(notifierObject().get()); }

    virtual void onPortGroup() {}
};

}  // namespace NetworkTopologyV3
