// What all collections of references and flags have in common.
#include <algorithm>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/NetworkTopologyV3/Collections.h"
#include "tests/support/Allocations.h"

namespace NetworkTopologyV3 {

namespace {

using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

template <class C>
class ValueCollection : public testing::Test {
protected:
    using Owner = typename C::Owner;
    using Value = typename C::Value;

    static std::string keyed(std::string const & name) {
        std::ostringstream text;
        text << C::kOn << '(' << C::key(name) << ')';
        return text.str();
    }
    static std::string unkeyed() { return C::kOn + "()"s; }
    static std::string immediate() { return C::kOn + "velImmediate()"s; }

    Vel::Ptr<typename C::Recorder> follow() { return recorderOf<typename C::Recorder>(owner, journal); }
    Value add(std::string const & name, int which = 0) {
        Value const value = C::value(which, name);
        C::is(*owner, name, value);
        return value;
    }

    Vel::Ptr<Owner> owner = C::owner();
    Journal journal;
};

using ValueCollections = testing::Types<MlagRaws, LogicalPorts, MemberPorts, ToPorts>;
TYPED_TEST_SUITE(ValueCollection, ValueCollections);

TYPED_TEST(ValueCollection, ALookupOfAnAbsentKeyGivesNothingAndMakesNothing) {
    auto const recorder = this->follow();
    EXPECT_FALSE(TypeParam::find(*this->owner, "a"));
    EXPECT_TRUE(TypeParam::all(*this->owner).empty());
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(ValueCollection, IsAddsAnEntryAndTells) {
    auto const recorder = this->follow();
    auto const value = this->add("a");
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), value);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
    for (auto const & entry : TypeParam::all(*this->owner)) {
        EXPECT_EQ(entry.key(), TypeParam::key("a"));
        EXPECT_EQ(typename TypeParam::Value(entry.value()), value);
    }
    EXPECT_THAT(this->journal.take(), ElementsAre(this->keyed("a"), this->unkeyed()));
}

TYPED_TEST(ValueCollection, TheSameValueAgainChangesNothing) {
    auto const value = this->add("a");
    auto const recorder = this->follow();
    TypeParam::is(*this->owner, "a", value);
    EXPECT_THAT(this->journal.take(), IsEmpty());
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), value);
}

TYPED_TEST(ValueCollection, AnotherValueReplacesTheOneOfItsKeyInOneChange) {
    this->add("a", 0);
    auto const recorder = this->follow();
    auto const second = this->add("a", 1);
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), second);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
    EXPECT_THAT(this->journal.take(), ElementsAre(this->keyed("a"), this->unkeyed()));
}

template <class C>
class ReferenceCollection : public ValueCollection<C> {};
using ReferenceCollections = testing::Types<MlagRaws, LogicalPorts, MemberPorts>;
TYPED_TEST_SUITE(ReferenceCollection, ReferenceCollections);

