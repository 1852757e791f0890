#include "translator/VelEdge.h"

#include <gmock/gmock.h>

#include "platform/Vel/Exceptions.h"
#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/TraceLog.h"

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortV2;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using TestSupport::Journal;
using TestSupport::Lines;
using TestSupport::WriteLog;

// The edge from port "p" of host "a" to its group "g".
struct VelEdge : TestSupport::Followed {
    using ToPort = Vel::Ptr<PortBaseV2 const>;

    Vel::Ptr<PortV2> const port = hostV2->port("p");
    DirectedEdgeV2::Ptr const edge = models.v2->edge(port);
    Vel::Ptr<V2Sm::VelEdge> reactor = sm->edge(port);
    ToPort const group = hostV2->portGroup("g");
    ToPort const mlag = hostV2->mlag("m");
};

struct EdgeRegistry : VelEdge {};

// The registry

TEST_F(EdgeRegistry, MakesSwitchesOnAndEntersAReactor) {
    auto const other = DirectedEdgeV2::DirectedEdgeV2Is(group);
    Journal journal;
    sm->edgeIs(other);
    EXPECT_THAT(journal.taken(), ElementsAre("trace createV3Edge", "trace toPortBaseV3",
                                             "/ edgeIs(/host/a/portGroup/g)", "VelEdge active"));
    auto const made = sm->edge(group);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->notifier(), other.get());
    EXPECT_EQ(made->fwkKey(), group);
    EXPECT_EQ(made->owner(), sm.get());
}

TEST_F(EdgeRegistry, GivenTheSameEdgeAgainChangesNothing) {
    reactor->velDoZombieReactors(true);
    Journal journal;
    sm->edgeIs(edge);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(reactor->velMarkedForDeletion());
    EXPECT_EQ(sm->edge().size(), 1U);
}

TEST_F(EdgeRegistry, GivenAnotherEdgeOfTheFromPortRebindsTheReactorAndKeepsItsOutputEdge) {
    auto const other = DirectedEdgeV2::DirectedEdgeV2Is(port);
    other->toPortIs(mlag, true);
    auto const output = reactor->v3Edge();
    Journal journal;
    sm->edgeIs(other);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->edge(port), reactor);
    EXPECT_EQ(reactor->notifier(), other.get());
    EXPECT_EQ(reactor->v3Edge(), output);
    EXPECT_EQ(models.v3->edge(hostV3()->port("p")->portKey()), output);
}

TEST_F(EdgeRegistry, GivesAReboundReactorTheMarkOfTheRoot) {
    reactor->velDoZombieReactors(true);
    WriteLog log;
    sm->edgeIs(DirectedEdgeV2::DirectedEdgeV2Is(port));
    EXPECT_FALSE(reactor->velMarkedForDeletion());
    // Reviving deletes the output edge, and nothing makes it again.
    EXPECT_THAT(log.taken(), ElementsAre("/ edgeDel(/host/a/port/p)"));
    EXPECT_EQ(models.v3->edge().size(), 0U);
}

TEST_F(EdgeRegistry, OfARetiredRootMakesAnEdgeAndDeletesItAgain) {
    sm->velDoZombieReactors(true);
    models.v3->hostIs("a")->portGroupIs("g");
    Journal journal;
    sm->edgeIs(DirectedEdgeV2::DirectedEdgeV2Is(group));
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace createV3Edge", "trace toPortBaseV3", "/ edgeIs(/host/a/portGroup/g)",
                            "VelEdge active", "VelEdge inactive", "trace cleanup", "trace toPortBaseV3",
                            "/ edgeDel(/host/a/portGroup/g)", "VelEdge marked"));
    EXPECT_NE(sm->edge(group), nullptr);
}

TEST_F(EdgeRegistry, RefusesNullAndIsUnchanged) {
    Journal journal;
    try {
        sm->edgeIs(nullptr);
        FAIL() << "null was taken";
    } catch (Vel::RangeException const & exception) {
        EXPECT_STREQ(exception.what(),
                     "null _edge parameter to mutator for NetworkTopologyAggregator::V2Sm::edge not "
                     "allowed\"");
    }
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->edge().size(), 1U);
}

TEST_F(EdgeRegistry, TellsFromPortsOfOneNameApart) {
    auto const twin = PortV2::PortV2Is("p");
    EXPECT_EQ(sm->edge(twin), nullptr);
    EXPECT_EQ(sm->edgeDel(twin), nullptr);
    sm->edgeIs(DirectedEdgeV2::DirectedEdgeV2Is(twin));
    EXPECT_EQ(sm->edge().size(), 2U);
    EXPECT_EQ(sm->edge(port), reactor);
}

