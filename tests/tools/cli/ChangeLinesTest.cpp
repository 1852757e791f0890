#include "tools/cli/ChangeLines.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/cli/RunProgram.h"
#include "tools/json/InputError.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::StartsWith;

class Changes : public ::testing::Test {
protected:
    // The numbers of the lines that have been applied.
    std::vector<std::size_t> apply(std::string const & bytes, BadLine badLine) {
        ChangeLines changes(folder_.file("changes", bytes), *status_, badLine);
        std::vector<std::size_t> applied;
        while (auto const number = changes.applyNext()) applied.push_back(*number);
        exitStatus_ = changes.exitStatus();
        return applied;
    }

    TemporaryFolder const folder_;
    NetworkTopology::StatusV2::Ptr const status_ = NetworkTopology::StatusV2::StatusV2Is();
    ExitStatus exitStatus_ = kDone;
};

TEST_F(Changes, ApplyOneByOne) {
    EXPECT_THAT(apply("\n"
                      R"({"op":"add","path":"/host/a","value":{}})"
                      "\r\n\r\n \t\n"
                      R"({"op":"add","path":"/host/b","value":{}})",
                      BadLine::ends),
                ElementsAre(2, 5));
    EXPECT_EQ(exitStatus_, kDone);
    EXPECT_EQ(status_->host().size(), 2u);
}

TEST_F(Changes, AreAnnouncedBeforeTheyAreMade) {
    ChangeLines changes(folder_.file("changes", "\n"
                                                R"({"op":"add","path":"/host/a","value":{}})"
                                                "\nnonsense\n"),
                        *status_, BadLine::isToldAndSkipped);
    std::vector<std::size_t> hostsBefore;
    while (changes.applyNext([&](std::size_t number) {
        EXPECT_EQ(number, hostsBefore.size() + 1);
        hostsBefore.push_back(status_->host().size());
    })) {
    }
    EXPECT_THAT(hostsBefore, ElementsAre(0, 0, 1));
}

std::string const kOneBadLine = R"({"op":"add","path":"/host/a","value":{}})"
                                "\n"
                                R"({"op":"add","path":"/host/b/port/p","value":{}})"
                                "\n"
                                R"({"op":"add","path":"/host/c","value":{}})"
                                "\n";

TEST_F(Changes, EndAtABadLine) {
    try {
        apply(kOneBadLine, BadLine::ends);
        FAIL();
    } catch (InputError const & error) {
        EXPECT_THAT(error.what(), StartsWith(folder_.path("changes") + ":2:20: /host/b: expected a HostV2"));
    }
    EXPECT_EQ(status_->host().size(), 1u);
}

TEST_F(Changes, GoOnAfterABadLineWhenTold) {
    ::testing::internal::CaptureStderr();
    EXPECT_THAT(apply(kOneBadLine, BadLine::isToldAndSkipped), ElementsAre(1, 3));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              folder_.path("changes") + ":2:20: /host/b: expected a HostV2; found nothing\n");
    EXPECT_EQ(exitStatus_, kBadInput);
    EXPECT_EQ(status_->host().size(), 2u);
}

TEST_F(Changes, SayWhyTheyCannotBeRead) {
    for (std::string const & path : {folder_.path("missing"), folder_.path()}) {
        try {
            ChangeLines(path, *status_, BadLine::isToldAndSkipped).applyNext();
            FAIL();
        } catch (InputError const & error) {
            EXPECT_THAT(error.what(), StartsWith(path + ": cannot be read: "));
        }
    }
}

}  // namespace
}  // namespace TopologyTools
