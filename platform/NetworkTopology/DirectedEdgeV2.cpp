#include "platform/NetworkTopology/DirectedEdgeV2.h"

#include <utility>

#include "platform/NetworkTopology/Mutation.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

namespace {

constexpr auto onToPort = [](DirectedEdgeV2::NotifieeConst & r, auto const &... key) { r.onToPort(key...); };

}  // namespace

DirectedEdgeV2::DirectedEdgeV2(Vel::Ptr<PortBaseV2 const> fromPort) noexcept
    : Entity(Vel::HashMapKey<Vel::Ptr<PortBaseV2 const>>::hash(fromPort)), fromPort_(std::move(fromPort)) {}

DirectedEdgeV2::~DirectedEdgeV2() = default;

template <class... Callbacks>
void DirectedEdgeV2::notify(Callbacks const &... callbacks) const {
    notifiees().notify<NotifieeConst>(*this, callbacks...);
}

Vel::Ptr<DirectedEdgeV2> DirectedEdgeV2::DirectedEdgeV2Is(Vel::Ptr<PortBaseV2 const> fromPort) {
    return new DirectedEdgeV2(std::move(fromPort));
}

std::optional<bool> DirectedEdgeV2::toPort(Vel::Ptr<PortBaseV2 const> const & port) const noexcept {
    auto const * const entry = toPort_[port];
    return entry ? std::optional(entry->value()) : std::nullopt;
}

// By value, because whatever the caller's keys live in may go away in a delivery.
// NOLINTBEGIN(performance-unnecessary-value-param)

void DirectedEdgeV2::toPortIs(Vel::Ptr<PortBaseV2 const> port, bool flag) {
    Mutation::valueIs(*this, toPort_, port, flag, onToPort);
}

void DirectedEdgeV2::toPortDel(Vel::Ptr<PortBaseV2 const> port) {
    Mutation::valueDel(*this, toPort_, port, onToPort);
}

// NOLINTEND(performance-unnecessary-value-param)

void DirectedEdgeV2::toPortDelAll() {
    Mutation::valueDelAll(*this, toPort_, onToPort, [](NotifieeConst & r) { r.onToPortvelImmediate(); });
}

void DirectedEdgeV2::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<DirectedEdgeV2 const>(notifier));
}

void DirectedEdgeV2::NotifieeConst::isRegisteredNotifieeIs(bool registered) const {
    registeredIs(registered);
}

void DirectedEdgeV2::NotifieeConst::onToPort(Vel::Ptr<PortBaseV2 const> const &) {}
void DirectedEdgeV2::NotifieeConst::onToPortvelImmediate() {}
void DirectedEdgeV2::NotifieeConst::onToPort() {}

namespace {

constexpr Vel::VelArg fromPortArg[] = {{"fromPort", &PortBaseV2::_velType}};
constexpr Vel::VelArg toPortArgs[] = {{"port", &PortBaseV2::_velType},
                                      {"flag", &Vel::Builtin<bool>::_velType}};

using Attrs = Vel::Attrs<DirectedEdgeV2>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&DirectedEdgeV2::fromPort>("fromPort", 130),
    Attrs::valueCollection<Vel::Ptr<PortBaseV2 const>, bool, [](DirectedEdgeV2 & o) { return o.toPort(); },
                           [](DirectedEdgeV2 & o, Vel::Ptr<PortBaseV2 const> const & key) {
                               return o.toPort(key);
                           },
                           &DirectedEdgeV2::toPortIs, &DirectedEdgeV2::toPortDel>("toPort", 131, "port",
                                                                                  toPortArgs),
    Attrs::function<&DirectedEdgeV2::toPortDelAll>("toPortDelAll", 132, {}),
};

}  // namespace

constinit Vel::VelType const DirectedEdgeV2::_velType{{
    .name = "NetworkTopology::DirectedEdgeV2",
    .attributes = attributes,
    .ctorArgs = fromPortArg,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs =
        Vel::GenericIfImpl::fromCtorArgs<DirectedEdgeV2, &DirectedEdgeV2::DirectedEdgeV2Is,
                                         Vel::Ptr<PortBaseV2 const>>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * DirectedEdgeV2::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(DirectedEdgeV2::_velType);

}  // namespace

}  // namespace NetworkTopology
