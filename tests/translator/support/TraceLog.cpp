#include "tests/translator/support/TraceLog.h"

namespace TestSupport {

namespace {

constexpr char kFacility[] = "NetworkTopologyAggregator";
constexpr int kLevel = 5;

}  // namespace

TraceLog::TraceLog() {
    Vel::traceSinkIs([this](Vel::TraceRecord const & record) {
        traces_.push_back({.facility = std::string(record.facility),
                           .level = record.level,
                           .file = std::string(record.file),
                           .line = record.line,
                           .function = std::string(record.function),
                           .message = std::string(record.message)});
        if (onTrace_) onTrace_(traces_.back());
    });
    Vel::traceLevelIs(kFacility, kLevel, true);
}

TraceLog::~TraceLog() {
    Vel::traceLevelIs(kFacility, kLevel, false);
    Vel::traceSinkIs({});
}

std::vector<std::string> TraceLog::functions() const {
    std::vector<std::string> functions;
    for (Trace const & trace : traces_) functions.push_back(trace.function);
    return functions;
}

std::vector<std::string> TraceLog::messages() const {
    std::vector<std::string> messages;
    for (Trace const & trace : traces_) messages.push_back(trace.message);
    return messages;
}

}  // namespace TestSupport
