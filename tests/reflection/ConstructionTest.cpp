// Translators and finders made by name.
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "finder/PortBaseFinder.h"
#include "tests/reflection/support/Reflected.h"

namespace {

using NetworkTopologyAggregator::PortBaseFinder;
using NetworkTopologyAggregator::V2Sm;
using TestSupport::kFinder;
using TestSupport::kTranslator;
using TestSupport::Models;
using TestSupport::raised;
using Vel::construct;
using Vel::GenericIf;
using Vel::Name;

class Construction : public testing::Test {
protected:
    Construction() { TestSupport::fillWithOneOfEach(*models.v2); }

    Models const models;
};

TEST_F(Construction, OfATranslatorTranslatesAndFollows) {
    GenericIf const sm =
        construct(kTranslator, {{"v3", models.v3}, {"name", Name("by name")}, {"v2", models.v2}});
    EXPECT_FALSE(sm.isConst());
    auto const made = sm.as<V2Sm::Ptr>();
    EXPECT_EQ(made->name(), "by name");
    EXPECT_EQ(made->v2(), models.v2);
    EXPECT_EQ(made->v3(), models.v3);
    EXPECT_TRUE(made->hasNotificationActive());
    EXPECT_NE(models.v3->host("a"), nullptr);
    models.v2->hostIs("b");
    EXPECT_NE(models.v3->host("b"), nullptr);
}

TEST_F(Construction, OfAFinderFinds) {
    auto const hostV3 = models.v3->hostIs("a");
    auto const portV3 = hostV3->portIs("p");
    GenericIf const finder = construct(kFinder, {{"hostV2", models.v2->host("a")}, {"hostV3", hostV3}});
    EXPECT_TRUE(finder.as<PortBaseFinder::Ptr>()->hasNotificationActive());
    EXPECT_EQ(finder.call("find", {models.v2->host("a")->port("p")}), GenericIf(portV3));
}

TEST_F(Construction, TakesTheInputConst) {
    NetworkTopology::StatusV2::PtrConst const v2 = models.v2;
    NetworkTopology::HostV2::PtrConst const hostV2 = models.v2->host("a");
    EXPECT_NO_THROW(construct(kTranslator, {{"name", Name()}, {"v2", v2}, {"v3", models.v3}}));
    EXPECT_NO_THROW(construct(kFinder, {{"hostV2", hostV2}, {"hostV3", nullptr}}));
    NetworkTopologyV3::Status::PtrConst const v3 = models.v3;
    EXPECT_EQ(raised([&] {
                  construct(kTranslator, {{"name", Name()}, {"v2", v2}, {"v3", v3}});
              }),
              "range: argument \"v3\" of the constructor of NetworkTopologyAggregator::V2Sm: expected "
              "NetworkTopologyV3::Status, found NetworkTopologyV3::Status, which is const here");
}

TEST_F(Construction, TakesNullForEveryReference) {
    GenericIf const unbound = construct(kTranslator, {{"name", Name("n")}, {"v2", nullptr}, {"v3", nullptr}});
    EXPECT_TRUE(unbound.attr("v2").isNull());
    EXPECT_TRUE(unbound.attr("v3").isNull());
    EXPECT_TRUE(unbound.call("toHostV3", {models.v2->host("a")}).isNull());
    unbound.call("populateV3", {});
    GenericIf const blind = construct(kFinder, {{"hostV2", nullptr}, {"hostV3", nullptr}});
    EXPECT_TRUE(blind.attr("hostV2").isNull());
    EXPECT_TRUE(blind.call("find", {models.v2->host("a")->port("p")}).isNull());
    EXPECT_TRUE(blind.call("find", {GenericIf()}).isNull());
}

TEST_F(Construction, NamesWhatIsMissingWrongUnknownOrTooMany) {
    std::string const where = " of the constructor of NetworkTopologyAggregator::V2Sm: ";
    EXPECT_EQ(raised([&] {
                  construct(kTranslator, {{"name", Name("n")}, {"v2", models.v2}});
              }),
              "range: argument \"v3\"" + where + "is missing");
    EXPECT_EQ(raised([&] {
                  construct(kTranslator, {{"name", nullptr}, {"v2", nullptr}, {"v3", nullptr}});
              }),
              "range: argument \"name\"" + where + "expected Vel::Name, found null");
    EXPECT_EQ(raised([&] {
                  construct(kTranslator, {{"name", Name("n")}, {"v2", models.v3}, {"v3", models.v3}});
              }),
              "range: argument \"v2\"" + where +
                  "expected NetworkTopology::StatusV2, found NetworkTopologyV3::Status");
    EXPECT_EQ(raised([&] {
                  construct(kTranslator, {{"name", Name("n")}, {"v4", models.v2}, {"v3", models.v3}});
              }),
              "range: the constructor of NetworkTopologyAggregator::V2Sm has no argument \"v4\"");
    std::vector<GenericIf> const four(4);
    EXPECT_EQ(raised([&] { construct(V2Sm::_velType, four); }),
              "range: the constructor of NetworkTopologyAggregator::V2Sm takes 3 arguments (name, v2, v3), "
              "found 4");
    EXPECT_EQ(
        raised([&] { construct(PortBaseFinder::_velType, std::span(four).first(1)); }),
        "range: argument \"hostV3\" of the constructor of NetworkTopologyAggregator::PortBaseFinder: is "
        "missing");
    EXPECT_EQ(raised([&] {
                  construct(kFinder, {{"hostV2", models.v2}, {"hostV3", nullptr}});
              }),
              "range: argument \"hostV2\" of the constructor of NetworkTopologyAggregator::PortBaseFinder: "
              "expected NetworkTopology::HostV2, found NetworkTopology::StatusV2");
    EXPECT_TRUE(models.v3->host().empty());
}

// A follower of the output that throws is heard; that nothing of the translator is left is checked after
// every test.
class Thrower final : public NetworkTopologyV3::Status::NotifieeConst {
public:
    using NetworkTopologyV3::Status::NotifieeConst::onHost;
    void onHost(Name) override { throw std::runtime_error("a follower's own trouble"); }
};

TEST_F(Construction, PassesOnWhatAFollowerOfTheOutputThrows) {
    Vel::Ptr<Thrower> const thrower = new Thrower;
    thrower->notifierIs(models.v3);
    thrower->isRegisteredNotifieeIs(true);
    thrower->hasNotificationActiveIs(true);
    EXPECT_THROW(construct(kTranslator, {{"name", Name("n")}, {"v2", models.v2}, {"v3", models.v3}}),
                 std::runtime_error);
}

TEST_F(Construction, GoesOnlyThroughTheRecordThatIsRegistered) {
    EXPECT_EQ(raised([] { construct("NetworkTopologyAggregator::VelHost", {}); }),
              "range: unknown type \"NetworkTopologyAggregator::VelHost\"");
    EXPECT_EQ(raised([] { construct("V2Sm", {}); }), "range: unknown type \"V2Sm\"");
}

}  // namespace
