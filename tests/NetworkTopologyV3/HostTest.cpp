#include "platform/NetworkTopologyV3/Host.h"

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/NetworkTopologyV3/Recorders.h"
#include "tests/support/DeepDestruction.h"

namespace NetworkTopologyV3 {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HostTest : public testing::Test {
protected:
    Vel::Ptr<Host> host = Status::StatusIs()->hostIs("leaf-1");
    Journal journal;
    Vel::Ptr<HostRecorder> recorder = recorderOf<HostRecorder>(host, journal);
};

TEST_F(HostTest, StartsWithItsNameAndDefaults) {
    EXPECT_EQ(host->name(), "leaf-1");
    EXPECT_EQ(host->hostname(), "");
    EXPECT_EQ(host->mlagDomainId(), "");
    EXPECT_TRUE(host->mlagSystemId().isZero());
    EXPECT_EQ(host->mlagState(), Mlag::MlagState::unknown);
    EXPECT_EQ(host->mlagPeerLink(), nullptr);
    EXPECT_TRUE(host->port().empty());
    EXPECT_TRUE(host->portGroup().empty());
    EXPECT_TRUE(host->mlag().empty());
    EXPECT_TRUE(host->mlagRaw().empty());
    EXPECT_TRUE(host->logicalPort().empty());
}

TEST_F(HostTest, TellsOfItsHostname) {
    host->hostnameIs("leaf-1.example");
    EXPECT_EQ(host->hostname(), "leaf-1.example");
    EXPECT_THAT(journal.take(), ElementsAre("onHostname()"));
    host->hostnameIs("leaf-1.example");
    EXPECT_THAT(journal.take(), IsEmpty());
    host->hostnameIs("");
    EXPECT_EQ(host->hostname(), "");
    EXPECT_THAT(journal.take(), ElementsAre("onHostname()"));
}

TEST_F(HostTest, TellsOfItsMlagDomainId) {
    host->mlagDomainIdIs("rack-1");
    EXPECT_EQ(host->mlagDomainId(), "rack-1");
    EXPECT_THAT(journal.take(), ElementsAre("onMlagDomainId()"));
    host->mlagDomainIdIs("rack-1");
    EXPECT_THAT(journal.take(), IsEmpty());
}

TEST_F(HostTest, TellsOfItsMlagSystemId) {
    Keln::EthAddr const address(2, 0, 0, 0, 0, 1);
    host->mlagSystemIdIs(address);
    EXPECT_EQ(host->mlagSystemId(), address);
    EXPECT_THAT(journal.take(), ElementsAre("onMlagSystemId()"));
    host->mlagSystemIdIs(address);
    EXPECT_THAT(journal.take(), IsEmpty());
}

TEST_F(HostTest, TellsOfItsMlagState) {
    host->mlagStateIs(Mlag::MlagState::active);
    EXPECT_EQ(host->mlagState(), Mlag::MlagState::active);
    EXPECT_THAT(journal.take(), ElementsAre("onMlagState()"));
    host->mlagStateIs(Mlag::MlagState::active);
    EXPECT_THAT(journal.take(), IsEmpty());
    host->mlagStateIs(static_cast<Mlag::MlagState>(77));
    EXPECT_EQ(host->mlagState(), static_cast<Mlag::MlagState>(77));
    EXPECT_THAT(journal.take(), ElementsAre("onMlagState()"));
}

TEST_F(HostTest, TellsOfItsMlagPeerLinkAndKeepsIt) {
    host->mlagPeerLinkIs(host->portGroupIs("peer"));
    host->portGroupDel("peer");
    EXPECT_EQ(host->mlagPeerLink()->name(), "peer");
    EXPECT_THAT(journal.take(), ElementsAre("onPortGroup(peer)", "onPortGroup()", "onMlagPeerLink()",
                                            "onPortGroup(peer)", "onPortGroup()"));
    host->mlagPeerLinkIs(host->mlagPeerLink());
    EXPECT_THAT(journal.take(), IsEmpty());
    host->mlagPeerLinkIs(nullptr);
    EXPECT_EQ(host->mlagPeerLink(), nullptr);
    EXPECT_THAT(journal.take(), ElementsAre("onMlagPeerLink()"));
}

TEST_F(HostTest, APortAndAPortGroupAndAnMlagPortMayHaveOneName) {
    Vel::Ptr<PortBase> const port = host->portIs("x");
    Vel::Ptr<PortBase> const group = host->portGroupIs("x");
    Vel::Ptr<PortBase> const mlag = host->mlagIs("x", "");
    EXPECT_NE(port->portKey(), group->portKey());
    EXPECT_NE(group->portKey(), mlag->portKey());
    EXPECT_NE(port->portKey(), mlag->portKey());
    host->portDel("x");
    EXPECT_EQ(host->portGroup("x"), group);
    EXPECT_EQ(host->mlag("x"), mlag);
}

TEST_F(HostTest, AnMlagPortKeepsItsFirstSecondaryName) {
    Vel::Ptr<MlagPort> const mlag = host->mlagIs("m-1", "m-1b");
    EXPECT_EQ(mlag->secondaryName(), "m-1b");
    journal.take();
    EXPECT_EQ(host->mlagIs("m-1", "other"), mlag);
    EXPECT_EQ(mlag->secondaryName(), "m-1b");
    EXPECT_THAT(journal.take(), IsEmpty());
    host->mlagDel("m-1");
    EXPECT_EQ(host->mlagIs("m-1", "other")->secondaryName(), "other");
}

TEST_F(HostTest, ReferencesKeepTheirTargetsWhenTheMembersLeave) {
    host->mlagRawIs(host->mlagIs("m-1", ""));
    host->logicalPortIs(host->portIs("eth-1"));
    host->mlagDelAll();
    host->portDelAll();
    EXPECT_EQ(host->mlagRaw("m-1")->name(), "m-1");
    EXPECT_EQ(host->logicalPort("eth-1")->name(), "eth-1");
    EXPECT_EQ(host->logicalPort("eth-1")->host(), nullptr);
}

// Each way to take a member out, and what it leaves.
template <class Member>
class HostMember : public testing::Test {
protected:
    static Vel::Ptr<Member> add(Host & host, char const * name) {
        if constexpr (std::is_same_v<Member, Port>) return host.portIs(name);
        if constexpr (std::is_same_v<Member, PortGroup>) return host.portGroupIs(name);
        if constexpr (std::is_same_v<Member, MlagPort>) return host.mlagIs(name, "");
    }
    static void del(Host & host, char const * name) {
        if constexpr (std::is_same_v<Member, Port>) host.portDel(name);
        if constexpr (std::is_same_v<Member, PortGroup>) host.portGroupDel(name);
        if constexpr (std::is_same_v<Member, MlagPort>) host.mlagDel(name);
    }
    static void delAll(Host & host) {
        if constexpr (std::is_same_v<Member, Port>) host.portDelAll();
        if constexpr (std::is_same_v<Member, PortGroup>) host.portGroupDelAll();
        if constexpr (std::is_same_v<Member, MlagPort>) host.mlagDelAll();
    }

