#include "tools/generate/Fabric.h"

#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

std::vector<FabricNumbers> someFabrics() {
    std::vector<FabricNumbers> some;
    for (std::uint64_t hosts : {2, 3, 4, 5, 6, 7, 11, 64, 101}) {
        for (std::uint64_t ports : {4, 5, 7, 8, 31, 32}) {
            for (std::uint64_t seed : {std::uint64_t{0}, std::uint64_t{1}, ~std::uint64_t{0}}) {
                some.push_back({hosts, ports, seed});
            }
        }
    }
    return some;
}

TEST(Fabric, BothEndsOfACableAgree) {
    for (FabricNumbers const & numbers : someFabrics()) {
        Fabric const fabric(numbers);
        std::set<std::pair<std::uint64_t, std::uint64_t>> taken;
        for (std::uint64_t leaf = 0; leaf != fabric.leaves(); ++leaf) {
            for (std::uint64_t uplink = 0; uplink != fabric.uplinks(); ++uplink) {
                Fabric::PortIndex const end = fabric.spineEnd({leaf, uplink});
                ASSERT_LT(end.host, fabric.spines());
                ASSERT_LT(end.port, fabric.ports());
                ASSERT_TRUE(taken.emplace(end.host, end.port).second) << "two cables in one port";
                auto const back = fabric.leafEnd(end);
                ASSERT_TRUE(back);
                ASSERT_EQ(std::pair(back->host, back->port), std::pair(leaf, uplink));
            }
        }
        std::size_t ends = 0;
        for (std::uint64_t spine = 0; spine != fabric.spines(); ++spine) {
            for (std::uint64_t port = 0; port != fabric.ports(); ++port) {
                ends += fabric.leafEnd({spine, port}).has_value();
            }
        }
        EXPECT_EQ(ends, taken.size());
    }
}

TEST(Fabric, HasAsManyHostsAsAskedFor) {
    for (FabricNumbers const & numbers : someFabrics()) {
        Fabric const fabric(numbers);
        EXPECT_EQ(fabric.leaves() + fabric.spines(), numbers.hosts);
        EXPECT_GE(fabric.leaves(), 1u);
        EXPECT_GE(fabric.spines(), 1u);
        EXPECT_GE(fabric.uplinks(), 1u);
        EXPECT_GE(fabric.serverPorts(), 1u);
    }
}

TEST(Fabric, UplinksOfALeafGoToAsManySpinesAsThereAre) {
    Fabric const fabric({100, 16, 0});
    std::size_t together = 0;
    for (std::uint64_t leaf = 0; leaf != fabric.leaves(); ++leaf) {
        std::set<std::uint64_t> spines;
        for (std::uint64_t uplink = 0; uplink != fabric.uplinks(); ++uplink) {
            spines.insert(fabric.spineEnd({leaf, uplink}).host);
        }
        together += fabric.uplinks() - spines.size();
    }
    EXPECT_LE(together, fabric.leaves() / 10);  // Only where a leaf's uplinks belong to two rounds.
}

TEST(Fabric, LeavesStandInPairs) {
    Fabric const fabric({5, 4, 0});
    ASSERT_EQ(fabric.leaves(), 4u);
    EXPECT_EQ(fabric.otherLeaf(0), 1u);
    EXPECT_EQ(fabric.otherLeaf(3), 2u);
    Fabric const odd({4, 4, 0});
    ASSERT_EQ(odd.leaves(), 3u);
    EXPECT_EQ(odd.otherLeaf(1), 0u);
    EXPECT_FALSE(odd.otherLeaf(2));
}

}  // namespace
}  // namespace TopologyTools
