#include "finder/PortBaseFinder.h"
#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopologyAggregator {

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopologyV3::Host;

VEL_TYPE_NAME constexpr char typeName[] = "NetworkTopologyAggregator::PortBaseFinder";

constexpr Vel::VelArg portArg[] = {{"port", &PortV2::_velType}};
constexpr Vel::VelArg groupArg[] = {{"group", &PortGroupV2::_velType}};
constexpr Vel::VelArg mlagArg[] = {{"mlag", &MlagV2::_velType}};
constexpr Vel::VelArg portBaseArg[] = {{"port", &PortBaseV2::_velType}};
constexpr Vel::VelArg ctorArgs[] = {{"hostV2", &HostV2::_velType}, {"hostV3", &Host::_velType}};

using Attrs = Vel::Attrs<PortBaseFinder>;

// The visits are those of the base, under the same indices.
constexpr Vel::VelAttr attributes[] = {
    Attrs::function<&PortBaseFinder::visitPort, Vel::Ptr<PortV2 const>>("visitPort", 130, portArg),
    Attrs::function<&PortBaseFinder::visitPortGroup, Vel::Ptr<PortGroupV2 const>>("visitPortGroup", 131,
                                                                                  groupArg),
    Attrs::function<&PortBaseFinder::visitMlag, Vel::Ptr<MlagV2 const>>("visitMlag", 132, mlagArg),
    Attrs::immutable<&PortBaseFinder::hostV2>("hostV2", 258),
    Attrs::immutable<&PortBaseFinder::hostV3>("hostV3", 259),
    Attrs::readOnly<&PortBaseFinder::result>("result", 260),
    Attrs::function<&PortBaseFinder::find, Vel::Ptr<PortBaseV2 const>>("find", 261, portBaseArg),
};

}  // namespace

constinit Vel::VelType const PortBaseFinder::_velType{{
    .name = typeName,
    .base = &NetworkTopology::PortBaseVisitor::_velType,
    .attributes = attributes,
    .ctorArgs = ctorArgs,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs = Vel::GenericIfImpl::fromCtorArgs<PortBaseFinder, &portBaseFinderFactory,
                                                              Vel::Ptr<HostV2 const>, Vel::Ptr<Host>>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

}  // namespace NetworkTopologyAggregator
