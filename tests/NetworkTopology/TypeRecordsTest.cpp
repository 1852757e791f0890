// The type records of the model, row by row: every attribute reads, writes and tells as its accessors do.
#include <cctype>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/PortBaseVisitor.h"
#include "platform/NetworkTopology/StatusV2.h"
#include "platform/Vel/GenericIf.h"
#include "tests/NetworkTopology/Recorders.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortBaseVisitor;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;
using Vel::GenericIf;
using Vel::VelAttr;
using Vel::VelType;

// A value of that type that is not its default.
GenericIf sample(VelType const & type) {
    if (type.kind() == VelType::Kind::enumeration) return Vel::enumeratorFromNumber(type, 2);
    if (&type == Vel::VelTypeOf<bool>::record) return true;
    if (&type == &Keln::EthAddr::_velType) return GenericIf::wrap(Keln::EthAddr(2, 0, 0, 0, 0, 1));
    if (&type == &Vel::Name::_velType) return Vel::Name("x");
    if (&type == &Vel::String::_velType) return Vel::String("x");
    if (&type == &HostV2::_velType) return GenericIf::of(HostV2::HostV2Is("x"));
    if (&type == &PortV2::_velType || &type == &PortBaseV2::_velType)
        return GenericIf::of(PortV2::PortV2Is("x"));
    if (&type == &PortGroupV2::_velType) return GenericIf::of(PortGroupV2::PortGroupV2Is("x"));
    if (&type == &MlagV2::_velType) return GenericIf::of(MlagV2::MlagV2Is("x", "y"));
    if (&type == &DirectedEdgeV2::_velType) return GenericIf::of(DirectedEdgeV2::DirectedEdgeV2Is(nullptr));
    ADD_FAILURE() << "no sample of " << type.name();
    return nullptr;
}

std::string callbackOf(VelAttr const & attr) {
    std::string name(attr.name());
    name[0] = static_cast<char>(std::toupper(name[0]));
    return "on" + name;
}

std::vector<VelAttr const *> attributesOf(VelType const * type) {
    std::vector<VelAttr const *> all;
    for (; type; type = type->base()) {
        for (VelAttr const & attr : type->attributes()) all.push_back(&attr);
    }
    return all;
}

struct Case {
    std::function<GenericIf()> make;
    // Follows the object, runs the second argument inside each callback, and answers with what tells the
    // calls.
    std::function<std::function<Calls()>(GenericIf const &, std::function<void()>)> follow;
    std::vector<std::string> attributes;
    std::string silent = {};  // The attribute that nobody hears of.
};

template <class Model>
std::function<Calls()> follow(GenericIf const & object, std::function<void()> inside) {
    auto const recorder = followed(object.as<Vel::Ptr<Model>>());
    recorder->act = [inside = std::move(inside)](std::string const &) { inside(); };
    return [recorder] { return recorder->taken(); };
}

template <class Model, class... Arguments>
Case caseOf(Vel::Ptr<Model> (*make)(Arguments...), std::vector<std::string> attributes,
            std::string silent = {}) {
    return {[make] { return GenericIf::of(make(std::remove_cvref_t<Arguments>("x")...)); }, &follow<Model>,
            std::move(attributes), std::move(silent)};
}

std::map<std::string, Case> cases() {
    std::map<std::string, Case> all{
        {"StatusV2",
         caseOf(&StatusV2::StatusV2Is, {"host", "hostDelAll", "localhost", "edge", "edgeDelAll"})},
        {"HostV2",
         caseOf(&HostV2::HostV2Is,
                {"name", "hostname", "hostnameAddedByOwner", "mlagSystemId", "mlagDomainId", "mlagState",
                 "mlagPeerLink", "port", "portDelAll", "portGroup", "portGroupDelAll", "mlag", "mlagDelAll",
                 "mlagRaw", "mlagRawDelAll", "logicalPort", "logicalPortDelAll"})},
        {"PortV2", caseOf(&PortV2::PortV2Is, {"portGroup", "name", "type", "addedByOwner", "host"})},
        {"PortGroupV2", caseOf(&PortGroupV2::PortGroupV2Is, {"memberPort", "memberPortDelAll", "mlag", "name",
                                                             "type", "addedByOwner", "host"})},
        {"MlagV2",
         caseOf(&MlagV2::MlagV2Is,
                {"secondaryName", "localPortGroup", "peerPortGroup", "name", "type", "addedByOwner", "host"},
                "secondaryName")},
    };
    all["DirectedEdgeV2"] = {
        [] { return GenericIf::of(DirectedEdgeV2::DirectedEdgeV2Is(PortV2::PortV2Is("x"))); },
        &follow<DirectedEdgeV2>,
        {"fromPort", "toPort", "toPortDelAll"}};
    return all;
}

