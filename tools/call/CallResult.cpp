#include "tools/call/CallResult.h"

#include <algorithm>

#include "tools/format/NaturalOrder.h"
#include "tools/format/PrintedName.h"
#include "tools/format/TextTable.h"

namespace TopologyTools {
namespace {

using nlohmann::ordered_json;
using Vel::GenericIf;

}  // namespace

std::vector<CallAnswer::Entry> CallResult::ordered(std::vector<CallAnswer::Entry> entries) const {
    auto const isBefore = [this](CallAnswer::Entry const & a, CallAnswer::Entry const & b) {
        return a.key.isObject() && b.key.isObject() && NaturalLess()(text(a.key), text(b.key));
    };
    std::stable_sort(entries.begin(), entries.end(), isBefore);
    return entries;
}

std::optional<std::string> CallResult::path(GenericIf const & object) const {
    auto const path = input_.path(object);
    return path ? path : output_.path(object);
}

std::string CallResult::text(GenericIf const & value) const {
    if (value.isNull()) return "null";
    if (!value.isObject()) return printedName(value.strRep());
    auto const path = this->path(value);
    return path ? printedName(*path) : "-";
}

std::string CallResult::text(CallAnswer const & answer, NamedOperation const & operation,
                             Vel::VelAttr const & attr, bool colours) const {
    if (operation.operation != Vel::kIterate) {
        bool const isNothing =
            answer.value.isNull() && (attr.type() == &Vel::_velType_void ||
                                      operation.operation == Vel::kAdd || operation.operation == Vel::kSet);
        if (isNothing) return {};
        std::string line = text(answer.value);
        if (answer.value.isObject()) line += "  " + inked(answer.value.typeName(), Ink::faint, colours);
        return line + '\n';
    }
    TextTable table({"KEY", "OBJECT", "TYPE"});
    for (CallAnswer::Entry const & entry : ordered(answer.entries)) {
        table.add({{text(entry.key)},
                   {text(entry.object)},
                   {entry.object.isNull() ? std::string() : entry.object.typeName()}});
    }
    return table.text("", colours);
}

ordered_json CallResult::json(GenericIf const & value) const {
    if (value.isNull()) return nullptr;
    ordered_json json{{"type", value.typeName()}};
    if (value.isObject()) {
        auto const path = this->path(value);
        json["path"] = path ? ordered_json(*path) : ordered_json();
    } else if (value.type() == Vel::VelTypeOf<bool>::record) {
        json["value"] = value.as<bool>();
    } else if (value.type() == Vel::VelTypeOf<unsigned int>::record) {
        json["value"] = value.as<unsigned int>();
    } else {
        json["value"] = value.strRep();
    }
    return json;
}

ordered_json CallResult::json(CallAnswer const & answer, NamedOperation const & operation) const {
    if (operation.operation != Vel::kIterate) return json(answer.value);
    ordered_json entries = ordered_json::array();
    for (CallAnswer::Entry const & entry : ordered(answer.entries)) {
        entries.push_back({{"key", json(entry.key)}, {"object", json(entry.object)}});
    }
    return entries;
}

}  // namespace TopologyTools
