#include "platform/NetworkTopology/PortGroupV2.h"

#include <utility>

#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/Mutation.h"
#include "platform/NetworkTopology/PortBaseVisitor.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

namespace {

constexpr auto onMemberPort = [](PortGroupV2::NotifieeConst & r, auto const &... key) {
    r.onMemberPort(key...);
};

}  // namespace

PortGroupV2::PortGroupV2(Vel::Name name) noexcept : PortBaseV2(Kind::portGroup, std::move(name)) {}

PortGroupV2::~PortGroupV2() = default;

template <class... Callbacks>
void PortGroupV2::notify(Callbacks const &... callbacks) const {
    notifyKind<NotifieeConst>(callbacks...);
}

Vel::Ptr<PortGroupV2> PortGroupV2::PortGroupV2Is(Vel::Name name) { return new PortGroupV2(std::move(name)); }

Vel::Ptr<PortV2> PortGroupV2::memberPort(Vel::Name const & name) const noexcept {
    return Mutation::valueOf(memberPort_[name]);
}

void PortGroupV2::memberPortIs(Vel::Name name, Vel::Ptr<PortV2> const & port) {
    Mutation::valueIs(*this, memberPort_, name, port, onMemberPort);
}

void PortGroupV2::memberPortDel(Vel::Name name) {
    Mutation::valueDel(*this, memberPort_, name, onMemberPort);
}

void PortGroupV2::memberPortDelAll() {
    Mutation::valueDelAll(*this, memberPort_, onMemberPort,
                          [](NotifieeConst & r) { r.onMemberPortvelImmediate(); });
}

Vel::Ptr<MlagV2> PortGroupV2::mlag() const { return mlag_.get(); }

void PortGroupV2::mlagIs(Vel::Ptr<MlagV2> const & value) {
    if (!mlag_.targetIs(value.get())) return;
    notify([](NotifieeConst & r) { r.onMlag(); });
}

void PortGroupV2::accept(Vel::Ptr<PortBaseVisitor> const & visitor) const {
    if (visitor) visitor->visitPortGroup(this);
}

void PortGroupV2::NotifieeConst::onMemberPort(Vel::Name) {}
void PortGroupV2::NotifieeConst::onMemberPortvelImmediate() {}
void PortGroupV2::NotifieeConst::onMemberPort() {}
void PortGroupV2::NotifieeConst::onMlag() {}

namespace {

constexpr Vel::VelArg nameArg[] = {{"name", &Vel::Name::_velType}};
constexpr Vel::VelArg memberPortArgs[] = {{"name", &Vel::Name::_velType}, {"port", &PortV2::_velType}};

using Attrs = Vel::Attrs<PortGroupV2>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::valueCollection<Vel::Name, Vel::Ptr<PortV2>, [](PortGroupV2 & o) { return o.memberPort(); },
                           [](PortGroupV2 & o, Vel::Name const & key) { return o.memberPortEntry(key); },
                           &PortGroupV2::memberPortIs, &PortGroupV2::memberPortDel>("memberPort", 258, "name",
                                                                                    memberPortArgs),
    Attrs::function<&PortGroupV2::memberPortDelAll>("memberPortDelAll", 259, {}),
    Attrs::value<&PortGroupV2::mlag, &PortGroupV2::mlagIs>("mlag", 260),
};

}  // namespace

constinit Vel::VelType const PortGroupV2::_velType{{
    .name = "NetworkTopology::PortGroupV2",
    .base = &PortBaseV2::_velType,
    .attributes = attributes,
    .ctorArgs = nameArg,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs =
        Vel::GenericIfImpl::fromCtorArgs<PortGroupV2, &PortGroupV2::PortGroupV2Is, Vel::Name>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * PortGroupV2::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(PortGroupV2::_velType);

}  // namespace

}  // namespace NetworkTopology