class TypeRecord : public testing::TestWithParam<std::string> {
protected:
    Case const case_ = cases().at(GetParam());
    GenericIf const object_ = case_.make();
    std::function<void()> insideCallbacks_ = [] {};
    std::function<Calls()> const taken_ = case_.follow(object_, [this] { insideCallbacks_(); });

    Calls expected(VelAttr const & attr) const {
        return attr.name() == case_.silent ? Calls{} : Calls{callbackOf(attr)};
    }
    Calls expected(VelAttr const & attr, GenericIf const & key) const {
        std::string const text = key.isObject() ? this->text(key.as<Vel::Ptr<PortBaseV2 const>>())
                                                : this->text(key.as<Vel::Name>());
        return {callbackOf(attr) + '(' + text + ')', callbackOf(attr)};
    }
    static std::string text(Vel::Ptr<PortBaseV2 const> const & key) { return NetworkTopologyTest::text(key); }
    static std::string text(Vel::Name const & key) { return NetworkTopologyTest::text(key); }
};

INSTANTIATE_TEST_SUITE_P(Classes, TypeRecord,
                         testing::Values("StatusV2", "HostV2", "PortV2", "PortGroupV2", "MlagV2",
                                         "DirectedEdgeV2"),
                         [](auto const & info) { return info.param; });

TEST_P(TypeRecord, IsThatOfItsObjectsAndFoundByName) {
    VelType const * const type = Vel::typeNode("NetworkTopology::" + GetParam());
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(object_.type(), type);
    EXPECT_EQ(type->kind(), VelType::Kind::object);
    EXPECT_TRUE(type->isConstructible());
}

TEST_P(TypeRecord, ListsEveryAttributeUnderAnIndexOfItsOwn) {
    std::vector<std::string> names;
    std::set<std::uint32_t> indices;
    for (VelAttr const * const attr : attributesOf(object_.type())) {
        names.emplace_back(attr->name());
        EXPECT_TRUE(indices.insert(attr->index()).second) << attr->name();
        EXPECT_EQ(object_.type()->attribute(attr->name()), attr);
    }
    EXPECT_EQ(names, case_.attributes);
}

TEST_P(TypeRecord, WritesWhatIsThenReadAndTellsOnce) {
    for (VelAttr const * const attr : attributesOf(object_.type())) {
        if (!attr->offers(Vel::kSet)) continue;
        SCOPED_TRACE(attr->name());
        GenericIf const value = sample(*attr->type());
        EXPECT_FALSE(object_.attr(attr->name()) == value && attr->name() != case_.silent);
        insideCallbacks_ = [&] { EXPECT_EQ(object_.attr(attr->name()), value) << "inside the callback"; };
        object_.attrIs(attr->name(), value);
        EXPECT_EQ(object_.attr(attr->name()), value);
        EXPECT_EQ(taken_(), expected(*attr));
        object_.attrIs(attr->name(), value);
        EXPECT_EQ(taken_(), Calls());
        if (attr->kind() == VelAttr::Kind::reference) {
            insideCallbacks_ = [&] { EXPECT_TRUE(object_.attr(attr->name()).isNull()); };
            object_.attrIs(attr->name(), nullptr);
            EXPECT_TRUE(object_.attr(attr->name()).isNull());
            EXPECT_EQ(taken_(), expected(*attr));
        }
    }
}

TEST_P(TypeRecord, ReadsButDoesNotWriteWhatNeverChanges) {
    for (VelAttr const * const attr : attributesOf(object_.type())) {
        if (!attr->offers(Vel::kRead) || attr->offers(Vel::kSet)) continue;
        SCOPED_TRACE(attr->name());
        object_.attr(attr->name());
        EXPECT_THROW(object_.attrIs(attr->name(), sample(*attr->type())), Vel::OpNotSupportedException);
    }
    EXPECT_EQ(taken_(), Calls());
}

