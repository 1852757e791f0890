// Counting and failing allocations of the running thread.
//
// A program that uses this includes tests/support/AllocationOperators.h in one of its sources.
#pragma once

#include <cstdint>
#include <limits>

namespace TestSupport {

struct Allocations {
    static constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

    static inline thread_local std::uint64_t made = 0;
    static inline thread_local std::uint64_t bytes = 0;
    static inline thread_local std::uint64_t untilFailure = kNever;
};

// Allocations that the running thread has made since this object was.
class AllocationCount {
public:
    std::uint64_t value() const { return Allocations::made - made_; }
    std::uint64_t bytes() const { return Allocations::bytes - bytes_; }

private:
    std::uint64_t made_ = Allocations::made;
    std::uint64_t bytes_ = Allocations::bytes;
};

// For a scope, every allocation of the running thread fails but the first `succeeding` ones.
class FailingAllocations {
public:
    explicit FailingAllocations(std::uint64_t succeeding = 0) { Allocations::untilFailure = succeeding; }
    ~FailingAllocations() { Allocations::untilFailure = Allocations::kNever; }
    FailingAllocations(FailingAllocations const &) = delete;
    FailingAllocations & operator=(FailingAllocations const &) = delete;
};

}  // namespace TestSupport
