// What changes of this model's collections have of their own. For the model's own sources only.
//
// A member knows its owner, which is set before it enters the collection and cleared before anybody hears
// that it has left.
#pragma once

#include <string>
#include <utility>

#include "platform/Vel/CollectionMutation.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopology {

class HostV2;
class PortBaseV2;
class StatusV2;

// Mutators take keys by value, so that they are the caller's own.
struct Mutation : Vel::CollectionMutation<Mutation, false> {
    using CollectionMutation::memberIs;

    // Adds `member`, in place of the one of its key if there is one. Throws Vel::RangeException for null and
    // for a member that stands elsewhere.
    template <class Model, class Member, class Key, class On>
    static Vel::Ptr<Member> memberIs(Model & model, Vel::HashMap<Member, Key, Model> & map,
                                     Vel::Ptr<Member> member, char const * attribute, On const & on) {
        if (!member) refuseNull(attribute);
        if (member->owner_ == &model) return member;
        Key const key = member->collectionKey();
        if (member->owner_)
            refuseOwned(attribute, described(key), described(*member->owner_), described(model));
        Vel::Ptr<Member> const previous = leave(map, key);
        enter(model, map, {map, key}, member);
        notifyOfKey(model, key, on);
        return member;
    }

private:
    friend CollectionMutation;

    template <class Model, class... Callbacks>
    static void notify(Model const & model, Callbacks const &... callbacks) {
        model.notify(callbacks...);
    }
    template <class Model, class Member>
    static void enters(Model & model, Member & member) noexcept {
        member.owner_ = &model;
    }
    template <class Model, class Member>
    static void letGo(Member & member) noexcept {
        member.owner_ = nullptr;
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
