#include "translator/internal/Tracing.h"

#include <cstddef>

namespace NetworkTopologyAggregator {

constinit Vel::TraceSwitch traceSwitch;

namespace {

Vel::TraceHandle & traceHandle() {
    static Vel::TraceHandle handle("NetworkTopologyAggregator", false, &traceSwitch);
    return handle;
}

}  // namespace

void traceSignature(char const * signature, char const * function, int line) {
    alignas(Vel::TraceHelper) std::byte storage[sizeof(Vel::TraceHelper)];
    Vel::TraceHelper * const helper = Vel::TraceHelper::createIfEnabled(traceHandle(), kTraceLevel, storage);
    Vel::EnsureTraceHelperIsDestroyed const guard(helper);
    if (!helper) return;
    helper->stream() << signature;
    helper->trace("V2Sm", line, function);
}

}  // namespace NetworkTopologyAggregator
