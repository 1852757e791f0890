#include <algorithm>
#include <array>
#include <set>

#include <gmock/gmock.h>

#include "tests/translator/support/Dump.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/OutputFollower.h"
#include "tests/translator/support/Spelling.h"
#include "tests/translator/support/Topologies.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using TestSupport::addHostWithOneOfEach;
using TestSupport::dumped;
using TestSupport::fillWithOneOfEach;
using TestSupport::fillWithThreeHosts;
using TestSupport::Journal;
using TestSupport::Lines;
using TestSupport::Models;
using TestSupport::OutputFollower;
using TestSupport::spelled;
using TestSupport::unpopulated;
using TestSupport::WriteLog;

// What a population of `v2` is to write, in order, into an output that holds what `present` names.
class ExpectedWrites {
public:
    explicit ExpectedWrites(StatusV2 const & v2, std::set<std::string> present = {})
        : present_(std::move(present)) {
        for (auto const & host : v2.host()) add(*host);
        add("/ localhostIs(" + counterpart(v2.localhost().get()) + ")");
        for (auto const & edge : v2.edge()) {
            auto const from = counterpart(edge->fromPort().get());
            if (from == "null") continue;
            add("/ edgeIs(" + from + ")");
            for (auto const & entry : edge->toPort()) {
                auto const to = counterpart(entry.key().get());
                if (to == "null") continue;
                add("/edge[" + from + "] toPortIs(" + to + ", " + spelled(entry.value()) + ")");
            }
        }
    }

    Lines const & lines() const { return lines_; }

private:
    void add(std::string line) { lines_.push_back(std::move(line)); }

    void add(HostV2 const & host) {
        auto const at = path(host);
        add("/ hostIs(" + spelled(host.name()) + ")");
        present_.insert(at);
        for (auto const & port : host.port()) {
            add(at + " portIs(" + spelled(port->name()) + ")");
            present_.insert(path(*port));
        }
        for (auto const & group : host.portGroup()) {
            add(at + " portGroupIs(" + spelled(group->name()) + ")");
            present_.insert(path(*group));
        }
        for (auto const & mlag : host.mlag()) {
            add(at + " mlagIs(" + spelled(mlag->name()) + ", " + spelled(mlag->secondaryName()) + ")");
            present_.insert(path(*mlag));
        }
        // A raw MLAG stands for the MLAG of its name in this very host.
        for (auto const & raw : host.mlagRaw()) {
            auto const own = raw.value() ? at + "/mlag/" + std::string(raw.value()->name().view()) : "";
            add(at + " mlagRawIs(" + (present_.contains(own) ? own : "null") + ")");
        }
        for (auto const & logical : host.logicalPort()) {
            add(at + " logicalPortIs(" + counterpart(logical.value().get()) + ")");
        }
        for (auto const & port : host.port()) {
            add(path(*port) + " portGroupIs(" + counterpart(port->portGroup().get()) + ")");
        }
        for (auto const & group : host.portGroup()) {
            for (auto const & member : group->memberPort()) {
                add(path(*group) + " memberPortIs(" + counterpart(member.value().get()) + ")");
            }
            add(path(*group) + " mlagIs(" + counterpart(group->mlag().get()) + ")");
        }
        for (auto const & mlag : host.mlag()) {
            add(path(*mlag) + " localPortGroupIs(" + counterpart(mlag->localPortGroup().get()) + ")");
        }
        add(at + " hostnameIs(" + spelled(host.hostname()) + ")");
        add(at + " mlagSystemIdIs(" + spelled(host.mlagSystemId()) + ")");
        add(at + " mlagDomainIdIs(" + spelled(host.mlagDomainId()) + ")");
        add(at + " mlagStateIs(" + spelled(host.mlagState()) + ")");
        add(at + " mlagPeerLinkIs(" + counterpart(host.mlagPeerLink().get()) + ")");
    }

    static std::string path(HostV2 const & host) { return "/host/" + std::string(host.name().view()); }
    static std::string path(PortBaseV2 const & portBase) {
        std::string_view const kind = dynamic_cast<PortV2 const *>(&portBase)        ? "/port/"
                                      : dynamic_cast<PortGroupV2 const *>(&portBase) ? "/portGroup/"
                                                                                     : "/mlag/";
        return path(*portBase.host()) + std::string(kind) + std::string(portBase.name().view());
    }
    std::string counterpart(HostV2 const * host) const {
        return host && present_.contains(path(*host)) ? path(*host) : "null";
    }
    std::string counterpart(PortBaseV2 const * portBase) const {
        return portBase && portBase->host() && present_.contains(path(*portBase)) ? path(*portBase) : "null";
    }

