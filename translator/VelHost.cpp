#include "translator/VelHost.h"

#include "platform/Vel/Exceptions.h"
#include "translator/internal/LookAhead.h"
#include "translator/internal/Registry.h"
#include "translator/internal/Tracing.h"

namespace NetworkTopologyAggregator {

V2Sm::VelHost::VelHost(Vel::Ptr<NetworkTopology::HostV2 const> const & host, V2Sm * owner)
    : owner_(owner), key_(host->name()) {
    firstNotifierIs(host.get());
    // There is no version-3 host yet, so this writes nothing: a host that the population has not filled gets
    // its attributes from their next notifications. Readers rely on that order.
    copyAttributes();
    isRegisteredNotifieeIs(true);
    v3HostIs(createV3Host());
    onMlagPeerLink();
    try {
        reconcilePorts();
        reconcilePortGroups();
        reconcileMlags();
    } catch (...) {
        // What has been written stays in the output; the members go without cleaning up after themselves.
        clearOwners();
        throw;
    }
}

V2Sm::VelHost::~VelHost() {
    heldIs();
    velDoZombieReactors(true);
    clearOwners();
    mlag_.emptyAllBuckets();
    portGroup_.emptyAllBuckets();
    port_.emptyAllBuckets([](VelPort const & reactor) { __builtin_prefetch(reactor.notifier()); });
}

void V2Sm::VelHost::clearOwners() noexcept {
    port_.forEach([](VelPort & reactor) { reactor.ownerIs(nullptr); });
    portGroup_.forEach([](VelPortGroup & reactor) { reactor.ownerIs(nullptr); });
    mlag_.forEach([](VelMlag & reactor) { reactor.ownerIs(nullptr); });
}

void V2Sm::VelHost::hasNotificationActiveIs(bool active) {
    if (active == hasNotificationActive()) return;
    Vel::PtrInterface::hasNotificationActiveIs(active);
    port_.forEach([&](VelPort & reactor) { reactor.hasNotificationActiveIs(active); });
    portGroup_.forEach([&](VelPortGroup & reactor) { reactor.hasNotificationActiveIs(active); });
    mlag_.forEach([&](VelMlag & reactor) { reactor.hasNotificationActiveIs(active); });
}

void V2Sm::VelHost::velDoZombieReactors(bool zombie) {
    if (zombie == velMarkedForDeletion()) return;
    Vel::KeepAlive const keepThis(*this);
    if (notifier()) hasNotificationActiveIs(!zombie);
    // A reactor that no counted reference holds has none to hand out.
    isCounted() ? V2Sm::vel_handleHost(this) : cleanup();
    for (auto reactor = port_.iterator(); reactor; ++reactor) (*reactor)->velDoZombieReactors(zombie);
    for (auto reactor = portGroup_.iterator(); reactor; ++reactor) (*reactor)->velDoZombieReactors(zombie);
    for (auto reactor = mlag_.iterator(); reactor; ++reactor) (*reactor)->velDoZombieReactors(zombie);
    velMarkedForDeletionIs(zombie);
}

void V2Sm::VelHost::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    auto const host = Vel::dynamicPtrCast<NetworkTopology::HostV2 const>(notifier);
    if (host == this->notifier()) return;
    Vel::KeepAlive const keepThis(*this);
    NetworkTopology::HostV2::NotifieeConst::notifierIs(host);
    // Each phase tests the notifier again: a follower of what was written may have unbound us meanwhile.
    if (host) copyAttributes();
    if (host) onMlagPeerLink();
    if (this->notifier()) reconcilePorts();
    if (this->notifier()) reconcilePortGroups();
    if (this->notifier()) reconcileMlags();
    isRegisteredNotifieeIs(true);
}

void V2Sm::VelHost::copyAttributes() {
    onHostname();
    onMlagSystemId();
    onMlagDomainId();
    onMlagState();
}

void V2Sm::VelHost::onHostname() {
    if (notifier() && v3Host_) v3Host_->hostnameIs(notifier()->hostname());
}

void V2Sm::VelHost::onMlagSystemId() {
    if (notifier() && v3Host_) v3Host_->mlagSystemIdIs(notifier()->mlagSystemId());
}

void V2Sm::VelHost::onMlagDomainId() {
    if (notifier() && v3Host_) v3Host_->mlagDomainIdIs(notifier()->mlagDomainId());
}

void V2Sm::VelHost::onMlagState() {
    if (notifier() && v3Host_) v3Host_->mlagStateIs(notifier()->mlagState());
}

void V2Sm::VelHost::onMlagPeerLink() {
    if (!notifier() || !v3Host_) return;
    v3Host_->mlagPeerLinkIs(owner_ ? owner_->toPortBaseV3(notifier()->mlagPeerLink()) : nullptr);
}

NetworkTopologyV3::Host::Ptr V2Sm::VelHost::createV3Host() {
    traced("NetworkTopologyV3::Host::Ptr NetworkTopologyAggregator::V2Sm::VelHost::createV3Host()",
           "createV3Host");
    auto const status = owner_ ? owner_->v3() : nullptr;
    return status ? status->hostIs(name()) : nullptr;
}

