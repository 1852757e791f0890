#include "platform/NetworkTopology/PortBaseVisitor.h"

namespace NetworkTopology {

PortBaseVisitor::~PortBaseVisitor() = default;

void PortBaseVisitor::visitPort(Vel::Ptr<PortV2 const> const &) {}
void PortBaseVisitor::visitPortGroup(Vel::Ptr<PortGroupV2 const> const &) {}
void PortBaseVisitor::visitMlag(Vel::Ptr<MlagV2 const> const &) {}

}  // namespace NetworkTopology
