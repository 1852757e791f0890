#include "translator/VelHost.h"

#include <gmock/gmock.h>

#include "tests/translator/support/Dump.h"
#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::dumped;
using TestSupport::Journal;
using TestSupport::Lines;
using TestSupport::WriteLog;

struct VelHost : TestSupport::Followed {
    // A host that no status holds, with attributes and members of its own.
    static HostV2::Ptr anotherHost(Vel::Name const & name) {
        auto const other = HostV2::HostV2Is(name);
        other->hostnameIs("other.example");
        other->mlagSystemIdIs({2, 0, 0, 0, 0, 7});
        other->mlagDomainIdIs("row");
        other->mlagStateIs(Mlag::MlagState::inactive);
        other->mlagPeerLinkIs(other->portIs("q"));
        other->portGroupIs("h");
        other->mlagIs("n", "n2");
        return other;
    }
};

// Making

TEST_F(VelHost, IsMadeInThisOrder) {
    auto const other = anotherHost("x");
    other->logicalPortIs("q", other->port("q"));
    other->mlagRawIs("n", other->mlag("n"));
    Journal journal;
    V2Sm::VelHost::Ptr const made = new V2Sm::VelHost(other, sm.get());
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace createV3Host", "/ hostIs('x')", "trace toPortBaseV3",
                            "/host/x mlagPeerLinkIs(null)", "trace createV3Port", "/host/x portIs('q')",
                            "VelPort active", "trace createV3PortGroup", "/host/x portGroupIs('h')",
                            "VelPortGroup active", "trace createV3Mlag", "/host/x mlagIs('n', 'n2')",
                            "VelMlag active"));
    EXPECT_TRUE(made->isRegisteredNotifiee());
    EXPECT_FALSE(made->hasNotificationActive());
    EXPECT_EQ(made->v3Host(), models.v3->host("x"));
    EXPECT_EQ(made->owner(), sm.get());
    EXPECT_EQ(made->name(), "x");
    EXPECT_EQ(made->fwkKey(), "x");
}

// The attributes are copied before there is a version-3 host to copy them into.
TEST_F(VelHost, WritesThePeerLinkAndNoOtherAttributeOfANewHost) {
    models.v2->hostIs(anotherHost("x"));
    auto const x = models.v3->host("x");
    EXPECT_EQ(x->hostname(), "");
    EXPECT_EQ(x->mlagDomainId(), "");
    EXPECT_EQ(x->mlagSystemId(), Keln::EthAddr());
    EXPECT_EQ(x->mlagState(), Mlag::MlagState::unknown);
    models.v2->host("x")->hostnameIs("later.example");
    EXPECT_EQ(x->hostname(), "later.example");
    EXPECT_EQ(x->mlagDomainId(), "");
    // Rebinding brings them all.
    sm->host("x")->notifierIs(nullptr);
    sm->host("x")->notifierIs(models.v2->host("x"));
    EXPECT_EQ(x->mlagDomainId(), "row");
}

TEST_F(VelHost, WritesThePeerLinkThatResolvesWhenItIsMade) {
    auto const other = HostV2::HostV2Is("x");
    other->mlagPeerLinkIs(hostV2->port("p"));
    WriteLog log;
    models.v2->hostIs(other);
    EXPECT_THAT(log.taken(), ElementsAre("/ hostIs('x')", "/host/x mlagPeerLinkIs(/host/a/port/p)"));
}

TEST_F(VelHost, WritesANullPeerLinkForNone) {
    WriteLog log;
    models.v2->hostIs("x");
    EXPECT_THAT(log.taken(), ElementsAre("/ hostIs('x')", "/host/x mlagPeerLinkIs(null)"));
    EXPECT_EQ(models.v3->host("x")->mlagPeerLink(), nullptr);
}

TEST_F(VelHost, IsMadeWithoutRootAndWritesNothing) {
    Journal journal;
    V2Sm::VelHost::Ptr const made = new V2Sm::VelHost(anotherHost("x"), nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("trace createV3Host", "trace createV3Port", "VelPort active",
                                             "trace createV3PortGroup", "VelPortGroup active",
                                             "trace createV3Mlag", "VelMlag active"));
    EXPECT_EQ(made->v3Host(), nullptr);
    EXPECT_EQ(made->port().size(), 1U);
}

