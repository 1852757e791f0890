#include "platform/Mlag/MlagState.h"

#include <gtest/gtest.h>

#include "platform/Vel/Exceptions.h"
#include "platform/Vel/GenericIf.h"

namespace MlagTest {
namespace {

using Mlag::MlagState;

TEST(MlagState, IsReadAndPrintedByTheNameOfItsEnumerator) {
    Vel::VelType const * const type = Vel::typeNode("Mlag::MlagState");
    ASSERT_EQ(type, &Mlag::_velType_MlagState);
    std::pair<char const *, MlagState> const states[] = {{"unknown", MlagState::unknown},
                                                         {"disabled", MlagState::disabled},
                                                         {"inactive", MlagState::inactive},
                                                         {"active", MlagState::active}};
    std::uint32_t number = 0;
    for (auto const & [name, state] : states) {
        EXPECT_EQ(static_cast<std::uint32_t>(state), number++);
        EXPECT_EQ(type->fromStrRep(name).as<MlagState>(), state);
        EXPECT_EQ(Vel::GenericIf::wrap(state).strRep(), name);
    }
    EXPECT_EQ(type->enumerators().size(), number);
    EXPECT_THROW(type->fromStrRep("Active"), Vel::RangeException);
}

}  // namespace
}  // namespace MlagTest
