#include "tools/check/Report.h"

#include <gtest/gtest.h>

#include "tests/tools/check/CheckTesting.h"

namespace TopologyTools {
namespace {

// A fault cannot be had from the program: it is made behind the translator's back.
class Faulty : public testing::Test {
protected:
    Faulty() {
        checked_.apply(R"({"op":"add","path":"/host/a","value":{"hostname":"a.example"}})");
        checked_.checker.v3()->host("a")->hostnameIs("b.example");
        checked_.checker.v3()->hostIs("b")->portIs("p");
    }

    Checked checked_;
};

TEST_F(Faulty, ModelsAreReportedAsText) {
    EXPECT_EQ(checkReport(checked_.checker.differences(), false),
              "2 faults; 0 differences follow from how the translator works.\n"
              "\n"
              "fault: 2 places not as the translator must make it\n"
              "  /host/a/hostname\n"
              "    present \"b.example\", expected \"a.example\", called for \"a.example\"\n"
              "  /host/b\n"
              "    present {...}, expected nothing, called for nothing\n");
}

TEST_F(Faulty, ModelsAreReportedAsJson) {
    EXPECT_EQ(nlohmann::json(checkReportAsJson(checked_.checker.differences())),
              nlohmann::json::parse(R"({"faults": 2, "explained": 0, "rules": {}, "differences": [
                  {"path": "/host/a/hostname", "calledFor": "a.example", "present": "b.example",
                   "expected": "a.example", "verdict": "fault"},
                  {"path": "/host/b", "present": {"port": {"p": {}}}, "verdict": "fault"}]})"));
}

TEST(Report, NamesWhatATerminalWouldMisread) {
    Checked checked;
    checked.apply(R"({"op":"add","path":"/host/a","value":{}})");
    checked.checker.v3()->hostIs(Vel::Name("\x1b[2J"));
    std::string const text = checkReport(checked.checker.differences(), false);
    EXPECT_EQ(text.find('\x1b'), std::string::npos) << text;
}

}  // namespace
}  // namespace TopologyTools
