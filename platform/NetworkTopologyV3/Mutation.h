// What changes of this model's collections have of their own. For the model's own sources only.
#pragma once

#include "platform/Vel/CollectionMutation.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopologyV3 {

// Callers name keys by the object that stands under them, or out of an entry: both may go away in a delivery,
// so keys are copied. A model class offers it
//     notify(callback...)     delivers one change to its reactors
//     letGo(member)           static: the member hears that it has been taken out, before anybody else does
struct Mutation : Vel::CollectionMutation<Mutation, true> {
    // `Set(model, object)` for callers that name the key too, which is always the object's name. Throws
    // Vel::RangeException for another one.
    template <auto Set, class Model, class Object>
    static void valueUnderItsNameIs(Model & model, Vel::Name const & key, Vel::Ptr<Object> const & object) {
        if (object && object->name() != key) refuseKey(key, object->name());
        (model.*Set)(object);
    }

private:
    friend CollectionMutation;

    template <class Model, class... Callbacks>
    static void notify(Model const & model, Callbacks const &... callbacks) {
        model.notify(callbacks...);
    }
    // A member has known its owner since it was made.
    template <class Model, class Member>
    static void enters(Model &, Member &) noexcept {}
    template <class Model, class Member>
    static void letGo(Member & member) noexcept {
        Model::letGo(member);
    }

    [[noreturn]] static void refuseKey(Vel::Name const & key, Vel::Name const & name);
};

}  // namespace NetworkTopologyV3
