// Type records: what generic tools know of a class.
//
// A record lists the attributes of a class and points to the entry points through which values are read,
// written, called, walked and constructed without compiled knowledge of the class. Records are constants with
// static storage; a class names its own `_velType`. GenericIf.h is the interface over them, VelAttrs.h builds
// the tables.
//
// Registration
//     A `TypeRegistration` with static storage registers a record while its library is loaded. Static
//     initialisers of several files may register and look up in any order.
#pragma once

#include <bit>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"

// Where the name of a type stands for those who list the types of a library without loading it.
#define VEL_TYPE_NAME __attribute__((section(".vel.type")))

namespace Vel {

class GenericIf;
class GenericIterator;
class PtrInterface;
class VelAttr;
class VelType;
struct AttributeOp;
struct IteratorVTable;

// The operations of the generic interface, as bits.
enum AttributeOperation : std::uint32_t {
    kRead = 1,
    kSet = 2,
    kCall = 4,
    kLookUp = 8,
    kAdd = 16,
    kRemove = 32,
    kIterate = 64,
};

// One argument of a function, of a constructor, or of the making of a collection's member.
struct VelArg {
    char const * name;
    VelType const * type;
};

// One enumerator.
struct VelEnumerator {
    char const * name;
    std::uint32_t value;
};

class VelAttr {
public:
    enum class Kind : std::uint8_t {
        value,            // a plain value
        reference,        // another object, or null
        function,         // a call
        collection,       // member objects, each under a key of its own
        valueCollection,  // a map from keys to values or references
    };
    using Function = GenericIf (*)(PtrInterface & object, AttributeOp const & op,
                                   std::span<GenericIf const> args);
    // A new iterator at the first member, or, with a key, at the member of that key or the end.
    using IteratorFunction = void * (*)(PtrInterface & object, GenericIf const * fromKey,
                                        IteratorVTable const ** table);

    struct Record {
        char const * name;
        VelType const * owner;
        VelType const * type;  // Of the value, of a function's result, of a collection's members.
        VelType const * keyType = nullptr;
        char const * keyName = nullptr;
        std::span<VelArg const> args = {};
        std::uint32_t index;
        Kind kind;
        std::uint32_t operations;
        // Where the record's entry points dispatch to; null where they know the attribute by its index.
        Function function = nullptr;
        IteratorFunction iterator = nullptr;
        bool callableOnConst = false;  // Of a function: whether an object that cannot be changed offers it.
        bool keyIsValuesName = false;
        bool immutable = false;
    };

    constexpr VelAttr(Record const & record) noexcept : record_(record) {}

    std::string_view name() const noexcept { return record_.name; }
    VelType const * owner() const noexcept { return record_.owner; }
    VelType const * type() const noexcept { return record_.type; }
    // Null but for collections.
    VelType const * keyType() const noexcept { return record_.keyType; }
    // Empty but for collections.
    std::string_view keyName() const noexcept {
        return record_.keyName ? record_.keyName : std::string_view();
    }
    // Of a function: its arguments. Of a collection: what makes a member, the key first.
    std::span<VelArg const> args() const noexcept { return record_.args; }
    std::uint32_t index() const noexcept { return record_.index; }
    // Of a value or reference: whether the object has been made with it and keeps it.
    bool isImmutable() const noexcept { return record_.immutable; }
    Kind kind() const noexcept { return record_.kind; }
    // Of a value collection: whether an entry stands under the name of the object that it holds, and under no
    // other key.
    bool keyIsValuesName() const noexcept { return record_.keyIsValuesName; }
    // Which of AttributeOperation the attribute offers.
    std::uint32_t operations() const noexcept { return record_.operations; }
    // False also for what is not one operation.
    bool offers(AttributeOperation operation) const noexcept {
        return std::has_single_bit(std::uint32_t{operation}) && (record_.operations & operation) != 0;
    }
    // Whether an object that cannot be changed offers the operation too.
    bool offersOnConst(AttributeOperation operation) const noexcept {
        bool const changes = (operation & (kSet | kAdd | kRemove)) != 0;
        return offers(operation) && !changes && (operation != kCall || record_.callableOnConst);
    }
    Function function() const noexcept { return record_.function; }
    IteratorFunction iterator() const noexcept { return record_.iterator; }

private:
    Record record_;
};

class VEL_EXPORT VelType {
public:
    enum class Kind : std::uint8_t {
        nothing,      // what a function returns that returns nothing
        value,        // copied as it is
        enumeration,  // one of `enumerators()`, or another number
        object,       // a counted object, reached by reference
    };
    using FromPtrInterface = GenericIf (*)(PtrInterface const * object, bool isConst);
    using FromStrRep = GenericIf (*)(VelType const & type, std::string_view text);
    using ToStrRep = std::string (*)(GenericIf const & value);
    using FromCtorArgs = GenericIf (*)(std::span<GenericIf const> args);
    // `arguments` is a `std::span<GenericIf const> *`, `result` a `GenericIf *`; sets `*done` when the
    // operation has been carried out. Throws OpNotSupportedException for one that the attribute does not
    // offer.
    using AttributeOpEntry = void (*)(void * object, bool isConst, AttributeOp const & op, void * arguments,
                                      void * result, bool * done);
    using IteratorEntry = void * (*)(void * object, VelAttr const * attr, IteratorVTable const ** table);
    using IteratorKeyEntry = void * (*)(void * object, VelAttr const * attr, GenericIf const & key,
                                        IteratorVTable const ** table);

