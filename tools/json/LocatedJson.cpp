#include "tools/json/LocatedJson.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "tools/json/JsonPointer.h"
#include "tools/json/SourceText.h"

namespace TopologyTools {
namespace {

// Hands the parser the bytes and tells how many it has taken, which the parser's own events do not.
class CountingIterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const *;
    using reference = char const &;

    CountingIterator(char const * at, char const ** taken) : at_(at), taken_(taken) {}

    reference operator*() const { return *at_; }
    CountingIterator & operator++() {
        *taken_ = ++at_;
        return *this;
    }
    CountingIterator operator++(int) {
        CountingIterator const before = *this;
        ++*this;
        return before;
    }
    bool operator==(CountingIterator const & other) const { return at_ == other.at_; }
    bool operator!=(CountingIterator const & other) const { return at_ != other.at_; }

private:
    char const * at_;
    char const ** taken_;
};

bool isJsonSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isStructural(char c) { return c == '{' || c == '}' || c == '[' || c == ']' || c == ':' || c == ','; }

// End of the number that starts at `at` (RFC 8259, section 6). The parser reads one byte beyond a number, but
// only if there is one, so its byte count cannot tell the end. REQUIRES: a whole number starts there.
std::size_t endOfNumber(std::string_view bytes, std::size_t at) {
    auto const peek = [&] { return at < bytes.size() ? bytes[at] : '\0'; };
    auto const digits = [&] {
        while (isDigit(peek())) {
            ++at;
        }
    };
    if (peek() == '-') {
        ++at;
    }
    if (peek() == '0') {
        ++at;
    } else {
        digits();
    }
    if (peek() == '.') {
        ++at;
        digits();
    }
    if (peek() == 'e' || peek() == 'E') {
        ++at;
        if (peek() == '+' || peek() == '-') {
            ++at;
        }
        digits();
    }
    return at;
}

struct Fault {
    std::size_t at;
    std::string message;
};

// What is wrong with the string token that starts at `start`, if anything.
std::optional<Fault> faultOfString(std::string_view bytes, std::size_t start) {
    auto const codeUnit = [&](std::size_t at) -> std::optional<unsigned> {  // at: the backslash
        if (bytes.substr(at, 2) != "\\u" || at + 6 > bytes.size() ||
            !std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(at) + 2,
                         bytes.begin() + static_cast<std::ptrdiff_t>(at) + 6, isHexDigit)) {
            return std::nullopt;
        }
        return static_cast<unsigned>(std::stoul(std::string(bytes.substr(at + 2, 4)), nullptr, 16));
    };
    std::size_t at = start + 1;
    while (at < bytes.size()) {
        auto const byte = static_cast<unsigned char>(bytes[at]);
        if (byte == '"') {
            return std::nullopt;
        }
        if (byte < 0x20) {
            return Fault{at, byteName(bytes[at]) + " in a string; expected control characters to be escaped"};
        }
        if (byte != '\\') {
            ++at;
            continue;
        }
        if (at + 1 == bytes.size()) {
            break;
        }
        if (bytes[at + 1] != 'u') {
            if (std::string_view("\"\\/bfnrt").find(bytes[at + 1]) == std::string_view::npos) {
                return Fault{at, "unknown escape; expected one of \\\" \\\\ \\/ \\b \\f \\n \\r \\t \\u"};
            }
            at += 2;
            continue;
        }
        std::optional<unsigned> const unit = codeUnit(at);
        if (!unit) {
            return Fault{at, "broken escape; expected four hexadecimal digits after \\u"};
        }
        bool const high = *unit >= 0xd800 && *unit <= 0xdbff;
        bool const low = *unit >= 0xdc00 && *unit <= 0xdfff;
        if (high) {
            std::optional<unsigned> const partner = codeUnit(at + 6);
            if (!partner || *partner < 0xdc00 || *partner > 0xdfff) {
                return Fault{at, "lone surrogate " + std::string(bytes.substr(at, 6)) +
                                     "; expected an escape from \\udc00 to \\udfff to follow"};
            }
            at += 6;
        } else if (low) {
            return Fault{at, "lone surrogate " + std::string(bytes.substr(at, 6)) +
                                 "; expected an escape from \\ud800 to \\udbff before it"};
        }
        at += 6;
    }
    return Fault{bytes.size(), "end of input in a string; expected '\"'"};
}

