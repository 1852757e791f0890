#include "tests/support/LiveObjects.h"

#include "platform/Vel/AllocTrack.h"

namespace TestSupport {

LiveObjects::LiveObjects() {
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes()) live_.push_back(type->live());
}

void LiveObjects::expectTheSameNow() const {
    std::size_t at = 0;
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes()) {
        std::uint64_t const before = at < live_.size() ? live_[at] : 0;
        EXPECT_EQ(type->live(), before) << "objects of " << type->typeName() << " that live";
        ++at;
    }
}

void LiveObjects::expectNone() {
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes()) {
        EXPECT_EQ(type->live(), 0U) << "objects of " << type->typeName() << " that live at the end";
    }
}

}  // namespace TestSupport
