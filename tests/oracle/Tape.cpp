#include "tests/oracle/Tape.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <tuple>

namespace oracle {

namespace {

// Frequent names first and more than once, so that tapes meet the same name again; then the hostile ones.
constexpr char const * kHostNames[] = {"a", "b", "c", "a", "b", "a", "", "x/y~"};
constexpr char const * kMemberNames[] = {"p", "q", "r", "p", "q", "p", "", "x/y~"};
constexpr char const * kTexts[] = {"", "u", "v"};

template <std::size_t N>
Name pick(char const * const (&names)[N], std::uint8_t operand) {
    return names[operand % N];
}

enum class Class { StatusV2, Host, Port, PortGroup, Mlag, Edge, StatusV3 };

Class classOf(MemberKind kind) {
    switch (kind) {
    case MemberKind::Port: return Class::Port;
    case MemberKind::PortGroup: return Class::PortGroup;
    case MemberKind::Mlag: return Class::Mlag;
    }
    throw std::logic_error("no such member kind");
}

bool isTranslatorOp(Op op) { return op >= Op::Create; }

class Decoder {
public:
    // What the step means now; null when it lacks an operand.
    std::optional<Call> look(Step const & step) const {
        Call call;
        call.op = step.op;
        if (!fill(call, step.operand)) return std::nullopt;
        return call;
    }

    void commit(Call const & call) {
        if (call.out != 0) {
            last_ = call.out;
            held_[call.out] = made(call);
        }
        if (call.op == Op::Drop) held_.erase(call.self);
        if (call.op == Op::Create) translator_ = true;
        if (call.op == Op::Destroy) translator_ = false;
    }

private:
    using Operands = std::array<std::uint8_t, 4>;

    std::vector<Handle> all(std::initializer_list<Class> classes) const {
        std::vector<Handle> result;
        for (auto const & [handle, itsClass] : held_) {
            if (std::find(classes.begin(), classes.end(), itsClass) != classes.end())
                result.push_back(handle);
        }
        return result;
    }

    bool choose(Handle & handle, std::initializer_list<Class> classes, std::uint8_t operand) const {
        auto const candidates = all(classes);
        if (candidates.empty()) return false;
        handle = candidates[operand % candidates.size()];
        return true;
    }

    bool chooseOrNull(Handle & handle, std::initializer_list<Class> classes, std::uint8_t operand) const {
        auto candidates = all(classes);
        candidates.push_back(0);
        handle = candidates[operand % candidates.size()];
        return true;
    }

    bool portBase(Handle & handle, std::uint8_t operand) const {
        return choose(handle, {Class::Port, Class::PortGroup, Class::Mlag}, operand);
    }

    bool portBaseOrNull(Handle & handle, std::uint8_t operand) const {
        return chooseOrNull(handle, {Class::Port, Class::PortGroup, Class::Mlag}, operand);
    }

    static Class made(Call const & call) {
        switch (call.op) {
        case Op::StatusV2New: return Class::StatusV2;
        case Op::StatusV3New: return Class::StatusV3;
        case Op::HostV2New:
        case Op::StatusHost: return Class::Host;
        case Op::EdgeV2New:
        case Op::StatusEdge: return Class::Edge;
        default: return classOf(call.kind);
        }
    }

    bool make(Call & call) const {
        call.out = last_ + 1;
        return true;
    }

    bool fill(Call & call, Operands const & o) const {
        if (call.op == Op::Create ? translator_ : isTranslatorOp(call.op) && !translator_) return false;
        auto const hostSelf = [&] { return choose(call.self, {Class::Host}, o[0]); };
        auto const statusSelf = [&] { return choose(call.self, {Class::StatusV2}, o[0]); };
        auto const outputSelf = [&] { return choose(call.self, {Class::StatusV3}, o[0]); };
        auto const kind = [&](std::uint8_t operand) { call.kind = kMemberKinds[operand % 3]; };
        auto const hostName = [&](std::uint8_t operand) { call.name = pick(kHostNames, operand); };
        auto const memberName = [&](std::uint8_t operand) { call.name = pick(kMemberNames, operand); };
        switch (call.op) {
        case Op::StatusV2New: return make(call);
        case Op::HostV2New: hostName(o[0]); return make(call);
        case Op::MemberV2New:
            kind(o[0]);
            memberName(o[1]);
            call.second = pick(kMemberNames, o[2]);
            return make(call);
        case Op::EdgeV2New: return portBaseOrNull(call.object, o[0]) && make(call);
        case Op::Drop:
            if (o[1] % 8 == 0) return choose(call.self, {Class::StatusV2, Class::StatusV3}, o[0]);
            return choose(call.self, {Class::Host, Class::Port, Class::PortGroup, Class::Mlag, Class::Edge},
                          o[0]);
        case Op::StatusHost: hostName(o[1]); return statusSelf() && make(call);
        case Op::StatusHostIs: return statusSelf() && chooseOrNull(call.object, {Class::Host}, o[1]);
        case Op::StatusHostDel: hostName(o[1]); return statusSelf();
        case Op::StatusHostDelAll: return statusSelf();
        case Op::StatusEdge: return statusSelf() && portBase(call.object, o[1]) && make(call);
        case Op::StatusEdgeIs: return statusSelf() && chooseOrNull(call.object, {Class::Edge}, o[1]);
        case Op::StatusEdgeDel: return statusSelf() && portBaseOrNull(call.object, o[1]);
        case Op::StatusEdgeDelAll: return statusSelf();
        case Op::StatusLocalhostIs: return statusSelf() && chooseOrNull(call.object, {Class::Host}, o[1]);
        case Op::HostnameIs:
        case Op::MlagDomainIdIs: call.name = pick(kTexts, o[1]); return hostSelf();
        case Op::HostnameAddedByOwnerIs: call.flag = o[1] % 2 != 0; return hostSelf();
        case Op::MlagSystemIdIs: call.number = o[1] % 3; return hostSelf();
        case Op::MlagStateIs: call.number = o[1] % 4; return hostSelf();
        case Op::MlagPeerLinkIs: return hostSelf() && portBaseOrNull(call.object, o[1]);
        case Op::MemberCreate:
            kind(o[1]);
            memberName(o[2]);
            call.second = pick(kMemberNames, o[3]);
            return hostSelf() && make(call);
        case Op::MemberIs:
            kind(o[1]);
            return hostSelf() && chooseOrNull(call.object, {classOf(call.kind)}, o[2]);
        case Op::MemberDel:
            kind(o[1]);
            memberName(o[2]);
            return hostSelf();
        case Op::MemberDelAll: kind(o[1]); return hostSelf();
        case Op::LogicalPortIs: memberName(o[1]); return hostSelf() && portBaseOrNull(call.object, o[2]);
        case Op::MlagRawIs:
            memberName(o[1]);
            return hostSelf() && chooseOrNull(call.object, {Class::Mlag}, o[2]);
        case Op::LogicalPortDel:
        case Op::MlagRawDel: memberName(o[1]); return hostSelf();
        case Op::LogicalPortDelAll:
        case Op::MlagRawDelAll: return hostSelf();
        case Op::TypeIs: call.number = o[1] % 6; return portBase(call.self, o[0]);
        case Op::AddedByOwnerIs: call.flag = o[1] % 2 != 0; return portBase(call.self, o[0]);
        case Op::PortGroupIs:
            return choose(call.self, {Class::Port}, o[0]) &&
                   chooseOrNull(call.object, {Class::PortGroup}, o[1]);
        case Op::MemberPortIs:
            memberName(o[1]);
            return choose(call.self, {Class::PortGroup}, o[0]) &&
                   chooseOrNull(call.object, {Class::Port}, o[2]);
        case Op::MemberPortDel: memberName(o[1]); return choose(call.self, {Class::PortGroup}, o[0]);
        case Op::MemberPortDelAll: return choose(call.self, {Class::PortGroup}, o[0]);
        case Op::GroupMlagIs:
            return choose(call.self, {Class::PortGroup}, o[0]) &&
                   chooseOrNull(call.object, {Class::Mlag}, o[1]);
        case Op::SecondaryNameIs: memberName(o[1]); return choose(call.self, {Class::Mlag}, o[0]);
        case Op::LocalPortGroupIs:
        case Op::PeerPortGroupIs:
            return choose(call.self, {Class::Mlag}, o[0]) &&
                   chooseOrNull(call.object, {Class::PortGroup}, o[1]);
        case Op::ToPortIs:
            call.flag = o[2] % 2 != 0;
            return choose(call.self, {Class::Edge}, o[0]) && portBase(call.object, o[1]);
        case Op::ToPortDel: return choose(call.self, {Class::Edge}, o[0]) && portBase(call.object, o[1]);
        case Op::ToPortDelAll: return choose(call.self, {Class::Edge}, o[0]);
        case Op::StatusV3New: return make(call);
        case Op::OutputHostIs:
        case Op::OutputHostDel: hostName(o[1]); return outputSelf();
        case Op::OutputMemberIs:
        case Op::OutputMemberDel:
            hostName(o[1]);
            kind(o[2]);
            call.second = pick(kMemberNames, o[3]);
            return outputSelf();
        case Op::Create:
            return chooseOrNull(call.self, {Class::StatusV2}, o[0]) &&
                   chooseOrNull(call.object, {Class::StatusV3}, o[1]);
        case Op::Destroy: return true;
        case Op::V2Is: return chooseOrNull(call.object, {Class::StatusV2}, o[0]);
        case Op::V3Is: return chooseOrNull(call.object, {Class::StatusV3}, o[0]);
        case Op::V2Del:
        case Op::V3Del:
        case Op::PopulateV3:
        case Op::HostDelAll:
        case Op::EdgeDelAll: return true;
        case Op::HostIs: return chooseOrNull(call.object, {Class::Host}, o[0]);
        case Op::HostDel: hostName(o[0]); return true;
        case Op::EdgeIs: return chooseOrNull(call.object, {Class::Edge}, o[0]);
        case Op::EdgeDel: return portBaseOrNull(call.object, o[0]);
        case Op::VelDoZombieReactors:
        case Op::HasNotificationActiveIs: call.flag = o[0] % 2 != 0; return true;
        case Op::HostMemberIs:
            hostName(o[0]);
            kind(o[1]);
            return chooseOrNull(call.object, {classOf(call.kind)}, o[2]);
        case Op::HostMemberDel:
        case Op::MemberReactorUnbind:
        case Op::MemberReactorDoZombie:
            hostName(o[0]);
            kind(o[1]);
            call.second = pick(kMemberNames, o[2]);
            call.flag = o[3] % 2 != 0;
            return true;
        case Op::HostMemberDelAll:
        case Op::HostReactorUnbind:
        case Op::HostReactorDoZombie:
            hostName(o[0]);
            kind(o[1]);
            call.flag = o[1] % 2 != 0;
            return true;
        case Op::EdgeReactorUnbind:
        case Op::EdgeReactorDoZombie: call.flag = o[1] % 2 != 0; return portBase(call.object, o[0]);
        }
        return false;
    }

