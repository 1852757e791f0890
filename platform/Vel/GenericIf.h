// Values and objects without compiled knowledge of their types.
//
// Usage
//     Vel::GenericIf status = Vel::construct("NetworkTopology::StatusV2", {});
//     status.memberIs("host", {Vel::Name("leaf-1")});
//     Vel::GenericIf host = status.member("host", Vel::Name("leaf-1"));
//     host.attrIs("hostname", Vel::String("leaf-1.example"));
//     for (auto const & entry : status.members("host")) use(entry.key(), entry.object());
//
// A GenericIf wraps null, a bool, an unsigned, a Name, a String, an enumerator, another value type that has a
// record, or a counted object, which it keeps alive. An object wrapped const can be read but not changed.
//
// Errors
//     OpNotSupportedException: the attribute is unknown or does not offer the operation.
//     RangeException: a value is of the wrong type, an argument is missing or one too many. Nothing has
//     changed.
#pragma once

#include <any>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Vel/Exceptions.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/VelType.h"

namespace Vel {

// An operation on one attribute.
struct AttributeOp {
    AttributeOperation operation;
    VelAttr const * attr;
};

// What a type's iterator entry points hand out: five operations on an iterator of theirs, which keeps the
// object that it walks alive.
struct IteratorVTable {
    bool (*iterNonnull)(void const * iterator);
    void (*iterInc)(void * iterator);
    GenericIf (*iterKey)(void const * iterator);
    GenericIf (*iterObj)(void const * iterator);
    void (*iterDel)(void * iterator);
};

template <class T>
inline constexpr bool kIsPtr = false;
template <class T>
inline constexpr bool kIsPtr<Ptr<T>> = true;

class VEL_EXPORT GenericIf {
public:
    using AttributeOp = Vel::AttributeOp;
    class Members;

    struct Iterator {
        using IteratorVTable = Vel::IteratorVTable;
    };

    // Null.
    GenericIf() noexcept = default;
    GenericIf(std::nullptr_t) noexcept {}
    GenericIf(std::same_as<bool> auto value) : value_(value) {}
    GenericIf(std::same_as<unsigned int> auto value) : value_(value) {}
    GenericIf(Name const & value) : value_(value) {}
    GenericIf(std::same_as<String> auto const & value) : value_(value) {}
    template <class T>
    GenericIf(Ptr<T> const & object)
        : GenericIf(
              object ? GenericIf(Object{Ptr<PtrInterface>(const_cast<std::remove_const_t<T> *>(object.get())),
                                        std::is_const_v<T>})
                     : GenericIf()) {}

    // Wraps an object; null gives null.
    template <class T>
    static GenericIf of(Ptr<T> const & object) {
        return GenericIf(object);
    }
    // Wraps a value of any type that has a record, or a pointer to an object.
    template <class T>
    static GenericIf wrap(T const & value);

    bool isNull() const noexcept { return std::holds_alternative<std::monostate>(value_); }
    bool isObject() const noexcept { return std::holds_alternative<Object>(value_); }
    // Whether what is wrapped is an object that cannot be changed.
    bool isConst() const noexcept;
    // The record of the wrapped value's type, or of the wrapped object's class; null for null and for an
    // object whose class has none.
    VelType const * type() const noexcept;
    // For messages: "null", or the name of the type.
    std::string typeName() const;

    // The wrapped value as a `T`: a value type, `Ptr<U>` or, for null, any `Ptr`. Throws RangeException on
    // the wrong type.
    template <class T>
    T as() const;

    // The text that stands for a wrapped value; see VelType::strRep.
    std::string strRep() const;
    // The number behind a wrapped enumerator. Throws RangeException for anything else.
    std::uint32_t enumeratorValue() const;

    // Same object, or same value of the same type.
    friend VEL_EXPORT bool operator==(GenericIf const & a, GenericIf const & b);

    // Operations on the wrapped object; on anything else each throws RangeException.
    GenericIf attr(std::string_view name) const;
    void attrIs(std::string_view name, GenericIf const & value) const;
    GenericIf call(std::string_view function, std::span<GenericIf const> args) const;
    GenericIf call(std::string_view function, std::initializer_list<GenericIf> args) const {
        return call(function, std::span<GenericIf const>(args.begin(), args.size()));
    }
    // The member, or value, of that key; null when there is none.
    GenericIf member(std::string_view collection, GenericIf const & key) const;
    // Adds `object` to a collection of objects, or, given several arguments, makes a member of them: the key
    // and what else its making takes, or the key and the value of a map.
    void memberIs(std::string_view collection, GenericIf const & object) const;
    GenericIf memberIs(std::string_view collection, std::initializer_list<GenericIf> args) const {
        return memberIs(collection, std::span<GenericIf const>(args.begin(), args.size()));
    }
    GenericIf memberIs(std::string_view collection, std::span<GenericIf const> args) const;
    // Removes the member of that key and answers with it where the collection tells; null otherwise.
    GenericIf memberDel(std::string_view collection, GenericIf const & key) const;
    Members members(std::string_view collection) const;
    // From the member of that key on; nothing when the key is absent.
    Members members(std::string_view collection, GenericIf const & fromKey) const;

