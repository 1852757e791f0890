#include "tests/Vel/ReferenceWordSuite.h"

namespace VelTest {
namespace {

TEST(ReferenceWord, ChangesAtomicallyInThisProgram) { EXPECT_TRUE(Vel::VFPtrInterface::threadSafePointers_); }

}  // namespace
}  // namespace VelTest
