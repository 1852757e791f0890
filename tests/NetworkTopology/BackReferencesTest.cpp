// References that point back are not counted: a port's group, a group's MLAG, a member's host.
#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "tests/NetworkTopology/Recorders.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;

TEST(PortOfAGroup, TellsOfItsGroupWhenItChanges) {
    auto const port = PortV2::PortV2Is("p");
    auto const follower = followed(port);
    auto const group = PortGroupV2::PortGroupV2Is("g");
    EXPECT_EQ(port->portGroup(), nullptr);
    follower->act = [&](std::string const &) { EXPECT_EQ(port->portGroup(), group); };
    port->portGroupIs(group);
    EXPECT_EQ(follower->taken(), Calls{"onPortGroup"});
    port->portGroupIs(group);
    EXPECT_EQ(follower->taken(), Calls());
    EXPECT_EQ(group->references(), 1U);
    follower->act = nullptr;
    port->portGroupIs(nullptr);
    EXPECT_EQ(follower->taken(), Calls{"onPortGroup"});
    EXPECT_EQ(port->portGroup(), nullptr);
}

TEST(PortOfAGroup, LosesItsGroupSilentlyWhenTheGroupDies) {
    auto const port = PortV2::PortV2Is("p");
    auto const follower = followed(port);
    auto group = PortGroupV2::PortGroupV2Is("g");
    group->memberPortIs("p", port);
    port->portGroupIs(group);
    follower->taken();
    group = nullptr;
    EXPECT_EQ(port->portGroup(), nullptr);
    EXPECT_EQ(follower->taken(), Calls());
    // To write what is there is no change.
    port->portGroupIs(nullptr);
    EXPECT_EQ(follower->taken(), Calls());
}

TEST(PortOfAGroup, KeepsAGroupThatOnlyLeftItsHost) {
    auto const host = HostV2::HostV2Is("h");
    auto const port = host->portIs("p");
    port->portGroupIs(host->portGroupIs("g"));
    {
        auto const removed = host->portGroupDel("g");
        EXPECT_EQ(port->portGroup(), removed);
    }
    EXPECT_EQ(port->portGroup(), nullptr);
}

TEST(PortOfAGroup, MayDieBeforeItsGroup) {
    auto const group = PortGroupV2::PortGroupV2Is("g");
    auto first = PortV2::PortV2Is("p");
    auto second = PortV2::PortV2Is("q");
    auto const third = PortV2::PortV2Is("r");
    first->portGroupIs(group);
    second->portGroupIs(group);
    third->portGroupIs(group);
    second = nullptr;
    EXPECT_EQ(first->portGroup(), group);
    first = nullptr;
    EXPECT_EQ(third->portGroup(), group);
}

TEST(PortOfAGroup, MovesFromOneGroupToAnother) {
    auto const port = PortV2::PortV2Is("p");
    auto const follower = followed(port);
    auto first = PortGroupV2::PortGroupV2Is("1");
    auto const second = PortGroupV2::PortGroupV2Is("2");
    port->portGroupIs(first);
    port->portGroupIs(second);
    EXPECT_EQ(follower->taken(), Calls(2, "onPortGroup"));
    first = nullptr;
    EXPECT_EQ(port->portGroup(), second);
}

TEST(GroupOfAnMlag, TellsOfItsMlagWhenItChanges) {
    auto const group = PortGroupV2::PortGroupV2Is("g");
    auto const follower = followed(group);
    auto const mlag = MlagV2::MlagV2Is("m", "n");
    EXPECT_EQ(group->mlag(), nullptr);
    group->mlagIs(mlag);
    EXPECT_EQ(follower->taken(), Calls{"onMlag"});
    EXPECT_EQ(group->mlag(), mlag);
    group->mlagIs(mlag);
    EXPECT_EQ(follower->taken(), Calls());
    EXPECT_EQ(mlag->references(), 1U);
    group->mlagIs(nullptr);
    EXPECT_EQ(follower->taken(), Calls{"onMlag"});
}

