// The root's registry of host reactors.
#include <set>

#include <gmock/gmock.h>

#include "platform/Vel/Exceptions.h"
#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"

namespace {

using NetworkTopology::HostV2;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::Journal;
using TestSupport::Lines;
using TestSupport::WriteLog;

struct HostRegistry : TestSupport::Followed {};

TEST_F(HostRegistry, MakesSwitchesOnAndEntersAReactor) {
    auto const x = HostV2::HostV2Is("x");
    Journal journal;
    auto const reactor = sm->hostIs(x);
    EXPECT_THAT(journal.taken(), ElementsAre("trace createV3Host", "/ hostIs('x')", "trace toPortBaseV3",
                                             "/host/x mlagPeerLinkIs(null)", "VelHost active"));
    EXPECT_EQ(sm->host("x"), reactor);
    EXPECT_EQ(reactor->fwkKey(), "x");
    EXPECT_EQ(reactor->notifier(), x.get());
    EXPECT_EQ(reactor->owner(), sm.get());
}

TEST_F(HostRegistry, GivenTheSameHostAgainChangesNothing) {
    host->velDoZombieReactors(true);
    host->isRegisteredNotifieeIs(false);
    Journal journal;
    EXPECT_EQ(sm->hostIs(hostV2), host);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(host->velMarkedForDeletion());
    EXPECT_FALSE(host->isRegisteredNotifiee());
}

TEST_F(HostRegistry, GivenAnotherHostOfTheNameRebindsTheReactor) {
    auto const other = HostV2::HostV2Is("a");
    EXPECT_EQ(sm->hostIs(other), host);
    EXPECT_EQ(host->notifier(), other.get());
    EXPECT_EQ(sm->host().size(), 1U);
    EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->live(), 1U);
}

TEST_F(HostRegistry, GivesAReboundReactorTheMarkOfTheRoot) {
    host->velDoZombieReactors(true);
    sm->hostIs(HostV2::HostV2Is("a"));
    EXPECT_FALSE(host->velMarkedForDeletion());
    EXPECT_TRUE(host->hasNotificationActive());
    sm->velDoZombieReactors(true);
    host->velDoZombieReactors(false);
    sm->hostIs(HostV2::HostV2Is("a"));
    EXPECT_TRUE(host->velMarkedForDeletion());
}

TEST_F(HostRegistry, OfARetiredRootMakesRetiredReactors) {
    sm->velDoZombieReactors(true);
    auto const x = HostV2::HostV2Is("x");
    x->portIs("p");
    Journal journal;
    auto const reactor = sm->hostIs(x);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace createV3Host", "/ hostIs('x')", "trace toPortBaseV3",
                            "/host/x mlagPeerLinkIs(null)", "trace createV3Port", "/host/x portIs('p')",
                            "VelPort active", "VelHost active", "VelHost inactive", "VelPort inactive",
                            "trace cleanup", "/ hostDel('x')", "trace cleanup", "VelPort marked",
                            "VelHost marked"));
    EXPECT_EQ(sm->host("x"), reactor);
    EXPECT_TRUE(reactor->velMarkedForDeletion());
    EXPECT_EQ(models.v3->host("x"), nullptr);
}

TEST_F(HostRegistry, SwitchesANewReactorOnAlsoWhileTheRootIsInactive) {
    sm->hasNotificationActiveIs(false);
    EXPECT_TRUE(sm->hostIs(HostV2::HostV2Is("x"))->hasNotificationActive());
}

TEST_F(HostRegistry, RefusesNullAndIsUnchanged) {
    Journal journal;
    try {
        sm->hostIs(nullptr);
        FAIL() << "null was taken";
    } catch (Vel::RangeException const & exception) {
        EXPECT_STREQ(exception.what(),
                     "null _host parameter to mutator for NetworkTopologyAggregator::V2Sm::host not "
                     "allowed\"");
    }
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->host().size(), 1U);
}

