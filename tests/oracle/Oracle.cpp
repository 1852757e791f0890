#include "tests/oracle/Oracle.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace oracle {

namespace {

// What the registries say to null; the closing double quote belongs to the text.
constexpr char kNullHost[] =
    "null _host parameter to mutator for NetworkTopologyAggregator::V2Sm::host not allowed\"";
constexpr char kNullEdge[] =
    "null _edge parameter to mutator for NetworkTopologyAggregator::V2Sm::edge not allowed\"";
constexpr char const * kNullMember[] = {
    "null _port parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::port not allowed\"",
    ("null _portGroup parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::portGroup not "
     "allowed\""),
    "null _mlag parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::mlag not allowed\""};

std::size_t slot(MemberKind kind) { return static_cast<std::size_t>(kind); }

Walk memberWalk(MemberKind kind) {
    switch (kind) {
    case MemberKind::Port: return Walk::Port;
    case MemberKind::PortGroup: return Walk::PortGroup;
    case MemberKind::Mlag: return Walk::Mlag;
    }
    throw std::logic_error("no such member kind");
}

template <class Key>
Id find(std::map<Key, Id> const & table, Key const & key) {
    auto const entry = table.find(key);
    return entry == table.end() ? kNull : entry->second;
}

template <class Key, class Value>
std::vector<Key> keys(std::map<Key, Value> const & table) {
    std::vector<Key> result;
    for (auto const & [key, value] : table) result.push_back(key);
    return result;
}

template <class Key>
void permute(std::function<void(Walk, Id, std::vector<Key> &)> const & order, Walk kind, Id owner,
             std::vector<Key> & walk) {
    if (!order) return;
    auto const ascending = walk;
    order(kind, owner, walk);
    auto again = walk;
    std::sort(again.begin(), again.end());
    if (again != ascending)
        throw std::logic_error("the order given for a walk has other keys than the collection");
}

template <class T>
bool replaced(T & field, T const & value) {
    if (field == value) return false;
    field = value;
    return true;
}

std::string token(std::string const & text) {
    std::string result;
    for (char const c : text) {
        if (c == '~')
            result += "~0";
        else if (c == '/')
            result += "~1";
        else
            result += c;
    }
    return result;
}

std::string shown(bool value) { return value ? "true" : "false"; }

}  // namespace

char const * collectionName(MemberKind kind) {
    switch (kind) {
    case MemberKind::Port: return "port";
    case MemberKind::PortGroup: return "portGroup";
    case MemberKind::Mlag: return "mlag";
    }
    throw std::logic_error("no such member kind");
}

std::string hostPath(Name const & host) { return "/host/" + token(host); }

std::string memberPath(Name const & host, MemberKind kind, Name const & member) {
    return hostPath(host) + "/" + collectionName(kind) + "/" + token(member);
}

std::string quoted(std::string const & text) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string result = "\"";
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (byte < 0x20 || byte >= 0x7f) {
            result += "\\x";
            result += kDigits[byte >> 4];
            result += kDigits[byte & 15];
        } else {
            result += c;
        }
    }
    return result + "\"";
}

std::string Write::text() const {
    std::string result = target + " " + mutator + "(";
    for (std::size_t i = 0; i < arguments.size(); ++i) result += (i ? ", " : "") + arguments[i];
    return result + ")";
}

std::string Document::text() const {
    auto const entries = [](auto const & table, std::string const & name) {
        std::string lines;
        for (auto const & [key, target] : table)
            lines += "  " + name + " " + quoted(key) + ": " + target + "\n";
        return lines;
    };
    std::string out = "localhost: " + localhost + "\n";
    for (auto const & [name, h] : host) {
        out += "host " + quoted(name) + "\n";
        out += "  hostname: " + quoted(h.hostname) + "\n";
        out += "  mlagSystemId: " + std::to_string(h.mlagSystemId) + "\n";
        out += "  mlagDomainId: " + quoted(h.mlagDomainId) + "\n";
        out += "  mlagState: " + std::to_string(h.mlagState) + "\n";
        out += "  mlagPeerLink: " + h.mlagPeerLink + "\n";
        for (auto const & [key, p] : h.port)
            out += "  port " + quoted(key) + ": type " + std::to_string(p.type) + ", portGroup " +
                   p.portGroup + "\n";
        for (auto const & [key, g] : h.portGroup) {
            out +=
                "  portGroup " + quoted(key) + ": type " + std::to_string(g.type) + ", mlag " + g.mlag + "\n";
            for (auto const & [member, target] : g.memberPort)
                out += "    memberPort " + quoted(member) + ": " + target + "\n";
        }
        for (auto const & [key, m] : h.mlag)
            out += "  mlag " + quoted(key) + ": type " + std::to_string(m.type) + ", secondaryName " +
                   quoted(m.secondaryName) + ", localPortGroup " + m.localPortGroup + "\n";
        out += entries(h.mlagRaw, "mlagRaw");
        out += entries(h.logicalPort, "logicalPort");
    }
    for (auto const & [key, toPort] : edge) {
        out += "edge " + key + "\n";
        for (auto const & [to, flag] : toPort) out += "  toPort " + to + ": " + shown(flag) + "\n";
    }
    return out;
}

// One call from outside. What it handed out or replaced is let go at its end.
class Oracle::Operation {
public:
    explicit Operation(Oracle & oracle) : oracle_(oracle) { oracle_.writes_.clear(); }
    Operation(Operation const &) = delete;
    Operation & operator=(Operation const &) = delete;
    ~Operation() {
        oracle_.inHand_.clear();
        oracle_.sweep();
    }

private:
    Oracle & oracle_;
};

Oracle::Oracle(Options options, WalkOrder order) : options_(options), order_(std::move(order)) {}

// ---- life

void Oracle::mark(Id object, Marks & marked) const {
    std::vector<Id> pending = {object};
    auto const all = [&pending](auto const & table) {
        for (auto const & [key, value] : table) pending.push_back(value);
    };
    while (!pending.empty()) {
        Id const id = pending.back();
        pending.pop_back();
        if (id == kNull || !marked.insert(id)) continue;
        if (auto const s = statusV2_.find(id); s != statusV2_.end()) {
            all(s->second.host);
            all(s->second.edge);
            pending.push_back(s->second.localhost);
        } else if (auto const h = hostV2_.find(id); h != hostV2_.end()) {
            for (auto const & member : h->second.member) all(member);
            all(h->second.logicalPort);
            all(h->second.mlagRaw);
            pending.push_back(h->second.mlagPeerLink);
        } else if (auto const p = portBaseV2_.find(id); p != portBaseV2_.end()) {
            all(p->second.memberPort);
            pending.push_back(p->second.localPortGroup);
            pending.push_back(p->second.peerPortGroup);
        } else if (auto const e = edgeV2_.find(id); e != edgeV2_.end()) {
            pending.push_back(e->second.fromPort);
            for (auto const & [port, flag] : e->second.toPort) pending.push_back(port);
        } else if (auto const s3 = statusV3_.find(id); s3 != statusV3_.end()) {
            all(s3->second.host);
            all(s3->second.edge);
            pending.push_back(s3->second.localhost);
        } else if (auto const h3 = hostV3_.find(id); h3 != hostV3_.end()) {
            for (auto const & member : h3->second.member) all(member);
            all(h3->second.logicalPort);
            all(h3->second.mlagRaw);
            pending.push_back(h3->second.mlagPeerLink);
        } else if (auto const p3 = portBaseV3_.find(id); p3 != portBaseV3_.end()) {
            all(p3->second.memberPort);
            pending.push_back(p3->second.localPortGroup);
        } else if (!edgeV3_.contains(id)) {
            throw std::logic_error("a reference to an object that is gone");
        }
    }
}

void Oracle::sweep() {
    Marks marked(lastId_);
    for (auto const & [id, count] : held_) mark(id, marked);
    for (Id const id : inHand_) mark(id, marked);
    for (auto const & [id, r] : reactors_) {
        mark(r.notifier, marked);
        mark(r.output, marked);
    }
    if (root_) {
        // The key outlives the edge that an unbound reactor has lost.
        for (auto const & [fromPort, reactor] : root_->edge) mark(fromPort, marked);
    }
    auto const purge = [&marked](auto & table) {
        std::erase_if(table, [&marked](auto const & entry) { return !marked.contains(entry.first); });
    };
    purge(statusV2_);
    purge(hostV2_);
    purge(portBaseV2_);
    purge(edgeV2_);
    purge(statusV3_);
    purge(hostV3_);
    purge(portBaseV3_);
    purge(edgeV3_);
    auto const forget = [&marked](Id & reference) {
        if (!marked.contains(reference)) reference = kNull;
    };
    for (auto & [id, h] : hostV2_) forget(h.status);
    for (auto & [id, e] : edgeV2_) forget(e.status);
    for (auto & [id, p] : portBaseV2_) {
        forget(p.host);
        forget(p.portGroup);
        forget(p.mlag);
    }
    for (auto & [id, h] : hostV3_) forget(h.status);
    for (auto & [id, e] : edgeV3_) forget(e.status);
    for (auto & [id, p] : portBaseV3_) {
        forget(p.host);
        forget(p.portGroup);
        forget(p.mlag);
    }
}

