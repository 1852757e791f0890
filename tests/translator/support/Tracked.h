#pragma once

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"

namespace TestSupport {

// Fails, by the name of each class, if an object of the translator lives.
inline void expectNoTranslatorObjects() {
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes()) {
        if (!type->typeName().starts_with("NetworkTopologyAggregator::")) continue;
        EXPECT_EQ(type->live(), 0U) << "objects of " << type->typeName() << " that live";
    }
}

}  // namespace TestSupport
