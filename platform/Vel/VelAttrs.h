// Builders of attribute records from the public accessors of a class, so that what generic tools read can
// never disagree with the accessors.
//
// Usage (in the .cpp of class Host)
//     using Vel::Attrs;
//     constexpr VelAttr attributes[] = {
//         Attrs<Host>::readOnly<&Host::name>("name", 130),
//         Attrs<Host>::value<&Host::hostname, &Host::hostnameIs>("hostname", 131),
//         Attrs<Host>::collection<Members, LookUp, Add, Remove>(...),
//     };
// Accessors that are overloaded are given as lambdas.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include "platform/Vel/GenericIf.h"
#include "platform/Vel/VelType.h"

namespace Vel {

namespace AttrsImpl {

// A value type as the generic interface wraps it: references to objects travel as counted ones.
template <class T>
struct WrappedAs {
    using type = T;
    using recordOf = T;
};
template <class T>
struct WrappedAs<T *> {
    using type = Ptr<T>;
    using recordOf = std::remove_const_t<T>;
};
template <class T>
struct WrappedAs<Ptr<T>> {
    using type = Ptr<T>;
    using recordOf = std::remove_const_t<T>;
};

// What a reactor follows.
inline constexpr auto followed = [](auto const & reactor) { return reactor.notifier(); };

// What a call gives back, wrapped; a call without a result gives null.
template <class Call>
GenericIf wrapResult(Call const & call) {
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        return nullptr;
    } else {
        return GenericIf::wrap(call());
    }
}

// Calls `f(object, value)`, with a plain pointer where `f` takes no counted reference.
template <auto F, class Object, class Value>
auto invokeWith(Object & object, Value const & value) {
    if constexpr (std::is_invocable_v<decltype(F), Object &, Value const &>) {
        return std::invoke(F, object, value);
    } else {
        return std::invoke(F, object, value.get());
    }
}

// An iterator together with the owner of the collection, which it keeps alive. Its operations are those of
// one iterator class, of an entity collection (counted references) or a value collection (entries with key
// and value), or, with `Shown`, of one that shows `Shown(member)` of each member. Key and object of an
// iterator at its end are null.
template <class Iterator, auto Shown = nullptr>
class ErasedIterator {
    static Iterator & of(void * erased) { return static_cast<ErasedIterator *>(erased)->iterator_; }
    static Iterator const & of(void const * erased) {
        return static_cast<ErasedIterator const *>(erased)->iterator_;
    }

public:
    ErasedIterator(PtrInterface & owner, Iterator iterator) noexcept
        : owner_(&owner), iterator_(std::move(iterator)) {}

    static constexpr IteratorVTable kTable{
        [](void const * iterator) { return bool(of(iterator)); },
        [](void * iterator) { ++of(iterator); },
        [](void const * iterator) -> GenericIf {
            if (!of(iterator)) return nullptr;
            if constexpr (requires {
                              of(iterator)->key();
                              of(iterator)->value();
                          }) {
                return GenericIf::wrap(of(iterator)->key());
            } else {
                return GenericIf::wrap((*of(iterator))->collectionKey());
            }
        },
        [](void const * iterator) -> GenericIf {
            if (!of(iterator)) return nullptr;
            if constexpr (!std::is_null_pointer_v<decltype(Shown)>) {
                return GenericIf::wrap(Shown(**of(iterator)));
            } else if constexpr (requires {
                                     of(iterator)->key();
                                     of(iterator)->value();
                                 }) {
                return GenericIf::wrap(of(iterator)->value());
            } else {
                return GenericIf::wrap(*of(iterator));
            }
        },
        [](void * iterator) { delete static_cast<ErasedIterator *>(iterator); },
    };

private:
    Ptr<PtrInterface> const owner_;  // Goes after the iterator.
    Iterator iterator_;
};

}  // namespace AttrsImpl

