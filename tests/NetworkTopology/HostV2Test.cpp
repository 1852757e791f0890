#include "platform/NetworkTopology/HostV2.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/Vel/Exceptions.h"
#include "tests/NetworkTopology/Recorders.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

class Host : public testing::Test {
protected:
    Vel::Ptr<HostV2> const host_ = HostV2::HostV2Is("leaf-1");
    Vel::Ptr<HostRecorder> const follower_ = followed(host_);
};

TEST_F(Host, BeginsWithDefaults) {
    EXPECT_EQ(host_->name(), "leaf-1");
    EXPECT_EQ(host_->collectionKey(), "leaf-1");
    EXPECT_EQ(host_->hostname(), "");
    EXPECT_FALSE(host_->hostnameAddedByOwner());
    EXPECT_TRUE(host_->mlagSystemId().isZero());
    EXPECT_EQ(host_->mlagDomainId(), "");
    EXPECT_EQ(host_->mlagState(), Mlag::MlagState::unknown);
    EXPECT_EQ(host_->mlagPeerLink(), nullptr);
}

TEST_F(Host, TellsOfEachAttributeOnceAndOnlyWhenItChanges) {
    auto const group = PortGroupV2::PortGroupV2Is("peer");
    for (int round = 0; round < 2; ++round) {
        Calls const expected =
            round == 0 ? Calls{"onHostname",  "onHostnameAddedByOwner", "onMlagSystemId", "onMlagDomainId",
                               "onMlagState", "onMlagPeerLink"}
                       : Calls{};
        host_->hostnameIs("leaf-1.example");
        host_->hostnameAddedByOwnerIs(true);
        host_->mlagSystemIdIs(Keln::EthAddr(2, 0, 0, 0, 0, 1));
        host_->mlagDomainIdIs("rack-1");
        host_->mlagStateIs(Mlag::MlagState::active);
        host_->mlagPeerLinkIs(group);
        EXPECT_EQ(follower_->taken(), expected);
    }
    EXPECT_EQ(host_->hostname(), "leaf-1.example");
    EXPECT_TRUE(host_->hostnameAddedByOwner());
    EXPECT_EQ(host_->mlagSystemId(), Keln::EthAddr(2, 0, 0, 0, 0, 1));
    EXPECT_EQ(host_->mlagDomainId(), "rack-1");
    EXPECT_EQ(host_->mlagState(), Mlag::MlagState::active);
    EXPECT_EQ(host_->mlagPeerLink(), group);
}

TEST_F(Host, HoldsTheNewValueWhenItIsTold) {
    follower_->act = [&](std::string const &) { EXPECT_EQ(host_->hostname(), "new"); };
    host_->hostnameIs("new");
    EXPECT_EQ(follower_->taken(), Calls{"onHostname"});
}

TEST_F(Host, DeliversANestedWriteOfTheSameAttribute) {
    follower_->act = [&](std::string const &) {
        if (host_->hostname().size() < 4) host_->hostnameIs(std::string(host_->hostname().view()) + "x");
    };
    host_->hostnameIs("x");
    EXPECT_EQ(host_->hostname(), "xxxx");
    EXPECT_EQ(follower_->taken(), Calls(4, "onHostname"));
}

TEST_F(Host, KeepsAnyBytesInItsTexts) {
    std::string const bytes("a\0\xff", 3);
    host_->hostnameIs(Vel::String(bytes));
    EXPECT_EQ(host_->hostname().view(), bytes);
    host_->hostnameIs("a");
    EXPECT_EQ(follower_->taken().size(), 2U);
}

TEST_F(Host, StoresAStateThatHasNoName) {
    host_->mlagStateIs(static_cast<Mlag::MlagState>(77));
    EXPECT_EQ(host_->mlagState(), static_cast<Mlag::MlagState>(77));
    EXPECT_EQ(follower_->taken(), Calls{"onMlagState"});
}

TEST_F(Host, CountsItsPeerLink) {
    auto const group = PortGroupV2::PortGroupV2Is("peer");
    std::uint32_t const before = group->references();
    host_->mlagPeerLinkIs(group);
    EXPECT_EQ(group->references(), before + 1);
    host_->mlagPeerLinkIs(nullptr);
    EXPECT_EQ(group->references(), before);
    EXPECT_EQ(follower_->taken(), Calls({"onMlagPeerLink", "onMlagPeerLink"}));
}

