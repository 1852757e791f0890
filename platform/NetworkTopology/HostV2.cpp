#include "platform/NetworkTopology/HostV2.h"

#include <utility>

#include "platform/NetworkTopology/Mutation.h"

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

HostV2::HostV2(Vel::Name name) noexcept : name_(std::move(name)) {}

HostV2::~HostV2() {
    Mutation::disown(port_);
    Mutation::disown(portGroup_);
    Mutation::disown(mlag_);
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
        *this, port_, name, [&] { return PortV2::PortV2Is(name); }, onPort);
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
        *this, portGroup_, name, [&] { return PortGroupV2::PortGroupV2Is(name); }, onPortGroup);
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
        *this, mlag_, name, [&] { return MlagV2::MlagV2Is(name, secondaryName); }, onMlag);
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

HostV2::NotifieeConst::~NotifieeConst() = default;

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

}  // namespace NetworkTopology
