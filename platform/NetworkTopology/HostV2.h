// A host: a switch with its ports, port groups and MLAGs.
#pragma once

#include "platform/Keln/EthAddr.h"
#include "platform/Mlag/MlagState.h"
#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Entity.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopology {

class StatusV2;

// A host that has been removed from its status stays as it is while it is referenced, and still holds its
// members.
//
// Members (`port`, `portGroup`, `mlag`)
//     `xIs(name)` returns the member of that name after making it if there is none. `xIs(object)` adds an
//     object that no host holds, in the place of the one of that name; it throws RangeException for null and
//     for an object that another host holds. Adding what the host holds already changes nothing.
//     `xDel(name)` returns what it removed, or null. `findX(name)` is the lookup without a reference: valid
//     while the host holds the member.
//
// Callbacks of collections
//     A change of one entry calls the callback with its key and then the one without. `xDelAll()` calls
//     `onXvelImmediate()` and then the one without; on a map (`mlagRaw`, `logicalPort`) each key that was
//     removed is told before that. A collection that is empty already is not changed by it.
class VEL_EXPORT HostV2 final : public Vel::Entity, public Vel::AllocTracked<HostV2> {
public:
    using Ptr = Vel::Ptr<HostV2>;
    using PtrConst = Vel::Ptr<HostV2 const>;
    class NotifieeConst;
    struct LogicalPortTag;
    struct MlagRawTag;
    template <class Member>
    using Members = Vel::HashMap<Member, Vel::Name, HostV2>;
    using LogicalPort = Vel::HashMap2018<LogicalPortTag, Vel::Name, Vel::Ptr<PortBaseV2 const>>;
    using MlagRaw = Vel::HashMap2018<MlagRawTag, Vel::Name, Vel::Ptr<MlagV2>>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // A host that no status holds yet.
    static Vel::Ptr<HostV2> HostV2Is(Vel::Name name);

    // The key in the status. Never changes; may be empty.
    Vel::Name const & name() const noexcept { return name_; }
    Vel::Name const & collectionKey() const noexcept { return name_; }
    // What collections make of the name, at hand without a look at its bytes.
    std::uint32_t nameHash() const noexcept { return collectionHash(); }

    Vel::String const & hostname() const noexcept { return hostname_; }
    void hostnameIs(Vel::String const & value);

    // Whether the hostname was configured, as opposed to one that was found.
    bool hostnameAddedByOwner() const noexcept { return hostnameAddedByOwner_; }
    void hostnameAddedByOwnerIs(bool value);

    // The address that both peers of an MLAG domain answer to; zero for none.
    Keln::EthAddr const & mlagSystemId() const noexcept { return mlagSystemId_; }
    void mlagSystemIdIs(Keln::EthAddr const & value);

    Vel::String const & mlagDomainId() const noexcept { return mlagDomainId_; }
    void mlagDomainIdIs(Vel::String const & value);

    Mlag::MlagState mlagState() const noexcept { return mlagState_; }
    void mlagStateIs(Mlag::MlagState value);

    // The port base that leads to the MLAG peer; counted, may be null.
    Vel::Ptr<PortBaseV2 const> const & mlagPeerLink() const noexcept { return mlagPeerLink_; }
    void mlagPeerLinkIs(Vel::Ptr<PortBaseV2 const> const & value);

    Members<PortV2>::Range port() noexcept { return {port_, *this}; }
    Members<PortV2>::ConstRange port() const noexcept { return {port_, *this}; }
    Vel::Ptr<PortV2> port(Vel::Name const & name) noexcept { return port_[name]; }
    Vel::Ptr<PortV2 const> port(Vel::Name const & name) const noexcept { return port_[name]; }
    PortV2 const * findPort(Vel::Name const & name) const noexcept { return port_[name]; }
    Vel::Ptr<PortV2> portIs(Vel::Name name);
    Vel::Ptr<PortV2> portIs(Vel::Ptr<PortV2> port);
    Vel::Ptr<PortV2> portDel(Vel::Name name);
    void portDelAll();

    Members<PortGroupV2>::Range portGroup() noexcept { return {portGroup_, *this}; }
    Members<PortGroupV2>::ConstRange portGroup() const noexcept { return {portGroup_, *this}; }
    Vel::Ptr<PortGroupV2> portGroup(Vel::Name const & name) noexcept { return portGroup_[name]; }
    Vel::Ptr<PortGroupV2 const> portGroup(Vel::Name const & name) const noexcept { return portGroup_[name]; }
    PortGroupV2 const * findPortGroup(Vel::Name const & name) const noexcept { return portGroup_[name]; }
    Vel::Ptr<PortGroupV2> portGroupIs(Vel::Name name);
    Vel::Ptr<PortGroupV2> portGroupIs(Vel::Ptr<PortGroupV2> group);
    Vel::Ptr<PortGroupV2> portGroupDel(Vel::Name name);
    void portGroupDelAll();

