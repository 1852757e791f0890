#include "tools/json/InputError.h"

#include <cstdio>
#include <utility>

namespace TopologyTools {
namespace {

constexpr std::size_t longestQuote = 60;

// Control characters would break a message into lines, and a NUL would end what().
std::string withControlsEscaped(std::string_view text, bool quotesToo) {
    std::string out;
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
            out += escape;
        } else if (quotesToo && (c == '"' || c == '\\')) {
            out += '\\';
            out += c;
        } else {
            out += c;
        }
    }
    return out;
}

std::string whatOf(std::string const & file, TextPosition position, std::string const & message,
                   std::string const & pointer) {
    std::string out = locationPrefix(file, position);
    if (!pointer.empty()) {
        out += withControlsEscaped(pointer, false) + ": ";
    }
    return out + message;
}

}  // namespace

std::string locationPrefix(std::string_view file, TextPosition position) {
    std::string out(file);
    if (position.line != 0) {
        out += ':' + std::to_string(position.line);
        if (position.column != 0) {
            out += ':' + std::to_string(position.column);
        }
    }
    return out + ": ";
}

std::string quotedText(std::string_view text) {
    if (text.size() <= longestQuote) {
        return '"' + withControlsEscaped(text, true) + '"';
    }
    std::size_t end = longestQuote;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) {
        --end;
    }
    return '"' + withControlsEscaped(text.substr(0, end), true) + "...\"";
}

InputError::InputError(std::string file, TextPosition position, std::string message, std::string pointer)
    : std::runtime_error(whatOf(file, position, message, pointer)),
      file_(std::move(file)),
      position_(position),
      message_(std::move(message)),
      pointer_(std::move(pointer)) {}

}  // namespace TopologyTools
