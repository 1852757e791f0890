// What all collections of objects have in common.
#include <algorithm>
#include <cstdint>
#include <new>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/NetworkTopologyV3/Collections.h"
#include "tests/support/Allocations.h"
#include "tests/support/SmallStack.h"

namespace NetworkTopologyV3 {

namespace {

using std::string_literals::operator""s;
using testing::ElementsAre;
using testing::IsEmpty;

template <class C>
class EntityCollection : public testing::Test {
protected:
    using Owner = typename C::Owner;
    using Member = typename C::Member;

    // The callbacks that tell of one key, and of the whole collection.
    static std::string keyed(std::string const & name) {
        std::ostringstream text;
        text << C::kOn << '(' << C::key(name) << ')';
        return text.str();
    }
    static std::string unkeyed() { return C::kOn + "()"s; }
    static std::string immediate() { return C::kOn + "velImmediate()"s; }

    Vel::Ptr<typename C::Recorder> follow() { return recorderOf<typename C::Recorder>(owner, journal); }

    Vel::Ptr<Owner> owner = C::owner();
    Journal journal;
};

using EntityCollections = testing::Types<Hosts, Edges, Ports, PortGroups, Mlags>;
TYPED_TEST_SUITE(EntityCollection, EntityCollections);

TYPED_TEST(EntityCollection, ALookupOfAnAbsentKeyGivesNullAndMakesNothing) {
    auto const recorder = this->follow();
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), nullptr);
    EXPECT_EQ(TypeParam::find(std::as_const(*this->owner), "a"), nullptr);
    EXPECT_TRUE(TypeParam::all(*this->owner).empty());
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(EntityCollection, IsMakesTheMemberAndTells) {
    auto const recorder = this->follow();
    auto const member = TypeParam::is(*this->owner, "a");
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(member->collectionKey(), TypeParam::key("a"));
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), member);
    EXPECT_EQ(TypeParam::find(std::as_const(*this->owner), "a"), member);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
    EXPECT_THAT(this->journal.take(), ElementsAre(this->keyed("a"), this->unkeyed()));
}

TYPED_TEST(EntityCollection, IsOfAMemberThatIsThereReturnsItAndTellsNobody) {
    auto const member = TypeParam::is(*this->owner, "a");
    auto const recorder = this->follow();
    EXPECT_EQ(TypeParam::is(*this->owner, "a"), member);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(EntityCollection, DelReturnsWhatItTookOutAndTells) {
    auto const member = TypeParam::is(*this->owner, "a");
    TypeParam::is(*this->owner, "b");
    auto const recorder = this->follow();
    EXPECT_EQ(TypeParam::del(*this->owner, "a"), member);
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), nullptr);
    EXPECT_NE(TypeParam::find(*this->owner, "b"), nullptr);
    EXPECT_THAT(this->journal.take(), ElementsAre(this->keyed("a"), this->unkeyed()));
}

TYPED_TEST(EntityCollection, DelOfAnAbsentKeyChangesNothing) {
    TypeParam::is(*this->owner, "b");
    auto const recorder = this->follow();
    EXPECT_EQ(TypeParam::del(*this->owner, "a"), nullptr);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(EntityCollection, AMemberMadeAfterARemovalIsAnotherOne) {
    auto const member = TypeParam::is(*this->owner, "a");
    TypeParam::del(*this->owner, "a");
    auto const second = TypeParam::is(*this->owner, "a");
    EXPECT_NE(second, member);
    EXPECT_EQ(member->collectionKey(), second->collectionKey());
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), second);
}

TYPED_TEST(EntityCollection, DelAllTellsTheImmediateCallbackAndThenTheUnkeyedOne) {
    for (char const * name : {"a", "b", "c"}) TypeParam::is(*this->owner, name);
    auto const kept = TypeParam::find(*this->owner, "b");
    auto const recorder = this->follow();
    this->journal.then = [&](std::string const &) { EXPECT_TRUE(TypeParam::all(*this->owner).empty()); };
    TypeParam::delAll(*this->owner);
    EXPECT_THAT(this->journal.take(), ElementsAre(this->immediate(), this->unkeyed()));
    EXPECT_EQ(TypeParam::find(*this->owner, "b"), nullptr);
    EXPECT_EQ(kept->collectionKey(), TypeParam::key("b"));
}

