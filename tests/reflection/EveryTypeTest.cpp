// What holds for every attribute of every type that is registered, those of both models included: the generic
// interface reads what the accessor returns, writes with one notification, and refuses everything else by
// name.
#include <cctype>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "finder/PortBaseFinder.h"
#include "tests/NetworkTopology/Recorders.h"
#include "tests/NetworkTopologyV3/Recorders.h"
#include "tests/reflection/support/Reflected.h"

namespace {

namespace V2 = NetworkTopology;
namespace V3 = NetworkTopologyV3;
using NetworkTopologyAggregator::PortBaseFinder;
using NetworkTopologyAggregator::V2Sm;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::raised;
using Vel::GenericIf;
using Vel::VelAttr;
using Vel::VelType;

std::string fullName(VelAttr const & attr) {
    return std::string(attr.owner()->name()) + "::" + std::string(attr.name());
}

// Its own and those of its bases.
std::vector<VelAttr const *> attributesOf(GenericIf const & object) {
    std::vector<VelAttr const *> all;
    for (VelType const * type = object.type(); type; type = type->base()) {
        for (VelAttr const & attr : type->attributes()) all.push_back(&attr);
    }
    return all;
}

// The compiled accessors of all that can be read.

using Accessor = GenericIf (*)(Vel::PtrInterface const & object);

template <class Model, auto Get>
GenericIf get(Vel::PtrInterface const & object) {
    return GenericIf::wrap(std::invoke(Get, static_cast<Model const &>(object)));
}

std::map<std::string, Accessor> const & accessors() {
    static std::map<std::string, Accessor> const all = {
        {"NetworkTopology::StatusV2::localhost", &get<V2::StatusV2, &V2::StatusV2::localhost>},
        {"NetworkTopology::HostV2::name", &get<V2::HostV2, &V2::HostV2::name>},
        {"NetworkTopology::HostV2::hostname", &get<V2::HostV2, &V2::HostV2::hostname>},
        {"NetworkTopology::HostV2::hostnameAddedByOwner",
         &get<V2::HostV2, &V2::HostV2::hostnameAddedByOwner>},
        {"NetworkTopology::HostV2::mlagSystemId", &get<V2::HostV2, &V2::HostV2::mlagSystemId>},
        {"NetworkTopology::HostV2::mlagDomainId", &get<V2::HostV2, &V2::HostV2::mlagDomainId>},
        {"NetworkTopology::HostV2::mlagState", &get<V2::HostV2, &V2::HostV2::mlagState>},
        {"NetworkTopology::HostV2::mlagPeerLink", &get<V2::HostV2, &V2::HostV2::mlagPeerLink>},
        {"NetworkTopology::PortBaseV2::name", &get<V2::PortBaseV2, &V2::PortBaseV2::name>},
        {"NetworkTopology::PortBaseV2::type", &get<V2::PortBaseV2, &V2::PortBaseV2::type>},
        {"NetworkTopology::PortBaseV2::addedByOwner", &get<V2::PortBaseV2, &V2::PortBaseV2::addedByOwner>},
        {"NetworkTopology::PortBaseV2::host", &get<V2::PortBaseV2, &V2::PortBaseV2::host>},
        {"NetworkTopology::PortV2::portGroup", &get<V2::PortV2, &V2::PortV2::portGroup>},
        {"NetworkTopology::PortGroupV2::mlag", &get<V2::PortGroupV2, &V2::PortGroupV2::mlag>},
        {"NetworkTopology::MlagV2::secondaryName", &get<V2::MlagV2, &V2::MlagV2::secondaryName>},
        {"NetworkTopology::MlagV2::localPortGroup", &get<V2::MlagV2, &V2::MlagV2::localPortGroup>},
        {"NetworkTopology::MlagV2::peerPortGroup", &get<V2::MlagV2, &V2::MlagV2::peerPortGroup>},
        {"NetworkTopology::DirectedEdgeV2::fromPort",
         &get<V2::DirectedEdgeV2, &V2::DirectedEdgeV2::fromPort>},
        {"NetworkTopologyV3::Status::localhost", &get<V3::Status, &V3::Status::localhost>},
        {"NetworkTopologyV3::Host::name", &get<V3::Host, &V3::Host::name>},
        {"NetworkTopologyV3::Host::hostname", &get<V3::Host, &V3::Host::hostname>},
        {"NetworkTopologyV3::Host::mlagSystemId", &get<V3::Host, &V3::Host::mlagSystemId>},
        {"NetworkTopologyV3::Host::mlagDomainId", &get<V3::Host, &V3::Host::mlagDomainId>},
        {"NetworkTopologyV3::Host::mlagState", &get<V3::Host, &V3::Host::mlagState>},
        {"NetworkTopologyV3::Host::mlagPeerLink", &get<V3::Host, &V3::Host::mlagPeerLink>},
        {"NetworkTopologyV3::PortBase::name", &get<V3::PortBase, &V3::PortBase::name>},
        {"NetworkTopologyV3::PortBase::type", &get<V3::PortBase, &V3::PortBase::type>},
        {"NetworkTopologyV3::PortBase::portKey", &get<V3::PortBase, &V3::PortBase::portKey>},
        {"NetworkTopologyV3::PortBase::host", &get<V3::PortBase, &V3::PortBase::host>},
        {"NetworkTopologyV3::Port::portGroup", &get<V3::Port, &V3::Port::portGroup>},
        {"NetworkTopologyV3::PortGroup::mlag", &get<V3::PortGroup, &V3::PortGroup::mlag>},
        {"NetworkTopologyV3::MlagPort::secondaryName", &get<V3::MlagPort, &V3::MlagPort::secondaryName>},
        {"NetworkTopologyV3::MlagPort::localPortGroup", &get<V3::MlagPort, &V3::MlagPort::localPortGroup>},
        {"NetworkTopologyV3::DirectedEdge::fromPort", &get<V3::DirectedEdge, &V3::DirectedEdge::fromPort>},
        {"NetworkTopologyAggregator::V2Sm::name", &get<V2Sm, &V2Sm::name>},
        {"NetworkTopologyAggregator::V2Sm::v2", &get<V2Sm, &V2Sm::v2>},
        {"NetworkTopologyAggregator::V2Sm::v3", &get<V2Sm, &V2Sm::v3>},
        {"NetworkTopologyAggregator::PortBaseFinder::hostV2", &get<PortBaseFinder, &PortBaseFinder::hostV2>},
        {"NetworkTopologyAggregator::PortBaseFinder::hostV3", &get<PortBaseFinder, &PortBaseFinder::hostV3>},
        {"NetworkTopologyAggregator::PortBaseFinder::result", &get<PortBaseFinder, &PortBaseFinder::result>},
    };
    return all;
}

// Who follows an object and tells which callbacks it got since the last time.
using Taken = std::function<std::vector<std::string>()>;

template <class Recorder>
Taken recordedV2(GenericIf const & object) {
    auto const recorder =
        NetworkTopologyTest::followedBy<Recorder>(object.as<Vel::Ptr<Vel::PtrInterface const>>());
    return [recorder] { return recorder->taken(); };
}

template <class Recorder>
Taken recordedV3(GenericIf const & object) {
    auto const journal = std::make_shared<V3::Journal>();
    auto const recorder = V3::recorderOf<Recorder>(object.as<Vel::Ptr<Vel::PtrInterface const>>(), *journal);
    return [journal, recorder] { return journal->take(); };
}

Taken followed(GenericIf const & object) {
    static std::map<std::string, Taken (*)(GenericIf const &)> const recorders = {
        {"NetworkTopology::StatusV2", &recordedV2<NetworkTopologyTest::StatusRecorder>},
        {"NetworkTopology::HostV2", &recordedV2<NetworkTopologyTest::HostRecorder>},
        {"NetworkTopology::PortV2", &recordedV2<NetworkTopologyTest::PortRecorder>},
        {"NetworkTopology::PortGroupV2", &recordedV2<NetworkTopologyTest::PortGroupRecorder>},
        {"NetworkTopology::MlagV2", &recordedV2<NetworkTopologyTest::MlagRecorder>},
        {"NetworkTopology::DirectedEdgeV2", &recordedV2<NetworkTopologyTest::EdgeRecorder>},
        {"NetworkTopologyV3::Status", &recordedV3<V3::StatusRecorder>},
        {"NetworkTopologyV3::Host", &recordedV3<V3::HostRecorder>},
        {"NetworkTopologyV3::Port", &recordedV3<V3::PortRecorder>},
        {"NetworkTopologyV3::PortGroup", &recordedV3<V3::PortGroupRecorder>},
        {"NetworkTopologyV3::MlagPort", &recordedV3<V3::MlagPortRecorder>},
        {"NetworkTopologyV3::DirectedEdge", &recordedV3<V3::DirectedEdgeRecorder>},
    };
    auto const found = recorders.find(object.typeName());
    return found == recorders.end() ? [] { return std::vector<std::string>(); } : found->second(object);
}

// The attributes of which nobody hears.
bool isSilent(VelAttr const & attr) { return fullName(attr) == "NetworkTopology::MlagV2::secondaryName"; }

class EveryType : public testing::Test {
protected:
    // One object of every class, with everything set that can be.
    std::vector<GenericIf> objects() const {
        auto const host = scene.host();
        auto const hostV3 = scene.models.v3->host("a");
        scene.finder.call("find", {host->port("p")});
        return {scene.models.v2,   host,
                host->port("p"),   host->portGroup("g"),
                host->mlag("m"),   scene.models.v2->edge(host->port("p")),
                scene.models.v3,   hostV3,
                hostV3->port("p"), hostV3->portGroup("g"),
                hostV3->mlag("m"), scene.models.v3->edge(hostV3->port("p")->portKey()),
                scene.translator,  scene.finder};
    }
    // One with nothing set.
    std::vector<GenericIf> bareObjects() const {
        auto const bare = bareStatus->hostIs("bare");
        return {bareStatus, bare, bare->portIs("p"), bare->portGroupIs("g"), bare->mlagIs("m", "")};
    }

