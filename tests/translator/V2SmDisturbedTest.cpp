// The root among followers of its output that throw, let go of it, take its statuses away or change its
// input, from inside any write; without its statuses; and without memory.
#include <algorithm>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/Vel/Trace.h"
#include "tests/support/Allocations.h"
#include "tests/translator/support/Disturbances.h"
#include "tests/translator/support/Dump.h"
#include "tests/translator/support/Following.h"
#include "tests/translator/support/OutputFollower.h"
#include "tests/translator/support/Topologies.h"
#include "tests/translator/support/Tracked.h"
#include "tests/translator/support/WriteLog.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using NetworkTopologyV3::Status;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using TestSupport::Change;
using TestSupport::Disturbance;
using TestSupport::disturbancesOfTheModels;
using TestSupport::disturbancesOfTheRoot;
using TestSupport::disturbEveryChange;
using TestSupport::dumped;
using TestSupport::everyKindOfChange;
using TestSupport::expectNoTranslatorObjects;
using TestSupport::fillWithOneOfEach;
using TestSupport::fillWithThreeHosts;
using TestSupport::followingScene;
using TestSupport::forEveryStep;
using TestSupport::Lines;
using TestSupport::Models;
using TestSupport::OutputFollower;
using TestSupport::Refusal;
using TestSupport::Scene;
using TestSupport::unpopulated;
using TestSupport::WriteLog;

bool isPrefix(Lines const & prefix, Lines const & lines) {
    return prefix.size() <= lines.size() && std::equal(prefix.begin(), prefix.end(), lines.begin());
}

// An input, with what an undisturbed creation of its translator does: the writes, and the output before each
// of them, after each change and at the end. The order of edges is that of addresses, so the input stays the
// same one.
struct UndisturbedCreation {
    UndisturbedCreation() {
        fillWithThreeHosts(*v2);
        auto const v3 = Status::StatusIs();
        WriteLog log;
        log.beforeWriteIs([&](auto const &) { beforeWrites.push_back(dumped(*v3)); });
        OutputFollower const follower(v3, [&](auto const &) { afterChanges.push_back(dumped(*v3)); });
        auto const sm = v2SmFactory("sm", v2, v3);
        log.beforeWriteIs({});
        writes = log.lines();
        end = dumped(*v3);
        sm->v3Del();
    }

    StatusV2::Ptr const v2 = StatusV2::StatusV2Is();
    Lines writes;
    std::vector<Lines> beforeWrites;
    std::vector<Lines> afterChanges;
    Lines end;
};

// Creation that fails

TEST(CreationRefused, AfterAnyChangeLeavesWhatWasWrittenAndNothingElse) {
    UndisturbedCreation const undisturbed;
    ASSERT_GT(undisturbed.afterChanges.size(), 50U);
    for (std::size_t n = 1; n <= undisturbed.afterChanges.size(); ++n) {
        SCOPED_TRACE(n);
        auto const v3 = Status::StatusIs();
        WriteLog log;
        {
            std::size_t changes = 0;
            OutputFollower const follower(v3, [&](auto const &) {
                if (++changes == n) throw Refusal();
            });
            EXPECT_THROW(v2SmFactory("sm", undisturbed.v2, v3), Refusal);
            EXPECT_EQ(changes, n);
        }
        expectNoTranslatorObjects();
        EXPECT_EQ(dumped(*v3), undisturbed.afterChanges[n - 1]);
        EXPECT_TRUE(isPrefix(log.lines(), undisturbed.writes));
        // The models are none the worse for it: another translator completes the output.
        auto const sm = v2SmFactory("sm", undisturbed.v2, v3);
        EXPECT_EQ(v3->host().size(), 3U);
        EXPECT_EQ(v3->edge().size(), 3U);
    }
}

TEST(CreationRefused, ByTheModelAtAnyWriteLeavesWhatWasWrittenAndNothingElse) {
    UndisturbedCreation const undisturbed;
    ASSERT_GT(undisturbed.writes.size(), 100U);
    for (std::size_t n = 1; n <= undisturbed.writes.size(); ++n) {
        SCOPED_TRACE(n);
        auto const v3 = Status::StatusIs();
        WriteLog log;
        log.beforeWriteIs([&](auto const &) {
            if (log.size() == n) throw std::bad_alloc();
        });
        EXPECT_THROW(v2SmFactory("sm", undisturbed.v2, v3), std::bad_alloc);
        expectNoTranslatorObjects();
        EXPECT_EQ(dumped(*v3), undisturbed.beforeWrites[n - 1]);
        EXPECT_EQ(log.size(), n);
        EXPECT_TRUE(isPrefix(log.lines(), undisturbed.writes));
    }
}

