#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace TopologyTools {

// A reader of lines of JSON Patch operations, who knows nothing else of the document: what comes out is what
// every reader has.
class Replay {
public:
    // Applies the operations of these lines. Tells how the document then differs from `expected`, or what
    // could not be applied; nothing when all is well.
    std::optional<std::string> fault(std::string_view lines, nlohmann::json const & expected);

private:
    nlohmann::json document_;
};

}  // namespace TopologyTools
