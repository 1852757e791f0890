#include <cstdint>

#include "platform/Vel/VelAttrs.h"
#include "translator/V2Sm.h"

namespace NetworkTopologyAggregator {

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using NetworkTopologyV3::Status;

VEL_TYPE_NAME constexpr char typeName[] = "NetworkTopologyAggregator::V2Sm";

constexpr Vel::VelArg hostArg[] = {{"hostV2", &HostV2::_velType}};
constexpr Vel::VelArg portBaseArg[] = {{"portV2", &PortBaseV2::_velType}};
constexpr Vel::VelArg portArg[] = {{"portV2", &PortV2::_velType}};
constexpr Vel::VelArg portGroupArg[] = {{"pgV2", &PortGroupV2::_velType}};
constexpr Vel::VelArg mlagArg[] = {{"mlagV2", &MlagV2::_velType}};
constexpr Vel::VelArg portTypeArg[] = {{"portTypeV2", Vel::VelTypeOf<PortTypeV2>::record}};
constexpr Vel::VelArg ctorArgs[] = {
    {"name", &Vel::Name::_velType}, {"v2", &StatusV2::_velType}, {"v3", &Status::_velType}};

using Attrs = Vel::Attrs<V2Sm>;
using FromPort = V2Sm::FromPort;

constexpr std::uint32_t kHostIndex = 139;

// A registry's index is followed by one that is kept free.
constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&V2Sm::name>("name", 130),
    Attrs::readOnly<&V2Sm::v2>("v2", 131),
    Attrs::readOnly<&V2Sm::v3>("v3", 132),
    Attrs::function<&V2Sm::toHostV3, Vel::Ptr<HostV2 const>>("toHostV3", 133, hostArg),
    Attrs::function<&V2Sm::toPortBaseV3, Vel::Ptr<PortBaseV2 const>>("toPortBaseV3", 134, portBaseArg),
    Attrs::function<&V2Sm::toPortV3, Vel::Ptr<PortV2 const>>("toPortV3", 135, portArg),
    Attrs::function<&V2Sm::toPortGroupV3, Vel::Ptr<PortGroupV2 const>>("toPortGroupV3", 136, portGroupArg),
    Attrs::function<&V2Sm::toMlagV3, Vel::Ptr<MlagV2 const>>("toMlagV3", 137, mlagArg),
    Attrs::function<&V2Sm::toPortTypeV3, PortTypeV2>("toPortTypeV3", 138, portTypeArg),
    Attrs::registry<HostV2, Vel::Name, [](V2Sm & o) { return o.host(); },
                    [](V2Sm & o, Vel::Name const & key) { return o.host(key); }, &V2Sm::hostIs,
                    &V2Sm::hostDel>("host", kHostIndex, "name"),
    Attrs::registry<DirectedEdgeV2, FromPort, [](V2Sm & o) { return o.edge(); },
                    [](V2Sm & o, FromPort const & key) { return o.edge(key); }, &V2Sm::edgeIs,
                    &V2Sm::edgeDel>("edge", 141, "fromPort"),
    Attrs::function<&V2Sm::populateV3>("populateV3", 143, {}),
};

// What the iterators walk: the hosts under their index, the edges under any other. Whether an attribute is
// walked at all is asked before.
Vel::VelAttr const & walked(Vel::VelAttr const & attr) {
    return *V2Sm::_velType.attribute(attr.index() == kHostIndex ? "host" : "edge");
}

void * iterator(void * sm, Vel::VelAttr const * attr, Vel::IteratorVTable const ** table) {
    return Vel::GenericIfImpl::iterator(sm, &walked(*attr), table);
}

void * iteratorKey(void * sm, Vel::VelAttr const * attr, Vel::GenericIf const & key,
                   Vel::IteratorVTable const ** table) {
    return Vel::GenericIfImpl::iteratorKey(sm, &walked(*attr), key, table);
}

}  // namespace

constinit Vel::VelType const V2Sm::_velType{{
    .name = typeName,
    .attributes = attributes,
    .ctorArgs = ctorArgs,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs = Vel::GenericIfImpl::fromCtorArgs<V2Sm, &v2SmFactory, Vel::Name,
                                                              Vel::Ptr<StatusV2 const>, Vel::Ptr<Status>>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = iterator,
    .genericIfIteratorKey = iteratorKey,
}};

}  // namespace NetworkTopologyAggregator
