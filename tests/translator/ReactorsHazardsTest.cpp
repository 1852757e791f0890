// Short sequences in which counting, lifetime, names or failures could go wrong in the reactors on hosts,
// their members and edges.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "tests/support/Allocations.h"
#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Following.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/OutputFollower.h"
#include "tests/translator/support/Topologies.h"
#include "tests/translator/support/Tracked.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using TestSupport::Change;
using TestSupport::everyKindOfChange;
using TestSupport::expectNoTranslatorObjects;
using TestSupport::fillWithThreeHosts;
using TestSupport::forEveryStep;
using TestSupport::Journal;
using TestSupport::Models;
using TestSupport::OutputFollower;
using TestSupport::Refusal;
using TestSupport::WriteLog;

struct Reactors : TestSupport::Followed {};

// Objects outside the heap, and objects that no counted reference holds

TEST_F(Reactors, OnTheStackDieOnce) {
    auto const edgeV2 = *models.v2->edge().begin();
    auto const portV2 = PortV2::PortV2Is("x");
    auto const groupV2 = PortGroupV2::PortGroupV2Is("x");
    auto const mlagV2 = MlagV2::MlagV2Is("x", "x2");
    auto const otherV2 = HostV2::HostV2Is("x");
    otherV2->portIs("p");
    {
        V2Sm::VelHost const velHost(otherV2, sm.get());
        V2Sm::VelHost::VelPort const velPort(portV2, host.get());
        V2Sm::VelHost::VelPortGroup const velPortGroup(groupV2, host.get());
        V2Sm::VelHost::VelMlag const velMlag(mlagV2, host.get());
        EXPECT_NE(models.v3->host("x")->port("p"), nullptr);
        EXPECT_NE(models.v3->host("a")->port("x"), nullptr);
        EXPECT_NE(models.v3->host("a")->portGroup("x"), nullptr);
        EXPECT_NE(models.v3->host("a")->mlag("x"), nullptr);
    }
    EXPECT_EQ(models.v3->host("x"), nullptr);
    EXPECT_EQ(models.v3->host("a")->port("x"), nullptr);
    EXPECT_EQ(models.v3->host("a")->portGroup("x"), nullptr);
    EXPECT_EQ(models.v3->host("a")->mlag("x"), nullptr);
    EXPECT_EQ(models.v3->edge().size(), 1U);
    { V2Sm::VelEdge const velEdge(edgeV2, sm.get()); }
    EXPECT_EQ(models.v3->edge().size(), 0U);
}

TEST_F(Reactors, OnTheStackAreRetiredAndRevivedInPlace) {
    V2Sm::VelHost velHost(HostV2::HostV2Is("x"), sm.get());
    V2Sm::VelHost::VelPort velPort(PortV2::PortV2Is("x"), host.get());
    V2Sm::VelHost::VelPortGroup velPortGroup(PortGroupV2::PortGroupV2Is("x"), host.get());
    V2Sm::VelHost::VelMlag velMlag(MlagV2::MlagV2Is("x", "x2"), host.get());
    V2Sm::VelEdge velEdge(*models.v2->edge().begin(), sm.get());
    Journal journal;
    auto const passAll = [&](bool zombie) {
        velHost.velDoZombieReactors(zombie);
        velPort.velDoZombieReactors(zombie);
        velPortGroup.velDoZombieReactors(zombie);
        velMlag.velDoZombieReactors(zombie);
        velEdge.velDoZombieReactors(zombie);
    };
    passAll(true);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace cleanup", "/ hostDel('x')", "VelHost marked",                  //
                            "trace cleanup", "/host/a portDel('x')", "VelPort marked",            //
                            "trace cleanup", "/host/a portGroupDel('x')", "VelPortGroup marked",  //
                            "trace cleanup", "/host/a mlagDel('x')", "VelMlag marked",            //
                            "trace cleanup", "trace toPortBaseV3", "/ edgeDel(/host/a/port/p)",   //
                            "VelEdge marked"));
    passAll(false);
    EXPECT_THAT(journal.taken(), testing::SizeIs(21));
    passAll(true);
}

