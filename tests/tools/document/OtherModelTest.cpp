// Documents of a model that has what the two topologies have not: numbers, maps of plain values, objects that
// hold objects of their own class, and a class that documents cannot show.

#include <map>
#include <span>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/VelAttrs.h"
#include "tests/tools/document/DocumentTesting.h"
#include "tools/document/Schema.h"
#include "tools/document/Shape.h"

namespace TopologyTools {
namespace {

class Box final : public Vel::Entity, public Vel::AllocTracked<Box> {
public:
    static Vel::VelType const _velType;

    explicit Box(Vel::Name name) : name_(std::move(name)) {}
    Vel::VelType const * fwkType() const override { return &_velType; }

    Vel::Name const & name() const { return name_; }
    Vel::Name const & collectionKey() const { return name_; }
    unsigned weight() const { return weight_; }
    void weightIs(unsigned weight) { weight_ = weight; }
    Vel::Ptr<Box> const & twin() const { return twin_; }
    void twinIs(Vel::Ptr<Box> const & twin) { twin_ = twin; }

    using Boxes = Vel::HashMap<Box, Vel::Name, Box>;
    Boxes::Range box() { return {box_, *this}; }
    Vel::Ptr<Box> box(Vel::Name const & name) { return box_[name]; }
    Vel::Ptr<Box> boxIs(Vel::Name const & name) {
        if (!box_[name]) box_.newMember(new Box(name));
        return box_[name];
    }
    Vel::Ptr<Box> boxDel(Vel::Name const & name) { return box_.deleteMember(name); }

    struct TallyTag;
    using Tally = Vel::HashMap2018<TallyTag, Vel::Name, unsigned>;
    Tally::Range tally() { return {tally_, *this}; }
    Tally::Node const * tally(Vel::Name const & name) { return tally_[name]; }
    void tallyIs(Vel::Name const & name, unsigned count) { tally_.valueIs(name, count); }
    void tallyDel(Vel::Name const & name) { tally_.valueDel(name); }

private:
    ~Box() override = default;

