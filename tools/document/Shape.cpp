#include "tools/document/Shape.h"

#include <algorithm>
#include <stdexcept>

#include "tools/document/ValueForm.h"

namespace TopologyTools {
namespace {

using Vel::VelAttr;
using Vel::VelType;

constexpr std::uint32_t everyCollectionOperation = Vel::kLookUp | Vel::kAdd | Vel::kRemove | Vel::kIterate;

bool isObjectType(VelType const & type) { return type.kind() == VelType::Kind::object; }

std::optional<std::size_t> makeArgument(VelAttr const & attr, VelAttr const * collection) {
    if (!collection) return std::nullopt;
    for (std::size_t i = 1; i < collection->args().size(); ++i) {
        if (collection->args()[i].name == attr.name()) return i;
    }
    return std::nullopt;
}

// Nothing for an attribute that documents do not show.
std::optional<MemberShape> memberShape(VelAttr const & attr, VelAttr const * collection) {
    MemberShape member{.attr = &attr, .kind = MemberShape::Kind::value};
    switch (attr.kind()) {
    case VelAttr::Kind::function: return std::nullopt;
    case VelAttr::Kind::value:
    case VelAttr::Kind::reference:
        member.isSettable = attr.offers(Vel::kSet);
        member.makeArgument = makeArgument(attr, collection);
        if (!attr.offers(Vel::kRead) || (!member.isSettable && !member.makeArgument)) return std::nullopt;
        if (attr.kind() == VelAttr::Kind::reference)
            member.kind = MemberShape::Kind::reference;
        else
            member.defaultValue = defaultOf(*attr.type());
        return member;
    case VelAttr::Kind::collection: member.kind = MemberShape::Kind::collection; break;
    case VelAttr::Kind::valueCollection:
        member.kind = MemberShape::Kind::valueCollection;
        member.holdsReferences = isObjectType(*attr.type());
        member.keyIsTargetsName = attr.keyIsValuesName();
        break;
    }
    if ((attr.operations() & everyCollectionOperation) != everyCollectionOperation) return std::nullopt;
    if (isObjectType(*attr.keyType())) {
        member.keyKind = MemberShape::KeyKind::object;
    } else if (attr.keyType() == &Vel::Name::_velType) {
        member.keyKind = MemberShape::KeyKind::name;
    } else {
        member.keyKind = MemberShape::KeyKind::text;
    }
    return member;
}

void requireMakeArguments(ObjectShape const & shape) {
    if (!shape.collection) return;
    for (Vel::VelArg const & argument : shape.collection->args().subspan(1)) {
        MemberShape const * const member = shape.member(argument.name);
        if (!member || !member->makeArgument || !member->defaultValue) {
            throw std::logic_error(std::string(shape.type->name()) + " has no value \"" + argument.name +
                                   "\" with a default, but is made with one");
        }
    }
}

}  // namespace

std::optional<Vel::GenericIf> MemberShape::key(std::string_view text) const {
    if (keyKind == KeyKind::name) return Vel::GenericIf(Vel::Name(text));
    return valueFromText(text, *attr->keyType());
}

std::string MemberShape::keyText(Vel::GenericIf const & key) const {
    return keyKind == KeyKind::name ? std::string(key.as<Vel::Name>().view()) : key.strRep();
}

std::string MemberShape::expectedEntry() const { return element ? nounFor(type()) : "an entry"; }

MemberShape const * ObjectShape::member(std::string_view name) const {
    auto const found =
        std::find_if(members.begin(), members.end(), [&](MemberShape const & m) { return m.name() == name; });
    return found == members.end() ? nullptr : &*found;
}

std::string ObjectShape::expectedMember() const {
    if (members.empty()) return "no member";
    std::string names;
    for (MemberShape const & member : members) {
        names += names.empty() ? "one of the members " : ", ";
        names += member.name();
    }
    return names;
}

DocumentShape::DocumentShape(VelType const & root) {
    objectShape(root, nullptr);
    findTargets();
}

ObjectShape & DocumentShape::objectShape(VelType const & type, VelAttr const * collection) {
    for (ObjectShape & known : objects_) {
        if (collection && known.collection == collection) return known;
    }
    ObjectShape & shape = objects_.emplace_back(ObjectShape{&type, collection, {}});
    std::vector<VelType const *> lineage;
    for (VelType const * t = &type; t; t = t->base()) lineage.insert(lineage.begin(), t);
    for (VelType const * const t : lineage) {
        for (VelAttr const & attr : t->attributes()) {
            if (auto const member = memberShape(attr, collection)) shape.members.push_back(*member);
        }
    }
    requireMakeArguments(shape);
    for (MemberShape & member : shape.members) {
        if (member.kind == MemberShape::Kind::collection) {
            member.element = &objectShape(member.type(), member.attr);
        }
    }
    return shape;
}

// A class may hold objects of its own class, so this goes on until nothing changes.
void DocumentShape::findTargets() {
    std::vector<VelType const *> referred;
    for (ObjectShape const & object : objects_) {
        for (MemberShape const & member : object.members) {
            if (member.kind == MemberShape::Kind::reference || member.holdsReferences) {
                referred.push_back(&member.type());
            }
            if (member.keyKind == MemberShape::KeyKind::object) referred.push_back(member.attr->keyType());
        }
    }
    auto const isReferred = [&](VelType const & type) {
        return std::any_of(referred.begin(), referred.end(),
                           [&](VelType const * wanted) { return type.isA(*wanted); });
    };
    for (bool changed = true; changed;) {
        changed = false;
        for (ObjectShape & object : objects_) {
            for (MemberShape & member : object.members) {
                if (!member.element || member.holdsTargets ||
                    member.keyKind == MemberShape::KeyKind::object) {
                    continue;
                }
                auto const & below = member.element->members;
                member.holdsTargets = isReferred(member.type()) ||
                                      std::any_of(below.begin(), below.end(),
                                                  [](MemberShape const & m) { return m.holdsTargets; });
                changed = changed || member.holdsTargets;
            }
        }
    }
}

std::string_view shortName(VelType const & type) {
    std::string_view const name = type.name();
    std::size_t const colons = name.rfind("::");
    return colons == std::string_view::npos ? name : name.substr(colons + 2);
}

std::string nounFor(VelType const & type) {
    std::string_view const name = shortName(type);
    return (name.find_first_of("AEIOUaeiou") == 0 ? "an " : "a ") + std::string(name);
}

}  // namespace TopologyTools
