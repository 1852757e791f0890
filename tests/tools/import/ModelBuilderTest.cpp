#include "tools/import/ModelBuilder.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TopologyTools {
namespace {

using namespace NetworkTopology;
using ::testing::ElementsAre;

std::vector<Operation> const kOperations{
    HostOperation{"a"},
    HostOperation{"b"},
    PortOperation{"a", "p"},
    PortOperation{"a", "q"},
    PortGroupOperation{"a", "bond"},
    PortOperation{"b", "p"},
    MemberOperation{"a", "bond", "q"},
    EdgeOperation{{"a", EndKind::port, "p"}, {"b", EndKind::port, "p"}},
    EdgeOperation{{"a", EndKind::port, "p"}, {"a", EndKind::portGroup, "bond"}, false},
    EdgeOperation{{"a", EndKind::portGroup, "bond"}, {"b", EndKind::port, "p"}}};

TEST(ModelBuilder, BuildsWhatTheOperationsSay) {
    StatusV2::Ptr const status = StatusV2::StatusV2Is();
    applyOperations(kOperations, *status);
    EXPECT_EQ(status->host().size(), 2u);
    HostV2::Ptr const a = status->host("a");
    ASSERT_TRUE(a && status->host("b"));
    EXPECT_EQ(a->port().size(), 2u);
    EXPECT_EQ(a->portGroup().size(), 1u);
    PortV2::Ptr const q = a->port("q");
    PortGroupV2::Ptr const bond = a->portGroup("bond");
    EXPECT_EQ(bond->memberPort().size(), 1u);
    EXPECT_EQ(bond->memberPort("q"), q);
    EXPECT_EQ(q->portGroup(), bond);
    EXPECT_EQ(a->port("p")->portGroup(), nullptr);
    EXPECT_EQ(q->type(), PortTypeV2::port);
    EXPECT_EQ(bond->type(), PortTypeV2::portGroup);
    EXPECT_EQ(a->hostname().view(), "");
    EXPECT_EQ(status->localhost(), nullptr);

    EXPECT_EQ(status->edge().size(), 2u);
    auto const fromPort = status->edge(PortBaseV2::PtrConst(a->port("p")));
    ASSERT_TRUE(fromPort);
    EXPECT_EQ(fromPort->toPort().size(), 2u);
    EXPECT_EQ(fromPort->toPort(PortBaseV2::PtrConst(status->host("b")->port("p"))), true);
    EXPECT_EQ(fromPort->toPort(PortBaseV2::PtrConst(bond)), false);
    EXPECT_TRUE(status->edge(PortBaseV2::PtrConst(bond)));
}

TEST(ModelBuilder, FollowersSeeTheNetworkBeingDiscovered) {
    struct Follower : StatusV2::NotifieeConst {
        void onHost(Vel::Name name) override { seen.push_back("host " + std::string(name.view())); }
        void onEdge(Vel::Ptr<PortBaseV2 const> const & from) override {
            seen.push_back("edge " + std::string(from->host()->name().view()) + ' ' +
                           std::string(from->name().view()));
        }
        std::vector<std::string> seen;
    };
    StatusV2::Ptr const status = StatusV2::StatusV2Is();
    Follower follower;
    follower.notifierIs(status);
    follower.isRegisteredNotifieeIs(true);
    follower.hasNotificationActiveIs(true);
    applyOperations(kOperations, *status);
    EXPECT_THAT(follower.seen, ElementsAre("host a", "host b", "edge a p", "edge a bond"));
}

}  // namespace
}  // namespace TopologyTools
