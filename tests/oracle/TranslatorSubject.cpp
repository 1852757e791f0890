#include "tests/oracle/TranslatorSubject.h"

#include <array>
#include <sstream>

namespace oracle {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyV3::Status;

namespace {

Vel::Name named(Name const & name) { return Vel::Name(name); }
Name plain(Vel::String const & name) { return Name(name.view()); }

Keln::EthAddr address(std::uint64_t value) {
    std::array<std::uint8_t, 6> bytes;
    for (int i = 5; i >= 0; --i, value >>= 8)
        bytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(value);
    return Keln::EthAddr(bytes);
}

// Calls `f` with the member reactor of that kind and name, if there is one.
template <class F>
void withMember(V2Sm::VelHost * host, MemberKind kind, Name const & name, F const & f) {
    if (!host) return;
    auto const call = [&](auto const & reactor) {
        if (reactor) f(*reactor);
    };
    switch (kind) {
    case MemberKind::Port: call(host->port(named(name))); break;
    case MemberKind::PortGroup: call(host->portGroup(named(name))); break;
    case MemberKind::Mlag: call(host->mlag(named(name))); break;
    }
}

}  // namespace

void TranslatorSubject::hold(Handle out, Vel::PtrInterface * object) {
    held_[out] = object;
    objects_[out] = object;
    if (auto const * port = dynamic_cast<PortBaseV2 const *>(object)) ports_[port] = out;
}

template <class T>
T * TranslatorSubject::at(Handle handle) const {
    return handle == 0 ? nullptr : dynamic_cast<T *>(objects_.at(handle));
}

PortBaseV2 * TranslatorSubject::portBase(Handle handle) const { return at<PortBaseV2>(handle); }

V2Sm::VelHost * TranslatorSubject::hostReactor(Name const & host) const {
    return translator_->host(named(host)).get();
}

void TranslatorSubject::statusV2New(Handle out) { hold(out, StatusV2::StatusV2Is().get()); }
void TranslatorSubject::hostV2New(Handle out, Name const & name) {
    hold(out, HostV2::HostV2Is(named(name)).get());
}
void TranslatorSubject::memberV2New(Handle out, MemberKind kind, Name const & name,
                                    Name const & secondaryName) {
    switch (kind) {
    case MemberKind::Port: hold(out, PortV2::PortV2Is(named(name)).get()); break;
    case MemberKind::PortGroup: hold(out, PortGroupV2::PortGroupV2Is(named(name)).get()); break;
    case MemberKind::Mlag: hold(out, MlagV2::MlagV2Is(named(name), named(secondaryName)).get()); break;
    }
}
void TranslatorSubject::edgeV2New(Handle out, Handle fromPort) {
    hold(out, DirectedEdgeV2::DirectedEdgeV2Is(portBase(fromPort)).get());
}
void TranslatorSubject::drop(Handle object) { held_.erase(object); }

void TranslatorSubject::statusHost(Handle status, Name const & name, Handle out) {
    hold(out, at<StatusV2>(status)->hostIs(named(name)).get());
}
void TranslatorSubject::statusHostIs(Handle status, Handle host) {
    at<StatusV2>(status)->hostIs(Vel::Ptr<HostV2>(at<HostV2>(host)));
}
void TranslatorSubject::statusHostDel(Handle status, Name const & name) {
    at<StatusV2>(status)->hostDel(named(name));
}
void TranslatorSubject::statusHostDelAll(Handle status) { at<StatusV2>(status)->hostDelAll(); }
void TranslatorSubject::statusEdge(Handle status, Handle fromPort, Handle out) {
    hold(out, at<StatusV2>(status)->edgeIs(Vel::Ptr<PortBaseV2 const>(portBase(fromPort))).get());
}
void TranslatorSubject::statusEdgeIs(Handle status, Handle edge) {
    at<StatusV2>(status)->edgeIs(Vel::Ptr<DirectedEdgeV2>(at<DirectedEdgeV2>(edge)));
}
void TranslatorSubject::statusEdgeDel(Handle status, Handle fromPort) {
    at<StatusV2>(status)->edgeDel(portBase(fromPort));
}
void TranslatorSubject::statusEdgeDelAll(Handle status) { at<StatusV2>(status)->edgeDelAll(); }
void TranslatorSubject::statusLocalhostIs(Handle status, Handle host) {
    at<StatusV2>(status)->localhostIs(at<HostV2>(host));
}

void TranslatorSubject::hostnameIs(Handle host, std::string const & value) {
    at<HostV2>(host)->hostnameIs(value);
}
void TranslatorSubject::hostnameAddedByOwnerIs(Handle host, bool value) {
    at<HostV2>(host)->hostnameAddedByOwnerIs(value);
}
void TranslatorSubject::mlagSystemIdIs(Handle host, std::uint64_t value) {
    at<HostV2>(host)->mlagSystemIdIs(address(value));
}
void TranslatorSubject::mlagDomainIdIs(Handle host, std::string const & value) {
    at<HostV2>(host)->mlagDomainIdIs(value);
}
void TranslatorSubject::mlagStateIs(Handle host, int value) {
    at<HostV2>(host)->mlagStateIs(static_cast<Mlag::MlagState>(value));
}
void TranslatorSubject::mlagPeerLinkIs(Handle host, Handle port) {
    at<HostV2>(host)->mlagPeerLinkIs(portBase(port));
}
void TranslatorSubject::memberCreate(Handle host, MemberKind kind, Name const & name,
                                     Name const & secondaryName, Handle out) {
    HostV2 & it = *at<HostV2>(host);
    switch (kind) {
    case MemberKind::Port: hold(out, it.portIs(named(name)).get()); break;
    case MemberKind::PortGroup: hold(out, it.portGroupIs(named(name)).get()); break;
    case MemberKind::Mlag: hold(out, it.mlagIs(named(name), named(secondaryName)).get()); break;
    }
}
void TranslatorSubject::memberIs(Handle host, MemberKind kind, Handle member) {
    HostV2 & it = *at<HostV2>(host);
    switch (kind) {
    case MemberKind::Port: it.portIs(Vel::Ptr<PortV2>(at<PortV2>(member))); break;
    case MemberKind::PortGroup: it.portGroupIs(Vel::Ptr<PortGroupV2>(at<PortGroupV2>(member))); break;
    case MemberKind::Mlag: it.mlagIs(Vel::Ptr<MlagV2>(at<MlagV2>(member))); break;
    }
}
void TranslatorSubject::memberDel(Handle host, MemberKind kind, Name const & name) {
    HostV2 & it = *at<HostV2>(host);
    switch (kind) {
    case MemberKind::Port: it.portDel(named(name)); break;
    case MemberKind::PortGroup: it.portGroupDel(named(name)); break;
    case MemberKind::Mlag: it.mlagDel(named(name)); break;
    }
}
void TranslatorSubject::memberDelAll(Handle host, MemberKind kind) {
    HostV2 & it = *at<HostV2>(host);
    switch (kind) {
    case MemberKind::Port: it.portDelAll(); break;
    case MemberKind::PortGroup: it.portGroupDelAll(); break;
    case MemberKind::Mlag: it.mlagDelAll(); break;
    }
}
void TranslatorSubject::logicalPortIs(Handle host, Name const & name, Handle port) {
    at<HostV2>(host)->logicalPortIs(named(name), portBase(port));
}
void TranslatorSubject::logicalPortDel(Handle host, Name const & name) {
    at<HostV2>(host)->logicalPortDel(named(name));
}
void TranslatorSubject::logicalPortDelAll(Handle host) { at<HostV2>(host)->logicalPortDelAll(); }
void TranslatorSubject::mlagRawIs(Handle host, Name const & name, Handle mlag) {
    at<HostV2>(host)->mlagRawIs(named(name), at<MlagV2>(mlag));
}
void TranslatorSubject::mlagRawDel(Handle host, Name const & name) {
    at<HostV2>(host)->mlagRawDel(named(name));
}
void TranslatorSubject::mlagRawDelAll(Handle host) { at<HostV2>(host)->mlagRawDelAll(); }

void TranslatorSubject::typeIs(Handle port, int value) {
    portBase(port)->typeIs(static_cast<NetworkTopology::PortTypeV2>(value));
}
void TranslatorSubject::addedByOwnerIs(Handle port, bool value) { portBase(port)->addedByOwnerIs(value); }
void TranslatorSubject::portGroupIs(Handle port, Handle group) {
    at<PortV2>(port)->portGroupIs(at<PortGroupV2>(group));
}
void TranslatorSubject::memberPortIs(Handle group, Name const & name, Handle port) {
    at<PortGroupV2>(group)->memberPortIs(named(name), at<PortV2>(port));
}
void TranslatorSubject::memberPortDel(Handle group, Name const & name) {
    at<PortGroupV2>(group)->memberPortDel(named(name));
}
void TranslatorSubject::memberPortDelAll(Handle group) { at<PortGroupV2>(group)->memberPortDelAll(); }
void TranslatorSubject::groupMlagIs(Handle group, Handle mlag) {
    at<PortGroupV2>(group)->mlagIs(at<MlagV2>(mlag));
}
void TranslatorSubject::secondaryNameIs(Handle mlag, Name const & value) {
    at<MlagV2>(mlag)->secondaryNameIs(named(value));
}
void TranslatorSubject::localPortGroupIs(Handle mlag, Handle group) {
    at<MlagV2>(mlag)->localPortGroupIs(at<PortGroupV2>(group));
}
void TranslatorSubject::peerPortGroupIs(Handle mlag, Handle group) {
    at<MlagV2>(mlag)->peerPortGroupIs(at<PortGroupV2>(group));
}
void TranslatorSubject::toPortIs(Handle edge, Handle port, bool flag) {
    at<DirectedEdgeV2>(edge)->toPortIs(portBase(port), flag);
}
void TranslatorSubject::toPortDel(Handle edge, Handle port) {
    at<DirectedEdgeV2>(edge)->toPortDel(portBase(port));
}
void TranslatorSubject::toPortDelAll(Handle edge) { at<DirectedEdgeV2>(edge)->toPortDelAll(); }

void TranslatorSubject::statusV3New(Handle out) { hold(out, Status::StatusIs().get()); }
void TranslatorSubject::outputHostIs(Handle status, Name const & name) {
    at<Status>(status)->hostIs(named(name));
}
void TranslatorSubject::outputHostDel(Handle status, Name const & name) {
    at<Status>(status)->hostDel(named(name));
}
void TranslatorSubject::outputMemberIs(Handle status, Name const & host, MemberKind kind, Name const & name) {
    auto const it = at<Status>(status)->host(named(host));
    if (!it) return;
    switch (kind) {
    case MemberKind::Port: it->portIs(named(name)); break;
    case MemberKind::PortGroup: it->portGroupIs(named(name)); break;
    case MemberKind::Mlag: it->mlagIs(named(name), Vel::Name()); break;
    }
}
void TranslatorSubject::outputMemberDel(Handle status, Name const & host, MemberKind kind,
                                        Name const & name) {
    auto const it = at<Status>(status)->host(named(host));
    if (!it) return;
    switch (kind) {
    case MemberKind::Port: it->portDel(named(name)); break;
    case MemberKind::PortGroup: it->portGroupDel(named(name)); break;
    case MemberKind::Mlag: it->mlagDel(named(name)); break;
    }
}

void TranslatorSubject::create(Handle statusV2, Handle statusV3) {
    translator_ = NetworkTopologyAggregator::v2SmFactory(
        "tape", Vel::Ptr<StatusV2 const>(at<StatusV2>(statusV2)), Vel::Ptr<Status>(at<Status>(statusV3)));
}
void TranslatorSubject::destroy() { translator_ = nullptr; }
void TranslatorSubject::v2Is(Handle status) { translator_->v2Is(at<StatusV2>(status)); }
void TranslatorSubject::v3Is(Handle status) { translator_->v3Is(at<Status>(status)); }
bool TranslatorSubject::v2Del() { return bool(translator_->v2Del()); }
bool TranslatorSubject::v3Del() { return bool(translator_->v3Del()); }
void TranslatorSubject::populateV3() { translator_->populateV3(); }
void TranslatorSubject::hostIs(Handle host) { translator_->hostIs(at<HostV2>(host)); }
std::string TranslatorSubject::hostDel(Name const & name) {
    auto const host = translator_->hostDel(named(name));
    return host ? quoted(plain(host->name())) : "null";
}
void TranslatorSubject::hostDelAll() { translator_->hostDelAll(); }
void TranslatorSubject::edgeIs(Handle edge) {
    translator_->edgeIs(Vel::Ptr<DirectedEdgeV2 const>(at<DirectedEdgeV2>(edge)));
}
bool TranslatorSubject::edgeDel(Handle fromPort) {
    return bool(translator_->edgeDel(Vel::Ptr<PortBaseV2 const>(portBase(fromPort))));
}
void TranslatorSubject::edgeDelAll() { translator_->edgeDelAll(); }
void TranslatorSubject::velDoZombieReactors(bool zombie) { translator_->velDoZombieReactors(zombie); }
void TranslatorSubject::hasNotificationActiveIs(bool active) { translator_->hasNotificationActiveIs(active); }

void TranslatorSubject::hostMemberIs(Name const & host, MemberKind kind, Handle member) {
    Vel::Ptr<V2Sm::VelHost> const reactor = hostReactor(host);
    if (!reactor) return;
    switch (kind) {
    case MemberKind::Port: reactor->portIs(Vel::Ptr<PortV2 const>(at<PortV2>(member))); break;
    case MemberKind::PortGroup:
        reactor->portGroupIs(Vel::Ptr<PortGroupV2 const>(at<PortGroupV2>(member)));
        break;
    case MemberKind::Mlag: reactor->mlagIs(Vel::Ptr<MlagV2 const>(at<MlagV2>(member))); break;
    }
}
void TranslatorSubject::hostMemberDel(Name const & host, MemberKind kind, Name const & name) {
    auto * const reactor = hostReactor(host);
    if (!reactor) return;
    switch (kind) {
    case MemberKind::Port: reactor->portDel(named(name)); break;
    case MemberKind::PortGroup: reactor->portGroupDel(named(name)); break;
    case MemberKind::Mlag: reactor->mlagDel(named(name)); break;
    }
}
void TranslatorSubject::hostMemberDelAll(Name const & host, MemberKind kind) {
    auto * const reactor = hostReactor(host);
    if (!reactor) return;
    switch (kind) {
    case MemberKind::Port: reactor->portDelAll(); break;
    case MemberKind::PortGroup: reactor->portGroupDelAll(); break;
    case MemberKind::Mlag: reactor->mlagDelAll(); break;
    }
}
void TranslatorSubject::hostReactorDoZombie(Name const & host, bool zombie) {
    if (auto * const reactor = hostReactor(host)) reactor->velDoZombieReactors(zombie);
}
void TranslatorSubject::memberReactorDoZombie(Name const & host, MemberKind kind, Name const & name,
                                              bool zombie) {
    withMember(hostReactor(host), kind, name, [&](auto & reactor) { reactor.velDoZombieReactors(zombie); });
}
void TranslatorSubject::edgeReactorDoZombie(Handle fromPort, bool zombie) {
    if (auto const reactor = translator_->edge(portBase(fromPort))) reactor->velDoZombieReactors(zombie);
}
void TranslatorSubject::hostReactorUnbind(Name const & host) {
    if (auto * const reactor = hostReactor(host)) reactor->notifierIs(nullptr);
}
void TranslatorSubject::memberReactorUnbind(Name const & host, MemberKind kind, Name const & name) {
    withMember(hostReactor(host), kind, name, [](auto & reactor) { reactor.notifierIs(nullptr); });
}
void TranslatorSubject::edgeReactorUnbind(Handle fromPort) {
    if (auto const reactor = translator_->edge(portBase(fromPort))) reactor->notifierIs(nullptr);
}

// ---- the version-3 model

namespace {

using NetworkTopologyV3::Host;
using NetworkTopologyV3::MlagPort;
using NetworkTopologyV3::Port;
using NetworkTopologyV3::PortBase;
using NetworkTopologyV3::PortGroup;

// The path of a reference, if looking it up in this very status gives the same object.
std::string reference(Status const & status, PortBase const * port) {
    Host const * const host = port ? port->host() : nullptr;
    if (!host || status.host(host->name()) != host) return "null";
    MemberKind const kind = dynamic_cast<Port const *>(port)        ? MemberKind::Port
                            : dynamic_cast<PortGroup const *>(port) ? MemberKind::PortGroup
                                                                    : MemberKind::Mlag;
    return memberPath(plain(host->name()), kind, plain(port->name()));
}

std::string printed(NetworkTopologyV3::PortKey const & key) {
    std::ostringstream out;
    out << key;
    return out.str();
}

Document::Host document(Status const & status, Host const & host) {
    Document::Host out;
    out.hostname = plain(host.hostname());
    out.mlagSystemId = host.mlagSystemId().value();
    out.mlagDomainId = plain(host.mlagDomainId());
    out.mlagState = static_cast<int>(host.mlagState());
    out.mlagPeerLink = reference(status, host.mlagPeerLink().get());
    for (auto const & port : host.port()) {
        out.port[plain(port->name())] = {static_cast<int>(port->type()),
                                         reference(status, port->portGroup())};
    }
    for (auto const & group : host.portGroup()) {
        auto & it = out.portGroup[plain(group->name())];
        it.type = static_cast<int>(group->type());
        for (auto const & member : group->memberPort()) {
            it.memberPort[plain(member.key())] = reference(status, member.value().get());
        }
        it.mlag = reference(status, group->mlag());
    }
    for (auto const & mlag : host.mlag()) {
        out.mlag[plain(mlag->name())] = {static_cast<int>(mlag->type()), plain(mlag->secondaryName()),
                                         reference(status, mlag->localPortGroup().get())};
    }
    for (auto const & raw : host.mlagRaw())
        out.mlagRaw[plain(raw.key())] = reference(status, raw.value().get());
    for (auto const & logical : host.logicalPort()) {
        out.logicalPort[plain(logical.key())] = reference(status, logical.value().get());
    }
    return out;
}

}  // namespace

Document TranslatorSubject::document(Handle handle) const {
    Status const & status = *at<Status>(handle);
    Document out;
    if (auto const & localhost = status.localhost();
        localhost && status.host(localhost->name()) == localhost) {
        out.localhost = hostPath(plain(localhost->name()));
    }
    for (auto const & host : status.host()) out.host[plain(host->name())] = oracle::document(status, *host);
    for (auto const & edge : status.edge()) {
        auto & destinations = out.edge[printed(edge->fromPort())];
        for (auto const & to : edge->toPort()) destinations[printed(to.key())] = to.value();
    }
    return out;
}

// ---- the version-2 model and the reactors

std::vector<Name> TranslatorSubject::walkNames(Walk walk, Handle owner) const {
    std::vector<Name> names;
    auto const addMembers = [&](auto const & range) {
        for (auto const & member : range) names.push_back(plain(member->name()));
    };
    auto const addEntries = [&](auto const & range) {
        for (auto const & entry : range) names.push_back(plain(entry.key()));
    };
    if (owner == 0) return names;
    auto const * const host = at<HostV2 const>(owner);
    switch (walk) {
    case Walk::Host: addMembers(at<StatusV2 const>(owner)->host()); break;
    case Walk::Port: addMembers(host->port()); break;
    case Walk::PortGroup: addMembers(host->portGroup()); break;
    case Walk::Mlag: addMembers(host->mlag()); break;
    case Walk::LogicalPort: addEntries(host->logicalPort()); break;
    case Walk::MlagRaw: addEntries(host->mlagRaw()); break;
    case Walk::MemberPort: addEntries(at<PortGroupV2 const>(owner)->memberPort()); break;
    case Walk::Edge:
    case Walk::ToPort: break;
    }
    return names;
}

std::vector<Handle> TranslatorSubject::walkPorts(Walk walk, Handle owner) const {
    std::vector<Handle> handles;
    auto const add = [&](PortBaseV2 const * port) { handles.push_back(port ? ports_.at(port) : 0); };
    if (owner == 0) return handles;
    if (walk == Walk::Edge) {
        for (auto const & edge : at<StatusV2 const>(owner)->edge()) add(edge->fromPort().get());
    } else if (walk == Walk::ToPort) {
        for (auto const & to : at<DirectedEdgeV2 const>(owner)->toPort()) add(to.key().get());
    }
    return handles;
}

std::optional<std::string> TranslatorSubject::describe(Handle object) const {
    auto const flag = [](bool value) { return std::string(value ? "1" : "0"); };
    auto const nameOf = [](auto const & target) { return target ? quoted(plain(target->name())) : "null"; };
    auto const members = [](auto const & range) {
        std::vector<Name> names;
        for (auto const & member : range) names.push_back(plain(member->name()));
        return bracketed(std::move(names));
    };
    auto const entries = [](auto const & range) {
        std::vector<Name> names;
        for (auto const & entry : range) names.push_back(plain(entry.key()));
        return bracketed(std::move(names));
    };
    auto const enumerator = [](auto value) { return std::to_string(static_cast<int>(value)); };

    if (auto const * s = at<StatusV2 const>(object)) {
        return facts({{"host", members(s->host())},
                      {"edge", std::to_string(s->edge().size())},
                      {"localhost", nameOf(s->localhost())}});
    }
    if (auto const * h = at<HostV2 const>(object)) {
        return facts({{"name", quoted(plain(h->name()))},
                      {"hostname", quoted(plain(h->hostname()))},
                      {"hostnameAddedByOwner", flag(h->hostnameAddedByOwner())},
                      {"mlagSystemId", std::to_string(h->mlagSystemId().value())},
                      {"mlagDomainId", quoted(plain(h->mlagDomainId()))},
                      {"mlagState", enumerator(h->mlagState())},
                      {"mlagPeerLink", nameOf(h->mlagPeerLink())},
                      {"port", members(h->port())},
                      {"portGroup", members(h->portGroup())},
                      {"mlag", members(h->mlag())},
                      {"logicalPort", entries(h->logicalPort())},
                      {"mlagRaw", entries(h->mlagRaw())}});
    }
    if (auto const * e = at<DirectedEdgeV2 const>(object)) {
        return facts({{"fromPort", nameOf(e->fromPort())}, {"toPort", std::to_string(e->toPort().size())}});
    }
    auto const * const base = at<PortBaseV2 const>(object);
    if (!base) return std::nullopt;
    std::vector<std::pair<std::string, std::string>> out{{"name", quoted(plain(base->name()))},
                                                         {"host", nameOf(base->host())},
                                                         {"type", enumerator(base->type())},
                                                         {"addedByOwner", flag(base->addedByOwner())}};
    if (auto const * port = dynamic_cast<PortV2 const *>(base)) {
        out.emplace_back("portGroup", nameOf(port->portGroup()));
    } else if (auto const * group = dynamic_cast<PortGroupV2 const *>(base)) {
        out.emplace_back("memberPort", entries(group->memberPort()));
        out.emplace_back("mlag", nameOf(group->mlag()));
    } else if (auto const * mlag = dynamic_cast<MlagV2 const *>(base)) {
        out.emplace_back("secondaryName", quoted(plain(mlag->secondaryName())));
        out.emplace_back("localPortGroup", nameOf(mlag->localPortGroup()));
        out.emplace_back("peerPortGroup", nameOf(mlag->peerPortGroup()));
    }
    return facts(out);
}

std::optional<ReactorState> TranslatorSubject::reactors() const {
    if (!translator_) return ReactorState{.kind = "none"};
    auto const state = [](std::string kind, Name name, auto const & reactor) {
        return ReactorState{std::move(kind),
                            std::move(name),
                            reactor.notifier() != nullptr,
                            reactor.hasNotificationActive(),
                            reactor.velMarkedForDeletion(),
                            {}};
    };
    ReactorState root{
        "root", "", true, translator_->hasNotificationActive(), translator_->velMarkedForDeletion(), {}};
    if (auto const v2 = translator_->velV2()) root.children.push_back(state("VelV2", "", *v2));
    if (auto const v3 = translator_->velV3()) root.children.push_back(state("VelV3", "", *v3));
    for (auto const & host : translator_->host()) {
        auto it = state("host", plain(host->fwkKey()), *host);
        auto const add = [&](MemberKind kind, auto const & range) {
            for (auto const & member : range) {
                it.children.push_back(state(collectionName(kind), plain(member->fwkKey()), *member));
            }
        };
        add(MemberKind::Port, host->port());
        add(MemberKind::PortGroup, host->portGroup());
        add(MemberKind::Mlag, host->mlag());
        root.children.push_back(std::move(it));
    }
    for (auto const & edge : translator_->edge()) {
        auto const from = edge->fwkKey();
        root.children.push_back(state("edge", from ? plain(from->name()) : "", *edge));
    }
    return root;
}

}  // namespace oracle
