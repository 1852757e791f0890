// What one change of the input writes into the output: exactly that, and nothing when it changes nothing.
#include <algorithm>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/Vel/VelType.h"
#include "tests/translator/support/Followed.h"
#include "tests/translator/support/WriteLog.h"

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;
using TestSupport::Lines;
using TestSupport::WriteLog;

// Host "a" with one of everything, and more to refer to; and objects that stand nowhere yet.
struct Input : TestSupport::FollowedScene {
    Input() {
        for (auto const & port : {newPort, otherPort}) {
            port->typeIs(PortTypeV2::mlag);
            port->portGroupIs(h);
        }
        for (auto const & group : {newGroup, otherGroup}) {
            group->typeIs(PortTypeV2::mlag);
            group->memberPortIs("q", q);
            group->mlagIs(n);
        }
        for (auto const & mlag : {newMlag, otherMlag}) {
            mlag->typeIs(PortTypeV2::mlag);
            mlag->localPortGroupIs(h);
            mlag->peerPortGroupIs(h);
        }
        for (auto const & host : {newHost, otherHost}) {
            host->hostnameIs("other.example");
            host->mlagPeerLinkIs(hostV2->port("p"));
            host->portIs("p")->typeIs(PortTypeV2::port);
            host->portGroupIs("g")->memberPortIs("p", host->port("p"));
            host->mlagIs("x", "x2");
            host->logicalPortIs("p", host->port("p"));
            host->mlagRawIs("x", host->mlag("x"));
        }
        otherEdge->toPortIs(n, true);
        newEdge->toPortIs(n, true);
    }

    Vel::Ptr<PortV2> const p = hostV2->port("p");
    PortGroupV2::Ptr const g = hostV2->portGroup("g");
    MlagV2::Ptr const m = hostV2->mlag("m");
    DirectedEdgeV2::Ptr const edge = models.v2->edge(p);
    Vel::Ptr<PortV2> const q = hostV2->portIs("q");
    PortGroupV2::Ptr const h = hostV2->portGroupIs("h");
    MlagV2::Ptr const n = hostV2->mlagIs("n", "n2");
    HostV2::Ptr const b = models.v2->hostIs("b");
    PortGroupV2::Ptr const groupOfB = b->portGroupIs("g");

    Vel::Ptr<PortV2> const newPort = PortV2::PortV2Is("new");
    Vel::Ptr<PortV2> const otherPort = PortV2::PortV2Is("p");
    PortGroupV2::Ptr const newGroup = PortGroupV2::PortGroupV2Is("new");
    PortGroupV2::Ptr const otherGroup = PortGroupV2::PortGroupV2Is("g");
    MlagV2::Ptr const newMlag = MlagV2::MlagV2Is("new", "new2");
    MlagV2::Ptr const otherMlag = MlagV2::MlagV2Is("m", "other2");
    HostV2::Ptr const newHost = HostV2::HostV2Is("new");
    HostV2::Ptr const otherHost = HostV2::HostV2Is("a");
    DirectedEdgeV2::Ptr const newEdge = DirectedEdgeV2::DirectedEdgeV2Is(g);
    DirectedEdgeV2::Ptr const otherEdge = DirectedEdgeV2::DirectedEdgeV2Is(p);
};

struct Case {
    char const * attribute;  // "HostV2.hostname": the row of the type record that is changed.
    std::string name;
    std::function<void(Input & in)> change;
    Lines writes;
    bool inTheirOrder = true;  // Otherwise in that of some collection.

    friend void PrintTo(Case const & test, std::ostream * out) { *out << test.name; }
};

constexpr bool inAnyOrder = false;

