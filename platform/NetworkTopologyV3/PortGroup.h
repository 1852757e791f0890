// A link aggregation of a version-3 host: ports that act as one.
#pragma once

#include "platform/NetworkTopologyV3/Port.h"
#include "platform/NetworkTopologyV3/PortBase.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/WeakPtr.h"

namespace NetworkTopologyV3 {

class MlagPort;

class VEL_EXPORT PortGroup final : public PortBase, public Vel::AllocTracked<PortGroup> {
public:
    using Ptr = Vel::Ptr<PortGroup>;
    using PtrConst = Vel::Ptr<PortGroup const>;
    class NotifieeConst;

    // Most groups have two or four members.
    struct MemberPortTag {
        static constexpr std::uint32_t kInOneBucket = 2;
        static constexpr bool kKeyIsValuesName = true;
    };
    using MemberPort = Vel::HashMap2018<MemberPortTag, Vel::Name, Vel::Ptr<Port>>;

    // As with hosts: few, and looked up with every link that refers to one.
    static constexpr unsigned kBucketsPerMember = 2;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // The members by name, counted.
    MemberPort::Range memberPort() const noexcept { return MemberPort::Range(memberPort_, *this); }
    // Null when there is none of that name.
    Vel::Ptr<Port> memberPort(Vel::Name const & name) const noexcept;
    // Enters the port under its name, in place of another one of that name. Null changes nothing.
    void memberPortIs(Vel::Ptr<Port> const & port);
    void memberPortDel(Vel::Name name);
    void memberPortDelAll();

    // The MLAG port that this group belongs to; null when it belongs to none, or its MLAG port has died. Not
    // counted.
    MlagPort const * mlag() const noexcept;
    void mlagIs(MlagPort const * mlag);

private:
    friend class Host;
    friend class Vel::WeakPtr<PortGroup>;
    friend struct Mutation;

    PortGroup(Vel::Name name, Host & host) noexcept;
    ~PortGroup() override;

    Vel::WeakTarget & weakTarget() const noexcept { return weakTarget_; }

    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;

    mutable Vel::WeakTarget weakTarget_;
    MemberPort memberPort_;
    Vel::WeakPtr<MlagPort const> mlag_;
};

class VEL_EXPORT PortGroup::NotifieeConst : public PortBase::NotifieeConst {
public:
    NotifieeConst() noexcept : PortBase::NotifieeConst(Kind::portGroup) {}
    ~NotifieeConst() override;

    PortGroup const * notifier() const noexcept {
        return static_cast<PortGroup const *>(notifierObject().get());
    }

    virtual void onMemberPort(Vel::Name) {}
    virtual void onMemberPortvelImmediate() {}
    virtual void onMemberPort() {}
    virtual void onMlag() {}
};

}  // namespace NetworkTopologyV3
