// The kinds of port bases, as attribute `type` tells them.
#pragma once

#include <cstdint>

namespace NetworkTopology {

// The underlying type is fixed: a kind that a newer writer knows is stored and passed on as it is.
enum class PortTypeV2 : std::uint32_t { unknown = 0, port = 1, portGroup = 2, mlag = 3 };

}  // namespace NetworkTopology