// The token at `at`, for a message.
std::string foundAt(std::string_view bytes, std::size_t at) {
    if (at == bytes.size()) {
        return "end of input";
    }
    char const c = bytes[at];
    if (c == '"') {
        return "a string";
    }
    std::size_t end = at + 1;
    if (isLetter(c) || isDigit(c) || c == '-') {
        auto const belongs = [](char b) {
            return isLetter(b) || isDigit(b) || b == '-' || b == '+' || b == '.' || b == '_';
        };
        while (end < bytes.size() && belongs(bytes[end])) {
            ++end;
        }
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
        return byteName(c);
    } else {
        while (end < bytes.size() && (static_cast<unsigned char>(bytes[end]) & 0xc0) == 0x80) {
            ++end;  // the rest of one UTF-8 sequence
        }
    }
    return quotedText(bytes.substr(at, end - at));
}

}  // namespace

// Receives the parser's events. The parser says neither where a token starts nor, for numbers, where it ends;
// both follow from the bytes, since between two events there is only white space and at most one ',' or ':'.
class JsonTreeBuilder : public nlohmann::json_sax<nlohmann::json> {
public:
    JsonTreeBuilder(SourceText const & text, char const * const & taken)
        : text_(text), bytes_(text.bytes()), taken_(taken) {}

    JsonValue takeRoot() { return std::move(root_); }

    // A NUL byte ends the input for the parser, and what follows it is not looked at.
    void requireEnd() const {
        std::size_t const at = skipSpace(end_);
        if (at != bytes_.size()) {
            throw text_.error(at, "expected end of input; found " + foundAt(bytes_, at));
        }
    }

    bool null() override {
        return scalar([](JsonValue &) {});
    }

    bool boolean(bool value) override {
        return scalar([value](JsonValue & v) { v.content_ = value; });
    }

    bool number_integer(number_integer_t value) override { return number(static_cast<double>(value)); }
    bool number_unsigned(number_unsigned_t value) override { return number(static_cast<double>(value)); }
    bool number_float(number_float_t value, string_t const &) override { return number(value); }

    bool string(string_t & value) override {
        return scalar([&value](JsonValue & v) { v.content_ = std::move(value); });
    }

    bool binary(binary_t &) override { return false; }  // JSON texts have none

    bool start_object(std::size_t) override {
        return start([](JsonValue & v) { v.content_.emplace<JsonValue::Object>(); });
    }

    bool start_array(std::size_t) override {
        return start([](JsonValue & v) { v.content_.emplace<JsonValue::Elements>(); });
    }

    bool key(string_t & name) override {
        Open & object = open_.back();
        object.namePosition = text_.position(startOfToken());
        object.name = std::move(name);
        object.nameInHand = true;
        end_ = taken();
        return true;
    }

    bool end_object() override {
        sealObject();
        return finish();
    }

    bool end_array() override { return finish(); }

    bool parse_error(std::size_t position, std::string const &,
                     nlohmann::detail::exception const & error) override {
        if (dynamic_cast<nlohmann::detail::out_of_range const *>(&error) != nullptr) {
            std::size_t const at = startOfToken();
            std::string const literal(bytes_.substr(at, endOfNumber(bytes_, at) - at));
            throw text_.error(
                at, "number out of range: " + quotedText(literal) + "; expected at most 1.8e308 in magnitude",
                pointer());
        }
        throw syntaxError(position);
    }

private:
    struct Open {
        JsonValue container;
        std::string name;  // of the member whose value is awaited
        TextPosition namePosition;
        bool nameInHand = false;
    };

    std::size_t taken() const { return static_cast<std::size_t>(taken_ - bytes_.data()); }

    std::size_t skipSpace(std::size_t at) const {
        while (at < bytes_.size() && isJsonSpace(bytes_[at])) {
            ++at;
        }
        return at;
    }

    // Start of the token whose event is being handled.
    std::size_t startOfToken() const {
        std::size_t at = skipSpace(end_);
        while (at < bytes_.size() && (bytes_[at] == ',' || bytes_[at] == ':')) {
            at = skipSpace(at + 1);
        }
        return at;
    }