TEST_F(EdgeRegistry, HoldsTheEdgeFromNothingUnderTheNullKey) {
    auto const nowhere = DirectedEdgeV2::DirectedEdgeV2Is(nullptr);
    sm->edgeIs(nowhere);
    ASSERT_NE(sm->edge(nullptr), nullptr);
    EXPECT_EQ(sm->edge(nullptr)->v3Edge(), nullptr);
    WriteLog log;
    nowhere->toPortIs(group, true);
    EXPECT_EQ(sm->edgeDel(nullptr), nowhere);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(sm->edge().size(), 1U);
}

TEST_F(EdgeRegistry, DeletesAReactorInThisOrderAndGivesItsEdgeBack) {
    bool entered = true;
    auto const follower = inside("/ onEdge(/host/a/port/p)", [&] { entered = bool(sm->edge(port)); });
    Journal journal;
    EXPECT_EQ(sm->edgeDel(port), edge);
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge inactive", "trace cleanup", "trace toPortBaseV3",
                                             "/ edgeDel(/host/a/port/p)", "VelEdge marked"));
    EXPECT_FALSE(entered);
    EXPECT_EQ(reactor->owner(), nullptr);
    EXPECT_FALSE(reactor->hasNotificationActive());
    reactor = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge destroyed"));
}

TEST_F(EdgeRegistry, SwitchesADeletedReactorOffLast) {
    reactor->velDoZombieReactors(true);
    reactor->hasNotificationActiveIs(true);
    Journal journal;
    sm->edgeDel(port);
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge inactive"));
}

