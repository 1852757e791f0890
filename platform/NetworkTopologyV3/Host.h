// A host (switch) of the version-3 topology.
//
// It owns its ports, port groups and MLAG ports, each by name; the three collections have names of their own,
// so a port and a port group may have the same one. `mlagRaw` and `logicalPort` refer to port bases of any
// host.
#pragma once

#include "platform/Keln/EthAddr.h"
#include "platform/Mlag/MlagState.h"
#include "platform/NetworkTopologyV3/MlagPort.h"
#include "platform/NetworkTopologyV3/Port.h"
#include "platform/NetworkTopologyV3/PortBase.h"
#include "platform/NetworkTopologyV3/PortGroup.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/NotifieeConst.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/String.h"

namespace NetworkTopologyV3 {

class VEL_EXPORT Host final : public Vel::Entity, public Vel::AllocTracked<Host> {
public:
    using Ptr = Vel::Ptr<Host>;
    using PtrConst = Vel::Ptr<Host const>;
    class NotifieeConst;

    template <class Member>
    using Members = Vel::HashMap<Member, Vel::Name, Host>;
    struct MlagRawTag {
        static constexpr bool kKeyIsValuesName = true;
    };
    using MlagRaw = Vel::HashMap2018<MlagRawTag, Vel::Name, Vel::Ptr<MlagPort>>;
    struct LogicalPortTag {
        static constexpr bool kKeyIsValuesName = true;
    };
    using LogicalPort = Vel::HashMap2018<LogicalPortTag, Vel::Name, Vel::Ptr<PortBase const>>;

    // Hosts are few, and are looked up whenever anything of theirs is: the first look mostly finds the one.
    static constexpr unsigned kBucketsPerMember = 4;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    Vel::Name const & name() const noexcept { return name_; }
    Vel::Name const & collectionKey() const noexcept { return name_; }

    Vel::String const & hostname() const noexcept { return hostname_; }
    void hostnameIs(Vel::String hostname);

    Vel::String const & mlagDomainId() const noexcept { return mlagDomainId_; }
    void mlagDomainIdIs(Vel::String mlagDomainId);

    Keln::EthAddr const & mlagSystemId() const noexcept { return mlagSystemId_; }
    void mlagSystemIdIs(Keln::EthAddr const & mlagSystemId);

    Mlag::MlagState mlagState() const noexcept { return mlagState_; }
    void mlagStateIs(Mlag::MlagState mlagState);

    // May be null. Counted.
    Vel::Ptr<PortBase const> const & mlagPeerLink() const noexcept { return mlagPeerLink_; }
    void mlagPeerLinkIs(Vel::Ptr<PortBase const> const & mlagPeerLink);

    // Members by name: a lookup gives null where there is none, `Is` makes it, `Del` returns what it took
    // out, null when there was none. `find` is the lookup without a reference: valid while the host holds the
    // member.
    Members<Port>::Range port() noexcept { return {port_, *this}; }
    Members<Port>::ConstRange port() const noexcept { return {port_, *this}; }
    Vel::Ptr<Port> port(Vel::Name const & name) noexcept { return port_[name]; }
    Vel::Ptr<Port const> port(Vel::Name const & name) const noexcept { return port_[name]; }
    Port * findPort(Vel::Name const & name) const noexcept { return port_[name]; }
    Port * findPort(Vel::Name const & name, std::uint32_t hash) const noexcept {
        return port_.find(hash, name);
    }
    // Before other work that ends with a lookup of the port whose name has that hash.
    [[gnu::always_inline]] void fetchPort(std::uint32_t hash) const noexcept { port_.fetchFirst(hash); }
    Vel::Ptr<Port> portIs(Vel::Name name);
    // Before many members are added: room for so many of each kind. A hint, which changes
    // nothing that can be seen.
    void reserve(unsigned ports, unsigned portGroups, unsigned mlags) noexcept;
    Vel::Ptr<Port> portDel(Vel::Name name);
    void portDelAll();

