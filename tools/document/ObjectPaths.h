// Where the objects of a model stand in its document.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/Vel/GenericIf.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/PtrInterface.h"
#include "tools/document/Shape.h"

namespace TopologyTools {

// The JSON Pointer to an object within the document; nothing when it does not stand there. Answers only for
// objects that references may lead to.
using PathOf = std::function<std::optional<std::string>(Vel::GenericIf const & object)>;

// What tells one object from another. Null for null.
using Identity = Vel::PtrInterface const *;
Identity identityOf(Vel::GenericIf const & object);

// Finds paths by the identity of objects, after one walk over the model: it shows the model as it was then.
// Takes some 60 bytes for every object that references may lead to.
class ObjectPaths {
public:
    ObjectPaths(Vel::GenericIf const & root, DocumentShape const & shape);

    std::optional<std::string> path(Vel::GenericIf const & object) const;
    PathOf pathOf() const {
        return [this](Vel::GenericIf const & object) { return path(object); };
    }

private:
    struct Place {
        Identity parent;
        MemberShape const * collection;
        Vel::String key;  // Its text; a name shares its bytes.
    };

    void enter(Vel::GenericIf const & object, ObjectShape const & shape);
    void append(std::string & pointer, Place const & place) const;

    Identity root_;
    std::unordered_map<Identity, Place> places_;
};

}  // namespace TopologyTools
