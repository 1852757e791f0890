#include "platform/NetworkTopology/HostV2.h"

#include <utility>

#include "platform/NetworkTopology/Mutation.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

namespace {

// Each with the key of an entry, or without.
constexpr auto onPort = [](HostV2::NotifieeConst & r, auto const &... key) { r.onPort(key...); };
constexpr auto onPortGroup = [](HostV2::NotifieeConst & r, auto const &... key) { r.onPortGroup(key...); };
constexpr auto onMlag = [](HostV2::NotifieeConst & r, auto const &... key) { r.onMlag(key...); };
constexpr auto onMlagRaw = [](HostV2::NotifieeConst & r, auto const &... key) { r.onMlagRaw(key...); };
constexpr auto onLogicalPort = [](HostV2::NotifieeConst & r, auto const &... key) {
    r.onLogicalPort(key...);
};

}  // namespace

HostV2::HostV2(Vel::Name name) noexcept : Entity(name), name_(std::move(name)) {}

HostV2::~HostV2() {
    Mutation::letGoAll(port_);
    Mutation::letGoAll(portGroup_);
    Mutation::letGoAll(mlag_);
}

template <class... Callbacks>
void HostV2::notify(Callbacks const &... callbacks) const {
    notifiees().notify<NotifieeConst>(*this, callbacks...);
}

Vel::Ptr<HostV2> HostV2::HostV2Is(Vel::Name name) { return new HostV2(std::move(name)); }

void HostV2::hostnameIs(Vel::String const & value) {
    if (Vel::replaced(hostname_, value)) notify([](NotifieeConst & r) { r.onHostname(); });
}

void HostV2::hostnameAddedByOwnerIs(bool value) {
    if (Vel::replaced(hostnameAddedByOwner_, value))
        notify([](NotifieeConst & r) { r.onHostnameAddedByOwner(); });
}

void HostV2::mlagSystemIdIs(Keln::EthAddr const & value) {
    if (Vel::replaced(mlagSystemId_, value)) notify([](NotifieeConst & r) { r.onMlagSystemId(); });
}

void HostV2::mlagDomainIdIs(Vel::String const & value) {
    if (Vel::replaced(mlagDomainId_, value)) notify([](NotifieeConst & r) { r.onMlagDomainId(); });
}

void HostV2::mlagStateIs(Mlag::MlagState value) {
    if (Vel::replaced(mlagState_, value)) notify([](NotifieeConst & r) { r.onMlagState(); });
}

void HostV2::mlagPeerLinkIs(Vel::Ptr<PortBaseV2 const> const & value) {
    if (Vel::replaced(mlagPeerLink_, value)) notify([](NotifieeConst & r) { r.onMlagPeerLink(); });
}

Vel::Ptr<PortV2> HostV2::portIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, port_, name, [&] { return PortV2::PortV2Is(std::move(name)); }, onPort);
}

Vel::Ptr<PortV2> HostV2::portIs(Vel::Ptr<PortV2> port) {
    return Mutation::memberIs(*this, port_, std::move(port), "NetworkTopology::HostV2::port", onPort);
}

Vel::Ptr<PortV2> HostV2::portDel(Vel::Name name) { return Mutation::memberDel(*this, port_, name, onPort); }

void HostV2::portDelAll() {
    Mutation::memberDelAll(*this, port_, onPort, [](NotifieeConst & r) { r.onPortvelImmediate(); });
}

Vel::Ptr<PortGroupV2> HostV2::portGroupIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, portGroup_, name, [&] { return PortGroupV2::PortGroupV2Is(std::move(name)); }, onPortGroup);
}

Vel::Ptr<PortGroupV2> HostV2::portGroupIs(Vel::Ptr<PortGroupV2> group) {
    return Mutation::memberIs(*this, portGroup_, std::move(group), "NetworkTopology::HostV2::portGroup",
                              onPortGroup);
}

Vel::Ptr<PortGroupV2> HostV2::portGroupDel(Vel::Name name) {
    return Mutation::memberDel(*this, portGroup_, name, onPortGroup);
}

void HostV2::portGroupDelAll() {
    Mutation::memberDelAll(*this, portGroup_, onPortGroup,
                           [](NotifieeConst & r) { r.onPortGroupvelImmediate(); });
}

