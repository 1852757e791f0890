// What every type says to arguments, keys and values that it cannot take: a range exception that names the
// one that is wrong or missing, or, of one too many, those that are taken. Nothing has changed.
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "tests/reflection/support/EveryType.h"

namespace {

using testing::IsEmpty;
using TestSupport::fullName;
using TestSupport::inWords;
using TestSupport::raised;
using TestSupport::Reflected;
using TestSupport::Taken;
using Vel::GenericIf;
using Vel::VelArg;
using Vel::VelAttr;
using Vel::VelType;

// No attribute, no argument and no key is of this type.
GenericIf const wrong = 7U;

using Table = std::vector<VelArg>;
using Arguments = std::vector<GenericIf>;
using Act = std::function<void(std::span<GenericIf const>)>;

// What an operation takes, by the names that messages have for it.
Table takenBy(Vel::AttributeOperation operation, VelAttr const & attr) {
    VelArg const value{attr.name().data(), attr.type()};
    switch (operation) {
    case Vel::kSet: return {value};
    case Vel::kCall: return {attr.args().begin(), attr.args().end()};
    case Vel::kAdd: return attr.args().empty() ? Table{value} : Table{attr.args().begin(), attr.args().end()};
    case Vel::kLookUp:
    case Vel::kRemove:
    case Vel::kIterate: return {{attr.keyName().data(), attr.keyType()}};
    default: return {};
    }
}

std::string counted(std::string const & where, Table const & table, std::size_t found) {
    std::string names;
    for (VelArg const & arg : table) names += (names.empty() ? " (" : ", ") + std::string(arg.name);
    return "range: " + where + " takes " + std::to_string(table.size()) +
           (table.size() == 1 ? " argument" : " arguments") + names + (names.empty() ? "" : ")") +
           ", found " + std::to_string(found);
}

std::string expected(std::string const & where, VelArg const & arg, std::string const & problem) {
    return "range: argument \"" + std::string(arg.name) + "\" of " + where + ": " + problem;
}

void expectWrongTypesNamed(std::string const & where, Table const & table, Arguments const & right,
                           Act const & act) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        Arguments args = right;
        args[i] = wrong;
        EXPECT_EQ(raised([&] { act(args); }),
                  expected(where, table[i],
                           "expected " + std::string(table[i].type->name()) + ", found unsigned int"));
    }
}

void expectWrongCountsNamed(std::string const & where, Table const & table, Arguments const & right,
                            Act const & act) {
    for (std::size_t count = 0; count < table.size(); ++count) {
        EXPECT_EQ(raised([&] { act(std::span(right).first(count)); }),
                  expected(where, table[count], "is missing"));
    }
    for (std::size_t surplus = 1; surplus <= 2; ++surplus) {
        Arguments args = right;
        args.resize(right.size() + surplus);
        EXPECT_EQ(raised([&] { act(args); }), counted(where, table, args.size()));
    }
}

class WrongArguments : public TestSupport::EveryType {
protected:
    // What would be taken.
    Arguments right(Vel::AttributeOperation operation, GenericIf const & object, VelAttr const & attr) const {
        if (operation == Vel::kSet) return {object.attr(attr.name())};
        return scene.samples(takenBy(operation, attr));
    }

    void expectNamed(Vel::AttributeOperation operation) const {
        std::size_t met = 0;
        forEveryAttribute(objects(), [&](GenericIf const & object, VelAttr const & attr) {
            if (!attr.offers(operation)) return;
            Taken const taken = TestSupport::followed(object);
            Table const table = takenBy(operation, attr);
            Arguments const good = right(operation, object, attr);
            Act const act = [&](std::span<GenericIf const> args) {
                object.operate({operation, &attr}, args);
            };
            expectWrongTypesNamed(fullName(attr), table, good, act);
            expectWrongCountsNamed(fullName(attr), table, good, act);
            EXPECT_THAT(taken(), IsEmpty());
            ++met;
        });
        EXPECT_GT(met, 10U);
    }
};