void Oracle::hold(Id object) {
    if (!alive(object)) throw std::logic_error("hold on an object that is gone");
    ++held_[object];
}

void Oracle::drop(Id object) {
    Operation const operation(*this);
    if (--held_.at(object) == 0) held_.erase(object);
}

bool Oracle::alive(Id object) const {
    return statusV2_.contains(object) || hostV2_.contains(object) || portBaseV2_.contains(object) ||
           edgeV2_.contains(object) || statusV3_.contains(object) || hostV3_.contains(object) ||
           portBaseV3_.contains(object) || edgeV3_.contains(object);
}

// ---- walks

std::vector<Name> Oracle::walk(Walk kind, Id owner, std::map<Name, Id> const & collection) const {
    auto result = keys(collection);
    permute(order_.names, kind, owner, result);
    return result;
}

template <class Value>
std::vector<Id> Oracle::walk(Walk kind, Id owner, std::map<Id, Value> const & collection) const {
    auto result = keys(collection);
    permute(order_.ports, kind, owner, result);
    return result;
}

// ---- delivery

void Oracle::deliver(Id object, std::function<void(Id reactor)> const & callback) {
    std::vector<std::pair<int, Id>> listed;
    for (auto const & [id, r] : reactors_) {
        if (r.registered && r.notifier == object) listed.emplace_back(r.serial, id);
    }
    std::sort(listed.begin(), listed.end());
    for (auto const & [serial, id] : listed) {
        auto const entry = reactors_.find(id);
        if (entry == reactors_.end()) continue;
        auto const & r = entry->second;
        if (r.registered && r.serial == serial && r.notifier == object && r.active) callback(id);
    }
}

void Oracle::bind(Id reactor, Id object) {
    at(reactor).registered = false;
    at(reactor).notifier = object;
    sweep();
}

void Oracle::enlist(Id reactor) {
    auto & r = at(reactor);
    if (r.registered) return;
    r.registered = true;
    r.serial = ++lastSerial_;
}

// ---- version-2 objects

Id Oracle::statusV2New() {
    Id const id = next();
    statusV2_[id] = {};
    hold(id);
    return id;
}

Id Oracle::hostV2New(Name const & name) {
    Id const id = next();
    hostV2_[id].name = name;
    hold(id);
    return id;
}

Id Oracle::memberV2New(MemberKind kind, Name const & name, Name const & secondaryName) {
    Id const id = next();
    PortBaseV2 member;
    member.kind = kind;
    member.name = name;
    if (kind == MemberKind::Mlag) member.secondaryName = secondaryName;
    portBaseV2_.emplace(id, std::move(member));
    hold(id);
    return id;
}

Id Oracle::edgeV2New(Id fromPort) {
    Id const id = next();
    edgeV2_[id].fromPort = fromPort;
    hold(id);
    return id;
}

// ---- StatusV2

void Oracle::hostChanged(Id status, Name const & name) {
    deliver(status, [&](Id reactor) {
        if (at(reactor).owner == kNull) return;
        Id const host = find(statusV2_.at(status).host, name);
        if (host != kNull)
            hostReactorIs(host);
        else
            hostReactorDel(name);
    });
}

void Oracle::edgeChanged(Id status, Id fromPort) {
    deliver(status, [&](Id reactor) {
        if (at(reactor).owner == kNull) return;
        Id const edge = find(statusV2_.at(status).edge, fromPort);
        if (edge != kNull)
            edgeReactorIs(edge);
        else
            edgeReactorDel(fromPort);
    });
}

Id Oracle::statusHost(Id status, Name const & name) {
    if (Id const host = find(statusV2_.at(status).host, name); host != kNull) {
        writes_.clear();
        hold(host);
        return host;
    }
    Id const host = hostV2New(name);
    statusHostIs(status, host);
    return host;
}

void Oracle::statusHostIs(Id status, Id host) {
    Operation const operation(*this);
    if (host == kNull) throw std::range_error("null host");
    auto & h = hostV2_.at(host);
    if (h.status == status) return;
    if (h.status != kNull) throw std::range_error("the host stands in another status");
    auto & entry = statusV2_.at(status).host[h.name];
    if (entry != kNull) {
        hostV2_.at(entry).status = kNull;
        if (options_.replacedHostOutlivesDelivery) inHand_.push_back(entry);
    }
    entry = host;
    h.status = status;
    sweep();
    hostChanged(status, h.name);
}

void Oracle::statusHostDel(Id status, Name const & name) {
    Operation const operation(*this);
    Id const host = find(statusV2_.at(status).host, name);
    if (host == kNull) return;
    statusV2_.at(status).host.erase(name);
    hostV2_.at(host).status = kNull;
    sweep();
    hostChanged(status, name);
}

void Oracle::statusHostDelAll(Id status) {
    Operation const operation(*this);
    if (statusV2_.at(status).host.empty()) return;
    for (auto const & [name, host] : statusV2_.at(status).host) hostV2_.at(host).status = kNull;
    statusV2_.at(status).host.clear();
    sweep();
    deliver(status, [&](Id reactor) { hostCollectionChanged(reactor); });
}

Id Oracle::statusEdge(Id status, Id fromPort) {
    if (Id const edge = find(statusV2_.at(status).edge, fromPort); edge != kNull) {
        writes_.clear();
        hold(edge);
        return edge;
    }
    Id const edge = edgeV2New(fromPort);
    statusEdgeIs(status, edge);
    return edge;
}

void Oracle::statusEdgeIs(Id status, Id edge) {
    Operation const operation(*this);
    if (edge == kNull) throw std::range_error("null edge");
    auto & e = edgeV2_.at(edge);
    if (e.status == status) return;
    if (e.status != kNull) throw std::range_error("the edge stands in another status");
    auto & entry = statusV2_.at(status).edge[e.fromPort];
    if (entry != kNull) edgeV2_.at(entry).status = kNull;
    entry = edge;
    e.status = status;
    sweep();
    edgeChanged(status, e.fromPort);
}

void Oracle::statusEdgeDel(Id status, Id fromPort) {
    Operation const operation(*this);
    Id const edge = find(statusV2_.at(status).edge, fromPort);
    if (edge == kNull) return;
    inHand_.push_back(fromPort);
    statusV2_.at(status).edge.erase(fromPort);
    edgeV2_.at(edge).status = kNull;
    sweep();
    edgeChanged(status, fromPort);
}

void Oracle::statusEdgeDelAll(Id status) {
    Operation const operation(*this);
    if (statusV2_.at(status).edge.empty()) return;
    for (auto const & [fromPort, edge] : statusV2_.at(status).edge) edgeV2_.at(edge).status = kNull;
    statusV2_.at(status).edge.clear();
    sweep();
    deliver(status, [&](Id reactor) { edgeCollectionChanged(reactor); });
}

void Oracle::statusLocalhostIs(Id status, Id host) {
    Operation const operation(*this);
    if (!replaced(statusV2_.at(status).localhost, host)) return;
    sweep();
    deliver(status, [&](Id reactor) { writeLocalhost(reactor); });
}

// ---- HostV2

void Oracle::hostnameIs(Id host, std::string const & value) {
    Operation const operation(*this);
    if (!replaced(hostV2_.at(host).hostname, value)) return;
    deliver(host, [&](Id reactor) { writeHostname(reactor); });
}

void Oracle::hostnameAddedByOwnerIs(Id host, bool value) {
    Operation const operation(*this);
    hostV2_.at(host).hostnameAddedByOwner = value;
}

void Oracle::mlagSystemIdIs(Id host, std::uint64_t value) {
    Operation const operation(*this);
    if (!replaced(hostV2_.at(host).mlagSystemId, value)) return;
    deliver(host, [&](Id reactor) { writeMlagSystemId(reactor); });
}

void Oracle::mlagDomainIdIs(Id host, std::string const & value) {
    Operation const operation(*this);
    if (!replaced(hostV2_.at(host).mlagDomainId, value)) return;
    deliver(host, [&](Id reactor) { writeMlagDomainId(reactor); });
}

void Oracle::mlagStateIs(Id host, int value) {
    Operation const operation(*this);
    if (!replaced(hostV2_.at(host).mlagState, value)) return;
    deliver(host, [&](Id reactor) { writeMlagState(reactor); });
}

