#include "translator/VelMlag.h"

#include "translator/internal/Tracing.h"

namespace NetworkTopologyAggregator {

V2Sm::VelHost::VelMlag::VelMlag(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag, VelHost * owner)
    : Member(mlag, owner) {
    v3MlagIs(createV3Mlag());
}

V2Sm::VelHost::VelMlag::~VelMlag() {
    heldIs();
    velDoZombieReactors(true);
}

void V2Sm::VelHost::VelMlag::onLocalPortGroup() {
    if (!notifier() || !v3Mlag()) return;
    V2Sm * const translator = sm();
    v3Mlag()->localPortGroupIs(translator ? translator->toPortGroupV3(notifier()->localPortGroup())
                                          : nullptr);
}

NetworkTopologyV3::MlagPort::Ptr V2Sm::VelHost::VelMlag::createV3Mlag() {
    traced(
        "NetworkTopologyV3::MlagPort::Ptr NetworkTopologyAggregator::V2Sm::VelHost::VelMlag::createV3Mlag()",
        "createV3Mlag");
    auto const host = hostV3();
    return host ? host->mlagIs(notifier()->name(), notifier()->secondaryName()) : nullptr;
}

void V2Sm::VelHost::VelMlag::cleanup() {
    traced("void NetworkTopologyAggregator::V2Sm::VelHost::VelMlag::cleanup()", "cleanup");
    auto const host = hostV3();
    if (host && notifier() && v3Mlag()) host->mlagDel(notifier()->name());
}

}  // namespace NetworkTopologyAggregator
