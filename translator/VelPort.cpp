#include "translator/VelPort.h"

#include "translator/internal/Tracing.h"

namespace NetworkTopologyAggregator {

V2Sm::VelHost::VelPort::VelPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port, VelHost * owner)
    : Member(port, owner) {
    v3PortIs(createV3Port());
}

V2Sm::VelHost::VelPort::~VelPort() {
    heldIs();
    velDoZombieReactors(true);
}

void V2Sm::VelHost::VelPort::onPortGroup() {
    if (!notifier() || !v3Port()) return;
    Vel::fetch(v3Port().get());
    V2Sm * const translator = sm();
    v3Port()->portGroupIs(translator ? translator->toPortGroupV3Of(*this) : nullptr);
}

NetworkTopologyV3::Port::Ptr V2Sm::VelHost::VelPort::createV3Port() {
    traced("NetworkTopologyV3::Port::Ptr NetworkTopologyAggregator::V2Sm::VelHost::VelPort::createV3Port()",
           "createV3Port");
    auto const host = hostV3();
    return host ? host->portIs(notifier()->name()) : nullptr;
}

void V2Sm::VelHost::VelPort::cleanup() {
    traced("void NetworkTopologyAggregator::V2Sm::VelHost::VelPort::cleanup()", "cleanup");
    auto const host = hostV3();
    if (host && notifier() && v3Port()) host->portDel(notifier()->name());
}

}  // namespace NetworkTopologyAggregator