// Builders for class `C`, which has a `_velType`.
template <class C>
class Attrs {
public:
    // An attribute that only `Get(object)` reads.
    template <auto Get>
    static constexpr VelAttr readOnly(char const * name, std::uint32_t index) {
        return valueOrReference<Get, nullptr>(name, index, kRead, false);
    }

    // The same of what an object keeps for its whole life.
    template <auto Get>
    static constexpr VelAttr immutable(char const * name, std::uint32_t index) {
        return valueOrReference<Get, nullptr>(name, index, kRead, true);
    }

    // An attribute that `Get(object)` reads and `Set(object, value)` writes.
    template <auto Get, auto Set>
    static constexpr VelAttr value(char const * name, std::uint32_t index) {
        return valueOrReference<Get, Set>(name, index, kRead | kSet, false);
    }

    // A function `F(object, arguments...)`; `Arguments` are the types that the arguments unwrap to, named by
    // `args`.
    template <auto F, class... Arguments>
    static constexpr VelAttr function(char const * name, std::uint32_t index, std::span<VelArg const> args) {
        using Result = std::remove_cvref_t<std::invoke_result_t<decltype(F), C &, Arguments const &...>>;
        return VelAttr({
            .name = name,
            .owner = &C::_velType,
            .type = VelTypeOf<typename AttrsImpl::WrappedAs<Result>::recordOf>::record,
            .args = args,
            .index = index,
            .kind = VelAttr::Kind::function,
            .operations = kCall,
            .function =
                [](PtrInterface & object, AttributeOp const & op, std::span<GenericIf const> given) {
                    GenericIfImpl::checkArgumentCount(*op.attr, given, sizeof...(Arguments));
                    return callWith<F, Arguments...>(static_cast<C &>(object), op, given,
                                                     std::index_sequence_for<Arguments...>());
                },
            .callableOnConst = std::is_invocable_v<decltype(F), C const &, Arguments const &...>,
        });
    }

    // A collection of objects of class `Member` under keys of type `Key`.
    //     Range(object)                 what to walk
    //     LookUp(object, key)           the member or null
    //     Add(object, member)           adds an object; nullptr where members are only made in place
    //     Remove(object, key)           removes; what it returns, if anything, is answered
    //     Make(object, arguments...)    makes or returns the member; `args` names its arguments, the key
    //     first
    template <class Member, class Key, auto Range, auto LookUp, auto Add, auto Remove, auto Make,
              class... MakeArguments>
    static constexpr VelAttr collection(char const * name, std::uint32_t index, char const * keyName,
                                        std::span<VelArg const> args) {
        return VelAttr({
            .name = name,
            .owner = &C::_velType,
            .type = VelTypeOf<Member>::record,
            .keyType = VelTypeOf<typename AttrsImpl::WrappedAs<Key>::recordOf>::record,
            .keyName = keyName,
            .args = args,
            .index = index,
            .kind = VelAttr::Kind::collection,
            .operations = kLookUp | kAdd | kRemove | kIterate,
            .function = [](PtrInterface & object, AttributeOp const & op,
                           std::span<GenericIf const> given) -> GenericIf {
                C & self = static_cast<C &>(object);
                if (op.operation != kAdd) return lookUpOrRemove<Key, LookUp, Remove>(self, op, given);
                if constexpr (!std::is_null_pointer_v<decltype(Add)>) {
                    // A key that is itself an object is told from a member by its class.
                    if (given.size() == 1 && (given[0].isNull() || given[0].isObject()) &&
                        !isKey<Key>(given[0])) {
                        Ptr<Member> const member = onlyArgument<Ptr<Member>>(op, given);
                        return AttrsImpl::wrapResult([&] { return std::invoke(Add, self, member); });
                    }
                }
                GenericIfImpl::checkArgumentCount(*op.attr, given, sizeof...(MakeArguments));
                return callWith<Make, MakeArguments...>(self, op, given,
                                                        std::index_sequence_for<MakeArguments...>());
            },
            .iterator = &iterate<Key, Range>,
        });
    }

