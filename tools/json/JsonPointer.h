#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace TopologyTools {

// JSON Pointers (RFC 6901) in their string form: "" is the whole document, otherwise every reference token
// follows a '/'. Within a token '~' is written "~0" and '/' is written "~1"; all other bytes, NUL included,
// stand for themselves.

// A text that is not a JSON Pointer; the message quotes it and says what was expected.
class JsonPointerError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

// A reference token as it stands in a pointer (RFC 6901, section 3).
std::string escapeJsonPointerToken(std::string_view token);

// The inverse. Throws JsonPointerError when a '~' is not followed by '0' or '1'.
std::string unescapeJsonPointerToken(std::string_view escaped);

// The pointer to the member or element `token` (not escaped) of what `pointer` points to.
std::string joinJsonPointer(std::string_view pointer, std::string_view token);

// The pointer whose reference tokens are `tokens` (not escaped).
std::string formatJsonPointer(std::vector<std::string> const & tokens);

// The reference tokens of `pointer`, unescaped. Throws JsonPointerError when it is neither empty nor starts
// with '/', or when an escape is broken.
std::vector<std::string> parseJsonPointer(std::string_view pointer);

}  // namespace TopologyTools
