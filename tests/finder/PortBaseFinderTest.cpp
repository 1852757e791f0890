#include "finder/PortBaseFinder.h"

#include <array>
#include <functional>
#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tests/support/DeepDestruction.h"
#include "tests/support/VtableSlots.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::PortBaseV2;
using NetworkTopologyAggregator::PortBaseFinder;
using NetworkTopologyAggregator::portBaseFinderFactory;
using TestSupport::vtableSlot;

// Version 2 holds a port, a port group and an MLAG of one name, and version 3 their counterparts.
struct PortBaseFinderTest : testing::Test {
    HostV2::Ptr const hostV2 = HostV2::HostV2Is("a");
    NetworkTopology::PortV2::Ptr const port = hostV2->portIs("x");
    NetworkTopology::PortGroupV2::Ptr const group = hostV2->portGroupIs("x");
    NetworkTopology::MlagV2::Ptr const mlag = hostV2->mlagIs("x", "y");

    NetworkTopologyV3::Status::Ptr const status = NetworkTopologyV3::Status::StatusIs();
    NetworkTopologyV3::Host::Ptr const hostV3 = status->hostIs("a");
    NetworkTopologyV3::Port::Ptr const portV3 = hostV3->portIs("x");
    NetworkTopologyV3::PortGroup::Ptr const groupV3 = hostV3->portGroupIs("x");
    NetworkTopologyV3::MlagPort::Ptr const mlagV3 = hostV3->mlagIs("x", "y");

    PortBaseFinder::Ptr const finder = portBaseFinderFactory(hostV2, hostV3);
};

TEST_F(PortBaseFinderTest, FindsEachKindAmongThreeOfOneName) {
    EXPECT_EQ(finder->find(port), portV3);
    EXPECT_EQ(finder->find(group), groupV3);
    EXPECT_EQ(finder->find(mlag), mlagV3);
}

TEST_F(PortBaseFinderTest, FindsNoOtherKindOfTheSameName) {
    hostV3->portDel("x");
    EXPECT_EQ(finder->find(port), nullptr);
    hostV3->portIs("x");
    hostV3->portGroupDel("x");
    EXPECT_EQ(finder->find(group), nullptr);
    hostV3->portGroupIs("x");
    hostV3->mlagDel("x");
    EXPECT_EQ(finder->find(mlag), nullptr);
}

TEST_F(PortBaseFinderTest, HasNoResultBeforeTheFirstVisit) { EXPECT_EQ(finder->result(), nullptr); }

TEST_F(PortBaseFinderTest, ForgetsAnEarlierResultWhenItFindsNothing) {
    finder->find(port);
    hostV3->mlagDel("x");
    EXPECT_EQ(finder->find(mlag), nullptr);
    EXPECT_EQ(finder->result(), nullptr);
}

TEST_F(PortBaseFinderTest, FindsTheSameAgainAndKeepsHoldingIt) {
    auto const first = finder->find(group);
    std::uint32_t const references = groupV3->references();
    EXPECT_EQ(finder->find(group), first);
    EXPECT_EQ(finder->result(), first);
    EXPECT_EQ(groupV3->references(), references);
}

TEST_F(PortBaseFinderTest, HoldsItsResultUntilTheNextVisit) {
    std::uint32_t const references = portV3->references();
    finder->find(port);
    EXPECT_EQ(portV3->references(), references + 1);
    finder->find(group);
    EXPECT_EQ(portV3->references(), references);
    EXPECT_EQ(finder->result(), groupV3);
}

TEST_F(PortBaseFinderTest, KeepsAResultThatHasLeftItsHostUntilTheNextVisit) {
    auto * const found = finder->find(port).get();
    hostV3->portDel("x");
    EXPECT_EQ(finder->result(), found);
    EXPECT_EQ(finder->find(port), nullptr);
    auto const successor = hostV3->portIs("x");
    EXPECT_EQ(finder->find(port), successor);
}

