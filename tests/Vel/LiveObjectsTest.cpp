#include "tests/support/LiveObjects.h"

#include <gtest/gtest-spi.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Ptr.h"

namespace VelTest {
namespace {

class Early final : public Vel::PtrInterface, public Vel::AllocTracked<Early> {};
class Late final : public Vel::PtrInterface, public Vel::AllocTracked<Late> {};

TEST(LiveObjects, AreNamedWhenATestLeavesThemBehind) {
    Vel::Ptr<Early> early = new Early;
    TestSupport::LiveObjects const before;
    before.expectTheSameNow();
    // Of a class that no test had used before.
    Vel::Ptr<Late> late = new Late;
    EXPECT_NONFATAL_FAILURE(before.expectTheSameNow(), "Late that live");
    late = nullptr;
    before.expectTheSameNow();
    early = nullptr;
    EXPECT_NONFATAL_FAILURE(before.expectTheSameNow(), "Early that live");
}

TEST(LiveObjects, AreNamedWhenTheyLiveAtTheEnd) {
    static Vel::Ptr<Early> early;
    early = new Early;
    EXPECT_NONFATAL_FAILURE(TestSupport::LiveObjects::expectNone(), "Early that live at the end");
    early = nullptr;
    TestSupport::LiveObjects::expectNone();
}

}  // namespace
}  // namespace VelTest
