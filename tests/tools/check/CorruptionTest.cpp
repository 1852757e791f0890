// No rule excuses a fault: every kind of place in the version-3 model, changed once behind the translator's
// back, is reported as a fault, and nothing else is.

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tools/check/CheckTesting.h"
#include "tools/document/Shape.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {
namespace {

using Kind = MemberShape::Kind;
using Vel::GenericIf;

// One of everything. The objects called "spare" are those to which nothing refers.
std::vector<std::string> const kModel{
    R"({"op":"add","path":"/host","value":{
        "a":{"hostname":"a.example","mlagDomainId":"d","mlagSystemId":"02:00:00:00:00:01","mlagState":"active",
            "mlagPeerLink":"/host/a/port/p",
            "port":{"p":{"type":"port","portGroup":"/host/a/portGroup/g"},"q":{},"spare":{}},
            "portGroup":{"g":{"type":"portGroup","memberPort":{"p":"/host/a/port/p"},"mlag":"/host/a/mlag/m"},
                         "h":{},"spare":{}},
            "mlag":{"m":{"type":"mlag","secondaryName":"m2","localPortGroup":"/host/a/portGroup/g"},
                    "n":{},"spare":{"secondaryName":"s2"}},
            "mlagRaw":{"m":"/host/a/mlag/m"},"logicalPort":{"p":"/host/a/port/p"}},
        "b":{},"spare":{}}})",
    R"({"op":"add","path":"/localhost","value":"/host/a"})",
    R"({"op":"add","path":"/edge/~1host~1a~1port~1p","value":{"toPort":{"/host/a/port/q":true}}})",
    R"({"op":"add","path":"/edge/~1host~1a~1port~1spare","value":{}})"};

// Changes one place; all that it can break is at `path`.
struct Corruption {
    std::string path;
    std::function<void()> make;
};

class Corruptions {
public:
    explicit Corruptions(GenericIf const & root) : root_(root), shape_(*root.type()) {
        object(root_, shape_.root(), "");
    }

    std::vector<Corruption> const & all() const { return all_; }
    // By class and attribute, what has been corrupted, and how.
    std::set<std::string> const & kinds() const { return kinds_; }
    DocumentShape const & shape() const { return shape_; }

private:
    void add(ObjectShape const & shape, MemberShape const & member, std::string const & how, std::string path,
             std::function<void()> make) {
        kinds_.insert(std::string(shape.type->name()) + "::" + std::string(member.name()) + ' ' + how);
        all_.push_back({std::move(path), std::move(make)});
    }

    void object(GenericIf const & object, ObjectShape const & shape, std::string const & path) {
        for (MemberShape const & member : shape.members) {
            std::string const place = joinJsonPointer(path, member.name());
            switch (member.kind) {
            case Kind::value: value(object, shape, member, place); break;
            case Kind::reference: reference(object, shape, member, place); break;
            case Kind::collection: members(object, shape, member, place); break;
            case Kind::valueCollection: entries(object, shape, member, place); break;
            }
        }
    }

    // Another value of the type.
    static GenericIf other(GenericIf const & value, MemberShape const & member) {
        Vel::VelType const & type = member.type();
        if (&type == Vel::VelTypeOf<bool>::record) return GenericIf(!value.as<bool>());
        if (type.kind() == Vel::VelType::Kind::enumeration) {
            auto const all = type.enumerators();
            auto const next = (value.enumeratorValue() + 1) % all.size();
            return Vel::enumeratorFromNumber(type, all[next].value);
        }
        return type.fromStrRep(type.name() == "Keln::EthAddr" ? "02:00:00:00:00:ff" : "corrupted");
    }

    void value(GenericIf const & object, ObjectShape const & shape, MemberShape const & member,
               std::string const & path) {
        if (member.isSettable) {
            add(shape, member, "changed", path,
                [=] { object.attrIs(member.name(), other(object.attr(member.name()), member)); });
        } else if (path == "/host/a/mlag/spare/secondaryName") {
            // Given when the object is made: made anew, with another one.
            add(shape, member, "changed", path, [this] {
                GenericIf const host = root_.member("host", Vel::Name("a"));
                host.memberDel("mlag", Vel::Name("spare"));
                host.memberIs("mlag", {Vel::Name("spare"), Vel::Name("corrupted")});
            });
        }
    }

