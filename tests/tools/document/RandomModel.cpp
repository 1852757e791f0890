#include "tests/tools/document/RandomModel.h"

#include <algorithm>
#include <array>

#include "tools/document/Resolver.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using Kind = MemberShape::Kind;
using KeyKind = MemberShape::KeyKind;
using Vel::GenericIf;

RandomModel::RandomModel(std::string_view rootType, unsigned seed)
    : random_(seed), shape_(*Vel::typeNode(rootType)), root_(Vel::construct(rootType, {})) {
    fill(root_, shape_.root(), "", true);
    fill(root_, shape_.root(), "", false);
    setAll(root_, shape_.root());
    for (std::size_t i = 0; i < members_.size(); ++i) setAll(members_[i].object, *members_[i].shape);
}

std::string const & RandomModel::name() {
    using namespace std::string_literals;
    static std::array const names{""s,
                                  "/"s,
                                  "~"s,
                                  "~0"s,
                                  "~1"s,
                                  "\0"s,
                                  "\""s,
                                  "\\"s,
                                  "\n\t\x1f"s,
                                  "\x7f"s,
                                  "\xc3\xa9"s,
                                  "\xf0\x9d\x84\x9e"s,
                                  "eth-1"s,
                                  "eth-10"s,
                                  "eth-2"s,
                                  "host"s,
                                  "port"s,
                                  "portGroup"s,
                                  "a/b/c~d"s,
                                  "null"s,
                                  " "s,
                                  "-"s,
                                  std::string(300, 'x')};
    return names[random_() % names.size()];
}

GenericIf RandomModel::value(Vel::VelType const & type) {
    if (&type == Vel::VelTypeOf<bool>::record) return GenericIf(chance(50));
    if (&type == Vel::VelTypeOf<unsigned>::record) return GenericIf(static_cast<unsigned>(random_()));
    if (type.kind() == Vel::VelType::Kind::enumeration) {
        return Vel::enumeratorFromNumber(type,
                                         type.enumerators()[random_() % type.enumerators().size()].value);
    }
    if (type.name() == "Keln::EthAddr") {
        std::string text = "00:00:00:00:00:00";
        for (char & c : text) {
            if (c == '0') c = "0123456789abcdef"[random_() % 16];
        }
        return type.fromStrRep(text);
    }
    return type.fromStrRep(name());
}

GenericIf RandomModel::object(Vel::VelType const & type) {
    std::vector<GenericIf const *> fitting;
    for (Member const & member : members_) {
        if (member.shape->type->isA(type)) fitting.push_back(&member.object);
    }
    return fitting.empty() ? GenericIf() : *fitting[random_() % fitting.size()];
}

GenericIf RandomModel::key(MemberShape const & collection) {
    Vel::VelType const & type = *collection.attr->keyType();
    switch (collection.keyKind) {
    case KeyKind::object: return object(type);
    case KeyKind::text:
        return type.fromStrRep("/host/" + escapeJsonPointerToken(name()) + "/port/" +
                               escapeJsonPointerToken(name()));
    default: return type.fromStrRep(name());
    }
}

void RandomModel::fill(GenericIf const & object, ObjectShape const & shape, std::string const & path,
                       bool keyedByName) {
    for (MemberShape const & member : shape.members) {
        if (member.kind != Kind::collection || (member.keyKind == KeyKind::name) != keyedByName) continue;
        for (unsigned i = random_() % 6; i != 0; --i)
            make(object, member, joinJsonPointer(path, member.name()));
    }
}

void RandomModel::make(GenericIf const & owner, MemberShape const & collection, std::string const & path) {
    GenericIf const key = this->key(collection);
    if (key.isNull() || holdsKey(owner, collection, key)) return;
    std::vector<GenericIf> arguments{key};
    for (Vel::VelArg const & argument : collection.attr->args().subspan(1)) {
        arguments.push_back(value(*argument.type));
    }
    GenericIf const made = owner.memberIs(collection.name(), arguments);
    std::string const place =
        collection.keyKind == KeyKind::object ? path : joinJsonPointer(path, collection.keyText(key));
    members_.push_back({made, collection.element, owner, &collection, key, place});
    fill(made, *collection.element, place, true);
}

void RandomModel::setAll(GenericIf const & object, ObjectShape const & shape) {
    for (MemberShape const & member : shape.members) {
        if (member.kind == Kind::value && member.isSettable && chance(70)) {
            object.attrIs(member.name(), value(member.type()));
        } else if (member.kind == Kind::reference && chance(70)) {
            object.attrIs(member.name(), this->object(member.type()));
        } else if (member.kind == Kind::valueCollection) {
            for (unsigned i = random_() % 4; i != 0; --i) {
                GenericIf const held =
                    member.holdsReferences ? this->object(member.type()) : value(member.type());
                if (member.keyIsTargetsName && held.isNull()) continue;
                GenericIf const key = member.keyIsTargetsName ? held.attr("name") : this->key(member);
                if (member.keyKind == KeyKind::object && key.isNull()) continue;
                object.memberIs(member.name(), {key, held});
            }
        }
    }
}

void RandomModel::removeSome() {
    for (Member const & member : members_) {
        if (member.collection->holdsTargets && chance(30)) {
            member.owner.memberDel(member.collection->name(), member.key);
        }
    }
}

}  // namespace TopologyTools
