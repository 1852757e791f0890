// Every collection of every type, walked and looked into by name, shows what its accessors do.
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/reflection/support/EveryType.h"

namespace {

namespace V2 = NetworkTopology;
namespace V3 = NetworkTopologyV3;
using NetworkTopologyAggregator::V2Sm;
using TestSupport::fullName;
using Vel::GenericIf;
using Vel::VelAttr;

// Key and object of each entry, in the order of the walk.
using Entries = std::vector<std::pair<GenericIf, GenericIf>>;

// The compiled accessors of a collection.
struct Accessors {
    std::function<Entries(Vel::PtrInterface & object)> entries;
    std::function<GenericIf(Vel::PtrInterface & object, GenericIf const & key)> find;
};

// What is kept under a key: a member, a value, or what a reactor follows.
template <class Found>
GenericIf shown(Found const & found) {
    if constexpr (std::is_same_v<Found, std::optional<bool>>) {
        return found ? GenericIf(*found) : GenericIf();
    } else if constexpr (requires { found->notifier(); }) {
        return found ? GenericIf::wrap(found->notifier()) : GenericIf();
    } else {
        return GenericIf::wrap(found);
    }
}

template <class Member>
GenericIf keyOf(Member const & member) {
    if constexpr (requires { member.notifier(); }) {
        return keyOf(*member.notifier());
    } else if constexpr (requires { member.fromPort(); }) {
        return GenericIf::wrap(member.fromPort());
    } else {
        return GenericIf::wrap(member.name());
    }
}

// `access(object)` is the range, `access(object, key)` looks up.
template <class Model, class Key, class Access>
Accessors accessedBy(Access const & access) {
    return {[access](Vel::PtrInterface & object) {
                Entries all;
                for (auto const & entry : access(static_cast<Model &>(object))) {
                    if constexpr (requires { entry.value(); }) {
                        all.emplace_back(GenericIf::wrap(entry.key()), GenericIf::wrap(entry.value()));
                    } else {
                        all.emplace_back(keyOf(*entry), shown(entry));
                    }
                }
                return all;
            },
            [access](Vel::PtrInterface & object, GenericIf const & key) {
                return shown(access(static_cast<Model &>(object), key.as<Key>()));
            }};
}

constexpr auto hostOf = [](auto & o, auto const &... key) { return o.host(key...); };
constexpr auto edgeOf = [](auto & o, auto const &... key) { return o.edge(key...); };
constexpr auto portOf = [](auto & o, auto const &... key) { return o.port(key...); };
constexpr auto portGroupOf = [](auto & o, auto const &... key) { return o.portGroup(key...); };
constexpr auto mlagOf = [](auto & o, auto const &... key) { return o.mlag(key...); };
constexpr auto mlagRawOf = [](auto & o, auto const &... key) { return o.mlagRaw(key...); };
constexpr auto logicalPortOf = [](auto & o, auto const &... key) { return o.logicalPort(key...); };
constexpr auto memberPortOf = [](auto & o, auto const &... key) { return o.memberPort(key...); };
constexpr auto toPortOf = [](auto & o, auto const &... key) { return o.toPort(key...); };

std::map<std::string, Accessors> const & collections() {
    using Vel::Name;
    using PortV2 = Vel::Ptr<V2::PortBaseV2 const>;
    static std::map<std::string, Accessors> const all = {
        {"NetworkTopology::StatusV2::host", accessedBy<V2::StatusV2, Name>(hostOf)},
        {"NetworkTopology::StatusV2::edge", accessedBy<V2::StatusV2, PortV2>(edgeOf)},
        {"NetworkTopology::HostV2::port", accessedBy<V2::HostV2, Name>(portOf)},
        {"NetworkTopology::HostV2::portGroup", accessedBy<V2::HostV2, Name>(portGroupOf)},
        {"NetworkTopology::HostV2::mlag", accessedBy<V2::HostV2, Name>(mlagOf)},
        {"NetworkTopology::HostV2::mlagRaw", accessedBy<V2::HostV2, Name>(mlagRawOf)},
        {"NetworkTopology::HostV2::logicalPort", accessedBy<V2::HostV2, Name>(logicalPortOf)},
        {"NetworkTopology::PortGroupV2::memberPort", accessedBy<V2::PortGroupV2, Name>(memberPortOf)},
        {"NetworkTopology::DirectedEdgeV2::toPort", accessedBy<V2::DirectedEdgeV2, PortV2>(toPortOf)},
        {"NetworkTopologyV3::Status::host", accessedBy<V3::Status, Name>(hostOf)},
        {"NetworkTopologyV3::Status::edge", accessedBy<V3::Status, V3::PortKey>(edgeOf)},
        {"NetworkTopologyV3::Host::port", accessedBy<V3::Host, Name>(portOf)},
        {"NetworkTopologyV3::Host::portGroup", accessedBy<V3::Host, Name>(portGroupOf)},
        {"NetworkTopologyV3::Host::mlag", accessedBy<V3::Host, Name>(mlagOf)},
        {"NetworkTopologyV3::Host::mlagRaw", accessedBy<V3::Host, Name>(mlagRawOf)},
        {"NetworkTopologyV3::Host::logicalPort", accessedBy<V3::Host, Name>(logicalPortOf)},
        {"NetworkTopologyV3::PortGroup::memberPort", accessedBy<V3::PortGroup, Name>(memberPortOf)},
        {"NetworkTopologyV3::DirectedEdge::toPort", accessedBy<V3::DirectedEdge, V3::PortKey>(toPortOf)},
        {"NetworkTopologyAggregator::V2Sm::host", accessedBy<V2Sm, Name>(hostOf)},
        {"NetworkTopologyAggregator::V2Sm::edge", accessedBy<V2Sm, V2Sm::FromPort>(edgeOf)},
    };
    return all;
}

Entries entries(GenericIf::Members const & members) {
    Entries all;
    for (auto const & entry : members) all.emplace_back(entry.key(), entry.object());
    return all;
}

class Collections : public TestSupport::EveryType {
protected:
    // Entries of the input's maps may hold null.
    Collections() {
        scene.host()->mlagRawIs("none", nullptr);
        scene.host()->logicalPortIs("none", nullptr);
        scene.host()->portGroup("g")->memberPortIs("none", nullptr);
    }