std::vector<Case> const & cases() {
    static std::vector<Case> const cases = {
        // The status
        {"StatusV2.host",
         "HostIsAdded",
         [](Input & in) { in.models.v2->hostIs("new"); },
         {"/ hostIs('new')", "/host/new mlagPeerLinkIs(null)"}},
        {"StatusV2.host",
         "HostWithMembersIsAdded",
         [](Input & in) { in.models.v2->hostIs(in.newHost); },
         {"/ hostIs('new')", "/host/new mlagPeerLinkIs(/host/a/port/p)", "/host/new portIs('p')",
          "/host/new portGroupIs('g')", "/host/new mlagIs('x', 'x2')"}},
        {"StatusV2.host",
         "HostIsReplaced",
         [](Input & in) { in.models.v2->hostIs(in.otherHost); },
         {"/host/a hostnameIs('other.example')", "/host/a mlagSystemIdIs(00:00:00:00:00:00)",
          "/host/a mlagDomainIdIs('')", "/host/a mlagStateIs(unknown)",
          "/host/a mlagPeerLinkIs(/host/a/port/p)", "/host/a/port/p typeIs(port)",
          "/host/a/port/p portGroupIs(null)", "/host/a portDel('q')", "/host/a/portGroup/g typeIs(unknown)",
          "/host/a/portGroup/g mlagIs(null)", "/host/a portGroupDel('h')", "/host/a mlagIs('x', 'x2')",
          "/host/a mlagDel('m')", "/host/a mlagDel('n')"},
         inAnyOrder},
        {"StatusV2.host",
         "HostIsRemoved",
         [](Input & in) { in.models.v2->hostDel("a"); },
         {"/ hostDel('a')"}},
        {"StatusV2.hostDelAll",
         "AllHostsAreRemoved",
         [](Input & in) { in.models.v2->hostDelAll(); },
         {"/ hostDel('a')", "/ hostDel('b')"},
         inAnyOrder},
        {"StatusV2.localhost",
         "LocalhostIsSet",
         [](Input & in) { in.models.v2->localhostIs(in.b); },
         {"/ localhostIs(/host/b)"}},
        {"StatusV2.localhost",
         "LocalhostIsCleared",
         [](Input & in) { in.models.v2->localhostIs(nullptr); },
         {"/ localhostIs(null)"}},
        {"StatusV2.edge",
         "EdgeIsAdded",
         [](Input & in) { in.models.v2->edgeIs(in.g); },
         {"/ edgeIs(/host/a/portGroup/g)"}},
        {"StatusV2.edge",
         "EdgeWithDestinationsIsAdded",
         [](Input & in) { in.models.v2->edgeIs(in.newEdge); },
         {"/ edgeIs(/host/a/portGroup/g)"}},
        {"StatusV2.edge",
         "EdgeFromNothingIsAdded",
         [](Input & in) { in.models.v2->edgeIs(Vel::Ptr<NetworkTopology::PortBaseV2 const>()); },
         {}},
        {"StatusV2.edge", "EdgeIsReplaced", [](Input & in) { in.models.v2->edgeIs(in.otherEdge); }, {}},
        {"StatusV2.edge",
         "EdgeIsRemoved",
         [](Input & in) { in.models.v2->edgeDel(in.p); },
         {"/ edgeDel(/host/a/port/p)"}},
        {"StatusV2.edgeDelAll",
         "AllEdgesAreRemoved",
         [](Input & in) { in.models.v2->edgeDelAll(); },
         {"/ edgeDel(/host/a/port/p)"}},

        // A host
        {"HostV2.hostname",
         "HostnameIsSet",
         [](Input & in) { in.hostV2->hostnameIs("x.example"); },
         {"/host/a hostnameIs('x.example')"}},
        {"HostV2.hostnameAddedByOwner",
         "HostnameIsAddedByOwner",
         [](Input & in) { in.hostV2->hostnameAddedByOwnerIs(true); },
         {}},
        {"HostV2.mlagSystemId",
         "MlagSystemIdIsSet",
         [](Input & in) {
             in.hostV2->mlagSystemIdIs({2, 0, 0, 0, 0, 9});
         },
         {"/host/a mlagSystemIdIs(02:00:00:00:00:09)"}},
        {"HostV2.mlagDomainId",
         "MlagDomainIdIsSet",
         [](Input & in) { in.hostV2->mlagDomainIdIs("row"); },
         {"/host/a mlagDomainIdIs('row')"}},
        {"HostV2.mlagState",
         "MlagStateIsSet",
         [](Input & in) { in.hostV2->mlagStateIs(Mlag::MlagState::disabled); },
         {"/host/a mlagStateIs(disabled)"}},
        {"HostV2.mlagPeerLink",
         "MlagPeerLinkIsSet",
         [](Input & in) { in.hostV2->mlagPeerLinkIs(in.groupOfB); },
         {"/host/a mlagPeerLinkIs(/host/b/portGroup/g)"}},
        {"HostV2.mlagPeerLink",
         "MlagPeerLinkIsCleared",
         [](Input & in) { in.hostV2->mlagPeerLinkIs(nullptr); },
         {"/host/a mlagPeerLinkIs(null)"}},
        {"HostV2.port",
         "PortIsAdded",
         [](Input & in) { in.hostV2->portIs("new"); },
         {"/host/a portIs('new')"}},
        {"HostV2.port",
         "PortWithAttributesIsAdded",
         [](Input & in) { in.hostV2->portIs(in.newPort); },
         {"/host/a portIs('new')"}},
        {"HostV2.port",
         "PortIsReplaced",
         [](Input & in) { in.hostV2->portIs(in.otherPort); },
         {"/host/a/port/p typeIs(mlag)", "/host/a/port/p portGroupIs(/host/a/portGroup/h)"}},
        {"HostV2.port",
         "PortIsRemoved",
         [](Input & in) { in.hostV2->portDel("p"); },
         {"/host/a portDel('p')"}},
        {"HostV2.portDelAll",
         "AllPortsAreRemoved",
         [](Input & in) { in.hostV2->portDelAll(); },
         {"/host/a portDel('p')", "/host/a portDel('q')"},
         inAnyOrder},
        {"HostV2.portGroup",
         "PortGroupIsAdded",
         [](Input & in) { in.hostV2->portGroupIs("new"); },
         {"/host/a portGroupIs('new')"}},
        {"HostV2.portGroup",
         "PortGroupWithMembersIsAdded",
         [](Input & in) { in.hostV2->portGroupIs(in.newGroup); },
         {"/host/a portGroupIs('new')"}},
        {"HostV2.portGroup",
         "PortGroupIsReplaced",
         [](Input & in) { in.hostV2->portGroupIs(in.otherGroup); },
         {"/host/a/portGroup/g typeIs(mlag)", "/host/a/portGroup/g mlagIs(/host/a/mlag/n)"}},
        {"HostV2.portGroup",
         "PortGroupIsRemoved",
         [](Input & in) { in.hostV2->portGroupDel("g"); },
         {"/host/a portGroupDel('g')"}},
        {"HostV2.portGroupDelAll",
         "AllPortGroupsAreRemoved",
         [](Input & in) { in.hostV2->portGroupDelAll(); },
         {"/host/a portGroupDel('g')", "/host/a portGroupDel('h')"},
         inAnyOrder},
        {"HostV2.mlag",
         "MlagIsAdded",
         [](Input & in) { in.hostV2->mlagIs("new", "new2"); },
         {"/host/a mlagIs('new', 'new2')"}},
        {"HostV2.mlag",
         "MlagWithAttributesIsAdded",
         [](Input & in) { in.hostV2->mlagIs(in.newMlag); },
         {"/host/a mlagIs('new', 'new2')"}},
        {"HostV2.mlag",
         "MlagIsReplaced",
         [](Input & in) { in.hostV2->mlagIs(in.otherMlag); },
         {"/host/a/mlag/m typeIs(mlag)", "/host/a/mlag/m localPortGroupIs(/host/a/portGroup/h)"}},
        {"HostV2.mlag",
         "MlagIsRemoved",
         [](Input & in) { in.hostV2->mlagDel("m"); },
         {"/host/a mlagDel('m')"}},
        {"HostV2.mlagDelAll",
         "AllMlagsAreRemoved",
         [](Input & in) { in.hostV2->mlagDelAll(); },
         {"/host/a mlagDel('m')", "/host/a mlagDel('n')"},
         inAnyOrder},
        {"HostV2.mlagRaw",
         "RawMlagIsAdded",
         [](Input & in) { in.hostV2->mlagRawIs("n", in.n); },
         {"/host/a mlagRawIs(/host/a/mlag/n)"}},
        {"HostV2.mlagRaw",
         "RawMlagIsChanged",
         [](Input & in) { in.hostV2->mlagRawIs("m", in.n); },
         {"/host/a mlagRawIs(/host/a/mlag/n)"}},
        {"HostV2.mlagRaw",
         "RawMlagIsCleared",
         [](Input & in) { in.hostV2->mlagRawIs("m", nullptr); },
         {"/host/a mlagRawIs(null)"}},
        {"HostV2.mlagRaw",
         "RawMlagIsRemoved",
         [](Input & in) { in.hostV2->mlagRawDel("m"); },
         {"/host/a mlagRawDel('m')"}},
        {"HostV2.mlagRawDelAll",
         "AllRawMlagsAreRemoved",
         [](Input & in) { in.hostV2->mlagRawDelAll(); },
         {"/host/a mlagRawDel('m')"}},
        {"HostV2.logicalPort",
         "LogicalPortIsAdded",
         [](Input & in) { in.hostV2->logicalPortIs("far", in.groupOfB); },
         {"/host/a logicalPortIs(/host/b/portGroup/g)"}},
        {"HostV2.logicalPort",
         "LogicalPortIsChanged",
         [](Input & in) { in.hostV2->logicalPortIs("g", in.p); },
         {"/host/a logicalPortIs(/host/a/port/p)"}},
        {"HostV2.logicalPort",
         "LogicalPortIsCleared",
         [](Input & in) { in.hostV2->logicalPortIs("g", nullptr); },
         {"/host/a logicalPortIs(null)"}},
        {"HostV2.logicalPort",
         "LogicalPortIsRemoved",
         [](Input & in) { in.hostV2->logicalPortDel("g"); },
         {"/host/a logicalPortDel('g')"}},
        {"HostV2.logicalPortDelAll",
         "AllLogicalPortsAreRemoved",
         [](Input & in) { in.hostV2->logicalPortDelAll(); },
         {"/host/a logicalPortDel('g')"}},

        // Its members
        {"PortBaseV2.type",
         "TypeOfAPortIsSet",
         [](Input & in) { in.p->typeIs(PortTypeV2::portGroup); },
         {"/host/a/port/p typeIs(portGroup)"}},
        {"PortBaseV2.type",
         "TypeOfAPortGroupIsSet",
         [](Input & in) { in.g->typeIs(PortTypeV2::portGroup); },
         {"/host/a/portGroup/g typeIs(portGroup)"}},
        {"PortBaseV2.type",
         "TypeOfAnMlagIsSet",
         [](Input & in) { in.m->typeIs(static_cast<PortTypeV2>(77)); },
         {"/host/a/mlag/m typeIs(unknown)"}},
        {"PortBaseV2.addedByOwner",
         "PortBasesAreAddedByOwner",
         [](Input & in) {
             in.p->addedByOwnerIs(true);
             in.g->addedByOwnerIs(true);
             in.m->addedByOwnerIs(true);
         },
         {}},
        {"PortV2.portGroup",
         "PortChangesItsGroup",
         [](Input & in) { in.p->portGroupIs(in.h); },
         {"/host/a/port/p portGroupIs(/host/a/portGroup/h)"}},
        {"PortV2.portGroup",
         "PortLeavesItsGroup",
         [](Input & in) { in.p->portGroupIs(nullptr); },
         {"/host/a/port/p portGroupIs(null)"}},
        {"PortGroupV2.memberPort",
         "MemberPortIsAdded",
         [](Input & in) { in.g->memberPortIs("q", in.q); },
         {"/host/a/portGroup/g memberPortIs(/host/a/port/q)"}},
        {"PortGroupV2.memberPort",
         "MemberPortIsChanged",
         [](Input & in) { in.g->memberPortIs("p", in.q); },
         {"/host/a/portGroup/g memberPortIs(/host/a/port/q)"}},
        {"PortGroupV2.memberPort",
         "MemberPortIsCleared",
         [](Input & in) { in.g->memberPortIs("p", nullptr); },
         {"/host/a/portGroup/g memberPortIs(null)"}},
        {"PortGroupV2.memberPort",
         "MemberPortIsRemoved",
         [](Input & in) { in.g->memberPortDel("p"); },
         {"/host/a/portGroup/g memberPortDel('p')"}},
        {"PortGroupV2.memberPortDelAll",
         "AllMemberPortsAreRemoved",
         [](Input & in) { in.g->memberPortDelAll(); },
         {"/host/a/portGroup/g memberPortDel('p')"}},
        {"PortGroupV2.mlag",
         "PortGroupChangesItsMlag",
         [](Input & in) { in.g->mlagIs(in.n); },
         {"/host/a/portGroup/g mlagIs(/host/a/mlag/n)"}},
        {"PortGroupV2.mlag",
         "PortGroupLeavesItsMlag",
         [](Input & in) { in.g->mlagIs(nullptr); },
         {"/host/a/portGroup/g mlagIs(null)"}},
        {"MlagV2.secondaryName",
         "SecondaryNameIsSet",
         [](Input & in) { in.m->secondaryNameIs("other"); },
         {}},
        {"MlagV2.localPortGroup",
         "LocalPortGroupIsSet",
         [](Input & in) { in.m->localPortGroupIs(in.h); },
         {"/host/a/mlag/m localPortGroupIs(/host/a/portGroup/h)"}},
        {"MlagV2.localPortGroup",
         "LocalPortGroupIsCleared",
         [](Input & in) { in.m->localPortGroupIs(nullptr); },
         {"/host/a/mlag/m localPortGroupIs(null)"}},
        {"MlagV2.peerPortGroup",
         "PeerPortGroupIsSet",
         [](Input & in) { in.m->peerPortGroupIs(in.groupOfB); },
         {}},

        // An edge
        {"DirectedEdgeV2.toPort",
         "DestinationIsAdded",
         [](Input & in) { in.edge->toPortIs(in.groupOfB, false); },
         {"/edge[/host/a/port/p] toPortIs(/host/b/portGroup/g, false)"}},
        {"DirectedEdgeV2.toPort",
         "FlagOfADestinationIsSet",
         [](Input & in) { in.edge->toPortIs(in.g, false); },
         {"/edge[/host/a/port/p] toPortIs(/host/a/portGroup/g, false)"}},
        {"DirectedEdgeV2.toPort",
         "DestinationWithoutCounterpartIsAdded",
         [](Input & in) { in.edge->toPortIs(in.newPort, true); },
         {}},
        {"DirectedEdgeV2.toPort",
         "DestinationIsRemoved",
         [](Input & in) { in.edge->toPortDel(in.g); },
         {"/edge[/host/a/port/p] toPortDel(/host/a/portGroup/g)"}},
        {"DirectedEdgeV2.toPortDelAll",
         "AllDestinationsAreRemoved",
         [](Input & in) { in.edge->toPortDelAll(); },
         {"/edge[/host/a/port/p] toPortDel(/host/a/portGroup/g)"}},
    };
    return cases;
}