TEST_F(PortBaseFinderTest, FindsNothingForNullAndForgetsTheResult) {
    finder->find(port);
    EXPECT_EQ(finder->find(nullptr), nullptr);
    EXPECT_EQ(finder->result(), nullptr);
}

TEST_F(PortBaseFinderTest, FindsNothingOnAVisitOfNull) {
    finder->find(port);
    finder->visitPort(nullptr);
    EXPECT_EQ(finder->result(), nullptr);
    finder->find(group);
    finder->visitPortGroup(nullptr);
    EXPECT_EQ(finder->result(), nullptr);
    finder->find(mlag);
    finder->visitMlag(nullptr);
    EXPECT_EQ(finder->result(), nullptr);
}

TEST_F(PortBaseFinderTest, WithoutVersion3HostFindsNothing) {
    auto const blind = portBaseFinderFactory(hostV2, nullptr);
    for (PortBaseV2 * const portBase : std::array<PortBaseV2 *, 3>{port.get(), group.get(), mlag.get()}) {
        EXPECT_EQ(blind->find(portBase), nullptr);
        EXPECT_EQ(blind->result(), nullptr);
    }
}

// The version-2 host is what a reader is told, not what is searched.
TEST_F(PortBaseFinderTest, LooksUpNamesInTheVersion3HostAlone) {
    auto const other = HostV2::HostV2Is("b");
    EXPECT_EQ(portBaseFinderFactory(other, hostV3)->find(port), portV3);
    EXPECT_EQ(portBaseFinderFactory(nullptr, hostV3)->find(other->portIs("x")), portV3);
    EXPECT_EQ(finder->find(NetworkTopology::PortV2::PortV2Is("x")), portV3);
}

TEST_F(PortBaseFinderTest, HoldsBothHosts) {
    std::uint32_t const v2 = hostV2->references();
    std::uint32_t const v3 = hostV3->references();
    auto another = portBaseFinderFactory(hostV2, hostV3);
    EXPECT_EQ(another->hostV2(), hostV2);
    EXPECT_EQ(another->hostV3(), hostV3);
    EXPECT_EQ(hostV2->references(), v2 + 1);
    EXPECT_EQ(hostV3->references(), v3 + 1);
    another = nullptr;
    EXPECT_EQ(hostV2->references(), v2);
    EXPECT_EQ(hostV3->references(), v3);
}

TEST_F(PortBaseFinderTest, ReleasesItsResultWithItself) {
    std::uint32_t const references = mlagV3->references();
    auto another = portBaseFinderFactory(hostV2, hostV3);
    another->find(mlag);
    another = nullptr;
    EXPECT_EQ(mlagV3->references(), references);
}

TEST_F(PortBaseFinderTest, EachVisitSetsTheResult) {
    finder->visitMlag(mlag);
    EXPECT_EQ(finder->result(), mlagV3);
    finder->visitPort(port);
    EXPECT_EQ(finder->result(), portV3);
    finder->visitPortGroup(group);
    EXPECT_EQ(finder->result(), groupV3);
}

TEST_F(PortBaseFinderTest, IsAVisitorLikeAnyOther) {
    mlag->accept(finder);
    EXPECT_EQ(finder->result(), mlagV3);
}

TEST_F(PortBaseFinderTest, FromTheFactoryHasItsNotificationsOn) {
    EXPECT_TRUE(finder->hasNotificationActive());
    PortBaseFinder::Ptr const plain = new PortBaseFinder(hostV2, hostV3);
    EXPECT_FALSE(plain->hasNotificationActive());
}