TEST_F(Reactors, InAUniquePtrDieOnce) {
    auto velPort = std::make_unique<V2Sm::VelHost::VelPort>(PortV2::PortV2Is("x"), host.get());
    velPort->hasNotificationActiveIs(true);
    WriteLog log;
    velPort = nullptr;
    EXPECT_THAT(log.taken(), ElementsAre("/host/a portDel('x')"));
    auto velHost = std::make_unique<V2Sm::VelHost>(HostV2::HostV2Is("x"), sm.get());
    velHost = nullptr;
    EXPECT_THAT(log.taken(), ElementsAre("/ hostIs('x')", "/host/x mlagPeerLinkIs(null)", "/ hostDel('x')"));
}

// A host reactor holds itself while it works

TEST_F(Reactors, OfAHostThatIsLetGoWhileItIsRetiredFinishes) {
    auto const follower = inside("/ onHost('a')", [&] {
        host = nullptr;
        sm = nullptr;
    });
    V2Sm::VelHost & velHost = *host;
    Journal journal;
    velHost.velDoZombieReactors(true);
    // By the root that ends meanwhile, and by itself.
    EXPECT_THAT(journal.taken(), Contains("VelHost marked").Times(2));
    expectNoTranslatorObjects();
}

TEST_F(Reactors, OfAHostThatIsLetGoWhileItDeletesAMemberFinishes) {
    struct {
        char const * change;
        void (*work)(V2Sm::VelHost & host);
    } const cases[] = {
        {"/host/a onPort('p')", [](V2Sm::VelHost & velHost) { velHost.portDel("p"); }},
        {"/host/a onPortGroup('g')", [](V2Sm::VelHost & velHost) { velHost.portGroupDel("g"); }},
        {"/host/a onMlag('m')", [](V2Sm::VelHost & velHost) { velHost.mlagDel("m"); }},
        {"/host/a onPort('p')", [](V2Sm::VelHost & velHost) { velHost.portDelAll(); }},
        {"/host/a onPortGroup('g')", [](V2Sm::VelHost & velHost) { velHost.portGroupDelAll(); }},
        {"/host/a onMlag('m')", [](V2Sm::VelHost & velHost) { velHost.mlagDelAll(); }},
    };
    for (auto const & [change, work] : cases) {
        SCOPED_TRACE(change);
        sm = nullptr;
        sm = v2SmFactory("sm", models.v2, models.v3);
        host = sm->host("a");
        auto const port = host->port("p");
        bool lives = true;
        auto const follower = inside(change, [&] {
            host = nullptr;
            sm = nullptr;
            // The member that is being let go may still ask for its owner.
            lives = V2Sm::VelHost::velAllocTrackTypeInfo_->live() == 1;
            port->onPortGroup();
        });
        V2Sm::VelHost & velHost = *host;
        work(velHost);
        EXPECT_TRUE(lives);
        EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->live(), 0U);
    }
}

TEST_F(Reactors, OfAHostThatIsLetGoWhileItMakesAMemberFinishes) {
    auto const follower = inside("/host/a onPort('x')", [&] {
        host = nullptr;
        sm = nullptr;
        EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->live(), 1U);
    });
    V2Sm::VelHost & velHost = *host;
    auto velPort = velHost.newPort(PortV2::PortV2Is("x"));
    EXPECT_EQ(velPort->owner(), nullptr);
    velPort = nullptr;
    expectNoTranslatorObjects();
}

// The root's first binding of an input, during which another is bound

TEST_F(Reactors, OnAnInputThatIsReplacedWhileItIsBoundAreLetGo) {
    sm->v2Del();
    auto const other = StatusV2::StatusV2Is();
    models.v2->localhostIs(nullptr);
    Vel::Ptr<V2Sm::VelV2> nested;
    auto const follower = inside("/ onLocalhost()", [&] {
        sm->v2Is(other);
        nested = sm->velV2();
    });
    sm->v2Is(models.v2);
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(sm->v2(), models.v2);
    EXPECT_EQ(nested->owner(), nullptr);
    EXPECT_FALSE(nested->hasNotificationActive());
    sm = nullptr;
    other->hostIs("late");
    EXPECT_EQ(models.v3->host("late"), nullptr);
}

