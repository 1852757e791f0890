#include "tools/format/TopologyView.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/format/FormatTesting.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = TopologyView::Kind;
using Reference = TopologyView::Reference;

template <class Named>
std::vector<std::string> names(std::vector<Named> const & all) {
    std::vector<std::string> names;
    for (auto const & one : all) names.push_back(one.name);
    return names;
}

TEST(TopologyView, IsInNaturalOrderHoweverTheModelWasBuilt) {
    for (std::vector<std::string> const & order : std::vector<std::vector<std::string>>{
             {"a-1", "a-2", "a-10", "a-11"}, {"a-11", "a-10", "a-2", "a-1"}}) {
        Status::Ptr const status = Status::StatusIs();
        for (std::string const & name : order) {
            Host::Ptr const host = status->hostIs(name);
            for (std::string const & port : order) mlag(*host, port, "", group(*host, port, {port}));
            host->portGroupIs("all");
            for (std::string const & port : order) {
                host->portGroup("all")->memberPortIs(host->port(port));
                host->logicalPortIs(host->port(port));
                host->mlagRawIs(host->mlag(port));
            }
        }
        for (std::string const & to : order)
            edge(*status, *status->host("a-2")->port("a-2"), *status->host(to)->port("a-1"));
        TopologyView const view = topologyView(*status);
        auto const sorted = ElementsAre("a-1", "a-2", "a-10", "a-11");
        EXPECT_THAT(names(view.hosts), sorted);
        EXPECT_THAT(names(view.hosts[0].ports), sorted);
        EXPECT_THAT(names(view.hosts[0].groups), ElementsAre("a-1", "a-2", "a-10", "a-11", "all"));
        EXPECT_THAT(names(view.hosts[0].groups[4].members), sorted);
        EXPECT_THAT(names(view.hosts[0].mlags), sorted);
        EXPECT_THAT(names(view.hosts[0].logicalPorts), sorted);
        EXPECT_THAT(names(view.hosts[0].rawMlags), sorted);
        ASSERT_EQ(view.hosts[1].ports[1].connections.size(), 4u);
        EXPECT_EQ(view.hosts[1].ports[1].connections[2].peer.host, "a-10");
    }
}

TEST(TopologyView, TellsAttributesAsText) {
    TopologyView const view = topologyView(*rack());
    TopologyView::Host const & leaf = view.hosts[0];
    EXPECT_EQ(leaf.name, "leaf-1");
    EXPECT_EQ(leaf.hostname, "leaf-1.example");
    EXPECT_EQ(leaf.mlagDomainId, "rack");
    EXPECT_EQ(leaf.mlagState, "active");
    EXPECT_EQ(leaf.mlagSystemId, "02:00:00:00:00:01");
    EXPECT_EQ(leaf.mlagPeerLink, (Reference{"leaf-1", Kind::portGroup, "peer", true}));
    EXPECT_EQ(leaf.ports[0].type, "port");
    EXPECT_EQ(leaf.ports[0].group, (Reference{"leaf-1", Kind::portGroup, "bond-1", true}));
    EXPECT_EQ(leaf.groups[0].mlag, (Reference{"leaf-1", Kind::mlag, "m-1", true}));
    EXPECT_EQ(leaf.mlags[0].secondaryName, "m-1-peer");
    EXPECT_EQ(leaf.mlags[0].localGroup, (Reference{"leaf-1", Kind::portGroup, "bond-1", true}));
    EXPECT_EQ(view.localhost, "leaf-1");
    EXPECT_TRUE(view.localhostIsPresent);
}

TEST(TopologyView, DefaultsAreEmptyAndUnnamedEnumeratorsAreNumbers) {
    Status::Ptr const status = Status::StatusIs();
    Host::Ptr const host = status->hostIs("h");
    host->portIs("p")->typeIs(static_cast<PortType>(9));
    TopologyView view = topologyView(*status);
    EXPECT_FALSE(view.hosts[0].hasMlagAttributes());
    EXPECT_EQ(view.hosts[0].mlagState, "");
    EXPECT_EQ(view.hosts[0].mlagSystemId, "");
    EXPECT_EQ(view.hosts[0].ports[0].type, "9");
    EXPECT_FALSE(view.hosts[0].ports[0].group);
    EXPECT_FALSE(view.localhost);

    host->mlagStateIs(static_cast<Mlag::MlagState>(7));
    EXPECT_EQ(topologyView(*status).hosts[0].mlagState, "7");
}

