#include "platform/NetworkTopology/DirectedEdgeV2.h"

#include <utility>

#include "platform/NetworkTopology/Mutation.h"

namespace NetworkTopology {

namespace {

constexpr auto onToPort = [](DirectedEdgeV2::NotifieeConst & r, auto const &... key) { r.onToPort(key...); };

}  // namespace

DirectedEdgeV2::DirectedEdgeV2(Vel::Ptr<PortBaseV2 const> fromPort) noexcept
    : fromPort_(std::move(fromPort)) {}

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

void DirectedEdgeV2::toPortIs(Vel::Ptr<PortBaseV2 const> port, bool flag) {
    Mutation::valueIs(*this, toPort_, port, flag, onToPort);
}

void DirectedEdgeV2::toPortDel(Vel::Ptr<PortBaseV2 const> port) {
    Mutation::valueDel(*this, toPort_, port, onToPort);
}

void DirectedEdgeV2::toPortDelAll() {
    Mutation::valueDelAll(*this, toPort_, onToPort, [](NotifieeConst & r) { r.onToPortvelImmediate(); });
}

DirectedEdgeV2::NotifieeConst::~NotifieeConst() = default;

void DirectedEdgeV2::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<DirectedEdgeV2 const>(notifier));
}

void DirectedEdgeV2::NotifieeConst::isRegisteredNotifieeIs(bool registered) const {
    registeredIs(registered);
}

void DirectedEdgeV2::NotifieeConst::onToPort(Vel::Ptr<PortBaseV2 const> const &) {}
void DirectedEdgeV2::NotifieeConst::onToPortvelImmediate() {}
void DirectedEdgeV2::NotifieeConst::onToPort() {}

}  // namespace NetworkTopology