// Unbound from inside the resynchronisation with another input: what has been let go stays let go.
TEST_F(Reactors, OnAnInputThatIsUnboundWhileItIsReboundStayLetGo) {
    auto const other = StatusV2::StatusV2Is();
    auto const velV2 = sm->velV2();
    auto const follower = inside("/ onHost('a')", [&] { sm->v2Del(); });
    sm->v2Is(other);
    EXPECT_EQ(sm->velV2(), nullptr);
    EXPECT_TRUE(velV2->velMarkedForDeletion());
    EXPECT_FALSE(velV2->hasNotificationActive());
}

TEST_F(Reactors, OfAHostDoNotKeepItsInputWhileTheyAreBroughtIntoLine) {
    auto input = StatusV2::StatusV2Is();
    auto const otherHost = input->hostIs("a");
    otherHost->portIs("p");
    sm->v2Is(input);
    std::uint64_t const inputs = StatusV2::velAllocTrackTypeInfo_->live();
    std::uint64_t inputsInside = 0;
    auto const follower = inside("/host/a onPort('p')", [&] {
        sm->v2Del();
        input = nullptr;
        inputsInside = StatusV2::velAllocTrackTypeInfo_->live();
    });
    otherHost->portDelAll();
    EXPECT_EQ(inputsInside, inputs - 1);
}

// What leaves the input again from inside its own mirroring

TEST_F(Reactors, OfAHostThatLeavesWhileItIsMirroredLeaveWithIt) {
    auto const follower = inside("/ onHost('new')", [&] { models.v2->hostDel("new"); });
    models.v2->hostIs("new");
    EXPECT_EQ(sm->host("new"), nullptr);
    EXPECT_EQ(models.v3->host("new"), nullptr);
}

TEST_F(Reactors, OfAMemberThatLeavesWhileItIsMirroredLeaveWithIt) {
    auto const onPort = inside("/host/a onPort('new')", [&] { hostV2->portDel("new"); });
    auto const onPortGroup = inside("/host/a onPortGroup('new')", [&] { hostV2->portGroupDel("new"); });
    auto const onMlag = inside("/host/a onMlag('new')", [&] { hostV2->mlagDel("new"); });
    hostV2->portIs("new");
    hostV2->portGroupIs("new");
    hostV2->mlagIs("new", "");
    EXPECT_EQ(host->port("new"), nullptr);
    EXPECT_EQ(host->portGroup("new"), nullptr);
    EXPECT_EQ(host->mlag("new"), nullptr);
    auto const hostV3 = models.v3->host("a");
    EXPECT_EQ(hostV3->port("new"), nullptr);
    EXPECT_EQ(hostV3->portGroup("new"), nullptr);
    EXPECT_EQ(hostV3->mlag("new"), nullptr);
}

TEST_F(Reactors, OfAnEdgeThatLeavesWhileItIsMirroredLeaveWithIt) {
    auto const fromPort = hostV2->portGroup("g");
    auto const follower = inside("/ onEdge(/host/a/portGroup/g)", [&] { models.v2->edgeDel(fromPort); });
    models.v2->edgeIs(fromPort);
    EXPECT_EQ(sm->edge(fromPort), nullptr);
    EXPECT_EQ(models.v3->edge(models.v3->host("a")->portGroup("g")->portKey()), nullptr);
}

// Changes within changes

