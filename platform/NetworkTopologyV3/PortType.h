// What a port base is used as.
#pragma once

#include <cstdint>

namespace NetworkTopologyV3 {

// The underlying type is fixed: any value is stored and shown to readers, defined here or not.
enum class PortType : std::uint32_t { unknown = 0, port = 1, portGroup = 2, mlag = 3 };

}  // namespace NetworkTopologyV3
