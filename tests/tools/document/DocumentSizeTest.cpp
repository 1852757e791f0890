#include <algorithm>
#include <ctime>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/tools/document/DocumentTesting.h"

namespace TopologyTools {
namespace {

// One host with `ports` ports, all in one group, under logical names and with edges to one another: every
// collection that can grow does.
std::string fabric(unsigned ports) {
    std::string port;
    std::string member;
    std::string logical;
    std::string edge;
    for (unsigned i = 0; i < ports; ++i) {
        std::string const comma = i == 0 ? "" : ",";
        std::string const name = "\"eth-" + std::to_string(i) + '"';
        std::string const path = "\"/host/leaf/port/eth-" + std::to_string(i) + '"';
        std::string const next = "\"/host/leaf/port/eth-" + std::to_string((i + 1) % ports) + '"';
        port += comma + name + R"(:{"type":"port","portGroup":"/host/leaf/portGroup/g"})";
        member += comma + name + ':' + path;
        logical += comma + name + ':' + path;
        edge += comma + path + R"(:{"toPort":{)" + next + ":true}}";
    }
    return R"({"host":{"leaf":{"port":{)" + port + R"(},"portGroup":{"g":{"memberPort":{)" + member +
           R"(}}},"logicalPort":{)" + logical + R"(}}},"edge":{)" + edge + "}}";
}

std::string portsAlone(unsigned ports) {
    std::string port;
    for (unsigned i = 0; i < ports; ++i) {
        port += (i == 0 ? "\"" : ",\"") + std::to_string(i) + R"(":{"type":"port"})";
    }
    return R"({"host":{"leaf":{"port":{)" + port + "}}}}";
}

// Seconds of this processor, the least of several times; what other programs do meanwhile does not count.
template <class Work>
double seconds(unsigned times, Work const & work) {
    double least = 1e9;
    while (times-- != 0) {
        std::clock_t const start = std::clock();
        work();
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

// Eight times the size takes eight times as long, or somewhat more since memory is slower than the cache;
// were anything looked for one by one, it would be sixty-four times.
void expectLinear(std::string (*text)(unsigned), unsigned many, std::string_view rootType) {
    constexpr unsigned factor = 8;
    constexpr double atMost = 3 * factor;
    JsonValue const small = parseJson(text(many / factor), "t.json");
    std::string const largeText = text(many);
    JsonValue const large = parseJson(largeText, "t.json");
    Vel::GenericIf smallModel;
    Vel::GenericIf largeModel;
    double const readSmall = seconds(2, [&] { smallModel = readDocument(small, "t.json", rootType); });
    double const readLarge = seconds(1, [&] { largeModel = readDocument(large, "t.json", rootType); });
    EXPECT_LT(readLarge, atMost * readSmall);
    std::string writtenLarge;
    double const writeSmall = seconds(2, [&] { written(smallModel); });
    double const writeLarge = seconds(1, [&] { writtenLarge = written(largeModel); });
    EXPECT_LT(writeLarge, atMost * writeSmall);
    EXPECT_EQ(writtenLarge.size(), largeText.size());
}

TEST(DocumentSize, TimeGrowsWithTheSizeOfEveryCollectionOfVersion2) { expectLinear(fabric, 2400, v2); }

TEST(DocumentSize, TimeGrowsWithTheSizeOfEveryCollectionOfVersion3) { expectLinear(fabric, 2400, v3); }

TEST(DocumentSize, TimeOfTheTreeGrowsWithItsSize) {
    auto const small = readText(fabric(300), v2);
    auto const large = readText(fabric(2400), v2);
    double const smallTree = seconds(2, [&] { documentTree(small); });
    EXPECT_LT(seconds(1, [&] { documentTree(large); }), 24 * smallTree);
}

TEST(DocumentSize, TwentyThousandPortsOfOneHostTakeTheirTimeAndNoMore) {
    expectLinear(portsAlone, 20000, v2);
}

}  // namespace
}  // namespace TopologyTools