    Vel::Name const name_;
    unsigned weight_ = 0;
    Vel::Ptr<Box> twin_;
    Boxes box_{1};
    Tally tally_;
};

using Attrs = Vel::Attrs<Box>;

constexpr Vel::VelArg boxArgs[] = {{"name", &Vel::Name::_velType}};
constexpr Vel::VelArg tallyArgs[] = {{"name", &Vel::Name::_velType},
                                     {"count", Vel::VelTypeOf<unsigned>::record}};
// What makes a box that its record does not tell.
constexpr Vel::VelArg hiddenArgs[] = {{"name", &Vel::Name::_velType}, {"colour", &Vel::Name::_velType}};

constexpr Vel::VelAttr boxAttributes[] = {
    Attrs::readOnly<&Box::name>("name", 1),
    Attrs::value<&Box::weight, &Box::weightIs>("weight", 2),
    Attrs::value<&Box::twin, &Box::twinIs>("twin", 3),
    Attrs::collection<Box, Vel::Name, [](Box & o) { return o.box(); },
                      [](Box & o, Vel::Name const & key) { return o.box(key); }, nullptr, &Box::boxDel,
                      &Box::boxIs, Vel::Name>("box", 4, "name", boxArgs),
    Attrs::valueCollection<Vel::Name, unsigned, [](Box & o) { return o.tally(); },
                           [](Box & o, Vel::Name const & key) { return o.tally(key); }, &Box::tallyIs,
                           &Box::tallyDel>("tally", 5, "name", tallyArgs),
};

}  // namespace

constinit Vel::VelType const Box::_velType{{
    .name = "Other::Box",
    .attributes = boxAttributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .genericIfFromCtorArgs =
        [](std::span<Vel::GenericIf const>) { return Vel::GenericIf(Vel::Ptr<Box>(new Box("outermost"))); },
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

namespace {

Vel::TypeRegistration const registration(Box::_velType);

class OtherModel : public DocumentTest {};

constexpr std::string_view box = "Other::Box";

TEST_F(OtherModel, ReadsAsItWasWritten) {
    constexpr std::string_view text =
        R"({"weight":4294967295,"twin":"/box/a/box/b","box":{"a":{"twin":"/box/a/box/b","box":{"b":{"weight":1,)"
        R"("twin":"/box/c","tally":{"":0,"x":17}}}},"c":{}}})";
    EXPECT_EQ(rewritten(text, box), text);
    EXPECT_EQ(documentTree(readText(text, box)).dump(), text);
}

TEST_F(OtherModel, ANumberIsOneHoweverItIsSpelled) {
    EXPECT_EQ(rewritten(R"({"weight":1.7e1})", box), R"({"weight":17})");
    EXPECT_EQ(rewritten(R"({"weight":-0.0,"tally":{"z":0e7}})", box), R"({"tally":{"z":0}})");
}

TEST_F(OtherModel, ANumberThatDoesNotFitIsAnError) {
    for (std::string const bad : {"-1", "4294967296", "0.5", "1e300", "\"1\"", "true", "null"}) {
        EXPECT_EQ(readingError(R"({"weight":)" + bad + '}', box),
                  "t.json:1:11: /weight: expected a whole number from 0 to 4294967295; found " + bad);
        EXPECT_EQ(readingError(R"({"tally":{"x":)" + bad + "}}", box),
                  "t.json:1:15: /tally/x: expected a whole number from 0 to 4294967295; found " + bad);
    }
}

TEST_F(OtherModel, AReferenceToTheRootIsTheEmptyPointer) {
    auto const root = readText("{}", box).as<Vel::Ptr<Box>>();
    root->twinIs(root);
    EXPECT_EQ(written(Vel::GenericIf::of(root)), R"({"twin":""})");
    root->twinIs(nullptr);
}

TEST_F(OtherModel, ItsSchemaAllowsReferencesOfAnyDepth) {
    EXPECT_EQ(
        schemaOf(Box::_velType).dump(),
        R"({"$schema":"https://json-schema.org/draft/2020-12/schema","title":"Other::Box","type":"object",)"
        R"("properties":{"weight":{"type":"integer","minimum":0,"maximum":4294967295},"twin":{"type":)"
        R"(["string","null"],"pattern":"^(/([^/~]|~[01])*)*$"},"box":{"type":"object",)"
        R"("additionalProperties":{"$ref":"#/$defs/Box.box"}},"tally":{"type":"object",)"
        R"("additionalProperties":{"type":"integer","minimum":0,"maximum":4294967295}}},)"
        R"("additionalProperties":false,"$defs":{"Box.box":{"title":"Other::Box","type":"object",)"
        R"("properties":{"weight":{"type":"integer","minimum":0,"maximum":4294967295},"twin":{"type":)"
        R"(["string","null"],"pattern":"^(/([^/~]|~[01])*)*$"},"box":{"type":"object",)"
        R"("additionalProperties":{"$ref":"#/$defs/Box.box"}},"tally":{"type":"object",)"
        R"("additionalProperties":{"type":"integer","minimum":0,"maximum":4294967295}}},)"
        R"("additionalProperties":false}}})");
}

TEST_F(OtherModel, AClassThatHidesWhatMakesItHasNoDocument) {
    static constexpr Vel::VelAttr attributes[] = {
        Attrs::collection<Box, Vel::Name, [](Box & o) { return o.box(); },
                          [](Box & o, Vel::Name const & key) { return o.box(key); }, nullptr, &Box::boxDel,
                          [](Box & o, Vel::Name const & key, Vel::Name const &) { return o.boxIs(key); },
                          Vel::Name, Vel::Name>("box", 1, "name", hiddenArgs)};
    static constinit Vel::VelType const type{{.name = "Other::Hiding", .attributes = attributes}};
    try {
        DocumentShape const shape(type);
        FAIL() << "no error";
    } catch (std::logic_error const & error) {
        EXPECT_STREQ(error.what(), "Other::Box has no value \"colour\" with a default, but is made with one");
    }
}

}  // namespace
}  // namespace TopologyTools
