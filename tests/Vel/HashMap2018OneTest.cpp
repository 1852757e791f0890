// Value collections of flags that mostly hold one entry.
#include "platform/Vel/HashMap2018One.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Vel/Members.h"
#include "tests/support/Allocations.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;

struct OneByName {
    static constexpr bool kMostlyOne = true;
};
struct OneByPort {
    static constexpr bool kMostlyOne = true;
};

using OneByNameMap = Vel::HashMap2018<OneByName, Name, bool>;
using OneByPortMap = Vel::HashMap2018<OneByPort, Ptr<NamedMember const>, bool>;

static_assert(sizeof(OneByNameMap) == 2 * sizeof(void *) && sizeof(OneByPortMap) == 2 * sizeof(void *));

template <class Map>
auto keysIn(Map const & map) {
    std::vector<std::remove_cvref_t<decltype(map.iterator()->key())>> keys;
    for (auto i = map.iterator(); i; ++i) keys.push_back(i->key());
    return keys;
}

TEST(HashMap2018One, IsEmptyAtFirst) {
    OneByNameMap map;
    EXPECT_EQ(map.size(), 0U);
    EXPECT_EQ(map.single(), nullptr);
    EXPECT_EQ(map[Name("a")], nullptr);
    EXPECT_EQ(map[Name()], nullptr) << "what stands for no key is a key";
    EXPECT_FALSE(map.valueDel(Name()));
    EXPECT_FALSE(map.iterator());
    EXPECT_FALSE(map.iteratorAt(Name()));
}

TEST(HashMap2018One, HoldsOneEntryWithoutAnyMemory) {
    OneByNameMap map;
    Name const a("a");
    Name const b("b");
    TestSupport::AllocationCount const count;
    EXPECT_TRUE(map.valueIs(a, true));
    EXPECT_FALSE(map.valueIs(a, true));
    ASSERT_NE(map[a], nullptr);
    EXPECT_EQ(map[a]->key(), a);
    EXPECT_TRUE(map[a]->value());
    EXPECT_TRUE(map.valueIs(a, false));
    EXPECT_FALSE(map.valueIs(a, false));
    EXPECT_FALSE(map[a]->value());
    EXPECT_EQ(map.single(), map[a]);
    EXPECT_EQ(map[b], nullptr);
    EXPECT_FALSE(map.valueDel(b));
    EXPECT_EQ(map.size(), 1U);
    auto const gone = map.valueDel(a);
    ASSERT_TRUE(gone);
    EXPECT_EQ(gone->key(), a);
    EXPECT_FALSE(gone->value());
    EXPECT_EQ(map.size(), 0U);
    EXPECT_EQ(map.single(), nullptr);
    EXPECT_TRUE(map.valueIs(b, true));
    EXPECT_EQ(map[a], nullptr);
    EXPECT_TRUE(map.valueDel(b)->value());
    EXPECT_TRUE(map.valueIs(a, false)) << "without the flag of the one before";
    EXPECT_FALSE(map[a]->value());
    EXPECT_EQ(count.value(), 0U);
}

TEST(HashMap2018One, TakesEqualKeysForOne) {
    OneByNameMap map;
    map.valueIs(Name("a"), true);
    EXPECT_FALSE(map.valueIs(Name(std::string("a")), true));
    EXPECT_NE(map[Name(std::string("a"))], nullptr);
    EXPECT_TRUE(map.valueDel(Name(std::string("a"))));
}

TEST(HashMap2018One, CountsItsKeys) {
    OneByPortMap map;
    Ptr<NamedMember> const a = new NamedMember("p");
    Ptr<NamedMember> const b = new NamedMember("p");
    map.valueIs(a, true);
    EXPECT_EQ(a->references(), 2U);
    map.valueIs(a, false);
    EXPECT_EQ(a->references(), 2U);
    EXPECT_EQ(map[b], nullptr);
    map.valueIs(b, true);
    EXPECT_GT(a->references(), 1U);
    EXPECT_GT(b->references(), 1U);
    map.valueDel(a);
    EXPECT_EQ(a->references(), 1U);
    map.valueDel(b);
    EXPECT_EQ(b->references(), 1U);
    {
        OneByPortMap one;
        one.valueIs(a, true);
        OneByPortMap several;
        several.valueIs(a, true);
        several.valueIs(b, true);
    }
    EXPECT_EQ(a->references(), 1U);
    EXPECT_EQ(b->references(), 1U);
}

