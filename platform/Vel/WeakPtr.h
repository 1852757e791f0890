// References that are not counted and become null when their target dies.
//
// A model object that points back (a port at its group) must neither keep its target alive nor outlive it.
// The target carries a `WeakTarget`. All weak references to one target share a small cell that says who it is
// until it dies: setting, clearing and dying touch that cell and no other reference, and only the first
// reference to a target allocates. One thread only.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/Vel/PtrInterface.h"

namespace Vel {

// The end of a target's weak references: a member of every class that `WeakPtr` points at.
class VEL_EXPORT WeakTarget {
public:
    WeakTarget() noexcept = default;
    ~WeakTarget() {
        if (cell_) end();
    }
    WeakTarget(WeakTarget const &) = delete;
    WeakTarget & operator=(WeakTarget const &) = delete;

private:
    friend class WeakPtrBase;

    struct Cell {
        PtrInterface const * object;  // Null once it is gone.
        std::uint32_t holders;        // The weak references, and the target.
    };

    // Makes the cell of `object`, whose target this is. Throws std::bad_alloc.
    Cell * begin(PtrInterface const & object);
    void end() noexcept;
    static void cellDel(Cell * cell) noexcept;

    Cell * cell_ = nullptr;  // Null until somebody refers to the target.
};

class VEL_EXPORT WeakPtrBase {
public:
    WeakPtrBase(WeakPtrBase const &) = delete;
    WeakPtrBase & operator=(WeakPtrBase const &) = delete;

protected:
    WeakPtrBase() noexcept = default;
    ~WeakPtrBase() { letGo(); }

    // Null when nothing was set, and from the moment when the target's destruction is certain.
    PtrInterface const * object() const noexcept {
        PtrInterface const * const object = cell_ ? cell_->object : nullptr;
        return object && !object->isBeingDestroyed() ? object : nullptr;
    }
    // Tells without a look at what was set.
    bool refersTo(WeakTarget const & target) const noexcept { return cell_ && cell_ == target.cell_; }
    void referTo(PtrInterface const & object, WeakTarget & target) {
        WeakTarget::Cell * cell = target.cell_;
        if (!cell) [[unlikely]]
            cell = target.begin(object);
        ++cell->holders;
        letGo();
        cell_ = cell;
    }
    void letGo() noexcept {
        WeakTarget::Cell * const cell = std::exchange(cell_, nullptr);
        if (cell && --cell->holders == 0) [[unlikely]]
            WeakTarget::cellDel(cell);
    }

private:
    WeakTarget::Cell * cell_ = nullptr;
};

// `T` offers `Vel::WeakTarget & weakTarget() const`.
template <class T>
class WeakPtr : private WeakPtrBase {
public:
    WeakPtr() noexcept = default;

    // Null when nothing was set, and from the moment when the target's destruction is certain.
    T * get() const noexcept { return const_cast<T *>(static_cast<T const *>(object())); }
    // Throws std::bad_alloc, and has then changed nothing.
    WeakPtr & operator=(T * target) {
        targetIs(target);
        return *this;
    }
    // The same; tells whether that was another one.
    bool targetIs(T * target) {
        if (target) {
            // One that is being destroyed is none already, even the one that is set.
            if (refersTo(target->weakTarget()) && !target->isBeingDestroyed()) return false;
            referTo(*target, target->weakTarget());
        } else {
            if (!object()) return false;
            letGo();
        }
        return true;
    }
    friend bool operator==(WeakPtr const & a, T * b) noexcept { return a.get() == b; }
};

}  // namespace Vel
