// The three kinds of members of a host (ports, port groups, MLAGs), for tests that hold each of them to the
// same.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/HostV2.h"
#include "platform/NetworkTopologyV3/Host.h"
#include "translator/V2Sm.h"

namespace TestSupport {

using VelHost = NetworkTopologyAggregator::V2Sm::VelHost;

struct Ports {
    using Input = NetworkTopology::PortV2;
    using Reactor = VelHost::VelPort;

    static constexpr char const * own = "p";  // What `fillWithOneOfEach` calls its one.
    static constexpr char const * className = "VelPort";
    static constexpr char const * create = "createV3Port";
    static constexpr char const * is = "portIs";
    static constexpr char const * del = "portDel";
    static constexpr char const * on = "onPort";
    static constexpr char const * secondary = "";
    static constexpr char const * link = "portGroupIs(null)";
    static constexpr char const * nullText =
        "null _port parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::port not allowed\"";

    static Vel::Ptr<Input> made(Vel::Name name) { return Input::PortV2Is(name); }
    static Vel::Ptr<Input> inputIs(NetworkTopology::HostV2 & host, Vel::Name name) {
        return host.portIs(name);
    }
    static void inputIs(NetworkTopology::HostV2 & host, Vel::Ptr<Input> const & port) { host.portIs(port); }
    static void inputDel(NetworkTopology::HostV2 & host, Vel::Name name) { host.portDel(name); }
    static void inputDelAll(NetworkTopology::HostV2 & host) { host.portDelAll(); }

    static Vel::Ptr<Reactor> reactor(VelHost & host, Vel::Name name) { return host.port(name); }
    static auto reactors(VelHost & host) { return host.port(); }
    static Vel::Ptr<Reactor> reactorIs(VelHost & host, Vel::Ptr<Input const> const & port) {
        return host.portIs(port);
    }
    static Vel::Ptr<Reactor> newReactor(VelHost & host, Vel::Ptr<Input const> const & port) {
        return host.newPort(port);
    }
    static void reactorDel(VelHost & host, Vel::Name name) { host.portDel(name); }
    static void reactorDel(VelHost & host, VelHost::PortIterator const & at) { host.portDel(at); }
    static void reactorDelAll(VelHost & host) { host.portDelAll(); }
    static void notify(VelHost & host, Vel::Name name) { host.portNotify(name); }
    static void hook(VelHost & host, Vel::Ptr<Reactor> const & reactor) { host.vel_handlePort(reactor); }
    static void onKey(VelHost & host, Vel::Name name) { host.onPort(name); }
    static void onAll(VelHost & host) { host.onPortvelImmediate(); }
    static void onUnkeyed(VelHost & host) { host.onPort(); }

    static NetworkTopologyV3::PortBase::Ptr output(NetworkTopologyV3::Host & host, Vel::Name name) {
        return host.port(name);
    }
    static NetworkTopologyV3::PortBase::Ptr outputIs(NetworkTopologyV3::Host & host, Vel::Name name) {
        return host.portIs(name);
    }
    static NetworkTopologyV3::PortBase::Ptr outputOf(Reactor const & reactor) { return reactor.v3Port(); }
    static void withoutOutput(Reactor & reactor) { reactor.v3PortIs(nullptr); }
    static NetworkTopologyV3::PortBase::Ptr created(Reactor & reactor) { return reactor.createV3Port(); }
    static void onLink(Reactor & reactor) { reactor.onPortGroup(); }
    // What the link of a version-2 object refers to, and its callback.
    static void linkDel(Input & port) { port.portGroupIs(nullptr); }
};

struct PortGroups {
    using Input = NetworkTopology::PortGroupV2;
    using Reactor = VelHost::VelPortGroup;

    static constexpr char const * own = "g";
    static constexpr char const * className = "VelPortGroup";
    static constexpr char const * create = "createV3PortGroup";
    static constexpr char const * is = "portGroupIs";
    static constexpr char const * del = "portGroupDel";
    static constexpr char const * on = "onPortGroup";
    static constexpr char const * secondary = "";
    static constexpr char const * link = "mlagIs(null)";
    static constexpr char const * nullText =
        "null _portGroup parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::portGroup not "
        "allowed\"";

    static Vel::Ptr<Input> made(Vel::Name name) { return Input::PortGroupV2Is(name); }
    static Vel::Ptr<Input> inputIs(NetworkTopology::HostV2 & host, Vel::Name name) {
        return host.portGroupIs(name);
    }
    static void inputIs(NetworkTopology::HostV2 & host, Vel::Ptr<Input> const & group) {
        host.portGroupIs(group);
    }
    static void inputDel(NetworkTopology::HostV2 & host, Vel::Name name) { host.portGroupDel(name); }
    static void inputDelAll(NetworkTopology::HostV2 & host) { host.portGroupDelAll(); }

