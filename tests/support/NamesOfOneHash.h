#pragma once

#include <vector>

#include "platform/Vel/Name.h"

namespace TestSupport {

// 2^blocks different names of equal length with one string hash. Always the same ones.
std::vector<Vel::Name> namesOfOneHash(unsigned blocks);

}  // namespace TestSupport