TEST_F(VelHost, TakesTheVersion3HostThatIsThereAlready) {
    auto const present = models.v3->hostIs("x");
    present->hostnameIs("present.example");
    models.v2->hostIs(anotherHost("x"));
    EXPECT_EQ(sm->host("x")->v3Host(), present);
    EXPECT_EQ(present->hostname(), "present.example");
}

TEST_F(VelHost, IsTracked) {
    EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->typeName(), "NetworkTopologyAggregator::V2Sm::VelHost");
    EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->size(), sizeof(V2Sm::VelHost));
    EXPECT_EQ(V2Sm::VelHost::velAllocTrackTypeInfo_->live(), 1U);
}

TEST_F(VelHost, CreatesItsVersion3HostAnewWhenAsked) {
    auto const before = host->v3Host();
    EXPECT_EQ(host->createV3Host(), before);
    models.v3->hostDelAll();
    auto const created = host->createV3Host();
    EXPECT_EQ(created, hostV3());
    EXPECT_NE(created, before);
    EXPECT_EQ(host->v3Host(), before);
    host->v3HostIs(created);
    EXPECT_EQ(host->v3Host(), created);
    sm->v3Del();
    EXPECT_EQ(host->createV3Host(), nullptr);
}

TEST_F(VelHost, HoldsItsVersion3HostAndReleasesIt) {
    auto const output = host->v3Host();
    auto const references = output->references();
    host->v3HostIs(output);
    EXPECT_EQ(output->references(), references);
    host->v3HostIs(nullptr);
    EXPECT_EQ(output->references(), references - 1);
}

// Attributes

TEST_F(VelHost, CopiesEachAttributeByItsNotification) {
    Journal journal;
    hostV2->hostnameIs("new.example");
    hostV2->mlagSystemIdIs({2, 0, 0, 0, 0, 9});
    hostV2->mlagDomainIdIs("row");
    hostV2->mlagStateIs(Mlag::MlagState::disabled);
    hostV2->mlagPeerLinkIs(hostV2->portGroup("g"));
    EXPECT_THAT(journal.taken(),
                ElementsAre("/host/a hostnameIs('new.example')", "/host/a mlagSystemIdIs(02:00:00:00:00:09)",
                            "/host/a mlagDomainIdIs('row')", "/host/a mlagStateIs(disabled)",
                            "trace toPortBaseV3", "/host/a mlagPeerLinkIs(/host/a/portGroup/g)"));
}

TEST_F(VelHost, CopiesAttributesAlsoWhenTheyAreThereAlready) {
    WriteLog log;
    host->onHostname();
    host->onMlagSystemId();
    host->onMlagDomainId();
    host->onMlagState();
    host->onMlagPeerLink();
    EXPECT_THAT(log.taken(),
                ElementsAre("/host/a hostnameIs('a.example')", "/host/a mlagSystemIdIs(02:00:00:00:00:01)",
                            "/host/a mlagDomainIdIs('rack')", "/host/a mlagStateIs(active)",
                            "/host/a mlagPeerLinkIs(/host/a/port/p)"));
}

TEST_F(VelHost, WritesANullPeerLinkForAPortBaseWithoutCounterpart) {
    WriteLog log;
    hostV2->mlagPeerLinkIs(PortV2::PortV2Is("x"));
    hostV2->mlagPeerLinkIs(nullptr);
    EXPECT_THAT(log.taken(), ElementsAre("/host/a mlagPeerLinkIs(null)", "/host/a mlagPeerLinkIs(null)"));
}

TEST_F(VelHost, DoesNotFollowWhoAddedTheHostname) {
    Journal journal;
    hostV2->hostnameAddedByOwnerIs(true);
    host->onHostnameAddedByOwner();
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelHost, WithoutHostOrOutputWritesNoAttribute) {
    auto const nothing = [&] {
        Journal journal;
        host->onHostname();
        host->onMlagSystemId();
        host->onMlagDomainId();
        host->onMlagState();
        host->onMlagPeerLink();
        EXPECT_THAT(journal.taken(), IsEmpty());
    };
    auto const output = host->v3Host();
    host->v3HostIs(nullptr);
    nothing();
    host->v3HostIs(output);
    host->notifierIs(nullptr);
    nothing();
}

