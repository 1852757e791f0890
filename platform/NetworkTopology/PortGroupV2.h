// A group of ports that act as one: a link aggregation.
#pragma once

#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/Export.h"
#include "platform/Vel/HashMap2018.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/WeakPtr.h"

namespace NetworkTopology {

class VEL_EXPORT PortGroupV2 final : public PortBaseV2, public Vel::AllocTracked<PortGroupV2> {
public:
    using Ptr = Vel::Ptr<PortGroupV2>;
    using PtrConst = Vel::Ptr<PortGroupV2 const>;
    class NotifieeConst;
    // Most groups have two or four members.
    struct MemberPortTag {
        static constexpr std::uint32_t kInOneBucket = 2;
    };
    using MemberPort = Vel::HashMap2018<MemberPortTag, Vel::Name, Vel::Ptr<PortV2>>;

    static Vel::VelType const _velType;
    Vel::VelType const * fwkType() const override;

    // A group that no host holds yet.
    static Vel::Ptr<PortGroupV2> PortGroupV2Is(Vel::Name name);

    // The member ports, counted, by name. The key is the writer's choice; an entry may hold null.
    MemberPort::Range memberPort() const noexcept { return {memberPort_, *this}; }
    // Null also when the entry of that name holds null, which `memberPortEntry` tells apart.
    Vel::Ptr<PortV2> memberPort(Vel::Name const & name) const noexcept;
    // Null when there is no entry of that name. Valid until the entry is removed.
    MemberPort::Node const * memberPortEntry(Vel::Name const & name) const noexcept {
        return memberPort_[name];
    }
    // Adds an entry, or changes what it refers to.
    void memberPortIs(Vel::Name name, Vel::Ptr<PortV2> const & port);
    void memberPortDel(Vel::Name name);
    void memberPortDelAll();

    // The MLAG to which this group belongs. Not counted: null as well once the MLAG is gone, of which nobody
    // is told.
    Vel::Ptr<MlagV2> mlag() const;
    void mlagIs(Vel::Ptr<MlagV2> const & value);

    void accept(Vel::Ptr<PortBaseVisitor> const & visitor) const override;

private:
    friend class Vel::WeakPtr<PortGroupV2>;
    friend struct Mutation;

    explicit PortGroupV2(Vel::Name name) noexcept;
    ~PortGroupV2() override;

    Vel::WeakTarget & weakTarget() const noexcept { return weakTarget_; }
    template <class... Callbacks>
    void notify(Callbacks const &... callbacks) const;

    mutable Vel::WeakTarget weakTarget_;
    MemberPort memberPort_;
    Vel::WeakPtr<MlagV2> mlag_;
};

class VEL_EXPORT PortGroupV2::NotifieeConst : public PortBaseV2::NotifieeConst {
public:
    NotifieeConst() noexcept : PortBaseV2::NotifieeConst(Kind::portGroup) {}

    virtual void onMemberPort(Vel::Name name);
    virtual void onMemberPortvelImmediate();
    virtual void onMemberPort();
    virtual void onMlag();

    // Null while unbound.
    PortGroupV2 const * notifier() const noexcept {
        return static_cast<PortGroupV2 const *>(notifierObject().get());
    }
};

inline PortGroupV2 * PortV2::group() const noexcept { return portGroup_.get(); }

}  // namespace NetworkTopology
