// How the collections of this model change, written once for all of them. For the model's own sources only.
//
// `on` is the callback of a collection: `on(reactor, key)` calls the keyed one, `on(reactor)` the unkeyed
// one. Keys are the caller's own copies, because the entry in which a key lives may go away during a
// delivery. After a delivery nothing of the model is touched: a callback may have released it.
#pragma once

#include <exception>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/Vel/HashMap.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace NetworkTopology {

class HostV2;
class PortBaseV2;
class StatusV2;

struct Mutation {
    // Entity collections. A member knows its owner, which is set before it enters the collection and cleared
    // before anybody hears that it has left.

    // The member of that key; `create()` makes it when there is none.
    template <class Model, class Member, class Key, class Create, class On>
    static Vel::Ptr<Member> memberIs(Model & model, Vel::HashMap<Member, Key, Model> & map, Key const & key,
                                     Create const & create, On const & on) {
        if (Member * const present = map[key]) return present;
        Vel::Ptr<Member> const member = create();
        enter(model, map, member);
        notifyOfKey(model, key, on);
        return member;
    }

    template <class Model, class Member, class Key, class On>
    static Vel::Ptr<Member> memberIs(Model & model, Vel::HashMap<Member, Key, Model> & map,
                                     Vel::Ptr<Member> member, char const * attribute, On const & on) {
        if (!member) refuseNull(attribute);
        if (member->owner_ == &model) return member;
        Key const key = member->collectionKey();
        if (member->owner_)
            refuseOwned(attribute, described(key), described(*member->owner_), described(model));
        Vel::Ptr<Member> const previous = leave(map, key);
        enter(model, map, member);
        notifyOfKey(model, key, on);
        return member;
    }

    template <class Model, class Member, class Key, class On>
    static Vel::Ptr<Member> memberDel(Model & model, Vel::HashMap<Member, Key, Model> & map, Key const & key,
                                      On const & on) {
        Vel::Ptr<Member> member = leave(map, key);
        if (member) notifyOfKey(model, key, on);
        return member;
    }

    template <class Model, class Member, class Key, class On, class OnImmediate>
    static void memberDelAll(Model & model, Vel::HashMap<Member, Key, Model> & map, On const & on,
                             OnImmediate const & onImmediate) {
        if (map.size() == 0) return;
        disown(map);
        map.emptyAllBuckets();
        model.notify(onImmediate, [&](typename Model::NotifieeConst & r) { on(r); });
    }

    // Clears the owner of every member.
    template <class Member, class Key, class Model>
    static void disown(Vel::HashMap<Member, Key, Model> & map) noexcept {
        for (auto member = map.iterator(); member; ++member) (*member)->owner_ = nullptr;
    }

    // Value collections.

    // The value of an entry; null for none.
    template <class Node>
    static auto valueOf(Node const * entry) noexcept {
        using Value = std::remove_cvref_t<decltype(entry->value())>;
        return entry ? entry->value() : Value();
    }

    template <class Model, class Map, class Key, class Value, class On>
    static void valueIs(Model & model, Map & map, Key const & key, Value const & value, On const & on) {
        if (map.valueIs(key, value)) notifyOfKey(model, key, on);
    }

    template <class Model, class Map, class Key, class On>
    static void valueDel(Model & model, Map & map, Key const & key, On const & on) {
        if (map.valueDel(key)) notifyOfKey(model, key, on);
    }

    // Several deliveries, of which each reaches its reactors even if a callback of an earlier one has thrown.
    template <class Model, class Map, class On, class OnImmediate>
    static void valueDelAll(Model & model, Map & map, On const & on, OnImmediate const & onImmediate) {
        using Reactor = typename Model::NotifieeConst;
        if (map.size() == 0) return;
        std::vector<std::remove_cvref_t<decltype(map.iterator()->key())>> keys;
        keys.reserve(map.size());
        for (auto entry = map.iterator(); entry; ++entry) keys.push_back(entry->key());
        for (auto const & key : keys) map.valueDel(key);

        Vel::KeepAlive const keepModel(model);
        std::exception_ptr failure;
        auto const deliver = [&](auto const &... callbacks) {
            try {
                model.notify(callbacks...);
            } catch (...) {
                if (!failure) failure = std::current_exception();
            }
        };
        for (auto const & key : keys) deliver([&](Reactor & r) { on(r, key); });
        deliver(onImmediate, [&](Reactor & r) { on(r); });
        if (failure) std::rethrow_exception(failure);
    }

private:
    template <class Model, class Key, class On>
    static void notifyOfKey(Model const & model, Key const & key, On const & on) {
        using Reactor = typename Model::NotifieeConst;
        model.notify([&](Reactor & r) { on(r, key); }, [&](Reactor & r) { on(r); });
    }

    template <class Model, class Member, class Key>
    static void enter(Model & model, Vel::HashMap<Member, Key, Model> & map,
                      Vel::Ptr<Member> const & member) noexcept {
        member->owner_ = &model;
        map.newMember(member);
    }

    template <class Model, class Member, class Key>
    static Vel::Ptr<Member> leave(Vel::HashMap<Member, Key, Model> & map, Key const & key) noexcept {
        Vel::Ptr<Member> member = map.deleteMember(key);
        if (member) member->owner_ = nullptr;
        return member;
    }

    [[noreturn]] static void refuseNull(char const * attribute);
    [[noreturn]] static void refuseOwned(char const * attribute, std::string const & member,
                                         std::string const & owner, std::string const & other);
    static std::string described(Vel::Name const & key);
    static std::string described(Vel::Ptr<PortBaseV2 const> const & key);
    static std::string described(HostV2 const & host);
    static std::string described(StatusV2 const & status);
};

}  // namespace NetworkTopology
