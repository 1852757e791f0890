// A model object: what reactors follow and collections hold.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/NotifieeConst.h"

namespace Vel {

class VEL_EXPORT Entity : public HashMapMember {
public:
    NotifieeList * notifieeList() const override;
    // Whether a reactor is registered.
    bool isFollowed() const noexcept { return !notifiees_.empty(); }
    // Before work that ends with a delivery.
    [[gnu::always_inline]] void fetchReactors() const noexcept { notifiees_.fetch(); }

protected:
    Entity() noexcept = default;
    // One that stands in collections under `name`, always.
    explicit Entity(Name const & name) noexcept : Entity(name.reversedHash()) {}
    // The same under a key of that hash.
    explicit Entity(std::uint32_t hash) noexcept : HashMapMember(hash) {}

    NotifieeList const & notifiees() const noexcept { return notifiees_; }

private:
    friend class PtrInterface::NotifieeConst;

    mutable NotifieeList notifiees_;
};

// Stores `value` in `field` and tells whether that changed it. Every mutator asks, because an equal write
// changes nothing and notifies nobody.
template <class T, class Value>
bool replaced(T & field, Value && value) {
    if (field == value) return false;
    field = std::forward<Value>(value);
    return true;
}

}  // namespace Vel
