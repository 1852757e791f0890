#include "platform/Vel/GenericIf.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/Vel/Rack.h"

namespace VelTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vel::GenericIf;
using Vel::Name;
using Vel::OpNotSupportedException;
using Vel::Ptr;
using Vel::RangeException;
using Vel::String;

// What `act` raises, as its class and its text.
std::string raised(std::function<void()> const & act) {
    try {
        act();
    } catch (RangeException const & error) {
        return std::string("range: ") + error.what();
    } catch (OpNotSupportedException const & error) {
        return std::string("not supported: ") + error.what();
    }
    return "nothing";
}

class GenericIfTest : public testing::Test {
protected:
    std::vector<std::string> names(GenericIf::Members const & members) {
        std::vector<std::string> found;
        for (auto const & entry : members) found.emplace_back(entry.key().as<Name>().view());
        return found;
    }

    Ptr<Rack> rack = new Rack(Name("rack"));
    GenericIf generic = GenericIf::of(rack);
};

TEST_F(GenericIfTest, UnwrapsEachValueAsItsOwnTypeAlone) {
    EXPECT_TRUE(GenericIf(true).as<bool>());
    EXPECT_EQ(GenericIf(7U).as<unsigned>(), 7U);
    EXPECT_EQ(GenericIf(Name("n")).as<Name>(), "n");
    EXPECT_EQ(GenericIf(String("s")).as<String>(), "s");
    EXPECT_EQ(GenericIf::wrap(Side::back).as<Side>(), Side::back);
    EXPECT_EQ(generic.as<Ptr<Rack>>(), rack);

    EXPECT_EQ(raised([] { GenericIf(7U).as<bool>(); }), "range: expected bool, found unsigned int");
    EXPECT_EQ(raised([] { GenericIf(Name("n")).as<String>(); }),
              "range: expected Vel::String, found Vel::Name");
    EXPECT_EQ(raised([] { GenericIf(2U).as<Side>(); }), "range: expected VelTest::Side, found unsigned int");
    EXPECT_EQ(raised([&] { generic.as<Name>(); }), "range: expected Vel::Name, found VelTest::Rack");
    EXPECT_EQ(raised([] { GenericIf(true).as<Ptr<Rack>>(); }), "range: expected VelTest::Rack, found bool");
}

TEST_F(GenericIfTest, UnwrapsNullAsAnyReferenceAndAsNoValue) {
    EXPECT_TRUE(GenericIf().isNull());
    EXPECT_TRUE(GenericIf::of(Ptr<Rack>()).isNull());
    EXPECT_EQ(GenericIf(nullptr).as<Ptr<Rack>>(), nullptr);
    EXPECT_EQ(raised([] { GenericIf().as<bool>(); }), "range: expected bool, found null");
    EXPECT_EQ(raised([] { GenericIf().as<Side>(); }), "range: expected VelTest::Side, found null");
}

TEST_F(GenericIfTest, IsEqualBySameObjectOrSameValueOfOneType) {
    EXPECT_EQ(GenericIf(), GenericIf(nullptr));
    EXPECT_EQ(generic, GenericIf(Ptr<Rack const>(rack)));
    EXPECT_FALSE(generic == GenericIf::of(Ptr<Rack>(new Rack(rack->name()))));
    EXPECT_EQ(GenericIf::wrap(Side::back), Vel::enumeratorFromNumber(_velType_Side, 2));
    EXPECT_FALSE(GenericIf::wrap(Side::back) == GenericIf(2U));
    EXPECT_FALSE(GenericIf(Name("n")) == GenericIf(String("n")));
}

TEST_F(GenericIfTest, KeepsItsObject) {
    rack = nullptr;
    EXPECT_EQ(generic.attr("name").as<Name>(), "rack");
    generic = nullptr;
    EXPECT_EQ(Rack::velAllocTrackTypeInfo_->live(), 0U);
}

TEST_F(GenericIfTest, ReadsAndWritesAttributes) {
    generic.attrIs("height", 42U);
    generic.attrIs("side", GenericIf::wrap(Side::front));
    generic.attrIs("beside", generic);
    EXPECT_EQ(rack->height(), 42U);
    EXPECT_EQ(generic.attr("height").as<unsigned>(), 42U);
    EXPECT_EQ(generic.attr("side").strRep(), "front");
    EXPECT_EQ(generic.attr("beside"), generic);
    generic.attrIs("beside", nullptr);
    EXPECT_TRUE(generic.attr("beside").isNull());
}

