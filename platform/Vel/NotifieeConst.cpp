#include "platform/Vel/NotifieeConst.h"

#include <exception>

#include "platform/Vel/Trace.h"

namespace Vel {

using NotifieeConst = PtrInterface::NotifieeConst;

constinit thread_local NotifieeList::Delivery * NotifieeList::Delivery::innermost_ = nullptr;

NotifieeList::~NotifieeList() {
    // Reactors hold their notifier, so only an object outside the heap can die with followers.
    while (last_) leave(*last_->next());
    for (Delivery * d = Delivery::innermost_; d; d = d->outer_) {
        if (d->list_ == this) d->list_ = nullptr;
    }
}

void NotifieeList::enter(NotifieeConst & reactor) noexcept {
    if (last_) {
        reactor.nextIs(last_->next());
        last_->nextIs(&reactor);
    } else {
        reactor.nextIs(&reactor);
    }
    last_ = &reactor;
}

void NotifieeList::leave(NotifieeConst & reactor) noexcept {
    NotifieeConst * const next = reactor.next();
    // Mostly there is no other one, and nobody is delivering.
    if (next == &reactor && !Delivery::innermost_) [[likely]] {
        last_ = nullptr;
        reactor.nextIs(nullptr);
        return;
    }
    NotifieeConst * previous = last_;
    while (previous->next() != &reactor) previous = previous->next();
    for (Delivery * d = Delivery::innermost_; d; d = d->outer_) {
        if (d->list_ != this) continue;
        if (d->called_ == &reactor) d->calledLeft_ = true;
        if (d->next_ == &reactor) d->next_ = d->last_ == &reactor ? nullptr : next;
        if (d->last_ == &reactor) d->last_ = previous;
    }
    if (next == &reactor) {
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
    Delivery delivery(*this);
    delivery.next_ = last_->next();
    delivery.last_ = last_;
    std::exception_ptr failure;  // The first one; null without.
    do {
        NotifieeConst & reactor = *delivery.next_;
        delivery.next_ = &reactor == delivery.last_ ? nullptr : reactor.next();
        if (!reactor.takesCallbacks()) continue;
        delivery.calledIs(reactor);
        KeepAlive const keepReactor(reactor);
        auto const failed = [&] {
            if (!failure) failure = std::current_exception();
            if (keepReactor.holds() || !delivery.calledIsDestroyed_) failedAlone(reactor);
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
    } while (delivery.next_);
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
    for (auto * d = NotifieeList::Delivery::innermost_; d; d = d->outer_) {
        if (d->called_ == this) d->calledIsDestroyed_ = true;
    }
    registeredIs(false);
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