void Oracle::mlagPeerLinkIs(Id host, Id portBase) {
    Operation const operation(*this);
    if (!replaced(hostV2_.at(host).mlagPeerLink, portBase)) return;
    sweep();
    deliver(host, [&](Id reactor) { writePeerLink(reactor); });
}

void Oracle::memberChanged(Id host, MemberKind kind, Name const & name) {
    deliver(host, [&](Id reactor) {
        Id const member = find(hostV2_.at(host).member[slot(kind)], name);
        if (member != kNull)
            memberReactorIs(reactor, kind, member);
        else
            memberReactorDel(reactor, kind, name);
    });
}

Id Oracle::memberCreate(Id host, MemberKind kind, Name const & name, Name const & secondaryName) {
    if (Id const member = find(hostV2_.at(host).member[slot(kind)], name); member != kNull) {
        writes_.clear();
        hold(member);
        return member;
    }
    Id const member = memberV2New(kind, name, secondaryName);
    memberIs(host, kind, member);
    return member;
}

void Oracle::memberIs(Id host, MemberKind kind, Id member) {
    Operation const operation(*this);
    if (member == kNull) throw std::range_error("null member");
    auto & m = portBaseV2_.at(member);
    if (m.kind != kind) throw std::logic_error("a member of another kind");
    if (m.host == host) return;
    if (m.host != kNull) throw std::range_error("the member stands in another host");
    auto & entry = hostV2_.at(host).member[slot(kind)][m.name];
    if (entry != kNull) portBaseV2_.at(entry).host = kNull;
    entry = member;
    m.host = host;
    sweep();
    memberChanged(host, kind, m.name);
}

void Oracle::memberDel(Id host, MemberKind kind, Name const & name) {
    Operation const operation(*this);
    auto & members = hostV2_.at(host).member[slot(kind)];
    Id const member = find(members, name);
    if (member == kNull) return;
    members.erase(name);
    portBaseV2_.at(member).host = kNull;
    sweep();
    memberChanged(host, kind, name);
}

void Oracle::memberDelAll(Id host, MemberKind kind) {
    Operation const operation(*this);
    auto & members = hostV2_.at(host).member[slot(kind)];
    if (members.empty()) return;
    for (auto const & [name, member] : members) portBaseV2_.at(member).host = kNull;
    members.clear();
    sweep();
    deliver(host, [&](Id reactor) { reconcileMembers(reactor, kind); });
}

void Oracle::logicalPortIs(Id host, Name const & name, Id portBase) {
    Operation const operation(*this);
    auto const [entry, added] = hostV2_.at(host).logicalPort.try_emplace(name, portBase);
    if (!added && !replaced(entry->second, portBase)) return;
    sweep();
    deliver(host, [&](Id reactor) { logicalPortChanged(reactor, name); });
}

void Oracle::logicalPortDel(Id host, Name const & name) {
    Operation const operation(*this);
    if (hostV2_.at(host).logicalPort.erase(name) == 0) return;
    sweep();
    deliver(host, [&](Id reactor) { logicalPortChanged(reactor, name); });
}

void Oracle::logicalPortDelAll(Id host) {
    Operation const operation(*this);
    auto const names = walk(Walk::LogicalPort, host, hostV2_.at(host).logicalPort);
    hostV2_.at(host).logicalPort.clear();
    sweep();
    for (auto const & name : names) deliver(host, [&](Id reactor) { logicalPortChanged(reactor, name); });
}

void Oracle::mlagRawIs(Id host, Name const & name, Id mlag) {
    Operation const operation(*this);
    auto const [entry, added] = hostV2_.at(host).mlagRaw.try_emplace(name, mlag);
    if (!added && !replaced(entry->second, mlag)) return;
    sweep();
    deliver(host, [&](Id reactor) { mlagRawChanged(reactor, name); });
}

void Oracle::mlagRawDel(Id host, Name const & name) {
    Operation const operation(*this);
    if (hostV2_.at(host).mlagRaw.erase(name) == 0) return;
    sweep();
    deliver(host, [&](Id reactor) { mlagRawChanged(reactor, name); });
}

void Oracle::mlagRawDelAll(Id host) {
    Operation const operation(*this);
    auto const names = walk(Walk::MlagRaw, host, hostV2_.at(host).mlagRaw);
    hostV2_.at(host).mlagRaw.clear();
    sweep();
    for (auto const & name : names) deliver(host, [&](Id reactor) { mlagRawChanged(reactor, name); });
}

// ---- port bases

void Oracle::typeIs(Id portBase, int value) {
    Operation const operation(*this);
    if (!replaced(portBaseV2_.at(portBase).type, value)) return;
    deliver(portBase, [&](Id reactor) { writeType(reactor); });
}

void Oracle::addedByOwnerIs(Id portBase, bool value) {
    Operation const operation(*this);
    portBaseV2_.at(portBase).addedByOwner = value;
}

void Oracle::portGroupIs(Id port, Id group) {
    Operation const operation(*this);
    if (!replaced(portBaseV2_.at(port).portGroup, group)) return;
    deliver(port, [&](Id reactor) { writeLink(reactor); });
}

void Oracle::memberPortIs(Id group, Name const & name, Id port) {
    Operation const operation(*this);
    auto const [entry, added] = portBaseV2_.at(group).memberPort.try_emplace(name, port);
    if (!added && !replaced(entry->second, port)) return;
    sweep();
    deliver(group, [&](Id reactor) { memberPortChanged(reactor, name); });
}

void Oracle::memberPortDel(Id group, Name const & name) {
    Operation const operation(*this);
    if (portBaseV2_.at(group).memberPort.erase(name) == 0) return;
    sweep();
    deliver(group, [&](Id reactor) { memberPortChanged(reactor, name); });
}

void Oracle::memberPortDelAll(Id group) {
    Operation const operation(*this);
    auto const names = walk(Walk::MemberPort, group, portBaseV2_.at(group).memberPort);
    portBaseV2_.at(group).memberPort.clear();
    sweep();
    for (auto const & name : names) deliver(group, [&](Id reactor) { memberPortChanged(reactor, name); });
}

void Oracle::groupMlagIs(Id group, Id mlag) {
    Operation const operation(*this);
    if (!replaced(portBaseV2_.at(group).mlag, mlag)) return;
    deliver(group, [&](Id reactor) { writeLink(reactor); });
}

void Oracle::secondaryNameIs(Id mlag, Name const & value) {
    Operation const operation(*this);
    portBaseV2_.at(mlag).secondaryName = value;
}

void Oracle::localPortGroupIs(Id mlag, Id group) {
    Operation const operation(*this);
    if (!replaced(portBaseV2_.at(mlag).localPortGroup, group)) return;
    sweep();
    deliver(mlag, [&](Id reactor) { writeLink(reactor); });
}

void Oracle::peerPortGroupIs(Id mlag, Id group) {
    Operation const operation(*this);
    portBaseV2_.at(mlag).peerPortGroup = group;
}

// ---- DirectedEdgeV2

void Oracle::toPortIs(Id edge, Id portBase, bool flag) {
    Operation const operation(*this);
    auto const [entry, added] = edgeV2_.at(edge).toPort.try_emplace(portBase, flag);
    if (!added && !replaced(entry->second, flag)) return;
    deliver(edge, [&](Id reactor) { toPortChanged(reactor, portBase); });
}

void Oracle::toPortDel(Id edge, Id portBase) {
    Operation const operation(*this);
    if (edgeV2_.at(edge).toPort.erase(portBase) == 0) return;
    inHand_.push_back(portBase);
    sweep();
    deliver(edge, [&](Id reactor) { toPortChanged(reactor, portBase); });
}

void Oracle::toPortDelAll(Id edge) {
    Operation const operation(*this);
    auto const ports = walk(Walk::ToPort, edge, edgeV2_.at(edge).toPort);
    edgeV2_.at(edge).toPort.clear();
    inHand_.insert(inHand_.end(), ports.begin(), ports.end());
    sweep();
    for (Id const port : ports) deliver(edge, [&](Id reactor) { toPortChanged(reactor, port); });
}

// ---- version-3 mutators

bool Oracle::departed(Id object) const {
    if (auto const h = hostV3_.find(object); h != hostV3_.end()) return h->second.status == kNull;
    if (auto const e = edgeV3_.find(object); e != edgeV3_.end()) return e->second.status == kNull;
    if (auto const p = portBaseV3_.find(object); p != portBaseV3_.end()) {
        return p->second.host == kNull || departed(p->second.host);
    }
    return false;
}