TEST_F(GenericIfTest, CallsFunctions) {
    rack->heightIs(3);
    EXPECT_EQ(generic.call("heightWith", {4U, true}).as<unsigned>(), 14U);
    EXPECT_TRUE(generic.call("reset", {}).isNull());
    EXPECT_EQ(rack->height(), 0U);
}

TEST_F(GenericIfTest, RefusesWhatAnAttributeDoesNotOffer) {
    EXPECT_EQ(raised([&] { generic.attr("colour"); }),
              "not supported: VelTest::Rack has no attribute \"colour\"");
    EXPECT_EQ(raised([&] { generic.attrIs("name", Name("other")); }),
              "not supported: cannot set VelTest::Rack::name");
    EXPECT_EQ(raised([&] { generic.attr("reset"); }), "not supported: cannot read VelTest::Rack::reset");
    EXPECT_EQ(raised([&] { generic.call("height", {}); }),
              "not supported: cannot call VelTest::Rack::height");
    EXPECT_EQ(raised([&] { generic.member("height", Name("a")); }),
              "not supported: cannot look up VelTest::Rack::height");
    EXPECT_EQ(raised([&] { generic.memberDel("height", Name("a")); }),
              "not supported: cannot remove VelTest::Rack::height");
    EXPECT_EQ(raised([&] { generic.members("height"); }),
              "not supported: cannot iterate VelTest::Rack::height");
    EXPECT_EQ(raised([&] { generic.members("height", Name("a")); }),
              "not supported: cannot iterate VelTest::Rack::height");
}

TEST_F(GenericIfTest, RefusesWhatIsNotOneOperation) {
    GenericIf const value = 7U;
    for (char const * const name : {"name", "height", "reset", "drawer"}) {
        Vel::VelAttr const & attr = *Rack::_velType.attribute(name);
        for (auto const operations : {0U, Vel::kRead | Vel::kSet, Vel::kLookUp | Vel::kRemove, 128U, ~0U}) {
            auto const operation = static_cast<Vel::AttributeOperation>(operations);
            EXPECT_EQ(raised([&] {
                          generic.operate({operation, &attr}, {&value, 1});
                      }),
                      "not supported: cannot operate on VelTest::Rack::" + std::string(name));
        }
    }
    EXPECT_EQ(rack->height(), 0U);
}

TEST_F(GenericIfTest, RefusesOperationsOnWhatIsNoObject) {
    EXPECT_EQ(raised([] { GenericIf().attr("name"); }), "range: expected an object to read, found null");
    EXPECT_EQ(raised([] { GenericIf(7U).call("reset", {}); }),
              "range: expected an object to call, found unsigned int");
    EXPECT_EQ(raised([] { GenericIf().members("drawer"); }),
              "range: expected an object to iterate, found null");
}

TEST_F(GenericIfTest, RefusesWrongArgumentsAndChangesNothing) {
    EXPECT_EQ(raised([&] { generic.attrIs("height", true); }),
              "range: argument \"height\" of VelTest::Rack::height: expected unsigned int, found bool");
    EXPECT_EQ(raised([&] { generic.attrIs("side", 1U); }),
              "range: argument \"side\" of VelTest::Rack::side: expected VelTest::Side, found unsigned int");
    EXPECT_EQ(raised([&] { generic.call("heightWith", {4U}); }),
              "range: argument \"doubled\" of VelTest::Rack::heightWith: is missing");
    EXPECT_EQ(raised([&] {
                  generic.call("heightWith", {true, 4U});
              }),
              "range: argument \"more\" of VelTest::Rack::heightWith: expected unsigned int, found bool");
    EXPECT_EQ(raised([&] { generic.call("reset", {4U}); }),
              "range: VelTest::Rack::reset takes 0 arguments, found 1");
    EXPECT_EQ(raised([&] { generic.member("drawer", 4U); }),
              "range: argument \"name\" of VelTest::Rack::drawer: expected Vel::Name, found unsigned int");
    EXPECT_EQ(raised([&] { generic.memberIs("load", {Name("a")}); }),
              "range: argument \"load\" of VelTest::Rack::load: is missing");
    EXPECT_EQ(rack->height(), 0U);
    EXPECT_EQ(rack->load().size(), 0U);
}