Vel::Ptr<MlagV2> HostV2::mlagIs(Vel::Name name, Vel::Name secondaryName) {
    return Mutation::memberIs(
        *this, mlag_, name, [&] { return MlagV2::MlagV2Is(std::move(name), std::move(secondaryName)); },
        onMlag);
}

Vel::Ptr<MlagV2> HostV2::mlagIs(Vel::Ptr<MlagV2> mlag) {
    return Mutation::memberIs(*this, mlag_, std::move(mlag), "NetworkTopology::HostV2::mlag", onMlag);
}

Vel::Ptr<MlagV2> HostV2::mlagDel(Vel::Name name) { return Mutation::memberDel(*this, mlag_, name, onMlag); }

void HostV2::mlagDelAll() {
    Mutation::memberDelAll(*this, mlag_, onMlag, [](NotifieeConst & r) { r.onMlagvelImmediate(); });
}

Vel::Ptr<MlagV2> HostV2::mlagRaw(Vel::Name const & name) const noexcept {
    return Mutation::valueOf(mlagRaw_[name]);
}

void HostV2::mlagRawIs(Vel::Name name, Vel::Ptr<MlagV2> const & mlag) {
    Mutation::valueIs(*this, mlagRaw_, name, mlag, onMlagRaw);
}

void HostV2::mlagRawDel(Vel::Name name) { Mutation::valueDel(*this, mlagRaw_, name, onMlagRaw); }

void HostV2::mlagRawDelAll() {
    Mutation::valueDelAll(*this, mlagRaw_, onMlagRaw, [](NotifieeConst & r) { r.onMlagRawvelImmediate(); });
}

Vel::Ptr<PortBaseV2 const> HostV2::logicalPort(Vel::Name const & name) const noexcept {
    return Mutation::valueOf(logicalPort_[name]);
}

void HostV2::logicalPortIs(Vel::Name name, Vel::Ptr<PortBaseV2 const> const & portBase) {
    Mutation::valueIs(*this, logicalPort_, name, portBase, onLogicalPort);
}

void HostV2::logicalPortDel(Vel::Name name) { Mutation::valueDel(*this, logicalPort_, name, onLogicalPort); }

void HostV2::logicalPortDelAll() {
    Mutation::valueDelAll(*this, logicalPort_, onLogicalPort,
                          [](NotifieeConst & r) { r.onLogicalPortvelImmediate(); });
}

void HostV2::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<HostV2 const>(notifier));
}

void HostV2::NotifieeConst::isRegisteredNotifieeIs(bool registered) const { registeredIs(registered); }

void HostV2::NotifieeConst::onHostname() {}
void HostV2::NotifieeConst::onHostnameAddedByOwner() {}
void HostV2::NotifieeConst::onMlagSystemId() {}
void HostV2::NotifieeConst::onMlagDomainId() {}
void HostV2::NotifieeConst::onMlagState() {}
void HostV2::NotifieeConst::onMlagPeerLink() {}
void HostV2::NotifieeConst::onPort(Vel::Name) {}
void HostV2::NotifieeConst::onPortvelImmediate() {}
void HostV2::NotifieeConst::onPort() {}
void HostV2::NotifieeConst::onPortGroup(Vel::Name) {}
void HostV2::NotifieeConst::onPortGroupvelImmediate() {}
void HostV2::NotifieeConst::onPortGroup() {}
void HostV2::NotifieeConst::onMlag(Vel::Name) {}
void HostV2::NotifieeConst::onMlagvelImmediate() {}
void HostV2::NotifieeConst::onMlag() {}
void HostV2::NotifieeConst::onMlagRaw(Vel::Name) {}
void HostV2::NotifieeConst::onMlagRawvelImmediate() {}
void HostV2::NotifieeConst::onMlagRaw() {}
void HostV2::NotifieeConst::onLogicalPort(Vel::Name) {}
void HostV2::NotifieeConst::onLogicalPortvelImmediate() {}
void HostV2::NotifieeConst::onLogicalPort() {}