    template <typename Fill>
    bool scalar(Fill const & fill) {
        JsonValue value;
        value.position_ = text_.position(startOfToken());
        fill(value);
        end_ = taken();
        attach(std::move(value));
        return true;
    }

    bool number(double number) {
        std::size_t const at = startOfToken();
        end_ = endOfNumber(bytes_, at);
        JsonValue value;
        value.position_ = text_.position(at);
        value.content_ = JsonValue::Number{number, std::string(bytes_.substr(at, end_ - at))};
        attach(std::move(value));
        return true;
    }

    template <typename Fill>
    bool start(Fill const & fill) {
        std::size_t const at = startOfToken();
        if (open_.size() == maxJsonNesting) {
            throw text_.error(at, "values nested too deep; expected at most " +
                                      std::to_string(maxJsonNesting) + " levels");
        }
        open_.emplace_back();
        open_.back().container.position_ = text_.position(at);
        fill(open_.back().container);
        end_ = taken();
        return true;
    }

    bool finish() {
        end_ = taken();
        JsonValue value = std::move(open_.back().container);
        open_.pop_back();
        attach(std::move(value));
        return true;
    }

    void attach(JsonValue value) {
        if (open_.empty()) {
            root_ = std::move(value);
            done_ = true;
            return;
        }
        Open & parent = open_.back();
        if (parent.container.isArray()) {
            std::get<JsonValue::Elements>(parent.container.content_).push_back(std::move(value));
        } else {
            std::get<JsonValue::Object>(parent.container.content_)
                .members.push_back({std::move(parent.name), parent.namePosition, std::move(value)});
            parent.name.clear();
            parent.nameInHand = false;
        }
    }

    // Sorts the object's members by name for look-up, and refuses a name that occurs twice.
    void sealObject() {
        auto & object = std::get<JsonValue::Object>(open_.back().container.content_);
        auto const & members = object.members;
        object.byName.resize(members.size());
        std::iota(object.byName.begin(), object.byName.end(), 0U);
        std::stable_sort(object.byName.begin(), object.byName.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return members[a].name < members[b].name; });
        std::optional<std::uint32_t> first;
        std::uint32_t again = 0;
        for (std::size_t i = 1; i < object.byName.size(); ++i) {
            std::uint32_t const a = object.byName[i - 1];
            std::uint32_t const b = object.byName[i];
            if (members[a].name == members[b].name && (!first || b < again)) {
                first = a;
                again = b;
            }
        }
        if (!first) {
            return;
        }
        TextPosition const firstAt = members[*first].position;
        std::string const name = members[again].name;
        TextPosition const at = members[again].position;
        throw InputError(text_.fileName(), at,
                         "duplicate member name " + quotedText(name) + "; first at line " +
                             std::to_string(firstAt.line) + ", column " + std::to_string(firstAt.column),
                         joinJsonPointer(pointerToOpen(), name));
    }

    // Pointer to the innermost open container.
    std::string pointerToOpen() const {
        std::string pointer;
        for (std::size_t i = 0; i + 1 < open_.size(); ++i) {
            pointer = joinJsonPointer(pointer, tokenOf(open_[i]));
        }
        return pointer;
    }

    // Pointer to the value that is awaited.
    std::string pointer() const {
        return open_.empty() ? std::string() : joinJsonPointer(pointerToOpen(), tokenOf(open_.back()));
    }

    static std::string tokenOf(Open const & open) {
        return open.container.isArray() ? std::to_string(open.container.elements().size()) : open.name;
    }

    // read: how many bytes the parser had read, one that it put back not counted.
    InputError syntaxError(std::size_t read) const {
        std::size_t at = skipSpace(end_);
        char separator = '\0';  // the ',' or ':' that the parser has accepted since the last event
        while (at < bytes_.size() && isStructural(bytes_[at]) && at + 1 < read) {
            separator = bytes_[at];
            at = skipSpace(at + 1);
        }
        if (at == bytes_.size() && end_ == 0) {
            return text_.error(at, "empty input; expected a JSON value");
        }
        if (at < bytes_.size() && bytes_[at] == '"') {
            if (std::optional<Fault> fault = faultOfString(bytes_, at)) {
                return text_.error(fault->at, std::move(fault->message));
            }
        }
        return text_.error(at, "expected " + expectedAfter(separator) + "; found " + foundAt(bytes_, at));
    }

    std::string expectedAfter(char separator) const {
        if (done_) {
            return "end of input";
        }
        if (open_.empty()) {
            return "a value";
        }
        Open const & open = open_.back();
        if (open.container.isArray()) {
            if (separator == ',') {
                return "a value";
            }
            return open.container.elements().empty() ? "a value or ']'" : "',' or ']'";
        }
        if (open.nameInHand) {
            return separator == ':' ? "a value" : "':'";
        }
        if (separator == ',') {
            return "a member name in quotation marks";
        }
        return open.container.members().empty() ? "a member name in quotation marks or '}'" : "',' or '}'";
    }

    SourceText const & text_;
    std::string_view bytes_;
    char const * const & taken_;
    std::size_t end_ = 0;  // offset after the last token that was an event
    std::vector<Open> open_;
    JsonValue root_;
    bool done_ = false;
};

