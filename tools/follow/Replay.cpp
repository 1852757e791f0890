#include "tools/follow/Replay.h"

#include <cstddef>

namespace TopologyTools {

using nlohmann::json;

std::optional<std::string> Replay::fault(std::string_view lines, json const & expected) {
    try {
        for (std::size_t end; (end = lines.find('\n')) != lines.npos; lines.remove_prefix(end + 1)) {
            document_.patch_inplace(json::array({json::parse(lines.substr(0, end))}));
        }
    } catch (json::exception const & error) {
        return "an operation cannot be applied: " + std::string(error.what());
    }
    if (document_ == expected) return std::nullopt;
    return "the output lacks " + json::diff(document_, expected).front().dump();
}

}  // namespace TopologyTools
