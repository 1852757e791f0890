// The reactor on one input host.
#pragma once

#include <cassert>

#include "translator/V2Sm.h"

namespace NetworkTopologyAggregator {

// Owns the version-3 host of its host's name, copies the host's attributes into it, and keeps one reactor per
// port, port group and MLAG. Logical ports and raw MLAGs have no reactors: they are mirrored name by name.
class VEL_EXPORT V2Sm::VelHost final : public NetworkTopology::HostV2::NotifieeConst,
                                       public Vel::AllocTracked<V2Sm::VelHost> {
public:
    template <class Reactor, class Input, class Output>
    class Member;
    class VelPort;
    class VelPortGroup;
    class VelMlag;

    using Ptr = Vel::Ptr<VelHost>;
    using PtrConst = Vel::Ptr<VelHost const>;
    using Ports = Vel::HashMap<VelPort, Vel::Name, VelHost>;
    using PortGroups = Vel::HashMap<VelPortGroup, Vel::Name, VelHost>;
    using Mlags = Vel::HashMap<VelMlag, Vel::Name, VelHost>;
    using PortIterator = Vel::HashMapIterator<VelPort>;
    using PortGroupIterator = Vel::HashMapIterator<VelPortGroup>;
    using MlagIterator = Vel::HashMapIterator<VelMlag>;

    // Makes or finds the version-3 host and writes its peer link; then makes the reactors of all members. The
    // other attributes follow from their next notifications: the step that copies them runs while there is no
    // version-3 host yet. REQUIRES: `host` is not null.
    VelHost(Vel::Ptr<NetworkTopology::HostV2 const> const & host, V2Sm * owner);

    void hasNotificationActiveIs(bool active) override;
    ~VelHost() override;
    // Binding another host rewrites all attributes and reconciles the members. Null leaves everything as it
    // is.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void onHostname() override;
    void onMlagSystemId() override;
    void onMlagDomainId() override;
    void onMlagState() override;
    void onMlagPeerLink() override;
    using NetworkTopology::HostV2::NotifieeConst::onPort;
    void onPort(Vel::Name name) override;
    void onPortvelImmediate() override;
    using NetworkTopology::HostV2::NotifieeConst::onPortGroup;
    void onPortGroup(Vel::Name name) override;
    void onPortGroupvelImmediate() override;
    using NetworkTopology::HostV2::NotifieeConst::onMlag;
    void onMlag(Vel::Name name) override;
    void onMlagvelImmediate() override;
    using NetworkTopology::HostV2::NotifieeConst::onMlagRaw;
    void onMlagRaw(Vel::Name name) override;
    // Raw MLAGs and logical ports follow name by name only.
    void onMlagRawvelImmediate() override;
    using NetworkTopology::HostV2::NotifieeConst::onLogicalPort;
    void onLogicalPort(Vel::Name name) override;
    void onLogicalPortvelImmediate() override;

    // The registries. `Is` makes sure that a reactor follows the object and returns it; it throws
    // RangeException for null. `Del` retires the reactor of that name, if any; `Notify` does nothing.
    virtual void portDel(Vel::Name name);
    virtual void portDel(PortIterator const & at);
    virtual void portNotify(Vel::Name name);
    virtual Vel::Ptr<VelPort> portIs(Vel::Ptr<NetworkTopology::PortV2 const> const & port);
    virtual void mlagDel(Vel::Name name);
    virtual void mlagDel(MlagIterator const & at);
    virtual void mlagNotify(Vel::Name name);
    virtual Vel::Ptr<VelMlag> mlagIs(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag);
    virtual void portGroupDel(Vel::Name name);
    virtual void portGroupDel(PortGroupIterator const & at);
    virtual void portGroupNotify(Vel::Name name);
    virtual Vel::Ptr<VelPortGroup>
    portGroupIs(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & portGroup);
    virtual void velDoZombieReactors(bool zombie);

    void portDelAll();
    void portGroupDelAll();
    void mlagDelAll();

    // Makes a reactor and enters it into the registry. REQUIRES: none stands under the object's name.
    Vel::Ptr<VelPort> newPort(Vel::Ptr<NetworkTopology::PortV2 const> const & port);
    Vel::Ptr<VelPortGroup> newPortGroup(Vel::Ptr<NetworkTopology::PortGroupV2 const> const & portGroup);
    Vel::Ptr<VelMlag> newMlag(Vel::Ptr<NetworkTopology::MlagV2 const> const & mlag);

    // What walks all reactors of a kind, and the reactor of a name or null.
    Ports::Range port() const noexcept { return {port_, *this}; }
    Vel::Ptr<VelPort> port(Vel::Name const & name) const noexcept;
    PortGroups::Range portGroup() const noexcept { return {portGroup_, *this}; }
    Vel::Ptr<VelPortGroup> portGroup(Vel::Name const & name) const noexcept;
    Mlags::Range mlag() const noexcept { return {mlag_, *this}; }
    Vel::Ptr<VelMlag> mlag(Vel::Name const & name) const noexcept;

    // A member reactor is being retired or revived.
    void vel_handlePort(Vel::Ptr<VelPort> const & port);
    void vel_handlePortGroup(Vel::Ptr<VelPortGroup> const & portGroup);
    void vel_handleMlag(Vel::Ptr<VelMlag> const & mlag);

    // The version-3 host of this name, made where there is none; null without an output status.
    NetworkTopologyV3::Host::Ptr createV3Host();
    void v3HostIs(Vel::Ptr<NetworkTopologyV3::Host> const & host) { v3Host_ = host; }
    Vel::Ptr<NetworkTopologyV3::Host> const & v3Host() const noexcept { return v3Host_; }
    // Deletes the version-3 host of this name, with everything in it.
    void cleanup();
    // Mirrors one entry, present or absent.
    void handleLogicalPort(Vel::Name name);
    void handleMlagRaw(Vel::Name name);

    // The host's name; empty without a host.
    Vel::Name name() const noexcept { return notifier() ? notifier()->name() : Vel::Name(); }
    Vel::Name fwkKey() const noexcept { return name(); }
    // The name under which the root keeps this reactor.
    Vel::Name const & collectionKey() const noexcept { return key_; }

    V2Sm * owner() const noexcept { return owner_; }
    // The root's business.
    void ownerIs(V2Sm * owner) noexcept { owner_ = owner; }

private:
    // REQUIRES: something keeps this reactor and `input` alive.
    template <class Reactor, class Input>
    Vel::Ptr<Reactor> memberIs(Vel::HashMap<Reactor, Vel::Name, VelHost> & registry,
                               Vel::Ptr<Input const> const & input);
    template <class Reactor>
    void memberDel(Vel::HashMap<Reactor, Vel::Name, VelHost> & registry, Vel::Name const & name);
    // Writes all attributes but the peer link, as long as there is something to read from and to write to.
    void copyAttributes();
    void reconcilePorts();
    void reconcilePortGroups();
    void reconcileMlags();
    // No member calls back into a dying host reactor.
    void clearOwners() noexcept;

    V2Sm * owner_;  // Not counted. Null once the root has let us go.
    Vel::Ptr<NetworkTopologyV3::Host> v3Host_;
    Ports port_{4};
    PortGroups portGroup_{4};
    Mlags mlag_{4};
    Vel::Name const key_;
};

// What the reactors on ports, port groups and MLAGs share: their life, their retirement, the type. `Reactor`
// is the leaf class, which offers `createV3()`, `writeLink()` and `handleRetirement()`.
//
// A reactor is made without writing anything but the version-3 object itself, which begins with the model's
// defaults: type and links follow from their next notifications, or from binding another object.
template <class Reactor, class Input, class Output>
class V2Sm::VelHost::Member : public Input::NotifieeConst {
public:
    using Ptr = Vel::Ptr<Reactor>;
    using PtrConst = Vel::Ptr<Reactor const>;

