// What holds for the reference word whether or not it changes atomically. Included by one source of each
// program, since the mode is one of the whole process.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace VelTest {

using Word = std::uint32_t;

class Bulb : public Vel::PtrInterface, public Vel::AllocTracked<Bulb> {
public:
    using Vel::PtrInterface::heldIs;
};

inline std::uint64_t liveBulbs() {
    return Bulb::velAllocTrackTypeInfo_ ? Bulb::velAllocTrackTypeInfo_->live() : 0;
}

// The word as it stands in memory, behind the pointer to the virtual table.
inline Word wordOf(Vel::PtrInterface const & object) {
    Word word;
    std::memcpy(&word, reinterpret_cast<char const *>(&object) + sizeof(void *), sizeof(word));
    return word;
}

// Tells in its destructor what its word was while references to it came and went.
class SelfReferring : public Vel::PtrInterface, public Vel::AllocTracked<SelfReferring> {
public:
    SelfReferring(std::vector<Word> & seen, bool holdsItself) : seen_(seen), holdsItself_(holdsItself) {}
    ~SelfReferring() override {
        if (holdsItself_) heldIs();
        seen_.push_back(wordOf(*this));
        for (int i = 0; i < 3; ++i) {
            Vel::Ptr<SelfReferring> const self = this;
            Vel::Ptr<SelfReferring> const copy = self;
            seen_.push_back(wordOf(*this));
        }
        seen_.push_back(wordOf(*this));
    }

private:
    std::vector<Word> & seen_;
    bool holdsItself_;
};

TEST(ReferenceWord, FollowsThePointerToTheVirtualTable) {
    EXPECT_EQ(sizeof(Vel::PtrInterface), 2 * sizeof(void *));
    Bulb bulb;
    EXPECT_EQ(wordOf(bulb), 0U);
    bulb.velMarkedForDeletionIs(true);
    EXPECT_EQ(wordOf(bulb), 0x80000000U);
}

TEST(ReferenceWord, HasTheMasksThatOthersRelyOn) {
    EXPECT_EQ(Vel::PtrInterface::kMarkedForDeletion, 0x80000000U);
    EXPECT_EQ(Vel::PtrInterface::kHeld, 0x40000000U);
    EXPECT_EQ(Vel::PtrInterface::kNotificationActive, 0x20000000U);
    EXPECT_EQ(Vel::PtrInterface::kReferences, 0x1fffffffU);
    EXPECT_EQ(Vel::PtrInterface::kCountMask, 0x5fffffffU);
}

TEST(ReferenceWord, CountsInItsLowBits) {
    Vel::Ptr<Bulb> const first = new Bulb;
    EXPECT_EQ(wordOf(*first), 1U);
    {
        std::vector<Vel::Ptr<Bulb>> const more(99, first);
        EXPECT_EQ(wordOf(*first), 100U);
        EXPECT_EQ(first->references(), 100U);
    }
    EXPECT_EQ(wordOf(*first), 1U);
}

TEST(ReferenceWord, KeepsEachFlagInABitOfItsOwn) {
    Vel::Ptr<Bulb> const bulb = new Bulb;
    bulb->velMarkedForDeletionIs(true);
    EXPECT_EQ(wordOf(*bulb), 0x80000001U);
    EXPECT_TRUE(bulb->velMarkedForDeletion());
    EXPECT_FALSE(bulb->hasNotificationActive());
    bulb->hasNotificationActiveIs(true);
    EXPECT_EQ(wordOf(*bulb), 0xa0000001U);
    EXPECT_TRUE(bulb->hasNotificationActive());
    bulb->velMarkedForDeletionIs(false);
    EXPECT_EQ(wordOf(*bulb), 0x20000001U);
    EXPECT_FALSE(bulb->velMarkedForDeletion());
    bulb->hasNotificationActiveIs(false);
    EXPECT_EQ(wordOf(*bulb), 1U);
}

TEST(ReferenceWord, IsSetTwiceAndClearedTwiceAsOnce) {
    Bulb bulb;
    for (bool const on : {true, true, false, false}) {
        bulb.velMarkedForDeletionIs(on);
        bulb.hasNotificationActiveIs(on);
        EXPECT_EQ(wordOf(bulb), on ? 0xa0000000U : 0U);
    }
}

TEST(ReferenceWord, KeepsCountAndFlagsApart) {
    std::mt19937 random(1);
    Vel::Ptr<Bulb> const bulb = new Bulb;
    std::vector<Vel::Ptr<Bulb>> references;
    Word flags = 0;
    for (int step = 0; step < 10000; ++step) {
        bool const on = random() % 2 == 0;
        switch (random() % 4) {
        case 0:
            bulb->velMarkedForDeletionIs(on);
            flags = on ? flags | 0x80000000U : flags & ~0x80000000U;
            break;
        case 1:
            bulb->hasNotificationActiveIs(on);
            flags = on ? flags | 0x20000000U : flags & ~0x20000000U;
            break;
        case 2: references.push_back(bulb); break;
        default:
            if (!references.empty()) references.pop_back();
        }
        ASSERT_EQ(wordOf(*bulb), (flags | static_cast<Word>(references.size() + 1))) << "step " << step;
    }
}