    Handle last_ = 0;
    std::map<Handle, Class> held_;
    bool translator_ = false;
};

std::string dispatch(Call const & c, Subject & s) {
    switch (c.op) {
    case Op::StatusV2New: s.statusV2New(c.out); break;
    case Op::HostV2New: s.hostV2New(c.out, c.name); break;
    case Op::MemberV2New: s.memberV2New(c.out, c.kind, c.name, c.second); break;
    case Op::EdgeV2New: s.edgeV2New(c.out, c.object); break;
    case Op::Drop: s.drop(c.self); break;
    case Op::StatusHost: s.statusHost(c.self, c.name, c.out); break;
    case Op::StatusHostIs: s.statusHostIs(c.self, c.object); break;
    case Op::StatusHostDel: s.statusHostDel(c.self, c.name); break;
    case Op::StatusHostDelAll: s.statusHostDelAll(c.self); break;
    case Op::StatusEdge: s.statusEdge(c.self, c.object, c.out); break;
    case Op::StatusEdgeIs: s.statusEdgeIs(c.self, c.object); break;
    case Op::StatusEdgeDel: s.statusEdgeDel(c.self, c.object); break;
    case Op::StatusEdgeDelAll: s.statusEdgeDelAll(c.self); break;
    case Op::StatusLocalhostIs: s.statusLocalhostIs(c.self, c.object); break;
    case Op::HostnameIs: s.hostnameIs(c.self, c.name); break;
    case Op::HostnameAddedByOwnerIs: s.hostnameAddedByOwnerIs(c.self, c.flag); break;
    case Op::MlagSystemIdIs: s.mlagSystemIdIs(c.self, static_cast<std::uint64_t>(c.number)); break;
    case Op::MlagDomainIdIs: s.mlagDomainIdIs(c.self, c.name); break;
    case Op::MlagStateIs: s.mlagStateIs(c.self, c.number); break;
    case Op::MlagPeerLinkIs: s.mlagPeerLinkIs(c.self, c.object); break;
    case Op::MemberCreate: s.memberCreate(c.self, c.kind, c.name, c.second, c.out); break;
    case Op::MemberIs: s.memberIs(c.self, c.kind, c.object); break;
    case Op::MemberDel: s.memberDel(c.self, c.kind, c.name); break;
    case Op::MemberDelAll: s.memberDelAll(c.self, c.kind); break;
    case Op::LogicalPortIs: s.logicalPortIs(c.self, c.name, c.object); break;
    case Op::LogicalPortDel: s.logicalPortDel(c.self, c.name); break;
    case Op::LogicalPortDelAll: s.logicalPortDelAll(c.self); break;
    case Op::MlagRawIs: s.mlagRawIs(c.self, c.name, c.object); break;
    case Op::MlagRawDel: s.mlagRawDel(c.self, c.name); break;
    case Op::MlagRawDelAll: s.mlagRawDelAll(c.self); break;
    case Op::TypeIs: s.typeIs(c.self, c.number); break;
    case Op::AddedByOwnerIs: s.addedByOwnerIs(c.self, c.flag); break;
    case Op::PortGroupIs: s.portGroupIs(c.self, c.object); break;
    case Op::MemberPortIs: s.memberPortIs(c.self, c.name, c.object); break;
    case Op::MemberPortDel: s.memberPortDel(c.self, c.name); break;
    case Op::MemberPortDelAll: s.memberPortDelAll(c.self); break;
    case Op::GroupMlagIs: s.groupMlagIs(c.self, c.object); break;
    case Op::SecondaryNameIs: s.secondaryNameIs(c.self, c.name); break;
    case Op::LocalPortGroupIs: s.localPortGroupIs(c.self, c.object); break;
    case Op::PeerPortGroupIs: s.peerPortGroupIs(c.self, c.object); break;
    case Op::ToPortIs: s.toPortIs(c.self, c.object, c.flag); break;
    case Op::ToPortDel: s.toPortDel(c.self, c.object); break;
    case Op::ToPortDelAll: s.toPortDelAll(c.self); break;
    case Op::StatusV3New: s.statusV3New(c.out); break;
    case Op::OutputHostIs: s.outputHostIs(c.self, c.name); break;
    case Op::OutputHostDel: s.outputHostDel(c.self, c.name); break;
    case Op::OutputMemberIs: s.outputMemberIs(c.self, c.name, c.kind, c.second); break;
    case Op::OutputMemberDel: s.outputMemberDel(c.self, c.name, c.kind, c.second); break;
    case Op::Create: s.create(c.self, c.object); break;
    case Op::Destroy: s.destroy(); break;
    case Op::V2Is: s.v2Is(c.object); break;
    case Op::V3Is: s.v3Is(c.object); break;
    case Op::V2Del: return s.v2Del() ? "returned a status" : "returned null";
    case Op::V3Del: return s.v3Del() ? "returned a status" : "returned null";
    case Op::PopulateV3: s.populateV3(); break;
    case Op::HostIs: s.hostIs(c.object); break;
    case Op::HostDel: return "returned " + s.hostDel(c.name);
    case Op::HostDelAll: s.hostDelAll(); break;
    case Op::EdgeIs: s.edgeIs(c.object); break;
    case Op::EdgeDel: return s.edgeDel(c.object) ? "returned an edge" : "returned null";
    case Op::EdgeDelAll: s.edgeDelAll(); break;
    case Op::VelDoZombieReactors: s.velDoZombieReactors(c.flag); break;
    case Op::HasNotificationActiveIs: s.hasNotificationActiveIs(c.flag); break;
    case Op::HostMemberIs: s.hostMemberIs(c.name, c.kind, c.object); break;
    case Op::HostMemberDel: s.hostMemberDel(c.name, c.kind, c.second); break;
    case Op::HostMemberDelAll: s.hostMemberDelAll(c.name, c.kind); break;
    case Op::HostReactorDoZombie: s.hostReactorDoZombie(c.name, c.flag); break;
    case Op::MemberReactorDoZombie: s.memberReactorDoZombie(c.name, c.kind, c.second, c.flag); break;
    case Op::EdgeReactorDoZombie: s.edgeReactorDoZombie(c.object, c.flag); break;
    case Op::HostReactorUnbind: s.hostReactorUnbind(c.name); break;
    case Op::MemberReactorUnbind: s.memberReactorUnbind(c.name, c.kind, c.second); break;
    case Op::EdgeReactorUnbind: s.edgeReactorUnbind(c.object); break;
    }
    return {};
}

std::string joined(std::vector<std::string> const & lines) {
    std::string out;
    for (auto const & line : lines) out += line + "\n";
    return out;
}

}  // namespace

// ---- shared renderings

std::string facts(std::vector<std::pair<std::string, std::string>> const & attributes) {
    std::string out;
    for (auto const & [name, value] : attributes) out += (out.empty() ? "" : ", ") + name + "=" + value;
    return out;
}

std::string bracketed(std::vector<Name> names) {
    std::sort(names.begin(), names.end());
    std::string out = "[";
    for (auto const & name : names) out += (out.size() > 1 ? " " : "") + quoted(name);
    return out + "]";
}

bool ReactorState::operator<(ReactorState const & other) const {
    auto const flags = [](ReactorState const & of) { return std::tuple(of.bound, of.active, of.zombie); };
    return std::tuple(std::tie(kind, name), flags(*this), std::tie(children)) <
           std::tuple(std::tie(other.kind, other.name), flags(other), std::tie(other.children));
}

void ReactorState::sort() {
    for (ReactorState & child : children) child.sort();
    std::sort(children.begin(), children.end());
}

std::string ReactorState::text(std::string const & indent) const {
    std::string out = indent + kind + " " + quoted(name) + (bound ? " bound" : " unbound") +
                      (active ? " active" : " silent") + (zombie ? " zombie" : " live") + "\n";
    for (ReactorState const & child : children) out += child.text(indent + "  ");
    return out;
}

// ---- OracleSubject

OracleSubject::OracleSubject(Subject const * leader, Options options) : leader_(leader), oracle_(options) {
    if (leader_ == nullptr) return;
    WalkOrder order;
    // A walk over an object that is still being made has no handle yet, and nothing to order.
    order.names = [this](Walk walk, Id owner, std::vector<Name> & names) {
        if (names.empty()) return;
        auto const led = leader_->walkNames(walk, handle(owner));
        if (!led.empty()) names = led;
    };
    order.ports = [this](Walk walk, Id owner, std::vector<Id> & ports) {
        if (ports.empty()) return;
        auto const led = leader_->walkPorts(walk, handle(owner));
        if (led.empty()) return;
        ports.clear();
        for (Handle const port : led) ports.push_back(id(port));
    };
    oracle_.walkOrderIs(std::move(order));
}

void OracleSubject::named(Handle out, Id object) {
    ids_[out] = object;
    handles_[object] = out;
}

void OracleSubject::statusV2New(Handle out) { named(out, oracle_.statusV2New()); }
void OracleSubject::hostV2New(Handle out, Name const & name) { named(out, oracle_.hostV2New(name)); }
void OracleSubject::memberV2New(Handle out, MemberKind kind, Name const & name, Name const & secondaryName) {
    named(out, oracle_.memberV2New(kind, name, secondaryName));
}
void OracleSubject::edgeV2New(Handle out, Handle fromPort) { named(out, oracle_.edgeV2New(id(fromPort))); }
void OracleSubject::drop(Handle object) { oracle_.drop(id(object)); }

void OracleSubject::statusHost(Handle status, Name const & name, Handle out) {
    named(out, oracle_.statusHost(id(status), name));
}
void OracleSubject::statusHostIs(Handle status, Handle host) { oracle_.statusHostIs(id(status), id(host)); }
void OracleSubject::statusHostDel(Handle status, Name const & name) {
    oracle_.statusHostDel(id(status), name);
}
void OracleSubject::statusHostDelAll(Handle status) { oracle_.statusHostDelAll(id(status)); }
void OracleSubject::statusEdge(Handle status, Handle fromPort, Handle out) {
    named(out, oracle_.statusEdge(id(status), id(fromPort)));
}
void OracleSubject::statusEdgeIs(Handle status, Handle edge) { oracle_.statusEdgeIs(id(status), id(edge)); }
void OracleSubject::statusEdgeDel(Handle status, Handle fromPort) {
    oracle_.statusEdgeDel(id(status), id(fromPort));
}
void OracleSubject::statusEdgeDelAll(Handle status) { oracle_.statusEdgeDelAll(id(status)); }
void OracleSubject::statusLocalhostIs(Handle status, Handle host) {
    oracle_.statusLocalhostIs(id(status), id(host));
}

void OracleSubject::hostnameIs(Handle host, std::string const & value) {
    oracle_.hostnameIs(id(host), value);
}
void OracleSubject::hostnameAddedByOwnerIs(Handle host, bool value) {
    oracle_.hostnameAddedByOwnerIs(id(host), value);
}
void OracleSubject::mlagSystemIdIs(Handle host, std::uint64_t value) {
    oracle_.mlagSystemIdIs(id(host), value);
}
void OracleSubject::mlagDomainIdIs(Handle host, std::string const & value) {
    oracle_.mlagDomainIdIs(id(host), value);
}
void OracleSubject::mlagStateIs(Handle host, int value) { oracle_.mlagStateIs(id(host), value); }
void OracleSubject::mlagPeerLinkIs(Handle host, Handle portBase) {
    oracle_.mlagPeerLinkIs(id(host), id(portBase));
}
void OracleSubject::memberCreate(Handle host, MemberKind kind, Name const & name, Name const & secondaryName,
                                 Handle out) {
    named(out, oracle_.memberCreate(id(host), kind, name, secondaryName));
}
void OracleSubject::memberIs(Handle host, MemberKind kind, Handle member) {
    oracle_.memberIs(id(host), kind, id(member));
}
void OracleSubject::memberDel(Handle host, MemberKind kind, Name const & name) {
    oracle_.memberDel(id(host), kind, name);
}
void OracleSubject::memberDelAll(Handle host, MemberKind kind) { oracle_.memberDelAll(id(host), kind); }
void OracleSubject::logicalPortIs(Handle host, Name const & name, Handle portBase) {
    oracle_.logicalPortIs(id(host), name, id(portBase));
}
void OracleSubject::logicalPortDel(Handle host, Name const & name) { oracle_.logicalPortDel(id(host), name); }
void OracleSubject::logicalPortDelAll(Handle host) { oracle_.logicalPortDelAll(id(host)); }
void OracleSubject::mlagRawIs(Handle host, Name const & name, Handle mlag) {
    oracle_.mlagRawIs(id(host), name, id(mlag));
}
void OracleSubject::mlagRawDel(Handle host, Name const & name) { oracle_.mlagRawDel(id(host), name); }
void OracleSubject::mlagRawDelAll(Handle host) { oracle_.mlagRawDelAll(id(host)); }

void OracleSubject::typeIs(Handle portBase, int value) { oracle_.typeIs(id(portBase), value); }
void OracleSubject::addedByOwnerIs(Handle portBase, bool value) {
    oracle_.addedByOwnerIs(id(portBase), value);
}
void OracleSubject::portGroupIs(Handle port, Handle group) { oracle_.portGroupIs(id(port), id(group)); }
void OracleSubject::memberPortIs(Handle group, Name const & name, Handle port) {
    oracle_.memberPortIs(id(group), name, id(port));
}
void OracleSubject::memberPortDel(Handle group, Name const & name) { oracle_.memberPortDel(id(group), name); }
void OracleSubject::memberPortDelAll(Handle group) { oracle_.memberPortDelAll(id(group)); }
void OracleSubject::groupMlagIs(Handle group, Handle mlag) { oracle_.groupMlagIs(id(group), id(mlag)); }
void OracleSubject::secondaryNameIs(Handle mlag, Name const & value) {
    oracle_.secondaryNameIs(id(mlag), value);
}
void OracleSubject::localPortGroupIs(Handle mlag, Handle group) {
    oracle_.localPortGroupIs(id(mlag), id(group));
}
void OracleSubject::peerPortGroupIs(Handle mlag, Handle group) {
    oracle_.peerPortGroupIs(id(mlag), id(group));
}

void OracleSubject::toPortIs(Handle edge, Handle portBase, bool flag) {
    oracle_.toPortIs(id(edge), id(portBase), flag);
}
void OracleSubject::toPortDel(Handle edge, Handle portBase) { oracle_.toPortDel(id(edge), id(portBase)); }
void OracleSubject::toPortDelAll(Handle edge) { oracle_.toPortDelAll(id(edge)); }

void OracleSubject::statusV3New(Handle out) { named(out, oracle_.statusV3New()); }
void OracleSubject::outputHostIs(Handle status, Name const & name) { oracle_.outputHostIs(id(status), name); }
void OracleSubject::outputHostDel(Handle status, Name const & name) {
    oracle_.outputHostDel(id(status), name);
}
void OracleSubject::outputMemberIs(Handle status, Name const & host, MemberKind kind, Name const & name) {
    oracle_.outputMemberIs(id(status), host, kind, name);
}
void OracleSubject::outputMemberDel(Handle status, Name const & host, MemberKind kind, Name const & name) {
    oracle_.outputMemberDel(id(status), host, kind, name);
}

void OracleSubject::create(Handle statusV2, Handle statusV3) { oracle_.create(id(statusV2), id(statusV3)); }
void OracleSubject::destroy() { oracle_.destroy(); }
void OracleSubject::v2Is(Handle status) { oracle_.v2Is(id(status)); }
void OracleSubject::v3Is(Handle status) { oracle_.v3Is(id(status)); }
bool OracleSubject::v2Del() { return oracle_.v2Del() != kNull; }
bool OracleSubject::v3Del() { return oracle_.v3Del() != kNull; }
void OracleSubject::populateV3() { oracle_.populateV3(); }
void OracleSubject::hostIs(Handle host) { oracle_.hostIs(id(host)); }
std::string OracleSubject::hostDel(Name const & name) {
    // A host reactor follows hosts of its own name only, so the key tells the name of what comes back.
    return oracle_.hostDel(name) == kNull ? "null" : quoted(name);
}
void OracleSubject::hostDelAll() { oracle_.hostDelAll(); }
void OracleSubject::edgeIs(Handle edge) { oracle_.edgeIs(id(edge)); }
bool OracleSubject::edgeDel(Handle fromPort) { return oracle_.edgeDel(id(fromPort)) != kNull; }
void OracleSubject::edgeDelAll() { oracle_.edgeDelAll(); }
void OracleSubject::velDoZombieReactors(bool zombie) { oracle_.velDoZombieReactors(zombie); }
void OracleSubject::hasNotificationActiveIs(bool active) { oracle_.hasNotificationActiveIs(active); }

void OracleSubject::hostMemberIs(Name const & host, MemberKind kind, Handle member) {
    oracle_.hostMemberIs(host, kind, id(member));
}
void OracleSubject::hostMemberDel(Name const & host, MemberKind kind, Name const & name) {
    oracle_.hostMemberDel(host, kind, name);
}
void OracleSubject::hostMemberDelAll(Name const & host, MemberKind kind) {
    oracle_.hostMemberDelAll(host, kind);
}
void OracleSubject::hostReactorDoZombie(Name const & host, bool zombie) {
    oracle_.reactorDoZombie(oracle_.hostReactor(host), zombie);
}
void OracleSubject::memberReactorDoZombie(Name const & host, MemberKind kind, Name const & name,
                                          bool zombie) {
    oracle_.reactorDoZombie(oracle_.memberReactor(host, kind, name), zombie);
}
void OracleSubject::edgeReactorDoZombie(Handle fromPort, bool zombie) {
    oracle_.reactorDoZombie(oracle_.edgeReactor(id(fromPort)), zombie);
}
void OracleSubject::hostReactorUnbind(Name const & host) {
    oracle_.reactorNotifierIs(oracle_.hostReactor(host), kNull);
}
void OracleSubject::memberReactorUnbind(Name const & host, MemberKind kind, Name const & name) {
    oracle_.reactorNotifierIs(oracle_.memberReactor(host, kind, name), kNull);
}
void OracleSubject::edgeReactorUnbind(Handle fromPort) {
    oracle_.reactorNotifierIs(oracle_.edgeReactor(id(fromPort)), kNull);
}

Document OracleSubject::document(Handle statusV3) const { return oracle_.document(id(statusV3)); }

std::optional<std::vector<std::string>> OracleSubject::changes() const { return oracle_.changes(); }

std::optional<std::string> OracleSubject::describe(Handle object) const {
    Id const it = id(object);
    auto const number = [](auto value) { return std::to_string(value); };
    auto const names = [](std::map<Name, Id> const & collection) {
        std::vector<Name> result;
        for (auto const & [name, entry] : collection) result.push_back(name);
        return bracketed(std::move(result));
    };
    auto const host = [&](Id target) {
        return target == kNull ? "null" : quoted(oracle_.hostV2(target).name);
    };
    auto const portBase = [&](Id target) {
        return target == kNull ? "null" : quoted(oracle_.portBaseV2(target).name);
    };
    switch (oracle_.kindV2(it)) {
    case Oracle::KindV2::Status: {
        auto const & s = oracle_.statusV2(it);
        return facts(
            {{"host", names(s.host)}, {"edge", number(s.edge.size())}, {"localhost", host(s.localhost)}});
    }
    case Oracle::KindV2::Host: {
        auto const & h = oracle_.hostV2(it);
        return facts({{"name", quoted(h.name)},
                      {"hostname", quoted(h.hostname)},
                      {"hostnameAddedByOwner", number(h.hostnameAddedByOwner)},
                      {"mlagSystemId", number(h.mlagSystemId)},
                      {"mlagDomainId", quoted(h.mlagDomainId)},
                      {"mlagState", number(h.mlagState)},
                      {"mlagPeerLink", portBase(h.mlagPeerLink)},
                      {"port", names(h.member[0])},
                      {"portGroup", names(h.member[1])},
                      {"mlag", names(h.member[2])},
                      {"logicalPort", names(h.logicalPort)},
                      {"mlagRaw", names(h.mlagRaw)}});
    }
    case Oracle::KindV2::PortBase: {
        auto const & p = oracle_.portBaseV2(it);
        std::vector<std::pair<std::string, std::string>> attributes = {
            {"name", quoted(p.name)},
            {"host", host(p.host)},
            {"type", number(p.type)},
            {"addedByOwner", number(p.addedByOwner)}};
        switch (p.kind) {
        case MemberKind::Port: attributes.emplace_back("portGroup", portBase(p.portGroup)); break;
        case MemberKind::PortGroup:
            attributes.emplace_back("memberPort", names(p.memberPort));
            attributes.emplace_back("mlag", portBase(p.mlag));
            break;
        case MemberKind::Mlag:
            attributes.emplace_back("secondaryName", quoted(p.secondaryName));
            attributes.emplace_back("localPortGroup", portBase(p.localPortGroup));
            attributes.emplace_back("peerPortGroup", portBase(p.peerPortGroup));
            break;
        }
        return facts(attributes);
    }
    case Oracle::KindV2::Edge: {
        auto const & e = oracle_.edgeV2(it);
        return facts({{"fromPort", portBase(e.fromPort)}, {"toPort", number(e.toPort.size())}});
    }
    case Oracle::KindV2::None: break;
    }
    return std::nullopt;
}

std::optional<ReactorState> OracleSubject::reactors() const {
    if (!oracle_.exists()) return ReactorState{.kind = "none"};
    auto const state = [&](std::string kind, Id reactor, Name name) {
        bool const bound = oracle_.reactorNotifier(reactor) != kNull;
        return ReactorState{std::move(kind),
                            bound ? std::move(name) : Name(),
                            bound,
                            oracle_.reactorActive(reactor),
                            oracle_.reactorZombie(reactor),
                            {}};
    };
    ReactorState root{"root", "", true, oracle_.active(), oracle_.zombie(), {}};
    if (oracle_.velV2() != kNull) root.children.push_back(state("VelV2", oracle_.velV2(), ""));
    if (oracle_.velV3() != kNull) root.children.push_back(state("VelV3", oracle_.velV3(), ""));
    for (auto const & name : oracle_.hostReactors()) {
        auto host = state("host", oracle_.hostReactor(name), name);
        for (MemberKind const kind : kMemberKinds) {
            for (auto const & member : oracle_.memberReactors(name, kind)) {
                host.children.push_back(
                    state(collectionName(kind), oracle_.memberReactor(name, kind, member), member));
            }
        }
        root.children.push_back(std::move(host));
    }
    for (Id const port : oracle_.edgeReactors()) {
        root.children.push_back(
            state("edge", oracle_.edgeReactor(port), port == kNull ? "" : oracle_.portBaseV2(port).name));
    }
    return root;
}

// ---- tapes

std::vector<Call> decode(Tape const & tape) {
    Decoder decoder;
    std::vector<Call> calls;
    for (std::size_t i = 0; i < tape.size(); ++i) {
        auto call = decoder.look(tape[i]);
        if (!call) continue;
        call->step = i;
        decoder.commit(*call);
        calls.push_back(std::move(*call));
    }
    return calls;
}

std::string apply(Call const & call, Subject & subject) {
    try {
        return dispatch(call, subject);
    } catch (std::range_error const & error) {
        return isTranslatorOp(call.op) ? std::string("range: ") + error.what() : "range";
    }
}

std::string Difference::text() const {
    return "after call " + std::to_string(call) + ", " + what + " differs\n--- a\n" + a + "\n--- b\n" + b +
           "\n";
}

namespace {

// Two subjects side by side. Every look gives what differs, or nothing.
class Comparison {
public:
    using Found = std::optional<Difference>;

