#include "platform/NetworkTopologyV3/Port.h"

#include <utility>

#include "platform/NetworkTopologyV3/PortGroup.h"

namespace NetworkTopologyV3 {

Port::Port(Vel::Name name, Host & host) noexcept : PortBase(std::move(name), host, Kind::port) {}

Port::~Port() = default;

PortGroup * Port::portGroup() const noexcept { return portGroup_.get(); }

void Port::portGroupIs(PortGroup * portGroup) {
    if (portGroup_ == portGroup) return;
    portGroup_ = portGroup;
    notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onPortGroup(); });
}

Port::NotifieeConst::~NotifieeConst() = default;

}  // namespace NetworkTopologyV3