TEST_F(VelHost, WithoutRootWritesANullPeerLinkAndTheOtherAttributesAsTheyAre) {
    host->ownerIs(nullptr);
    Journal journal;
    host->onHostname();
    host->onMlagPeerLink();
    EXPECT_THAT(journal.taken(),
                ElementsAre("/host/a hostnameIs('a.example')", "/host/a mlagPeerLinkIs(null)"));
    host->ownerIs(sm.get());
}

// Binding

TEST_F(VelHost, BoundToTheSameHostChangesNothingAndDoesNotEvenRegister) {
    host->isRegisteredNotifieeIs(false);
    Journal journal;
    host->notifierIs(hostV2);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_FALSE(host->isRegisteredNotifiee());
}

TEST_F(VelHost, BoundToAnotherHostWritesAllAttributesThenReconcilesItsMembers) {
    auto const other = anotherHost("a");
    host->isRegisteredNotifieeIs(false);
    Journal journal;
    host->notifierIs(other);
    // The peer link is written before the members are made, so it finds none.
    EXPECT_THAT(journal.taken(),
                ElementsAre("/host/a hostnameIs('other.example')",
                            "/host/a mlagSystemIdIs(02:00:00:00:00:07)", "/host/a mlagDomainIdIs('row')",
                            "/host/a mlagStateIs(inactive)", "trace toPortBaseV3",
                            "/host/a mlagPeerLinkIs(null)",                                                //
                            "trace createV3Port", "/host/a portIs('q')", "VelPort active",                 //
                            "VelPort inactive", "trace cleanup", "/host/a portDel('p')",                   //
                            "VelPort marked", "VelPort destroyed",                                         //
                            "trace createV3PortGroup", "/host/a portGroupIs('h')", "VelPortGroup active",  //
                            "VelPortGroup inactive", "trace cleanup", "/host/a portGroupDel('g')",         //
                            "VelPortGroup marked", "VelPortGroup destroyed",                               //
                            "trace createV3Mlag", "/host/a mlagIs('n', 'n2')", "VelMlag active",           //
                            "VelMlag inactive", "trace cleanup", "/host/a mlagDel('m')",                   //
                            "VelMlag marked", "VelMlag destroyed"));
    EXPECT_TRUE(host->isRegisteredNotifiee());
    EXPECT_EQ(host->notifier(), other.get());
}

TEST_F(VelHost, BoundToAnotherHostKeepsTheReactorsOfMembersOfTheSameNames) {
    auto const other = HostV2::HostV2Is("a");
    other->portIs("p")->typeIs(PortTypeV2::mlag);
    auto const port = host->port("p");
    WriteLog log;
    host->notifierIs(other);
    EXPECT_EQ(host->port("p"), port);
    EXPECT_EQ(port->notifier(), other->port("p").get());
    EXPECT_THAT(log.lines(),
                testing::IsSupersetOf({"/host/a/port/p typeIs(mlag)", "/host/a/port/p portGroupIs(null)"}));
    EXPECT_THAT(log.linesOf("portIs"), IsEmpty());
}

TEST_F(VelHost, BoundToAnotherHostWalksNeitherLogicalPortsNorRawMlags) {
    auto const other = HostV2::HostV2Is("a");
    other->logicalPortIs("p", other->portIs("p"));
    other->mlagRawIs("m", other->mlagIs("m", ""));
    WriteLog log;
    host->notifierIs(other);
    for (char const * const mutator : {"logicalPortIs", "logicalPortDel", "mlagRawIs", "mlagRawDel"}) {
        EXPECT_THAT(log.linesOf(mutator), IsEmpty());
    }
}

TEST_F(VelHost, BoundToAnotherHostWithoutOutputSkipsTheAttributesOnly) {
    host->v3HostIs(nullptr);
    WriteLog log;
    host->notifierIs(anotherHost("a"));
    EXPECT_THAT(log.lines(), ElementsAre("/host/a portIs('q')", "/host/a portDel('p')",
                                         "/host/a portGroupIs('h')", "/host/a portGroupDel('g')",
                                         "/host/a mlagIs('n', 'n2')", "/host/a mlagDel('m')"));
}

