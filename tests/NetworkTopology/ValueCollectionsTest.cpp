// What holds for every collection of values: member ports of a group, raw MLAGs and logical ports of a host,
// destinations of an edge.
#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "tests/NetworkTopology/Recorders.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortV2;

struct NamedValues {
    using Key = Vel::Name;
    Key key(int i) { return "k" + std::to_string(i); }
};

struct MemberPorts : NamedValues {
    using Model = PortGroupV2;
    using Value = Vel::Ptr<PortV2>;
    static constexpr char const * kCallback = "onMemberPort";
    Value const values[3] = {PortV2::PortV2Is("v"), PortV2::PortV2Is("v"), nullptr};
    static auto model() { return PortGroupV2::PortGroupV2Is("g"); }
    static void is(Model & m, Key const & key, Value const & value) { m.memberPortIs(key, value); }
    static void del(Model & m, Key const & key) { m.memberPortDel(key); }
    static void delAll(Model & m) { m.memberPortDelAll(); }
    static auto entry(Model const & m, Key const & key) { return m.memberPortEntry(key); }
    static auto value(Model const & m, Key const & key) { return m.memberPort(key); }
    static auto range(Model const & m) { return m.memberPort(); }
};

struct MlagRaws : NamedValues {
    using Model = HostV2;
    using Value = Vel::Ptr<MlagV2>;
    static constexpr char const * kCallback = "onMlagRaw";
    Value const values[3] = {MlagV2::MlagV2Is("v", "w"), MlagV2::MlagV2Is("v", "w"), nullptr};
    static auto model() { return HostV2::HostV2Is("h"); }
    static void is(Model & m, Key const & key, Value const & value) { m.mlagRawIs(key, value); }
    static void del(Model & m, Key const & key) { m.mlagRawDel(key); }
    static void delAll(Model & m) { m.mlagRawDelAll(); }
    static auto entry(Model const & m, Key const & key) { return m.mlagRawEntry(key); }
    static auto value(Model const & m, Key const & key) { return m.mlagRaw(key); }
    static auto range(Model const & m) { return m.mlagRaw(); }
};

struct LogicalPorts : NamedValues {
    using Model = HostV2;
    using Value = Vel::Ptr<PortBaseV2 const>;
    static constexpr char const * kCallback = "onLogicalPort";
    Value const values[3] = {PortV2::PortV2Is("v"), PortGroupV2::PortGroupV2Is("v"), nullptr};
    static auto model() { return HostV2::HostV2Is("h"); }
    static void is(Model & m, Key const & key, Value const & value) { m.logicalPortIs(key, value); }
    static void del(Model & m, Key const & key) { m.logicalPortDel(key); }
    static void delAll(Model & m) { m.logicalPortDelAll(); }
    static auto entry(Model const & m, Key const & key) { return m.logicalPortEntry(key); }
    static auto value(Model const & m, Key const & key) { return m.logicalPort(key); }
    static auto range(Model const & m) { return m.logicalPort(); }
};

struct ToPorts {
    using Model = DirectedEdgeV2;
    using Key = Vel::Ptr<PortBaseV2 const>;
    using Value = bool;
    static constexpr char const * kCallback = "onToPort";
    Value const values[3] = {true, false, true};
    std::vector<Vel::Ptr<PortV2>> ports;
    Key key(int i) {
        while (ports.size() <= static_cast<std::size_t>(i)) {
            ports.push_back(PortV2::PortV2Is("k" + std::to_string(ports.size())));
        }
        return ports[static_cast<std::size_t>(i)];
    }
    static auto model() { return DirectedEdgeV2::DirectedEdgeV2Is(PortV2::PortV2Is("from")); }
    static void is(Model & m, Key const & key, Value value) { m.toPortIs(key, value); }
    static void del(Model & m, Key const & key) { m.toPortDel(key); }
    static void delAll(Model & m) { m.toPortDelAll(); }
    static auto entry(Model const & m, Key const & key) { return m.toPortEntry(key); }
    static auto value(Model const & m, Key const & key) { return m.toPort(key); }
    static auto range(Model const & m) { return m.toPort(); }
};

template <class Collection>
class ValueCollections : public testing::Test {
protected:
    using Model = typename Collection::Model;
    using Recorder = typename RecorderOf<Model>::type;

    auto key(int i) { return collection_.key(i); }
    void is(int i, int value) { Collection::is(*model_, key(i), collection_.values[value]); }
    void del(int i) { Collection::del(*model_, key(i)); }
    auto * entry(int i) { return Collection::entry(*model_, key(i)); }
    std::uint32_t size() { return Collection::range(*model_).size(); }

    static Calls keyed(std::string const & key) { return {callback() + '(' + key + ')', callback()}; }
    static std::string callback() { return Collection::kCallback; }

