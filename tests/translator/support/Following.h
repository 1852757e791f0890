// Reactors that tests attach to objects of either model.
#pragma once

#include <stdexcept>
#include <utility>

#include "platform/Vel/Ptr.h"

namespace TestSupport {

// A new reactor of that class, which follows the object from then on.
template <class Reactor, class Object, class... Arguments>
Vel::Ptr<Reactor> following(Vel::Ptr<Object> const & object, Arguments &&... arguments) {
    Vel::Ptr<Reactor> const reactor = new Reactor(std::forward<Arguments>(arguments)...);
    reactor->notifierIs(object);
    reactor->isRegisteredNotifieeIs(true);
    reactor->hasNotificationActiveIs(true);
    return reactor;
}

// What a follower throws that does not put up with a change.
struct Refusal : std::runtime_error {
    Refusal() : std::runtime_error("refused by a follower") {}
};

}  // namespace TestSupport
