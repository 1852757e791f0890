// Short sequences in which counting, lifetime, names or the order of deliveries could go wrong in the root
// and in the reactors on its statuses.
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "platform/Vel/Exceptions.h"
#include "platform/Vel/Trace.h"
#include "tests/support/SmallStack.h"
#include "tests/translator/support/Following.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/Topologies.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using TestSupport::everyKindOfChange;
using TestSupport::fillWithOneOfEach;
using TestSupport::fillWithThreeHosts;
using TestSupport::following;
using TestSupport::Journal;
using TestSupport::Models;
using TestSupport::WriteLog;

// A follower of an input status.
class InputStatusFollower final : public StatusV2::NotifieeConst {
public:
    explicit InputStatusFollower(std::function<void()> onAnyHost) : onAnyHost_(std::move(onAnyHost)) {}
    using StatusV2::NotifieeConst::onHost;
    void onHost(Vel::Name) override { onAnyHost_(); }

private:
    std::function<void()> const onAnyHost_;
};

// Counting and lifetime

TEST(StatusReactors, OnTheStackDieOnce) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", nullptr, nullptr);
    Journal journal;
    {
        V2Sm::VelV2 velV2(models.v2, sm.get());
        V2Sm::VelV3 velV3(models.v3, sm.get());
        velV2.hasNotificationActiveIs(true);
    }
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 active", "VelV3 destroyed", "VelV3 marked",
                                             "VelV2 destroyed", "VelV2 inactive", "VelV2 marked"));
    models.v2->hostIs("a");
}

TEST(StatusReactors, InAUniquePtrDieOnce) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", nullptr, models.v3);
    WriteLog log;
    auto reactor = std::make_unique<V2Sm::VelV2>(models.v2, sm.get());
    reactor->hasNotificationActiveIs(true);
    EXPECT_THAT(log.taken(), ElementsAre("/ localhostIs(null)"));
    models.v2->hostIs("a");
    EXPECT_THAT(log.taken(), Not(IsEmpty()));
    reactor = nullptr;
    models.v2->hostIs("b");
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST(StatusReactors, WithoutOwnerIgnoreEveryCallback) {
    Models const models = {};
    auto const host = models.v2->hostIs("a");
    Vel::Ptr<V2Sm::VelV2> const velV2 = new V2Sm::VelV2(models.v2, nullptr);
    velV2->hasNotificationActiveIs(true);
    Journal journal;
    for (auto const & change : everyKindOfChange()) change.make(*models.v2);
    velV2->notifierIs(StatusV2::StatusV2Is());
    velV2->notifierIs(nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST(StatusReactors, WithoutNotifierIgnoreEveryCallback) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    auto const velV2 = sm->velV2();
    velV2->notifierIs(nullptr);
    Journal journal;
    velV2->onHost("a");
    velV2->onHostvelImmediate();
    velV2->onLocalhost();
    velV2->onEdge(nullptr);
    velV2->onEdgevelImmediate();
    models.v2->hostIs("a");
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->v2(), nullptr);
    sm->velV3()->notifierIs(nullptr);
    EXPECT_EQ(sm->v3(), nullptr);
}

TEST(StatusReactors, RetiredWithoutNotifierOnlyGetTheirMark) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    sm->velV2()->notifierIs(nullptr);
    Journal journal;
    sm->velV2()->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), ElementsAre("VelV2 marked"));
    EXPECT_TRUE(sm->velV2()->hasNotificationActive());
}

TEST(StatusReactors, TakeAnObjectOfAnotherClassForNull) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    sm->velV2()->notifierIs(models.v3);
    EXPECT_EQ(sm->v2(), nullptr);
    sm->velV3()->notifierIs(models.v2);
    EXPECT_EQ(sm->v3(), nullptr);
}

TEST(Translator, OfVeryManyHostsAndEdgesComesAndGoesOnASmallStack) {
    TestSupport::onASmallStack([] {
        constexpr int hosts = 6'000;
        Models const models;
        for (int i = 0; i < hosts; ++i) {
            models.v2->edgeIs(models.v2->hostIs("h" + std::to_string(i))->portIs("p"));
        }
        auto sm = v2SmFactory("sm", models.v2, models.v3);
        EXPECT_EQ(sm->edge().size(), static_cast<std::uint32_t>(hosts));
        sm = nullptr;
        EXPECT_EQ(models.v3->host().size(), 0U);
    });
}

// The translator's trace handle comes into being with its first trace, after the object that will outlive it.
TEST(TranslatorDeathTest, WithStaticLifetimeTracesAfterItsTraceHandleIsGone) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            static Models models;
            static V2Sm::Ptr sm;
            Vel::traceLevelIs("NetworkTopologyAggregator", 5, true);
            fillWithOneOfEach(*models.v2);
            sm = v2SmFactory("sm", models.v2, models.v3);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "VelHost::cleanup");
}

// Registries

