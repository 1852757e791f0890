#include "tests/Vel/ReferenceWordSuite.h"

namespace VelTest {
namespace {

#ifndef NDEBUG
TEST(ReferenceWordDeathTest, AssertsThatADestroyedObjectIsNotReferenced) {
    EXPECT_DEATH(
        {
            Vel::Ptr<Bulb> const bulb = new Bulb;
            delete bulb.get();
        },
        "destroyed while referenced");
}

TEST(ReferenceWordDeathTest, AssertsThatNoMoreReferencesAreReleasedThanTaken) {
    EXPECT_DEATH(
        {
            Bulb bulb;
            bulb.referenceDel();
        },
        "more references released than taken");
}
#endif

}  // namespace
}  // namespace VelTest
