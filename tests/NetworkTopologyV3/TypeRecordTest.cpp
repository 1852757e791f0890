// The type records: every attribute can be reached by name, and what is reached is what the accessors give.
#include <cctype>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "platform/Vel/GenericIf.h"
#include "tests/NetworkTopologyV3/Recorders.h"

namespace NetworkTopologyV3 {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Vel::GenericIf;
using Vel::Name;
using Vel::VelAttr;
using Vel::VelType;

class TypeRecordTest : public testing::Test {
protected:
    struct Subject {
        GenericIf object;
        Vel::Ptr<Vel::PtrInterface::NotifieeConst> recorder;
        std::set<std::string> callbacks;
    };

    TypeRecordTest() {
        subjects.push_back({GenericIf::of(status),
                            recorderOf<StatusRecorder>(status, journal),
                            {"onHost", "onLocalhost", "onEdge"}});
        subjects.push_back(
            {GenericIf::of(host),
             recorderOf<HostRecorder>(host, journal),
             {"onHostname", "onMlagDomainId", "onMlagSystemId", "onMlagState", "onMlagPeerLink", "onPort",
              "onPortGroup", "onMlag", "onMlagRaw", "onLogicalPort"}});
        subjects.push_back(
            {GenericIf::of(port), recorderOf<PortRecorder>(port, journal), {"onType", "onPortGroup"}});
        subjects.push_back({GenericIf::of(group),
                            recorderOf<PortGroupRecorder>(group, journal),
                            {"onType", "onMemberPort", "onMlag"}});
        subjects.push_back({GenericIf::of(mlag),
                            recorderOf<MlagPortRecorder>(mlag, journal),
                            {"onType", "onLocalPortGroup"}});
        subjects.push_back(
            {GenericIf::of(edge), recorderOf<DirectedEdgeRecorder>(edge, journal), {"onToPort"}});
    }

    // All attributes, those of the base first.
    static std::vector<VelAttr const *> attributes(VelType const & type) {
        std::vector<VelAttr const *> all;
        if (type.base()) all = attributes(*type.base());
        for (VelAttr const & attr : type.attributes()) all.push_back(&attr);
        return all;
    }

    static std::string callbackOf(VelAttr const & attr) {
        std::string name(attr.name());
        name[0] = static_cast<char>(std::toupper(name[0]));
        return "on" + name;
    }

    // A value of that type which is not its default; an object is one of ours.
    GenericIf sample(VelType const & type) const {
        if (type.kind() == VelType::Kind::object) {
            for (GenericIf const & object :
                 {GenericIf::of(host), GenericIf::of(port), GenericIf::of(group), GenericIf::of(mlag)}) {
                if (object.type()->isA(type)) return object;
            }
            ADD_FAILURE() << "no object for " << type.name();
            return nullptr;
        }
        if (type.kind() == VelType::Kind::enumeration) return type.fromStrRep(type.enumerators().back().name);
        if (&type == Vel::VelTypeOf<bool>::record) return true;
        if (&type == &Keln::EthAddr::_velType) return type.fromStrRep("02:00:00:00:00:01");
        return type.fromStrRep("/host/x/port/y");
    }

    Vel::Ptr<Status> status = Status::StatusIs();
    Vel::Ptr<Host> host = Status::StatusIs()->hostIs("leaf-1");
    Vel::Ptr<Port> port = host->portIs("eth-1");
    Vel::Ptr<PortGroup> group = host->portGroupIs("bond-1");
    Vel::Ptr<MlagPort> mlag = host->mlagIs("m-1", "m-1b");
    Vel::Ptr<DirectedEdge> edge = Status::StatusIs()->edgeIs(port->portKey());
    Journal journal;
    std::vector<Subject> subjects;
};

TEST_F(TypeRecordTest, AreRegisteredUnderTheNamesOfTheirTypes) {
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::Status"), &Status::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::Host"), &Host::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::PortBase"), &PortBase::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::Port"), &Port::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::PortGroup"), &PortGroup::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::MlagPort"), &MlagPort::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::DirectedEdge"), &DirectedEdge::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::PortKey"), &PortKey::_velType);
    EXPECT_EQ(Vel::typeNode("NetworkTopologyV3::PortType"), &_velType_PortType);
}

