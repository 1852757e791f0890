// How the collections of this model change, written once for all of them. For the model's own sources only.
//
// `on` is the callback of a collection: `on(reactor, key)` calls the keyed one, `on(reactor)` the unkeyed
// one. Keys are taken by value, because the caller's may live in what goes away during a delivery. After a
// delivery nothing of the model is touched: a callback may have released it.
#pragma once

#include <exception>
#include <type_traits>
#include <vector>

#include "platform/Vel/HashMap.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace NetworkTopologyV3 {

// A model class offers it
//     notify(callback...)     delivers one change to its reactors
//     letGo(member)           static: the member hears that it has been taken out, before anybody else does
struct Mutation {
    // Entity collections.

    // The member of that key; `create()` makes it when there is none.
    template <class Model, class Member, class Key, class Create, class On>
    static Vel::Ptr<Member> memberIs(Model & model, Vel::HashMap<Member, Key, Model> & map, Key const key,
                                     Create const & create, On const & on) {
        if (Member * const present = map[key]) return present;
        Vel::Ptr<Member> const member = create();
        map.newMember(member);
        notifyOfKey(model, key, on);
        return member;
    }

    // Returns what was taken out, or null.
    template <class Model, class Member, class Key, class On>
    static Vel::Ptr<Member> memberDel(Model & model, Vel::HashMap<Member, Key, Model> & map, Key const key,
                                      On const & on) {
        Vel::Ptr<Member> member = map.deleteMember(key);
        if (!member) return nullptr;
        Model::letGo(*member);
        notifyOfKey(model, key, on);
        return member;
    }

    template <class Model, class Member, class Key, class On, class OnImmediate>
    static void memberDelAll(Model & model, Vel::HashMap<Member, Key, Model> & map, On const & on,
                             OnImmediate const & onImmediate) {
        if (map.size() == 0) return;
        letGoAll(map);
        map.emptyAllBuckets();
        model.notify(onImmediate, [&](typename Model::NotifieeConst & r) { on(r); });
    }

    template <class Member, class Key, class Model>
    static void letGoAll(Vel::HashMap<Member, Key, Model> & map) noexcept {
        for (auto member = map.iterator(); member; ++member) Model::letGo(**member);
    }

    // Value collections.

    template <class Model, class Tag, class Key, class Value, class On>
    static void valueIs(Model & model, Vel::HashMap2018<Tag, Key, Value> & map, Key const key,
                        Value const & value, On const & on) {
        if (map.valueIs(key, value)) notifyOfKey(model, key, on);
    }

    template <class Model, class Tag, class Key, class Value, class On>
    static void valueDel(Model & model, Vel::HashMap2018<Tag, Key, Value> & map, Key const key,
                         On const & on) {
        if (map.valueDel(key)) notifyOfKey(model, key, on);
    }

    // Several deliveries, of which each reaches its reactors even if a callback of an earlier one has thrown.
    template <class Model, class Tag, class Key, class Value, class On, class OnImmediate>
    static void valueDelAll(Model & model, Vel::HashMap2018<Tag, Key, Value> & map, On const & on,
                            OnImmediate const & onImmediate) {
        using Reactor = typename Model::NotifieeConst;
        if (map.size() == 0) return;
        std::vector<Key> keys;
        keys.reserve(map.size());
        for (auto entry = map.iterator(); entry; ++entry) keys.push_back(entry->key());
        for (Key const & key : keys) map.valueDel(key);

        Vel::KeepAlive const keepModel(model);
        std::exception_ptr failure;
        auto const deliver = [&](auto const &... callbacks) {
            try {
                model.notify(callbacks...);
            } catch (...) {
                if (!failure) failure = std::current_exception();
            }
        };
        for (Key const & key : keys) deliver([&](Reactor & r) { on(r, key); });
        deliver(onImmediate, [&](Reactor & r) { on(r); });
        if (failure) std::rethrow_exception(failure);
    }

    // `Set(model, object)` for callers that name the key too, which is always the object's name. Throws
    // Vel::RangeException for another one.
    template <auto Set, class Model, class Object>
    static void valueUnderItsNameIs(Model & model, Vel::Name const & key, Vel::Ptr<Object> const & object) {
        if (object && object->name() != key) refuseKey(key, object->name());
        (model.*Set)(object);
    }

    // The value of an entry; null for none.
    template <class Node>
    static auto valueOf(Node const * entry) noexcept {
        using Value = std::remove_cvref_t<decltype(entry->value())>;
        return entry ? entry->value() : Value();
    }

private:
    [[noreturn]] static void refuseKey(Vel::Name const & key, Vel::Name const & name);

    template <class Model, class Key, class On>
    static void notifyOfKey(Model const & model, Key const & key, On const & on) {
        using Reactor = typename Model::NotifieeConst;
        model.notify([&](Reactor & r) { on(r, key); }, [&](Reactor & r) { on(r); });
    }
};

}  // namespace NetworkTopologyV3
