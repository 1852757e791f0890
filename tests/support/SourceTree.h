#pragma once

#include <string>
#include <string_view>

namespace TestSupport {

// The file of that path below the root of the source tree ("examples/abilene.graphml").
std::string sourcePath(std::string_view below);

}  // namespace TestSupport