TYPED_TEST(EntityCollection, DelAllOfAnEmptyCollectionTellsNobody) {
    auto const recorder = this->follow();
    TypeParam::delAll(*this->owner);
    EXPECT_THAT(this->journal.take(), IsEmpty());
}

TYPED_TEST(EntityCollection, AnyBytesAreAKey) {
    std::vector<std::string> const names{"",         "\0"s,    "a\0b"s, "a",
                                         "\x80\xff", "port/a", "~1",    std::string(300, 'x')};
    for (std::string const & name : names) TypeParam::is(*this->owner, name);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), names.size());
    for (std::string const & name : names) {
        auto const member = TypeParam::find(*this->owner, name);
        ASSERT_NE(member, nullptr) << testing::PrintToString(name);
        EXPECT_EQ(member->collectionKey(), TypeParam::key(name));
    }
    for (std::string const & name : names) EXPECT_NE(TypeParam::del(*this->owner, name), nullptr);
    EXPECT_TRUE(TypeParam::all(*this->owner).empty());
}

TYPED_TEST(EntityCollection, AWalkMeetsEveryMemberOnceAlsoWhenTheOneInHandIsRemoved) {
    std::set<std::string> expected;
    for (int i = 0; i < 40; ++i) {
        TypeParam::is(*this->owner, std::to_string(i));
        expected.insert(std::to_string(i));
    }
    auto const recorder = this->follow();
    std::size_t met = 0;
    for (auto const & member : TypeParam::all(*this->owner)) {
        for (std::string const & name : expected) {
            if (TypeParam::key(name) == member->collectionKey()) {
                EXPECT_EQ(TypeParam::del(*this->owner, name), member);
                expected.erase(name);
                break;
            }
        }
        ++met;
    }
    EXPECT_EQ(met, 40U);
    EXPECT_THAT(expected, IsEmpty());
    EXPECT_EQ(this->journal.take().size(), 80U);
}

TYPED_TEST(EntityCollection, AConstOwnerGivesConstMembers) {
    using Member = typename TypeParam::Member;
    using Owner = typename TypeParam::Owner;
    static_assert(
        std::is_same_v<decltype(TypeParam::find(std::declval<Owner const &>(), "")), Vel::Ptr<Member const>>);
    static_assert(std::is_same_v<decltype(TypeParam::find(std::declval<Owner &>(), "")), Vel::Ptr<Member>>);
    TypeParam::is(*this->owner, "a");
    for (auto const & member : TypeParam::all(std::as_const(*this->owner))) {
        static_assert(std::is_same_v<decltype(member), Vel::Ptr<Member const> const &>);
    }
    for (auto const & member : TypeParam::all(*this->owner)) {
        static_assert(std::is_same_v<decltype(member), Vel::Ptr<Member> const &>);
    }
}

TYPED_TEST(EntityCollection, AWalkKeepsTheOwnerAlive) {
    for (char const * name : {"a", "b", "c"}) TypeParam::is(*this->owner, name);
    std::size_t met = 0;
    for (auto const & member : TypeParam::all(*this->owner)) {
        this->owner = nullptr;
        EXPECT_NE(member, nullptr);
        ++met;
    }
    EXPECT_EQ(met, 3U);
}

TYPED_TEST(EntityCollection, ACallbackSeesTheCollectionAsItIsNow) {
    auto const recorder = this->follow();
    std::vector<bool> present;
    this->journal.then = [&](std::string const &) {
        present.push_back(bool(TypeParam::find(*this->owner, "a")));
    };
    TypeParam::is(*this->owner, "a");
    TypeParam::del(*this->owner, "a");
    EXPECT_THAT(present, ElementsAre(true, true, false, false));
}

TYPED_TEST(EntityCollection, ANestedChangeIsToldAtOnce) {
    auto const recorder = this->follow();
    bool nested = false;
    this->journal.then = [&](std::string const &) {
        if (!std::exchange(nested, true)) TypeParam::del(*this->owner, "a");
    };
    auto const member = TypeParam::is(*this->owner, "a");
    EXPECT_EQ(member->collectionKey(), TypeParam::key("a"));
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), nullptr);
    EXPECT_THAT(this->journal.take(),
                ElementsAre(this->keyed("a"), this->keyed("a"), this->unkeyed(), this->unkeyed()));
}