TEST_F(Host, HasTheHashOfItsNameAtHandAsItsMembersHave) {
    for (char const * const text : {"", "eth-1"}) {
        Vel::Name const name(text);
        EXPECT_EQ(HostV2::HostV2Is(name)->nameHash(), name.reversedHash());
        EXPECT_EQ(PortV2::PortV2Is(name)->nameHash(), name.reversedHash());
        EXPECT_EQ(host_->portIs(name)->nameHash(), name.reversedHash());
        EXPECT_EQ(host_->portGroupIs(name)->nameHash(), name.reversedHash());
        EXPECT_EQ(host_->mlagIs(name, "q")->nameHash(), name.reversedHash());
        EXPECT_EQ(host_->portDel(name)->nameHash(), name.reversedHash());
    }
}

TEST_F(Host, IsTheHostOfItsMembers) {
    EXPECT_EQ(host_->portIs("p")->host(), host_.get());
    EXPECT_EQ(host_->portGroupIs("p")->host(), host_.get());
    EXPECT_EQ(host_->mlagIs("p", "q")->host(), host_.get());
    EXPECT_EQ(PortV2::PortV2Is("p")->host(), nullptr);
}

TEST_F(Host, IsTheHostOfAMemberBeforeAnybodyHearsOfIt) {
    auto const port = PortV2::PortV2Is("p");
    follower_->act = [&](std::string const &) { EXPECT_EQ(port->host(), host_.get()); };
    host_->portIs(port);
    EXPECT_EQ(follower_->taken().size(), 2U);
}

TEST_F(Host, IsNoLongerTheHostWhenTheRemovalIsTold) {
    auto const port = host_->portIs("p");
    auto const group = host_->portGroupIs("p");
    auto const mlag = host_->mlagIs("p", "q");
    follower_->taken();
    follower_->act = [&](std::string const & call) {
        PortBaseV2 const * removed = port.get();
        if (call.starts_with("onPortGroup")) removed = group.get();
        if (call.starts_with("onMlag")) removed = mlag.get();
        EXPECT_EQ(removed->host(), nullptr) << call;
    };
    host_->portDel("p");
    host_->portGroupDel("p");
    host_->mlagDel("p");
    EXPECT_EQ(follower_->taken().size(), 6U);
}

TEST_F(Host, IsNoLongerTheHostWhenTheEmptyingIsTold) {
    auto const port = host_->portIs("p");
    follower_->act = [&](std::string const &) { EXPECT_EQ(port->host(), nullptr); };
    host_->portDelAll();
    EXPECT_EQ(port->name(), "p");
}

TEST_F(Host, IsNoLongerTheHostOfAReplacedMember) {
    auto const old = host_->portIs("p");
    auto const replacement = PortV2::PortV2Is("p");
    follower_->act = [&](std::string const &) {
        EXPECT_EQ(old->host(), nullptr);
        EXPECT_EQ(replacement->host(), host_.get());
    };
    host_->portIs(replacement);
    EXPECT_EQ(follower_->taken().size(), 4U);
}

TEST_F(Host, KeepsPortsPortGroupsAndMlagsOfOneNameApart) {
    auto const port = host_->portIs("x");
    auto const group = host_->portGroupIs("x");
    auto const mlag = host_->mlagIs("x", "");
    host_->portDel("x");
    EXPECT_EQ(host_->port("x"), nullptr);
    EXPECT_EQ(host_->portGroup("x"), group);
    EXPECT_EQ(host_->mlag("x"), mlag);
    EXPECT_NE(static_cast<PortBaseV2 *>(port.get()), static_cast<PortBaseV2 *>(group.get()));
}

TEST_F(Host, LeavesThePresentMlagAsItIsWhateverTheSecondaryName) {
    auto const mlag = host_->mlagIs("m", "first");
    follower_->taken();
    EXPECT_EQ(host_->mlagIs("m", "second"), mlag);
    EXPECT_EQ(mlag->secondaryName(), "first");
    EXPECT_EQ(follower_->taken(), Calls());
}

TEST_F(Host, FindsMembersOfUnusualNames) {
    for (std::string const & name : {std::string(), std::string("a\0b", 3), std::string("a\0c", 3),
                                     std::string("\xff\xfe"), std::string("~1/")}) {
        auto const port = host_->portIs(Vel::Name(name));
        EXPECT_EQ(port->name().view(), name);
        EXPECT_EQ(host_->port(Vel::Name(name)), port);
    }
    EXPECT_EQ(host_->port().size(), 5U);
    EXPECT_EQ(host_->port("a"), nullptr);
    EXPECT_NE(host_->portDel(""), nullptr);
    EXPECT_EQ(host_->port().size(), 4U);
}

