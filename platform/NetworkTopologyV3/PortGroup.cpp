#include "platform/NetworkTopologyV3/PortGroup.h"

#include <utility>

#include "platform/NetworkTopologyV3/MlagPort.h"
#include "platform/NetworkTopologyV3/Mutation.h"

namespace NetworkTopologyV3 {

namespace {

using Reactor = PortGroup::NotifieeConst;

constexpr auto onMemberPort = [](Reactor & r, auto const &... key) { r.onMemberPort(key...); };

}  // namespace

PortGroup::PortGroup(Vel::Name name, Host & host) noexcept
    : PortBase(std::move(name), host, Kind::portGroup) {}

PortGroup::~PortGroup() = default;

template <class... Callbacks>
void PortGroup::notify(Callbacks const &... callbacks) const {
    notifyKind<NotifieeConst>(callbacks...);
}

Vel::Ptr<Port> PortGroup::memberPort(Vel::Name const & name) const noexcept {
    return Mutation::valueOf(memberPort_[name]);
}

void PortGroup::memberPortIs(Vel::Ptr<Port> const & port) {
    if (port) Mutation::valueIs(*this, memberPort_, port->name(), port, onMemberPort);
}

void PortGroup::memberPortDel(Vel::Name name) { Mutation::valueDel(*this, memberPort_, name, onMemberPort); }

void PortGroup::memberPortDelAll() {
    Mutation::valueDelAll(*this, memberPort_, onMemberPort,
                          [](Reactor & r) { r.onMemberPortvelImmediate(); });
}

MlagPort const * PortGroup::mlag() const noexcept { return mlag_.get(); }

void PortGroup::mlagIs(MlagPort const * mlag) {
    if (mlag_ == mlag) return;
    mlag_ = mlag;
    notify([](NotifieeConst & r) { r.onMlag(); });
}

PortGroup::NotifieeConst::~NotifieeConst() = default;

}  // namespace NetworkTopologyV3
