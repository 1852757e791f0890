#include <algorithm>
#include <functional>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Ptr.h"
#include "tests/support/Allocations.h"
#include "tests/support/SmallStack.h"

namespace VelTest {
namespace {

using TestSupport::onASmallStack;

class Link : public Vel::PtrInterface, public Vel::AllocTracked<Link> {
public:
    explicit Link(Vel::Ptr<Link> left = nullptr, Vel::Ptr<Link> right = nullptr)
        : left_(std::move(left)), right_(std::move(right)) {}
    ~Link() override {
        // References to an object under destruction, as a reactor hands them out when it retires.
        for (int i = 0; i < 2; ++i) Vel::Ptr<Link> const self = this;
        if (onDestruction) onDestruction(*this);
    }

    static inline std::function<void(Link &)> onDestruction;

    Vel::Ptr<Link> left_;
    Vel::Ptr<Link> right_;
};

std::uint64_t liveLinks() { return Link::velAllocTrackTypeInfo_->live(); }

Vel::Ptr<Link> chain(int length) {
    Vel::Ptr<Link> first;
    for (int i = 0; i < length; ++i) first = new Link(std::move(first));
    return first;
}

Vel::Ptr<Link> tree(int depth) { return depth == 0 ? nullptr : new Link(tree(depth - 1), tree(depth - 1)); }

TEST(Destruction, OfAMillionLinkedObjectsNeedsLittleStack) {
    onASmallStack([] {
        Vel::Ptr<Link> first = chain(1000000);
        EXPECT_EQ(liveLinks(), 1000000U);
        first = nullptr;
        EXPECT_EQ(liveLinks(), 0U);
    });
}

TEST(Destruction, OfAChainEndsBeforeTheLastReferenceIsGivenUp) {
    for (int const length : {1, 2, 15, 16, 17, 18, 31, 32, 33, 34, 100}) {
        Vel::Ptr<Link> first = chain(length);
        first = nullptr;
        EXPECT_EQ(liveLinks(), 0U) << "length " << length;
    }
}

TEST(Destruction, StopsAtAnObjectThatIsStillReferenced) {
    Vel::Ptr<Link> first = chain(1000);
    Vel::Ptr<Link> kept = first;
    for (int i = 0; i < 600; ++i) kept = kept->left_;
    first = nullptr;
    EXPECT_EQ(liveLinks(), 400U);
    EXPECT_EQ(kept->references(), 1U);
}

TEST(Destruction, OfATreeNeedsLittleStackAndLeavesNothing) {
    onASmallStack([] {
        Vel::Ptr<Link> root = tree(16);
        EXPECT_EQ(liveLinks(), 65535U);
        root = nullptr;
        EXPECT_EQ(liveLinks(), 0U);
    });
}

TEST(Destruction, OfACombNeedsLittleStack) {
    onASmallStack([] {
        Vel::Ptr<Link> spine;
        for (int i = 0; i < 2000; ++i) spine = new Link(chain(50), std::move(spine));
        EXPECT_EQ(liveLinks(), 2000U * 51U);
        spine = nullptr;
        EXPECT_EQ(liveLinks(), 0U);
    });
}

TEST(Destruction, ReachesEveryObjectOnce) {
    std::vector<Link const *> destroyed;
    Link::onDestruction = [&](Link & link) { destroyed.push_back(&link); };
    Vel::Ptr<Link> root = tree(10);
    root->left_->left_ = root->right_->right_;  // Reached on two ways.
    destroyed.clear();
    std::uint64_t const live = liveLinks();
    root = nullptr;
    Link::onDestruction = nullptr;
    EXPECT_EQ(destroyed.size(), live);
    EXPECT_EQ(std::set<Link const *>(destroyed.begin(), destroyed.end()).size(), live);
}

TEST(Destruction, StartsAtOnceWhileTheNestingIsShallow) {
    std::vector<int> depths;
    int depth = 0;
    Link::onDestruction = [&](Link & link) {
        depths.push_back(++depth);
        link.left_ = nullptr;
        --depth;
    };
    chain(5);
    Link::onDestruction = nullptr;
    EXPECT_EQ(depths, (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST(Destruction, NestsNoDeeperThanAFewObjects) {
    int depth = 0;
    int deepest = 0;
    Link::onDestruction = [&](Link & link) {
        deepest = std::max(deepest, ++depth);
        link.left_ = nullptr;
        --depth;
    };
    chain(10000);
    Link::onDestruction = nullptr;
    EXPECT_EQ(deepest, 16);
}

TEST(Destruction, LetsADestructorMakeAndReleaseChainsOfItsOwn) {
    onASmallStack([] {
        int makers = 300;
        Link::onDestruction = [&](Link &) {
            if (makers > 0) {
                --makers;
                chain(100);
            }
        };
        chain(1000);
        Link::onDestruction = nullptr;
        EXPECT_EQ(makers, 0);
        EXPECT_EQ(liveLinks(), 0U);
    });
}

TEST(Destruction, HoldsAnObjectThatWaits) {
    Vel::Ptr<Link> first = chain(100);
    std::vector<Link const *> links;
    for (Link const * link = first.get(); link; link = link->left_.get()) links.push_back(link);
    int waited = 0;
    Link::onDestruction = [&](Link & link) {
        if (&link != links[15]) return;
        Link * const next = link.left_.get();
        link.left_ = nullptr;
        ++waited;
        EXPECT_TRUE(next->isBeingDestroyed());
        EXPECT_EQ(next->references(), 0U);
        Vel::Ptr<Link> const passing = next;
    };
    first = nullptr;
    Link::onDestruction = nullptr;
    EXPECT_EQ(waited, 1);
    EXPECT_EQ(liveLinks(), 0U);
}

TEST(Destruction, GoesOnWithoutMemoryForObjectsThatWait) {
    Vel::Ptr<Link> first = chain(1000);
    {
        TestSupport::FailingAllocations const failing;
        first = nullptr;
    }
    EXPECT_EQ(liveLinks(), 0U);
    for (std::uint64_t succeeding = 1; succeeding < 6; ++succeeding) {
        first = tree(9);
        {
            TestSupport::FailingAllocations const failing(succeeding);
            first = nullptr;
        }
        EXPECT_EQ(liveLinks(), 0U) << succeeding << " allocations succeed";
    }
}

TEST(Destruction, GivesTheListOfWaitingObjectsBack) {
    TestSupport::AllocationCount const first;
    chain(100);
    std::uint64_t const once = first.value();
    EXPECT_GT(once, 100U);
    TestSupport::AllocationCount const second;
    chain(100);
    EXPECT_EQ(second.value(), once);
}

// An object with a place of its own, which nothing may free.
class Fixture final : public Vel::PtrInterface {
public:
    void zeroReferencesIs(bool zero) override { told_.push_back(zero); }
    std::vector<bool> told_;
};

TEST(Destruction, IsLeftToTheObject) {
    Fixture fixture;
    { Vel::Ptr<Fixture> const passing = &fixture; }
    EXPECT_EQ(fixture.told_, std::vector<bool>{true});
    EXPECT_EQ(fixture.references(), 0U);
    { Vel::Ptr<Fixture> const again = &fixture; }
    EXPECT_EQ(fixture.told_, std::vector<bool>{true}) << "told once";
}

TEST(Destruction, IsNotStartedByTheWordThatTheCountIsNotZero) {
    auto * const link = new Link;
    link->zeroReferencesIs(false);
    EXPECT_EQ(liveLinks(), 1U);
    link->handleZeroRef();
    EXPECT_EQ(liveLinks(), 0U);
}

TEST(Destruction, OfAPlainObjectTellsNothingAboutItself) {
    Vel::Ptr<Link> const link = new Link;
    EXPECT_EQ(link->notifieeList(), nullptr);
    EXPECT_EQ(static_cast<Vel::PtrInterface const &>(*link).fwkType(), nullptr);
}

}  // namespace
}  // namespace VelTest
