// Tracing: records on named facilities, each with levels 0 to 9 that are switched one by one.
//
// Usage
//     Vel::TraceHandle & handle();        // a function-local static: Vel::TraceHandle("Facility", false)
//     alignas(Vel::TraceHelper) std::byte storage[sizeof(Vel::TraceHelper)];
//     if (auto * helper = Vel::TraceHelper::createIfEnabled(handle(), Vel::TraceFacility::FacilityLevel(5),
//     storage)) {
//         Vel::EnsureTraceHelperIsDestroyed const guard(helper);
//         helper->stream() << "what happened";
//         helper->trace("File", 42, "function");
//     }
//
// Records go to the sink that `traceSinkIs` has set, or else to standard error, one line each:
//     Facility/5 File:42 function: what happened
// The environment variable VEL_TRACE enables facilities at start: `Facility/levels`, comma separated, where
// levels are digits ("35": 3 and 5) or a range ("0-5").
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/Export.h"
#include "platform/Vel/String.h"

namespace Vel {

struct TraceRecord {
    std::string_view facility;
    int level;
    std::string_view file;
    int line;
    std::string_view function;
    std::string_view message;
};

class TraceSwitch;

class VEL_EXPORT TraceFacility {
public:
    enum FacilityLevel : int {};
    static constexpr int kLevels = 10;

    explicit TraceFacility(std::string name) : name_(std::move(name)) {}

    std::string const & name() const noexcept { return name_; }
    bool enabled(FacilityLevel level) const noexcept {
        return (levels_.load(std::memory_order_relaxed) >> level & 1u) != 0;
    }
    // REQUIRES: one thread at a time, for this and the two below.
    void enabledIs(FacilityLevel level, bool on);
    // From now on `traceSwitch` shows the facility's levels, until it is detached.
    void attach(TraceSwitch & traceSwitch);
    void detach(TraceSwitch const & traceSwitch) noexcept;

private:
    std::string const name_;
    std::atomic<std::uint32_t> levels_ = 0;
    std::vector<TraceSwitch *> switches_;
};

// What the trace points of one library test in place: a word with one bit per level, at a constant address.
// It is constant-initialised with every bit set, so that a trace point that runs before anything else takes
// the slow path once, where the library's handle attaches it.
class VEL_EXPORT TraceSwitch {
public:
    constexpr TraceSwitch() noexcept = default;

    bool enabled(TraceFacility::FacilityLevel level) const noexcept {
        return (levels_.load(std::memory_order_relaxed) >> level & 1u) != 0;
    }

    // The same in a load and a branch, for trace points on hot paths.
    template <TraceFacility::FacilityLevel kLevel>
    bool enabled() const noexcept {
#if defined(__x86_64__) && defined(__OPTIMIZE__) && defined(__GNUC__) && !defined(__clang__)
        // g++ loads what is atomic into a register before it tests it.
        asm goto("testl %1, %0\n\tjne %l[on]" : : "m"(levels_), "i"(1u << kLevel) : "cc" : on);
        return false;
    on:
        return true;
#else
        return enabled(kLevel);
#endif
    }

private:
    friend class TraceFacility;
    std::atomic<std::uint32_t> levels_ = ~std::uint32_t{0};
};

// The name under which one library traces. Handles of one name share their switches. The facility outlives
// the handle, so that objects with static lifetime may trace until the process ends.
class VEL_EXPORT TraceHandle {
public:
    // `enabled`: whether level 0 is on from the start. `traceSwitch`, when given, is attached to the facility
    // while the handle lives.
    TraceHandle(String const & facility, bool enabled, TraceSwitch * traceSwitch = nullptr);
    ~TraceHandle();
    TraceHandle(TraceHandle const &) = delete;
    TraceHandle & operator=(TraceHandle const &) = delete;

    TraceFacility & facility() const noexcept { return *facility_; }

private:
    TraceFacility * facility_;  // Never destroyed.
    TraceSwitch * switch_;
};

// One record in the making.
class VEL_EXPORT TraceHelper {
public:
    // A helper in `storage`, which has its size and alignment, when the facility is enabled at `level`; else
    // null.
    static TraceHelper * createIfEnabled(TraceHandle & handle, TraceFacility::FacilityLevel level,
                                         void * storage) {
        if (!handle.facility().enabled(level)) [[likely]]
            return nullptr;
        return create(handle, level, storage);
    }

    std::ostream & stream() noexcept { return message_; }
    // Hands the record to the sink. What a sink throws is dropped: tracing never changes what a program does.
    void trace(char const * file, int line, char const * function) noexcept;

private:
    friend class EnsureTraceHelperIsDestroyed;
    TraceHelper(TraceFacility const & facility, TraceFacility::FacilityLevel level)
        : facility_(facility), level_(level) {}
    ~TraceHelper() = default;
    static TraceHelper * create(TraceHandle & handle, TraceFacility::FacilityLevel level, void * storage);

    TraceFacility const & facility_;
    TraceFacility::FacilityLevel level_;
    std::ostringstream message_;
};

// Ends the life of a helper that stands in somebody's storage; null is allowed.
class VEL_EXPORT EnsureTraceHelperIsDestroyed {
public:
    explicit EnsureTraceHelperIsDestroyed(TraceHelper * helper) noexcept : helper_(helper) {}
    ~EnsureTraceHelperIsDestroyed() {
        if (helper_) helper_->~TraceHelper();
    }
    EnsureTraceHelperIsDestroyed(EnsureTraceHelperIsDestroyed const &) = delete;
    EnsureTraceHelperIsDestroyed & operator=(EnsureTraceHelperIsDestroyed const &) = delete;

private:
    TraceHelper * helper_;
};

// Switches one level of a facility, which need not be in use yet. Throws RangeException for a level outside
// 0 to 9.
VEL_EXPORT void traceLevelIs(std::string_view facility, int level, bool on);

// Where enabled records go; an empty function restores standard error.
VEL_EXPORT void traceSinkIs(std::function<void(TraceRecord const &)> sink);

// Traces the exception in flight on facility "Vel" at level 0.
void traceNotificationException() noexcept;

}  // namespace Vel
