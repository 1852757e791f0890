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

#include <cstdint>

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
    inline ~NotifieeList();
    NotifieeList(NotifieeList const &) = delete;
    NotifieeList & operator=(NotifieeList const &) = delete;

    bool empty() const noexcept { return last_ == nullptr; }

    // Before work that ends with a delivery.
    [[gnu::always_inline]] void fetch() const noexcept { __builtin_prefetch(last_); }

    // Calls `callback(reactor)` on every reactor that is to get the change; `Reactor` is the reactor class
    // that every member of the list has.
    template <class Reactor, class Callback>
    void notify(PtrInterface const & notifier, Callback const & callback) const;
    // Calls `first(reactor)` and then `second(reactor)`, reactor by reactor; the second one also when the
    // first one threw, but not when the first one made the reactor leave.
    template <class Reactor, class First, class Second>
    void notify(PtrInterface const & notifier, First const & first, Second const & second) const;

    // The same for objects that seldom have reactors.
    template <class Reactor, class... Callbacks>
    void notifySeldom(PtrInterface const & notifier, Callbacks const &... callbacks) const {
        if (!empty()) [[unlikely]]
            notifyAside<Reactor>(notifier, callbacks...);
    }

private:
    friend class PtrInterface;
    friend class PtrInterface::NotifieeConst;
    using Call = void (*)(PtrInterface::NotifieeConst &, void const * callback);

    // A delivery in progress. All deliveries of a thread form a chain, which a reactor that leaves walks:
    // every delivery of its list then steps over it. Nesting is shallow, and usually there is none at all.
    class VEL_EXPORT Delivery {
    public:
        // To one reactor, which is called now. It and `notifier` stay alive as long as this does: not by
        // references, of which four would be counted for each change, but because the last reference to an
        // object that goes meanwhile becomes this delivery's (`keeps`). REQUIRES: both are referenced, the
        // reactor is in a list, and pointers are not thread-safe; else another thread may have the last one.
        Delivery(PtrInterface const & notifier, PtrInterface::NotifieeConst const & only) noexcept
            : Delivery(&notifier, &only) {}
        ~Delivery() {
            if ((fate_ & (kCalledKept | kNotifierKept)) != 0) [[unlikely]] {
                letGo();
            } else {
                innermost_ = outer_;
            }
        }
        Delivery(Delivery const &) = delete;
        Delivery & operator=(Delivery const &) = delete;

        // Whether the reactor that was called is there and has been in its list all the time.
        bool calledStayed() const noexcept { return (fate_ & (kLeft | kDestroyed)) == 0; }

        // Whether a delivery of this thread keeps `object`, whose last reference has just gone, alive. It is
        // referenced again then.
        inline static bool keeps(PtrInterface const & object) noexcept;

    protected:
        friend class NotifieeList;
        friend class PtrInterface::NotifieeConst;

        // What has become of the reactor that was called.
        static constexpr std::uint8_t kLeft = 1;  // Its list, perhaps to enter it again at the end.
        static constexpr std::uint8_t kDestroyed = 2;
        // What this delivery has the last reference to.
        static constexpr std::uint8_t kCalledKept = 4;
        static constexpr std::uint8_t kNotifierKept = 8;

        Delivery(PtrInterface const * notifier, PtrInterface::NotifieeConst const * called) noexcept
            : notifier_(notifier), called_(called), outer_(innermost_) {
            innermost_ = this;
        }
        // And ends.
        [[gnu::cold]] void letGo() noexcept;
        // Of its two.
        [[gnu::cold]] bool keepsOne(PtrInterface const & object) noexcept;

        PtrInterface const * notifier_;               // Null for a walk, in which references keep both alive.
        PtrInterface::NotifieeConst const * called_;  // Being called now, or last; null before the first.
        Delivery * const outer_;
        std::uint8_t fate_ = 0;

        __attribute__((tls_model("initial-exec"))) static constinit thread_local Delivery * innermost_;
        // How many of this thread walk a list.
        __attribute__((tls_model("initial-exec"))) static constinit thread_local unsigned walks_;
    };
    class Walk;

    // No reactor stays, and no walk goes on.
    [[gnu::cold]] void clear() noexcept;

    template <class Reactor, class Callback>
    static void call(PtrInterface::NotifieeConst & reactor, void const * callback);

    template <class Reactor, class... Callbacks>
    [[gnu::noinline]] void notifyAside(PtrInterface const & notifier, Callbacks const &... callbacks) const {
        notify<Reactor>(notifier, callbacks...);
    }
    // Whether a reactor of that reference word takes a delivery that needs no references.
    static bool takesSimpleDelivery(std::uint32_t word) noexcept;
    // Null when there is none or when there are several.
    PtrInterface::NotifieeConst * onlyOne() const noexcept;
    // Called with the exception in flight.
    [[gnu::cold]] static void failedAlone(PtrInterface::NotifieeConst & reactor) noexcept;
    void deliver(PtrInterface const & notifier, Call first, void const * firstCallback, Call second,
                 void const * secondCallback) const;
    inline void enter(PtrInterface::NotifieeConst & reactor) noexcept;
    void leave(PtrInterface::NotifieeConst & reactor) noexcept;
    // From a list that has others, or during a delivery. Looks for the reactor before it, of which there are
    // few, from the first one on: many leave mostly in the order in which they entered, and then each is
    // found at once.
    [[gnu::noinline]] void leaveOthers(PtrInterface::NotifieeConst & reactor) noexcept;

    // A ring: after the last reactor comes the first one.
    PtrInterface::NotifieeConst * last_ = nullptr;
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
    bool isRegisteredNotifiee() const noexcept { return next() != nullptr; }