    // One operation; what the functions above are built on. REQUIRES: `attr` is one of the object's type.
    GenericIf operate(AttributeOp const & op, std::span<GenericIf const> args) const;

private:
    friend class VelType;
    struct Object {
        Ptr<PtrInterface> object;
        bool isConst;
        bool operator==(Object const & other) const noexcept { return object == other.object; }
    };
    struct Enumerator {
        VelType const * type;
        std::uint32_t value;
        bool operator==(Enumerator const &) const noexcept = default;
    };
    struct Other {
        VelType const * type;
        std::any value;
        bool (*equal)(std::any const &, std::any const &);
        bool operator==(Other const & other) const { return type == other.type && equal(value, other.value); }
    };

    explicit GenericIf(Object object) : value_(std::move(object)) {}
    explicit GenericIf(Enumerator enumerator) : value_(enumerator) {}
    explicit GenericIf(Other other) : value_(std::move(other)) {}

    void constIs() noexcept;
    Object const & object(char const * operation) const;
    VelAttr const & attribute(AttributeOperation operation, std::string_view name) const;
    Members iterate(std::string_view collection, GenericIf const * fromKey) const;
    [[noreturn]] void throwWrongType(VelType const * expected) const;
    template <class T>
    static GenericIf enumerator(VelType const * type, T value);
    friend VEL_EXPORT GenericIf enumeratorFromNumber(VelType const & type, std::uint32_t value);

    std::variant<std::monostate, bool, unsigned int, Name, String, Enumerator, Other, Object> value_;
};

// The enumerator of that number, named or not.
VEL_EXPORT GenericIf enumeratorFromNumber(VelType const & type, std::uint32_t value);

// What `for (auto const & entry : object.members("host"))` walks. Keeps the object alive.
class VEL_EXPORT GenericIf::Members {
public:
    class VEL_EXPORT Entry {
    public:
        explicit Entry(Members const & members) noexcept : members_(&members) {}
        GenericIf key() const {
            return members_->constAsOwner(members_->table_->iterKey(members_->iterator_));
        }
        // The member, or the value of a map.
        GenericIf object() const {
            return members_->constAsOwner(members_->table_->iterObj(members_->iterator_));
        }

    private:
        Members const * members_;
    };
    class VEL_EXPORT Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Entry;
        using difference_type = std::ptrdiff_t;

        explicit Iterator(Members const & members) noexcept : members_(&members) {}
        Entry operator*() const noexcept { return Entry(*members_); }
        // Advancing past the end does nothing.
        Iterator & operator++() {
            if (!atEnd()) members_->table_->iterInc(members_->iterator_);
            return *this;
        }
        void operator++(int) { ++*this; }
        friend bool operator==(Iterator const & a, std::default_sentinel_t) { return a.atEnd(); }

    private:
        bool atEnd() const { return !members_->table_->iterNonnull(members_->iterator_); }
        Members const * members_;
    };

    Members(bool isConst, void * iterator, IteratorVTable const * table) noexcept
        : isConst_(isConst), iterator_(iterator), table_(table) {}
    Members(Members && other) noexcept
        : isConst_(other.isConst_),
          iterator_(std::exchange(other.iterator_, nullptr)),
          table_(other.table_) {}
    Members & operator=(Members &&) = delete;
    ~Members() {
        if (iterator_) table_->iterDel(iterator_);
    }

    // One walk: every begin() goes on where the last one stopped.
    Iterator begin() const noexcept { return Iterator(*this); }
    std::default_sentinel_t end() const noexcept { return {}; }

private:
    GenericIf constAsOwner(GenericIf value) const noexcept {
        if (isConst_) value.constIs();
        return value;
    }

    bool isConst_;
    void * iterator_;
    IteratorVTable const * table_;
};

// Makes an object of a registered type. Throws RangeException for an unknown type, an unknown, missing or
// repeated argument, or one of the wrong type; OpNotSupportedException for a type that cannot be constructed.
VEL_EXPORT GenericIf construct(std::string_view typeName,
                               std::initializer_list<std::pair<std::string_view, GenericIf>> args);
VEL_EXPORT GenericIf construct(VelType const & type, std::span<GenericIf const> args);