    Vel::Ptr<Host> host = Status::StatusIs()->hostIs("leaf-1");
};

using Members = testing::Types<Port, PortGroup, MlagPort>;
TYPED_TEST_SUITE(HostMember, Members);

TYPED_TEST(HostMember, KnowsItsHostWhenItsAdditionIsTold) {
    Journal journal;
    auto const recorder = recorderOf<HostRecorder>(this->host, journal);
    bool told = false;
    journal.then = [&](std::string const &) {
        if (std::exchange(told, true)) return;
        EXPECT_EQ(this->add(*this->host, "x")->host(), this->host.get());
    };
    EXPECT_EQ(this->add(*this->host, "x")->host(), this->host.get());
    EXPECT_TRUE(told);
}

TYPED_TEST(HostMember, HasNoHostWhenItsRemovalIsTold) {
    Vel::Ptr<PortBase> const member = this->add(*this->host, "x");
    Journal journal;
    auto const recorder = recorderOf<HostRecorder>(this->host, journal);
    std::vector<Host *> hosts;
    journal.then = [&](std::string const &) { hosts.push_back(member->host()); };
    this->del(*this->host, "x");
    EXPECT_THAT(hosts, ElementsAre(nullptr, nullptr));
}

TYPED_TEST(HostMember, HasNoHostWhenTheRemovalOfAllIsTold) {
    Vel::Ptr<PortBase> const member = this->add(*this->host, "x");
    Journal journal;
    auto const recorder = recorderOf<HostRecorder>(this->host, journal);
    std::vector<Host *> hosts;
    journal.then = [&](std::string const &) { hosts.push_back(member->host()); };
    this->delAll(*this->host);
    EXPECT_THAT(hosts, ElementsAre(nullptr, nullptr));
}

TYPED_TEST(HostMember, HasNoHostWhenTheHostIsGoneAndStaysAsItWas) {
    Vel::Ptr<PortBase> const member = this->add(*this->host, "x");
    member->typeIs(PortType::mlag);
    PortKey const key = member->portKey();
    this->host = nullptr;
    EXPECT_EQ(member->host(), nullptr);
    EXPECT_EQ(member->name(), "x");
    EXPECT_EQ(member->type(), PortType::mlag);
    EXPECT_EQ(member->portKey(), key);
    member->typeIs(PortType::port);
    EXPECT_EQ(member->type(), PortType::port);
}

TYPED_TEST(HostMember, ThatTookAnotherOnesPlaceIsNotTouchedByIt) {
    Vel::Ptr<PortBase> const old = this->add(*this->host, "x");
    this->del(*this->host, "x");
    Vel::Ptr<PortBase> const current = this->add(*this->host, "x");
    EXPECT_EQ(old->host(), nullptr);
    EXPECT_EQ(current->host(), this->host.get());
    EXPECT_EQ(old->portKey(), current->portKey());
}

// Deep in a destruction, that of the host waits for the outer ones.
TYPED_TEST(HostMember, HasNoHostFromTheMomentWhenTheLastReferenceToItGoes) {
    auto const hosts = Host::velAllocTrackTypeInfo_->live();
    int waited = 0;
    for (unsigned depth = 0; depth < 40; ++depth) {
        Vel::Ptr<Host> host = Status::StatusIs()->hostIs("leaf-2");
        Vel::Ptr<PortBase> const member = this->add(*host, "x");
        bool looked = false;
        TestSupport::releaseDeep(depth, std::move(host), [&] {
            EXPECT_EQ(member->host(), nullptr);
            EXPECT_EQ(member->portKey().host(), "leaf-2");
            if (Host::velAllocTrackTypeInfo_->live() != hosts) ++waited;
            looked = true;
        });
        EXPECT_TRUE(looked);
        EXPECT_EQ(member->host(), nullptr);
        EXPECT_EQ(Host::velAllocTrackTypeInfo_->live(), hosts);
    }
    EXPECT_GT(waited, 0);
}

}  // namespace

}  // namespace NetworkTopologyV3
