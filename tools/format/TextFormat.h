#pragma once

#include <string>

#include "tools/format/TopologyView.h"

namespace TopologyTools {

// The model as a person reads it in a terminal: every host with its ports, port groups and MLAGs, then what
// joins the hosts.
std::string textFormat(TopologyView const & view, bool colours);

// How much of everything there is.
std::string summaryFormat(TopologyView const & view, bool colours);

// A port base as it is named in text about `host`: by its name alone where it is there and of that host.
// `withKind` says what it is as well, where its place does not tell.
std::string printedReference(TopologyView::Reference const & reference, std::string_view host, bool withKind);

}  // namespace TopologyTools