std::string Oracle::pathV3(Id object) const {
    std::string path = "/";
    if (auto const h = hostV3_.find(object); h != hostV3_.end())
        path = hostPath(h->second.name);
    else if (auto const e = edgeV3_.find(object); e != edgeV3_.end())
        path = "/edge/" + token(e->second.key);
    else if (auto const p = portBaseV3_.find(object); p != portBaseV3_.end())
        path = p->second.key;
    return (departed(object) ? "departed:" : "") + path;
}

std::string Oracle::reference(Id object) const { return object == kNull ? "null" : pathV3(object); }

void Oracle::wrote(Id target, std::string const & mutator, std::vector<std::string> arguments, bool changed) {
    writes_.push_back({pathV3(target), mutator, std::move(arguments), changed});
    sweep();
}

Id Oracle::hostV3Is(Id status, Name const & name) {
    Id host = find(statusV3_.at(status).host, name);
    bool const added = host == kNull;
    if (added) {
        host = next();
        hostV3_[host].name = name;
        hostV3_[host].status = status;
        statusV3_.at(status).host[name] = host;
    }
    wrote(status, "hostIs", {quoted(name)}, added);
    return host;
}

void Oracle::hostV3Del(Id status, Name const & name) {
    Id const host = find(statusV3_.at(status).host, name);
    if (host != kNull) {
        hostV3_.at(host).status = kNull;
        statusV3_.at(status).host.erase(name);
    }
    wrote(status, "hostDel", {quoted(name)}, host != kNull);
}

void Oracle::localhostV3Is(Id status, Id host) {
    bool const changed = replaced(statusV3_.at(status).localhost, host);
    wrote(status, "localhostIs", {reference(host)}, changed);
}

Id Oracle::edgeV3Is(Id status, std::string const & key) {
    Id edge = find(statusV3_.at(status).edge, key);
    bool const added = edge == kNull;
    if (added) {
        edge = next();
        edgeV3_[edge].key = key;
        edgeV3_[edge].status = status;
        statusV3_.at(status).edge[key] = edge;
    }
    wrote(status, "edgeIs", {key}, added);
    return edge;
}

void Oracle::edgeV3Del(Id status, std::string const & key) {
    Id const edge = find(statusV3_.at(status).edge, key);
    if (edge != kNull) {
        edgeV3_.at(edge).status = kNull;
        statusV3_.at(status).edge.erase(key);
    }
    wrote(status, "edgeDel", {key}, edge != kNull);
}

template <class Value>
void Oracle::hostAttributeIs(Id host, std::string const & mutator, Value HostV3::*field, Value const & value,
                             std::string const & text) {
    bool const changed = replaced(hostV3_.at(host).*field, value);
    wrote(host, mutator, {text}, changed);
}

Id Oracle::memberV3Is(Id host, MemberKind kind, Name const & name, Name const & secondaryName) {
    Id member = find(hostV3_.at(host).member[slot(kind)], name);
    bool const added = member == kNull;
    if (added) {
        member = next();
        PortBaseV3 m;
        m.kind = kind;
        m.name = name;
        m.key = memberPath(hostV3_.at(host).name, kind, name);
        m.host = host;
        if (kind == MemberKind::Mlag) m.secondaryName = secondaryName;
        portBaseV3_.emplace(member, std::move(m));
        hostV3_.at(host).member[slot(kind)][name] = member;
    }
    std::vector<std::string> arguments = {quoted(name)};
    if (kind == MemberKind::Mlag) arguments.push_back(quoted(secondaryName));
    wrote(host, std::string(collectionName(kind)) + "Is", std::move(arguments), added);
    return member;
}

void Oracle::memberV3Del(Id host, MemberKind kind, Name const & name) {
    auto & members = hostV3_.at(host).member[slot(kind)];
    Id const member = find(members, name);
    if (member != kNull) {
        portBaseV3_.at(member).host = kNull;
        members.erase(name);
    }
    wrote(host, std::string(collectionName(kind)) + "Del", {quoted(name)}, member != kNull);
}

void Oracle::peerLinkV3Is(Id host, Id portBase) {
    hostAttributeIs(host, "mlagPeerLinkIs", &HostV3::mlagPeerLink, portBase, reference(portBase));
}

void Oracle::entryV3Is(Id host, std::map<Name, Id> HostV3::*collection, std::string const & mutator,
                       Id portBase) {
    bool const changed = portBase != kNull &&
                         replaced((hostV3_.at(host).*collection)[portBaseV3_.at(portBase).name], portBase);
    wrote(host, mutator, {reference(portBase)}, changed);
}

void Oracle::entryV3Del(Id host, std::map<Name, Id> HostV3::*collection, std::string const & mutator,
                        Name const & name) {
    bool const changed = (hostV3_.at(host).*collection).erase(name) != 0;
    wrote(host, mutator, {quoted(name)}, changed);
}

void Oracle::typeV3Is(Id portBase, int type) {
    bool const changed = replaced(portBaseV3_.at(portBase).type, type);
    wrote(portBase, "typeIs", {std::to_string(type)}, changed);
}

void Oracle::linkV3Is(Id portBase, std::string const & mutator, Id PortBaseV3::*field, Id target) {
    bool const changed = replaced(portBaseV3_.at(portBase).*field, target);
    wrote(portBase, mutator, {reference(target)}, changed);
}

void Oracle::memberPortV3Is(Id group, Id port) {
    bool const changed =
        port != kNull && replaced(portBaseV3_.at(group).memberPort[portBaseV3_.at(port).name], port);
    wrote(group, "memberPortIs", {reference(port)}, changed);
}

void Oracle::memberPortV3Del(Id group, Name const & name) {
    bool const changed = portBaseV3_.at(group).memberPort.erase(name) != 0;
    wrote(group, "memberPortDel", {quoted(name)}, changed);
}

void Oracle::toPortV3Is(Id edge, std::string const & key, bool flag) {
    auto const [entry, added] = edgeV3_.at(edge).toPort.try_emplace(key, flag);
    bool const changed = added || replaced(entry->second, flag);
    wrote(edge, "toPortIs", {key, shown(flag)}, changed);
}

void Oracle::toPortV3Del(Id edge, std::string const & key) {
    bool const changed = edgeV3_.at(edge).toPort.erase(key) != 0;
    wrote(edge, "toPortDel", {key}, changed);
}

Id Oracle::statusV3New() {
    Id const id = next();
    statusV3_[id] = {};
    hold(id);
    return id;
}

void Oracle::outputHostIs(Id status, Name const & name) {
    Operation const operation(*this);
    hostV3Is(status, name);
}

void Oracle::outputHostDel(Id status, Name const & name) {
    Operation const operation(*this);
    hostV3Del(status, name);
}

void Oracle::outputMemberIs(Id status, Name const & host, MemberKind kind, Name const & name) {
    Operation const operation(*this);
    if (Id const id = outputHost(status, host); id != kNull) memberV3Is(id, kind, name, "");
}

void Oracle::outputMemberDel(Id status, Name const & host, MemberKind kind, Name const & name) {
    Operation const operation(*this);
    if (Id const id = outputHost(status, host); id != kNull) memberV3Del(id, kind, name);
}

void Oracle::outputEdgeIs(Id status, std::string const & key) {
    Operation const operation(*this);
    edgeV3Is(status, key);
}

// ---- lookups

Id Oracle::inputStatus() const { return root_->v2 == kNull ? kNull : at(root_->v2).notifier; }

Id Oracle::outputStatus() const { return root_->v3 == kNull ? kNull : at(root_->v3).notifier; }

Id Oracle::toHostV3(Id hostV2) const {
    if (hostV2 == kNull || outputStatus() == kNull) return kNull;
    return outputHost(outputStatus(), hostV2_.at(hostV2).name);
}

Id Oracle::toPortBaseV3(Id portBaseV2) const {
    if (portBaseV2 == kNull) return kNull;
    auto const & p = portBaseV2_.at(portBaseV2);
    Id const host = toHostV3(p.host);
    return host == kNull ? kNull : find(hostV3_.at(host).member[slot(p.kind)], p.name);
}

int Oracle::toPortTypeV3(int typeV2) { return typeV2 >= 1 && typeV2 <= 3 ? typeV2 : 0; }

bool Oracle::hasTranslator(Id reactor) const {
    Id const owner = at(reactor).owner;
    return owner == kRoot || (owner != kNull && hasTranslator(owner));
}

// ---- population

