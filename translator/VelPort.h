// The reactor on one input port.
#pragma once

#include "translator/VelHost.h"

namespace NetworkTopologyAggregator {

// Keeps the version-3 port of the same name in the version-3 host of the same name: its type and its group.
class VEL_EXPORT V2Sm::VelHost::VelPort final
    : public V2Sm::VelHost::Member<V2Sm::VelHost::VelPort, NetworkTopology::PortV2, NetworkTopologyV3::Port>,
      public Vel::AllocTracked<V2Sm::VelHost::VelPort> {
public:
    // REQUIRES: neither is null.
    VelPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port, VelHost * owner);
    ~VelPort() override;

    // A port whose group has no counterpart, or no translator, gets none.
    void onPortGroup() override;

    // The version-3 port, made where there is none; null without a version-3 host.
    NetworkTopologyV3::Port::Ptr createV3Port();
    void v3PortIs(Vel::Ptr<NetworkTopologyV3::Port> const & port) { outputIs(port); }
    Vel::Ptr<NetworkTopologyV3::Port> const & v3Port() const noexcept { return output(); }
    // Deletes the version-3 port of this name, if its host is there.
    void cleanup();

private:
    friend Member;
    void writeLink() { onPortGroup(); }
    void handleRetirement(Ptr const & self) { owner()->vel_handlePort(self); }
};

}  // namespace NetworkTopologyAggregator