TEST(CreationRefused, ForWantOfMemoryAtAnyAllocationLeavesNothingOfTheTranslator) {
    UndisturbedCreation const undisturbed;
    Vel::Name const name = "translator";
    auto const steps = forEveryStep([&](std::size_t n) {
        auto const v3 = Status::StatusIs();
        bool refused = false;
        V2Sm::Ptr sm;
        {
            TestSupport::FailingAllocations const failing(n - 1);
            try {
                sm = v2SmFactory(name, undisturbed.v2, v3);
            } catch (std::bad_alloc const &) {
                refused = true;
            }
        }
        if (!refused) {
            EXPECT_EQ(dumped(*v3), undisturbed.end);
            return false;
        }
        expectNoTranslatorObjects();
        sm = v2SmFactory(name, undisturbed.v2, v3);
        EXPECT_EQ(sm->host().size(), 3U);
        return true;
    });
    EXPECT_GT(steps, 100U);
}

TEST(CreationRefused, LeavesTheInputWithoutFollowers) {
    Models const models = {};
    fillWithThreeHosts(*models.v2);
    {
        OutputFollower const follower(models.v3, [&](std::string const & change) {
            if (change == "/ onLocalhost()") throw Refusal();
        });
        EXPECT_THROW(v2SmFactory("sm", models.v2, models.v3), Refusal);
    }
    WriteLog log;
    for (auto const & change : everyKindOfChange()) change.make(*models.v2);
    EXPECT_THAT(log.lines(), IsEmpty());
}

// Disturbances

class DisturbedByTheRoot : public testing::TestWithParam<Disturbance> {};
class DisturbedByTheModels : public testing::TestWithParam<Disturbance> {};

constexpr auto unpopulatedScene = [](Scene & scene) { scene.sm = unpopulated(scene.models); };
// The caller's own reference may go meanwhile, as that of any caller of an entry point may.
constexpr auto populate = [](Scene & scene) {
    V2Sm & root = *scene.sm;
    root.populateV3();
};

TEST_P(DisturbedByTheRoot, APopulationSurvives) {
    disturbEveryChange(GetParam(), unpopulatedScene, populate);
}

TEST_P(DisturbedByTheModels, APopulationSurvives) {
    disturbEveryChange(GetParam(), unpopulatedScene, populate);
}

TEST_P(DisturbedByTheModels, ACreationSurvives) {
    disturbEveryChange(
        GetParam(), [](Scene &) {}, followingScene);
}

TEST_P(DisturbedByTheRoot, EveryKindOfChangeSurvives) {
    for (Change const & change : everyKindOfChange()) {
        SCOPED_TRACE(change.name);
        // Some changes are none of the output's business.
        disturbEveryChange(
            GetParam(), followingScene, [&](Scene & scene) { change.make(*scene.models.v2); }, 0);
    }
}

TEST_P(DisturbedByTheModels, AnEndSurvives) {
    disturbEveryChange(GetParam(), followingScene, [](Scene & scene) { scene.sm = nullptr; });
}

TEST_P(DisturbedByTheRoot, ABindingToAnotherInputSurvives) {
    disturbEveryChange(GetParam(), followingScene, [](Scene & scene) {
        V2Sm & root = *scene.sm;
        root.v2Is(scene.others.v2);
    });
}

TEST_P(DisturbedByTheModels, ABindingToAnotherInputSurvives) {
    disturbEveryChange(GetParam(), followingScene, [](Scene & scene) {
        V2Sm & root = *scene.sm;
        root.v2Is(scene.others.v2);
    });
}

TEST_P(DisturbedByTheRoot, AnEndOfAllReactorsSurvives) {
    disturbEveryChange(GetParam(), followingScene, [](Scene & scene) {
        V2Sm & root = *scene.sm;
        root.hostDelAll();
    });
    disturbEveryChange(GetParam(), followingScene, [](Scene & scene) {
        V2Sm & root = *scene.sm;
        root.edgeDelAll();
    });
}