void Oracle::populate() {
    Id const input = inputStatus();
    Id const output = outputStatus();
    if (input == kNull || output == kNull) return;
    auto const & status = statusV2_.at(input);
    for (auto const & name : walk(Walk::Host, input, status.host)) populateHost(status.host.at(name), output);
    localhostV3Is(output, toHostV3(status.localhost));
    for (Id const fromPort : walk(Walk::Edge, input, status.edge)) {
        Id const from = toPortBaseV3(fromPort);
        if (from == kNull) continue;
        Id const edgeV2 = status.edge.at(fromPort);
        Id const edgeV3 = edgeV3Is(output, portKey(from));
        for (Id const toPort : walk(Walk::ToPort, edgeV2, edgeV2_.at(edgeV2).toPort)) {
            if (Id const to = toPortBaseV3(toPort); to != kNull) {
                toPortV3Is(edgeV3, portKey(to), edgeV2_.at(edgeV2).toPort.at(toPort));
            }
        }
    }
}

void Oracle::populateHost(Id host, Id status) {
    auto const & in = hostV2_.at(host);
    Id const out = hostV3Is(status, in.name);
    auto const members = [&](MemberKind kind) { return walk(memberWalk(kind), host, in.member[slot(kind)]); };
    auto const input = [&](MemberKind kind, Name const & name) { return in.member[slot(kind)].at(name); };
    auto const output = [&](MemberKind kind, Name const & name) {
        return hostV3_.at(out).member[slot(kind)].at(name);
    };
    for (MemberKind const kind : kMemberKinds) {
        for (auto const & name : members(kind)) {
            memberV3Is(out, kind, name, portBaseV2_.at(input(kind, name)).secondaryName);
        }
    }
    for (auto const & name : walk(Walk::MlagRaw, host, in.mlagRaw)) {
        Id const mlag = in.mlagRaw.at(name);
        auto const & mlagsV3 = hostV3_.at(out).member[slot(MemberKind::Mlag)];
        entryV3Is(out, &HostV3::mlagRaw, "mlagRawIs",
                  mlag == kNull ? kNull : find(mlagsV3, portBaseV2_.at(mlag).name));
    }
    for (auto const & name : walk(Walk::LogicalPort, host, in.logicalPort)) {
        entryV3Is(out, &HostV3::logicalPort, "logicalPortIs", toPortBaseV3(in.logicalPort.at(name)));
    }
    for (auto const & name : members(MemberKind::Port)) {
        auto const & port = portBaseV2_.at(input(MemberKind::Port, name));
        linkV3Is(output(MemberKind::Port, name), "portGroupIs", &PortBaseV3::portGroup,
                 toPortBaseV3(port.portGroup));
    }
    for (auto const & name : members(MemberKind::PortGroup)) {
        Id const id = input(MemberKind::PortGroup, name);
        auto const & group = portBaseV2_.at(id);
        Id const groupV3 = output(MemberKind::PortGroup, name);
        for (auto const & key : walk(Walk::MemberPort, id, group.memberPort)) {
            memberPortV3Is(groupV3, toPortBaseV3(group.memberPort.at(key)));
        }
        linkV3Is(groupV3, "mlagIs", &PortBaseV3::mlag, toPortBaseV3(group.mlag));
    }
    for (auto const & name : members(MemberKind::Mlag)) {
        auto const & mlag = portBaseV2_.at(input(MemberKind::Mlag, name));
        linkV3Is(output(MemberKind::Mlag, name), "localPortGroupIs", &PortBaseV3::localPortGroup,
                 toPortBaseV3(mlag.localPortGroup));
    }
    hostAttributeIs(out, "hostnameIs", &HostV3::hostname, in.hostname, quoted(in.hostname));
    hostAttributeIs(out, "mlagSystemIdIs", &HostV3::mlagSystemId, in.mlagSystemId,
                    std::to_string(in.mlagSystemId));
    hostAttributeIs(out, "mlagDomainIdIs", &HostV3::mlagDomainId, in.mlagDomainId, quoted(in.mlagDomainId));
    hostAttributeIs(out, "mlagStateIs", &HostV3::mlagState, in.mlagState, std::to_string(in.mlagState));
    peerLinkV3Is(out, toPortBaseV3(in.mlagPeerLink));
}

// ---- status reactors

Id Oracle::newReactor(ReactorKind kind, Id owner) {
    Id const id = next();
    reactors_[id].kind = kind;
    reactors_[id].owner = owner;
    return id;
}

void Oracle::writeLocalhost(Id reactor) {
    if (at(reactor).notifier == kNull || at(reactor).owner == kNull) return;
    Id const output = outputStatus();
    if (output == kNull) return;
    localhostV3Is(output, toHostV3(statusV2_.at(at(reactor).notifier).localhost));
}

Id Oracle::newVelV2(Id status) {
    Id const reactor = newReactor(ReactorKind::V2, kRoot);
    bind(reactor, status);
    writeLocalhost(reactor);
    enlist(reactor);
    return reactor;
}

Id Oracle::newVelV3(Id status) {
    Id const reactor = newReactor(ReactorKind::V3, kRoot);
    bind(reactor, status);
    enlist(reactor);
    return reactor;
}

void Oracle::hostCollectionChanged(Id reactor) {
    Id const status = at(reactor).notifier;
    if (status == kNull || at(reactor).owner == kNull) return;
    for (auto const & name : walk(Walk::Host, status, statusV2_.at(status).host)) {
        hostReactorIs(statusV2_.at(status).host.at(name));
    }
    for (auto const & name : keys(root_->host)) {
        if (!statusV2_.at(status).host.contains(name)) hostReactorDel(name);
    }
}

void Oracle::edgeCollectionChanged(Id reactor) {
    Id const status = at(reactor).notifier;
    if (status == kNull || at(reactor).owner == kNull) return;
    for (Id const fromPort : walk(Walk::Edge, status, statusV2_.at(status).edge)) {
        edgeReactorIs(statusV2_.at(status).edge.at(fromPort));
    }
    for (Id const fromPort : keys(root_->edge)) {
        if (!statusV2_.at(status).edge.contains(fromPort)) edgeReactorDel(fromPort);
    }
}

void Oracle::velV2NotifierIs(Id reactor, Id status) {
    if (at(reactor).notifier == status) return;
    bind(reactor, status);
    hostCollectionChanged(reactor);
    writeLocalhost(reactor);
    edgeCollectionChanged(reactor);
    enlist(reactor);
}

// ---- host reactors

Id Oracle::hostReactorIs(Id host) {
    if (host == kNull) throw std::range_error(kNullHost);
    Name const name = hostV2_.at(host).name;
    Id reactor = find(root_->host, name);
    if (reactor != kNull) {
        if (at(reactor).notifier == host) return reactor;
        hostReactorNotifierIs(reactor, host);
    } else {
        reactor = newHostReactor(host);
        activeIs(reactor, true);
        root_->host[name] = reactor;
    }
    zombieIs(reactor, root_->zombie);
    return reactor;
}

Id Oracle::hostReactorDel(Name const & name) {
    Id const reactor = find(root_->host, name);
    if (reactor == kNull) return kNull;
    root_->host.erase(name);
    Id const host = at(reactor).notifier;
    inHand_.push_back(host);
    zombieIs(reactor, true);
    letGo(reactor);
    inHand_.pop_back();
    return host;
}

Id Oracle::newHostReactor(Id host) {
    Id const reactor = newReactor(ReactorKind::Host, kRoot);
    bind(reactor, host);
    enlist(reactor);
    if (outputStatus() != kNull) at(reactor).output = hostV3Is(outputStatus(), hostV2_.at(host).name);
    writePeerLink(reactor);
    for (MemberKind const kind : kMemberKinds) reconcileMembers(reactor, kind);
    return reactor;
}

void Oracle::hostReactorNotifierIs(Id reactor, Id host) {
    if (at(reactor).notifier == host) return;
    bind(reactor, host);
    if (host != kNull) {
        writeHostname(reactor);
        writeMlagSystemId(reactor);
        writeMlagDomainId(reactor);
        writeMlagState(reactor);
        writePeerLink(reactor);
        for (MemberKind const kind : kMemberKinds) reconcileMembers(reactor, kind);
    }
    enlist(reactor);
}

void Oracle::writeHostname(Id reactor) {
    auto const & r = at(reactor);
    if (r.notifier == kNull || r.output == kNull) return;
    auto const & value = hostV2_.at(r.notifier).hostname;
    hostAttributeIs(r.output, "hostnameIs", &HostV3::hostname, value, quoted(value));
}

void Oracle::writeMlagSystemId(Id reactor) {
    auto const & r = at(reactor);
    if (r.notifier == kNull || r.output == kNull) return;
    auto const value = hostV2_.at(r.notifier).mlagSystemId;
    hostAttributeIs(r.output, "mlagSystemIdIs", &HostV3::mlagSystemId, value, std::to_string(value));
}

