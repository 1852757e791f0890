#include "tools/document/ValueApplier.h"

#include <array>
#include <cstddef>

#include "tools/document/ValueForm.h"

namespace TopologyTools {
namespace {

using Vel::GenericIf;
using Kind = MemberShape::Kind;

// What the object of `json` has for `member`, given or by default.
GenericIf valueFor(MemberShape const & member, JsonValue const & json) {
    JsonMember const * const given = json.member(member.name());
    return given ? *valueFromJson(given->value, member.type()) : *member.defaultValue;
}

}  // namespace

void ValueApplier::fill(GenericIf const & object, ObjectShape const & shape, JsonValue const & json) {
    if (json.members().empty()) return;
    filled_.push_back({object, &shape, &json});
    for (MemberShape const & member : shape.members) {
        if (member.kind != Kind::collection) continue;
        JsonMember const * const given = json.member(member.name());
        if (!given) continue;
        if (member.keyKind == MemberShape::KeyKind::object) {
            waiting_.push_back({object, &member, &given->value});
        } else {
            makeAll(object, member, given->value);
        }
    }
}

void ValueApplier::makeAll(GenericIf const & owner, MemberShape const & collection, JsonValue const & json) {
    for (JsonMember const & given : json.members()) make(owner, collection, given.name, given.value);
}

void ValueApplier::make(GenericIf const & owner, MemberShape const & collection, std::string_view key,
                        JsonValue const & json) {
    auto const known = resolver_.key(collection, key);
    if (!known) return;
    std::vector<GenericIf> arguments(collection.attr->args().size());
    arguments.front() = *known;
    for (MemberShape const & member : collection.element->members) {
        if (member.makeArgument) arguments[*member.makeArgument] = valueFor(member, json);
    }
    fill(owner.operate({Vel::kAdd, collection.attr}, arguments), *collection.element, json);
}

GenericIf ValueApplier::makeApart(MemberShape const & collection, GenericIf const & key,
                                  JsonValue const & json) {
    ObjectShape const & shape = *collection.element;
    std::vector<GenericIf> arguments;
    for (Vel::VelArg const & argument : shape.type->ctorArgs()) {
        bool const isKey = argument.name == collection.attr->keyName();
        arguments.push_back(isKey ? key : valueFor(*shape.member(argument.name), json));
    }
    GenericIf object = Vel::construct(*shape.type, arguments);
    fill(object, shape, json);
    return object;
}

void ValueApplier::set(GenericIf const & owner, MemberShape const & member, JsonValue const & json) {
    switch (member.kind) {
    case Kind::value:
    case Kind::reference: {
        GenericIf const value =
            member.kind == Kind::value ? *valueFromJson(json, member.type()) : reference(json);
        owner.operate({Vel::kSet, member.attr}, {&value, 1});
        break;
    }
    case Kind::collection: makeAll(owner, member, json); break;
    case Kind::valueCollection:
        for (JsonMember const & given : json.members()) setEntry(owner, member, given.name, given.value);
        break;
    }
}

void ValueApplier::setEntry(GenericIf const & owner, MemberShape const & collection, std::string_view key,
                            JsonValue const & json) {
    auto const known = resolver_.key(collection, key);
    if (!known) return;
    GenericIf const value =
        collection.holdsReferences ? reference(json) : *valueFromJson(json, collection.type());
    std::array const arguments{*known, value};
    owner.operate({Vel::kAdd, collection.attr}, arguments);
}

void ValueApplier::finish() {
    // What is made on the way is appended.
    for (std::size_t i = 0; i < waiting_.size(); ++i) {
        Waiting const next = waiting_[i];
        makeAll(next.owner, *next.collection, *next.json);
    }
    auto const setAll = [&](auto const & chosen) {
        for (Filled const & filled : filled_) {
            for (MemberShape const & member : filled.shape->members) {
                if (!chosen(member)) continue;
                if (JsonMember const * const given = filled.json->member(member.name())) {
                    set(filled.object, member, given->value);
                }
            }
        }
    };
    // What made an object is not set again.
    setAll([](MemberShape const & member) { return member.kind == Kind::value && !member.makeArgument; });
    setAll([](MemberShape const & member) {
        return member.kind == Kind::reference || member.kind == Kind::valueCollection;
    });
    waiting_.clear();
    filled_.clear();
}

GenericIf ValueApplier::reference(JsonValue const & json) const {
    return json.isNull() ? GenericIf() : resolver_.object(json.string());
}

}  // namespace TopologyTools
