#include "platform/Vel/NotifieeConst.h"

#include <exception>
#include <utility>

#include "platform/Vel/Trace.h"

namespace Vel {

using NotifieeConst = PtrInterface::NotifieeConst;

// A delivery to all reactors of a list, one after the other.
class NotifieeList::Walk : public Delivery {
public:
    // REQUIRES: `list` is not empty.
    explicit Walk(NotifieeList const & list) noexcept
        : Delivery(nullptr, nullptr), list_(&list), next_(list.last_->next()), last_(list.last_) {
        ++walks_;
    }
    ~Walk() { --walks_; }
    Walk(Walk const &) = delete;
    Walk & operator=(Walk const &) = delete;

    // What `delivery` is, if it walks `list`; else null.
    static Walk * of(Delivery & delivery, NotifieeList const & list) noexcept {
        if (delivery.notifier_) [[likely]]
            return nullptr;
        auto & walk = static_cast<Walk &>(delivery);
        return walk.list_ == &list ? &walk : nullptr;
    }

    NotifieeConst * next() const noexcept { return next_; }
    // Moves on to the next one, and gives the one that is left behind.
    NotifieeConst & advance() noexcept {
        return *std::exchange(next_, next_ == last_ ? nullptr : next_->next());
    }
    // `reactor` is called from now on. REQUIRES: it is in the list.
    void calledIs(NotifieeConst const & reactor) noexcept {
        called_ = &reactor;
        fate_ = 0;
    }
    bool calledIsDestroyed() const noexcept { return (fate_ & kDestroyed) != 0; }

private:
    friend class NotifieeList;

    NotifieeList const * list_;  // Null once it is gone.
    NotifieeConst * next_;       // Null at the end.
    NotifieeConst * last_;       // The last one registered when the change was made.
};

constinit thread_local NotifieeList::Delivery * NotifieeList::Delivery::innermost_ = nullptr;

constinit thread_local unsigned NotifieeList::Delivery::walks_ = 0;

bool NotifieeList::Delivery::keepsOne(PtrInterface const & object) noexcept {
    if (!notifier_) return false;
    object.referenceNew();
    fate_ |= notifier_ == &object ? kNotifierKept : kCalledKept;
    return true;
}

// The reactor goes first: the end of its own references may make the notifier's last one ours.
void NotifieeList::Delivery::letGo() noexcept {
    if ((fate_ & kCalledKept) != 0) std::exchange(called_, nullptr)->referenceDel();
    innermost_ = outer_;
    if ((fate_ & kNotifierKept) != 0) notifier_->referenceDel();
}

void NotifieeList::clear() noexcept {
    // Reactors hold their notifier, so only an object outside the heap can die with followers.
    while (last_) leave(*last_->next());
    for (Delivery * d = Delivery::innermost_; d; d = d->outer_) {
        if (Walk * const walk = Walk::of(*d, *this)) walk->list_ = nullptr;
    }
}

void NotifieeList::leave(NotifieeConst & reactor) noexcept {
    // Mostly there is no other one, and nobody is delivering.
    if (reactor.next() != &reactor || Delivery::innermost_) [[unlikely]]
        return leaveOthers(reactor);
    last_ = nullptr;
    reactor.nextIs(nullptr);
}

void NotifieeList::leaveOthers(NotifieeConst & reactor) noexcept {
    NotifieeConst * const next = reactor.next();
    NotifieeConst * previous = &reactor;
    if (next != &reactor) [[unlikely]] {
        previous = last_;
        while (previous->next() != &reactor) previous = previous->next();
    }
    for (Delivery * d = Delivery::innermost_; d; d = d->outer_) {
        if (d->called_ == &reactor) [[unlikely]]
            d->fate_ |= Delivery::kLeft;
        Walk * const walk = Walk::of(*d, *this);
        if (!walk) [[likely]]
            continue;
        if (walk->next_ == &reactor) walk->next_ = walk->last_ == &reactor ? nullptr : next;
        if (walk->last_ == &reactor) walk->last_ = previous;
    }
    if (next == &reactor) [[likely]] {
        last_ = nullptr;
    } else {
        previous->nextIs(next);
        if (last_ == &reactor) last_ = previous;
    }
    reactor.nextIs(nullptr);
}

void NotifieeList::deliver(PtrInterface const & notifier, Call first, void const * firstCallback, Call second,
                           void const * secondCallback) const {
    KeepAlive const keepNotifier(notifier);
    Walk delivery(*this);
    std::exception_ptr failure;  // The first one; null without.
    do {
        NotifieeConst & reactor = delivery.advance();
        if (!reactor.takesCallbacks()) continue;
        delivery.calledIs(reactor);
        KeepAlive const keepReactor(reactor);
        auto const failed = [&] {
            if (!failure) failure = std::current_exception();
            if (keepReactor.holds() || !delivery.calledIsDestroyed()) failedAlone(reactor);
        };
        try {
            first(reactor, firstCallback);
        } catch (...) {
            failed();
        }
        if (!second || !delivery.calledStayed() || !reactor.takesCallbacks()) continue;
        try {
            second(reactor, secondCallback);
        } catch (...) {
            failed();
        }
    } while (delivery.next());
    if (failure) [[unlikely]]
        std::rethrow_exception(failure);
}

// Called with the exception in flight.
void NotifieeList::failedAlone(NotifieeConst & reactor) noexcept {
    try {
        reactor.onNotificationException();
    } catch (...) {  // The caller is told of the first exception only.
    }
}

NotifieeConst::~NotifieeConst() {
    heldIs();
    NotifieeList::Delivery * const innermost = NotifieeList::Delivery::innermost_;
    for (auto * d = innermost; d; d = d->outer_) {
        if (d->called_ == this) [[unlikely]]
            d->fate_ |= NotifieeList::Delivery::kDestroyed;
    }
    if (!isRegisteredNotifiee()) return;
    NotifieeList & list = *notifier_->notifieeList();
    // As NotifieeList::leave, without what is of no use to a reactor that ends here.
    if (innermost || next() != this) {
        list.leaveOthers(*this);
    } else {
        list.last_ = nullptr;
    }
}

void NotifieeConst::zeroReferencesIs(bool zero) {
    if (!zero) return;
    onZeroReferences();
    delete this;
}

PtrInterface const * NotifieeConst::velReactor() const { return this; }

void NotifieeConst::isRegisteredNotifieeIs(bool registered) const {
    if (!registered) registeredIs(false);
}

void NotifieeConst::registeredIs(bool registered) const noexcept {
    if (registered == isRegisteredNotifiee() || !notifier_) return;
    NotifieeList * const list = notifier_->notifieeList();
    if (!list) return;
    auto & self = const_cast<NotifieeConst &>(*this);
    if (registered) {
        list->enter(self);
    } else {
        list->leave(self);
    }
}

void NotifieeConst::notifierIs(Ptr<PtrInterface const> const & notifier) {
    if (notifier == notifier_) return;
    bool const registered = isRegisteredNotifiee();
    registeredIs(false);
    // The old notifier goes last: the argument may live inside it.
    Ptr<PtrInterface const> const old = std::exchange(notifier_, notifier);
    if (registered) isRegisteredNotifieeIs(true);
}

void NotifieeConst::handleNotification(ActivityConfig *) {}

void NotifieeConst::onNotificationException() { traceNotificationException(); }

void NotifieeConst::onZeroReferences() {}

Activity * NotifieeConst::velFwkActivity() const { return nullptr; }

PtrInterface * NotifieeConst::actsm() { return nullptr; }

}  // namespace Vel
