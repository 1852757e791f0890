#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/Vel/VelType.h"
#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/TypeNames.h"
#include "tools/format/TextTable.h"

namespace TopologyTools {
namespace {

using nlohmann::ordered_json;
using Vel::VelArg;
using Vel::VelAttr;
using Vel::VelType;

struct InspectOptions {
    std::string type;
    std::string format = "text";
};

std::string_view kindName(VelType::Kind kind) {
    switch (kind) {
    case VelType::Kind::nothing: return "nothing";
    case VelType::Kind::value: return "value";
    case VelType::Kind::enumeration: return "enumeration";
    case VelType::Kind::object: return "object";
    }
    return {};
}

std::string_view kindName(VelAttr::Kind kind) {
    switch (kind) {
    case VelAttr::Kind::value: return "value";
    case VelAttr::Kind::reference: return "reference";
    case VelAttr::Kind::function: return "function";
    case VelAttr::Kind::collection: return "collection";
    case VelAttr::Kind::valueCollection: return "map";
    }
    return {};
}

std::vector<std::string> operationNames(VelAttr const & attribute) {
    static constexpr auto names = std::to_array<std::pair<Vel::AttributeOperation, char const *>>({
        {Vel::kRead, "read"},
        {Vel::kSet, "set"},
        {Vel::kCall, "call"},
        {Vel::kLookUp, "look up"},
        {Vel::kAdd, "add"},
        {Vel::kRemove, "remove"},
        {Vel::kIterate, "iterate"},
    });
    std::vector<std::string> offered;
    for (auto const & [operation, name] : names) {
        if (attribute.offers(operation)) offered.emplace_back(name);
    }
    return offered;
}

std::string typeName(VelType const * type) { return type ? std::string(type->name()) : std::string(); }

std::string joined(std::vector<std::string> const & items) {
    std::string text;
    for (std::string const & item : items) text += (text.empty() ? "" : ", ") + item;
    return text;
}

std::string argumentText(std::span<VelArg const> arguments) {
    std::vector<std::string> items;
    for (VelArg const & argument : arguments)
        items.push_back(std::string(argument.name) + ": " + typeName(argument.type));
    return joined(items);
}

std::string keyText(VelAttr const & attribute) {
    return attribute.keyType() ? std::string(attribute.keyName()) + ": " + typeName(attribute.keyType())
                               : std::string();
}

std::string textOf(VelType const & type, bool colours) {
    std::string text =
        inked(type.name(), Ink::strong, colours) + "  " + std::string(kindName(type.kind())) + '\n';
    auto const fact = [&](std::string_view what, std::string const & value) {
        text += "  " + inked(what, Ink::faint, colours) + ' ' + value + '\n';
    };
    if (type.base()) fact("base", typeName(type.base()));
    if (type.isConstructible()) fact("constructed from", '(' + argumentText(type.ctorArgs()) + ')');

    TextTable enumerators({"VALUE", "ENUMERATOR"});
    enumerators.alignRight(0);
    for (auto const & enumerator : type.enumerators()) {
        enumerators.add({{std::to_string(enumerator.value)}, {enumerator.name}});
    }
    text += enumerators.text("  ", colours);

    TextTable attributes({"INDEX", "NAME", "KIND", "TYPE", "KEY", "ARGUMENTS", "OPERATIONS"});
    attributes.alignRight(0);
    for (VelAttr const & attribute : type.attributes()) {
        attributes.add(
            {{std::to_string(attribute.index())},
             {std::string(attribute.name())},
             {(attribute.isImmutable() ? "immutable " : "") + std::string(kindName(attribute.kind()))},
             {typeName(attribute.type())},
             {keyText(attribute)},
             {argumentText(attribute.args())},
             {joined(operationNames(attribute))}});
    }
    return text + attributes.text("  ", colours);
}

ordered_json jsonOf(std::span<VelArg const> arguments) {
    ordered_json list = ordered_json::array();
    for (VelArg const & argument : arguments) {
        list.push_back({{"name", argument.name}, {"type", typeName(argument.type)}});
    }
    return list;
}

ordered_json jsonOf(VelAttr const & attribute) {
    ordered_json json{{"index", attribute.index()},
                      {"name", attribute.name()},
                      {"kind", kindName(attribute.kind())},
                      {"type", typeName(attribute.type())}};
    if (attribute.isImmutable()) json["immutable"] = true;
    if (attribute.keyType())
        json["key"] = {{"name", attribute.keyName()}, {"type", typeName(attribute.keyType())}};
    if (!attribute.args().empty()) json["arguments"] = jsonOf(attribute.args());
    json["operations"] = operationNames(attribute);
    return json;
}

ordered_json jsonOf(VelType const & type) {
    ordered_json json{{"name", type.name()}, {"kind", kindName(type.kind())}};
    if (type.base()) json["base"] = typeName(type.base());
    if (type.isConstructible()) json["constructorArguments"] = jsonOf(type.ctorArgs());
    for (auto const & enumerator : type.enumerators()) {
        json["enumerators"].push_back({{"name", enumerator.name}, {"value", enumerator.value}});
    }
    json["attributes"] = ordered_json::array();
    for (VelAttr const & attribute : type.attributes()) json["attributes"].push_back(jsonOf(attribute));
    return json;
}

int inspect(InspectOptions const & options) {
    std::vector<VelType const *> const types =
        options.type.empty() ? registeredTypes() : typesNamed(options.type);
    std::string text;
    if (options.format == "json") {
        ordered_json json = ordered_json::array();
        for (VelType const * type : types) json.push_back(jsonOf(*type));
        text = json.dump(2) + '\n';
    } else {
        bool const colours = standardOutputWantsColours();
        for (VelType const * type : types) text += (text.empty() ? "" : "\n") + textOf(*type, colours);
    }
    Output("-").write(text);
    return kDone;
}

}  // namespace

Subcommand inspectCommand(CLI::App & program) {
    CLI::App * const command = program.add_subcommand("inspect", "Print what is registered about types");
    auto const options = std::make_shared<InspectOptions>();
    command->add_option("TYPE", options->type, "A type's name, with or without namespace; all if not given")
        ->type_name("");
    addChoice(*command, "--format", options->format, {"text", "json"},
              "text: tables (default); json: an array of types");
    return {command, [options] { return inspect(*options); }};
}

}  // namespace TopologyTools
