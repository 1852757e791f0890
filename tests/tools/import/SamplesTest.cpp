#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/tools/import/ImportTesting.h"
#include "tools/import/Importer.h"

namespace TopologyTools {
namespace {

using namespace ImportTesting;

struct Sample {
    std::string file;
    std::string network;  // empty: the file has one
    std::string format;
    Counts counts;
    std::size_t diagnostics;
};

void PrintTo(Sample const & sample, std::ostream * out) { *out << sample.file << ' ' << sample.network; }

class Samples : public testing::TestWithParam<Sample> {
protected:
    void SetUp() override {
        bytes_ = sample(GetParam().file);
        if (!bytes_) {
            GTEST_SKIP() << "no sample files beside the source tree";
        }
    }

    ImportOptions options() const {
        return GetParam().network.empty() ? ImportOptions{} : network(GetParam().network);
    }

    std::optional<std::string> bytes_;
};

TEST_P(Samples, TranslateIntoExactlyWhatTheyHold) {
    ImportResult const result = importTopology(*bytes_, GetParam().file, options());
    EXPECT_EQ(result.format, GetParam().format);
    EXPECT_EQ(countsOf(result), GetParam().counts);
    EXPECT_EQ(result.diagnostics.size(), GetParam().diagnostics);
}

TEST_P(Samples, AreRecognised) { EXPECT_EQ(recognise(*bytes_), GetParam().format); }

// Cut anywhere, a sample gives an error or, where the cut spares the topology, the whole of it.
TEST_P(Samples, CutShortGiveAnErrorOrAllOfIt) {
    // Small files at every byte; large ones so often that a megabyte is read in all.
    std::size_t const step = std::max<std::size_t>(1, bytes_->size() * bytes_->size() / 2'000'000);
    std::size_t whole = 0;
    std::size_t cuts = 0;
    for (std::size_t length = bytes_->size() - 1; length < bytes_->size(); length -= step) {
        ++cuts;
        ImportOptions cutOptions = options();
        cutOptions.from = GetParam().format;
        try {
            ImportResult const result =
                importTopology(std::string_view(*bytes_).substr(0, length), "cut", cutOptions);
            EXPECT_EQ(countsOf(result), GetParam().counts) << length;
            ++whole;
        } catch (InputError const & error) {
            EXPECT_NE(std::string(error.what()), "") << length;
        }
    }
    EXPECT_LE(whole, 2U) << "of " << cuts;
}

INSTANTIATE_TEST_SUITE_P(
    Shared, Samples,
    testing::Values(Sample{"rfc8345/l1-l2-l3-layers.json", "target-L3", "rfc8345", {10, 24, 0, 0, 24}, 0},
                    Sample{"rfc8345/l1-l2-l3-layers.json", "target-L2", "rfc8345", {19, 50, 0, 0, 50}, 0},
                    Sample{"rfc8345/l1-l2-l3-layers.json", "target-L1.5", "rfc8345", {3, 6, 0, 0, 4}, 0},
                    Sample{"rfc8345/l1-l2-l3-layers.json", "target-L1", "rfc8345", {7, 18, 2, 4, 20}, 0},
                    Sample{"rfc8345/parallel-links.json", "", "rfc8345", {4, 60, 0, 0, 60}, 0},
                    Sample{"rfc8345/rfc9656-example.json", "L2-network", "rfc8345", {2, 2, 0, 0, 1}, 0},
                    Sample{"rfc8345/rfc9656-example.json", "mw-network", "rfc8345", {2, 4, 2, 4, 3}, 0},
                    Sample{"dot/clos-dual-homed.dot", "", "dot", {22, 142, 0, 0, 142}, 0},
                    Sample{"dot/two-leaf-two-spine.dot", "", "dot", {5, 8, 0, 0, 8}, 0},
                    Sample{"dot/unquoted-dual-homed.dot", "", "dot", {12, 32, 0, 0, 32}, 1},
                    Sample{"graphml/Abilene.graphml", "", "graphml", {11, 28, 0, 0, 28}, 0},
                    Sample{"graphml/Geant2012.graphml", "", "graphml", {40, 122, 0, 0, 122}, 0},
                    Sample{"graphml/Surfnet.graphml", "", "graphml", {50, 146, 0, 0, 146}, 0}));

TEST(SampleFiles, AStackedFileWithoutANetworkNamesThemAll) {
    std::optional<std::string> const bytes = sample("rfc8345/l1-l2-l3-layers.json");
    if (!bytes) {
        GTEST_SKIP() << "no sample files beside the source tree";
    }
    EXPECT_EQ(errorOf(*bytes),
              "t:2:28: 4 networks; expected --network to name one of \"target-L3\", \"target-L2\", "
              "\"target-L1.5\", \"target-L1\"");
}

TEST(SampleFiles, TheAggregatesOfTheLayerOneNetworkArePortGroups) {
    std::optional<std::string> const bytes = sample("rfc8345/l1-l2-l3-layers.json");
    if (!bytes) {
        GTEST_SKIP() << "no sample files beside the source tree";
    }
    std::multiset<std::string> found;
    for (Operation const & operation : importTopology(*bytes, "t", network("target-L1")).operations) {
        std::string const line = text(operation);
        if (line.find("Po1") != std::string::npos) {
            found.insert(line);
        }
    }
    EXPECT_EQ(found, (std::multiset<std::string>{"edge R1::Po1 -> R2::Po1", "edge R2::Po1 -> R1::Po1",
                                                 "group R1::Po1", "group R2::Po1", "member R1::Po1 <- Fa0",
                                                 "member R1::Po1 <- Fa1", "member R2::Po1 <- Fa0",
                                                 "member R2::Po1 <- Fa1"}));
}

TEST(SampleFiles, ASemicolonBehindTheGraphIsAWarning) {
    std::optional<std::string> const bytes = sample("dot/unquoted-dual-homed.dot");
    if (!bytes) {
        GTEST_SKIP() << "no sample files beside the source tree";
    }
    EXPECT_EQ(warningsOf(*bytes), "t:23: warning: Graphviz: syntax error near ';'; the graph was read\n");
}

TEST(SampleFiles, OtherJsonIsNotRecognised) {
    for (std::string const name : {"layer1/leaf-spine.json", "lldp/json0-lldpd-test-neighbors.json"}) {
        std::optional<std::string> const bytes = sample(name);
        if (!bytes) {
            GTEST_SKIP() << "no sample files beside the source tree";
        }
        EXPECT_EQ(recognise(*bytes), std::nullopt);
    }
}

}  // namespace
}  // namespace TopologyTools
