// A small class with a type record: one attribute of every kind.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/GenericIf.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"

namespace VelTest {

enum class Side : std::uint32_t { unknown = 0, front = 1, back = 2 };

extern Vel::VelType const _velType_Side;

}  // namespace VelTest

template <>
struct Vel::VelTypeOf<VelTest::Side> {
    static constexpr VelType const * record = &VelTest::_velType_Side;
};

namespace VelTest {

class Rack final : public Vel::Entity, public Vel::AllocTracked<Rack> {
public:
    static Vel::VelType const _velType;

    explicit Rack(Vel::Name name) : name_(std::move(name)) {}
    Vel::VelType const * fwkType() const override { return &_velType; }

    Vel::Name const & name() const noexcept { return name_; }
    Vel::Name const & collectionKey() const noexcept { return name_; }
    unsigned height() const noexcept { return height_; }
    void heightIs(unsigned height) {
        height_ = height;
        if (onHeight) onHeight();
    }
    Side side() const noexcept { return side_; }
    void sideIs(Side side) { side_ = side; }
    Vel::Ptr<Rack> beside() const { return beside_; }
    void besideIs(Vel::Ptr<Rack> const & beside) { beside_ = beside; }

    unsigned heightWith(unsigned more, bool doubled) const { return (height_ + more) * (doubled ? 2 : 1); }
    void reset() { heightIs(0); }

    using Drawers = Vel::HashMap<Rack, Vel::Name, Rack>;
    Drawers::Range drawer() const { return {drawers_, *this}; }
    Rack * drawer(Vel::Name const & name) const { return drawers_[name]; }
    Vel::Ptr<Rack> drawerIs(Vel::Ptr<Rack> const & drawer) {
        if (!drawer) Vel::throwRangeException("null drawer");
        drawers_.newMember(drawer);
        return drawer;
    }
    Vel::Ptr<Rack> drawerIs(Vel::Name const & name) {
        Rack * const present = drawers_[name];
        return present ? present : drawerIs(Vel::Ptr<Rack>(new Rack(name)));
    }
    Vel::Ptr<Rack> drawerDel(Vel::Name const & name) { return drawers_.deleteMember(name); }

    struct Load {};
    using Loads = Vel::HashMap2018<Load, Vel::Name, unsigned>;
    Loads::Range load() const { return {loads_, *this}; }
    Loads::Node const * load(Vel::Name const & name) const { return loads_[name]; }
    void loadIs(Vel::Name const & name, unsigned load) { loads_.valueIs(name, load); }
    void loadDel(Vel::Name const & name) { loads_.valueDel(name); }

    std::function<void()> onHeight;

private:
    Vel::Name const name_;
    unsigned height_ = 0;
    Side side_ = Side::unknown;
    Vel::Ptr<Rack> beside_;
    Drawers drawers_{1};
    Loads loads_;
};

}  // namespace VelTest
