#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tools/json/InputError.h"

namespace TopologyTools {

// JSON texts (RFC 8259) read into a tree that remembers where everything stood, so that a message about a
// value can name its line and column.
//
// Strictness: besides what the grammar rules out, these are errors, since two readers may take them in two
// ways: a member name that occurs twice in one object, a byte order mark, bytes that are not UTF-8, an
// escaped surrogate without its partner, a number beyond the range of IEEE 754 binary64, and values nested
// more than `maxJsonNesting` deep. Strings may hold any character, U+0000 included.

enum class JsonKind : std::uint8_t { null, boolean, number, string, array, object };

// "null", "boolean", "number", "string", "array" or "object".
std::string_view jsonKindName(JsonKind kind);

struct JsonMember;

class JsonValue {
public:
    JsonValue();  // null, position unknown
    ~JsonValue();
    JsonValue(JsonValue const &);
    JsonValue(JsonValue &&) noexcept;
    JsonValue & operator=(JsonValue const &);
    JsonValue & operator=(JsonValue &&) noexcept;

    JsonKind kind() const { return static_cast<JsonKind>(content_.index()); }
    bool isNull() const { return kind() == JsonKind::null; }
    bool isString() const { return kind() == JsonKind::string; }
    bool isArray() const { return kind() == JsonKind::array; }
    bool isObject() const { return kind() == JsonKind::object; }

    // Where the value's first byte stands.
    TextPosition position() const { return position_; }

    // REQUIRES for each: the value is of that kind (std::bad_variant_access otherwise).
    bool boolean() const { return std::get<bool>(content_); }
    double number() const { return std::get<Number>(content_).value; }
    std::string const & numberText() const { return std::get<Number>(content_).text; }  // as it was written
    std::string const & string() const { return std::get<std::string>(content_); }
    std::vector<JsonValue> const & elements() const { return std::get<Elements>(content_); }
    std::vector<JsonMember> const & members() const {
        return std::get<Object>(content_).members;
    }  // as written

    // Null when the object has no such member. Takes logarithmic time.
    JsonMember const * member(std::string_view name) const;

private:
    friend class JsonTreeBuilder;

    struct Number {
        double value;
        std::string text;
    };
    struct Object {
        std::vector<JsonMember> members;
        std::vector<std::uint32_t> byName;  // Indices into `members`, sorted by name.
    };
    using Elements = std::vector<JsonValue>;

    // The alternatives are in the order of JsonKind.
    std::variant<std::monostate, bool, Number, std::string, Elements, Object> content_;
    TextPosition position_;
};

struct JsonMember {
    std::string name;
    TextPosition position;  // of the name
    JsonValue value;
};

constexpr std::size_t maxJsonNesting = 256;

// Reads the one JSON value that `bytes` holds; throws InputError. firstLine: the number in its file of the
// first line of `bytes`, for streams with one JSON text per line.
JsonValue parseJson(std::string_view bytes, std::string const & fileName, std::size_t firstLine = 1);

// A look at the outermost object of a text that may be broken, to tell what kind of file it is. Never throws
// on bad input, and stops at the first name that was looked for.
struct JsonGlance {
    std::optional<std::string> member;  // the first of the wanted names
    bool hasMembers = false;
    bool wellFormed = false;  // as far as it was read
};
JsonGlance glanceAtJson(std::string_view bytes, std::initializer_list<std::string_view> wanted);

}  // namespace TopologyTools
