// Published topologies, loaded and then changed, attached before and after: no fault, and attached before no
// difference until something changes.

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/SourceTree.h"
#include "tests/tools/check/CheckTesting.h"
#include "tools/cli/InputFile.h"
#include "tools/cli/Translation.h"
#include "tools/document/DocumentWriter.h"
#include "tools/json/InputError.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using nlohmann::ordered_json;

std::vector<std::string> networksOf(InputFile const & file) {
    std::vector<std::string> names;
    for (json const & network : json::parse(file.bytes).at("ietf-network:networks").at("network")) {
        names.push_back(network.at("network-id"));
    }
    return names;
}

// Every topology of a file of a format that can be read; none otherwise.
std::vector<LoadedTopology> topologiesOf(std::string const & path) {
    InputFile const file = readInput(path);
    if (!recognise(file.bytes)) return {};
    std::vector<LoadedTopology> all;
    try {
        all.push_back(readTopology(file, {}));
    } catch (InputError const & hasSeveral) {
        if (recognise(file.bytes) != "rfc8345") return {};
        for (std::string const & name : networksOf(file))
            all.push_back(readTopology(file, {.from = {}, .network = name}));
    }
    return all;
}

std::vector<std::string> files() {
    std::vector<std::string> found{TestSupport::sourcePath("examples/dual-homed-fabric.json"),
                                   TestSupport::sourcePath("examples/abilene.graphml")};
    // They lie beside the repository and are not part of it.
    std::string const published = TestSupport::sourcePath("../shared/data/");
    if (!fs::exists(published)) return found;
    for (auto const & entry : fs::recursive_directory_iterator(published)) {
        if (entry.is_regular_file()) found.push_back(entry.path());
    }
    return found;
}

// Removes the first hosts and adds them again, and replaces a port of each.
std::vector<ordered_json> changesOf(NetworkTopology::StatusV2::Ptr const & v2) {
    std::vector<ordered_json> lines;
    json const document = documentTree(Vel::GenericIf::of(v2));
    for (auto const & [name, host] : document.at("host").items()) {
        if (lines.size() >= 12) break;
        std::string const path = joinJsonPointer("/host", name);
        if (host.contains("port")) {
            std::string const port = joinJsonPointer(path + "/port", host.at("port").begin().key());
            lines.push_back({{"op", "replace"}, {"path", port}, {"value", {{"type", "port"}}}});
        }
        lines.push_back({{"op", "remove"}, {"path", path}});
        lines.push_back({{"op", "add"}, {"path", path}, {"value", json::object({{"hostname", "again"}})}});
    }
    return lines;
}

class PublishedTopologies : public testing::TestWithParam<std::string> {};

TEST_P(PublishedTopologies, HoldNoFault) {
    for (bool const isBefore : {true, false}) {
        for (LoadedTopology const & topology : topologiesOf(GetParam())) {
            auto const v2 = NetworkTopology::StatusV2::StatusV2Is();
            if (!isBefore) topology.fill(*v2);
            Checked checked(v2);
            if (isBefore) topology.fill(*v2);
            auto const loaded = checked.checker.differences();
            EXPECT_TRUE(faultsAmong(loaded).empty()) << described(loaded);
            EXPECT_TRUE(!isBefore || loaded.empty()) << described(loaded);
            for (ordered_json const & line : changesOf(v2)) {
                checked.apply(line.dump());
                auto const differences = checked.checker.differences();
                ASSERT_TRUE(faultsAmong(differences).empty()) << line << '\n' << described(differences);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Files, PublishedTopologies, testing::ValuesIn(files()), [](auto const & info) {
    std::string name = fs::path(info.param).filename();
    for (char & c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    }
    return name + '_' + std::to_string(info.index);
});

}  // namespace
}  // namespace TopologyTools
