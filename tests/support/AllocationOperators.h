// The allocation functions behind tests/support/Allocations.h. They replace those of the whole program, so
// exactly one source of it includes this.
#pragma once

#include <cstdlib>
#include <new>

#include "platform/Vel/SlabPool.h"
#include "tests/support/Allocations.h"

void * operator new(std::size_t size, std::nothrow_t const &) noexcept {
    using TestSupport::Allocations;
    ++Allocations::made;
    Allocations::bytes += size;
    if (Allocations::untilFailure == 0) return nullptr;
    if (Allocations::untilFailure != Allocations::kNever) --Allocations::untilFailure;
    return std::malloc(size != 0 ? size : 1);
}
void * operator new(std::size_t size) {
    void * const storage = operator new(size, std::nothrow);
    if (!storage) throw std::bad_alloc();
    return storage;
}
void * operator new[](std::size_t size) { return operator new(size); }
void * operator new[](std::size_t size, std::nothrow_t const &) noexcept {
    return operator new(size, std::nothrow);
}
void operator delete(void * storage) noexcept { std::free(storage); }
void operator delete(void * storage, std::size_t) noexcept { std::free(storage); }
void operator delete(void * storage, std::nothrow_t const &) noexcept { std::free(storage); }
void operator delete[](void * storage) noexcept { std::free(storage); }
void operator delete[](void * storage, std::size_t) noexcept { std::free(storage); }
void operator delete[](void * storage, std::nothrow_t const &) noexcept { std::free(storage); }

namespace {

// Each object is an allocation of its own here, which can be counted and refused.
[[maybe_unused]] bool const withoutPool = (Vel::SlabPool::pooledIs(false), true);

}  // namespace
