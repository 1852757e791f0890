// Hosts of many members, and members whose names have one hash: models and translator come and go with little
// stack.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "finder/PortBaseFinder.h"
#include "tests/support/NamesOfOneHash.h"
#include "tests/support/SmallStack.h"
#include "tests/support/VeryMany.h"
#include "tests/translator/support/Topologies.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using NetworkTopologyV3::Status;

// An input, its output and their translator, which sees every change of the input or only its end.
struct LargeScene {
    LargeScene(bool attachedBefore, std::function<void(StatusV2 & v2)> const & fill) {
        if (attachedBefore) sm = v2SmFactory("sm", v2, v3);
        fill(*v2);
        if (!attachedBefore) sm = v2SmFactory("sm", v2, v3);
    }

    StatusV2::Ptr v2 = StatusV2::StatusV2Is();
    Status::Ptr v3 = Status::StatusIs();
    V2Sm::Ptr sm;
};

// Each takes a scene apart, from another end.
std::vector<std::function<void(LargeScene & scene)>> const & waysToEnd() {
    static std::vector<std::function<void(LargeScene & scene)>> const ways = {
        [](LargeScene & scene) { scene.sm = nullptr; },
        [](LargeScene & scene) {
            scene.v2 = nullptr;
            scene.v3 = nullptr;
            scene.sm = nullptr;
        },
        // The output stays behind, and goes by itself.
        [](LargeScene & scene) {
            scene.sm->v3Del();
            scene.sm = nullptr;
            scene.v2 = nullptr;
        },
        // Everything is taken out of the input first.
        [](LargeScene & scene) {
            for (auto const & host : scene.v2->host()) {
                host->portDelAll();
                host->portGroupDelAll();
            }
            scene.v2->edgeDelAll();
            for (auto const & host : scene.v3->host()) EXPECT_EQ(host->port().size(), 0U);
        },
    };
    return ways;
}

class VeryMany : public testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(, VeryMany, testing::Bool(),
                         [](auto const & info) { return info.param ? "SeenOneByOne" : "FoundAtOnce"; });

TEST_P(VeryMany, PortsOfOneHostComeAndGoOnASmallStack) {
    TestSupport::onASmallStack([] {
        LargeScene scene(GetParam(), [](StatusV2 & v2) {
            auto const host = v2.hostIs("h");
            for (int i = 0; i < TestSupport::kVeryMany; ++i) host->portIs(std::to_string(i));
        });
        EXPECT_EQ(scene.v3->host("h")->port().size(), static_cast<std::uint32_t>(TestSupport::kVeryMany));
        EXPECT_NE(scene.v3->host("h")->port("7777"), nullptr);
        scene.sm = nullptr;
        EXPECT_EQ(scene.v3->host("h"), nullptr);
    });
}

// Each of the ports is looked up several times among all the others, so they are fewer than a model alone
// gets.
TEST_P(VeryMany, PortsWhoseNamesHaveOneHashComeAndGoOnASmallStack) {
    auto names = TestSupport::twentyThousandNamesOfOneHash();
    names.resize(TestSupport::kVeryManyOfOneHash / 4);
    TestSupport::onASmallStack([&] {
        LargeScene scene(GetParam(), [&](StatusV2 & v2) {
            auto const host = v2.hostIs("h");
            for (Vel::Name const & name : names) host->portIs(name);
        });
        EXPECT_EQ(scene.v3->host("h")->port().size(), names.size());
        EXPECT_NE(scene.v3->host("h")->port(names[777]), nullptr);
        scene.sm = nullptr;
        EXPECT_EQ(scene.v3->host("h"), nullptr);
    });
}