    void hasNotificationActiveIs(bool active) override {
        if (active != this->hasNotificationActive()) [[likely]]
            Vel::PtrInterface::hasNotificationActiveIs(active);
    }
    ~Member() override {
        assert((this->velMarkedForDeletion() || !output_) && "a leaf retires itself in its destructor");
    }
    // Binding another object writes its type and its link.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override {
        auto const input = Vel::dynamicPtrCast<Input const>(notifier);
        if (input == this->notifier()) return;
        Vel::KeepAlive const keepThis(*this);
        Input::NotifieeConst::notifierIs(input);
        onType();
        reactor().writeLink();
        this->isRegisteredNotifieeIs(true);
    }
    // Unknown without a translator.
    void onType() override {
        if (!this->notifier() || !output_) return;
        V2Sm * const translator = sm();
        output_->typeIs(translator ? translator->toPortTypeV3(this->notifier()->type())
                                   : NetworkTopologyV3::PortType::unknown);
    }
    virtual void velDoZombieReactors(bool zombie) {
        if (zombie == this->velMarkedForDeletion()) return;
        // A reactor that no counted reference holds has none to hand out, and needs none to stay.
        Ptr const self = this->isCounted() ? &reactor() : nullptr;
        Vel::fetch(output_.get());
        if (this->notifier()) this->hasNotificationActiveIs(!zombie);
        if (owner_) self ? reactor().handleRetirement(self) : reactor().cleanup();
        this->velMarkedForDeletionIs(zombie);
    }

