// How the collections of a model change, written once for all models: the model first, then its members, then
// its reactors. For the sources of models only.
//
// Usage
//     struct Mutation : Vel::CollectionMutation<Mutation, false> {       // a friend of the model's classes
//         template <class Model, class... Callbacks>
//         static void notify(Model const & model, Callbacks const &... callbacks);   // delivers one change
//         template <class Model, class Member>
//         static void enters(Model & model, Member & member) noexcept;   // about to stand in a collection
//         template <class Model, class Member>
//         static void letGo(Member & member) noexcept;    // taken out, and nobody else has heard of it yet
//     };
//     Mutation::memberIs(*this, port_, name, [&] { return new Port(std::move(name)); }, onPort);
//
// `on` is the callback of a collection: `on(reactor, key)` calls the keyed one, `on(reactor)` the unkeyed
// one. After a delivery nothing of the model is touched: a callback may have released it.
//
// Keys
//     The key of a change must outlive its delivery, in which whatever the key lives in may go away. With
//     `kCopiesKeys` each delivery is made with a copy; without, REQUIRES: keys are the caller's own. What the
//     change itself takes out lives until it has been delivered.
#pragma once

#include <cstdint>
#include <exception>
#include <type_traits>
#include <vector>

#include "platform/Vel/HashMap.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace Vel {

template <class Access, bool kCopiesKeys>
struct CollectionMutation {
    // Entity collections.

    // The member of that key; `create()` makes it when there is none, and may use the key up for it.
    template <class Model, class Member, class Key, class Create, class On>
    static Ptr<Member> memberIs(Model & model, HashMap<Member, Key, Model> & map, Key const & key,
                                Create const & create, On const & on) {
        typename HashMap<Member, Key, Model>::Place const place(map, key);
        if (Member * const present = map.find(place, key)) return present;
        Ptr<Member> member = create();
        enter(model, map, place, member);
        notifyOfKey(model, member->collectionKey(), on);
        return member;
    }

    // Returns what was taken out, or null.
    template <class Model, class Member, class Key, class On>
    static Ptr<Member> memberDel(Model & model, HashMap<Member, Key, Model> & map, Key const & key,
                                 On const & on) {
        Ptr<Member> member = leave(map, key);
        if (member) {
            member->fetchReactors();  // Whoever hears of this mostly lets go of them.
            notifyOfKey(model, key, on);
        }
        return member;
    }

    template <class Model, class Member, class Key, class On, class OnImmediate>
    static void memberDelAll(Model & model, HashMap<Member, Key, Model> & map, On const & on,
                             OnImmediate const & onImmediate) {
        if (map.size() == 0) return;
        letGoAll(map);
        map.emptyAllBuckets();
        Access::notify(model, onImmediate, [&](typename Model::NotifieeConst & r) { on(r); });
    }

    // For a model that is being destroyed: its members hear of it, and nobody else.
    template <class Member, class Key, class Model>
    static void letGoAll(HashMap<Member, Key, Model> & map) noexcept {
        map.forEach([](Member & member) { Access::template letGo<Model>(member); });
    }

    // Value collections.

    // The value of an entry; null for none.
    template <class Node>
    static auto valueOf(Node const * entry) noexcept {
        using Value = std::remove_cvref_t<decltype(entry->value())>;
        return entry ? entry->value() : Value();
    }

    template <class Model, class Tag, class Key, class Value, class On>
    static void valueIs(Model & model, HashMap2018<Tag, Key, Value> & map, Key const & key,
                        std::type_identity_t<Value> const & value, On const & on) {
        model.fetchReactors();
        if (map.valueIs(key, value)) notifyOfKey(model, key, on);
    }

    template <class Model, class Tag, class Key, class Value, class On>
    static void valueDel(Model & model, HashMap2018<Tag, Key, Value> & map, Key const & key, On const & on) {
        model.fetchReactors();
        if (auto const entry = map.valueDel(key)) notifyOfKey(model, entry->key(), on);
    }

    // Several deliveries, of which each reaches its reactors even if a callback of an earlier one has thrown.
    template <class Model, class Tag, class Key, class Value, class On, class OnImmediate>
    static void valueDelAll(Model & model, HashMap2018<Tag, Key, Value> & map, On const & on,
                            OnImmediate const & onImmediate) {
        using Reactor = typename Model::NotifieeConst;
        if (map.size() == 0) return;
        std::vector<Key> keys;
        keys.reserve(map.size());
        for (auto entry = map.iterator(); entry; ++entry) keys.push_back(entry->key());
        for (Key const & key : keys) map.valueDel(key);

        KeepAlive const keepModel(model);
        std::exception_ptr failure;
        auto const deliver = [&](auto const &... callbacks) {
            try {
                Access::notify(model, callbacks...);
            } catch (...) {
                if (!failure) failure = std::current_exception();
            }
        };
        for (Key const & key : keys) deliver([&](Reactor & r) { on(r, key); });
        deliver(onImmediate, [&](Reactor & r) { on(r); });
        if (failure) std::rethrow_exception(failure);
    }

protected:
    template <class Model, class Key, class On>
    static void notifyOfKey(Model const & model, Key const & key, On const & on) {
        using Reactor = typename Model::NotifieeConst;
        if (!model.isFollowed()) return;
        std::conditional_t<kCopiesKeys, Key const, Key const &> kept = key;
        Access::notify(
            model, [on, &kept](Reactor & r) { on(r, kept); }, [on](Reactor & r) { on(r); });
    }

    template <class Model, class Map, class Member>
    static void enter(Model & model, Map & map, typename Map::Place const & place,
                      Ptr<Member> const & member) noexcept {
        Access::enters(model, *member);
        map.newMember(place, member);
    }

    template <class Model, class Member, class Key>
    static Ptr<Member> leave(HashMap<Member, Key, Model> & map, Key const & key) noexcept {
        Ptr<Member> member = map.deleteMember(key);
        if (member) Access::template letGo<Model>(*member);
        return member;
    }
};

}  // namespace Vel
