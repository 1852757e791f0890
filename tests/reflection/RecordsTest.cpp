// The records of the two types, row by row.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "finder/PortBaseFinder.h"
#include "tests/reflection/support/Reflected.h"

namespace {

using NetworkTopologyAggregator::PortBaseFinder;
using NetworkTopologyAggregator::V2Sm;
using testing::ElementsAre;
using Vel::VelAttr;
using Vel::VelType;

std::string inWords(std::span<Vel::VelArg const> args) {
    std::string text;
    for (Vel::VelArg const & arg : args) {
        text += (text.empty() ? "" : ", ") + std::string(arg.name) + ": " + std::string(arg.type->name());
    }
    return text;
}

std::string kindInWords(VelAttr const & attr) {
    switch (attr.kind()) {
    case VelAttr::Kind::value: return "value";
    case VelAttr::Kind::reference: return "reference";
    case VelAttr::Kind::function: return "function(" + inWords(attr.args()) + ')';
    case VelAttr::Kind::collection:
        return "collection[" + std::string(attr.keyName()) + ": " + std::string(attr.keyType()->name()) + ']';
    case VelAttr::Kind::valueCollection: return "map";
    }
    return {};
}

std::string operationsInWords(VelAttr const & attr) {
    static std::vector<std::pair<Vel::AttributeOperation, char const *>> const names = {
        {Vel::kRead, "read"}, {Vel::kSet, "set"},       {Vel::kCall, "call"},      {Vel::kLookUp, "look up"},
        {Vel::kAdd, "add"},   {Vel::kRemove, "remove"}, {Vel::kIterate, "iterate"}};
    std::string text;
    for (auto const & [operation, name] : names) {
        if (attr.offers(operation)) text += (text.empty() ? "" : ", ") + std::string(name);
    }
    return text;
}

std::vector<std::string> attributesInWords(VelType const & type) {
    std::vector<std::string> rows;
    for (VelAttr const & attr : type.attributes()) {
        EXPECT_EQ(attr.owner(), &type) << attr.name();
        EXPECT_EQ(attr.keyType() == nullptr, attr.kind() != VelAttr::Kind::collection) << attr.name();
        EXPECT_EQ(attr.args().empty() || attr.kind() == VelAttr::Kind::function, true) << attr.name();
        rows.push_back(std::to_string(attr.index()) + ' ' + std::string(attr.name()) + ": " +
                       (attr.isImmutable() ? "immutable " : "") + kindInWords(attr) + " of " +
                       std::string(attr.type()->name()) + "; " + operationsInWords(attr));
    }
    return rows;
}

TEST(TranslatorRecord, ListsEveryAttributeInTheOrderOfItsTable) {
    EXPECT_THAT(
        attributesInWords(V2Sm::_velType),
        ElementsAre(
            "130 name: immutable value of Vel::Name; read",
            "131 v2: reference of NetworkTopology::StatusV2; read",
            "132 v3: reference of NetworkTopologyV3::Status; read",
            "133 toHostV3: function(hostV2: NetworkTopology::HostV2) of NetworkTopologyV3::Host; call",
            "134 toPortBaseV3: function(portV2: NetworkTopology::PortBaseV2) of NetworkTopologyV3::PortBase; "
            "call",
            "135 toPortV3: function(portV2: NetworkTopology::PortV2) of NetworkTopologyV3::Port; call",
            "136 toPortGroupV3: function(pgV2: NetworkTopology::PortGroupV2) of "
            "NetworkTopologyV3::PortGroup; call",
            "137 toMlagV3: function(mlagV2: NetworkTopology::MlagV2) of NetworkTopologyV3::MlagPort; call",
            "138 toPortTypeV3: function(portTypeV2: NetworkTopology::PortTypeV2) of "
            "NetworkTopologyV3::PortType; call",
            "139 host: collection[name: Vel::Name] of NetworkTopology::HostV2; look up, add, remove, iterate",
            "141 edge: collection[fromPort: NetworkTopology::PortBaseV2] of NetworkTopology::DirectedEdgeV2; "
            "look up, add, remove, iterate",
            "143 populateV3: function() of void; call"));
    EXPECT_EQ(V2Sm::_velType.attributeCount(), 12U);
}

TEST(FinderRecord, ListsEveryAttributeInTheOrderOfItsTable) {
    EXPECT_THAT(
        attributesInWords(PortBaseFinder::_velType),
        ElementsAre(
            "130 visitPort: function(port: NetworkTopology::PortV2) of void; call",
            "131 visitPortGroup: function(group: NetworkTopology::PortGroupV2) of void; call",
            "132 visitMlag: function(mlag: NetworkTopology::MlagV2) of void; call",
            "258 hostV2: immutable reference of NetworkTopology::HostV2; read",
            "259 hostV3: immutable reference of NetworkTopologyV3::Host; read",
            "260 result: reference of NetworkTopologyV3::PortBase; read",
            "261 find: function(port: NetworkTopology::PortBaseV2) of NetworkTopologyV3::PortBase; call"));
    EXPECT_EQ(PortBaseFinder::_velType.attributeCount(), 7U);
}

TEST(TranslatorRecord, TellsWhatItIsConstructedFrom) {
    EXPECT_EQ(inWords(V2Sm::_velType.ctorArgs()),
              "name: Vel::Name, v2: NetworkTopology::StatusV2, v3: NetworkTopologyV3::Status");
    EXPECT_TRUE(V2Sm::_velType.isConstructible());
}

TEST(FinderRecord, TellsWhatItIsConstructedFrom) {
    EXPECT_EQ(inWords(PortBaseFinder::_velType.ctorArgs()),
              "hostV2: NetworkTopology::HostV2, hostV3: NetworkTopologyV3::Host");
    EXPECT_TRUE(PortBaseFinder::_velType.isConstructible());
}

TEST(FinderRecord, IsThatOfAVisitor) {
    EXPECT_EQ(PortBaseFinder::_velType.base(), &NetworkTopology::PortBaseVisitor::_velType);
    EXPECT_EQ(V2Sm::_velType.base(), nullptr);
}

// The finder's own attribute comes before that of its base; both have one index.
TEST(FinderRecord, VisitsUnderTheIndicesOfItsBase) {
    for (VelAttr const & inherited : PortBaseFinder::_velType.base()->attributes()) {
        VelAttr const * const own = PortBaseFinder::_velType.attribute(inherited.name());
        ASSERT_NE(own, nullptr);
        EXPECT_NE(own, &inherited);
        EXPECT_EQ(own->index(), inherited.index());
    }
}

TEST(TranslatorRecord, PointsToEveryEntryPoint) {
    VelType::Record const & record = V2Sm::_velType.record();
    EXPECT_NE(record.fromPtrInterface, nullptr);
    EXPECT_NE(record.fromStrRep, nullptr);
    EXPECT_NE(record.genericIfFromCtorArgs, nullptr);
    EXPECT_NE(record.genericIfAttributeOp, nullptr);
    EXPECT_NE(record.genericIfIterator, nullptr);
    EXPECT_NE(record.genericIfIteratorKey, nullptr);
}

TEST(FinderRecord, PointsToNoIteratorsForItHasNoCollection) {
    VelType::Record const & record = PortBaseFinder::_velType.record();
    EXPECT_NE(record.fromPtrInterface, nullptr);
    EXPECT_NE(record.fromStrRep, nullptr);
    EXPECT_NE(record.genericIfFromCtorArgs, nullptr);
    EXPECT_NE(record.genericIfAttributeOp, nullptr);
    EXPECT_EQ(record.genericIfIterator, nullptr);
    EXPECT_EQ(record.genericIfIteratorKey, nullptr);
}

// Registered while the library was loaded, the finder first.
TEST(Records, AreRegisteredByNameAndInOrder) {
    EXPECT_EQ(Vel::typeNode(TestSupport::kTranslator), &V2Sm::_velType);
    EXPECT_EQ(Vel::typeNode(TestSupport::kFinder), &PortBaseFinder::_velType);
    std::vector<VelType const *> const all = Vel::typeNodes();
    auto const finder = std::find(all.begin(), all.end(), &PortBaseFinder::_velType);
    ASSERT_NE(finder, all.end());
    ASSERT_NE(finder + 1, all.end());
    EXPECT_EQ(*(finder + 1), &V2Sm::_velType);
}

TEST(Records, AreThoseOfTheirObjects) {
    TestSupport::Reflected const reflected;
    EXPECT_EQ(reflected.translator.type(), &V2Sm::_velType);
    EXPECT_EQ(reflected.finder.type(), &PortBaseFinder::_velType);
    auto const translator = reflected.translator.as<V2Sm::Ptr>();
    EXPECT_EQ(Vel::GenericIf::of(translator), reflected.translator);
    EXPECT_EQ(Vel::GenericIf::of(translator).typeName(), "NetworkTopologyAggregator::V2Sm");
}

TEST(Records, WrapTheirObjectsAndHaveNoTextForThem) {
    TestSupport::Reflected const reflected;
    for (Vel::GenericIf const & object : {reflected.translator, reflected.finder}) {
        auto const counted = object.as<Vel::Ptr<Vel::PtrInterface>>();
        VelType const & type = *object.type();
        EXPECT_EQ(type.genericIf(counted.get(), false), object);
        EXPECT_FALSE(type.genericIf(counted.get(), false).isConst());
        EXPECT_TRUE(type.genericIf(counted.get(), true).isConst());
        EXPECT_TRUE(type.genericIf(nullptr, false).isNull());
        EXPECT_EQ(TestSupport::raised([&] { type.fromStrRep("sm"); }),
                  "not supported: " + std::string(type.name()) + " has no text representation");
    }
}

}  // namespace