TEST_F(WrongArguments, OfWritesAreNamed) { expectNamed(Vel::kSet); }
TEST_F(WrongArguments, OfCallsAreNamed) { expectNamed(Vel::kCall); }
TEST_F(WrongArguments, OfLookupsAreNamed) { expectNamed(Vel::kLookUp); }
TEST_F(WrongArguments, OfAdditionsAreNamed) { expectNamed(Vel::kAdd); }
TEST_F(WrongArguments, OfRemovalsAreNamed) { expectNamed(Vel::kRemove); }

TEST_F(WrongArguments, OfWalksAreNamed) {
    forEveryAttribute(objects(), [&](GenericIf const & object, VelAttr const & attr) {
        if (!attr.offers(Vel::kIterate)) return;
        Table const table = takenBy(Vel::kIterate, attr);
        expectWrongTypesNamed(fullName(attr), table, scene.samples(table),
                              [&](auto const & args) { object.members(attr.name(), args.front()); });
    });
}

TEST_F(WrongArguments, OfReadsAreCounted) {
    forEveryAttribute(objects(), [&](GenericIf const & object, VelAttr const & attr) {
        if (!attr.offers(Vel::kRead)) return;
        expectWrongCountsNamed(fullName(attr), {}, {}, [&](auto const & args) {
            object.operate({Vel::kRead, &attr}, args);
        });
    });
}

// The entry points themselves refuse them, too.
TEST_F(WrongArguments, OfConstructorsAreNamed) {
    std::set<std::string_view> met;
    for (VelType const * const type : Vel::typeNodes()) {
        if (!type->isConstructible()) continue;
        SCOPED_TRACE(type->name());
        std::string const where = "the constructor of " + std::string(type->name());
        Table const table(type->ctorArgs().begin(), type->ctorArgs().end());
        for (Act const & act : {Act([&](auto const & args) { Vel::construct(*type, args); }),
                                Act(type->record().genericIfFromCtorArgs)}) {
            expectWrongTypesNamed(where, table, scene.samples(table), act);
            expectWrongCountsNamed(where, table, scene.samples(table), act);
        }
        met.insert(type->name());
    }
    EXPECT_EQ(met, (std::set<std::string_view>{
                       "NetworkTopology::DirectedEdgeV2", "NetworkTopology::HostV2",
                       "NetworkTopology::MlagV2", "NetworkTopology::PortGroupV2", "NetworkTopology::PortV2",
                       "NetworkTopology::StatusV2", "NetworkTopologyAggregator::PortBaseFinder",
                       "NetworkTopologyAggregator::V2Sm", "NetworkTopologyV3::Status"}));
}

// A collection that takes objects tells of one by its own name; others make their members of the key.
TEST_F(WrongArguments, ThatAreObjectsToAddAreNamed) {
    std::size_t takers = 0;
    forEveryAttribute(objects(), [&](GenericIf const & object, VelAttr const & attr) {
        if (attr.kind() != VelAttr::Kind::collection) return;
        bool const isTaker = !attr.owner()->name().starts_with("NetworkTopologyV3::");
        takers += isTaker;
        Table const table = takenBy(Vel::kAdd, attr);
        if (!isTaker && table.size() > 1) return;  // One argument is too few, whatever it is.
        VelArg const named = isTaker ? VelArg{attr.name().data(), attr.type()} : table.front();
        Taken const taken = TestSupport::followed(object);
        EXPECT_EQ(raised([&] { object.memberIs(attr.name(), scene.translator); }),
                  expected(fullName(attr), named,
                           "expected " + std::string(named.type->name()) +
                               ", found NetworkTopologyAggregator::V2Sm"));
        EXPECT_THAT(taken(), IsEmpty());
    });
    EXPECT_EQ(takers, 7U);
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