    using Act = std::function<void(Vel::PtrInterface & object, GenericIf const & generic, VelAttr const &,
                                   Accessors const &)>;
    void forEveryCollection(std::vector<GenericIf> const & objects, Act const & act) const {
        forEveryAttribute(objects, [&](GenericIf const & object, VelAttr const & attr) {
            if (!attr.offers(Vel::kIterate)) return;
            ASSERT_TRUE(collections().contains(fullName(attr)));
            act(*object.as<Vel::Ptr<Vel::PtrInterface>>(), object, attr, collections().at(fullName(attr)));
        });
    }

    // Keys of the collection's type under which nothing stands.
    std::vector<GenericIf> absentKeys(VelAttr const & attr) const {
        if (attr.keyType() == Vel::VelTypeOf<Vel::Name>::record) return {Vel::Name("absent"), Vel::Name()};
        if (attr.keyType() == Vel::VelTypeOf<V3::PortKey>::record)
            return {GenericIf::wrap(V3::PortKey("a", "absent"))};
        return {V2::PortV2::PortV2Is("p"), scene.host("c")->portGroup("h"), nullptr};
    }
};

TEST_F(Collections, AreWalkedAsTheirAccessorsDo) {
    forEveryCollection(objects(), [](Vel::PtrInterface & object, GenericIf const & generic,
                                     VelAttr const & attr, Accessors const & compiled) {
        Entries const expected = compiled.entries(object);
        EXPECT_FALSE(expected.empty());
        EXPECT_EQ(entries(generic.members(attr.name())), expected);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(entries(generic.members(attr.name(), expected[i].first)),
                      Entries(expected.begin() + static_cast<std::ptrdiff_t>(i), expected.end()));
        }
    });
    forEveryCollection(bareObjects(), [this](Vel::PtrInterface & object, GenericIf const & generic,
                                             VelAttr const & attr, Accessors const & compiled) {
        EXPECT_EQ(entries(generic.members(attr.name())), compiled.entries(object));
        for (GenericIf const & key : absentKeys(attr))
            EXPECT_EQ(entries(generic.members(attr.name(), key)), Entries());
    });
}

TEST_F(Collections, AreLookedIntoAsTheirAccessorsDo) {
    forEveryCollection(objects(), [this](Vel::PtrInterface & object, GenericIf const & generic,
                                         VelAttr const & attr, Accessors const & compiled) {
        for (auto const & [key, found] : compiled.entries(object)) {
            EXPECT_EQ(generic.member(attr.name(), key), found);
            EXPECT_EQ(compiled.find(object, key), found);
        }
        for (GenericIf const & key : absentKeys(attr)) {
            EXPECT_TRUE(generic.member(attr.name(), key).isNull());
            EXPECT_TRUE(compiled.find(object, key).isNull());
            EXPECT_EQ(entries(generic.members(attr.name(), key)), Entries());
        }
    });
}

TEST_F(Collections, AreAllListedHereAndNothingElseIs) {
    std::map<std::string, Accessors> left = collections();
    forEveryCollection(objects(), [&](Vel::PtrInterface &, GenericIf const &, VelAttr const & attr,
                                      Accessors const &) { left.erase(fullName(attr)); });
    for (auto const & [name, accessors] : left) ADD_FAILURE() << name;
}

}  // namespace
