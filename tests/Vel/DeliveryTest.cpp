// Callbacks that disturb the delivery in which they are called.
//
// One script runs in two worlds: the real one, and a naive model of delivery that copies the list of reactors
// and looks each of them up again before it is called. Their logs must agree: who was called, in which order,
// who was told of an exception, what reached the writer, and when each object was destroyed.
#include <array>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/SlabPool.h"
#include "tests/Vel/Lamp.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;

using Log = std::vector<std::string>;

enum class Attribute { brightness, fuse };
enum class Callback { brightness, keyedFuse, fuse, exception };

char const * const kCallbackNames[] = {"brightness", "keyed fuse", "fuse", "exception"};

struct Thrown {
    std::string what;
};

constexpr int kNotifiers = 2;

class World;
using Script = std::function<void(World & world, int reactor, Callback callback)>;

// Reactors and notifiers by number. What is done to one that no longer lives does nothing.
class World {
public:
    explicit World(Script script) : script_(std::move(script)) {}
    virtual ~World() = default;
    World(World const &) = delete;
    World & operator=(World const &) = delete;

    // Reactors are counted, or owned by one pointer and never counted.
    virtual int addReactor(bool counted, bool active) = 0;
    virtual int reactors() const = 0;
    virtual void bind(int reactor, int notifier) = 0;
    virtual void unbind(int reactor) = 0;
    virtual void registeredIs(int reactor, bool registered) = 0;
    virtual void activeIs(int reactor, bool active) = 0;
    // Gives up the only reference to the reactor that is not the delivery's own.
    virtual void release(int reactor) = 0;
    virtual void releaseNotifier(int notifier) = 0;
    virtual void write(int notifier, Attribute attribute) = 0;

    // A write by somebody who catches what it throws.
    void writeAndCatch(int notifier, Attribute attribute) {
        try {
            write(notifier, attribute);
        } catch (Thrown const & thrown) {
            log("caught " + thrown.what);
        }
    }
    [[noreturn]] void fail(int reactor) {
        throw Thrown{std::to_string(reactor) + '#' + std::to_string(failures_++)};
    }

    void log(std::string entry) { log_.push_back(std::move(entry)); }
    Log const & logged() const { return log_; }

    // For the nesting of writes by scripts.
    int depth = 0;
    // How many reactors follow the first notifier when the script begins. They have the first numbers.
    int followers = 0;

protected:
    void called(int reactor, Callback callback, unsigned value) {
        log(std::to_string(reactor) + ' ' + kCallbackNames[static_cast<int>(callback)] + ' ' +
            std::to_string(value));
        script_(*this, reactor, callback);
    }
    void toldOf(int reactor, std::string const & what) {
        log(std::to_string(reactor) + " told of " + what);
        script_(*this, reactor, Callback::exception);
    }

private:
    Script script_;
    Log log_;
    int failures_ = 0;
};

// With the pool, which this program does without elsewhere: it puts a new object where one has gone, so that
// a call of what is gone reaches what came after it.
class RealWorld final : public World {
public:
    explicit RealWorld(Script script) : World(std::move(script)) {
        Vel::SlabPool::pooledIs(true);
        for (int i = 0; i < kNotifiers; ++i) {
            lamps_[i] = new Lamp(Name("lamp"));
            owned_[i] = lamps_[i];
            lamps_[i]->onDestruction = [this, i] {
                log("~lamp " + std::to_string(i));
                lamps_[i] = nullptr;
            };
        }
    }

    ~RealWorld() override { Vel::SlabPool::pooledIs(false); }

