// Whoever goes first: the statuses, the translator, a host, its registries and reactors let go in every
// order, at the top level and inside every callback from which somebody might do it.
#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <numeric>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/LiveObjects.h"
#include "tests/translator/support/Following.h"
#include "tests/translator/support/OutputFollower.h"
#include "tests/translator/support/Topologies.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using TestSupport::following;
using TestSupport::OutputFollower;

// A follower of an input host.
class InputHostFollower final : public HostV2::NotifieeConst {
public:
    explicit InputHostFollower(std::function<void()> onChange) : onChange_(std::move(onChange)) {}
    void onHostname() override { onChange_(); }

private:
    std::function<void()> const onChange_;
};

// Everything that somebody may hold.
struct HeldScene {
    HeldScene() {
        TestSupport::fillWithOneOfEach(*v2);
        v2->edgeIs(TestSupport::addHostWithOneOfEach(*v2, "b")->port("p"));
        sm = v2SmFactory("sm", v2, v3);
        hostV2 = v2->host("a");
        host = sm->host("a");
    }

    StatusV2::Ptr v2 = StatusV2::StatusV2Is();
    NetworkTopologyV3::Status::Ptr v3 = NetworkTopologyV3::Status::StatusIs();
    V2Sm::Ptr sm;
    HostV2::Ptr hostV2;
    V2Sm::VelHost::Ptr host;
};

// One thing that goes. What it is done to may have gone before.
struct Step {
    char const * name;
    void (*take)(HeldScene & scene);
};

constexpr std::array<Step, 5> steps = {{
    {"Input", [](HeldScene & scene) { scene.v2 = nullptr; }},
    {"Output", [](HeldScene & scene) { scene.v3 = nullptr; }},
    {"Translator", [](HeldScene & scene) { scene.sm = nullptr; }},
    {"Host",
     [](HeldScene & scene) {
         if (scene.v2) scene.v2->hostDel("a");
         scene.hostV2 = nullptr;
     }},
    {"Registries",
     [](HeldScene & scene) {
         if (scene.host) {
             scene.host->portDelAll();
             scene.host->portGroupDelAll();
             scene.host->mlagDelAll();
         }
         if (scene.sm) {
             scene.sm->edgeDelAll();
             scene.sm->hostDelAll();
         }
     }},
}};

struct Order {
    bool reactorIsHeld = true;  // Whether somebody holds a host reactor to the end.
    std::array<std::size_t, steps.size()> sequence = {};
};

void teardown(HeldScene & scene, Order const & order, std::size_t length = steps.size()) {
    if (!order.reactorIsHeld) scene.host = nullptr;
    for (std::size_t i = 0; i < length; ++i) steps[order.sequence[i]].take(scene);
}

std::string described(Order const & order) {
    std::string text = order.reactorIsHeld ? "a reactor is held" : "no reactor is held";
    for (auto const step : order.sequence) text += std::string(", ") + steps[step].name;
    return text;
}

// Runs `test` for every order, and holds each to leaving nothing behind.
void inEveryOrder(std::function<void(Order const & order)> const & test) {
    std::size_t orders = 0;
    for (bool const reactorIsHeld : {true, false}) {
        Order order = {.reactorIsHeld = reactorIsHeld};
        std::iota(order.sequence.begin(), order.sequence.end(), 0);
        do {
            SCOPED_TRACE(described(order));
            TestSupport::LiveObjects const before;
            test(order);
            before.expectTheSameNow();
            ++orders;
        } while (std::next_permutation(order.sequence.begin(), order.sequence.end()));
    }
    EXPECT_EQ(orders, 240U);
}

TEST(Teardown, AtTheTopLevelInEveryOrder) {
    inEveryOrder([](Order const & order) {
        HeldScene scene;
        teardown(scene, order);
    });
}

// Only some of it, so that the rest goes with its last holder.
TEST(Teardown, OfAPartInEveryOrder) {
    inEveryOrder([](Order const & order) {
        for (std::size_t length : {1, 2, 3, 4}) {
            HeldScene scene;
            teardown(scene, order, length);
        }
    });
}

// Inside a callback of the output, where a change of the input is being written.

struct Place {
    std::string name;
    std::string change;  // As OutputFollower tells it.
    std::function<void(HeldScene & scene)> cause;

    friend void PrintTo(Place const & place, std::ostream * out) { *out << place.name; }
};