TEST_F(TypeRecordTest, AreThoseOfTheConcreteClasses) {
    EXPECT_EQ(status->fwkType(), &Status::_velType);
    EXPECT_EQ(host->fwkType(), &Host::_velType);
    EXPECT_EQ(PortBase::Ptr(port)->fwkType(), &Port::_velType);
    EXPECT_EQ(PortBase::Ptr(group)->fwkType(), &PortGroup::_velType);
    EXPECT_EQ(PortBase::Ptr(mlag)->fwkType(), &MlagPort::_velType);
    EXPECT_EQ(edge->fwkType(), &DirectedEdge::_velType);
    for (VelType const * type : {&Port::_velType, &PortGroup::_velType, &MlagPort::_velType}) {
        EXPECT_EQ(type->base(), &PortBase::_velType);
    }
}

TEST_F(TypeRecordTest, NameEachAttributeOnceInTheOrderOfTheirIndices) {
    for (Subject const & subject : subjects) {
        std::set<std::string_view> names;
        std::uint32_t last = 0;
        for (VelAttr const * attr : attributes(*subject.object.type())) {
            EXPECT_TRUE(names.insert(attr->name()).second) << attr->name();
            EXPECT_GT(attr->index(), last) << attr->name();
            last = attr->index();
        }
    }
}

TEST_F(TypeRecordTest, EveryAttributeThatIsWrittenReadsBackAndIsToldOnce) {
    std::set<std::string> told;
    for (Subject const & subject : subjects) {
        for (VelAttr const * attr : attributes(*subject.object.type())) {
            if (!attr->offers(Vel::kSet)) continue;
            SCOPED_TRACE(std::string(attr->owner()->name()) + "::" + std::string(attr->name()));
            GenericIf const value = sample(*attr->type());
            EXPECT_FALSE(subject.object.attr(attr->name()) == value);
            journal.then = [&](std::string const &) {
                EXPECT_TRUE(subject.object.attr(attr->name()) == value) << "inside the callback";
            };
            subject.object.attrIs(attr->name(), value);
            EXPECT_TRUE(subject.object.attr(attr->name()) == value);
            EXPECT_THAT(journal.take(), ElementsAre(callbackOf(*attr) + "()"));
            subject.object.attrIs(attr->name(), value);
            EXPECT_THAT(journal.take(), IsEmpty());
            journal.then = nullptr;
        }
    }
}

TEST_F(TypeRecordTest, EveryCollectionIsFilledFoundWalkedAndEmptied) {
    for (Subject const & subject : subjects) {
        for (VelAttr const * attr : attributes(*subject.object.type())) {
            if (!attr->offers(Vel::kIterate)) continue;
            SCOPED_TRACE(std::string(attr->owner()->name()) + "::" + std::string(attr->name()));
            bool const holdsValues = attr->kind() == VelAttr::Kind::valueCollection;
            std::vector<GenericIf> arguments;
            for (Vel::VelArg const & arg : attr->args()) arguments.push_back(sample(*arg.type));
            ASSERT_FALSE(arguments.empty());
            EXPECT_EQ(arguments[0].type(), attr->keyType());
            if (holdsValues && arguments[1].isObject()) arguments[0] = arguments[1].attr("name");
            GenericIf const key = arguments[0];
            std::string const callback = callbackOf(*attr);
            std::string const keyed = callback + "(" + key.strRep() + ")";

            EXPECT_TRUE(subject.object.member(attr->name(), key).isNull());
            GenericIf const made = subject.object.memberIs(attr->name(), arguments);
            EXPECT_THAT(journal.take(), ElementsAre(keyed, callback + "()"));
            GenericIf const found = subject.object.member(attr->name(), key);
            EXPECT_FALSE(found.isNull());
            EXPECT_TRUE(found == (holdsValues ? arguments[1] : made));
            if (!holdsValues) {
                EXPECT_EQ(found.type(), attr->type());
                EXPECT_TRUE(found.attr(attr->keyName()) == key);
            }

            bool met = false;
            for (auto const & entry : subject.object.members(attr->name())) {
                if (!(entry.key() == key)) continue;
                met = true;
                EXPECT_TRUE(entry.object() == found);
            }
            EXPECT_TRUE(met);
            for (auto const & entry : subject.object.members(attr->name(), key)) {
                EXPECT_TRUE(entry.key() == key);
                break;
            }

            GenericIf const removed = subject.object.memberDel(attr->name(), key);
            EXPECT_TRUE(holdsValues ? removed.isNull() : removed == found);
            EXPECT_THAT(journal.take(), ElementsAre(keyed, callback + "()"));
            EXPECT_TRUE(subject.object.member(attr->name(), key).isNull());
            EXPECT_TRUE(subject.object.memberDel(attr->name(), key).isNull());
            EXPECT_THAT(journal.take(), IsEmpty());

            subject.object.memberIs(attr->name(), arguments);
            journal.take();
            subject.object.call(std::string(attr->name()) + "DelAll", {});
            auto const calls = journal.take();
            ASSERT_GE(calls.size(), 2U);
            EXPECT_EQ(calls[calls.size() - 2], callback + "velImmediate()");
            EXPECT_EQ(calls.back(), callback + "()");
            EXPECT_TRUE(subject.object.member(attr->name(), key).isNull());
        }
    }
}