    int addReactor(bool counted, bool active) override {
        int const number = reactors();
        auto * const watch = new Watch(*this, number);
        watches_.push_back(watch);
        counted_.push_back(counted ? watch : nullptr);
        unique_.emplace_back(counted ? nullptr : watch);
        watch->hasNotificationActiveIs(active);
        return number;
    }
    int reactors() const override { return static_cast<int>(watches_.size()); }
    void bind(int reactor, int notifier) override {
        if (watch(reactor) && lamps_[notifier]) watch(reactor)->notifierIs(lamps_[notifier]);
    }
    void unbind(int reactor) override {
        if (watch(reactor)) watch(reactor)->notifierIs(nullptr);
    }
    void registeredIs(int reactor, bool registered) override {
        if (watch(reactor)) watch(reactor)->isRegisteredNotifieeIs(registered);
    }
    void activeIs(int reactor, bool active) override {
        if (watch(reactor)) watch(reactor)->hasNotificationActiveIs(active);
    }
    void release(int reactor) override {
        Ptr<Watch> const last = std::move(counted_[index(reactor)]);
        std::unique_ptr<Watch> const only = std::move(unique_[index(reactor)]);
    }
    void releaseNotifier(int notifier) override { owned_[notifier] = nullptr; }
    void write(int notifier, Attribute attribute) override {
        Lamp * const lamp = lamps_[notifier];
        if (!lamp) return;
        if (attribute == Attribute::brightness) {
            lamp->brightnessIs(lamp->brightness() + 1);
        } else {
            lamp->fuseIs(Name("f"), lamp->fuse(Name("f")) + 1);
        }
    }

private:
    class Watch final : public Lamp::NotifieeConst, public Vel::AllocTracked<Watch> {
    public:
        Watch(RealWorld & world, int number) : world_(world), number_(number) {}
        ~Watch() override {
            world_.log('~' + std::to_string(number_));
            world_.watches_[index(number_)] = nullptr;
        }

    private:
        // A script may destroy this object, so nothing is done after it.
        void onBrightness() override {
            world_.called(number_, Callback::brightness, notifier()->brightness());
        }
        void onFuse(Name key) override { world_.called(number_, Callback::keyedFuse, notifier()->fuse(key)); }
        void onFuse() override { world_.called(number_, Callback::fuse, notifier()->fuse(Name("f"))); }
        void onNotificationException() override {
            try {
                throw;
            } catch (Thrown const & thrown) {
                world_.toldOf(number_, thrown.what);
            }
        }

        RealWorld & world_;
        int const number_;
    };

    static std::size_t index(int reactor) { return static_cast<std::size_t>(reactor); }
    Watch * watch(int reactor) const { return watches_[index(reactor)]; }

    std::vector<Watch *> watches_;  // Null once destroyed.
    std::array<Lamp *, kNotifiers> lamps_;
    std::array<Ptr<Lamp>, kNotifiers> owned_;
    std::vector<Ptr<Watch>> counted_;
    std::vector<std::unique_ptr<Watch>> unique_;
};

class ModelWorld final : public World {
public:
    using World::World;