    std::set<std::string> present_;
    Lines lines_;
};

// The hosts, port bases and edges of an output.
std::set<std::string> objectsOf(NetworkTopologyV3::Status const & v3) {
    std::set<std::string> objects;
    for (auto const & host : v3.host()) {
        objects.insert(spelled(host));
        for (auto const & port : host->port()) objects.insert(spelled(port));
        for (auto const & group : host->portGroup()) objects.insert(spelled(group));
        for (auto const & mlag : host->mlag()) objects.insert(spelled(mlag));
    }
    return objects;
}

struct Population : testing::Test {
    Lines populate() {
        auto const sm = unpopulated(models);
        WriteLog log;
        sm->populateV3();
        auto lines = log.taken();
        sm->v3Del();  // So that the end of the root leaves the output alone.
        return lines;
    }

    Models const models = {};
};

TEST_F(Population, OfAnEmptyInputWritesOnlyANullLocalhost) {
    EXPECT_THAT(populate(), ElementsAre("/ localhostIs(null)"));
}

// Everything of one host, in order, with the lookups that the values come from.
TEST_F(Population, CreatesThenLinksThenCopiesThenTurnsToLocalhostAndEdges) {
    fillWithOneOfEach(*models.v2);
    auto const sm = unpopulated(models);
    Journal journal;
    sm->populateV3();
    EXPECT_THAT(
        journal.taken(),
        ElementsAre("trace populateV3", "/ hostIs('a')", "/host/a portIs('p')", "/host/a portGroupIs('g')",
                    "/host/a mlagIs('m', 'm2')", "/host/a mlagRawIs(/host/a/mlag/m)", "trace toPortBaseV3",
                    "/host/a logicalPortIs(/host/a/portGroup/g)", "trace toPortGroupV3",
                    "/host/a/port/p portGroupIs(/host/a/portGroup/g)", "trace toPortV3",
                    "/host/a/portGroup/g memberPortIs(/host/a/port/p)", "trace toMlagV3",
                    "/host/a/portGroup/g mlagIs(/host/a/mlag/m)", "trace toPortGroupV3",
                    "/host/a/mlag/m localPortGroupIs(/host/a/portGroup/g)", "/host/a hostnameIs('a.example')",
                    "/host/a mlagSystemIdIs(02:00:00:00:00:01)", "/host/a mlagDomainIdIs('rack')",
                    "/host/a mlagStateIs(active)", "trace toPortBaseV3",
                    "/host/a mlagPeerLinkIs(/host/a/port/p)", "trace toHostV3", "/ localhostIs(/host/a)",
                    "trace toPortBaseV3", "/ edgeIs(/host/a/port/p)", "trace toPortBaseV3",
                    "/edge[/host/a/port/p] toPortIs(/host/a/portGroup/g, true)"));
}

TEST_F(Population, TracesItsSignature) {
    auto const sm = unpopulated(models);
    TestSupport::TraceLog traces;
    sm->populateV3();
    ASSERT_EQ(traces.traces().size(), 2U);
    EXPECT_EQ(traces.traces()[0].message, "void NetworkTopologyAggregator::V2Sm::populateV3()");
    EXPECT_EQ(traces.traces()[0].function, "populateV3");
    EXPECT_EQ(traces.traces()[0].file, "V2Sm");
    EXPECT_EQ(traces.traces()[1].function, "toHostV3");
}

TEST_F(Population, MakesTheOutputHoldAllOfTheInput) {
    fillWithOneOfEach(*models.v2);
    populate();
    EXPECT_THAT(
        dumped(*models.v3),
        ElementsAre("/ localhost=/host/a", "/edge[/host/a/port/p]",
                    "/edge[/host/a/port/p] toPort /host/a/portGroup/g=true",
                    "/host/a hostname='a.example' mlagDomainId='rack' mlagSystemId=02:00:00:00:00:01 "
                    "mlagState=active mlagPeerLink=/host/a/port/p",
                    "/host/a logicalPort 'g'=/host/a/portGroup/g", "/host/a mlagRaw 'm'=/host/a/mlag/m",
                    "/host/a/mlag/m type=unknown secondaryName='m2' localPortGroup=/host/a/portGroup/g",
                    "/host/a/port/p type=unknown portGroup=/host/a/portGroup/g",
                    "/host/a/portGroup/g memberPort 'p'=/host/a/port/p",
                    "/host/a/portGroup/g type=unknown mlag=/host/a/mlag/m"));
}

