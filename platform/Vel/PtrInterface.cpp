#include "platform/Vel/PtrInterface.h"

#include <new>
#include <vector>

namespace Vel {

bool VFPtrInterface::threadSafePointers_ = false;

namespace {

// Destruction nests this deep before objects start to wait. Enough for every ordinary tree, and little
// enough for a stack of 256 kB.
constexpr unsigned kNestingLimit = 16;

// A thread-local with a destructor cannot be used by objects that die after it, so the list is made on first
// need and given back as soon as it has been worked off.
__attribute__((tls_model("initial-exec"))) thread_local unsigned nesting = 0;
__attribute__((tls_model("initial-exec"))) thread_local std::vector<PtrInterface *> * waiting = nullptr;

bool deferred(PtrInterface * object) noexcept {
    if (nesting < kNestingLimit) return false;
    try {
        if (!waiting) waiting = new std::vector<PtrInterface *>;
        waiting->push_back(object);
        return true;
    } catch (std::bad_alloc const &) {
        return false;  // Better one level deeper than lost.
    }
}

void destroyWaiting() noexcept {
    std::vector<PtrInterface *> * const list = waiting;
    while (!list->empty()) {
        PtrInterface * const object = list->back();
        list->pop_back();
        object->zeroReferencesIs(true);
    }
    waiting = nullptr;
    delete list;
}

}  // namespace

PtrInterface::~PtrInterface() { assert((word_ & kReferences) == 0 && "destroyed while referenced"); }

NotifieeList * PtrInterface::notifieeList() const { return nullptr; }

void PtrInterface::hasNotificationActiveIs(bool active) { notificationActiveFlagIs(active); }

void PtrInterface::zeroReferencesIs(bool zero) {
    if (zero) delete this;
}

VelType const * PtrInterface::fwkType() const { return nullptr; }

void PtrInterface::handleZeroRef() const noexcept {
    heldIs();
    auto * const object = const_cast<PtrInterface *>(this);
    if (deferred(object)) return;
    ++nesting;
    object->zeroReferencesIs(true);
    // What waits is destroyed by the outermost destruction, with the nesting still counted, so that a list
    // that grows while it is worked off is still one list.
    if (nesting == 1 && waiting) destroyWaiting();
    --nesting;
}

void PtrInterface::flagIs(std::uint32_t flag, bool on) const noexcept {
    if (VFPtrInterface::threadSafePointers_) {
        std::atomic_ref<std::uint32_t> word(word_);
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
    std::atomic_ref<std::uint32_t> word(word_);
    std::uint32_t seen = word.load(std::memory_order_relaxed);
    while ((seen & kReferences) != kReferences &&
           !word.compare_exchange_weak(seen, seen + 1, std::memory_order_relaxed)) {
    }
}

void PtrInterface::referenceDelAtomic() const noexcept {
    std::atomic_ref<std::uint32_t> word(word_);
    std::uint32_t seen = word.load(std::memory_order_relaxed);
    do {
        assert((seen & kReferences) != 0 && "more references released than taken");
        if ((seen & kReferences) == kReferences) return;
    } while (!word.compare_exchange_weak(seen, seen - 1, std::memory_order_acq_rel));
    if (((seen - 1) & kCountMask) == 0) handleZeroRef();
}

void * PtrInterface::velMemAlloc(unsigned int size) { return ::operator new(size); }

void PtrInterface::velMemFree(void * storage) noexcept { ::operator delete(storage); }

void PtrInterface::referencesIsForTesting(std::uint32_t count) const noexcept {
    word_ = (word_ & ~kReferences) | (count & kReferences);
}

}  // namespace Vel
