#include "platform/NetworkTopologyV3/MlagPort.h"

#include <utility>

namespace NetworkTopologyV3 {

MlagPort::MlagPort(Vel::Name name, Vel::Name secondaryName, Host & host) noexcept
    : PortBase(std::move(name), host, Kind::mlag), secondaryName_(std::move(secondaryName)) {}

MlagPort::~MlagPort() = default;

void MlagPort::localPortGroupIs(Vel::Ptr<PortGroup> const & portGroup) {
    if (Vel::replaced(localPortGroup_, portGroup)) {
        notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onLocalPortGroup(); });
    }
}

MlagPort::NotifieeConst::~NotifieeConst() = default;

}  // namespace NetworkTopologyV3