    // Some object of the class other than `present`.
    GenericIf target(Vel::VelType const & type, GenericIf const & present) const {
        if (type.name() == "NetworkTopologyV3::Host") return root_.member("host", Vel::Name("b"));
        GenericIf const host = root_.member("host", Vel::Name("a"));
        for (char const * collection : {"port", "portGroup", "mlag"}) {
            for (auto const & entry : host.members(collection)) {
                if (entry.object().type()->isA(type) && entry.object() != present) return entry.object();
            }
        }
        return GenericIf();
    }

    void reference(GenericIf const & object, ObjectShape const & shape, MemberShape const & member,
                   std::string const & path) {
        GenericIf const present = object.attr(member.name());
        GenericIf const elsewhere = target(member.type(), present);
        add(shape, member, present.isNull() ? "set" : "led elsewhere", path,
            [=] { object.attrIs(member.name(), elsewhere); });
        if (!present.isNull()) {
            add(shape, member, "cleared", path, [=] { object.attrIs(member.name(), GenericIf()); });
        }
    }

    void members(GenericIf const & object, ObjectShape const & shape, MemberShape const & member,
                 std::string const & path) {
        for (auto const & entry : object.members(member.name())) {
            std::string const text = member.keyText(entry.key());
            std::string const place = joinJsonPointer(path, text);
            this->object(entry.object(), *member.element, place);
            if (!text.ends_with("spare")) continue;
            GenericIf const key = entry.key();
            add(shape, member, "removed", place, [=] { object.memberDel(member.name(), key); });
        }
        bool const isEdge = member.keyKind == MemberShape::KeyKind::text;
        std::string const text = isEdge ? "/host/a/port/new" : "new";
        std::vector<GenericIf> arguments(member.attr->args().size(), GenericIf(Vel::Name("")));
        arguments[0] = *member.key(text);
        add(shape, member, "added", joinJsonPointer(path, text),
            [=] { object.memberIs(member.name(), arguments); });
    }

    void entries(GenericIf const & object, ObjectShape const & shape, MemberShape const & member,
                 std::string const & path) {
        for (auto const & entry : object.members(member.name())) {
            GenericIf const key = entry.key();
            std::string const place = joinJsonPointer(path, member.keyText(key));
            add(shape, member, "removed", place, [=] { object.memberDel(member.name(), key); });
            if (member.holdsReferences) {
                // A namesake that has left shows as null.
                add(shape, member, "led elsewhere", place, [=, this] { leadElsewhere(object, member, key); });
            } else {
                GenericIf const value = entry.object();
                add(shape, member, "changed", place, [=] {
                    object.memberIs(member.name(), {key, other(value, member)});
                });
            }
        }
        if (member.holdsReferences) {
            GenericIf const spare = spareOf(member.type());
            GenericIf const key = spare.attr("name");
            add(shape, member, "added", joinJsonPointer(path, "spare"), [=] {
                object.memberIs(member.name(), {key, spare});
            });
        } else {
            GenericIf const key = *member.key("/host/a/mlag/new");
            add(shape, member, "added", joinJsonPointer(path, "/host/a/mlag/new"), [=] {
                object.memberIs(member.name(), {key, GenericIf(true)});
            });
        }
    }

    GenericIf spareOf(Vel::VelType const & type) const {
        bool const isMlag = type.name() == "NetworkTopologyV3::MlagPort";
        return root_.member("host", Vel::Name("a")).member(isMlag ? "mlag" : "port", Vel::Name("spare"));
    }