TEST_F(EdgeRegistry, DeletesNothingUnderAnUnknownFromPort) {
    Journal journal;
    EXPECT_EQ(sm->edgeDel(group), nullptr);
    EXPECT_EQ(sm->edgeDel(nullptr), nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(EdgeRegistry, DeletesAllAndTheOutputEdgesThatCanBeFound) {
    auto const departed = hostV2->portIs("x");
    for (auto const & fromPort : {group, mlag, ToPort(departed)}) models.v2->edgeIs(fromPort);
    hostV2->portDel("x");
    WriteLog log;
    sm->edgeDelAll();
    EXPECT_THAT(log.taken(),
                UnorderedElementsAre("/ edgeDel(/host/a/port/p)", "/ edgeDel(/host/a/portGroup/g)",
                                     "/ edgeDel(/host/a/mlag/m)"));
    EXPECT_EQ(sm->edge().size(), 0U);
    EXPECT_EQ(models.v3->edge().size(), 1U);
    sm->edgeDelAll();
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST_F(EdgeRegistry, DeletesAlsoReactorsThatHaveLostTheirEdge) {
    reactor->notifierIs(nullptr);
    EXPECT_EQ(reactor->fwkKey(), nullptr);
    models.v2->edgeIs(group);
    sm->edge(group)->notifierIs(nullptr);
    sm->edgeDelAll();
    EXPECT_EQ(sm->edge().size(), 0U);
}

// Or another port might come to stand at its address.
TEST_F(EdgeRegistry, HoldsTheKeyOfAReactorThatHasLostItsEdge) {
    Vel::Ptr<PortV2> lost = hostV2->portIs("lost");
    models.v2->edgeIs(lost);
    auto const live = PortV2::velAllocTrackTypeInfo_->live();
    sm->edge(lost)->notifierIs(nullptr);
    sm->velV2()->hasNotificationActiveIs(false);
    models.v2->edgeDel(lost);
    hostV2->portDel("lost");
    lost = nullptr;
    EXPECT_EQ(PortV2::velAllocTrackTypeInfo_->live(), live);
    sm->edgeDelAll();
    EXPECT_EQ(PortV2::velAllocTrackTypeInfo_->live(), live - 1);
}

TEST_F(EdgeRegistry, CleansUpByTheHookAndNothingElse) {
    Journal journal;
    sm->vel_handleEdge(reactor);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace cleanup", "trace toPortBaseV3", "/ edgeDel(/host/a/port/p)"));
    EXPECT_EQ(sm->edge(port), reactor);
    EXPECT_FALSE(reactor->velMarkedForDeletion());
}

// Making

TEST_F(VelEdge, IsMadeRegisteredButNotActiveAndMakesItsEdge) {
    auto const other = DirectedEdgeV2::DirectedEdgeV2Is(group);
    other->toPortIs(mlag, true);
    Journal journal;
    Vel::Ptr<V2Sm::VelEdge> const made = new V2Sm::VelEdge(other, sm.get());
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace createV3Edge", "trace toPortBaseV3", "/ edgeIs(/host/a/portGroup/g)"));
    EXPECT_TRUE(made->isRegisteredNotifiee());
    EXPECT_FALSE(made->hasNotificationActive());
    EXPECT_EQ(made->v3Edge(), models.v3->edge(hostV3()->portGroup("g")->portKey()));
    EXPECT_EQ(made->v3Edge()->toPort().size(), 0U);
}

TEST_F(VelEdge, TakesTheOutputEdgeThatIsThereWithItsDestinations) {
    auto const present = models.v3->edgeIs(hostV3()->portGroup("g")->portKey());
    present->toPortIs(hostV3()->port("p")->portKey(), true);
    models.v2->edgeIs(group);
    EXPECT_EQ(sm->edge(group)->v3Edge(), present);
    EXPECT_EQ(present->toPort().size(), 1U);
}

TEST_F(VelEdge, IsTracked) {
    EXPECT_EQ(V2Sm::VelEdge::velAllocTrackTypeInfo_->typeName(), "NetworkTopologyAggregator::V2Sm::VelEdge");
    EXPECT_EQ(V2Sm::VelEdge::velAllocTrackTypeInfo_->live(), 1U);
}

TEST_F(VelEdge, CreatesItsEdgeAnewWhenAsked) {
    auto const before = reactor->v3Edge();
    EXPECT_EQ(reactor->createV3Edge(), before);
    models.v3->edgeDelAll();
    auto const created = reactor->createV3Edge();
    EXPECT_NE(created, before);
    EXPECT_EQ(created, models.v3->edge(hostV3()->port("p")->portKey()));
    EXPECT_EQ(reactor->v3Edge(), before);
}

TEST_F(VelEdge, LetGoByATraceSinkMeanwhileCreatesNothing) {
    TestSupport::TraceLog traces;
    traces.onTraceIs([&](TestSupport::Trace const & trace) {
        if (trace.function == "toPortBaseV3") sm->edgeDel(port);
    });
    EXPECT_EQ(reactor->createV3Edge(), nullptr);
    EXPECT_EQ(reactor->owner(), nullptr);
}

TEST_F(VelEdge, CreatesNothingWithoutOutputStatusFromPortOrRoot) {
    struct {
        char const * name;
        std::function<void()> take;
        Lines traces;
    } const cases[] = {
        {"counterpart", [&] { hostV3()->portDel("p"); }, {"trace createV3Edge", "trace toPortBaseV3"}},
        {"status", [&] { sm->v3Del(); }, {"trace createV3Edge", "trace toPortBaseV3"}},
        {"edge", [&] { reactor->notifierIs(nullptr); }, {"trace createV3Edge", "trace toPortBaseV3"}},
        {"root", [&] { reactor->ownerIs(nullptr); }, {"trace createV3Edge"}},
    };
    for (auto const & [name, take, traces] : cases) {
        SCOPED_TRACE(name);
        take();
        Journal journal;
        EXPECT_EQ(reactor->createV3Edge(), nullptr);
        EXPECT_EQ(journal.taken(), traces);
    }
}

// Destinations

TEST_F(VelEdge, WritesADestinationWithItsFlag) {
    Journal journal;
    edge->toPortIs(mlag, true);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace toPortBaseV3",
                                             "/edge[/host/a/port/p] toPortIs(/host/a/mlag/m, true)"));
    edge->toPortIs(mlag, false);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace toPortBaseV3",
                                             "/edge[/host/a/port/p] toPortIs(/host/a/mlag/m, false)"));
    EXPECT_EQ(reactor->v3Edge()->toPort(hostV3()->mlag("m")->portKey()), false);
}

TEST_F(VelEdge, DeletesADestinationThatHasGone) {
    Journal journal;
    edge->toPortDel(group);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace toPortBaseV3",
                                             "/edge[/host/a/port/p] toPortDel(/host/a/portGroup/g)"));
    reactor->onToPort(mlag);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace toPortBaseV3",
                                             "/edge[/host/a/port/p] toPortDel(/host/a/mlag/m)"));
}

