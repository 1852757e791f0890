// What a port base is used as.
#pragma once

#include <cstdint>

#include "platform/Vel/Export.h"
#include "platform/Vel/VelType.h"

namespace NetworkTopologyV3 {

// The underlying type is fixed: a kind that a newer writer knows is stored and passed on as it is.
enum class PortType : std::uint32_t { unknown = 0, port = 1, portGroup = 2, mlag = 3 };

VEL_EXPORT extern Vel::VelType const _velType_PortType;

}  // namespace NetworkTopologyV3

template <>
struct Vel::VelTypeOf<NetworkTopologyV3::PortType> {
    static constexpr VelType const * record = &NetworkTopologyV3::_velType_PortType;
};