TEST_F(GenericIfTest, RefusesToSetNothingAndTwoThings) {
    Vel::VelAttr const & height = *Rack::_velType.attribute("height");
    std::vector<GenericIf> const two{1U, 2U};
    EXPECT_EQ(raised([&] {
                  generic.operate({Vel::kSet, &height}, {});
              }),
              "range: argument \"height\" of VelTest::Rack::height: is missing");
    EXPECT_EQ(raised([&] {
                  generic.operate({Vel::kSet, &height}, two);
              }),
              "range: VelTest::Rack::height takes 1 argument (height), found 2");
    EXPECT_EQ(rack->height(), 0U);
}

TEST_F(GenericIfTest, PassesOnWhatAFollowerRaises) {
    rack->onHeight = [] { Vel::throwRangeException("a follower's own trouble"); };
    EXPECT_EQ(raised([&] { generic.attrIs("height", 42U); }), "range: a follower's own trouble");
    EXPECT_EQ(rack->height(), 42U);
    EXPECT_EQ(raised([&] { generic.call("reset", {}); }), "range: a follower's own trouble");
}

TEST_F(GenericIfTest, MayBeGivenAnotherObjectByAFollower) {
    rack->onHeight = [&] { generic = nullptr; };
    rack = nullptr;
    generic.attrIs("height", 42U);
    EXPECT_TRUE(generic.isNull());
    EXPECT_EQ(Rack::velAllocTrackTypeInfo_->live(), 0U);
}

TEST_F(GenericIfTest, OfAConstantObjectReadsAlone) {
    rack->heightIs(3);
    rack->besideIs(new Rack(Name("beside")));
    rack->drawerIs(Name("top"));
    rack->loadIs(Name("a"), 1);
    GenericIf const constant = GenericIf::of(Ptr<Rack const>(rack));
    EXPECT_TRUE(constant.isConst());
    EXPECT_EQ(constant.attr("height").as<unsigned>(), 3U);
    EXPECT_EQ(constant.call("heightWith", {4U, false}).as<unsigned>(), 7U);
    EXPECT_EQ(constant.as<Ptr<Rack const>>(), rack);
    EXPECT_EQ(raised([&] { constant.as<Ptr<Rack>>(); }),
              "range: expected VelTest::Rack, found VelTest::Rack, which is const here");
    EXPECT_EQ(raised([&] { constant.attrIs("height", 4U); }),
              "not supported: cannot set VelTest::Rack::height");
    EXPECT_EQ(raised([&] { constant.call("reset", {}); }), "not supported: cannot call VelTest::Rack::reset");
    EXPECT_EQ(raised([&] { constant.memberIs("drawer", {Name("a")}); }),
              "not supported: cannot add VelTest::Rack::drawer");
    EXPECT_EQ(raised([&] { constant.memberDel("load", Name("a")); }),
              "not supported: cannot remove VelTest::Rack::load");
    EXPECT_TRUE(constant.attr("beside").isConst());
    EXPECT_TRUE(constant.member("drawer", Name("top")).isConst());
    for (auto const & entry : constant.members("drawer")) EXPECT_TRUE(entry.object().isConst());
    EXPECT_FALSE(generic.member("drawer", Name("top")).isConst());
}

TEST_F(GenericIfTest, AddsFindsAndRemovesMembers) {
    GenericIf const made = generic.memberIs("drawer", {Name("top")});
    Ptr<Rack> const given = new Rack(Name("bottom"));
    generic.memberIs("drawer", GenericIf::of(given));
    EXPECT_EQ(generic.member("drawer", Name("top")), made);
    EXPECT_EQ(generic.member("drawer", Name("bottom")), GenericIf::of(given));
    EXPECT_TRUE(generic.member("drawer", Name("middle")).isNull());
    EXPECT_EQ(generic.memberDel("drawer", Name("top")), made);
    EXPECT_TRUE(generic.memberDel("drawer", Name("top")).isNull());
    EXPECT_EQ(rack->drawer().size(), 1U);
    EXPECT_EQ(raised([&] { generic.memberIs("drawer", nullptr); }), "range: null drawer");

    generic.memberIs("load", {Name("a"), 7U});
    EXPECT_EQ(generic.member("load", Name("a")).as<unsigned>(), 7U);
    EXPECT_TRUE(generic.memberDel("load", Name("a")).isNull()) << "maps do not tell";
    EXPECT_TRUE(generic.member("load", Name("a")).isNull());
}

