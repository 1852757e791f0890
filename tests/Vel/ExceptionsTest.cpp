#include "platform/Vel/Exceptions.h"

#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

namespace VelTest {
namespace {

static_assert(std::is_base_of_v<std::range_error, Vel::RangeException>);
static_assert(std::is_base_of_v<std::logic_error, Vel::OpNotSupportedException>);

TEST(Exceptions, CarryTheirTextAsItIs) {
    char const * const text = "null _host parameter to mutator for Some::host not allowed\"";
    try {
        Vel::throwRangeException(text);
    } catch (std::range_error const & error) {
        EXPECT_STREQ(error.what(), text);
        EXPECT_NE(dynamic_cast<Vel::RangeException const *>(&error), nullptr);
    }
    EXPECT_THROW(Vel::throwRangeException(""), Vel::RangeException);
    EXPECT_STREQ(Vel::OpNotSupportedException("no").what(), "no");
}

}  // namespace
}  // namespace VelTest
