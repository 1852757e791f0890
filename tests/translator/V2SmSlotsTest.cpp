// The order of virtual operations, on which code compiled against earlier headers relies.
#include <gtest/gtest.h>

#include "tests/support/VtableSlots.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopologyAggregator::V2Sm;
using TestSupport::vtableSlot;

TEST(Slots, OfTheRoot) {
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

TEST(Slots, OfVelV2) {
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

TEST(Slots, OfVelV3) {
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

TEST(Slots, OfVelHost) {
    using VelHost = V2Sm::VelHost;
    expectTheFrameworksSlots<VelHost>();
    EXPECT_EQ(vtableSlot(&VelHost::onHostname), 14U);
    EXPECT_EQ(vtableSlot(&VelHost::onHostnameAddedByOwner), 15U);
    EXPECT_EQ(vtableSlot(&VelHost::onMlagSystemId), 16U);
    EXPECT_EQ(vtableSlot(&VelHost::onMlagDomainId), 17U);
    EXPECT_EQ(vtableSlot(&VelHost::onMlagState), 18U);
    EXPECT_EQ(vtableSlot(&VelHost::onMlagPeerLink), 19U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::onPort), 20U);
    EXPECT_EQ(vtableSlot(&VelHost::onPortvelImmediate), 21U);
    EXPECT_EQ(vtableSlot<void()>(&VelHost::onPort), 22U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::onPortGroup), 23U);
    EXPECT_EQ(vtableSlot(&VelHost::onPortGroupvelImmediate), 24U);
    EXPECT_EQ(vtableSlot<void()>(&VelHost::onPortGroup), 25U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::onMlag), 26U);
    EXPECT_EQ(vtableSlot(&VelHost::onMlagvelImmediate), 27U);
    EXPECT_EQ(vtableSlot<void()>(&VelHost::onMlag), 28U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::onMlagRaw), 29U);
    EXPECT_EQ(vtableSlot(&VelHost::onMlagRawvelImmediate), 30U);
    EXPECT_EQ(vtableSlot<void()>(&VelHost::onMlagRaw), 31U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::onLogicalPort), 32U);
    EXPECT_EQ(vtableSlot(&VelHost::onLogicalPortvelImmediate), 33U);
    EXPECT_EQ(vtableSlot<void()>(&VelHost::onLogicalPort), 34U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::portDel), 35U);
    EXPECT_EQ(vtableSlot<void(VelHost::PortIterator const &)>(&VelHost::portDel), 36U);
    EXPECT_EQ(vtableSlot(&VelHost::portNotify), 37U);
    EXPECT_EQ(vtableSlot(&VelHost::portIs), 38U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::mlagDel), 39U);
    EXPECT_EQ(vtableSlot<void(VelHost::MlagIterator const &)>(&VelHost::mlagDel), 40U);
    EXPECT_EQ(vtableSlot(&VelHost::mlagNotify), 41U);
    EXPECT_EQ(vtableSlot(&VelHost::mlagIs), 42U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::portGroupDel), 43U);
    EXPECT_EQ(vtableSlot<void(VelHost::PortGroupIterator const &)>(&VelHost::portGroupDel), 44U);
    EXPECT_EQ(vtableSlot(&VelHost::portGroupNotify), 45U);
    EXPECT_EQ(vtableSlot(&VelHost::portGroupIs), 46U);
    EXPECT_EQ(vtableSlot(&VelHost::velDoZombieReactors), 47U);
    // What the hooks do is the same for every host reactor.
    EXPECT_EQ(vtableSlot(&VelHost::cleanup), std::nullopt);
    EXPECT_EQ(vtableSlot(&VelHost::vel_handlePort), std::nullopt);
}

TEST(Slots, OfVelPort) {
    using VelHost = V2Sm::VelHost;
    expectTheFrameworksSlots<VelHost::VelPort>();
    EXPECT_EQ(vtableSlot(&VelHost::VelPort::onType), 14U);
    EXPECT_EQ(vtableSlot(&VelHost::VelPort::onAddedByOwner), 15U);
    EXPECT_EQ(vtableSlot(&VelHost::VelPort::onPortGroup), 16U);
    EXPECT_EQ(vtableSlot(&VelHost::VelPort::velDoZombieReactors), 17U);
}

TEST(Slots, OfVelPortGroup) {
    using VelHost = V2Sm::VelHost;
    expectTheFrameworksSlots<VelHost::VelPortGroup>();
    EXPECT_EQ(vtableSlot(&VelHost::VelPortGroup::onType), 14U);
    EXPECT_EQ(vtableSlot(&VelHost::VelPortGroup::onAddedByOwner), 15U);
    EXPECT_EQ(vtableSlot<void(Vel::Name)>(&VelHost::VelPortGroup::onMemberPort), 16U);
    EXPECT_EQ(vtableSlot(&VelHost::VelPortGroup::onMemberPortvelImmediate), 17U);
    EXPECT_EQ(vtableSlot<void()>(&VelHost::VelPortGroup::onMemberPort), 18U);
    EXPECT_EQ(vtableSlot(&VelHost::VelPortGroup::onMlag), 19U);
    EXPECT_EQ(vtableSlot(&VelHost::VelPortGroup::velDoZombieReactors), 20U);
}

TEST(Slots, OfVelMlag) {
    using VelHost = V2Sm::VelHost;
    expectTheFrameworksSlots<VelHost::VelMlag>();
    EXPECT_EQ(vtableSlot(&VelHost::VelMlag::onType), 14U);
    EXPECT_EQ(vtableSlot(&VelHost::VelMlag::onAddedByOwner), 15U);
    EXPECT_EQ(vtableSlot(&VelHost::VelMlag::onLocalPortGroup), 16U);
    EXPECT_EQ(vtableSlot(&VelHost::VelMlag::onPeerPortGroup), 17U);
    EXPECT_EQ(vtableSlot(&VelHost::VelMlag::velDoZombieReactors), 18U);
}

TEST(Slots, OfVelEdge) {
    using ToPort = Vel::Ptr<NetworkTopology::PortBaseV2 const>;
    expectTheFrameworksSlots<V2Sm::VelEdge>();
    EXPECT_EQ(vtableSlot<void(ToPort const &)>(&V2Sm::VelEdge::onToPort), 14U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelEdge::onToPortvelImmediate), 15U);
    EXPECT_EQ(vtableSlot<void()>(&V2Sm::VelEdge::onToPort), 16U);
    EXPECT_EQ(vtableSlot(&V2Sm::VelEdge::velDoZombieReactors), 17U);
}

}  // namespace
