// JSON Schema (draft 2020-12) of the documents of a model.
#pragma once

#include <nlohmann/json.hpp>

#include "platform/Vel/VelType.h"

namespace TopologyTools {

// What a document of `root` looks like, from its type record: every document that is written is valid, and
// so is every one that can be read. What a schema cannot say is left to the reader: that a reference leads to
// something, and that an entry stands under its target's name where the model wants that.
nlohmann::ordered_json schemaOf(Vel::VelType const & root);

}  // namespace TopologyTools