    int addReactor(bool counted, bool active) override {
        reactors_.push_back({.counted = counted, .active = active});
        return reactors() - 1;
    }
    int reactors() const override { return static_cast<int>(reactors_.size()); }
    void bind(int reactor, int notifier) override {
        if (!at(reactor).lives || !notifiers_[notifier].lives) return;
        int const old = at(reactor).notifier;
        if (old == notifier) return;
        bool const registered = at(reactor).registration != 0;
        at(reactor).notifier = notifier;
        at(reactor).registration = registered ? ++registrations_ : 0;
        settleNotifier(old);
    }
    void unbind(int reactor) override {
        int const old = at(reactor).notifier;
        at(reactor).notifier = kNone;
        at(reactor).registration = 0;
        settleNotifier(old);
    }
    void registeredIs(int reactor, bool registered) override {
        Reactor & r = at(reactor);
        if (!r.lives || r.notifier == kNone || registered == (r.registration != 0)) return;
        r.registration = registered ? ++registrations_ : 0;
    }
    void activeIs(int reactor, bool active) override { at(reactor).active = active; }
    void release(int reactor) override {
        at(reactor).owned = false;
        settle(reactor);
    }
    void releaseNotifier(int notifier) override {
        notifiers_[notifier].owned = false;
        settleNotifier(notifier);
    }
    void write(int notifier, Attribute attribute) override {
        Notifier & n = notifiers_[notifier];
        if (!n.lives) return;
        unsigned & value = n.values[static_cast<int>(attribute)];
        ++value;
        std::map<long, int> followers;  // By registration, which is their order.
        for (int i = 0; i < reactors(); ++i) {
            if (at(i).notifier == notifier && at(i).registration != 0) followers[at(i).registration] = i;
        }
        std::exception_ptr first;
        ++n.deliveries;
        for (auto const & [registration, i] : followers) {
            auto const gets = [&, registration = registration, i = i] {
                return at(i).lives && at(i).registration == registration && at(i).active;
            };
            if (!gets()) continue;
            ++at(i).calls;
            if (attribute == Attribute::brightness) {
                call(i, Callback::brightness, value, first);
            } else {
                call(i, Callback::keyedFuse, value, first);
                if (gets()) call(i, Callback::fuse, value, first);
            }
            --at(i).calls;
            settle(i);
        }
        --n.deliveries;
        settleNotifier(notifier);
        if (first) std::rethrow_exception(first);
    }

private:
    static constexpr int kNone = -1;

    struct Reactor {
        bool counted;
        bool active;
        bool lives = true;
        bool owned = true;
        int notifier = kNone;
        long registration = 0;  // 0: not registered.
        int calls = 0;
    };
    struct Notifier {
        bool lives = true;
        bool owned = true;
        int deliveries = 0;
        unsigned values[2] = {};
    };

    Reactor & at(int reactor) { return reactors_[static_cast<std::size_t>(reactor)]; }

    void call(int reactor, Callback callback, unsigned const & value, std::exception_ptr & first) {
        try {
            called(reactor, callback, value);
        } catch (Thrown const & thrown) {
            if (!first) first = std::current_exception();
            if (!at(reactor).lives) return;
            try {
                toldOf(reactor, thrown.what);
            } catch (Thrown const &) {
            }
        }
    }
    // A counted reactor lives for the call; one that is owned dies with its owner's will.
    void settle(int reactor) {
        Reactor & r = at(reactor);
        if (!r.lives || r.owned || (r.counted && r.calls != 0)) return;
        r.lives = false;
        log('~' + std::to_string(reactor));
        unbind(reactor);
    }
    void settleNotifier(int notifier) {
        if (notifier == kNone) return;
        Notifier & n = notifiers_[notifier];
        if (!n.lives || n.owned || n.deliveries != 0) return;
        for (Reactor const & r : reactors_) {
            if (r.notifier == notifier) return;
        }
        n.lives = false;
        log("~lamp " + std::to_string(notifier));
    }

    std::vector<Reactor> reactors_;
    std::array<Notifier, kNotifiers> notifiers_;
    long registrations_ = 0;
};

constexpr int kSeveral = 3;

// So many followers of the first notifier, and one more of the second.
void populate(World & world, int followers, bool counted) {
    world.followers = followers;
    for (int i = 0; i <= followers; ++i) {
        int const reactor = world.addReactor(counted, true);
        world.bind(reactor, i < followers ? 0 : 1);
        world.registeredIs(reactor, true);
    }
}

// Writes again, so that the logs tell who follows what in which order now, and takes everything down.
void probeAndTakeDown(World & world) {
    for (int round = 0; round < 2; ++round) {
        for (int notifier = 0; notifier < kNotifiers; ++notifier) {
            for (Attribute const attribute : {Attribute::brightness, Attribute::fuse}) {
                world.log("probe " + std::to_string(notifier));
                world.writeAndCatch(notifier, attribute);
            }
        }
        for (int i = 0; i < world.reactors(); ++i) world.activeIs(i, true);
    }
    world.log("take down");
    for (int i = 0; i < world.reactors(); i += 2) world.release(i);
    for (int i = 0; i < kNotifiers; ++i) world.releaseNotifier(i);
    for (int i = 1; i < world.reactors(); i += 2) world.release(i);
}

