// How many steps have been taken over collections, of models and registries alike: work that grows with a
// collection shows here even if it changes and allocates nothing.
//
// The linker puts a counter before the iterators' step, as in WriteLog.h.
#pragma once

#include <cstdint>

namespace TestSupport {

// Steps since this object was made.
class WalkCount {
public:
    std::uint64_t value() const { return steps - before_; }

    // For the recorder.
    static inline std::uint64_t steps = 0;

private:
    std::uint64_t before_ = steps;
};

}  // namespace TestSupport