TEST_F(Reactors, MirrorChangesWithinChangesToDepthFourInTheOrderInWhichTheyAreMade) {
    auto const port = hostV2->port("p");
    std::uint32_t depth = 0;
    OutputFollower const follower(models.v3, [&](std::string const & change) {
        if (change != "/host/a/port/p onType()" || depth == 4) return;
        ++depth;
        port->typeIs(static_cast<NetworkTopology::PortTypeV2>(depth % 3 + 1));
    });
    port->typeIs(NetworkTopology::PortTypeV2::unknown);
    WriteLog log;
    depth = 0;
    port->typeIs(NetworkTopology::PortTypeV2::mlag);
    EXPECT_THAT(log.taken(), ElementsAre("/host/a/port/p typeIs(mlag)", "/host/a/port/p typeIs(portGroup)",
                                         "/host/a/port/p typeIs(mlag)", "/host/a/port/p typeIs(port)",
                                         "/host/a/port/p typeIs(portGroup)"));
    EXPECT_EQ(hostV3()->port("p")->type(), NetworkTopologyV3::PortType::portGroup);
}

TEST_F(Reactors, OfTwoMembersWhoseFollowersAnswerEachOtherComeToAnEnd) {
    auto const port = hostV2->port("p");
    auto const mlag = hostV2->mlag("m");
    std::uint32_t value = 4;
    OutputFollower const one(models.v3, [&](std::string const & change) {
        if (change == "/host/a/port/p onPortGroup()" && value > 0) {
            mlag->localPortGroupIs(--value % 2 == 0 ? hostV2->portGroup("g") : nullptr);
        }
    });
    OutputFollower const two(models.v3, [&](std::string const & change) {
        if (change == "/host/a/mlag/m onLocalPortGroup()") {
            port->portGroupIs(value % 2 == 0 ? hostV2->portGroup("g") : nullptr);
        }
    });
    port->portGroupIs(nullptr);
    EXPECT_EQ(bool(hostV3()->port("p")->portGroup()), bool(port->portGroup()));
    EXPECT_EQ(bool(hostV3()->mlag("m")->localPortGroup()), bool(mlag->localPortGroup()));
    EXPECT_LT(value, 4U);
}

// A reactor that is removed, or leaves its object's list and enters it again, from inside its own writes.
TEST_F(Reactors, ThatAreDeletedRegisteredAgainOrReboundByTheirOwnWritesSurvive) {
    auto const port = hostV2->port("p");
    auto const other = PortV2::PortV2Is("p");
    struct {
        char const * name;
        std::function<void(V2Sm::VelHost::VelPort & reactor)> what;
    } const cases[] = {
        {"registered again",
         [](auto & reactor) {
             reactor.isRegisteredNotifieeIs(false);
             reactor.isRegisteredNotifieeIs(true);
         }},
        {"unregistered", [](auto & reactor) { reactor.isRegisteredNotifieeIs(false); }},
        {"rebound", [&](auto & reactor) { reactor.notifierIs(other); }},
        {"unbound", [](auto & reactor) { reactor.notifierIs(nullptr); }},
        {"deleted", [&](auto &) { host->portDel("p"); }},
        {"neighbour deleted",
         [&](auto &) {
             host->portGroupDelAll();
             host->mlagDelAll();
         }},
        {"object deleted", [&](auto &) { hostV2->portDel("p"); }},
    };
    for (auto const & [name, what] : cases) {
        SCOPED_TRACE(name);
        sm = nullptr;
        hostV2->portIs(port);
        port->typeIs(NetworkTopology::PortTypeV2::port);
        sm = v2SmFactory("sm", models.v2, models.v3);
        host = sm->host("a");
        port->typeIs(NetworkTopology::PortTypeV2::mlag);
        bool reached = false;
        auto const follower = inside("/host/a/port/p onType()", [&, &interfere = what] {
            reached = true;
            interfere(*host->port("p"));
        });
        port->typeIs(NetworkTopology::PortTypeV2::portGroup);
        EXPECT_TRUE(reached);
        hostV2->portIs("afterwards");
        EXPECT_NE(hostV3()->port("afterwards"), nullptr);
        hostV2->portDel("afterwards");
    }
}

// The same key again from inside the making of its reactor: one reactor stays, and the other cleans nothing
// up

