#include "platform/Vel/WeakPtr.h"

#include <new>

#include "platform/Vel/SlabPool.h"

namespace Vel {

void WeakTarget::begin(PtrInterface const & object) {
    cell_ = new (SlabPool::cell(sizeof(Cell))) Cell{.object = &object, .holders = 1};
}

void WeakTarget::end() noexcept {
    cell_->object = nullptr;
    if (--cell_->holders == 0) cellDel(cell_);
}

void WeakTarget::cellDel(Cell * cell) noexcept { SlabPool::cellDel(cell, sizeof(Cell)); }

}  // namespace Vel
