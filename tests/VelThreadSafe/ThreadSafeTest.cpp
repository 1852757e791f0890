#include <algorithm>
#include <array>
#include <atomic>
#include <barrier>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Exceptions.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/Trace.h"
#include "platform/Vel/VelType.h"
#include "platform/Vel/WeakPtr.h"
#include "tests/Vel/Lamp.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;

constexpr int kThreads = 4;
constexpr int kRounds = 20000;

// Runs `body(thread number)` on all threads, which start together.
void together(std::function<void(int)> const & body) {
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            body(i);
        });
    }
    for (std::thread & thread : threads) thread.join();
}

class Shared final : public Vel::PtrInterface, public Vel::AllocTracked<Shared> {
public:
    ~Shared() override {
        destructions.fetch_add(1);
        for (int const each : written) sum.fetch_add(each);
    }
    std::array<int, kThreads> written{};  // By each thread before it lets go.
    Ptr<Shared> next;

    static inline std::atomic<int> destructions = 0;
    static inline std::atomic<int> sum = 0;
};

TEST(ThreadSafePtr, CountsExactlyWhatFourThreadsCopyAndRelease) {
    Ptr<Shared> const shared = new Shared;
    std::vector<std::vector<Ptr<Shared>>> kept(kThreads);
    together([&](int thread) {
        auto & mine = kept[static_cast<std::size_t>(thread)];
        for (int i = 0; i < kRounds; ++i) {
            Ptr<Shared> const first = shared;
            Ptr<Shared> second = first;
            if (i % 100 == 0) mine.push_back(second);
            second = nullptr;
        }
    });
    EXPECT_EQ(shared->references(), 1U + kThreads * (kRounds / 100));
    kept.clear();
    EXPECT_EQ(shared->references(), 1U);
}

class Target final : public Vel::PtrInterface, public Vel::AllocTracked<Target> {
public:
    Vel::WeakTarget & weakTarget() const { return weakTarget_; }

private:
    mutable Vel::WeakTarget weakTarget_;
};