namespace GenericIfImpl {

using Vel::AttributeOp;

[[noreturn]] VEL_EXPORT void throwOpNotSupportedException(AttributeOp const & op);
// Checks the number of arguments against those that `attr` lists.
VEL_EXPORT void checkArgumentCount(VelAttr const & attr, std::span<GenericIf const> args,
                                   std::size_t expected);
// The same against the first `expected` ones of a table, which may have fewer.
VEL_EXPORT void checkArgumentCount(std::string_view where, std::span<VelArg const> table,
                                   std::span<GenericIf const> args, std::size_t expected);
[[noreturn]] VEL_EXPORT void throwArgument(std::string_view where, char const * argument,
                                           char const * problem);

// Argument `index` of a table as a `T`. Throws RangeException with the argument's name when it is missing or
// of the wrong type.
template <class T>
T unwrapArgument(std::string_view where, std::span<VelArg const> table, std::span<GenericIf const> args,
                 std::size_t index) {
    if (index >= args.size()) throwArgument(where, table[index].name, "is missing");
    try {
        return args[index].as<T>();
    } catch (RangeException const & wrong) {
        throwArgument(where, table[index].name, wrong.what());
    }
}

// What a constructor of `type` is given, unwrapped in the order of its table. Throws RangeException also for
// one argument too many.
template <class... T>
std::tuple<T...> unwrapConstructorArgs(VelType const & type, std::span<GenericIf const> args) {
    std::string const where = "the constructor of " + std::string(type.name());
    checkArgumentCount(where, type.ctorArgs(), args, sizeof...(T));
    auto const unwrapped = [&]<std::size_t... I>(std::index_sequence<I...>) {
        return std::tuple<T...>{unwrapArgument<T>(where, type.ctorArgs(), args, I)...};
    };
    return unwrapped(std::index_sequence_for<T...>());
}

// FromCtorArgs of class `C`, whose arguments unwrap to `Arguments`: wraps what `Create(arguments...)`
// returns.
template <class C, auto Create, class... Arguments>
GenericIf fromCtorArgs(std::span<GenericIf const> args) {
    return GenericIf(std::apply(Create, unwrapConstructorArgs<Arguments...>(C::_velType, args)));
}

// The entry points of every type whose attribute records carry their functions.
VEL_EXPORT void attributeOp(void * object, bool isConst, AttributeOp const & op, void * arguments,
                            void * result, bool * done);
VEL_EXPORT void * iterator(void * object, VelAttr const * attr, IteratorVTable const ** table);
VEL_EXPORT void * iteratorKey(void * object, VelAttr const * attr, GenericIf const & key,
                              IteratorVTable const ** table);

// FromPtrInterface and FromStrRep of object types.
template <class Interface>
struct GenericIfPtrInterface {
    static GenericIf fromPtrInterface(Interface const * object, bool isConst) {
        if (isConst) return GenericIf(Ptr<Interface const>(object));
        return GenericIf(Ptr<Interface>(const_cast<Interface *>(object)));
    }
    // Objects have no text that stands for them: throws OpNotSupportedException.
    [[noreturn]] static GenericIf fromStrRep(VelType const & type, std::string_view) {
        throw OpNotSupportedException(std::string(type.name()) + " has no text representation");
    }
};

// FromStrRep and its reverse for enumerations, by their enumerators.
VEL_EXPORT GenericIf enumeratorFromStrRep(VelType const & type, std::string_view text);
VEL_EXPORT std::string enumeratorToStrRep(GenericIf const & value);

}  // namespace GenericIfImpl

template <class T>
GenericIf GenericIf::enumerator(VelType const * type, T value) {
    return GenericIf(Enumerator{type, static_cast<std::uint32_t>(value)});
}

template <class T>
GenericIf GenericIf::wrap(T const & value) {
    if constexpr (std::is_constructible_v<GenericIf, T const &>) {
        return GenericIf(value);
    } else if constexpr (std::is_pointer_v<T>) {
        return GenericIf(Ptr<std::remove_pointer_t<T>>(value));
    } else if constexpr (std::is_enum_v<T>) {
        return enumerator(VelTypeOf<T>::record, value);
    } else {
        return GenericIf(
            Other{VelTypeOf<T>::record, std::any(value), [](std::any const & a, std::any const & b) {
                      return *std::any_cast<T>(&a) == *std::any_cast<T>(&b);
                  }});
    }
}

template <class T>
T GenericIf::as() const {
    if constexpr (kIsPtr<T>) {
        using Target = typename T::element_type;
        if (isNull()) return nullptr;
        if (auto const * held = std::get_if<Object>(&value_);
            held && (!held->isConst || std::is_const_v<Target>)) {
            if (auto * const target = dynamic_cast<Target *>(held->object.get())) return target;
        }
        throwWrongType(VelTypeOf<std::remove_const_t<Target>>::record);
    } else if constexpr (std::is_enum_v<T>) {
        auto const * held = std::get_if<Enumerator>(&value_);
        if (!held || held->type != VelTypeOf<T>::record) throwWrongType(VelTypeOf<T>::record);
        return static_cast<T>(held->value);
    } else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, unsigned int> ||
                         std::is_same_v<T, Name> || std::is_same_v<T, String>) {
        if (auto const * held = std::get_if<T>(&value_)) return *held;
        throwWrongType(VelTypeOf<T>::record);
    } else {
        auto const * held = std::get_if<Other>(&value_);
        if (!held || held->type != VelTypeOf<T>::record) throwWrongType(VelTypeOf<T>::record);
        return *std::any_cast<T>(&held->value);
    }
}

}  // namespace Vel
