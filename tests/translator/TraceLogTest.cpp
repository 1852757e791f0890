#include "tests/translator/support/TraceLog.h"

#include <gmock/gmock.h>

#include "translator/V2Sm.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::Gt;
using TestSupport::Trace;
using TestSupport::TraceLog;

TEST(TraceLog, HoldsWhatIsTracedInOrder) {
    auto const sm = NetworkTopologyAggregator::v2SmFactory("sm", nullptr, nullptr);
    TraceLog traces;
    sm->toHostV3(nullptr);
    sm->toPortV3(nullptr);
    EXPECT_THAT(traces.functions(), ElementsAre("toHostV3", "toPortV3"));
    EXPECT_THAT(traces.traces().front(),
                AllOf(Field(&Trace::facility, "NetworkTopologyAggregator"), Field(&Trace::level, 5),
                      Field(&Trace::file, "V2Sm"), Field(&Trace::line, Gt(0)),
                      Field(&Trace::message, "NetworkTopologyV3::Host::Ptr "
                                             "NetworkTopologyAggregator::V2Sm::toHostV3(const PtrConst&)")));
}

TEST(TraceLog, EndsWithItsScope) {
    auto const sm = NetworkTopologyAggregator::v2SmFactory("sm", nullptr, nullptr);
    testing::internal::CaptureStderr();
    { TraceLog traces; }
    sm->toHostV3(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(TraceLog, CallsBackForEachRecord) {
    auto const sm = NetworkTopologyAggregator::v2SmFactory("sm", nullptr, nullptr);
    TraceLog traces;
    std::vector<std::string> called;
    traces.onTraceIs([&](Trace const & trace) { called.push_back(trace.function); });
    sm->toMlagV3(nullptr);
    EXPECT_THAT(called, ElementsAre("toMlagV3"));
}

}  // namespace
