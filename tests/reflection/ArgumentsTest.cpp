// What the two types say to arguments that they cannot take: a range exception that names the argument, and
// nothing has changed.
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/reflection/support/Reflected.h"

namespace {

using TestSupport::inWords;
using TestSupport::raised;
using TestSupport::Reflected;
using Vel::GenericIf;
using Vel::VelAttr;

// Both objects with every attribute that offers `operation`.
template <class Act>
void forEveryAttribute(Vel::AttributeOperation operation, Act const & act) {
    Reflected const reflected;
    int met = 0;
    for (GenericIf const & object : {reflected.translator, reflected.finder}) {
        for (VelAttr const & attr : object.type()->attributes()) {
            if (!attr.offers(operation)) continue;
            std::string const name = std::string(attr.owner()->name()) + "::" + std::string(attr.name());
            SCOPED_TRACE(name);
            act(reflected, object, attr, name);
            ++met;
        }
    }
    EXPECT_GT(met, 0);
}

TEST(Arguments, OfAWrongTypeAreNamed) {
    forEveryAttribute(Vel::kCall, [](Reflected const & scene, GenericIf const & object, VelAttr const & attr,
                                     std::string const & name) {
        for (std::size_t wrong = 0; wrong < attr.args().size(); ++wrong) {
            std::vector<GenericIf> args = scene.samples(attr.args());
            args[wrong] = 7U;
            EXPECT_EQ(raised([&] { object.call(attr.name(), args); }),
                      "range: argument \"" + std::string(attr.args()[wrong].name) + "\" of " + name +
                          ": expected " + std::string(attr.args()[wrong].type->name()) +
                          ", found unsigned int");
        }
    });
}

TEST(Arguments, ThatAreMissingAreNamed) {
    forEveryAttribute(Vel::kCall, [](Reflected const &, GenericIf const & object, VelAttr const & attr,
                                     std::string const & name) {
        if (attr.args().empty()) return;
        EXPECT_EQ(raised([&] { object.call(attr.name(), {}); }),
                  "range: argument \"" + std::string(attr.args()[0].name) + "\" of " + name + ": is missing");
    });
}

TEST(Arguments, ThatAreTooManyAreCountedBesideTheNamesOfTheOthers) {
    forEveryAttribute(Vel::kCall, [](Reflected const & scene, GenericIf const & object, VelAttr const & attr,
                                     std::string const & name) {
        std::vector<GenericIf> args = scene.samples(attr.args());
        args.emplace_back();
        std::string const expected =
            attr.args().empty() ? " takes 0 arguments, found 1"
                                : " takes 1 argument (" + std::string(attr.args()[0].name) + "), found 2";
        EXPECT_EQ(raised([&] { object.call(attr.name(), args); }), "range: " + name + expected);
    });
}

TEST(Arguments, ThatAreObjectsOfAnotherClassAreNamed) {
    Reflected const reflected;
    GenericIf const & sm = reflected.translator;
    GenericIf const group = reflected.host()->portGroup("g");
    EXPECT_EQ(raised([&] { sm.call("toPortV3", {group}); }),
              "range: argument \"portV2\" of NetworkTopologyAggregator::V2Sm::toPortV3: expected "
              "NetworkTopology::PortV2, found NetworkTopology::PortGroupV2");
    EXPECT_EQ(inWords(sm.call("toPortBaseV3", {group})), "PortGroup g");
    EXPECT_EQ(raised([&] { sm.call("toHostV3", {reflected.models.v3->host("a")}); }),
              "range: argument \"hostV2\" of NetworkTopologyAggregator::V2Sm::toHostV3: expected "
              "NetworkTopology::HostV2, found NetworkTopologyV3::Host");
    EXPECT_EQ(raised([&] { sm.call("toPortTypeV3", {GenericIf::wrap(NetworkTopologyV3::PortType::port)}); }),
              "range: argument \"portTypeV2\" of NetworkTopologyAggregator::V2Sm::toPortTypeV3: expected "
              "NetworkTopology::PortTypeV2, found NetworkTopologyV3::PortType");
    EXPECT_EQ(raised([&] { sm.call("toPortTypeV3", {GenericIf()}); }),
              "range: argument \"portTypeV2\" of NetworkTopologyAggregator::V2Sm::toPortTypeV3: expected "
              "NetworkTopology::PortTypeV2, found null");
}

TEST(Keys, OfAWrongTypeAreNamed) {
    forEveryAttribute(Vel::kLookUp, [](Reflected const & scene, GenericIf const & object,
                                       VelAttr const & attr, std::string const & name) {
        std::string const expected = "range: argument \"" + std::string(attr.keyName()) + "\" of " + name +
                                     ": expected " + std::string(attr.keyType()->name()) + ", found bool";
        EXPECT_EQ(raised([&] { object.member(attr.name(), true); }), expected);
        EXPECT_EQ(raised([&] { object.memberDel(attr.name(), true); }), expected);
        EXPECT_EQ(raised([&] { object.members(attr.name(), true); }), expected);
        EXPECT_FALSE(object.member(attr.name(), scene.key(attr)).isNull());
    });
}

TEST(Keys, ThatAreMissingOrTooManyAreNamed) {
    forEveryAttribute(Vel::kLookUp, [](Reflected const & scene, GenericIf const & object,
                                       VelAttr const & attr, std::string const & name) {
        std::string const key(attr.keyName());
        std::vector<GenericIf> const two(2, scene.key(attr));
        for (Vel::AttributeOperation const operation : {Vel::kLookUp, Vel::kRemove}) {
            EXPECT_EQ(raised([&] {
                          object.operate({operation, &attr}, {});
                      }),
                      "range: argument \"" + key + "\" of " + name + ": is missing");
            EXPECT_EQ(raised([&] {
                          object.operate({operation, &attr}, two);
                      }),
                      "range: " + name + " takes 1 argument (" + key + "), found 2");
        }
        EXPECT_FALSE(object.member(attr.name(), scene.key(attr)).isNull());
    });
}

TEST(AddedObjects, OfAWrongTypeAreNamed) {
    forEveryAttribute(Vel::kAdd, [](Reflected const & scene, GenericIf const & object, VelAttr const & attr,
                                    std::string const & name) {
        std::string const where = "range: argument \"" + std::string(attr.name()) + "\" of " + name + ": ";
        std::string const wanted = "expected " + std::string(attr.type()->name()) + ", found ";
        EXPECT_EQ(raised([&] { object.memberIs(attr.name(), GenericIf(scene.models.v2)); }),
                  where + wanted + "NetworkTopology::StatusV2");
        EXPECT_EQ(raised([&] { object.memberIs(attr.name(), GenericIf(Vel::Name("a"))); }),
                  where + wanted + "Vel::Name");
        EXPECT_EQ(raised([&] { object.memberIs(attr.name(), std::span<GenericIf const>()); }),
                  where + "is missing");
        std::vector<GenericIf> const two(2, scene.sample(*attr.type()));
        EXPECT_EQ(raised([&] { object.memberIs(attr.name(), two); }),
                  "range: " + name + " takes 1 argument (" + std::string(attr.name()) + "), found 2");
    });
}

TEST(AddedObjects, ThatAreNullAreRefusedByTheTranslatorItself) {
    Reflected const reflected;
    GenericIf const & sm = reflected.translator;
    EXPECT_EQ(
        raised([&] { sm.memberIs("host", nullptr); }),
        "range: null _host parameter to mutator for NetworkTopologyAggregator::V2Sm::host not allowed\"");
    EXPECT_EQ(
        raised([&] { sm.memberIs("edge", nullptr); }),
        "range: null _edge parameter to mutator for NetworkTopologyAggregator::V2Sm::edge not allowed\"");
    EXPECT_EQ(inWords(sm.members("host")).size(), 1U);
    EXPECT_EQ(inWords(sm.members("edge")).size(), 1U);
}

}  // namespace
