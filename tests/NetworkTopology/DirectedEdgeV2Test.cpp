#include "platform/NetworkTopology/DirectedEdgeV2.h"

#include <cstdint>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "tests/NetworkTopology/Recorders.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

class Edge : public testing::Test {
protected:
    Vel::Ptr<PortV2> const from_ = PortV2::PortV2Is("from");
    Vel::Ptr<PortV2> const to_ = PortV2::PortV2Is("to");
    Vel::Ptr<DirectedEdgeV2> const edge_ = DirectedEdgeV2::DirectedEdgeV2Is(from_);
    Vel::Ptr<EdgeRecorder> const follower_ = followed(edge_);
};

TEST_F(Edge, CountsItsEnds) {
    EXPECT_EQ(edge_->fromPort(), from_);
    EXPECT_EQ(from_->references(), 2U);
    edge_->toPortIs(to_, true);
    EXPECT_EQ(to_->references(), 2U);
    edge_->toPortDel(to_);
    EXPECT_EQ(to_->references(), 1U);
}

TEST(EdgeOfAnyPort, KnowsTheHashOfItsKey) {
    using Key = Vel::Ptr<PortBaseV2 const>;
    auto const status = StatusV2::StatusV2Is();
    for (Key const & fromPort : {Key(PortV2::PortV2Is("x")), Key()}) {
        auto const edge = DirectedEdgeV2::DirectedEdgeV2Is(fromPort);
        std::uint32_t const hash = Vel::HashMapKey<Key>::hash(fromPort);
        EXPECT_EQ(edge->fromPortHash(), hash);
        status->edgeIs(edge);
        EXPECT_EQ(edge->fromPortHash(), hash);
        EXPECT_EQ(std::as_const(*status).findEdge(fromPort, hash), edge.get());
    }
}

TEST_F(Edge, TellsAbsenceFromAFlagThatIsFalse) {
    EXPECT_EQ(edge_->toPort(to_), std::nullopt);
    edge_->toPortIs(to_, false);
    EXPECT_EQ(follower_->taken(), Calls({"onToPort(to)", "onToPort"}));
    EXPECT_EQ(edge_->toPort(to_), std::optional(false));
    ASSERT_NE(edge_->toPortEntry(to_), nullptr);
    EXPECT_FALSE(edge_->toPortEntry(to_)->value());
    edge_->toPortIs(to_, false);
    EXPECT_EQ(follower_->taken(), Calls());
    edge_->toPortIs(to_, true);
    EXPECT_EQ(follower_->taken(), Calls({"onToPort(to)", "onToPort"}));
    EXPECT_EQ(edge_->toPort(to_), std::optional(true));
    EXPECT_EQ(edge_->toPort().size(), 1U);
    edge_->toPortDel(to_);
    EXPECT_EQ(edge_->toPort(to_), std::nullopt);
}

TEST_F(Edge, FindsDestinationsByIdentityNotByName) {
    auto const namesake = PortGroupV2::PortGroupV2Is("to");
    edge_->toPortIs(to_, true);
    EXPECT_EQ(edge_->toPort(namesake), std::nullopt);
    edge_->toPortIs(namesake, false);
    EXPECT_EQ(edge_->toPort().size(), 2U);
    EXPECT_EQ(edge_->toPort(to_), std::optional(true));
    edge_->toPortDel(namesake);
    EXPECT_EQ(edge_->toPort(to_), std::optional(true));
}

TEST_F(Edge, MayLeadToItsOwnFromPort) {
    edge_->toPortIs(from_, true);
    EXPECT_EQ(edge_->toPort(from_), std::optional(true));
}

TEST_F(Edge, TakesNullAsADestination) {
    edge_->toPortIs(nullptr, true);
    EXPECT_EQ(follower_->taken(), Calls({"onToPort(null)", "onToPort"}));
    EXPECT_EQ(edge_->toPort(nullptr), std::optional(true));
    edge_->toPortDel(nullptr);
    EXPECT_EQ(edge_->toPort(nullptr), std::nullopt);
}

TEST_F(Edge, KeepsADestinationThatHasLeftItsHost) {
    auto host = HostV2::HostV2Is("h");
    auto const port = host->portIs("p");
    edge_->toPortIs(port, true);
    host->portDel("p");
    EXPECT_EQ(edge_->toPort(port), std::optional(true));
    host = nullptr;
    EXPECT_EQ(edge_->toPort(port), std::optional(true));
}

TEST_F(Edge, HandsOutTheKeyOfARemovedDestinationThatNothingElseHolds) {
    edge_->toPortIs(PortV2::PortV2Is("last"), true);
    follower_->taken();
    Vel::Ptr<PortBaseV2 const> seen;
    for (auto const & entry : edge_->toPort()) edge_->toPortDel(entry.key());
    EXPECT_EQ(follower_->taken(), Calls({"onToPort(last)", "onToPort"}));
}

TEST(EdgeReactor, NarrowsItsNotifier) {
    auto const edge = DirectedEdgeV2::DirectedEdgeV2Is(nullptr);
    Vel::Ptr<EdgeRecorder> const reactor = new EdgeRecorder;
    reactor->notifierIs(edge);
    EXPECT_EQ(reactor->notifier(), edge.get());
    reactor->notifierIs(PortV2::PortV2Is("p"));
    EXPECT_EQ(reactor->notifier(), nullptr);
}

TEST(EdgeReactor, EveryCallbackDoesNothingUnlessOverridden) {
    auto const edge = DirectedEdgeV2::DirectedEdgeV2Is(nullptr);
    auto const reactor = followedBy<DirectedEdgeV2::NotifieeConst>(edge);
    edge->toPortIs(nullptr, true);
    edge->toPortDelAll();
    EXPECT_EQ(edge->toPort().size(), 0U);
}

}  // namespace
}  // namespace NetworkTopologyTest