TEST_F(TypeRecordTest, LeaveNoCallbackWithoutAnAttribute) {
    for (Subject const & subject : subjects) {
        std::set<std::string> callbacks;
        for (VelAttr const * attr : attributes(*subject.object.type())) {
            if (attr->offers(Vel::kSet) || attr->offers(Vel::kIterate)) callbacks.insert(callbackOf(*attr));
        }
        EXPECT_EQ(callbacks, subject.callbacks) << subject.object.type()->name();
    }
}

TEST_F(TypeRecordTest, GiveWhatCannotBeWritten) {
    EXPECT_EQ(GenericIf::of(host).attr("name").as<Name>(), "leaf-1");
    EXPECT_EQ(GenericIf::of(port).attr("name").as<Name>(), "eth-1");
    EXPECT_EQ(GenericIf::of(port).attr("portKey").as<PortKey>(), port->portKey());
    EXPECT_EQ(GenericIf::of(port).attr("host").as<Vel::Ptr<Host>>(), host);
    EXPECT_EQ(GenericIf::of(mlag).attr("secondaryName").as<Name>(), "m-1b");
    EXPECT_EQ(GenericIf::of(edge).attr("fromPort").as<PortKey>(), port->portKey());
    host->portDel("eth-1");
    EXPECT_TRUE(GenericIf::of(port).attr("host").isNull());
    EXPECT_THROW(GenericIf::of(mlag).attrIs("secondaryName", Name("x")), Vel::OpNotSupportedException);
    EXPECT_THROW(GenericIf::of(host).attrIs("name", Name("x")), Vel::OpNotSupportedException);
}

TEST_F(TypeRecordTest, KeepReferencesUnderTheNamesOfTheirTargets) {
    for (auto const & [object, collection, value] :
         {std::tuple{GenericIf::of(host), "mlagRaw", GenericIf::of(mlag)},
          std::tuple{GenericIf::of(host), "logicalPort", GenericIf::of(port)},
          std::tuple{GenericIf::of(group), "memberPort", GenericIf::of(port)}}) {
        try {
            object.memberIs(collection, {Name("other"), value});
            ADD_FAILURE() << collection << " took another key than the name";
        } catch (Vel::RangeException const & error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(std::string(value.attr("name").strRep())));
            EXPECT_THAT(error.what(), testing::HasSubstr("other"));
        }
        EXPECT_TRUE(object.member(collection, Name("other")).isNull());
        EXPECT_NO_THROW(object.memberIs(collection, {Name("other"), nullptr}));
        EXPECT_TRUE(object.member(collection, Name("other")).isNull());
        EXPECT_THAT(journal.take(), IsEmpty());
        EXPECT_THROW(object.memberIs(collection, {Name("leaf-1"), GenericIf::of(host)}), Vel::RangeException);
    }
}

TEST_F(TypeRecordTest, TellAFlagOfFalseFromNone) {
    PortKey const key("leaf-2", "port/eth-1");
    GenericIf const object = GenericIf::of(edge);
    GenericIf const wrapped = GenericIf::wrap(key);
    EXPECT_TRUE(object.member("toPort", wrapped).isNull());
    object.memberIs("toPort", {wrapped, false});
    EXPECT_FALSE(object.member("toPort", wrapped).isNull());
    EXPECT_FALSE(object.member("toPort", wrapped).as<bool>());
    EXPECT_EQ(edge->toPort(key), false);
}