TEST_P(TypeRecord, MakesFindsWalksAndRemovesMembers) {
    for (VelAttr const * const attr : attributesOf(object_.type())) {
        if (!attr->offers(Vel::kIterate)) continue;
        SCOPED_TRACE(attr->name());
        std::vector<GenericIf> args;
        for (Vel::VelArg const & arg : attr->args()) args.push_back(sample(*arg.type));
        ASSERT_FALSE(args.empty());
        EXPECT_EQ(attr->args()[0].type, attr->keyType());
        EXPECT_EQ(attr->args()[0].name, attr->keyName());
        GenericIf const key = args[0];
        EXPECT_TRUE(object_.member(attr->name(), key).isNull());
        object_.memberIs(attr->name(), args);
        EXPECT_EQ(taken_(), expected(*attr, key));
        GenericIf const member = object_.member(attr->name(), key);
        ASSERT_FALSE(member.isNull());
        int met = 0;
        for (auto const & entry : object_.members(attr->name())) {
            EXPECT_EQ(entry.key(), key);
            EXPECT_EQ(entry.object(), member);
            ++met;
        }
        for (auto const & entry : object_.members(attr->name(), key)) {
            EXPECT_EQ(entry.object(), member);
            ++met;
        }
        EXPECT_EQ(met, 2);
        if (attr->kind() == VelAttr::Kind::valueCollection) {
            EXPECT_EQ(member, args[1]);
        } else {
            EXPECT_EQ(member.type(), attr->type());
        }
        object_.memberDel(attr->name(), key);
        EXPECT_EQ(taken_(), expected(*attr, key));
        EXPECT_TRUE(object_.member(attr->name(), key).isNull());

        if (attr->kind() == VelAttr::Kind::collection) {
            GenericIf const other = sample(*attr->type());
            object_.memberIs(attr->name(), other);
            EXPECT_EQ(taken_().size(), 2U);
            EXPECT_THROW(object_.memberIs(attr->name(), GenericIf()), Vel::RangeException);
        } else {
            object_.memberIs(attr->name(), args);
            EXPECT_EQ(taken_().size(), 2U);
        }
        object_.call(std::string(attr->name()) + "DelAll", {});
        EXPECT_FALSE(object_.members(attr->name()).begin() != std::default_sentinel);
        Calls const calls = taken_();
        ASSERT_GE(calls.size(), 2U);
        EXPECT_EQ(calls[calls.size() - 2], callbackOf(*attr) + "velImmediate");
        EXPECT_EQ(calls[calls.size() - 1], callbackOf(*attr));
    }
}

TEST_P(TypeRecord, LetsAConstObjectBeReadAlone) {
    GenericIf const constant =
        GenericIf::of(Vel::Ptr<Vel::PtrInterface const>(object_.as<Vel::Ptr<Vel::PtrInterface>>()));
    ASSERT_TRUE(constant.isConst());
    for (VelAttr const * const attr : attributesOf(object_.type())) {
        SCOPED_TRACE(attr->name());
        if (attr->offers(Vel::kRead)) constant.attr(attr->name());
        if (attr->offers(Vel::kSet)) {
            EXPECT_THROW(constant.attrIs(attr->name(), sample(*attr->type())), Vel::OpNotSupportedException);
        }
        if (attr->offers(Vel::kCall)) {
            EXPECT_THROW(constant.call(attr->name(), {}), Vel::OpNotSupportedException);
        }
    }
    EXPECT_EQ(taken_(), Calls());
}

TEST(TypeRecords, ConstructEveryClass) {
    GenericIf const status = Vel::construct("NetworkTopology::StatusV2", {});
    EXPECT_NE(status.as<Vel::Ptr<StatusV2>>(), nullptr);
    for (char const * const name : {"HostV2", "PortV2", "PortGroupV2"}) {
        GenericIf const object =
            Vel::construct("NetworkTopology::" + std::string(name), {{"name", Vel::Name("n")}});
        EXPECT_EQ(object.attr("name"), GenericIf(Vel::Name("n"))) << name;
    }
    GenericIf const mlag = Vel::construct("NetworkTopology::MlagV2",
                                          {{"secondaryName", Vel::Name("s")}, {"name", Vel::Name("n")}});
    EXPECT_EQ(mlag.attr("name"), GenericIf(Vel::Name("n")));
    EXPECT_EQ(mlag.attr("secondaryName"), GenericIf(Vel::Name("s")));
    GenericIf const port = sample(PortV2::_velType);
    GenericIf const edge = Vel::construct("NetworkTopology::DirectedEdgeV2", {{"fromPort", port}});
    EXPECT_EQ(edge.attr("fromPort"), port);
    GenericIf const edgeFromNowhere =
        Vel::construct("NetworkTopology::DirectedEdgeV2", {{"fromPort", GenericIf()}});
    EXPECT_TRUE(edgeFromNowhere.attr("fromPort").isNull());
    EXPECT_THROW(Vel::construct("NetworkTopology::HostV2", {}), Vel::RangeException);
    EXPECT_THROW(Vel::construct("NetworkTopology::PortBaseV2", {}), Vel::OpNotSupportedException);
}

