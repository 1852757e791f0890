#include "tools/document/ValueChecker.h"

#include <vector>

#include "tools/document/ValueForm.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {

void ValueChecker::object(JsonValue const & json, ObjectShape const & shape, PathStep const * at) const {
    requireObject(json, at);
    for (JsonMember const & given : json.members()) {
        PathStep const here{at, given.name};
        MemberShape const * const known = shape.member(given.name);
        if (!known) {
            throw error(given.position, shape.expectedMember(), quotedText(given.name), &here);
        }
        member(given.value, *known, &here);
    }
}

void ValueChecker::member(JsonValue const & json, MemberShape const & member, PathStep const * at) const {
    switch (member.kind) {
    case MemberShape::Kind::value:
        if (!valueFromJson(json, member.type())) {
            throw error(json.position(), expectedValue(member.type()), foundValue(json), at);
        }
        break;
    case MemberShape::Kind::reference: reference(json, member.type(), at); break;
    case MemberShape::Kind::collection:
    case MemberShape::Kind::valueCollection:
        requireObject(json, at);
        for (JsonMember const & given : json.members()) {
            PathStep const here{at, given.name};
            key(given.name, given.position, member, &here);
            entry(given.value, member, given.name, &here);
        }
        break;
    }
}

void ValueChecker::entry(JsonValue const & json, MemberShape const & collection, std::string_view key,
                         PathStep const * at) const {
    if (collection.element) return object(json, *collection.element, at);
    if (!collection.holdsReferences) {
        if (!valueFromJson(json, collection.type())) {
            throw error(json.position(), expectedValue(collection.type()), foundValue(json), at);
        }
        return;
    }
    reference(json, collection.type(), at);
    if (!collection.keyIsTargetsName || json.isNull()) return;
    if (std::string const name = parseJsonPointer(json.string()).back(); name != key) {
        throw error(json.position(), "a target named " + quotedText(key) + ", as the key is",
                    quotedText(json.string()), at);
    }
}

void ValueChecker::key(std::string_view key, TextPosition position, MemberShape const & collection,
                       PathStep const * at) const {
    Vel::VelType const & type = *collection.attr->keyType();
    if (collection.keyKind == MemberShape::KeyKind::object) {
        target(std::string(key), position, type, "a JSON Pointer to " + nounFor(type) + " as key", at);
    } else {
        // Two texts for one key would be two members in the document and one in the model.
        auto const known = collection.key(key);
        if (!known || collection.keyText(*known) != key) {
            throw error(position, expectedValue(type) + " as key", quotedText(key), at);
        }
    }
}

InputError ValueChecker::error(TextPosition position, std::string const & expected, std::string const & found,
                               PathStep const * at) const {
    return InputError(fileName_, position, "expected " + expected + "; found " + found, pointerTo(at, base_));
}

void ValueChecker::requireObject(JsonValue const & json, PathStep const * at) const {
    if (!json.isObject()) throw error(json.position(), "an object", foundValue(json), at);
}

void ValueChecker::reference(JsonValue const & json, Vel::VelType const & wanted, PathStep const * at) const {
    if (json.isNull()) return;
    std::string const expected = "a JSON Pointer to " + nounFor(wanted) + ", or null";
    if (!json.isString()) throw error(json.position(), expected, foundValue(json), at);
    target(json.string(), json.position(), wanted, expected, at);
}

void ValueChecker::target(std::string const & text, TextPosition position, Vel::VelType const & wanted,
                          std::string const & expected, PathStep const * at) const {
    std::vector<std::string> tokens;
    try {
        tokens = parseJsonPointer(text);
    } catch (JsonPointerError const & wrong) {
        throw InputError(fileName_, position, "expected " + expected + "; " + wrong.what(),
                         pointerTo(at, base_));
    }
    Target const found = resolver_.target(tokens);
    switch (found.kind) {
    case Target::Kind::absent:
        throw error(position, expected, quotedText(text) + ", where the document has nothing", at);
    case Target::Kind::noObject:
        throw error(position, expected, quotedText(text) + ", which is no object of a collection", at);
    case Target::Kind::object:
        if (!found.type->isA(wanted)) {
            throw error(position, expected, quotedText(text) + ", which is " + nounFor(*found.type), at);
        }
    }
}

}  // namespace TopologyTools