TEST_F(TypeRecordTest, MakeMembersButTakeNone) {
    GenericIf const object = GenericIf::of(status);
    EXPECT_THROW(object.memberIs("host", GenericIf::of(host)), Vel::RangeException);
    EXPECT_THROW(object.memberIs("host", {GenericIf(Name("a")), GenericIf(Name("b"))}), Vel::RangeException);
    EXPECT_THROW(GenericIf::of(host).memberIs("mlag", {GenericIf(Name("a"))}), Vel::RangeException);
    EXPECT_TRUE(status->host().empty());
    EXPECT_EQ(host->mlag("a"), nullptr);
}

TEST_F(TypeRecordTest, ConstructAStatusAndNothingElse) {
    GenericIf const made = Vel::construct("NetworkTopologyV3::Status", {});
    made.memberIs("host", {GenericIf(Name("leaf-1"))}).attrIs("hostname", Vel::String("leaf-1.example"));
    EXPECT_EQ(made.as<Vel::Ptr<Status>>()->host("leaf-1")->hostname(), "leaf-1.example");
    for (VelType const * type : {&Host::_velType, &PortBase::_velType, &Port::_velType, &PortGroup::_velType,
                                 &MlagPort::_velType, &DirectedEdge::_velType, &PortKey::_velType}) {
        EXPECT_FALSE(type->isConstructible()) << type->name();
        EXPECT_THROW(Vel::construct(type->name(), {}), Vel::OpNotSupportedException);
    }
}

TEST_F(TypeRecordTest, ChangeNothingThroughAConstReference) {
    status->hostIs("leaf-1");
    journal.take();
    GenericIf const object = GenericIf::of(Status::PtrConst(status));
    EXPECT_TRUE(object.member("host", Name("leaf-1")).isConst());
    EXPECT_THROW(object.member("host", Name("leaf-1")).attrIs("hostname", Vel::String("x")),
                 Vel::OpNotSupportedException);
    EXPECT_THROW(object.memberIs("host", {GenericIf(Name("a"))}), Vel::OpNotSupportedException);
    EXPECT_THROW(object.memberDel("host", Name("leaf-1")), Vel::OpNotSupportedException);
    EXPECT_THROW(object.call("hostDelAll", {}), Vel::OpNotSupportedException);
    EXPECT_EQ(status->host().size(), 1U);
    EXPECT_THAT(journal.take(), IsEmpty());
}

TEST(PortKeyRecord, ReadsAndWritesJsonPointers) {
    GenericIf const key = PortKey::_velType.fromStrRep("/host/a~1b/portGroup/~0");
    EXPECT_EQ(key.as<PortKey>(), PortKey("a/b", "portGroup/~"));
    EXPECT_EQ(key.strRep(), "/host/a~1b/portGroup/~0");
    EXPECT_TRUE(key == GenericIf::wrap(PortKey("a/b", "portGroup/~")));
    EXPECT_THROW(PortKey::_velType.fromStrRep("/host/a"), Vel::RangeException);
    EXPECT_EQ(PortKey::_velType.kind(), VelType::Kind::value);
}

TEST(PortTypeRecord, NamesEveryValue) {
    std::vector<std::string> names;
    for (Vel::VelEnumerator const & enumerator : _velType_PortType.enumerators()) {
        EXPECT_EQ(enumerator.value, names.size());
        names.emplace_back(enumerator.name);
    }
    EXPECT_THAT(names, ElementsAre("unknown", "port", "portGroup", "mlag"));
    EXPECT_EQ(_velType_PortType.fromStrRep("mlag").as<PortType>(), PortType::mlag);
    EXPECT_EQ(GenericIf::wrap(PortType::portGroup).strRep(), "portGroup");
    EXPECT_EQ(GenericIf::wrap(static_cast<PortType>(77)).strRep(), "77");
    EXPECT_THROW(_velType_PortType.fromStrRep("lagg"), Vel::RangeException);
}

}  // namespace

}  // namespace NetworkTopologyV3