    Comparison(Subject & a, Subject & b) : a_(a), b_(b) {}

    // Carries out call number `index` and looks at what it did.
    Found step(std::size_t index, Call const & call) {
        index_ = index;
        try {
            std::string const ofB = apply(call, b_);
            if (auto found = differ("what came of the call", apply(call, a_), ofB)) return found;
        } catch (std::logic_error const & error) {
            return differ("the course of the call", error.what(), "");
        }
        keep(call);
        for (Handle const output : outputs_) {
            Document const ofA = a_.document(output);
            Document const ofB = b_.document(output);
            if (ofA != ofB) return Difference{index_, "version 3", ofA.text(), ofB.text()};
        }
        if (auto found = reactors()) return found;
        auto const changes = b_.changes();
        if (!changes) return std::nullopt;
        auto const others = a_.changes();
        return others ? differ("what was changed", joined(*others), joined(*changes)) : std::nullopt;
    }

    // Looks at all of version 2. There is much of it and one call changes little, so this is not for every
    // call.
    Found inputs() const {
        for (Handle const input : inputs_) {
            auto found = differIfKnown("version-2 object " + std::to_string(input), a_.describe(input),
                                       b_.describe(input));
            if (found) return found;
        }
        return std::nullopt;
    }

private:
    Found reactors() const {
        auto ofA = a_.reactors();
        auto ofB = b_.reactors();
        if (!ofA || !ofB) return std::nullopt;
        ofA->sort();
        ofB->sort();
        if (*ofA == *ofB) return std::nullopt;
        return Difference{index_, "the reactors", ofA->text(), ofB->text()};
    }

