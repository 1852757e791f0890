#include "tools/format/PrintedName.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <utility>

#include <locale.h>

#include "tools/json/SourceText.h"

namespace TopologyTools {
namespace {

struct Character {
    std::uint32_t codePoint = 0;
    std::size_t size = 0;  // In bytes; 0 for a byte that belongs to no character.
};

// The character at the front of `text`. REQUIRES: `text` is not empty.
Character firstCharacter(std::string_view text) {
    auto const lead = static_cast<unsigned char>(text.front());
    std::size_t const size = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    if (findInvalidUtf8(text.substr(0, size)) != std::string_view::npos) return {};
    std::uint32_t codePoint = size == 1 ? lead : lead & (0x7fu >> size);
    for (std::size_t i = 1; i < size; ++i) {
        codePoint = codePoint << 6 | (static_cast<unsigned char>(text[i]) & 0x3fu);
    }
    return {codePoint, size};
}

// Control characters, and what cannot be seen but changes the order or the meaning of what is around it.
bool isHidden(std::uint32_t codePoint) {
    static constexpr auto ranges = std::to_array<std::pair<std::uint32_t, std::uint32_t>>({
        {0x00, 0x1f},        // C0 controls
        {0x7f, 0x9f},        // DEL, C1 controls
        {0xad, 0xad},        // soft hyphen
        {0x61c, 0x61c},      // Arabic letter mark
        {0x180e, 0x180e},    // Mongolian vowel separator
        {0x200b, 0x200f},    // zero-width characters, marks of direction
        {0x2028, 0x202e},    // line and paragraph separator, embeddings and overrides of direction
        {0x2060, 0x206f},    // word joiner, invisible operators, isolates of direction
        {0xfe00, 0xfe0f},    // variation selectors
        {0xfeff, 0xfeff},    // byte order mark
        {0xfff9, 0xfffb},    // interlinear annotation
        {0xfffe, 0xffff},    // no characters; XML has no way to write them
        {0xe0000, 0xe0fff},  // tags, more variation selectors
    });
    return std::any_of(ranges.begin(), ranges.end(), [codePoint](auto const & range) {
        return codePoint >= range.first && codePoint <= range.second;
    });
}

std::string escaped(std::uint32_t codePoint) {
    switch (codePoint) {
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    default: break;
    }
    char text[11];
    std::snprintf(text, sizeof text, codePoint > 0xffff ? "\\U%08x" : "\\u%04x",
                  static_cast<unsigned>(codePoint));
    return text;
}

std::string escapedByte(char byte) {
    char text[5];
    std::snprintf(text, sizeof text, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    return text;
}

bool isBlankAtAnEnd(std::string_view name) { return name.front() == ' ' || name.back() == ' '; }

// wcwidth() goes by the locale, which the program otherwise has no need to set.
class Utf8Locale {
public:
    Utf8Locale() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {}
    ~Utf8Locale() {
        if (locale_) freelocale(locale_);
    }
    Utf8Locale(Utf8Locale const &) = delete;
    Utf8Locale & operator=(Utf8Locale const &) = delete;

    // 1 where nothing is known of the character.
    std::size_t width(std::uint32_t codePoint) const {
        if (!locale_ || codePoint < 0x80) return 1;
        locale_t const before = uselocale(locale_);
        int const columns = wcwidth(static_cast<wchar_t>(codePoint));
        uselocale(before);
        return columns < 0 ? 1 : static_cast<std::size_t>(columns);
    }

private:
    locale_t locale_;
};

}  // namespace

std::string printedName(std::string_view name) {
    if (name.empty()) return "\"\"";
    bool mustQuote = name == "-" || isBlankAtAnEnd(name) || name.find("  ") != std::string_view::npos ||
                     name.find(", ") != std::string_view::npos;
    std::string text;
    for (std::string_view rest = name; !rest.empty();) {
        Character const character = firstCharacter(rest);
        std::size_t const size = std::max<std::size_t>(character.size, 1);
        if (character.size == 0) {
            text += escapedByte(rest.front());
            mustQuote = true;
        } else if (isHidden(character.codePoint)) {
            text += escaped(character.codePoint);
            mustQuote = true;
        } else if (character.codePoint == '"') {
            text += "\\\"";
            mustQuote = true;
        } else if (character.codePoint == '\\') {
            text += "\\\\";
        } else {
            text += rest.substr(0, size);
        }
        rest.remove_prefix(size);
    }
    return mustQuote ? '"' + text + '"' : std::string(name);
}

std::size_t displayWidth(std::string_view text) {
    static Utf8Locale const locale;
    std::size_t width = 0;
    while (!text.empty()) {
        Character const character = firstCharacter(text);
        width += character.size == 0 ? 1 : locale.width(character.codePoint);
        text.remove_prefix(std::max<std::size_t>(character.size, 1));
    }
    return width;
}

}  // namespace TopologyTools
