#include "tests/support/RunTests.h"

int main(int argc, char ** argv) { return TestSupport::runTests(argc, argv); }
