#include "platform/Vel/NotifieeConst.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/Trace.h"
#include "tests/Vel/Lamp.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;

using Calls = std::vector<std::string>;

// Records its calls and can be told to do something in each.
class Watch : public Lamp::NotifieeConst, public Vel::AllocTracked<Watch> {
public:
    explicit Watch(Calls & calls, std::string name = "w") : calls_(calls), name_(std::move(name)) {}

    void onBrightness() override { called("brightness " + std::to_string(notifier()->brightness())); }
    void onFuse(Name key) override { called("fuse " + std::string(key.view())); }
    void onFuse() override { called("fuse"); }
    void onNotificationException() override { calls_.push_back(name_ + " threw"); }
    void onZeroReferences() override { calls_.push_back(name_ + " zero"); }

    std::function<void()> inCallback;

private:
    void called(std::string const & what) {
        calls_.push_back(name_ + ' ' + what);
        if (inCallback) inCallback();
    }
    Calls & calls_;
    std::string const name_;
};

Ptr<Watch> following(Ptr<Lamp> const & lamp, Calls & calls, std::string name = "w") {
    Ptr<Watch> watch = new Watch(calls, std::move(name));
    watch->notifierIs(lamp);
    watch->isRegisteredNotifieeIs(true);
    watch->hasNotificationActiveIs(true);
    return watch;
}

class NotifieeConst : public testing::Test {
protected:
    Calls calls_;
    Ptr<Lamp> const lamp_ = new Lamp(Name("lamp"));
};

TEST_F(NotifieeConst, GetsEachChangeOfItsNotifier) {
    Ptr<Watch> const watch = following(lamp_, calls_);
    lamp_->brightnessIs(3);
    lamp_->fuseIs(Name("f"), 1);
    lamp_->brightnessIs(3);
    lamp_->fuseIs(Name("f"), 1);
    EXPECT_EQ(calls_, (Calls{"w brightness 3", "w fuse f", "w fuse"})) << "an equal write notifies nobody";
}

TEST_F(NotifieeConst, NeedsANotifierARegistrationAndActivity) {
    Ptr<Watch> const watch = new Watch(calls_);
    lamp_->brightnessIs(1);
    watch->notifierIs(lamp_);
    lamp_->brightnessIs(2);
    watch->isRegisteredNotifieeIs(true);
    lamp_->brightnessIs(3);
    EXPECT_EQ(calls_, Calls{});
    watch->hasNotificationActiveIs(true);
    lamp_->brightnessIs(4);
    EXPECT_EQ(calls_, Calls{"w brightness 4"});
    watch->hasNotificationActiveIs(false);
    lamp_->brightnessIs(5);
    watch->hasNotificationActiveIs(true);
    watch->isRegisteredNotifieeIs(false);
    lamp_->brightnessIs(6);
    EXPECT_EQ(calls_, Calls{"w brightness 4"});
}

TEST_F(NotifieeConst, HoldsItsNotifier) {
    Ptr<Lamp> lamp = new Lamp(Name("other"));
    Ptr<Watch> const watch = following(lamp, calls_);
    EXPECT_EQ(lamp->references(), 2U);
    lamp = nullptr;
    ASSERT_NE(watch->notifier(), nullptr);
    EXPECT_EQ(watch->notifier()->name(), "other");
    watch->notifierIs(nullptr);
    EXPECT_EQ(Lamp::velAllocTrackTypeInfo_->live(), 1U);
}

TEST_F(NotifieeConst, UnbindsWhenItIsDestroyed) {
    Ptr<Watch> watch = following(lamp_, calls_);
    watch = nullptr;
    lamp_->brightnessIs(1);
    EXPECT_EQ(calls_, Calls{"w zero"});
    EXPECT_EQ(lamp_->references(), 1U);
    EXPECT_TRUE(lamp_->notifieeList()->empty());
}

TEST_F(NotifieeConst, UnbindsWhenItIsDestroyedOutsideTheHeap) {
    {
        Watch watch(calls_);
        watch.notifierIs(lamp_);
        watch.isRegisteredNotifieeIs(true);
        watch.hasNotificationActiveIs(true);
        lamp_->brightnessIs(1);
    }
    lamp_->brightnessIs(2);
    EXPECT_EQ(calls_, Calls{"w brightness 1"});
    EXPECT_EQ(lamp_->references(), 1U);
}

