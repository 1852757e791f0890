#include "translator/V2Sm.h"

#include "finder/PortBaseFinder.h"
#include "platform/Vel/Exceptions.h"
#include "translator/internal/LookAhead.h"
#include "translator/internal/Registry.h"
#include "translator/internal/Tracing.h"

namespace NetworkTopologyAggregator {

// What is passed by value here is used after writes, whose followers may let go of the caller's.
// NOLINTBEGIN(performance-unnecessary-value-param)

V2Sm::Ptr V2Sm::V2SmIs(Vel::Name name, Vel::Ptr<NetworkTopology::StatusV2 const> v2,
                       Vel::Ptr<NetworkTopologyV3::Status> v3) {
    Ptr sm = new V2Sm(std::move(name), v2, v3);
    sm->hasNotificationActiveIs(true);
    return sm;
}

Vel::Ptr<V2Sm> v2SmFactory(Vel::Name name, Vel::Ptr<NetworkTopology::StatusV2 const> const & v2,
                           Vel::Ptr<NetworkTopologyV3::Status> const & v3) {
    return V2Sm::V2SmIs(std::move(name), v2, v3);
}

V2Sm::V2Sm(Vel::Name name, Vel::Ptr<NetworkTopology::StatusV2 const> const & v2,
           Vel::Ptr<NetworkTopologyV3::Status> const & v3)
    : name_(std::move(name)) {
    try {
        if (v3) velV3_ = new VelV3(v3, this);
        if (v2) velV2_ = new VelV2(v2, this);
        populateV3();
        if (!velV2_) return;
        velV2_->onHostvelImmediate();
        velV2_->onEdgevelImmediate();
    } catch (...) {
        // What has been written stays in the output; the reactors go without cleaning up after themselves.
        clearOwners();
        throw;
    }
}

V2Sm::~V2Sm() {
    heldIs();
    velDoZombieReactors(true);
    clearOwners();
    edge_.emptyAllBuckets([](VelEdge const & reactor) {
        __builtin_prefetch(reactor.notifier());
        __builtin_prefetch(reactor.v3Edge().get());
        __builtin_prefetch(reactor.collectionKey().get());
    });
    host_.emptyAllBuckets();
    velV3_ = nullptr;
    velV2_ = nullptr;
}

void V2Sm::clearOwners() noexcept {
    if (velV2_) velV2_->ownerIs(nullptr);
    if (velV3_) velV3_->ownerIs(nullptr);
    host_.forEach([](VelHost & reactor) { reactor.ownerIs(nullptr); });
    edge_.forEach([](VelEdge & reactor) { reactor.ownerIs(nullptr); });
}

void V2Sm::hasNotificationActiveIs(bool active) {
    Vel::PtrInterface::hasNotificationActiveIs(active);
    if (velV2_) velV2_->hasNotificationActiveIs(active);
    if (velV3_) velV3_->hasNotificationActiveIs(active);
    host_.forEach([&](VelHost & reactor) { reactor.hasNotificationActiveIs(active); });
    edge_.forEach([&](VelEdge & reactor) { reactor.hasNotificationActiveIs(active); });
}

void V2Sm::velDoZombieReactors(bool zombie) {
    if (zombie == velMarkedForDeletion()) return;
    Vel::KeepAlive const keepRoot(*this);
    if (auto const reactor = velV2_) reactor->velDoZombieReactors(zombie);
    if (auto const reactor = velV3_) reactor->velDoZombieReactors(zombie);
    for (auto reactor = host_.iterator(); reactor; ++reactor) (*reactor)->velDoZombieReactors(zombie);
    RetirementsAhead ahead(edge_.size());
    for (auto reactor = edge_.iterator(); reactor; ++reactor) {
        ahead.fetch(reactor, output());
        (*reactor)->velDoZombieReactors(zombie);
    }
    velMarkedForDeletionIs(zombie);
}

// The statuses

namespace {

template <class Reactor>
Vel::Ptr<Reactor> letGo(Vel::Ptr<Reactor> & field) {
    Vel::Ptr<Reactor> reactor = std::exchange(field, nullptr);
    if (reactor) retire(*reactor);
    return reactor;
}

// Points the reactor of `root` that is kept in `field` at `status`, or makes it. Both may write the output,
// and a follower of it may bind another status, or none, meanwhile.
template <class Reactor, class Status>
void statusIs(V2Sm & root, Vel::Ptr<Reactor> & field, Vel::Ptr<Status> const & status) {
    Vel::KeepAlive const keepRoot(root);
    Vel::Ptr<Reactor> const current = field;
    if (current && current->notifier() == status.get()) return;
    if (!status) {
        letGo(field);
    } else if (current) {
        current->notifierIs(status);
        if (field == current) current->velDoZombieReactors(root.velMarkedForDeletion());
    } else {
        // Hosts and edges that an input holds already get no reactors here; their next notifications make
        // them.
        Vel::Ptr<Reactor> const made = new Reactor(status, &root);
        letGo(field);
        field = made;
        made->hasNotificationActiveIs(root.hasNotificationActive());
        made->velDoZombieReactors(root.velMarkedForDeletion());
    }
}

}  // namespace

void V2Sm::v2Is(Vel::Ptr<NetworkTopology::StatusV2 const> v2) { statusIs(*this, velV2_, v2); }

void V2Sm::v3Is(Vel::Ptr<NetworkTopologyV3::Status> v3) { statusIs(*this, velV3_, v3); }

Vel::Ptr<NetworkTopology::StatusV2 const> V2Sm::v2Del() {
    auto const reactor = letGo(velV2_);
    return reactor ? reactor->notifier() : nullptr;
}

Vel::Ptr<NetworkTopologyV3::Status> V2Sm::v3Del() {
    auto const reactor = letGo(velV3_);
    return reactor ? reactor->notifier() : nullptr;
}

// The host registry

Vel::Ptr<V2Sm::VelHost> V2Sm::hostIs(Vel::Ptr<NetworkTopology::HostV2 const> host) {
    if (!host) {
        Vel::throwRangeException(
            "null _host parameter to mutator for NetworkTopologyAggregator::V2Sm::host not allowed\"");
    }
    Vel::KeepAlive const keepRoot(*this);
    return reactorIs(host_, host->nameHash(), host, host->name(), this);
}

// NOLINTEND(performance-unnecessary-value-param)

Vel::Ptr<NetworkTopology::HostV2 const> V2Sm::hostDel(Vel::Name name) {
    Vel::KeepAlive const keepRoot(*this);
    auto const reactor = reactorDel(host_, name.reversedHash(), name);
    return reactor ? reactor->notifier() : nullptr;
}

void V2Sm::hostDelAll() {
    Vel::KeepAlive const keepRoot(*this);
    for (auto reactor = host_.iterator(); reactor; ++reactor) hostDel((*reactor)->collectionKey());
}

void V2Sm::vel_handleHost(Vel::Ptr<VelHost> const & host) { host->cleanup(); }

// The edge registry

void V2Sm::edgeIs(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge) {
    if (!edge) {
        Vel::throwRangeException(
            "null _edge parameter to mutator for NetworkTopologyAggregator::V2Sm::edge not allowed\"");
    }
    Vel::KeepAlive const keepRoot(*this);
    // The caller's may live in what goes away meanwhile.
    edgeReactorIs(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const>(edge));
}

void V2Sm::edgeReactorIs(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge) {
    reactorIs(edge_, edge->fromPortHash(), edge, edge->fromPort(), this);
}

Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> V2Sm::edgeDel(FromPort const & fromPort) {
    Vel::KeepAlive const keepRoot(*this);
    auto const reactor = reactorDel(edge_, Vel::HashMapKey<FromPort>::hash(fromPort), fromPort);
    return reactor ? reactor->notifier() : nullptr;
}

void V2Sm::edgeDelAll() {
    Vel::KeepAlive const keepRoot(*this);
    for (auto reactor = edge_.iterator(); reactor; ++reactor) edgeDel((*reactor)->collectionKey());
}

void V2Sm::vel_handleEdge(Vel::Ptr<VelEdge> const & edge) { edge->cleanup(); }

// Population

void V2Sm::populateV3() {
    traced("void NetworkTopologyAggregator::V2Sm::populateV3()", "populateV3");
    Vel::KeepAlive const keepRoot(*this);
    // The statuses are read afresh for each step: a follower of the output may have unbound one meanwhile.
    if (auto const input = v2()) {
        if (auto const output = v3()) {
            output->reserve(input->host().size(), input->edge().size());
            for (auto const & host : input->host()) populateHost(*host, *output);
        }
    }
    if (auto const input = v2()) {
        if (auto const output = v3()) output->localhostIs(toHostV3(input->localhost()));
    }
    if (auto const input = v2()) {
        if (auto const output = v3()) {
            auto const edges = input->edge();
            EdgesAhead ahead(edges.size());
            for (auto edge = edges.begin(); edge; ++edge) {
                ahead.fetch(edge, *output);
                populateEdge(**edge, *output);
            }
        }
    }
}

// Links are made after everything in the host that they may refer to. A link into a host that the walk has
// not reached yet resolves to null.
void V2Sm::populateHost(NetworkTopology::HostV2 const & hostV2, NetworkTopologyV3::Status & v3) {
    auto const hostV3 = v3.hostIs(hostV2.name());
    hostV3->reserve(hostV2.port().size(), hostV2.portGroup().size(), hostV2.mlag().size());
    PortNamesAhead portsAhead(hostV2, inputHosts());
    auto const ports = hostV2.port();
    for (auto port = ports.begin(); port; ++port) {
        portsAhead.fetch(port);
        hostV3->portIs((*port)->name());
    }
    for (auto const & group : hostV2.portGroup()) hostV3->portGroupIs(group->name());
    for (auto const & mlag : hostV2.mlag()) hostV3->mlagIs(mlag->name(), mlag->secondaryName());
    for (auto const & raw : hostV2.mlagRaw()) {
        hostV3->mlagRawIs(raw.value() ? hostV3->mlag(raw.value()->name()) : nullptr);
    }
    for (auto const & logical : hostV2.logicalPort()) hostV3->logicalPortIs(toPortBaseV3(logical.value()));
    // A follower may have deleted what was made above.
    for (auto const & port : hostV2.port()) {
        Vel::Ptr<NetworkTopologyV3::Port> const portV3 = hostV3->findPort(port->name(), port->nameHash());
        if (portV3) {
            portV3->portGroupIs(tracedPortGroupV3([&] { return port->group(); }));
        }
    }
    for (auto const & group : hostV2.portGroup()) {
        auto const groupV3 = hostV3->portGroup(group->name());
        if (!groupV3) continue;
        for (auto const & member : group->memberPort()) groupV3->memberPortIs(toPortV3(member.value()));
        groupV3->mlagIs(toMlagV3(group->mlag()));
    }
    for (auto const & mlag : hostV2.mlag()) {
        Vel::Ptr<NetworkTopologyV3::MlagPort> const mlagV3 = hostV3->findMlag(mlag->name(), mlag->nameHash());
        if (mlagV3) {
            mlagV3->localPortGroupIs(toPortGroupV3(mlag->localPortGroup()));
        }
    }
    hostV3->hostnameIs(hostV2.hostname());
    hostV3->mlagSystemIdIs(hostV2.mlagSystemId());
    hostV3->mlagDomainIdIs(hostV2.mlagDomainId());
    hostV3->mlagStateIs(hostV2.mlagState());
    hostV3->mlagPeerLinkIs(toPortBaseV3(hostV2.mlagPeerLink()));
}

// An edge, or a destination, that does not resolve is left out.
void V2Sm::populateEdge(NetworkTopology::DirectedEdgeV2 const & edgeV2, NetworkTopologyV3::Status & v3) {
    auto const fromPort = toPortBaseV3(edgeV2.fromPort());
    if (!fromPort) return;
    auto const edgeV3 = v3.edgeIs(fromPort->portKey());
    for (auto const & destination : edgeV2.toPort()) {
        // A reference of our own: the entry may move when a trace sink gives the edge another destination.
        Vel::Ptr<NetworkTopology::PortBaseV2 const> const toPortV2 = destination.key();
        if (auto const toPort = toPortBaseV3(toPortV2)) {
            edgeV3->toPortIs(toPort->portKey(), destination.value());
        }
    }
}

// Lookups

NetworkTopologyV3::Host::Ptr V2Sm::toHostV3(Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2) {
    traced("NetworkTopologyV3::Host::Ptr NetworkTopologyAggregator::V2Sm::toHostV3(const PtrConst&)",
           "toHostV3");
    return hostV3Of(hostV2.get());
}

inline NetworkTopologyV3::Host * V2Sm::hostV3Of(NetworkTopology::HostV2 const * hostV2) const noexcept {
    NetworkTopologyV3::Status * const status = output();
    return hostV2 && status ? status->findHost(hostV2->name(), hostV2->nameHash()) : nullptr;
}

NetworkTopologyV3::PortBase::Ptr
V2Sm::toPortBaseV3(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & portV2) {
    traced("NetworkTopologyV3::PortBase::Ptr NetworkTopologyAggregator::V2Sm::toPortBaseV3(const PtrConst&)",
           "toPortBaseV3");
    if (!portV2) return nullptr;
    Vel::Ptr<NetworkTopology::HostV2 const> hostV2 = portV2->holder();
    NetworkTopologyV3::Host::Ptr hostV3 = hostV3Of(hostV2.get());
    if (!hostV3) return nullptr;
    // Mostly it is a port.
    hostV3->fetchPort(portV2->nameHash());
    return PortBaseFinder::findLast(PortBaseFinder::PortBaseFinderIs(std::move(hostV2), std::move(hostV3)),
                                    portV2);
}

NetworkTopologyV3::Port * V2Sm::toPortV3(Vel::Ptr<NetworkTopology::PortV2 const> const & portV2) {
    return traced("NetworkTopologyV3::Port* NetworkTopologyAggregator::V2Sm::toPortV3(const PtrConst&)",
                  "toPortV3", [&]() -> NetworkTopologyV3::Port * {
                      if (!portV2) return nullptr;
                      NetworkTopologyV3::Host const * const hostV3 = hostV3Of(portV2->holder());
                      return hostV3 ? hostV3->findPort(portV2->name(), portV2->nameHash()) : nullptr;
                  });
}

template <class Group>
inline NetworkTopologyV3::PortGroup * V2Sm::tracedPortGroupV3(Group const & group) {
    return traced(
        "NetworkTopologyV3::PortGroup* NetworkTopologyAggregator::V2Sm::toPortGroupV3(const PtrConst&)",
        "toPortGroupV3", [this, group]() -> NetworkTopologyV3::PortGroup * {
            NetworkTopology::PortGroupV2 const * const pgV2 = group();
            if (!pgV2) return nullptr;
            NetworkTopologyV3::Host const * const hostV3 = hostV3Of(pgV2->holder());
            return hostV3 ? hostV3->findPortGroup(pgV2->name(), pgV2->nameHash()) : nullptr;
        });
}

NetworkTopologyV3::PortGroup *
V2Sm::toPortGroupV3(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & pgV2) {
    return tracedPortGroupV3([&] { return pgV2.get(); });
}

NetworkTopologyV3::PortGroup *
V2Sm::toPortGroupV3Of(NetworkTopology::PortV2::NotifieeConst const & follower) {
    return tracedPortGroupV3([&] {
        NetworkTopology::PortV2 const * const port = follower.notifier();
        return port ? port->group() : nullptr;
    });
}

NetworkTopologyV3::MlagPort * V2Sm::toMlagV3(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlagV2) {
    return traced("NetworkTopologyV3::MlagPort* NetworkTopologyAggregator::V2Sm::toMlagV3(const PtrConst&)",
                  "toMlagV3", [&]() -> NetworkTopologyV3::MlagPort * {
                      if (!mlagV2) return nullptr;
                      NetworkTopologyV3::Host const * const hostV3 = hostV3Of(mlagV2->holder());
                      return hostV3 ? hostV3->findMlag(mlagV2->name(), mlagV2->nameHash()) : nullptr;
                  });
}

NetworkTopologyV3::PortType V2Sm::toPortTypeV3(NetworkTopology::PortTypeV2 portTypeV2) {
    traced("NetworkTopologyV3::PortType "
           "NetworkTopologyAggregator::V2Sm::toPortTypeV3(NetworkTopology::PortTypeV2)",
           "toPortTypeV3");
    auto const value = static_cast<std::uint32_t>(portTypeV2);
    return value >= 1 && value <= 3 ? static_cast<NetworkTopologyV3::PortType>(value)
                                    : NetworkTopologyV3::PortType::unknown;
}

}  // namespace NetworkTopologyAggregator