void V2Sm::VelHost::cleanup() {
    traced("void NetworkTopologyAggregator::V2Sm::VelHost::cleanup()", "cleanup");
    auto const status = owner_ ? owner_->v3() : nullptr;
    // Without a host there is no name: the version-3 host that happens to be called "" is somebody else's.
    // And a reactor that never had a version-3 host takes none away.
    if (status && notifier() && v3Host_) status->hostDel(name());
}

void V2Sm::VelHost::handleLogicalPort(Vel::Name name) {
    traced("void NetworkTopologyAggregator::V2Sm::VelHost::handleLogicalPort(Vel::Name)",
           "handleLogicalPort");
    if (!notifier() || !v3Host_) return;
    if (auto const * const entry = notifier()->logicalPortEntry(name)) {
        if (owner_) v3Host_->logicalPortIs(owner_->toPortBaseV3(entry->value()));
    } else {
        v3Host_->logicalPortDel(std::move(name));
    }
}

void V2Sm::VelHost::handleMlagRaw(Vel::Name name) {
    traced("void NetworkTopologyAggregator::V2Sm::VelHost::handleMlagRaw(Vel::Name)", "handleMlagRaw");
    if (!notifier() || !v3Host_) return;
    if (auto const * const entry = notifier()->mlagRawEntry(name)) {
        if (owner_) v3Host_->mlagRawIs(owner_->toMlagV3(entry->value()));
    } else {
        v3Host_->mlagRawDel(std::move(name));
    }
}

void V2Sm::VelHost::onLogicalPort(Vel::Name name) { handleLogicalPort(std::move(name)); }

void V2Sm::VelHost::onLogicalPortvelImmediate() {}

void V2Sm::VelHost::onMlagRaw(Vel::Name name) { handleMlagRaw(std::move(name)); }

void V2Sm::VelHost::onMlagRawvelImmediate() {}

// The registries

template <class Reactor, class Input>
Vel::Ptr<Reactor> V2Sm::VelHost::memberIs(Vel::HashMap<Reactor, Vel::Name, VelHost> & registry,
                                          Vel::Ptr<Input const> const & input) {
    return reactorIs(registry, input->nameHash(), input, input->name(), this);
}

template <class Reactor>
void V2Sm::VelHost::memberDel(Vel::HashMap<Reactor, Vel::Name, VelHost> & registry, Vel::Name const & name) {
    reactorDel(registry, name.reversedHash(), name);
}

Vel::Ptr<V2Sm::VelHost::VelPort>
V2Sm::VelHost::newPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port) {
    Vel::KeepAlive const keepThis(*this);
    return newReactor(port_, port->nameHash(), port, this);
}

Vel::Ptr<V2Sm::VelHost::VelPortGroup>
V2Sm::VelHost::newPortGroup(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & portGroup) {
    Vel::KeepAlive const keepThis(*this);
    return newReactor(portGroup_, portGroup->nameHash(), portGroup, this);
}

Vel::Ptr<V2Sm::VelHost::VelMlag>
V2Sm::VelHost::newMlag(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag) {
    Vel::KeepAlive const keepThis(*this);
    return newReactor(mlag_, mlag->nameHash(), mlag, this);
}

// What callers pass may live in what goes away meanwhile: hence references of our own.

Vel::Ptr<V2Sm::VelHost::VelPort> V2Sm::VelHost::portIs(Vel::Ptr<NetworkTopology::PortV2 const> const & port) {
    if (!port) {
        Vel::throwRangeException("null _port parameter to mutator for "
                                 "NetworkTopologyAggregator::V2Sm::VelHost::port not allowed\"");
    }
    Vel::KeepAlive const keepThis(*this);
    return memberIs(port_, Vel::Ptr<NetworkTopology::PortV2 const>(port));
}

Vel::Ptr<V2Sm::VelHost::VelPortGroup>
V2Sm::VelHost::portGroupIs(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & portGroup) {
    if (!portGroup) {
        Vel::throwRangeException("null _portGroup parameter to mutator for "
                                 "NetworkTopologyAggregator::V2Sm::VelHost::portGroup not allowed\"");
    }
    Vel::KeepAlive const keepThis(*this);
    return memberIs(portGroup_, Vel::Ptr<NetworkTopology::PortGroupV2 const>(portGroup));
}

Vel::Ptr<V2Sm::VelHost::VelMlag> V2Sm::VelHost::mlagIs(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag) {
    if (!mlag) {
        Vel::throwRangeException("null _mlag parameter to mutator for "
                                 "NetworkTopologyAggregator::V2Sm::VelHost::mlag not allowed\"");
    }
    Vel::KeepAlive const keepThis(*this);
    return memberIs(mlag_, Vel::Ptr<NetworkTopology::MlagV2 const>(mlag));
}

void V2Sm::VelHost::portDel(Vel::Name name) {
    Vel::KeepAlive const keepThis(*this);
    memberDel(port_, name);
}

void V2Sm::VelHost::portGroupDel(Vel::Name name) {
    Vel::KeepAlive const keepThis(*this);
    memberDel(portGroup_, name);
}