TEST_F(GenericIfTest, WalksMembers) {
    EXPECT_THAT(names(generic.members("drawer")), IsEmpty());
    std::vector<std::string> expected;
    for (char const * name : {"a", "b", "c", "d", "e"})
        rack->drawerIs(Name(name)), rack->loadIs(Name(name), 1);
    for (auto const & drawer : rack->drawer()) expected.emplace_back(drawer->name().view());
    EXPECT_EQ(names(generic.members("drawer")), expected);
    EXPECT_EQ(names(generic.members("load")).size(), 5U);
    for (auto const & entry : generic.members("load")) EXPECT_EQ(entry.object().as<unsigned>(), 1U);
    EXPECT_EQ(names(generic.members("drawer", Name(expected[2]))),
              std::vector<std::string>(expected.begin() + 2, expected.end()));
    EXPECT_THAT(names(generic.members("drawer", Name("absent"))), IsEmpty());
    EXPECT_THAT(names(generic.members("load", Name("absent"))), IsEmpty());
    EXPECT_EQ(raised([&] { generic.members("drawer", 4U); }),
              "range: argument \"name\" of VelTest::Rack::drawer: expected Vel::Name, found unsigned int");
}

TEST_F(GenericIfTest, WalksOnWhenTheMemberInHandLeaves) {
    for (char const * name : {"a", "b", "c", "d", "e"}) rack->drawerIs(Name(name));
    std::size_t met = 0;
    for (auto const & entry : generic.members("drawer")) {
        ++met;
        EXPECT_EQ(generic.memberDel("drawer", entry.key()), entry.object());
    }
    EXPECT_EQ(met, 5U);
    EXPECT_EQ(rack->drawer().size(), 0U);
}

TEST_F(GenericIfTest, KeepsTheObjectForAWalkAndStaysAtItsEnd) {
    rack->drawerIs(Name("top"));
    {
        GenericIf::Members const members = generic.members("drawer");
        generic = nullptr;
        rack = nullptr;
        EXPECT_EQ(Rack::velAllocTrackTypeInfo_->live(), 2U);
        auto i = members.begin();
        ASSERT_FALSE(i == members.end());
        EXPECT_EQ((*i).key().as<Name>(), "top");
        ++i;
        ++i;
        i++;
        EXPECT_TRUE(i == members.end());
        EXPECT_TRUE((*i).key().isNull());
        EXPECT_TRUE((*i).object().isNull());
        EXPECT_TRUE(members.begin() == members.end()) << "one walk, which has ended";
    }
    EXPECT_EQ(Rack::velAllocTrackTypeInfo_->live(), 0U);
}

TEST_F(GenericIfTest, KeepsTheObjectForTheFiveOperationsToo) {
    rack->drawerIs(Name("top"));
    rack->loadIs(Name("top"), 7);
    Vel::VelType::Record const & record = Rack::_velType.record();
    Vel::IteratorVTable const * tables[2] = {};
    void * const iterators[] = {
        record.genericIfIterator(rack.get(), Rack::_velType.attribute("drawer"), &tables[0]),
        record.genericIfIteratorKey(rack.get(), Rack::_velType.attribute("load"), Name("top"), &tables[1])};
    generic = nullptr;
    rack = nullptr;
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(tables[i]->iterNonnull(iterators[i]));
        EXPECT_EQ(tables[i]->iterKey(iterators[i]).as<Name>(), "top");
        tables[i]->iterInc(iterators[i]);
        EXPECT_FALSE(tables[i]->iterNonnull(iterators[i]));
        EXPECT_GT(Rack::velAllocTrackTypeInfo_->live(), 0U);
        tables[i]->iterDel(iterators[i]);
    }
    EXPECT_EQ(Rack::velAllocTrackTypeInfo_->live(), 0U);
}

TEST_F(GenericIfTest, IsConstructedByName) {
    GenericIf const made = Vel::construct("VelTest::Rack", {{"name", Name("new")}});
    EXPECT_EQ(made.as<Ptr<Rack>>()->name(), "new");
    EXPECT_FALSE(made.isConst());
    std::string const where = "of the constructor of VelTest::Rack: ";
    EXPECT_EQ(raised([] { Vel::construct("VelTest::Shelf", {}); }), "range: unknown type \"VelTest::Shelf\"");
    EXPECT_EQ(raised([] { Vel::construct("VelTest::Rack", {}); }),
              "range: argument \"name\" " + where + "is missing");
    EXPECT_EQ(raised([] {
                  Vel::construct("VelTest::Rack", {{"name", Name("a")}, {"name", Name("b")}});
              }),
              "range: argument \"name\" " + where + "is given twice");
    EXPECT_EQ(raised([] {
                  Vel::construct("VelTest::Rack", {{"height", 4U}});
              }),
              "range: the constructor of VelTest::Rack has no argument \"height\"");
    EXPECT_EQ(raised([] {
                  Vel::construct("VelTest::Rack", {{"name", 4U}});
              }),
              "range: argument \"name\" " + where + "expected Vel::Name, found unsigned int");
    std::vector<GenericIf> const two{Name("a"), Name("b")};
    auto const entry = Rack::_velType.record().genericIfFromCtorArgs;
    for (auto const & act : {std::function<void()>([&] { Vel::construct(Rack::_velType, two); }),
                             std::function<void()>([&] { entry(two); })}) {
        EXPECT_EQ(raised(act), "range: the constructor of VelTest::Rack takes 1 argument (name), found 2");
    }
}

