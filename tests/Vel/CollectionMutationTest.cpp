// The rules that the collections of every model keep, on a model of the least kind.
#include "platform/Vel/CollectionMutation.h"

#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Name.h"
#include "tests/support/Allocations.h"

namespace VelTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Vel::Name;
using Vel::Ptr;

using Journal = std::vector<std::string>;

class Board;

class Card final : public Vel::Entity, public Vel::AllocTracked<Card> {
public:
    explicit Card(Name name) : name_(std::move(name)) {}
    Name const & collectionKey() const noexcept { return name_; }

    Board const * owner = nullptr;

private:
    Name const name_;
};

class Board final : public Vel::Entity, public Vel::AllocTracked<Board> {
public:
    class NotifieeConst : public Vel::PtrInterface::NotifieeConst {
    public:
        void notifierIs(Ptr<Vel::PtrInterface const> const & notifier) override {
            Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<Board const>(notifier));
        }
        void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
        virtual void onCard(Name) {}
        virtual void onCard() {}
        virtual void onCardvelImmediate() {}
    };

    ~Board() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const {
        notifiees().notify<NotifieeConst>(*this, callbacks...);
    }

    struct Flag {};
    Vel::HashMap<Card, Name, Board> cards{1};
    Vel::HashMap2018<Flag, Name, bool> flags;
};

template <bool kCopiesKeys>
struct Mutation : Vel::CollectionMutation<Mutation<kCopiesKeys>, kCopiesKeys> {
    template <class Model, class... Callbacks>
    static void notify(Model const & model, Callbacks const &... callbacks) {
        model.notify(callbacks...);
    }
    template <class Model, class Member>
    static void enters(Model & model, Member & member) noexcept {
        member.owner = &model;
    }
    template <class Model, class Member>
    static void letGo(Member & member) noexcept {
        member.owner = nullptr;
    }
};

Board::~Board() { Mutation<false>::letGoAll(cards); }

constexpr auto onCard = [](Board::NotifieeConst & r, auto const &... key) { r.onCard(key...); };
constexpr auto onImmediate = [](Board::NotifieeConst & r) { r.onCardvelImmediate(); };

// Writes down each callback and what it sees.
class Recorder final : public Board::NotifieeConst, public Vel::AllocTracked<Recorder> {
public:
    Journal journal;
    std::string throwsOn;

private:
    Board const & board() const { return static_cast<Board const &>(*notifierObject()); }
    void record(std::string entry) {
        journal.push_back(entry);
        if (entry == throwsOn) throw std::runtime_error(entry);
    }
    void onCard(Name key) override {
        Card const * const card = board().cards[key];
        bool const isOwned = card && card->owner == &board();
        record(std::string(key.view()) + (isOwned || board().flags[key] ? " there" : " gone"));
    }
    void onCard() override { record("any"); }
    void onCardvelImmediate() override { record("immediate"); }
};

class CollectionMutation : public testing::Test {
protected:
    using Copying = Mutation<true>;
    using Plain = Mutation<false>;

    CollectionMutation() {
        recorder->notifierIs(board);
        recorder->isRegisteredNotifieeIs(true);
        recorder->hasNotificationActiveIs(true);
    }
    Ptr<Card> add(Name const & name) {
        return Plain::memberIs(
            *board, board->cards, name, [&] { return new Card(name); }, onCard);
    }
    Journal taken() { return std::exchange(recorder->journal, {}); }

    Ptr<Board> board = new Board;
    Ptr<Recorder> recorder = new Recorder;
};

TEST_F(CollectionMutation, MakesAMemberOnceAndTellsWhenItStandsThere) {
    Ptr<Card> const card = add(Name("a"));
    EXPECT_THAT(taken(), ElementsAre("a there", "any"));
    EXPECT_EQ(add(Name("a")), card);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(CollectionMutation, LetsAMemberGoBeforeItTells) {
    Ptr<Card> const card = add(Name("a"));
    taken();
    EXPECT_EQ(Plain::memberDel(*board, board->cards, Name("a"), onCard), card);
    EXPECT_EQ(card->owner, nullptr);
    EXPECT_THAT(taken(), ElementsAre("a gone", "any"));
    EXPECT_EQ(Plain::memberDel(*board, board->cards, Name("a"), onCard), nullptr);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(CollectionMutation, TellsOnceThatAllMembersHaveGone) {
    Ptr<Card> const card = add(Name("a"));
    add(Name("b"));
    taken();
    Plain::memberDelAll(*board, board->cards, onCard, onImmediate);
    EXPECT_EQ(card->owner, nullptr);
    EXPECT_EQ(board->cards.size(), 0U);
    EXPECT_THAT(taken(), ElementsAre("immediate", "any"));
    Plain::memberDelAll(*board, board->cards, onCard, onImmediate);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(CollectionMutation, LetsMembersGoWhenTheModelDies) {
    Ptr<Card> const card = add(Name("a"));
    recorder = nullptr;
    board = nullptr;
    EXPECT_EQ(card->owner, nullptr);
}

TEST_F(CollectionMutation, TellsOfAValueThatChanges) {
    Plain::valueIs(*board, board->flags, Name("a"), true, onCard);
    EXPECT_THAT(taken(), ElementsAre("a there", "any"));
    Plain::valueIs(*board, board->flags, Name("a"), true, onCard);
    Plain::valueDel(*board, board->flags, Name("b"), onCard);
    EXPECT_THAT(taken(), IsEmpty());
    Plain::valueIs(*board, board->flags, Name("a"), false, onCard);
    Plain::valueDel(*board, board->flags, Name("a"), onCard);
    EXPECT_THAT(taken(), ElementsAre("a there", "any", "a gone", "any"));
    EXPECT_FALSE(Plain::valueOf(board->flags[Name("a")]));
}

TEST_F(CollectionMutation, TakesACopyOfAKeyThatLivesInTheEntryThatGoes) {
    std::string const name = "a key that nothing else holds";
    Copying::valueIs(*board, board->flags, Name(name), true, onCard);
    taken();
    Name const & inTheEntry = board->flags.iterator()->key();
    Copying::valueDel(*board, board->flags, inTheEntry, onCard);
    EXPECT_THAT(taken(), ElementsAre(name + " gone", "any"));
}

TEST_F(CollectionMutation, TellsOfEveryKeyOfAMapThoughACallbackThrows) {
    for (char const * name : {"a", "b", "c"}) board->flags.valueIs(Name(name), true);
    recorder->throwsOn = "b gone";
    EXPECT_THROW(Plain::valueDelAll(*board, board->flags, onCard, onImmediate), std::runtime_error);
    Journal journal = taken();
    ASSERT_EQ(journal.size(), 5U);
    EXPECT_THAT(Journal(journal.begin() + 3, journal.end()), ElementsAre("immediate", "any"));
    journal.resize(3);
    EXPECT_THAT(journal, UnorderedElementsAre("a gone", "b gone", "c gone"));
    Plain::valueDelAll(*board, board->flags, onCard, onImmediate);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(CollectionMutation, ChangesNothingWhenThereIsNoMemoryForTheKeys) {
    board->flags.valueIs(Name("a"), true);
    {
        TestSupport::FailingAllocations const failing;
        EXPECT_THROW(Plain::valueDelAll(*board, board->flags, onCard, onImmediate), std::bad_alloc);
    }
    EXPECT_EQ(board->flags.size(), 1U);
    EXPECT_THAT(taken(), IsEmpty());
}

}  // namespace
}  // namespace VelTest