    // The name of the object that is followed; empty without one.
    Vel::Name fwkKey() const noexcept { return this->notifier() ? this->notifier()->name() : Vel::Name(); }
    // The name under which the host reactor keeps this reactor.
    Vel::Name const & collectionKey() const noexcept { return key_; }

    VelHost * owner() const noexcept { return owner_; }
    // The host reactor's business.
    void ownerIs(VelHost * owner) noexcept { owner_ = owner; }

protected:
    Member(Vel::Ptr<Input const> const & input, VelHost * owner) : owner_(owner), key_(input->name()) {
        this->follow(*input);
    }

    // The translator; null once anyone on the way to it has let go.
    V2Sm * sm() const noexcept { return owner_ ? owner_->owner() : nullptr; }
    // The version-3 host of the host reactor's name; null where there is none, or no translator. A host
    // reactor without a host has no name: the version-3 host that happens to be called "" is somebody else's.
    NetworkTopologyV3::Host * hostV3() const noexcept {
        V2Sm * const translator = sm();
        NetworkTopology::HostV2 const * const host = translator ? owner_->notifier() : nullptr;
        NetworkTopologyV3::Status * const status = host ? translator->output() : nullptr;
        return status ? status->findHost(host->name(), host->nameHash()) : nullptr;
    }
    Vel::Ptr<Output> const & output() const noexcept { return output_; }
    void outputIs(Vel::Ptr<Output> const & output) { output_ = output; }

private:
    Reactor & reactor() noexcept { return static_cast<Reactor &>(*this); }

    VelHost * owner_;  // Not counted. Null once the host reactor has let us go.
    Vel::Ptr<Output> output_;
    Vel::Name const key_;
};

}  // namespace NetworkTopologyAggregator

#include "translator/VelMlag.h"
#include "translator/VelPort.h"
#include "translator/VelPortGroup.h"

namespace NetworkTopologyAggregator {

inline Vel::Ptr<V2Sm::VelHost::VelPort> V2Sm::VelHost::port(Vel::Name const & name) const noexcept {
    return port_[name];
}

inline Vel::Ptr<V2Sm::VelHost::VelPortGroup> V2Sm::VelHost::portGroup(Vel::Name const & name) const noexcept {
    return portGroup_[name];
}

inline Vel::Ptr<V2Sm::VelHost::VelMlag> V2Sm::VelHost::mlag(Vel::Name const & name) const noexcept {
    return mlag_[name];
}

inline V2Sm::Hosts::Range V2Sm::host() const noexcept { return {host_, *this}; }

inline Vel::Ptr<V2Sm::VelHost> V2Sm::host(Vel::Name const & name) const noexcept { return host_[name]; }

}  // namespace NetworkTopologyAggregator
