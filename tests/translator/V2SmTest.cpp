#include "translator/V2Sm.h"

#include <set>
#include <type_traits>

#include <gmock/gmock.h>

#include "tests/translator/support/Dump.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/Topologies.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;
using TestSupport::dumped;
using TestSupport::everyKindOfChange;
using TestSupport::fillWithOneOfEach;
using TestSupport::fillWithThreeHosts;
using TestSupport::FlagLog;
using TestSupport::Journal;
using TestSupport::Lines;
using TestSupport::Models;
using TestSupport::WriteLog;

std::set<std::string> names(V2Sm const & sm) {
    std::set<std::string> names;
    for (auto const & host : sm.host()) names.emplace(host->fwkKey().view());
    return names;
}

// Host "a" with one of everything, and its translator.
struct Root : testing::Test {
    Root() {
        fillWithOneOfEach(*models.v2);
        sm = v2SmFactory("sm", models.v2, models.v3);
    }

    Models const models = {};
    V2Sm::Ptr sm;
};

template <class T>
constexpr bool offersItsPointers =
    std::is_same_v<typename T::Ptr, Vel::Ptr<T>> && std::is_same_v<typename T::PtrConst, Vel::Ptr<T const>>;
static_assert(offersItsPointers<V2Sm> && offersItsPointers<V2Sm::VelV2> && offersItsPointers<V2Sm::VelV3>);
static_assert(offersItsPointers<V2Sm::VelHost> && offersItsPointers<V2Sm::VelEdge>);
static_assert(offersItsPointers<V2Sm::VelHost::VelPort> && offersItsPointers<V2Sm::VelHost::VelPortGroup> &&
              offersItsPointers<V2Sm::VelHost::VelMlag>);

// Creation

TEST_F(Root, HasItsNameAndItsStatuses) {
    EXPECT_EQ(sm->name(), "sm");
    EXPECT_EQ(sm->v2(), models.v2);
    EXPECT_EQ(sm->v3(), models.v3);
    EXPECT_EQ(sm->velV2()->notifier(), models.v2.get());
    EXPECT_EQ(sm->velV3()->notifier(), models.v3.get());
    EXPECT_EQ(sm->velV2()->owner(), sm.get());
    EXPECT_EQ(sm->velV3()->owner(), sm.get());
}

TEST_F(Root, IsActiveFromTheStartWithAllItsReactors) {
    EXPECT_TRUE(sm->hasNotificationActive());
    EXPECT_TRUE(sm->velV2()->hasNotificationActive());
    EXPECT_TRUE(sm->velV3()->hasNotificationActive());
    auto const host = sm->host("a");
    EXPECT_TRUE(host->hasNotificationActive());
    EXPECT_TRUE(host->port("p")->hasNotificationActive());
    EXPECT_TRUE(host->portGroup("g")->hasNotificationActive());
    EXPECT_TRUE(host->mlag("m")->hasNotificationActive());
    EXPECT_TRUE(sm->edge(models.v2->host("a")->port("p"))->hasNotificationActive());
    EXPECT_FALSE(sm->velMarkedForDeletion());
}

TEST_F(Root, RunsOnNoActivityOfItsOwn) { EXPECT_EQ(sm->velFwkActivity(), nullptr); }

TEST_F(Root, HasOneReactorForEachHostAndEdge) {
    EXPECT_THAT(names(*sm), ElementsAre("a"));
    EXPECT_EQ(sm->host("a")->notifier(), models.v2->host("a").get());
    ASSERT_EQ(sm->edge().size(), 1U);
    auto const edge = *models.v2->edge().begin();
    EXPECT_EQ(sm->edge(edge->fromPort())->notifier(), edge.get());
    EXPECT_EQ(sm->host("b"), nullptr);
    EXPECT_EQ(sm->edge(nullptr), nullptr);
}

TEST_F(Root, IsTracked) {
    auto const & tracked = *V2Sm::velAllocTrackTypeInfo_;
    EXPECT_EQ(tracked.typeName(), "NetworkTopologyAggregator::V2Sm");
    EXPECT_EQ(tracked.size(), sizeof(V2Sm));
    EXPECT_EQ(tracked.live(), 1U);
    auto const total = tracked.total();
    auto another = V2Sm::V2SmIs("another", nullptr, nullptr);
    EXPECT_EQ(tracked.live(), 2U);
    EXPECT_EQ(tracked.total(), total + 1);
    another = nullptr;
    EXPECT_EQ(tracked.live(), 1U);
}

