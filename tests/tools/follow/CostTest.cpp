// What a change costs does not depend on how large the model is.

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Allocations.h"
#include "tests/tools/document/DocumentTesting.h"
#include "tests/tools/follow/FollowTesting.h"
#include "tools/follow/FollowVersion3.h"

namespace TopologyTools {
namespace {

struct Cost {
    std::size_t operations;
    std::size_t rendered;
    std::uint64_t allocations;
};

// The cost of each change to a topology of `hosts` hosts with `ports` ports each, of which the first four are
// in a group, and an edge from every one of them.
std::vector<Cost> costs(unsigned hosts, unsigned ports, std::vector<std::string> const & changes) {
    auto const v2 = NetworkTopology::StatusV2::StatusV2Is();
    for (unsigned h = 0; h < hosts; ++h) {
        auto const host = v2->hostIs("h" + std::to_string(h));
        auto const group = host->portGroupIs("g");
        for (unsigned p = 0; p < ports; ++p) {
            auto const port = host->portIs("p" + std::to_string(p));
            v2->edgeIs(port)->toPortIs(port, true);
            if (p >= 4) continue;
            group->memberPortIs(port->name(), port);
            port->portGroupIs(group);
        }
    }
    auto const v3 = NetworkTopologyV3::Status::StatusIs();
    auto const translator = NetworkTopologyAggregator::v2SmFactory("test", v2, v3);
    std::size_t told = 0;
    ModelRecorder const recorder(Vel::GenericIf::of(v3), followVersion3, [&](PatchOperation) { ++told; });
    ModelPatcher patcher(Vel::GenericIf::of(v2));
    std::vector<Cost> costs;
    for (std::string const & change : changes) {
        std::size_t const toldBefore = told;
        std::size_t const renderedBefore = recorder.renderedForTesting();
        TestSupport::AllocationCount const allocations;
        patcher.applyLine(change, "changes", 1);
        costs.push_back(
            {told - toldBefore, recorder.renderedForTesting() - renderedBefore, allocations.value()});
    }
    return costs;
}

class CostOfAChange : public DocumentTest {};

TEST_F(CostOfAChange, IsTheSameInAModelOf1000AndOf100000Ports) {
    std::vector<std::string> const changes{
        R"({"op":"add","path":"/host/h3/hostname","value":"x"})",
        R"({"op":"add","path":"/host/h3/port/p7/type","value":"port"})",
        R"({"op":"add","path":"/host/h3/port/p7/portGroup","value":"/host/h3/portGroup/g"})",
        R"({"op":"add","path":"/host/h3/port/new","value":{"type":"port"}})",
        R"({"op":"add","path":"/host/h3/logicalPort/p1","value":"/host/h3/port/p1"})",
        R"({"op":"add","path":"/edge/~1host~1h3~1port~1p1/toPort/~1host~1h4~1port~1p1","value":true})",
        R"({"op":"remove","path":"/edge/~1host~1h3~1port~1p5"})",
        R"({"op":"add","path":"/localhost","value":"/host/h3"})",
        R"({"op":"add","path":"/host/h3/mlag/m","value":{"localPortGroup":"/host/h3/portGroup/g"}})",
        R"({"op":"remove","path":"/host/h3/port/p1"})",
        R"({"op":"remove","path":"/host/h3/portGroup/g"})",
        R"({"op":"add","path":"/host/new","value":{}})",
        R"({"op":"remove","path":"/host/new"})",
    };
    std::vector<Cost> const small = costs(10, 100, changes);
    std::vector<Cost> const large = costs(100, 1000, changes);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        EXPECT_GE(small[i].operations, 1u) << changes[i];
        EXPECT_EQ(large[i].operations, small[i].operations) << changes[i];
        EXPECT_EQ(large[i].rendered, small[i].rendered) << changes[i];
        EXPECT_LE(large[i].rendered, 12u) << changes[i];
        // A table may have to grow in one model and not in the other.
        EXPECT_LE(large[i].allocations, small[i].allocations + 8) << changes[i];
    }
}

// Processor time for that many ports that enter one host, are changed there, and leave it one by one.
std::clock_t timeFor(unsigned ports) {
    auto const v3 = NetworkTopologyV3::Status::StatusIs();
    auto const host = v3->hostIs("h");
    std::size_t told = 0;
    ModelRecorder const recorder(Vel::GenericIf::of(v3), followVersion3, [&](PatchOperation) { ++told; });
    std::clock_t const start = std::clock();
    for (unsigned i = 0; i < ports; ++i) {
        auto const port = host->portIs("p" + std::to_string(i));
        port->typeIs(NetworkTopologyV3::PortType::port);
        host->logicalPortIs(port);
    }
    host->logicalPortDelAll();
    host->portDelAll();
    EXPECT_EQ(told, 5 * ports + 4);
    return std::clock() - start;
}

TEST_F(CostOfAChange, DoesNotGrowWithTheCollection) {
    std::clock_t const small = timeFor(1000);
    // Eight times as much work; walking over the collection for every change would make it 64 times.
    EXPECT_LT(timeFor(8000), 24 * small);
}

}  // namespace
}  // namespace TopologyTools