    Collection collection_;
    Vel::Ptr<Model> model_ = Collection::model();
    Vel::Ptr<Recorder> follower_ = followed(model_);
};

using ValueCollectionTypes = testing::Types<MemberPorts, MlagRaws, LogicalPorts, ToPorts>;
struct ValueCollectionName {
    template <class Collection>
    static std::string GetName(int) {
        return std::string(Collection::kCallback + 2);
    }
};
TYPED_TEST_SUITE(ValueCollections, ValueCollectionTypes, ValueCollectionName);

TYPED_TEST(ValueCollections, BeginEmpty) {
    EXPECT_EQ(this->size(), 0U);
    EXPECT_EQ(this->entry(1), nullptr);
    EXPECT_FALSE(TypeParam::value(*this->model_, this->key(1)));
}

TYPED_TEST(ValueCollections, TellOfAnEntryThatIsAddedChangedAndRemoved) {
    this->is(1, 0);
    EXPECT_EQ(this->follower_->taken(), this->keyed("k1"));
    ASSERT_NE(this->entry(1), nullptr);
    EXPECT_EQ(this->entry(1)->key(), this->key(1));
    EXPECT_EQ(this->entry(1)->value(), this->collection_.values[0]);
    EXPECT_EQ(TypeParam::value(*this->model_, this->key(1)), this->collection_.values[0]);

    this->is(1, 1);
    EXPECT_EQ(this->follower_->taken(), this->keyed("k1"));
    EXPECT_EQ(this->entry(1)->value(), this->collection_.values[1]);
    EXPECT_EQ(this->size(), 1U);

    this->del(1);
    EXPECT_EQ(this->follower_->taken(), this->keyed("k1"));
    EXPECT_EQ(this->entry(1), nullptr);
    EXPECT_EQ(this->size(), 0U);
}

TYPED_TEST(ValueCollections, ChangeNothingOnAnEqualWrite) {
    this->is(1, 0);
    this->follower_->taken();
    this->is(1, 0);
    EXPECT_EQ(this->follower_->taken(), Calls());
}

TYPED_TEST(ValueCollections, IgnoreTheRemovalOfAnAbsentKey) {
    this->is(1, 0);
    this->follower_->taken();
    this->del(2);
    EXPECT_EQ(this->follower_->taken(), Calls());
    EXPECT_EQ(this->size(), 1U);
}

TYPED_TEST(ValueCollections, RemoveUnderAKeyThatLivesInTheEntry) {
    this->is(1, 0);
    this->follower_->taken();
    TypeParam::del(*this->model_, this->entry(1)->key());
    EXPECT_EQ(this->follower_->taken(), this->keyed("k1"));
}

TYPED_TEST(ValueCollections, TellOfEveryKeyWhenEmptied) {
    for (int i = 0; i < 5; ++i) this->is(i, i % 3);
    this->follower_->taken();
    this->follower_->act = [&](std::string const &) { EXPECT_EQ(this->size(), 0U); };
    TypeParam::delAll(*this->model_);
    Calls calls = this->follower_->taken();
    ASSERT_EQ(calls.size(), 7U);
    EXPECT_EQ(calls[5], this->callback() + "velImmediate");
    EXPECT_EQ(calls[6], this->callback());
    // The keys come in the collection's order.
    std::sort(calls.begin(), calls.begin() + 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(calls[static_cast<std::size_t>(i)], this->callback() + "(k" + std::to_string(i) + ')');
    }
}

TYPED_TEST(ValueCollections, ChangeNothingWhenEmptiedEmpty) {
    TypeParam::delAll(*this->model_);
    EXPECT_EQ(this->follower_->taken(), Calls());
}

TYPED_TEST(ValueCollections, TellEveryFollowerOfEveryKeyEvenIfOneThrows) {
    for (int i = 0; i < 3; ++i) this->is(i, 0);
    this->follower_->taken();
    auto const second = followed(this->model_);
    this->follower_->act = [&](std::string const & call) { throw std::runtime_error(call); };
    std::string caught;
    try {
        TypeParam::delAll(*this->model_);
    } catch (std::runtime_error const & error) {
        caught = error.what();
    }
    EXPECT_EQ(second->taken().size(), 5U);
    Calls const calls = this->follower_->taken();
    ASSERT_EQ(calls.size(), 5U);
    EXPECT_EQ(caught, calls[0]);
}

TYPED_TEST(ValueCollections, AddDuringTheEmptying) {
    for (int i = 0; i < 3; ++i) this->is(i, 0);
    this->follower_->act = [&](std::string const & call) {
        if (call == this->callback() + "(k1)" && !this->entry(1)) this->is(1, 1);
    };
    TypeParam::delAll(*this->model_);
    EXPECT_EQ(this->size(), 1U);
    ASSERT_NE(this->entry(1), nullptr);
    EXPECT_EQ(this->entry(1)->value(), this->collection_.values[1]);
}

