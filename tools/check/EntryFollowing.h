// Following one entry of a version-2 collection of references.
#pragma once

#include <string>
#include <string_view>

#include "tools/check/ExpectedOutput.h"

namespace TopologyTools {

// `entry` is what version 2 holds under `key`; null for nothing.
template <class Entry>
void followEntry(ExpectedOutput & output, bool isActive, ExpectedPtr const & object,
                 std::string_view collection, std::string const & key, Entry const * entry) {
    if (!isActive) {
        output.entryMissed(object, collection, key, entry != nullptr);
    } else if (entry) {
        auto const & target = entry->value();
        output.entryIs(object, collection, key, bool(target), output.portBaseOf(target.get()));
    } else {
        output.entryDel(object, collection, key);
    }
}

}  // namespace TopologyTools
