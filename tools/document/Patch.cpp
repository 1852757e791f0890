#include "tools/document/Patch.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "tools/document/ModelRenderer.h"
#include "tools/document/Resolver.h"
#include "tools/document/ValueApplier.h"
#include "tools/document/ValueChecker.h"
#include "tools/document/ValueForm.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using Vel::GenericIf;
using Kind = MemberShape::Kind;
using KeyKind = MemberShape::KeyKind;

enum class Verb : std::uint8_t { add, remove, replace, test };

struct ModelPatcher::Operation {
    Verb verb;
    std::string const & fileName;
    std::string const & path;
    TextPosition pathPosition;
    std::vector<std::string> tokens;
    JsonValue const * value = nullptr;  // Null for remove.

    InputError error(std::string const & expected, std::string const & found) const {
        return errorAt(path, expected, found);
    }
    InputError errorAt(std::string const & pointer, std::string const & expected,
                       std::string const & found) const {
        return InputError(fileName, pathPosition, "expected " + expected + "; found " + found, pointer);
    }
    void requireSettable(MemberShape const & member) const {
        if (member.isSettable) return;
        throw error("an attribute that can be changed", "one that is given when the object is made");
    }
    std::string pathUpTo(std::size_t tokenCount) const {
        return formatJsonPointer({tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(tokenCount)});
    }
};

// Where a path leads: a member of an object, or what a collection holds, or may hold, under a key.
struct ModelPatcher::Place {
    GenericIf owner;
    MemberShape const * member;
    std::optional<std::string> key;
};