    static Vel::Ptr<Reactor> reactor(VelHost & host, Vel::Name name) { return host.portGroup(name); }
    static auto reactors(VelHost & host) { return host.portGroup(); }
    static Vel::Ptr<Reactor> reactorIs(VelHost & host, Vel::Ptr<Input const> const & group) {
        return host.portGroupIs(group);
    }
    static Vel::Ptr<Reactor> newReactor(VelHost & host, Vel::Ptr<Input const> const & group) {
        return host.newPortGroup(group);
    }
    static void reactorDel(VelHost & host, Vel::Name name) { host.portGroupDel(name); }
    static void reactorDel(VelHost & host, VelHost::PortGroupIterator const & at) { host.portGroupDel(at); }
    static void reactorDelAll(VelHost & host) { host.portGroupDelAll(); }
    static void notify(VelHost & host, Vel::Name name) { host.portGroupNotify(name); }
    static void hook(VelHost & host, Vel::Ptr<Reactor> const & reactor) { host.vel_handlePortGroup(reactor); }
    static void onKey(VelHost & host, Vel::Name name) { host.onPortGroup(name); }
    static void onAll(VelHost & host) { host.onPortGroupvelImmediate(); }
    static void onUnkeyed(VelHost & host) { host.onPortGroup(); }

    static NetworkTopologyV3::PortBase::Ptr output(NetworkTopologyV3::Host & host, Vel::Name name) {
        return host.portGroup(name);
    }
    static NetworkTopologyV3::PortBase::Ptr outputIs(NetworkTopologyV3::Host & host, Vel::Name name) {
        return host.portGroupIs(name);
    }
    static NetworkTopologyV3::PortBase::Ptr outputOf(Reactor const & reactor) {
        return reactor.v3PortGroup();
    }
    static void withoutOutput(Reactor & reactor) { reactor.v3PortGroupIs(nullptr); }
    static NetworkTopologyV3::PortBase::Ptr created(Reactor & reactor) { return reactor.createV3PortGroup(); }
    static void onLink(Reactor & reactor) { reactor.onMlag(); }
    static void linkDel(Input & group) { group.mlagIs(nullptr); }
};

struct Mlags {
    using Input = NetworkTopology::MlagV2;
    using Reactor = VelHost::VelMlag;

    static constexpr char const * own = "m";
    static constexpr char const * className = "VelMlag";
    static constexpr char const * create = "createV3Mlag";
    static constexpr char const * is = "mlagIs";
    static constexpr char const * del = "mlagDel";
    static constexpr char const * on = "onMlag";
    static constexpr char const * secondary = ", 'second'";
    static constexpr char const * link = "localPortGroupIs(null)";
    static constexpr char const * nullText =
        "null _mlag parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::mlag not allowed\"";

    static Vel::Ptr<Input> made(Vel::Name name) { return Input::MlagV2Is(name, "second"); }
    static Vel::Ptr<Input> inputIs(NetworkTopology::HostV2 & host, Vel::Name name) {
        return host.mlagIs(name, "second");
    }
    static void inputIs(NetworkTopology::HostV2 & host, Vel::Ptr<Input> const & mlag) { host.mlagIs(mlag); }
    static void inputDel(NetworkTopology::HostV2 & host, Vel::Name name) { host.mlagDel(name); }
    static void inputDelAll(NetworkTopology::HostV2 & host) { host.mlagDelAll(); }

    static Vel::Ptr<Reactor> reactor(VelHost & host, Vel::Name name) { return host.mlag(name); }
    static auto reactors(VelHost & host) { return host.mlag(); }
    static Vel::Ptr<Reactor> reactorIs(VelHost & host, Vel::Ptr<Input const> const & mlag) {
        return host.mlagIs(mlag);
    }
    static Vel::Ptr<Reactor> newReactor(VelHost & host, Vel::Ptr<Input const> const & mlag) {
        return host.newMlag(mlag);
    }
    static void reactorDel(VelHost & host, Vel::Name name) { host.mlagDel(name); }
    static void reactorDel(VelHost & host, VelHost::MlagIterator const & at) { host.mlagDel(at); }
    static void reactorDelAll(VelHost & host) { host.mlagDelAll(); }
    static void notify(VelHost & host, Vel::Name name) { host.mlagNotify(name); }
    static void hook(VelHost & host, Vel::Ptr<Reactor> const & reactor) { host.vel_handleMlag(reactor); }
    static void onKey(VelHost & host, Vel::Name name) { host.onMlag(name); }
    static void onAll(VelHost & host) { host.onMlagvelImmediate(); }
    static void onUnkeyed(VelHost & host) { host.onMlag(); }

    static NetworkTopologyV3::PortBase::Ptr output(NetworkTopologyV3::Host & host, Vel::Name name) {
        return host.mlag(name);
    }
    static NetworkTopologyV3::PortBase::Ptr outputIs(NetworkTopologyV3::Host & host, Vel::Name name) {
        return host.mlagIs(name, "");
    }
    static NetworkTopologyV3::PortBase::Ptr outputOf(Reactor const & reactor) { return reactor.v3Mlag(); }
    static void withoutOutput(Reactor & reactor) { reactor.v3MlagIs(nullptr); }
    static NetworkTopologyV3::PortBase::Ptr created(Reactor & reactor) { return reactor.createV3Mlag(); }
    static void onLink(Reactor & reactor) { reactor.onLocalPortGroup(); }
    static void linkDel(Input & mlag) { mlag.localPortGroupIs(nullptr); }
};

using KindsOfMembers = testing::Types<Ports, PortGroups, Mlags>;

// How tests of each kind are named.
struct KindNames {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::className;
    }
};

}  // namespace TestSupport
