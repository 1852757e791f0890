// What holds for every attribute of every type that is registered, those of both models included: the generic
// interface reads what the accessor returns, writes with one notification, and refuses everything else by
// name.
#include <cctype>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "finder/PortBaseFinder.h"
#include "tests/reflection/support/EveryType.h"

namespace {

namespace V2 = NetworkTopology;
namespace V3 = NetworkTopologyV3;
using NetworkTopologyAggregator::PortBaseFinder;
using NetworkTopologyAggregator::V2Sm;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::EveryType;
using TestSupport::followed;
using TestSupport::fullName;
using TestSupport::raised;
using TestSupport::Taken;
using Vel::GenericIf;
using Vel::VelAttr;
using Vel::VelType;

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

// The attributes of which nobody hears.
bool isSilent(VelAttr const & attr) { return fullName(attr) == "NetworkTopology::MlagV2::secondaryName"; }

// A value that an attribute does not have now.
GenericIf another(TestSupport::Reflected const & scene, GenericIf const & now, VelType const & type) {
    if (type.kind() == VelType::Kind::object) return now.isNull() ? scene.sample(type) : nullptr;
    if (type.kind() == VelType::Kind::enumeration) {
        return Vel::enumeratorFromNumber(type, now.enumeratorValue() + 1);
    }
    if (&type == Vel::VelTypeOf<bool>::record) return !now.as<bool>();
    return type.fromStrRep(type.name() == "Keln::EthAddr" ? "02:00:00:00:00:77" : "another");
}

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
        for (GenericIf const & value : {another(scene, before, *attr.type()), before}) {
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

}  // namespace
