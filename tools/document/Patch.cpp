#include "tools/document/Patch.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "tools/document/Resolver.h"
#include "tools/document/ValueApplier.h"
#include "tools/document/ValueChecker.h"
#include "tools/document/ValueComparer.h"
#include "tools/document/ValueForm.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using Vel::GenericIf;
using Kind = MemberShape::Kind;
using KeyKind = MemberShape::KeyKind;

enum class Op : std::uint8_t { add, remove, replace, test };

struct ModelPatcher::Operation {
    Op op;
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

constexpr std::pair<std::string_view, Op> ops[] = {
    {"add", Op::add}, {"remove", Op::remove}, {"replace", Op::replace}, {"test", Op::test}};

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

JsonValue const & requiredString(JsonValue const & operation, std::string_view name,
                                 std::string const & fileName) {
    JsonValue const & value = requiredMember(operation, name, fileName);
    if (value.isString()) return value;
    throw InputError(fileName, value.position(),
                     "expected a string as \"" + std::string(name) + "\"; found " + foundValue(value));
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r") == std::string_view::npos; }

}  // namespace

ModelPatcher::ModelPatcher(GenericIf root) : root_(std::move(root)), shape_(*root_.type()) {}

bool ModelPatcher::applyLine(std::string_view line, std::string const & fileName, std::size_t lineNumber) {
    if (isBlank(line)) return false;
    apply(parseJson(line, fileName, lineNumber), fileName);
    return true;
}

void ModelPatcher::apply(JsonValue const & json, std::string const & fileName) {
    JsonValue const & opName = requiredString(json, "op", fileName);
    auto const op = std::find_if(std::begin(ops), std::end(ops),
                                 [&](auto const & v) { return v.first == opName.string(); });
    if (op == std::end(ops)) {
        throw InputError(fileName, opName.position(),
                         "expected one of add, remove, replace, test as \"op\"; found " +
                             quotedText(opName.string()));
    }
    JsonValue const & path = requiredString(json, "path", fileName);
    Operation operation{op->second, fileName, path.string(), path.position(), {}};
    try {
        operation.tokens = parseJsonPointer(operation.path);
    } catch (JsonPointerError const & wrong) {
        throw InputError(fileName, operation.pathPosition, wrong.what());
    }
    if (operation.tokens.empty()) throw operation.error("a path below the root of the document", "\"\"");
    if (operation.op != Op::remove) operation.value = &requiredMember(json, "value", fileName);

    Place const place = this->place(operation);
    switch (operation.op) {
    case Op::add:
    case Op::replace: set(operation, place); break;
    case Op::remove: remove(operation, place); break;
    case Op::test: test(operation, place); break;
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
        owner = key ? member->lookUp(owner, *key) : GenericIf();
        if (owner.isNull())
            throw operation.errorAt(operation.pathUpTo(at + 2), member->expectedEntry(), "nothing");
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
    if (operation.op == Op::replace && !isThere) throw operation.error(collection.expectedEntry(), "nothing");
    checker.entry(*operation.value, collection, *place.key);

    ValueApplier applier(live);
    if (!collection.element) {
        applier.setEntry(place.owner, collection, *place.key, *operation.value);
    } else if (!isThere) {
        applier.make(place.owner, collection, *place.key, *operation.value);
    } else {
        if (collection.holdsTargets) {
            noteDeparting(collection.lookUp(place.owner, key), *collection.element, operation.path);
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
    if (collection.holdsTargets) {
        for (auto const & entry : place.owner.members(collection.name())) {
            noteDeparting(entry.object(), *collection.element,
                          joinJsonPointer(operation.path, collection.keyText(entry.key())));
        }
    }
    if (isKeyedByDeparted(collection)) departed_.clear();
    place.owner.call(std::string(collection.name()) + "DelAll", std::span<GenericIf const>());
}

void ModelPatcher::removeEntry(Operation const & operation, Place const & place) {
    MemberShape const & collection = *place.member;
    auto key = Resolver(root_, shape_).key(collection, *place.key);
    if (!key || !holdsKey(place.owner, collection, *key)) {
        key = isKeyedByDeparted(collection) ? takeDeparted(collection, *place.key) : std::nullopt;
        if (!key) throw operation.error(collection.expectedEntry(), "nothing");
    } else if (collection.holdsTargets) {
        noteDeparting(collection.lookUp(place.owner, *key), *collection.element, operation.path);
    }
    place.owner.operate({Vel::kRemove, collection.attr}, {&*key, 1});
}

void ModelPatcher::test(Operation const & operation, Place const & place) const {
    ValueComparer comparer(root_, shape_, operation.fileName, operation.path);
    MemberShape const & member = *place.member;
    if (!place.key) return comparer.member(place.owner, member, *operation.value);
    auto const key = Resolver(root_, shape_).key(member, *place.key);
    if (!key || !holdsKey(place.owner, member, *key)) {
        throw operation.error(member.expectedEntry(), "nothing");
    }
    comparer.entry(member.lookUp(place.owner, *key), member, *operation.value);
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
            !collection.lookUp(root_, object).isNull()) {
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