    Members<PortGroup>::Range portGroup() noexcept { return {portGroup_, *this}; }
    Members<PortGroup>::ConstRange portGroup() const noexcept { return {portGroup_, *this}; }
    Vel::Ptr<PortGroup> portGroup(Vel::Name const & name) noexcept { return portGroup_[name]; }
    Vel::Ptr<PortGroup const> portGroup(Vel::Name const & name) const noexcept { return portGroup_[name]; }
    PortGroup * findPortGroup(Vel::Name const & name) const noexcept { return portGroup_[name]; }
    PortGroup * findPortGroup(Vel::Name const & name, std::uint32_t hash) const noexcept {
        return portGroup_.find(hash, name);
    }
    Vel::Ptr<PortGroup> portGroupIs(Vel::Name name);
    Vel::Ptr<PortGroup> portGroupDel(Vel::Name name);
    void portGroupDelAll();

    Members<MlagPort>::Range mlag() noexcept { return {mlag_, *this}; }
    Members<MlagPort>::ConstRange mlag() const noexcept { return {mlag_, *this}; }
    Vel::Ptr<MlagPort> mlag(Vel::Name const & name) noexcept { return mlag_[name]; }
    Vel::Ptr<MlagPort const> mlag(Vel::Name const & name) const noexcept { return mlag_[name]; }
    MlagPort * findMlag(Vel::Name const & name) const noexcept { return mlag_[name]; }
    MlagPort * findMlag(Vel::Name const & name, std::uint32_t hash) const noexcept {
        return mlag_.find(hash, name);
    }
    // An MLAG port that is there already is returned as it is, whatever its secondary name.
    Vel::Ptr<MlagPort> mlagIs(Vel::Name name, Vel::Name secondaryName);
    Vel::Ptr<MlagPort> mlagDel(Vel::Name name);
    void mlagDelAll();

    // Entries stand under the name of their object, counted, and never hold null: `Is` given null changes
    // nothing, and a lookup gives null only where there is no entry.
    MlagRaw::Range mlagRaw() const noexcept { return {mlagRaw_, *this}; }
    Vel::Ptr<MlagPort> mlagRaw(Vel::Name const & name) const noexcept;
    void mlagRawIs(Vel::Ptr<MlagPort> const & mlag);
    void mlagRawDel(Vel::Name name);
    void mlagRawDelAll();

    LogicalPort::Range logicalPort() const noexcept { return {logicalPort_, *this}; }
    Vel::Ptr<PortBase const> logicalPort(Vel::Name const & name) const noexcept;
    void logicalPortIs(Vel::Ptr<PortBase const> const & port);
    void logicalPortDel(Vel::Name name);
    void logicalPortDelAll();

private:
    friend class Status;
    friend struct Mutation;

    explicit Host(Vel::Name name) noexcept;
    ~Host() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;
    static void letGo(PortBase & member) noexcept { member.hostDel(); }

    // What every lookup comes to stands at the front.
    Vel::Name const name_;
    Members<Port> port_{4};
    Vel::String hostname_;
    Vel::String mlagDomainId_;
    Keln::EthAddr mlagSystemId_;
    Mlag::MlagState mlagState_ = Mlag::MlagState::unknown;
    Vel::Ptr<PortBase const> mlagPeerLink_;
    Members<PortGroup> portGroup_{4};
    Members<MlagPort> mlag_{4};
    MlagRaw mlagRaw_;
    LogicalPort logicalPort_;
};

class VEL_EXPORT Host::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    // An object of another class counts as null.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override { registeredIs(registered); }
    Host const * notifier() const noexcept { return static_cast<Host const *>(notifierObject().get()); }

    virtual void onHostname() {}
    virtual void onMlagDomainId() {}
    virtual void onMlagSystemId() {}
    virtual void onMlagState() {}
    virtual void onMlagPeerLink() {}
    virtual void onPort(Vel::Name) {}
    virtual void onPortvelImmediate() {}
    virtual void onPort() {}
    virtual void onPortGroup(Vel::Name) {}
    virtual void onPortGroupvelImmediate() {}
    virtual void onPortGroup() {}
    virtual void onMlag(Vel::Name) {}
    virtual void onMlagvelImmediate() {}
    virtual void onMlag() {}
    virtual void onMlagRaw(Vel::Name) {}
    virtual void onMlagRawvelImmediate() {}
    virtual void onMlagRaw() {}
    virtual void onLogicalPort(Vel::Name) {}
    virtual void onLogicalPortvelImmediate() {}
    virtual void onLogicalPort() {}
};

}  // namespace NetworkTopologyV3
