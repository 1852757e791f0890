// The translator: keeps a version-3 topology in step with a version-2 topology.
//
// Usage
//     auto const sm = NetworkTopologyAggregator::v2SmFactory("translator", v2, v3);
//     // v3 now holds all of v2, and follows every change of it while sm is referenced.
//
// The tree of reactors
//     V2Sm owns VelV2 (on the input status), VelV3 (on the output status), one VelHost per input host and one
//     VelEdge per input edge; a VelHost owns one VelPort, VelPortGroup and VelMlag per member of its host.
//     Parents hold children by counted references; children point back through an uncounted owner, which the
//     parent clears when it lets go of them. The statuses are stored nowhere but as the notifiers of VelV2
//     and VelV3.
//
// Correspondence
//     By name only: a version-3 host has its version-2 host's name, and a port, port group or MLAG port has
//     its counterpart's name inside that host. There is no table; the `to...V3` lookups answer from the
//     output model, create nothing, and give null for what is not there (yet).
//
// Letting go and retirement
//     `velDoZombieReactors(true)` retires a reactor: it gets no more callbacks and its version-3 object is
//     deleted; `velDoZombieReactors(false)` revives it, which deletes the version-3 object too and creates
//     nothing. Letting a child go means: take it out of its collection, retire it, clear its owner, switch
//     its notifications off.
//
// Re-entrancy
//     A follower of the output may change the input from inside a write, or let go of the translator: the
//     operations below hold the root while they run.
//
// Threads
//     Everything runs on the thread that changes the input.
#pragma once

#include <cstdint>

#include "platform/NetworkTopology/DirectedEdgeV2.h"
#include "platform/NetworkTopology/HostV2.h"
#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortTypeV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/DirectedEdge.h"
#include "platform/NetworkTopologyV3/Host.h"
#include "platform/NetworkTopologyV3/MlagPort.h"
#include "platform/NetworkTopologyV3/Port.h"
#include "platform/NetworkTopologyV3/PortBase.h"
#include "platform/NetworkTopologyV3/PortGroup.h"
#include "platform/NetworkTopologyV3/PortType.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/NotifieeConst.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace NetworkTopologyAggregator {

class VEL_EXPORT V2Sm final : public Vel::PtrInterface, public Vel::AllocTracked<V2Sm> {
public:
    using Ptr = Vel::Ptr<V2Sm>;
    using PtrConst = Vel::Ptr<V2Sm const>;

    class VelV2;
    class VelV3;
    class VelHost;
    class VelEdge;

    using FromPort = Vel::Ptr<NetworkTopology::PortBaseV2 const>;
    using Hosts = Vel::HashMap<VelHost, Vel::Name, V2Sm>;
    using Edges = Vel::HashMap<VelEdge, FromPort, V2Sm>;

    // A translator that has translated all of `v2` into `v3` and follows it. Either status may be null:
    // without an input there is nothing to translate, without an output nothing is written. What the models
    // throw is passed on, and then nothing is left but what has been written into `v3`.
    static Ptr V2SmIs(Vel::Name name, Vel::Ptr<NetworkTopology::StatusV2 const> v2,
                      Vel::Ptr<NetworkTopologyV3::Status> v3);

    static Vel::VelType const _velType;

    void hasNotificationActiveIs(bool active) override;
    Vel::VelType const * fwkType() const override;
    ~V2Sm() override;
    virtual void velDoZombieReactors(bool zombie);

    Vel::Name const & name() const noexcept { return name_; }
    // Null: callbacks run on whatever activity changes the input.
    Vel::Activity * velFwkActivity() const noexcept { return nullptr; }

    // The bound statuses; null when unbound.
    Vel::Ptr<NetworkTopology::StatusV2 const> v2() const noexcept;
    Vel::Ptr<NetworkTopologyV3::Status> v3() const noexcept;
    // Rebinds; null unbinds. Binding another input brings hosts, localhost and edges into line with it;
    // binding one after none was bound writes localhost only, and its hosts and edges are picked up by their
    // next notifications. Binding another output writes nothing: later changes go there.
    void v2Is(Vel::Ptr<NetworkTopology::StatusV2 const> v2);
    void v3Is(Vel::Ptr<NetworkTopologyV3::Status> v3);
    // Unbinds and returns what was bound, or null. Reactors and output stay as they are.
    Vel::Ptr<NetworkTopology::StatusV2 const> v2Del();
    Vel::Ptr<NetworkTopologyV3::Status> v3Del();

    // The reactors on the statuses; null when unbound.
    Vel::Ptr<VelV2> velV2() const noexcept;
    Vel::Ptr<VelV3> velV3() const noexcept;