TEST_F(PortBaseFinderTest, FromTheFactoryIsTracked) {
    auto const & tracked = *PortBaseFinder::velAllocTrackTypeInfo_;
    std::uint64_t const live = tracked.live();
    std::uint64_t const total = tracked.total();
    auto another = portBaseFinderFactory(hostV2, hostV3);
    EXPECT_EQ(tracked.live(), live + 1);
    EXPECT_EQ(tracked.total(), total + 1);
    another = nullptr;
    EXPECT_EQ(tracked.live(), live);
    EXPECT_EQ(tracked.typeName(), "NetworkTopologyAggregator::PortBaseFinder");
    EXPECT_EQ(tracked.size(), sizeof(PortBaseFinder));
}

TEST_F(PortBaseFinderTest, FindsNamesOfAnyBytes) {
    for (std::string_view const name :
         {std::string_view(), std::string_view("\0", 1), std::string_view("\xff\x80")}) {
        auto const wanted = hostV2->portGroupIs(name);
        EXPECT_EQ(finder->find(wanted), nullptr);
        auto const counterpart = hostV3->portGroupIs(name);
        EXPECT_EQ(finder->find(wanted), counterpart);
    }
}

// What waits for its destruction: how many finders, and how many hosts.
using Waiting = std::pair<std::uint64_t, std::uint64_t>;

Waiting waiting() {
    return {PortBaseFinder::velAllocTrackTypeInfo_->live(),
            HostV2::velAllocTrackTypeInfo_->live() + NetworkTopologyV3::Host::velAllocTrackTypeInfo_->live()};
}

// With a result, and nobody else holding the hosts.
PortBaseFinder::Ptr lastHolderOfItsHosts() {
    HostV2::Ptr const hostV2 = HostV2::HostV2Is("a");
    NetworkTopologyV3::Host::Ptr const hostV3 = NetworkTopologyV3::Status::StatusIs()->hostIs("a");
    hostV3->portIs("x");
    PortBaseFinder::Ptr finder = portBaseFinderFactory(hostV2, hostV3);
    finder->find(hostV2->portIs("x"));
    return finder;
}

// Holds a finder as one, which then ends in place.
class Holder final : public Vel::PtrInterface {
public:
    explicit Holder(PortBaseFinder::Ptr finder) : finder_(std::move(finder)) {}

private:
    PortBaseFinder::Ptr const finder_;
};

// What waited after the release of such an object below some number of destructors.
std::set<Waiting> seenAfterReleases(std::function<Vel::Ptr<Vel::PtrInterface>()> const & make) {
    std::set<Waiting> seen;
    for (unsigned depth = 0; depth < 40; ++depth) {
        TestSupport::releaseDeep(depth, make(), [&seen] { seen.insert(waiting()); });
        EXPECT_EQ(waiting(), Waiting(0, 0)) << "depth " << depth;
    }
    return seen;
}

TEST(PortBaseFinder, TakesItsHostsAlongHoweverDeepItEnds) {
    // Nothing, the hosts, and all of them.
    std::set<Waiting> const expected{{0, 0}, {0, 2}, {1, 2}};
    EXPECT_EQ(seenAfterReleases([] { return new Holder(lastHolderOfItsHosts()); }), expected);
    EXPECT_EQ(seenAfterReleases([] { return lastHolderOfItsHosts(); }), expected);
}

TEST(PortBaseFinder, KeepsTheOrderOfItsVirtualOperations) {
    EXPECT_EQ(vtableSlot(&PortBaseFinder::notifieeList), 0U);
    EXPECT_EQ(vtableSlot(&PortBaseFinder::hasNotificationActiveIs), 1U);
    EXPECT_EQ(vtableSlot(&PortBaseFinder::zeroReferencesIs), 2U);
    EXPECT_EQ(vtableSlot(&PortBaseFinder::fwkType), 3U);
    // The destructor's two.
    EXPECT_EQ(vtableSlot(&PortBaseFinder::visitPort), 6U);
    EXPECT_EQ(vtableSlot(&PortBaseFinder::visitPortGroup), 7U);
    EXPECT_EQ(vtableSlot(&PortBaseFinder::visitMlag), 8U);
}

}  // namespace
