#include "tests/support/AllocationOperators.h"
