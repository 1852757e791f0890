#pragma once

#include <string>
#include <vector>

#include "platform/Vel/VelType.h"

namespace TopologyTools {

// Every registered type, in the order of their names.
std::vector<Vel::VelType const *> registeredTypes();

// Those of that name, which may leave out namespaces. Throws std::invalid_argument when there is none.
std::vector<Vel::VelType const *> typesNamed(std::string const & name);
// The only one. Throws std::invalid_argument when there are several.
Vel::VelType const & typeNamed(std::string const & name);

}  // namespace TopologyTools
