#include "tools/document/JsonSink.h"

#include <ostream>
#include <utility>

namespace TopologyTools {

JsonSink::~JsonSink() = default;

void JsonTextSink::beginObject() {
    out_ << '{';
    ++depth_;
    isEmpty_ = true;
}

void JsonTextSink::name(std::string_view name) {
    if (!isEmpty_) out_ << ',';
    isEmpty_ = false;
    newLine();
    quoted(name);
    out_ << (indent_ < 0 ? ":" : ": ");
}

void JsonTextSink::endObject() {
    --depth_;
    if (!isEmpty_) newLine();
    out_ << '}';
    isEmpty_ = false;
}

void JsonTextSink::null() { out_ << "null"; }
void JsonTextSink::boolean(bool value) { out_ << (value ? "true" : "false"); }
void JsonTextSink::number(std::uint32_t value) { out_ << std::to_string(value); }
void JsonTextSink::string(std::string_view value) { quoted(value); }

void JsonTextSink::newLine() {
    if (indent_ < 0) return;
    out_ << '\n';
    for (std::size_t i = depth_ * static_cast<std::size_t>(indent_); i != 0; --i) out_ << ' ';
}

void JsonTextSink::quoted(std::string_view text) {
    constexpr char const * digits = "0123456789abcdef";
    out_ << '"';
    std::size_t written = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x20 && byte != '"' && byte != '\\') continue;
        out_ << text.substr(written, i - written) << '\\';
        written = i + 1;
        switch (byte) {
        case '"':
        case '\\': out_ << text[i]; break;
        case '\b': out_ << 'b'; break;
        case '\f': out_ << 'f'; break;
        case '\n': out_ << 'n'; break;
        case '\r': out_ << 'r'; break;
        case '\t': out_ << 't'; break;
        default: out_ << "u00" << digits[byte >> 4] << digits[byte & 0xf];
        }
    }
    out_ << text.substr(written) << '"';
}

void JsonTreeSink::beginObject() { open_.push_back(&add(nlohmann::ordered_json::object())); }

nlohmann::ordered_json & JsonTreeSink::add(nlohmann::ordered_json value) {
    if (open_.empty()) return root_ = std::move(value);
    // Past the object's own insertion, which first looks at every member for one of that name.
    using Members = nlohmann::ordered_json::object_t;
    std::vector<Members::value_type> & members = open_.back()->get_ref<Members &>();
    return members.emplace_back(std::move(name_), std::move(value)).second;
}

}  // namespace TopologyTools