void Oracle::writeMlagDomainId(Id reactor) {
    auto const & r = at(reactor);
    if (r.notifier == kNull || r.output == kNull) return;
    auto const & value = hostV2_.at(r.notifier).mlagDomainId;
    hostAttributeIs(r.output, "mlagDomainIdIs", &HostV3::mlagDomainId, value, quoted(value));
}

void Oracle::writeMlagState(Id reactor) {
    auto const & r = at(reactor);
    if (r.notifier == kNull || r.output == kNull) return;
    auto const value = hostV2_.at(r.notifier).mlagState;
    hostAttributeIs(r.output, "mlagStateIs", &HostV3::mlagState, value, std::to_string(value));
}

void Oracle::writePeerLink(Id reactor) {
    auto const & r = at(reactor);
    if (r.notifier == kNull || r.output == kNull) return;
    peerLinkV3Is(r.output,
                 hasTranslator(reactor) ? toPortBaseV3(hostV2_.at(r.notifier).mlagPeerLink) : kNull);
}

void Oracle::reconcileMembers(Id reactor, MemberKind kind) {
    Id const host = at(reactor).notifier;
    if (host == kNull) return;
    auto const & members = hostV2_.at(host).member[slot(kind)];
    for (auto const & name : walk(memberWalk(kind), host, members))
        memberReactorIs(reactor, kind, members.at(name));
    for (auto const & name : keys(at(reactor).member[slot(kind)])) {
        if (!members.contains(name)) memberReactorDel(reactor, kind, name);
    }
}

void Oracle::logicalPortChanged(Id reactor, Name const & name) {
    auto const & r = at(reactor);
    if (r.output == kNull) return;
    auto const & entries = hostV2_.at(r.notifier).logicalPort;
    if (!entries.contains(name)) {
        entryV3Del(r.output, &HostV3::logicalPort, "logicalPortDel", name);
    } else if (hasTranslator(reactor)) {
        entryV3Is(r.output, &HostV3::logicalPort, "logicalPortIs", toPortBaseV3(entries.at(name)));
    }
}

void Oracle::mlagRawChanged(Id reactor, Name const & name) {
    auto const & r = at(reactor);
    if (r.output == kNull) return;
    auto const & entries = hostV2_.at(r.notifier).mlagRaw;
    if (!entries.contains(name)) {
        entryV3Del(r.output, &HostV3::mlagRaw, "mlagRawDel", name);
    } else if (hasTranslator(reactor)) {
        entryV3Is(r.output, &HostV3::mlagRaw, "mlagRawIs", toPortBaseV3(entries.at(name)));
    }
}

// ---- member reactors

Id Oracle::memberReactorIs(Id hostReactor, MemberKind kind, Id member) {
    if (member == kNull) throw std::range_error(kNullMember[slot(kind)]);
    Name const name = portBaseV2_.at(member).name;
    Id reactor = find(at(hostReactor).member[slot(kind)], name);
    if (reactor != kNull) {
        if (at(reactor).notifier == member) return reactor;
        memberReactorNotifierIs(reactor, member);
    } else {
        reactor = newMemberReactor(hostReactor, kind, member);
        activeIs(reactor, true);
        at(hostReactor).member[slot(kind)][name] = reactor;
    }
    zombieIs(reactor, at(hostReactor).zombie);
    return reactor;
}

void Oracle::memberReactorDel(Id hostReactor, MemberKind kind, Name const & name) {
    Id const reactor = find(at(hostReactor).member[slot(kind)], name);
    if (reactor == kNull) return;
    at(hostReactor).member[slot(kind)].erase(name);
    zombieIs(reactor, true);
    letGo(reactor);
}

Id Oracle::newMemberReactor(Id hostReactor, MemberKind kind, Id member) {
    Id const reactor = newReactor(ReactorKind::Member, hostReactor);
    at(reactor).memberKind = kind;
    bind(reactor, member);
    enlist(reactor);
    if (hasTranslator(reactor)) {
        Id const host = toHostV3(at(hostReactor).notifier);
        auto const & m = portBaseV2_.at(member);
        if (host != kNull) at(reactor).output = memberV3Is(host, kind, m.name, m.secondaryName);
    }
    return reactor;
}

void Oracle::memberReactorNotifierIs(Id reactor, Id member) {
    if (at(reactor).notifier == member) return;
    bind(reactor, member);
    writeType(reactor);
    writeLink(reactor);
    enlist(reactor);
}

void Oracle::writeType(Id reactor) {
    auto const & r = at(reactor);
    if (r.notifier == kNull || r.output == kNull) return;
    typeV3Is(r.output, hasTranslator(reactor) ? toPortTypeV3(portBaseV2_.at(r.notifier).type) : 0);
}

void Oracle::writeLink(Id reactor) {
    auto const & r = at(reactor);
    if (r.notifier == kNull || r.output == kNull) return;
    auto const & m = portBaseV2_.at(r.notifier);
    auto const target = [&](Id link) { return hasTranslator(reactor) ? toPortBaseV3(link) : kNull; };
    switch (r.memberKind) {
    case MemberKind::Port:
        linkV3Is(r.output, "portGroupIs", &PortBaseV3::portGroup, target(m.portGroup));
        break;
    case MemberKind::PortGroup: linkV3Is(r.output, "mlagIs", &PortBaseV3::mlag, target(m.mlag)); break;
    case MemberKind::Mlag:
        linkV3Is(r.output, "localPortGroupIs", &PortBaseV3::localPortGroup, target(m.localPortGroup));
        break;
    }
}

void Oracle::memberPortChanged(Id reactor, Name const & name) {
    auto const & r = at(reactor);
    if (r.zombie || r.output == kNull) return;
    auto const & entries = portBaseV2_.at(r.notifier).memberPort;
    if (!entries.contains(name)) {
        memberPortV3Del(r.output, name);
    } else if (hasTranslator(reactor)) {
        memberPortV3Is(r.output, toPortBaseV3(entries.at(name)));
    }
}

// ---- edge reactors

Id Oracle::edgeReactorIs(Id edge) {
    if (edge == kNull) throw std::range_error(kNullEdge);
    Id const fromPort = edgeV2_.at(edge).fromPort;
    Id reactor = find(root_->edge, fromPort);
    if (reactor != kNull) {
        if (at(reactor).notifier == edge) return reactor;
        edgeReactorNotifierIs(reactor, edge);
    } else {
        reactor = newEdgeReactor(edge);
        activeIs(reactor, true);
        root_->edge[fromPort] = reactor;
    }
    zombieIs(reactor, root_->zombie);
    return reactor;
}

Id Oracle::edgeReactorDel(Id fromPort) {
    Id const reactor = find(root_->edge, fromPort);
    if (reactor == kNull) return kNull;
    root_->edge.erase(fromPort);
    Id const edge = at(reactor).notifier;
    inHand_.push_back(edge);
    zombieIs(reactor, true);
    letGo(reactor);
    inHand_.pop_back();
    return edge;
}

Id Oracle::newEdgeReactor(Id edge) {
    Id const reactor = newReactor(ReactorKind::Edge, kRoot);
    bind(reactor, edge);
    enlist(reactor);
    at(reactor).output = createEdge(reactor);
    return reactor;
}

Id Oracle::createEdge(Id reactor) {
    auto const & r = at(reactor);
    if (!hasTranslator(reactor) || r.notifier == kNull) return kNull;
    Id const from = toPortBaseV3(edgeV2_.at(r.notifier).fromPort);
    return from == kNull ? kNull : edgeV3Is(outputStatus(), portKey(from));
}

void Oracle::edgeReactorNotifierIs(Id reactor, Id edge) {
    if (at(reactor).notifier == edge) return;
    bind(reactor, edge);
    enlist(reactor);
}

void Oracle::toPortChanged(Id reactor, Id toPort) {
    auto & r = at(reactor);
    if (r.zombie || !hasTranslator(reactor)) return;
    auto const & entries = edgeV2_.at(r.notifier).toPort;
    if (r.output == kNull) {
        r.output = createEdge(reactor);
        if (r.output == kNull) return;
        for (Id const port : walk(Walk::ToPort, r.notifier, entries)) {
            if (Id const to = toPortBaseV3(port); to != kNull)
                toPortV3Is(r.output, portKey(to), entries.at(port));
        }
    }
    Id const to = toPortBaseV3(toPort);
    if (to == kNull) return;
    if (entries.contains(toPort))
        toPortV3Is(r.output, portKey(to), entries.at(toPort));
    else
        toPortV3Del(r.output, portKey(to));
}

// ---- retirement