TEST_F(NotifieeConst, CountsOnceWhenItEntersTwice) {
    Ptr<Watch> const watch = following(lamp_, calls_);
    watch->isRegisteredNotifieeIs(true);
    watch->isRegisteredNotifieeIs(true);
    lamp_->brightnessIs(1);
    EXPECT_EQ(calls_, Calls{"w brightness 1"});
    watch->isRegisteredNotifieeIs(false);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
    watch->isRegisteredNotifieeIs(false);
    lamp_->brightnessIs(2);
    EXPECT_EQ(calls_, Calls{"w brightness 1"});
}

TEST_F(NotifieeConst, EntersNothingWithoutANotifier) {
    Ptr<Watch> const watch = new Watch(calls_);
    watch->hasNotificationActiveIs(true);
    watch->isRegisteredNotifieeIs(true);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
    watch->isRegisteredNotifieeIs(false);
    watch->notifierIs(lamp_);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
    lamp_->brightnessIs(1);
    EXPECT_EQ(calls_, Calls{});
}

TEST_F(NotifieeConst, MovesItsRegistrationToANewNotifier) {
    Ptr<Lamp> const other = new Lamp(Name("other"));
    Ptr<Watch> const watch = following(lamp_, calls_);
    watch->notifierIs(other);
    EXPECT_TRUE(watch->isRegisteredNotifiee());
    lamp_->brightnessIs(1);
    other->brightnessIs(2);
    EXPECT_EQ(calls_, Calls{"w brightness 2"});
    EXPECT_EQ(lamp_->references(), 1U);
    EXPECT_TRUE(lamp_->notifieeList()->empty());
}

TEST_F(NotifieeConst, IsNotRegisteredByRebindingAlone) {
    Ptr<Lamp> const other = new Lamp(Name("other"));
    Ptr<Watch> const watch = new Watch(calls_);
    watch->notifierIs(lamp_);
    watch->notifierIs(other);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
}

TEST_F(NotifieeConst, LosesItsRegistrationWhenItIsUnbound) {
    Ptr<Watch> const watch = following(lamp_, calls_);
    watch->notifierIs(nullptr);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
    EXPECT_EQ(watch->notifierObject(), nullptr);
    watch->notifierIs(lamp_);
    lamp_->brightnessIs(1);
    EXPECT_EQ(calls_, Calls{});
}

TEST_F(NotifieeConst, KeepsItsPlaceWhenItIsBoundToTheSameObject) {
    Ptr<Watch> const first = following(lamp_, calls_, "first");
    Ptr<Watch> const second = following(lamp_, calls_, "second");
    first->notifierIs(lamp_);
    first->notifierIs(first->notifierObject());
    lamp_->brightnessIs(1);
    EXPECT_EQ(calls_, (Calls{"first brightness 1", "second brightness 1"}));
    EXPECT_EQ(lamp_->references(), 3U);
}

TEST_F(NotifieeConst, IsBoundFromAFieldOfItsOldNotifier) {
    struct Socket final : public Vel::Entity {
        Ptr<Vel::PtrInterface const> plugged;
    };
    class AnyWatch final : public Vel::PtrInterface::NotifieeConst {};
    Ptr<Socket> socket = new Socket;
    socket->plugged = lamp_;
    AnyWatch watch;
    watch.notifierIs(socket);
    auto & field = socket->plugged;
    socket = nullptr;
    watch.notifierIs(field);
    EXPECT_EQ(watch.notifierObject(), lamp_);
}

TEST_F(NotifieeConst, RefusesAnObjectOfAnotherClass) {
    class Stone final : public Vel::Entity {};
    Ptr<Watch> const watch = following(lamp_, calls_);
    watch->notifierIs(new Stone);
    EXPECT_EQ(watch->notifierObject(), nullptr);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
}

TEST_F(NotifieeConst, OfNoModelClassNeverEnters) {
    class AnyWatch final : public Vel::PtrInterface::NotifieeConst {};
    Ptr<AnyWatch> const watch = new AnyWatch;
    watch->notifierIs(lamp_);
    watch->isRegisteredNotifieeIs(true);
    watch->hasNotificationActiveIs(true);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
    EXPECT_TRUE(lamp_->notifieeList()->empty());
    lamp_->brightnessIs(1);
    watch->isRegisteredNotifieeIs(false);
}

