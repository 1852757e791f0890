#include "translator/VelPortGroup.h"

#include "translator/internal/Tracing.h"

namespace NetworkTopologyAggregator {

V2Sm::VelHost::VelPortGroup::VelPortGroup(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & portGroup,
                                          VelHost * owner)
    : Member(portGroup, owner) {
    v3PortGroupIs(createV3PortGroup());
}

V2Sm::VelHost::VelPortGroup::~VelPortGroup() {
    heldIs();
    velDoZombieReactors(true);
}

void V2Sm::VelHost::VelPortGroup::onMemberPort(Vel::Name name) {
    if (!velMarkedForDeletion()) [[likely]]
        handleMemberPort(std::move(name));
}

void V2Sm::VelHost::VelPortGroup::onMemberPortvelImmediate() {}

void V2Sm::VelHost::VelPortGroup::onMlag() {
    if (!notifier() || !v3PortGroup()) return;
    V2Sm * const translator = sm();
    v3PortGroup()->mlagIs(translator ? translator->toMlagV3(notifier()->mlag()) : nullptr);
}

void V2Sm::VelHost::VelPortGroup::handleMemberPort(Vel::Name name) {
    traced("void NetworkTopologyAggregator::V2Sm::VelHost::VelPortGroup::handleMemberPort(Vel::Name)",
           "handleMemberPort");
    if (!notifier() || !v3PortGroup()) return;
    Vel::fetch(v3PortGroup().get());
    // Mostly the member is a port of this host.
    if (owner() && owner()->v3Host()) owner()->v3Host()->fetchPort(name.reversedHash());
    auto const * const entry = notifier()->memberPortEntry(name);
    if (!entry) {
        v3PortGroup()->memberPortDel(std::move(name));
        return;
    }
    // Written also when the port has no counterpart yet, which the model ignores.
    if (V2Sm * const translator = sm()) v3PortGroup()->memberPortIs(translator->toPortV3(entry->value()));
}

NetworkTopologyV3::PortGroup::Ptr V2Sm::VelHost::VelPortGroup::createV3PortGroup() {
    traced("NetworkTopologyV3::PortGroup::Ptr "
           "NetworkTopologyAggregator::V2Sm::VelHost::VelPortGroup::createV3PortGroup()",
           "createV3PortGroup");
    auto const host = hostV3();
    return host ? host->portGroupIs(notifier()->name()) : nullptr;
}

void V2Sm::VelHost::VelPortGroup::cleanup() {
    traced("void NetworkTopologyAggregator::V2Sm::VelHost::VelPortGroup::cleanup()", "cleanup");
    auto const host = hostV3();
    if (host && notifier() && v3PortGroup()) host->portGroupDel(notifier()->name());
}

}  // namespace NetworkTopologyAggregator
