#include "platform/Vel/VelType.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Vel/GenericIf.h"
#include "tests/Vel/Rack.h"

namespace VelTest {
namespace {

using Vel::RangeException;
using Vel::typeNode;
using Vel::VelType;

// Registered and looked up while the program is loaded, in whatever order its files are initialised.
constinit VelType const early{{.name = "VelTest::Early"}};
VelType const * const rackAtLoad = typeNode("VelTest::Rack");
VelType const * const boolAtLoad = typeNode("bool");
Vel::TypeRegistration const earlyRegistration(early);

constinit VelType const first{{.name = "VelTest::First"}};
constinit VelType const second{{.name = "VelTest::Second"}};

bool isRegistered(VelType const & type) {
    std::vector<VelType const *> const all = Vel::typeNodes();
    return std::count(all.begin(), all.end(), &type) == 1;
}

TEST(VelType, OfEachBuiltInTypeIsFoundByName) {
    EXPECT_EQ(typeNode("bool"), &Vel::Builtin<bool>::_velType);
    EXPECT_EQ(typeNode("unsigned int"), &Vel::Builtin<unsigned int>::_velType);
    EXPECT_EQ(typeNode("void"), &Vel::_velType_void);
    EXPECT_EQ(typeNode("Vel::Name"), &Vel::Name::_velType);
    EXPECT_EQ(typeNode("Vel::String"), &Vel::String::_velType);
    EXPECT_EQ(typeNode("Vel::PtrInterface"), &Vel::PtrInterface::_velType);
    EXPECT_EQ(typeNode("boo"), nullptr);
    EXPECT_EQ(typeNode(""), nullptr);
}

TEST(VelType, IsRegisteredAndFoundWhileTheProgramIsLoaded) {
    EXPECT_TRUE(rackAtLoad == nullptr || rackAtLoad == &Rack::_velType);
    EXPECT_EQ(boolAtLoad, &Vel::Builtin<bool>::_velType);
    EXPECT_EQ(typeNode("VelTest::Early"), &early);
    EXPECT_EQ(typeNode("VelTest::Rack"), &Rack::_velType);
}

TEST(VelType, IsRegisteredInOrderAndForgotten) {
    std::vector<VelType const *> expected = Vel::typeNodes();
    {
        Vel::TypeRegistration const one(second);
        Vel::TypeRegistration const two(first);
        expected.insert(expected.end(), {&second, &first});
        EXPECT_EQ(Vel::typeNodes(), expected);
        EXPECT_EQ(typeNode("VelTest::First"), &first);
    }
    EXPECT_FALSE(isRegistered(first));
    EXPECT_FALSE(isRegistered(second));
    EXPECT_EQ(typeNode("VelTest::First"), nullptr);
    Vel::typeNodeDel(&first);
    Vel::typeNodeDel(nullptr);
    expected.resize(expected.size() - 2);
    EXPECT_EQ(Vel::typeNodes(), expected);
}

TEST(VelType, IsNotRegisteredTwiceNorUnderANameThatIsTaken) {
    constexpr static VelType const impostor{{.name = "VelTest::First"}};
    Vel::TypeRegistration const registration(first);
    EXPECT_THROW(Vel::typeNodeIs(&first), RangeException);
    EXPECT_THROW(Vel::typeNodeIs(&impostor), RangeException);
    EXPECT_THROW(Vel::typeNodeIs(nullptr), RangeException);
    EXPECT_EQ(typeNode("VelTest::First"), &first);
    EXPECT_TRUE(isRegistered(first));
    Vel::typeNodeDel(&impostor);
    EXPECT_EQ(typeNode("VelTest::First"), &first) << "a type that was never registered takes no other away";
}

TEST(VelType, KnowsItsBaseAndItsAttributes) {
    constexpr static VelType const derived{{.name = "VelTest::Derived", .base = &Rack::_velType}};
    EXPECT_TRUE(derived.isA(derived));
    EXPECT_TRUE(derived.isA(Rack::_velType));
    EXPECT_TRUE(derived.isA(Vel::PtrInterface::_velType));
    EXPECT_FALSE(Rack::_velType.isA(derived));
    EXPECT_EQ(Rack::_velType.attributeCount(), 8U);
    EXPECT_EQ(derived.attributeCount(), 0U);
    EXPECT_EQ(derived.attribute("height"), Rack::_velType.attribute("height"));
    EXPECT_EQ(derived.attribute("heigh"), nullptr);
}

TEST(VelType, TellsOfEachAttributeWhatItIs) {
    using Kind = Vel::VelAttr::Kind;
    auto const attr = [](char const * name) -> Vel::VelAttr const & {
        return *Rack::_velType.attribute(name);
    };
    EXPECT_EQ(attr("height").owner(), &Rack::_velType);
    EXPECT_EQ(attr("height").index(), 2U);
    EXPECT_FALSE(attr("height").isImmutable());
    EXPECT_TRUE(attr("name").isImmutable());
    EXPECT_EQ(attr("height").kind(), Kind::value);
    EXPECT_EQ(attr("height").type(), typeNode("unsigned int"));
    EXPECT_EQ(attr("height").keyType(), nullptr);
    EXPECT_EQ(attr("height").keyName(), "");
    EXPECT_EQ(attr("beside").kind(), Kind::reference);
    EXPECT_EQ(attr("beside").type(), &Rack::_velType);
    EXPECT_EQ(attr("reset").kind(), Kind::function);
    EXPECT_EQ(attr("reset").type(), &Vel::_velType_void);
    EXPECT_EQ(attr("heightWith").args().size(), 2U);
    EXPECT_STREQ(attr("heightWith").args()[1].name, "doubled");
    EXPECT_EQ(attr("drawer").kind(), Kind::collection);
    EXPECT_EQ(attr("drawer").keyType(), &Vel::Name::_velType);
    EXPECT_EQ(attr("drawer").keyName(), "name");
    EXPECT_EQ(attr("load").kind(), Kind::valueCollection);
    EXPECT_TRUE(attr("load").offers(Vel::kIterate));
    EXPECT_FALSE(attr("load").offers(Vel::kRead));
    EXPECT_TRUE(attr("heightWith").offersOnConst(Vel::kCall));
    EXPECT_FALSE(attr("reset").offersOnConst(Vel::kCall));
}

TEST(VelType, WrapsItsObjects) {
    Vel::Ptr<Rack> const rack = new Rack(Vel::Name("rack"));
    Vel::PtrInterface const * const object = rack.get();
    EXPECT_EQ(Rack::_velType.genericIf(object, false).as<Vel::Ptr<Rack>>(), rack);
    EXPECT_TRUE(Rack::_velType.genericIf(object, true).isConst());
    EXPECT_TRUE(Rack::_velType.genericIf(nullptr, false).isNull());
    EXPECT_THROW(Vel::Name::_velType.genericIf(object, false), Vel::OpNotSupportedException);
    EXPECT_EQ(rack->references(), 1U);
}

}  // namespace
}  // namespace VelTest