std::vector<Place> const & places() {
    static std::vector<Place> const places = {
        {"Attribute", "/host/a onHostname()", [](HeldScene & scene) { scene.hostV2->hostnameIs("x"); }},
        {"PeerLink", "/host/a onMlagPeerLink()",
         [](HeldScene & scene) { scene.hostV2->mlagPeerLinkIs(nullptr); }},
        {"Localhost", "/ onLocalhost()", [](HeldScene & scene) { scene.v2->localhostIs(nullptr); }},
        {"NewPort", "/host/a onPort('x')", [](HeldScene & scene) { scene.hostV2->portIs("x"); }},
        {"OldPort", "/host/a onPort('p')", [](HeldScene & scene) { scene.hostV2->portDel("p"); }},
        {"PortType", "/host/a/port/p onType()",
         [](HeldScene & scene) { scene.hostV2->port("p")->typeIs(NetworkTopology::PortTypeV2::mlag); }},
        {"PortGroup", "/host/a/port/p onPortGroup()",
         [](HeldScene & scene) { scene.hostV2->port("p")->portGroupIs(nullptr); }},
        {"NewPortGroup", "/host/a onPortGroup('x')",
         [](HeldScene & scene) { scene.hostV2->portGroupIs("x"); }},
        {"Member", "/host/a/portGroup/g onMemberPort('p')",
         [](HeldScene & scene) { scene.hostV2->portGroup("g")->memberPortDel("p"); }},
        {"NewMlag", "/host/a onMlag('x')", [](HeldScene & scene) { scene.hostV2->mlagIs("x", ""); }},
        {"LocalGroup", "/host/a/mlag/m onLocalPortGroup()",
         [](HeldScene & scene) { scene.hostV2->mlag("m")->localPortGroupIs(nullptr); }},
        {"RawMlag", "/host/a onMlagRaw('m')", [](HeldScene & scene) { scene.hostV2->mlagRawDel("m"); }},
        {"LogicalPort", "/host/a onLogicalPort('g')",
         [](HeldScene & scene) { scene.hostV2->logicalPortDel("g"); }},
        {"AllPorts", "/host/a onPort('p')", [](HeldScene & scene) { scene.hostV2->portDelAll(); }},
        {"NewHost", "/ onHost('x')",
         [](HeldScene & scene) { TestSupport::addHostWithOneOfEach(*scene.v2, "x"); }},
        {"OldHost", "/ onHost('a')", [](HeldScene & scene) { scene.v2->hostDel("a"); }},
        {"OtherHost", "/ onHost('b')", [](HeldScene & scene) { scene.v2->hostDel("b"); }},
        {"Replaced", "/host/a onHostname()",
         [](HeldScene & scene) { scene.v2->hostIs(HostV2::HostV2Is("a")); }},
        {"AllHosts", "/ onHost('b')", [](HeldScene & scene) { scene.v2->hostDelAll(); }},
        {"NewEdge", "/ onEdge(/host/a/portGroup/g)",
         [](HeldScene & scene) { scene.v2->edgeIs(scene.hostV2->portGroup("g")); }},
        {"OldEdge", "/ onEdge(/host/a/port/p)",
         [](HeldScene & scene) { scene.v2->edgeDel(scene.hostV2->port("p")); }},
        {"Destination", "/edge[/host/a/port/p] onToPort(/host/a/mlag/m)",
         [](HeldScene & scene) {
             scene.v2->edge(scene.hostV2->port("p"))->toPortIs(scene.hostV2->mlag("m"), true);
         }},
        {"EndOfTheTranslator", "/ onHost('b')", [](HeldScene & scene) { scene.sm = nullptr; }},
        {"Retirement", "/ onHost('a')", [](HeldScene & scene) { scene.host->velDoZombieReactors(true); }},
        {"EndOfAllHosts", "/ onHost('b')", [](HeldScene & scene) { scene.sm->hostDelAll(); }},
        {"AnotherInput", "/ onHost('a')", [](HeldScene & scene) { scene.sm->v2Is(StatusV2::StatusV2Is()); }},
        {"Population", "/ onEdge(/host/b/port/p)",
         [](HeldScene & scene) {
             scene.v3->edgeDelAll();
             scene.sm->populateV3();
         }},
    };
    return places;
}

class TeardownInside : public testing::TestWithParam<Place> {};

TEST_P(TeardownInside, AChangeOfTheOutputInEveryOrder) {
    inEveryOrder([](Order const & order) {
        HeldScene scene;
        bool reached = false;
        {
            OutputFollower const follower(scene.v3, [&](std::string const & change) {
                if (change == GetParam().change && !std::exchange(reached, true)) teardown(scene, order);
            });
            GetParam().cause(scene);
        }
        EXPECT_TRUE(reached);
    });
}

INSTANTIATE_TEST_SUITE_P(, TeardownInside, testing::ValuesIn(places()),
                         [](auto const & info) { return info.param.name; });

// Inside a callback of the input, before or after the translator gets the same change.

TEST(Teardown, InsideAChangeOfTheInputBeforeTheTranslatorInEveryOrder) {
    inEveryOrder([](Order const & order) {
        HeldScene scene;
        scene.sm = nullptr;
        auto const follower = following<InputHostFollower>(scene.hostV2, [&] { teardown(scene, order); });
        scene.sm = v2SmFactory("sm", scene.v2, scene.v3);
        scene.host = scene.sm->host("a");
        scene.hostV2->hostnameIs("x");
        EXPECT_EQ(scene.sm, nullptr);
    });
}

TEST(Teardown, InsideAChangeOfTheInputAfterTheTranslatorInEveryOrder) {
    inEveryOrder([](Order const & order) {
        HeldScene scene;
        auto const follower = following<InputHostFollower>(scene.hostV2, [&] { teardown(scene, order); });
        scene.hostV2->hostnameIs("x");
        EXPECT_EQ(scene.sm, nullptr);
    });
}

}  // namespace
