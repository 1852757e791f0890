#pragma once

#include "platform/Vel/SlabPool.h"

namespace TestSupport {

// How many members one owner gets where their number must not matter. The sanitizers, under which there is no
// pool, need many times the time and the memory for each, and notice the first that goes wrong.
constexpr int kVeryMany = Vel::SlabPool::kPooled ? 1'000'000 : 50'000;

// The same of members whose names have one hash: each that enters is compared with all that are there.
constexpr int kVeryManyOfOneHash = Vel::SlabPool::kPooled ? 20'000 : 4'000;

}  // namespace TestSupport