TEST(RootCreation, IsTheSameByTheFactoryAndByTheCreator) {
    Models const one;
    Models const other;
    fillWithThreeHosts(*one.v2);
    fillWithThreeHosts(*other.v2);
    auto const byFactory = v2SmFactory("sm", one.v2, one.v3);
    auto const byCreator = V2Sm::V2SmIs("sm", other.v2, other.v3);
    EXPECT_EQ(dumped(*one.v3), dumped(*other.v3));
    EXPECT_EQ(byFactory->name(), byCreator->name());
    EXPECT_EQ(byCreator->hasNotificationActive(), byFactory->hasNotificationActive());
}

// Localhost from the input's reactor, then the whole population, then the reactors, then the notifications.
TEST(RootCreation, GoesInThisOrder) {
    Models const models = {};
    fillWithOneOfEach(*models.v2);
    Journal journal;
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    auto const lines = journal.taken();
    ASSERT_GT(lines.size(), 31U);
    EXPECT_THAT(Lines(lines.begin(), lines.begin() + 4),
                ElementsAre("trace toHostV3", "/ localhostIs(null)", "trace populateV3", "/ hostIs('a')"));
    EXPECT_THAT(Lines(lines.begin() + 29, lines.end()),
                ElementsAre("/edge[/host/a/port/p] toPortIs(/host/a/portGroup/g, true)", "trace createV3Host",
                            "/ hostIs('a')", "trace toPortBaseV3", "/host/a mlagPeerLinkIs(/host/a/port/p)",
                            "trace createV3Port", "/host/a portIs('p')", "VelPort active",
                            "trace createV3PortGroup", "/host/a portGroupIs('g')", "VelPortGroup active",
                            "trace createV3Mlag", "/host/a mlagIs('m', 'm2')", "VelMlag active",
                            "VelHost active", "trace createV3Edge", "trace toPortBaseV3",
                            "/ edgeIs(/host/a/port/p)", "VelEdge active", "V2Sm active", "VelV2 active",
                            "VelV3 active"));
}

TEST(RootCreation, FollowsTheInputsOwnOrder) {
    Models const models = {};
    Lines expected;
    for (char const * const name : {"a", "b", "c", "d", "e", "f", "g", "h", "i"}) {
        models.v2->edgeIs(models.v2->hostIs(name)->portIs("p"));
    }
    std::vector<HostV2 const *> hosts;
    std::vector<PortBaseV2 const *> fromPorts;
    for (auto const & host : models.v2->host()) hosts.push_back(host.get());
    for (auto const & edge : models.v2->edge()) fromPorts.push_back(edge->fromPort().get());
    std::vector<HostV2 const *> hostsFollowed;
    std::vector<PortBaseV2 const *> fromPortsFollowed;
    FlagLog const flags([&](TestSupport::FlagWrite const & write) {
        if (auto const * host = dynamic_cast<V2Sm::VelHost const *>(write.object)) {
            hostsFollowed.push_back(host->notifier());
        }
        if (auto const * edge = dynamic_cast<V2Sm::VelEdge const *>(write.object)) {
            fromPortsFollowed.push_back(edge->fwkKey().get());
        }
    });
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    EXPECT_EQ(hostsFollowed, hosts);
    EXPECT_EQ(fromPortsFollowed, fromPorts);
}

TEST(RootCreation, WithoutInputOnlyCallsThePopulation) {
    Models const models = {};
    models.v3->localhostIs(models.v3->hostIs("a"));
    Journal journal;
    auto const sm = v2SmFactory("sm", nullptr, models.v3);
    EXPECT_THAT(journal.taken(), ElementsAre("trace populateV3", "V2Sm active", "VelV3 active"));
    EXPECT_EQ(sm->velV2(), nullptr);
    EXPECT_EQ(sm->v2(), nullptr);
    EXPECT_EQ(sm->host().size(), 0U);
    EXPECT_EQ(sm->edge().size(), 0U);
    EXPECT_EQ(models.v3->localhost(), models.v3->host("a"));
}

