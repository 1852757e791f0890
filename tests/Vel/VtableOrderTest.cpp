// The order of virtual functions is part of the binary interface.
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/Entity.h"
#include "platform/Vel/NotifieeConst.h"
#include "tests/support/VtableSlots.h"

namespace VelTest {
namespace {

using TestSupport::vtableSlot;
using Vel::Entity;
using Vel::PtrInterface;
using Slots = std::vector<std::optional<std::size_t>>;

TEST(VtableOrder, OfObjects) {
    EXPECT_EQ(
        (Slots{vtableSlot(&PtrInterface::notifieeList), vtableSlot(&PtrInterface::hasNotificationActiveIs),
               vtableSlot(&PtrInterface::zeroReferencesIs), vtableSlot(&PtrInterface::fwkType)}),
        (Slots{0, 1, 2, 3}));
    // Slots 4 and 5 are the destructor's: what comes next begins behind them.
    class Next : public Entity {
    public:
        virtual void next() {}
    };
    EXPECT_EQ(vtableSlot(&Next::next), 6U);
    EXPECT_EQ(vtableSlot(&Entity::notifieeList), 0U);
}

TEST(VtableOrder, OfReactors) {
    using Reactor = PtrInterface::NotifieeConst;
    EXPECT_EQ((Slots{vtableSlot(&Reactor::velReactor), vtableSlot(&Reactor::isRegisteredNotifieeIs),
                     vtableSlot(&Reactor::notifierIs), vtableSlot(&Reactor::handleNotification),
                     vtableSlot(&Reactor::onNotificationException), vtableSlot(&Reactor::onZeroReferences),
                     vtableSlot(&Reactor::velFwkActivity), vtableSlot(&Reactor::actsm)}),
              (Slots{6, 7, 8, 9, 10, 11, 12, 13}));
    class Next : public Reactor {
    public:
        virtual void next() {}
    };
    EXPECT_EQ(vtableSlot(&Next::next), 14U);
    EXPECT_EQ(vtableSlot(&Reactor::zeroReferencesIs), 2U);
}

TEST(VtableOrder, TellsOnlyOfVirtualFunctions) {
    EXPECT_EQ(vtableSlot(&PtrInterface::references), std::nullopt);
    EXPECT_EQ(vtableSlot(&PtrInterface::velMarkedForDeletionIs), std::nullopt);
}

}  // namespace
}  // namespace VelTest
