// The framework's errors.
#pragma once

#include <stdexcept>

#include "platform/Vel/Export.h"

namespace Vel {

// A value that the receiver cannot take: null where an object is needed, a wrong type, an object that already
// stands elsewhere. Nothing has been changed when it is raised.
class VEL_EXPORT RangeException : public std::range_error {
public:
    using std::range_error::range_error;
    ~RangeException() override;
};

// An operation that an attribute does not offer through the generic interface.
class VEL_EXPORT OpNotSupportedException : public std::logic_error {
public:
    using std::logic_error::logic_error;
    ~OpNotSupportedException() override;
};

[[noreturn]] VEL_EXPORT void throwRangeException(char const * text);

}  // namespace Vel