TEST(RootCreation, WithoutOutputWritesNothingAndFollowsTheInputAllTheSame) {
    Models const models = {};
    fillWithThreeHosts(*models.v2);
    WriteLog log;
    auto const sm = v2SmFactory("sm", models.v2, nullptr);
    EXPECT_EQ(sm->velV3(), nullptr);
    EXPECT_EQ(sm->v3(), nullptr);
    EXPECT_EQ(sm->host().size(), 3U);
    EXPECT_EQ(sm->edge().size(), 3U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(RootCreation, WithoutStatusesMakesARootThatFollowsNothing) {
    Journal journal;
    auto const sm = v2SmFactory("", nullptr, nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("trace populateV3", "V2Sm active"));
    EXPECT_EQ(sm->name(), "");
    EXPECT_EQ(sm->velV2(), nullptr);
    EXPECT_EQ(sm->velV3(), nullptr);
}

// The input's reactor must be there before the population and the output's before the input's.
TEST(RootCreation, OverwritesALocalhostOfTheOutputTwice) {
    Models const models = {};
    fillWithOneOfEach(*models.v2);
    auto const stray = models.v3->hostIs("stray");
    models.v3->localhostIs(stray);
    WriteLog log;
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    EXPECT_THAT(log.linesOf("localhostIs"), ElementsAre("/ localhostIs(null)", "/ localhostIs(/host/a)"));
}

// Flags

TEST_F(Root, SwitchesNotificationsFromTheRootDownwards) {
    Journal journal;
    sm->hasNotificationActiveIs(false);
    EXPECT_THAT(journal.taken(), ElementsAre("V2Sm inactive", "VelV2 inactive", "VelV3 inactive",
                                             "VelHost inactive", "VelPort inactive", "VelPortGroup inactive",
                                             "VelMlag inactive", "VelEdge inactive"));
    sm->hasNotificationActiveIs(true);
    EXPECT_THAT(journal.taken(),
                ElementsAre("V2Sm active", "VelV2 active", "VelV3 active", "VelHost active", "VelPort active",
                            "VelPortGroup active", "VelMlag active", "VelEdge active"));
}

TEST_F(Root, PassesNotificationsToReactorsAlsoWhenItsOwnFlagIsAsWanted) {
    sm->velV2()->hasNotificationActiveIs(false);
    sm->host("a")->hasNotificationActiveIs(false);
    sm->hasNotificationActiveIs(true);
    EXPECT_TRUE(sm->velV2()->hasNotificationActive());
    EXPECT_TRUE(sm->host("a")->port("p")->hasNotificationActive());
    Journal journal;
    sm->hasNotificationActiveIs(true);
    EXPECT_THAT(journal.taken(), ElementsAre("V2Sm active"));
}

TEST_F(Root, MirrorsNothingWhileInactiveAndEverythingAfterwards) {
    sm->hasNotificationActiveIs(false);
    WriteLog log;
    models.v2->hostIs("b");
    models.v2->host("a")->hostnameIs("changed");
    models.v2->host("a")->portIs("new");
    models.v2->localhostIs(nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
    sm->hasNotificationActiveIs(true);
    models.v2->host("a")->hostnameIs("changed again");
    models.v2->hostIs("c");
    EXPECT_THAT(log.taken(), AllOf(Contains("/host/a hostnameIs('changed again')"), Contains("/ hostIs('c')"),
                                   Not(Contains("/ hostIs('b')"))));
}

TEST_F(Root, RetiresItsReactorsInThisOrder) {
    Journal journal;
    sm->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelV2 inactive", "VelV2 marked", "VelV3 inactive", "VelV3 marked",
                            "VelHost inactive", "VelPort inactive", "VelPortGroup inactive",
                            "VelMlag inactive", "trace cleanup", "/ hostDel('a')", "trace cleanup",
                            "VelPort marked", "trace cleanup", "VelPortGroup marked", "trace cleanup",
                            "VelMlag marked", "VelHost marked", "VelEdge inactive", "trace cleanup",
                            "VelEdge marked", "V2Sm marked"));
    EXPECT_TRUE(sm->velMarkedForDeletion());
    EXPECT_TRUE(sm->hasNotificationActive());
}

TEST_F(Root, RevivesItsReactorsInTheSameOrderAndCleansUpAgain) {
    sm->velDoZombieReactors(true);
    models.v3->hostIs("a");
    Journal journal;
    sm->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelV2 active", "VelV2 unmarked", "VelV3 active", "VelV3 unmarked",
                            "VelHost active", "VelPort active", "VelPortGroup active", "VelMlag active",
                            "trace cleanup", "/ hostDel('a')", "trace cleanup", "VelPort unmarked",
                            "trace cleanup", "VelPortGroup unmarked", "trace cleanup", "VelMlag unmarked",
                            "VelHost unmarked", "VelEdge active", "trace cleanup", "VelEdge unmarked",
                            "V2Sm unmarked"));
    EXPECT_EQ(models.v3->host("a"), nullptr);
}

TEST_F(Root, RetiredAgainDoesNotReachItsReactors) {
    sm->velDoZombieReactors(true);
    sm->velV2()->velDoZombieReactors(false);
    sm->host("a")->velDoZombieReactors(false);
    Journal journal;
    sm->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_FALSE(sm->velV2()->velMarkedForDeletion());
    EXPECT_FALSE(sm->host("a")->velMarkedForDeletion());
}

TEST_F(Root, RevivedWithoutHavingBeenRetiredDoesNotReachItsReactors) {
    sm->velV2()->velDoZombieReactors(true);
    Journal journal;
    sm->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(sm->velV2()->velMarkedForDeletion());
}

