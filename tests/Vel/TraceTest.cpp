#include "platform/Vel/Trace.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Vel/Exceptions.h"
#include "tests/support/Allocations.h"

namespace VelTest {
namespace {

using Level = Vel::TraceFacility::FacilityLevel;

// A trace point, as libraries write them. Tells whether it was enabled.
template <class Write>
bool tracePointWith(Vel::TraceHandle & handle, int level, Write const & write) {
    alignas(Vel::TraceHelper) std::byte storage[sizeof(Vel::TraceHelper)];
    auto * const helper = Vel::TraceHelper::createIfEnabled(handle, Level(level), storage);
    if (!helper) return false;
    EXPECT_EQ(static_cast<void *>(helper), static_cast<void *>(storage));
    Vel::EnsureTraceHelperIsDestroyed const guard(helper);
    write(helper->stream());
    helper->trace("File", 42, "function");
    return true;
}

bool tracePoint(Vel::TraceHandle & handle, int level, std::string const & message = "what happened") {
    return tracePointWith(handle, level, [&](std::ostream & out) { out << message; });
}

std::string levelsOf(Vel::TraceHandle const & handle) {
    std::string levels;
    for (int level = 0; level < Vel::TraceFacility::kLevels; ++level) {
        if (handle.facility().enabled(Level(level))) levels += std::to_string(level);
    }
    return levels;
}

std::string levelsOf(char const * facility) { return levelsOf(Vel::TraceHandle(facility, false)); }

// Each test has a facility of its own, all of whose levels are off before and after.
class Trace : public testing::Test {
protected:
    Trace() {
        Vel::traceSinkIs([this](Vel::TraceRecord const & record) {
            records_.push_back(std::string(record.facility) + '/' + std::to_string(record.level) + ' ' +
                               std::string(record.file) + ':' + std::to_string(record.line) + ' ' +
                               std::string(record.function) + ": " + std::string(record.message));
        });
    }
    ~Trace() override { Vel::traceSinkIs({}); }

