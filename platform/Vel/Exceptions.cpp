#include "platform/Vel/Exceptions.h"

namespace Vel {

// Out of line, so that each exception has one type identity across all libraries.
RangeException::~RangeException() = default;
OpNotSupportedException::~OpNotSupportedException() = default;

void throwRangeException(char const * text) { throw RangeException(text); }

}  // namespace Vel
