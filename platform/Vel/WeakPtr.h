// References that are not counted and become null when their target dies.
//
// A model object that points back (a port at its group) must neither keep its target alive nor outlive it.
// The target carries a `WeakTarget`; every `WeakPtr` at it stands in its list, so that setting, clearing and
// dying cost no allocation and no lookup. One thread only.
#pragma once

#include "platform/Vel/PtrInterface.h"

namespace Vel {

class WeakTarget;

class VEL_EXPORT WeakPtrBase {
public:
    WeakPtrBase(WeakPtrBase const &) = delete;
    WeakPtrBase & operator=(WeakPtrBase const &) = delete;

protected:
    WeakPtrBase() noexcept = default;
    ~WeakPtrBase() { leave(); }
    void enter(WeakTarget & target) noexcept;
    void leave() noexcept;

    PtrInterface const * object_ = nullptr;

private:
    friend class WeakTarget;
    WeakPtrBase * next_ = nullptr;
    WeakPtrBase ** previous_ = nullptr;  // What points at this: the target's list head or a `next_`.
};

// The end of a target's weak references: a member of every class that `WeakPtr` points at.
class VEL_EXPORT WeakTarget {
public:
    WeakTarget() noexcept = default;
    ~WeakTarget();
    WeakTarget(WeakTarget const &) = delete;
    WeakTarget & operator=(WeakTarget const &) = delete;

private:
    friend class WeakPtrBase;
    WeakPtrBase * first_ = nullptr;
};

// `T` offers `Vel::WeakTarget & weakTarget() const`.
template <class T>
class WeakPtr : private WeakPtrBase {
public:
    WeakPtr() noexcept = default;

    // Null when nothing was set, and from the moment when the target's destruction is certain.
    T * get() const noexcept {
        if (!object_ || object_->isBeingDestroyed()) return nullptr;
        return const_cast<T *>(static_cast<T const *>(object_));
    }
    WeakPtr & operator=(T * target) noexcept {
        if (target != get()) {
            leave();
            if (target) {
                object_ = target;
                enter(target->weakTarget());
            }
        }
        return *this;
    }
    friend bool operator==(WeakPtr const & a, T * b) noexcept { return a.get() == b; }
};

}  // namespace Vel