TEST_F(NotifieeConst, FollowsNothingThatCannotBeFollowed) {
    class Stone final : public Vel::PtrInterface {};
    class StoneWatch final : public Vel::PtrInterface::NotifieeConst {
    public:
        void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
    };
    Ptr<StoneWatch> const watch = new StoneWatch;
    watch->notifierIs(new Stone);
    watch->isRegisteredNotifieeIs(true);
    EXPECT_FALSE(watch->isRegisteredNotifiee());
    EXPECT_NE(watch->notifierObject(), nullptr);
}

TEST_F(NotifieeConst, IsCalledInOrderOfRegistration) {
    std::vector<Ptr<Watch>> watches;
    for (char const * name : {"a", "b", "c", "d"}) watches.push_back(following(lamp_, calls_, name));
    watches[1]->isRegisteredNotifieeIs(false);
    watches[1]->isRegisteredNotifieeIs(true);
    watches[2]->notifierIs(new Lamp(Name("other")));
    lamp_->brightnessIs(1);
    watches[2]->notifierIs(lamp_);
    lamp_->brightnessIs(2);
    EXPECT_EQ(calls_, (Calls{"a brightness 1", "d brightness 1", "b brightness 1", "a brightness 2",
                             "d brightness 2", "b brightness 2", "c brightness 2"}));
}

TEST_F(NotifieeConst, GetsKeyedAndUnkeyedCallbackBeforeTheNextReactor) {
    Ptr<Watch> const a = following(lamp_, calls_, "a");
    Ptr<Watch> const b = following(lamp_, calls_, "b");
    lamp_->fuseIs(Name("f"), 1);
    EXPECT_EQ(calls_, (Calls{"a fuse f", "a fuse", "b fuse f", "b fuse"}));
}