    struct Record {
        char const * name;
        VelType const * base = nullptr;
        std::span<VelAttr const> attributes = {};
        std::span<VelArg const> ctorArgs = {};
        FromPtrInterface fromPtrInterface = nullptr;
        FromStrRep fromStrRep = nullptr;
        FromCtorArgs genericIfFromCtorArgs = nullptr;
        AttributeOpEntry genericIfAttributeOp = nullptr;
        IteratorEntry genericIfIterator = nullptr;
        IteratorKeyEntry genericIfIteratorKey = nullptr;
        Kind kind = Kind::object;
        std::uint32_t attributeCount = 0;
        ToStrRep toStrRep = nullptr;
        std::span<VelEnumerator const> enumerators = {};
    };

    constexpr VelType(Record const & record) noexcept : record_(record) {
        record_.attributeCount = static_cast<std::uint32_t>(record.attributes.size());
    }
    VelType(VelType const &) = delete;
    VelType & operator=(VelType const &) = delete;

    std::string_view name() const noexcept { return record_.name; }
    // Null for a type without one.
    VelType const * base() const noexcept { return record_.base; }
    // Its own attributes, without those of its base, in table order.
    std::span<VelAttr const> attributes() const noexcept { return record_.attributes; }
    std::uint32_t attributeCount() const noexcept { return record_.attributeCount; }
    std::span<VelArg const> ctorArgs() const noexcept { return record_.ctorArgs; }
    bool isConstructible() const noexcept { return record_.genericIfFromCtorArgs != nullptr; }
    Kind kind() const noexcept { return record_.kind; }
    // Empty but for enumerations.
    std::span<VelEnumerator const> enumerators() const noexcept { return record_.enumerators; }
    Record const & record() const noexcept { return record_; }

    // The attribute of that name, its own or its base's; null when there is none.
    VelAttr const * attribute(std::string_view name) const noexcept;
    // True for `other` itself and for whatever derives from it.
    bool isA(VelType const & other) const noexcept;
    // Wraps the object at `object`, which is of this type; null gives null.
    GenericIf genericIf(void const * object, bool isConst) const;
    // The value that `text` stands for, of this type. Throws RangeException, which says what was expected,
    // for a text that stands for none, and OpNotSupportedException for objects.
    GenericIf fromStrRep(std::string_view text) const;
    // The text that stands for `value`, which is of this type; the reverse of `fromStrRep`.
    std::string strRep(GenericIf const & value) const;

private:
    Record record_;
};

// Registers a type; a name that is taken already is a RangeException.
VEL_EXPORT void typeNodeIs(VelType const * type);
// Forgets a type; unknown and null are ignored.
VEL_EXPORT void typeNodeDel(VelType const * type) noexcept;
// The type of that name; null when unknown.
VEL_EXPORT VelType const * typeNode(std::string_view name);
// Every registered type, in order of registration.
VEL_EXPORT std::vector<VelType const *> typeNodes();

// Registers a type for as long as this object lives.
class VEL_EXPORT TypeRegistration {
public:
    explicit TypeRegistration(VelType const & type) : type_(type) { typeNodeIs(&type_); }
    ~TypeRegistration() { typeNodeDel(&type_); }
    TypeRegistration(TypeRegistration const &) = delete;
    TypeRegistration & operator=(TypeRegistration const &) = delete;

private:
    VelType const & type_;
};

// The records of the built-in types.
template <class T>
struct Builtin;
template <>
struct VEL_EXPORT Builtin<bool> {
    static VelType const _velType;
};
template <>
struct VEL_EXPORT Builtin<unsigned int> {
    static VelType const _velType;
};
VEL_EXPORT extern VelType const _velType_void;

// The record of type `T`; specialised for types that cannot name their own.
template <class T>
struct VelTypeOf {
    static constexpr VelType const * record = &T::_velType;
};
template <>
struct VelTypeOf<void> {
    static constexpr VelType const * record = &_velType_void;
};
template <>
struct VelTypeOf<bool> {
    static constexpr VelType const * record = &Builtin<bool>::_velType;
};
template <>
struct VelTypeOf<unsigned int> {
    static constexpr VelType const * record = &Builtin<unsigned int>::_velType;
};

}  // namespace Vel
