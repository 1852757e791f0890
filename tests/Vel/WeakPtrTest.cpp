#include "platform/Vel/WeakPtr.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Ptr.h"

namespace VelTest {
namespace {

class Group final : public Vel::PtrInterface, public Vel::AllocTracked<Group> {
public:
    ~Group() override {
        if (onDestruction) onDestruction();
    }
    Vel::WeakTarget & weakTarget() const { return weakTarget_; }

    std::function<void()> onDestruction;
    Vel::Ptr<Group> next;

private:
    mutable Vel::WeakTarget weakTarget_;
};

TEST(WeakPtr, IsNullUntilItIsSet) {
    Vel::WeakPtr<Group> const weak;
    EXPECT_EQ(weak.get(), nullptr);
    EXPECT_TRUE(weak == nullptr);
}

TEST(WeakPtr, DoesNotCount) {
    Vel::Ptr<Group> const group = new Group;
    Vel::WeakPtr<Group> weak;
    weak = group.get();
    EXPECT_EQ(weak.get(), group.get());
    EXPECT_TRUE(weak == group.get());
    EXPECT_EQ(group->references(), 1U);
}

TEST(WeakPtr, TurnsNullWhenItsTargetDies) {
    Vel::Ptr<Group> group = new Group;
    Vel::WeakPtr<Group> weak;
    weak = group.get();
    group = nullptr;
    EXPECT_EQ(weak.get(), nullptr);
}

TEST(WeakPtr, TurnsNullWhenATargetOutsideTheHeapDies) {
    Vel::WeakPtr<Group> weak;
    {
        Group group;
        weak = &group;
        EXPECT_EQ(weak.get(), &group);
    }
    EXPECT_EQ(weak.get(), nullptr);
}

TEST(WeakPtr, MayDieBeforeItsTarget) {
    Vel::Ptr<Group> const group = new Group;
    auto first = std::make_unique<Vel::WeakPtr<Group>>();
    Vel::WeakPtr<Group> second;
    auto third = std::make_unique<Vel::WeakPtr<Group>>();
    *first = group.get();
    second = group.get();
    *third = group.get();
    third.reset();
    first.reset();
    EXPECT_EQ(second.get(), group.get());
}

TEST(WeakPtr, MovesToAnotherTarget) {
    Vel::Ptr<Group> first = new Group;
    Vel::Ptr<Group> second = new Group;
    Vel::WeakPtr<Group> weak;
    weak = first.get();
    weak = second.get();
    first = nullptr;
    EXPECT_EQ(weak.get(), second.get());
    second = nullptr;
    EXPECT_EQ(weak.get(), nullptr);
}

TEST(WeakPtr, IsClearedAndSetAgain) {
    Vel::Ptr<Group> const group = new Group;
    Vel::WeakPtr<Group> weak;
    for (int i = 0; i < 3; ++i) {
        weak = group.get();
        weak = group.get();
        EXPECT_EQ(weak.get(), group.get());
        weak = nullptr;
        weak = nullptr;
        EXPECT_EQ(weak.get(), nullptr);
    }
}

TEST(WeakPtr, IsNullWhileItsTargetIsBeingDestroyed) {
    Vel::Ptr<Group> group = new Group;
    Group * const raw = group.get();
    Vel::WeakPtr<Group> weak;
    weak = raw;
    Group const * seen = raw;
    group->onDestruction = [&] { seen = weak.get(); };
    group = nullptr;
    EXPECT_EQ(seen, nullptr);
}

TEST(WeakPtr, MayBeSetAndClearedWhileItsTargetIsBeingDestroyed) {
    Vel::Ptr<Group> group = new Group;
    Group * const raw = group.get();
    Vel::WeakPtr<Group> before;
    Vel::WeakPtr<Group> during;
    Vel::WeakPtr<Group> cleared;
    before = raw;
    cleared = raw;
    group->onDestruction = [&] {
        before = raw;
        during = raw;
        cleared = nullptr;
        EXPECT_EQ(during.get(), nullptr);
    };
    group = nullptr;
    EXPECT_EQ(before.get(), nullptr);
    EXPECT_EQ(during.get(), nullptr);
    EXPECT_EQ(cleared.get(), nullptr);
}

TEST(WeakPtr, IsNullWhileItsTargetWaitsForItsDestruction) {
    constexpr int kLength = 40;
    std::vector<Group *> groups;
    std::deque<Vel::WeakPtr<Group>> weak(kLength);
    Vel::Ptr<Group> first;
    for (int i = kLength - 1; i >= 0; --i) {
        Vel::Ptr<Group> group = new Group;
        group->next = std::move(first);
        first = std::move(group);
        weak[static_cast<std::size_t>(i)] = first.get();
    }
    for (Group * group = first.get(); group; group = group->next.get()) groups.push_back(group);

    bool allLivedAtTheSixteenth = false;
    for (std::size_t i = 0; i < kLength; ++i) {
        groups[i]->onDestruction = [&, i] {
            if (i + 1 == kLength) return;
            groups[i]->next = nullptr;
            EXPECT_EQ(weak[i + 1].get(), nullptr) << i;
            if (i == 15) allLivedAtTheSixteenth = Group::velAllocTrackTypeInfo_->live() == kLength;
        };
    }
    first = nullptr;
    EXPECT_TRUE(allLivedAtTheSixteenth) << "the seventeenth was seen while it waited";
}

TEST(WeakPtr, StaysNullWhenWhatItSharedWithItsTargetServesAnother) {
    Vel::Ptr<Group> group = new Group;
    Vel::WeakPtr<Group> old;
    old = group.get();
    for (int i = 0; i < 100; ++i) {
        group = nullptr;
        group = new Group;
        Vel::WeakPtr<Group> present;
        present = group.get();
        EXPECT_EQ(old.get(), nullptr);
        EXPECT_EQ(present.get(), group.get());
    }
}

// More lives than a reference can count.
TEST(WeakPtr, NeverComesBackToLife) {
    constexpr std::size_t kLives = (std::size_t{1} << 20) + 1000;
    std::deque<Vel::WeakPtr<Group>> old(100);
    for (std::size_t life = 0; life < kLives; ++life) {
        Vel::Ptr<Group> const group = new Group;
        Vel::WeakPtr<Group> passing;
        Vel::WeakPtr<Group> & weak = life < old.size() ? old[life] : passing;
        weak = group.get();
        ASSERT_EQ(weak.get(), group.get()) << life;
        if (life % 100 != 0 && life < kLives - 2000) continue;
        for (std::size_t i = 0; i < std::min(life, old.size()); ++i) {
            ASSERT_EQ(old[i].get(), nullptr) << i << " in life " << life;
        }
    }
}

TEST(WeakPtr, FollowsAModelOfTheSame) {
    std::mt19937 random(7);
    std::vector<Vel::Ptr<Group>> groups(5);
    for (auto & group : groups) group = new Group;
    constexpr std::size_t kHolders = 20;
    std::vector<std::unique_ptr<Vel::WeakPtr<Group>>> holders(kHolders);
    std::vector<Group *> expected(kHolders, nullptr);
    for (auto & holder : holders) holder = std::make_unique<Vel::WeakPtr<Group>>();
    for (int step = 0; step < 20000; ++step) {
        std::size_t const h = random() % kHolders;
        std::size_t const g = random() % groups.size();
        switch (random() % 8) {
        case 0:
            std::replace(expected.begin(), expected.end(), groups[g].get(), static_cast<Group *>(nullptr));
            groups[g] = new Group;
            break;
        case 1:
            holders[h] = std::make_unique<Vel::WeakPtr<Group>>();
            expected[h] = nullptr;
            break;
        case 2:
            *holders[h] = nullptr;
            expected[h] = nullptr;
            break;
        default: *holders[h] = groups[g].get(); expected[h] = groups[g].get();
        }
        for (std::size_t i = 0; i < kHolders; ++i)
            ASSERT_EQ(holders[i]->get(), expected[i]) << "step " << step;
    }
}

}  // namespace
}  // namespace VelTest
