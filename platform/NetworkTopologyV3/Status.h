// The root of the version-3 topology.
//
// Usage
//     Vel::Ptr<NetworkTopologyV3::Status> status = NetworkTopologyV3::Status::StatusIs();
//     Vel::Ptr<NetworkTopologyV3::Port> port = status->hostIs("leaf-1")->portIs("eth-1");
//     status->edgeIs(port->portKey())->toPortIs(other->portKey(), true);
//
// Changes
//     Every attribute and collection has a callback in the `NotifieeConst` of its class. A mutator delivers
//     after the model holds the new value. One that writes what is there already changes nothing and calls
//     nobody; so does a removal of what is not there. How callbacks are delivered, and what they may do, is
//     told in platform/Vel/NotifieeConst.h. One entry added, changed or removed: the keyed callback, then the
//     unkeyed one. `DelAll` of hosts, edges and members of hosts: the immediate callback, then the unkeyed
//     one. `DelAll` of references and destinations: the keyed callback for each of them, then the same two.
//
// Ownership
//     Status to hosts, edges and the local host; host to its members; port group to member ports; MLAG port
//     to local port group; references of a host to their targets: all counted. What points back (a port's
//     group, a group's MLAG port, a member's host) is not, and turns null, without a callback, when its
//     target dies.
#pragma once

#include "platform/NetworkTopologyV3/DirectedEdge.h"
#include "platform/NetworkTopologyV3/Host.h"
#include "platform/NetworkTopologyV3/PortKey.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/NotifieeConst.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopologyV3 {

class VEL_EXPORT Status final : public Vel::Entity, public Vel::AllocTracked<Status> {
public:
    using Ptr = Vel::Ptr<Status>;
    using PtrConst = Vel::Ptr<Status const>;
    class NotifieeConst;
    class Notifiee;

    using Hosts = Vel::HashMap<Host, Vel::Name, Status>;
    using Edges = Vel::HashMap<DirectedEdge, PortKey, Status>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // An empty topology.
    static Vel::Ptr<Status> StatusIs();
    // Hosts by name and edges by the key of the port base where they start: a lookup gives null where there
    // is none, `Is` makes it and returns one that is there as it is, `Del` returns what it took out, null
    // when there was none. What was taken out keeps its members, or destinations, as long as it is
    // referenced. `find` is the lookup without a reference: valid while the status holds it. It takes the
    // hash of a name, too, as collections make it, from those who have it at hand.
    Hosts::Range host() noexcept { return {host_, *this}; }
    Hosts::ConstRange host() const noexcept { return {host_, *this}; }
    Vel::Ptr<Host> host(Vel::Name const & name) noexcept { return host_[name]; }
    Vel::Ptr<Host const> host(Vel::Name const & name) const noexcept { return host_[name]; }
    Host * findHost(Vel::Name const & name) const noexcept { return host_[name]; }
    Host * findHost(Vel::Name const & name, std::uint32_t hash) const noexcept {
        return host_.find(hash, name);
    }
    Vel::Ptr<Host> hostIs(Vel::Name name);
    // Before many are added: room for so many. A hint, which changes nothing that can be seen.
    void reserve(unsigned hosts, unsigned edges) noexcept;
    Vel::Ptr<Host> hostDel(Vel::Name name);
    void hostDelAll();

    // May be null, and may be a host that is not, or no longer, in this status. Counted.
    Vel::Ptr<Host> const & localhost() const noexcept { return localhost_; }
    void localhostIs(Vel::Ptr<Host> const & localhost);

    Edges::Range edge() noexcept { return {edge_, *this}; }
    Edges::ConstRange edge() const noexcept { return {edge_, *this}; }
    Vel::Ptr<DirectedEdge> edge(PortKey const & fromPort) noexcept { return edge_[fromPort]; }
    Vel::Ptr<DirectedEdge const> edge(PortKey const & fromPort) const noexcept { return edge_[fromPort]; }
    DirectedEdge * findEdge(PortKey const & fromPort) const noexcept { return edge_[fromPort]; }
    // For those who will look up, or add, an edge whose key has that hash soon. Changes nothing.
    [[gnu::always_inline]] void fetchEdge(std::uint32_t hash) const noexcept { edge_.fetch(hash); }
    Vel::Ptr<DirectedEdge> edgeIs(PortKey const & fromPort);
    Vel::Ptr<DirectedEdge> edgeDel(PortKey const & fromPort);
    void edgeDelAll();

private:
    friend struct Mutation;

    Status() noexcept;
    ~Status() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;
    // Hosts and edges do not know their status.
    static void letGo(Vel::Entity &) noexcept {}

    Hosts host_{4};
    Vel::Ptr<Host> localhost_;
    Edges edge_{4};
};

class VEL_EXPORT Status::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    // An object of another class counts as null.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
    Status const * notifier() const noexcept { return static_cast<Status const *>(notifierObject().get()); }

    virtual void onHost(Vel::Name) {}
    virtual void onHostvelImmediate() {}
    virtual void onHost() {}
    virtual void onLocalhost() {}
    virtual void onEdge(PortKey const &) {}
    virtual void onEdgevelImmediate() {}
    virtual void onEdge() {}
};

// The base of reactors that write the status which they follow.
class VEL_EXPORT Status::Notifiee : public Status::NotifieeConst {
public:
    ~Notifiee() override;

    // The status, to be written. `notifierIs` takes every object as const, for all reactors alike: whoever
    // binds a writer gives it the right to write. REQUIRES: what was bound is the caller's to write.
    Status * notifier() const noexcept { return const_cast<Status *>(NotifieeConst::notifier()); }
};

}  // namespace NetworkTopologyV3
