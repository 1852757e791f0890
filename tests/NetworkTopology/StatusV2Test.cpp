#include "platform/NetworkTopology/StatusV2.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tests/NetworkTopology/Recorders.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

class Status : public testing::Test {
protected:
    Vel::Ptr<StatusV2> const status_ = StatusV2::StatusV2Is();
    Vel::Ptr<StatusRecorder> const follower_ = followed(status_);
};

TEST_F(Status, TellsOfItsLocalhostWhenItChanges) {
    EXPECT_EQ(status_->localhost(), nullptr);
    auto const host = HostV2::HostV2Is("h");
    follower_->act = [&](std::string const &) { EXPECT_EQ(status_->localhost(), host); };
    status_->localhostIs(host);
    EXPECT_EQ(follower_->taken(), Calls{"onLocalhost"});
    status_->localhostIs(host);
    EXPECT_EQ(follower_->taken(), Calls());
    follower_->act = nullptr;
    status_->localhostIs(nullptr);
    EXPECT_EQ(follower_->taken(), Calls{"onLocalhost"});
    EXPECT_EQ(status_->localhost(), nullptr);
}

TEST_F(Status, CountsItsLocalhost) {
    status_->localhostIs(HostV2::HostV2Is("h"));
    ASSERT_NE(status_->localhost(), nullptr);
    EXPECT_EQ(status_->localhost()->name(), "h");
    EXPECT_EQ(status_->localhost()->references(), 1U);
}

TEST_F(Status, KeepsItsLocalhostAfterTheHostWasRemoved) {
    status_->localhostIs(status_->hostIs("h"));
    follower_->taken();
    auto const host = status_->hostDel("h");
    EXPECT_EQ(follower_->taken(), Calls({"onHost(h)", "onHost"}));
    EXPECT_EQ(status_->localhost(), host);
}

TEST_F(Status, FindsEdgesByIdentityNotByName) {
    auto const a = HostV2::HostV2Is("a");
    auto const b = HostV2::HostV2Is("b");
    auto const edge = status_->edgeIs(a->portIs("p"));
    EXPECT_EQ(status_->edge(b->portIs("p")), nullptr);
    auto const other = status_->edgeIs(b->portIs("p"));
    EXPECT_NE(other, edge);
    EXPECT_EQ(status_->edge(a->portIs("p")), edge);
    EXPECT_EQ(status_->edge().size(), 2U);
}

TEST_F(Status, TakesPortBasesOfEveryKindAsFromPort) {
    auto const host = HostV2::HostV2Is("h");
    Vel::Ptr<PortBaseV2 const> const ports[] = {host->portIs("x"), host->portGroupIs("x"),
                                                host->mlagIs("x", "")};
    for (auto const & port : ports) EXPECT_EQ(status_->edgeIs(port)->fromPort(), port);
    EXPECT_EQ(status_->edge().size(), 3U);
}

TEST_F(Status, HoldsAnEdgeWithoutFromPort) {
    Vel::Ptr<PortBaseV2 const> const none;
    EXPECT_EQ(status_->edge(none), nullptr);
    auto const edge = status_->edgeIs(none);
    ASSERT_NE(edge, nullptr);
    EXPECT_EQ(edge->fromPort(), nullptr);
    EXPECT_EQ(follower_->taken(), Calls({"onEdge(null)", "onEdge"}));
    EXPECT_EQ(status_->edge(none), edge);
    EXPECT_EQ(status_->edgeIs(none), edge);
    status_->edgeIs(DirectedEdgeV2::DirectedEdgeV2Is(nullptr));
    EXPECT_EQ(follower_->taken(), Calls({"onEdge(null)", "onEdge"}));
    EXPECT_NE(status_->edge(none), edge);
    EXPECT_NE(status_->edgeDel(none), nullptr);
    EXPECT_EQ(status_->edge().size(), 0U);
}

