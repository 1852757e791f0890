// The state of a multi-chassis link aggregation.
#pragma once

#include <cstdint>

#include "platform/Vel/Export.h"
#include "platform/Vel/VelType.h"

namespace Mlag {

// The underlying type is fixed: a state that a newer writer knows is stored and passed on as it is.
enum class MlagState : std::uint32_t { unknown = 0, disabled = 1, inactive = 2, active = 3 };

VEL_EXPORT extern Vel::VelType const _velType_MlagState;

}  // namespace Mlag

template <>
struct Vel::VelTypeOf<Mlag::MlagState> {
    static constexpr VelType const * record = &Mlag::_velType_MlagState;
};
