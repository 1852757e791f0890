#include "tests/translator/support/WalkCount.h"

#include "platform/Vel/HashMap.h"

namespace TestSupport {

// The recorder, as in Recorders.cpp.

using Vel::HashMapIteratorGeneric;

void realOfAdvance(HashMapIteratorGeneric * self) __asm__("__real__ZN3Vel22HashMapIteratorGeneric7advanceEv");
void advance(HashMapIteratorGeneric * self) __asm__("__wrap__ZN3Vel22HashMapIteratorGeneric7advanceEv");
void advance(HashMapIteratorGeneric * self) {
    ++WalkCount::steps;
    realOfAdvance(self);
}

}  // namespace TestSupport