class ChangeWrites : public testing::TestWithParam<Case> {
protected:
    Input in;
};

TEST_P(ChangeWrites, WhatTheChangeCallsFor) {
    WriteLog log;
    GetParam().change(in);
    if (GetParam().inTheirOrder) {
        EXPECT_THAT(log.lines(), ElementsAreArray(GetParam().writes));
    } else {
        EXPECT_THAT(log.lines(), UnorderedElementsAreArray(GetParam().writes));
    }
}

// Everything is as wanted already: nobody is told, and nothing is written.
TEST_P(ChangeWrites, NothingTheSecondTime) {
    GetParam().change(in);
    WriteLog log;
    GetParam().change(in);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_P(ChangeWrites, NothingWhileTheTranslatorIsInactive) {
    in.sm->hasNotificationActiveIs(false);
    WriteLog log;
    GetParam().change(in);
    EXPECT_THAT(log.lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, ChangeWrites, testing::ValuesIn(cases()),
                         [](auto const & info) { return info.param.name; });

// No attribute of the input is missing above.
TEST(ChangesOfTheInput, AreAllHeldToTheirWrites) {
    std::set<std::string> attributes;
    for (auto const * type :
         {&StatusV2::_velType, &HostV2::_velType, &NetworkTopology::PortBaseV2::_velType, &PortV2::_velType,
          &PortGroupV2::_velType, &MlagV2::_velType, &DirectedEdgeV2::_velType}) {
        std::string const name(type->name());
        for (auto const & attribute : type->attributes()) {
            attributes.insert(name.substr(name.rfind(':') + 1) + "." + std::string(attribute.name()));
        }
    }
    // What nobody can change.
    for (char const * const fixed :
         {"HostV2.name", "PortBaseV2.name", "PortBaseV2.host", "DirectedEdgeV2.fromPort"}) {
        EXPECT_EQ(attributes.erase(fixed), 1U) << fixed;
    }
    std::set<std::string> changed;
    for (auto const & test : cases()) changed.insert(test.attribute);
    EXPECT_EQ(changed, attributes);
}

// What is done to the translator itself

struct OperationWrites : testing::Test {
    Input in;
    WriteLog log;
};

TEST_F(OperationWrites, OfABindingToTheSameStatusesAreNone) {
    in.sm->v2Is(in.models.v2);
    in.sm->v3Is(in.models.v3);
    in.sm->velV2()->notifierIs(in.models.v2);
    in.sm->velV3()->notifierIs(in.models.v3);
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST_F(OperationWrites, OfABindingOfEveryReactorToItsObjectAreNone) {
    in.host->notifierIs(in.hostV2);
    in.host->port("p")->notifierIs(in.p);
    in.host->portGroup("g")->notifierIs(in.g);
    in.host->mlag("m")->notifierIs(in.m);
    in.sm->edge(in.p)->notifierIs(in.edge);
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST_F(OperationWrites, OfEnteringWhatIsFollowedAreNone) {
    in.sm->hostIs(in.hostV2);
    in.sm->edgeIs(in.edge);
    in.host->portIs(in.p);
    in.host->portGroupIs(in.g);
    in.host->mlagIs(in.m);
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST_F(OperationWrites, OfResynchronisingAnInputThatIsFollowedAreNone) {
    in.sm->velV2()->onHostvelImmediate();
    in.sm->velV2()->onEdgevelImmediate();
    in.host->onPortvelImmediate();
    in.host->onPortGroupvelImmediate();
    in.host->onMlagvelImmediate();
    in.host->onLogicalPortvelImmediate();
    in.host->onMlagRawvelImmediate();
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST_F(OperationWrites, OfASecondPopulationRepeatTheFirstAndChangeNothing) {
    in.sm->populateV3();
    auto const first = log.taken();
    TestSupport::OutputFollower const follower(in.models.v3, [](auto const &) {});
    in.sm->populateV3();
    EXPECT_EQ(log.taken(), first);
    EXPECT_EQ(follower.changes(), 0U);
}

TEST_F(OperationWrites, OfUnbindingBothStatusesAreNone) {
    in.sm->v3Del();
    in.sm->v2Del();
    EXPECT_THAT(log.taken(), IsEmpty());
}

TEST_F(OperationWrites, OfBindingTheInputAfterNoneIsLocalhost) {
    in.sm->v2Del();
    in.sm->v2Is(in.models.v2);
    EXPECT_THAT(log.taken(), ElementsAre("/ localhostIs(/host/a)"));
}

// A host of the name is kept, one that is new is made, one that is missing is deleted; then localhost and the
// edges.
TEST_F(OperationWrites, OfABindingToAnotherInput) {
    auto const other = StatusV2::StatusV2Is();
    other->hostIs(in.newHost);
    other->localhostIs(in.newHost);
    other->edgeIs(in.newHost->port("p"))->toPortIs(in.newHost->portGroup("g"), true);
    auto const kept = other->hostIs("b");
    in.sm->v2Is(other);
    EXPECT_THAT(log.taken(),
                testing::UnorderedElementsAre(
                    "/ hostIs('new')", "/host/new mlagPeerLinkIs(/host/a/port/p)", "/host/new portIs('p')",
                    "/host/new portGroupIs('g')", "/host/new mlagIs('x', 'x2')", "/host/b hostnameIs('')",
                    "/host/b mlagSystemIdIs(00:00:00:00:00:00)", "/host/b mlagDomainIdIs('')",
                    "/host/b mlagStateIs(unknown)", "/host/b mlagPeerLinkIs(null)",
                    "/host/b portGroupDel('g')", "/ hostDel('a')", "/ localhostIs(/host/new)",
                    "/ edgeIs(/host/new/port/p)"));
}

TEST_F(OperationWrites, OfARetirementAndARevival) {
    in.sm->velDoZombieReactors(true);
    EXPECT_THAT(log.taken(), testing::UnorderedElementsAre("/ hostDel('a')", "/ hostDel('b')"));
    in.sm->velDoZombieReactors(true);
    EXPECT_THAT(log.taken(), IsEmpty());
    in.sm->velDoZombieReactors(false);
    EXPECT_THAT(log.taken(), testing::UnorderedElementsAre("/ hostDel('a')", "/ hostDel('b')"));
    in.sm->velDoZombieReactors(false);
    EXPECT_THAT(log.taken(), IsEmpty());
}

}  // namespace
