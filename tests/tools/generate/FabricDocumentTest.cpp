#include "tools/generate/FabricDocument.h"

#include <algorithm>
#include <ostream>
#include <set>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <nlohmann/json.hpp>

#include "tests/tools/document/DocumentTesting.h"

namespace TopologyTools {
namespace {

using nlohmann::json;

std::string fabric(FabricNumbers const & numbers) {
    std::ostringstream out;
    writeFabric(numbers, out);
    return std::move(out).str();
}

TEST(FabricDocument, Loads) {
    for (std::uint64_t hosts : {2, 3, 4, 5, 12, 50}) {
        for (std::uint64_t ports : {4, 5, 8, 17}) {
            for (std::uint64_t seed : {0, 7}) {
                std::string const text = fabric({hosts, ports, seed});
                // What the model holds is all that the text says: nothing defaulted, nothing lost.
                EXPECT_EQ(json::parse(written(readText(text, v2))), json::parse(text));
                json const document = json::parse(text);
                EXPECT_EQ(document.at("host").size(), hosts);
                for (json const & host : document.at("host")) EXPECT_EQ(host.at("port").size(), ports);
            }
        }
    }
}

TEST(FabricDocument, IsTheSameForTheSameNumbersOnly) {
    std::set<std::string> texts;
    for (FabricNumbers const & numbers :
         std::vector<FabricNumbers>{{20, 8, 0}, {20, 8, 1}, {20, 8, 2}, {21, 8, 0}, {20, 9, 0}}) {
        EXPECT_EQ(fabric(numbers), fabric(numbers));
        EXPECT_TRUE(texts.insert(fabric(numbers)).second);
    }
}

TEST(FabricDocument, AnotherSeedGivesOtherCablesAndAttributes) {
    json const a = json::parse(fabric({40, 8, 0}));
    json const b = json::parse(fabric({40, 8, 1}));
    auto const cables = [](json const & document) {
        std::set<std::pair<std::string, std::string>> all;
        for (auto const & [from, edge] : document.at("edge").items()) {
            for (auto const & [to, flag] : edge.at("toPort").items()) all.emplace(from, to);
        }
        return all;
    };
    EXPECT_NE(cables(a), cables(b));
    EXPECT_EQ(cables(a).size(), cables(b).size());
    EXPECT_NE(a.at("host").at("leaf-1").at("mlagSystemId"), b.at("host").at("leaf-1").at("mlagSystemId"));
    EXPECT_EQ(a.at("host").at("leaf-1").at("port"), b.at("host").at("leaf-1").at("port"));
}

TEST(FabricDocument, ThePairOfLeavesFitsTogether) {
    json const document = json::parse(fabric({3, 8, 0}));
    json const & leaf = document.at("host").at("leaf-1");
    json const & other = document.at("host").at("leaf-2");
    EXPECT_EQ(document.at("localhost"), "/host/leaf-1");
    EXPECT_EQ(leaf.at("hostname"), "leaf-1.fabric.example");
    EXPECT_EQ(leaf.at("hostnameAddedByOwner"), true);
    for (char const * shared : {"mlagSystemId", "mlagDomainId", "mlagState"}) {
        EXPECT_EQ(leaf.at(shared), other.at(shared));
    }
    EXPECT_EQ(leaf.at("mlagPeerLink"), "/host/leaf-1/portGroup/peer");
    EXPECT_EQ(leaf.at("port").at("eth-8").dump(),
              R"({"addedByOwner":true,"portGroup":"/host/leaf-1/portGroup/peer","type":"port"})");
    EXPECT_EQ(leaf.at("portGroup").at("peer").at("memberPort").dump(),
              R"({"eth-7":"/host/leaf-1/port/eth-7","eth-8":"/host/leaf-1/port/eth-8"})");
    EXPECT_EQ(leaf.at("portGroup").at("bond-1").dump(),
              R"({"memberPort":{"eth-3":"/host/leaf-1/port/eth-3","eth-4":"/host/leaf-1/port/eth-4"},)"
              R"("mlag":"/host/leaf-1/mlag/mlag-1","type":"portGroup"})");
    EXPECT_EQ(leaf.at("mlag").at("mlag-1").dump(),
              R"({"localPortGroup":"/host/leaf-1/portGroup/bond-1",)"
              R"("peerPortGroup":"/host/leaf-2/portGroup/bond-1","secondaryName":"server-1","type":"mlag"})");
    EXPECT_EQ(leaf.at("mlagRaw").dump(),
              R"({"mlag-1":"/host/leaf-1/mlag/mlag-1","mlag-2":"/host/leaf-1/mlag/mlag-2"})");
    EXPECT_EQ(leaf.at("logicalPort").size(), 5u);
    EXPECT_EQ(leaf.at("logicalPort").at("peer"), "/host/leaf-1/portGroup/peer");
    EXPECT_EQ(document.at("host").at("spine-1").at("logicalPort").size(), 8u);
    json const & edges = document.at("edge");
    EXPECT_EQ(edges.size(), 2u * (2 * 2 + 2 + 1));  // Each way: two uplinks of two leaves, peer ports, group.
    EXPECT_EQ(edges.at("/host/leaf-1/portGroup/peer").dump(),
              R"({"toPort":{"/host/leaf-2/portGroup/peer":true}})");
}

TEST(FabricDocument, EveryLinkGoesBothWays) {
    json const document = json::parse(fabric({60, 12, 3}));
    std::size_t down = 0;
    for (auto const & [from, edge] : document.at("edge").items()) {
        for (auto const & [to, flag] : edge.at("toPort").items()) {
            EXPECT_EQ(document.at("edge").at(to).at("toPort").at(from), flag);
            down += flag == false;
        }
    }
    EXPECT_GT(down, 0u);
    EXPECT_LT(down, document.at("edge").size() / 4);
}

TEST(FabricDocument, ALeafThatIsAloneHasNoMlag) {
    for (auto const & [hosts, name] :
         std::vector<std::pair<std::uint64_t, std::string>>{{2, "leaf-1"}, {4, "leaf-3"}}) {
        json const document = json::parse(fabric({hosts, 4, 0}));
        json const & leaf = document.at("host").at(name);
        for (char const * member : {"mlag", "mlagRaw", "mlagPeerLink", "mlagSystemId", "mlagState"}) {
            EXPECT_FALSE(leaf.contains(member)) << member;
        }
        EXPECT_FALSE(leaf.at("port").at("eth-4").contains("portGroup"));
        EXPECT_EQ(leaf.at("portGroup").dump(), R"({"bond-1":{"memberPort":{"eth-2":"/host/)" + name +
                                                   R"(/port/eth-2"},"type":"portGroup"}})");
        EXPECT_EQ(leaf.at("logicalPort").at("bond-1"), "/host/" + name + "/portGroup/bond-1");
    }
}

// Counts what it is given, and what the program holds on the heap meanwhile.
class Counter final : public std::streambuf {
public:
    std::size_t bytes = 0;
    std::size_t mostHeld = 0;

private:
    int_type overflow(int_type next) override {
        char const c = traits_type::to_char_type(next);
        return xsputn(&c, 1), next;
    }
    std::streamsize xsputn(char const *, std::streamsize count) override {
        bytes += static_cast<std::size_t>(count);
        if (++pieces_ % 1000 == 0) mostHeld = std::max<std::size_t>(mostHeld, mallinfo2().uordblks);
        return count;
    }

    std::size_t pieces_ = 0;
};

TEST(FabricDocument, IsWrittenInConstantMemory) {
    Counter counter;
    std::ostream out(&counter);
    std::size_t const held = mallinfo2().uordblks;
    writeFabric({1000, 16, 0}, out);
    EXPECT_GT(counter.bytes, 2000000u);
    EXPECT_LT(counter.mostHeld, held + 10000);
}

}  // namespace
}  // namespace TopologyTools