TYPED_TEST(EntityCollection, TwoFollowersAnswerEachOther) {
    Journal first;
    Journal second;
    auto const a = recorderOf<typename TypeParam::Recorder>(this->owner, first);
    auto const b = recorderOf<typename TypeParam::Recorder>(this->owner, second);
    int depth = 0;
    // Each answers an addition with the next one, four deep.
    auto const answer = [&](std::string const & callback) {
        if (depth < 4 && callback != this->unkeyed()) TypeParam::is(*this->owner, std::to_string(++depth));
    };
    first.then = answer;
    second.then = answer;
    TypeParam::is(*this->owner, "0");
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 5U);
    auto calls = first.take();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(std::count(calls.begin(), calls.end(), this->keyed(std::to_string(i))), 1);
    calls = second.take();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(std::count(calls.begin(), calls.end(), this->keyed(std::to_string(i))), 1);
}

TYPED_TEST(EntityCollection, AnExceptionOfOneFollowerKeepsNobodyFromTheChange) {
    Journal throwing;
    auto const before = this->follow();
    auto const thrower = recorderOf<typename TypeParam::Recorder>(this->owner, throwing);
    Journal last;
    auto const after = recorderOf<typename TypeParam::Recorder>(this->owner, last);
    throwing.then = [](std::string const & callback) { throw std::runtime_error(callback); };
    EXPECT_THROW(TypeParam::is(*this->owner, "a"), std::runtime_error);
    EXPECT_NE(TypeParam::find(*this->owner, "a"), nullptr);
    auto const told = {this->keyed("a"), this->unkeyed()};
    EXPECT_THAT(this->journal.take(), testing::ElementsAreArray(told));
    EXPECT_THAT(throwing.take(), testing::ElementsAreArray(told));
    EXPECT_THAT(last.take(), testing::ElementsAreArray(told));

    EXPECT_THROW(TypeParam::del(*this->owner, "a"), std::runtime_error);
    EXPECT_EQ(TypeParam::find(*this->owner, "a"), nullptr);
    EXPECT_THAT(last.take(), testing::ElementsAreArray(told));
}

TYPED_TEST(EntityCollection, ACallbackMayReleaseTheOwner) {
    for (auto const & change : std::vector<void (*)(typename TypeParam::Owner &)>{
             [](auto & owner) { EXPECT_NE(TypeParam::is(owner, "new"), nullptr); },
             [](auto & owner) { EXPECT_NE(TypeParam::del(owner, "old"), nullptr); },
             [](auto & owner) { TypeParam::delAll(owner); }}) {
        this->owner = TypeParam::owner();
        TypeParam::is(*this->owner, "old");
        Vel::Ptr<typename TypeParam::Recorder> recorder = this->follow();
        this->journal.then = [&](std::string const &) {
            recorder = nullptr;
            this->owner = nullptr;
        };
        change(*this->owner);
        EXPECT_EQ(this->owner, nullptr);
        this->journal.take();
    }
}

TYPED_TEST(EntityCollection, WhenMemoryRunsOutNothingHasChanged) {
    auto const recorder = this->follow();
    std::string const name = "a name long enough for storage of its own";
    Vel::Ptr<typename TypeParam::Member> member;
    std::uint64_t succeeding = 0;
    while (!member) {
        ASSERT_LT(succeeding, 100U);
        {
            TestSupport::FailingAllocations const failing(succeeding);
            try {
                member = TypeParam::is(*this->owner, name);
            } catch (std::bad_alloc const &) {
            }
        }
        // What fails may be the test's own writing down, when the change is made already.
        if (!member && TypeParam::find(*this->owner, name)) break;
        if (!member) {
            EXPECT_TRUE(TypeParam::all(*this->owner).empty());
            EXPECT_THAT(this->journal.take(), IsEmpty());
        }
        ++succeeding;
    }
    EXPECT_GE(succeeding, 2U);
    EXPECT_EQ(TypeParam::all(*this->owner).size(), 1U);
}

TYPED_TEST(EntityCollection, ManyMembersAreReleasedOnASmallStack) {
    for (int i = 0; i < 20000; ++i) TypeParam::is(*this->owner, std::to_string(i));
    TestSupport::onASmallStack([&] { this->owner = nullptr; });
}

}  // namespace

}  // namespace NetworkTopologyV3
