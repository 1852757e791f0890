#pragma once

#include <iosfwd>

#include "tools/generate/Fabric.h"

namespace TopologyTools {

// Writes a version-2 document of the fabric, the same bytes for the same numbers. It has everything that a
// document can show, from three hosts on: with two there is no pair of leaves, and so no MLAG. What the plan
// leaves open (addresses, states, whether a link is up) the seed tells.
void writeFabric(FabricNumbers const & numbers, std::ostream & out);

}  // namespace TopologyTools