    // The host registry: one reactor per input host, by name.
    Hosts::Range host() const noexcept;
    // Null when there is none.
    Vel::Ptr<VelHost> host(Vel::Name const & name) const noexcept;
    // Makes sure that a reactor follows `host`. Throws RangeException for null.
    Vel::Ptr<VelHost> hostIs(Vel::Ptr<NetworkTopology::HostV2 const> host);
    // Retires the reactor of that name and returns the host that it followed; null when there is none.
    Vel::Ptr<NetworkTopology::HostV2 const> hostDel(Vel::Name name);
    void hostDelAll();
    // The registry's hook for each key; nothing is done.
    void hostNotify(Vel::Name) noexcept {}
    // A host reactor is being retired or revived. Uses nothing of the root, because the reactor may have been
    // let go.
    static void vel_handleHost(Vel::Ptr<VelHost> const & host);

    // The edge registry: one reactor per input edge, by its from-port's identity.
    Edges::Range edge() const noexcept;
    // Null when there is none.
    Vel::Ptr<VelEdge> edge(FromPort const & fromPort) const noexcept;
    // Makes sure that a reactor follows `edge`. Throws RangeException for null.
    void edgeIs(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge);
    // Retires the reactor of that key and returns the edge that it followed; null when there is none.
    Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> edgeDel(FromPort const & fromPort);
    void edgeDelAll();
    // The registry's hook for each key; nothing is done.
    void edgeNotify(FromPort const &) noexcept {}
    // An edge reactor is being retired or revived.
    void vel_handleEdge(Vel::Ptr<VelEdge> const & edge);

    // Copies the whole input into the output, in one pass and without reactors. Removes nothing, and writes
    // no port types. Does nothing without both statuses.
    void populateV3();

    // The version-3 counterpart of a version-2 object; null for null, for an object outside every host, and
    // where there is none. The plain pointers are valid while the output holds what they point to.
    NetworkTopologyV3::Host::Ptr toHostV3(Vel::Ptr<NetworkTopology::HostV2 const> const & hostV2);
    NetworkTopologyV3::PortBase::Ptr toPortBaseV3(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & portV2);
    NetworkTopologyV3::Port * toPortV3(Vel::Ptr<NetworkTopology::PortV2 const> const & portV2);
    NetworkTopologyV3::PortGroup * toPortGroupV3(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & pgV2);
    NetworkTopologyV3::MlagPort * toMlagV3(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlagV2);
    // 1, 2 and 3 map to themselves, anything else to 0.
    NetworkTopologyV3::PortType toPortTypeV3(NetworkTopology::PortTypeV2 portTypeV2);

private:
    V2Sm(Vel::Name name, Vel::Ptr<NetworkTopology::StatusV2 const> const & v2,
         Vel::Ptr<NetworkTopologyV3::Status> const & v3);

    // REQUIRES: something keeps this root and `edge` alive.
    void edgeReactorIs(Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const & edge);
    // The bound output, without a reference of its own: for as long as nothing is written. Null when unbound.
    NetworkTopologyV3::Status * output() const noexcept;
    // How many hosts the bound input has; 0 when unbound.
    std::uint32_t inputHosts() const noexcept;
    // The version-3 host of that name; null for null, and where there is none.
    inline NetworkTopologyV3::Host * hostV3Of(NetworkTopology::HostV2 const * hostV2) const noexcept;
    // As toPortGroupV3 of the group of the port that `follower` follows, which a trace sink may change, too.
    NetworkTopologyV3::PortGroup * toPortGroupV3Of(NetworkTopology::PortV2::NotifieeConst const & follower);
    // As toPortGroupV3 of the one that `group()` gives, which is not asked before a trace sink has had its
    // say.
    template <class Group>
    inline NetworkTopologyV3::PortGroup * tracedPortGroupV3(Group const & group);
    void populateHost(NetworkTopology::HostV2 const & hostV2, NetworkTopologyV3::Status & v3);
    void populateEdge(NetworkTopology::DirectedEdgeV2 const & edgeV2, NetworkTopologyV3::Status & v3);
    // No reactor calls back into a dying root.
    void clearOwners() noexcept;

    Vel::Name const name_;
    Vel::Ptr<VelV2> velV2_;
    Vel::Ptr<VelV3> velV3_;
    Hosts host_{4};
    Edges edge_{4};
};

// As V2Sm::V2SmIs.
VEL_EXPORT Vel::Ptr<V2Sm> v2SmFactory(Vel::Name name, Vel::Ptr<NetworkTopology::StatusV2 const> const & v2,
                                      Vel::Ptr<NetworkTopologyV3::Status> const & v3);

}  // namespace NetworkTopologyAggregator

#include "translator/VelEdge.h"
#include "translator/VelHost.h"
#include "translator/VelStatus.h"
