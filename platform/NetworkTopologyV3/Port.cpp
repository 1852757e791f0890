#include "platform/NetworkTopologyV3/Port.h"

#include <utility>

#include "platform/NetworkTopologyV3/PortGroup.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopologyV3 {

Port::Port(Vel::Name name, Host & host) noexcept : PortBase(std::move(name), host, Kind::port) {}

Port::~Port() = default;

PortGroup * Port::portGroup() const noexcept { return portGroup_.get(); }

void Port::portGroupIs(PortGroup * portGroup) {
    if (!portGroup_.targetIs(portGroup)) return;
    notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onPortGroup(); });
}

Port::NotifieeConst::~NotifieeConst() = default;

namespace {

using Attrs = Vel::Attrs<Port>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::value<&Port::portGroup, &Port::portGroupIs>("portGroup", 258),
};

}  // namespace

constinit Vel::VelType const Port::_velType{{
    .name = "NetworkTopologyV3::Port",
    .base = &PortBase::_velType,
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

Vel::VelType const * Port::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(Port::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
