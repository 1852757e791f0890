// The reactor on one input MLAG.
#pragma once

#include "translator/VelHost.h"

namespace NetworkTopologyAggregator {

// Keeps the version-3 MLAG port of the same name in the version-3 host of the same name: its type and its
// local port group. onPeerPortGroup is not followed: version 3 has no peer group.
class VEL_EXPORT V2Sm::VelHost::VelMlag final
    : public V2Sm::VelHost::Member<V2Sm::VelHost::VelMlag, NetworkTopology::MlagV2,
                                   NetworkTopologyV3::MlagPort>,
      public Vel::AllocTracked<V2Sm::VelHost::VelMlag> {
public:
    // REQUIRES: neither is null.
    VelMlag(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag, VelHost * owner);
    ~VelMlag() override;

    // An MLAG whose local group has no counterpart, or no translator, gets none.
    void onLocalPortGroup() override;

    // The version-3 MLAG port, made where there is none; null without a version-3 host.
    NetworkTopologyV3::MlagPort::Ptr createV3Mlag();
    void v3MlagIs(Vel::Ptr<NetworkTopologyV3::MlagPort> const & mlag) { outputIs(mlag); }
    Vel::Ptr<NetworkTopologyV3::MlagPort> const & v3Mlag() const noexcept { return output(); }
    // Deletes the version-3 MLAG port of this name, if its host is there.
    void cleanup();

private:
    friend Member;
    void writeLink() { onLocalPortGroup(); }
    void handleRetirement(Ptr const & self) { owner()->vel_handleMlag(self); }
};

}  // namespace NetworkTopologyAggregator
