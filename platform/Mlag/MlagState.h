// The state of a multi-chassis link aggregation.
#pragma once

#include <cstdint>

namespace Mlag {

// The underlying type is fixed: a state that a newer writer knows is stored and passed on as it is.
enum class MlagState : std::uint32_t { unknown = 0, disabled = 1, inactive = 2, active = 3 };

}  // namespace Mlag
