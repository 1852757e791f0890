#include "platform/NetworkTopologyV3/Status.h"

#include <string>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/NetworkTopologyV3/Recorders.h"

namespace NetworkTopologyV3 {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

PortKey keyOf(char const * host, char const * port) {
    return {Vel::String(host), PortKey::memberOf(PortKey::kPort, port)};
}

TEST(Status, StartsEmpty) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    EXPECT_TRUE(status->host().empty());
    EXPECT_TRUE(status->edge().empty());
    EXPECT_EQ(status->localhost(), nullptr);
    EXPECT_NE(Status::StatusIs(), status);
}

TEST(Status, CannotBeMadeOnTheStack) {
    static_assert(!std::is_default_constructible_v<Status>);
    static_assert(!std::is_destructible_v<Status>);
    static_assert(!std::is_destructible_v<Host>);
    static_assert(!std::is_destructible_v<Port>);
    static_assert(!std::is_destructible_v<PortGroup>);
    static_assert(!std::is_destructible_v<MlagPort>);
    static_assert(!std::is_destructible_v<DirectedEdge>);
}

TEST(Status, TellsOfItsLocalhostAndNotOfAnEqualWrite) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    Vel::Ptr<Host> const host = status->hostIs("leaf-1");
    Journal journal;
    auto const recorder = recorderOf<StatusRecorder>(status, journal);
    status->localhostIs(nullptr);
    EXPECT_THAT(journal.take(), IsEmpty());
    status->localhostIs(host);
    EXPECT_EQ(status->localhost(), host);
    EXPECT_THAT(journal.take(), ElementsAre("onLocalhost()"));
    status->localhostIs(host);
    EXPECT_THAT(journal.take(), IsEmpty());
    status->localhostIs(nullptr);
    EXPECT_EQ(status->localhost(), nullptr);
    EXPECT_THAT(journal.take(), ElementsAre("onLocalhost()"));
}

TEST(Status, KeepsItsLocalhostWhenTheHostIsRemoved) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    status->localhostIs(status->hostIs("leaf-1"));
    Journal journal;
    auto const recorder = recorderOf<StatusRecorder>(status, journal);
    status->hostDel("leaf-1");
    EXPECT_THAT(journal.take(), ElementsAre("onHost(leaf-1)", "onHost()"));
    ASSERT_NE(status->localhost(), nullptr);
    EXPECT_EQ(status->localhost()->name(), "leaf-1");
    EXPECT_EQ(status->localhost()->references(), 1U);
}

TEST(Status, TakesAHostOfAnotherStatusAsLocalhost) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    status->localhostIs(Status::StatusIs()->hostIs("elsewhere"));
    EXPECT_EQ(status->localhost()->name(), "elsewhere");
    EXPECT_EQ(status->host("elsewhere"), nullptr);
}

TEST(Status, ReturnsAHostThatIsThereAsItIs) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    status->hostIs("leaf-1")->hostnameIs("leaf-1.example");
    status->hostIs("leaf-1")->portIs("eth-1");
    EXPECT_EQ(status->hostIs("leaf-1")->hostname(), "leaf-1.example");
    EXPECT_NE(status->hostIs("leaf-1")->port("eth-1"), nullptr);
}

TEST(Status, ReturnsAnEdgeThatIsThereWithItsDestinations) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    Vel::Ptr<DirectedEdge> const edge = status->edgeIs(keyOf("a", "1"));
    edge->toPortIs(keyOf("b", "1"), true);
    edge->toPortIs(keyOf("b", "2"), false);
    EXPECT_EQ(status->edgeIs(keyOf("a", "1")), edge);
    EXPECT_EQ(edge->toPort().size(), 2U);
    EXPECT_EQ(edge->toPort(keyOf("b", "1")), true);
    EXPECT_EQ(edge->toPort(keyOf("b", "2")), false);
}

TEST(Status, KeepsAnEdgeWhosePortHasGone) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    PortKey const key = status->hostIs("a")->portIs("1")->portKey();
    status->edgeIs(key);
    status->hostDel("a");
    EXPECT_NE(status->edge(key), nullptr);
    EXPECT_NE(status->edge(status->hostIs("a")->portIs("1")->portKey()), nullptr);
}

TEST(Status, RemovesAnEdgeUnderTheKeyThatLivesInTheEdge) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    status->edgeIs(keyOf("a", "a name long enough for storage of its own"));
    Journal journal;
    auto const recorder = recorderOf<StatusRecorder>(status, journal);
    DirectedEdge const & edge = **status->edge().begin();
    status->edgeDel(edge.fromPort());
    EXPECT_THAT(journal.take(),
                ElementsAre("onEdge(/host/a/port/a name long enough for storage of its own)", "onEdge()"));
}

TEST(Status, ARemovedHostKeepsItsMembers) {
    Vel::Ptr<Status> const status = Status::StatusIs();
    Vel::Ptr<Port> const port = status->hostIs("leaf-1")->portIs("eth-1");
    Vel::Ptr<Host> const host = status->hostDel("leaf-1");
    EXPECT_EQ(port->host(), host.get());
    EXPECT_EQ(host->port("eth-1"), port);
    host->portIs("eth-2");
    EXPECT_EQ(host->port().size(), 2U);
}

TEST(Status, CanBeTornDownInAnyOrder) {
    Vel::Ptr<Status> status = Status::StatusIs();
    Vel::Ptr<Host> host = status->hostIs("leaf-1");
    Vel::Ptr<DirectedEdge> edge = status->edgeIs(host->portIs("eth-1")->portKey());
    edge->toPortIs(host->portIs("eth-2")->portKey(), true);
    status->localhostIs(host);
    Journal journal;
    auto const recorder = recorderOf<StatusRecorder>(status, journal);
    auto const hostRecorder = recorderOf<HostRecorder>(host, journal);
    status = nullptr;
    EXPECT_EQ(host->port().size(), 2U);
    EXPECT_EQ(recorder->notifier()->host().size(), 1U);
    recorder->notifierIs(nullptr);
    EXPECT_EQ(edge->toPort().size(), 1U);
    edge = nullptr;
    host = nullptr;
    EXPECT_EQ(hostRecorder->notifier()->name(), "leaf-1");
    EXPECT_THAT(journal.take(), IsEmpty());
}

}  // namespace

}  // namespace NetworkTopologyV3
