#include "platform/NetworkTopology/StatusV2.h"

#include <utility>

#include "platform/NetworkTopology/Mutation.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopology {

namespace {

// Each with the key of an entry, or without.
constexpr auto onHost = [](StatusV2::NotifieeConst & r, auto const &... key) { r.onHost(key...); };
constexpr auto onEdge = [](StatusV2::NotifieeConst & r, auto const &... key) { r.onEdge(key...); };

}  // namespace

StatusV2::StatusV2() noexcept = default;

StatusV2::~StatusV2() {
    Mutation::letGoAll(host_);
    Mutation::letGoAll(edge_);
}

template <class... Callbacks>
void StatusV2::notify(Callbacks const &... callbacks) const {
    notifiees().notify<NotifieeConst>(*this, callbacks...);
}

Vel::Ptr<StatusV2> StatusV2::StatusV2Is() { return new StatusV2; }

Vel::Ptr<HostV2> StatusV2::hostIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, host_, name, [&] { return HostV2::HostV2Is(std::move(name)); }, onHost);
}

Vel::Ptr<HostV2> StatusV2::hostIs(Vel::Ptr<HostV2> host) {
    return Mutation::memberIs(*this, host_, std::move(host), "NetworkTopology::StatusV2::host", onHost);
}

Vel::Ptr<HostV2> StatusV2::hostDel(Vel::Name name) { return Mutation::memberDel(*this, host_, name, onHost); }

void StatusV2::hostDelAll() {
    Mutation::memberDelAll(*this, host_, onHost, [](NotifieeConst & r) { r.onHostvelImmediate(); });
}

void StatusV2::localhostIs(Vel::Ptr<HostV2> const & value) {
    if (Vel::replaced(localhost_, value)) notify([](NotifieeConst & r) { r.onLocalhost(); });
}

Vel::Ptr<DirectedEdgeV2> StatusV2::edgeIs(Vel::Ptr<PortBaseV2 const> fromPort) {
    return Mutation::memberIs(
        *this, edge_, fromPort, [&] { return DirectedEdgeV2::DirectedEdgeV2Is(std::move(fromPort)); },
        onEdge);
}

Vel::Ptr<DirectedEdgeV2> StatusV2::edgeIs(Vel::Ptr<DirectedEdgeV2> edge) {
    return Mutation::memberIs(*this, edge_, std::move(edge), "NetworkTopology::StatusV2::edge", onEdge);
}

// By value, because whatever the caller's keys live in may go away in a delivery.
// NOLINTBEGIN(performance-unnecessary-value-param)

Vel::Ptr<DirectedEdgeV2> StatusV2::edgeDel(Vel::Ptr<PortBaseV2 const> fromPort) {
    return Mutation::memberDel(*this, edge_, fromPort, onEdge);
}

// NOLINTEND(performance-unnecessary-value-param)

void StatusV2::edgeDelAll() {
    Mutation::memberDelAll(*this, edge_, onEdge, [](NotifieeConst & r) { r.onEdgevelImmediate(); });
}

void StatusV2::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<StatusV2 const>(notifier));
}

void StatusV2::NotifieeConst::isRegisteredNotifieeIs(bool registered) const { registeredIs(registered); }

void StatusV2::NotifieeConst::onHost(Vel::Name) {}
void StatusV2::NotifieeConst::onHostvelImmediate() {}
void StatusV2::NotifieeConst::onHost() {}
void StatusV2::NotifieeConst::onLocalhost() {}
void StatusV2::NotifieeConst::onEdge(Vel::Ptr<PortBaseV2 const> const &) {}
void StatusV2::NotifieeConst::onEdgevelImmediate() {}
void StatusV2::NotifieeConst::onEdge() {}

namespace {

constexpr Vel::VelArg nameArg[] = {{"name", &Vel::Name::_velType}};
constexpr Vel::VelArg fromPortArg[] = {{"fromPort", &PortBaseV2::_velType}};

using Attrs = Vel::Attrs<StatusV2>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::collection<HostV2, Vel::Name, [](StatusV2 & o) { return o.host(); },
                      [](StatusV2 & o, Vel::Name const & key) { return o.host(key); },
                      [](StatusV2 & o, Vel::Ptr<HostV2> const & member) { return o.hostIs(member); },
                      &StatusV2::hostDel, [](StatusV2 & o, Vel::Name const & key) { return o.hostIs(key); },
                      Vel::Name>("host", 130, "name", nameArg),
    Attrs::function<&StatusV2::hostDelAll>("hostDelAll", 131, {}),
    Attrs::value<&StatusV2::localhost, &StatusV2::localhostIs>("localhost", 132),
    Attrs::collection<DirectedEdgeV2, Vel::Ptr<PortBaseV2 const>, [](StatusV2 & o) { return o.edge(); },
                      [](StatusV2 & o, Vel::Ptr<PortBaseV2 const> const & key) { return o.edge(key); },
                      [](StatusV2 & o, Vel::Ptr<DirectedEdgeV2> const & member) { return o.edgeIs(member); },
                      &StatusV2::edgeDel,
                      [](StatusV2 & o, Vel::Ptr<PortBaseV2 const> const & key) { return o.edgeIs(key); },
                      Vel::Ptr<PortBaseV2 const>>("edge", 133, "fromPort", fromPortArg),
    Attrs::function<&StatusV2::edgeDelAll>("edgeDelAll", 134, {}),
};

}  // namespace

constinit Vel::VelType const StatusV2::_velType{{
    .name = "NetworkTopology::StatusV2",
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs = Vel::GenericIfImpl::fromCtorArgs<StatusV2, &StatusV2::StatusV2Is>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * StatusV2::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(StatusV2::_velType);

}  // namespace

}  // namespace NetworkTopology