TEST(TypeRecords, DeriveTheKindsFromTheirCommonBase) {
    for (VelType const * const type : {&PortV2::_velType, &PortGroupV2::_velType, &MlagV2::_velType}) {
        EXPECT_EQ(type->base(), &PortBaseV2::_velType);
        EXPECT_TRUE(type->isA(PortBaseV2::_velType));
    }
    for (VelType const * const type : {&StatusV2::_velType, &HostV2::_velType, &DirectedEdgeV2::_velType,
                                       &PortBaseV2::_velType, &PortBaseVisitor::_velType}) {
        EXPECT_EQ(type->base(), nullptr) << type->name();
        EXPECT_EQ(Vel::typeNode(type->name()), type);
    }
}

TEST(TypeRecords, AnswerWithAMemberThatCanBeChanged) {
    GenericIf const status = GenericIf::of(StatusV2::StatusV2Is());
    status.memberIs("host", {Vel::Name("h")});
    GenericIf const host = status.member("host", Vel::Name("h"));
    host.attrIs("hostname", Vel::String("new"));
    EXPECT_EQ(status.as<Vel::Ptr<StatusV2>>()->host("h")->hostname(), "new");
}

TEST(TypeRecords, ShowTheHostOfAPortBase) {
    auto const host = HostV2::HostV2Is("h");
    GenericIf const port = GenericIf::of(host->portIs("p"));
    EXPECT_EQ(port.attr("host"), GenericIf::of(host));
    host->portDel("p");
    EXPECT_TRUE(port.attr("host").isNull());
}

TEST(TypeRecords, HoldNullInMapsOfReferences) {
    GenericIf const host = GenericIf::of(HostV2::HostV2Is("h"));
    host.memberIs("logicalPort", {Vel::Name("l"), GenericIf()});
    EXPECT_TRUE(host.member("logicalPort", Vel::Name("l")).isNull());
    int met = 0;
    for (auto const & entry : host.members("logicalPort")) {
        EXPECT_TRUE(entry.object().isNull());
        ++met;
    }
    EXPECT_EQ(met, 1);
}

TEST(TypeRecords, RefuseAMemberThatStandsElsewhere) {
    GenericIf const a = GenericIf::of(HostV2::HostV2Is("a"));
    GenericIf const b = GenericIf::of(HostV2::HostV2Is("b"));
    GenericIf const port = a.memberIs("port", {Vel::Name("p")});
    EXPECT_THROW(b.memberIs("port", port), Vel::RangeException);
    EXPECT_THROW(b.memberIs("port", sample(PortGroupV2::_velType)), Vel::RangeException);
    EXPECT_TRUE(b.member("port", Vel::Name("p")).isNull());
}

TEST(TypeRecords, PrintPortTypesByTheirEnumerators) {
    std::uint32_t number = 0;
    for (char const * const name : {"unknown", "port", "portGroup", "mlag"}) {
        auto const type = static_cast<PortTypeV2>(number++);
        EXPECT_EQ(GenericIf::wrap(type).strRep(), name);
        EXPECT_EQ(NetworkTopology::_velType_PortTypeV2.fromStrRep(name).as<PortTypeV2>(), type);
    }
    EXPECT_EQ(NetworkTopology::_velType_PortTypeV2.enumerators().size(), number);
    EXPECT_EQ(Vel::typeNode("NetworkTopology::PortTypeV2"), &NetworkTopology::_velType_PortTypeV2);
}

TEST(TypeRecords, CallAVisitor) {
    class Counting final : public PortBaseVisitor {
    public:
        void visitPort(Vel::Ptr<PortV2 const> const &) override { visits += 'p'; }
        void visitPortGroup(Vel::Ptr<PortGroupV2 const> const &) override { visits += 'g'; }
        void visitMlag(Vel::Ptr<MlagV2 const> const &) override { visits += 'm'; }
        std::string visits;
    };
    Vel::Ptr<Counting> const visitor = new Counting;
    GenericIf const generic = GenericIf::of(visitor);
    generic.call("visitPort", {sample(PortV2::_velType)});
    generic.call("visitPortGroup", {sample(PortGroupV2::_velType)});
    generic.call("visitMlag", {sample(MlagV2::_velType)});
    EXPECT_EQ(visitor->visits, "pgm");
    EXPECT_THROW(generic.call("visitPort", {sample(MlagV2::_velType)}), Vel::RangeException);
    EXPECT_EQ(visitor->visits, "pgm");
}

}  // namespace
}  // namespace NetworkTopologyTest
