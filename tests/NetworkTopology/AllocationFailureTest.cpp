// A mutator that runs out of memory has changed nothing.
#include <functional>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "tests/support/Allocations.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using TestSupport::FailingAllocations;

struct Model {
    Vel::Ptr<StatusV2> status = StatusV2::StatusV2Is();
    Vel::Ptr<HostV2> host = status->hostIs("a host with a long name");
    Vel::Ptr<PortV2> port = host->portIs("port");
    Vel::Ptr<PortGroupV2> group = host->portGroupIs("group");
    Vel::Ptr<MlagV2> mlag = host->mlagIs("mlag", "second");
    Vel::Ptr<DirectedEdgeV2> edge = status->edgeIs(port);
    Vel::Name const name = "a name that was made before";

    Model() {
        group->memberPortIs("member", port);
        host->logicalPortIs("logical", port);
        host->mlagRawIs("raw", mlag);
        edge->toPortIs(port, true);
    }

    // How many members there are of each kind.
    std::vector<std::uint32_t> sizes() const {
        return {status->host().size(),      status->edge().size(),      host->port().size(),
                host->portGroup().size(),   host->mlag().size(),        host->mlagRaw().size(),
                host->logicalPort().size(), group->memberPort().size(), edge->toPort().size()};
    }
};

using Change = std::function<void(Model &)>;
class AllocationFailure : public testing::TestWithParam<std::pair<char const *, Change>> {};

INSTANTIATE_TEST_SUITE_P(
    Of, AllocationFailure,
    testing::Values(
        std::pair<char const *, Change>{"hostIs", [](Model & m) { m.status->hostIs(m.name); }},
        std::pair<char const *, Change>{"edgeIs", [](Model & m) { m.status->edgeIs(m.group); }},
        std::pair<char const *, Change>{"portIs", [](Model & m) { m.host->portIs(m.name); }},
        std::pair<char const *, Change>{"portGroupIs", [](Model & m) { m.host->portGroupIs(m.name); }},
        std::pair<char const *, Change>{"mlagIs", [](Model & m) { m.host->mlagIs(m.name, m.name); }},
        std::pair<char const *, Change>{"mlagRawIs", [](Model & m) { m.host->mlagRawIs(m.name, m.mlag); }},
        std::pair<char const *, Change>{"logicalPortIs",
                                        [](Model & m) { m.host->logicalPortIs(m.name, m.port); }},
        std::pair<char const *, Change>{"memberPortIs",
                                        [](Model & m) { m.group->memberPortIs(m.name, m.port); }},
        std::pair<char const *, Change>{"toPortIs", [](Model & m) { m.edge->toPortIs(m.group, true); }},
        std::pair<char const *, Change>{"mlagRawDelAll", [](Model & m) { m.host->mlagRawDelAll(); }},
        std::pair<char const *, Change>{"logicalPortDelAll", [](Model & m) { m.host->logicalPortDelAll(); }},
        std::pair<char const *, Change>{"memberPortDelAll", [](Model & m) { m.group->memberPortDelAll(); }},
        std::pair<char const *, Change>{"toPortDelAll", [](Model & m) { m.edge->toPortDelAll(); }}),
    [](auto const & info) { return std::string(info.param.first); });

TEST_P(AllocationFailure, ChangesNothingWhicheverAllocationFails) {
    Change const & change = GetParam().second;
    {  // Whatever is made once for a class is made before.
        Model model;
        change(model);
    }
    Model model;
    auto const before = model.sizes();
    int failures = 0;
    for (bool done = false; !done; ++failures) {
        ASSERT_LT(failures, 100);
        try {
            FailingAllocations const failing(static_cast<std::uint64_t>(failures));
            change(model);
            done = true;
        } catch (std::bad_alloc const &) {
            EXPECT_EQ(model.sizes(), before);
        }
    }
    EXPECT_GT(failures, 1) << "nothing was allocated";
    EXPECT_NE(model.sizes(), before);
}

}  // namespace
}  // namespace NetworkTopologyTest
