#include "platform/NetworkTopologyV3/PortBase.h"

#include <memory>
#include <utility>

#include "platform/NetworkTopologyV3/Host.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopologyV3 {

PortBase::PortBase(Vel::Name name, Host & host, Kind kind) noexcept
    : name_(std::move(name)), kind_(kind), host_(&host) {}

PortBase::~PortBase() {
    if (!hasHost_ && key_.empty()) std::destroy_at(&hostName_);
}

Host * PortBase::host() const noexcept {
    // A host whose last reference has gone may wait for its destructor.
    return hasHost_ && !host_->isBeingDestroyed() ? host_ : nullptr;
}

void PortBase::hostDel() noexcept {
    if (key_.empty()) {
        Vel::String const & hostName = host_->name();
        std::construct_at(&hostName_, hostName);
    }
    hasHost_ = false;
}

Vel::String const & PortBase::hostName() const noexcept { return hasHost_ ? host_->name() : hostName_; }

PortKey::Kind PortBase::keyKind() const noexcept {
    static_assert(static_cast<int>(Kind::port) == static_cast<int>(PortKey::Kind::port) &&
                  static_cast<int>(Kind::portGroup) == static_cast<int>(PortKey::Kind::portGroup) &&
                  static_cast<int>(Kind::mlag) == static_cast<int>(PortKey::Kind::mlag));
    return static_cast<PortKey::Kind>(kind_);
}

void PortBase::makeKey() const {
    key_ = PortKey(hostName(), keyKind(), name_);
    if (!hasHost_) std::destroy_at(&hostName_);
}

std::uint32_t PortBase::portKeyHash() const noexcept {
    return key_.empty() ? PortKey::hashOf(hostName(), keyKind(), name_) : key_.hash();
}

void PortBase::typeIs(PortType type) {
    if (Vel::replaced(type_, type)) {
        notifiees().notifySeldom<NotifieeConst>(*this, [](NotifieeConst & r) { r.onType(); });
    }
}

void PortBase::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    auto portBase = Vel::dynamicPtrCast<PortBase const>(notifier);
    if (portBase && follows() != Kind::any && portBase->kind_ != follows()) portBase = nullptr;
    Vel::PtrInterface::NotifieeConst::notifierIs(portBase);
}

namespace {

using Attrs = Vel::Attrs<PortBase>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&PortBase::name>("name", 130),
    Attrs::value<&PortBase::type, &PortBase::typeIs>("type", 131),
    Attrs::immutable<&PortBase::portKey>("portKey", 132),
    Attrs::readOnly<&PortBase::host>("host", 133),
};

}  // namespace

constinit Vel::VelType const PortBase::_velType{{
    .name = "NetworkTopologyV3::PortBase",
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
}};

Vel::VelType const * PortBase::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(PortBase::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
