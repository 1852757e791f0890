#include "tools/cli/InputLines.h"

#include <utility>

namespace TopologyTools {

std::optional<std::string_view> InputLines::next() {
    std::size_t searched = start_;
    while (!interruption_.hasCome()) {
        std::size_t const end = bytes_.find('\n', searched);
        if (end != std::string::npos) {
            std::string_view const line = std::string_view(bytes_).substr(start_, end - start_);
            start_ = end + 1;
            ++number_;
            return line;
        }
        bytes_.erase(0, std::exchange(start_, 0));
        searched = bytes_.size();
        if (read()) continue;
        if (bytes_.empty() || interruption_.hasCome()) break;
        start_ = bytes_.size();
        ++number_;
        return bytes_;
    }
    return std::nullopt;
}

bool InputLines::read() {
    if (!interruption_.waitForInput(input_.descriptor())) return false;
    std::size_t const count = input_.read(buffer_);
    bytes_.append(buffer_.data(), count);
    return count != 0;
}

}  // namespace TopologyTools