    // A map from `Key` to `Value`.
    //     Range(object)                 what to walk: entries with key() and value()
    //     LookUp(object, key)           an entry with value(), or a null pointer
    //     Set(object, key, value)       sets or adds
    //     Remove(object, key)           removes
    template <class Key, class Value, auto Range, auto LookUp, auto Set, auto Remove>
    static constexpr VelAttr valueCollection(char const * name, std::uint32_t index, char const * keyName,
                                             std::span<VelArg const> args, bool keyIsValuesName = false) {
        return VelAttr({
            .name = name,
            .owner = &C::_velType,
            .type = VelTypeOf<typename AttrsImpl::WrappedAs<Value>::recordOf>::record,
            .keyType = VelTypeOf<typename AttrsImpl::WrappedAs<Key>::recordOf>::record,
            .keyName = keyName,
            .args = args,
            .index = index,
            .kind = VelAttr::Kind::valueCollection,
            .operations = kLookUp | kAdd | kRemove | kIterate,
            .function = [](PtrInterface & object, AttributeOp const & op,
                           std::span<GenericIf const> given) -> GenericIf {
                C & self = static_cast<C &>(object);
                if (op.operation != kAdd) return lookUpOrRemove<Key, LookUp, Remove>(self, op, given);
                GenericIfImpl::checkArgumentCount(*op.attr, given, 2);
                auto const key = argument<Key>(op, given, 0);
                auto const value = argument<Value>(op, given, 1);
                return AttrsImpl::wrapResult([&] { return std::invoke(Set, self, key, value); });
            },
            .iterator = &iterate<Key, Range>,
            .keyIsValuesName = keyIsValuesName,
        });
    }

    // A collection of reactors, under keys of type `Key`, that shows the objects of class `Followed` which
    // they follow; null stands for that of a reactor without one.
    //     Range(object)                 what to walk: reactors
    //     LookUp(object, key)           the reactor or null
    //     Add(object, followed)         makes sure that a reactor follows the object; answers nothing
    //     Remove(object, key)           lets the reactor go and answers with what it followed, or null
    template <class Followed, class Key, auto Range, auto LookUp, auto Add, auto Remove>
    static constexpr VelAttr registry(char const * name, std::uint32_t index, char const * keyName) {
        return VelAttr({
            .name = name,
            .owner = &C::_velType,
            .type = VelTypeOf<Followed>::record,
            .keyType = VelTypeOf<typename AttrsImpl::WrappedAs<Key>::recordOf>::record,
            .keyName = keyName,
            .index = index,
            .kind = VelAttr::Kind::collection,
            .operations = kLookUp | kAdd | kRemove | kIterate,
            .function = [](PtrInterface & object, AttributeOp const & op,
                           std::span<GenericIf const> given) -> GenericIf {
                C & self = static_cast<C &>(object);
                if (op.operation != kAdd) {
                    constexpr auto lookUp = [](C & o, Key const & key) {
                        auto const reactor = std::invoke(LookUp, o, key);
                        return reactor ? AttrsImpl::followed(*reactor) : nullptr;
                    };
                    return lookUpOrRemove<Key, lookUp, Remove>(self, op, given);
                }
                std::invoke(Add, self, onlyArgument<Ptr<Followed const>>(op, given));
                return nullptr;
            },
            .iterator = &iterate<Key, Range, AttrsImpl::followed>,
        });
    }

private:
    static std::string where(AttributeOp const & op) {
        return std::string(op.attr->owner()->name()) + "::" + std::string(op.attr->name());
    }
    template <class T>
    static T argument(AttributeOp const & op, std::span<GenericIf const> given, std::size_t index) {
        return GenericIfImpl::unwrapArgument<T>(where(op), op.attr->args(), given, index);
    }

