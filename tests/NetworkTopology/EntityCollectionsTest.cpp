// What holds for every collection of objects: hosts and edges of a status; ports, port groups and MLAGs of a
// host.
#include <algorithm>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/Vel/Exceptions.h"
#include "tests/NetworkTopology/Recorders.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

template <class MemberClass>
struct NamedMembers {
    using Member = MemberClass;
    using Key = Vel::Name;
    Key key(int i) { return "m" + std::to_string(i); }
};

struct Hosts : NamedMembers<HostV2> {
    using Model = StatusV2;
    static constexpr char const * kCallback = "onHost";
    static auto model(char const *) { return StatusV2::StatusV2Is(); }
    static auto member(Key const & key) { return HostV2::HostV2Is(key); }
    static auto is(Model & m, Key const & key) { return m.hostIs(key); }
    static auto is(Model & m, Vel::Ptr<Member> const & member) { return m.hostIs(member); }
    static auto del(Model & m, Key const & key) { return m.hostDel(key); }
    static void delAll(Model & m) { m.hostDelAll(); }
    static auto at(auto & m, Key const & key) { return m.host(key); }
    static auto range(auto & m) { return m.host(); }
    static std::string const & refusal() {
        static std::string const text =
            "NetworkTopology::StatusV2::host: \"m1\" of a status cannot also stand in a status";
        return text;
    }
};

struct Edges {
    using Model = StatusV2;
    using Member = DirectedEdgeV2;
    using Key = Vel::Ptr<PortBaseV2 const>;
    static constexpr char const * kCallback = "onEdge";
    std::vector<Vel::Ptr<PortV2>> ports;
    Key key(int i) {
        while (ports.size() <= static_cast<std::size_t>(i)) {
            ports.push_back(PortV2::PortV2Is("m" + std::to_string(ports.size())));
        }
        return ports[static_cast<std::size_t>(i)];
    }
    static auto model(char const *) { return StatusV2::StatusV2Is(); }
    static auto member(Key const & key) { return DirectedEdgeV2::DirectedEdgeV2Is(key); }
    static auto is(Model & m, Key const & key) { return m.edgeIs(key); }
    static auto is(Model & m, Vel::Ptr<Member> const & member) { return m.edgeIs(member); }
    static auto del(Model & m, Key const & key) { return m.edgeDel(key); }
    static void delAll(Model & m) { m.edgeDelAll(); }
    static auto at(auto & m, Key const & key) { return m.edge(key); }
    static auto range(auto & m) { return m.edge(); }
    static std::string const & refusal() {
        static std::string const text =
            "NetworkTopology::StatusV2::edge: edge from \"m1\" of a status cannot also stand in a status";
        return text;
    }
};

struct HostMembers {
    using Model = HostV2;
    static auto model(char const * name) { return HostV2::HostV2Is(name); }
};

struct Ports : HostMembers, NamedMembers<PortV2> {
    static constexpr char const * kCallback = "onPort";
    static auto member(Key const & key) { return PortV2::PortV2Is(key); }
    static auto is(Model & m, Key const & key) { return m.portIs(key); }
    static auto is(Model & m, Vel::Ptr<Member> const & member) { return m.portIs(member); }
    static auto del(Model & m, Key const & key) { return m.portDel(key); }
    static void delAll(Model & m) { m.portDelAll(); }
    static auto at(auto & m, Key const & key) { return m.port(key); }
    static auto range(auto & m) { return m.port(); }
    static std::string const & refusal() {
        static std::string const text =
            "NetworkTopology::HostV2::port: \"m1\" of host \"a\" cannot also stand in host \"b\"";
        return text;
    }
};