protected:
    static constexpr unsigned kMarks = 4;

    // `mark`, which is less than kMarks, is what a class wants to know of its reactors at no cost.
    explicit NotifieeConst(unsigned mark = 0) noexcept : nextAndMark_(mark) {}
    unsigned mark() const noexcept { return nextAndMark_ & kMarkBits; }
    // Binds a reactor that has followed nothing yet: for constructors, which know that `notifier` is of the
    // class that their reactor follows.
    void firstNotifierIs(PtrInterface const * notifier) noexcept { notifier_ = notifier; }
    // And enters it; `notifier` is an `Entity`.
    template <class Notifier>
    void follow(Notifier const & notifier) noexcept {
        firstNotifierIs(&notifier);
        notifier.notifiees_.enter(*this);
    }
    void registeredIs(bool registered) const noexcept;

private:
    friend class Vel::NotifieeList;

    // A reactor that is being destroyed is still in the list, but perhaps no longer what it was.
    bool takesCallbacks() const noexcept { return takesCallbacks(word()); }
    static bool takesCallbacks(std::uint32_t word) noexcept {
        return (word & (kNotificationActive | kHeld)) == kNotificationActive;
    }
    // And is counted, without which it could not be kept alive.
    static bool takesCallbacksAndReferences(std::uint32_t word) noexcept {
        std::uint32_t const unmarked = word & ~kMarkedForDeletion;
        return unmarked > kNotificationActive && unmarked < kHeld;
    }

    // Of the notifier's list. Null while not registered.
    NotifieeConst * next() const noexcept {
        return reinterpret_cast<NotifieeConst *>(nextAndMark_ & ~kMarkBits);
    }
    void nextIs(NotifieeConst * next) noexcept {
        nextAndMark_ = reinterpret_cast<std::uintptr_t>(next) | mark();
    }

    static constexpr std::uintptr_t kMarkBits = kMarks - 1;

    // There is a reactor for every object of a model, and a cache line for each: hence one word for two
    // things. The low bits of an object's address are free for the second one.
    Ptr<PtrInterface const> notifier_;
    std::uintptr_t nextAndMark_;
};

inline bool NotifieeList::Delivery::keeps(PtrInterface const & object) noexcept {
    for (Delivery * d = innermost_; d; d = d->outer_) {
        if ((d->notifier_ == &object || d->called_ == &object) && d->keepsOne(object)) return true;
    }
    return false;
}

inline NotifieeList::~NotifieeList() {
    if (last_ || Delivery::walks_ != 0) [[unlikely]]
        clear();
}

inline void NotifieeList::enter(PtrInterface::NotifieeConst & reactor) noexcept {
    if (last_) [[unlikely]] {
        reactor.nextIs(last_->next());
        last_->nextIs(&reactor);
    } else {
        reactor.nextIs(&reactor);
    }
    last_ = &reactor;
}

inline PtrInterface::NotifieeConst * NotifieeList::onlyOne() const noexcept {
    PtrInterface::NotifieeConst * const last = last_;
    return last && last->next() == last ? last : nullptr;
}

inline bool NotifieeList::takesSimpleDelivery(std::uint32_t word) noexcept {
    if (VFPtrInterface::threadSafePointers_) [[unlikely]]
        return false;
    return PtrInterface::NotifieeConst::takesCallbacksAndReferences(word);
}

template <class Reactor, class Callback>
void NotifieeList::notify(PtrInterface const & notifier, Callback const & callback) const {
    if (empty()) return;
    if (PtrInterface::NotifieeConst * const only = onlyOne()) {
        std::uint32_t const word = only->word();
        if (takesSimpleDelivery(word)) [[likely]] {
            Delivery delivery(notifier, *only);
            try {
                callback(static_cast<Reactor &>(*only));
            } catch (...) {
                failedAlone(*only);
                throw;
            }
            return;
        }
        if (!PtrInterface::NotifieeConst::takesCallbacks(word)) return;
    }
    deliver(notifier, &call<Reactor, Callback>, &callback, nullptr, nullptr);
}

template <class Reactor, class First, class Second>
void NotifieeList::notify(PtrInterface const & notifier, First const & first, Second const & second) const {
    if (empty()) return;
    if (PtrInterface::NotifieeConst * const only = onlyOne()) {
        std::uint32_t const word = only->word();
        if (takesSimpleDelivery(word)) [[likely]] {
            Delivery delivery(notifier, *only);
            auto & reactor = static_cast<Reactor &>(*only);
            auto const takesSecond = [&] {
                if (!delivery.calledStayed()) [[unlikely]]
                    return false;
                return only->takesCallbacks();
            };
            try {
                first(reactor);
            } catch (...) {
                failedAlone(reactor);
                try {
                    if (takesSecond()) second(reactor);
                } catch (...) {
                    failedAlone(reactor);
                }
                throw;
            }
            if (takesSecond()) [[likely]] {
                try {
                    second(reactor);
                } catch (...) {
                    failedAlone(reactor);
                    throw;
                }
            }
            return;
        }
        if (!PtrInterface::NotifieeConst::takesCallbacks(word)) return;
    }
    deliver(notifier, &call<Reactor, First>, &first, &call<Reactor, Second>, &second);
}

template <class Reactor, class Callback>
void NotifieeList::call(PtrInterface::NotifieeConst & reactor, void const * callback) {
    (*static_cast<Callback const *>(callback))(static_cast<Reactor &>(reactor));
}

}  // namespace Vel
