#include "platform/NetworkTopologyV3/Status.h"

#include "platform/NetworkTopologyV3/Mutation.h"

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

Vel::Ptr<Host> Status::hostIs(Vel::Name name) {
    return Mutation::memberIs(
        *this, host_, name, [&] { return new Host(name); }, onHost);
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

}  // namespace NetworkTopologyV3