TEST_F(VelHost, BoundToAnotherHostWithoutRootWritesANullPeerLink) {
    auto const other = HostV2::HostV2Is("a");
    other->mlagPeerLinkIs(hostV2->port("p"));
    host->ownerIs(nullptr);
    WriteLog log;
    host->notifierIs(other);
    EXPECT_THAT(log.linesOf("mlagPeerLinkIs"), ElementsAre("/host/a mlagPeerLinkIs(null)"));
    host->ownerIs(sm.get());
}

TEST_F(VelHost, UnboundLeavesTheOutputAndAllMembersAsTheyAre) {
    auto const before = dumped(*models.v3);
    Journal journal;
    host->notifierIs(nullptr);
    host->notifierIs(nullptr);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(dumped(*models.v3), before);
    EXPECT_EQ(host->port().size(), 1U);
    EXPECT_EQ(host->portGroup().size(), 1U);
    EXPECT_EQ(host->mlag().size(), 1U);
    EXPECT_EQ(host->name(), "");
    EXPECT_NE(host->v3Host(), nullptr);
}

TEST_F(VelHost, TakesAnObjectOfAnotherClassForNull) {
    host->notifierIs(models.v2);
    EXPECT_EQ(host->notifier(), nullptr);
    host->notifierIs(hostV2);
    EXPECT_EQ(host->notifier(), hostV2.get());
}

// What happens from inside the writes of a rebinding

struct VelHostRebound : VelHost {
    HostV2::Ptr const other = anotherHost("a");
};

TEST_F(VelHostRebound, StopsWhenItIsUnboundAfterAnyAttribute) {
    for (char const * const attribute :
         {"onHostname()", "onMlagSystemId()", "onMlagDomainId()", "onMlagState()", "onMlagPeerLink()"}) {
        SCOPED_TRACE(attribute);
        host->notifierIs(nullptr);
        host->notifierIs(hostV2);
        Lines lines;
        {
            auto const follower =
                inside(std::string("/host/a ") + attribute, [&] { host->notifierIs(nullptr); });
            WriteLog log;
            host->notifierIs(other);
            lines = log.taken();
        }
        ASSERT_FALSE(lines.empty());
        std::string mutator = attribute;
        mutator = std::string(1, static_cast<char>(std::tolower(mutator[2]))) +
                  mutator.substr(3, mutator.size() - 5) + "Is(";
        EXPECT_THAT(lines.back(), StartsWith("/host/a " + mutator));
        EXPECT_EQ(host->notifier(), nullptr);
        EXPECT_NE(host->port("p"), nullptr);
    }
}

TEST_F(VelHostRebound, GoesOnWithTheMembersWhenItsOutputGoesAfterTheFirstAttribute) {
    auto const follower = inside("/host/a onHostname()", [&] { host->v3HostIs(nullptr); });
    WriteLog log;
    host->notifierIs(other);
    EXPECT_THAT(log.lines(),
                ElementsAre("/host/a hostnameIs('other.example')", "/host/a portIs('q')",
                            "/host/a portDel('p')", "/host/a portGroupIs('h')", "/host/a portGroupDel('g')",
                            "/host/a mlagIs('n', 'n2')", "/host/a mlagDel('m')"));
}

TEST_F(VelHostRebound, StopsWhenItIsUnboundBetweenItsCollections) {
    auto const follower = inside("/host/a onPort('p')", [&] { host->notifierIs(nullptr); });
    WriteLog log;
    host->notifierIs(other);
    EXPECT_THAT(log.linesOf("portDel"), ElementsAre("/host/a portDel('p')"));
    EXPECT_THAT(log.linesOf("portGroupIs"), IsEmpty());
    EXPECT_THAT(log.linesOf("mlagIs"), IsEmpty());
}