void V2Sm::VelHost::mlagDel(Vel::Name name) {
    Vel::KeepAlive const keepThis(*this);
    memberDel(mlag_, name);
}

void V2Sm::VelHost::portDel(PortIterator const & at) {
    if (at) portDel((*at)->collectionKey());
}

void V2Sm::VelHost::portGroupDel(PortGroupIterator const & at) {
    if (at) portGroupDel((*at)->collectionKey());
}

void V2Sm::VelHost::mlagDel(MlagIterator const & at) {
    if (at) mlagDel((*at)->collectionKey());
}

void V2Sm::VelHost::portNotify(Vel::Name) {}

void V2Sm::VelHost::portGroupNotify(Vel::Name) {}

void V2Sm::VelHost::mlagNotify(Vel::Name) {}

void V2Sm::VelHost::portDelAll() {
    Vel::KeepAlive const keepThis(*this);
    for (auto at = port_.iterator(); at; ++at) portDel(at);
}

void V2Sm::VelHost::portGroupDelAll() {
    Vel::KeepAlive const keepThis(*this);
    for (auto at = portGroup_.iterator(); at; ++at) portGroupDel(at);
}

void V2Sm::VelHost::mlagDelAll() {
    Vel::KeepAlive const keepThis(*this);
    for (auto at = mlag_.iterator(); at; ++at) mlagDel(at);
}

void V2Sm::VelHost::onPort(Vel::Name name) {
    Vel::KeepAlive const keepThis(*this);
    port_.fetch(name.reversedHash());
    reconcileKey<NetworkTopology::PortV2>(
        [&] { return notifier(); }, [&] { return notifier()->findPort(name); },
        [&](auto const & port) { memberIs(port_, port); }, [&] { memberDel(port_, name); });
}

void V2Sm::VelHost::onPortGroup(Vel::Name name) {
    Vel::KeepAlive const keepThis(*this);
    reconcileKey<NetworkTopology::PortGroupV2>(
        [&] { return notifier(); }, [&] { return notifier()->findPortGroup(name); },
        [&](auto const & group) { memberIs(portGroup_, group); }, [&] { memberDel(portGroup_, name); });
}

void V2Sm::VelHost::onMlag(Vel::Name name) {
    Vel::KeepAlive const keepThis(*this);
    reconcileKey<NetworkTopology::MlagV2>(
        [&] { return notifier(); }, [&] { return notifier()->findMlag(name); },
        [&](auto const & mlag) { memberIs(mlag_, mlag); }, [&] { memberDel(mlag_, name); });
}

void V2Sm::VelHost::reconcilePorts() {
    Vel::KeepAlive const keepThis(*this);
    Vel::Ptr<NetworkTopology::HostV2 const> const host = notifier();
    PortNamesAhead ahead(*host, owner_ ? owner_->inputHosts() : 0);
    reconcile(
        host->port(), port_, [&] { return notifier() == host.get(); },
        [&](Vel::Ptr<NetworkTopology::PortV2 const> const & port) { memberIs(port_, port); },
        [&](Vel::Name const & name) { return host->findPort(name) != nullptr; },
        [&](Vel::Name const & name) { memberDel(port_, name); },
        [&](auto const & walk) { ahead.fetch(walk); });
}

void V2Sm::VelHost::reconcilePortGroups() {
    Vel::KeepAlive const keepThis(*this);
    Vel::Ptr<NetworkTopology::HostV2 const> const host = notifier();
    reconcile(
        host->portGroup(), portGroup_, [&] { return notifier() == host.get(); },
        [&](Vel::Ptr<NetworkTopology::PortGroupV2 const> const & group) { memberIs(portGroup_, group); },
        [&](Vel::Name const & name) { return host->findPortGroup(name) != nullptr; },
        [&](Vel::Name const & name) { memberDel(portGroup_, name); });
}

void V2Sm::VelHost::reconcileMlags() {
    Vel::KeepAlive const keepThis(*this);
    Vel::Ptr<NetworkTopology::HostV2 const> const host = notifier();
    reconcile(
        host->mlag(), mlag_, [&] { return notifier() == host.get(); },
        [&](Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag) { memberIs(mlag_, mlag); },
        [&](Vel::Name const & name) { return host->findMlag(name) != nullptr; },
        [&](Vel::Name const & name) { memberDel(mlag_, name); });
}

void V2Sm::VelHost::onPortvelImmediate() {
    if (notifier()) reconcilePorts();
}

void V2Sm::VelHost::onPortGroupvelImmediate() {
    if (notifier()) reconcilePortGroups();
}

void V2Sm::VelHost::onMlagvelImmediate() {
    if (notifier()) reconcileMlags();
}

void V2Sm::VelHost::vel_handlePort(Vel::Ptr<VelPort> const & port) { port->cleanup(); }

void V2Sm::VelHost::vel_handlePortGroup(Vel::Ptr<VelPortGroup> const & portGroup) { portGroup->cleanup(); }

void V2Sm::VelHost::vel_handleMlag(Vel::Ptr<VelMlag> const & mlag) { mlag->cleanup(); }

}  // namespace NetworkTopologyAggregator
