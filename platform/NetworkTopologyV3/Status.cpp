#include "platform/NetworkTopologyV3/Status.h"

#include "platform/NetworkTopologyV3/Mutation.h"
#include "platform/Vel/VelAttrs.h"

namespace NetworkTopologyV3 {

namespace {

using Reactor = Status::NotifieeConst;

constexpr auto onHost = [](Reactor & r, auto const &... key) { r.onHost(key...); };
constexpr auto onEdge = [](Reactor & r, auto const &... key) { r.onEdge(key...); };

}  // namespace

Status::Status() noexcept = default;

Status::~Status() = default;

Vel::Ptr<Status> Status::StatusIs() { return new Status; }

template <class... Callbacks>
void Status::notify(Callbacks const &... callbacks) const {
    notifiees().notify<NotifieeConst>(*this, callbacks...);
}

void Status::reserve(unsigned hosts, unsigned edges) noexcept {
    host_.reserve(hosts);
    edge_.reserve(edges);
}

Vel::Ptr<Host> Status::hostIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, host_, name, [&] { return new Host(std::move(name)); }, onHost);
}

Vel::Ptr<Host> Status::hostDel(Vel::Name name) { return Mutation::memberDel(*this, host_, name, onHost); }

void Status::hostDelAll() {
    Mutation::memberDelAll(*this, host_, onHost, [](Reactor & r) { r.onHostvelImmediate(); });
}

void Status::localhostIs(Vel::Ptr<Host> const & localhost) {
    if (Vel::replaced(localhost_, localhost)) notify([](NotifieeConst & r) { r.onLocalhost(); });
}

Vel::Ptr<DirectedEdge> Status::edgeIs(PortKey const & fromPort) {
    return Mutation::memberIs(
        *this, edge_, fromPort, [&] { return new DirectedEdge(fromPort); }, onEdge);
}

Vel::Ptr<DirectedEdge> Status::edgeDel(PortKey const & fromPort) {
    return Mutation::memberDel(*this, edge_, fromPort, onEdge);
}

void Status::edgeDelAll() {
    Mutation::memberDelAll(*this, edge_, onEdge, [](Reactor & r) { r.onEdgevelImmediate(); });
}

void Status::NotifieeConst::notifierIs(Vel::Ptr<Vel::PtrInterface const> const & notifier) {
    Vel::PtrInterface::NotifieeConst::notifierIs(Vel::dynamicPtrCast<Status const>(notifier));
}

Status::Notifiee::~Notifiee() = default;

namespace {

constexpr Vel::VelArg nameArg[] = {{"name", &Vel::Name::_velType}};
constexpr Vel::VelArg fromPortArg[] = {{"fromPort", &PortKey::_velType}};

using Attrs = Vel::Attrs<Status>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::collection<Host, Vel::Name, [](Status & o) { return o.host(); },
                      [](Status & o, Vel::Name const & key) { return o.host(key); }, nullptr,
                      &Status::hostDel, [](Status & o, Vel::Name const & key) { return o.hostIs(key); },
                      Vel::Name>("host", 130, "name", nameArg),
    Attrs::function<&Status::hostDelAll>("hostDelAll", 131, {}),
    Attrs::value<&Status::localhost, &Status::localhostIs>("localhost", 132),
    Attrs::collection<DirectedEdge, PortKey, [](Status & o) { return o.edge(); },
                      [](Status & o, PortKey const & key) { return o.edge(key); }, nullptr, &Status::edgeDel,
                      [](Status & o, PortKey const & key) { return o.edgeIs(key); }, PortKey>(
        "edge", 133, "fromPort", fromPortArg),
    Attrs::function<&Status::edgeDelAll>("edgeDelAll", 134, {}),
};

}  // namespace

constinit Vel::VelType const Status::_velType{{
    .name = "NetworkTopologyV3::Status",
    .attributes = attributes,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs = Vel::GenericIfImpl::fromCtorArgs<Status, &Status::StatusIs>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

Vel::VelType const * Status::fwkType() const { return &_velType; }

namespace {

Vel::TypeRegistration const registration(Status::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
