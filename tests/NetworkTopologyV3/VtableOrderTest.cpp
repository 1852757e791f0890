// The order of virtual functions is part of the binary interface: reactors compiled earlier rely on it.
#include <cstddef>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/support/VtableSlots.h"

namespace NetworkTopologyV3 {

namespace {

using TestSupport::vtableSlot;

using Slots = std::vector<std::optional<std::size_t>>;
using Plain = void();
using Named = void(Vel::Name);
using Keyed = void(PortKey const &);

// An object has 4 operations and its destructor's 2 slots; a reactor has 8 more operations.
constexpr std::size_t kFirstOfReactors = 14;

Slots from(std::size_t first, std::size_t count) {
    Slots slots;
    for (std::size_t i = 0; i < count; ++i) slots.push_back(first + i);
    return slots;
}

// The overridden operations stay where the framework has them.
template <class Reactor>
void expectFrameworkSlots() {
    EXPECT_EQ(vtableSlot(&Reactor::fwkType), 3U);
    EXPECT_EQ(vtableSlot(&Reactor::velReactor), 6U);
    EXPECT_EQ(vtableSlot(&Reactor::isRegisteredNotifieeIs), 7U);
    EXPECT_EQ(vtableSlot(&Reactor::notifierIs), 8U);
    EXPECT_EQ(vtableSlot(&Reactor::actsm), 13U);
}

TEST(VtableOrder, FrameworkOperationsComeFirst) {
    expectFrameworkSlots<Status::NotifieeConst>();
    expectFrameworkSlots<Status::Notifiee>();
    expectFrameworkSlots<Host::NotifieeConst>();
    expectFrameworkSlots<PortBase::NotifieeConst>();
    expectFrameworkSlots<Port::NotifieeConst>();
    expectFrameworkSlots<PortGroup::NotifieeConst>();
    expectFrameworkSlots<MlagPort::NotifieeConst>();
    expectFrameworkSlots<DirectedEdge::NotifieeConst>();
}

template <class Reactor>
Slots statusSlots() {
    return {vtableSlot<Named>(&Reactor::onHost), vtableSlot(&Reactor::onHostvelImmediate),
            vtableSlot<Plain>(&Reactor::onHost), vtableSlot(&Reactor::onLocalhost),
            vtableSlot<Keyed>(&Reactor::onEdge), vtableSlot(&Reactor::onEdgevelImmediate),
            vtableSlot<Plain>(&Reactor::onEdge)};
}

TEST(VtableOrder, StatusReactor) {
    EXPECT_EQ(statusSlots<Status::NotifieeConst>(), from(kFirstOfReactors, 7));
    EXPECT_EQ(statusSlots<Status::Notifiee>(), from(kFirstOfReactors, 7));
}

TEST(VtableOrder, AWritersReactorAddsNoSlot) {
    class Writer : public Status::Notifiee {
    public:
        virtual void first() {}
    };
    EXPECT_EQ(vtableSlot(&Writer::first), kFirstOfReactors + 7);
}

TEST(VtableOrder, HostReactor) {
    using Reactor = Host::NotifieeConst;
    Slots const slots{vtableSlot(&Reactor::onHostname),
                      vtableSlot(&Reactor::onMlagDomainId),
                      vtableSlot(&Reactor::onMlagSystemId),
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
    EXPECT_EQ(slots, from(kFirstOfReactors, 20));
}

TEST(VtableOrder, PortBaseReactors) {
    EXPECT_EQ(vtableSlot(&PortBase::NotifieeConst::onType), kFirstOfReactors);
    EXPECT_EQ(vtableSlot(&Port::NotifieeConst::onPortGroup), kFirstOfReactors + 1);

    using Group = PortGroup::NotifieeConst;
    Slots const group{vtableSlot<Named>(&Group::onMemberPort), vtableSlot(&Group::onMemberPortvelImmediate),
                      vtableSlot<Plain>(&Group::onMemberPort), vtableSlot(&Group::onMlag)};
    EXPECT_EQ(group, from(kFirstOfReactors + 1, 4));

    EXPECT_EQ(vtableSlot(&MlagPort::NotifieeConst::onLocalPortGroup), kFirstOfReactors + 1);
}

TEST(VtableOrder, EdgeReactor) {
    using Reactor = DirectedEdge::NotifieeConst;
    Slots const slots{vtableSlot<Keyed>(&Reactor::onToPort), vtableSlot(&Reactor::onToPortvelImmediate),
                      vtableSlot<Plain>(&Reactor::onToPort)};
    EXPECT_EQ(slots, from(kFirstOfReactors, 3));
}

}  // namespace

}  // namespace NetworkTopologyV3
