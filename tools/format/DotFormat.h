#pragma once

#include <string>

#include "tools/format/TopologyView.h"

namespace TopologyTools {

// The model as a graph in the DOT language of Graphviz. A host is a node that shows its ports, port groups
// and MLAGs as cells, and a link joins two cells. A link both ways has no arrow. Links that are part of a
// peer link are bold, and links with a false flag are dashed. Names stand in labels only: what identifies
// nodes and cells is made up, so that any name can be drawn.
std::string dotFormat(TopologyView const & view);

}  // namespace TopologyTools
