// What an operation answered, for people and for programs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/Vel/GenericIf.h"
#include "tools/call/NamedObjects.h"
#include "tools/call/NamedOperation.h"

namespace TopologyTools {

// Values as documents have them, and objects by their JSON Pointers in the documents of the models, as these
// are now.
class CallResult {
public:
    explicit CallResult(NamedObjects const & objects) : input_(objects.input()), output_(objects.output()) {}

    // One line for a value, nothing for a function that returns nothing; a table for a walk.
    std::string text(CallAnswer const & answer, NamedOperation const & operation, Vel::VelAttr const & attr,
                     bool colours) const;
    // Null for null; otherwise {"type": ..., "value": ...} or, of an object, {"type": ..., "path": ...},
    // where the path is null when the object stands in no document. A walk is an array of {"key": ...,
    // "object": ...}.
    nlohmann::ordered_json json(CallAnswer const & answer, NamedOperation const & operation) const;

private:
    // In the order of the walk, but those under objects, whose order depends on where these lie in memory, by
    // key.
    std::vector<CallAnswer::Entry> ordered(std::vector<CallAnswer::Entry> entries) const;
    std::optional<std::string> path(Vel::GenericIf const & object) const;
    std::string text(Vel::GenericIf const & value) const;
    nlohmann::ordered_json json(Vel::GenericIf const & value) const;

    DocumentPlaces input_;
    DocumentPlaces output_;
};

}  // namespace TopologyTools
