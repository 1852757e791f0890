#include "platform/NetworkTopologyV3/DirectedEdge.h"

#include <utility>

#include "platform/NetworkTopologyV3/Mutation.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopologyV3 {

namespace {

using Reactor = DirectedEdge::NotifieeConst;

constexpr auto onToPort = [](Reactor & r, auto const &... key) { r.onToPort(key...); };

}  // namespace

DirectedEdge::DirectedEdge(PortKey fromPort) noexcept : fromPort_(std::move(fromPort)) {}

DirectedEdge::~DirectedEdge() = default;

template <class... Callbacks>
void DirectedEdge::notify(Callbacks const &... callbacks) const {
    notifiees().notifySeldom<NotifieeConst>(*this, callbacks...);
}

std::optional<bool> DirectedEdge::toPort(PortKey const & key) const noexcept {
    ToPort::Node const * const entry = toPort_[key];
    if (!entry) return std::nullopt;
    return entry->value();
}

void DirectedEdge::toPortIs(PortKey const & key, bool flag) {
    Mutation::valueIs(*this, toPort_, key, flag, onToPort);
}

void DirectedEdge::toPortDel(PortKey const & key) { Mutation::valueDel(*this, toPort_, key, onToPort); }

void DirectedEdge::toPortDelAll() {
    Mutation::valueDelAll(*this, toPort_, onToPort, [](Reactor & r) { r.onToPortvelImmediate(); });
}

void DirectedEdge::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<DirectedEdge const>(notifier));
}

namespace {

constexpr Vel::VelArg toPortArgs[] = {{"port", &PortKey::_velType}, {"flag", &Vel::Builtin<bool>::_velType}};

using Attrs = Vel::Attrs<DirectedEdge>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&DirectedEdge::fromPort>("fromPort", 130),
    Attrs::valueCollection<PortKey, bool, [](DirectedEdge & o) { return o.toPort(); },
                           [](DirectedEdge & o, PortKey const & key) { return o.toPort(key); },
                           &DirectedEdge::toPortIs, &DirectedEdge::toPortDel>("toPort", 131, "port",
                                                                              toPortArgs),
    Attrs::function<&DirectedEdge::toPortDelAll>("toPortDelAll", 132, {}),
};

}  // namespace

constinit Vel::VelType const DirectedEdge::_velType{{
    .name = "NetworkTopologyV3::DirectedEdge",
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * DirectedEdge::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(DirectedEdge::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