// Takes minutes when each of them is looked for among all that are still there.
TEST_F(NotifieeConst, LeavesAmongVeryManyInTheOrderInWhichTheyEntered) {
    std::vector<Ptr<Watch>> watches(200'000);
    for (Ptr<Watch> & watch : watches) watch = following(lamp_, calls_);
    for (Ptr<Watch> & watch : watches) watch->isRegisteredNotifieeIs(false);
    EXPECT_FALSE(lamp_->isFollowed());
    lamp_->brightnessIs(1);
    EXPECT_TRUE(calls_.empty());
}

TEST_F(NotifieeConst, SeesTheNewValue) {
    Ptr<Watch> const watch = following(lamp_, calls_);
    unsigned seen = 0;
    watch->inCallback = [&] { seen = lamp_->fuse(Name("f")); };
    lamp_->fuseIs(Name("f"), 7);
    EXPECT_EQ(seen, 7U);
}

TEST_F(NotifieeConst, ChangeReachesTheModelThoughACallbackThrows) {
    Ptr<Watch> const watch = following(lamp_, calls_);
    watch->inCallback = [] { throw std::runtime_error("no"); };
    EXPECT_THROW(lamp_->brightnessIs(5), std::runtime_error);
    EXPECT_EQ(lamp_->brightness(), 5U);
}

TEST_F(NotifieeConst, PassesOnTheVeryExceptionThatWasThrownFirst) {
    struct Own {
        int number;
    };
    std::vector<Ptr<Watch>> watches;
    for (int i = 0; i < 3; ++i) {
        watches.push_back(following(lamp_, calls_, std::to_string(i)));
        watches.back()->inCallback = [i] {
            if (i > 0) throw Own{i};
        };
    }
    try {
        lamp_->brightnessIs(1);
        FAIL();
    } catch (Own const & own) {
        EXPECT_EQ(own.number, 1);
    }
    EXPECT_EQ(calls_, (Calls{"0 brightness 1", "1 brightness 1", "1 threw", "2 brightness 1", "2 threw"}));
    calls_.clear();
    for (auto const & watch : watches) watch->inCallback = nullptr;
    lamp_->brightnessIs(2);
    EXPECT_EQ(calls_.size(), 3U) << "the next change is delivered as usual";
}

TEST_F(NotifieeConst, CallsTheUnkeyedCallbackThoughTheKeyedOneThrew) {
    Ptr<Watch> const watch = following(lamp_, calls_);
    watch->inCallback = [] { throw std::runtime_error("no"); };
    EXPECT_THROW(lamp_->fuseIs(Name("f"), 1), std::runtime_error);
    EXPECT_EQ(calls_, (Calls{"w fuse f", "w threw", "w fuse", "w threw"}));
}

TEST_F(NotifieeConst, TracesWhatACallbackThrew) {
    class Thrower final : public Lamp::NotifieeConst {
        void onBrightness() override {
            if (notifier()->brightness() == 1) throw std::runtime_error("a lamp is out");
            throw 1;
        }
    };
    std::vector<std::string> traced;
    Vel::traceSinkIs([&](Vel::TraceRecord const & record) {
        traced.push_back(std::string(record.facility) + '/' + std::to_string(record.level) + ' ' +
                         std::string(record.function) + ": " + std::string(record.message));
    });
    Ptr<Thrower> const watch = new Thrower;
    watch->notifierIs(lamp_);
    watch->isRegisteredNotifieeIs(true);
    watch->hasNotificationActiveIs(true);
    EXPECT_ANY_THROW(lamp_->brightnessIs(1));
    EXPECT_EQ(traced.size(), 0U) << "disabled";
    Vel::traceLevelIs("Vel", 0, true);
    EXPECT_ANY_THROW(lamp_->brightnessIs(2));
    EXPECT_THROW(lamp_->brightnessIs(1), std::runtime_error);
    Vel::traceLevelIs("Vel", 0, false);
    Vel::traceSinkIs({});
    EXPECT_EQ(traced,
              (std::vector<std::string>{"Vel/0 onNotificationException: a callback threw",
                                        "Vel/0 onNotificationException: a callback threw: a lamp is out"}));
}

TEST_F(NotifieeConst, IsToldWhenItsLastReferenceGoes) {
    Ptr<Watch> watch = new Watch(calls_);
    Ptr<Watch> copy = watch;
    watch = nullptr;
    EXPECT_EQ(calls_, Calls{});
    copy = nullptr;
    EXPECT_EQ(calls_, Calls{"w zero"});
    { Watch const onTheStack(calls_); }
    EXPECT_EQ(calls_, Calls{"w zero"}) << "it never had one";
}

TEST_F(NotifieeConst, MayHandOutReferencesWhenItsLastOneGoes) {
    class Clinging final : public Lamp::NotifieeConst, public Vel::AllocTracked<Clinging> {
    public:
        ~Clinging() override {
            heldIs();
            Ptr<Clinging> const passing = this;
        }
        void onZeroReferences() override { Ptr<Clinging> const passing = this; }
    };
    Ptr<Clinging> watch = new Clinging;
    watch->notifierIs(lamp_);
    watch->isRegisteredNotifieeIs(true);
    watch = nullptr;
    EXPECT_EQ(Clinging::velAllocTrackTypeInfo_->live(), 0U);
    { Clinging const onTheStack; }
    std::make_unique<Clinging>().reset();
    EXPECT_EQ(Clinging::velAllocTrackTypeInfo_->live(), 0U);
}

// Writes to a lamp when it is destroyed.
class Fuse final : public Vel::PtrInterface {
public:
    explicit Fuse(Ptr<Lamp> lamp) : lamp_(std::move(lamp)) {}
    ~Fuse() override { lamp_->brightnessIs(lamp_->brightness() + 1); }

private:
    Ptr<Lamp> const lamp_;
};

TEST_F(NotifieeConst, IsNotCalledWhileItIsBeingDestroyed) {
    class Owner final : public Lamp::NotifieeConst {
    public:
        explicit Owner(Ptr<Fuse> fuse, int & calls) : calls_(calls), fuse_(std::move(fuse)) {}
        void onBrightness() override { ++calls_; }

    private:
        int & calls_;
        Ptr<Fuse> fuse_;  // Goes while the reactor's class is still Owner, but its members are going.
    };
    int calls = 0;
    Ptr<Owner> owner = new Owner(new Fuse(lamp_), calls);
    owner->notifierIs(lamp_);
    owner->isRegisteredNotifieeIs(true);
    owner->hasNotificationActiveIs(true);
    lamp_->brightnessIs(1);
    EXPECT_EQ(calls, 1);
    owner = nullptr;
    EXPECT_EQ(lamp_->brightness(), 2U);
    EXPECT_EQ(calls, 1);
}

TEST_F(NotifieeConst, IsNotCalledWhileItWaitsForItsDestruction) {
    // The last of a chain that is long enough for objects to wait lets a reactor go and then writes.
    class Chained final : public Vel::PtrInterface {
    public:
        ~Chained() override {
            if (atLast) atLast();
        }
        Ptr<Chained> next;
        std::function<void()> atLast;
    };
    Ptr<Watch> watch = following(lamp_, calls_);
    Ptr<Chained> first = new Chained;
    Chained * last = first.get();
    last->atLast = [&] {
        watch = nullptr;
        lamp_->brightnessIs(1);
    };
    for (int i = 0; i < 15; ++i) {
        Ptr<Chained> link = new Chained;
        link->next = std::move(first);
        first = std::move(link);
    }
    first = nullptr;
    EXPECT_EQ(lamp_->brightness(), 1U);
    EXPECT_EQ(calls_, Calls{"w zero"});
}

TEST_F(NotifieeConst, LeavesTheFrameworksHooksAtTheirDefaults) {
    class AnyWatch final : public Vel::PtrInterface::NotifieeConst {};
    AnyWatch watch;
    EXPECT_EQ(watch.velReactor(), &watch);
    EXPECT_EQ(watch.velFwkActivity(), nullptr);
    EXPECT_EQ(watch.actsm(), nullptr);
    EXPECT_EQ(watch.notifieeList(), nullptr);
    watch.handleNotification(nullptr);
    watch.onZeroReferences();
    EXPECT_FALSE(watch.isRegisteredNotifiee());
    EXPECT_FALSE(watch.hasNotificationActive());
    EXPECT_EQ(watch.notifierObject(), nullptr);
}

// An object with a place of its own, which its last reference does not destroy.
class Post final : public Vel::Entity {
public:
    void zeroReferencesIs(bool) override {}
    void heightIs(int) const;
};
class PostWatch final : public Vel::PtrInterface::NotifieeConst {
public:
    void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
    int calls = 0;
};
void Post::heightIs(int) const {
    notifiees().notify<PostWatch>(*this, [](PostWatch & watch) { ++watch.calls; });
}

TEST_F(NotifieeConst, FollowsAnObjectOutsideTheHeap) {
    Post post;
    PostWatch watch;
    watch.notifierIs(&post);
    watch.isRegisteredNotifieeIs(true);
    watch.hasNotificationActiveIs(true);
    post.heightIs(1);
    watch.notifierIs(nullptr);
    post.heightIs(2);
    watch.notifierIs(&post);
    watch.isRegisteredNotifieeIs(true);
    post.heightIs(3);
    EXPECT_EQ(watch.calls, 2);
    watch.notifierIs(nullptr);
}

#ifndef NDEBUG
TEST(NotifieeConstDeathTest, AssertsThatAnObjectOutsideTheHeapOutlivesItsFollowers) {
    EXPECT_DEATH(
        {
            PostWatch watch;
            Post post;
            watch.notifierIs(&post);
            watch.isRegisteredNotifieeIs(true);
        },
        "destroyed while referenced");
}
#endif

TEST(Entity, TellsWhetherAFieldWasReplaced) {
    unsigned field = 1;
    EXPECT_FALSE(Vel::replaced(field, 1U));
    EXPECT_TRUE(Vel::replaced(field, 2U));
    EXPECT_EQ(field, 2U);
    Ptr<Lamp> reference;
    Ptr<Lamp> const lamp = new Lamp(Name("lamp"));
    EXPECT_TRUE(Vel::replaced(reference, lamp));
    EXPECT_FALSE(Vel::replaced(reference, lamp));
    EXPECT_EQ(lamp->references(), 2U);
}

TEST(Entity, HasAListOfItsOwn) {
    Lamp a{Name("a")};
    Lamp b{Name("b")};
    EXPECT_NE(a.notifieeList(), nullptr);
    EXPECT_NE(a.notifieeList(), b.notifieeList());
    EXPECT_TRUE(a.notifieeList()->empty());
}

}  // namespace
}  // namespace VelTest
