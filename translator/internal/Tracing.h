// The translator's trace points. For the translator's own sources only.
//
// A disabled trace point costs one load of a word at a constant address and one predictable branch;
// everything else stands out of line.
#pragma once

#include "platform/Vel/Trace.h"

namespace NetworkTopologyAggregator {

inline constexpr Vel::TraceFacility::FacilityLevel kTraceLevel{5};

// Of this library alone, so that its address needs no table.
[[gnu::visibility("hidden")]] extern constinit Vel::TraceSwitch traceSwitch;

#ifdef NTA_WITHOUT_TRACING
inline constexpr bool kTraces = false;
#else
inline constexpr bool kTraces = true;
#endif

// Writes `signature` as the message of a record with file "V2Sm" and the short name `function`.
[[gnu::cold]] void traceSignature(char const * signature, char const * function, int line);

// `line` is the caller's. (Clang 14 has no std::source_location with the library used here.)
inline void traced(char const * signature, char const * function, int line = __builtin_LINE()) {
    if (kTraces && traceSwitch.enabled<kTraceLevel>()) [[unlikely]] {
        traceSignature(signature, function, line);
    }
}

// Traces, and then does the `lookup()`, whose result is given back. For lookups that call nothing else: a
// trace in the same function would cost them the saving of registers, traced or not. By value, because what
// has an address has to be in memory.
template <class Lookup>
[[gnu::cold, gnu::noinline]] auto tracedBefore(char const * signature, char const * function, int line,
                                               Lookup lookup) {
    traceSignature(signature, function, line);
    return lookup();
}
template <class Lookup>
auto traced(char const * signature, char const * function, Lookup const & lookup,
            int line = __builtin_LINE()) {
    if (kTraces && traceSwitch.enabled<kTraceLevel>()) [[unlikely]] {
        return tracedBefore(signature, function, line, lookup);
    }
    return lookup();
}

}  // namespace NetworkTopologyAggregator