TEST_F(VelEdge, DeletesAllDestinationsOneByOne) {
    edge->toPortIs(mlag, true);
    WriteLog log;
    edge->toPortDelAll();
    EXPECT_THAT(log.taken(), UnorderedElementsAre("/edge[/host/a/port/p] toPortDel(/host/a/portGroup/g)",
                                                  "/edge[/host/a/port/p] toPortDel(/host/a/mlag/m)"));
}

TEST_F(VelEdge, IgnoresADestinationWithoutCounterpartOnAdditionAndOnRemoval) {
    ToPort const stray = PortV2::PortV2Is("x");
    Journal journal;
    edge->toPortIs(stray, true);
    edge->toPortDel(stray);
    edge->toPortIs(nullptr, true);
    edge->toPortDel(nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace toPortBaseV3", "trace handleToPort",
                                             "trace toPortBaseV3", "trace handleToPort", "trace toPortBaseV3",
                                             "trace handleToPort", "trace toPortBaseV3"));
    EXPECT_EQ(reactor->v3Edge()->toPort().size(), 1U);
}

// Its port has left its host: the destination stays in the output though it has left the edge.
TEST_F(VelEdge, KeepsADestinationWhosePortHasLeftBeforeItWasRemoved) {
    auto const departed = hostV2->portIs("x");
    edge->toPortIs(departed, true);
    hostV2->portDel("x");
    WriteLog log;
    edge->toPortDel(departed);
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_EQ(reactor->v3Edge()->toPort().size(), 2U);
}

TEST_F(VelEdge, IgnoresDestinationsWhileItIsRetired) {
    reactor->velDoZombieReactors(true);
    reactor->hasNotificationActiveIs(true);
    Journal journal;
    edge->toPortIs(mlag, true);
    reactor->onToPort(group);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelEdge, IgnoresNotificationsOfDestinationsWithoutKey) {
    Journal journal;
    reactor->onToPortvelImmediate();
    reactor->onToPort();
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelEdge, WithoutEdgeOrRootWritesNoDestination) {
    reactor->notifierIs(nullptr);
    Journal journal;
    reactor->handleToPort(group);
    reactor->notifierIs(edge);
    reactor->ownerIs(nullptr);
    reactor->handleToPort(group);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace handleToPort"));
    reactor->ownerIs(sm.get());
}

// An edge whose from-port has no counterpart when its reactor is made

struct VelEdgeWithoutOutput : VelEdge {
    VelEdgeWithoutOutput() {
        late->toPortIs(group, true);
        models.v2->edgeIs(late);
        reactor = sm->edge(stray);
    }
    // From here on the from-port has a counterpart.
    void mirror() { hostV2->portIs(stray); }

    Vel::Ptr<PortV2> const stray = PortV2::PortV2Is("x");
    DirectedEdgeV2::Ptr const late = DirectedEdgeV2::DirectedEdgeV2Is(stray);
};

TEST_F(VelEdgeWithoutOutput, HasNoneAndIgnoresDestinations) {
    EXPECT_EQ(reactor->v3Edge(), nullptr);
    Journal journal;
    late->toPortIs(mlag, true);
    late->toPortDel(mlag);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace createV3Edge", "trace toPortBaseV3",
                                             "trace toPortBaseV3", "trace handleToPort", "trace createV3Edge",
                                             "trace toPortBaseV3", "trace toPortBaseV3"));
    EXPECT_EQ(reactor->v3Edge(), nullptr);
}

TEST_F(VelEdgeWithoutOutput, StaysWithoutUntilTheNextDestination) {
    WriteLog log;
    mirror();
    EXPECT_THAT(log.taken(), ElementsAre("/host/a portIs('x')"));
    EXPECT_EQ(reactor->v3Edge(), nullptr);
}

TEST_F(VelEdgeWithoutOutput, IsMadeAtTheNextDestinationWithAllThatTheEdgeHolds) {
    mirror();
    Journal journal;
    late->toPortIs(mlag, false);
    auto const lines = journal.taken();
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_THAT(Lines(lines.begin(), lines.begin() + 4),
                ElementsAre("trace handleToPort", "trace createV3Edge", "trace toPortBaseV3",
                            "/ edgeIs(/host/a/port/x)"));
    // In the order of the edge's collection.
    EXPECT_THAT(Lines(lines.begin() + 4, lines.begin() + 8),
                UnorderedElementsAre("trace toPortBaseV3", "trace toPortBaseV3",
                                     "/edge[/host/a/port/x] toPortIs(/host/a/portGroup/g, true)",
                                     "/edge[/host/a/port/x] toPortIs(/host/a/mlag/m, false)"));
    // Then the notification as usual.
    EXPECT_THAT(Lines(lines.begin() + 8, lines.end()),
                ElementsAre("trace toPortBaseV3", "/edge[/host/a/port/x] toPortIs(/host/a/mlag/m, false)"));
    EXPECT_EQ(reactor->v3Edge()->toPort().size(), 2U);
    late->toPortDel(mlag);
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleToPort", "trace toPortBaseV3",
                                             "/edge[/host/a/port/x] toPortDel(/host/a/mlag/m)"));
}

