// Random histories, run against the translator and against the oracle, compared after every step.
//
// TAPES sets how many, TAPE_SEED where they begin; TAPE_SHRINK=0 leaves one that fails as it was made.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "tests/oracle/Tape.h"
#include "tests/oracle/TranslatorSubject.h"

namespace {

std::uint64_t fromEnvironment(char const * variable, std::uint64_t otherwise) {
    char const * const text = std::getenv(variable);
    return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

oracle::SubjectPair makePair() {
    auto real = std::make_unique<oracle::TranslatorSubject>();
    auto follower = std::make_unique<oracle::OracleSubject>(real.get());
    return {std::move(follower), std::move(real)};
}

}  // namespace

TEST(Tapes, TranslatorAndOracleAgreeAfterEveryStep) {
    oracle::GeneratorOptions options;
    options.steps = 100;
    auto const failure =
        oracle::firstFailure(makePair, fromEnvironment("TAPE_SEED", 1), fromEnvironment("TAPES", 100),
                             options, fromEnvironment("TAPE_SHRINK", 1) != 0);
    EXPECT_FALSE(failure.has_value()) << *failure;
}
