// The reactor on one input edge.
#pragma once

#include "translator/V2Sm.h"

namespace NetworkTopologyAggregator {

// Keeps the version-3 edge under the key of the from-port's counterpart, and its destinations, one by one.
//
// A from-port that has no counterpart when the reactor is made leaves it without a version-3 edge. The next
// destination notification tries again; when that succeeds, every destination that the input edge then holds
// is written. Until then destinations are ignored.
class VEL_EXPORT V2Sm::VelEdge final : public NetworkTopology::DirectedEdgeV2::NotifieeConst,
                                       public Vel::AllocTracked<V2Sm::VelEdge> {
public:
    using Ptr = Vel::Ptr<VelEdge>;
    using PtrConst = Vel::Ptr<VelEdge const>;

    // REQUIRES: `edge` is not null.
    VelEdge(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge, V2Sm * sm);

    void hasNotificationActiveIs(bool active) override;
    ~VelEdge() override;
    // The version-3 edge is neither made nor moved.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    using NetworkTopology::DirectedEdgeV2::NotifieeConst::onToPort;
    // Ignored while retired.
    void onToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort) override;
    // Destinations follow one by one only.
    void onToPortvelImmediate() override;
    virtual void velDoZombieReactors(bool zombie);

    // The version-3 edge, made where there is none; null while the from-port has no counterpart.
    NetworkTopologyV3::DirectedEdge::Ptr createV3Edge();
    Vel::Ptr<NetworkTopologyV3::DirectedEdge> const & v3Edge() const noexcept { return v3Edge_; }
    // Mirrors one destination, present or absent. A destination without a counterpart is left as it is.
    void handleToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort);
    // Deletes the version-3 edge. Left in place when the from-port has left its host or that host has no
    // counterpart any more.
    void cleanup();

    // The from-port of the edge that is followed; null without an edge.
    FromPort fwkKey() const noexcept { return notifier() ? notifier()->fromPort() : FromPort(); }
    // The from-port under which the root keeps this reactor.
    FromPort const & collectionKey() const noexcept { return key_; }

    V2Sm * owner() const noexcept { return sm_; }
    // The root's business.
    void ownerIs(V2Sm * sm) noexcept { sm_ = sm; }

private:
    // Tries again to make the version-3 edge, and writes every destination once there is one.
    [[gnu::cold]] void writeAllToPorts();
    inline void writeToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & toPort);

    V2Sm * sm_;  // Not counted. Null once the root has let us go.
    Vel::Ptr<NetworkTopologyV3::DirectedEdge> v3Edge_;
    FromPort const key_;
};

inline V2Sm::Edges::Range V2Sm::edge() const noexcept { return {edge_, *this}; }

inline Vel::Ptr<V2Sm::VelEdge> V2Sm::edge(FromPort const & fromPort) const noexcept {
    return edge_[fromPort];
}

}  // namespace NetworkTopologyAggregator
