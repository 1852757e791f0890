#include "tests/translator/support/WalkCount.h"

#include "platform/Vel/HashMap.h"

namespace TestSupport {

// The recorder, as in Recorders.cpp.

using Vel::HashMapGeneric;
using Vel::HashMapMember;

HashMapMember *
realOfFindNextBucket(HashMapGeneric const * self,
                     std::uint32_t & bucket) __asm__("__real__ZNK3Vel14HashMapGeneric14findNextBucketERj");
HashMapMember *
findNextBucket(HashMapGeneric const * self,
               std::uint32_t & bucket) __asm__("__wrap__ZNK3Vel14HashMapGeneric14findNextBucketERj");
HashMapMember * findNextBucket(HashMapGeneric const * self, std::uint32_t & bucket) {
    ++WalkCount::searches;
    return realOfFindNextBucket(self, bucket);
}

}  // namespace TestSupport
