// The whole model at once: what keeps what alive, and that everything may go in any order.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/Vel/AllocTrack.h"
#include "tests/NetworkTopology/Recorders.h"
#include "tests/support/NamesOfOneHash.h"
#include "tests/support/SmallStack.h"
#include "tests/support/VeryMany.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

// Two hosts that refer to each other in every way there is.
Vel::Ptr<StatusV2> pairOfHosts() {
    auto const status = StatusV2::StatusV2Is();
    for (char const * const name : {"a", "b"}) {
        auto const host = status->hostIs(name);
        for (int i = 0; i < 3; ++i) {
            auto const port = host->portIs("p" + std::to_string(i));
            auto const group = host->portGroupIs("g" + std::to_string(i));
            auto const mlag = host->mlagIs("m" + std::to_string(i), "second");
            port->portGroupIs(group);
            group->memberPortIs(port->name(), port);
            group->mlagIs(mlag);
            mlag->localPortGroupIs(group);
            host->logicalPortIs("l" + std::to_string(i), group);
            host->mlagRawIs(mlag->name(), mlag);
        }
        host->mlagPeerLinkIs(host->portGroup("g0"));
        status->localhostIs(host);
    }
    auto const a = status->host("a");
    auto const b = status->host("b");
    for (int i = 0; i < 3; ++i) {
        Vel::Name const p = "p" + std::to_string(i);
        Vel::Name const m = "m" + std::to_string(i);
        status->edgeIs(a->port(p))->toPortIs(b->port(p), true);
        status->edgeIs(b->port(p))->toPortIs(a->port(p), false);
        a->mlag(m)->peerPortGroupIs(b->portGroup("g" + std::to_string(i)));
        b->mlag(m)->peerPortGroupIs(a->portGroup("g" + std::to_string(i)));
        a->logicalPortIs("other", b->mlag(m));
    }
    return status;
}

// Every object of the model that can be held.
std::vector<Vel::Ptr<Vel::PtrInterface>> everyObject(StatusV2 & status) {
    std::vector<Vel::Ptr<Vel::PtrInterface>> all;
    for (auto const & host : status.host()) {
        all.push_back(host);
        for (auto const & port : host->port()) all.push_back(port);
        for (auto const & group : host->portGroup()) all.push_back(group);
        for (auto const & mlag : host->mlag()) all.push_back(mlag);
    }
    for (auto const & edge : status.edge()) all.push_back(edge);
    all.push_back(&status);
    return all;
}

std::uint64_t liveHosts() {
    return HostV2::velAllocTrackTypeInfo_ ? HostV2::velAllocTrackTypeInfo_->live() : 0;
}

TEST(Lifetime, NothingKeepsAForgottenModelAlive) {
    auto const before = liveHosts();
    auto status = pairOfHosts();
    EXPECT_EQ(liveHosts(), before + 2);
    status = nullptr;
    EXPECT_EQ(liveHosts(), before);
}

TEST(Lifetime, ObjectsMayBeReleasedInAnyOrder) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 50; ++round) {
        auto status = pairOfHosts();
        auto held = everyObject(*status);
        status = nullptr;
        std::shuffle(held.begin(), held.end(), random);
        while (!held.empty()) {
            held.pop_back();
            // What is still held can still be read.
            for (auto const & object : held) {
                auto const portBase = Vel::dynamicPtrCast<PortBaseV2>(object);
                if (portBase && portBase->host()) {
                    EXPECT_FALSE(portBase->host()->name().empty());
                }
                auto const port = Vel::dynamicPtrCast<PortV2>(object);
                if (port && port->portGroup()) {
                    EXPECT_TRUE(port->portGroup()->name().view().starts_with('g'));
                }
                auto const group = Vel::dynamicPtrCast<PortGroupV2>(object);
                if (group && group->mlag()) {
                    EXPECT_EQ(group->mlag()->secondaryName(), "second");
                }
            }
        }
    }
}

TEST(Lifetime, MembersMayBeRemovedInAnyOrder) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        auto const status = pairOfHosts();
        std::vector<std::function<void()>> removals;
        for (char const * const name : {"a", "b"}) {
            removals.push_back([&, name] { status->hostDel(name); });
            Vel::Ptr<HostV2> const host = status->host(name);
            for (int i = 0; i < 3; ++i) {
                std::string const n = std::to_string(i);
                Vel::Ptr<PortV2> const port = host->port("p" + n);
                removals.push_back([host, n] { host->portDel("p" + n); });
                removals.push_back([host, n] { host->portGroupDel("g" + n); });
                removals.push_back([host, n] { host->mlagDel("m" + n); });
                removals.push_back([host, n] { host->logicalPortDel("l" + n); });
                removals.push_back([host, n] { host->mlagRawDel("m" + n); });
                removals.push_back([&, port] { status->edgeDel(port); });
            }
        }
        removals.push_back([&] { status->localhostIs(nullptr); });
        std::shuffle(removals.begin(), removals.end(), random);
        for (auto & removal : removals) {
            removal();
            removal = nullptr;
        }
        EXPECT_EQ(status->host().size() + status->edge().size(), 0U);
    }
}

TEST(Lifetime, ARemovedHostIsNoLongerReachableThroughItsStatusButThroughItsMembers) {
    auto const status = StatusV2::StatusV2Is();
    auto const port = status->hostIs("h")->portIs("p");
    auto host = status->hostDel("h");
    EXPECT_EQ(port->host(), host.get());
    host = nullptr;
    EXPECT_EQ(port->host(), nullptr);
}

