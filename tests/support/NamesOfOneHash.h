#pragma once

#include <vector>

#include "platform/Vel/Name.h"

namespace TestSupport {

// 2^blocks different names of equal length with one string hash. Always the same ones.
std::vector<Vel::Name> namesOfOneHash(unsigned blocks);

// 20,000 of such names in descending order: each enters a chain at its begin.
std::vector<Vel::Name> const & twentyThousandNamesOfOneHash();

}  // namespace TestSupport
