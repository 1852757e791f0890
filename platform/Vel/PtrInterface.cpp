#include "platform/Vel/PtrInterface.h"

#include <new>
#include <vector>

#include "platform/Vel/NotifieeConst.h"
#include "platform/Vel/SlabPool.h"

namespace Vel {

bool VFPtrInterface::threadSafePointers_ = false;

namespace {

// Destruction nests this deep before objects start to wait. Enough for every ordinary tree, and little
// enough for a stack of 256 kB.
constexpr unsigned kNestingLimit = 16;

// The destructions that are running on this thread.
struct Destructions {
    unsigned nesting;
    // A thread-local with a destructor cannot be used by objects that die after it, so the list is made on
    // first need and given back as soon as it has been worked off.
    std::vector<PtrInterface *> * waiting;
};

__attribute__((tls_model("initial-exec"))) constinit thread_local Destructions destructions{0, nullptr};

[[gnu::cold, gnu::noinline]] bool deferred(PtrInterface * object) noexcept {
    try {
        if (!destructions.waiting) destructions.waiting = new std::vector<PtrInterface *>;
        destructions.waiting->push_back(object);
        return true;
    } catch (std::bad_alloc const &) {
        return false;  // Better one level deeper than lost.
    }
}

[[gnu::cold, gnu::noinline]] void destroyWaiting() noexcept {
    std::vector<PtrInterface *> * const list = destructions.waiting;
    while (!list->empty()) {
        PtrInterface * const object = list->back();
        list->pop_back();
        object->zeroReferencesIs(true);
    }
    destructions.waiting = nullptr;
    delete list;
}

}  // namespace

NotifieeList * PtrInterface::notifieeList() const { return nullptr; }

void PtrInterface::hasNotificationActiveIs(bool active) { notificationActiveFlagIs(active); }

void PtrInterface::zeroReferencesIs(bool zero) {
    if (zero) delete this;
}

VelType const * PtrInterface::fwkType() const { return nullptr; }

void PtrInterface::handleZeroRef() const noexcept {
    if (NotifieeList::Delivery::keeps(*this)) [[unlikely]]
        return;
    heldIs();
    auto * const object = const_cast<PtrInterface *>(this);
    Destructions & running = destructions;
    if (running.nesting >= kNestingLimit) [[unlikely]] {
        if (deferred(object)) return;
    }
    ++running.nesting;
    object->zeroReferencesIs(true);
    // What waits is destroyed by the outermost destruction, with the nesting still counted, so that a list
    // that grows while it is worked off is still one list.
    if (running.waiting) [[unlikely]] {
        if (running.nesting == 1) destroyWaiting();
    }
    --running.nesting;
}

void PtrInterface::flagIs(std::uint32_t flag, bool on) const noexcept {
    if (VFPtrInterface::threadSafePointers_) [[unlikely]] {
        std::atomic_ref<std::uint32_t> const word(word_);
        if (on) {
            word.fetch_or(flag, std::memory_order_acq_rel);
        } else {
            word.fetch_and(~flag, std::memory_order_acq_rel);
        }
        return;
    }
    word_ = on ? word_ | flag : word_ & ~flag;
}

void PtrInterface::referenceNewAtomic() const noexcept {
    std::atomic_ref<std::uint32_t>(word_).fetch_add(1, std::memory_order_relaxed);
}

void PtrInterface::referenceDelAtomic() const noexcept {
    if (lessOneAtomic() == 0) handleZeroRef();
}

std::uint32_t PtrInterface::lessOneAtomic() const noexcept {
    std::uint32_t const before =
        std::atomic_ref<std::uint32_t>(word_).fetch_sub(1, std::memory_order_acq_rel);
    assert((before & kReferences) != 0 && "more references released than taken");
    return (before - 1) & kCountMask;
}

void * PtrInterface::velMemAlloc(unsigned int size) { return SlabPool::cell(size); }

}  // namespace Vel