TEST_F(VelEdgeWithoutOutput, IsMadeAlsoAtARemovalAndForADestinationWithoutCounterpart) {
    mirror();
    WriteLog log;
    late->toPortIs(PortV2::PortV2Is("y"), true);
    EXPECT_THAT(log.taken(), ElementsAre("/ edgeIs(/host/a/port/x)",
                                         "/edge[/host/a/port/x] toPortIs(/host/a/portGroup/g, true)"));
    models.v2->edgeDel(stray);
    EXPECT_THAT(log.taken(), ElementsAre("/ edgeDel(/host/a/port/x)"));
}

TEST_F(VelEdgeWithoutOutput, HandlesTheNotificationOfTheEdgeToWhichItIsReboundMeanwhile) {
    mirror();
    auto const other = DirectedEdgeV2::DirectedEdgeV2Is(stray);
    auto const follower = inside("/ onEdge(/host/a/port/x)", [&] { sm->edgeIs(other); });
    WriteLog log;
    late->toPortIs(mlag, true);
    EXPECT_EQ(reactor->notifier(), other.get());
    // `other` has no such destination.
    EXPECT_THAT(log.lines(),
                ElementsAre("/ edgeIs(/host/a/port/x)", "/edge[/host/a/port/x] toPortDel(/host/a/mlag/m)"));
}

TEST_F(VelEdgeWithoutOutput, SurvivesThatItsDestinationsGoWhileTheyAreWritten) {
    mirror();
    auto const follower = inside("/ onEdge(/host/a/port/x)", [&] { late->toPortDelAll(); });
    late->toPortIs(mlag, true);
    EXPECT_EQ(reactor->v3Edge()->toPort().size(), 0U);
}

TEST_F(VelEdgeWithoutOutput, CleansUpNothing) {
    // The edge of that key is somebody else's.
    mirror();
    models.v3->edgeIs(hostV3()->port("x")->portKey());
    WriteLog log;
    models.v2->edgeDel(stray);
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_EQ(models.v3->edge().size(), 2U);
}

TEST_F(VelEdgeWithoutOutput, IsLeftWithoutByARebinding) {
    mirror();
    WriteLog log;
    models.v2->edgeIs(DirectedEdgeV2::DirectedEdgeV2Is(stray));
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_EQ(reactor->v3Edge(), nullptr);
}

// Binding

TEST_F(VelEdge, BoundToTheSameEdgeDoesNotEvenRegister) {
    reactor->isRegisteredNotifieeIs(false);
    Journal journal;
    reactor->notifierIs(edge);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_FALSE(reactor->isRegisteredNotifiee());
}

TEST_F(VelEdge, BoundToAnotherEdgeRegistersAndWritesNothing) {
    auto const other = DirectedEdgeV2::DirectedEdgeV2Is(port);
    other->toPortIs(mlag, true);
    reactor->isRegisteredNotifieeIs(false);
    Journal journal;
    reactor->notifierIs(other);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(reactor->isRegisteredNotifiee());
    other->toPortIs(mlag, false);
    EXPECT_THAT(journal.taken(), testing::Contains("/edge[/host/a/port/p] toPortIs(/host/a/mlag/m, false)"));
    edge->toPortDel(group);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelEdge, UnboundOrBoundToAnotherClassHasTheNullKey) {
    reactor->notifierIs(models.v2);
    EXPECT_EQ(reactor->notifier(), nullptr);
    EXPECT_EQ(reactor->fwkKey(), nullptr);
    reactor->notifierIs(edge);
    EXPECT_EQ(reactor->fwkKey(), port);
}

// Clean-up

