#include "platform/NetworkTopologyV3/Host.h"

#include <utility>

#include "platform/NetworkTopologyV3/Mutation.h"

namespace NetworkTopologyV3 {

namespace {

using Reactor = Host::NotifieeConst;

constexpr auto onPort = [](Reactor & r, auto const &... key) { r.onPort(key...); };
constexpr auto onPortGroup = [](Reactor & r, auto const &... key) { r.onPortGroup(key...); };
constexpr auto onMlag = [](Reactor & r, auto const &... key) { r.onMlag(key...); };
constexpr auto onMlagRaw = [](Reactor & r, auto const &... key) { r.onMlagRaw(key...); };
constexpr auto onLogicalPort = [](Reactor & r, auto const &... key) { r.onLogicalPort(key...); };

}  // namespace

Host::Host(Vel::Name name) noexcept : name_(std::move(name)) {}

Host::~Host() {
    Mutation::letGoAll(port_);
    Mutation::letGoAll(portGroup_);
    Mutation::letGoAll(mlag_);
}

template <class... Callbacks>
void Host::notify(Callbacks const &... callbacks) const {
    notifiees().notify<NotifieeConst>(*this, callbacks...);
}

void Host::hostnameIs(Vel::String hostname) {
    if (Vel::replaced(hostname_, hostname)) notify([](NotifieeConst & r) { r.onHostname(); });
}

void Host::mlagDomainIdIs(Vel::String mlagDomainId) {
    if (Vel::replaced(mlagDomainId_, mlagDomainId)) notify([](NotifieeConst & r) { r.onMlagDomainId(); });
}

void Host::mlagSystemIdIs(Keln::EthAddr const & mlagSystemId) {
    if (Vel::replaced(mlagSystemId_, mlagSystemId)) notify([](NotifieeConst & r) { r.onMlagSystemId(); });
}

void Host::mlagStateIs(Mlag::MlagState mlagState) {
    if (Vel::replaced(mlagState_, mlagState)) notify([](NotifieeConst & r) { r.onMlagState(); });
}

void Host::mlagPeerLinkIs(Vel::Ptr<PortBase const> const & mlagPeerLink) {
    if (Vel::replaced(mlagPeerLink_, mlagPeerLink)) notify([](NotifieeConst & r) { r.onMlagPeerLink(); });
}

Vel::Ptr<Port> Host::portIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, port_, name, [&] { return new Port(name, *this); }, onPort);
}

Vel::Ptr<Port> Host::portDel(Vel::Name name) { return Mutation::memberDel(*this, port_, name, onPort); }

void Host::portDelAll() {
    Mutation::memberDelAll(*this, port_, onPort, [](Reactor & r) { r.onPortvelImmediate(); });
}

Vel::Ptr<PortGroup> Host::portGroupIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, portGroup_, name, [&] { return new PortGroup(name, *this); }, onPortGroup);
}

Vel::Ptr<PortGroup> Host::portGroupDel(Vel::Name name) {
    return Mutation::memberDel(*this, portGroup_, name, onPortGroup);
}

void Host::portGroupDelAll() {
    Mutation::memberDelAll(*this, portGroup_, onPortGroup, [](Reactor & r) { r.onPortGroupvelImmediate(); });
}

Vel::Ptr<MlagPort> Host::mlagIs(Vel::Name name, Vel::Name secondaryName) {
    return Mutation::memberIs(
        *this, mlag_, name, [&] { return new MlagPort(name, secondaryName, *this); }, onMlag);
}

Vel::Ptr<MlagPort> Host::mlagDel(Vel::Name name) { return Mutation::memberDel(*this, mlag_, name, onMlag); }

void Host::mlagDelAll() {
    Mutation::memberDelAll(*this, mlag_, onMlag, [](Reactor & r) { r.onMlagvelImmediate(); });
}

Vel::Ptr<MlagPort> Host::mlagRaw(Vel::Name const & name) const noexcept {
    return Mutation::valueOf(mlagRaw_[name]);
}

void Host::mlagRawIs(Vel::Ptr<MlagPort> const & mlag) {
    if (mlag) Mutation::valueIs(*this, mlagRaw_, mlag->name(), mlag, onMlagRaw);
}

void Host::mlagRawDel(Vel::Name name) { Mutation::valueDel(*this, mlagRaw_, name, onMlagRaw); }

void Host::mlagRawDelAll() {
    Mutation::valueDelAll(*this, mlagRaw_, onMlagRaw, [](Reactor & r) { r.onMlagRawvelImmediate(); });
}

Vel::Ptr<PortBase const> Host::logicalPort(Vel::Name const & name) const noexcept {
    return Mutation::valueOf(logicalPort_[name]);
}

void Host::logicalPortIs(Vel::Ptr<PortBase const> const & port) {
    if (port) Mutation::valueIs(*this, logicalPort_, port->name(), port, onLogicalPort);
}

void Host::logicalPortDel(Vel::Name name) { Mutation::valueDel(*this, logicalPort_, name, onLogicalPort); }

void Host::logicalPortDelAll() {
    Mutation::valueDelAll(*this, logicalPort_, onLogicalPort,
                          [](Reactor & r) { r.onLogicalPortvelImmediate(); });
}

void Host::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<Host const>(notifier));
}

}  // namespace NetworkTopologyV3
