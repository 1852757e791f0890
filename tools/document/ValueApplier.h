// JSON values entering a live model, each through the mutator that is made for it.
//
// Order
//     Every object first, each collection keyed by objects after the objects that its keys lead to; then the
//     attributes of all, then their references and what stands under keys of values. So references within a
//     value may run in any direction.
#pragma once

#include <string_view>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tools/document/Resolver.h"
#include "tools/document/Shape.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

// REQUIRES for all: the value has been checked for its place and outlives the applier. What a reference or
// key leads to may be removed meanwhile by a reactor of the model: the reference is then null, the entry left
// out.
class ValueApplier {
public:
    // `resolver` looks at the live model alone.
    explicit ValueApplier(Resolver const & resolver) : resolver_(resolver) {}

    // Gives `object` its members; their attributes and references wait for `finish`.
    void fill(Vel::GenericIf const & object, ObjectShape const & shape, JsonValue const & json);
    // Makes a member of a collection and fills it.
    void make(Vel::GenericIf const & owner, MemberShape const & collection, std::string_view key,
              JsonValue const & json);
    // Makes an object that could be a member of `collection`, in no collection yet, and fills it.
    Vel::GenericIf makeApart(MemberShape const & collection, Vel::GenericIf const & key,
                             JsonValue const & json);
    // Sets one attribute, or enters what a collection is to hold.
    void set(Vel::GenericIf const & owner, MemberShape const & member, JsonValue const & json);
    // Sets one entry of a value collection.
    void setEntry(Vel::GenericIf const & owner, MemberShape const & collection, std::string_view key,
                  JsonValue const & json);
    void finish();

private:
    struct Filled {
        Vel::GenericIf object;
        ObjectShape const * shape;
        JsonValue const * json;
    };
    struct Waiting {
        Vel::GenericIf owner;
        MemberShape const * collection;
        JsonValue const * json;
    };

    Vel::GenericIf reference(JsonValue const & json) const;
    void makeAll(Vel::GenericIf const & owner, MemberShape const & collection, JsonValue const & json);

    Resolver const & resolver_;
    std::vector<Filled> filled_;
    std::vector<Waiting> waiting_;  // Collections keyed by objects.
};

}  // namespace TopologyTools