TEST_F(Population, WalksEveryCollectionInItsOrder) {
    for (char const * const name : {"a", "b", "c", "d", "e", "f", "g"}) {
        auto const host = addHostWithOneOfEach(*models.v2, name);
        for (char const * const member : {"1", "2", "3", "4", "5", "6"}) {
            auto const port = host->portIs(member);
            auto const group = host->portGroupIs(member);
            auto const mlag = host->mlagIs(member, "same");
            port->portGroupIs(group);
            group->mlagIs(mlag);
            host->portGroup("g")->memberPortIs(member, port);
            host->logicalPortIs(member, port);
            host->mlagRawIs(member, mlag);
            models.v2->edgeIs(port)->toPortIs(host->port("p"), true);
            models.v2->edgeIs(host->port("p"))->toPortIs(mlag, false);
        }
    }
    EXPECT_EQ(populate(), ExpectedWrites(*models.v2).lines());
}

TEST_F(Population, CopiesBothFlagsOfDestinations) {
    auto const host = models.v2->hostIs("a");
    auto const edge = models.v2->edgeIs(host->portIs("p"));
    edge->toPortIs(host->portIs("q"), false);
    edge->toPortIs(host->portIs("r"), true);
    populate();
    auto const edgeV3 = models.v3->edge(models.v3->host("a")->port("p")->portKey());
    EXPECT_EQ(edgeV3->toPort(models.v3->host("a")->port("q")->portKey()), false);
    EXPECT_EQ(edgeV3->toPort(models.v3->host("a")->port("r")->portKey()), true);
}

TEST_F(Population, OfAnEdgeWithoutDestinationsMakesTheEdgeAlone) {
    models.v2->edgeIs(models.v2->hostIs("a")->portIs("p"));
    EXPECT_THAT(populate(), Contains("/ edgeIs(/host/a/port/p)"));
    EXPECT_EQ(models.v3->edge().size(), 1U);
    EXPECT_EQ((*models.v3->edge().begin())->toPort().size(), 0U);
}

TEST_F(Population, WritesDefaultsAndNullReferencesToo) {
    auto const host = models.v2->hostIs("a");
    host->portIs("p");
    host->portGroupIs("g");
    host->mlagIs("m", "");
    EXPECT_THAT(populate(),
                ElementsAre("/ hostIs('a')", "/host/a portIs('p')", "/host/a portGroupIs('g')",
                            "/host/a mlagIs('m', '')", "/host/a/port/p portGroupIs(null)",
                            "/host/a/portGroup/g mlagIs(null)", "/host/a/mlag/m localPortGroupIs(null)",
                            "/host/a hostnameIs('')", "/host/a mlagSystemIdIs(00:00:00:00:00:00)",
                            "/host/a mlagDomainIdIs('')", "/host/a mlagStateIs(unknown)",
                            "/host/a mlagPeerLinkIs(null)", "/ localhostIs(null)"));
}

TEST_F(Population, WritesValuesThatHaveNoName) {
    models.v2->hostIs("a")->mlagStateIs(static_cast<Mlag::MlagState>(77));
    EXPECT_THAT(populate(), Contains("/host/a mlagStateIs(77)"));
}

TEST_F(Population, OverwritesWhatTheOutputHeldBefore) {
    auto const hostV3 = models.v3->hostIs("a");
    hostV3->hostnameIs("old");
    hostV3->mlagPeerLinkIs(hostV3->portIs("p"));
    hostV3->port("p")->portGroupIs(hostV3->portGroupIs("g").get());
    models.v3->localhostIs(hostV3);
    models.v2->hostIs("a")->portIs("p");
    populate();
    EXPECT_EQ(hostV3->hostname(), "");
    EXPECT_EQ(hostV3->mlagPeerLink(), nullptr);
    EXPECT_EQ(hostV3->port("p")->portGroup(), nullptr);
    EXPECT_EQ(models.v3->localhost(), nullptr);
}

TEST_F(Population, UsesTheObjectsThatAreThereAlready) {
    fillWithOneOfEach(*models.v2);
    auto const hostV3 = models.v3->hostIs("a");
    auto const portV3 = hostV3->portIs("p");
    auto const mlagV3 = hostV3->mlagIs("m", "earlier");
    auto const edgeV3 = models.v3->edgeIs(portV3->portKey());
    populate();
    EXPECT_EQ(models.v3->host("a"), hostV3);
    EXPECT_EQ(hostV3->port("p"), portV3);
    EXPECT_EQ(hostV3->mlag("m"), mlagV3);
    EXPECT_EQ(mlagV3->secondaryName(), "earlier");
    EXPECT_EQ(models.v3->edge(portV3->portKey()), edgeV3);
}

