#include "finder/PortBaseFinder.h"

#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/NetworkTopologyV3/MlagPort.h"
#include "platform/NetworkTopologyV3/Port.h"
#include "platform/NetworkTopologyV3/PortGroup.h"

namespace NetworkTopologyAggregator {

void PortBaseFinder::visitPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port) {
    result_ = hostV3_ && port ? hostV3_->findPort(port->name(), port->nameHash()) : nullptr;
}

void PortBaseFinder::visitPortGroup(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & group) {
    result_ = hostV3_ && group ? hostV3_->findPortGroup(group->name(), group->nameHash()) : nullptr;
}

void PortBaseFinder::visitMlag(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag) {
    result_ = hostV3_ && mlag ? hostV3_->findMlag(mlag->name(), mlag->nameHash()) : nullptr;
}

Vel::Ptr<PortBaseFinder> portBaseFinderFactory(Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2,
                                               Vel::Ptr<NetworkTopologyV3::Host> const & hostV3) {
    return PortBaseFinder::PortBaseFinderIs(hostV2, hostV3);
}

}  // namespace NetworkTopologyAggregator