    void leadElsewhere(GenericIf const & object, MemberShape const & member, GenericIf const & key) const {
        bool const isMlag = member.type().name() == "NetworkTopologyV3::MlagPort";
        std::string_view const collection = isMlag ? "mlag" : "port";
        GenericIf const host = root_.member("host", Vel::Name("spare"));
        std::vector<GenericIf> arguments{key};
        if (isMlag) arguments.push_back(GenericIf(Vel::Name("")));
        GenericIf const made = host.memberIs(collection, arguments);
        host.memberDel(collection, key);
        object.memberIs(member.name(), {key, made});
    }

    GenericIf const root_;
    DocumentShape const shape_;
    std::vector<Corruption> all_;
    std::set<std::string> kinds_;
};

// A model, made again for every corruption, whose first `before` lines are there before the translator.
class Patient {
public:
    explicit Patient(std::size_t before) {
        auto const middle = kModel.begin() + static_cast<std::ptrdiff_t>(before);
        applyLines(*v2_, {kModel.begin(), middle});
        checked_.emplace(v2_);
        for (auto line = middle; line != kModel.end(); ++line) checked_->apply(*line);
        corruptions_.emplace(GenericIf::of(checked_->checker.v3()));
    }

    Checker const & checker() const { return checked_->checker; }
    Corruptions const & corruptions() const { return *corruptions_; }

private:
    NetworkTopology::StatusV2::Ptr const v2_ = NetworkTopology::StatusV2::StatusV2Is();
    std::optional<Checked> checked_;
    std::optional<Corruptions> corruptions_;
};

class Corrupted : public testing::TestWithParam<bool> {
protected:
    // With differences that are explained, or without.
    std::size_t linesBefore() const { return GetParam() ? kModel.size() : 0; }
};

TEST_P(Corrupted, PlacesAreFaultsAndNothingElseIs) {
    std::size_t const count = Patient(linesBefore()).corruptions().all().size();
    ASSERT_GT(count, 60u);
    for (std::size_t i = 0; i < count; ++i) {
        Patient const patient(linesBefore());
        Corruption const & corruption = patient.corruptions().all()[i];
        auto const before = patient.checker().differences();
        ASSERT_TRUE(faultsAmong(before).empty()) << described(before);
        EXPECT_EQ(before.empty(), !GetParam());

        corruption.make();
        auto const after = patient.checker().differences();
        auto const faults = faultsAmong(after);
        ASSERT_EQ(faults.size(), 1u) << corruption.path << '\n' << described(after);
        EXPECT_EQ(faults[0].path, corruption.path);
        EXPECT_NE(faults[0].present, faults[0].expected);
        // What was explained is so still, but for what the corrupted place covers.
        auto const explained = static_cast<std::size_t>(
            std::count_if(before.begin(), before.end(), [&](Difference const & difference) {
                return !difference.path.starts_with(corruption.path);
            }));
        EXPECT_EQ(after.size() - 1, explained) << corruption.path << '\n' << described(after);
    }
}

INSTANTIATE_TEST_SUITE_P(Attached, Corrupted, testing::Bool(),
                         [](auto const & info) { return std::string(info.param ? "After" : "Before"); });

TEST(Corruption, ReachesEveryMemberOfEveryClass) {
    Patient const patient(0);
    std::set<std::string> const & kinds = patient.corruptions().kinds();
    for (ObjectShape const & shape : patient.corruptions().shape().objects()) {
        for (MemberShape const & member : shape.members) {
            std::string const name = std::string(shape.type->name()) + "::" + std::string(member.name());
            std::vector<std::string> wanted;
            switch (member.kind) {
            case Kind::value: wanted = {"changed"}; break;
            case Kind::reference: wanted = {"set", "led elsewhere", "cleared"}; break;
            case Kind::collection: wanted = {"added", "removed"}; break;
            case Kind::valueCollection:
                wanted = {"added", "removed", member.holdsReferences ? "led elsewhere" : "changed"};
                break;
            }
            // There is one local host only, and it is set.
            if (name == "NetworkTopologyV3::Status::localhost") wanted = {"led elsewhere", "cleared"};
            for (std::string const & how : wanted)
                EXPECT_TRUE(kinds.contains(name + ' ' + how)) << name << how;
        }
    }
}

}  // namespace
}  // namespace TopologyTools
