// Whatever refers to what, objects die in any order: nothing dangles and nothing is kept alive by a circle.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/NetworkTopologyV3/Recorders.h"
#include "tests/support/NamesOfOneHash.h"
#include "tests/support/SmallStack.h"
#include "tests/support/VeryMany.h"

namespace NetworkTopologyV3 {

namespace {

// One object of each class, which refer to each other in every way that the model has.
struct Topology {
    Vel::Ptr<Status> status = Status::StatusIs();
    Vel::Ptr<Host> host = status->hostIs("leaf-1");
    Vel::Ptr<Port> port = host->portIs("eth-1");
    Vel::Ptr<PortGroup> group = host->portGroupIs("bond-1");
    Vel::Ptr<MlagPort> mlag = host->mlagIs("m-1", "m-1b");
    Vel::Ptr<DirectedEdge> edge = status->edgeIs(port->portKey());

    Topology() {
        status->localhostIs(host);
        host->mlagPeerLinkIs(group);
        host->logicalPortIs(mlag);
        host->mlagRawIs(mlag);
        group->memberPortIs(port);
        port->portGroupIs(group.get());
        group->mlagIs(mlag.get());
        mlag->localPortGroupIs(group);
        edge->toPortIs(mlag->portKey(), true);
    }

    void release(int which) {
        switch (which) {
        case 0: status = nullptr; break;
        case 1: host = nullptr; break;
        case 2: port = nullptr; break;
        case 3: group = nullptr; break;
        case 4: mlag = nullptr; break;
        case 5: edge = nullptr; break;
        }
    }
};

template <class Visit>
void forEveryOrder(Visit const & visit) {
    std::array<int, 6> order;
    std::iota(order.begin(), order.end(), 0);
    do {
        visit(order);
    } while (std::next_permutation(order.begin(), order.end()));
}

// The listener of the test program fails a test that leaves an object behind.

TEST(Teardown, OfAWholeTopologyInEveryOrder) {
    forEveryOrder([](std::array<int, 6> const & order) {
        Topology topology;
        for (int const which : order) {
            topology.release(which);
            // Both the status, as long as it lives, and our own reference keep the host.
            bool const hostLives = topology.status || topology.host;
            if (topology.port) {
                EXPECT_EQ(topology.port->host() != nullptr, hostLives);
            }
            if (topology.group) {
                EXPECT_EQ(topology.group->host() != nullptr, hostLives);
            }
            if (topology.mlag) {
                EXPECT_EQ(topology.mlag->host() != nullptr, hostLives);
            }
        }
    });
}

TEST(Teardown, OfMembersThatHaveLeftInEveryOrder) {
    forEveryOrder([](std::array<int, 6> const & order) {
        Topology topology;
        topology.host->mlagPeerLinkIs(nullptr);
        topology.host->mlagRawDelAll();
        topology.host->logicalPortDelAll();
        topology.host->portDelAll();
        topology.host->portGroupDelAll();
        topology.host->mlagDelAll();
        for (int const which : order) {
            topology.release(which);
            bool const groupLives = topology.group || topology.mlag;
            if (topology.port) {
                EXPECT_EQ(topology.port->portGroup() != nullptr, groupLives);
            }
            if (topology.group) {
                EXPECT_EQ(topology.group->mlag() != nullptr, topology.mlag != nullptr);
            }
            if (topology.group) {
                EXPECT_NE(topology.group->memberPort("eth-1"), nullptr);
            }
            if (topology.mlag) {
                EXPECT_EQ(topology.mlag->localPortGroup()->mlag(), topology.mlag.get());
            }
        }
    });
}

TEST(Teardown, OfAFollowedTopologyInEveryOrder) {
    forEveryOrder([](std::array<int, 6> const & order) {
        Journal journal;
        Topology topology;
        std::array<Vel::Ptr<Vel::PtrInterface>, 6> recorders{
            recorderOf<StatusRecorder>(topology.status, journal),
            recorderOf<HostRecorder>(topology.host, journal),
            recorderOf<PortRecorder>(topology.port, journal),
            recorderOf<PortGroupRecorder>(topology.group, journal),
            recorderOf<MlagPortRecorder>(topology.mlag, journal),
            recorderOf<DirectedEdgeRecorder>(topology.edge, journal)};
        topology = Topology();
        for (int const which : order) recorders[static_cast<std::size_t>(which)] = nullptr;
        EXPECT_TRUE(journal.take().empty());
    });
}

TEST(Teardown, OfAHostOfVeryManyPortsOnASmallStack) {
    TestSupport::onASmallStack([] {
        auto const host = Status::StatusIs()->hostIs("h");
        for (int i = 0; i < TestSupport::kVeryMany; ++i) host->portIs(std::to_string(i));
        EXPECT_EQ(host->port().size(), static_cast<std::uint32_t>(TestSupport::kVeryMany));
        EXPECT_EQ(host->port("7777")->name(), "7777");
    });
}

TEST(Teardown, OfAHostOfPortsWhoseNamesHaveOneHashOnASmallStack) {
    auto names = TestSupport::twentyThousandNamesOfOneHash();
    names.resize(TestSupport::kVeryManyOfOneHash);
    TestSupport::onASmallStack([&] {
        auto const host = Status::StatusIs()->hostIs("h");
        for (Vel::Name const & name : names) host->portIs(name);
        EXPECT_EQ(host->port().size(), names.size());
        EXPECT_EQ(host->port(names[777])->name(), names[777]);
    });
}

}  // namespace

}  // namespace NetworkTopologyV3
