// Where virtual functions stand in their class's table.
//
// Read from the representation that the Itanium C++ ABI gives a pointer to a virtual member function: its
// offset in the virtual table. A destructor takes two slots.
#pragma once

#include <cstddef>
#include <cstring>
#include <optional>

namespace TestSupport {

// The slot of the function that `member` points to; nothing when it is not virtual.
template <class Member>
std::optional<std::size_t> vtableSlot(Member member) {
    struct {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    } parts;
    static_assert(sizeof(member) == sizeof(parts), "not a pointer to a member function of this ABI");
    std::memcpy(&parts, &member, sizeof(parts));
#if defined(__aarch64__) || defined(__arm__)
    // Functions may have odd addresses there, so the adjustment carries the mark of virtual ones.
    bool const isVirtual = (parts.adjustment & 1) != 0;
    std::ptrdiff_t const offset = parts.pointer;
#else
    bool const isVirtual = (parts.pointer & 1) != 0;
    std::ptrdiff_t const offset = parts.pointer - 1;
#endif
    if (!isVirtual) return std::nullopt;
    return static_cast<std::size_t>(offset) / sizeof(void *);
}

// The same for an overload: `vtableSlot<void(Vel::Name)>(&Reactor::onPort)`.
template <class Signature, class Class>
std::optional<std::size_t> vtableSlot(Signature Class::*member) {
    return vtableSlot<Signature Class::*>(member);
}

}  // namespace TestSupport