TEST(TopologyView, JoinsTheTwoDirectionsOfALink) {
    Status::Ptr const status = Status::StatusIs();
    Port::Ptr const a = status->hostIs("a")->portIs("p");
    Port::Ptr const b = status->hostIs("b")->portIs("p");
    Port::Ptr const c = status->hostIs("c")->portIs("p");
    edge(*status, *b, *a, false);
    edge(*status, *a, *b, true);
    edge(*status, *c, *b, true);
    edge(*status, *c, *c, true);
    TopologyView const view = topologyView(*status);
    EXPECT_EQ(view.edges, 3u);
    EXPECT_EQ(view.destinations, 4u);
    ASSERT_EQ(view.links.size(), 3u);
    EXPECT_EQ(view.links[0].one.host, "a");
    EXPECT_EQ(view.links[0].forth, true);
    EXPECT_EQ(view.links[0].back, false);
    EXPECT_EQ(view.links[1].forth, std::nullopt);
    EXPECT_EQ(view.links[1].back, true);

    auto const & ofB = view.hosts[1].ports[0].connections;
    ASSERT_EQ(ofB.size(), 2u);
    EXPECT_EQ(ofB[0].out, false);
    EXPECT_EQ(ofB[0].in, true);
    EXPECT_EQ(ofB[1].out, std::nullopt);
    EXPECT_EQ(ofB[1].in, true);
    auto const & ofC = view.hosts[2].ports[0].connections;
    ASSERT_EQ(ofC.size(), 2u);
    EXPECT_EQ(ofC[1].peer.host, "c");  // To itself, once.
    EXPECT_EQ(ofC[1].out, true);
    EXPECT_EQ(ofC[1].in, true);
}

TEST(TopologyView, TellsPortBasesOfOneNameApart) {
    Status::Ptr const status = Status::StatusIs();
    Host::Ptr const host = status->hostIs("h");
    PortGroup::Ptr const bond = group(*host, "x", {"x"});
    MlagPort::Ptr const multi = mlag(*host, "x", "", bond);
    edge(*status, *host->port("x"), *bond);
    edge(*status, *bond, *multi);
    TopologyView const view = topologyView(*status);
    ASSERT_EQ(view.hosts[0].groups[0].connections.size(), 2u);
    EXPECT_EQ(view.hosts[0].groups[0].connections[0].peer.kind, Kind::port);
    EXPECT_EQ(view.hosts[0].groups[0].connections[1].peer.kind, Kind::mlag);
}

TEST(TopologyView, MarksWhatHasLeft) {
    Status::Ptr const status = Status::StatusIs();
    Host::Ptr const host = status->hostIs("h");
    Port::Ptr const stays = host->portIs("stays");
    Port::Ptr const goes = host->portIs("goes");
    PortGroup::Ptr const bond = host->portGroupIs("bond");
    bond->memberPortIs(goes);
    bond->memberPortIs(stays);
    host->logicalPortIs(goes);
    host->mlagPeerLinkIs(goes);
    edge(*status, *stays, *goes);
    status->localhostIs(host);
    host->portDel("goes");

    TopologyView view = topologyView(*status);
    Reference const left{"h", Kind::port, "goes", false};
    EXPECT_THAT(view.hosts[0].groups[0].members,
                ElementsAre(left, Reference{"h", Kind::port, "stays", true}));
    EXPECT_THAT(view.hosts[0].logicalPorts, ElementsAre(left));
    EXPECT_EQ(view.hosts[0].mlagPeerLink, left);
    EXPECT_EQ(view.hosts[0].ports[0].connections[0].peer, left);

    // A new port has the key of the old one: edges lead to it, references do not.
    host->portIs("goes");
    view = topologyView(*status);
    EXPECT_TRUE(view.links[0].one.present && view.links[0].other.present);
    EXPECT_FALSE(view.hosts[0].logicalPorts[0].present);

    status->hostDel("h");
    view = topologyView(*status);
    EXPECT_THAT(view.hosts, IsEmpty());
    EXPECT_EQ(view.localhost, "h");
    EXPECT_FALSE(view.localhostIsPresent);
    EXPECT_FALSE(view.links[0].one.present || view.links[0].other.present);
}

TEST(TopologyView, KeepsEdgesWithoutDestination) {
    Status::Ptr const status = Status::StatusIs();
    Port::Ptr const a = status->hostIs("a")->portIs("p");
    status->edgeIs(a->portKey());
    status->edgeIs(PortKey());
    TopologyView const view = topologyView(*status);
    EXPECT_EQ(view.edges, 2u);
    EXPECT_THAT(view.edgesWithoutDestination,
                ElementsAre(Reference{"", std::nullopt, "", false}, Reference{"a", Kind::port, "p", true}));
    EXPECT_TRUE(view.hosts[0].ports[0].leadsNowhere);
}

}  // namespace
}  // namespace TopologyTools
