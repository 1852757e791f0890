#include "tests/tools/document/RandomModel.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/tools/document/DocumentTesting.h"

namespace TopologyTools {
namespace {

constexpr unsigned models = 60;

class RandomModels : public testing::TestWithParam<std::string_view> {};

TEST_P(RandomModels, ReadAsTheyWereWritten) {
    auto const before = liveObjects();
    std::size_t longest = 0;
    for (unsigned seed = 0; seed < models; ++seed) {
        std::string const text = written(RandomModel(GetParam(), seed).root());
        EXPECT_EQ(rewritten(text, GetParam()), text) << "seed " << seed;
        longest = std::max(longest, text.size());
    }
    EXPECT_GT(longest, 10000U);
    EXPECT_EQ(liveObjects(), before);
}

// What a model reads as after some of its objects have left, and what that reads as again.
struct Thinned {
    std::string whole;
    std::string first;
    std::string second;
};

Thinned thinned(std::string_view rootType, unsigned seed) {
    RandomModel model(rootType, seed);
    std::string const whole = written(model.root());
    model.removeSome();
    std::string const first = written(model.root());
    return {whole, first, rewritten(first, rootType)};
}

TEST_P(RandomModels, ReadTheSameFromTheSecondTimeOnWhenObjectsHaveLeft) {
    unsigned departures = 0;
    for (unsigned seed = 0; seed < models; ++seed) {
        Thinned const texts = thinned(GetParam(), seed);
        EXPECT_EQ(rewritten(texts.second, GetParam()), texts.second) << "seed " << seed;
        departures += texts.first != texts.whole;
    }
    EXPECT_GT(departures, models / 2);
}

// Entries of null are entries in version 2 alone.
TEST(RandomModelsOfVersion2, ReadAsTheyWereWrittenWhenObjectsHaveLeft) {
    for (unsigned seed = 0; seed < models; ++seed) {
        Thinned const texts = thinned(v2, seed);
        EXPECT_EQ(texts.second, texts.first) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Version, RandomModels, testing::Values(v2, v3),
                         [](auto const & info) { return info.param == v2 ? "2" : "3"; });

}  // namespace
}  // namespace TopologyTools