// So many edges that their walks look ahead, and of every kind.
TEST(VeryManyEdges, AreTranslatedAsFewAre) {
    using NetworkTopologyAggregator::PortBaseFinder;
    constexpr int kHosts = 40;
    constexpr int kPorts = 250;
    auto const finders = [] { return PortBaseFinder::velAllocTrackTypeInfo_->total(); };
    auto const portName = [](int i) { return Vel::Name(std::to_string(i)); };
    PortBaseFinder::PortBaseFinderIs(nullptr, nullptr);  // For the record.

    auto const v2 = StatusV2::StatusV2Is();
    std::vector<Vel::Ptr<NetworkTopology::PortV2>> ports;
    for (int h = 0; h < kHosts; ++h) {
        auto const host = v2->hostIs(std::to_string(h));
        for (int i = 0; i < kPorts; ++i) ports.push_back(host->portIs(portName(i)));
    }
    std::vector<bool> hasDestination;
    for (std::size_t i = 0; i < ports.size(); ++i) {
        auto const edge = v2->edgeIs(ports[i]);
        hasDestination.push_back(i % 10 != 0);
        if (hasDestination[i]) edge->toPortIs(ports[i * 7919 % ports.size()], i % 3 == 0);
    }
    // Nothing that corresponds to any of these.
    auto const strangers = NetworkTopology::HostV2::HostV2Is("stranger");
    for (int i = 0; i < 500; ++i) {
        v2->edgeIs(NetworkTopology::PortV2::PortV2Is(portName(i)))->toPortIs(ports[0], true);
        v2->edgeIs(strangers->portIs(portName(i)))->toPortIs(nullptr, true);
    }
    v2->edgeIs(Vel::Ptr<NetworkTopology::PortBaseV2 const>())->toPortIs(ports[1], true);

    auto const v3 = Status::StatusIs();
    std::uint64_t const before = finders();
    auto sm = v2SmFactory("sm", v2, v3);
    EXPECT_EQ(v3->edge().size(), ports.size());
    std::uint64_t destinations = 0;
    for (std::size_t i = 0; i < ports.size(); ++i) {
        auto const key = [&](std::size_t port) {
            return v3->host(ports[port]->host()->name())->port(ports[port]->name())->portKey();
        };
        auto const edge = v3->edge(key(i));
        ASSERT_TRUE(edge) << i;
        ASSERT_EQ(edge->toPort().size(), hasDestination[i] ? 1U : 0U) << i;
        if (!hasDestination[i]) continue;
        ++destinations;
        EXPECT_EQ(edge->toPort(key(i * 7919 % ports.size())), std::optional(i % 3 == 0)) << i;
    }
    EXPECT_EQ(finders() - before, 2 * ports.size() + destinations) << "one for each look-up and no more";

    // The hosts go, and the edges stay behind.
    sm = nullptr;
    EXPECT_EQ(v3->host().size(), 0U);
    EXPECT_EQ(v3->edge().size(), ports.size());
    for (auto const & edge : v2->edge()) EXPECT_FALSE(edge->isFollowed());
}

// Every reference that there is leads through the same few objects.
void fillWithLinks(StatusV2 & v2, std::vector<Vel::Name> const & names) {
    auto const host = v2.hostIs("h");
    auto const group = host->portGroupIs("g");
    auto const edge = v2.edgeIs(host->portIs("from"));
    for (Vel::Name const & name : names) {
        auto const port = host->portIs(name);
        port->portGroupIs(group);
        group->memberPortIs(name, port);
        host->logicalPortIs(name, port);
        edge->toPortIs(port, true);
        v2.edgeIs(port)->toPortIs(group, false);
    }
}

void expectLinks(Status & v3, std::vector<Vel::Name> const & names) {
    auto const host = v3.host("h");
    auto const group = host->portGroup("g");
    ASSERT_EQ(host->port().size(), names.size() + 1);
    EXPECT_EQ(group->memberPort().size(), names.size());
    EXPECT_EQ(host->logicalPort().size(), names.size());
    EXPECT_EQ(v3.edge(host->port("from")->portKey())->toPort().size(), names.size());
    EXPECT_EQ(v3.edge().size(), names.size() + 1);
    EXPECT_EQ(host->port(names.back())->portGroup(), group.get());
}

void expectToComeAndGo(bool attachedBefore, std::vector<Vel::Name> const & names) {
    TestSupport::onASmallStack([&] {
        for (auto const & end : waysToEnd()) {
            LargeScene scene(attachedBefore, [&](StatusV2 & v2) { fillWithLinks(v2, names); });
            expectLinks(*scene.v3, names);
            end(scene);
        }
    });
}

TEST_P(VeryMany, LinksComeAndGoOnASmallStack) {
    std::vector<Vel::Name> names;
    for (int i = 0; i < 3'000; ++i) names.emplace_back(std::to_string(i));
    expectToComeAndGo(GetParam(), names);
}

// All of them stand in one chain.
TEST_P(VeryMany, NamesOfOneHashComeAndGoOnASmallStack) {
    static auto const names = TestSupport::namesOfOneHash(9);
    expectToComeAndGo(GetParam(), names);
}

}  // namespace
