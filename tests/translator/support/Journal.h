// Everything that can be seen of the translator at work, in one order: its traces, its writes and what
// becomes of its objects' flags.
//
// Usage
//     Journal journal;
//     v2->localhostIs(host);
//     EXPECT_THAT(journal.taken(), ElementsAre("trace toHostV3", "/ localhostIs(/host/leaf-1)"));
#pragma once

#include <utility>

#include "tests/translator/support/FlagLog.h"
#include "tests/translator/support/TraceLog.h"
#include "tests/translator/support/WriteLog.h"

namespace TestSupport {

class Journal {
public:
    Journal() : flags_([this](FlagWrite const & write) { lines_.push_back(write.text()); }) {
        writes_.beforeWriteIs([this](Write const & write) { lines_.push_back(write.text()); });
        traces_.onTraceIs([this](Trace const & trace) { lines_.push_back("trace " + trace.function); });
    }

    Lines const & lines() const { return lines_; }
    Lines taken() { return std::exchange(lines_, {}); }

private:
    Lines lines_;
    WriteLog writes_;
    TraceLog traces_;
    FlagLog flags_;
};

}  // namespace TestSupport