TEST(HashMap2018One, HoldsSeveralInATableWhichItKeeps) {
    OneByPortMap map;
    std::vector<Ptr<NamedMember>> ports;
    for (int i = 0; i < 20; ++i) {
        ports.push_back(new NamedMember("p"));
        EXPECT_TRUE(map.valueIs(ports.back(), i % 2 == 0));
        EXPECT_EQ(map.size(), ports.size());
        EXPECT_EQ(map.single() != nullptr, i == 0);
        for (std::size_t j = 0; j < ports.size(); ++j) {
            ASSERT_NE(map[ports[j]], nullptr);
            EXPECT_EQ(map[ports[j]]->key(), ports[j]);
            EXPECT_EQ(map[ports[j]]->value(), j % 2 == 0);
            EXPECT_FALSE(map.valueIs(ports[j], j % 2 == 0));
        }
    }
    auto const * const entry = map[ports[3]];
    EXPECT_TRUE(map.valueIs(ports[3], true));
    EXPECT_TRUE(entry->value()) << "an entry in hand shows the new flag";
    EXPECT_TRUE(map.valueIs(nullptr, true));
    EXPECT_NE(map[nullptr], nullptr);
    EXPECT_EQ(map.valueDel(nullptr)->key(), nullptr);
    for (auto const & port : ports) {
        auto const gone = map.valueDel(port);
        ASSERT_TRUE(gone);
        EXPECT_EQ(gone->key(), port);
        EXPECT_FALSE(map.valueDel(port));
    }
    EXPECT_EQ(map.size(), 0U);
    EXPECT_TRUE(keysIn(map).empty());
    map.valueIs(ports[0], true);
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(map.single(), nullptr);
    EXPECT_EQ(keysIn(map), std::vector<Ptr<NamedMember const>>{ports[0]});
}

TEST(HashMap2018One, ChangesNothingWhenThereIsNoMemoryForASecond) {
    OneByNameMap map;
    Name const a("a");
    Name const b("b");
    map.valueIs(a, true);
    auto const * const entry = map[a];
    int failures = 0;
    for (bool added = false; !added; ++failures) {
        TestSupport::FailingAllocations const failing(static_cast<std::uint64_t>(failures));
        try {
            added = map.valueIs(b, true);
        } catch (std::bad_alloc const &) {
            EXPECT_EQ(map.size(), 1U);
            EXPECT_EQ(map[a], entry);
            EXPECT_EQ(map[b], nullptr);
        }
    }
    EXPECT_GT(failures, 3) << "a table and two entries";
    EXPECT_TRUE(map[a]->value());
    EXPECT_TRUE(map[b]->value());
}

TEST(HashMap2018One, TakesAKeyThatLivesInItsOwnEntry) {
    OneByNameMap map;
    map.valueIs(Name("a"), true);
    EXPECT_FALSE(map.valueIs(map[Name("a")]->key(), true));
    EXPECT_TRUE(map.valueIs(map[Name("a")]->key(), false));
    EXPECT_EQ(map.valueDel(map[Name("a")]->key())->key(), Name("a"));
    map.valueIs(Name("a"), true);
    map.valueIs(Name("b"), true);
    EXPECT_EQ(map.valueDel(map[Name("a")]->key())->key(), Name("a"));
    EXPECT_EQ(map.size(), 1U);
}

TEST(HashMap2018OneWalk, ShowsARemovedEntryUntilItMoves) {
    OneByPortMap map;
    Ptr<NamedMember> const port = new NamedMember("p");
    map.valueIs(port, false);
    auto i = map.iteratorAt(port);
    ASSERT_TRUE(i);
    map.valueIs(port, true);
    EXPECT_TRUE(i->value()) << "the flag that it has now";
    map.valueIs(port, false);
    EXPECT_EQ(&i->key(), &map[port]->key());
    EXPECT_TRUE(i->isPresent());
    map.valueDel(i->key());
    EXPECT_FALSE(i->isPresent());
    EXPECT_EQ(i->key(), port);
    EXPECT_FALSE(i->value());
    EXPECT_EQ(port->references(), 2U);
    map.valueIs(port, true);
    EXPECT_FALSE(i->isPresent()) << "an entry of the same key is another one";
    EXPECT_FALSE(i->value());
    ++i;
    EXPECT_FALSE(i) << "and is not met again";
    EXPECT_EQ(port->references(), 2U);
    ++i;
    i++;
    EXPECT_TRUE(i == std::default_sentinel);
}