Log run(World & world, int followers, bool counted, std::function<void(World &)> const & change) {
    populate(world, followers, counted);
    change(world);
    probeAndTakeDown(world);
    return world.logged();
}

// The matrix: what a callback does, to whom, from which place in the list, in which callback, whether the
// reactors are counted, and whether there is but one.

enum class Target { itself, next, previous, all, others };
char const * const kTargetNames[] = {"Itself", "TheNext", "ThePrevious", "All", "TheOthers"};

struct Disturbance {
    std::string name;
    std::function<void(World & world, int self, Attribute attribute)> act;
};

std::vector<int> targets(World const & world, Target target, int self) {
    std::vector<int> result;
    for (int i = 0; i < world.followers; ++i) {
        bool const is = target == Target::all || (target == Target::itself && i == self) ||
                        (target == Target::others && i != self) ||
                        (target == Target::next && i == self + 1) ||
                        (target == Target::previous && i == self - 1);
        if (is) result.push_back(i);
    }
    return result;
}

int addFollower(World & world, bool counted) {
    int const reactor = world.addReactor(counted, true);
    world.bind(reactor, 0);
    world.registeredIs(reactor, true);
    return reactor;
}

std::vector<Disturbance> disturbances() {
    struct {
        char const * name;
        void (*act)(World & world, int target);
    } const onTargets[] = {
        {"Unregisters", [](World & w, int r) { w.registeredIs(r, false); }},
        {"Reregisters", [](World & w, int r) { w.registeredIs(r, false), w.registeredIs(r, true); }},
        {"Deactivates", [](World & w, int r) { w.activeIs(r, false); }},
        {"DeactivatesAndActivates", [](World & w, int r) { w.activeIs(r, false), w.activeIs(r, true); }},
        {"Rebinds", [](World & w, int r) { w.bind(r, 1); }},
        {"RebindsAndBack", [](World & w, int r) { w.bind(r, 1), w.bind(r, 0); }},
        {"Unbinds", [](World & w, int r) { w.unbind(r); }},
        {"UnbindsAndBindsAgain",
         [](World & w, int r) { w.unbind(r), w.bind(r, 0), w.registeredIs(r, true); }},
        {"Releases", [](World & w, int r) { w.release(r); }},
        {"ReleasesAndReplaces",
         [](World & w, int r) { w.release(r), addFollower(w, true), addFollower(w, false); }},
        {"UnregistersAndReleases", [](World & w, int r) { w.registeredIs(r, false), w.release(r); }},
    };
    std::vector<Disturbance> all;
    for (auto const & [name, act] : onTargets) {
        for (Target const target :
             {Target::itself, Target::next, Target::previous, Target::all, Target::others}) {
            std::string const full = std::string(name) + kTargetNames[static_cast<int>(target)];
            auto const toAll = [act = act, target](World & world, int self) {
                for (int const each : targets(world, target, self)) act(world, each);
            };
            all.push_back({full, [toAll](World & world, int self, Attribute) { toAll(world, self); }});
            all.push_back({full + "AndThrows", [toAll](World & world, int self, Attribute) {
                               toAll(world, self);
                               world.fail(self);
                           }});
            all.push_back({full + "AndWrites", [toAll](World & world, int self, Attribute attribute) {
                               toAll(world, self);
                               world.write(0, attribute);
                           }});
        }
    }
    auto const add = [&](char const * name, void (*act)(World &, int, Attribute)) {
        all.push_back({name, act});
    };
    add("DoesNothing", [](World &, int, Attribute) {});
    add("RegistersANewOne", [](World & w, int, Attribute) { addFollower(w, true); });
    add("RegistersANewOneAndWrites", [](World & w, int, Attribute a) {
        addFollower(w, true);
        w.write(0, a);
    });
    add("RegistersANewOneAndLeaves", [](World & w, int self, Attribute) {
        addFollower(w, false);
        w.registeredIs(self, false);
    });
    add("ReplacesAllByNewOnes", [](World & w, int, Attribute) {
        for (int i = 0; i < w.followers; ++i) w.release(i);
        for (int i = 0; i < w.followers; ++i) addFollower(w, i % 2 == 0);
    });
    add("ReleasesTheNotifier", [](World & w, int, Attribute) { w.releaseNotifier(0); });
    add("ReleasesTheNotifierAndUnbindsAll", [](World & w, int, Attribute) {
        w.releaseNotifier(0);
        for (int i = 0; i < w.followers; ++i) w.unbind(i);
    });
    add("ReleasesTheNotifierAndAllReactors", [](World & w, int self, Attribute) {
        w.releaseNotifier(0);
        for (int i = 0; i < w.followers; ++i) w.release(i);
        w.fail(self);
    });
    add("ReleasesTheNotifierAndRebindsAll", [](World & w, int, Attribute) {
        w.releaseNotifier(0);
        for (int i = 0; i < w.followers; ++i) w.bind(i, 1);
    });
    add("WritesTheOtherAttribute", [](World & w, int, Attribute a) {
        w.write(0, a == Attribute::fuse ? Attribute::brightness : Attribute::fuse);
    });
    add("WritesTheOtherNotifier", [](World & w, int, Attribute a) { w.write(1, a); });
    add("Throws", [](World & w, int self, Attribute) { w.fail(self); });
    return all;
}