TEST_F(Population, RemovesNothingFromTheOutput) {
    auto const stray = models.v3->hostIs("stray");
    stray->portIs("p");
    auto const hostV3 = models.v3->hostIs("a");
    auto const strayPort = hostV3->portIs("stray");
    hostV3->logicalPortIs(strayPort);
    hostV3->portGroupIs("g")->memberPortIs(strayPort);
    hostV3->mlagRawIs(hostV3->mlagIs("stray", ""));
    models.v3->edgeIs(strayPort->portKey())->toPortIs(strayPort->portKey(), true);
    fillWithOneOfEach(*models.v2);
    WriteLog log;
    populate();
    for (auto const & line : log.lines()) EXPECT_THAT(line, Not(testing::HasSubstr("Del(")));
    EXPECT_THAT(dumped(*models.v3), IsSupersetOf({"/edge[/host/a/port/stray]",
                                                  "/edge[/host/a/port/stray] toPort /host/a/port/stray=true",
                                                  "/host/a logicalPort 'stray'=/host/a/port/stray",
                                                  "/host/a mlagRaw 'stray'=/host/a/mlag/stray",
                                                  "/host/a/portGroup/g memberPort 'stray'=/host/a/port/stray",
                                                  "/host/stray/port/p type=unknown portGroup=null"}));
}

TEST_F(Population, WritesNoPortTypes) {
    fillWithThreeHosts(*models.v2);
    auto const sm = unpopulated(models);
    WriteLog log;
    sm->populateV3();
    EXPECT_THAT(log.linesOf("typeIs"), IsEmpty());
}

TEST_F(Population, LeavesPeerGroupsAndOwnershipFlagsAside) {
    fillWithOneOfEach(*models.v2);
    auto const writes = populate();
    auto const host = models.v2->host("a");
    host->mlag("m")->peerPortGroupIs(host->portGroup("g"));
    host->hostnameAddedByOwnerIs(true);
    host->port("p")->addedByOwnerIs(true);
    EXPECT_EQ(populate(), writes);
}

TEST_F(Population, MakesNoReactors) {
    fillWithThreeHosts(*models.v2);
    auto const sm = unpopulated(models);
    sm->populateV3();
    EXPECT_EQ(sm->host().size(), 0U);
    EXPECT_EQ(sm->edge().size(), 0U);
    EXPECT_EQ(models.v3->host().size(), 3U);
}

TEST_F(Population, RepeatedRepeatsItsWritesAndChangesNothing) {
    fillWithThreeHosts(*models.v2);
    auto const sm = unpopulated(models);
    sm->populateV3();
    sm->populateV3();
    auto const before = dumped(*models.v3);
    WriteLog log;
    OutputFollower const follower(models.v3, [](std::string const & change) { ADD_FAILURE() << change; });
    sm->populateV3();
    auto const writes = log.taken();
    EXPECT_EQ(dumped(*models.v3), before);
    EXPECT_EQ(follower.changes(), 0U);
    EXPECT_EQ(writes, ExpectedWrites(*models.v2, objectsOf(*models.v3)).lines());
    sm->populateV3();
    EXPECT_EQ(log.taken(), writes);
}

TEST_F(Population, OfOneHostRepeatedRepeatsItsVeryFirstWrites) {
    fillWithOneOfEach(*models.v2);
    auto const sm = unpopulated(models);
    WriteLog log;
    sm->populateV3();
    auto const writes = log.taken();
    OutputFollower const follower(models.v3, [](std::string const & change) { ADD_FAILURE() << change; });
    sm->populateV3();
    EXPECT_EQ(log.taken(), writes);
    EXPECT_EQ(follower.changes(), 0U);
}

TEST_F(Population, OfAFollowedInputRepeatedChangesNothing) {
    fillWithOneOfEach(*models.v2);
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    auto const before = dumped(*models.v3);
    OutputFollower const follower(models.v3, [](std::string const & change) { ADD_FAILURE() << change; });
    sm->populateV3();
    EXPECT_EQ(dumped(*models.v3), before);
    EXPECT_EQ(sm->host().size(), 1U);
}

// Entries that hold null, and names that differ

