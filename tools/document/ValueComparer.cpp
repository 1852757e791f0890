#include "tools/document/ValueComparer.h"

#include "tools/document/ValueForm.h"
#include "tools/json/InputError.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using Vel::GenericIf;
using Kind = MemberShape::Kind;

void ValueComparer::member(GenericIf const & owner, MemberShape const & member, JsonValue const & expected,
                           PathStep const * at) {
    switch (member.kind) {
    case Kind::value: value(member.read(owner), member, expected, at); break;
    case Kind::reference: reference(member.read(owner), expected, at); break;
    case Kind::collection:
    case Kind::valueCollection: collection(owner, member, expected, at); break;
    }
}

void ValueComparer::entry(GenericIf const & live, MemberShape const & collection, JsonValue const & expected,
                          PathStep const * at) {
    if (collection.element)
        object(live, *collection.element, expected, at);
    else if (collection.holdsReferences)
        reference(live, expected, at);
    else
        value(live, collection, expected, at);
}

void ValueComparer::fail(JsonValue const & expected, std::string const & found, PathStep const * at) const {
    fail(expected.position(), foundValue(expected), found, at);
}

void ValueComparer::fail(TextPosition position, std::string const & expected, std::string const & found,
                         PathStep const * at) const {
    throw InputError(fileName_, position, "test failed: expected " + expected + "; found " + found,
                     pointerTo(at, base_));
}

std::optional<std::string> ValueComparer::path(GenericIf const & object) {
    if (object.isNull()) return std::nullopt;
    if (!paths_) paths_.emplace(root_, shape_);
    return paths_->path(object);
}

void ValueComparer::value(GenericIf const & live, MemberShape const & member, JsonValue const & expected,
                          PathStep const * at) const {
    if (valueFromJson(expected, member.type()) != live) fail(expected, foundValue(live), at);
}

void ValueComparer::reference(GenericIf const & live, JsonValue const & expected, PathStep const * at) {
    if (expected.isString()) {
        try {
            if (!live.isNull() && resolver_.object(expected.string()) == live) return;
        } catch (JsonPointerError const &) {
            // Then it is not where the live object is.
        }
    } else if (expected.isNull() && !path(live)) {
        return;
    }
    auto const pointer = path(live);
    fail(expected, pointer ? quotedText(*pointer) : "null", at);
}

void ValueComparer::object(GenericIf const & live, ObjectShape const & shape, JsonValue const & expected,
                           PathStep const * at) {
    requireObject(expected, at);
    for (JsonMember const & given : expected.members()) {
        PathStep const here{at, given.name};
        MemberShape const * const known = shape.member(given.name);
        if (!known) fail(given.position, foundValue(given.value), "nothing", &here);
        member(live, *known, given.value, &here);
    }
    for (MemberShape const & member : shape.members) {
        PathStep const here{at, member.name()};
        if (!expected.member(member.name())) requireDefault(live, member, expected.position(), &here);
    }
}

void ValueComparer::collection(GenericIf const & owner, MemberShape const & member,
                               JsonValue const & expected, PathStep const * at) {
    requireObject(expected, at);
    for (JsonMember const & given : expected.members()) {
        PathStep const here{at, given.name};
        auto const key = resolver_.key(member, given.name);
        if (!key || !holdsKey(owner, member, *key)) {
            fail(given.position, foundValue(given.value), "nothing", &here);
        }
        entry(member.lookUp(owner, *key), member, given.value, &here);
    }
    requireNoOther(owner, member, &expected, expected.position(), at);
}

void ValueComparer::requireObject(JsonValue const & expected, PathStep const * at) const {
    if (!expected.isObject()) fail(expected, "an object", at);
}

void ValueComparer::requireDefault(GenericIf const & owner, MemberShape const & member, TextPosition position,
                                   PathStep const * at) {
    switch (member.kind) {
    case Kind::value: {
        GenericIf const live = member.read(owner);
        if (live != member.defaultValue) fail(position, "nothing", foundValue(live), at);
        break;
    }
    case Kind::reference:
        if (auto const pointer = path(member.read(owner))) {
            fail(position, "nothing", quotedText(*pointer), at);
        }
        break;
    case Kind::collection:
    case Kind::valueCollection: requireNoOther(owner, member, nullptr, position, at); break;
    }
}

void ValueComparer::requireNoOther(GenericIf const & owner, MemberShape const & member,
                                   JsonValue const * expected, TextPosition position, PathStep const * at) {
    for (auto const & entry : owner.members(member.name())) {
        auto const key =
            member.keyKind == MemberShape::KeyKind::object ? path(entry.key()) : member.keyText(entry.key());
        if (!key || (expected && expected->member(*key))) continue;
        PathStep const here{at, *key};
        fail(position, "nothing", member.expectedEntry(), &here);
    }
}

}  // namespace TopologyTools