TEST_F(Host, StaysAsItIsAfterItsRemovalFromAStatus) {
    auto const status = StatusV2::StatusV2Is();
    status->hostIs(host_);
    auto const port = host_->portIs("p");
    host_->hostnameIs("name");
    status->hostDel("leaf-1");
    EXPECT_EQ(host_->hostname(), "name");
    EXPECT_EQ(port->host(), host_.get());
    follower_->taken();
    host_->hostnameIs("other");
    EXPECT_EQ(follower_->taken(), Calls{"onHostname"});
}

TEST(HostReactor, NarrowsItsNotifier) {
    auto const host = HostV2::HostV2Is("h");
    Vel::Ptr<HostRecorder> const reactor = new HostRecorder;
    EXPECT_EQ(reactor->notifier(), nullptr);
    reactor->notifierIs(host);
    EXPECT_EQ(reactor->notifier(), host.get());
    reactor->notifierIs(host->portIs("p"));
    EXPECT_EQ(reactor->notifier(), nullptr);
    EXPECT_EQ(reactor->notifierObject(), nullptr);
    reactor->notifierIs(host);
    reactor->notifierIs(nullptr);
    EXPECT_EQ(reactor->notifier(), nullptr);
}

TEST(HostReactor, GetsNothingUnlessItIsRegisteredAndActive) {
    auto const host = HostV2::HostV2Is("h");
    Vel::Ptr<HostRecorder> const reactor = new HostRecorder;
    reactor->isRegisteredNotifieeIs(true);  // Nothing to register with yet.
    EXPECT_FALSE(reactor->isRegisteredNotifiee());
    reactor->notifierIs(host);
    reactor->hasNotificationActiveIs(true);
    host->hostnameIs("1");
    EXPECT_EQ(reactor->taken(), Calls());
    reactor->isRegisteredNotifieeIs(true);
    reactor->isRegisteredNotifieeIs(true);
    host->hostnameIs("2");
    EXPECT_EQ(reactor->taken(), Calls{"onHostname"});
    reactor->hasNotificationActiveIs(false);
    host->hostnameIs("3");
    EXPECT_EQ(reactor->taken(), Calls());
    reactor->hasNotificationActiveIs(true);
    reactor->isRegisteredNotifieeIs(false);
    host->hostnameIs("4");
    EXPECT_EQ(reactor->taken(), Calls());
}

TEST(HostReactor, MovesItsRegistrationWithItsNotifier) {
    auto const first = HostV2::HostV2Is("1");
    auto const second = HostV2::HostV2Is("2");
    auto const reactor = followed(first);
    reactor->notifierIs(second);
    first->hostnameIs("x");
    EXPECT_EQ(reactor->taken(), Calls());
    second->hostnameIs("x");
    EXPECT_EQ(reactor->taken(), Calls{"onHostname"});
    EXPECT_EQ(first->references(), 1U);
}

TEST(HostReactor, KeepsItsNotifierAlive) {
    auto host = HostV2::HostV2Is("h");
    auto const reactor = followed(host);
    host = nullptr;
    ASSERT_NE(reactor->notifier(), nullptr);
    EXPECT_EQ(reactor->notifier()->name(), "h");
}

TEST(HostReactor, EveryCallbackDoesNothingUnlessOverridden) {
    auto const host = HostV2::HostV2Is("h");
    Vel::Ptr<HostV2::NotifieeConst> const reactor = followedBy<HostV2::NotifieeConst>(host);
    host->hostnameIs("x");
    host->hostnameAddedByOwnerIs(true);
    host->mlagSystemIdIs(Keln::EthAddr(1, 2, 3, 4, 5, 6));
    host->mlagDomainIdIs("x");
    host->mlagStateIs(Mlag::MlagState::active);
    host->mlagPeerLinkIs(host->portIs("p"));
    host->portGroupIs("g");
    host->mlagIs("m", "n");
    host->mlagRawIs("m", nullptr);
    host->logicalPortIs("l", nullptr);
    host->portDelAll();
    host->portGroupDelAll();
    host->mlagDelAll();
    host->mlagRawDelAll();
    host->logicalPortDelAll();
    EXPECT_EQ(host->logicalPort().size(), 0U);
}

}  // namespace
}  // namespace NetworkTopologyTest