TEST_F(Population, WritesANullRawMlagForANullEntry) {
    models.v2->hostIs("a")->mlagRawIs("null", nullptr);
    EXPECT_THAT(populate(), Contains("/host/a mlagRawIs(null)"));
    EXPECT_EQ(models.v3->host("a")->mlagRaw().size(), 0U);
}

TEST_F(Population, WritesANullRawMlagForAnMlagThatTheHostDoesNotHold) {
    auto const host = models.v2->hostIs("a");
    host->mlagRawIs("m", MlagV2::MlagV2Is("m", "m2"));
    EXPECT_THAT(populate(), Contains("/host/a mlagRawIs(null)"));
}

TEST_F(Population, FindsARawMlagByTheNameOfTheMlagAndNotByItsKey) {
    auto const host = models.v2->hostIs("a");
    host->mlagIs("key", "");
    host->mlagRawIs("key", host->mlagIs("m", ""));
    EXPECT_THAT(populate(), Contains("/host/a mlagRawIs(/host/a/mlag/m)"));
    EXPECT_EQ(models.v3->host("a")->mlagRaw("m"), models.v3->host("a")->mlag("m"));
    EXPECT_EQ(models.v3->host("a")->mlagRaw("key"), nullptr);
}

TEST_F(Population, TakesARawMlagOfAnotherHostForTheOwnOneOfItsName) {
    models.v2->hostIs("a")->mlagIs("m", "");
    models.v2->hostIs("a")->mlagRawIs("m", models.v2->hostIs("b")->mlagIs("m", ""));
    models.v2->hostIs("b")->mlagRawIs("n", models.v2->hostIs("a")->mlagIs("n", ""));
    populate();
    EXPECT_EQ(models.v3->host("a")->mlagRaw("m"), models.v3->host("a")->mlag("m"));
    EXPECT_EQ(models.v3->host("b")->mlagRaw().size(), 0U);
}

TEST_F(Population, TakesAnMlagThatIsInTheHostForARawOneOfItsNameOutsideEveryHost) {
    auto const host = models.v2->hostIs("a");
    host->mlagIs("m", "");
    host->mlagRawIs("m", MlagV2::MlagV2Is("m", ""));
    EXPECT_THAT(populate(), Contains("/host/a mlagRawIs(/host/a/mlag/m)"));
}

TEST_F(Population, WritesANullLogicalPortForEntriesThatLeadNowhere) {
    auto const host = models.v2->hostIs("a");
    host->logicalPortIs("null", nullptr);
    EXPECT_THAT(populate(), Contains("/host/a logicalPortIs(null)"));
    host->logicalPortDel("null");
    host->logicalPortIs("stray", PortV2::PortV2Is("stray"));
    EXPECT_THAT(populate(), Contains("/host/a logicalPortIs(null)"));
    host->logicalPortDel("stray");
    host->logicalPortIs("left", host->portIs("left"));
    host->portDel("left");
    EXPECT_THAT(populate(), Contains("/host/a logicalPortIs(null)"));
    EXPECT_EQ(models.v3->host("a")->logicalPort().size(), 0U);
}

TEST_F(Population, EntersALogicalPortUnderItsOwnName) {
    auto const host = models.v2->hostIs("a");
    host->logicalPortIs("key", host->portIs("p"));
    populate();
    EXPECT_EQ(models.v3->host("a")->logicalPort("p"), models.v3->host("a")->port("p"));
    EXPECT_EQ(models.v3->host("a")->logicalPort("key"), nullptr);
}

TEST_F(Population, WritesANullMemberForEntriesThatLeadNowhere) {
    auto const host = models.v2->hostIs("a");
    auto const group = host->portGroupIs("g");
    group->memberPortIs("null", nullptr);
    EXPECT_THAT(populate(), Contains("/host/a/portGroup/g memberPortIs(null)"));
    group->memberPortDel("null");
    group->memberPortIs("stray", PortV2::PortV2Is("stray"));
    EXPECT_THAT(populate(), Contains("/host/a/portGroup/g memberPortIs(null)"));
    EXPECT_EQ(models.v3->host("a")->portGroup("g")->memberPort().size(), 0U);
}

TEST_F(Population, EntersAMemberUnderItsOwnName) {
    auto const host = models.v2->hostIs("a");
    host->portGroupIs("g")->memberPortIs("key", host->portIs("p"));
    populate();
    auto const groupV3 = models.v3->host("a")->portGroup("g");
    EXPECT_EQ(groupV3->memberPort("p"), models.v3->host("a")->port("p"));
    EXPECT_EQ(groupV3->memberPort().size(), 1U);
}

