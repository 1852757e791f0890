// What a check has found, for people and for programs.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/check/Difference.h"

namespace TopologyTools {

// By rule, faults first: every difference with its values, since when it is there, and what closes it.
std::string checkReport(std::vector<Difference> const & differences, bool colours);

// An object: the numbers of faults, of explained differences, and of those of each rule that occurs; then all
// differences. A value is left out where nothing stands.
nlohmann::ordered_json checkReportAsJson(std::vector<Difference> const & differences);

}  // namespace TopologyTools