struct PortGroups : HostMembers, NamedMembers<PortGroupV2> {
    static constexpr char const * kCallback = "onPortGroup";
    static auto member(Key const & key) { return PortGroupV2::PortGroupV2Is(key); }
    static auto is(Model & m, Key const & key) { return m.portGroupIs(key); }
    static auto is(Model & m, Vel::Ptr<Member> const & member) { return m.portGroupIs(member); }
    static auto del(Model & m, Key const & key) { return m.portGroupDel(key); }
    static void delAll(Model & m) { m.portGroupDelAll(); }
    static auto at(auto & m, Key const & key) { return m.portGroup(key); }
    static auto range(auto & m) { return m.portGroup(); }
    static std::string const & refusal() {
        static std::string const text =
            "NetworkTopology::HostV2::portGroup: \"m1\" of host \"a\" cannot also stand in host \"b\"";
        return text;
    }
};

struct Mlags : HostMembers, NamedMembers<MlagV2> {
    static constexpr char const * kCallback = "onMlag";
    static auto member(Key const & key) { return MlagV2::MlagV2Is(key, "second"); }
    static auto is(Model & m, Key const & key) { return m.mlagIs(key, "second"); }
    static auto is(Model & m, Vel::Ptr<Member> const & member) { return m.mlagIs(member); }
    static auto del(Model & m, Key const & key) { return m.mlagDel(key); }
    static void delAll(Model & m) { m.mlagDelAll(); }
    static auto at(auto & m, Key const & key) { return m.mlag(key); }
    static auto range(auto & m) { return m.mlag(); }
    static std::string const & refusal() {
        static std::string const text =
            "NetworkTopology::HostV2::mlag: \"m1\" of host \"a\" cannot also stand in host \"b\"";
        return text;
    }
};

template <class Collection>
class EntityCollections : public testing::Test {
protected:
    using Model = typename Collection::Model;
    using Member = typename Collection::Member;
    using Key = typename Collection::Key;
    using Recorder = typename RecorderOf<Model>::type;

    Key key(int i) { return collection_.key(i); }
    Vel::Ptr<Member> is(int i) { return Collection::is(*model_, key(i)); }
    Vel::Ptr<Member> del(int i) { return Collection::del(*model_, key(i)); }
    Vel::Ptr<Member> at(int i) { return Collection::at(*model_, key(i)); }
    std::uint32_t size() { return Collection::range(*model_).size(); }

    // The calls that one change of the entry of that key makes.
    static Calls keyed(std::string const & key) { return {callback() + '(' + key + ')', callback()}; }
    static Calls wholeCollection() { return {callback() + "velImmediate", callback()}; }
    static std::string callback() { return Collection::kCallback; }

    Collection collection_;
    Vel::Ptr<Model> model_ = Collection::model("a");
    Vel::Ptr<Recorder> follower_ = followed(model_);
};

using EntityCollectionTypes = testing::Types<Hosts, Edges, Ports, PortGroups, Mlags>;
struct EntityCollectionName {
    template <class Collection>
    static std::string GetName(int) {
        return std::string(Collection::kCallback + 2);
    }
};
TYPED_TEST_SUITE(EntityCollections, EntityCollectionTypes, EntityCollectionName);

TYPED_TEST(EntityCollections, BeginEmpty) {
    EXPECT_EQ(this->size(), 0U);
    EXPECT_TRUE(TypeParam::range(*this->model_).empty());
    EXPECT_EQ(this->at(1), nullptr);
}

TYPED_TEST(EntityCollections, MakeAMemberOnceAndTellOfIt) {
    auto const member = this->is(1);
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(member->collectionKey(), this->key(1));
    EXPECT_EQ(this->follower_->taken(), this->keyed("m1"));
    EXPECT_EQ(this->is(1), member);
    EXPECT_EQ(this->follower_->taken(), Calls());
    EXPECT_EQ(this->at(1), member);
    EXPECT_EQ(this->size(), 1U);
}

TYPED_TEST(EntityCollections, FindThroughAConstModel) {
    auto const member = this->is(1);
    auto const & model = std::as_const(*this->model_);
    static_assert(std::is_same_v<decltype(TypeParam::at(model, this->key(1))),
                                 Vel::Ptr<typename TypeParam::Member const>>);
    EXPECT_EQ(TypeParam::at(model, this->key(1)), member);
    EXPECT_EQ(TypeParam::at(model, this->key(2)), nullptr);
    for (auto const & each : TypeParam::range(model)) EXPECT_EQ(each, member);
}

