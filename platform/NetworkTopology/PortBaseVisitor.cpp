#include "platform/NetworkTopology/PortBaseVisitor.h"

#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

void PortBaseVisitor::visitPort(Vel::Ptr<PortV2 const> const &) {}
void PortBaseVisitor::visitPortGroup(Vel::Ptr<PortGroupV2 const> const &) {}
void PortBaseVisitor::visitMlag(Vel::Ptr<MlagV2 const> const &) {}

namespace {

constexpr Vel::VelArg portArg[] = {{"port", &PortV2::_velType}};
constexpr Vel::VelArg groupArg[] = {{"group", &PortGroupV2::_velType}};
constexpr Vel::VelArg mlagArg[] = {{"mlag", &MlagV2::_velType}};

using Attrs = Vel::Attrs<PortBaseVisitor>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::function<&PortBaseVisitor::visitPort, Vel::Ptr<PortV2 const>>("visitPort", 130, portArg),
    Attrs::function<&PortBaseVisitor::visitPortGroup, Vel::Ptr<PortGroupV2 const>>("visitPortGroup", 131,
                                                                                   groupArg),
    Attrs::function<&PortBaseVisitor::visitMlag, Vel::Ptr<MlagV2 const>>("visitMlag", 132, mlagArg),
};

}  // namespace

constinit Vel::VelType const PortBaseVisitor::_velType{{
    .name = "NetworkTopology::PortBaseVisitor",
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

Vel::VelType const * PortBaseVisitor::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(PortBaseVisitor::_velType);

}  // namespace

}  // namespace NetworkTopology