TEST_F(GenericIfTest, IsNotConstructedOfATypeThatIsMadeOtherwise) {
    std::string const refused = "not supported: bool cannot be constructed by name";
    EXPECT_EQ(raised([] { Vel::construct("bool", {}); }), refused);
    EXPECT_EQ(raised([] { Vel::construct(Vel::Builtin<bool>::_velType, {}); }), refused);
    EXPECT_EQ(raised([] { Vel::construct("bool", {{"value", true}}); }), refused);
}

TEST_F(GenericIfTest, IsPrintedAndReadAsText) {
    EXPECT_EQ(GenericIf(true).strRep(), "true");
    EXPECT_EQ(GenericIf(4294967295U).strRep(), "4294967295");
    EXPECT_EQ(GenericIf(Name("n")).strRep(), "n");
    EXPECT_EQ(GenericIf(String()).strRep(), "");
    EXPECT_EQ(Vel::enumeratorFromNumber(_velType_Side, 9).strRep(), "9");
    EXPECT_EQ(raised([] { GenericIf().strRep(); }), "range: null has no text representation");
    EXPECT_EQ(raised([&] { generic.strRep(); }), "not supported: VelTest::Rack has no text representation");

    auto const read = [](char const * type, std::string_view text) {
        return Vel::typeNode(type)->fromStrRep(text);
    };
    EXPECT_FALSE(read("bool", "false").as<bool>());
    EXPECT_EQ(read("unsigned int", "4294967295").as<unsigned>(), 4294967295U);
    EXPECT_EQ(read("Vel::Name", std::string_view("\0\xff", 2)).as<Name>(), std::string_view("\0\xff", 2));
    EXPECT_EQ(read("Vel::String", "").as<String>(), "");
    EXPECT_EQ(_velType_Side.fromStrRep("back").as<Side>(), Side::back);
    EXPECT_EQ(raised([&] { read("bool", "TRUE"); }), "range: expected true or false, found \"TRUE\"");
    for (char const * text : {"", "-1", "+1", " 1", "4294967296", "99999999999", "0x1"}) {
        EXPECT_EQ(raised([&] { read("unsigned int", text); }),
                  std::string("range: expected a number from 0 to 4294967295, found \"") + text + '"');
    }
    EXPECT_EQ(raised([] { _velType_Side.fromStrRep("left"); }),
              "range: expected one of unknown, front, back; found \"left\"");
    EXPECT_EQ(raised([&] { read("void", ""); }), "not supported: void has no text representation");
    EXPECT_EQ(raised([&] { read("VelTest::Rack", ""); }),
              "not supported: VelTest::Rack has no text representation");
}

TEST_F(GenericIfTest, RefusesAnOperationInTheEntryPointItself) {
    Vel::GenericIf::AttributeOp const op{Vel::kCall, Rack::_velType.attribute("height")};
    std::span<GenericIf const> args;
    GenericIf result;
    bool done = false;
    auto const entry = Rack::_velType.record().genericIfAttributeOp;
    EXPECT_EQ(raised([&] { entry(rack.get(), false, op, &args, &result, &done); }),
              "not supported: cannot call VelTest::Rack::height");
    EXPECT_FALSE(done);
    Vel::IteratorVTable const * table = nullptr;
    EXPECT_EQ(raised([&] { Rack::_velType.record().genericIfIterator(rack.get(), op.attr, &table); }),
              "not supported: cannot iterate VelTest::Rack::height");
}

TEST_F(GenericIfTest, RaisesTheNotSupportedExceptionForAnOperation) {
    Vel::GenericIf::AttributeOp const op{Vel::kAdd, Rack::_velType.attribute("load")};
    EXPECT_EQ(raised([&] { Vel::GenericIfImpl::throwOpNotSupportedException(op); }),
              "not supported: cannot add VelTest::Rack::load");
}

}  // namespace
}  // namespace VelTest
