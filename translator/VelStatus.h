// The reactors on the two statuses.
#pragma once

#include "translator/V2Sm.h"

namespace NetworkTopologyAggregator {

// Follows the input status: turns its hosts, edges and localhost into calls on the root's registries and into
// the output's localhost.
class VEL_EXPORT V2Sm::VelV2 final : public NetworkTopology::StatusV2::NotifieeConst,
                                     public Vel::AllocTracked<V2Sm::VelV2> {
public:
    using Ptr = Vel::Ptr<VelV2>;
    using PtrConst = Vel::Ptr<VelV2 const>;

    // Binds and registers, and writes the output's localhost. Hosts and edges are the root's business.
    VelV2(Vel::Ptr<NetworkTopology::StatusV2 const> const & status, V2Sm * owner);

    void hasNotificationActiveIs(bool active) override;
    ~VelV2() override;
    // Binding another status brings hosts, then localhost, then edges into line with it: localhost and the
    // edges are resolved against what the host passes have made current.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    using NetworkTopology::StatusV2::NotifieeConst::onHost;
    void onHost(Vel::Name name) override;
    void onHostvelImmediate() override;
    void onLocalhost() override;
    using NetworkTopology::StatusV2::NotifieeConst::onEdge;
    void onEdge(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & fromPort) override;
    void onEdgevelImmediate() override;
    virtual void velDoZombieReactors(bool zombie);

    V2Sm * owner() const noexcept { return owner_; }
    // The root's business.
    void ownerIs(V2Sm * owner) noexcept { owner_ = owner; }

private:
    V2Sm * owner_;  // Not counted. Null once the root has let us go.
};

// Holds the output status for the root; ignores all its changes, which are mostly the translator's own.
class VEL_EXPORT V2Sm::VelV3 final : public NetworkTopologyV3::Status::Notifiee,
                                     public Vel::AllocTracked<V2Sm::VelV3> {
public:
    using Ptr = Vel::Ptr<VelV3>;
    using PtrConst = Vel::Ptr<VelV3 const>;

    VelV3(Vel::Ptr<NetworkTopologyV3::Status> const & status, V2Sm * owner);

    void hasNotificationActiveIs(bool active) override;
    ~VelV3() override;
    virtual void velDoZombieReactors(bool zombie);

    V2Sm * owner() const noexcept { return owner_; }
    // The root's business.
    void ownerIs(V2Sm * owner) noexcept { owner_ = owner; }

private:
    V2Sm * owner_;  // Not counted. Null once the root has let us go.
};

inline Vel::Ptr<NetworkTopology::StatusV2 const> V2Sm::v2() const noexcept {
    return velV2_ ? velV2_->notifier() : nullptr;
}

inline Vel::Ptr<NetworkTopologyV3::Status> V2Sm::v3() const noexcept {
    return velV3_ ? velV3_->notifier() : nullptr;
}

inline NetworkTopologyV3::Status * V2Sm::output() const noexcept {
    return velV3_ ? velV3_->notifier() : nullptr;
}

inline std::uint32_t V2Sm::inputHosts() const noexcept {
    NetworkTopology::StatusV2 const * const input = velV2_ ? velV2_->notifier() : nullptr;
    return input ? input->host().size() : 0;
}

inline Vel::Ptr<V2Sm::VelV2> V2Sm::velV2() const noexcept { return velV2_; }

inline Vel::Ptr<V2Sm::VelV3> V2Sm::velV3() const noexcept { return velV3_; }

}  // namespace NetworkTopologyAggregator
