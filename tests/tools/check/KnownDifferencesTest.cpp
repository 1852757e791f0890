#include <gtest/gtest.h>

#include "tests/support/SourceTree.h"
#include "tests/tools/cli/RunProgram.h"
#include "tools/check/Rule.h"

namespace TopologyTools {
namespace {

using namespace Testing;

TEST(KnownDifferences, AreTheRulesOfTheChecker) {
    EXPECT_EQ(fileBytes(TestSupport::sourcePath("docs/known-differences.md")), knownDifferencesPage())
        << "made by: topology-sync check --rules > docs/known-differences.md";
}

TEST(KnownDifferences, ArePrintedOnDemand) {
    ProgramRun const run = runProgram({"check", "--rules"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, knownDifferencesPage());
    EXPECT_EQ(run.messages, "");
}

}  // namespace
}  // namespace TopologyTools