TYPED_TEST(EntityCollections, TakeAnObjectMadeElsewhere) {
    auto const member = TypeParam::member(this->key(1));
    EXPECT_EQ(TypeParam::is(*this->model_, member), member);
    EXPECT_EQ(this->follower_->taken(), this->keyed("m1"));
    EXPECT_EQ(this->at(1), member);
    EXPECT_EQ(this->is(1), member);
}

TYPED_TEST(EntityCollections, ChangeNothingWhenTheObjectStandsThereAlready) {
    auto const member = this->is(1);
    this->follower_->taken();
    EXPECT_EQ(TypeParam::is(*this->model_, member), member);
    EXPECT_EQ(this->follower_->taken(), Calls());
    EXPECT_EQ(this->size(), 1U);
}

TYPED_TEST(EntityCollections, ReplaceTheMemberOfThatKeyInOneChange) {
    auto const old = this->is(1);
    this->is(2);
    this->follower_->taken();
    auto const other = TypeParam::member(this->key(1));
    this->follower_->act = [&](std::string const &) { EXPECT_EQ(this->at(1), other); };
    EXPECT_EQ(TypeParam::is(*this->model_, other), other);
    EXPECT_EQ(this->follower_->taken(), this->keyed("m1"));
    EXPECT_EQ(this->size(), 2U);
    // The replaced one is free to stand elsewhere.
    auto const elsewhere = TypeParam::model("b");
    EXPECT_EQ(TypeParam::is(*elsewhere, old), old);
    EXPECT_EQ(this->at(1), other);
}

TYPED_TEST(EntityCollections, RefuseNull) {
    try {
        TypeParam::is(*this->model_, Vel::Ptr<typename TypeParam::Member>());
        FAIL() << "not refused";
    } catch (Vel::RangeException const & refusal) {
        std::string const attribute(TypeParam::refusal().substr(0, TypeParam::refusal().find(": ")));
        EXPECT_EQ(refusal.what(), "null object to mutator for " + attribute + " not allowed");
    }
    EXPECT_EQ(this->follower_->taken(), Calls());
    EXPECT_EQ(this->size(), 0U);
}

TYPED_TEST(EntityCollections, RefuseAnObjectThatStandsElsewhere) {
    auto const member = this->is(1);
    auto const other = TypeParam::model("b");
    auto const otherFollower = followed(other);
    auto const present = TypeParam::is(*other, this->key(1));
    otherFollower->taken();
    this->follower_->taken();
    try {
        TypeParam::is(*other, member);
        FAIL() << "not refused";
    } catch (Vel::RangeException const & refusal) {
        EXPECT_EQ(refusal.what(), TypeParam::refusal());
    }
    EXPECT_EQ(TypeParam::at(*other, this->key(1)), present);
    EXPECT_EQ(this->at(1), member);
    EXPECT_EQ(otherFollower->taken(), Calls());
    EXPECT_EQ(this->follower_->taken(), Calls());
}

TYPED_TEST(EntityCollections, GiveAMemberUpToAnotherOwnerAfterItsRemoval) {
    auto const member = this->is(1);
    EXPECT_EQ(this->del(1), member);
    auto const other = TypeParam::model("b");
    EXPECT_EQ(TypeParam::is(*other, member), member);
    EXPECT_EQ(TypeParam::at(*other, this->key(1)), member);
    EXPECT_EQ(this->at(1), nullptr);
}

TYPED_TEST(EntityCollections, LetMembersGoWhenTheOwnerDies) {
    auto const member = this->is(1);
    this->follower_ = nullptr;
    this->model_ = nullptr;
    // The other owner may have come to stand where the first one did.
    auto const other = TypeParam::model("b");
    EXPECT_EQ(TypeParam::is(*other, member), member);
    EXPECT_EQ(TypeParam::at(*other, this->key(1)), member);
}