// Removes what the reactor made. It finds the object by name once more, so what goes may be another object
// than the one that the reactor holds.
void Oracle::cleanup(Id reactor) {
    auto const & r = at(reactor);
    if (!hasTranslator(reactor) || r.notifier == kNull || r.output == kNull) return;
    Id const status = outputStatus();
    if (status == kNull) return;
    switch (r.kind) {
    case ReactorKind::Host: hostV3Del(status, hostV2_.at(r.notifier).name); break;
    case ReactorKind::Member:
        if (Id const host = toHostV3(at(r.owner).notifier); host != kNull) {
            memberV3Del(host, r.memberKind, portBaseV2_.at(r.notifier).name);
        }
        break;
    case ReactorKind::Edge:
        if (Id const from = toPortBaseV3(edgeV2_.at(r.notifier).fromPort); from != kNull) {
            edgeV3Del(status, portKey(from));
        }
        break;
    case ReactorKind::V2:
    case ReactorKind::V3: break;
    }
}

void Oracle::zombieIs(Id reactor, bool zombie) {
    if (at(reactor).zombie == zombie) return;
    if (at(reactor).notifier != kNull) activeIs(reactor, !zombie);
    cleanup(reactor);
    for (MemberKind const kind : kMemberKinds) {
        for (auto const & [name, member] : at(reactor).member[slot(kind)]) zombieIs(member, zombie);
    }
    at(reactor).zombie = zombie;
}

void Oracle::activeIs(Id reactor, bool active) {
    if (at(reactor).active == active) return;
    at(reactor).active = active;
    for (MemberKind const kind : kMemberKinds) {
        for (auto const & [name, member] : at(reactor).member[slot(kind)]) activeIs(member, active);
    }
}

// A reactor has no holder but its collection, so letting it go destroys it.
void Oracle::letGo(Id reactor) {
    at(reactor).owner = kNull;
    activeIs(reactor, false);
    destroyReactor(reactor);
}

void Oracle::destroyReactor(Id reactor) {
    zombieIs(reactor, true);
    auto const & members = at(reactor).member;
    for (auto const & table : members) {
        for (auto const & [name, member] : table) at(member).owner = kNull;
    }
    for (auto const & table : members) {
        for (auto const & [name, member] : table) destroyReactor(member);
    }
    reactors_.erase(reactor);
    sweep();
}

// ---- the root

void Oracle::create(Id statusV2, Id statusV3) {
    Operation const operation(*this);
    if (root_) throw std::logic_error("there is a translator already");
    root_.emplace(Root());
    if (statusV3 != kNull) root_->v3 = newVelV3(statusV3);
    if (statusV2 != kNull) root_->v2 = newVelV2(statusV2);
    populate();
    if (statusV2 != kNull) {
        hostCollectionChanged(root_->v2);
        edgeCollectionChanged(root_->v2);
    }
    root_->active = true;
    if (root_->v2 != kNull) activeIs(root_->v2, true);
    if (root_->v3 != kNull) activeIs(root_->v3, true);
}

void Oracle::destroy() {
    Operation const operation(*this);
    auto const reactors = [&] {
        std::vector<Id> result;
        for (auto const & [key, reactor] : root_->edge) result.push_back(reactor);
        for (auto const & [key, reactor] : root_->host) result.push_back(reactor);
        if (root_->v3 != kNull) result.push_back(root_->v3);
        if (root_->v2 != kNull) result.push_back(root_->v2);
        return result;
    }();
    if (!root_->zombie) {
        if (root_->v2 != kNull) zombieIs(root_->v2, true);
        if (root_->v3 != kNull) zombieIs(root_->v3, true);
        for (auto const & [name, reactor] : root_->host) zombieIs(reactor, true);
        for (auto const & [fromPort, reactor] : root_->edge) zombieIs(reactor, true);
    }
    for (Id const reactor : reactors) at(reactor).owner = kNull;
    for (Id const reactor : reactors) destroyReactor(reactor);
    root_.reset();
}

void Oracle::v2Is(Id statusV2) {
    Operation const operation(*this);
    Id const current = root_->v2;
    if (current != kNull && at(current).notifier == statusV2) return;
    if (statusV2 == kNull) {
        if (current == kNull) return;
        root_->v2 = kNull;
        zombieIs(current, true);
        letGo(current);
        return;
    }
    if (current == kNull) {
        root_->v2 = newVelV2(statusV2);
        activeIs(root_->v2, root_->active);
    }
    velV2NotifierIs(root_->v2, statusV2);
    zombieIs(root_->v2, root_->zombie);
}

void Oracle::v3Is(Id statusV3) {
    Operation const operation(*this);
    Id const current = root_->v3;
    if (current != kNull && at(current).notifier == statusV3) return;
    if (statusV3 == kNull) {
        if (current == kNull) return;
        root_->v3 = kNull;
        zombieIs(current, true);
        letGo(current);
        return;
    }
    if (current == kNull) {
        root_->v3 = newVelV3(statusV3);
        activeIs(root_->v3, root_->active);
    }
    if (at(root_->v3).notifier != statusV3) {
        bind(root_->v3, statusV3);
        enlist(root_->v3);
    }
    zombieIs(root_->v3, root_->zombie);
}

Id Oracle::v2Del() {
    Operation const operation(*this);
    Id const current = root_->v2;
    if (current == kNull) return kNull;
    Id const status = at(current).notifier;
    root_->v2 = kNull;
    zombieIs(current, true);
    letGo(current);
    return status;
}

Id Oracle::v3Del() {
    Operation const operation(*this);
    Id const current = root_->v3;
    if (current == kNull) return kNull;
    Id const status = at(current).notifier;
    root_->v3 = kNull;
    zombieIs(current, true);
    letGo(current);
    return status;
}

void Oracle::populateV3() {
    Operation const operation(*this);
    populate();
}

Id Oracle::hostIs(Id host) {
    Operation const operation(*this);
    return hostReactorIs(host);
}

Id Oracle::hostDel(Name const & name) {
    Operation const operation(*this);
    return hostReactorDel(name);
}

void Oracle::hostDelAll() {
    Operation const operation(*this);
    for (auto const & name : keys(root_->host)) hostReactorDel(name);
}

Id Oracle::edgeIs(Id edge) {
    Operation const operation(*this);
    return edgeReactorIs(edge);
}

Id Oracle::edgeDel(Id fromPort) {
    Operation const operation(*this);
    return edgeReactorDel(fromPort);
}

void Oracle::edgeDelAll() {
    Operation const operation(*this);
    for (Id const fromPort : keys(root_->edge)) edgeReactorDel(fromPort);
}

void Oracle::velDoZombieReactors(bool zombie) {
    Operation const operation(*this);
    if (root_->zombie == zombie) return;
    if (root_->v2 != kNull) zombieIs(root_->v2, zombie);
    if (root_->v3 != kNull) zombieIs(root_->v3, zombie);
    for (auto const & [name, reactor] : root_->host) zombieIs(reactor, zombie);
    for (auto const & [fromPort, reactor] : root_->edge) zombieIs(reactor, zombie);
    root_->zombie = zombie;
}

void Oracle::hasNotificationActiveIs(bool active) {
    Operation const operation(*this);
    root_->active = active;
    if (root_->v2 != kNull) activeIs(root_->v2, active);
    if (root_->v3 != kNull) activeIs(root_->v3, active);
    for (auto const & [name, reactor] : root_->host) activeIs(reactor, active);
    for (auto const & [fromPort, reactor] : root_->edge) activeIs(reactor, active);
}

// ---- one reactor

Id Oracle::hostMemberIs(Name const & host, MemberKind kind, Id member) {
    Operation const operation(*this);
    Id const reactor = hostReactor(host);
    return reactor == kNull ? kNull : memberReactorIs(reactor, kind, member);
}

void Oracle::hostMemberDel(Name const & host, MemberKind kind, Name const & name) {
    Operation const operation(*this);
    if (Id const reactor = hostReactor(host); reactor != kNull) memberReactorDel(reactor, kind, name);
}

void Oracle::hostMemberDelAll(Name const & host, MemberKind kind) {
    Operation const operation(*this);
    Id const reactor = hostReactor(host);
    if (reactor == kNull) return;
    for (auto const & name : keys(at(reactor).member[slot(kind)])) memberReactorDel(reactor, kind, name);
}

void Oracle::reactorNotifierIs(Id reactor, Id object) {
    Operation const operation(*this);
    if (reactor == kNull) return;
    switch (at(reactor).kind) {
    case ReactorKind::V2: velV2NotifierIs(reactor, object); break;
    case ReactorKind::V3:
        bind(reactor, object);
        enlist(reactor);
        break;
    case ReactorKind::Host: hostReactorNotifierIs(reactor, object); break;
    case ReactorKind::Member: memberReactorNotifierIs(reactor, object); break;
    case ReactorKind::Edge: edgeReactorNotifierIs(reactor, object); break;
    }
}

void Oracle::reactorDoZombie(Id reactor, bool zombie) {
    Operation const operation(*this);
    if (reactor != kNull) zombieIs(reactor, zombie);
}

