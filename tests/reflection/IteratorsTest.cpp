// Walks over the registries of a translator, by name.
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/reflection/support/Reflected.h"

namespace {

using NetworkTopologyAggregator::V2Sm;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::inWords;
using TestSupport::Reflected;
using Vel::GenericIf;
using Vel::Name;

constexpr char const * const registries[] = {"host", "edge"};

std::vector<GenericIf> keys(GenericIf::Members const & members) {
    std::vector<GenericIf> found;
    for (auto const & entry : members) found.push_back(entry.key());
    return found;
}

// What an entry point hands out, in the usual clothes.
GenericIf::Members handedOut(auto const entry, Vel::PtrInterface * object, auto const &... attrAndKey) {
    Vel::IteratorVTable const * table = nullptr;
    void * const iterator = entry(object, attrAndKey..., &table);
    return GenericIf::Members(false, iterator, table);
}

class Iterators : public testing::Test {
protected:
    // The walk of a registry, with `act` called at each member.
    std::size_t walk(char const * registry,
                     std::function<void(GenericIf::Members::Entry const &)> const & act) {
        std::size_t met = 0;
        for (auto const & entry : scene.translator.members(registry)) {
            ++met;
            EXPECT_FALSE(entry.key().isNull());
            act(entry);
            if (met > 1000) {
                ADD_FAILURE() << "no end of members";
                break;
            }
        }
        return met;
    }
    void removeAll(char const * registry) {
        for (GenericIf const & key : keys(scene.translator.members(registry)))
            scene.translator.memberDel(registry, key);
    }