// References that lead elsewhere

TEST_F(Population, WithoutLocalhostInTheInputWritesNull) {
    models.v3->localhostIs(models.v3->hostIs("a"));
    models.v2->hostIs("a");
    EXPECT_THAT(populate(), Contains("/ localhostIs(null)"));
    EXPECT_EQ(models.v3->localhost(), nullptr);
}

TEST_F(Population, OfALocalhostOutsideTheStatusWritesNull) {
    models.v2->hostIs("a");
    models.v2->localhostIs(HostV2::HostV2Is("elsewhere"));
    EXPECT_THAT(populate(), Contains("/ localhostIs(null)"));
}

TEST_F(Population, OfALocalhostOutsideTheStatusTakesTheHostOfItsName) {
    models.v2->hostIs("a");
    models.v2->localhostIs(HostV2::HostV2Is("a"));
    EXPECT_THAT(populate(), Contains("/ localhostIs(/host/a)"));
}

TEST_F(Population, LeavesOutEdgesWhoseFromPortDoesNotResolve) {
    auto const host = models.v2->hostIs("a");
    auto const target = host->portIs("p");
    auto const removed = host->portIs("removed");
    models.v2->edgeIs(Vel::Ptr<PortBaseV2 const>())->toPortIs(target, true);
    models.v2->edgeIs(removed)->toPortIs(target, true);
    host->portDel("removed");
    models.v2->edgeIs(PortV2::PortV2Is("p"))->toPortIs(target, true);
    auto const unknown = HostV2::HostV2Is("unknown");
    models.v2->edgeIs(unknown->portIs("p"))->toPortIs(target, true);
    ASSERT_EQ(models.v2->edge().size(), 4U);
    WriteLog log;
    populate();
    EXPECT_THAT(log.linesOf("edgeIs"), IsEmpty());
    EXPECT_THAT(log.linesOf("toPortIs"), IsEmpty());
    EXPECT_EQ(models.v3->edge().size(), 0U);
}

TEST_F(Population, LeavesOutDestinationsThatDoNotResolve) {
    auto const host = models.v2->hostIs("a");
    auto const edge = models.v2->edgeIs(host->portIs("p"));
    auto const removed = host->portIs("removed");
    edge->toPortIs(nullptr, true);
    edge->toPortIs(PortV2::PortV2Is("p"), true);
    edge->toPortIs(removed, true);
    edge->toPortIs(host->portGroupIs("g"), true);
    host->portDel("removed");
    WriteLog log;
    populate();
    EXPECT_THAT(log.linesOf("toPortIs"),
                ElementsAre("/edge[/host/a/port/p] toPortIs(/host/a/portGroup/g, true)"));
}

// An edge starts at an object in version 2, and at a name in version 3.
TEST_F(Population, MergesEdgesWhosePortsHaveOneNameInHostsOfOneName) {
    auto const host = models.v2->hostIs("a");
    auto const other = HostV2::HostV2Is("a");
    models.v2->edgeIs(host->portIs("p"))->toPortIs(host->portIs("q"), true);
    models.v2->edgeIs(other->portIs("p"))->toPortIs(host->portIs("r"), true);
    WriteLog log;
    populate();
    EXPECT_THAT(log.linesOf("edgeIs"), ElementsAre("/ edgeIs(/host/a/port/p)", "/ edgeIs(/host/a/port/p)"));
    ASSERT_EQ(models.v3->edge().size(), 1U);
    EXPECT_EQ((*models.v3->edge().begin())->toPort().size(), 2U);
}

TEST_F(Population, OfEdgesOfAPortAGroupAndAnMlagOfOneNameMakesThree) {
    auto const host = models.v2->hostIs("a");
    models.v2->edgeIs(host->portIs("x"));
    models.v2->edgeIs(host->portGroupIs("x"));
    models.v2->edgeIs(host->mlagIs("x", ""));
    populate();
    EXPECT_EQ(models.v3->edge().size(), 3U);
}

TEST_F(Population, LeavesEdgesFromOnePortToItselfInPlace) {
    auto const port = models.v2->hostIs("a")->portIs("p");
    models.v2->edgeIs(port)->toPortIs(port, true);
    populate();
    auto const key = models.v3->host("a")->port("p")->portKey();
    EXPECT_EQ(models.v3->edge(key)->toPort(key), true);
}

