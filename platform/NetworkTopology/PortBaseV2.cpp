#include "platform/NetworkTopology/PortBaseV2.h"

#include "platform/NetworkTopology/HostV2.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

PortBaseV2::~PortBaseV2() = default;

template <class... Callbacks>
void PortBaseV2::notify(Callbacks const &... callbacks) const {
    notifiees().notify<NotifieeConst>(*this, callbacks...);
}

void PortBaseV2::typeIs(PortTypeV2 value) {
    if (Vel::replaced(type_, value)) notify([](NotifieeConst & r) { r.onType(); });
}

void PortBaseV2::addedByOwnerIs(bool value) {
    if (Vel::replaced(addedByOwner_, value)) notify([](NotifieeConst & r) { r.onAddedByOwner(); });
}

HostV2 * PortBaseV2::host() const { return holder(); }

void PortBaseV2::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    auto portBase = Vel::dynamicPtrCast<PortBaseV2 const>(notifier);
    if (portBase && follows() != Kind::any && follows() != portBase->kind_) portBase = nullptr;
    Vel::PtrInterface::NotifieeConst::notifierIs(portBase);
}

void PortBaseV2::NotifieeConst::isRegisteredNotifieeIs(bool registered) const { registeredIs(registered); }

void PortBaseV2::NotifieeConst::onType() {}
void PortBaseV2::NotifieeConst::onAddedByOwner() {}

namespace {

using Attrs = Vel::Attrs<PortBaseV2>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&PortBaseV2::name>("name", 130),
    Attrs::value<&PortBaseV2::type, &PortBaseV2::typeIs>("type", 131),
    Attrs::value<&PortBaseV2::addedByOwner, &PortBaseV2::addedByOwnerIs>("addedByOwner", 132),
    Attrs::readOnly<&PortBaseV2::host>("host", 133),
};

}  // namespace

constinit Vel::VelType const PortBaseV2::_velType{{
    .name = "NetworkTopology::PortBaseV2",
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

Vel::VelType const * PortBaseV2::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(PortBaseV2::_velType);

}  // namespace

}  // namespace NetworkTopology
