#include "platform/Vel/PtrInterface.h"
#include "tests/support/RunTests.h"

// A program of its own: the mode is one of the whole process and is set before the first object is made.
int main(int argc, char ** argv) {
    Vel::VFPtrInterface::threadSafePointers_ = true;
    return TestSupport::runTests(argc, argv);
}