namespace {

constexpr std::pair<std::string_view, Verb> verbs[] = {
    {"add", Verb::add}, {"remove", Verb::remove}, {"replace", Verb::replace}, {"test", Verb::test}};

JsonValue const & requiredMember(JsonValue const & operation, std::string_view name,
                                 std::string const & fileName) {
    if (!operation.isObject()) {
        throw InputError(fileName, operation.position(),
                         "expected an object, one JSON Patch operation; found " + foundValue(operation));
    }
    if (JsonMember const * const member = operation.member(name)) return member->value;
    throw InputError(fileName, operation.position(),
                     "expected a JSON Patch operation with a member \"" + std::string(name) +
                         "\"; found none");
}

std::string const & requiredString(JsonValue const & operation, std::string_view name,
                                   std::string const & fileName) {
    JsonValue const & value = requiredMember(operation, name, fileName);
    if (value.isString()) return value.string();
    throw InputError(fileName, value.position(),
                     "expected a string as \"" + std::string(name) + "\"; found " + foundValue(value));
}

GenericIf lookUp(GenericIf const & owner, MemberShape const & collection, GenericIf const & key) {
    return owner.operate({Vel::kLookUp, collection.attr}, {&key, 1});
}

std::string nounFor(MemberShape const & collection) {
    return collection.element ? withArticle(shortName(collection.type())) : "an entry";
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r") == std::string_view::npos; }

// Compares a live model with what an operation expects there.
class Comparison {
public:
    Comparison(GenericIf const & root, DocumentShape const & shape, std::string const & fileName,
               std::string const & base)
        : root_(root), shape_(shape), resolver_(root, shape), fileName_(fileName), base_(base) {}

    void member(GenericIf const & owner, MemberShape const & member, JsonValue const & expected,
                PathStep const * at) {
        switch (member.kind) {
        case Kind::value: value(owner.operate({Vel::kRead, member.attr}, {}), member, expected, at); break;
        case Kind::reference: reference(owner.operate({Vel::kRead, member.attr}, {}), expected, at); break;
        case Kind::collection:
        case Kind::valueCollection: collection(owner, member, expected, at); break;
        }
    }

    void entry(GenericIf const & live, MemberShape const & collection, JsonValue const & expected,
               PathStep const * at) {
        if (collection.element)
            object(live, *collection.element, expected, at);
        else if (collection.holdsReferences)
            reference(live, expected, at);
        else
            value(live, collection, expected, at);
    }

private:
    [[noreturn]] void fail(JsonValue const & expected, std::string const & found, PathStep const * at) const {
        fail(expected.position(), foundValue(expected), found, at);
    }
    [[noreturn]] void fail(TextPosition position, std::string const & expected, std::string const & found,
                           PathStep const * at) const {
        throw InputError(fileName_, position, "test failed: expected " + expected + "; found " + found,
                         pointerTo(at, base_));
    }

    // The document's path of a live object. Only where a null, or nothing, is expected, or a test has failed,
    // is a walk over the model needed.
    std::optional<std::string> path(GenericIf const & object) {
        if (object.isNull()) return std::nullopt;
        if (!paths_) paths_.emplace(root_, shape_);
        return paths_->path(object);
    }
    std::string found(GenericIf const & object) {
        auto const pointer = path(object);
        return pointer ? quotedText(*pointer) : "null";
    }

    void value(GenericIf const & live, MemberShape const & member, JsonValue const & expected,
               PathStep const * at) {
        if (valueFromJson(expected, member.type()) == live) return;
        bool const isText =
            live.type() != Vel::VelTypeOf<bool>::record && live.type() != Vel::VelTypeOf<unsigned>::record;
        fail(expected, isText ? quotedText(live.strRep()) : live.strRep(), at);
    }

    void reference(GenericIf const & live, JsonValue const & expected, PathStep const * at) {
        if (expected.isString()) {
            try {
                if (!live.isNull() && resolver_.object(expected.string()) == live) return;
            } catch (JsonPointerError const &) {
                // Then it is not where the live object is.
            }
        } else if (expected.isNull() && !path(live)) {
            return;
        }
        fail(expected, found(live), at);
    }

    void object(GenericIf const & live, ObjectShape const & shape, JsonValue const & expected,
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

    void requireDefault(GenericIf const & owner, MemberShape const & member, TextPosition position,
                        PathStep const * at) {
        switch (member.kind) {
        case Kind::value: {
            GenericIf const live = owner.operate({Vel::kRead, member.attr}, {});
            if (live != member.defaultValue) fail(position, "nothing", quotedText(live.strRep()), at);
            break;
        }
        case Kind::reference: {
            GenericIf const live = owner.operate({Vel::kRead, member.attr}, {});
            if (auto const pointer = path(live)) fail(position, "nothing", quotedText(*pointer), at);
            break;
        }
        case Kind::collection:
        case Kind::valueCollection: requireNoOther(owner, member, nullptr, position, at); break;
        }
    }

    void collection(GenericIf const & owner, MemberShape const & member, JsonValue const & expected,
                    PathStep const * at) {
        requireObject(expected, at);
        for (JsonMember const & given : expected.members()) {
            PathStep const here{at, given.name};
            auto const key = resolver_.key(member, given.name);
            if (!key || !holdsKey(owner, member, *key)) {
                fail(given.position, foundValue(given.value), "nothing", &here);
            }
            entry(lookUp(owner, member, *key), member, given.value, &here);
        }
        requireNoOther(owner, member, &expected, expected.position(), at);
    }

    // Every entry that the document shows is a member of `expected`, or there is none.
    void requireNoOther(GenericIf const & owner, MemberShape const & member, JsonValue const * expected,
                        TextPosition position, PathStep const * at) {
        for (auto const & entry : owner.members(member.name())) {
            auto const key =
                member.keyKind == KeyKind::object ? path(entry.key()) : member.keyText(entry.key());
            if (!key || (expected && expected->member(*key))) continue;
            PathStep const here{at, *key};
            fail(position, "nothing", nounFor(member), &here);
        }
    }

    void requireObject(JsonValue const & expected, PathStep const * at) const {
        if (!expected.isObject()) fail(expected, "an object", at);
    }

    GenericIf const & root_;
    DocumentShape const & shape_;
    Resolver const resolver_;
    std::string const & fileName_;
    std::string const & base_;
    std::optional<ObjectPaths> paths_;
};

}  // namespace

ModelPatcher::ModelPatcher(GenericIf root) : root_(std::move(root)), shape_(*root_.type()) {}

bool ModelPatcher::applyLine(std::string_view line, std::string const & fileName, std::size_t lineNumber) {
    if (isBlank(line)) return false;
    apply(parseJson(line, fileName, lineNumber), fileName);
    return true;
}

void ModelPatcher::apply(JsonValue const & json, std::string const & fileName) {
    std::string const & verbName = requiredString(json, "op", fileName);
    auto const verb =
        std::find_if(std::begin(verbs), std::end(verbs), [&](auto const & v) { return v.first == verbName; });
    if (verb == std::end(verbs)) {
        throw InputError(fileName, json.member("op")->value.position(),
                         "expected one of add, remove, replace, test as \"op\"; found " +
                             quotedText(verbName));
    }
    std::string const & path = requiredString(json, "path", fileName);
    TextPosition const pathPosition = json.member("path")->value.position();
    Operation operation{verb->second, fileName, path, pathPosition, {}};
    try {
        operation.tokens = parseJsonPointer(path);
    } catch (JsonPointerError const & wrong) {
        throw InputError(fileName, pathPosition, wrong.what());
    }
    if (operation.tokens.empty()) throw operation.error("a path below the root of the document", "\"\"");
    if (operation.verb != Verb::remove) operation.value = &requiredMember(json, "value", fileName);

    Place const place = this->place(operation);
    switch (operation.verb) {
    case Verb::add:
    case Verb::replace: set(operation, place); break;
    case Verb::remove: remove(operation, place); break;
    case Verb::test: test(operation, place); break;
    }
}

ModelPatcher::Place ModelPatcher::place(Operation const & operation) const {
    Resolver const resolver(root_, shape_);
    std::vector<std::string> const & tokens = operation.tokens;
    GenericIf owner = root_;
    ObjectShape const * shape = &shape_.root();
    for (std::size_t at = 0;; at += 2) {
        MemberShape const * const member = shape->member(tokens[at]);
        if (!member) {
            throw operation.errorAt(operation.pathUpTo(at + 1), shape->expectedMember(),
                                    quotedText(tokens[at]));
        }
        if (at + 1 == tokens.size()) return {owner, member, std::nullopt};
        if (!member->isCollection()) {
            throw operation.error("the path to end at " + operation.pathUpTo(at + 1), "more");
        }
        if (at + 2 == tokens.size()) return {owner, member, tokens[at + 1]};
        if (!member->element) {
            throw operation.error("the path to end at " + operation.pathUpTo(at + 2), "more");
        }
        auto const key = resolver.key(*member, tokens[at + 1]);
        owner = key ? lookUp(owner, *member, *key) : GenericIf();
        if (owner.isNull()) throw operation.errorAt(operation.pathUpTo(at + 2), nounFor(*member), "nothing");
        shape = member->element;
    }
}

void ModelPatcher::set(Operation const & operation, Place const & place) {
    if (place.key)
        setEntry(operation, place);
    else
        setMember(operation, place);
}

void ModelPatcher::setMember(Operation const & operation, Place const & place) {
    MemberShape const & member = *place.member;
    if (!member.isCollection()) operation.requireSettable(member);
    Resolver planned(root_, shape_);
    planned.plannedIs(operation.tokens, operation.value);
    ValueChecker(operation.fileName, operation.path, planned).member(*operation.value, member);

    if (member.isCollection()) removeAll(operation, place);
    Resolver const live(root_, shape_);
    ValueApplier applier(live);
    applier.set(place.owner, member, *operation.value);
    applier.finish();
}

void ModelPatcher::setEntry(Operation const & operation, Place const & place) {
    MemberShape const & collection = *place.member;
    Resolver planned(root_, shape_);
    planned.plannedIs(operation.tokens, operation.value);
    ValueChecker const checker(operation.fileName, operation.path, planned);
    checker.key(*place.key, operation.pathPosition, collection);
    Resolver const live(root_, shape_);
    GenericIf const key = *live.key(collection, *place.key);
    bool const isThere = holdsKey(place.owner, collection, key);
    if (operation.verb == Verb::replace && !isThere) throw operation.error(nounFor(collection), "nothing");
    checker.entry(*operation.value, collection, *place.key);

    ValueApplier applier(live);
    if (!collection.element) {
        applier.setEntry(place.owner, collection, *place.key, *operation.value);
    } else if (!isThere) {
        applier.make(place.owner, collection, *place.key, *operation.value);
    } else {
        if (collection.holdsTargets) {
            noteDeparting(lookUp(place.owner, collection, key), *collection.element, operation.path);
        }
        GenericIf const made = applier.makeApart(collection, key, *operation.value);
        place.owner.operate({Vel::kAdd, collection.attr}, {&made, 1});
    }
    applier.finish();
}

void ModelPatcher::remove(Operation const & operation, Place const & place) {
    MemberShape const & member = *place.member;
    if (place.key) return removeEntry(operation, place);
    if (member.isCollection()) return removeAll(operation, place);
    operation.requireSettable(member);
    if (member.kind == Kind::value && !member.defaultValue) {
        throw operation.error("an attribute that has a default", "one that has none");
    }
    GenericIf const nothing = member.defaultValue.value_or(GenericIf());
    place.owner.operate({Vel::kSet, member.attr}, {&nothing, 1});
}

void ModelPatcher::removeAll(Operation const & operation, Place const & place) {
    MemberShape const & collection = *place.member;
    if (collection.element) {
        for (auto const & entry : place.owner.members(collection.name())) {
            if (!collection.holdsTargets) break;
            noteDeparting(entry.object(), *collection.element,
                          joinJsonPointer(operation.path, collection.keyText(entry.key())));
        }
        if (isKeyedByDeparted(collection)) departed_.clear();
    }
    place.owner.call(std::string(collection.name()) + "DelAll", std::span<GenericIf const>());
}

void ModelPatcher::removeEntry(Operation const & operation, Place const & place) {
    MemberShape const & collection = *place.member;
    auto key = Resolver(root_, shape_).key(collection, *place.key);
    if (!key || !holdsKey(place.owner, collection, *key)) {
        key = isKeyedByDeparted(collection) ? takeDeparted(collection, *place.key) : std::nullopt;
        if (!key) throw operation.error(nounFor(collection), "nothing");
    } else if (collection.holdsTargets) {
        noteDeparting(lookUp(place.owner, collection, *key), *collection.element, operation.path);
    }
    place.owner.operate({Vel::kRemove, collection.attr}, {&*key, 1});
}

void ModelPatcher::test(Operation const & operation, Place const & place) const {
    Comparison comparison(root_, shape_, operation.fileName, operation.path);
    MemberShape const & member = *place.member;
    if (!place.key) return comparison.member(place.owner, member, *operation.value, nullptr);
    auto const key = Resolver(root_, shape_).key(member, *place.key);
    if (!key || !holdsKey(place.owner, member, *key)) throw operation.error(nounFor(member), "nothing");
    comparison.entry(lookUp(place.owner, member, *key), member, *operation.value, nullptr);
}

bool ModelPatcher::isKeyedByDeparted(MemberShape const & collection) const {
    auto const & members = shape_.root().members;
    return collection.element && collection.keyKind == KeyKind::object && &collection >= members.data() &&
           &collection < members.data() + members.size();
}

void ModelPatcher::noteDeparting(GenericIf const & object, ObjectShape const & shape,
                                 std::string const & path) {
    for (MemberShape const & collection : shape_.root().members) {
        if (isKeyedByDeparted(collection) && shape.type->isA(*collection.attr->keyType()) &&
            !lookUp(root_, collection, object).isNull()) {
            departed_[path].push_back(object);
        }
    }
    for (MemberShape const & member : shape.members) {
        if (!member.holdsTargets) continue;
        for (auto const & entry : object.members(member.name())) {
            noteDeparting(entry.object(), *member.element,
                          joinJsonPointer(joinJsonPointer(path, member.name()), member.keyText(entry.key())));
        }
    }
}

std::optional<GenericIf> ModelPatcher::takeDeparted(MemberShape const & collection,
                                                    std::string const & path) {
    auto const found = departed_.find(path);
    if (found == departed_.end()) return std::nullopt;
    std::optional<GenericIf> taken;
    while (!taken && !found->second.empty()) {
        if (holdsKey(root_, collection, found->second.front())) taken = found->second.front();
        found->second.pop_front();
    }
    if (found->second.empty()) departed_.erase(found);
    return taken;
}

}  // namespace TopologyTools