    void keep(Call const & call) {
        if (call.op == Op::Drop) {
            inputs_.erase(call.self);
            outputs_.erase(call.self);
        }
        if (call.out != 0) (call.op == Op::StatusV3New ? outputs_ : inputs_).insert(call.out);
    }

    Found differ(std::string what, std::string ofA, std::string ofB) const {
        if (ofA == ofB) return std::nullopt;
        return Difference{index_, std::move(what), std::move(ofA), std::move(ofB)};
    }
    Found differIfKnown(std::string what, std::optional<std::string> ofA,
                        std::optional<std::string> ofB) const {
        if (!ofA || !ofB) return std::nullopt;
        return differ(std::move(what), std::move(*ofA), std::move(*ofB));
    }

    Subject & a_;
    Subject & b_;
    std::size_t index_ = 0;
    std::set<Handle> inputs_;
    std::set<Handle> outputs_;
};

constexpr std::size_t kCallsBetweenLooksAtInputs = 20;

}  // namespace

std::optional<Difference> run(Tape const & tape, Subject & a, Subject & b) {
    auto const calls = decode(tape);
    Comparison comparison(a, b);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (auto found = comparison.step(i, calls[i])) return found;
        if (i % kCallsBetweenLooksAtInputs != 0 && i + 1 != calls.size()) continue;
        if (auto found = comparison.inputs()) return found;
    }
    return std::nullopt;
}

