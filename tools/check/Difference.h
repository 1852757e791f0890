// One place where a version-3 model differs from what its version-2 model calls for, or from what its
// translator must have made of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/check/ExpectedModel.h"
#include "tools/check/Rule.h"

namespace TopologyTools {

// A change of version 2 that closes a difference.
struct Remedy {
    std::string sentence;
    // The same as JSON Patch operations; empty where a few lines cannot do it, or not now.
    std::vector<nlohmann::ordered_json> lines;
};

struct Difference {
    std::string path;  // JSON Pointer into the version-3 document.
    // As documents show it, defaults included; nothing where nothing stands.
    std::optional<nlohmann::json> present;
    std::optional<nlohmann::json> calledFor;
    std::optional<nlohmann::json> expected;  // What the translator must have made of the place.
    Provenance why;                          // Without a rule: a fault.
    Remedy remedy;                           // Not of a fault.

    bool isFault() const { return !why; }
};

}  // namespace TopologyTools