TEST(GroupOfAnMlag, LosesItsMlagSilentlyWhenTheMlagDies) {
    auto const group = PortGroupV2::PortGroupV2Is("g");
    auto mlag = MlagV2::MlagV2Is("m", "n");
    mlag->localPortGroupIs(group);
    group->mlagIs(mlag);
    auto const follower = followed(group);
    mlag = nullptr;
    EXPECT_EQ(group->mlag(), nullptr);
    EXPECT_EQ(follower->taken(), Calls());
}

TEST(GroupOfAnMlag, MayDieBeforeItsMlag) {
    auto const mlag = MlagV2::MlagV2Is("m", "n");
    auto group = PortGroupV2::PortGroupV2Is("g");
    group->mlagIs(mlag);
    group = nullptr;
    EXPECT_EQ(mlag->references(), 1U);
}

TEST(Mlag, CountsBothItsGroupsAndTellsOfThem) {
    auto const mlag = MlagV2::MlagV2Is("m", "n");
    auto const follower = followed(mlag);
    auto const local = PortGroupV2::PortGroupV2Is("l");
    auto const peer = PortGroupV2::PortGroupV2Is("p");
    EXPECT_EQ(mlag->localPortGroup(), nullptr);
    EXPECT_EQ(mlag->peerPortGroup(), nullptr);
    mlag->localPortGroupIs(local);
    EXPECT_EQ(follower->taken(), Calls{"onLocalPortGroup"});
    mlag->peerPortGroupIs(peer);
    EXPECT_EQ(follower->taken(), Calls{"onPeerPortGroup"});
    mlag->localPortGroupIs(local);
    mlag->peerPortGroupIs(peer);
    EXPECT_EQ(follower->taken(), Calls());
    EXPECT_EQ(mlag->localPortGroup(), local);
    EXPECT_EQ(mlag->peerPortGroup(), peer);
    EXPECT_EQ(local->references(), 2U);
    EXPECT_EQ(peer->references(), 2U);
    mlag->localPortGroupIs(nullptr);
    mlag->peerPortGroupIs(nullptr);
    EXPECT_EQ(follower->taken(), Calls({"onLocalPortGroup", "onPeerPortGroup"}));
    EXPECT_EQ(local->references() + peer->references(), 2U);
}

TEST(Mlag, ChangesItsSecondaryNameWithoutTellingAnybody) {
    auto const mlag = MlagV2::MlagV2Is("m", "n");
    auto const follower = followed(mlag);
    auto const any = followedBy<PortBaseRecorder>(mlag);
    EXPECT_EQ(mlag->secondaryName(), "n");
    mlag->secondaryNameIs("o");
    EXPECT_EQ(mlag->secondaryName(), "o");
    EXPECT_EQ(follower->taken(), Calls());
    EXPECT_EQ(any->taken(), Calls());
}

TEST(Mlag, EveryCallbackDoesNothingUnlessOverridden) {
    auto const mlag = MlagV2::MlagV2Is("m", "n");
    auto const group = PortGroupV2::PortGroupV2Is("g");
    auto const port = PortV2::PortV2Is("p");
    auto const first = followedBy<MlagV2::NotifieeConst>(mlag);
    auto const second = followedBy<PortGroupV2::NotifieeConst>(group);
    auto const third = followedBy<PortV2::NotifieeConst>(port);
    mlag->localPortGroupIs(group);
    mlag->peerPortGroupIs(group);
    group->mlagIs(mlag);
    group->memberPortIs("p", port);
    group->memberPortDelAll();
    port->portGroupIs(group);
    EXPECT_EQ(first->notifier(), mlag.get());
    EXPECT_EQ(second->notifier(), group.get());
    EXPECT_EQ(third->notifier(), port.get());
}

}  // namespace
}  // namespace NetworkTopologyTest
