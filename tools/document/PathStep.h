// A path through a document, as walks carry it on their stack. It becomes a JSON Pointer only when a message
// needs one.
#pragma once

#include <string>
#include <string_view>

namespace TopologyTools {

struct PathStep {
    PathStep const * parent;  // Null for the first step.
    std::string_view token;   // Not escaped. Not owned.
};

// The JSON Pointer to where `last` leads, after `base`; `base` itself for null.
std::string pointerTo(PathStep const * last, std::string_view base = {});

}  // namespace TopologyTools
