#include "platform/NetworkTopologyV3/PortGroup.h"

#include <utility>

#include "platform/NetworkTopologyV3/MlagPort.h"
#include "platform/NetworkTopologyV3/Mutation.h"
#include "platform/Vel/VelAttrs.h"

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
    if (!mlag_.targetIs(mlag)) return;
    notify([](NotifieeConst & r) { r.onMlag(); });
}

PortGroup::NotifieeConst::~NotifieeConst() = default;

namespace {

constexpr Vel::VelArg memberPortArgs[] = {{"name", &Vel::Name::_velType}, {"port", &Port::_velType}};

using Attrs = Vel::Attrs<PortGroup>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::valueCollection<Vel::Name, Vel::Ptr<Port>, [](PortGroup & o) { return o.memberPort(); },
                           [](PortGroup & o, Vel::Name const & key) { return o.memberPort(key); },
                           &Mutation::valueUnderItsNameIs<&PortGroup::memberPortIs, PortGroup, Port>,
                           &PortGroup::memberPortDel>("memberPort", 258, "name", memberPortArgs, true),
    Attrs::function<&PortGroup::memberPortDelAll>("memberPortDelAll", 259, {}),
    Attrs::value<&PortGroup::mlag, &PortGroup::mlagIs>("mlag", 260),
};

}  // namespace

constinit Vel::VelType const PortGroup::_velType{{
    .name = "NetworkTopologyV3::PortGroup",
    .base = &PortBase::_velType,
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * PortGroup::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(PortGroup::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