TEST_F(Reactors, OfAMemberThatIsMirroredFromInsideItsMirroringAreOne) {
    auto const portV2 = PortV2::PortV2Is("x");
    auto const groupV2 = PortGroupV2::PortGroupV2Is("x");
    auto const mlagV2 = MlagV2::MlagV2Is("x", "");
    Vel::Ptr<V2Sm::VelHost::VelPort> nestedPort;
    Vel::Ptr<V2Sm::VelHost::VelPortGroup> nestedGroup;
    Vel::Ptr<V2Sm::VelHost::VelMlag> nestedMlag;
    auto const onPort = inside("/host/a onPort('x')", [&] { nestedPort = host->portIs(portV2); });
    auto const onGroup =
        inside("/host/a onPortGroup('x')", [&] { nestedGroup = host->portGroupIs(groupV2); });
    auto const onMlag = inside("/host/a onMlag('x')", [&] { nestedMlag = host->mlagIs(mlagV2); });
    WriteLog log;
    EXPECT_EQ(host->portIs(portV2), nestedPort);
    EXPECT_EQ(host->portGroupIs(groupV2), nestedGroup);
    EXPECT_EQ(host->mlagIs(mlagV2), nestedMlag);
    EXPECT_THAT(log.lines(), Not(Contains(HasSubstr("Del("))));
    EXPECT_EQ(host->port("x"), nestedPort);
    EXPECT_EQ(host->portGroup("x"), nestedGroup);
    EXPECT_EQ(host->mlag("x"), nestedMlag);
    EXPECT_EQ(host->port().size(), 2U);
}

TEST_F(Reactors, OfAnEdgeThatIsMirroredFromInsideItsMirroringAreOne) {
    auto const edgeV2 = DirectedEdgeV2::DirectedEdgeV2Is(hostV2->portGroup("g"));
    auto const follower = inside("/ onEdge(/host/a/portGroup/g)", [&] { sm->edgeIs(edgeV2); });
    WriteLog log;
    sm->edgeIs(edgeV2);
    EXPECT_THAT(log.lines(), ElementsAre("/ edgeIs(/host/a/portGroup/g)", "/ edgeIs(/host/a/portGroup/g)"));
    EXPECT_EQ(sm->edge().size(), 2U);
    EXPECT_EQ(V2Sm::VelEdge::velAllocTrackTypeInfo_->live(), 2U);
}

// What goes while it is being bound

TEST_F(Reactors, OfAMemberWhoseObjectGoesWhileItIsReboundSurvive) {
    auto other = PortV2::PortV2Is("p");
    other->typeIs(NetworkTopology::PortTypeV2::mlag);
    auto const follower = inside("/host/a/port/p onType()", [&] {
        other = nullptr;
        host->port("p")->notifierIs(nullptr);
    });
    EXPECT_EQ(host->portIs(other), host->port("p"));
    EXPECT_EQ(host->port("p")->notifier(), nullptr);
}

TEST_F(Reactors, OfAnEdgeWhoseKeyGoesWhileItIsMirroredSurvive) {
    auto edgeV2 = DirectedEdgeV2::DirectedEdgeV2Is(hostV2->portGroupIs("x"));
    models.v2->hostIs("b");
    sm->velV2()->hasNotificationActiveIs(false);
    models.v2->edgeIs(edgeV2);
    auto const & key = edgeV2->fromPort();
    auto const follower = inside("/ onEdge(/host/a/portGroup/x)", [&] {
        models.v2->edgeDelAll();
        sm->edgeDelAll();
        edgeV2 = nullptr;
        hostV2->portGroupDel("x");
    });
    sm->velV2()->onEdge(key);
    EXPECT_EQ(sm->edge().size(), 0U);
}

// References to what is not there, or no longer