namespace {

// splitmix64: the standard distributions differ between libraries, and a seed must mean the same tape
// everywhere.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t operator()() {
        std::uint64_t z = (state_ += 0x9e3779b97f4a7c15u);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }
    std::uint64_t below(std::uint64_t bound) { return (*this)() % bound; }

private:
    std::uint64_t state_;
};

struct Weight {
    Op op;
    unsigned weight;
};

constexpr Weight kBuilding[] = {
    {Op::HostV2New, 2},       {Op::MemberV2New, 4},
    {Op::EdgeV2New, 3},       {Op::StatusHost, 20},
    {Op::StatusEdge, 20},     {Op::StatusLocalhostIs, 6},
    {Op::HostnameIs, 6},      {Op::HostnameAddedByOwnerIs, 1},
    {Op::MlagSystemIdIs, 5},  {Op::MlagDomainIdIs, 5},
    {Op::MlagStateIs, 5},     {Op::MlagPeerLinkIs, 10},
    {Op::MemberCreate, 70},   {Op::LogicalPortIs, 12},
    {Op::MlagRawIs, 12},      {Op::TypeIs, 14},
    {Op::AddedByOwnerIs, 1},  {Op::PortGroupIs, 16},
    {Op::MemberPortIs, 20},   {Op::GroupMlagIs, 14},
    {Op::SecondaryNameIs, 2}, {Op::LocalPortGroupIs, 14},
    {Op::PeerPortGroupIs, 4}, {Op::ToPortIs, 40},
};
constexpr Weight kChanging[] = {
    {Op::StatusV2New, 1},
    {Op::StatusV3New, 1},
    {Op::StatusHostIs, 22},
    {Op::StatusHostDel, 12},
    {Op::StatusHostDelAll, 1},
    {Op::StatusEdgeIs, 16},
    {Op::StatusEdgeDel, 12},
    {Op::StatusEdgeDelAll, 2},
    {Op::MemberIs, 24},
    {Op::MemberDel, 24},
    {Op::MemberDelAll, 3},
    {Op::LogicalPortDel, 10},
    {Op::LogicalPortDelAll, 3},
    {Op::MlagRawDel, 10},
    {Op::MlagRawDelAll, 3},
    {Op::MemberPortDel, 12},
    {Op::MemberPortDelAll, 4},
    {Op::ToPortDel, 14},
    {Op::ToPortDelAll, 4},
    {Op::Destroy, 4},
    {Op::V2Is, 8},
    {Op::V3Is, 4},
    {Op::V2Del, 2},
    {Op::V3Del, 2},
    {Op::PopulateV3, 6},
    {Op::HostIs, 6},
    {Op::HostDel, 5},
    {Op::HostDelAll, 1},
    {Op::EdgeIs, 6},
    {Op::EdgeDel, 5},
    {Op::EdgeDelAll, 1},
    {Op::VelDoZombieReactors, 3},
    {Op::HasNotificationActiveIs, 5},
};
constexpr Weight kDropping[] = {{Op::Drop, 30}};
constexpr Weight kOutput[] = {
    {Op::OutputHostIs, 2}, {Op::OutputHostDel, 2}, {Op::OutputMemberIs, 3}, {Op::OutputMemberDel, 5}};
