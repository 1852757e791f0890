#include "platform/Vel/WeakPtr.h"

namespace Vel {

void WeakPtrBase::enter(WeakTarget & target) noexcept {
    next_ = target.first_;
    previous_ = &target.first_;
    if (next_) next_->previous_ = &next_;
    target.first_ = this;
}

void WeakPtrBase::leave() noexcept {
    if (!previous_) return;
    *previous_ = next_;
    if (next_) next_->previous_ = previous_;
    next_ = nullptr;
    previous_ = nullptr;
    object_ = nullptr;
}

WeakTarget::~WeakTarget() {
    while (first_) first_->leave();
}

}  // namespace Vel
