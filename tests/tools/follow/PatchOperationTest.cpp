#include "tools/follow/PatchOperation.h"

#include <sstream>

#include <gtest/gtest.h>

#include "tests/tools/follow/FollowTesting.h"
#include "tools/follow/Replay.h"

namespace TopologyTools {
namespace {

std::string line(PatchOperation const & operation) {
    std::ostringstream out;
    writeLine(operation, 12, out);
    return out.str();
}

TEST(PatchOperation, IsALine) {
    EXPECT_EQ(line({"remove", "/a\"~1\n"}), R"({"op":"remove","path":"/a\"~1\n","cause":12})"
                                            "\n");
    EXPECT_EQ(line({"add", "", R"({"b":null})"}), R"({"op":"add","path":"","value":{"b":null},"cause":12})"
                                                  "\n");
}

TEST(PatchOperation, EntriesOfOneCollectionAreSorted) {
    std::vector<PatchOperation> operations{
        {"add", "/c", "{}"},          {"add", "/c/b", "1", true}, {"add", "/c/a", "2", true},
        {"remove", "/c/b", {}, true}, {"add", "/c/a/z", "3"},     {"add", "/c/a/y", "4"},
        {"add", "/c/c", "5", true},   {"add", "/d/b", "6", true}, {"add", "/d/a", "7", true}};
    sortEntries(operations);
    EXPECT_EQ(spelled(operations), "add /c {}\n"
                                   "add /c/a 2\n"
                                   "add /c/b 1\n"
                                   "remove /c/b\n"
                                   "add /c/a/z 3\n"
                                   "add /c/a/y 4\n"
                                   "add /c/c 5\n"
                                   "add /d/a 7\n"
                                   "add /d/b 6\n");
    std::vector<PatchOperation> none;
    sortEntries(none);
    EXPECT_TRUE(none.empty());
}

TEST(Replay, FindsWhatTheOutputLacks) {
    Replay replay;
    auto const object = nlohmann::json::object();
    EXPECT_EQ(replay.fault("{\"op\":\"replace\",\"path\":\"\",\"value\":{},\"cause\":0}\n", object),
              std::nullopt);
    EXPECT_EQ(replay.fault("", object), std::nullopt);
    EXPECT_EQ(replay.fault("{\"op\":\"add\",\"path\":\"/"
                           "a\",\"value\":1}\n{\"op\":\"add\",\"path\":\"/b\","
                           "\"value\":2}\n",
                           {{"a", 1}, {"b", 2}}),
              std::nullopt);
    EXPECT_EQ(replay.fault("{\"op\":\"remove\",\"path\":\"/b\"}\n", {{"a", 3}}),
              "the output lacks {\"op\":\"replace\",\"path\":\"/a\",\"value\":3}");
    EXPECT_TRUE(replay.fault("{\"op\":\"remove\",\"path\":\"/b\"}\n", {{"a", 1}})
                    ->starts_with("an operation cannot be applied: "));
}

}  // namespace
}  // namespace TopologyTools