    Members<MlagV2>::Range mlag() noexcept { return {mlag_, *this}; }
    Members<MlagV2>::ConstRange mlag() const noexcept { return {mlag_, *this}; }
    Vel::Ptr<MlagV2> mlag(Vel::Name const & name) noexcept { return mlag_[name]; }
    Vel::Ptr<MlagV2 const> mlag(Vel::Name const & name) const noexcept { return mlag_[name]; }
    MlagV2 const * findMlag(Vel::Name const & name) const noexcept { return mlag_[name]; }
    // An MLAG that is there already keeps its secondary name.
    Vel::Ptr<MlagV2> mlagIs(Vel::Name name, Vel::Name secondaryName);
    Vel::Ptr<MlagV2> mlagIs(Vel::Ptr<MlagV2> mlag);
    Vel::Ptr<MlagV2> mlagDel(Vel::Name name);
    void mlagDelAll();

    // MLAGs as they were learned, counted, by name. The key is the writer's choice; an entry may hold null.
    MlagRaw::Range mlagRaw() const noexcept { return {mlagRaw_, *this}; }
    // Null also when the entry of that name holds null, which `mlagRawEntry` tells apart.
    Vel::Ptr<MlagV2> mlagRaw(Vel::Name const & name) const noexcept;
    // Null when there is no entry of that name. Valid until the entry is removed.
    MlagRaw::Node const * mlagRawEntry(Vel::Name const & name) const noexcept { return mlagRaw_[name]; }
    // Adds an entry, or changes what it refers to.
    void mlagRawIs(Vel::Name name, Vel::Ptr<MlagV2> const & mlag);
    void mlagRawDel(Vel::Name name);
    void mlagRawDelAll();

    // The port bases that carry traffic as one port each, counted, by name. The key is the writer's choice;
    // an entry may hold null.
    LogicalPort::Range logicalPort() const noexcept { return {logicalPort_, *this}; }
    // Null also when the entry of that name holds null, which `logicalPortEntry` tells apart.
    Vel::Ptr<PortBaseV2 const> logicalPort(Vel::Name const & name) const noexcept;
    // Null when there is no entry of that name. Valid until the entry is removed.
    LogicalPort::Node const * logicalPortEntry(Vel::Name const & name) const noexcept {
        return logicalPort_[name];
    }
    // Adds an entry, or changes what it refers to.
    void logicalPortIs(Vel::Name name, Vel::Ptr<PortBaseV2 const> const & portBase);
    void logicalPortDel(Vel::Name name);
    void logicalPortDelAll();

private:
    friend struct Mutation;

    explicit HostV2(Vel::Name name) noexcept;
    ~HostV2() override;

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;

    Vel::Name const name_;
    StatusV2 * owner_ = nullptr;  // Not counted. The status clears it when it lets go of us.
    Members<PortV2> port_{4};
    Vel::String hostname_;
    Vel::String mlagDomainId_;
    Vel::Ptr<PortBaseV2 const> mlagPeerLink_;
    Mlag::MlagState mlagState_ = Mlag::MlagState::unknown;
    Keln::EthAddr mlagSystemId_;
    bool hostnameAddedByOwner_ = false;
    Members<PortGroupV2> portGroup_{4};
    Members<MlagV2> mlag_{4};
    MlagRaw mlagRaw_;
    LogicalPort logicalPort_;
};

class VEL_EXPORT HostV2::NotifieeConst : public Vel::PtrInterface::NotifieeConst {
public:
    NotifieeConst() noexcept = default;

    // Binds to `notifier` if it is a HostV2; unbinds otherwise.
    void notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) override;
    void isRegisteredNotifieeIs(bool registered) const override;

    virtual void onHostname();
    virtual void onHostnameAddedByOwner();
    virtual void onMlagSystemId();
    virtual void onMlagDomainId();
    virtual void onMlagState();
    virtual void onMlagPeerLink();
    virtual void onPort(Vel::Name name);
    virtual void onPortvelImmediate();
    virtual void onPort();
    virtual void onPortGroup(Vel::Name name);
    virtual void onPortGroupvelImmediate();
    virtual void onPortGroup();
    virtual void onMlag(Vel::Name name);
    virtual void onMlagvelImmediate();
    virtual void onMlag();
    virtual void onMlagRaw(Vel::Name name);
    virtual void onMlagRawvelImmediate();
    virtual void onMlagRaw();
    virtual void onLogicalPort(Vel::Name name);
    virtual void onLogicalPortvelImmediate();
    virtual void onLogicalPort();

    // Null while unbound.
    HostV2 const * notifier() const noexcept { return static_cast<HostV2 const *>(notifierObject().get()); }
};

inline HostV2 * PortBaseV2::holder() const noexcept {
    // A host whose last reference has gone may wait for its destructor.
    HostV2 * const owner = owner_;
    return owner && !owner->isBeingDestroyed() ? owner : nullptr;
}

}  // namespace NetworkTopology
