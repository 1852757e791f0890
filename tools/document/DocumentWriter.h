// A whole model written as one JSON document.
//
// Usage
//     writeDocument(Vel::GenericIf::of(status), std::cout, 2);
//
// The document is the same for the same topology, whatever the order in which it was built. What it shows is
// told in ModelRenderer.h.
#pragma once

#include <iosfwd>

#include <nlohmann/json.hpp>

#include "platform/Vel/GenericIf.h"
#include "tools/document/ModelRenderer.h"

namespace TopologyTools {

// Writes the document of `root`, a status of either model, while it walks the model. With an `indent` every
// member stands on a line of its own and the text ends its last line; a negative `indent` puts the text on
// one line that it does not end. Throws DocumentError, and has then written a part of the document.
void writeDocument(Vel::GenericIf const & root, std::ostream & out, int indent);

// The same as a tree.
nlohmann::ordered_json documentTree(Vel::GenericIf const & root);

}  // namespace TopologyTools