TEST_F(VelEdge, WhoseFromPortHasLeftItsHostLeavesTheOutputEdge) {
    hostV2->portDel("p");
    Journal journal;
    models.v2->edgeDel(port);
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge inactive", "trace cleanup", "VelEdge marked"));
    EXPECT_EQ(models.v3->edge().size(), 1U);
}

TEST_F(VelEdge, WhoseVersion3HostHasGoneLeavesTheOutputEdge) {
    models.v3->hostDel("a");
    Journal journal;
    models.v2->edgeDel(port);
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge inactive", "trace cleanup", "VelEdge marked"));
    EXPECT_EQ(models.v3->edge().size(), 1U);
}

TEST_F(VelEdge, WhoseFromPortHasNoCounterpartAnyMoreLeavesTheOutputEdge) {
    hostV3()->portDel("p");
    Journal journal;
    models.v2->edgeDel(port);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelEdge inactive", "trace cleanup", "trace toPortBaseV3", "VelEdge marked"));
    EXPECT_EQ(models.v3->edge().size(), 1U);
}

TEST_F(VelEdge, WithoutOutputStatusEdgeOrRootCleansUpNothing) {
    struct {
        char const * name;
        std::function<void()> take;
    } const cases[] = {
        {"status", [&] { sm->v3Del(); }},
        {"edge",
         [&] {
             sm->v3Is(models.v3);
             reactor->notifierIs(nullptr);
         }},
        {"root",
         [&] {
             reactor->notifierIs(edge);
             reactor->ownerIs(nullptr);
         }},
    };
    for (auto const & [name, take] : cases) {
        SCOPED_TRACE(name);
        take();
        Journal journal;
        reactor->cleanup();
        EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup"));
    }
    reactor->ownerIs(sm.get());
    EXPECT_EQ(models.v3->edge().size(), 1U);
}

// Retirement, flags

TEST_F(VelEdge, IsRetiredInThisOrder) {
    Journal journal;
    reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), IsEmpty());
    reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge inactive", "trace cleanup", "trace toPortBaseV3",
                                             "/ edgeDel(/host/a/port/p)", "VelEdge marked"));
    reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelEdge, RevivedCleansUpAgainAndMakesNoNewEdge) {
    reactor->velDoZombieReactors(true);
    models.v3->edgeIs(hostV3()->port("p")->portKey());
    Journal journal;
    reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge active", "trace cleanup", "trace toPortBaseV3",
                                             "/ edgeDel(/host/a/port/p)", "VelEdge unmarked"));
    EXPECT_EQ(models.v3->edge().size(), 0U);
    edge->toPortIs(mlag, true);
    EXPECT_EQ(models.v3->edge().size(), 0U);
    EXPECT_EQ(reactor->v3Edge()->toPort().size(), 2U);
}

TEST_F(VelEdge, RetiredWithoutEdgeKeepsItsNotificationsAsTheyAre) {
    reactor->notifierIs(nullptr);
    Journal journal;
    reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", "VelEdge marked"));
}

TEST_F(VelEdge, RetiredOrRevivedWithoutRootOnlyGetsItsFlags) {
    reactor->ownerIs(nullptr);
    Journal journal;
    reactor->velDoZombieReactors(true);
    reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelEdge inactive", "VelEdge marked", "VelEdge active", "VelEdge unmarked"));
    reactor->ownerIs(sm.get());
}

TEST_F(VelEdge, RevivedAfterItWasLetGoEndsWithoutCleaningUp) {
    sm->edgeDel(port);
    sm->edgeIs(edge);
    WriteLog log;
    reactor->velDoZombieReactors(false);
    reactor = nullptr;
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_EQ(models.v3->edge().size(), 1U);
}

TEST_F(VelEdge, PassesNotificationsOnOnlyWhenTheyChange) {
    Journal journal;
    reactor->hasNotificationActiveIs(true);
    reactor->hasNotificationActiveIs(false);
    reactor->hasNotificationActiveIs(false);
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge inactive"));
    edge->toPortIs(mlag, true);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelEdge, DestroyedWhileItLivesCleansUpOnce) {
    Vel::Ptr<V2Sm::VelEdge> made = new V2Sm::VelEdge(DirectedEdgeV2::DirectedEdgeV2Is(group), sm.get());
    auto const output = made->v3Edge();
    Journal journal;
    made = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre("VelEdge destroyed", "trace cleanup", "trace toPortBaseV3",
                                             "/ edgeDel(/host/a/portGroup/g)", "VelEdge marked"));
    EXPECT_EQ(output->references(), 1U);
}

}  // namespace
