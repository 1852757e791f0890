#include "tests/support/RunTests.h"

#include <gmock/gmock.h>

#include "tests/support/LiveObjects.h"

namespace TestSupport {

int runTests(int argc, char ** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new LiveObjectsListener);
    return RUN_ALL_TESTS();
}

}  // namespace TestSupport
