#include "platform/Vel/GenericIf.h"

#include <algorithm>

#include "platform/Vel/PtrInterface.h"

namespace Vel {

namespace {

char const * operationName(AttributeOperation operation) {
    switch (operation) {
    case kRead: return "read";
    case kSet: return "set";
    case kCall: return "call";
    case kLookUp: return "look up";
    case kAdd: return "add";
    case kRemove: return "remove";
    case kIterate: return "iterate";
    }
    return "operate on";
}

std::string qualifiedName(VelAttr const & attr) {
    return std::string(attr.owner()->name()) + "::" + std::string(attr.name());
}

void requireConstructible(VelType const & type) {
    if (!type.isConstructible()) {
        throw OpNotSupportedException(std::string(type.name()) + " cannot be constructed by name");
    }
}

}  // namespace

bool GenericIf::isConst() const noexcept {
    auto const * held = std::get_if<Object>(&value_);
    return held && held->isConst;
}

VelType const * GenericIf::type() const noexcept {
    switch (value_.index()) {
    case 1: return VelTypeOf<bool>::record;
    case 2: return VelTypeOf<unsigned int>::record;
    case 3: return VelTypeOf<Name>::record;
    case 4: return VelTypeOf<String>::record;
    case 5: return std::get<Enumerator>(value_).type;
    case 6: return std::get<Other>(value_).type;
    case 7: return std::get<Object>(value_).object->fwkType();
    default: return nullptr;
    }
}

std::string GenericIf::typeName() const {
    if (isNull()) return "null";
    VelType const * const known = type();
    return known ? std::string(known->name()) : "an object without a type record";
}

std::string GenericIf::strRep() const {
    VelType const * const known = type();
    if (!known) throw RangeException(typeName() + " has no text representation");
    return known->strRep(*this);
}

std::uint32_t GenericIf::enumeratorValue() const {
    if (auto const * held = std::get_if<Enumerator>(&value_)) return held->value;
    throw RangeException("expected an enumerator, found " + typeName());
}

bool operator==(GenericIf const & a, GenericIf const & b) { return a.value_ == b.value_; }

void GenericIf::throwWrongType(VelType const * expected) const {
    std::string text = "expected " + std::string(expected->name()) + ", found " + typeName();
    if (isConst() && type() && type()->isA(*expected)) text += ", which is const here";
    throw RangeException(text);
}

GenericIf::Object const & GenericIf::object(char const * operation) const {
    if (auto const * held = std::get_if<Object>(&value_)) return *held;
    throw RangeException("expected an object to " + std::string(operation) + ", found " + typeName());
}

VelAttr const & GenericIf::attribute(AttributeOperation operation, std::string_view name) const {
    Object const & held = object(operationName(operation));
    VelType const * const known = held.object->fwkType();
    VelAttr const * const attr = known ? known->attribute(name) : nullptr;
    if (!attr) throw OpNotSupportedException(typeName() + " has no attribute \"" + std::string(name) + "\"");
    return *attr;
}

GenericIf GenericIf::operate(AttributeOp const & op, std::span<GenericIf const> args) const {
    // A copy: a follower that the operation calls may give this wrapper another object.
    Object const held = object(operationName(op.operation));
    auto const entry = op.attr->owner()->record().genericIfAttributeOp;
    GenericIf result;
    bool done = false;
    if (entry) entry(held.object.get(), held.isConst, op, &args, &result, &done);
    if (!done) GenericIfImpl::throwOpNotSupportedException(op);
    // What is reached through an object that cannot be changed cannot be changed either.
    if (held.isConst && op.operation != kCall) result.constIs();
    return result;
}

void GenericIf::constIs() noexcept {
    if (auto * const held = std::get_if<Object>(&value_)) held->isConst = true;
}

GenericIf GenericIf::attr(std::string_view name) const {
    return operate({kRead, &attribute(kRead, name)}, {});
}

void GenericIf::attrIs(std::string_view name, GenericIf const & value) const {
    operate({kSet, &attribute(kSet, name)}, {&value, 1});
}

GenericIf GenericIf::call(std::string_view function, std::span<GenericIf const> args) const {
    return operate({kCall, &attribute(kCall, function)}, args);
}

GenericIf GenericIf::member(std::string_view collection, GenericIf const & key) const {
    return operate({kLookUp, &attribute(kLookUp, collection)}, {&key, 1});
}

void GenericIf::memberIs(std::string_view collection, GenericIf const & object) const {
    operate({kAdd, &attribute(kAdd, collection)}, {&object, 1});
}

GenericIf GenericIf::memberIs(std::string_view collection, std::span<GenericIf const> args) const {
    return operate({kAdd, &attribute(kAdd, collection)}, args);
}

GenericIf GenericIf::memberDel(std::string_view collection, GenericIf const & key) const {
    return operate({kRemove, &attribute(kRemove, collection)}, {&key, 1});
}

GenericIf::Members GenericIf::iterate(std::string_view collection, GenericIf const * fromKey) const {
    VelAttr const & attr = attribute(kIterate, collection);
    Object const & held = object(operationName(kIterate));
    VelType::Record const & record = attr.owner()->record();
    if (!attr.offers(kIterate) || !record.genericIfIterator || !record.genericIfIteratorKey) {
        GenericIfImpl::throwOpNotSupportedException({kIterate, &attr});
    }
    IteratorVTable const * table = nullptr;
    void * const iterator = fromKey ? record.genericIfIteratorKey(held.object.get(), &attr, *fromKey, &table)
                                    : record.genericIfIterator(held.object.get(), &attr, &table);
    return Members(held.isConst, iterator, table);
}

GenericIf::Members GenericIf::members(std::string_view collection) const {
    return iterate(collection, nullptr);
}

GenericIf::Members GenericIf::members(std::string_view collection, GenericIf const & fromKey) const {
    return iterate(collection, &fromKey);
}

GenericIf enumeratorFromNumber(VelType const & type, std::uint32_t value) {
    return GenericIf(GenericIf::Enumerator{&type, value});
}

GenericIf construct(VelType const & type, std::span<GenericIf const> args) {
    requireConstructible(type);
    return type.record().genericIfFromCtorArgs(args);
}

GenericIf construct(std::string_view typeName,
                    std::initializer_list<std::pair<std::string_view, GenericIf>> args) {
    VelType const * const type = typeNode(typeName);
    if (!type) throw RangeException("unknown type \"" + std::string(typeName) + "\"");
    requireConstructible(*type);
    std::string const where = "the constructor of " + std::string(typeName);
    std::span<VelArg const> const table = type->ctorArgs();
    std::vector<GenericIf> ordered(table.size());
    std::vector<bool> given(table.size());
    for (auto const & [name, value] : args) {
        std::size_t i = 0;
        while (i < table.size() && table[i].name != name) ++i;
        if (i == table.size()) throw RangeException(where + " has no argument \"" + std::string(name) + "\"");
        if (given[i]) GenericIfImpl::throwArgument(where, table[i].name, "is given twice");
        given[i] = true;
        ordered[i] = value;
    }
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (!given[i]) GenericIfImpl::throwArgument(where, table[i].name, "is missing");
    }
    return construct(*type, ordered);
}

