// Every operation of the root and of its reactors that writes the output, among followers of the output that
// let go of its object, of the root, or change whatever they like, from inside any of its writes. The
// caller's own reference may go meanwhile, so operations are called on plain references.
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/translator/support/Disturbances.h"
#include "tests/translator/support/OutputFollower.h"

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopologyAggregator::V2Sm;
using TestSupport::Disturbance;
using TestSupport::disturbEveryChange;
using TestSupport::followingScene;
using TestSupport::Scene;

struct EntryPoint {
    char const * name;
    void (*call)(Scene & scene);
    void (*prepare)(Scene & scene) = [](Scene &) {};  // Undisturbed.

    friend void PrintTo(EntryPoint const & entryPoint, std::ostream * out) { *out << entryPoint.name; }
};

// Objects that no status holds.

HostV2::Ptr freeHost(Scene & scene, Vel::Name const & name) {
    auto const host = HostV2::HostV2Is(name);
    host->portIs("x")->portGroupIs(host->portGroupIs("x"));
    host->mlagIs("x", "");
    host->mlagPeerLinkIs(scene.models.v2->host("b")->port("p"));
    host->hostnameIs("free.example");
    return host;
}

template <class Member>
Vel::Ptr<Member> free(Vel::Ptr<Member> const & member) {
    member->typeIs(PortTypeV2::mlag);
    return member;
}

DirectedEdgeV2::Ptr freeEdge(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & fromPort, Scene & scene) {
    auto const edge = DirectedEdgeV2::DirectedEdgeV2Is(fromPort);
    edge->toPortIs(scene.models.v2->host("b")->port("p"), true);
    edge->toPortIs(scene.models.v2->host("b")->mlag("m"), true);
    return edge;
}

// The objects on which operations are called.

V2Sm & root(Scene & scene) { return *scene.sm; }
V2Sm::VelV2 & velV2(Scene & scene) { return *scene.sm->velV2(); }
V2Sm::VelHost & host(Scene & scene) { return *scene.sm->host("a"); }
V2Sm::VelHost::VelPort & port(Scene & scene) { return *host(scene).port("p"); }
V2Sm::VelHost::VelPortGroup & group(Scene & scene) { return *host(scene).portGroup("g"); }
V2Sm::VelHost::VelMlag & mlag(Scene & scene) { return *host(scene).mlag("m"); }
HostV2 & hostV2(Scene & scene) { return *scene.models.v2->host("a"); }
V2Sm::VelEdge & edge(Scene & scene) { return *scene.sm->edge(hostV2(scene).port("p")); }

