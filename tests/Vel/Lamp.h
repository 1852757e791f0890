// A small model class with its reactors, built as the models are: one plain attribute, one value collection.
#pragma once

#include <functional>
#include <utility>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/NotifieeConst.h"

namespace VelTest {

class Lamp final : public Vel::Entity, public Vel::AllocTracked<Lamp> {
public:
    class NotifieeConst;

    explicit Lamp(Vel::Name name) : name_(std::move(name)) {}
    ~Lamp() override {
        if (onDestruction) onDestruction();
    }

    Vel::Name const & name() const noexcept { return name_; }
    unsigned brightness() const noexcept { return brightness_; }
    void brightnessIs(unsigned value);
    // 0 where there is none.
    unsigned fuse(Vel::Name const & key) const noexcept {
        auto const * const entry = fuses_[key];
        return entry ? entry->value() : 0;
    }
    void fuseIs(Vel::Name const & key, unsigned value);

    std::function<void()> onDestruction;

private:
    struct Fuse {};

    Vel::Name const name_;
    unsigned brightness_ = 0;
    Vel::HashMap2018<Fuse, Vel::Name, unsigned> fuses_;
};

class Lamp::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override {
        Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<Lamp const>(notifier));
    }
    void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
    Lamp const * notifier() const noexcept { return static_cast<Lamp const *>(notifierObject().get()); }

    virtual void onBrightness() {}
    virtual void onFuse(Vel::Name) {}
    virtual void onFuse() {}
};

inline void Lamp::brightnessIs(unsigned value) {
    if (!Vel::replaced(brightness_, value)) return;
    notifiees().notify<NotifieeConst>(*this, [](NotifieeConst & r) { r.onBrightness(); });
}

inline void Lamp::fuseIs(Vel::Name const & key, unsigned value) {
    if (!fuses_.valueIs(key, value)) return;
    notifiees().notify<NotifieeConst>(
        *this, [&](NotifieeConst & r) { r.onFuse(key); }, [](NotifieeConst & r) { r.onFuse(); });
}

}  // namespace VelTest
