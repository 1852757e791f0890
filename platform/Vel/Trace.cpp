#include "platform/Vel/Trace.h"

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <new>

#include "platform/Vel/Exceptions.h"

namespace Vel {

namespace {

using Sink = std::function<void(TraceRecord const &)>;

struct Registry {
    std::mutex mutex;
    std::deque<TraceFacility> facilities;
    std::shared_ptr<Sink const> sink;
};

void enableFromEnvironment(Registry & all);

// Never destroyed: translators with static lifetime trace to the end.
Registry & registry() {
    static auto * const instance = [] {
        auto * const made = new Registry;
        enableFromEnvironment(*made);
        return made;
    }();
    return *instance;
}

TraceFacility & facilityOf(Registry & all, std::string_view name) {
    for (TraceFacility & facility : all.facilities) {
        if (facility.name() == name) return facility;
    }
    return all.facilities.emplace_back(std::string(name));
}

bool isLevel(char c) { return c >= '0' && c <= '9'; }

void enableLevels(TraceFacility & facility, std::string_view levels) {
    for (std::size_t i = 0; i < levels.size(); ++i) {
        if (!isLevel(levels[i])) continue;
        int const first = levels[i] - '0';
        int last = first;
        if (i + 2 < levels.size() && levels[i + 1] == '-' && isLevel(levels[i + 2])) {
            last = levels[i + 2] - '0';
            i += 2;
        }
        for (int level = first; level <= last; ++level) {
            facility.enabledIs(TraceFacility::FacilityLevel(level), true);
        }
    }
}

void enableFromEnvironment(Registry & all) {
    char const * const variable = std::getenv("VEL_TRACE");
    std::string_view rest = variable ? variable : "";
    while (!rest.empty()) {
        std::size_t const comma = rest.find(',');
        std::string_view const item = rest.substr(0, comma);
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
        std::size_t const slash = item.rfind('/');
        if (slash != std::string_view::npos) {
            enableLevels(facilityOf(all, item.substr(0, slash)), item.substr(slash + 1));
        }
    }
}

void writeToStandardError(TraceRecord const & record) {
    std::string line(record.facility);
    line += '/' + std::to_string(record.level) + ' ';
    line.append(record.file) += ':' + std::to_string(record.line) + ' ';
    line.append(record.function) += ": ";
    for (char const c : record.message) {
        if (c == '\n') {
            line += "\\n";  // A record is one line.
        } else {
            line += c;
        }
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void TraceFacility::enabledIs(FacilityLevel level, bool on) {
    std::uint32_t const bit = 1u << level;
    std::uint32_t const levels = on ? levels_.load() | bit : levels_.load() & ~bit;
    levels_.store(levels, std::memory_order_relaxed);
    for (TraceSwitch * const attached : switches_) attached->levels_.store(levels, std::memory_order_relaxed);
}

void TraceFacility::attach(TraceSwitch & traceSwitch) {
    switches_.push_back(&traceSwitch);
    traceSwitch.levels_.store(levels_.load(), std::memory_order_relaxed);
}

void TraceFacility::detach(TraceSwitch const & traceSwitch) noexcept { std::erase(switches_, &traceSwitch); }

TraceHandle::TraceHandle(String const & facility, bool enabled, TraceSwitch * traceSwitch)
    : switch_(traceSwitch) {
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    facility_ = &facilityOf(all, facility.view());
    if (enabled) facility_->enabledIs(TraceFacility::FacilityLevel(0), true);
    if (switch_) facility_->attach(*switch_);
}

TraceHandle::~TraceHandle() {
    if (!switch_) return;
    std::lock_guard const lock(registry().mutex);
    facility_->detach(*switch_);
}

TraceHelper * TraceHelper::create(TraceHandle & handle, TraceFacility::FacilityLevel level, void * storage) {
    return new (storage) TraceHelper(handle.facility(), level);
}

void TraceHelper::trace(char const * file, int line, char const * function) noexcept {
    try {
        std::string const message = std::move(message_).str();
        TraceRecord const record{facility_.name(), level_, file, line, function, message};
        std::shared_ptr<Sink const> sink;
        {
            Registry & all = registry();
            std::lock_guard const lock(all.mutex);
            sink = all.sink;
        }
        if (sink) {
            (*sink)(record);
        } else {
            writeToStandardError(record);
        }
    } catch (...) {
    }
}

void traceLevelIs(std::string_view facility, int level, bool on) {
    if (level < 0 || level >= TraceFacility::kLevels) {
        throwRangeException(("trace level " + std::to_string(level) + " is not in 0 to 9").c_str());
    }
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    facilityOf(all, facility).enabledIs(TraceFacility::FacilityLevel(level), on);
}

void traceSinkIs(std::function<void(TraceRecord const &)> sink) {
    auto next = sink ? std::make_shared<Sink const>(std::move(sink)) : nullptr;
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    all.sink.swap(next);
}

void traceNotificationException() noexcept {
    try {
        static TraceHandle handle("Vel", false);
        alignas(TraceHelper) std::byte storage[sizeof(TraceHelper)];
        auto * const helper = TraceHelper::createIfEnabled(handle, TraceFacility::FacilityLevel(0), storage);
        if (!helper) return;
        EnsureTraceHelperIsDestroyed const guard(helper);
        try {
            throw;
        } catch (std::exception const & exception) {
            helper->stream() << "a callback threw: " << exception.what();
        } catch (...) {
            helper->stream() << "a callback threw";
        }
        helper->trace("NotifieeConst", __LINE__, "onNotificationException");
    } catch (...) {
    }
}

}  // namespace Vel
