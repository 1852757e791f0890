// The order of virtual operations, on which code compiled against earlier headers relies.
#include <gtest/gtest.h>

#include "tests/support/VtableSlots.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopologyAggregator::V2Sm;
using TestSupport::vtableSlot;

TEST(V2Sm, KeepsTheOrderOfItsVirtualOperations) {
    EXPECT_EQ(vtableSlot(&V2Sm::notifieeList), 0U);
    EXPECT_EQ(vtableSlot(&V2Sm::hasNotificationActiveIs), 1U);
    EXPECT_EQ(vtableSlot(&V2Sm::zeroReferencesIs), 2U);
    EXPECT_EQ(vtableSlot(&V2Sm::fwkType), 3U);
    // The destructor's two.
    EXPECT_EQ(vtableSlot(&V2Sm::velDoZombieReactors), 6U);
}

// The slots before the callbacks, of a reactor class.
template <class Reactor>
void expectTheFrameworksSlots() {
    EXPECT_EQ(vtableSlot(&Reactor::notifieeList), 0U);
    EXPECT_EQ(vtableSlot(&Reactor::hasNotificationActiveIs), 1U);
    EXPECT_EQ(vtableSlot(&Reactor::zeroReferencesIs), 2U);
    EXPECT_EQ(vtableSlot(&Reactor::fwkType), 3U);
    // The destructor's two.
    EXPECT_EQ(vtableSlot(&Reactor::velReactor), 6U);
    EXPECT_EQ(vtableSlot(&Reactor::isRegisteredNotifieeIs), 7U);
    EXPECT_EQ(vtableSlot(&Reactor::notifierIs), 8U);
    EXPECT_EQ(vtableSlot(&Reactor::handleNotification), 9U);
    EXPECT_EQ(vtableSlot(&Reactor::onNotificationException), 10U);
    EXPECT_EQ(vtableSlot(&Reactor::onZeroReferences), 11U);
    EXPECT_EQ(vtableSlot(&Reactor::velFwkActivity), 12U);
    EXPECT_EQ(vtableSlot(&Reactor::actsm), 13U);
}

TEST(VelV2, KeepsTheOrderOfItsVirtualOperations) {
    using FromPort = Vel::Ptr<NetworkTopology::PortBaseV2 const>;
    expectTheFrameworksSlots<V2Sm::VelV2>();
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&V2Sm::VelV2::onHost), 14U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV2::onHostvelImmediate), 15U);
    EXPECT_EQ(vtableSlot<void()>(&V2Sm::VelV2::onHost), 16U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV2::onLocalhost), 17U);
    EXPECT_EQ(vtableSlot<void(FromPort const &)>(&V2Sm::VelV2::onEdge), 18U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV2::onEdgevelImmediate), 19U);
    EXPECT_EQ(vtableSlot<void()>(&V2Sm::VelV2::onEdge), 20U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV2::velDoZombieReactors), 21U);
}

TEST(VelV3, KeepsTheOrderOfItsVirtualOperations) {
    expectTheFrameworksSlots<V2Sm::VelV3>();
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&V2Sm::VelV3::onHost), 14U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV3::onHostvelImmediate), 15U);
    EXPECT_EQ(vtableSlot<void()>(&V2Sm::VelV3::onHost), 16U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV3::onLocalhost), 17U);
    EXPECT_EQ(vtableSlot<void(NetworkTopologyV3::PortKey const &)>(&V2Sm::VelV3::onEdge), 18U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV3::onEdgevelImmediate), 19U);
    EXPECT_EQ(vtableSlot<void()>(&V2Sm::VelV3::onEdge), 20U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelV3::velDoZombieReactors), 21U);
}

}  // namespace
