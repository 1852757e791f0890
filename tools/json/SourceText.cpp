#include "tools/json/SourceText.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace TopologyTools {
namespace {

// Length of the well-formed sequence that starts at `at`, 0 if there is none.
std::size_t sequenceLength(std::string_view bytes, std::size_t at) {
    auto const byte = [&](std::size_t i) -> unsigned {
        return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0;
    };
    auto const continues = [&](std::size_t i) { return (byte(i) & 0xc0) == 0x80; };
    unsigned const lead = byte(0);
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xc2 && lead <= 0xdf) {
        return continues(1) ? 2 : 0;
    }
    if (lead >= 0xe0 && lead <= 0xef) {
        bool const overlong = lead == 0xe0 && byte(1) < 0xa0;
        bool const surrogate = lead == 0xed && byte(1) > 0x9f;
        return continues(1) && continues(2) && !overlong && !surrogate ? 3 : 0;
    }
    if (lead >= 0xf0 && lead <= 0xf4) {
        bool const overlong = lead == 0xf0 && byte(1) < 0x90;
        bool const tooLarge = lead == 0xf4 && byte(1) > 0x8f;
        return continues(1) && continues(2) && continues(3) && !overlong && !tooLarge ? 4 : 0;
    }
    return 0;
}

}  // namespace

SourceText::SourceText(std::string fileName, std::string_view bytes, std::size_t firstLine)
    : fileName_(std::move(fileName)), bytes_(bytes), firstLine_(firstLine), lineStarts_{0} {
    for (std::size_t i = bytes_.find('\n'); i != std::string_view::npos; i = bytes_.find('\n', i + 1)) {
        lineStarts_.push_back(i + 1);
    }
}

TextPosition SourceText::position(std::size_t offset) const {
    assert(offset <= bytes_.size());
    auto const next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    auto const line = static_cast<std::size_t>(next - lineStarts_.begin()) - 1;
    return {firstLine_ + line, offset - lineStarts_[line] + 1};
}

InputError SourceText::error(std::size_t offset, std::string message, std::string pointer) const {
    return InputError(fileName_, position(offset), std::move(message), std::move(pointer));
}

void SourceText::requireUtf8() const {
    std::size_t const at = findInvalidUtf8(bytes_);
    if (at != std::string_view::npos) {
        throw error(at,
                    "invalid UTF-8: " + byteName(bytes_[at]) + "; expected text encoded in UTF-8 (RFC 3629)");
    }
}

std::size_t findInvalidUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        std::size_t const length = sequenceLength(bytes, at);
        if (length == 0) {
            return at;
        }
        at += length;
    }
    return std::string_view::npos;
}

std::string byteName(char byte) {
    char text[16];
    std::snprintf(text, sizeof text, "byte 0x%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    return text;
}

}  // namespace TopologyTools