TEST_F(VelHostRebound, HearsOfItsNewHostAlreadyMeanwhile) {
    auto const follower = inside("/host/a onHostname()", [&] {
        other->hostnameIs("nested.example");
        other->portIs("nested");
    });
    host->notifierIs(other);
    EXPECT_EQ(hostV3()->hostname(), "nested.example");
    EXPECT_NE(hostV3()->port("nested"), nullptr);
    EXPECT_EQ(host->port().size(), 2U);
}

// Clean-up, retirement, flags

TEST_F(VelHost, CleansUpByNameAndEmptiesNoRegistry) {
    Journal journal;
    host->cleanup();
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", "/ hostDel('a')"));
    EXPECT_EQ(hostV3(), nullptr);
    EXPECT_EQ(host->port().size(), 1U);
    EXPECT_EQ(host->v3Host()->name(), "a");
    host->cleanup();
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", "/ hostDel('a')"));
}

TEST_F(VelHost, WithoutHostOutputStatusOrRootCleansUpNothing) {
    models.v3->hostIs("");
    auto const output = host->v3Host();
    struct {
        char const * name;
        std::function<void()> take;
    } const cases[] = {
        {"output", [&] { host->v3HostIs(nullptr); }},
        {"status",
         [&] {
             host->v3HostIs(output);
             sm->v3Del();
         }},
        {"host",
         [&] {
             sm->v3Is(models.v3);
             host->notifierIs(nullptr);
         }},
        {"root",
         [&] {
             host->notifierIs(hostV2);
             host->ownerIs(nullptr);
         }},
    };
    for (auto const & [name, take] : cases) {
        SCOPED_TRACE(name);
        take();
        Journal journal;
        host->cleanup();
        EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup"));
    }
    EXPECT_NE(models.v3->host(""), nullptr);
    host->ownerIs(sm.get());
}

TEST_F(VelHost, IsRetiredInThisOrder) {
    Journal journal;
    host->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelHost inactive", "VelPort inactive", "VelPortGroup inactive",
                            "VelMlag inactive", "trace cleanup", "/ hostDel('a')", "trace cleanup",
                            "VelPort marked", "trace cleanup", "VelPortGroup marked", "trace cleanup",
                            "VelMlag marked", "VelHost marked"));
    host->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(host->port().size(), 1U);
    EXPECT_EQ(sm->host("a"), host);
}

// Members are cleaned up while there is a version-3 host of the name, whoever made it.
TEST_F(VelHost, RevivedCleansUpAgainHostFirst) {
    host->velDoZombieReactors(true);
    models.v3->hostIs("a");
    Journal journal;
    host->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelHost active", "VelPort active", "VelPortGroup active", "VelMlag active",
                            "trace cleanup", "/ hostDel('a')", "trace cleanup", "VelPort unmarked",
                            "trace cleanup", "VelPortGroup unmarked", "trace cleanup", "VelMlag unmarked",
                            "VelHost unmarked"));
    EXPECT_EQ(hostV3(), nullptr);
}

// Its version-3 host has gone and is not made again: what is added then has nowhere to be.
TEST_F(VelHost, RevivedFollowsItsHostWithoutOutput) {
    host->velDoZombieReactors(true);
    host->velDoZombieReactors(false);
    WriteLog log;
    auto const port = hostV2->portIs("x");
    models.v2->edgeIs(port)->toPortIs(hostV2->port("p"), true);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_NE(host->port("x"), nullptr);
    EXPECT_EQ(sm->edge(port)->v3Edge(), nullptr);
    hostV2->hostnameIs("unseen.example");
    EXPECT_THAT(log.lines(), ElementsAre("/host/a hostnameIs('unseen.example')"));
    EXPECT_EQ(host->v3Host()->hostname(), "unseen.example");
    sm = nullptr;
    EXPECT_EQ(hostV3(), nullptr);
}

TEST_F(VelHost, RetiredWithoutHostKeepsItsNotificationsAsTheyAre) {
    host->notifierIs(nullptr);
    Journal journal;
    host->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace cleanup", "VelPort inactive", "trace cleanup", "VelPort marked",
                            "VelPortGroup inactive", "trace cleanup", "VelPortGroup marked",
                            "VelMlag inactive", "trace cleanup", "VelMlag marked", "VelHost marked"));
    EXPECT_TRUE(host->hasNotificationActive());
    EXPECT_NE(hostV3(), nullptr);
}

