// What the translator traces, in order.
//
// Usage
//     TraceLog traces;
//     sm->toHostV3(nullptr);
//     EXPECT_THAT(traces.functions(), ElementsAre("toHostV3"));
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Vel/Trace.h"

namespace TestSupport {

struct Trace {
    std::string facility;
    int level;
    std::string file;
    int line;
    std::string function;
    std::string message;

    friend bool operator==(Trace const &, Trace const &) = default;
};

// Enables the translator's trace points from its making to its end, and takes their records from every other
// sink. One at a time.
class TraceLog {
public:
    using Callback = std::function<void(Trace const & trace)>;

    TraceLog();
    ~TraceLog();
    TraceLog(TraceLog const &) = delete;
    TraceLog & operator=(TraceLog const &) = delete;

    std::vector<Trace> const & traces() const { return traces_; }
    std::vector<std::string> functions() const;
    std::vector<std::string> messages() const;
    void clear() { traces_.clear(); }

    // `callback` is called for each record from now on, once it stands here.
    void onTraceIs(Callback callback) { onTrace_ = std::move(callback); }

private:
    std::vector<Trace> traces_;
    Callback onTrace_;
};

}  // namespace TestSupport
