#include "platform/NetworkTopologyV3/DirectedEdge.h"

#include <utility>

#include "platform/NetworkTopologyV3/Mutation.h"

namespace NetworkTopologyV3 {

namespace {

using Reactor = DirectedEdge::NotifieeConst;

constexpr auto onToPort = [](Reactor & r, auto const &... key) { r.onToPort(key...); };

}  // namespace

DirectedEdge::DirectedEdge(PortKey fromPort) noexcept : fromPort_(std::move(fromPort)) {}

DirectedEdge::~DirectedEdge() = default;

template <class... Callbacks>
void DirectedEdge::notify(Callbacks const &... callbacks) const {
    notifiees().notify<NotifieeConst>(*this, callbacks...);
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

}  // namespace NetworkTopologyV3
