// A physical port.
#pragma once

#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/WeakPtr.h"

namespace NetworkTopology {

class VEL_EXPORT PortV2 final : public PortBaseV2, public Vel::AllocTracked<PortV2> {
public:
    using Ptr = Vel::Ptr<PortV2>;
    using PtrConst = Vel::Ptr<PortV2 const>;
    class NotifieeConst;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // A port that no host holds yet.
    static Vel::Ptr<PortV2> PortV2Is(Vel::Name name);

    // The group of which this port is a member. Not counted: null as well once the group is gone, of which
    // nobody is told. The writer keeps it in step with the group's `memberPort`.
    Vel::Ptr<PortGroupV2> portGroup() const;
    // The same without a reference, compiled into those who include PortGroupV2.h.
    inline PortGroupV2 * group() const noexcept;
    void portGroupIs(Vel::Ptr<PortGroupV2> const & value);

    void accept(Vel::Ptr<PortBaseVisitor> const & visitor) const override;

private:
    explicit PortV2(Vel::Name name) noexcept;
    ~PortV2() override;

    Vel::WeakPtr<PortGroupV2> portGroup_;
};

class VEL_EXPORT PortV2::NotifieeConst : public PortBaseV2::NotifieeConst {
public:
    NotifieeConst() noexcept : PortBaseV2::NotifieeConst(Kind::port) {}

    virtual void onPortGroup();

    // Null while unbound.
    PortV2 const * notifier() const noexcept { return static_cast<PortV2 const *>(notifierObject().get()); }
};

}  // namespace NetworkTopology