class DisturbedDelivery : public testing::TestWithParam<Disturbance> {
protected:
    static void isThatOfTheModel(int followers, int position, Callback callback, bool counted) {
        Attribute const attribute =
            callback == Callback::brightness ? Attribute::brightness : Attribute::fuse;
        auto const script = [=, done = false](World & world, int reactor, Callback called) mutable {
            if (done || reactor != position || called != callback) return;
            done = true;
            GetParam().act(world, reactor, attribute);
        };
        auto const change = [attribute](World & world) { world.writeAndCatch(0, attribute); };
        ModelWorld model(script);
        Log const expected = run(model, followers, counted, change);
        RealWorld real(script);
        EXPECT_EQ(run(real, followers, counted, change), expected);
    }
};

TEST_P(DisturbedDelivery, IsThatOfTheModel) {
    for (int const followers : {1, kSeveral}) {
        for (int position = 0; position < followers; ++position) {
            for (Callback const callback : {Callback::brightness, Callback::keyedFuse, Callback::fuse}) {
                for (bool const counted : {true, false}) {
                    SCOPED_TRACE(testing::Message()
                                 << "in reactor " << position << " of " << followers << ", callback "
                                 << kCallbackNames[static_cast<int>(callback)]
                                 << (counted ? ", counted" : ", owned"));
                    isThatOfTheModel(followers, position, callback, counted);
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, DisturbedDelivery, testing::ValuesIn(disturbances()),
                         [](testing::TestParamInfo<Disturbance> const & info) { return info.param.name; });

// Every reactor writes again in every callback until the writes are nested four deep.
class NestedDelivery : public testing::TestWithParam<std::tuple<Attribute, bool, int>> {};

TEST_P(NestedDelivery, IsThatOfTheModel) {
    auto const [attribute, counted, thrower] = GetParam();
    auto const script = [&, attribute = attribute, thrower = thrower](World & world, int reactor,
                                                                      Callback callback) {
        if (callback == Callback::exception) return;
        if (world.depth < 4) {
            ++world.depth;
            world.writeAndCatch(0, attribute);
            --world.depth;
        } else if (reactor == thrower) {
            world.fail(reactor);
        }
    };
    auto const change = [attribute = attribute](World & world) { world.writeAndCatch(0, attribute); };
    ModelWorld model(script);
    Log const expected = run(model, kSeveral, counted, change);
    RealWorld real(script);
    EXPECT_EQ(run(real, kSeveral, counted, change), expected);
    EXPECT_GT(expected.size(), 363U) << "three reactors in each of 1 + 3 + 9 + 27 + 81 deliveries";
}

INSTANTIATE_TEST_SUITE_P(, NestedDelivery,
                         testing::Combine(testing::Values(Attribute::brightness), testing::Bool(),
                                          testing::Values(-1, 0, 1, 2)));

// Anything in any callback, several at once, in nested deliveries of two notifiers. What a callback does
// depends on nothing but the seed and on how many callbacks came before it, so that the first difference
// between the worlds is where one of them is wrong.
class RandomScript {
public:
    RandomScript(unsigned seed, bool throws) : seed_(seed), throws_(throws) {}

    void operator()(World & world, int reactor, Callback) {
        if (++calls_ > kMostCalls) return;
        std::minstd_rand random(seed_ * 0x9e3779b1U ^ calls_ * 0x85ebca6bU);
        random.discard(2);
        auto const below = [&random](int limit) { return static_cast<int>(random() >> 8) % limit; };
        for (int steps = below(4); steps > 0; --steps) {
            int const other = below(3) == 0 ? reactor : below(world.reactors());
            switch (below(15)) {
            case 0: world.registeredIs(other, false); break;
            case 1: world.registeredIs(other, true); break;
            case 2:
                world.registeredIs(other, false);
                world.registeredIs(other, true);
                break;
            case 3: world.activeIs(other, false); break;
            case 4: world.activeIs(other, true); break;
            case 5: world.bind(other, below(kNotifiers)); break;
            case 6: world.unbind(other); break;
            case 7:
                world.bind(other, below(kNotifiers));
                world.registeredIs(other, true);
                break;
            case 8: world.release(other); break;
            case 9:
            case 10:
                if (world.reactors() < 30) {
                    int const added = world.addReactor(below(2) == 0, below(4) != 0);
                    world.bind(added, below(kNotifiers));
                    world.registeredIs(added, true);
                }
                break;
            case 11:
                if (below(6) == 0) world.releaseNotifier(below(kNotifiers));
                break;
            case 12:
                if (throws_) world.fail(reactor);
                break;
            default:
                if (world.depth < 4) {
                    struct Nesting {
                        explicit Nesting(int & depth) : depth_(depth) { ++depth_; }
                        ~Nesting() { --depth_; }
                        int & depth_;
                    } const nesting(world.depth);
                    Attribute const attribute = below(2) == 0 ? Attribute::brightness : Attribute::fuse;
                    if (below(2) == 0) {
                        world.writeAndCatch(below(kNotifiers), attribute);
                    } else {
                        world.write(below(kNotifiers), attribute);
                    }
                }
            }
        }
    }

private:
    static constexpr unsigned kMostCalls = 300;

    unsigned seed_;
    bool throws_;
    unsigned calls_ = 0;
};

TEST(RandomDelivery, IsThatOfTheModel) {
    for (unsigned seed = 0; seed < 1000; ++seed) {
        bool const counted = seed % 3 != 0;
        auto const change = [](World & world) {
            for (int i = 0; i < 3; ++i) {
                world.writeAndCatch(0, Attribute::brightness);
                world.writeAndCatch(0, Attribute::fuse);
            }
        };
        ModelWorld model(RandomScript(seed, seed % 2 == 0));
        Log const expected = run(model, kSeveral, counted, change);
        RealWorld real(RandomScript(seed, seed % 2 == 0));
        ASSERT_EQ(run(real, kSeveral, counted, change), expected) << "seed " << seed;
    }
}

}  // namespace
}  // namespace VelTest