TEST_P(DisturbedByTheRoot, ARetirementAndARevivalSurvive) {
    disturbEveryChange(GetParam(), followingScene, [](Scene & scene) {
        V2Sm::Ptr const root = scene.sm;
        root->velDoZombieReactors(true);
        root->velDoZombieReactors(false);
    });
}

constexpr auto nameOf = [](auto const & info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(, DisturbedByTheRoot, testing::ValuesIn(disturbancesOfTheRoot()), nameOf);
INSTANTIATE_TEST_SUITE_P(, DisturbedByTheModels, testing::ValuesIn(disturbancesOfTheModels()), nameOf);

// What a disturbed population still writes

// Makes a population during whose first change `disturbance` happens, and returns its writes.
Lines writesOfPopulation(Scene & scene, std::function<void()> const & disturbance) {
    fillWithThreeHosts(*scene.models.v2);
    scene.sm = unpopulated(scene.models);
    bool disturbed = false;
    OutputFollower const follower(scene.models.v3, [&](auto const &) {
        if (!std::exchange(disturbed, true)) disturbance();
    });
    WriteLog log;
    V2Sm & root = *scene.sm;
    root.populateV3();
    return log.lines();
}

TEST(DisturbedPopulation, WritesNoLocalhostAndNoEdgesOnceTheOutputIsUnbound) {
    Scene scene;
    auto const lines = writesOfPopulation(scene, [&] { scene.sm->v3Del(); });
    EXPECT_THAT(lines, Not(Contains(HasSubstr("localhostIs"))));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("edgeIs"))));
}

TEST(DisturbedPopulation, WritesNoLocalhostAndNoEdgesOnceTheInputIsUnbound) {
    Scene scene;
    auto const lines = writesOfPopulation(scene, [&] { scene.sm->v2Del(); });
    EXPECT_THAT(lines, Not(Contains(HasSubstr("localhostIs"))));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("edgeIs"))));
}

TEST(DisturbedPopulation, WritesLocalhostAndEdgesIntoTheOutputThatIsBoundThen) {
    Scene scene;
    writesOfPopulation(scene, [&] {
        scene.sm->v3Is(scene.others.v3);
        scene.others.v3->hostIs("b");
    });
    EXPECT_EQ(scene.others.v3->localhost(), scene.others.v3->host("b"));
    EXPECT_EQ(scene.models.v3->localhost(), nullptr);
}

TEST(DisturbedPopulation, HoldsTheRootUntilItIsDone) {
    Scene scene;
    auto const lines = writesOfPopulation(scene, [&] {
        scene.sm = nullptr;
        EXPECT_EQ(V2Sm::velAllocTrackTypeInfo_->live(), 1U);
    });
    EXPECT_THAT(lines, Contains("/ localhostIs(/host/b)"));
    EXPECT_EQ(V2Sm::velAllocTrackTypeInfo_->live(), 0U);
}

TEST(DisturbedPopulation, LeavesOutHostsThatLeaveBeforeItsWalkReachesThem) {
    Scene scene;
    fillWithThreeHosts(*scene.models.v2);
    std::vector<Vel::Name> order;
    for (auto const & host : scene.models.v2->host()) order.push_back(host->name());
    auto const lines = writesOfPopulation(scene, [&] { scene.models.v2->hostDel(order[2]); });
    EXPECT_THAT(lines, Contains("/ hostIs('" + std::string(order[1].view()) + "')"));
    EXPECT_THAT(lines, Not(Contains("/ hostIs('" + std::string(order[2].view()) + "')")));
}

// However the input's collections grow while they are walked.
TEST(DisturbedPopulation, MeetsEveryHostThatWasThereFromTheStartOnce) {
    Scene scene;
    auto const lines = writesOfPopulation(scene, [&] {
        for (int i = 0; i < 1000; ++i) scene.models.v2->hostIs("many-" + std::to_string(i));
    });
    for (char const * const host : {"/ hostIs('a')", "/ hostIs('b')", "/ hostIs('c')"}) {
        EXPECT_EQ(std::ranges::count(lines, host), 1) << host;
    }
}