TEST_F(Root, RetiredMirrorsNothingOfItsReactors) {
    sm->velDoZombieReactors(true);
    WriteLog log;
    for (auto const & change : everyKindOfChange()) change.make(*models.v2);
    EXPECT_THAT(log.lines(), IsEmpty());
}

// Version-3 objects are not made again; but whatever happens next is mirrored.
TEST_F(Root, RevivedMirrorsNewHostsPortsAndEdges) {
    sm->velDoZombieReactors(true);
    sm->velDoZombieReactors(false);
    auto const port = models.v2->host("a")->portIs("new");
    models.v2->edgeIs(port)->toPortIs(models.v2->hostIs("b")->portIs("p"), true);
    models.v2->localhostIs(models.v2->host("b"));
    EXPECT_THAT(dumped(*models.v3), Contains("/ localhost=/host/b"));
    EXPECT_NE(models.v3->host("b")->port("p"), nullptr);
    EXPECT_EQ(models.v3->host("a"), nullptr);
}

TEST_F(Root, HooksOfItsCollectionsDoNothing) {
    Journal journal;
    sm->hostNotify("a");
    sm->edgeNotify(models.v2->host("a")->port("p"));
    EXPECT_THAT(journal.taken(), IsEmpty());
}

// The end

TEST_F(Root, IsDestroyedInThisOrder) {
    Journal journal;
    sm = nullptr;
    EXPECT_THAT(journal.taken(),
                ElementsAre("V2Sm destroyed", "VelV2 inactive", "VelV2 marked", "VelV3 inactive",
                            "VelV3 marked", "VelHost inactive", "VelPort inactive", "VelPortGroup inactive",
                            "VelMlag inactive", "trace cleanup", "/ hostDel('a')", "trace cleanup",
                            "VelPort marked", "trace cleanup", "VelPortGroup marked", "trace cleanup",
                            "VelMlag marked", "VelHost marked", "VelEdge inactive", "trace cleanup",
                            "VelEdge marked", "V2Sm marked", "VelEdge destroyed", "VelHost destroyed",
                            "VelMlag destroyed", "VelPortGroup destroyed", "VelPort destroyed",
                            "VelV3 destroyed", "VelV2 destroyed"));
}

TEST_F(Root, DestroyedAfterItWasRetiredCleansUpNothingAgain) {
    sm->velDoZombieReactors(true);
    models.v3->hostIs("a");
    WriteLog log;
    sm = nullptr;
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_NE(models.v3->host("a"), nullptr);
}

// Hosts are retired before edges, and an edge is found by a port of its host.
TEST(RootEnd, LeavesNothingInTheOutputButEdgesAndLocalhost) {
    Models const models = {};
    fillWithThreeHosts(*models.v2);
    models.v3->hostIs("stray");
    auto sm = v2SmFactory("sm", models.v2, models.v3);
    auto const edges = models.v3->edge().size();
    sm = nullptr;
    EXPECT_EQ(models.v3->edge().size(), edges);
    EXPECT_THAT(dumped(*models.v3), IsSupersetOf({"/ localhost=/host/b(gone)", "/edge[/host/a/port/p]",
                                                  "/edge[/host/a/port/p] toPort /host/b/port/p=true"}));
    EXPECT_EQ(models.v3->host().size(), 1U);
    EXPECT_NE(models.v3->host("stray"), nullptr);
}

TEST_F(Root, WithoutOutputLeavesTheOutputBehindWhenItEnds) {
    auto const before = dumped(*models.v3);
    sm->v3Del();
    WriteLog log;
    sm = nullptr;
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(dumped(*models.v3), before);
}

TEST_F(Root, WithoutInputStillTakesItsHostsAlongWhenItEnds) {
    sm->v2Del();
    sm = nullptr;
    EXPECT_EQ(models.v3->host().size(), 0U);
}

TEST_F(Root, FollowsNothingOnceItIsGone) {
    sm = nullptr;
    WriteLog log;
    for (auto const & change : everyKindOfChange()) change.make(*models.v2);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Root, GoesWithItsLastReference) {
    auto another = sm;
    sm = nullptr;
    EXPECT_EQ(models.v3->host().size(), 1U);
    another = nullptr;
    EXPECT_EQ(models.v3->host().size(), 0U);
}

