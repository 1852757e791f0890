#include "platform/Vel/WeakPtr.h"

#include <new>

#include "platform/Vel/SlabPool.h"

namespace Vel {

WeakTarget::Cell * WeakTarget::begin(PtrInterface const & object) {
    return cell_ = new (SlabPool::cell(sizeof(Cell))) Cell{.object = &object, .holders = 1};
}

void WeakTarget::end() noexcept {
    cell_->object = nullptr;
    if (--cell_->holders == 0) cellDel(cell_);
}

void WeakTarget::cellDel(Cell * cell) noexcept { SlabPool::cellDel(cell, sizeof(Cell)); }

}  // namespace Vel