TEST(DisturbedPopulation, PassesOverMembersThatAreDeletedBehindIt) {
    Scene scene;
    fillWithOneOfEach(*scene.models.v2);
    scene.sm = unpopulated(scene.models);
    OutputFollower const follower(scene.models.v3, [&](std::string const & change) {
        if (change != "/host/a onLogicalPort('g')") return;
        auto const host = scene.models.v3->host("a");
        host->portDelAll();
        host->portGroupDelAll();
        host->mlagDelAll();
    });
    scene.sm->populateV3();
    EXPECT_EQ(scene.models.v3->host("a")->port().size(), 0U);
    EXPECT_EQ(scene.models.v3->host("a")->hostname(), "a.example");
    EXPECT_EQ(scene.models.v3->host("a")->mlagPeerLink(), nullptr);
}

// Exceptions from the output

TEST(Refused, AfterAnyChangeAChangeOfTheInputLeavesATranslatorThatWorks) {
    for (Change const & change : everyKindOfChange()) {
        SCOPED_TRACE(change.name);
        forEveryStep([&](std::size_t n) {
            Scene scene;
            fillWithThreeHosts(*scene.models.v2);
            followingScene(scene);
            std::size_t changes = 0;
            bool refused = false;
            {
                OutputFollower const follower(scene.models.v3, [&](auto const &) {
                    if (++changes == n) throw Refusal();
                });
                try {
                    change.make(*scene.models.v2);
                } catch (Refusal const &) {
                    refused = true;
                }
            }
            EXPECT_EQ(refused, changes >= n);
            scene.models.v2->hostIs("afterwards")->portIs("p");
            scene.models.v2->localhostIs(scene.models.v2->host("afterwards"));
            EXPECT_EQ(scene.models.v3->localhost(), scene.models.v3->host("afterwards"));
            EXPECT_NE(scene.models.v3->localhost(), nullptr);
            scene.sm = nullptr;
            expectNoTranslatorObjects();
            return refused && !testing::Test::HasFailure();
        });
    }
}

TEST(Refused, APopulationPassesTheExceptionOnAndKeepsWhatItWrote) {
    Scene scene;
    fillWithOneOfEach(*scene.models.v2);
    scene.sm = unpopulated(scene.models);
    {
        OutputFollower const follower(scene.models.v3, [](std::string const & change) {
            if (change == "/host/a onHostname()") throw Refusal();
        });
        EXPECT_THROW(scene.sm->populateV3(), Refusal);
    }
    EXPECT_EQ(scene.models.v3->host("a")->hostname(), "a.example");
    EXPECT_EQ(scene.models.v3->host("a")->mlagState(), Mlag::MlagState::unknown);
    EXPECT_EQ(scene.models.v3->localhost(), nullptr);
    scene.sm->populateV3();
    EXPECT_EQ(scene.models.v3->host("a")->mlagState(), Mlag::MlagState::active);
}

TEST(RefusedDeathTest, AnEndOfTheTranslatorEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Scene scene;
            fillWithOneOfEach(*scene.models.v2);
            followingScene(scene);
            OutputFollower const follower(scene.models.v3, [](auto const &) { throw Refusal(); });
            scene.sm = nullptr;
        },
        "");
}

// Without a status

TEST(WithoutOutput, EveryKindOfChangeIsFollowedAndNothingWritten) {
    Scene scene;
    fillWithThreeHosts(*scene.models.v2);
    WriteLog log;
    scene.sm = v2SmFactory("sm", scene.models.v2, nullptr);
    for (Change const & change : everyKindOfChange()) change.make(*scene.models.v2);
    EXPECT_EQ(scene.sm->host().size(), scene.models.v2->host().size());
    EXPECT_EQ(scene.sm->edge().size(), scene.models.v2->edge().size());
    scene.sm = nullptr;
    EXPECT_THAT(log.lines(), IsEmpty());
}

// Hosts that the translator already holds are still written; the status is not.
TEST(WithOutputTakenAway, EveryKindOfChangeIsFollowedAndTheStatusLeftAlone) {
    for (Change const & change : everyKindOfChange()) {
        SCOPED_TRACE(change.name);
        Scene scene;
        fillWithThreeHosts(*scene.models.v2);
        followingScene(scene);
        scene.sm->v3Del();
        WriteLog log;
        change.make(*scene.models.v2);
        EXPECT_EQ(scene.sm->host().size(), scene.models.v2->host().size());
        EXPECT_EQ(scene.sm->edge().size(), scene.models.v2->edge().size());
        scene.sm = nullptr;
        EXPECT_THAT(log.linesInto("/"), IsEmpty());
    }
}

