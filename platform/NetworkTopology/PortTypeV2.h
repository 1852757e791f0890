// The kinds of port bases, as attribute `type` tells them.
#pragma once

#include <cstdint>

#include "platform/Vel/Export.h"
#include "platform/Vel/VelType.h"

namespace NetworkTopology {

// The underlying type is fixed: a kind that a newer writer knows is stored and passed on as it is.
enum class PortTypeV2 : std::uint32_t { unknown = 0, port = 1, portGroup = 2, mlag = 3 };

VEL_EXPORT extern Vel::VelType const _velType_PortTypeV2;

}  // namespace NetworkTopology

template <>
struct Vel::VelTypeOf<NetworkTopology::PortTypeV2> {
    static constexpr VelType const * record = &NetworkTopology::_velType_PortTypeV2;
};