TYPED_TEST(EntityCollections, AnswerARemovalWithWhatWasRemoved) {
    auto const member = this->is(1);
    this->is(2);
    this->follower_->taken();
    this->follower_->act = [&](std::string const &) {
        EXPECT_EQ(this->at(1), nullptr);
        EXPECT_EQ(this->size(), 1U);
    };
    EXPECT_EQ(this->del(1), member);
    EXPECT_EQ(this->follower_->taken(), this->keyed("m1"));
    EXPECT_EQ(member->collectionKey(), this->key(1));
    EXPECT_NE(this->at(2), nullptr);
}

TYPED_TEST(EntityCollections, IgnoreTheRemovalOfAnAbsentKey) {
    this->is(1);
    this->follower_->taken();
    EXPECT_EQ(this->del(2), nullptr);
    EXPECT_EQ(this->follower_->taken(), Calls());
    EXPECT_EQ(this->size(), 1U);
}

TYPED_TEST(EntityCollections, RemoveUnderAKeyThatLivesInTheMember) {
    this->is(1);
    this->is(2);
    this->follower_->taken();
    TypeParam::del(*this->model_, this->at(1)->collectionKey());
    EXPECT_EQ(this->follower_->taken(), this->keyed("m1"));
    TypeParam::is(*this->model_, this->at(2)->collectionKey());
    EXPECT_EQ(this->follower_->taken(), Calls());
}

TYPED_TEST(EntityCollections, EmptyAsOneChange) {
    std::vector<Vel::Ptr<typename TypeParam::Member>> members;
    for (int i = 0; i < 20; ++i) members.push_back(this->is(i));
    this->follower_->taken();
    this->follower_->act = [&](std::string const &) { EXPECT_EQ(this->size(), 0U); };
    TypeParam::delAll(*this->model_);
    EXPECT_EQ(this->follower_->taken(), this->wholeCollection());
    auto const other = TypeParam::model("b");
    for (auto const & member : members) {
        EXPECT_EQ(TypeParam::at(*this->model_, member->collectionKey()), nullptr);
        EXPECT_EQ(TypeParam::is(*other, member), member);
    }
}

TYPED_TEST(EntityCollections, ChangeNothingWhenEmptiedEmpty) {
    TypeParam::delAll(*this->model_);
    EXPECT_EQ(this->follower_->taken(), Calls());
}

TYPED_TEST(EntityCollections, SurviveTheRemovalOfTheMemberInHandDuringAWalk) {
    constexpr int kMembers = 100;
    for (int i = 0; i < kMembers; ++i) this->is(i);
    int met = 0;
    for (auto const & member : TypeParam::range(*this->model_)) {
        EXPECT_EQ(TypeParam::del(*this->model_, member->collectionKey()), member);
        ++met;
    }
    EXPECT_EQ(met, kMembers);
    EXPECT_EQ(this->size(), 0U);
}

TYPED_TEST(EntityCollections, MeetEveryMemberThatStaysWhileOthersComeAndGo) {
    constexpr int kMembers = 40;
    for (int i = 0; i < kMembers; ++i) this->is(i);
    std::vector<Vel::Ptr<typename TypeParam::Member>> met;
    int next = kMembers;
    for (auto const & member : TypeParam::range(*this->model_)) {
        met.push_back(member);
        if (next < 4 * kMembers) this->is(next++);
        this->del(0);
    }
    for (int i = 1; i < kMembers; ++i) EXPECT_EQ(std::count(met.begin(), met.end(), this->at(i)), 1) << i;
}

TYPED_TEST(EntityCollections, EndAWalkWhenTheCollectionIsEmptiedDuringIt) {
    for (int i = 0; i < 10; ++i) this->is(i);
    int met = 0;
    for (auto const & member : TypeParam::range(*this->model_)) {
        EXPECT_NE(member, nullptr);
        TypeParam::delAll(*this->model_);
        ++met;
    }
    EXPECT_EQ(met, 1);
}