TEST(WithOutputTakenAway, AllChangesAfterAnotherAreFollowed) {
    Scene scene;
    fillWithThreeHosts(*scene.models.v2);
    followingScene(scene);
    scene.sm->v3Del();
    WriteLog log;
    for (Change const & change : everyKindOfChange()) change.make(*scene.models.v2);
    scene.sm = nullptr;
    EXPECT_THAT(log.linesInto("/"), IsEmpty());
}

TEST(WithAnotherOutput, EveryKindOfChangeLeavesTheOldStatusAlone) {
    Scene scene;
    fillWithThreeHosts(*scene.models.v2);
    followingScene(scene);
    scene.sm->v3Is(scene.others.v3);
    WriteLog log;
    for (Change const & change : everyKindOfChange()) change.make(*scene.models.v2);
    scene.sm = nullptr;
    for (auto const & write : log.writes()) EXPECT_NE(write.object, scene.models.v3.get()) << write.text();
    EXPECT_THAT(log.linesInto("/"), Not(IsEmpty()));
}

TEST(WithoutInput, EveryKindOfChangeIsSurvived) {
    Scene scene;
    fillWithThreeHosts(*scene.models.v2);
    followingScene(scene);
    scene.sm->v2Del();
    WriteLog log;
    for (Change const & change : everyKindOfChange()) change.make(*scene.models.v2);
    EXPECT_EQ(scene.sm->host().size(), 3U);
    EXPECT_THAT(log.linesOf("localhostIs"), IsEmpty());
    EXPECT_THAT(log.linesOf("hostIs"), IsEmpty());
}

TEST(WithoutStatuses, EveryOperationOfTheRootIsSurvived) {
    auto const sm = v2SmFactory("sm", nullptr, nullptr);
    Models const models = {};
    fillWithOneOfEach(*models.v2);
    auto const host = models.v2->host("a");
    auto const edge = *models.v2->edge().begin();
    WriteLog log;
    sm->populateV3();
    sm->hostIs(host);
    sm->edgeIs(edge);
    EXPECT_EQ(sm->toHostV3(host), nullptr);
    sm->hasNotificationActiveIs(false);
    sm->velDoZombieReactors(true);
    sm->velDoZombieReactors(false);
    EXPECT_EQ(sm->edgeDel(edge->fromPort()), edge);
    EXPECT_EQ(sm->hostDel("a"), host);
    EXPECT_EQ(sm->hostDel("a"), nullptr);
    sm->hostDelAll();
    sm->edgeDelAll();
    EXPECT_THAT(log.lines(), IsEmpty());
}

// Nested changes

TEST(NestedChanges, OfTheInputFromInsideTheOutputAreMirroredToAnyDepth) {
    Scene scene;
    followingScene(scene);
    std::size_t depth = 0;
    std::size_t deepest = 0;
    OutputFollower const follower(scene.models.v3, [&](std::string const & change) {
        auto const name = "n" + std::to_string(depth);
        if (change != "/ onHost('" + name + "')" || depth == 4) return;
        deepest = ++depth;
        scene.models.v2->hostIs("n" + std::to_string(depth))->portIs("p");
    });
    WriteLog log;
    scene.models.v2->hostIs("n0")->portIs("p");
    EXPECT_EQ(deepest, 4U);
    for (char const * const name : {"n0", "n1", "n2", "n3", "n4"}) {
        ASSERT_NE(scene.models.v3->host(name), nullptr) << name;
        EXPECT_NE(scene.models.v3->host(name)->port("p"), nullptr) << name;
        EXPECT_EQ(scene.sm->host(name)->notifier(), scene.models.v2->host(name).get());
    }
    EXPECT_EQ(log.linesOf("hostIs").size(), 5U);
}

TEST(NestedChanges, OfTwoFollowersThatAnswerEachOtherComeToAnEnd) {
    Scene scene;
    auto const host = scene.models.v2->hostIs("a");
    followingScene(scene);
    OutputFollower const one(scene.models.v3, [&](std::string const & change) {
        auto const hostname = std::string(scene.models.v3->host("a")->hostname().view());
        if (change == "/host/a onHostname()" && hostname.size() < 8) host->mlagDomainIdIs(hostname);
    });
    OutputFollower const two(scene.models.v3, [&](std::string const & change) {
        auto const domain = std::string(scene.models.v3->host("a")->mlagDomainId().view());
        if (change == "/host/a onMlagDomainId()") host->hostnameIs(domain + "x");
    });
    host->hostnameIs("x");
    EXPECT_EQ(scene.models.v3->host("a")->hostname(), "xxxxxxxx");
    EXPECT_EQ(scene.models.v3->host("a")->mlagDomainId(), "xxxxxxx");
}