// The hook needs no root.
TEST_F(VelHost, RetiredOrRevivedWithoutRootWritesNothing) {
    host->ownerIs(nullptr);
    Journal journal;
    host->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), ElementsAre("VelHost inactive", "VelPort inactive", "VelPortGroup inactive",
                                             "VelMlag inactive", "trace cleanup", "trace cleanup",
                                             "VelPort marked", "trace cleanup", "VelPortGroup marked",
                                             "trace cleanup", "VelMlag marked", "VelHost marked"));
    host->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), Contains("VelHost unmarked"));
    EXPECT_NE(hostV3(), nullptr);
    host->ownerIs(sm.get());
}

TEST_F(VelHost, RevivedAfterItWasLetGoEndsWithoutCleaningUp) {
    sm->hostDel("a");
    models.v3->hostIs("a");
    WriteLog log;
    host->velDoZombieReactors(false);
    host = nullptr;
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_NE(hostV3(), nullptr);
}

TEST_F(VelHost, PassesNotificationsToItsMembersOnlyWhenTheyChange) {
    Journal journal;
    host->port("p")->hasNotificationActiveIs(false);
    journal.taken();
    host->hasNotificationActiveIs(true);
    EXPECT_THAT(journal.taken(), IsEmpty());
    host->hasNotificationActiveIs(false);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelHost inactive", "VelPortGroup inactive", "VelMlag inactive"));
    host->hasNotificationActiveIs(true);
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelHost active", "VelPort active", "VelPortGroup active", "VelMlag active"));
}

TEST_F(VelHost, IsDestroyedInThisOrder) {
    V2Sm::VelHost::Ptr made = new V2Sm::VelHost(anotherHost("x"), sm.get());
    made->hasNotificationActiveIs(true);
    auto const port = made->port("q");
    auto const output = made->v3Host();
    Journal journal;
    made = nullptr;
    EXPECT_THAT(journal.taken(),
                ElementsAre("VelHost destroyed", "VelHost inactive", "VelPort inactive",
                            "VelPortGroup inactive", "VelMlag inactive", "trace cleanup", "/ hostDel('x')",
                            "trace cleanup", "VelPort marked", "trace cleanup", "VelPortGroup marked",
                            "trace cleanup", "VelMlag marked", "VelHost marked", "VelMlag destroyed",
                            "VelPortGroup destroyed"));
    EXPECT_EQ(port->owner(), nullptr);
    EXPECT_EQ(output->references(), 1U);
}

TEST_F(VelHost, DestroyedAfterItWasRetiredDoesNotCleanUpAgain) {
    V2Sm::VelHost::Ptr made = new V2Sm::VelHost(HostV2::HostV2Is("x"), sm.get());
    made->velDoZombieReactors(true);
    models.v3->hostIs("x");
    WriteLog log;
    made = nullptr;
    EXPECT_THAT(log.taken(), IsEmpty());
}

// The host is replaced under its name: its old port, which an edge still holds, stands for nothing any more.
TEST_F(VelHost, ReplacedWhileAnEdgeHoldsItsOldPortLeavesTheEdgeInPlace) {
    auto const oldPort = hostV2->port("p");
    hostV2->portDel("p");
    models.v2->hostDel("a");
    auto const again = models.v2->hostIs("a");
    auto const newPort = again->portIs("p");
    WriteLog log;
    models.v2->edge(oldPort)->toPortIs(newPort, true);
    EXPECT_THAT(log.taken(), ElementsAre("/edge[/host/a/port/p] toPortIs(/host/a/port/p, true)"));
    models.v2->edgeIs(newPort);
    EXPECT_THAT(log.taken(), ElementsAre("/ edgeIs(/host/a/port/p)"));
    EXPECT_EQ(sm->edge().size(), 2U);
    EXPECT_EQ(models.v3->edge().size(), 1U);
    models.v2->edgeDel(oldPort);
    EXPECT_THAT(log.taken(), IsEmpty());
    models.v2->edgeDel(newPort);
    EXPECT_THAT(log.taken(), ElementsAre("/ edgeDel(/host/a/port/p)"));
}

}  // namespace
