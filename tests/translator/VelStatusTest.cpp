#include "translator/VelStatus.h"

#include <gmock/gmock.h>

#include "tests/translator/support/Dump.h"
#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::v2SmFactory;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::dumped;
using TestSupport::Journal;
using TestSupport::WriteLog;

struct VelV2 : TestSupport::Followed {
    Vel::Ptr<V2Sm::VelV2> const reactor = sm->velV2();
};
struct VelV3 : TestSupport::Followed {
    Vel::Ptr<V2Sm::VelV3> const reactor = sm->velV3();
};

// The input's reactor: making

TEST_F(VelV2, IsMadeRegisteredButNotActiveAndWritesLocalhostAlone) {
    Journal journal;
    Vel::Ptr<V2Sm::VelV2> const made = new V2Sm::VelV2(models.v2, sm.get());
    EXPECT_THAT(journal.taken(), ElementsAre("trace toHostV3", "/ localhostIs(/host/a)"));
    EXPECT_TRUE(made->isRegisteredNotifiee());
    EXPECT_FALSE(made->hasNotificationActive());
    EXPECT_EQ(made->owner(), sm.get());
    EXPECT_EQ(made->notifier(), models.v2.get());
}

TEST_F(VelV2, IsMadeWithoutOutputAndWritesNothing) {
    sm->v3Del();
    Journal journal;
    Vel::Ptr<V2Sm::VelV2> const made = new V2Sm::VelV2(models.v2, sm.get());
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelV2, IsTracked) {
    EXPECT_EQ(V2Sm::VelV2::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(V2Sm::VelV2::velAllocTrackTypeInfo_->typeName(), "NetworkTopologyAggregator::V2Sm::VelV2");
    EXPECT_EQ(V2Sm::VelV3::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(V2Sm::VelV3::velAllocTrackTypeInfo_->typeName(), "NetworkTopologyAggregator::V2Sm::VelV3");
}

// Localhost

TEST_F(VelV2, WritesLocalhostAlsoWhenItIsThereAlready) {
    Journal journal;
    reactor->onLocalhost();
    reactor->onLocalhost();
    EXPECT_THAT(journal.taken(), ElementsAre("trace toHostV3", "/ localhostIs(/host/a)", "trace toHostV3",
                                             "/ localhostIs(/host/a)"));
}

TEST_F(VelV2, WritesNoLocalhostForAHostWithoutCounterpart) {
    Journal journal;
    models.v2->localhostIs(HostV2::HostV2Is("x"));
    EXPECT_THAT(journal.taken(), ElementsAre("trace toHostV3", "/ localhostIs(null)"));
    EXPECT_EQ(models.v3->localhost(), nullptr);
}

TEST_F(VelV2, WritesNoLocalhostForNone) {
    WriteLog log;
    models.v2->localhostIs(nullptr);
    EXPECT_THAT(log.taken(), ElementsAre("/ localhostIs(null)"));
}

TEST_F(VelV2, WithoutOutputWritesNoLocalhost) {
    sm->v3Del();
    Journal journal;
    models.v2->localhostIs(nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_NE(models.v3->localhost(), nullptr);
}

TEST_F(VelV2, WhoseOutputsReactorIsUnboundWritesNoLocalhost) {
    sm->velV3()->notifierIs(nullptr);
    Journal journal;
    models.v2->localhostIs(nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

// Hosts and edges, one by one

TEST_F(VelV2, EntersTheHostThatTheInputHolds) {
    models.v2->hostIs("b");
    ASSERT_NE(sm->host("b"), nullptr);
    auto const replacement = HostV2::HostV2Is("b");
    auto const b = sm->host("b");
    models.v2->hostIs(replacement);
    EXPECT_EQ(sm->host("b"), b);
    EXPECT_EQ(b->notifier(), replacement.get());
}

TEST_F(VelV2, DeletesTheHostThatTheInputLacks) {
    models.v2->hostDel("a");
    EXPECT_EQ(sm->host("a"), nullptr);
    EXPECT_EQ(models.v3->host("a"), nullptr);
    // Whatever has happened.
    sm->hostIs(HostV2::HostV2Is("stray"));
    reactor->onHost("stray");
    EXPECT_EQ(sm->host("stray"), nullptr);
}

TEST_F(VelV2, DoesNothingAboutAnUnknownHost) {
    Journal journal;
    reactor->onHost("unknown");
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelV2, EntersTheEdgeThatTheInputHolds) {
    auto const fromPort = hostV2->portGroup("g");
    auto const edge = models.v2->edgeIs(fromPort);
    ASSERT_NE(sm->edge(fromPort), nullptr);
    EXPECT_EQ(sm->edge(fromPort)->notifier(), edge.get());
    auto const replacement = DirectedEdgeV2::DirectedEdgeV2Is(fromPort);
    models.v2->edgeIs(replacement);
    EXPECT_EQ(sm->edge(fromPort)->notifier(), replacement.get());
}

TEST_F(VelV2, DeletesTheEdgeThatTheInputLacks) {
    models.v2->edgeDel(hostV2->port("p"));
    EXPECT_EQ(sm->edge(hostV2->port("p")), nullptr);
    EXPECT_EQ(models.v3->edge().size(), 0U);
    auto const stray = DirectedEdgeV2::DirectedEdgeV2Is(hostV2->mlag("m"));
    sm->edgeIs(stray);
    reactor->onEdge(hostV2->mlag("m"));
    EXPECT_EQ(sm->edge().size(), 0U);
}

TEST_F(VelV2, TellsEdgesApartByTheIdentityOfTheirPorts) {
    Journal journal;
    reactor->onEdge(PortV2::PortV2Is("p"));
    reactor->onEdge(nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->edge().size(), 1U);
}

TEST_F(VelV2, IgnoresNotificationsWithoutKey) {
    sm->hostDelAll();
    sm->edgeDelAll();
    Journal journal;
    reactor->onHost();
    reactor->onEdge();
    EXPECT_THAT(journal.taken(), IsEmpty());
}

// Whole collections

TEST_F(VelV2, BringsAllHostsIntoLineAdditionsFirst) {
    sm->hostIs(HostV2::HostV2Is("stray"));
    reactor->hasNotificationActiveIs(false);
    models.v2->hostIs("unseen");
    WriteLog log;
    reactor->onHostvelImmediate();
    EXPECT_THAT(log.linesInto("/"), ElementsAre("/ hostIs('unseen')", "/ hostDel('stray')"));
    EXPECT_EQ(sm->host().size(), 2U);
}

TEST_F(VelV2, BringsAllEdgesIntoLineAdditionsFirst) {
    sm->edgeIs(DirectedEdgeV2::DirectedEdgeV2Is(hostV2->mlag("m")));
    reactor->hasNotificationActiveIs(false);
    models.v2->edgeIs(hostV2->portGroup("g"));
    WriteLog log;
    reactor->onEdgevelImmediate();
    EXPECT_THAT(log.lines(), ElementsAre("/ edgeIs(/host/a/portGroup/g)", "/ edgeDel(/host/a/mlag/m)"));
    EXPECT_EQ(sm->edge().size(), 2U);
    EXPECT_EQ(sm->edge(hostV2->mlag("m")), nullptr);
}

// Whichever callback the model chooses, the registries equal the input.
TEST_F(VelV2, EndsWithTheSameHostsAndEdgesByEitherCallback) {
    TestSupport::Models const others = {};
    TestSupport::fillWithOneOfEach(*others.v2);
    auto const other = v2SmFactory("other", others.v2, others.v3);
    models.v2->edgeDelAll();
    models.v2->hostDelAll();
    others.v2->edgeDel(others.v2->host("a")->port("p"));
    others.v2->hostDel("a");
    EXPECT_EQ(sm->host().size(), 0U);
    EXPECT_EQ(sm->edge().size(), 0U);
    EXPECT_EQ(other->host().size(), 0U);
    EXPECT_EQ(other->edge().size(), 0U);
    EXPECT_EQ(dumped(*models.v3), dumped(*others.v3));
}

// Binding

TEST_F(VelV2, BoundToTheSameStatusDoesNotEvenRegister) {
    reactor->isRegisteredNotifieeIs(false);
    Journal journal;
    reactor->notifierIs(models.v2);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_FALSE(reactor->isRegisteredNotifiee());
}

TEST_F(VelV2, BoundToAnotherStatusRegisters) {
    reactor->isRegisteredNotifieeIs(false);
    reactor->notifierIs(StatusV2::StatusV2Is());
    EXPECT_TRUE(reactor->isRegisteredNotifiee());
}

TEST_F(VelV2, UnboundLeavesEverythingAsItIs) {
    auto const before = dumped(*models.v3);
    Journal journal;
    reactor->notifierIs(nullptr);
    reactor->notifierIs(nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(dumped(*models.v3), before);
    EXPECT_EQ(sm->host().size(), 1U);
    EXPECT_EQ(sm->velV2(), reactor);
}

// It hears of its new status from the moment when it is bound: what a follower of the output changes while
// the new status is brought into line is not lost.
TEST_F(VelV2, HearsOfItsNewStatusAlreadyWhileItIsBroughtIntoLine) {
    auto const other = StatusV2::StatusV2Is();
    other->hostIs("b");
    auto const follower = inside("/ onHost('a')", [&] {
        other->hostIs("late");
        other->localhostIs(other->host("late"));
    });
    sm->v2Is(other);
    EXPECT_NE(sm->host("late"), nullptr);
    EXPECT_EQ(models.v3->localhost(), models.v3->host("late"));
}

TEST_F(VelV2, HearsOfItsNewStatusAlsoWhenAFollowerRefusesPartOfIt) {
    auto const other = StatusV2::StatusV2Is();
    other->hostIs("b");
    {
        auto const follower = inside("/ onHost('a')", [] { throw std::bad_alloc(); });
        EXPECT_THROW(sm->v2Is(other), std::bad_alloc);
    }
    other->hostIs("late");
    EXPECT_NE(models.v3->host("late"), nullptr);
}

// Without owner

TEST_F(VelV2, WithoutOwnerDoesNothing) {
    reactor->ownerIs(nullptr);
    Journal journal;
    reactor->onHost("a");
    reactor->onHost("unknown");
    reactor->onEdge(hostV2->port("p"));
    reactor->onEdge(nullptr);
    reactor->onLocalhost();
    reactor->onHostvelImmediate();
    reactor->onEdgevelImmediate();
    reactor->notifierIs(StatusV2::StatusV2Is());
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(reactor->isRegisteredNotifiee());
}

// Flags

TEST_F(VelV2, PassesNotificationsOnOnlyWhenTheyChange) {
    Journal journal;
    reactor->hasNotificationActiveIs(true);
    EXPECT_THAT(journal.taken(), IsEmpty());
    reactor->hasNotificationActiveIs(false);
    reactor->hasNotificationActiveIs(false);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 inactive"));
}

TEST_F(VelV2, IsRetiredAndRevivedWithItsNotificationsFirst) {
    Journal journal;
    reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), IsEmpty());
    reactor->velDoZombieReactors(true);
    reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 inactive", "VelV2 marked"));
    models.v2->hostIs("b");
    EXPECT_THAT(journal.taken(), IsEmpty());
    reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 active", "VelV2 unmarked"));
    models.v2->hostIs("c");
    EXPECT_NE(sm->host("c"), nullptr);
    EXPECT_EQ(sm->host("b"), nullptr);
}

TEST_F(VelV2, RetiresItselfWhenItIsDestroyed) {
    Vel::Ptr<V2Sm::VelV2> made = new V2Sm::VelV2(models.v2, sm.get());
    made->hasNotificationActiveIs(true);
    Journal journal;
    made = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 destroyed", "VelV2 inactive", "VelV2 marked"));
}

// The output's reactor

TEST_F(VelV3, IsMadeRegisteredButNotActiveAndDoesNothingElse) {
    Journal journal;
    Vel::Ptr<V2Sm::VelV3> const made = new V2Sm::VelV3(models.v3, sm.get());
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(made->isRegisteredNotifiee());
    EXPECT_FALSE(made->hasNotificationActive());
    EXPECT_EQ(made->owner(), sm.get());
    EXPECT_EQ(made->notifier(), models.v3.get());
}

TEST_F(VelV3, IgnoresEveryChangeOfTheOutput) {
    Journal journal;
    reactor->onHost("a");
    reactor->onHost();
    reactor->onHostvelImmediate();
    reactor->onLocalhost();
    reactor->onEdge(hostV3()->port("p")->portKey());
    reactor->onEdge();
    reactor->onEdgevelImmediate();
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelV3, BoundToTheSameStatusDoesNotEvenRegister) {
    reactor->isRegisteredNotifieeIs(false);
    Journal journal;
    reactor->notifierIs(models.v3);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_FALSE(reactor->isRegisteredNotifiee());
}

TEST_F(VelV3, MovesItsRegistrationToAnotherStatus) {
    auto const other = NetworkTopologyV3::Status::StatusIs();
    Journal journal;
    reactor->notifierIs(other);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(reactor->isRegisteredNotifiee());
    EXPECT_EQ(sm->v3(), other);
}

TEST_F(VelV3, PassesNotificationsOnOnlyWhenTheyChange) {
    Journal journal;
    reactor->hasNotificationActiveIs(true);
    reactor->hasNotificationActiveIs(false);
    reactor->hasNotificationActiveIs(false);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV3 inactive"));
}

TEST_F(VelV3, IsRetiredAndRevivedWithItsNotificationsFirst) {
    Journal journal;
    reactor->velDoZombieReactors(true);
    reactor->velDoZombieReactors(true);
    reactor->velDoZombieReactors(false);
    reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelV3 inactive", "VelV3 marked", "VelV3 active", "VelV3 unmarked"));
}

TEST_F(VelV3, RetiredStillHoldsTheOutput) {
    reactor->velDoZombieReactors(true);
    hostV2->portIs("x");
    EXPECT_NE(hostV3()->port("x"), nullptr);
}

}  // namespace