TEST_F(HostRegistry, DeletesAReactorInThisOrderAndGivesItsHostBack) {
    bool entered = true;
    auto const follower = inside("/ onHost('a')", [&] { entered = bool(sm->host("a")); });
    Journal journal;
    EXPECT_EQ(sm->hostDel("a"), hostV2);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelHost inactive", "VelPort inactive", "VelPortGroup inactive",
                            "VelMlag inactive", "trace cleanup", "/ hostDel('a')", "trace cleanup",
                            "VelPort marked", "trace cleanup", "VelPortGroup marked", "trace cleanup",
                            "VelMlag marked", "VelHost marked"));
    EXPECT_FALSE(entered);
    EXPECT_EQ(host->owner(), nullptr);
    EXPECT_FALSE(host->hasNotificationActive());
    host = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre("VelHost destroyed", "VelMlag destroyed",
                                             "VelPortGroup destroyed", "VelPort destroyed"));
}

TEST_F(HostRegistry, SwitchesADeletedReactorOffLast) {
    host->velDoZombieReactors(true);
    host->hasNotificationActiveIs(true);
    Journal journal;
    sm->hostDel("a");
    EXPECT_THAT(journal.taken(), ElementsAre("VelHost inactive", "VelPort inactive", "VelPortGroup inactive",
                                             "VelMlag inactive"));
}

TEST_F(HostRegistry, DeletesNothingUnderAnUnknownName) {
    Journal journal;
    EXPECT_EQ(sm->hostDel("unknown"), nullptr);
    EXPECT_EQ(sm->hostDel(""), nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(sm->host().size(), 1U);
}

TEST_F(HostRegistry, GivesNullBackForAReactorWithoutHost) {
    host->notifierIs(nullptr);
    EXPECT_EQ(sm->hostDel("a"), nullptr);
    EXPECT_EQ(sm->host().size(), 0U);
}

TEST_F(HostRegistry, DeletesAllEachCleanedUpOnce) {
    Lines expected = {"/ hostDel('a')"};
    for (char const * const name : {"u", "v", "w", "x", "y", "z"}) {
        models.v2->hostIs(name);
        expected.push_back(std::string("/ hostDel('") + name + "')");
    }
    WriteLog log;
    sm->hostDelAll();
    EXPECT_THAT(log.taken(), testing::UnorderedElementsAreArray(expected));
    EXPECT_EQ(sm->host().size(), 0U);
    sm->hostDelAll();
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST_F(HostRegistry, MayLoseTheReactorInHandDuringAWalk) {
    for (char const * const name : {"u", "v", "w", "x", "y", "z"}) models.v2->hostIs(name);
    std::set<std::string> met;
    for (auto const & reactor : sm->host()) {
        met.emplace(reactor->fwkKey().view());
        sm->hostDel(reactor->fwkKey());
    }
    EXPECT_THAT(met, ElementsAre("a", "u", "v", "w", "x", "y", "z"));
    EXPECT_EQ(sm->host().size(), 0U);
}

TEST_F(HostRegistry, CleansUpByTheHookAndNothingElse) {
    Journal journal;
    V2Sm::vel_handleHost(host);
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", "/ hostDel('a')"));
    EXPECT_EQ(sm->host("a"), host);
    EXPECT_FALSE(host->velMarkedForDeletion());
}

TEST_F(HostRegistry, MakesAnotherReactorForAHostThatComesBack) {
    models.v2->hostDel("a");
    models.v2->hostIs(hostV2);
    EXPECT_NE(sm->host("a"), host);
    EXPECT_EQ(sm->host("a")->notifier(), hostV2.get());
    EXPECT_NE(hostV3()->port("p"), nullptr);
    WriteLog log;
    hostV2->portIs("x");
    EXPECT_THAT(log.taken(), ElementsAre("/host/a portIs('x')"));
}

}  // namespace