namespace {

// Looks for names in the outermost object and keeps nothing else.
class GlancingReader : public nlohmann::json_sax<nlohmann::json> {
public:
    GlancingReader(std::initializer_list<std::string_view> wanted, JsonGlance & glance)
        : wanted_(wanted), glance_(glance) {}

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, string_t const &) override { return true; }
    bool string(string_t &) override { return true; }
    bool binary(binary_t &) override { return true; }
    bool start_object(std::size_t) override { return open(); }
    bool start_array(std::size_t) override { return open(); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t & name) override {
        if (depth_ != 1) {
            return true;
        }
        glance_.hasMembers = true;
        if (std::find(wanted_.begin(), wanted_.end(), name) == wanted_.end()) {
            return true;
        }
        glance_.member = std::move(name);
        return false;
    }

    bool parse_error(std::size_t, std::string const &, nlohmann::detail::exception const &) override {
        glance_.wellFormed = false;
        return false;
    }

private:
    bool open() {
        ++depth_;
        return true;
    }

    bool close() {
        --depth_;
        return true;
    }

    std::initializer_list<std::string_view> wanted_;
    JsonGlance & glance_;
    std::size_t depth_ = 0;
};

}  // namespace

std::string_view jsonKindName(JsonKind kind) {
    switch (kind) {
    case JsonKind::null: return "null";
    case JsonKind::boolean: return "boolean";
    case JsonKind::number: return "number";
    case JsonKind::string: return "string";
    case JsonKind::array: return "array";
    case JsonKind::object: return "object";
    }
    return "";
}

JsonValue::JsonValue() = default;
JsonValue::~JsonValue() = default;
JsonValue::JsonValue(JsonValue const &) = default;
JsonValue::JsonValue(JsonValue &&) noexcept = default;
JsonValue & JsonValue::operator=(JsonValue const &) = default;
JsonValue & JsonValue::operator=(JsonValue &&) noexcept = default;

JsonMember const * JsonValue::member(std::string_view name) const {
    Object const & object = std::get<Object>(content_);
    auto const at =
        std::lower_bound(object.byName.begin(), object.byName.end(), name,
                         [&](std::uint32_t i, std::string_view n) { return object.members[i].name < n; });
    if (at == object.byName.end() || object.members[*at].name != name) {
        return nullptr;
    }
    return &object.members[*at];
}

JsonValue parseJson(std::string_view bytes, std::string const & fileName, std::size_t firstLine) {
    SourceText const text(fileName, bytes, firstLine);
    if (bytes.substr(0, byteOrderMark.size()) == byteOrderMark) {
        throw text.error(0, "byte order mark; expected JSON text without one (RFC 8259, section 8.1)");
    }
    text.requireUtf8();
    char const * taken = bytes.data();
    JsonTreeBuilder builder(text, taken);
    nlohmann::json::sax_parse(CountingIterator(bytes.data(), &taken),
                              CountingIterator(bytes.data() + bytes.size(), &taken), &builder);
    builder.requireEnd();
    return builder.takeRoot();
}

JsonGlance glanceAtJson(std::string_view bytes, std::initializer_list<std::string_view> wanted) {
    JsonGlance glance;
    glance.wellFormed = true;
    GlancingReader reader(wanted, glance);
    nlohmann::json::sax_parse(bytes.begin(), bytes.end(), &reader);
    return glance;
}

}  // namespace TopologyTools