// Somebody may hold reactors for longer than the root lives.
TEST_F(Root, LetsGoOfReactorsThatOutliveIt) {
    auto const velV2 = sm->velV2();
    auto const velV3 = sm->velV3();
    auto const host = sm->host("a");
    auto const edge = sm->edge(models.v2->host("a")->port("p"));
    sm = nullptr;
    EXPECT_EQ(velV2->owner(), nullptr);
    EXPECT_EQ(velV3->owner(), nullptr);
    EXPECT_EQ(host->owner(), nullptr);
    EXPECT_EQ(edge->owner(), nullptr);
    EXPECT_TRUE(velV2->velMarkedForDeletion());
    EXPECT_TRUE(velV3->velMarkedForDeletion());
    EXPECT_TRUE(host->velMarkedForDeletion());
    EXPECT_TRUE(edge->velMarkedForDeletion());
    EXPECT_FALSE(velV2->hasNotificationActive());
}

TEST_F(Root, LetsGoOfReactorsWhoseLateCallbacksDoNothing) {
    auto const velV2 = sm->velV2();
    auto const port = models.v2->host("a")->port("p");
    sm = nullptr;
    velV2->velDoZombieReactors(false);
    WriteLog log;
    velV2->onHost("a");
    velV2->onHost("unknown");
    velV2->onHostvelImmediate();
    velV2->onLocalhost();
    velV2->onEdge(port);
    velV2->onEdgevelImmediate();
    models.v2->hostIs("b");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(models.v3->host().size(), 0U);
}

// Binding the input

TEST_F(Root, BoundToTheSameInputDoesNothing) {
    auto const reactor = sm->velV2();
    reactor->velDoZombieReactors(true);
    Journal journal;
    sm->v2Is(models.v2);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->velV2(), reactor);
    EXPECT_TRUE(reactor->velMarkedForDeletion());
}

// What `v2Is` brings into line with the new input: host "a" is another object, "b" is gone, "d" is new.
struct RootWithAnotherInput : testing::Test {
    RootWithAnotherInput() {
        fillWithOneOfEach(*models.v2);
        models.v2->edgeIs(models.v2->hostIs("b")->portIs("p"));
        sm = v2SmFactory("sm", models.v2, models.v3);
        auto const a = other->hostIs("a");
        a->hostnameIs("other.example");
        a->portIs("q");
        other->edgeIs(other->hostIs("d")->portIs("p"))->toPortIs(a->port("q"), true);
        other->localhostIs(other->host("d"));
    }

    Models const models = {};
    StatusV2::Ptr const other = StatusV2::StatusV2Is();
    V2Sm::Ptr sm;
};

TEST_F(RootWithAnotherInput, KeepsTheReactorOnTheInputAndThoseOfHostsOfTheSameName) {
    auto const velV2 = sm->velV2();
    auto const a = sm->host("a");
    sm->v2Is(other);
    EXPECT_EQ(sm->velV2(), velV2);
    EXPECT_EQ(sm->v2(), other);
    EXPECT_TRUE(velV2->hasNotificationActive());
    EXPECT_THAT(names(*sm), ElementsAre("a", "d"));
    EXPECT_EQ(sm->host("a"), a);
    EXPECT_EQ(a->notifier(), other->host("a").get());
    EXPECT_EQ(sm->edge().size(), 1U);
    EXPECT_NE(sm->edge(other->host("d")->port("p")), nullptr);
}

TEST_F(RootWithAnotherInput, BringsTheOutputIntoLine) {
    sm->v2Is(other);
    EXPECT_EQ(models.v3->host().size(), 2U);
    EXPECT_EQ(models.v3->host("a")->hostname(), "other.example");
    EXPECT_EQ(models.v3->host("a")->port().size(), 1U);
    EXPECT_NE(models.v3->host("a")->port("q"), nullptr);
    EXPECT_EQ(models.v3->localhost(), models.v3->host("d"));
    EXPECT_NE(models.v3->edge(models.v3->host("d")->port("p")->portKey()), nullptr);
}

TEST_F(RootWithAnotherInput, IsBroughtIntoLineHostsFirstThenLocalhostThenEdges) {
    WriteLog log;
    sm->v2Is(other);
    std::vector<std::string> order;
    for (auto const & write : log.writes()) {
        if (write.target == "/" && (order.empty() || order.back() != write.mutator)) {
            order.push_back(write.mutator);
        }
    }
    EXPECT_THAT(order, ElementsAre("hostIs", "hostDel", "localhostIs", "edgeIs"));
    EXPECT_THAT(log.linesOf("hostDel"), ElementsAre("/ hostDel('b')"));
    EXPECT_THAT(log.linesOf("hostIs"), ElementsAre("/ hostIs('d')"));
    EXPECT_THAT(log.linesOf("localhostIs"), ElementsAre("/ localhostIs(/host/d)"));
}