TEST(ReferenceWord, LetsNoFlagKeepAnObjectAlive) {
    for (int flags = 0; flags < 4; ++flags) {
        Vel::Ptr<Bulb> bulb = new Bulb;
        bulb->hasNotificationActiveIs((flags & 1) != 0);
        bulb->velMarkedForDeletionIs((flags & 2) != 0);
        EXPECT_EQ(liveBulbs(), 1U);
        bulb = nullptr;
        EXPECT_EQ(liveBulbs(), 0U) << "flags " << flags;
    }
}

TEST(ReferenceWord, IsHeldAboveZeroWhileTheDestructorRuns) {
    std::vector<Word> seen;
    Vel::Ptr<SelfReferring> object = new SelfReferring(seen, false);
    object = nullptr;
    EXPECT_EQ(seen, (std::vector<Word>{0x40000000U, 0x40000002U, 0x40000002U, 0x40000002U, 0x40000000U}));
    EXPECT_EQ(SelfReferring::velAllocTrackTypeInfo_->live(), 0U);
}

TEST(ReferenceWord, IsHeldByTheDestructorOfAnObjectThatWasNeverCounted) {
    std::vector<Word> const expected{0x40000000U, 0x40000002U, 0x40000002U, 0x40000002U, 0x40000000U};
    std::vector<Word> seen;
    { SelfReferring const onTheStack(seen, true); }
    EXPECT_EQ(seen, expected);
    seen.clear();
    std::make_unique<SelfReferring>(seen, true).reset();
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(SelfReferring::velAllocTrackTypeInfo_->live(), 0U);
}

TEST(ReferenceWord, KeepsItsFlagsWhileHeld) {
    std::vector<Word> seen;
    Vel::Ptr<SelfReferring> object = new SelfReferring(seen, false);
    object->velMarkedForDeletionIs(true);
    object->hasNotificationActiveIs(true);
    object = nullptr;
    EXPECT_EQ(seen.front(), 0xe0000000U);
    EXPECT_EQ(seen.back(), 0xe0000000U);
}

TEST(ReferenceWord, TellsWhetherAReferenceMayComeAndGo) {
    Bulb bulb;
    EXPECT_FALSE(bulb.isCounted());
    EXPECT_FALSE(bulb.isBeingDestroyed());
    bulb.hasNotificationActiveIs(true);
    bulb.velMarkedForDeletionIs(true);
    EXPECT_FALSE(bulb.isCounted());
    bulb.heldIs();
    EXPECT_TRUE(bulb.isCounted());
    EXPECT_TRUE(bulb.isBeingDestroyed());
    EXPECT_EQ(bulb.references(), 0U);

    Vel::Ptr<Bulb> const counted = new Bulb;
    EXPECT_TRUE(counted->isCounted());
    EXPECT_FALSE(counted->isBeingDestroyed());
}

TEST(KeepAlive, HoldsACountedObject) {
    Vel::Ptr<Bulb> bulb = new Bulb;
    {
        Vel::KeepAlive const keep(*bulb);
        EXPECT_TRUE(keep.holds());
        EXPECT_EQ(wordOf(*bulb), 2U);
        bulb = nullptr;
        EXPECT_EQ(liveBulbs(), 1U);
    }
    EXPECT_EQ(liveBulbs(), 0U);
}

TEST(KeepAlive, DoesNotTouchAnObjectThatIsNotCounted) {
    auto const bulb = std::make_unique<Bulb>();
    bulb->velMarkedForDeletionIs(true);
    bulb->hasNotificationActiveIs(true);
    {
        Vel::KeepAlive const keep(*bulb);
        EXPECT_FALSE(keep.holds());
        EXPECT_EQ(wordOf(*bulb), 0xa0000000U);
    }
    EXPECT_EQ(wordOf(*bulb), 0xa0000000U);
    EXPECT_EQ(liveBulbs(), 1U);
}

TEST(KeepAlive, ComesAndGoesWhileTheObjectIsBeingDestroyed) {
    Bulb bulb;
    bulb.heldIs();
    {
        Vel::KeepAlive const keep(bulb);
        EXPECT_TRUE(keep.holds());
        EXPECT_EQ(wordOf(bulb), 0x40000001U);
    }
    EXPECT_EQ(wordOf(bulb), 0x40000000U);
}

}  // namespace VelTest