    Reflected scene{TestSupport::fillWithThreeHosts};
};

TEST_F(Iterators, MeetEveryMemberOnceWithItsKey) {
    EXPECT_THAT(inWords(scene.translator.members("host")),
                ElementsAre("a: HostV2 a", "b: HostV2 b", "c: HostV2 c"));
    std::vector<GenericIf> const edges = keys(scene.translator.members("edge"));
    EXPECT_EQ(edges.size(), 3U);
    for (auto const & entry : scene.translator.members("edge")) {
        EXPECT_EQ(entry.key(), entry.object().attr("fromPort"));
        EXPECT_EQ(entry.object(), scene.translator.member("edge", entry.key()));
    }
}

TEST_F(Iterators, FromAKeyMeetThatMemberAndThoseAfterIt) {
    for (char const * const registry : registries) {
        std::vector<GenericIf> const all = keys(scene.translator.members(registry));
        for (std::size_t i = 0; i < all.size(); ++i) {
            EXPECT_EQ(keys(scene.translator.members(registry, all[i])),
                      std::vector<GenericIf>(all.begin() + static_cast<std::ptrdiff_t>(i), all.end()))
                << registry;
        }
    }
}

TEST_F(Iterators, FromAnAbsentKeyMeetNothing) {
    EXPECT_THAT(keys(scene.translator.members("host", Name("none"))), IsEmpty());
    EXPECT_THAT(keys(scene.translator.members("host", Name())), IsEmpty());
    EXPECT_THAT(keys(scene.translator.members("edge", nullptr)), IsEmpty());
    // Hosts are told apart by name, edges by the port itself.
    EXPECT_FALSE(keys(scene.translator.members("host", Name(std::string("a")))).empty());
    EXPECT_THAT(keys(scene.translator.members("edge", NetworkTopology::PortV2::PortV2Is("p"))), IsEmpty());
}

TEST_F(Iterators, OverNothingMeetNothing) {
    for (char const * const registry : registries) {
        removeAll(registry);
        EXPECT_THAT(keys(scene.translator.members(registry)), IsEmpty());
    }
}

TEST_F(Iterators, StayAtTheirEndAndShowNullThere) {
    for (char const * const registry : registries) {
        GenericIf::Members const members = scene.translator.members(registry);
        auto i = members.begin();
        for (int n = 0; n < 3; ++n) {
            EXPECT_FALSE(i == std::default_sentinel);
            ++i;
        }
        for (int n = 0; n < 3; ++n) {
            EXPECT_TRUE(i == std::default_sentinel);
            EXPECT_TRUE((*i).key().isNull());
            EXPECT_TRUE((*i).object().isNull());
            ++i;
        }
    }
}

TEST_F(Iterators, GoOnWhenTheMemberInHandLeaves) {
    for (char const * const registry : registries) {
        EXPECT_EQ(walk(registry,
                       [&](auto const & entry) {
                           GenericIf const object = entry.object();
                           EXPECT_EQ(scene.translator.memberDel(registry, entry.key()), object);
                           EXPECT_EQ(entry.object(), object) << "the iterator keeps the member in hand";
                       }),
                  3U);
        EXPECT_THAT(keys(scene.translator.members(registry)), IsEmpty());
    }
}

TEST_F(Iterators, EndWhenAllMembersLeave) {
    for (char const * const registry : registries) {
        EXPECT_EQ(walk(registry, [&](auto const &) { removeAll(registry); }), 1U);
    }
}

TEST_F(Iterators, DoNotMeetAMemberThatHasLeft) {
    for (char const * const registry : registries) {
        std::vector<GenericIf> const before = keys(scene.translator.members(registry));
        std::vector<GenericIf> met;
        walk(registry, [&](auto const & entry) {
            met.push_back(entry.key());
            scene.translator.memberDel(registry, before[1]);
        });
        EXPECT_EQ(met, (std::vector<GenericIf>{before[0], before[2]}));
    }
}

TEST_F(Iterators, MeetTheOldMembersOnceAndEndWhileMembersAreAdded) {
    std::multiset<std::string> met;
    std::size_t added = 0;
    walk("host", [&](auto const & entry) {
        met.insert(std::string(entry.key().template as<Name>().view()));
        if (added < 100) scene.models.v2->hostIs("new-" + std::to_string(added++));
    });
    for (char const * const name : {"a", "b", "c"}) EXPECT_EQ(met.count(name), 1U) << name;
    EXPECT_EQ(keys(scene.translator.members("host")).size(), 3 + added);
}

TEST_F(Iterators, MeetTheOldEdgesOnceAndEndWhileEdgesAreAdded) {
    std::vector<GenericIf> const before = keys(scene.translator.members("edge"));
    std::vector<GenericIf> met;
    std::size_t added = 0;
    walk("edge", [&](auto const & entry) {
        met.push_back(entry.key());
        if (added < 100) scene.models.v2->edgeIs(scene.host()->portIs("new-" + std::to_string(added++)));
    });
    for (GenericIf const & key : before) EXPECT_EQ(std::count(met.begin(), met.end(), key), 1);
    EXPECT_EQ(keys(scene.translator.members("edge")).size(), 3 + added);
}

TEST_F(Iterators, KeepATranslatorThatNobodyElseHolds) {
    for (char const * const registry : registries) {
        Reflected gone{TestSupport::fillWithThreeHosts};
        std::uint64_t const live = V2Sm::velAllocTrackTypeInfo_->live();
        {
            GenericIf::Members const members = gone.translator.members(registry);
            gone.translator = nullptr;
            EXPECT_EQ(V2Sm::velAllocTrackTypeInfo_->live(), live);
            gone.models.v2->hostDel("b");
            EXPECT_EQ(keys(members).size(), registry == registries[0] ? 2U : 3U);
        }
        EXPECT_EQ(V2Sm::velAllocTrackTypeInfo_->live(), live - 1);
    }
}

TEST_F(Iterators, ShowWhatTheReactorsFollowNow) {
    auto const other = NetworkTopology::HostV2::HostV2Is("b");
    scene.translator.memberIs("host", other);
    EXPECT_EQ((*scene.translator.members("host", Name("b")).begin()).object(), GenericIf(other));
}

TEST_F(Iterators, ShowNullUnderTheKeyOfAReactorThatFollowsNothing) {
    auto const sm = scene.translator.as<V2Sm::Ptr>();
    auto const fromPort = scene.host("b")->port("p");
    sm->host("b")->notifierIs(nullptr);
    sm->edge(fromPort)->notifierIs(nullptr);
    for (auto const & [registry, key] : {std::pair<char const *, GenericIf>{"host", Name("b")},
                                         std::pair<char const *, GenericIf>{"edge", fromPort}}) {
        GenericIf::Members const members = scene.translator.members(registry, key);
        EXPECT_EQ((*members.begin()).key(), key);
        EXPECT_TRUE((*members.begin()).object().isNull()) << registry;
        EXPECT_TRUE(scene.translator.member(registry, key).isNull()) << registry;
        EXPECT_EQ(keys(scene.translator.members(registry)).size(), 3U);
        EXPECT_TRUE(scene.translator.memberDel(registry, key).isNull()) << registry;
        EXPECT_EQ(keys(scene.translator.members(registry)).size(), 2U);
    }
}

TEST_F(Iterators, ShowTheInputConst) {
    for (auto const & entry : scene.translator.members("host")) EXPECT_TRUE(entry.object().isConst());
    for (auto const & entry : scene.translator.members("edge")) {
        EXPECT_TRUE(entry.object().isConst());
        EXPECT_TRUE(entry.key().isConst());
    }
}

// As the framework uses them: five operations on an iterator that the entry point has allocated.
TEST_F(Iterators, WorkThroughTheTableOfFiveOperations) {
    Vel::VelType::Record const & record = V2Sm::_velType.record();
    auto const sm = scene.translator.as<Vel::Ptr<Vel::PtrInterface>>();
    for (char const * const registry : registries) {
        Vel::VelAttr const * const attr = V2Sm::_velType.attribute(registry);
        GenericIf::Iterator::IteratorVTable const * table = nullptr;
        void * const iterator = record.genericIfIterator(sm.get(), attr, &table);
        ASSERT_NE(table, nullptr);
        std::vector<GenericIf> met;
        for (; table->iterNonnull(iterator); table->iterInc(iterator)) {
            met.push_back(table->iterKey(iterator));
            EXPECT_EQ(table->iterObj(iterator), scene.translator.member(registry, met.back()));
        }
        table->iterDel(iterator);
        EXPECT_EQ(met, keys(scene.translator.members(registry)));

        void * const fromKey = record.genericIfIteratorKey(sm.get(), attr, met.back(), &table);
        ASSERT_TRUE(table->iterNonnull(fromKey));
        EXPECT_EQ(table->iterKey(fromKey), met.back());
        table->iterInc(fromKey);
        EXPECT_FALSE(table->iterNonnull(fromKey));
        table->iterDel(fromKey);
    }
}

// The entry points tell the registries apart by the index of the hosts alone; who goes by names is refused.
TEST_F(Iterators, WalkTheEdgesUnderEveryIndexButThatOfTheHosts) {
    Vel::VelType::Record const & record = V2Sm::_velType.record();
    auto const sm = scene.translator.as<Vel::Ptr<Vel::PtrInterface>>();
    std::vector<GenericIf> const edges = keys(scene.translator.members("edge"));
    for (Vel::VelAttr const & attr : V2Sm::_velType.attributes()) {
        if (attr.name() == "host") continue;
        SCOPED_TRACE(attr.name());
        EXPECT_EQ(keys(handedOut(record.genericIfIterator, sm.get(), &attr)), edges);
        EXPECT_EQ(keys(handedOut(record.genericIfIteratorKey, sm.get(), &attr, edges.back())),
                  std::vector<GenericIf>{edges.back()});
        EXPECT_EQ(TestSupport::raised(
                      [&] { handedOut(record.genericIfIteratorKey, sm.get(), &attr, GenericIf(Name("a"))); }),
                  "range: argument \"fromPort\" of NetworkTopologyAggregator::V2Sm::edge: expected "
                  "NetworkTopology::PortBaseV2, found Vel::Name");
        if (attr.name() == "edge") continue;
        EXPECT_THROW(scene.translator.members(attr.name()), Vel::OpNotSupportedException);
        EXPECT_THROW(scene.translator.members(attr.name(), edges.back()), Vel::OpNotSupportedException);
    }
}

TEST_F(Iterators, OutliveTheTranslatorThatHandedThemOut) {
    Vel::VelType::Record const & record = V2Sm::_velType.record();
    for (char const * const registry : registries) {
        Reflected gone{TestSupport::fillWithThreeHosts};
        std::uint64_t const live = V2Sm::velAllocTrackTypeInfo_->live();
        {
            auto const sm = gone.translator.as<Vel::Ptr<Vel::PtrInterface>>().get();
            GenericIf::Members const members =
                handedOut(record.genericIfIterator, sm, V2Sm::_velType.attribute(registry));
            gone.translator = nullptr;
            EXPECT_EQ(keys(members).size(), 3U);
        }
        EXPECT_EQ(V2Sm::velAllocTrackTypeInfo_->live(), live - 1);
    }
}

}  // namespace
