// A multi-chassis link aggregation, as one of its two hosts sees it.
#pragma once

#include "platform/NetworkTopologyV3/PortBase.h"
#include "platform/NetworkTopologyV3/PortGroup.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/WeakPtr.h"

namespace NetworkTopologyV3 {

class VEL_EXPORT MlagPort final : public PortBase, public Vel::AllocTracked<MlagPort> {
public:
    using Ptr = Vel::Ptr<MlagPort>;
    using PtrConst = Vel::Ptr<MlagPort const>;
    class NotifieeConst;

    // As with hosts: few, and looked up with every link that refers to one.
    static constexpr unsigned kBucketsPerMember = 2;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // What was given to `Host::mlagIs`; stays for life.
    Vel::Name const & secondaryName() const noexcept { return secondaryName_; }

    // The group that carries the MLAG on this host; may be null. Counted.
    Vel::Ptr<PortGroup> const & localPortGroup() const noexcept { return localPortGroup_; }
    void localPortGroupIs(Vel::Ptr<PortGroup> const & portGroup);

private:
    friend class Host;
    friend class Vel::WeakPtr<MlagPort const>;

    MlagPort(Vel::Name name, Vel::Name secondaryName, Host & host) noexcept;
    ~MlagPort() override;

    Vel::WeakTarget & weakTarget() const noexcept { return weakTarget_; }

    Vel::Name const secondaryName_;
    Vel::Ptr<PortGroup> localPortGroup_;
    mutable Vel::WeakTarget weakTarget_;
};

class VEL_EXPORT MlagPort::NotifieeConst : public PortBase::NotifieeConst {
public:
    NotifieeConst() noexcept : PortBase::NotifieeConst(Kind::mlag) {}
    ~NotifieeConst() override;

    MlagPort const * notifier() const noexcept {
        return static_cast<MlagPort const *>(notifierObject().get());
    }

    virtual void onLocalPortGroup() {}
};

}  // namespace NetworkTopologyV3
