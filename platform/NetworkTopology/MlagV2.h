// A multi-chassis link aggregation: port groups of two hosts that act as one.
#pragma once

#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/WeakPtr.h"

namespace NetworkTopology {

class VEL_EXPORT MlagV2 final : public PortBaseV2, public Vel::AllocTracked<MlagV2> {
public:
    using Ptr = Vel::Ptr<MlagV2>;
    using PtrConst = Vel::Ptr<MlagV2 const>;
    class NotifieeConst;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // An MLAG that no host holds yet.
    static Vel::Ptr<MlagV2> MlagV2Is(Vel::Name name, Vel::Name secondaryName);

    // The other name that the MLAG goes by; may be empty. No callback tells of a change.
    Vel::Name const & secondaryName() const noexcept { return secondaryName_; }
    void secondaryNameIs(Vel::Name const & value);

    // The port group on this host; counted, may be null.
    Vel::Ptr<PortGroupV2> const & localPortGroup() const noexcept { return localPortGroup_; }
    void localPortGroupIs(Vel::Ptr<PortGroupV2> const & value);

    // The port group on the peer host; counted, may be null.
    Vel::Ptr<PortGroupV2> const & peerPortGroup() const noexcept { return peerPortGroup_; }
    void peerPortGroupIs(Vel::Ptr<PortGroupV2> const & value);

    void accept(Vel::Ptr<PortBaseVisitor> const & visitor) const override;

private:
    friend class Vel::WeakPtr<MlagV2>;

    MlagV2(Vel::Name name, Vel::Name secondaryName) noexcept;
    ~MlagV2() override;

    Vel::WeakTarget & weakTarget() const noexcept { return weakTarget_; }

    Vel::Name secondaryName_;
    Vel::Ptr<PortGroupV2> localPortGroup_;
    Vel::Ptr<PortGroupV2> peerPortGroup_;
    mutable Vel::WeakTarget weakTarget_;
};

class VEL_EXPORT MlagV2::NotifieeConst : public PortBaseV2::NotifieeConst {
public:
    NotifieeConst() noexcept : PortBaseV2::NotifieeConst(Kind::mlag) {}

    virtual void onLocalPortGroup();
    virtual void onPeerPortGroup();

    // Null while unbound.
    MlagV2 const * notifier() const noexcept { return static_cast<MlagV2 const *>(notifierObject().get()); }
};

}  // namespace NetworkTopology