TYPED_TEST(EntityCollections, KeepTheOwnerAliveDuringAWalk) {
    for (int i = 0; i < 10; ++i) this->is(i);
    int met = 0;
    for (auto const & member : TypeParam::range(*this->model_)) {
        EXPECT_NE(member, nullptr);
        this->follower_ = nullptr;
        this->model_ = nullptr;
        ++met;
    }
    EXPECT_EQ(met, 10);
}

TYPED_TEST(EntityCollections, DeliverNestedChangesAtOnce) {
    this->follower_->act = [&](std::string const & call) {
        if (call == this->callback() + "(m1)") this->is(2);
        if (call == this->callback() + "(m2)") this->del(1);
    };
    auto const member = this->is(1);
    EXPECT_NE(member, nullptr);
    EXPECT_EQ(this->at(1), nullptr);
    // The second m1 is the removal; when it asks for m2, m2 stands already.
    EXPECT_EQ(this->follower_->taken(),
              (Calls{this->callback() + "(m1)", this->callback() + "(m2)", this->callback() + "(m1)",
                     this->callback(), this->callback(), this->callback()}));
}

TYPED_TEST(EntityCollections, AnswerWithTheMemberThatACallbackHasRemovedAgain) {
    this->follower_->act = [&](std::string const & call) {
        if (call == this->callback() + "(m1)" && this->at(1)) this->del(1);
    };
    auto const member = this->is(1);
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(member->collectionKey(), this->key(1));
    EXPECT_EQ(this->at(1), nullptr);
}

TYPED_TEST(EntityCollections, KeepTheChangeWhenACallbackThrows) {
    auto const second = followed(this->model_);
    this->follower_->act = [&](std::string const &) { throw std::runtime_error("first"); };
    EXPECT_THROW(this->is(1), std::runtime_error);
    EXPECT_NE(this->at(1), nullptr);
    EXPECT_EQ(second->taken(), this->keyed("m1"));
    EXPECT_EQ(this->follower_->taken(), this->keyed("m1"));
    EXPECT_EQ(this->follower_->exceptions, 2);

    EXPECT_THROW(this->del(1), std::runtime_error);
    EXPECT_EQ(this->at(1), nullptr);
    EXPECT_EQ(second->taken(), this->keyed("m1"));

    this->follower_->act = nullptr;
    this->is(2);
    second->taken();
    this->follower_->act = [&](std::string const &) { throw std::runtime_error("first"); };
    EXPECT_THROW(TypeParam::delAll(*this->model_), std::runtime_error);
    EXPECT_EQ(this->size(), 0U);
    EXPECT_EQ(second->taken(), this->wholeCollection());
}

TYPED_TEST(EntityCollections, LetACallbackReleaseTheOwner) {
    this->is(1);
    this->follower_->act = [&](std::string const &) {
        this->model_ = nullptr;
        this->follower_ = nullptr;
    };
    EXPECT_NE(this->is(2), nullptr);
    EXPECT_EQ(this->model_, nullptr);
}

TYPED_TEST(EntityCollections, LetACallbackReleaseTheOwnerOfARemovedMember) {
    auto const member = this->is(1);
    this->follower_->act = [&](std::string const &) {
        this->model_ = nullptr;
        this->follower_ = nullptr;
    };
    EXPECT_EQ(this->del(1), member);
    EXPECT_EQ(this->model_, nullptr);
}

TYPED_TEST(EntityCollections, LetACallbackReleaseTheEmptiedOwner) {
    this->is(1);
    this->follower_->act = [&](std::string const &) {
        this->model_ = nullptr;
        this->follower_ = nullptr;
    };
    TypeParam::delAll(*this->model_);
    EXPECT_EQ(this->model_, nullptr);
}

}  // namespace
}  // namespace NetworkTopologyTest
