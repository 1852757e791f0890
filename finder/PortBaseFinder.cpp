#include "finder/PortBaseFinder.h"

#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/NetworkTopologyV3/MlagPort.h"
#include "platform/NetworkTopologyV3/Port.h"
#include "platform/NetworkTopologyV3/PortGroup.h"

namespace NetworkTopologyAggregator {

PortBaseFinder::PortBaseFinder(Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2,
                               Vel::Ptr<NetworkTopologyV3::Host> const & hostV3)
    : hostV2_(hostV2), hostV3_(hostV3) {}

PortBaseFinder::~PortBaseFinder() = default;

void PortBaseFinder::visitPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port) {
    result_ = hostV3_ && port ? NetworkTopologyV3::PortBase::Ptr(hostV3_->port(port->name())) : nullptr;
}

void PortBaseFinder::visitPortGroup(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & group) {
    result_ =
        hostV3_ && group ? NetworkTopologyV3::PortBase::Ptr(hostV3_->portGroup(group->name())) : nullptr;
}

void PortBaseFinder::visitMlag(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag) {
    result_ = hostV3_ && mlag ? NetworkTopologyV3::PortBase::Ptr(hostV3_->mlag(mlag->name())) : nullptr;
}

NetworkTopologyV3::PortBase::Ptr
PortBaseFinder::find(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & portBase) {
    if (!portBase) return result_ = nullptr;
    portBase->accept(Vel::Ptr<NetworkTopology::PortBaseVisitor>(this));
    return result_;
}

Vel::Ptr<PortBaseFinder> portBaseFinderFactory(Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2,
                                               Vel::Ptr<NetworkTopologyV3::Host> const & hostV3) {
    Vel::Ptr<PortBaseFinder> const finder = new PortBaseFinder(hostV2, hostV3);
    finder->hasNotificationActiveIs(true);
    return finder;
}

}  // namespace NetworkTopologyAggregator
