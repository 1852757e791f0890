#pragma once

#include <vector>

#include "platform/NetworkTopology/StatusV2.h"
#include "tools/import/Importer.h"

namespace TopologyTools {

// Carries out an importer's operations on a version-2 model, through its mutators, one after the other:
// whoever follows the model sees a network being discovered. Ports and port groups get the type of their
// kind; a member is entered in its group and refers to it.
//
// REQUIRES: the operations are in the order that Importer.h promises.
void applyOperations(std::vector<Operation> const & operations, NetworkTopology::StatusV2 & status);

}  // namespace TopologyTools
