#include "platform/Vel/NotifieeConst.h"

#include <exception>

#include "platform/Vel/Trace.h"

namespace Vel {

using NotifieeConst = PtrInterface::NotifieeConst;

// A delivery in progress. All deliveries of a thread form a chain, which a reactor that leaves walks: every
// delivery of its list then steps over it. Nesting is shallow, and usually there is none at all.
struct NotifieeList::Delivery {
    NotifieeList const * list;
    NotifieeConst * next;    // To be called next; null at the end.
    NotifieeConst * last;    // The last one registered when the change was made.
    NotifieeConst * called;  // Being called now, or last.
    bool calledLeft;         // It has left the list, perhaps to enter it again at the end.
    bool calledIsDestroyed;
    Delivery * outer;
    std::exception_ptr failure;  // The first one; null without.

    [[gnu::cold]] void failed(NotifieeConst & reactor, bool isKeptAlive) noexcept;
};

namespace {

__attribute__((tls_model("initial-exec"))) thread_local void * innermostDelivery = nullptr;

}  // namespace

NotifieeList::~NotifieeList() {
    // Reactors hold their notifier, so only an object outside the heap can die with followers.
    while (first_) leave(*first_);
    for (auto * d = static_cast<Delivery *>(innermostDelivery); d; d = d->outer) {
        if (d->list == this) d->list = nullptr;
    }
}

void NotifieeList::enter(NotifieeConst & reactor) noexcept {
    if (first_) {
        reactor.next_ = first_;
        reactor.previous_ = first_->previous_;
        first_->previous_->next_ = &reactor;
        first_->previous_ = &reactor;
    } else {
        reactor.next_ = reactor.previous_ = first_ = &reactor;
    }
}

void NotifieeList::leave(NotifieeConst & reactor) noexcept {
    for (auto * d = static_cast<Delivery *>(innermostDelivery); d; d = d->outer) {
        if (d->list != this) continue;
        if (d->called == &reactor) d->calledLeft = true;
        if (d->next == &reactor) d->next = d->last == &reactor ? nullptr : reactor.next_;
        if (d->last == &reactor) d->last = reactor.previous_;
    }
    if (reactor.next_ == &reactor) {
        first_ = nullptr;
    } else {
        reactor.previous_->next_ = reactor.next_;
        reactor.next_->previous_ = reactor.previous_;
        if (first_ == &reactor) first_ = reactor.next_;
    }
    reactor.next_ = reactor.previous_ = nullptr;
}

void NotifieeList::deliver(PtrInterface const & notifier, Call first, void const * firstCallback, Call second,
                           void const * secondCallback) const {
    KeepAlive const keepNotifier(notifier);
    Delivery delivery{.list = this,
                      .next = first_,
                      .last = first_->previous_,
                      .called = nullptr,
                      .calledLeft = false,
                      .calledIsDestroyed = false,
                      .outer = static_cast<Delivery *>(innermostDelivery),
                      .failure = nullptr};
    innermostDelivery = &delivery;
    do {
        NotifieeConst & reactor = *delivery.next;
        delivery.next = &reactor == delivery.last ? nullptr : reactor.next_;
        if (!reactor.takesCallbacks()) continue;
        delivery.called = &reactor;
        delivery.calledLeft = delivery.calledIsDestroyed = false;
        KeepAlive const keepReactor(reactor);
        try {
            first(reactor, firstCallback);
        } catch (...) {
            delivery.failed(reactor, keepReactor.holds());
        }
        if (!second || delivery.calledLeft || delivery.calledIsDestroyed || !reactor.takesCallbacks())
            continue;
        try {
            second(reactor, secondCallback);
        } catch (...) {
            delivery.failed(reactor, keepReactor.holds());
        }
    } while (delivery.next);
    innermostDelivery = delivery.outer;
    if (delivery.failure) [[unlikely]]
        std::rethrow_exception(delivery.failure);
}

// Called with the exception in flight.
void NotifieeList::Delivery::failed(NotifieeConst & reactor, bool isKeptAlive) noexcept {
    if (!failure) failure = std::current_exception();
    if (isKeptAlive || !calledIsDestroyed) failedAlone(reactor);
}

void NotifieeList::failedAlone(NotifieeConst & reactor) noexcept {
    try {
        reactor.onNotificationException();
    } catch (...) {  // The caller is told of the first exception only.
    }
}

NotifieeConst::~NotifieeConst() {
    heldIs();
    for (auto * d = static_cast<NotifieeList::Delivery *>(innermostDelivery); d; d = d->outer) {
        if (d->called == this) d->calledIsDestroyed = true;
    }
    registeredIs(false);
}

void NotifieeConst::zeroReferencesIs(bool zero) {
    if (zero) onZeroReferences();
    PtrInterface::zeroReferencesIs(zero);
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
