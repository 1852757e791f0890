#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/tools/cli/RunProgram.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string generated(std::vector<std::string> const & options) {
    std::vector<std::string> arguments{"generate"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ProgramRun const run = runProgram(arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.messages, IsEmpty());
    return run.output;
}

TEST(Generate, GivesWhatTranslateTakes) {
    for (char const * hosts : {"2", "3", "40"}) {
        ProgramRun const run = runProgram({"translate", "-"}, {.input = generated({"--hosts", hosts})});
        EXPECT_EQ(run.status, 0) << run.messages;
        EXPECT_EQ(std::to_string(json::parse(run.output).at("host").size()), hosts);
    }
}

TEST(Generate, TakesPortsAndSeed) {
    std::string const usual = generated({"--hosts", "10"});
    EXPECT_EQ(generated({"--hosts=10", "--ports=8", "--seed=0"}), usual);
    EXPECT_NE(generated({"--hosts", "10", "--seed", "18446744073709551615"}), usual);
    json const wide = json::parse(generated({"--hosts", "10", "--ports", "1024"}));
    EXPECT_EQ(wide.at("host").at("spine-2").at("port").size(), 1024u);
}

TEST(Generate, GoesOnAfterWhatItKeepsForOneWrite) {
    std::string const text = generated({"--hosts", "500"});
    EXPECT_GT(text.size(), 1000000u);
    EXPECT_EQ(json::parse(text).at("host").size(), 500u);
    EXPECT_THAT(text, ::testing::EndsWith("}\n"));
}

TEST(Generate, SaysWhichNumbersItTakes) {
    struct Case {
        std::vector<std::string> arguments;
        char const * message;
    };
    for (Case const & bad : std::vector<Case>{
             {{}, "--hosts is required"},
             {{"--hosts"}, "--hosts"},
             {{"--hosts", "1"}, "--hosts: expected a whole number from 2 to 100000, found 1"},
             {{"--hosts", "100001"}, "--hosts: expected a whole number from 2 to 100000, found 100001"},
             {{"--hosts", "-3"}, "--hosts: expected a whole number from 2 to 100000, found -3"},
             {{"--hosts", "1e3"}, "--hosts: expected a whole number from 2 to 100000, found 1e3"},
             {{"--hosts", "0x10"}, "found 0x10"},
             {{"--hosts", "18446744073709551618"}, "found 18446744073709551618"},
             {{"--hosts", "5", "--ports", "3"}, "--ports: expected a whole number from 4 to 1024, found 3"},
             {{"--hosts", "5", "--ports", "many"}, "found many"},
             {{"--hosts", "5", "--seed", "1.5"},
              "--seed: expected a whole number from 0 to 18446744073709551615, found 1.5"},
             {{"--hosts", "5", "6"}, "unexpected argument \"6\""},
         }) {
        std::vector<std::string> arguments{"generate"};
        arguments.insert(arguments.end(), bad.arguments.begin(), bad.arguments.end());
        ProgramRun const run = runProgram(arguments);
        EXPECT_EQ(run.status, 2) << bad.message;
        EXPECT_THAT(run.output, IsEmpty());
        EXPECT_THAT(run.messages,
                    AllOf(HasSubstr(bad.message), HasSubstr("See topology-sync generate --help\n")));
    }
}

}  // namespace
}  // namespace TopologyTools
