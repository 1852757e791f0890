#include "translator/VelEdge.h"

#include "translator/internal/Tracing.h"

namespace NetworkTopologyAggregator {

V2Sm::VelEdge::VelEdge(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge, V2Sm * sm)
    : sm_(sm), key_(edge->fromPort()) {
    follow(*edge);
    v3Edge_ = createV3Edge();
}

V2Sm::VelEdge::~VelEdge() {
    heldIs();
    velDoZombieReactors(true);
}

void V2Sm::VelEdge::hasNotificationActiveIs(bool active) {
    if (active != hasNotificationActive()) Vel::PtrInterface::hasNotificationActiveIs(active);
}

void V2Sm::VelEdge::velDoZombieReactors(bool zombie) {
    if (zombie == velMarkedForDeletion()) return;
    // A reactor that no counted reference holds has none to hand out, and needs none to stay.
    Ptr const self = isCounted() ? this : nullptr;
    Vel::fetch(v3Edge_.get());
    if (notifier()) hasNotificationActiveIs(!zombie);
    if (sm_) self ? sm_->vel_handleEdge(self) : cleanup();
    velMarkedForDeletionIs(zombie);
}

void V2Sm::VelEdge::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    auto const edge = Vel::dynamicPtrCast<NetworkTopology::DirectedEdgeV2 const>(notifier);
    if (edge == this->notifier()) return;
    NetworkTopology::DirectedEdgeV2::NotifieeConst::notifierIs(edge);
    isRegisteredNotifieeIs(true);
}

NetworkTopologyV3::DirectedEdge::Ptr V2Sm::VelEdge::createV3Edge() {
    traced("NetworkTopologyV3::DirectedEdge::Ptr NetworkTopologyAggregator::V2Sm::VelEdge::createV3Edge()",
           "createV3Edge");
    if (!sm_) return nullptr;
    NetworkTopology::DirectedEdgeV2 const * const edge = notifier();
    auto const fromPort = edge ? sm_->toPortBaseV3(edge->fromPort()) : sm_->toPortBaseV3(nullptr);
    // A trace sink may have let go of this reactor meanwhile.
    NetworkTopologyV3::Status * const status = sm_ ? sm_->output() : nullptr;
    return fromPort && status ? status->edgeIs(fromPort->portKey()) : nullptr;
}

void V2Sm::VelEdge::onToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort) {
    if (!velMarkedForDeletion()) [[likely]]
        handleToPort(toPort);
}

void V2Sm::VelEdge::onToPortvelImmediate() {}

void V2Sm::VelEdge::handleToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort) {
    traced("void NetworkTopologyAggregator::V2Sm::VelEdge::handleToPort(const PtrConst&)", "handleToPort");
    if (v3Edge_) [[likely]] {
        writeToPort(toPort);
        return;
    }
    Vel::KeepAlive const keepThis(*this);
    writeAllToPorts();
    writeToPort(toPort);
}

void V2Sm::VelEdge::writeAllToPorts() {
    v3Edge_ = createV3Edge();
    Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const edge = notifier();
    if (!v3Edge_ || !edge) return;
    for (auto const & destination : edge->toPort()) {
        if (notifier() != edge.get()) break;
        // A reference of our own: the entry may move when a trace sink gives the edge another destination.
        writeToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const>(destination.key()));
    }
}

// Compiled into its callers, of which one is on the path of each change.
[[gnu::always_inline]] inline void
V2Sm::VelEdge::writeToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort) {
    if (!sm_ || !notifier()) [[unlikely]]
        return;
    Vel::fetch(v3Edge_.get());
    auto const portV3 = sm_->toPortBaseV3(toPort);
    if (!portV3 || !v3Edge_) [[unlikely]]
        return;
    if (auto const * const entry = notifier()->toPortEntry(toPort)) {
        v3Edge_->toPortIs(portV3->portKey(), entry->value());
    } else {
        v3Edge_->toPortDel(portV3->portKey());
    }
}

void V2Sm::VelEdge::cleanup() {
    traced("void NetworkTopologyAggregator::V2Sm::VelEdge::cleanup()", "cleanup");
    NetworkTopology::DirectedEdgeV2 const * const edge = notifier();
    NetworkTopology::PortBaseV2 const * const fromPort = edge ? edge->fromPort().get() : nullptr;
    NetworkTopology::HostV2 const * const host = fromPort ? fromPort->holder() : nullptr;
    if (!host || !sm_ || !v3Edge_) return;
    NetworkTopologyV3::Status * const status = sm_->output();
    if (!status || !status->findHost(host->name(), host->nameHash())) return;
    if (auto const portV3 = sm_->toPortBaseV3(edge->fromPort())) status->edgeDel(portV3->portKey());
}

}  // namespace NetworkTopologyAggregator