TEST(HashMap2018OneWalk, GoesOnToAnEntryInThePlaceOfTheOneBeforeIfItComesLater) {
    OneByNameMap map;
    for (bool const later : {true, false}) {
        map.valueIs(Name("m"), true);
        auto i = map.iterator();
        map.valueDel(Name("m"));
        Name const next(later ? "n" : "l");
        map.valueIs(next, false);
        ++i;
        ASSERT_EQ(bool(i), later);
        if (later) {
            EXPECT_EQ(i->key(), next);
            EXPECT_FALSE(i->value());
            EXPECT_TRUE(i->isPresent());
            ++i;
            EXPECT_FALSE(i);
        }
        map.valueDel(next);
    }
}

TEST(HashMap2018OneWalk, MeetsWhatIsAddedToAnOnlyEntryAndNotThatAgain) {
    for (int added = 1; added < 20; ++added) {
        OneByNameMap map;
        map.valueIs(name(7), true);
        std::multiset<Name> met;
        for (auto i = map.iterator(); i; ++i) {
            if (met.empty()) {
                for (int n = 0; n < added; ++n) map.valueIs(name(100 + n), false);
                EXPECT_TRUE(i->isPresent());
                EXPECT_TRUE(i->value());
                map.valueIs(name(7), false);
                EXPECT_FALSE(i->value());
            }
            met.insert(i->key());
        }
        EXPECT_EQ(met.size(), static_cast<std::size_t>(added) + 1);
        EXPECT_EQ(std::set<Name>(met.begin(), met.end()).size(), met.size());
    }
}

TEST(HashMap2018OneWalk, FollowsAModelWhileEntriesComeAndGo) {
    for (unsigned seed = 0; seed < 3000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        OneByNameMap map;
        std::map<Name, bool> model;
        std::set<Name> stable;  // Those that stand from the beginning of the walk on.
        // Mostly few, so that many collections never get a table.
        int const keys = static_cast<int>(random() % 4 == 0 ? 12 : 2);
        std::size_t const most = random() % 2 == 0 ? 1 : 100;
        auto const remove = [&](Name const & key) {
            auto const gone = map.valueDel(key);
            auto const found = model.find(key);
            ASSERT_EQ(bool(gone), found != model.end());
            if (!gone) return;
            ASSERT_EQ(gone->value(), found->second);
            model.erase(found);
            stable.erase(key);
        };
        auto const disturb = [&] {
            Name const key = name(static_cast<int>(random() % static_cast<unsigned>(keys)));
            auto const found = model.find(key);
            if (random() % 3 == 0 || (found == model.end() && model.size() >= most)) {
                remove(key);
                return;
            }
            bool const flag = random() % 2 == 0;
            ASSERT_EQ(map.valueIs(key, flag), found == model.end() || found->second != flag);
            model[key] = flag;
        };
        for (int i = 0; i < 10; ++i) disturb();
        for (auto const & [key, flag] : model) stable.insert(key);
        std::map<Name, int> met;
        int steps = 0;
        for (auto i = map.iterator(); i; ++i) {
            Name const inHand = i->key();
            ASSERT_TRUE(i->isPresent());
            ASSERT_EQ(model.at(inHand), i->value());
            ++met[inHand];
            for (unsigned n = random() % 3; n > 0; --n) disturb();
            if (random() % 4 == 0) remove(inHand);
            if (i->isPresent()) {
                ASSERT_EQ(model.at(inHand), i->value());
            }
            ASSERT_EQ(i->key(), inHand);
            ASSERT_LT(++steps, 1000);
        }
        for (Name const & key : stable) ASSERT_EQ(met[key], 1) << key;
        ASSERT_EQ(map.size(), model.size());
        for (auto const & [key, flag] : model) ASSERT_EQ(map[key]->value(), flag);
        ASSERT_EQ(keysIn(map).size(), model.size());
    }
}

}  // namespace
}  // namespace VelTest