// A new host's attributes wait for their notifications, and so do the destinations of a new edge.
TEST_F(RootWithAnotherInput, IsNotPopulatedAgain) {
    other->host("d")->hostnameIs("d.example");
    TestSupport::TraceLog traces;
    sm->v2Is(other);
    EXPECT_THAT(traces.functions(), Not(Contains("populateV3")));
    EXPECT_EQ(models.v3->host("d")->hostname(), "");
    EXPECT_EQ(models.v3->edge(models.v3->host("d")->port("p")->portKey())->toPort().size(), 0U);
}

TEST_F(RootWithAnotherInput, FollowsTheOtherOneAloneFromThenOn) {
    auto const oldHost = models.v2->host("a");
    sm->v2Is(other);
    WriteLog log;
    models.v2->hostIs("e");
    models.v2->localhostIs(nullptr);
    oldHost->hostnameIs("unseen");
    oldHost->portIs("unseen");
    EXPECT_THAT(log.taken(), IsEmpty());
    other->hostIs("e");
    other->localhostIs(nullptr);
    EXPECT_THAT(log.taken(), AllOf(Contains("/ hostIs('e')"), Contains("/ localhostIs(null)")));
}

TEST_F(RootWithAnotherInput, WakesAReactorThatWasRetiredAlone) {
    sm->velV2()->velDoZombieReactors(true);
    sm->v2Is(other);
    EXPECT_FALSE(sm->velV2()->velMarkedForDeletion());
    EXPECT_TRUE(sm->velV2()->hasNotificationActive());
}

TEST_F(RootWithAnotherInput, KeepsTheReactorOfARetiredRootRetired) {
    sm->velDoZombieReactors(true);
    sm->v2Is(other);
    EXPECT_TRUE(sm->velV2()->velMarkedForDeletion());
    EXPECT_FALSE(sm->velV2()->hasNotificationActive());
    EXPECT_TRUE(sm->host("d")->velMarkedForDeletion());
    EXPECT_EQ(models.v3->host("d"), nullptr);
}

TEST_F(RootWithAnotherInput, BindsBackToTheFirstOne) {
    auto const before = names(*sm);
    sm->v2Is(other);
    sm->v2Is(models.v2);
    EXPECT_EQ(names(*sm), before);
    EXPECT_EQ(models.v3->localhost(), models.v3->host("a"));
}

