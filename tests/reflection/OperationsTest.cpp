// Every operation on every attribute of the two types: what it answers, or that it is not offered.
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "finder/PortBaseFinder.h"
#include "tests/reflection/support/Reflected.h"

namespace {

using NetworkTopologyAggregator::PortBaseFinder;
using NetworkTopologyAggregator::V2Sm;
using TestSupport::inWords;
using TestSupport::raised;
using TestSupport::Reflected;
using Vel::GenericIf;
using Vel::VelAttr;

constexpr char const * kNotOffered = "not supported";

// What each operation answers in a scene of its own; null for what is not offered.
struct Row {
    Vel::VelType const & type;
    char const * attribute;
    struct Answers {
        char const * read = kNotOffered;
        char const * set = kNotOffered;
        char const * call = kNotOffered;
        char const * lookUp = kNotOffered;
        char const * add = kNotOffered;
        char const * remove = kNotOffered;
        char const * iterate = kNotOffered;
        char const * iterateFromKey = kNotOffered;
    } answers;

    friend void PrintTo(Row const & row, std::ostream * out) {
        *out << row.type.name() << "::" << row.attribute;
    }
};

constexpr Row::Answers hosts{.lookUp = "HostV2 a",
                             .add = "null",
                             .remove = "HostV2 a",
                             .iterate = "a: HostV2 a",
                             .iterateFromKey = "a: HostV2 a"};
constexpr Row::Answers edges{.lookUp = "DirectedEdgeV2 from p",
                             .add = "null",
                             .remove = "DirectedEdgeV2 from p",
                             .iterate = "PortV2 p: DirectedEdgeV2 from p",
                             .iterateFromKey = "PortV2 p: DirectedEdgeV2 from p"};

Row const rows[] = {
    {V2Sm::_velType, "name", {.read = "sm"}},
    {V2Sm::_velType, "v2", {.read = "StatusV2"}},
    {V2Sm::_velType, "v3", {.read = "Status"}},
    {V2Sm::_velType, "toHostV3", {.call = "Host a"}},
    {V2Sm::_velType, "toPortBaseV3", {.call = "Port p"}},
    {V2Sm::_velType, "toPortV3", {.call = "Port p"}},
    {V2Sm::_velType, "toPortGroupV3", {.call = "PortGroup g"}},
    {V2Sm::_velType, "toMlagV3", {.call = "MlagPort m"}},
    {V2Sm::_velType, "toPortTypeV3", {.call = "portGroup"}},
    {V2Sm::_velType, "host", hosts},
    {V2Sm::_velType, "edge", edges},
    {V2Sm::_velType, "populateV3", {.call = "null"}},
    {PortBaseFinder::_velType, "visitPort", {.call = "null"}},
    {PortBaseFinder::_velType, "visitPortGroup", {.call = "null"}},
    {PortBaseFinder::_velType, "visitMlag", {.call = "null"}},
    {PortBaseFinder::_velType, "hostV2", {.read = "HostV2 a"}},
    {PortBaseFinder::_velType, "hostV3", {.read = "Host a"}},
    {PortBaseFinder::_velType, "result", {.read = "null"}},
    {PortBaseFinder::_velType, "find", {.call = "Port p"}},
};

std::string joined(std::vector<std::string> const & items) {
    std::string text;
    for (std::string const & item : items) text += (text.empty() ? "" : ", ") + item;
    return text;
}

// The answer of an operation in a scene of its own.
template <class Operation>
std::string answer(Row const & row, Operation const & operation) {
    Reflected const reflected;
    VelAttr const & attr = *row.type.attribute(row.attribute);
    try {
        return operation(reflected.object(row.type.name()), attr, reflected);
    } catch (Vel::OpNotSupportedException const & refused) {
        EXPECT_THAT(refused.what(), testing::EndsWith(std::string(row.type.name()) + "::" + row.attribute));
        return kNotOffered;
    } catch (Vel::RangeException const & error) {
        return std::string("range: ") + error.what();
    }
}

class Operations : public testing::TestWithParam<Row> {};

TEST_P(Operations, AnswerOrAreNotOffered) {
    Row const & row = GetParam();
    auto const & expected = row.answers;
    using Object = GenericIf const &;
    using Attr = VelAttr const &;
    using Scene = Reflected const &;
    EXPECT_EQ(answer(row, [](Object o, Attr a, Scene) { return inWords(o.attr(a.name())); }), expected.read);
    EXPECT_EQ(answer(row,
                     [](Object o, Attr a, Scene s) {
                         o.attrIs(a.name(), a.type() == &Vel::_velType_void ? GenericIf() : s.key(a));
                         return "null";
                     }),
              expected.set);
    EXPECT_EQ(
        answer(row, [](Object o, Attr a, Scene s) { return inWords(o.call(a.name(), s.samples(a.args()))); }),
        expected.call);
    EXPECT_EQ(answer(row, [](Object o, Attr a, Scene s) { return inWords(o.member(a.name(), s.key(a))); }),
              expected.lookUp);
    EXPECT_EQ(answer(row,
                     [](Object o, Attr a, Scene s) {
                         GenericIf const member =
                             a.offers(Vel::kAdd) ? s.sample(*a.type()) : GenericIf(s.host());
                         return inWords(o.memberIs(a.name(), {member}));
                     }),
              expected.add);
    EXPECT_EQ(answer(row, [](Object o, Attr a, Scene s) { return inWords(o.memberDel(a.name(), s.key(a))); }),
              expected.remove);
    EXPECT_EQ(answer(row, [](Object o, Attr a, Scene) { return joined(inWords(o.members(a.name()))); }),
              expected.iterate);
    EXPECT_EQ(
        answer(row, [](Object o, Attr a, Scene s) { return joined(inWords(o.members(a.name(), s.key(a)))); }),
        expected.iterateFromKey);
}

INSTANTIATE_TEST_SUITE_P(, Operations, testing::ValuesIn(rows), [](auto const & info) {
    return std::string(&info.param.type == &V2Sm::_velType ? "V2Sm_" : "PortBaseFinder_") +
           info.param.attribute;
});

TEST(OperationsTable, HasARowForEveryAttribute) {
    std::vector<VelAttr const *> listed;
    for (Row const & row : rows) listed.push_back(row.type.attribute(row.attribute));
    std::vector<VelAttr const *> all;
    for (Vel::VelType const * const type : {&V2Sm::_velType, &PortBaseFinder::_velType}) {
        for (VelAttr const & attr : type->attributes()) all.push_back(&attr);
    }
    EXPECT_EQ(listed, all);
}

// Called as the framework calls it: the entry point itself refuses.
TEST(AttributeOpEntryPoint, RaisesNotSupportedItselfAndIsNotDone) {
    Reflected const reflected;
    for (GenericIf const & object : {reflected.translator, reflected.finder}) {
        auto const counted = object.as<Vel::Ptr<Vel::PtrInterface>>();
        for (VelAttr const & attr : object.type()->attributes()) {
            std::span<GenericIf const> args;
            GenericIf result;
            bool done = false;
            // Walks have entry points of their own, so that this one refuses them, too.
            for (auto const operation : {Vel::kSet, Vel::kIterate}) {
                GenericIf::AttributeOp const op{operation, &attr};
                EXPECT_THROW(object.type()->record().genericIfAttributeOp(counted.get(), false, op, &args,
                                                                          &result, &done),
                             Vel::OpNotSupportedException)
                    << attr.name();
                EXPECT_FALSE(done);
            }
        }
    }
}

// What follows from the operations, in one scene.

TEST(TranslatorByName, AddsTheReactorOfAHostThatItLost) {
    Reflected const reflected;
    GenericIf const & sm = reflected.translator;
    GenericIf const removed = sm.memberDel("host", Vel::Name("a"));
    EXPECT_EQ(removed, GenericIf(reflected.host()));
    EXPECT_TRUE(sm.member("host", Vel::Name("a")).isNull());
    EXPECT_TRUE(sm.memberDel("host", Vel::Name("a")).isNull());
    EXPECT_EQ(reflected.models.v3->host("a"), nullptr);
    sm.memberIs("host", removed);
    EXPECT_EQ(sm.member("host", Vel::Name("a")), removed);
    EXPECT_NE(reflected.models.v3->host("a"), nullptr);
}

TEST(TranslatorByName, AddsTheReactorOfAnEdgeThatItLost) {
    Reflected const reflected;
    GenericIf const & sm = reflected.translator;
    auto const fromPort = reflected.host()->port("p");
    auto const key = reflected.models.v3->host("a")->port("p")->portKey();
    GenericIf const removed = sm.memberDel("edge", fromPort);
    EXPECT_EQ(removed, GenericIf(reflected.models.v2->edge(fromPort)));
    EXPECT_TRUE(sm.memberDel("edge", fromPort).isNull());
    EXPECT_EQ(reflected.models.v3->edge(key), nullptr);
    sm.memberIs("edge", removed);
    EXPECT_EQ(sm.member("edge", fromPort), removed);
    EXPECT_NE(reflected.models.v3->edge(key), nullptr);
}

TEST(TranslatorByName, FindsEdgesByTheIdentityOfTheirFromPort) {
    Reflected const reflected;
    GenericIf const stranger = NetworkTopology::PortV2::PortV2Is("p");
    EXPECT_TRUE(reflected.translator.member("edge", stranger).isNull());
    EXPECT_TRUE(reflected.translator.member("edge", nullptr).isNull());
    EXPECT_TRUE(reflected.translator.memberDel("edge", stranger).isNull());
    EXPECT_FALSE(reflected.translator.member("edge", reflected.host()->port("p")).isNull());
}

TEST(TranslatorByName, AnswersWithWhatAReactorFollowsNotWithTheReactor) {
    Reflected const reflected;
    auto const other = NetworkTopology::HostV2::HostV2Is("a");
    reflected.translator.memberIs("host", other);
    EXPECT_EQ(reflected.translator.member("host", Vel::Name("a")), GenericIf(other));
    reflected.translator.as<V2Sm::Ptr>()->host("a")->notifierIs(nullptr);
    EXPECT_TRUE(reflected.translator.member("host", Vel::Name("a")).isNull());
}

TEST(TranslatorByName, TakesAndGivesItsInputConst) {
    Reflected const reflected;
    GenericIf const & sm = reflected.translator;
    NetworkTopology::HostV2::PtrConst const host = reflected.host();
    EXPECT_EQ(inWords(sm.call("toHostV3", {GenericIf(host)})), "Host a");
    sm.memberIs("host", GenericIf(host));
    EXPECT_TRUE(sm.member("host", Vel::Name("a")).isConst());
    EXPECT_TRUE(sm.memberDel("host", Vel::Name("a")).isConst());
    EXPECT_TRUE(sm.attr("v2").isConst());
    EXPECT_FALSE(sm.attr("v3").isConst());
}

TEST(TranslatorByName, ReadsTheStatusesThatAreBoundNow) {
    Reflected const reflected;
    auto const sm = reflected.translator.as<V2Sm::Ptr>();
    sm->v2Del();
    sm->v3Del();
    EXPECT_TRUE(reflected.translator.attr("v2").isNull());
    EXPECT_TRUE(reflected.translator.attr("v3").isNull());
    TestSupport::Models const others;
    sm->v2Is(others.v2);
    sm->v3Is(others.v3);
    EXPECT_EQ(reflected.translator.attr("v2"), GenericIf(others.v2));
    EXPECT_EQ(reflected.translator.attr("v3"), GenericIf(others.v3));
}

TEST(TranslatorByName, PopulatesWhatAnotherHandTookFromTheOutput) {
    Reflected const reflected;
    reflected.models.v3->hostDelAll();
    EXPECT_TRUE(reflected.translator.call("populateV3", {}).isNull());
    ASSERT_NE(reflected.models.v3->host("a"), nullptr);
    EXPECT_EQ(reflected.models.v3->host("a")->hostname(), "a.example");
}

TEST(TranslatorByName, LooksUpNothingForNullAndForWhatHasNoCounterpart) {
    Reflected const reflected;
    for (char const * const lookup : {"toHostV3", "toPortBaseV3", "toPortV3", "toPortGroupV3", "toMlagV3"}) {
        EXPECT_TRUE(reflected.translator.call(lookup, {GenericIf()}).isNull()) << lookup;
    }
    GenericIf const stranger = NetworkTopology::PortV2::PortV2Is("p");
    EXPECT_TRUE(reflected.translator.call("toPortV3", {stranger}).isNull());
    EXPECT_TRUE(reflected.translator.call("toPortBaseV3", {stranger}).isNull());
}

TEST(TranslatorByName, MapsEveryPortTypeAsTheTranslatorDoes) {
    Reflected const reflected;
    auto const sm = reflected.translator.as<V2Sm::Ptr>();
    for (std::uint32_t value : {0U, 1U, 2U, 3U, 4U, 0xffffffffU}) {
        auto const type = static_cast<NetworkTopology::PortTypeV2>(value);
        EXPECT_EQ(reflected.translator.call("toPortTypeV3", {GenericIf::wrap(type)}),
                  GenericIf::wrap(sm->toPortTypeV3(type)));
    }
}

TEST(FinderByName, ShowsWhatItsLastVisitFound) {
    Reflected const reflected;
    GenericIf const & finder = reflected.finder;
    finder.call("visitPortGroup", {reflected.host()->portGroup("g")});
    EXPECT_EQ(inWords(finder.attr("result")), "PortGroup g");
    EXPECT_EQ(inWords(finder.call("find", {reflected.host()->mlag("m")})), "MlagPort m");
    EXPECT_EQ(inWords(finder.attr("result")), "MlagPort m");
    EXPECT_TRUE(finder.call("find", {NetworkTopology::PortV2::PortV2Is("none")}).isNull());
    EXPECT_TRUE(finder.attr("result").isNull());
}

TEST(FinderByName, IsVisitedThroughTheAttributesOfItsBaseToo) {
    Reflected const reflected;
    VelAttr const & visit = *NetworkTopology::PortBaseVisitor::_velType.attribute("visitPort");
    GenericIf const port = reflected.host()->port("p");
    reflected.finder.operate({Vel::kCall, &visit}, {&port, 1});
    EXPECT_EQ(inWords(reflected.finder.attr("result")), "Port p");
}

TEST(ByName, AConstObjectIsReadAndWalkedButNotCalledOrChanged) {
    Reflected const reflected;
    GenericIf const sm = V2Sm::PtrConst(reflected.translator.as<V2Sm::Ptr>());
    EXPECT_EQ(inWords(sm.attr("name")), "sm");
    EXPECT_TRUE(sm.attr("v3").isConst());
    EXPECT_EQ(inWords(sm.member("host", Vel::Name("a"))), "HostV2 a");
    EXPECT_EQ(inWords(sm.members("host")).size(), 1U);
    EXPECT_EQ(raised([&] { sm.call("populateV3", {}); }),
              "not supported: cannot call NetworkTopologyAggregator::V2Sm::populateV3");
    EXPECT_EQ(raised([&] { sm.memberIs("host", reflected.host()); }),
              "not supported: cannot add NetworkTopologyAggregator::V2Sm::host");
    EXPECT_EQ(raised([&] { sm.memberDel("host", Vel::Name("a")); }),
              "not supported: cannot remove NetworkTopologyAggregator::V2Sm::host");
}

TEST(ByName, WhatTheTypeDoesNotHaveIsNotSupported) {
    Reflected const reflected;
    EXPECT_EQ(raised([&] { reflected.translator.attr("hosts"); }),
              "not supported: NetworkTopologyAggregator::V2Sm has no attribute \"hosts\"");
    EXPECT_EQ(raised([&] { reflected.finder.call("visit", {}); }),
              "not supported: NetworkTopologyAggregator::PortBaseFinder has no attribute \"visit\"");
}

}  // namespace