TEST_F(Status, AnEdgeKeepsItsFromPortAlive) {
    auto const host = HostV2::HostV2Is("h");
    auto const edge = status_->edgeIs(host->portIs("p"));
    auto const removed = host->portDel("p");
    EXPECT_EQ(status_->edge(removed), edge);
    EXPECT_EQ(edge->fromPort()->host(), nullptr);
    // A new port of that name is another key.
    EXPECT_EQ(status_->edge(host->portIs("p")), nullptr);
}

TEST_F(Status, DoesNotKeepAPortThatWasOnlyAskedFor) {
    auto const port = PortV2::PortV2Is("p");
    EXPECT_EQ(status_->edge(port), nullptr);
    EXPECT_EQ(status_->edgeDel(port), nullptr);
    EXPECT_EQ(port->references(), 1U);
}

TEST_F(Status, HandsOutKeysThatOutliveTheEdge) {
    // The key of the removed edge is the last reference to the port.
    status_->edgeIs(PortV2::PortV2Is("p"));
    follower_->taken();
    Vel::Ptr<PortBaseV2 const> from;
    for (auto const & edge : status_->edge()) from = edge->fromPort();
    status_->edgeDel(std::exchange(from, nullptr));
    EXPECT_EQ(follower_->taken(), Calls({"onEdge(p)", "onEdge"}));
}

TEST(StatusReactor, NarrowsItsNotifier) {
    auto const status = StatusV2::StatusV2Is();
    Vel::Ptr<StatusRecorder> const reactor = new StatusRecorder;
    reactor->notifierIs(status->hostIs("h"));
    EXPECT_EQ(reactor->notifier(), nullptr);
    reactor->notifierIs(status);
    EXPECT_EQ(reactor->notifier(), status.get());
    reactor->notifierIs(reactor);
    EXPECT_EQ(reactor->notifier(), nullptr);
}

TEST(StatusReactor, EveryCallbackDoesNothingUnlessOverridden) {
    auto const status = StatusV2::StatusV2Is();
    auto const reactor = followedBy<StatusV2::NotifieeConst>(status);
    status->localhostIs(status->hostIs("h"));
    status->edgeIs(status->localhost()->portIs("p"));
    status->hostDelAll();
    status->edgeDelAll();
    EXPECT_EQ(status->host().size() + status->edge().size(), 0U);
}

TEST(StatusReactor, MayDestroyItselfItsNeighbourAndTheStatus) {
    auto status = StatusV2::StatusV2Is();
    auto first = followed(status);
    auto second = followed(status);
    auto third = followed(status);
    first->act = [&](std::string const &) {
        first = nullptr;
        second = nullptr;
        status = nullptr;
    };
    status->hostIs("h");
    EXPECT_EQ(third->taken(), Calls({"onHost(h)", "onHost"}));
    EXPECT_EQ(status, nullptr);
    EXPECT_NE(third->notifier()->host("h"), nullptr);
}

TEST(StatusReactor, GetsNothingMoreOnceAnEarlierOneHasSwitchedItOff) {
    auto const status = StatusV2::StatusV2Is();
    auto const first = followed(status);
    auto const second = followed(status);
    auto const third = followed(status);
    auto const fourth = followed(status);
    Vel::Ptr<StatusRecorder> late;
    first->act = [&](std::string const & call) {
        if (call != "onHost(h)") return;
        second->hasNotificationActiveIs(false);
        third->isRegisteredNotifieeIs(false);
        fourth->notifierIs(nullptr);
        late = followed(status);
    };
    status->hostIs("h");
    EXPECT_EQ(first->taken(), Calls({"onHost(h)", "onHost"}));
    EXPECT_EQ(second->taken(), Calls());
    EXPECT_EQ(third->taken(), Calls());
    EXPECT_EQ(fourth->taken(), Calls());
    EXPECT_EQ(late->taken(), Calls());
    first->act = nullptr;
    status->hostDel("h");
    EXPECT_EQ(late->taken(), Calls({"onHost(h)", "onHost"}));
}

}  // namespace
}  // namespace NetworkTopologyTest