constexpr Weight kReactors[] = {
    {Op::HostMemberIs, 4},        {Op::HostMemberDel, 3},         {Op::HostMemberDelAll, 1},
    {Op::HostReactorDoZombie, 4}, {Op::MemberReactorDoZombie, 5}, {Op::EdgeReactorDoZombie, 4},
    {Op::HostReactorUnbind, 2},   {Op::MemberReactorUnbind, 2},   {Op::EdgeReactorUnbind, 2}};

// Makes a tape while an oracle follows, since steps drawn blindly soon go to objects that nobody looks at any
// more.
class Generator {
public:
    Generator(std::uint64_t seed, GeneratorOptions const & options) : random_(seed), options_(options) {
        add(building_, kBuilding);
        changing_ = building_;
        add(changing_, kChanging);
        if (options.drops) add(changing_, kDropping);
        if (options.outputWrites) add(changing_, kOutput);
        if (options.reactorOperations) add(changing_, kReactors);
    }

    Tape make() {
        append({Op::StatusV2New, {}});
        append({Op::StatusV3New, {}});
        for (Op const op : {Op::StatusV2New, Op::StatusV3New}) {
            if (random_.below(3) == 0) append({op, {}});
        }
        std::size_t const built = options_.steps * (20 + random_.below(30)) / 100;
        std::size_t const attached = tape_.size() + random_.below(built + 1);
        while (tape_.size() < options_.steps) {
            if (tape_.size() == attached)
                append({Op::Create, {}});
            else if (auto const step = repair(tape_.size() > attached))
                append(*step);
            else
                append(draw(tape_.size() < built ? building_ : changing_));
        }
        return std::move(tape_);
    }

private:
    // Every tape leans another way: an operation is sometimes rare, sometimes frequent.
    template <std::size_t N>
    void add(std::vector<Weight> & weights, Weight const (&more)[N]) {
        for (auto const & [op, weight] : more)
            weights.push_back({op, weight * (1u + unsigned(random_.below(4)))});
    }

    void append(Step const & step) {
        tape_.push_back(step);
        auto const call = decoder_.look(step);
        if (!call) return;
        decoder_.commit(*call);
        apply(*call, subject_);
    }

    bool chance(unsigned one, unsigned in) { return random_.below(in) < one; }

    Step with(Op op) {
        Step step{op, {}};
        for (auto & operand : step.operand) operand = static_cast<std::uint8_t>(random_.below(256));
        return step;
    }

    // Now and then ends what keeps every change from arriving.
    std::optional<Step> repair(bool wanted) {
        auto const & o = subject_.oracle();
        if (!wanted) return std::nullopt;
        if (!o.exists()) return chance(1, 3) ? std::optional(prefer(Op::Create)) : std::nullopt;
        if (o.zombie() && chance(1, 8)) return Step{Op::VelDoZombieReactors, {0, 0, 0, 0}};
        if (!o.active() && chance(1, 8)) return Step{Op::HasNotificationActiveIs, {1, 0, 0, 0}};
        // That wakes retired reactors without reviving them.
        if (o.active() && isAnySilent() && chance(1, 12)) {
            return Step{Op::HasNotificationActiveIs, {1, 0, 0, 0}};
        }
        if (o.velV2() == kNull && chance(1, 8)) return prefer(Op::V2Is);
        if (o.velV3() == kNull && chance(1, 8)) return prefer(Op::V3Is);
        for (auto const & name : o.hostReactors()) {
            bool const astray =
                o.toHostV3(o.reactorNotifier(o.hostReactor(name))) != o.reactorOutput(o.hostReactor(name));
            if (astray && chance(1, 80)) return Step{Op::Destroy, {}};
        }
        return std::nullopt;
    }

    bool isAnySilent() const {
        auto const & o = subject_.oracle();
        auto const isSilent = [&o](Id reactor) { return !o.reactorActive(reactor); };
        for (auto const & name : o.hostReactors()) {
            if (isSilent(o.hostReactor(name))) return true;
            for (MemberKind const kind : kMemberKinds) {
                for (auto const & member : o.memberReactors(name, kind)) {
                    if (isSilent(o.memberReactor(name, kind, member))) return true;
                }
            }
        }
        auto const edges = o.edgeReactors();
        return std::any_of(edges.begin(), edges.end(),
                           [&](Id fromPort) { return isSilent(o.edgeReactor(fromPort)); });
    }

    Step draw(std::vector<Weight> const & weights) {
        std::uint64_t total = 0;
        for (auto const & weight : weights) total += weight.weight;
        std::uint64_t at = random_.below(total);
        auto chosen = weights.begin();
        while (at >= chosen->weight) at -= (chosen++)->weight;
        return prefer(chosen->op);
    }

    // Mostly operands by which the operation can make a difference, sometimes any.
    Step prefer(Op op) {
        Step step = with(op);
        if (chance(1, 10)) return step;
        for (int attempt = 0; attempt < 40 && !promising(step); ++attempt) step = with(op);
        return step;
    }

    bool promising(Step const & step) {
        auto const call = decoder_.look(step);
        if (!call) return false;
        auto const & o = subject_.oracle();
        Id const self = subject_.idOf(call->self);
        Id const object = subject_.idOf(call->object);
        switch (call->op) {
        case Op::StatusV2New:
        case Op::HostV2New:
        case Op::MemberV2New:
        case Op::StatusV3New:
        case Op::Drop: return true;
        case Op::EdgeV2New: return object != kNull && standing(object);
        case Op::StatusHost: return standing(self) && !o.statusV2(self).host.contains(call->name);
        case Op::StatusHostDel: return standing(self) && o.statusV2(self).host.contains(call->name);
        case Op::StatusHostIs: return standing(self) && object != kNull && o.hostV2(object).status == kNull;
        case Op::StatusEdgeIs: return standing(self) && object != kNull && o.edgeV2(object).status == kNull;
        case Op::StatusEdge:
            return standing(self) && standing(object) && !o.statusV2(self).edge.contains(object);
        case Op::StatusEdgeDel: return standing(self) && o.statusV2(self).edge.contains(object);
        case Op::MemberCreate:
            return standing(self) && !o.hostV2(self).member[std::size_t(call->kind)].contains(call->name);
        case Op::MemberDel:
            return standing(self) && o.hostV2(self).member[std::size_t(call->kind)].contains(call->name);
        case Op::MemberDelAll:
            return standing(self) && !o.hostV2(self).member[std::size_t(call->kind)].empty();
        case Op::MemberIs: return standing(self) && object != kNull && o.portBaseV2(object).host == kNull;
        case Op::LogicalPortIs:
        case Op::MlagRawIs:
        case Op::MemberPortIs:
            // Version 3 keys the entry by the name of its target, so mostly the key is that.
            return standing(self) && object != kNull && standing(object) &&
                   (o.portBaseV2(object).name == call->name || chance(1, 6));
        case Op::VelDoZombieReactors: return o.exists() && call->flag != o.zombie();
        case Op::HasNotificationActiveIs: return o.exists() && call->flag != o.active();
        case Op::LogicalPortDel: return standing(self) && o.hostV2(self).logicalPort.contains(call->name);
        case Op::LogicalPortDelAll: return standing(self) && !o.hostV2(self).logicalPort.empty();
        case Op::MlagRawDel: return standing(self) && o.hostV2(self).mlagRaw.contains(call->name);
        case Op::MlagRawDelAll: return standing(self) && !o.hostV2(self).mlagRaw.empty();
        case Op::MemberPortDel: return standing(self) && o.portBaseV2(self).memberPort.contains(call->name);
        case Op::MemberPortDelAll: return standing(self) && !o.portBaseV2(self).memberPort.empty();
        case Op::ToPortDel: return standing(self) && o.edgeV2(self).toPort.contains(object);
        case Op::ToPortDelAll: return standing(self) && !o.edgeV2(self).toPort.empty();
        case Op::OutputHostIs: return o.outputHost(self, call->name) == kNull;
        case Op::OutputHostDel: return o.outputHost(self, call->name) != kNull;
        case Op::OutputMemberIs:
            return o.outputHost(self, call->name) != kNull &&
                   o.outputMember(self, call->name, call->kind, call->second) == kNull;
        case Op::OutputMemberDel: return o.outputMember(self, call->name, call->kind, call->second) != kNull;
        case Op::Create: return self != kNull && object != kNull;
        case Op::V2Is:
        case Op::V3Is: return object != kNull;
        case Op::HostIs:
        case Op::EdgeIs: return object != kNull;
        case Op::HostDel:
        case Op::HostReactorDoZombie:
        case Op::HostReactorUnbind: return o.hostReactor(call->name) != kNull;
        case Op::EdgeDel:
        case Op::EdgeReactorDoZombie:
        case Op::EdgeReactorUnbind: return o.edgeReactor(object) != kNull;
        case Op::HostMemberIs: return o.hostReactor(call->name) != kNull && object != kNull;
        case Op::HostMemberDelAll: return !o.memberReactors(call->name, call->kind).empty();
        case Op::HostMemberDel:
        case Op::MemberReactorDoZombie:
        case Op::MemberReactorUnbind: return o.memberReactor(call->name, call->kind, call->second) != kNull;
        default: return (self == kNull || standing(self)) && (object == kNull || standing(object));
        }
    }

