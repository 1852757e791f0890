// The framework's name type.
#pragma once

#include "platform/Vel/String.h"

namespace Vel {

// A string that names something; the key of entity collections. A type of its own, so that a name and a text
// are told apart where types are looked at.
class VEL_EXPORT Name : public String {
public:
    static VelType const _velType;

    constexpr Name() noexcept = default;
    Name(char const * bytes, unsigned int size) : String(bytes, size) {}
    Name(Text auto const & bytes) : String(bytes) {}
    // Shares the string's bytes.
    explicit Name(String const & string) noexcept : String(string) {}
};

}  // namespace Vel

template <>
struct std::hash<Vel::Name> {
    std::size_t operator()(Vel::Name const & name) const noexcept { return name.hash(); }
};
