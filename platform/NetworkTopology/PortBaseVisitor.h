// What tells the three kinds of port bases apart.
//
// Usage
//     class Finder final : public NetworkTopology::PortBaseVisitor {
//         void visitPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port) override { ... }
//     };
//     portBase->accept(finder);    // calls the one operation that fits the object's class
#pragma once

#include "platform/Vel/Export.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace NetworkTopology {

class MlagV2;
class PortGroupV2;
class PortV2;

// Every operation does nothing unless it is overridden. The argument is never null.
class VEL_EXPORT PortBaseVisitor : public Vel::PtrInterface {
public:
    using Ptr = Vel::Ptr<PortBaseVisitor>;
    using PtrConst = Vel::Ptr<PortBaseVisitor const>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    PortBaseVisitor() noexcept = default;
    ~PortBaseVisitor() override = default;

    virtual void visitPort(Vel::Ptr<PortV2 const> const & port);
    virtual void visitPortGroup(Vel::Ptr<PortGroupV2 const> const & group);
    virtual void visitMlag(Vel::Ptr<MlagV2 const> const & mlag);
};

}  // namespace NetworkTopology