namespace GenericIfImpl {

void throwOpNotSupportedException(AttributeOp const & op) {
    throw OpNotSupportedException("cannot " + std::string(operationName(op.operation)) + " " +
                                  qualifiedName(*op.attr));
}

void throwArgument(std::string_view where, char const * argument, char const * problem) {
    throw RangeException("argument \"" + std::string(argument) + "\" of " + std::string(where) + ": " +
                         problem);
}

void checkArgumentCount(VelAttr const & attr, std::span<GenericIf const> args, std::size_t expected) {
    checkArgumentCount(qualifiedName(attr), attr.args(), args, expected);
}

void checkArgumentCount(std::string_view where, std::span<VelArg const> table,
                        std::span<GenericIf const> args, std::size_t expected) {
    if (args.size() == expected) return;
    if (args.size() < expected && args.size() < table.size()) {
        throwArgument(where, table[args.size()].name, "is missing");
    }
    std::string names;
    for (VelArg const & argument : table.first(std::min(expected, table.size()))) {
        names += (names.empty() ? " (" : ", ") + std::string(argument.name);
    }
    if (!names.empty()) names += ')';
    throw RangeException(std::string(where) + " takes " + std::to_string(expected) +
                         (expected == 1 ? " argument" : " arguments") + names + ", found " +
                         std::to_string(args.size()));
}

void attributeOp(void * object, bool isConst, AttributeOp const & op, void * arguments, void * result,
                 bool * done) {
    bool const offered = isConst ? op.attr->offersOnConst(op.operation) : op.attr->offers(op.operation);
    // Walks have entry points of their own.
    if (!offered || !op.attr->function() || op.operation == kIterate) throwOpNotSupportedException(op);
    *static_cast<GenericIf *>(result) =
        op.attr->function()(*static_cast<PtrInterface *>(object), op,
                            *static_cast<std::span<GenericIf const> const *>(arguments));
    *done = true;
}

void * iterator(void * object, VelAttr const * attr, IteratorVTable const ** table) {
    if (!attr->iterator()) throwOpNotSupportedException({kIterate, attr});
    return attr->iterator()(*static_cast<PtrInterface *>(object), nullptr, table);
}

void * iteratorKey(void * object, VelAttr const * attr, GenericIf const & key,
                   IteratorVTable const ** table) {
    if (!attr->iterator()) throwOpNotSupportedException({kIterate, attr});
    try {
        return attr->iterator()(*static_cast<PtrInterface *>(object), &key, table);
    } catch (RangeException const & wrong) {
        throwArgument(qualifiedName(*attr), attr->keyName().data(), wrong.what());
    }
}

GenericIf enumeratorFromStrRep(VelType const & type, std::string_view text) {
    std::string expected;
    for (VelEnumerator const & enumerator : type.enumerators()) {
        if (text == enumerator.name) return enumeratorFromNumber(type, enumerator.value);
        expected += (expected.empty() ? "" : ", ") + std::string(enumerator.name);
    }
    throw RangeException("expected one of " + expected + "; found \"" + std::string(text) + "\"");
}

std::string enumeratorToStrRep(GenericIf const & value) {
    std::uint32_t const number = value.enumeratorValue();
    for (VelEnumerator const & enumerator : value.type()->enumerators()) {
        if (enumerator.value == number) return enumerator.name;
    }
    return std::to_string(number);
}

}  // namespace GenericIfImpl

}  // namespace Vel
