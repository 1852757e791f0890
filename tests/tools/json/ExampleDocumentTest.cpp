#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/SourceTree.h"
#include "tools/json/JsonPointer.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {
namespace {

JsonValue readExample() {
    std::ifstream file(TestSupport::sourcePath("examples/dual-homed-fabric.json"), std::ios::binary);
    return parseJson(std::string(std::istreambuf_iterator<char>(file), {}), "dual-homed-fabric.json");
}

bool resolves(JsonValue const & document, std::string const & pointer) {
    JsonValue const * value = &document;
    for (std::string const & token : parseJsonPointer(pointer)) {
        JsonMember const * const member = value->isObject() ? value->member(token) : nullptr;
        if (member == nullptr) {
            return false;
        }
        value = &member->value;
    }
    return true;
}

// Every pointer below `value`, as a name or as a string.
void collectPointers(JsonValue const & value, std::vector<std::string> & pointers) {
    if (value.isString() && value.string().substr(0, 1) == "/") {
        pointers.push_back(value.string());
    }
    if (value.isObject()) {
        for (JsonMember const & member : value.members()) {
            if (member.name.substr(0, 1) == "/") {
                pointers.push_back(member.name);
            }
            collectPointers(member.value, pointers);
        }
    }
}

TEST(ExampleDocument, EveryPointerInItResolves) {
    JsonValue const document = readExample();
    std::vector<std::string> pointers;
    collectPointers(document, pointers);
    EXPECT_EQ(pointers.size(), 489U);
    for (std::string const & pointer : pointers) {
        EXPECT_TRUE(resolves(document, pointer)) << pointer;
    }
    EXPECT_FALSE(resolves(document, "/host/leaf-9"));
}

TEST(ExampleDocument, EveryEdgeHasItsReturn) {
    JsonValue const document = readExample();
    EXPECT_EQ(document.member("host")->value.members().size(), 20U);
    std::set<std::pair<std::string, std::string>> edges;
    for (JsonMember const & edge : document.member("edge")->value.members()) {
        for (JsonMember const & to : edge.value.member("toPort")->value.members()) {
            edges.emplace(edge.name, to.name);
        }
    }
    EXPECT_EQ(edges.size(), 112U);
    for (auto const & [from, to] : edges) {
        EXPECT_EQ(edges.count({to, from}), 1U) << from;
    }
}

}  // namespace
}  // namespace TopologyTools
