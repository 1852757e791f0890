// How often a walk over a collection, of a model or a registry, had to search for its next member: each walk
// does at its end, and one over many members does again and again. So work that grows with a collection shows
// here even if it changes and allocates nothing.
//
// The linker puts a counter before the search, as in WriteLog.h.
#pragma once

#include <cstdint>

namespace TestSupport {

// Searches since this object was made.
class WalkCount {
public:
    std::uint64_t value() const { return searches - before_; }

    // For the recorder.
    static inline std::uint64_t searches = 0;

private:
    std::uint64_t before_ = searches;
};

}  // namespace TestSupport