Id Oracle::velV2() const { return root_->v2; }
Id Oracle::velV3() const { return root_->v3; }
Id Oracle::hostReactor(Name const & name) const { return find(root_->host, name); }
Id Oracle::edgeReactor(Id fromPort) const { return find(root_->edge, fromPort); }

Id Oracle::memberReactor(Name const & host, MemberKind kind, Name const & name) const {
    Id const reactor = hostReactor(host);
    return reactor == kNull ? kNull : find(at(reactor).member[slot(kind)], name);
}

std::set<Name> Oracle::hostReactors() const {
    auto const names = keys(root_->host);
    return {names.begin(), names.end()};
}

std::set<Name> Oracle::memberReactors(Name const & host, MemberKind kind) const {
    Id const reactor = hostReactor(host);
    if (reactor == kNull) return {};
    auto const names = keys(at(reactor).member[slot(kind)]);
    return {names.begin(), names.end()};
}

std::set<Id> Oracle::edgeReactors() const {
    auto const ports = keys(root_->edge);
    return {ports.begin(), ports.end()};
}

Id Oracle::reactorNotifier(Id reactor) const { return at(reactor).notifier; }
Id Oracle::reactorOutput(Id reactor) const { return at(reactor).output; }
bool Oracle::reactorActive(Id reactor) const { return at(reactor).active; }
bool Oracle::reactorZombie(Id reactor) const { return at(reactor).zombie; }
bool Oracle::active() const { return root_->active; }
bool Oracle::zombie() const { return root_->zombie; }

Oracle::KindV2 Oracle::kindV2(Id object) const {
    if (statusV2_.contains(object)) return KindV2::Status;
    if (hostV2_.contains(object)) return KindV2::Host;
    if (portBaseV2_.contains(object)) return KindV2::PortBase;
    if (edgeV2_.contains(object)) return KindV2::Edge;
    return KindV2::None;
}

// ---- looking at the output

Id Oracle::outputHost(Id status, Name const & name) const { return find(statusV3_.at(status).host, name); }

Id Oracle::outputMember(Id status, Name const & host, MemberKind kind, Name const & name) const {
    Id const id = outputHost(status, host);
    return id == kNull ? kNull : find(hostV3_.at(id).member[slot(kind)], name);
}

Id Oracle::outputEdge(Id status, std::string const & key) const {
    return find(statusV3_.at(status).edge, key);
}

std::vector<std::string> Oracle::changes() const {
    std::vector<std::string> result;
    for (auto const & write : writes_) {
        if (write.changed) result.push_back(write.text());
    }
    std::sort(result.begin(), result.end());
    return result;
}

Document Oracle::document(Id statusV3) const {
    auto const hostReference = [&](Id host) -> std::string {
        if (host == kNull || hostV3_.at(host).status != statusV3) return "null";
        return hostPath(hostV3_.at(host).name);
    };
    auto const portReference = [&](Id portBase) -> std::string {
        if (portBase == kNull) return "null";
        auto const & p = portBaseV3_.at(portBase);
        if (p.host == kNull || hostV3_.at(p.host).status != statusV3) return "null";
        return p.key;
    };
    auto const & status = statusV3_.at(statusV3);
    Document document;
    document.localhost = hostReference(status.localhost);
    for (auto const & [name, id] : status.host) {
        auto const & h = hostV3_.at(id);
        auto & host = document.host[name];
        host.hostname = h.hostname;
        host.mlagSystemId = h.mlagSystemId;
        host.mlagDomainId = h.mlagDomainId;
        host.mlagState = h.mlagState;
        host.mlagPeerLink = portReference(h.mlagPeerLink);
        for (auto const & [key, port] : h.member[slot(MemberKind::Port)]) {
            auto const & p = portBaseV3_.at(port);
            host.port[key] = {p.type, portReference(p.portGroup)};
        }
        for (auto const & [key, group] : h.member[slot(MemberKind::PortGroup)]) {
            auto const & g = portBaseV3_.at(group);
            auto & out = host.portGroup[key];
            out.type = g.type;
            out.mlag = portReference(g.mlag);
            for (auto const & [member, port] : g.memberPort) out.memberPort[member] = portReference(port);
        }
        for (auto const & [key, mlag] : h.member[slot(MemberKind::Mlag)]) {
            auto const & m = portBaseV3_.at(mlag);
            host.mlag[key] = {m.type, m.secondaryName, portReference(m.localPortGroup)};
        }
        for (auto const & [key, mlag] : h.mlagRaw) host.mlagRaw[key] = portReference(mlag);
        for (auto const & [key, port] : h.logicalPort) host.logicalPort[key] = portReference(port);
    }
    for (auto const & [key, id] : status.edge) document.edge[key] = edgeV3_.at(id).toPort;
    return document;
}

std::string Oracle::dump() const {
    std::string out;
    int number = 0;
    for (auto const & [id, status] : statusV3_) {
        out += "status " + std::to_string(++number) + "\n" + document(id).text();
    }
    return out;
}

void Oracle::check() const {
    auto const require = [](bool holds, char const * what) {
        if (!holds) throw std::logic_error(what);
    };
    Marks marked(lastId_);
    for (auto const & [id, count] : held_) mark(id, marked);
    for (auto const & [id, r] : reactors_) {
        mark(r.notifier, marked);
        mark(r.output, marked);
    }
    auto const total = statusV2_.size() + hostV2_.size() + portBaseV2_.size() + edgeV2_.size() +
                       statusV3_.size() + hostV3_.size() + portBaseV3_.size() + edgeV3_.size();
    require(marked.size() == total, "something is kept that nothing holds");
    auto const hosts = [&](auto const & statuses, auto const & table) {
        std::size_t standing = 0;
        for (auto const & [id, status] : statuses) {
            for (auto const & [name, host] : status.host) {
                require(table.at(host).status == id && table.at(host).name == name,
                        "a host does not know its status");
                ++standing;
            }
        }
        for (auto const & [id, host] : table) standing -= host.status != kNull;
        require(standing == 0, "a host names a status that does not hold it");
    };
    hosts(statusV2_, hostV2_);
    hosts(statusV3_, hostV3_);
    auto const edges = [&](auto const & statuses, auto const & table, auto const & keyOf) {
        std::size_t standing = 0;
        for (auto const & [id, status] : statuses) {
            for (auto const & [key, edge] : status.edge) {
                require(table.at(edge).status == id && keyOf(table.at(edge)) == key,
                        "an edge does not know its status");
                ++standing;
            }
        }
        for (auto const & [id, edge] : table) standing -= edge.status != kNull;
        require(standing == 0, "an edge names a status that does not hold it");
    };
    edges(statusV2_, edgeV2_, [](EdgeV2 const & edge) { return edge.fromPort; });
    edges(statusV3_, edgeV3_, [](EdgeV3 const & edge) { return edge.key; });
    auto const members = [&](auto const & owners, auto const & table) {
        std::size_t standing = 0;
        for (auto const & [id, host] : owners) {
            for (MemberKind const kind : kMemberKinds) {
                for (auto const & [name, member] : host.member[slot(kind)]) {
                    auto const & m = table.at(member);
                    require(m.host == id && m.name == name && m.kind == kind,
                            "a member does not know its host");
                    ++standing;
                }
            }
        }
        for (auto const & [id, member] : table) standing -= member.host != kNull;
        require(standing == 0, "a member names a host that does not hold it");
    };
    members(hostV2_, portBaseV2_);
    members(hostV3_, portBaseV3_);
    for (auto const & [id, p] : portBaseV2_) {
        require(p.portGroup == kNull || portBaseV2_.at(p.portGroup).kind == MemberKind::PortGroup,
                "not a group");
        require(p.mlag == kNull || portBaseV2_.at(p.mlag).kind == MemberKind::Mlag, "not an MLAG");
    }
    for (auto const & [id, p] : portBaseV3_) {
        require(p.portGroup == kNull || portBaseV3_.at(p.portGroup).kind == MemberKind::PortGroup,
                "not a group");
        require(p.mlag == kNull || portBaseV3_.at(p.mlag).kind == MemberKind::Mlag, "not an MLAG");
    }
    std::size_t owned = 0;
    if (root_) {
        owned = (root_->v2 != kNull) + (root_->v3 != kNull) + root_->edge.size() + root_->host.size();
        for (auto const & [name, host] : root_->host) {
            for (auto const & table : at(host).member) {
                owned += table.size();
                for (auto const & [key, member] : table)
                    require(at(member).owner == host, "a stray member reactor");
            }
        }
    }
    require(owned == reactors_.size(), "a reactor outside the tree");
}

}  // namespace oracle
