#include "platform/Vel/AllocTrack.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <mutex>

namespace Vel {

namespace {

struct Registry {
    std::mutex mutex;
    std::vector<AllocTrackTypeInfo *> records;
};

// Never destroyed: objects with static lifetime are freed after any static of ours would be.
Registry & registry() {
    static auto * const instance = new Registry;
    return *instance;
}

}  // namespace

std::string demangled(char const * mangled) {
    int status = 0;
    std::unique_ptr<char, void (*)(void *)> const name(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), std::free);
    return status == 0 ? name.get() : mangled;
}

AllocTrackTypeInfo * AllocTrackTypeInfo::recordOf(std::type_info const & type, unsigned int size) {
    std::string name = demangled(type.name());
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    for (AllocTrackTypeInfo * record : all.records) {
        if (record->typeName() == name) return record;
    }
    all.records.reserve(all.records.size() + 1);
    auto * const record = new AllocTrackTypeInfo(std::move(name), size);
    all.records.push_back(record);
    return record;
}

std::vector<AllocTrackTypeInfo const *> allocTrackTypes() {
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    return {all.records.begin(), all.records.end()};
}

}  // namespace Vel
