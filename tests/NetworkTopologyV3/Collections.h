// The collections of the model as tests of what they have in common see them.
//
// Each tells its owner and a recorder of that, its attribute, and its operations.
#pragma once

#include <optional>
#include <string>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/NetworkTopologyV3/Recorders.h"

namespace NetworkTopologyV3 {

// A host that stands for itself: its status has gone.
inline Vel::Ptr<Host> newHost(char const * name = "leaf-1") { return Status::StatusIs()->hostIs(name); }

// Collections of objects.

struct Hosts {
    using Owner = Status;
    using Member = Host;
    using Recorder = StatusRecorder;
    static constexpr char const * kOn = "onHost";
    static Vel::Ptr<Owner> owner() { return Status::StatusIs(); }
    static Vel::Name key(std::string const & name) { return name; }
    static Vel::Ptr<Member> is(Owner & owner, std::string const & name) { return owner.hostIs(name); }
    static Vel::Ptr<Member> del(Owner & owner, std::string const & name) { return owner.hostDel(name); }
    static void delAll(Owner & owner) { owner.hostDelAll(); }
    static auto all(auto & owner) { return owner.host(); }
    static auto find(auto & owner, std::string const & name) { return owner.host(name); }
};

struct Edges {
    using Owner = Status;
    using Member = DirectedEdge;
    using Recorder = StatusRecorder;
    static constexpr char const * kOn = "onEdge";
    static Vel::Ptr<Owner> owner() { return Status::StatusIs(); }
    static PortKey key(std::string const & name) {
        return {name, PortKey::memberOf(PortKey::kPort, "eth-1")};
    }
    static Vel::Ptr<Member> is(Owner & owner, std::string const & name) { return owner.edgeIs(key(name)); }
    static Vel::Ptr<Member> del(Owner & owner, std::string const & name) { return owner.edgeDel(key(name)); }
    static void delAll(Owner & owner) { owner.edgeDelAll(); }
    static auto all(auto & owner) { return owner.edge(); }
    static auto find(auto & owner, std::string const & name) { return owner.edge(key(name)); }
};

struct Ports {
    using Owner = Host;
    using Member = Port;
    using Recorder = HostRecorder;
    static constexpr char const * kOn = "onPort";
    static Vel::Ptr<Owner> owner() { return newHost(); }
    static Vel::Name key(std::string const & name) { return name; }
    static Vel::Ptr<Member> is(Owner & owner, std::string const & name) { return owner.portIs(name); }
    static Vel::Ptr<Member> del(Owner & owner, std::string const & name) { return owner.portDel(name); }
    static void delAll(Owner & owner) { owner.portDelAll(); }
    static auto all(auto & owner) { return owner.port(); }
    static auto find(auto & owner, std::string const & name) { return owner.port(name); }
};

struct PortGroups {
    using Owner = Host;
    using Member = PortGroup;
    using Recorder = HostRecorder;
    static constexpr char const * kOn = "onPortGroup";
    static Vel::Ptr<Owner> owner() { return newHost(); }
    static Vel::Name key(std::string const & name) { return name; }
    static Vel::Ptr<Member> is(Owner & owner, std::string const & name) { return owner.portGroupIs(name); }
    static Vel::Ptr<Member> del(Owner & owner, std::string const & name) { return owner.portGroupDel(name); }
    static void delAll(Owner & owner) { owner.portGroupDelAll(); }
    static auto all(auto & owner) { return owner.portGroup(); }
    static auto find(auto & owner, std::string const & name) { return owner.portGroup(name); }
};

struct Mlags {
    using Owner = Host;
    using Member = MlagPort;
    using Recorder = HostRecorder;
    static constexpr char const * kOn = "onMlag";
    static Vel::Ptr<Owner> owner() { return newHost(); }
    static Vel::Name key(std::string const & name) { return name; }
    static Vel::Ptr<Member> is(Owner & owner, std::string const & name) {
        return owner.mlagIs(name, "secondary");
    }
    static Vel::Ptr<Member> del(Owner & owner, std::string const & name) { return owner.mlagDel(name); }
    static void delAll(Owner & owner) { owner.mlagDelAll(); }
    static auto all(auto & owner) { return owner.mlag(); }
    static auto find(auto & owner, std::string const & name) { return owner.mlag(name); }
};

// Collections of values. `value(which, name)` makes values of that name, a different one for each `which`.

struct MlagRaws {
    using Owner = Host;
    using Value = Vel::Ptr<MlagPort>;
    using Recorder = HostRecorder;
    static constexpr char const * kOn = "onMlagRaw";
    static Vel::Ptr<Owner> owner() { return newHost(); }
    static Vel::Name key(std::string const & name) { return name; }
    static Value value(int, std::string const & name) { return newHost()->mlagIs(name, ""); }
    static void is(Owner & owner, std::string const &, Value const & value) { owner.mlagRawIs(value); }
    static void del(Owner & owner, std::string const & name) { owner.mlagRawDel(name); }
    static void delAll(Owner & owner) { owner.mlagRawDelAll(); }
    static auto all(Owner const & owner) { return owner.mlagRaw(); }
    static Value find(Owner const & owner, std::string const & name) { return owner.mlagRaw(name); }
};

struct LogicalPorts {
    using Owner = Host;
    using Value = Vel::Ptr<PortBase const>;
    using Recorder = HostRecorder;
    static constexpr char const * kOn = "onLogicalPort";
    static Vel::Ptr<Owner> owner() { return newHost(); }
    static Vel::Name key(std::string const & name) { return name; }
    // A port and a port group of one name replace each other.
    static Value value(int which, std::string const & name) {
        if (which % 2) return Value(newHost()->portIs(name));
        return Value(newHost()->portGroupIs(name));
    }
    static void is(Owner & owner, std::string const &, Value const & value) { owner.logicalPortIs(value); }
    static void del(Owner & owner, std::string const & name) { owner.logicalPortDel(name); }
    static void delAll(Owner & owner) { owner.logicalPortDelAll(); }
    static auto all(Owner const & owner) { return owner.logicalPort(); }
    static Value find(Owner const & owner, std::string const & name) { return owner.logicalPort(name); }
};

struct MemberPorts {
    using Owner = PortGroup;
    using Value = Vel::Ptr<Port>;
    using Recorder = PortGroupRecorder;
    static constexpr char const * kOn = "onMemberPort";
    static Vel::Ptr<Owner> owner() { return newHost()->portGroupIs("bond-1"); }
    static Vel::Name key(std::string const & name) { return name; }
    static Value value(int, std::string const & name) { return newHost()->portIs(name); }
    static void is(Owner & owner, std::string const &, Value const & value) { owner.memberPortIs(value); }
    static void del(Owner & owner, std::string const & name) { owner.memberPortDel(name); }
    static void delAll(Owner & owner) { owner.memberPortDelAll(); }
    static auto all(Owner const & owner) { return owner.memberPort(); }
    static Value find(Owner const & owner, std::string const & name) { return owner.memberPort(name); }
};

struct ToPorts {
    using Owner = DirectedEdge;
    using Value = std::optional<bool>;
    using Recorder = DirectedEdgeRecorder;
    static constexpr char const * kOn = "onToPort";
    static Vel::Ptr<Owner> owner() { return Status::StatusIs()->edgeIs(key("from")); }
    static PortKey key(std::string const & name) {
        return {name, PortKey::memberOf(PortKey::kPort, "eth-1")};
    }
    static Value value(int which, std::string const &) { return which % 2 == 1; }
    static void is(Owner & owner, std::string const & name, Value const & value) {
        owner.toPortIs(key(name), *value);
    }
    static void del(Owner & owner, std::string const & name) { owner.toPortDel(key(name)); }
    static void delAll(Owner & owner) { owner.toPortDelAll(); }
    static auto all(Owner const & owner) { return owner.toPort(); }
    static Value find(Owner const & owner, std::string const & name) { return owner.toPort(key(name)); }
};

}  // namespace NetworkTopologyV3