constexpr EntryPoint entryPoints[] = {
    {"RootHostIs", [](Scene & s) { root(s).hostIs(freeHost(s, "free")); }},
    {"RootHostIsRebinding", [](Scene & s) { root(s).hostIs(freeHost(s, "a")); }},
    {"RootHostDel", [](Scene & s) { root(s).hostDel("a"); }},
    {"RootHostDelAll", [](Scene & s) { root(s).hostDelAll(); }},
    {"RootEdgeIs", [](Scene & s) { root(s).edgeIs(freeEdge(hostV2(s).portGroup("g"), s)); }},
    {"RootEdgeDel", [](Scene & s) { root(s).edgeDel(hostV2(s).port("p")); }},
    {"RootEdgeDelAll", [](Scene & s) { root(s).edgeDelAll(); }},
    {"RootV2Is", [](Scene & s) { root(s).v2Is(s.others.v2); }},
    {"RootV2IsAfterNone", [](Scene & s) { root(s).v2Is(s.models.v2); },
     [](Scene & s) {
         root(s).v2Del();
         s.models.v2->localhostIs(nullptr);
     }},
    {"RootRetired", [](Scene & s) { root(s).velDoZombieReactors(true); }},

    {"StatusNotifierIs", [](Scene & s) { velV2(s).notifierIs(s.others.v2); }},
    {"StatusOnHost", [](Scene & s) { velV2(s).onHost("free"); },
     [](Scene & s) {
         root(s).velV2()->hasNotificationActiveIs(false);
         s.models.v2->hostIs(freeHost(s, "free"));
     }},
    {"StatusOnAbsentHost", [](Scene & s) { velV2(s).onHost("a"); },
     [](Scene & s) {
         root(s).velV2()->hasNotificationActiveIs(false);
         s.models.v2->hostDel("a");
     }},
    {"StatusOnAllHosts", [](Scene & s) { velV2(s).onHostvelImmediate(); },
     [](Scene & s) {
         root(s).velV2()->hasNotificationActiveIs(false);
         s.models.v2->hostIs(freeHost(s, "free"));
         s.models.v2->hostDel("a");
     }},
    {"StatusOnAllEdges", [](Scene & s) { velV2(s).onEdgevelImmediate(); },
     [](Scene & s) {
         root(s).velV2()->hasNotificationActiveIs(false);
         s.models.v2->edgeIs(freeEdge(hostV2(s).portGroup("g"), s));
         s.models.v2->edgeDel(hostV2(s).port("p"));
     }},

    {"HostPortIs", [](Scene & s) { host(s).portIs(free(PortV2::PortV2Is("free"))); }},
    {"HostPortIsRebinding", [](Scene & s) { host(s).portIs(free(PortV2::PortV2Is("p"))); }},
    {"HostNewPort", [](Scene & s) { host(s).newPort(PortV2::PortV2Is("free")); }},
    {"HostPortDel", [](Scene & s) { host(s).portDel("p"); }},
    {"HostPortDelAll", [](Scene & s) { host(s).portDelAll(); }},
    {"HostPortGroupIs", [](Scene & s) { host(s).portGroupIs(free(PortGroupV2::PortGroupV2Is("free"))); }},
    {"HostPortGroupIsRebinding",
     [](Scene & s) { host(s).portGroupIs(free(PortGroupV2::PortGroupV2Is("g"))); }},
    {"HostPortGroupDelAll", [](Scene & s) { host(s).portGroupDelAll(); }},
    {"HostMlagIs", [](Scene & s) { host(s).mlagIs(free(MlagV2::MlagV2Is("free", ""))); }},
    {"HostMlagIsRebinding", [](Scene & s) { host(s).mlagIs(free(MlagV2::MlagV2Is("m", ""))); }},
    {"HostMlagDelAll", [](Scene & s) { host(s).mlagDelAll(); }},
    {"HostNotifierIs", [](Scene & s) { host(s).notifierIs(freeHost(s, "a")); }},
    {"HostRetired", [](Scene & s) { host(s).velDoZombieReactors(true); }},
    {"HostCleanup", [](Scene & s) { host(s).cleanup(); }},
    {"HostOnPort", [](Scene & s) { host(s).onPort("new"); },
     [](Scene & s) {
         host(s).hasNotificationActiveIs(false);
         hostV2(s).portIs("new");
     }},
    {"HostOnAllPorts", [](Scene & s) { host(s).onPortvelImmediate(); },
     [](Scene & s) {
         host(s).hasNotificationActiveIs(false);
         hostV2(s).portIs("new");
         hostV2(s).portDel("p");
     }},
    {"HostHandleLogicalPort", [](Scene & s) { host(s).handleLogicalPort("g"); },
     [](Scene & s) { s.models.v3->host("a")->logicalPortDelAll(); }},
    {"HostHandleMlagRaw", [](Scene & s) { host(s).handleMlagRaw("m"); },
     [](Scene & s) { s.models.v3->host("a")->mlagRawDelAll(); }},

    {"PortNotifierIs", [](Scene & s) { port(s).notifierIs(free(PortV2::PortV2Is("p"))); }},
    {"PortRetired", [](Scene & s) { port(s).velDoZombieReactors(true); }},
    {"PortCleanup", [](Scene & s) { port(s).cleanup(); }},
    {"PortGroupNotifierIs", [](Scene & s) { group(s).notifierIs(free(PortGroupV2::PortGroupV2Is("g"))); }},
    {"PortGroupRetired", [](Scene & s) { group(s).velDoZombieReactors(true); }},
    {"PortGroupHandleMemberPort", [](Scene & s) { group(s).handleMemberPort("p"); },
     [](Scene & s) { s.models.v3->host("a")->portGroup("g")->memberPortDelAll(); }},
    {"MlagNotifierIs", [](Scene & s) { mlag(s).notifierIs(free(MlagV2::MlagV2Is("m", ""))); }},
    {"MlagRetired", [](Scene & s) { mlag(s).velDoZombieReactors(true); }},
    {"EdgeRetired", [](Scene & s) { edge(s).velDoZombieReactors(true); }},
    {"EdgeCleanup", [](Scene & s) { edge(s).cleanup(); }},
    // Its from-port gets a counterpart after the reactor has been made.
    {"EdgeHandleToPortWithoutOutput",
     [](Scene & s) {
         V2Sm::VelEdge & velEdge = *root(s).edge(hostV2(s).port("late"));
         velEdge.handleToPort(s.models.v2->host("b")->mlag("m"));
     },
     [](Scene & s) {
         auto const fromPort = PortV2::PortV2Is("late");
         root(s).edgeIs(freeEdge(fromPort, s));
         hostV2(s).portIs(fromPort);
     }},
};