TEST(Registries, FindReactorsThatHaveLostTheirNotifierUnderTheirOldKeys) {
    Models const models = {};
    fillWithOneOfEach(*models.v2);
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    auto const host = sm->host("a");
    auto const port = models.v2->host("a")->port("p");
    auto const edge = sm->edge(port);
    host->notifierIs(nullptr);
    edge->notifierIs(nullptr);
    EXPECT_EQ(host->fwkKey(), "");
    EXPECT_EQ(sm->host("a"), host);
    EXPECT_EQ(sm->host(""), nullptr);
    EXPECT_EQ(sm->edge(port), edge);
    EXPECT_EQ(sm->edge(nullptr), nullptr);
    EXPECT_EQ(sm->hostIs(models.v2->host("a")), host);
    EXPECT_EQ(host->notifier(), models.v2->host("a").get());
    sm->edgeIs(models.v2->edge(port));
    EXPECT_EQ(edge->notifier(), models.v2->edge(port).get());
}

TEST(Registries, AreEmptiedOfReactorsThatHaveLostTheirNotifier) {
    Models const models = {};
    fillWithThreeHosts(*models.v2);
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    for (auto const & host : sm->host()) host->notifierIs(nullptr);
    for (auto const & edge : sm->edge()) edge->notifierIs(nullptr);
    sm->hostDelAll();
    sm->edgeDelAll();
    EXPECT_EQ(sm->host().size(), 0U);
    EXPECT_EQ(sm->edge().size(), 0U);
}

TEST(Registries, DoNotDeleteTheNamelessHostForAReactorWithoutNotifier) {
    Models const models = {};
    models.v2->hostIs("");
    models.v2->hostIs("a");
    auto sm = v2SmFactory("sm", models.v2, models.v3);
    sm->host("a")->notifierIs(nullptr);
    WriteLog log;
    EXPECT_EQ(sm->hostDel("a"), nullptr);
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_NE(models.v3->host(""), nullptr);
    models.v2->hostDel("");
    EXPECT_EQ(models.v3->host(""), nullptr);
}

TEST(Registries, TellHostsOfSimilarNamesApart) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    std::string_view const names[] = {std::string_view(),       std::string_view("\0", 1),
                                      std::string_view("a"),    std::string_view("a\0", 2),
                                      std::string_view("\xff"), std::string_view("\x7f")};
    for (auto const name : names) models.v2->hostIs(name);
    EXPECT_EQ(models.v3->host().size(), std::size(names));
    for (auto const name : names) {
        models.v2->hostDel(name);
        EXPECT_EQ(models.v3->host(name), nullptr);
        EXPECT_EQ(sm->host(name), nullptr);
    }
    EXPECT_EQ(models.v3->host().size(), 0U);
}

TEST(Registries, RefuseNullWithTheTextThatEndsInAQuote) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    auto const messageOf = [](auto const & call) {
        try {
            call();
        } catch (Vel::RangeException const & exception) {
            return std::string(exception.what());
        }
        return std::string();
    };
    EXPECT_EQ(messageOf([&] { sm->hostIs(nullptr); }),
              "null _host parameter to mutator for NetworkTopologyAggregator::V2Sm::host not allowed\"");
    EXPECT_EQ(messageOf([&] { sm->edgeIs(nullptr); }),
              "null _edge parameter to mutator for NetworkTopologyAggregator::V2Sm::edge not allowed\"");
    EXPECT_EQ(sm->host().size(), 0U);
    EXPECT_EQ(sm->edge().size(), 0U);
}

// Deliveries

TEST(Deliveries, ReachTheTranslatorOnceHoweverOftenItRegisters) {
    Models const models = {};
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    sm->velV2()->isRegisteredNotifieeIs(true);
    sm->velV2()->isRegisteredNotifieeIs(true);
    WriteLog log;
    models.v2->localhostIs(models.v2->hostIs("a"));
    EXPECT_THAT(log.linesOf("localhostIs"), ElementsAre("/ localhostIs(/host/a)"));
}

TEST(Deliveries, DoNotReachATranslatorThatWasSwitchedOffEarlierInTheSameOne) {
    Models const models = {};
    V2Sm::Ptr sm;
    auto const earlier =
        following<InputStatusFollower>(models.v2, [&] { sm->hasNotificationActiveIs(false); });
    sm = v2SmFactory("sm", models.v2, models.v3);
    WriteLog log;
    models.v2->hostIs("a");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(sm->host("a"), nullptr);
}

TEST(Deliveries, DoNotReachATranslatorThatWasLetGoEarlierInTheSameOne) {
    Models const models = {};
    V2Sm::Ptr sm;
    auto const earlier = following<InputStatusFollower>(models.v2, [&] { sm = nullptr; });
    sm = v2SmFactory("sm", models.v2, models.v3);
    WriteLog log;
    models.v2->hostIs("a");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(Deliveries, DoNotReachATranslatorThatWasMadeDuringTheSameOne) {
    Models const models = {};
    V2Sm::Ptr sm;
    auto const earlier = following<InputStatusFollower>(models.v2, [&] {
        if (!sm) sm = v2SmFactory("sm", models.v2, models.v3);
    });
    WriteLog log;
    models.v2->hostIs("a");
    EXPECT_EQ(log.linesOf("hostIs").size(), 2U);  // By the population and by the reactor.
}

TEST(Deliveries, ReachALaterFollowerThatLetsGoOfTheTranslator) {
    Models const models = {};
    auto sm = v2SmFactory("sm", models.v2, models.v3);
    auto const later = following<InputStatusFollower>(models.v2, [&] { sm = nullptr; });
    models.v2->hostIs("a");
    EXPECT_EQ(models.v3->host().size(), 0U);
}

}  // namespace