    // Reachable from a version-2 status by its collections; a status itself: followed, if there is one that
    // is.
    bool standing(Id object) {
        auto const & o = subject_.oracle();
        switch (o.kindV2(object)) {
        case Oracle::KindV2::Status:
            return !o.exists() || o.velV2() == kNull || o.reactorNotifier(o.velV2()) == object;
        case Oracle::KindV2::Host:
            return o.hostV2(object).status != kNull && standing(o.hostV2(object).status);
        case Oracle::KindV2::PortBase:
            return o.portBaseV2(object).host != kNull && standing(o.portBaseV2(object).host);
        case Oracle::KindV2::Edge:
            return o.edgeV2(object).status != kNull && standing(o.edgeV2(object).status);
        case Oracle::KindV2::None: break;
        }
        return false;
    }

    Random random_;
    GeneratorOptions options_;
    std::vector<Weight> building_;
    std::vector<Weight> changing_;
    Decoder decoder_;
    OracleSubject subject_;
    Tape tape_;
};

}  // namespace

Tape generate(std::uint64_t seed, GeneratorOptions const & options) {
    return Generator(seed, options).make();
}

Tape fromBytes(std::span<std::uint8_t const> bytes) {
    Tape tape;
    for (; bytes.size() >= 5; bytes = bytes.subspan(5)) {
        tape.push_back({static_cast<Op>(bytes[0] % kOpCount), {bytes[1], bytes[2], bytes[3], bytes[4]}});
    }
    return tape;
}

Tape shrink(Tape tape, std::function<bool(Tape const &)> const & fails) {
    bool smaller = true;
    while (smaller) {
        smaller = false;
        for (std::size_t size = std::max<std::size_t>(tape.size() / 2, 1); size > 0; size /= 2) {
            for (std::size_t from = 0; from < tape.size();) {
                Tape candidate = tape;
                auto const first = candidate.begin() + static_cast<std::ptrdiff_t>(from);
                candidate.erase(first,
                                first + static_cast<std::ptrdiff_t>(std::min(size, tape.size() - from)));
                if (fails(candidate)) {
                    tape = std::move(candidate);
                    smaller = true;
                } else {
                    from += size;
                }
            }
        }
        for (std::size_t step = 0; step < tape.size(); ++step) {
            for (std::size_t operand = 0; operand < tape[step].operand.size(); ++operand) {
                for (int value = 0; value < tape[step].operand[operand]; value = value * 2 + 1) {
                    Tape candidate = tape;
                    candidate[step].operand[operand] = static_cast<std::uint8_t>(value);
                    if (fails(candidate)) {
                        tape = std::move(candidate);
                        smaller = true;
                        break;
                    }
                }
            }
        }
    }
    return tape;
}

// ---- rendering

namespace {

// Writes each operation down as the call that a test would make.
class Writer : public Subject {
public:
    std::string take() { return std::exchange(line_, {}); }

