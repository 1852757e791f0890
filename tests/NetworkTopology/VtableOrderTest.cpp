// The order of virtual functions is part of the binary interface: reactors compiled earlier rely on it.
#include <cstddef>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/PortBaseVisitor.h"
#include "platform/NetworkTopology/StatusV2.h"
#include "tests/support/VtableSlots.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortBaseVisitor;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using TestSupport::vtableSlot;

using Slots = std::vector<std::optional<std::size_t>>;
using Plain = void();
using Named = void(Vel::Name);
using Ported = void(Vel::Ptr<PortBaseV2 const> const &);

// An object has 4 operations and its destructor's 2 slots; a reactor has 8 more operations.
constexpr std::size_t kFirstOfObjects = 6;
constexpr std::size_t kFirstOfReactors = 14;

Slots from(std::size_t first, std::size_t count) {
    Slots slots;
    for (std::size_t i = 0; i < count; ++i) slots.push_back(first + i);
    return slots;
}

TEST(VtableOrder, ReactorOperationsComeBeforeTheCallbacks) {
    using Reactor = Vel::PtrInterface::NotifieeConst;
    EXPECT_EQ(vtableSlot(&Reactor::velReactor), kFirstOfObjects);
    EXPECT_EQ(vtableSlot(&Reactor::isRegisteredNotifieeIs), kFirstOfObjects + 1);
    EXPECT_EQ(vtableSlot(&Reactor::notifierIs), kFirstOfObjects + 2);
    EXPECT_EQ(vtableSlot(&Reactor::actsm), kFirstOfReactors - 1);
    EXPECT_EQ(vtableSlot(&HostV2::NotifieeConst::isRegisteredNotifieeIs), kFirstOfObjects + 1);
    EXPECT_EQ(vtableSlot(&HostV2::NotifieeConst::notifierIs), kFirstOfObjects + 2);
    EXPECT_EQ(vtableSlot(&MlagV2::NotifieeConst::notifierIs), kFirstOfObjects + 2);
}

TEST(VtableOrder, StatusReactor) {
    using Reactor = StatusV2::NotifieeConst;
    Slots const slots{vtableSlot<Named>(&Reactor::onHost),  vtableSlot(&Reactor::onHostvelImmediate),
                      vtableSlot<Plain>(&Reactor::onHost),  vtableSlot(&Reactor::onLocalhost),
                      vtableSlot<Ported>(&Reactor::onEdge), vtableSlot(&Reactor::onEdgevelImmediate),
                      vtableSlot<Plain>(&Reactor::onEdge)};
    EXPECT_EQ(slots, from(kFirstOfReactors, 7));
}

TEST(VtableOrder, HostReactor) {
    using Reactor = HostV2::NotifieeConst;
    Slots const slots{vtableSlot(&Reactor::onHostname),
                      vtableSlot(&Reactor::onHostnameAddedByOwner),
                      vtableSlot(&Reactor::onMlagSystemId),
                      vtableSlot(&Reactor::onMlagDomainId),
                      vtableSlot(&Reactor::onMlagState),
                      vtableSlot(&Reactor::onMlagPeerLink),
                      vtableSlot<Named>(&Reactor::onPort),
                      vtableSlot(&Reactor::onPortvelImmediate),
                      vtableSlot<Plain>(&Reactor::onPort),
                      vtableSlot<Named>(&Reactor::onPortGroup),
                      vtableSlot(&Reactor::onPortGroupvelImmediate),
                      vtableSlot<Plain>(&Reactor::onPortGroup),
                      vtableSlot<Named>(&Reactor::onMlag),
                      vtableSlot(&Reactor::onMlagvelImmediate),
                      vtableSlot<Plain>(&Reactor::onMlag),
                      vtableSlot<Named>(&Reactor::onMlagRaw),
                      vtableSlot(&Reactor::onMlagRawvelImmediate),
                      vtableSlot<Plain>(&Reactor::onMlagRaw),
                      vtableSlot<Named>(&Reactor::onLogicalPort),
                      vtableSlot(&Reactor::onLogicalPortvelImmediate),
                      vtableSlot<Plain>(&Reactor::onLogicalPort)};
    EXPECT_EQ(slots, from(kFirstOfReactors, 21));
}

TEST(VtableOrder, PortBaseReactors) {
    EXPECT_EQ(vtableSlot(&PortBaseV2::NotifieeConst::onType), kFirstOfReactors);
    EXPECT_EQ(vtableSlot(&PortBaseV2::NotifieeConst::onAddedByOwner), kFirstOfReactors + 1);
    EXPECT_EQ(vtableSlot(&PortV2::NotifieeConst::onPortGroup), kFirstOfReactors + 2);

    using Group = PortGroupV2::NotifieeConst;
    Slots const group{vtableSlot<Named>(&Group::onMemberPort), vtableSlot(&Group::onMemberPortvelImmediate),
                      vtableSlot<Plain>(&Group::onMemberPort), vtableSlot(&Group::onMlag)};
    EXPECT_EQ(group, from(kFirstOfReactors + 2, 4));

    EXPECT_EQ(vtableSlot(&MlagV2::NotifieeConst::onLocalPortGroup), kFirstOfReactors + 2);
    EXPECT_EQ(vtableSlot(&MlagV2::NotifieeConst::onPeerPortGroup), kFirstOfReactors + 3);
}

TEST(VtableOrder, EdgeReactor) {
    using Reactor = DirectedEdgeV2::NotifieeConst;
    Slots const slots{vtableSlot<Ported>(&Reactor::onToPort), vtableSlot(&Reactor::onToPortvelImmediate),
                      vtableSlot<Plain>(&Reactor::onToPort)};
    EXPECT_EQ(slots, from(kFirstOfReactors, 3));
}

TEST(VtableOrder, OwningHostQueryThenVisitorDispatch) {
    EXPECT_EQ(vtableSlot(&PortBaseV2::host), kFirstOfObjects);
    EXPECT_EQ(vtableSlot(&PortBaseV2::accept), kFirstOfObjects + 1);
}

TEST(VtableOrder, Visitor) {
    EXPECT_EQ(vtableSlot(&PortBaseVisitor::visitPort), kFirstOfObjects);
    EXPECT_EQ(vtableSlot(&PortBaseVisitor::visitPortGroup), kFirstOfObjects + 1);
    EXPECT_EQ(vtableSlot(&PortBaseVisitor::visitMlag), kFirstOfObjects + 2);
}

TEST(VtableOrder, ANonVirtualFunctionHasNoSlot) { EXPECT_EQ(vtableSlot(&HostV2::hostname), std::nullopt); }

}  // namespace
}  // namespace NetworkTopologyTest
