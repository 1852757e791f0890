#include "tests/support/LiveObjects.h"

#include "platform/Vel/AllocTrack.h"

namespace TestSupport {

LiveObjects::LiveObjects() {
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes())
        live_[type->typeName()] = type->live();
}

void LiveObjects::expectTheSameNow() const {
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes()) {
        auto const before = live_.find(type->typeName());
        EXPECT_EQ(type->live(), before == live_.end() ? 0 : before->second)
            << "objects of " << type->typeName() << " that live";
    }
}

void LiveObjects::expectNone() {
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes()) {
        EXPECT_EQ(type->live(), 0U) << "objects of " << type->typeName() << " that live at the end";
    }
}

}  // namespace TestSupport
