// The reactor on one input port group.
#pragma once

#include "translator/VelHost.h"

namespace NetworkTopologyAggregator {

// Keeps the version-3 port group of the same name in the version-3 host of the same name: its type, its MLAG,
// and its member ports, name by name.
class VEL_EXPORT V2Sm::VelHost::VelPortGroup final
    : public V2Sm::VelHost::Member<V2Sm::VelHost::VelPortGroup, NetworkTopology::PortGroupV2,
                                   NetworkTopologyV3::PortGroup>,
      public Vel::AllocTracked<V2Sm::VelHost::VelPortGroup> {
public:
    // REQUIRES: neither is null.
    VelPortGroup(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & portGroup, VelHost * owner);
    ~VelPortGroup() override;

    using NetworkTopology::PortGroupV2::NotifieeConst::onMemberPort;
    // Ignored while retired.
    void onMemberPort(Vel::Name name) override;
    // Member ports follow name by name only.
    void onMemberPortvelImmediate() override;
    // A group whose MLAG has no counterpart, or no translator, gets none.
    void onMlag() override;

    // Mirrors one member, present or absent.
    void handleMemberPort(Vel::Name name);
    // The version-3 port group, made where there is none; null without a version-3 host.
    NetworkTopologyV3::PortGroup::Ptr createV3PortGroup();
    void v3PortGroupIs(Vel::Ptr<NetworkTopologyV3::PortGroup> const & group) { outputIs(group); }
    Vel::Ptr<NetworkTopologyV3::PortGroup> const & v3PortGroup() const noexcept { return output(); }
    // Deletes the version-3 port group of this name, if its host is there.
    void cleanup();

private:
    friend Member;
    void writeLink() { onMlag(); }
    void handleRetirement(Ptr const & self) { owner()->vel_handlePortGroup(self); }
};

}  // namespace NetworkTopologyAggregator
