#include "tests/translator/support/FlagLog.h"

#include <algorithm>
#include <cstdint>
#include <typeinfo>
#include <utility>

#include "platform/Vel/AllocTrack.h"

namespace TestSupport {

namespace {

// Trivially destroyed, because objects with static lifetime are destroyed as late as any.
constinit FlagLog * recording = nullptr;

}  // namespace

FlagLog::FlagLog(Callback callback) : callback_(std::move(callback)) { recording = this; }

FlagLog::~FlagLog() { recording = nullptr; }

std::vector<std::string> FlagLog::lines() const {
    std::vector<std::string> lines;
    for (FlagWrite const & write : writes_) lines.push_back(write.text());
    return lines;
}

bool FlagLog::lastIs(Vel::PtrInterface const & object, std::string_view what) const {
    auto const last = std::find_if(writes_.rbegin(), writes_.rend(),
                                   [&](FlagWrite const & write) { return write.object == &object; });
    return last != writes_.rend() && last->what == what;
}

void FlagLog::record(Vel::PtrInterface const & object, std::string_view what) {
    if (!recording) return;
    // Within a base class's destructor this is the base class, which has no place here.
    std::string const name = Vel::demangled(typeid(object).name());
    if (!name.starts_with("NetworkTopologyAggregator::V2Sm")) return;
    FlagLog & log = *recording;
    // Both the release of the last reference and the destructor say so.
    if (what == "destroyed" && log.lastIs(object, what)) return;
    log.writes_.push_back(
        {.className = name.substr(name.rfind(':') + 1), .what = std::string(what), .object = &object});
    if (log.callback_) log.callback_(log.writes_.back());
}

// The recorders, as in Recorders.cpp. `flagIs` is private, so its function is written out.

using Vel::PtrInterface;

void realOfHasNotificationActiveIs(PtrInterface * self, bool active) __asm__(
    "__real__ZN3Vel12PtrInterface23hasNotificationActiveIsEb");
void hasNotificationActiveIs(PtrInterface * self,
                             bool active) __asm__("__wrap__ZN3Vel12PtrInterface23hasNotificationActiveIsEb");
void hasNotificationActiveIs(PtrInterface * self, bool active) {
    FlagLog::record(*self, active ? "active" : "inactive");
    realOfHasNotificationActiveIs(self, active);
}

void realOfFlagIs(PtrInterface const * self, std::uint32_t flag,
                  bool on) __asm__("__real__ZNK3Vel12PtrInterface6flagIsEjb");
void flagIs(PtrInterface const * self, std::uint32_t flag,
            bool on) __asm__("__wrap__ZNK3Vel12PtrInterface6flagIsEjb");
void flagIs(PtrInterface const * self, std::uint32_t flag, bool on) {
    if (flag == PtrInterface::kMarkedForDeletion) FlagLog::record(*self, on ? "marked" : "unmarked");
    if (flag == PtrInterface::kHeld) FlagLog::record(*self, "destroyed");
    realOfFlagIs(self, flag, on);
}

}  // namespace TestSupport