TYPED_TEST(ReferenceCollection, NullChangesNothingAndRaisesNothing) {
    auto const value = this->add("");
    auto const recorder = this->follow();
    EXPECT_NO_THROW(TypeParam::is(*this->owner, "", nullptr));
    EXPECT_EQ(TypeParam::find(*this->owner, ""), value);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(ReferenceCollection, KeepsItsTargetsAndLetsThemGo) {
    auto value = this->add("a");
    EXPECT_EQ(value->references(), 2U);
    TypeParam::del(*this->owner, "a");
    EXPECT_EQ(value->references(), 1U);
    TypeParam::is(*this->owner, "a", value);
    this->add("a", 1);
    EXPECT_EQ(value->references(), 1U);
    TypeParam::is(*this->owner, "a", value);
    TypeParam::delAll(*this->owner);
    EXPECT_EQ(value->references(), 1U);
}

TYPED_TEST(ValueCollection, DelRemovesAndTells) {
    this->add("a");
    this->add("b");
    auto const recorder = this->follow();
    TypeParam::del(*this->owner, "a");
    EXPECT_FALSE(TypeParam::find(*this->owner, "a"));
    EXPECT_TRUE(TypeParam::find(*this->owner, "b"));
    EXPECT_THAT(this->journal.take(), ElementsAre(this->keyed("a"), this->unkeyed()));
}

TYPED_TEST(ValueCollection, DelOfAnAbsentKeyChangesNothing) {
    this->add("b");
    auto const recorder = this->follow();
    TypeParam::del(*this->owner, "a");
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(ValueCollection, DelAllTellsEveryKeyAndThenTheWhole) {
    for (char const * name : {"a", "b", "c"}) this->add(name);
    auto const recorder = this->follow();
    this->journal.then = [&](std::string const &) { EXPECT_TRUE(TypeParam::all(*this->owner).empty()); };
    TypeParam::delAll(*this->owner);
    auto calls = this->journal.take();
    ASSERT_EQ(calls.size(), 5U);
    EXPECT_THAT(std::vector(calls.begin(), calls.begin() + 3),
                UnorderedElementsAre(this->keyed("a"), this->keyed("b"), this->keyed("c")));
    EXPECT_THAT(std::vector(calls.begin() + 3, calls.end()), ElementsAre(this->immediate(), this->unkeyed()));
}

TYPED_TEST(ValueCollection, DelAllOfAnEmptyCollectionTellsNobody) {
    auto const recorder = this->follow();
    TypeParam::delAll(*this->owner);
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(ValueCollection, AnExceptionDuringDelAllKeepsNobodyFromTheRest) {
    for (char const * name : {"a", "b", "c"}) this->add(name);
    Journal throwing;
    auto const thrower = recorderOf<typename TypeParam::Recorder>(this->owner, throwing);
    auto const recorder = this->follow();
    throwing.then = [](std::string const & callback) { throw std::runtime_error(callback); };
    std::string first;
    try {
        TypeParam::delAll(*this->owner);
    } catch (std::runtime_error const & error) {
        first = error.what();
    }
    auto const thrown = throwing.take();
    EXPECT_EQ(thrown.size(), 5U);
    EXPECT_EQ(first, thrown.front());
    EXPECT_EQ(this->journal.take(), thrown);
    EXPECT_TRUE(TypeParam::all(*this->owner).empty());
}

TYPED_TEST(ValueCollection, WhoLeavesDuringDelAllIsToldNothingMore) {
    for (char const * name : {"a", "b", "c"}) this->add(name);
    auto const recorder = this->follow();
    this->journal.then = [&](std::string const &) { recorder->isRegisteredNotifieeIs(false); };
    TypeParam::delAll(*this->owner);
    EXPECT_EQ(this->journal.take().size(), 1U);
}

TYPED_TEST(ValueCollection, AnEntryAddedDuringDelAllStays) {
    for (char const * name : {"a", "b"}) this->add(name);
    auto const recorder = this->follow();
    bool added = false;
    this->journal.then = [&](std::string const &) {
        if (!std::exchange(added, true)) this->add("a");
    };
    TypeParam::delAll(*this->owner);
    EXPECT_TRUE(TypeParam::find(*this->owner, "a"));
    EXPECT_FALSE(TypeParam::find(*this->owner, "b"));
    EXPECT_EQ(this->journal.take().size(), 6U);
}

TYPED_TEST(ValueCollection, AnyBytesAreAKey) {
    std::vector<std::string> const names{"",         "\0"s,    "a\0b"s, "a",
                                         "\x80\xff", "port/a", "~1",    std::string(300, 'x')};
    for (std::string const & name : names) this->add(name);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), names.size());
    for (std::string const & name : names) {
        EXPECT_TRUE(TypeParam::find(*this->owner, name)) << testing::PrintToString(name);
        TypeParam::del(*this->owner, name);
        EXPECT_FALSE(TypeParam::find(*this->owner, name)) << testing::PrintToString(name);
    }
}

TYPED_TEST(ValueCollection, AnEntryRemovedDuringAWalkStaysReadableInHand) {
    std::set<std::string> left;
    for (int i = 0; i < 40; ++i) {
        this->add(std::to_string(i), i);
        left.insert(std::to_string(i));
    }
    std::size_t met = 0;
    for (auto const & entry : TypeParam::all(*this->owner)) {
        auto const found = std::find_if(left.begin(), left.end(), [&](std::string const & name) {
            return TypeParam::key(name) == entry.key();
        });
        ASSERT_NE(found, left.end());
        auto const value = TypeParam::find(*this->owner, *found);
        TypeParam::del(*this->owner, *found);
        EXPECT_FALSE(entry.isPresent());
        EXPECT_EQ(entry.key(), TypeParam::key(*found));
        EXPECT_EQ(typename TypeParam::Value(entry.value()), value);
        left.erase(found);
        ++met;
    }
    EXPECT_EQ(met, 40U);
    EXPECT_TRUE(TypeParam::all(*this->owner).empty());
}

TYPED_TEST(ValueCollection, ANestedChangeIsToldAtOnce) {
    auto const recorder = this->follow();
    bool nested = false;
    this->journal.then = [&](std::string const &) {
        if (!std::exchange(nested, true)) TypeParam::del(*this->owner, "a");
    };
    this->add("a");
    EXPECT_FALSE(TypeParam::find(*this->owner, "a"));
    EXPECT_THAT(this->journal.take(),
                ElementsAre(this->keyed("a"), this->keyed("a"), this->unkeyed(), this->unkeyed()));
}

TYPED_TEST(ValueCollection, AnExceptionOfOneFollowerKeepsNobodyFromTheChange) {
    Journal throwing;
    auto const thrower = recorderOf<typename TypeParam::Recorder>(this->owner, throwing);
    auto const recorder = this->follow();
    throwing.then = [](std::string const & callback) { throw std::runtime_error(callback); };
    EXPECT_THROW(this->add("a"), std::runtime_error);
    EXPECT_TRUE(TypeParam::find(*this->owner, "a"));
    EXPECT_THROW(TypeParam::del(*this->owner, "a"), std::runtime_error);
    EXPECT_FALSE(TypeParam::find(*this->owner, "a"));
    EXPECT_THAT(this->journal.take(),
                ElementsAre(this->keyed("a"), this->unkeyed(), this->keyed("a"), this->unkeyed()));
}

TYPED_TEST(ValueCollection, ACallbackMayReleaseTheOwner) {
    using Owner = typename TypeParam::Owner;
    struct Change {
        void (*make)(Owner &);
        std::size_t calls;  // A follower that lets itself go still has both callbacks of its last delivery.
    };
    for (Change const & change :
         {Change{[](Owner & owner) { TypeParam::is(owner, "new", TypeParam::value(0, "new")); }, 2},
          Change{[](Owner & owner) { TypeParam::del(owner, "old"); }, 2},
          Change{[](Owner & owner) { TypeParam::delAll(owner); }, 1}}) {
        this->owner = TypeParam::owner();
        this->add("old");
        this->add("older");
        Vel::Ptr<typename TypeParam::Recorder> recorder = this->follow();
        this->journal.then = [&](std::string const &) {
            recorder = nullptr;
            this->owner = nullptr;
        };
        change.make(*this->owner);
        EXPECT_EQ(this->owner, nullptr);
        EXPECT_EQ(this->journal.take().size(), change.calls);
    }
}

TYPED_TEST(ValueCollection, AKeyThatLivesInItsEntryIsToldAfterTheEntryHasGone) {
    std::string const name = "a name long enough for storage of its own";
    this->add(name);
    auto const recorder = this->follow();
    // The walk is over when its range goes: from then on only the collection holds the entry.
    auto const & key = (*TypeParam::all(*this->owner).begin()).key();
    if constexpr (std::is_same_v<TypeParam, MlagRaws>) {
        this->owner->mlagRawDel(key);
    } else if constexpr (std::is_same_v<TypeParam, LogicalPorts>) {
        this->owner->logicalPortDel(key);
    } else if constexpr (std::is_same_v<TypeParam, MemberPorts>) {
        this->owner->memberPortDel(key);
    } else {
        this->owner->toPortDel(key);
    }
    EXPECT_THAT(this->journal.take(), ElementsAre(this->keyed(name), this->unkeyed()));
}

TYPED_TEST(ValueCollection, WhenMemoryRunsOutNothingHasChanged) {
    auto const value = TypeParam::value(0, "a");
    auto const other = TypeParam::value(0, "b");
    bool changed = false;
    std::uint64_t succeeding = 0;
    for (; !changed; ++succeeding) {
        ASSERT_LT(succeeding, 100U);
        try {
            TestSupport::FailingAllocations const failing(succeeding);
            TypeParam::is(*this->owner, "a", value);
            changed = true;
        } catch (std::bad_alloc const &) {
            EXPECT_TRUE(TypeParam::all(*this->owner).empty());
        }
    }
    EXPECT_GE(succeeding, 2U);
    TypeParam::is(*this->owner, "b", other);

    changed = false;
    for (succeeding = 0; !changed; ++succeeding) {
        ASSERT_LT(succeeding, 100U);
        try {
            TestSupport::FailingAllocations const failing(succeeding);
            TypeParam::delAll(*this->owner);
            changed = true;
        } catch (std::bad_alloc const &) {
            EXPECT_EQ(TypeParam::all(*this->owner).size(), 2U);
        }
    }
    EXPECT_GE(succeeding, 2U);
    EXPECT_TRUE(TypeParam::all(*this->owner).empty());
}

}  // namespace

}  // namespace NetworkTopologyV3
