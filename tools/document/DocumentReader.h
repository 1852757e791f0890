// A JSON document read into a model.
//
// Usage
//     JsonValue const json = parseJson(bytes, "fabric.json");
//     auto const status = readDocument(json, "fabric.json", "NetworkTopology::StatusV2")
//                             .as<Vel::Ptr<NetworkTopology::StatusV2>>();
//
// The whole document is checked before the first object is made: a document with a fault changes nothing. The
// objects then enter the model in the order that ValueApplier.h tells, in the order of the text where it is
// free, each through the model's own mutator, so that whoever follows the status already sees every change.
#pragma once

#include <string>
#include <string_view>

#include "platform/Vel/GenericIf.h"
#include "tools/json/InputError.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

// Makes the model of a document. Throws InputError for a fault of the document, Vel::RangeException when no
// type is registered under the name `rootType`.
Vel::GenericIf readDocument(JsonValue const & document, std::string const & fileName,
                            std::string_view rootType);

// Loads a document into `root`, a status that holds nothing; std::invalid_argument when it holds something.
// An exception out of a reactor of the model ends the loading where it is.
void loadDocument(JsonValue const & document, std::string const & fileName, Vel::GenericIf const & root);

}  // namespace TopologyTools