    std::string const facility_ = testing::UnitTest::GetInstance()->current_test_info()->name();
    Vel::TraceHandle handle_{facility_, false};
    std::vector<std::string> records_;
};

TEST_F(Trace, WritesNothingWhileDisabled) {
    bool evaluated = false;
    TestSupport::AllocationCount const count;
    for (int level = 0; level < 10; ++level) {
        EXPECT_FALSE(tracePointWith(handle_, level, [&](std::ostream &) { evaluated = true; }));
    }
    EXPECT_EQ(count.value(), 0U);
    EXPECT_FALSE(evaluated);
    EXPECT_TRUE(records_.empty());
}

TEST_F(Trace, HandsRecordsToTheSink) {
    Vel::traceLevelIs(facility_, 5, true);
    EXPECT_TRUE(tracePointWith(handle_, 5, [](std::ostream & out) { out << "port " << 7 << " up"; }));
    EXPECT_EQ(records_, std::vector<std::string>{facility_ + "/5 File:42 function: port 7 up"});
}

TEST_F(Trace, SwitchesLevelsOneByOne) {
    for (int level = 0; level < 10; ++level) {
        Vel::traceLevelIs(facility_, level, true);
        EXPECT_EQ(levelsOf(handle_), std::to_string(level));
        for (int other = 0; other < 10; ++other) EXPECT_EQ(tracePoint(handle_, other), other == level);
        Vel::traceLevelIs(facility_, level, false);
        EXPECT_EQ(levelsOf(handle_), "");
    }
    Vel::traceLevelIs(facility_, 3, true);
    Vel::traceLevelIs(facility_, 7, true);
    Vel::traceLevelIs(facility_, 7, true);
    EXPECT_EQ(levelsOf(handle_), "37");
    Vel::traceLevelIs(facility_, 3, false);
    Vel::traceLevelIs(facility_, 4, false);
    EXPECT_EQ(levelsOf(handle_), "7");
}

TEST_F(Trace, RefusesALevelThatThereIsNot) {
    EXPECT_THROW(Vel::traceLevelIs(facility_, -1, true), Vel::RangeException);
    EXPECT_THROW(Vel::traceLevelIs(facility_, 10, true), Vel::RangeException);
    try {
        Vel::traceLevelIs(facility_, 10, true);
    } catch (Vel::RangeException const & error) {
        EXPECT_STREQ(error.what(), "trace level 10 is not in 0 to 9");
    }
    EXPECT_EQ(levelsOf(handle_), "");
}

TEST_F(Trace, SharesItsSwitchesBetweenHandlesOfOneName) {
    Vel::TraceHandle other(facility_, false);
    Vel::TraceHandle stranger(facility_ + "x", false);
    EXPECT_EQ(&other.facility(), &handle_.facility());
    EXPECT_EQ(handle_.facility().name(), facility_);
    Vel::traceLevelIs(facility_, 1, true);
    EXPECT_TRUE(tracePoint(other, 1));
    EXPECT_FALSE(tracePoint(stranger, 1));
}

TEST_F(Trace, IsSwitchedBeforeItsFacilityIsInUse) {
    std::string const later = facility_ + " later";
    Vel::traceLevelIs(later, 2, true);
    Vel::TraceHandle handle(later, false);
    EXPECT_EQ(levelsOf(handle), "2");
}

TEST_F(Trace, EnablesLevelZeroOfAHandleOnRequest) {
    Vel::TraceHandle enabled(facility_ + " enabled", true);
    EXPECT_EQ(levelsOf(enabled), "0");
    EXPECT_EQ(levelsOf(handle_), "");
}

TEST_F(Trace, OutlivesItsHandle) {
    Vel::traceLevelIs(facility_, 5, true);
    auto handle = std::make_unique<Vel::TraceHandle>(facility_, false);
    Vel::TraceFacility & facility = handle->facility();
    handle.reset();
    EXPECT_TRUE(facility.enabled(Level(5)));
    EXPECT_EQ(facility.name(), facility_);
    Vel::traceLevelIs(facility_, 5, false);
    EXPECT_FALSE(facility.enabled(Level(5)));
}

TEST_F(Trace, ShowsAnAttachedSwitchItsLevels) {
    static Vel::TraceSwitch traceSwitch;
    EXPECT_TRUE(traceSwitch.enabled(Level(0)) && traceSwitch.enabled(Level(9))) << "until it is attached";
    Vel::traceLevelIs(facility_, 4, true);
    {
        Vel::TraceHandle const handle(facility_, false, &traceSwitch);
        for (int level = 0; level < 10; ++level)
            EXPECT_EQ(traceSwitch.enabled(Level(level)), level == 4) << level;
        Vel::traceLevelIs(facility_, 5, true);
        Vel::traceLevelIs(facility_, 4, false);
        for (int level = 0; level < 10; ++level)
            EXPECT_EQ(traceSwitch.enabled(Level(level)), level == 5) << level;
    }
    Vel::traceLevelIs(facility_, 6, true);
    EXPECT_FALSE(traceSwitch.enabled(Level(6))) << "it was detached with its handle";
}

TEST_F(Trace, ShowsEverySwitchOfAFacilityItsLevels) {
    Vel::TraceSwitch first;
    Vel::TraceSwitch second;
    auto firstHandle = std::make_unique<Vel::TraceHandle>(facility_, false, &first);
    auto secondHandle = std::make_unique<Vel::TraceHandle>(facility_, true, &second);
    EXPECT_TRUE(first.enabled(Level(0)) && second.enabled(Level(0)));
    firstHandle.reset();
    Vel::traceLevelIs(facility_, 0, false);
    EXPECT_FALSE(second.enabled(Level(0)));
}

TEST_F(Trace, FreesWhatAMessageNeeded) {
    // The helper stands in storage that is reused; the guard alone ends its life.
    Vel::traceLevelIs(facility_, 0, true);
    std::string const longMessage(10000, 'x');
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(tracePoint(handle_, 0, longMessage));
    EXPECT_EQ(records_.size(), 10U);
    Vel::EnsureTraceHelperIsDestroyed const ofNothing(nullptr);
}

TEST_F(Trace, PassesAnyMessageOnAsItIs) {
    Vel::traceLevelIs(facility_, 0, true);
    std::string const message("two\nlines\0and a NUL", 19);
    tracePoint(handle_, 0, message);
    EXPECT_EQ(records_.at(0), facility_ + "/0 File:42 function: " + message);
    tracePoint(handle_, 0, "");
    EXPECT_EQ(records_.at(1), facility_ + "/0 File:42 function: ");
}

TEST_F(Trace, SurvivesASinkThatThrows) {
    Vel::traceLevelIs(facility_, 0, true);
    int calls = 0;
    Vel::traceSinkIs([&](Vel::TraceRecord const &) {
        ++calls;
        throw std::runtime_error("no");
    });
    EXPECT_NO_THROW(tracePoint(handle_, 0));
    EXPECT_NO_THROW(tracePoint(handle_, 0));
    EXPECT_EQ(calls, 2);
}

TEST_F(Trace, LetsASinkTrace) {
    Vel::TraceHandle other(facility_ + " of the sink", true);
    Vel::traceLevelIs(facility_, 0, true);
    std::vector<std::string> facilities;
    Vel::traceSinkIs([&](Vel::TraceRecord const & record) {
        facilities.emplace_back(record.facility);
        if (record.facility == facility_) tracePoint(other, 0);
    });
    tracePoint(handle_, 0);
    EXPECT_EQ(facilities, (std::vector<std::string>{facility_, facility_ + " of the sink"}));
}

TEST_F(Trace, LetsASinkReplaceItself) {
    Vel::traceLevelIs(facility_, 0, true);
    std::string seen;
    auto const token = std::make_shared<int>(1);
    Vel::traceSinkIs([&seen, token](Vel::TraceRecord const & record) {
        Vel::traceSinkIs(
            [&seen](Vel::TraceRecord const & later) { seen += "new " + std::string(later.message); });
        // This function object is still there.
        seen += "old " + std::to_string(token.use_count()) + ' ' + std::string(record.message) + ", ";
    });
    tracePoint(handle_, 0, "first");
    tracePoint(handle_, 0, "second");
    EXPECT_EQ(seen, "old 2 first, new second");
    EXPECT_EQ(token.use_count(), 1) << "the old one is gone";
}

TEST_F(Trace, LetsASinkSwitchLevels) {
    Vel::traceLevelIs(facility_, 0, true);
    int calls = 0;
    Vel::traceSinkIs([&](Vel::TraceRecord const &) {
        ++calls;
        Vel::traceLevelIs(facility_, 0, false);
    });
    EXPECT_TRUE(tracePoint(handle_, 0));
    EXPECT_FALSE(tracePoint(handle_, 0));
    EXPECT_EQ(calls, 1);
}

TEST_F(Trace, LetsTheOldSinkTraceWhenItIsDestroyed) {
    struct Last {
        explicit Last(Vel::TraceHandle & it) : handle(it) {}
        ~Last() { tracePoint(handle, 0, "good-bye"); }
        Vel::TraceHandle & handle;
    };
    Vel::traceLevelIs(facility_, 0, true);
    auto last = std::make_shared<Last>(handle_);
    Vel::traceSinkIs([last](Vel::TraceRecord const &) {});
    last.reset();
    std::string seen;
    Vel::traceSinkIs([&](Vel::TraceRecord const & record) { seen = record.message; });
    EXPECT_EQ(seen, "good-bye");
}

TEST_F(Trace, IsSilentWhenThereIsNoMemory) {
    Vel::traceLevelIs(facility_, 0, true);
    std::string const longMessage(10000, 'x');
    EXPECT_NO_THROW(tracePointWith(handle_, 0, [&](std::ostream & out) {
        out << longMessage;
        TestSupport::Allocations::untilFailure = 0;
    }));
    TestSupport::Allocations::untilFailure = TestSupport::Allocations::kNever;
    EXPECT_LE(records_.size(), 1U);
}

// What reaches standard error is seen from outside, in a process of its own.

TEST(TraceDeathTest, WritesOneLineForEachRecordToStandardError) {
    EXPECT_EXIT(
        {
            Vel::TraceHandle handle("Facility", true);
            Vel::traceLevelIs("Facility", 5, true);
            Vel::traceSinkIs({});
            tracePoint(handle, 5, "what happened");
            tracePoint(handle, 6, "nobody asked");
            tracePoint(handle, 0, "two\nlines\n");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0),
        testing::StrEq("Facility/5 File:42 function: what happened\n"
                       "Facility/0 File:42 function: two\\nlines\\n\n"));
}

TEST(TraceDeathTest, GoesBackToStandardErrorWhenTheSinkIsTakenAway) {
    EXPECT_EXIT(
        {
            Vel::TraceHandle handle("Facility", true);
            Vel::traceSinkIs([](Vel::TraceRecord const &) {});
            tracePoint(handle, 0, "into the sink");
            Vel::traceSinkIs({});
            tracePoint(handle, 0, "beside it");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), testing::StrEq("Facility/0 File:42 function: beside it\n"));
}

// Runs itself again with the variable set, since it is read once, at the first use of tracing.
class TraceEnvironmentDeathTest : public testing::Test {
protected:
    explicit TraceEnvironmentDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~TraceEnvironmentDeathTest() override { ::unsetenv("VEL_TRACE"); }
    static void variableIs(char const * value) { ::setenv("VEL_TRACE", value, 1); }
    // Ends this process with what is enabled on standard error.
    [[noreturn]] static void tellLevels(std::vector<char const *> const & facilities) {
        for (char const * facility : facilities) std::cerr << facility << '=' << levelsOf(facility) << ' ';
        std::_Exit(0);
    }
};

TEST_F(TraceEnvironmentDeathTest, EnablesLevelsAtStart) {
    variableIs("One/5,Several/035,Range/2-4,Both/0-248,Slash/in/name/6,Again/1,Again/2");
    EXPECT_EXIT(tellLevels({"One", "Several", "Range", "Both", "Slash/in/name", "Again", "Other"}),
                testing::ExitedWithCode(0),
                testing::StrEq("One=5 Several=035 Range=234 Both=01248 Slash/in/name=6 Again=12 Other= "));
}

TEST_F(TraceEnvironmentDeathTest, IgnoresWhatItDoesNotUnderstand) {
    variableIs(",,NoLevels,Empty/,Odd/x5y,Backwards/4-2,Open/3-,Comma/1,,/7,Last/9,");
    EXPECT_EXIT(tellLevels({"NoLevels", "Empty", "Odd", "Backwards", "Open", "Comma", "Last"}),
                testing::ExitedWithCode(0),
                testing::StrEq("NoLevels= Empty= Odd=5 Backwards= Open=3 Comma=1 Last=9 "));
}

TEST_F(TraceEnvironmentDeathTest, MayBeEmpty) {
    variableIs("");
    EXPECT_EXIT(tellLevels({"Vel"}), testing::ExitedWithCode(0), testing::StrEq("Vel= "));
}

TEST_F(TraceEnvironmentDeathTest, MakesTracePointsWrite) {
    variableIs("NetworkTopologyAggregator/5");
    EXPECT_EXIT(
        {
            Vel::TraceHandle handle("NetworkTopologyAggregator", false);
            tracePoint(handle, 5);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0),
        testing::StrEq("NetworkTopologyAggregator/5 File:42 function: what happened\n"));
}

TEST_F(TraceEnvironmentDeathTest, IsReadOnce) {
    variableIs("Early/1");
    EXPECT_EXIT(
        {
            levelsOf("Early");
            variableIs("Late/1");
            tellLevels({"Early", "Late"});
        },
        testing::ExitedWithCode(0), testing::StrEq("Early=1 Late= "));
}

// Traces when the program ends.
struct TracesAtExit {
    ~TracesAtExit() {
        tracePoint(*handle, 0, "with a handle that has been destroyed");
        Vel::TraceHandle another("Facility", false);
        tracePoint(another, 0, "with a new handle");
    }
    Vel::TraceHandle * handle = nullptr;
};

TEST(TraceDeathTest, GoesOnWhileStaticObjectsAreDestroyed) {
    EXPECT_EXIT(
        {
            static TracesAtExit atExit;
            static Vel::TraceSwitch traceSwitch;
            static Vel::TraceHandle handle("Facility", true, &traceSwitch);  // Destroyed first.
            atExit.handle = &handle;
            std::exit(0);
        },
        testing::ExitedWithCode(0),
        testing::StrEq("Facility/0 File:42 function: with a handle that has been destroyed\n"
                       "Facility/0 File:42 function: with a new handle\n"));
}

}  // namespace
}  // namespace VelTest
