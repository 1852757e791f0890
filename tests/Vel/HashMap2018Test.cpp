#include "platform/Vel/HashMap2018.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/Vel/Members.h"
#include "tests/support/Allocations.h"
#include "tests/support/SmallStack.h"

namespace VelTest {
namespace {

using Vel::Name;
using Vel::Ptr;
using Vel::HashHelper::KeyPointer;
using Vel::HashHelper::KeyString;

struct ByName {};
struct ByText {};
struct ByPort {};
struct Flags {};

using NameMap = Vel::HashMap2018<ByName, Name, Ptr<NamedMember>>;
using TextMap = Vel::HashMap2018<ByText, Vel::String, int>;
using PortMap = Vel::HashMap2018<ByPort, Ptr<NamedMember const>, Ptr<NamedMember>>;
using FlagMap = Vel::HashMap2018<Flags, Name, bool>;

Ptr<NamedMember> port(std::string const & name) { return new NamedMember(Name(name)); }

// The lookups of all value collections are found through their common base.
template <class Table, class Key>
auto lookup(Table const & table, Key key) {
    return Vel::HashMap2018Generic::lookupNodeG(table, key);
}

TEST(HashMap2018, IsEmptyAtFirst) {
    NameMap map;
    EXPECT_EQ(map.size(), 0U);
    EXPECT_EQ(map[Name("a")], nullptr);
    EXPECT_EQ(map[Name()], nullptr);
    EXPECT_EQ(lookup(map, KeyString{Name("a")}), nullptr);
    EXPECT_FALSE(map.valueDel(Name("a")));
    EXPECT_FALSE(map.iterator());
    EXPECT_EQ(map.iterator().currNodeMaybeStale(), nullptr);
    EXPECT_EQ(map.iterator().currNodeNonStale(), nullptr);
}

TEST(HashMap2018, HoldsAValueUnderAKey) {
    NameMap map;
    Ptr<NamedMember> const value = port("p");
    EXPECT_TRUE(map.valueIs(Name("a"), value));
    ASSERT_NE(map[Name("a")], nullptr);
    EXPECT_EQ(map[Name("a")]->key(), Name("a"));
    EXPECT_EQ(map[Name("a")]->value(), value);
    EXPECT_TRUE(map[Name("a")]->isPresent());
    EXPECT_EQ(value->references(), 2U);
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(map[Name("b")], nullptr);
}

TEST(HashMap2018, TellsWhetherAWriteChangedAnything) {
    NameMap map;
    Ptr<NamedMember> const first = port("p");
    Ptr<NamedMember> const second = port("p");
    EXPECT_TRUE(map.valueIs(Name("a"), first));
    EXPECT_FALSE(map.valueIs(Name("a"), first));
    EXPECT_TRUE(map.valueIs(Name("a"), second)) << "values are compared by identity";
    EXPECT_TRUE(map.valueIs(Name("a"), nullptr));
    EXPECT_FALSE(map.valueIs(Name("a"), nullptr));
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(first->references(), 1U);
    EXPECT_EQ(second->references(), 1U);
    EXPECT_TRUE(map.valueDel(Name("a")));
    EXPECT_FALSE(map.valueDel(Name("a")));
    EXPECT_EQ(map.size(), 0U);
}

TEST(HashMap2018, AddsAnEntryThatHoldsNothing) {
    NameMap map;
    EXPECT_TRUE(map.valueIs(Name("a"), nullptr)) << "an entry of null is not the absence of an entry";
    ASSERT_NE(map[Name("a")], nullptr);
    EXPECT_EQ(map[Name("a")]->value(), nullptr);
    FlagMap flags;
    EXPECT_TRUE(flags.valueIs(Name("a"), false));
    EXPECT_FALSE(flags.valueIs(Name("a"), false));
    EXPECT_TRUE(flags.valueIs(Name("a"), true));
    EXPECT_TRUE(flags[Name("a")]->value());
}

TEST(HashMap2018, ReplacesAValueInItsEntry) {
    FlagMap map;
    map.valueIs(Name("a"), false);
    auto i = map.iterator();
    map.valueIs(Name("a"), true);
    EXPECT_TRUE(i->value()) << "an entry in hand shows the new value";
    EXPECT_EQ(i.currNodeNonStale(), map[Name("a")]);
}

TEST(HashMap2018, TakesTheEmptyNameAndAnyBytes) {
    FlagMap map;
    Name const withNul("a\0b", 3);
    map.valueIs(Name(), true);
    map.valueIs(withNul, true);
    map.valueIs(Name("\xff"), true);
    EXPECT_NE(map[Name()], nullptr);
    EXPECT_NE(map[withNul], nullptr);
    EXPECT_EQ(map[Name("a")], nullptr);
    EXPECT_NE(lookup(map, KeyString{Name("\xff")}), nullptr);
    EXPECT_NE(lookup(map, KeyString{Vel::String()}), nullptr);
}

TEST(HashMap2018, LooksUpByTextWithoutAName) {
    FlagMap names;
    TextMap texts;
    for (int i = 0; i < 100; ++i) {
        names.valueIs(name(i), true);
        texts.valueIs(name(i), i);
    }
    for (int i = 0; i < 200; ++i) {
        Vel::String const text = name(i);
        EXPECT_EQ(lookup(names, KeyString{text}), names[name(i)]);
        EXPECT_EQ(lookup(texts, KeyString{text}), texts[text]);
        EXPECT_EQ(texts[text] != nullptr, i < 100);
    }
    TestSupport::AllocationCount const count;
    EXPECT_NE(lookup(names, KeyString{names.iterator()->key()}), nullptr);
    EXPECT_EQ(count.value(), 0U);
}

TEST(HashMap2018, TellsPointersOfOneNameApart) {
    PortMap map;
    Ptr<NamedMember> const a = port("same");
    Ptr<NamedMember> const b = port("same");
    Ptr<NamedMember> const value = port("value");
    EXPECT_TRUE(map.valueIs(a, value));
    EXPECT_EQ(map[b], nullptr);
    EXPECT_EQ(lookup(map, KeyPointer{b.get()}), nullptr);
    EXPECT_TRUE(map.valueIs(b, nullptr));
    EXPECT_EQ(map.size(), 2U);
    EXPECT_EQ(map[a]->value(), value);
    EXPECT_EQ(lookup(map, KeyPointer{a.get()}), map[a]);
    EXPECT_EQ(lookup(map, KeyPointer{b.get()}), map[b]);
    EXPECT_TRUE(map.valueDel(a));
    EXPECT_EQ(map[a], nullptr);
    EXPECT_NE(map[b], nullptr);
}

TEST(HashMap2018, FindsPointersThatItTookBeforeItGrew) {
    PortMap map;
    std::vector<Ptr<NamedMember>> ports;
    for (int i = 0; i < 20; ++i) {
        ports.push_back(port("p"));
        EXPECT_TRUE(map.valueIs(ports.back(), ports.back()));
        for (auto const & each : ports) {
            ASSERT_NE(map[each], nullptr) << i;
            EXPECT_EQ(map[each]->value(), each);
            EXPECT_EQ(lookup(map, KeyPointer{each.get()}), map[each]);
            EXPECT_FALSE(map.valueIs(each, each)) << "it is there already";
        }
    }
    for (auto const & each : ports) EXPECT_TRUE(map.valueDel(each));
    EXPECT_EQ(map.size(), 0U);
}

TEST(HashMap2018, TakesNullForAKey) {
    PortMap map;
    std::vector<Ptr<NamedMember>> ports;
    for (int i = 0; i < 20; ++i) {
        ports.push_back(port("p"));
        map.valueIs(ports.back(), nullptr);
    }
    EXPECT_EQ(map[nullptr], nullptr);
    EXPECT_EQ(lookup(map, KeyPointer{nullptr}), nullptr);
    EXPECT_TRUE(map.valueIs(nullptr, ports[0]));
    ASSERT_NE(map[nullptr], nullptr);
    EXPECT_EQ(map[nullptr]->value(), ports[0]);
    EXPECT_EQ(lookup(map, KeyPointer{nullptr}), map[nullptr]);
    EXPECT_EQ(map.iterator()->key(), nullptr) << "it is the first of the first bucket";
    EXPECT_TRUE(map.valueDel(nullptr));
    EXPECT_EQ(map[nullptr], nullptr);
}

TEST(HashMap2018, HoldsItsPointerKeys) {
    PortMap map;
    Ptr<NamedMember> key = port("p");
    map.valueIs(key, nullptr);
    EXPECT_EQ(key->references(), 2U);
    Vel::PtrInterface const * const address = key.get();
    key = nullptr;
    EXPECT_EQ(liveMembers<Name>(), 1U) << "so that no other port can take its address";
    auto const * const node = lookup(map, KeyPointer{address});
    ASSERT_NE(node, nullptr);
    map.valueDel(Ptr<NamedMember const>(node->key()));
    EXPECT_EQ(liveMembers<Name>(), 0U);
}

// A class whose framework object is not where the class begins.
struct Header {
    virtual ~Header() = default;
    int number = 1;
};
class Boxed final : public Header, public Vel::PtrInterface, public Vel::AllocTracked<Boxed> {};
struct ByBox {};

TEST(HashMap2018, FindsAPointerKeyByItsFrameworkObject) {
    Vel::HashMap2018<ByBox, Ptr<Boxed>, int> map;
    std::vector<Ptr<Boxed>> boxes;
    for (int i = 0; i < 20; ++i) {
        boxes.push_back(new Boxed);
        map.valueIs(boxes.back(), i);
    }
    for (auto const & box : boxes) {
        Vel::PtrInterface const * const object = box.get();
        ASSERT_NE(static_cast<void const *>(object), static_cast<void const *>(box.get()));
        EXPECT_EQ(lookup(map, KeyPointer{object}), map[box]);
    }
}

TEST(HashMap2018, AddsNothingWhenThereIsNoMemory) {
    FlagMap map;
    map.valueIs(Name("a"), true);
    std::uint64_t const live = FlagMap::Node::velAllocTrackTypeInfo_->live();
    Name const key("b");
    {
        TestSupport::FailingAllocations const failing;
        EXPECT_THROW(map.valueIs(key, true), std::bad_alloc);
        EXPECT_NO_THROW(map.valueIs(Name(map[Name(map.iterator()->key())]->key()), false));
    }
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(map[key], nullptr);
    EXPECT_EQ(FlagMap::Node::velAllocTrackTypeInfo_->live(), live);
}

TEST(HashMap2018, TracksItsEntriesUnderItsTag) {
    FlagMap flags;
    NameMap names;
    flags.valueIs(Name("a"), true);
    names.valueIs(Name("a"), nullptr);
    names.valueIs(Name("b"), nullptr);
    EXPECT_EQ(FlagMap::Node::velAllocTrackTypeInfo_->live(), 1U);
    EXPECT_EQ(NameMap::Node::velAllocTrackTypeInfo_->live(), 2U);
    EXPECT_NE(NameMap::Node::velAllocTrackTypeInfo_->typeName().find("ByName"), std::string::npos);
}

// Each holds the one before it.
class Doll final : public Vel::PtrInterface, public Vel::AllocTracked<Doll> {
public:
    struct Inside {};
    Vel::HashMap2018<Inside, Name, Ptr<Doll>> inside;
};

TEST(HashMap2018, EndsALongChainOfObjectsAndEntriesWithLittleStack) {
    TestSupport::onASmallStack([] {
        Ptr<Doll> outermost = new Doll;
        for (int i = 0; i < 100'000; ++i) {
            Ptr<Doll> const inner = std::exchange(outermost, new Doll);
            outermost->inside.valueIs(Name("doll"), inner);
        }
        outermost = nullptr;
    });
    EXPECT_EQ(Doll::velAllocTrackTypeInfo_->live(), 0U);
    EXPECT_EQ(decltype(Doll::inside)::Node::velAllocTrackTypeInfo_->live(), 0U);
}

// An object with a value collection, as the models have them.
class Panel final : public Vel::PtrInterface, public Vel::AllocTracked<Panel> {
public:
    FlagMap::Range flag() const { return {flags_, *this}; }
    FlagMap & map() { return flags_; }

private:
    FlagMap flags_;
};

TEST(HashMap2018Walk, YieldsEntriesAndKeepsTheOwner) {
    Ptr<Panel> panel = new Panel;
    for (int i = 0; i < 50; ++i) panel->map().valueIs(name(i), i % 2 == 0);
    std::map<Name, bool> met;
    for (auto const & entry : panel->flag()) {
        panel = nullptr;
        EXPECT_TRUE(met.emplace(entry.key(), entry.value()).second);
    }
    EXPECT_EQ(met.size(), 50U);
    for (int i = 0; i < 50; ++i) EXPECT_EQ(met[name(i)], i % 2 == 0);
    EXPECT_EQ(Panel::velAllocTrackTypeInfo_->live(), 0U);
}

TEST(HashMap2018Walk, ShowsARemovedEntryUntilItMoves) {
    NameMap map;
    Ptr<NamedMember> const value = port("p");
    map.valueIs(Name("a"), value);
    map.valueIs(Name("b"), nullptr);
    auto i = map.iteratorAt(Name("a"));
    ASSERT_TRUE(i);
    EXPECT_EQ(i.currNodeNonStale(), i.currNodeMaybeStale());
    Name const & keyInTheEntry = i->key();
    EXPECT_TRUE(map.valueDel(keyInTheEntry));
    EXPECT_EQ(i.currNodeNonStale(), nullptr);
    ASSERT_NE(i.currNodeMaybeStale(), nullptr);
    EXPECT_FALSE(i->isPresent());
    EXPECT_EQ(i->key(), Name("a"));
    EXPECT_EQ(i->value(), value);
    EXPECT_EQ(value->references(), 2U);
    map.valueIs(Name("a"), nullptr);
    EXPECT_EQ(i.currNodeNonStale(), nullptr) << "an entry of the same key is another one";
    i.advance();
    EXPECT_EQ(value->references(), 1U);
}

// The number by which a walk knows of changes begins anew after so many of them.
TEST(HashMap2018Walk, ComesToItsEndAfterMillionsOfChanges) {
    constexpr int kModifications = 1 << 22;
    TextMap map;
    for (int i = 0; i < 8; ++i) map.valueIs(name(i), i);
    auto i = map.iterator();
    map.valueDel(Name(i->key()));
    Vel::String const text("x");
    for (int made = 1; made < kModifications; ++made) {
        if (made % 2 != 0) {
            map.valueIs(text, made);
        } else {
            map.valueDel(text);
        }
    }
    std::map<Vel::String, int> met;
    for (int steps = 0; i && steps < 100; ++i, ++steps) ++met[i->key()];
    EXPECT_FALSE(i);
    for (auto const & [key, times] : met) EXPECT_EQ(times, 1) << key;
    EXPECT_GE(met.size(), 8U) << "the one in hand, which has left, and the seven that stayed";
}

TEST(HashMap2018Walk, NeedsNoKnowledgeOfTheTypes) {
    FlagMap flags;
    NameMap names;
    for (int i = 0; i < 20; ++i) flags.valueIs(name(i), true);
    names.valueIs(Name("a"), nullptr);
    std::pair<Vel::HashMap2018Generic const *, Vel::HashMap2018VTable const *> const maps[] = {
        {&flags, &FlagMap::kTable}, {&names, &NameMap::kTable}};
    std::vector<int> met;
    for (auto const & [map, table] : maps) {
        met.push_back(0);
        for (Vel::HashMap2018IteratorGeneric i(map, table); i.currNodeMaybeStale(); i.advance()) {
            EXPECT_EQ(i.currNodeNonStale(), i.currNodeMaybeStale());
            ++met.back();
        }
    }
    EXPECT_EQ(met, (std::vector<int>{20, 1}));

    Vel::HashMap2018IteratorGeneric i(&names, &NameMap::kTable);
    names.valueDel(Name("a"));
    EXPECT_EQ(i.currNodeNonStale(), nullptr);
    ASSERT_NE(i.currNodeMaybeStale(), nullptr);
    EXPECT_FALSE(i.currNodeMaybeStale()->isPresent());
    i.advance();
    EXPECT_EQ(i.currNodeMaybeStale(), nullptr);
}

TEST(HashMap2018Walk, StaysAtTheEnd) {
    FlagMap map;
    map.valueIs(Name("a"), true);
    auto i = map.iterator();
    i.advance();
    EXPECT_TRUE(i == std::default_sentinel);
    i.advance();
    ++i;
    i++;
    EXPECT_FALSE(i);
    EXPECT_FALSE(map.iteratorAt(Name("b")));
}

TEST(HashMap2018Walk, FollowsAModelWhileEntriesComeAndGo) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        Vel::HashMap2018<ByText, Name, int> map;
        std::map<Name, int> model;
        std::set<Name> stable;  // Those that stand from the beginning of the walk on.
        auto const remove = [&](Name const & key) {
            ASSERT_EQ(bool(map.valueDel(key)), model.erase(key) == 1);
            stable.erase(key);
        };
        auto const disturb = [&] {
            Name const key = name(static_cast<int>(random() % 40));
            if (random() % 2) {
                remove(key);
                return;
            }
            int const value = static_cast<int>(random() % 3);
            auto const found = model.find(key);
            bool const changes = found == model.end() || found->second != value;
            ASSERT_EQ(map.valueIs(key, value), changes);
            model[key] = value;
        };
        for (int i = 0; i < 60; ++i) disturb();
        for (auto const & [key, value] : model) stable.insert(key);
        std::map<Name, int> met;
        int steps = 0;
        for (auto i = map.iterator(); i; ++i) {
            Name const inHand = i->key();
            ASSERT_TRUE(i.currNodeNonStale());
            ASSERT_EQ(i.currNodeNonStale(), map[inHand]);
            ASSERT_EQ(model[inHand], i->value());
            ++met[inHand];
            for (unsigned n = random() % 3; n > 0; --n) disturb();
            if (random() % 4 == 0) remove(inHand);
            bool const stands = map[inHand] == i.currNodeMaybeStale();
            ASSERT_EQ(i.currNodeNonStale() != nullptr, stands);
            ASSERT_EQ(i->key(), inHand);
            ASSERT_LT(++steps, 1000);
        }
        for (Name const & key : stable) ASSERT_EQ(met[key], 1) << key;
        ASSERT_EQ(map.size(), model.size());
        for (auto const & [key, value] : model) ASSERT_EQ(map[key]->value(), value);
    }
}

}  // namespace
}  // namespace VelTest
