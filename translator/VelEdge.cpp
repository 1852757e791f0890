#include "translator/VelEdge.h"

#include "translator/internal/Tracing.h"

namespace NetworkTopologyAggregator {

V2Sm::VelEdge::VelEdge(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge, V2Sm * sm)
    : sm_(sm), key_(edge->fromPort()) {
    firstNotifierIs(edge.get());
    registeredIs(true);
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
    Vel::KeepAlive const keepThis(*this);
    if (notifier()) hasNotificationActiveIs(!zombie);
    // A reactor that no counted reference holds has none to hand out.
    if (sm_) isCounted() ? sm_->vel_handleEdge(this) : cleanup();
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
    auto const fromPort = sm_->toPortBaseV3(fwkKey());
    auto const status = sm_->v3();
    return fromPort && status ? status->edgeIs(fromPort->portKey()) : nullptr;
}

void V2Sm::VelEdge::onToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort) {
    if (!velMarkedForDeletion()) handleToPort(toPort);
}

void V2Sm::VelEdge::onToPortvelImmediate() {}

void V2Sm::VelEdge::handleToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort) {
    traced("void NetworkTopologyAggregator::V2Sm::VelEdge::handleToPort(const PtrConst&)", "handleToPort");
    if (!v3Edge_) {
        Vel::KeepAlive const keepThis(*this);
        v3Edge_ = createV3Edge();
        Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const edge = notifier();
        if (v3Edge_ && edge) {
            for (auto const & destination : edge->toPort()) {
                if (notifier() != edge.get()) break;
                writeToPort(destination.key());
            }
        }
        writeToPort(toPort);
        return;
    }
    writeToPort(toPort);
}

void V2Sm::VelEdge::writeToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort) {
    if (!sm_ || !notifier()) return;
    auto const portV3 = sm_->toPortBaseV3(toPort);
    if (!portV3 || !v3Edge_) return;
    if (auto const flag = notifier()->toPort(toPort)) {
        v3Edge_->toPortIs(portV3->portKey(), *flag);
    } else {
        v3Edge_->toPortDel(portV3->portKey());
    }
}

void V2Sm::VelEdge::cleanup() {
    traced("void NetworkTopologyAggregator::V2Sm::VelEdge::cleanup()", "cleanup");
    FromPort const fromPort = fwkKey();
    NetworkTopology::HostV2 const * const host = fromPort ? fromPort->host() : nullptr;
    if (!host || !sm_ || !v3Edge_) return;
    auto const status = sm_->v3();
    if (!status || !status->host(host->name())) return;
    if (auto const portV3 = sm_->toPortBaseV3(fromPort)) status->edgeDel(portV3->portKey());
}

}  // namespace NetworkTopologyAggregator