class EntryPoints : public testing::TestWithParam<EntryPoint> {
protected:
    // The disturbance happens inside the writes of the operation, of which there is at least one.
    void expectSurvives(std::vector<Disturbance> const & disturbances) const {
        for (Disturbance const & disturbance : disturbances) {
            disturbEveryChange(
                disturbance,
                [](Scene & scene) {
                    followingScene(scene);
                    GetParam().prepare(scene);
                },
                GetParam().call);
        }
    }
};

TEST_P(EntryPoints, SurviveWhatDisturbsTheRoot) { expectSurvives(TestSupport::disturbancesOfTheRoot()); }

TEST_P(EntryPoints, SurviveWhatDisturbsTheReactors) {
    expectSurvives(TestSupport::disturbancesOfTheReactors());
}

TEST_P(EntryPoints, SurviveWhatRemovesTheirObjects) {
    static std::vector<Disturbance> const removals = [] {
        std::vector<Disturbance> found;
        for (Disturbance const & disturbance : TestSupport::disturbancesOfTheModels()) {
            for (char const * const word : {"RemoveAll", "Replace", "Output", "RemoveHost", "RemoveEdge"}) {
                if (disturbance.name.starts_with(word)) found.push_back(disturbance);
            }
        }
        return found;
    }();
    ASSERT_GT(removals.size(), 15U);
    expectSurvives(removals);
}

INSTANTIATE_TEST_SUITE_P(, EntryPoints, testing::ValuesIn(entryPoints),
                         [](auto const & info) { return info.param.name; });

// What an operation has done by the time when it returns, though its root was let go inside its first write.

TEST(EntryPointsOfARootThatIsLetGo, HoldItUntilTheyAreDone) {
    struct {
        char const * name;
        std::function<void(Scene & scene, V2Sm & sm)> call;
    } const cases[] = {
        {"hostIs", [](Scene & s, V2Sm & sm) { sm.hostIs(freeHost(s, "free")); }},
        {"hostDel", [](Scene &, V2Sm & sm) { sm.hostDel("a"); }},
        {"edgeIs", [](Scene & s, V2Sm & sm) { sm.edgeIs(freeEdge(hostV2(s).portGroup("g"), s)); }},
        {"edgeDel", [](Scene & s, V2Sm & sm) { sm.edgeDel(hostV2(s).port("p")); }},
        {"v2Is", [](Scene & s, V2Sm & sm) { sm.v2Is(s.others.v2); }},
        {"velDoZombieReactors", [](Scene &, V2Sm & sm) { sm.velDoZombieReactors(true); }},
    };
    for (auto const & [name, call] : cases) {
        SCOPED_TRACE(name);
        Scene scene;
        TestSupport::fillWithThreeHosts(*scene.models.v2);
        followingScene(scene);
        std::vector<std::uint64_t> live;
        TestSupport::OutputFollower const follower(scene.models.v3, [&](auto const &) {
            scene.sm = nullptr;
            live.push_back(V2Sm::velAllocTrackTypeInfo_->live());
        });
        call(scene, *scene.sm);
        ASSERT_FALSE(live.empty());
        EXPECT_EQ(live.front(), 1U);
        EXPECT_EQ(V2Sm::velAllocTrackTypeInfo_->live(), 0U);
    }
}

}  // namespace