TEST_F(Reactors, ThatReferToAHostThatIsNotThereYetWriteNull) {
    auto const other = HostV2::HostV2Is("later");
    other->portGroupIs("g")->memberPortIs("p", other->portIs("p"));
    other->mlagIs("m", "");
    WriteLog log;
    hostV2->mlagPeerLinkIs(other->port("p"));
    hostV2->logicalPortIs("x", other->portGroup("g"));
    hostV2->mlagRawIs("x", other->mlag("m"));
    hostV2->port("p")->portGroupIs(other->portGroup("g"));
    hostV2->portGroup("g")->memberPortIs("x", other->port("p"));
    hostV2->portGroup("g")->mlagIs(other->mlag("m"));
    hostV2->mlag("m")->localPortGroupIs(other->portGroup("g"));
    models.v2->localhostIs(other);
    models.v2->edge(hostV2->port("p"))->toPortIs(other->port("p"), true);
    models.v2->edgeIs(other->port("p"))->toPortIs(hostV2->port("p"), true);
    EXPECT_THAT(log.taken(),
                ElementsAre("/host/a mlagPeerLinkIs(null)", "/host/a logicalPortIs(null)",
                            "/host/a mlagRawIs(null)", "/host/a/port/p portGroupIs(null)",
                            "/host/a/portGroup/g memberPortIs(null)", "/host/a/portGroup/g mlagIs(null)",
                            "/host/a/mlag/m localPortGroupIs(null)", "/ localhostIs(null)"));
    // Nobody comes back to them when the host comes.
    models.v2->hostIs(other);
    EXPECT_THAT(log.taken(), testing::SizeIs(5));
    EXPECT_EQ(hostV3()->mlagPeerLink(), nullptr);
    EXPECT_EQ(models.v3->localhost(), nullptr);
}

TEST_F(Reactors, ThatReferToAHostThatHasGoneWriteNull) {
    auto const other = TestSupport::addHostWithOneOfEach(*models.v2, "gone");
    models.v2->hostDel("gone");
    WriteLog log;
    hostV2->mlagPeerLinkIs(other->port("p"));
    hostV2->port("p")->portGroupIs(other->portGroup("g"));
    hostV2->portGroup("g")->mlagIs(other->mlag("m"));
    models.v2->edge(hostV2->port("p"))->toPortIs(other->port("p"), true);
    models.v2->edgeIs(other->port("p"));
    EXPECT_THAT(log.taken(), ElementsAre("/host/a mlagPeerLinkIs(null)", "/host/a/port/p portGroupIs(null)",
                                         "/host/a/portGroup/g mlagIs(null)"));
    EXPECT_EQ(sm->edge(other->port("p"))->v3Edge(), nullptr);
    models.v2->edgeDel(other->port("p"));
    EXPECT_THAT(log.taken(), IsEmpty());
}

// Failures

// A follower that refuses the deletion of the version-3 object: the reactor is let go all the same, and does
// not try again when it is destroyed.
TEST_F(Reactors, WhoseCleanUpIsRefusedAreLetGoAllTheSame) {
    auto const port = host->port("p");
    auto const group = host->portGroup("g");
    auto const mlag = host->mlag("m");
    auto const edge = sm->edge(hostV2->port("p"));
    {
        OutputFollower const follower(models.v3, [](auto const &) { throw Refusal(); });
        EXPECT_THROW(sm->edgeDel(hostV2->port("p")), Refusal);
        EXPECT_THROW(host->portDel("p"), Refusal);
        EXPECT_THROW(host->portGroupDel("g"), Refusal);
        EXPECT_THROW(host->mlagDel("m"), Refusal);
        EXPECT_THROW(sm->hostDel("a"), Refusal);
    }
    EXPECT_EQ(port->owner(), nullptr);
    EXPECT_EQ(group->owner(), nullptr);
    EXPECT_EQ(mlag->owner(), nullptr);
    EXPECT_EQ(edge->owner(), nullptr);
    EXPECT_EQ(host->owner(), nullptr);
    EXPECT_FALSE(port->hasNotificationActive());
    EXPECT_FALSE(host->hasNotificationActive());
    WriteLog log;
    host = nullptr;
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Reactors, WhoseCleanUpIsRefusedByTheModelDoNotTryAgain) {
    WriteLog log;
    log.beforeWriteIs([](auto const &) { throw std::bad_alloc(); });
    EXPECT_THROW(sm->edgeDel(hostV2->port("p")), std::bad_alloc);
    EXPECT_THROW(host->portDel("p"), std::bad_alloc);
    EXPECT_THROW(host->portGroupDel("g"), std::bad_alloc);
    EXPECT_THROW(host->mlagDel("m"), std::bad_alloc);
    EXPECT_THROW(sm->hostDel("a"), std::bad_alloc);
    host = nullptr;
    EXPECT_THAT(log.taken(),
                ElementsAre("/ edgeDel(/host/a/port/p)", "/host/a portDel('p')", "/host/a portGroupDel('g')",
                            "/host/a mlagDel('m')", "/ hostDel('a')"));
}