    // Of an operation that takes one value of the attribute, or, with `byKey`, one of its keys.
    template <class T>
    static T onlyArgument(AttributeOp const & op, std::span<GenericIf const> given, bool byKey = false) {
        VelAttr const & attr = *op.attr;
        VelArg const table[] = {byKey ? VelArg{attr.keyName().data(), attr.keyType()}
                                      : VelArg{attr.name().data(), attr.type()}};
        GenericIfImpl::checkArgumentCount(where(op), table, given, 1);
        return GenericIfImpl::unwrapArgument<T>(where(op), table, given, 0);
    }

    template <class Key>
    static bool isKey(GenericIf const & value) {
        if constexpr (kIsPtr<Key>) {
            using Object = std::remove_const_t<typename Key::element_type>;
            return value.isObject() && value.type() && value.type()->isA(*VelTypeOf<Object>::record);
        } else {
            return false;
        }
    }

    template <auto Get, auto Set>
    static constexpr VelAttr valueOrReference(char const * name, std::uint32_t index,
                                              std::uint32_t operations, bool immutable) {
        using Read = std::remove_cvref_t<std::invoke_result_t<decltype(Get), C const &>>;
        using Wrapped = AttrsImpl::WrappedAs<Read>;
        constexpr bool isReference = kIsPtr<typename Wrapped::type>;
        return VelAttr({
            .name = name,
            .owner = &C::_velType,
            .type = VelTypeOf<typename Wrapped::recordOf>::record,
            .index = index,
            .kind = isReference ? VelAttr::Kind::reference : VelAttr::Kind::value,
            .operations = operations,
            .function = [](PtrInterface & object, AttributeOp const & op,
                           std::span<GenericIf const> given) -> GenericIf {
                C & self = static_cast<C &>(object);
                if (op.operation == kRead) {
                    GenericIfImpl::checkArgumentCount(*op.attr, given, 0);
                    return GenericIf::wrap(std::invoke(Get, static_cast<C const &>(self)));
                }
                if constexpr (!std::is_null_pointer_v<decltype(Set)>) {
                    // Only what is wrong with the value is told of the value: whatever is raised while it is
                    // being set, by a follower perhaps, is passed on as it is.
                    AttrsImpl::invokeWith<Set>(self, onlyArgument<typename Wrapped::type>(op, given));
                }
                return nullptr;
            },
            .immutable = immutable,
        });
    }

    template <class Key, auto LookUp, auto Remove>
    static GenericIf lookUpOrRemove(C & self, AttributeOp const & op, std::span<GenericIf const> given) {
        auto const key = onlyArgument<Key>(op, given, true);
        if (op.operation == kRemove) {
            return AttrsImpl::wrapResult([&] { return std::invoke(Remove, self, key); });
        }
        auto const found = std::invoke(LookUp, self, key);
        if constexpr (requires {
                          found->value();
                          found->isPresent();
                      }) {
            return found ? GenericIf::wrap(found->value()) : GenericIf();
        } else if constexpr (requires { found.has_value(); }) {
            return found ? GenericIf::wrap(*found) : GenericIf();
        } else {
            return GenericIf::wrap(found);
        }
    }

    template <auto F, class... Arguments, std::size_t... I>
    static GenericIf callWith(C & self, [[maybe_unused]] AttributeOp const & op,
                              [[maybe_unused]] std::span<GenericIf const> given, std::index_sequence<I...>) {
        // All arguments are unwrapped, in order, before the call changes anything.
        std::tuple<Arguments...> const arguments{argument<Arguments>(op, given, I)...};
        return AttrsImpl::wrapResult([&] { return std::invoke(F, self, std::get<I>(arguments)...); });
    }

    template <class Key, auto Range, auto Shown = nullptr>
    static void * iterate(PtrInterface & object, GenericIf const * fromKey, IteratorVTable const ** table) {
        auto const range = std::invoke(Range, static_cast<C &>(object));
        using Iterator = AttrsImpl::ErasedIterator<decltype(range.begin()), Shown>;
        *table = &Iterator::kTable;
        return new Iterator(object, fromKey ? range.at(fromKey->as<Key>()) : range.begin());
    }
};

}  // namespace Vel
