// The root of one version-2 topology: its hosts and the edges between their ports.
#pragma once

#include "platform/NetworkTopology/DirectedEdgeV2.h"
#include "platform/NetworkTopology/HostV2.h"
#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopology {

// Members (`host`, `edge`)
//     `xIs(key)` returns the member of that key after making it if there is none. `xIs(object)` adds an
//     object that no status holds, in the place of the one of that key; it throws RangeException for null and
//     for an object that another status holds. Adding what the status holds already changes nothing.
//     `xDel(key)` returns what it removed, or null. `findX(key)` is the lookup without a reference: valid
//     while the status holds the member.
class VEL_EXPORT StatusV2 final : public Vel::Entity, public Vel::AllocTracked<StatusV2> {
public:
    using Ptr = Vel::Ptr<StatusV2>;
    using PtrConst = Vel::Ptr<StatusV2 const>;
    class NotifieeConst;
    using Hosts = Vel::HashMap<HostV2, Vel::Name, StatusV2>;
    using Edges = Vel::HashMap<DirectedEdgeV2, Vel::Ptr<PortBaseV2 const>, StatusV2>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    static Vel::Ptr<StatusV2> StatusV2Is();

    Hosts::Range host() noexcept { return {host_, *this}; }
    Hosts::ConstRange host() const noexcept { return {host_, *this}; }
    Vel::Ptr<HostV2> host(Vel::Name const & name) noexcept { return host_[name]; }
    Vel::Ptr<HostV2 const> host(Vel::Name const & name) const noexcept { return host_[name]; }
    HostV2 const * findHost(Vel::Name const & name) const noexcept { return host_[name]; }
    Vel::Ptr<HostV2> hostIs(Vel::Name name);
    Vel::Ptr<HostV2> hostIs(Vel::Ptr<HostV2> host);
    Vel::Ptr<HostV2> hostDel(Vel::Name name);
    void hostDelAll();

    // The host on which this topology is observed; counted, may be null. Need not be one of `host()`.
    Vel::Ptr<HostV2> const & localhost() const noexcept { return localhost_; }
    void localhostIs(Vel::Ptr<HostV2> const & value);

    // The key is the port base itself, not its name; null is a key too.
    Edges::Range edge() noexcept { return {edge_, *this}; }
    Edges::ConstRange edge() const noexcept { return {edge_, *this}; }
    Vel::Ptr<DirectedEdgeV2> edge(Vel::Ptr<PortBaseV2 const> const & fromPort) noexcept {
        return edge_[fromPort];
    }
    Vel::Ptr<DirectedEdgeV2 const> edge(Vel::Ptr<PortBaseV2 const> const & fromPort) const noexcept {
        return edge_[fromPort];
    }
    DirectedEdgeV2 const * findEdge(Vel::Ptr<PortBaseV2 const> const & fromPort) const noexcept {
        return edge_[fromPort];
    }
    DirectedEdgeV2 const * findEdge(Vel::Ptr<PortBaseV2 const> const & fromPort,
                                    std::uint32_t hash) const noexcept {
        return edge_.find(hash, fromPort);
    }
    Vel::Ptr<DirectedEdgeV2> edgeIs(Vel::Ptr<PortBaseV2 const> fromPort);
    Vel::Ptr<DirectedEdgeV2> edgeIs(Vel::Ptr<DirectedEdgeV2> edge);
    Vel::Ptr<DirectedEdgeV2> edgeDel(Vel::Ptr<PortBaseV2 const> fromPort);
    void edgeDelAll();

private:
    friend struct Mutation;

    StatusV2() noexcept;
    ~StatusV2() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;

    Hosts host_{4};
    Edges edge_{4};
    Vel::Ptr<HostV2> localhost_;
};

class VEL_EXPORT StatusV2::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    NotifieeConst() noexcept = default;

    // Binds to `notifier` if it is a StatusV2; unbinds otherwise.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override;

    virtual void onHost(Vel::Name name);
    virtual void onHostvelImmediate();
    virtual void onHost();
    virtual void onLocalhost();
    virtual void onEdge(Vel::Ptr<PortBaseV2 const> const & fromPort);
    virtual void onEdgevelImmediate();
    virtual void onEdge();

    // Null while unbound.
    StatusV2 const * notifier() const noexcept {
        return static_cast<StatusV2 const *>(notifierObject().get());
    }
};

}  // namespace NetworkTopology
