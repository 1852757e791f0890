#include "platform/Vel/AllocTrack.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/Ptr.h"
#include "tests/support/Allocations.h"

namespace VelTest {

// At namespace scope, for a name that is the same for every compiler.
class TrackedThing : public Vel::PtrInterface, public Vel::AllocTracked<TrackedThing> {
public:
    explicit TrackedThing(bool throws = false) {
        if (throws) throw std::runtime_error("no");
    }

    std::array<char, 100> ballast{};
};

namespace {

using Vel::AllocTrackTypeInfo;

struct LargerThing final : TrackedThing {
    std::array<char, 1000> more{};
};

TEST(AllocTrack, CountsWhatLivesAndWhatWasEverMade) {
    Vel::Ptr<TrackedThing> first = new TrackedThing;
    AllocTrackTypeInfo const & record = *TrackedThing::velAllocTrackTypeInfo_;
    std::uint64_t const total = record.total();
    EXPECT_EQ(record.live(), 1U);
    Vel::Ptr<TrackedThing> second = new TrackedThing;
    EXPECT_EQ(record.live(), 2U);
    first = nullptr;
    second = nullptr;
    EXPECT_EQ(record.live(), 0U);
    EXPECT_EQ(record.total(), total + 1);
}

TEST(AllocTrack, KnowsTheClass) {
    Vel::Ptr<TrackedThing> const thing = new TrackedThing;
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->typeName(), "VelTest::TrackedThing");
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->size(), sizeof(TrackedThing));
}

TEST(AllocTrack, CountsObjectsOfDerivedClasses) {
    Vel::Ptr<TrackedThing> const thing = new TrackedThing;
    Vel::Ptr<LargerThing> const larger = new LargerThing;
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->live(), 2U);
}

TEST(AllocTrack, DoesNotCountObjectsInStorageOfTheirOwn) {
    Vel::Ptr<TrackedThing> const counted = new TrackedThing;
    TrackedThing const onTheStack;
    alignas(TrackedThing) std::byte storage[sizeof(TrackedThing)];
    auto * const placed = new (storage) TrackedThing;
    EXPECT_EQ(static_cast<void *>(placed), static_cast<void *>(storage));
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->live(), 1U);
    placed->~TrackedThing();
    EXPECT_THROW(new (storage) TrackedThing(true), std::runtime_error);
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->live(), 1U);
}

TEST(AllocTrack, CountsNothingWhenTheConstructorThrows) {
    Vel::Ptr<TrackedThing> const thing = new TrackedThing;
    std::uint64_t const total = TrackedThing::velAllocTrackTypeInfo_->total();
    EXPECT_THROW(new TrackedThing(true), std::runtime_error);
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->total(), total + 1) << "its storage was made";
}

TEST(AllocTrack, CountsNothingWhenThereIsNoMemory) {
    Vel::Ptr<TrackedThing> const thing = new TrackedThing;
    TestSupport::FailingAllocations const failing;
    EXPECT_THROW(new TrackedThing, std::bad_alloc);
    EXPECT_EQ(TrackedThing::velAllocTrackTypeInfo_->live(), 1U);
}

TEST(AllocTrack, CountsNothingWhenThereIsNoMemoryForTheFirstObjectOfAClass) {
    class Unheard final : public Vel::PtrInterface, public Vel::AllocTracked<Unheard> {};
    std::unique_ptr<Unheard> made;
    std::uint64_t succeeding = 0;
    for (; !made; ++succeeding) {
        std::size_t const types = Vel::allocTrackTypes().size();
        TestSupport::FailingAllocations const failing(succeeding);
        try {
            made.reset(new Unheard);
        } catch (std::bad_alloc const &) {
            TestSupport::Allocations::untilFailure = TestSupport::Allocations::kNever;
            if (Unheard::velAllocTrackTypeInfo_) {
                EXPECT_EQ(Unheard::velAllocTrackTypeInfo_->live(), 0U);
            } else {
                EXPECT_EQ(Vel::allocTrackTypes().size(), types);
            }
        }
    }
    EXPECT_GE(succeeding, 3U) << "the record, its place in the list and the object were each refused";
    EXPECT_EQ(Unheard::velAllocTrackTypeInfo_->live(), 1U);
}

TEST(AllocTrack, ListsEachClassOnceInOrderOfFirstObjects) {
    class FirstOfAll final : public Vel::PtrInterface, public Vel::AllocTracked<FirstOfAll> {};
    class SecondOfAll final : public Vel::PtrInterface, public Vel::AllocTracked<SecondOfAll> {};
    for (int i = 0; i < 2; ++i) {
        Vel::Ptr<FirstOfAll> const first = new FirstOfAll;
        Vel::Ptr<SecondOfAll> const second = new SecondOfAll;
    }
    std::vector<AllocTrackTypeInfo const *> const types = Vel::allocTrackTypes();
    auto const first = std::find(types.begin(), types.end(), FirstOfAll::velAllocTrackTypeInfo_);
    auto const second = std::find(types.begin(), types.end(), SecondOfAll::velAllocTrackTypeInfo_);
    ASSERT_NE(second, types.end());
    EXPECT_EQ(second - first, 1);
    EXPECT_EQ(std::count(types.begin(), types.end(), FirstOfAll::velAllocTrackTypeInfo_), 1);
}

TEST(AllocTrack, FindsTheRecordOfAClassThatWasLoadedBefore) {
    Vel::Ptr<TrackedThing> const thing = new TrackedThing;
    AllocTrackTypeInfo * ofAnotherLoad = nullptr;
    AllocTrackTypeInfo::trackAllocation(&ofAnotherLoad, typeid(TrackedThing), sizeof(TrackedThing));
    EXPECT_EQ(ofAnotherLoad, TrackedThing::velAllocTrackTypeInfo_);
    EXPECT_EQ(ofAnotherLoad->live(), 2U);
    AllocTrackTypeInfo::trackDeallocation(ofAnotherLoad);
    EXPECT_EQ(ofAnotherLoad->live(), 1U);
}

TEST(AllocTrack, AsksForTheStorageOfTheClassAlone) {
    Vel::Ptr<TrackedThing> const first = new TrackedThing;
    TestSupport::AllocationCount const count;
    Vel::Ptr<TrackedThing> const second = new TrackedThing;
    EXPECT_EQ(count.value(), 1U);
    EXPECT_EQ(count.bytes(), sizeof(TrackedThing));
}

TEST(Demangled, IsTheReadableName) {
    EXPECT_EQ(Vel::demangled(typeid(TrackedThing).name()), "VelTest::TrackedThing");
    EXPECT_EQ(Vel::demangled(typeid(std::vector<int> const *).name()),
              "std::vector<int, std::allocator<int> > const*");
    EXPECT_EQ(Vel::demangled("no mangled name"), "no mangled name");
}

}  // namespace
}  // namespace VelTest
