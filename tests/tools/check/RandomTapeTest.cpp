// Whatever happens to a model, the translator makes of it what the checker expects, every difference from
// what the model calls for has its rule, and what is told to close it does.

#include <algorithm>
#include <optional>

#include <gtest/gtest.h>

#include "tests/tools/check/RandomTape.h"

namespace TopologyTools {
namespace {

class RandomTapes : public testing::TestWithParam<unsigned> {
protected:
    static constexpr unsigned kTapes = 10;

    static void expectNoFault(Checker const & checker, std::string const & where) {
        auto const differences = checker.differences();
        ASSERT_TRUE(faultsAmong(differences).empty()) << where << '\n' << described(differences);
    }
};

TEST_P(RandomTapes, HoldNoFault) {
    for (unsigned seed = GetParam() * kTapes; seed < (GetParam() + 1) * kTapes; ++seed) {
        Checked checked;
        RandomTape tape(checked, seed);
        // Attached in the middle; all that happens to its translator are the changes of the model.
        std::optional<Checker> late;
        for (unsigned i = 1; i <= 60; ++i) {
            std::string const where =
                "seed " + std::to_string(seed) + ", line " + std::to_string(i) + ", " + tape.step();
            if (i == 30) late.emplace(checked.v2);
            ASSERT_NO_FATAL_FAILURE(expectNoFault(checked.checker, where));
            if (!late) continue;
            ASSERT_NO_FATAL_FAILURE(expectNoFault(*late, where + ", attached late"));
        }
    }
}

TEST_P(RandomTapes, EndInDifferencesThatCanBeClosed) {
    for (unsigned seed = 1000 + GetParam() * kTapes; seed < 1000 + (GetParam() + 1) * kTapes; ++seed) {
        Checked checked;
        RandomTape tape(checked, seed);
        for (unsigned i = 0; i < 80; ++i) tape.step();
        checked.checker.inputIs(checked.v2);
        checked.checker.outputIsBoundIs(true);
        checked.checker.notificationActiveIs(true);
        for (unsigned round = 0; round < 6; ++round) {
            auto const differences = checked.checker.differences();
            auto const open =
                std::find_if(differences.begin(), differences.end(),
                             [](Difference const & difference) { return !difference.remedy.lines.empty(); });
            if (open == differences.end()) break;
            checked.apply(open->remedy.lines);
            auto const rest = checked.checker.differences();
            ASSERT_TRUE(faultsAmong(rest).empty()) << "seed " << seed << ", " << open->remedy.sentence << '\n'
                                                   << described(differences) << "becomes\n"
                                                   << described(rest);
            ASSERT_TRUE(std::none_of(rest.begin(), rest.end(),
                                     [&](Difference const & still) { return still.path == open->path; }))
                << "seed " << seed << ", " << open->remedy.sentence << '\n'
                << described({*open}) << "leaves\n"
                << described(rest);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Some, RandomTapes, testing::Range(0u, 4u));

}  // namespace
}  // namespace TopologyTools
