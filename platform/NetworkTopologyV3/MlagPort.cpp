#include "platform/NetworkTopologyV3/MlagPort.h"

#include <utility>

#include "platform/Vel/VelAttrs.h"

namespace NetworkTopologyV3 {

MlagPort::MlagPort(Vel::Name name, Vel::Name secondaryName, Host & host) noexcept
    : PortBase(std::move(name), host, Kind::mlag), secondaryName_(std::move(secondaryName)) {}

MlagPort::~MlagPort() = default;

void MlagPort::localPortGroupIs(Vel::Ptr<PortGroup> const & portGroup) {
    if (Vel::replaced(localPortGroup_, portGroup)) {
        notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onLocalPortGroup(); });
    }
}

MlagPort::NotifieeConst::~NotifieeConst() = default;

namespace {

using Attrs = Vel::Attrs<MlagPort>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&MlagPort::secondaryName>("secondaryName", 258),
    Attrs::value<&MlagPort::localPortGroup, &MlagPort::localPortGroupIs>("localPortGroup", 259),
};

}  // namespace

constinit Vel::VelType const MlagPort::_velType{{
    .name = "NetworkTopologyV3::MlagPort",
    .base = &PortBase::_velType,
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

Vel::VelType const * MlagPort::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(MlagPort::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