// Hosts are walked in an order that their names decide. Which one comes first decides what the links between
// them lead to, and all orders are met by giving the roles to the names in every way.
class CrossReferences : public Population, public testing::WithParamInterface<std::array<char const *, 3>> {
protected:
    CrossReferences() {
        for (std::size_t i = 0; i < hosts.size(); ++i) hosts[i] = addHost(GetParam()[i]);
        for (std::size_t i = 0; i < hosts.size(); ++i) {
            refer(*hosts[i], *hosts[(i + 1) % 3], "next");
            refer(*hosts[i], *hosts[(i + 2) % 3], "last");
        }
    }

    HostV2::Ptr addHost(char const * name) {
        auto const host = models.v2->hostIs(name);
        host->portIs("p");
        host->portGroupIs("g");
        host->mlagIs("m", "m2");
        return host;
    }

    // One reference of each kind, under `prefix`.
    void refer(HostV2 & from, HostV2 & to, std::string const & prefix) {
        from.logicalPortIs(prefix, to.port("p"));
        from.mlagRawIs(prefix, to.mlag("m"));
        from.portIs(prefix)->portGroupIs(to.portGroup("g"));
        from.portGroupIs(prefix)->mlagIs(to.mlag("m"));
        from.portGroup(prefix)->memberPortIs(prefix, to.port("p"));
        from.mlagIs(prefix, "")->localPortGroupIs(to.portGroup("g"));
        from.mlagPeerLinkIs(to.portGroup("g"));
        models.v2->edgeIs(from.port(prefix))->toPortIs(to.mlag("m"), true);
    }

    std::array<HostV2::Ptr, 3> hosts;
};

TEST_P(CrossReferences, IntoHostsThatComeLaterAreNullAndEdgesNeverAre) {
    EXPECT_EQ(populate(), ExpectedWrites(*models.v2).lines());
    EXPECT_EQ(models.v3->edge().size(), 6U);
    for (auto const & edge : models.v3->edge()) EXPECT_EQ(edge->toPort().size(), 1U);
}

TEST_P(CrossReferences, AllResolveInASecondPopulation) {
    populate();
    auto const present = objectsOf(*models.v3);
    auto const writes = populate();
    EXPECT_EQ(writes, ExpectedWrites(*models.v2, present).lines());
    // What is null refers to nothing: port, group and MLAG that the others refer to.
    EXPECT_EQ(std::ranges::count_if(writes, [](auto const & line) { return line.ends_with("(null)"); }),
              1 + 3 * static_cast<int>(hosts.size()));
}

// The reactors that are made next have peer links to write, and nothing else.
TEST_P(CrossReferences, OnceFollowedDifferFromASecondPopulationInAllButPeerLinks) {
    auto const sm = v2SmFactory("sm", models.v2, models.v3);
    for (auto const & host : hosts) {
        auto const hostV3 = models.v3->host(host->name());
        EXPECT_EQ(spelled(hostV3->mlagPeerLink()),
                  "/host/" + std::string(host->mlagPeerLink()->host()->name().view()) + "/portGroup/g");
    }
    auto const first = *models.v2->host().begin();
    // The first host has no link into another one.
    auto const firstV3 = models.v3->host(first->name());
    EXPECT_EQ(firstV3->logicalPort().size(), 0U);
    EXPECT_EQ(firstV3->port("next")->portGroup(), nullptr);
    EXPECT_EQ(firstV3->port("last")->portGroup(), nullptr);
    EXPECT_EQ(firstV3->portGroup("next")->mlag(), nullptr);
    EXPECT_EQ(firstV3->portGroup("last")->memberPort().size(), 0U);
    EXPECT_EQ(firstV3->mlag("next")->localPortGroup(), nullptr);
    // The last one has all of them.
    NetworkTopologyV3::Host::Ptr lastV3;
    for (auto const & host : models.v2->host()) lastV3 = models.v3->host(host->name());
    EXPECT_EQ(lastV3->logicalPort().size(), 1U);
    EXPECT_NE(lastV3->port("next")->portGroup(), nullptr);
    EXPECT_NE(lastV3->port("last")->portGroup(), nullptr);
    EXPECT_NE(lastV3->portGroup("next")->mlag(), nullptr);
    EXPECT_EQ(lastV3->portGroup("last")->memberPort().size(), 1U);
    EXPECT_NE(lastV3->mlag("next")->localPortGroup(), nullptr);
}