// The host that is being mirrored is mirrored again from inside its creation.
TEST(NestedChanges, ThatMakeTheSameHostsReactorLeaveOneReactorAndTheHost) {
    Scene scene;
    followingScene(scene);
    V2Sm::VelHost::Ptr nested;
    OutputFollower const follower(scene.models.v3, [&](std::string const & change) {
        if (change == "/ onHost('a')" && !nested) nested = scene.sm->hostIs(scene.models.v2->host("a"));
    });
    scene.models.v2->hostIs("a")->portIs("p");
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(scene.sm->host().size(), 1U);
    EXPECT_EQ(scene.sm->host("a"), nested);
    EXPECT_NE(scene.models.v3->host("a"), nullptr);
    EXPECT_NE(scene.models.v3->host("a")->port("p"), nullptr);
    EXPECT_TRUE(nested->hasNotificationActive());
    nested = nullptr;
    EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->live(), 1U);
}

TEST(NestedChanges, ThatRemoveTheHostBeingMirroredLeaveNeither) {
    Scene scene;
    followingScene(scene);
    OutputFollower const follower(scene.models.v3, [&](std::string const & change) {
        if (change == "/ onHost('a')") scene.models.v2->hostDel("a");
    });
    scene.models.v2->hostIs("a");
    EXPECT_EQ(scene.sm->host("a"), nullptr);
    EXPECT_EQ(scene.models.v3->host("a"), nullptr);
    scene.models.v2->hostIs("b");
    EXPECT_EQ(scene.sm->host("b")->notifier(), scene.models.v2->host("b").get());
}

// Who listens to the traces may change the models, too.
TEST(V2SmDisturbed, ByASinkThatTakesAwayWhatIsBeingLinked) {
    auto const v2 = StatusV2::StatusV2Is();
    auto const v3 = Status::StatusIs();
    auto const host = v2->hostIs("h");
    auto const group = host->portGroupIs("g");
    host->portIs("p")->portGroupIs(group);
    host->mlagIs("m", "")->localPortGroupIs(group);
    int taken = 0;
    Vel::traceLevelIs("NetworkTopologyAggregator", 5, true);
    Vel::traceSinkIs([&](Vel::TraceRecord const & record) {
        if (record.function != "toPortGroupV3") return;
        taken += v3->host("h")->portDel("p") ? 1 : 0;
        taken += v3->host("h")->mlagDel("m") ? 1 : 0;
    });
    auto const sm = v2SmFactory("sm", v2, v3);
    Vel::traceSinkIs({});
    Vel::traceLevelIs("NetworkTopologyAggregator", 5, false);
    EXPECT_EQ(taken, 2);
    // Their reactors make them again.
    EXPECT_NE(v3->host("h")->port("p"), nullptr);
    EXPECT_NE(v3->host("h")->mlag("m"), nullptr);
}

TEST(V2SmDisturbed, ByASinkThatAddsADestinationWhileTheOnlyOneIsLookedUp) {
    auto const v2 = StatusV2::StatusV2Is();
    auto const v3 = Status::StatusIs();
    auto const host = v2->hostIs("h");
    auto const edge = v2->edgeIs(host->portIs("from"));
    auto const only = host->portIs("only");
    auto const other = host->portIs("other");
    edge->toPortIs(only, true);
    Vel::traceLevelIs("NetworkTopologyAggregator", 5, true);
    Vel::traceSinkIs([&](Vel::TraceRecord const & record) {
        // The edge is made after its from-port has been looked up, and before its destinations are.
        if (record.function == "toPortBaseV3" && v3->edge().size() == 1) edge->toPortIs(other, false);
    });
    auto const sm = v2SmFactory("sm", v2, v3);
    Vel::traceSinkIs({});
    Vel::traceLevelIs("NetworkTopologyAggregator", 5, false);
    auto const edgeV3 = v3->edge(v3->host("h")->port("from")->portKey());
    ASSERT_NE(edgeV3, nullptr);
    EXPECT_EQ(edge->toPort().size(), 2U);
    EXPECT_EQ(edgeV3->toPort(v3->host("h")->port("only")->portKey()), true);
}

}  // namespace
