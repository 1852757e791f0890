#include "tests/tools/check/RandomTape.h"

#include <algorithm>

namespace TopologyTools {

using namespace NetworkTopology;

template <class Object>
Vel::Ptr<Object> RandomTape::anyOf(Pool<Object> const & pool) {
    return pool.empty() || chance(15) ? nullptr : pool[below(pool.size())];
}

Vel::Ptr<PortBaseV2 const> RandomTape::anyPortBase() {
    switch (below(3)) {
    case 0: return anyOf(ports_);
    case 1: return anyOf(groups_);
    default: return anyOf(mlags_);
    }
}

HostV2::Ptr RandomTape::anyHost() { return v2_.host(hostName()); }

HostV2::Ptr RandomTape::newHost() {
    hosts_.push_back(HostV2::HostV2Is(hostName()));
    if (chance(70)) fill(*hosts_.back());
    return hosts_.back();
}

void RandomTape::fill(HostV2 & host) {
    for (std::size_t i = below(4); i != 0; --i) changeMembers(host);
    for (std::size_t i = below(4); i != 0; --i) changeEntries(host);
    for (std::size_t i = below(4); i != 0; --i) changeAttributes(host);
    for (std::size_t i = below(4); i != 0; --i) changePortBases();
}

void RandomTape::changeHosts() {
    switch (below(12)) {
    case 0:
        if (HostV2::Ptr const host = anyOf(hosts_); host && !v2_.host(host->name())) v2_.hostIs(host);
        break;
    case 1: v2_.hostIs(newHost()); break;
    case 2: v2_.hostDel(hostName()); break;
    case 3:
        if (chance(30)) v2_.hostDelAll();
        break;
    case 4:
    case 5: v2_.localhostIs(chance(80) ? anyHost() : anyOf(hosts_)); break;
    default: hosts_.push_back(v2_.hostIs(hostName())); break;
    }
}

void RandomTape::changeMembers(HostV2 & host) {
    std::size_t const kind = below(3);
    switch (below(10)) {
    case 0:
        if (kind == 0) host.portDel(name());
        if (kind == 1) host.portGroupDel(name());
        if (kind == 2) host.mlagDel(name());
        break;
    case 1:
        if (!chance(20)) break;
        if (kind == 0) host.portDelAll();
        if (kind == 1) host.portGroupDelAll();
        if (kind == 2) host.mlagDelAll();
        break;
    case 2:
        if (auto const port = anyOf(ports_); kind == 0 && port && !port->host()) host.portIs(port);
        if (auto const group = anyOf(groups_); kind == 1 && group && !group->host()) host.portGroupIs(group);
        if (auto const mlag = anyOf(mlags_); kind == 2 && mlag && !mlag->host()) host.mlagIs(mlag);
        break;
    case 3:
    case 4:
        if (kind == 0) ports_.push_back(PortV2::PortV2Is(name()));
        if (kind == 1) groups_.push_back(PortGroupV2::PortGroupV2Is(name()));
        if (kind == 2) mlags_.push_back(MlagV2::MlagV2Is(name(), name()));
        for (std::size_t i = below(4); i != 0; --i) changePortBases();
        if (kind == 0) host.portIs(ports_.back());
        if (kind == 1) host.portGroupIs(groups_.back());
        if (kind == 2) host.mlagIs(mlags_.back());
        break;
    default:
        if (kind == 0) ports_.push_back(host.portIs(name()));
        if (kind == 1) groups_.push_back(host.portGroupIs(name()));
        if (kind == 2) mlags_.push_back(host.mlagIs(name(), name()));
        break;
    }
}

void RandomTape::changeAttributes(HostV2 & host) {
    switch (below(5)) {
    case 0: host.hostnameIs(Vel::String(name().view())); break;
    case 1: host.mlagDomainIdIs(Vel::String(name().view())); break;
    case 2:
        host.mlagSystemIdIs(chance(30) ? Keln::EthAddr() : *Keln::EthAddr::parse("02:00:00:00:00:01"));
        break;
    case 3: host.mlagStateIs(static_cast<Mlag::MlagState>(below(4))); break;
    default: host.mlagPeerLinkIs(anyPortBase()); break;
    }
}

void RandomTape::changeEntries(HostV2 & host) {
    switch (below(8)) {
    case 0: host.mlagRawDel(name()); break;
    case 1: host.logicalPortDel(name()); break;
    case 2:
        if (chance(30)) host.mlagRawDelAll();
        if (chance(30)) host.logicalPortDelAll();
        break;
    case 3:
    case 4: host.mlagRawIs(name(), anyOf(mlags_)); break;
    default: host.logicalPortIs(name(), anyPortBase()); break;
    }
}

void RandomTape::changePortBases() {
    auto const type = static_cast<PortTypeV2>(below(4));
    switch (below(4)) {
    case 0:
        if (auto const port = anyOf(ports_)) {
            chance(40) ? port->typeIs(type) : port->portGroupIs(anyOf(groups_));
        }
        break;
    case 1:
        if (auto const mlag = anyOf(mlags_)) {
            if (chance(20)) mlag->secondaryNameIs(name());
            chance(40) ? mlag->typeIs(type) : mlag->localPortGroupIs(anyOf(groups_));
        }
        break;
    default:
        if (auto const group = anyOf(groups_)) {
            if (chance(20))
                group->typeIs(type);
            else if (chance(30))
                group->mlagIs(anyOf(mlags_));
            else if (chance(20))
                group->memberPortDel(name());
            else if (chance(5))
                group->memberPortDelAll();
            else
                group->memberPortIs(name(), anyOf(ports_));
        }
        break;
    }
}

void RandomTape::changeEdges() {
    Vel::Ptr<PortBaseV2 const> const from = anyPortBase();
    DirectedEdgeV2::Ptr const edge = v2_.edge(from);
    switch (below(10)) {
    case 0: v2_.edgeDel(from); break;
    case 1: {
        DirectedEdgeV2::Ptr const other = DirectedEdgeV2::DirectedEdgeV2Is(from);
        for (std::size_t i = below(3); i != 0; --i) other->toPortIs(anyPortBase(), chance(50));
        v2_.edgeIs(other);
        break;
    }
    case 2:
        if (chance(10)) v2_.edgeDelAll();
        break;
    case 3:
        if (edge) edge->toPortDel(anyPortBase());
        break;
    case 4:
        if (edge && chance(30)) edge->toPortDelAll();
        break;
    default: v2_.edgeIs(from)->toPortIs(anyPortBase(), chance(50)); break;
    }
}

void RandomTape::changeTranslator() {
    Checker & checker = checked_.checker;
    switch (below(12)) {
    case 0: checker.inputIs(nullptr); break;
    case 1: checker.outputIsBoundIs(false); break;
    case 2: checker.notificationActiveIs(false); break;
    default:
        checker.inputIs(checked_.v2);
        checker.outputIsBoundIs(true);
        checker.notificationActiveIs(true);
    }
}

void RandomTape::forget() {
    auto const drop = [this](auto & pool) {
        if (!pool.empty()) pool.erase(pool.begin() + static_cast<std::ptrdiff_t>(below(pool.size())));
    };
    drop(hosts_);
    drop(ports_);
    drop(groups_);
    drop(mlags_);
}

std::string RandomTape::step() {
    checked_.nextLine();
    HostV2::Ptr const host = anyHost();
    std::size_t const kind = below(100);
    if (kind < 12 || (!host && kind < 70)) return changeHosts(), "hosts";
    if (kind < 35) return changeMembers(*host), "members";
    if (kind < 42) return changeAttributes(*host), "attributes";
    if (kind < 52) return changeEntries(*host), "entries";
    if (kind < 70) return changePortBases(), "port bases";
    if (kind < 88) return changeEdges(), "edges";
    if (kind < 94) return forget(), "forget";
    return changeTranslator(), "translator";
}

}  // namespace TopologyTools
