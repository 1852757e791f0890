// Finds the version-3 port base that corresponds to a version-2 one whose kind is not known statically.
//
// Usage
//     auto const finder = portBaseFinderFactory(hostV2, hostV3);
//     NetworkTopologyV3::PortBase::Ptr const found = finder->find(portBaseV2);
//
// The correspondence is by name within the kind: the port base's own visitor dispatch tells the kind, so a
// version-2 port finds only a version-3 port, never a port group of the same name.
#pragma once

#include <utility>

#include "platform/NetworkTopology/HostV2.h"
#include "platform/NetworkTopology/PortBaseVisitor.h"
#include "platform/NetworkTopologyV3/Host.h"
#include "platform/NetworkTopologyV3/PortBase.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopologyAggregator {

class VEL_EXPORT PortBaseFinder final : public NetworkTopology::PortBaseVisitor,
                                        public Vel::AllocTracked<PortBaseFinder> {
public:
    using Ptr = Vel::Ptr<PortBaseFinder>;
    using PtrConst = Vel::Ptr<PortBaseFinder const>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // A finder whose notifications are on.
    static Ptr PortBaseFinderIs(Vel::Ptr<NetworkTopology::HostV2 const> hostV2,
                                Vel::Ptr<NetworkTopologyV3::Host> hostV3);

    // Both hosts are kept alive; null is allowed, but a finder without a version-3 host finds nothing.
    PortBaseFinder(Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2,
                   Vel::Ptr<NetworkTopologyV3::Host> const & hostV3) noexcept
        : hostV2_(hostV2), hostV3_(hostV3) {}
    PortBaseFinder(Vel::Ptr<NetworkTopology::HostV2 const> && hostV2,
                   Vel::Ptr<NetworkTopologyV3::Host> && hostV3) noexcept
        : hostV2_(std::move(hostV2)), hostV3_(std::move(hostV3)) {}
    ~PortBaseFinder() override = default;

    // Null finds nothing.
    void visitPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port) override;
    void visitPortGroup(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & group) override;
    void visitMlag(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag) override;

    Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2() const noexcept { return hostV2_; }
    Vel::Ptr<NetworkTopologyV3::Host> const & hostV3() const noexcept { return hostV3_; }
    // What the last visit found; null before the first and after one that found nothing.
    NetworkTopologyV3::PortBase::Ptr const & result() const noexcept { return result_; }

    // The counterpart of `portBase` in the version-3 host; null when there is none, or no port base.
    // REQUIRES: this finder is held by a counted reference, because the visit makes one of its own.
    NetworkTopologyV3::PortBase::Ptr find(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & portBase);
    // The same by a finder of which `finder` is the only reference, and which ends with that. REQUIRES:
    // neither is null.
    static NetworkTopologyV3::PortBase::Ptr
    findLast(Ptr finder, Vel::Ptr<NetworkTopology::PortBaseV2 const> const & portBase);

    [[gnu::always_inline]] void referenceDel() const noexcept {
        if (referenceDelIsLast()) delete this;
    }

private:
    // Destroyed in the reverse order: the result first.
    Vel::Ptr<NetworkTopology::HostV2 const> const hostV2_;
    Vel::Ptr<NetworkTopologyV3::Host> const hostV3_;
    NetworkTopologyV3::PortBase::Ptr result_;
};

inline PortBaseFinder::Ptr PortBaseFinder::PortBaseFinderIs(Vel::Ptr<NetworkTopology::HostV2 const> hostV2,
                                                            Vel::Ptr<NetworkTopologyV3::Host> hostV3) {
    Ptr finder = new PortBaseFinder(std::move(hostV2), std::move(hostV3));
    finder->hasNotificationActiveIs(true);
    return finder;
}

inline NetworkTopologyV3::PortBase::Ptr
PortBaseFinder::find(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & portBase) {
    if (portBase) {
        portBase->accept(Vel::Ptr<NetworkTopology::PortBaseVisitor>(this));
    } else {
        result_ = nullptr;
    }
    return result_;
}

inline NetworkTopologyV3::PortBase::Ptr
PortBaseFinder::findLast(Ptr finder, Vel::Ptr<NetworkTopology::PortBaseV2 const> const & portBase) {
    // The visit is lent the reference: one of its own would have to be counted.
    Vel::Ptr<NetworkTopology::PortBaseVisitor> visitor = std::move(finder);
    portBase->accept(visitor);
    finder = Ptr::adopted(static_cast<PortBaseFinder *>(visitor.release()));
    return std::move(finder->result_);
}

// As PortBaseFinder::PortBaseFinderIs.
VEL_EXPORT Vel::Ptr<PortBaseFinder>
portBaseFinderFactory(Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2,
                      Vel::Ptr<NetworkTopologyV3::Host> const & hostV3);

}  // namespace NetworkTopologyAggregator