    template <class Act>
    void forEveryAttribute(std::vector<GenericIf> const & objects, Act const & act) const {
        for (GenericIf const & object : objects) {
            for (VelAttr const * const attr : attributesOf(object)) {
                SCOPED_TRACE(object.typeName() + ": " + fullName(*attr));
                act(object, *attr);
            }
        }
    }

    // A value that the attribute does not have now.
    GenericIf another(GenericIf const & now, VelType const & type) const {
        if (type.kind() == VelType::Kind::object) return now.isNull() ? scene.sample(type) : nullptr;
        if (type.kind() == VelType::Kind::enumeration) {
            return Vel::enumeratorFromNumber(type, now.enumeratorValue() + 1);
        }
        if (&type == Vel::VelTypeOf<bool>::record) return !now.as<bool>();
        return type.fromStrRep(type.name() == "Keln::EthAddr" ? "02:00:00:00:00:77" : "another");
    }

    TestSupport::Reflected const scene;
    V3::Status::Ptr const bareStatus = V3::Status::StatusIs();
};

TEST_F(EveryType, WithAttributesHasAnObjectHere) {
    for (VelType const * const type : Vel::typeNodes()) {
        if (type->attributes().empty()) continue;
        bool met = false;
        for (GenericIf const & object : objects()) met = met || object.type()->isA(*type);
        EXPECT_TRUE(met) << type->name();
    }
}

TEST_F(EveryType, ReadsWhatItsAccessorReturns) {
    std::size_t met = 0;
    for (auto const & some : {objects(), bareObjects()}) {
        met = 0;
        forEveryAttribute(some, [&](GenericIf const & object, VelAttr const & attr) {
            if (!attr.offers(Vel::kRead)) return;
            ASSERT_TRUE(accessors().contains(fullName(attr)));
            auto const counted = object.as<Vel::Ptr<Vel::PtrInterface>>();
            GenericIf const value = object.attr(attr.name());
            EXPECT_EQ(value, accessors().at(fullName(attr))(*counted));
            EXPECT_TRUE(value.isNull() || value.type()->isA(*attr.type())) << value.typeName();
            ++met;
        });
    }
    EXPECT_GT(met, 10U);
}

TEST_F(EveryType, HasNoAccessorHereThatNoAttributeReads) {
    std::map<std::string, Accessor> left = accessors();
    forEveryAttribute(objects(), [&](GenericIf const &, VelAttr const & attr) {
        if (attr.offers(Vel::kRead)) left.erase(fullName(attr));
    });
    for (auto const & [name, accessor] : left) ADD_FAILURE() << name;
}

TEST_F(EveryType, NotifiesOnceOfEveryAttributeThatIsWritten) {
    forEveryAttribute(objects(), [&](GenericIf const & object, VelAttr const & attr) {
        if (!attr.offers(Vel::kSet)) return;
        GenericIf const before = object.attr(attr.name());
        std::string callback = "on" + std::string(attr.name());
        callback[2] = static_cast<char>(std::toupper(callback[2]));
        Taken const taken = followed(object);
        for (GenericIf const & value : {another(before, *attr.type()), before}) {
            ASSERT_NE(object.attr(attr.name()), value);
            object.attrIs(attr.name(), value);
            EXPECT_EQ(object.attr(attr.name()), value);
            if (isSilent(attr)) {
                EXPECT_THAT(taken(), IsEmpty());
            } else {
                EXPECT_THAT(taken(), ElementsAre(StartsWith(callback)));
            }
            object.attrIs(attr.name(), value);
            EXPECT_THAT(taken(), IsEmpty()) << "an equal write";
        }
    });
}

TEST_F(EveryType, RefusesEveryOperationThatIsNotOffered) {
    forEveryAttribute(objects(), [&](GenericIf const & object, VelAttr const & attr) {
        Taken const taken = followed(object);
        std::string const name = fullName(attr);
        GenericIf const key = scene.key(attr);
        auto const expectRefused = [&](Vel::AttributeOperation operation, char const * word,
                                       std::function<void()> const & act) {
            if (attr.offers(operation)) return;
            EXPECT_EQ(raised(act), "not supported: cannot " + std::string(word) + ' ' + name);
        };
        // By the attribute itself: one of a base may have another of its name before it.
        auto const operation = [&](Vel::AttributeOperation operation, std::span<GenericIf const> args) {
            return [&object, &attr, operation, args] { object.operate({operation, &attr}, args); };
        };
        expectRefused(Vel::kRead, "read", operation(Vel::kRead, {}));
        expectRefused(Vel::kSet, "set", operation(Vel::kSet, {&key, 1}));
        expectRefused(Vel::kCall, "call", operation(Vel::kCall, {}));
        expectRefused(Vel::kLookUp, "look up", operation(Vel::kLookUp, {&key, 1}));
        expectRefused(Vel::kAdd, "add", operation(Vel::kAdd, {&key, 1}));
        expectRefused(Vel::kRemove, "remove", operation(Vel::kRemove, {&key, 1}));
        if (object.type()->attribute(attr.name()) != &attr) return;
        expectRefused(Vel::kIterate, "iterate", [&] { object.members(attr.name()); });
        expectRefused(Vel::kIterate, "iterate", [&] { object.members(attr.name(), key); });
        EXPECT_THAT(taken(), IsEmpty());
    });
}

TEST_F(EveryType, NamesTheArgumentThatItCannotTake) {
    // No attribute, no argument and no key is of this type.
    GenericIf const wrong = 7U;
    forEveryAttribute(objects(), [&](GenericIf const & object, VelAttr const & attr) {
        Taken const taken = followed(object);
        auto const expectNamed = [&](std::string_view argument, std::function<void()> const & act) {
            EXPECT_THAT(raised(act), StartsWith("range: argument \"" + std::string(argument) + "\" of " +
                                                fullName(attr) + ": "));
        };
        if (attr.offers(Vel::kSet)) {
            expectNamed(attr.name(), [&] { object.attrIs(attr.name(), wrong); });
            expectNamed(attr.name(), [&] { object.operate({Vel::kSet, &attr}, {}); });
        }
        if (attr.offers(Vel::kCall)) {
            std::vector<GenericIf> tooMany(attr.args().size() + 1);
            EXPECT_THAT(raised([&] {
                            object.operate({Vel::kCall, &attr}, tooMany);
                        }),
                        StartsWith("range: " + fullName(attr) + " takes "));
            if (!attr.args().empty()) {
                expectNamed(attr.args()[0].name, [&] { object.operate({Vel::kCall, &attr}, {}); });
                expectNamed(attr.args()[0].name, [&] { object.operate({Vel::kCall, &attr}, {&wrong, 1}); });
            }
        }
        if (attr.offers(Vel::kIterate)) {
            expectNamed(attr.keyName(), [&] { object.member(attr.name(), wrong); });
            expectNamed(attr.keyName(), [&] { object.memberDel(attr.name(), wrong); });
            expectNamed(attr.keyName(), [&] { object.members(attr.name(), wrong); });
            expectNamed(attr.keyName(), [&] { object.operate({Vel::kLookUp, &attr}, {}); });
            auto const first = attr.args().empty() ? attr.name() : std::string_view(attr.args()[0].name);
            expectNamed(first, [&] { object.memberIs(attr.name(), std::span<GenericIf const>()); });
        }
        EXPECT_THAT(taken(), IsEmpty());
    });
}

}  // namespace
