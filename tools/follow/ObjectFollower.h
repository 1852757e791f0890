#pragma once

#include <functional>
#include <string_view>

#include "platform/Vel/GenericIf.h"
#include "platform/Vel/NotifieeConst.h"
#include "platform/Vel/Ptr.h"

namespace TopologyTools {

// Hears of the changes of one object, by the names that its type record gives to its attributes.
class ObjectFollower {
public:
    virtual ~ObjectFollower() = default;

    virtual void attributeChanged(std::string_view name) = 0;
    // An entry was added, changed or removed.
    virtual void entryChanged(std::string_view collection, Vel::GenericIf const & key) = 0;
    // Any number of entries were.
    virtual void entriesChanged(std::string_view collection) = 0;
};

// Makes a reactor that tells the follower of every change of the object from now on, until it is bound to
// another object or to none. The follower must outlive that time.
using Follow = std::function<Vel::Ptr<Vel::PtrInterface::NotifieeConst>(Vel::GenericIf const & object,
                                                                        ObjectFollower & follower)>;

}  // namespace TopologyTools
