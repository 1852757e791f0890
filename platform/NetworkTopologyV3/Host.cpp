#include "platform/NetworkTopologyV3/Host.h"

#include <utility>

#include "platform/NetworkTopologyV3/Mutation.h"
#include "platform/Vel/VelAttrs.h"

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
    notifiees().notifySeldom<NotifieeConst>(*this, callbacks...);
}

void Host::hostnameIs(Vel::String hostname) {
    if (Vel::replaced(hostname_, std::move(hostname))) notify([](NotifieeConst & r) { r.onHostname(); });
}

void Host::mlagDomainIdIs(Vel::String mlagDomainId) {
    if (Vel::replaced(mlagDomainId_, std::move(mlagDomainId)))
        notify([](NotifieeConst & r) { r.onMlagDomainId(); });
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

void Host::reserve(unsigned ports, unsigned portGroups, unsigned mlags) noexcept {
    port_.reserve(ports);
    portGroup_.reserve(portGroups);
    mlag_.reserve(mlags);
}

Vel::Ptr<Port> Host::portIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, port_, name, [&] { return new Port(std::move(name), *this); }, onPort);
}

Vel::Ptr<Port> Host::portDel(Vel::Name name) { return Mutation::memberDel(*this, port_, name, onPort); }

void Host::portDelAll() {
    Mutation::memberDelAll(*this, port_, onPort, [](Reactor & r) { r.onPortvelImmediate(); });
}

Vel::Ptr<PortGroup> Host::portGroupIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, portGroup_, name, [&] { return new PortGroup(std::move(name), *this); }, onPortGroup);
}

Vel::Ptr<PortGroup> Host::portGroupDel(Vel::Name name) {
    return Mutation::memberDel(*this, portGroup_, name, onPortGroup);
}

void Host::portGroupDelAll() {
    Mutation::memberDelAll(*this, portGroup_, onPortGroup, [](Reactor & r) { r.onPortGroupvelImmediate(); });
}

Vel::Ptr<MlagPort> Host::mlagIs(Vel::Name name, Vel::Name secondaryName) {
    return Mutation::memberIs(
        *this, mlag_, name, [&] { return new MlagPort(std::move(name), std::move(secondaryName), *this); },
        onMlag);
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

namespace {

constexpr Vel::VelArg nameArg[] = {{"name", &Vel::Name::_velType}};
constexpr Vel::VelArg mlagArgs[] = {{"name", &Vel::Name::_velType}, {"secondaryName", &Vel::Name::_velType}};
constexpr Vel::VelArg mlagRawArgs[] = {{"name", &Vel::Name::_velType}, {"mlag", &MlagPort::_velType}};
constexpr Vel::VelArg logicalPortArgs[] = {{"name", &Vel::Name::_velType}, {"port", &PortBase::_velType}};

using Attrs = Vel::Attrs<Host>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&Host::name>("name", 130),
    Attrs::value<&Host::hostname, &Host::hostnameIs>("hostname", 131),
    Attrs::value<&Host::mlagDomainId, &Host::mlagDomainIdIs>("mlagDomainId", 132),
    Attrs::value<&Host::mlagSystemId, &Host::mlagSystemIdIs>("mlagSystemId", 133),
    Attrs::value<&Host::mlagState, &Host::mlagStateIs>("mlagState", 134),
    Attrs::value<&Host::mlagPeerLink, &Host::mlagPeerLinkIs>("mlagPeerLink", 135),
    Attrs::collection<Port, Vel::Name, [](Host & o) { return o.port(); },
                      [](Host & o, Vel::Name const & key) { return o.port(key); }, nullptr, &Host::portDel,
                      [](Host & o, Vel::Name const & key) { return o.portIs(key); }, Vel::Name>(
        "port", 136, "name", nameArg),
    Attrs::function<&Host::portDelAll>("portDelAll", 137, {}),
    Attrs::collection<PortGroup, Vel::Name, [](Host & o) { return o.portGroup(); },
                      [](Host & o, Vel::Name const & key) { return o.portGroup(key); }, nullptr,
                      &Host::portGroupDel, [](Host & o, Vel::Name const & key) { return o.portGroupIs(key); },
                      Vel::Name>("portGroup", 138, "name", nameArg),
    Attrs::function<&Host::portGroupDelAll>("portGroupDelAll", 139, {}),
    Attrs::collection<MlagPort, Vel::Name, [](Host & o) { return o.mlag(); },
                      [](Host & o, Vel::Name const & key) { return o.mlag(key); }, nullptr, &Host::mlagDel,
                      [](Host & o, Vel::Name const & key, Vel::Name const & secondaryName) {
                          return o.mlagIs(key, secondaryName);
                      },
                      Vel::Name, Vel::Name>("mlag", 140, "name", mlagArgs),
    Attrs::function<&Host::mlagDelAll>("mlagDelAll", 141, {}),
    Attrs::valueCollection<Vel::Name, Vel::Ptr<MlagPort>, [](Host & o) { return o.mlagRaw(); },
                           [](Host & o, Vel::Name const & key) { return o.mlagRaw(key); },
                           &Mutation::valueUnderItsNameIs<&Host::mlagRawIs, Host, MlagPort>,
                           &Host::mlagRawDel>("mlagRaw", 142, "name", mlagRawArgs, true),
    Attrs::function<&Host::mlagRawDelAll>("mlagRawDelAll", 143, {}),
    Attrs::valueCollection<Vel::Name, Vel::Ptr<PortBase const>, [](Host & o) { return o.logicalPort(); },
                           [](Host & o, Vel::Name const & key) { return o.logicalPort(key); },
                           &Mutation::valueUnderItsNameIs<&Host::logicalPortIs, Host, PortBase const>,
                           &Host::logicalPortDel>("logicalPort", 144, "name", logicalPortArgs, true),
    Attrs::function<&Host::logicalPortDelAll>("logicalPortDelAll", 145, {}),
};

}  // namespace

constinit Vel::VelType const Host::_velType{{
    .name = "NetworkTopologyV3::Host",
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * Host::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(Host::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