TEST_F(Root, UnboundFromItsInputRetiresTheReactorAndLeavesTheRest) {
    auto const before = dumped(*models.v3);
    auto reactor = sm->velV2();
    Journal journal;
    sm->v2Is(nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 inactive", "VelV2 marked"));
    EXPECT_EQ(sm->velV2(), nullptr);
    EXPECT_EQ(sm->v2(), nullptr);
    EXPECT_EQ(reactor->owner(), nullptr);
    EXPECT_EQ(reactor->notifier(), models.v2.get());
    EXPECT_THAT(names(*sm), ElementsAre("a"));
    EXPECT_EQ(sm->edge().size(), 1U);
    EXPECT_EQ(dumped(*models.v3), before);
    reactor = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 destroyed"));
}

TEST_F(Root, GivesUpItsInput) {
    auto const before = dumped(*models.v3);
    Journal journal;
    EXPECT_EQ(sm->v2Del(), models.v2);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 inactive", "VelV2 marked", "VelV2 destroyed"));
    EXPECT_EQ(sm->v2(), nullptr);
    EXPECT_THAT(names(*sm), ElementsAre("a"));
    EXPECT_EQ(sm->edge().size(), 1U);
    EXPECT_EQ(dumped(*models.v3), before);
}

TEST_F(Root, LetsGoOfTheReactorWhenItGivesUpItsInput) {
    auto const reactor = sm->velV2();
    sm->v2Del();
    EXPECT_EQ(reactor->owner(), nullptr);
    EXPECT_TRUE(reactor->velMarkedForDeletion());
    EXPECT_FALSE(reactor->hasNotificationActive());
}

TEST_F(Root, WithoutInputFollowsItsHostsButNoNewOnes) {
    sm->v2Del();
    WriteLog log;
    models.v2->hostIs("b");
    models.v2->localhostIs(nullptr);
    models.v2->edgeDelAll();
    EXPECT_THAT(log.taken(), IsEmpty());
    models.v2->host("a")->hostnameIs("changed");
    models.v2->host("a")->portIs("new");
    EXPECT_THAT(log.taken(), ElementsAre("/host/a hostnameIs('changed')", "/host/a portIs('new')"));
}

TEST_F(Root, HasNothingToGiveUpTwice) {
    sm->v2Del();
    sm->v3Del();
    Journal journal;
    EXPECT_EQ(sm->v2Del(), nullptr);
    EXPECT_EQ(sm->v3Del(), nullptr);
    sm->v2Is(nullptr);
    sm->v3Is(nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->velV2(), nullptr);
    EXPECT_EQ(sm->velV3(), nullptr);
}

TEST_F(Root, BoundToAnInputAfterNoneWritesLocalhostAndMakesNoReactors) {
    sm->v2Del();
    sm->hostDelAll();
    sm->edgeDelAll();
    Journal journal;
    sm->v2Is(models.v2);
    EXPECT_THAT(journal.taken(), ElementsAre("trace toHostV3", "/ localhostIs(null)", "VelV2 active"));
    EXPECT_EQ(sm->v2(), models.v2);
    EXPECT_EQ(sm->velV2()->owner(), sm.get());
    EXPECT_TRUE(sm->velV2()->isRegisteredNotifiee());
    EXPECT_EQ(sm->host().size(), 0U);
    EXPECT_EQ(sm->edge().size(), 0U);
}

TEST_F(Root, BoundToAnInputAfterNonePicksUpItsHostsByTheirNotifications) {
    sm->v2Del();
    sm->hostDelAll();
    sm->v2Is(models.v2);
    models.v2->host("a")->hostnameIs("unseen");
    EXPECT_EQ(sm->host("a"), nullptr);
    models.v2->hostIs("b");
    EXPECT_THAT(names(*sm), ElementsAre("b"));
    models.v2->hostIs(HostV2::HostV2Is("a"));
    EXPECT_THAT(names(*sm), ElementsAre("a", "b"));
}

TEST_F(Root, BoundToItsInputAgainMakesAFreshReactor) {
    auto const old = sm->velV2();
    sm->v2Del();
    sm->v2Is(models.v2);
    EXPECT_NE(sm->velV2(), old);
    models.v2->localhostIs(nullptr);
    EXPECT_EQ(models.v3->localhost(), nullptr);
}

TEST_F(Root, GivesANewReactorOnTheInputItsOwnNotificationState) {
    sm->v2Del();
    sm->hasNotificationActiveIs(false);
    sm->v2Is(models.v2);
    EXPECT_FALSE(sm->velV2()->hasNotificationActive());
    WriteLog log;
    models.v2->localhostIs(nullptr);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Root, GivesANewReactorOnTheInputItsOwnZombieState) {
    sm->v2Del();
    sm->velDoZombieReactors(true);
    sm->v2Is(models.v2);
    EXPECT_TRUE(sm->velV2()->velMarkedForDeletion());
    EXPECT_FALSE(sm->velV2()->hasNotificationActive());
}

TEST_F(Root, BoundToAnInputAfterNoneWithoutOutputWritesNothing) {
    sm->v2Del();
    sm->v3Del();
    WriteLog log;
    sm->v2Is(models.v2);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(sm->v2(), models.v2);
}

// Binding the output

TEST_F(Root, BoundToTheSameOutputDoesNothing) {
    auto const reactor = sm->velV3();
    reactor->velDoZombieReactors(true);
    Journal journal;
    sm->v3Is(models.v3);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->velV3(), reactor);
    EXPECT_TRUE(reactor->velMarkedForDeletion());
}

TEST_F(Root, BoundToAnotherOutputKeepsTheReactorAndTranslatesNothing) {
    auto const other = NetworkTopologyV3::Status::StatusIs();
    auto const before = dumped(*models.v3);
    auto const reactor = sm->velV3();
    Journal journal;
    sm->v3Is(other);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->velV3(), reactor);
    EXPECT_EQ(sm->v3(), other);
    EXPECT_TRUE(reactor->isRegisteredNotifiee());
    EXPECT_EQ(dumped(*models.v3), before);
    EXPECT_EQ(other->host().size(), 0U);
}

TEST_F(Root, BoundToAnotherOutputWritesThereFromThenOn) {
    auto const other = NetworkTopologyV3::Status::StatusIs();
    sm->v3Is(other);
    models.v2->hostIs("b")->portIs("p");
    models.v2->localhostIs(models.v2->host("b"));
    EXPECT_EQ(other->localhost(), other->host("b"));
    EXPECT_NE(other->host("b")->port("p"), nullptr);
    EXPECT_EQ(models.v3->host("b"), nullptr);
    EXPECT_EQ(models.v3->localhost(), models.v3->host("a"));
}

TEST_F(Root, WakesAReactorOnTheOutputThatWasRetiredAlone) {
    sm->velV3()->velDoZombieReactors(true);
    sm->v3Is(NetworkTopologyV3::Status::StatusIs());
    EXPECT_FALSE(sm->velV3()->velMarkedForDeletion());
    EXPECT_TRUE(sm->velV3()->hasNotificationActive());
}

