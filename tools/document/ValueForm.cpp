#include "tools/document/ValueForm.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "platform/Vel/Exceptions.h"

namespace TopologyTools {
namespace {

using Vel::GenericIf;
using Vel::VelType;

// What the records of value types do not tell of their texts.
struct TextForm {
    std::string_view type;
    char const * expected;
    char const * defaultText;  // Null for none.
    char const * pattern;      // ECMA-262, as JSON Schema has it.
};

constexpr std::array textForms{
    TextForm{"Keln::EthAddr", "an Ethernet address such as \"02:00:5e:10:00:01\"", "00:00:00:00:00:00",
             "^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}$"},
    TextForm{"NetworkTopologyV3::PortKey", "a JSON Pointer such as \"/host/leaf-1/port/eth-1\"", nullptr,
             "^/host/([^/~]|~[01])*/(port|portGroup|mlag)/([^/~]|~[01])*$"},
};

TextForm const * textForm(VelType const & type) {
    auto const found = std::find_if(textForms.begin(), textForms.end(),
                                    [&](TextForm const & form) { return form.type == type.name(); });
    return found == textForms.end() ? nullptr : found;
}

bool isBool(VelType const & type) { return &type == &Vel::Builtin<bool>::_velType; }
bool isUnsigned(VelType const & type) { return &type == &Vel::Builtin<unsigned int>::_velType; }
bool isPlainText(VelType const & type) {
    return &type == &Vel::String::_velType || &type == &Vel::Name::_velType;
}
bool isEnumeration(VelType const & type) { return type.kind() == VelType::Kind::enumeration; }

constexpr double greatestUnsigned = 4294967295.0;

}  // namespace

std::optional<GenericIf> defaultOf(VelType const & type) {
    if (isBool(type)) return GenericIf(false);
    if (isUnsigned(type)) return GenericIf(0U);
    if (isEnumeration(type)) return Vel::enumeratorFromNumber(type, 0);
    if (isPlainText(type)) return type.fromStrRep("");
    TextForm const * const form = textForm(type);
    if (!form || !form->defaultText) return std::nullopt;
    return type.fromStrRep(form->defaultText);
}

std::optional<GenericIf> valueFromText(std::string_view text, VelType const & type) {
    try {
        return type.fromStrRep(text);
    } catch (Vel::RangeException const &) {
        return std::nullopt;
    }
}

std::optional<GenericIf> valueFromJson(JsonValue const & json, VelType const & type) {
    if (isBool(type)) {
        if (json.kind() != JsonKind::boolean) return std::nullopt;
        return GenericIf(json.boolean());
    }
    if (isUnsigned(type)) {
        if (json.kind() != JsonKind::number) return std::nullopt;
        double const number = json.number();
        if (number < 0 || number > greatestUnsigned || std::trunc(number) != number) return std::nullopt;
        return GenericIf(static_cast<unsigned int>(number));
    }
    if (!json.isString()) return std::nullopt;
    return valueFromText(json.string(), type);
}

std::string expectedValue(VelType const & type) {
    if (isBool(type)) return "true or false";
    if (isUnsigned(type)) return "a whole number from 0 to 4294967295";
    if (isPlainText(type)) return "a string";
    if (isEnumeration(type)) {
        std::string names;
        for (Vel::VelEnumerator const & enumerator : type.enumerators()) {
            names += (names.empty() ? "one of " : ", ") + std::string(enumerator.name);
        }
        return names;
    }
    TextForm const * const form = textForm(type);
    return form ? form->expected : "the text of a value of type " + std::string(type.name());
}

std::string foundValue(JsonValue const & json) {
    switch (json.kind()) {
    case JsonKind::null: return "null";
    case JsonKind::boolean: return json.boolean() ? "true" : "false";
    case JsonKind::number: return json.numberText();
    case JsonKind::string: return quotedText(json.string());
    case JsonKind::array: return "an array";
    case JsonKind::object: return "an object";
    }
    return "";
}

std::string foundValue(GenericIf const & value) {
    bool const isBare = isBool(*value.type()) || isUnsigned(*value.type());
    return isBare ? value.strRep() : quotedText(value.strRep());
}

nlohmann::ordered_json valueSchema(VelType const & type) {
    if (isBool(type)) return {{"type", "boolean"}};
    if (isUnsigned(type)) return {{"type", "integer"}, {"minimum", 0}, {"maximum", 4294967295U}};
    if (isEnumeration(type)) {
        nlohmann::ordered_json names = nlohmann::ordered_json::array();
        for (Vel::VelEnumerator const & enumerator : type.enumerators()) names.push_back(enumerator.name);
        return {{"enum", names}};
    }
    nlohmann::ordered_json schema{{"type", "string"}};
    if (TextForm const * const form = textForm(type)) schema["pattern"] = form->pattern;
    return schema;
}

}  // namespace TopologyTools