TEST(ThreadSafeWeakPtr, ServesTargetsOfSeveralThreads) {
    std::atomic<int> wrong = 0;
    together([&](int) {
        std::array<Ptr<Target>, 8> targets;
        std::array<Vel::WeakPtr<Target>, targets.size()> weak;
        for (std::size_t i = 0; i < kRounds; ++i) {
            std::size_t const one = i % targets.size();
            targets[one] = nullptr;
            if (weak[one].get()) ++wrong;
            targets[one] = new Target;
            if (weak[one].get()) ++wrong;
            weak[one] = targets[one].get();
            for (std::size_t j = 0; j < targets.size(); ++j) wrong += weak[j].get() != targets[j].get();
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(ThreadSafePtr, KeepsFlagsAndCountApart) {
    for (int last = 0; last < 2; ++last) {
        Ptr<Shared> const shared = new Shared;
        together([&](int thread) {
            // Long enough for threads that share a processor to interrupt each other.
            for (int i = 0; i <= 10 * kRounds + last; ++i) {
                bool const on = i % 2 == 0;
                Ptr<Shared> const copy = shared;
                if (thread == 0) {
                    copy->velMarkedForDeletionIs(on);
                    EXPECT_EQ(copy->velMarkedForDeletion(), on);
                } else if (thread == 1) {
                    copy->hasNotificationActiveIs(on);
                    EXPECT_EQ(copy->hasNotificationActive(), on);
                }
            }
        });
        EXPECT_EQ(shared->references(), 1U);
        EXPECT_EQ(shared->velMarkedForDeletion(), last == 0);
        EXPECT_EQ(shared->hasNotificationActive(), last == 0);
        EXPECT_FALSE(shared->isBeingDestroyed());
    }
}

TEST(ThreadSafePtr, DestroysAnObjectOnceAndAfterAllThatWasDoneToIt) {
    constexpr int kObjects = 2000;
    Shared::destructions = 0;
    Shared::sum = 0;
    std::vector<std::array<Ptr<Shared>, kThreads>> objects(kObjects);
    for (auto & object : objects) object.fill(new Shared);
    together([&](int thread) {
        auto const mine = static_cast<std::size_t>(thread);
        for (auto & object : objects) {
            object[mine]->written[mine] = 1;
            object[mine] = nullptr;
        }
    });
    EXPECT_EQ(Shared::destructions, kObjects);
    EXPECT_EQ(Shared::sum, kObjects * kThreads);
    EXPECT_EQ(Shared::velAllocTrackTypeInfo_->live(), 0U);
}

TEST(ThreadSafePtr, DestroysChainsOnEveryThreadAtOnce) {
    Shared::destructions = 0;
    together([](int) {
        for (int i = 0; i < 5; ++i) {
            Ptr<Shared> first;
            for (int j = 0; j < 1000; ++j) {
                Ptr<Shared> object = new Shared;
                object->next = std::move(first);
                first = std::move(object);
            }
        }
    });
    EXPECT_EQ(Shared::destructions, kThreads * 5 * 1000);
}

TEST(ThreadSafeValueCollection, CountsExactlyWhatFourThreadsCopyAndReleaseOfAnEntry) {
    struct Flags {};
    using Map = Vel::HashMap2018<Flags, Name, bool>;
    Map map;
    map.valueIs(Name("flag"), true);
    Ptr<Map::Node> entry = map.valueDel(Name("flag"));
    together([&](int) {
        for (int i = 0; i < kRounds; ++i) Ptr<Map::Node> const copy = entry;
    });
    EXPECT_EQ(entry->references(), 1U);
    entry = nullptr;
    EXPECT_EQ(Map::Node::velAllocTrackTypeInfo_->live(), 0U);
}

TEST(ThreadSafeString, IsCopiedAndReleasedByFourThreads) {
    for (int round = 0; round < 20; ++round) {
        auto shared = std::make_unique<Vel::String>("a string that several threads hold");
        std::uint32_t const hash = shared->hash();
        std::vector<Vel::String> last(kThreads, *shared);
        shared.reset();
        together([&](int thread) {
            Vel::String & mine = last[static_cast<std::size_t>(thread)];
            for (int i = 0; i < kRounds / 20; ++i) {
                Vel::String const copy = mine;
                Name const name(copy);
                EXPECT_EQ(name.hash(), hash);
            }
            mine = Vel::String();  // One of the threads frees it.
        });
    }
}

TEST(ThreadSafeAllocTrack, CountsExactlyWhatFourThreadsMake) {
    constexpr int kObjects = 1000;
    // Made nowhere else, so that the threads make its first objects at once, and one record for them.
    class Fresh final : public Vel::PtrInterface, public Vel::AllocTracked<Fresh> {};
    std::vector<std::vector<Ptr<Fresh>>> kept(kThreads);
    together([&](int thread) {
        auto & mine = kept[static_cast<std::size_t>(thread)];
        for (int i = 0; i < kObjects; ++i) {
            Ptr<Fresh> const passing = new Fresh;
            if (i % 2 == 0) mine.push_back(passing);
        }
    });
    EXPECT_EQ(Fresh::velAllocTrackTypeInfo_->live(), kThreads * kObjects / 2);
    EXPECT_EQ(Fresh::velAllocTrackTypeInfo_->total(), kThreads * kObjects);
    auto const types = Vel::allocTrackTypes();
    EXPECT_EQ(std::count_if(types.begin(), types.end(),
                            [](auto const * type) {
                                return type->typeName() == Fresh::velAllocTrackTypeInfo_->typeName();
                            }),
              1);
}

// A library may be loaded and unloaded on one thread while another one looks types up.
TEST(ThreadSafeTypes, AreRegisteredFoundAndForgottenByFourThreads) {
    std::size_t const before = Vel::typeNodes().size();
    constexpr static Vel::VelType shared{{.name = "VelTest::Shared"}};
    std::atomic<int> registrations = 0;
    together([&](int thread) {
        std::string const name = "VelTest::Own" + std::to_string(thread);
        Vel::VelType const own({.name = name.c_str()});
        for (int i = 0; i < kRounds / 10; ++i) {
            Vel::TypeRegistration const registration(own);
            EXPECT_EQ(Vel::typeNode(name), &own);
            EXPECT_GT(Vel::typeNodes().size(), before);
            try {
                Vel::TypeRegistration const race(shared);
                registrations.fetch_add(1);
            } catch (Vel::RangeException const &) {  // Another thread was first.
            }
        }
    });
    EXPECT_GE(registrations, 1);
    EXPECT_EQ(Vel::typeNode("VelTest::Shared"), nullptr);
    EXPECT_EQ(Vel::typeNodes().size(), before);
}

TEST(ThreadSafeTrace, IsUsedAndSwitchedByFourThreads) {
    std::atomic<int> records = 0;
    static Vel::TraceSwitch traceSwitch;
    Vel::TraceHandle shared("ThreadSafeTrace", true, &traceSwitch);
    auto const sink = [&](Vel::TraceRecord const & record) {
        EXPECT_EQ(record.message, "what happened");
        records.fetch_add(1);
    };
    Vel::traceSinkIs(sink);
    constexpr int kRecords = 500;
    together([&](int thread) {
        Vel::TraceHandle own("ThreadSafeTrace " + std::to_string(thread), true);
        for (int i = 0; i < kRecords; ++i) {
            Vel::traceLevelIs("ThreadSafeTrace", 1 + thread, i % 2 == 0);
            if (i % 50 == 0) Vel::traceSinkIs(sink);
            for (Vel::TraceHandle * handle : {&own, &shared}) {
                if (!traceSwitch.enabled(Vel::TraceFacility::FacilityLevel(0))) continue;
                alignas(Vel::TraceHelper) std::byte storage[sizeof(Vel::TraceHelper)];
                auto * const helper =
                    Vel::TraceHelper::createIfEnabled(*handle, Vel::TraceFacility::FacilityLevel(0), storage);
                Vel::EnsureTraceHelperIsDestroyed const guard(helper);
                helper->stream() << "what happened";
                helper->trace("File", i, "function");
            }
        }
    });
    Vel::traceSinkIs({});
    EXPECT_EQ(records, kThreads * kRecords * 2);
}

// Models that belong to different threads have nothing in common.
TEST(ThreadSafeDelivery, HappensOnEachThreadForItself) {
    class Watch final : public Lamp::NotifieeConst, public Vel::AllocTracked<Watch> {
    public:
        explicit Watch(int & calls) : calls_(calls) {}

    private:
        void onBrightness() override {
            ++calls_;
            auto * const lamp = const_cast<Lamp *>(notifier());
            if (lamp->brightness() % 4 != 0) lamp->brightnessIs(lamp->brightness() + 1);
            isRegisteredNotifieeIs(false);
            isRegisteredNotifieeIs(true);
        }
        int & calls_;
    };
    std::array<int, kThreads> calls{};
    together([&](int thread) {
        Ptr<Lamp> const lamp = new Lamp(Name("lamp"));
        Ptr<Watch> const watch = new Watch(calls[static_cast<std::size_t>(thread)]);
        watch->notifierIs(lamp);
        watch->isRegisteredNotifieeIs(true);
        watch->hasNotificationActiveIs(true);
        for (int i = 0; i < 1000; ++i) lamp->brightnessIs(lamp->brightness() + 1);
        EXPECT_EQ(lamp->brightness(), 4000U);
    });
    for (int const each : calls) EXPECT_EQ(each, 4000);
}

}  // namespace
}  // namespace VelTest