namespace {

constexpr Vel::VelArg nameArg[] = {{"name", &Vel::Name::_velType}};
constexpr Vel::VelArg mlagArgs[] = {{"name", &Vel::Name::_velType}, {"secondaryName", &Vel::Name::_velType}};
constexpr Vel::VelArg mlagRawArgs[] = {{"name", &Vel::Name::_velType}, {"mlag", &MlagV2::_velType}};
constexpr Vel::VelArg logicalPortArgs[] = {{"name", &Vel::Name::_velType},
                                           {"portBase", &PortBaseV2::_velType}};

using Attrs = Vel::Attrs<HostV2>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&HostV2::name>("name", 130),
    Attrs::value<&HostV2::hostname, &HostV2::hostnameIs>("hostname", 131),
    Attrs::value<&HostV2::hostnameAddedByOwner, &HostV2::hostnameAddedByOwnerIs>("hostnameAddedByOwner", 132),
    Attrs::value<&HostV2::mlagSystemId, &HostV2::mlagSystemIdIs>("mlagSystemId", 133),
    Attrs::value<&HostV2::mlagDomainId, &HostV2::mlagDomainIdIs>("mlagDomainId", 134),
    Attrs::value<&HostV2::mlagState, &HostV2::mlagStateIs>("mlagState", 135),
    Attrs::value<&HostV2::mlagPeerLink, &HostV2::mlagPeerLinkIs>("mlagPeerLink", 136),
    Attrs::collection<PortV2, Vel::Name, [](HostV2 & o) { return o.port(); },
                      [](HostV2 & o, Vel::Name const & key) { return o.port(key); },
                      [](HostV2 & o, Vel::Ptr<PortV2> const & member) { return o.portIs(member); },
                      &HostV2::portDel, [](HostV2 & o, Vel::Name const & key) { return o.portIs(key); },
                      Vel::Name>("port", 137, "name", nameArg),
    Attrs::function<&HostV2::portDelAll>("portDelAll", 138, {}),
    Attrs::collection<PortGroupV2, Vel::Name, [](HostV2 & o) { return o.portGroup(); },
                      [](HostV2 & o, Vel::Name const & key) { return o.portGroup(key); },
                      [](HostV2 & o, Vel::Ptr<PortGroupV2> const & member) { return o.portGroupIs(member); },
                      &HostV2::portGroupDel,
                      [](HostV2 & o, Vel::Name const & key) { return o.portGroupIs(key); }, Vel::Name>(
        "portGroup", 139, "name", nameArg),
    Attrs::function<&HostV2::portGroupDelAll>("portGroupDelAll", 140, {}),
    Attrs::collection<MlagV2, Vel::Name, [](HostV2 & o) { return o.mlag(); },
                      [](HostV2 & o, Vel::Name const & key) { return o.mlag(key); },
                      [](HostV2 & o, Vel::Ptr<MlagV2> const & member) { return o.mlagIs(member); },
                      &HostV2::mlagDel,
                      [](HostV2 & o, Vel::Name const & key, Vel::Name const & secondaryName) {
                          return o.mlagIs(key, secondaryName);
                      },
                      Vel::Name, Vel::Name>("mlag", 141, "name", mlagArgs),
    Attrs::function<&HostV2::mlagDelAll>("mlagDelAll", 142, {}),
    Attrs::valueCollection<Vel::Name, Vel::Ptr<MlagV2>, [](HostV2 & o) { return o.mlagRaw(); },
                           [](HostV2 & o, Vel::Name const & key) { return o.mlagRawEntry(key); },
                           &HostV2::mlagRawIs, &HostV2::mlagRawDel>("mlagRaw", 143, "name", mlagRawArgs),
    Attrs::function<&HostV2::mlagRawDelAll>("mlagRawDelAll", 144, {}),
    Attrs::valueCollection<Vel::Name, Vel::Ptr<PortBaseV2 const>, [](HostV2 & o) { return o.logicalPort(); },
                           [](HostV2 & o, Vel::Name const & key) { return o.logicalPortEntry(key); },
                           &HostV2::logicalPortIs, &HostV2::logicalPortDel>("logicalPort", 145, "name",
                                                                            logicalPortArgs),
    Attrs::function<&HostV2::logicalPortDelAll>("logicalPortDelAll", 146, {}),
};

}  // namespace

constinit Vel::VelType const HostV2::_velType{{
    .name = "NetworkTopology::HostV2",
    .attributes = attributes,
    .ctorArgs = nameArg,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs = Vel::GenericIfImpl::fromCtorArgs<HostV2, &HostV2::HostV2Is, Vel::Name>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * HostV2::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(HostV2::_velType);

}  // namespace

}  // namespace NetworkTopology
