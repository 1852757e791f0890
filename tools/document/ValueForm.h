// Values of the models in JSON: a bool is a boolean, an unsigned a number, a name or text a string, an
// enumeration the name of its enumerator, any other value the text that its type gives it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "platform/Vel/GenericIf.h"
#include "platform/Vel/VelType.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

// What stands where nothing was set: false, 0, the empty text, the enumerator of 0, the zero address. Nothing
// for a type that has no such value.
std::optional<Vel::GenericIf> defaultOf(Vel::VelType const & type);

// The value of `type` that `text` or `json` stands for; nothing when it stands for none.
std::optional<Vel::GenericIf> valueFromText(std::string_view text, Vel::VelType const & type);
std::optional<Vel::GenericIf> valueFromJson(JsonValue const & json, Vel::VelType const & type);

// For messages: what stands for a value of `type`, as in "expected ...".
std::string expectedValue(Vel::VelType const & type);
// For messages: what was found instead.
std::string foundValue(JsonValue const & json);
std::string foundValue(Vel::GenericIf const & value);

// JSON Schema of a value of `type`.
nlohmann::ordered_json valueSchema(Vel::VelType const & type);

}  // namespace TopologyTools