TEST(Lifetime, HostAndPortOfOneNameComeBackWhileAnEdgeHoldsTheOldPort) {
    auto const status = StatusV2::StatusV2Is();
    auto const oldPort = status->hostIs("h")->portIs("p");
    auto const edge = status->edgeIs(oldPort);
    status->hostDel("h");
    auto const newPort = status->hostIs("h")->portIs("p");
    EXPECT_EQ(status->edge(newPort), nullptr);
    EXPECT_EQ(status->edge(oldPort), edge);
    EXPECT_EQ(oldPort->host(), nullptr);
    EXPECT_EQ(newPort->host(), status->host("h").get());
}

TEST(Lifetime, AReactorMayOutliveTheModelButForItsNotifier) {
    auto status = pairOfHosts();
    auto const onHost = followed(status->host("a"));
    auto const onPort = followed(Vel::Ptr<PortV2>(status->host("a")->port("p0")));
    auto const onEdge = followed(Vel::Ptr<DirectedEdgeV2>(status->edge(status->host("a")->port("p0"))));
    status = nullptr;
    EXPECT_EQ(onHost->notifier()->name(), "a");
    EXPECT_EQ(onPort->notifier()->host(), onHost->notifier());
    EXPECT_EQ(onEdge->notifier()->fromPort(), onPort->notifier());
    onHost->notifierIs(nullptr);
    EXPECT_EQ(onPort->notifier()->host(), nullptr);
    EXPECT_EQ(onPort->notifier()->portGroup(), nullptr);
}

TEST(Lifetime, AFollowerMayTakeTheModelApartWhileItIsTold) {
    auto status = pairOfHosts();
    auto const hosts = followed(status);
    auto host = followed(status->host("a"));
    host->act = [&](std::string const & call) {
        if (call != "onPort(p0)") return;
        status->edgeDelAll();
        status->hostDelAll();
        status = nullptr;
        host = nullptr;
    };
    auto const removed = status->host("a")->portDel("p0");
    EXPECT_EQ(removed->host(), nullptr);
    EXPECT_EQ(hosts->taken(), Calls({"onEdgevelImmediate", "onEdge", "onHostvelImmediate", "onHost"}));
}

TEST(Lifetime, TwoFollowersMayAnswerEachOtherToSomeDepth) {
    auto const status = StatusV2::StatusV2Is();
    auto const host = status->hostIs("h");
    auto const first = followed(host);
    auto const second = followed(status);
    int depth = 0;
    int deepest = 0;
    first->act = [&](std::string const & call) {
        if (!call.starts_with("onPort(") || depth == 4) return;
        deepest = std::max(deepest, ++depth);
        status->hostIs("h" + std::to_string(depth));
        --depth;
    };
    second->act = [&](std::string const & call) {
        if (call.starts_with("onHost(")) host->portIs("p" + std::to_string(depth));
    };
    host->portIs("p");
    EXPECT_EQ(deepest, 4);
    EXPECT_EQ(status->host().size(), 5U);
    EXPECT_EQ(host->port().size(), 5U);
}

TEST(Lifetime, AHostOfManyMembersIsDestroyedOnASmallStack) {
    TestSupport::onASmallStack([] {
        auto const status = StatusV2::StatusV2Is();
        auto const host = status->hostIs("h");
        auto const group = host->portGroupIs("g");
        Vel::Ptr<DirectedEdgeV2> const edge = status->edgeIs(host->portIs("p"));
        for (int i = 0; i < 60000; ++i) {
            auto const port = host->portIs(std::to_string(i));
            group->memberPortIs(port->name(), port);
            port->portGroupIs(group);
            edge->toPortIs(port, true);
        }
        EXPECT_EQ(host->port().size(), 60001U);
    });
}

TEST(Lifetime, AHostOfVeryManyPortsComesAndGoesOnASmallStack) {
    TestSupport::onASmallStack([] {
        auto const host = StatusV2::StatusV2Is()->hostIs("h");
        for (int i = 0; i < TestSupport::kVeryMany; ++i) host->portIs(std::to_string(i));
        EXPECT_EQ(host->port().size(), static_cast<std::uint32_t>(TestSupport::kVeryMany));
        EXPECT_EQ(host->port("7777")->name(), "7777");
    });
}

TEST(Lifetime, AHostOfPortsWhoseNamesHaveOneHashComesAndGoesOnASmallStack) {
    auto names = TestSupport::twentyThousandNamesOfOneHash();
    names.resize(TestSupport::kVeryManyOfOneHash);
    TestSupport::onASmallStack([&] {
        auto const host = StatusV2::StatusV2Is()->hostIs("h");
        for (Vel::Name const & name : names) host->portIs(name);
        EXPECT_EQ(host->port().size(), names.size());
        EXPECT_EQ(host->port(names[777])->name(), names[777]);
    });
}

TEST(Lifetime, APortStaysSmall) {
    // There may be millions of them; 80 bytes are the last of an allocation's size class.
    EXPECT_LE(sizeof(PortV2), 80U);
    EXPECT_LE(sizeof(PortGroupV2), 120U);
    EXPECT_LE(sizeof(MlagV2), 88U);
}

}  // namespace
}  // namespace NetworkTopologyTest
