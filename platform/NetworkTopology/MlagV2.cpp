#include "platform/NetworkTopology/MlagV2.h"

#include <utility>

#include "platform/NetworkTopology/PortBaseVisitor.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

MlagV2::MlagV2(Vel::Name name, Vel::Name secondaryName) noexcept
    : PortBaseV2(Kind::mlag, std::move(name)), secondaryName_(std::move(secondaryName)) {}

MlagV2::~MlagV2() = default;

Vel::Ptr<MlagV2> MlagV2::MlagV2Is(Vel::Name name, Vel::Name secondaryName) {
    return new MlagV2(std::move(name), std::move(secondaryName));
}

void MlagV2::secondaryNameIs(Vel::Name const & value) { secondaryName_ = value; }

void MlagV2::localPortGroupIs(Vel::Ptr<PortGroupV2> const & value) {
    if (Vel::replaced(localPortGroup_, value)) {
        notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onLocalPortGroup(); });
    }
}

void MlagV2::peerPortGroupIs(Vel::Ptr<PortGroupV2> const & value) {
    if (Vel::replaced(peerPortGroup_, value)) {
        notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onPeerPortGroup(); });
    }
}

void MlagV2::accept(Vel::Ptr<PortBaseVisitor> const & visitor) const {
    if (visitor) visitor->visitMlag(this);
}

void MlagV2::NotifieeConst::onLocalPortGroup() {}
void MlagV2::NotifieeConst::onPeerPortGroup() {}

namespace {

constexpr Vel::VelArg mlagArgs[] = {{"name", &Vel::Name::_velType}, {"secondaryName", &Vel::Name::_velType}};

using Attrs = Vel::Attrs<MlagV2>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::value<&MlagV2::secondaryName, &MlagV2::secondaryNameIs>("secondaryName", 258),
    Attrs::value<&MlagV2::localPortGroup, &MlagV2::localPortGroupIs>("localPortGroup", 259),
    Attrs::value<&MlagV2::peerPortGroup, &MlagV2::peerPortGroupIs>("peerPortGroup", 260),
};

}  // namespace

constinit Vel::VelType const MlagV2::_velType{{
    .name = "NetworkTopology::MlagV2",
    .base = &PortBaseV2::_velType,
    .attributes = attributes,
    .ctorArgs = mlagArgs,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs =
        Vel::GenericIfImpl::fromCtorArgs<MlagV2, &MlagV2::MlagV2Is, Vel::Name, Vel::Name>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

Vel::VelType const * MlagV2::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(MlagV2::_velType);

}  // namespace

}  // namespace NetworkTopology