    void statusV2New(Handle out) override { made(out, "s", "StatusV2::StatusV2Is()"); }
    void hostV2New(Handle out, Name const & name) override {
        made(out, "h", "HostV2::HostV2Is(" + quoted(name) + ")");
    }
    void memberV2New(Handle out, MemberKind kind, Name const & name, Name const & secondaryName) override {
        std::string const type = typeName(kind);
        made(out, prefix(kind), type + "::" + type + "Is(" + names(kind, name, secondaryName) + ")");
    }
    void edgeV2New(Handle out, Handle fromPort) override {
        made(out, "e", "DirectedEdgeV2::DirectedEdgeV2Is(" + ref(fromPort) + ")");
    }
    void drop(Handle object) override { line_ = ref(object) + " = nullptr;"; }
    void statusHost(Handle status, Name const & name, Handle out) override {
        made(out, "h", call(status, "hostIs", quoted(name)));
    }
    void statusHostIs(Handle status, Handle host) override {
        line(status, "hostIs", ref(host, "HostV2::Ptr()"));
    }
    void statusHostDel(Handle status, Name const & name) override { line(status, "hostDel", quoted(name)); }
    void statusHostDelAll(Handle status) override { line(status, "hostDelAll", ""); }
    void statusEdge(Handle status, Handle fromPort, Handle out) override {
        made(out, "e", call(status, "edgeIs", ref(fromPort)));
    }
    void statusEdgeIs(Handle status, Handle edge) override {
        line(status, "edgeIs", ref(edge, "DirectedEdgeV2::Ptr()"));
    }
    void statusEdgeDel(Handle status, Handle fromPort) override { line(status, "edgeDel", ref(fromPort)); }
    void statusEdgeDelAll(Handle status) override { line(status, "edgeDelAll", ""); }
    void statusLocalhostIs(Handle status, Handle host) override { line(status, "localhostIs", ref(host)); }
    void hostnameIs(Handle host, std::string const & value) override {
        line(host, "hostnameIs", quoted(value));
    }
    void hostnameAddedByOwnerIs(Handle host, bool value) override {
        line(host, "hostnameAddedByOwnerIs", flag(value));
    }
    void mlagSystemIdIs(Handle host, std::uint64_t value) override {
        line(host, "mlagSystemIdIs", "address(" + std::to_string(value) + ")");
    }
    void mlagDomainIdIs(Handle host, std::string const & value) override {
        line(host, "mlagDomainIdIs", quoted(value));
    }
    void mlagStateIs(Handle host, int value) override {
        line(host, "mlagStateIs", "Mlag::MlagState(" + std::to_string(value) + ")");
    }
    void mlagPeerLinkIs(Handle host, Handle portBase) override {
        line(host, "mlagPeerLinkIs", ref(portBase));
    }
    void memberCreate(Handle host, MemberKind kind, Name const & name, Name const & secondaryName,
                      Handle out) override {
        made(out, prefix(kind), call(host, mutator(kind, "Is"), names(kind, name, secondaryName)));
    }
    void memberIs(Handle host, MemberKind kind, Handle member) override {
        line(host, mutator(kind, "Is"), ref(member, std::string(typeName(kind)) + "::Ptr()"));
    }
    void memberDel(Handle host, MemberKind kind, Name const & name) override {
        line(host, mutator(kind, "Del"), quoted(name));
    }
    void memberDelAll(Handle host, MemberKind kind) override { line(host, mutator(kind, "DelAll"), ""); }
    void logicalPortIs(Handle host, Name const & name, Handle portBase) override {
        line(host, "logicalPortIs", quoted(name) + ", " + ref(portBase));
    }
    void logicalPortDel(Handle host, Name const & name) override {
        line(host, "logicalPortDel", quoted(name));
    }
    void logicalPortDelAll(Handle host) override { line(host, "logicalPortDelAll", ""); }
    void mlagRawIs(Handle host, Name const & name, Handle mlag) override {
        line(host, "mlagRawIs", quoted(name) + ", " + ref(mlag));
    }
    void mlagRawDel(Handle host, Name const & name) override { line(host, "mlagRawDel", quoted(name)); }
    void mlagRawDelAll(Handle host) override { line(host, "mlagRawDelAll", ""); }
    void typeIs(Handle portBase, int value) override {
        line(portBase, "typeIs", "PortTypeV2(" + std::to_string(value) + ")");
    }
    void addedByOwnerIs(Handle portBase, bool value) override {
        line(portBase, "addedByOwnerIs", flag(value));
    }
    void portGroupIs(Handle port, Handle group) override { line(port, "portGroupIs", ref(group)); }
    void memberPortIs(Handle group, Name const & name, Handle port) override {
        line(group, "memberPortIs", quoted(name) + ", " + ref(port));
    }
    void memberPortDel(Handle group, Name const & name) override {
        line(group, "memberPortDel", quoted(name));
    }
    void memberPortDelAll(Handle group) override { line(group, "memberPortDelAll", ""); }
    void groupMlagIs(Handle group, Handle mlag) override { line(group, "mlagIs", ref(mlag)); }
    void secondaryNameIs(Handle mlag, Name const & value) override {
        line(mlag, "secondaryNameIs", quoted(value));
    }
    void localPortGroupIs(Handle mlag, Handle group) override { line(mlag, "localPortGroupIs", ref(group)); }
    void peerPortGroupIs(Handle mlag, Handle group) override { line(mlag, "peerPortGroupIs", ref(group)); }
    void toPortIs(Handle edge, Handle portBase, bool value) override {
        line(edge, "toPortIs", ref(portBase) + ", " + flag(value));
    }
    void toPortDel(Handle edge, Handle portBase) override { line(edge, "toPortDel", ref(portBase)); }
    void toPortDelAll(Handle edge) override { line(edge, "toPortDelAll", ""); }
    void statusV3New(Handle out) override { made(out, "o", "NetworkTopologyV3::Status::StatusIs()"); }
    void outputHostIs(Handle status, Name const & name) override { line(status, "hostIs", quoted(name)); }
    void outputHostDel(Handle status, Name const & name) override { line(status, "hostDel", quoted(name)); }
    void outputMemberIs(Handle status, Name const & host, MemberKind kind, Name const & name) override {
        onOutputHost(status, host, mutator(kind, "Is") + "(" + names(kind, name, "") + ")");
    }
    void outputMemberDel(Handle status, Name const & host, MemberKind kind, Name const & name) override {
        onOutputHost(status, host, mutator(kind, "Del") + "(" + quoted(name) + ")");
    }
    void create(Handle statusV2, Handle statusV3) override {
        line_ = "t = V2Sm::V2SmIs(\"t\", " + ref(statusV2) + ", " + ref(statusV3) + ");";
    }
    void destroy() override { line_ = "t = nullptr;"; }
    void v2Is(Handle status) override { root("v2Is", ref(status)); }
    void v3Is(Handle status) override { root("v3Is", ref(status)); }
    bool v2Del() override { return root("v2Del", ""); }
    bool v3Del() override { return root("v3Del", ""); }
    void populateV3() override { root("populateV3", ""); }
    void hostIs(Handle host) override { root("hostIs", ref(host)); }
    std::string hostDel(Name const & name) override {
        root("hostDel", quoted(name));
        return {};
    }
    void hostDelAll() override { root("hostDelAll", ""); }
    void edgeIs(Handle edge) override { root("edgeIs", ref(edge)); }
    bool edgeDel(Handle fromPort) override { return root("edgeDel", ref(fromPort)); }
    void edgeDelAll() override { root("edgeDelAll", ""); }
    void velDoZombieReactors(bool zombie) override { root("velDoZombieReactors", flag(zombie)); }
    void hasNotificationActiveIs(bool active) override { root("hasNotificationActiveIs", flag(active)); }
    void hostMemberIs(Name const & host, MemberKind kind, Handle member) override {
        onReactor(hostReactor(host), mutator(kind, "Is") + "(" + ref(member) + ")");
    }
    void hostMemberDel(Name const & host, MemberKind kind, Name const & name) override {
        onReactor(hostReactor(host), mutator(kind, "Del") + "(" + quoted(name) + ")");
    }
    void hostMemberDelAll(Name const & host, MemberKind kind) override {
        onReactor(hostReactor(host), mutator(kind, "DelAll") + "()");
    }
    void hostReactorDoZombie(Name const & host, bool zombie) override { retire(hostReactor(host), zombie); }
    void memberReactorDoZombie(Name const & host, MemberKind kind, Name const & name, bool zombie) override {
        line_ = "if (auto h = " + hostReactor(host) + ") if (auto r = h->" + mutator(kind, "") + "(" +
                quoted(name) + ")) r->velDoZombieReactors(" + flag(zombie) + ");";
    }
    void edgeReactorDoZombie(Handle fromPort, bool zombie) override {
        retire("t->edge(" + ref(fromPort) + ")", zombie);
    }
    void hostReactorUnbind(Name const & host) override {
        onReactor(hostReactor(host), "notifierIs(nullptr)");
    }
    void memberReactorUnbind(Name const & host, MemberKind kind, Name const & name) override {
        line_ = "if (auto h = " + hostReactor(host) + ") if (auto r = h->" + mutator(kind, "") + "(" +
                quoted(name) + ")) r->notifierIs(nullptr);";
    }
    void edgeReactorUnbind(Handle fromPort) override {
        onReactor("t->edge(" + ref(fromPort) + ")", "notifierIs(nullptr)");
    }
    Document document(Handle) const override { return {}; }

private:
    static char const * prefix(MemberKind kind) {
        return kind == MemberKind::Port ? "p" : kind == MemberKind::PortGroup ? "g" : "m";
    }
    static char const * typeName(MemberKind kind) {
        return kind == MemberKind::Port ? "PortV2" : kind == MemberKind::PortGroup ? "PortGroupV2" : "MlagV2";
    }
    static std::string mutator(MemberKind kind, char const * suffix) {
        return std::string(collectionName(kind)) + suffix;
    }
    static std::string names(MemberKind kind, Name const & name, Name const & secondaryName) {
        return quoted(name) + (kind == MemberKind::Mlag ? ", " + quoted(secondaryName) : "");
    }
    static std::string flag(bool value) { return value ? "true" : "false"; }
    static std::string hostReactor(Name const & host) { return "t->host(" + quoted(host) + ")"; }

    std::string ref(Handle handle, std::string const & null = "nullptr") const {
        return handle == 0 ? null : variables_.at(handle);
    }
    std::string call(Handle self, std::string const & name, std::string const & arguments) const {
        return ref(self) + "->" + name + "(" + arguments + ")";
    }
    void line(Handle self, std::string const & name, std::string const & arguments) {
        line_ = call(self, name, arguments) + ";";
    }
    void made(Handle out, char const * prefix, std::string const & expression) {
        variables_[out] = prefix + std::to_string(out);
        line_ = "auto " + variables_[out] + " = " + expression + ";";
    }
    bool root(std::string const & name, std::string const & arguments) {
        line_ = "t->" + name + "(" + arguments + ");";
        return false;
    }
    void onReactor(std::string const & reactor, std::string const & rest) {
        line_ = "if (auto r = " + reactor + ") r->" + rest + ";";
    }
    void retire(std::string const & reactor, bool zombie) {
        onReactor(reactor, "velDoZombieReactors(" + flag(zombie) + ")");
    }
    void onOutputHost(Handle status, Name const & host, std::string const & rest) {
        line_ = "if (auto h = " + call(status, "host", quoted(host)) + ") h->" + rest + ";";
    }

    std::map<Handle, std::string> variables_;
    std::string line_;
};

}  // namespace

std::vector<std::string> renderCalls(Tape const & tape) {
    Writer writer;
    std::vector<std::string> lines;
    for (auto const & call : decode(tape)) {
        apply(call, writer);
        lines.push_back(writer.take());
    }
    return lines;
}

std::string render(Tape const & tape) { return joined(renderCalls(tape)); }

std::optional<std::string> firstFailure(std::function<SubjectPair()> const & makePair,
                                        std::uint64_t firstSeed, std::size_t count,
                                        GeneratorOptions const & options, bool shrinks) {
    auto const difference = [&](Tape const & tape) {
        auto const pair = makePair();
        return run(tape, *pair.first, *pair.second);
    };
    for (std::size_t i = 0; i < count; ++i) {
        Tape const tape = generate(firstSeed + i, options);
        auto found = difference(tape);
        if (!found) continue;
        std::string const seed = "seed " + std::to_string(firstSeed + i);
        if (!shrinks) return seed + '\n' + render(tape) + found->text();
        Tape const small =
            shrink(tape, [&](Tape const & candidate) { return difference(candidate).has_value(); });
        return seed + ", shrunk to " + std::to_string(small.size()) + " steps\n" + render(small) +
               difference(small)->text();
    }
    return std::nullopt;
}

}  // namespace oracle