TYPED_TEST(ValueCollections, LetACallbackReleaseTheOwnerDuringTheEmptying) {
    for (int i = 0; i < 3; ++i) this->is(i, 0);
    auto const second = followed(this->model_);
    this->follower_->act = [&](std::string const &) {
        this->model_ = nullptr;
        second->notifierIs(nullptr);
        this->follower_ = nullptr;
    };
    TypeParam::delAll(*this->model_);
    EXPECT_EQ(this->model_, nullptr);
    EXPECT_EQ(second->taken(), Calls());
}

TYPED_TEST(ValueCollections, SurviveTheRemovalOfTheEntryInHandDuringAWalk) {
    constexpr int kEntries = 60;
    for (int i = 0; i < kEntries; ++i) this->is(i, 0);
    int met = 0;
    for (auto const & entry : TypeParam::range(*this->model_)) {
        TypeParam::del(*this->model_, entry.key());
        EXPECT_FALSE(entry.isPresent());
        EXPECT_EQ(entry.value(), this->collection_.values[0]);
        ++met;
    }
    EXPECT_EQ(met, kEntries);
    EXPECT_EQ(this->size(), 0U);
}

TYPED_TEST(ValueCollections, KeepTheChangeWhenACallbackThrows) {
    auto const second = followed(this->model_);
    this->follower_->act = [&](std::string const &) { throw std::runtime_error("first"); };
    EXPECT_THROW(this->is(1, 0), std::runtime_error);
    EXPECT_NE(this->entry(1), nullptr);
    EXPECT_EQ(second->taken(), this->keyed("k1"));
    EXPECT_THROW(this->del(1), std::runtime_error);
    EXPECT_EQ(this->entry(1), nullptr);
    EXPECT_EQ(second->taken(), this->keyed("k1"));
}

TYPED_TEST(ValueCollections, DeliverNestedChangesAtOnce) {
    this->follower_->act = [&](std::string const & call) {
        if (call == this->callback() + "(k1)" && this->entry(1)) this->del(1);
    };
    this->is(1, 0);
    EXPECT_EQ(this->entry(1), nullptr);
    EXPECT_EQ(this->follower_->taken(), (Calls{this->callback() + "(k1)", this->callback() + "(k1)",
                                               this->callback(), this->callback()}));
}

template <class Collection>
class NullableValues : public ValueCollections<Collection> {};
using NullableCollections = testing::Types<MemberPorts, MlagRaws, LogicalPorts>;
TYPED_TEST_SUITE(NullableValues, NullableCollections, ValueCollectionName);

TYPED_TEST(NullableValues, AnEntryMayHoldNull) {
    this->is(1, 2);
    EXPECT_EQ(this->follower_->taken(), this->keyed("k1"));
    ASSERT_NE(this->entry(1), nullptr);
    EXPECT_EQ(this->entry(1)->value(), nullptr);
    EXPECT_EQ(TypeParam::value(*this->model_, this->key(1)), nullptr);
    EXPECT_EQ(this->size(), 1U);
    this->is(1, 2);
    EXPECT_EQ(this->follower_->taken(), Calls());
    this->is(1, 0);
    EXPECT_EQ(this->follower_->taken(), this->keyed("k1"));
    this->is(1, 2);
    EXPECT_EQ(this->follower_->taken(), this->keyed("k1"));
}

TYPED_TEST(NullableValues, TheKeyIsNotTheNameOfTheTarget) {
    this->is(1, 0);
    EXPECT_EQ(TypeParam::value(*this->model_, "v"), nullptr);
    this->is(2, 0);
    EXPECT_EQ(this->size(), 2U);
    EXPECT_EQ(this->entry(1)->value(), this->entry(2)->value());
}

TYPED_TEST(NullableValues, AnEntryKeepsItsTargetAlive) {
    auto target = this->collection_.values[0];
    std::uint32_t const before = target->references();
    this->is(1, 0);
    EXPECT_EQ(target->references(), before + 1);
    this->is(1, 2);
    EXPECT_EQ(target->references(), before);
}

TYPED_TEST(NullableValues, TheEmptyNameIsAKey) {
    TypeParam::is(*this->model_, "", this->collection_.values[0]);
    EXPECT_EQ(this->follower_->taken(), this->keyed(""));
    EXPECT_EQ(TypeParam::value(*this->model_, ""), this->collection_.values[0]);
    TypeParam::del(*this->model_, "");
    EXPECT_EQ(this->size(), 0U);
}

}  // namespace
}  // namespace NetworkTopologyTest