TEST_F(Root, KeepsTheReactorOnAnotherOutputRetiredWhileItIsRetired) {
    sm->velDoZombieReactors(true);
    sm->v3Is(NetworkTopologyV3::Status::StatusIs());
    EXPECT_TRUE(sm->velV3()->velMarkedForDeletion());
}

TEST_F(Root, UnboundFromItsOutputRetiresTheReactorAndLeavesTheRest) {
    auto const before = dumped(*models.v3);
    auto const reactor = sm->velV3();
    Journal journal;
    sm->v3Is(nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV3 inactive", "VelV3 marked"));
    EXPECT_EQ(sm->velV3(), nullptr);
    EXPECT_EQ(sm->v3(), nullptr);
    EXPECT_EQ(reactor->owner(), nullptr);
    EXPECT_EQ(reactor->notifier(), models.v3.get());
    EXPECT_THAT(names(*sm), ElementsAre("a"));
    EXPECT_EQ(dumped(*models.v3), before);
}

TEST_F(Root, GivesUpItsOutput) {
    auto const before = dumped(*models.v3);
    auto const reactor = sm->velV3();
    Journal journal;
    EXPECT_EQ(sm->v3Del(), models.v3);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV3 inactive", "VelV3 marked"));
    EXPECT_EQ(sm->v3(), nullptr);
    EXPECT_EQ(reactor->owner(), nullptr);
    EXPECT_FALSE(reactor->hasNotificationActive());
    EXPECT_EQ(dumped(*models.v3), before);
}

TEST_F(Root, BoundToAnOutputAfterNoneWritesNothingUntilTheNextChange) {
    sm->v3Del();
    Journal journal;
    sm->v3Is(models.v3);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV3 active"));
    EXPECT_EQ(sm->v3(), models.v3);
    EXPECT_EQ(sm->velV3()->owner(), sm.get());
    EXPECT_TRUE(sm->velV3()->isRegisteredNotifiee());
    models.v2->hostIs("b");
    EXPECT_NE(models.v3->host("b"), nullptr);
}

TEST_F(Root, GivesANewReactorOnTheOutputItsOwnNotificationState) {
    sm->v3Del();
    sm->hasNotificationActiveIs(false);
    sm->v3Is(models.v3);
    EXPECT_FALSE(sm->velV3()->hasNotificationActive());
}

TEST_F(Root, GivesANewReactorOnTheOutputItsOwnZombieState) {
    sm->v3Del();
    sm->velDoZombieReactors(true);
    sm->v3Is(models.v3);
    EXPECT_TRUE(sm->velV3()->velMarkedForDeletion());
    EXPECT_FALSE(sm->velV3()->hasNotificationActive());
}

// The reactor holds the output; nothing that happens there concerns the translator.
TEST_F(Root, IgnoresWhatOthersWriteIntoItsOutput) {
    Journal journal;
    auto const hostV3 = models.v3->hostIs("stray");
    models.v3->edgeIs(hostV3->portIs("p")->portKey());
    models.v3->localhostIs(hostV3);
    models.v3->edgeDelAll();
    models.v3->hostDelAll();
    EXPECT_THAT(journal.taken(), ElementsAre("/ hostIs('stray')", "/host/stray portIs('p')",
                                             "/ edgeIs(/host/stray/port/p)", "/ localhostIs(/host/stray)"));
}

TEST(RootStatuses, AreHeldByTheRootAndReleasedWithIt) {
    Models models;
    auto const v2References = models.v2->references();
    auto const v3References = models.v3->references();
    auto sm = v2SmFactory("sm", models.v2, models.v3);
    EXPECT_GT(models.v2->references(), v2References);
    EXPECT_GT(models.v3->references(), v3References);
    sm->v2Del();
    sm->v3Del();
    EXPECT_EQ(models.v2->references(), v2References);
    EXPECT_EQ(models.v3->references(), v3References);
    sm->v2Is(models.v2);
    sm->v3Is(models.v3);
    sm = nullptr;
    EXPECT_EQ(models.v2->references(), v2References);
    EXPECT_EQ(models.v3->references(), v3References);
}

// Two translators of one input do not know of each other.
TEST(RootStatuses, MayBeSharedByTwoTranslators) {
    Models const models = {};
    auto const other = NetworkTopologyV3::Status::StatusIs();
    fillWithOneOfEach(*models.v2);
    auto const one = v2SmFactory("one", models.v2, models.v3);
    auto two = v2SmFactory("two", models.v2, other);
    models.v2->hostIs("b")->portIs("p");
    EXPECT_EQ(dumped(*models.v3), dumped(*other));
    two = nullptr;
    models.v2->hostIs("c");
    EXPECT_NE(models.v3->host("c"), nullptr);
}

}  // namespace
