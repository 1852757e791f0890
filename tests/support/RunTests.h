#pragma once

namespace TestSupport {

// Runs the tests of this program with everything installed that every test is held to.
int runTests(int argc, char ** argv);

}  // namespace TestSupport
