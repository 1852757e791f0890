// Reactors: objects that follow one other object, their notifier, and get a callback for each of its changes.
//
// Usage
//     class Watch final : public NetworkTopology::HostV2::NotifieeConst {
//         void onHostname() override { ... }
//     };
//     Vel::Ptr<Watch> watch = new Watch;
//     watch->notifierIs(host);                 // holds a counted reference to the host
//     watch->isRegisteredNotifieeIs(true);     // enters the host's list
//     watch->hasNotificationActiveIs(true);    // callbacks arrive from now on
//
// Delivery
//     A change is delivered synchronously, on the changing thread, after the model holds the new value, to
//     the reactors that are registered and active, in order of registration. Entering twice counts once;
//     leaving and entering again puts a reactor last. Rebinding a registered reactor moves its registration.
//     A keyed change calls the keyed callback and then the unkeyed one, reactor by reactor.
//
// Re-entrancy
//     During a delivery a callback may change the model (the nested change is delivered at once), release any
//     object, and register, rebind or unregister any reactor, itself included. A reactor registered during a
//     delivery does not get the change in progress; one that has been unregistered, deactivated or unbound
//     during it gets nothing more. The notifier and the reactor being called are kept alive for the call.
//
// Exceptions
//     When a callback throws, the remaining reactors are still called, `onNotificationException()` is called
//     on the one that threw, and the first exception then reaches the caller of the mutator. The model keeps
//     the change.
//
// Not supported
//     Delivery on another thread or at a later time; several changes in one delivery.
#pragma once

#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace Vel {

// What schedules callbacks in frameworks that queue them. Delivery here is synchronous, so there is none.
class Activity;
class ActivityConfig;

// The reactors of one object, in order of registration.
class VEL_EXPORT NotifieeList {
public:
    NotifieeList() noexcept = default;
    ~NotifieeList();
    NotifieeList(NotifieeList const &) = delete;
    NotifieeList & operator=(NotifieeList const &) = delete;

    bool empty() const noexcept { return first_ == nullptr; }

    // Calls `callback(reactor)` on every reactor that is to get the change; `Reactor` is the reactor class
    // that every member of the list has.
    template <class Reactor, class Callback>
    void notify(PtrInterface const & notifier, Callback const & callback) const;
    // Calls `first(reactor)` and then `second(reactor)`, reactor by reactor; the second one also when the
    // first one threw, but not when the first one made the reactor leave.
    template <class Reactor, class First, class Second>
    void notify(PtrInterface const & notifier, First const & first, Second const & second) const {
        if (!empty()) {
            deliver(notifier, &call<Reactor, First>, &first, &call<Reactor, Second>, &second);
        }
    }

private:
    friend class PtrInterface::NotifieeConst;
    struct Delivery;
    using Call = void (*)(PtrInterface::NotifieeConst &, void const * callback);

    template <class Reactor, class Callback>
    static void call(PtrInterface::NotifieeConst & reactor, void const * callback);

    // The reactor, if there is exactly one, if it takes callbacks, and if a reference can keep it alive.
    // REQUIRES: not empty.
    PtrInterface::NotifieeConst * onlyOne() const noexcept;
    // Called with the exception in flight.
    [[gnu::cold]] static void failedAlone(PtrInterface::NotifieeConst & reactor) noexcept;
    void deliver(PtrInterface const & notifier, Call first, void const * firstCallback, Call second,
                 void const * secondCallback) const;
    void enter(PtrInterface::NotifieeConst & reactor) noexcept;
    void leave(PtrInterface::NotifieeConst & reactor) noexcept;

    // A ring: the first reactor's predecessor is the last one.
    PtrInterface::NotifieeConst * first_ = nullptr;
};

class VEL_EXPORT PtrInterface::NotifieeConst : public HashMapMember {
public:
    // Unbinds.
    ~NotifieeConst() override;
    void zeroReferencesIs(bool zero) override;

    // The object on whose behalf the callbacks run: the reactor itself.
    virtual PtrInterface const * velReactor() const;
    // Enters or leaves the notifier's list; nothing happens without a notifier. Delivery casts a reactor to
    // the reactor class of its notifier without a test. This base class fits no notifier, so its own version
    // only leaves; the reactor class of a model class, whose `notifierIs` accepts objects of that class
    // alone, overrides both and enters through `registeredIs`.
    virtual void isRegisteredNotifieeIs(bool registered) const;
    // Binds to `notifier` after unbinding from the previous object; null unbinds.
    virtual void notifierIs(Ptr<PtrInterface const> const & notifier);
    // For frameworks that queue notifications; never called here.
    virtual void handleNotification(ActivityConfig * config);
    // One of this reactor's callbacks has thrown. Called with the exception in flight, so that `throw;`
    // inside a try block tells which. The default traces on facility "Vel" at level 0.
    virtual void onNotificationException();
    // The last reference to this reactor has gone; it is destroyed when the call returns.
    virtual void onZeroReferences();
    // Null: callbacks run on the thread that made the change.
    virtual Activity * velFwkActivity() const;
    // The state machine that an activity runs; null, as there is no activity.
    virtual PtrInterface * actsm();

    Ptr<PtrInterface const> const & notifierObject() const noexcept { return notifier_; }
    bool isRegisteredNotifiee() const noexcept { return next_ != nullptr; }

protected:
    NotifieeConst() noexcept = default;
    // Binds a reactor that has followed nothing yet: for constructors, which know that `notifier` is of the
    // class that their reactor follows.
    void firstNotifierIs(PtrInterface const * notifier) noexcept { notifier_ = notifier; }
    void registeredIs(bool registered) const noexcept;

private:
    friend class Vel::NotifieeList;

    // A reactor that is being destroyed is still in the list, but perhaps no longer what it was.
    bool takesCallbacks() const noexcept {
        constexpr std::uint32_t kTested = kNotificationActive | kHeld;
        return (flags() & kTested) == kNotificationActive;
    }

    Ptr<PtrInterface const> notifier_;
    mutable NotifieeConst * next_ = nullptr;  // Null while not registered.
    mutable NotifieeConst * previous_ = nullptr;
};

inline PtrInterface::NotifieeConst * NotifieeList::onlyOne() const noexcept {
    return first_->next_ == first_ && first_->takesCallbacks() && first_->isCounted() ? first_ : nullptr;
}

template <class Reactor, class Callback>
void NotifieeList::notify(PtrInterface const & notifier, Callback const & callback) const {
    if (empty()) return;
    if (PtrInterface::NotifieeConst * const only = onlyOne()) [[likely]] {
        // Nothing that it may do to the list matters to this delivery, which ends with it.
        KeepAlive const keepNotifier(notifier);
        KeepAlive const keepReactor(*only);
        try {
            callback(static_cast<Reactor &>(*only));
        } catch (...) {
            failedAlone(*only);
            throw;
        }
        return;
    }
    deliver(notifier, &call<Reactor, Callback>, &callback, nullptr, nullptr);
}

template <class Reactor, class Callback>
void NotifieeList::call(PtrInterface::NotifieeConst & reactor, void const * callback) {
    (*static_cast<Callback const *>(callback))(static_cast<Reactor &>(reactor));
}

}  // namespace Vel