TEST(ReactorsWithoutMemory, PassTheFailureOnFromAnyAllocationOfEveryKindOfChange) {
    for (Change const & change : everyKindOfChange()) {
        SCOPED_TRACE(change.name);
        forEveryStep([&](std::size_t n) {
            Models const models = {};
            fillWithThreeHosts(*models.v2);
            auto sm = v2SmFactory("sm", models.v2, models.v3);
            bool refused = false;
            {
                TestSupport::FailingAllocations const failing(n - 1);
                try {
                    change.make(*models.v2);
                } catch (std::bad_alloc const &) {
                    refused = true;
                }
            }
            models.v2->localhostIs(models.v2->hostIs("afterwards"));
            EXPECT_NE(models.v3->localhost(), nullptr);
            EXPECT_EQ(models.v3->localhost(), models.v3->host("afterwards"));
            sm = nullptr;
            expectNoTranslatorObjects();
            return refused && !testing::Test::HasFailure();
        });
    }
}

// Half of a host has been mirrored when its reactor's making fails.
TEST_F(Reactors, OfAHostThatFailHalfWayAreNotEntered) {
    auto const refused = HostV2::HostV2Is("x");
    refused->portIs("p");
    refused->portGroupIs("g");
    auto const live = V2Sm::VelHost::velAllocTrackTypeInfo_->live();
    {
        auto const follower = inside("/host/x onPortGroup('g')", [] { throw Refusal(); });
        WriteLog log;
        EXPECT_THROW(sm->hostIs(refused), Refusal);
        EXPECT_THAT(log.lines(), ElementsAre("/ hostIs('x')", "/host/x mlagPeerLinkIs(null)",
                                             "/host/x portIs('p')", "/host/x portGroupIs('g')"));
    }
    EXPECT_EQ(sm->host("x"), nullptr);
    EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->live(), live);
    WriteLog log;
    refused->portIs("late");
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_NE(sm->hostIs(refused)->port("late"), nullptr);
}

TEST_F(Reactors, OfAMemberThatFailHalfWayAreNotEntered) {
    auto const portV2 = PortV2::PortV2Is("x");
    auto const groupV2 = PortGroupV2::PortGroupV2Is("x");
    auto const mlagV2 = MlagV2::MlagV2Is("x", "");
    auto const edgeV2 = DirectedEdgeV2::DirectedEdgeV2Is(hostV2->portGroup("g"));
    WriteLog log;
    {
        OutputFollower const follower(models.v3, [](auto const &) { throw Refusal(); });
        EXPECT_THROW(host->portIs(portV2), Refusal);
        EXPECT_THROW(host->portGroupIs(groupV2), Refusal);
        EXPECT_THROW(host->mlagIs(mlagV2), Refusal);
        EXPECT_THROW(sm->edgeIs(edgeV2), Refusal);
    }
    EXPECT_THAT(log.taken(), ElementsAre("/host/a portIs('x')", "/host/a portGroupIs('x')",
                                         "/host/a mlagIs('x', '')", "/ edgeIs(/host/a/portGroup/g)"));
    EXPECT_EQ(host->port("x"), nullptr);
    EXPECT_EQ(host->portGroup("x"), nullptr);
    EXPECT_EQ(host->mlag("x"), nullptr);
    EXPECT_EQ(sm->edge(edgeV2->fromPort()), nullptr);
    EXPECT_EQ(V2Sm::VelHost::VelPort::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(V2Sm::VelHost::VelPortGroup::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(V2Sm::VelHost::VelMlag::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(V2Sm::VelEdge::velAllocTrackTypeInfo_->live(), 1U);
}

}  // namespace
