#include "translator/VelStatus.h"

#include "translator/internal/LookAhead.h"
#include "translator/internal/Registry.h"

namespace NetworkTopologyAggregator {

V2Sm::VelV2::VelV2(Vel::Ptr<NetworkTopology::StatusV2 const> const & status, V2Sm * owner) : owner_(owner) {
    NetworkTopology::StatusV2::NotifieeConst::notifierIs(status);
    onLocalhost();
    isRegisteredNotifieeIs(true);
}

void V2Sm::VelV2::hasNotificationActiveIs(bool active) {
    if (active != hasNotificationActive()) Vel::PtrInterface::hasNotificationActiveIs(active);
}

V2Sm::VelV2::~VelV2() {
    heldIs();
    velDoZombieReactors(true);
}

void V2Sm::VelV2::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    auto const status = Vel::dynamicPtrCast<NetworkTopology::StatusV2 const>(notifier);
    if (status == this->notifier()) return;
    Vel::KeepAlive const keepThis(*this);
    NetworkTopology::StatusV2::NotifieeConst::notifierIs(status);
    if (status) {
        onHostvelImmediate();
        onLocalhost();
        onEdgevelImmediate();
    }
    isRegisteredNotifieeIs(true);
}

void V2Sm::VelV2::onHost(Vel::Name name) {
    Vel::KeepAlive const keepThis(*this);
    reconcileKey<NetworkTopology::HostV2>(
        [&] { return owner_ && notifier(); }, [&] { return notifier()->findHost(name); },
        [&](auto const & host) { owner_->hostIs(host); }, [&] { owner_->hostDel(name); });
}

void V2Sm::VelV2::onHostvelImmediate() {
    Vel::Ptr<NetworkTopology::StatusV2 const> const status = notifier();
    if (!status || !owner_) return;
    Vel::KeepAlive const keepThis(*this);
    Vel::KeepAlive const keepRoot(*owner_);
    reconcile(
        status->host(), owner_->host_, [&] { return owner_ && notifier() == status.get(); },
        [&](Vel::Ptr<NetworkTopology::HostV2 const> const & host) { owner_->hostIs(host); },
        [&](Vel::Name const & name) { return status->findHost(name) != nullptr; },
        [&](Vel::Name const & name) { owner_->hostDel(name); });
}

// Always recomputed and written, also when unchanged.
void V2Sm::VelV2::onLocalhost() {
    if (!notifier() || !owner_) return;
    if (auto const output = owner_->v3()) output->localhostIs(owner_->toHostV3(notifier()->localhost()));
}

void V2Sm::VelV2::onEdge(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & fromPort) {
    Vel::KeepAlive const keepThis(*this);
    FromPort const key = fromPort;  // The caller's may live in what goes away meanwhile.
    std::uint32_t const hash = Vel::HashMapKey<FromPort>::hash(key);
    if (owner_) owner_->edge_.fetch(hash);
    reconcileKey<NetworkTopology::DirectedEdgeV2>([&] { return owner_ && notifier(); },
                                                  [&] { return notifier()->findEdge(key, hash); },
                                                  [&](auto const & edge) {
                                                      Vel::KeepAlive const keepRoot(*owner_);
                                                      owner_->edgeReactorIs(edge);
                                                  },
                                                  [&] {
                                                      Vel::KeepAlive const keepRoot(*owner_);
                                                      reactorDel(owner_->edge_, hash, key);
                                                  });
}

void V2Sm::VelV2::onEdgevelImmediate() {
    Vel::Ptr<NetworkTopology::StatusV2 const> const status = notifier();
    if (!status || !owner_) return;
    Vel::KeepAlive const keepThis(*this);
    Vel::KeepAlive const keepRoot(*owner_);
    EdgeReactorsAhead edgesAhead(status->edge().size());
    reconcile(
        status->edge(), owner_->edge_, [&] { return owner_ && notifier() == status.get(); },
        [&](Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge) { owner_->edgeReactorIs(edge); },
        [&](FromPort const & fromPort) { return status->findEdge(fromPort) != nullptr; },
        [&](FromPort const & fromPort) { owner_->edgeDel(fromPort); },
        [&](auto const & walk) { edgesAhead.fetch(walk, owner_->output()); });
}

void V2Sm::VelV2::velDoZombieReactors(bool zombie) {
    if (zombie == velMarkedForDeletion()) return;
    if (notifier()) hasNotificationActiveIs(!zombie);
    velMarkedForDeletionIs(zombie);
}

V2Sm::VelV3::VelV3(Vel::Ptr<NetworkTopologyV3::Status> const & status, V2Sm * owner) : owner_(owner) {
    notifierIs(status);
    isRegisteredNotifieeIs(true);
}

void V2Sm::VelV3::hasNotificationActiveIs(bool active) {
    if (active != hasNotificationActive()) Vel::PtrInterface::hasNotificationActiveIs(active);
}

V2Sm::VelV3::~VelV3() {
    heldIs();
    velDoZombieReactors(true);
}

void V2Sm::VelV3::velDoZombieReactors(bool zombie) {
    if (zombie == velMarkedForDeletion()) return;
    if (notifier()) hasNotificationActiveIs(!zombie);
    velMarkedForDeletionIs(zombie);
}

}  // namespace NetworkTopologyAggregator
