// Compares three version-3 documents place by place: what is present, what is expected, what is called for.
#pragma once

#include <vector>

#include <nlohmann/json.hpp>

#include "tools/check/Difference.h"
#include "tools/check/Expectation.h"

namespace TopologyTools {

// What differs, in the order of the documents. What stands in one of them and not in another is one
// difference, with all that it holds. `input` is the document of the version-2 model that `expectation`
// follows.
std::vector<Difference> compareDocuments(nlohmann::json const & present, Expectation const & expectation,
                                         nlohmann::json const & calledFor, nlohmann::json const & input);

}  // namespace TopologyTools
