#pragma once

#include <cstddef>
#include <functional>

namespace TestSupport {

// What a stack must suffice for, however many objects there are.
constexpr std::size_t kSmallStack = 256 * 1024;

// Runs `body` on a thread of its own with a stack of `kSmallStack` bytes.
void onASmallStack(std::function<void()> const & body);

}  // namespace TestSupport
