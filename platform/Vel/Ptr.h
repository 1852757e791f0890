// A counted reference to a framework object. Null is a legal value everywhere.
#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

#include "platform/Vel/PtrInterface.h"

namespace Vel {

template <class T>
class Ptr {
public:
    using element_type = T;

    constexpr Ptr() noexcept = default;
    constexpr Ptr(std::nullptr_t) noexcept {}
    Ptr(T * object) noexcept : object_(object) { take(); }
    Ptr(Ptr const & other) noexcept : object_(other.object_) { take(); }
    Ptr(Ptr && other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U>
        requires std::is_convertible_v<U *, T *>
    Ptr(Ptr<U> const & other) noexcept : object_(other.get()) {
        take();
    }
    template <class U>
        requires std::is_convertible_v<U *, T *>
    Ptr(Ptr<U> && other) noexcept : object_(other.release()) {}
    [[gnu::always_inline]] ~Ptr() { drop(object_); }

    // Every assignment stores the new object before it lets go of the old one: the old one may own the
    // reference that is being assigned, or this very Ptr.
    Ptr & operator=(Ptr const & other) noexcept {
        objectIs(other.object_);
        return *this;
    }
    Ptr & operator=(Ptr && other) noexcept {
        if (this != &other) drop(std::exchange(object_, std::exchange(other.object_, nullptr)));
        return *this;
    }
    Ptr & operator=(T * object) noexcept {
        objectIs(object);
        return *this;
    }
    Ptr & operator=(std::nullptr_t) noexcept {
        objectIs(nullptr);
        return *this;
    }

    T * get() const noexcept { return object_; }
    T * operator->() const noexcept { return object_; }
    T & operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    // Gives the reference away without counting: the caller now owns it.
    [[nodiscard]] T * release() noexcept { return std::exchange(object_, nullptr); }
    // Takes over a reference that the caller owned.
    [[nodiscard]] static Ptr adopted(T * object) noexcept {
        Ptr result;
        result.object_ = object;
        return result;
    }

    template <class U>
    friend bool operator==(Ptr const & a, Ptr<U> const & b) noexcept {
        return a.get() == b.get();
    }
    template <class U>
    friend bool operator==(Ptr const & a, U * b) noexcept {
        return a.get() == b;
    }
    friend bool operator==(Ptr const & a, std::nullptr_t) noexcept { return a.get() == nullptr; }

private:
    void take() const noexcept {
        if (object_) [[likely]]
            object_->referenceNew();
    }
    [[gnu::always_inline]] static void drop(T * object) noexcept {
        if (object) object->referenceDel();
    }
    void objectIs(T * object) noexcept {
        if (object == object_) return;
        if (object) object->referenceNew();
        drop(std::exchange(object_, object));
    }

    T * object_ = nullptr;
};

// The checked down-cast: null where the object is not of class T.
template <class T, class U>
Ptr<T> dynamicPtrCast(Ptr<U> const & object) noexcept {
    return Ptr<T>(dynamic_cast<T *>(object.get()));
}

}  // namespace Vel

template <class T>
struct std::hash<Vel::Ptr<T>> {
    std::size_t operator()(Vel::Ptr<T> const & object) const noexcept {
        return std::hash<T *>()(object.get());
    }
};