TEST(CrossReferences, MeetEveryOrderOfTheWalk) {
    std::set<std::vector<std::size_t>> orders;
    std::array<char const *, 3> names = {"a", "b", "c"};
    do {
        auto const v2 = StatusV2::StatusV2Is();
        for (char const * const name : names) v2->hostIs(name);
        std::vector<std::size_t> order;
        for (auto const & host : v2->host()) {
            for (std::size_t role = 0; role < names.size(); ++role) {
                if (host->name() == names[role]) order.push_back(role);
            }
        }
        orders.insert(order);
    } while (std::next_permutation(names.begin(), names.end(),
                                   [](std::string_view a, std::string_view b) { return a < b; }));
    EXPECT_EQ(orders.size(), 6U);
}

using Names = std::array<char const *, 3>;
INSTANTIATE_TEST_SUITE_P(AllOrders, CrossReferences,
                         testing::Values(Names{"a", "b", "c"}, Names{"a", "c", "b"}, Names{"b", "a", "c"},
                                         Names{"b", "c", "a"}, Names{"c", "a", "b"}, Names{"c", "b", "a"}),
                         [](auto const & info) {
                             return std::string(info.param[0]) + info.param[1] + info.param[2];
                         });

// Names of any bytes

TEST_F(Population, MirrorsNamesOfAnyBytes) {
    for (std::string_view const name :
         {std::string_view(), std::string_view("\0", 1), std::string_view("a\0b", 3), std::string_view("a"),
          std::string_view("\xff\x80")}) {
        auto const host = models.v2->hostIs(name);
        host->hostnameIs(name);
        host->portIs(name)->portGroupIs(host->portGroupIs(name));
        host->portGroupIs(name)->memberPortIs("key", host->portIs(name));
        host->portGroupIs(name)->mlagIs(host->mlagIs(name, name));
        host->mlagRawIs("key", host->mlagIs(name, name));
        host->logicalPortIs("key", host->portIs(name));
        host->mlagPeerLinkIs(host->mlagIs(name, name));
        models.v2->edgeIs(host->portIs(name))->toPortIs(host->mlagIs(name, name), true);
    }
    populate();
    EXPECT_EQ(models.v3->host().size(), 5U);
    EXPECT_EQ(models.v3->edge().size(), 5U);
    for (auto const & host : models.v2->host()) {
        auto const name = host->name();
        auto const hostV3 = models.v3->host(name);
        ASSERT_NE(hostV3, nullptr);
        EXPECT_EQ(hostV3->hostname().view(), name.view());
        EXPECT_EQ(hostV3->port(name)->portGroup(), hostV3->portGroup(name).get());
        EXPECT_EQ(hostV3->portGroup(name)->memberPort(name), hostV3->port(name));
        EXPECT_EQ(hostV3->portGroup(name)->mlag(), hostV3->mlag(name).get());
        EXPECT_EQ(hostV3->mlagRaw(name), hostV3->mlag(name));
        EXPECT_EQ(hostV3->logicalPort(name), hostV3->port(name));
        EXPECT_EQ(hostV3->mlagPeerLink(), hostV3->mlag(name));
    }
}

// Without a status

TEST(PopulationWithoutInput, IsTracedAndWritesNothing) {
    Models const models = {};
    models.v3->localhostIs(models.v3->hostIs("a"));
    auto const sm = v2SmFactory("sm", nullptr, models.v3);
    Journal journal;
    sm->populateV3();
    EXPECT_THAT(journal.taken(), ElementsAre("trace populateV3"));
    EXPECT_EQ(models.v3->localhost(), models.v3->host("a"));
}

TEST(PopulationWithoutOutput, IsTracedAndWritesNothing) {
    Models const models = {};
    fillWithThreeHosts(*models.v2);
    auto const sm = v2SmFactory("sm", models.v2, nullptr);
    Journal journal;
    sm->populateV3();
    EXPECT_THAT(journal.taken(), ElementsAre("trace populateV3"));
}

TEST(PopulationWithoutStatuses, IsTracedAndWritesNothing) {
    auto const sm = v2SmFactory("sm", nullptr, nullptr);
    Journal journal;
    sm->populateV3();
    EXPECT_THAT(journal.taken(), ElementsAre("trace populateV3"));
}

TEST(PopulationWithoutOutput, FillsAnOutputThatIsBoundLater) {
    Models const models = {};
    fillWithOneOfEach(*models.v2);
    auto const sm = v2SmFactory("sm", models.v2, nullptr);
    sm->v3Is(models.v3);
    EXPECT_EQ(models.v3->host().size(), 0U);
    sm->populateV3();
    EXPECT_EQ(models.v3->host().size(), 1U);
    EXPECT_EQ(models.v3->edge().size(), 1U);
}

}  // namespace
