#include "tools/json/JsonPointer.h"

#include "tools/json/InputError.h"

namespace TopologyTools {
namespace {

[[noreturn]] void refuse(std::string_view pointer, char const * why) {
    throw JsonPointerError("not a JSON Pointer: " + quotedText(pointer) + "; " + why +
                           " (RFC 6901, section 3)");
}

// `whole` is what a message quotes.
std::string unescaped(std::string_view escaped, std::string_view whole) {
    std::string token;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        if (escaped[i] != '~') {
            token += escaped[i];
            continue;
        }
        ++i;
        if (i == escaped.size() || (escaped[i] != '0' && escaped[i] != '1')) {
            refuse(whole, "expected '0' or '1' after '~'");
        }
        token += escaped[i] == '0' ? '~' : '/';
    }
    return token;
}

}  // namespace

std::string escapeJsonPointerToken(std::string_view token) {
    std::string escaped;
    for (char const c : token) {
        if (c == '~') {
            escaped += "~0";
        } else if (c == '/') {
            escaped += "~1";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::string unescapeJsonPointerToken(std::string_view escaped) { return unescaped(escaped, escaped); }

std::string joinJsonPointer(std::string_view pointer, std::string_view token) {
    return std::string(pointer) + '/' + escapeJsonPointerToken(token);
}

std::string formatJsonPointer(std::vector<std::string> const & tokens) {
    std::string pointer;
    for (std::string const & token : tokens) {
        pointer += '/' + escapeJsonPointerToken(token);
    }
    return pointer;
}

std::vector<std::string> parseJsonPointer(std::string_view pointer) {
    std::vector<std::string> tokens;
    if (pointer.empty()) {
        return tokens;
    }
    if (pointer.front() != '/') {
        refuse(pointer, "expected \"\" or a text that starts with '/'");
    }
    std::size_t start = 1;
    for (;;) {
        std::size_t const end = pointer.find('/', start);
        tokens.push_back(unescaped(pointer.substr(start, end - start), pointer));
        if (end == std::string_view::npos) {
            return tokens;
        }
        start = end + 1;
    }
}

}  // namespace TopologyTools
