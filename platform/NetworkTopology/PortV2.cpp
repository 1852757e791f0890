#include "platform/NetworkTopology/PortV2.h"

#include <utility>

#include "platform/NetworkTopology/PortBaseVisitor.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

PortV2::PortV2(Vel::Name name) noexcept : PortBaseV2(Kind::port, std::move(name)) {}

PortV2::~PortV2() = default;

Vel::Ptr<PortV2> PortV2::PortV2Is(Vel::Name name) { return new PortV2(std::move(name)); }

Vel::Ptr<PortGroupV2> PortV2::portGroup() const { return portGroup_.get(); }

void PortV2::portGroupIs(Vel::Ptr<PortGroupV2> const & value) {
    fetchReactors();
    if (!portGroup_.targetIs(value.get())) return;
    notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onPortGroup(); });
}

void PortV2::accept(Vel::Ptr<PortBaseVisitor> const & visitor) const {
    if (visitor) visitor->visitPort(this);
}

void PortV2::NotifieeConst::onPortGroup() {}

namespace {

constexpr Vel::VelArg nameArg[] = {{"name", &Vel::Name::_velType}};

using Attrs = Vel::Attrs<PortV2>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::value<&PortV2::portGroup, &PortV2::portGroupIs>("portGroup", 258),
};

}  // namespace

constinit Vel::VelType const PortV2::_velType{{
    .name = "NetworkTopology::PortV2",
    .base = &PortBaseV2::_velType,
    .attributes = attributes,
    .ctorArgs = nameArg,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs = Vel::GenericIfImpl::fromCtorArgs<PortV2, &PortV2::PortV2Is, Vel::Name>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

Vel::VelType const * PortV2::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(PortV2::_velType);

}  // namespace

}  // namespace NetworkTopology
