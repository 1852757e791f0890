// The recorders behind WriteLog.h. A call of a mutator goes to the function here whose symbol is __wrap_ and
// the mutator's; the function whose symbol is __real_ and the mutator's is the mutator. program.cmake
// collects from here which symbols to redirect.
#include <type_traits>
#include <utility>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/translator/support/Spelling.h"
#include "tests/translator/support/WriteLog.h"

namespace TestSupport {

namespace {

template <auto mutator>
struct FunctionOfMember;
template <class Class, class Result, class... Arguments, Result (Class::*mutator)(Arguments...)>
struct FunctionOfMember<mutator> {
    using Type = Result(Class *, Arguments...);
};

// The mutator as the calling convention sees it: a function whose first argument is the object.
template <auto mutator>
using FunctionOf = typename FunctionOfMember<mutator>::Type;

template <class Result, class Class, class... Parameters>
Result recorded(Result (*real)(Class *, Parameters...), char const * mutator, Class * self,
                std::type_identity_t<Parameters>... arguments) {
    if (WriteLog::isRecording()) {
        WriteLog::record({.target = spelled(*self),
                          .mutator = mutator,
                          .arguments = {spelled(arguments)...},
                          .object = self});
    }
    return real(self, std::forward<Parameters>(arguments)...);
}

}  // namespace

using Keln::EthAddr;
using Mlag::MlagState;
using NetworkTopologyV3::DirectedEdge;
using NetworkTopologyV3::Host;
using NetworkTopologyV3::MlagPort;
using NetworkTopologyV3::Port;
using NetworkTopologyV3::PortBase;
using NetworkTopologyV3::PortGroup;
using NetworkTopologyV3::PortKey;
using NetworkTopologyV3::PortType;
using NetworkTopologyV3::Status;
using Vel::Name;
using Vel::Ptr;
using Vel::String;

FunctionOf<&Status::hostIs>
    realOfStatusHostIs __asm__("__real__ZN17NetworkTopologyV36Status6hostIsEN3Vel4NameE");
FunctionOf<&Status::hostIs> statusHostIs __asm__("__wrap__ZN17NetworkTopologyV36Status6hostIsEN3Vel4NameE");
Ptr<Host> statusHostIs(Status * self, Name name) {
    return recorded(realOfStatusHostIs, "hostIs", self, name);
}

FunctionOf<&Status::hostDel>
    realOfStatusHostDel __asm__("__real__ZN17NetworkTopologyV36Status7hostDelEN3Vel4NameE");
FunctionOf<&Status::hostDel>
    statusHostDel __asm__("__wrap__ZN17NetworkTopologyV36Status7hostDelEN3Vel4NameE");
Ptr<Host> statusHostDel(Status * self, Name name) {
    return recorded(realOfStatusHostDel, "hostDel", self, name);
}

FunctionOf<&Status::localhostIs> realOfStatusLocalhostIs __asm__(
    "__real__ZN17NetworkTopologyV36Status11localhostIsERKN3Vel3PtrINS_4HostEEE");
FunctionOf<&Status::localhostIs>
    statusLocalhostIs __asm__("__wrap__ZN17NetworkTopologyV36Status11localhostIsERKN3Vel3PtrINS_4HostEEE");
void statusLocalhostIs(Status * self, Ptr<Host> const & localhost) {
    return recorded(realOfStatusLocalhostIs, "localhostIs", self, localhost);
}

FunctionOf<&Status::edgeIs>
    realOfStatusEdgeIs __asm__("__real__ZN17NetworkTopologyV36Status6edgeIsERKNS_7PortKeyE");
FunctionOf<&Status::edgeIs>
    statusEdgeIs __asm__("__wrap__ZN17NetworkTopologyV36Status6edgeIsERKNS_7PortKeyE");
Ptr<DirectedEdge> statusEdgeIs(Status * self, PortKey const & fromPort) {
    return recorded(realOfStatusEdgeIs, "edgeIs", self, fromPort);
}

FunctionOf<&Status::edgeDel>
    realOfStatusEdgeDel __asm__("__real__ZN17NetworkTopologyV36Status7edgeDelERKNS_7PortKeyE");
FunctionOf<&Status::edgeDel>
    statusEdgeDel __asm__("__wrap__ZN17NetworkTopologyV36Status7edgeDelERKNS_7PortKeyE");
Ptr<DirectedEdge> statusEdgeDel(Status * self, PortKey const & fromPort) {
    return recorded(realOfStatusEdgeDel, "edgeDel", self, fromPort);
}

FunctionOf<&Host::hostnameIs>
    realOfHostHostnameIs __asm__("__real__ZN17NetworkTopologyV34Host10hostnameIsEN3Vel6StringE");
FunctionOf<&Host::hostnameIs>
    hostHostnameIs __asm__("__wrap__ZN17NetworkTopologyV34Host10hostnameIsEN3Vel6StringE");
void hostHostnameIs(Host * self, String hostname) {
    return recorded(realOfHostHostnameIs, "hostnameIs", self, hostname);
}

FunctionOf<&Host::mlagDomainIdIs>
    realOfHostMlagDomainIdIs __asm__("__real__ZN17NetworkTopologyV34Host14mlagDomainIdIsEN3Vel6StringE");
FunctionOf<&Host::mlagDomainIdIs>
    hostMlagDomainIdIs __asm__("__wrap__ZN17NetworkTopologyV34Host14mlagDomainIdIsEN3Vel6StringE");
void hostMlagDomainIdIs(Host * self, String mlagDomainId) {
    return recorded(realOfHostMlagDomainIdIs, "mlagDomainIdIs", self, mlagDomainId);
}

FunctionOf<&Host::mlagSystemIdIs>
    realOfHostMlagSystemIdIs __asm__("__real__ZN17NetworkTopologyV34Host14mlagSystemIdIsERKN4Keln7EthAddrE");
FunctionOf<&Host::mlagSystemIdIs>
    hostMlagSystemIdIs __asm__("__wrap__ZN17NetworkTopologyV34Host14mlagSystemIdIsERKN4Keln7EthAddrE");
void hostMlagSystemIdIs(Host * self, EthAddr const & mlagSystemId) {
    return recorded(realOfHostMlagSystemIdIs, "mlagSystemIdIs", self, mlagSystemId);
}

FunctionOf<&Host::mlagStateIs>
    realOfHostMlagStateIs __asm__("__real__ZN17NetworkTopologyV34Host11mlagStateIsEN4Mlag9MlagStateE");
FunctionOf<&Host::mlagStateIs>
    hostMlagStateIs __asm__("__wrap__ZN17NetworkTopologyV34Host11mlagStateIsEN4Mlag9MlagStateE");
void hostMlagStateIs(Host * self, MlagState mlagState) {
    return recorded(realOfHostMlagStateIs, "mlagStateIs", self, mlagState);
}

FunctionOf<&Host::mlagPeerLinkIs> realOfHostMlagPeerLinkIs __asm__(
    "__real__ZN17NetworkTopologyV34Host14mlagPeerLinkIsERKN3Vel3PtrIKNS_8PortBaseEEE");
FunctionOf<&Host::mlagPeerLinkIs> hostMlagPeerLinkIs __asm__(
    "__wrap__ZN17NetworkTopologyV34Host14mlagPeerLinkIsERKN3Vel3PtrIKNS_8PortBaseEEE");
void hostMlagPeerLinkIs(Host * self, Ptr<PortBase const> const & mlagPeerLink) {
    return recorded(realOfHostMlagPeerLinkIs, "mlagPeerLinkIs", self, mlagPeerLink);
}

FunctionOf<&Host::portIs> realOfHostPortIs __asm__("__real__ZN17NetworkTopologyV34Host6portIsEN3Vel4NameE");
FunctionOf<&Host::portIs> hostPortIs __asm__("__wrap__ZN17NetworkTopologyV34Host6portIsEN3Vel4NameE");
Ptr<Port> hostPortIs(Host * self, Name name) { return recorded(realOfHostPortIs, "portIs", self, name); }

FunctionOf<&Host::portDel>
    realOfHostPortDel __asm__("__real__ZN17NetworkTopologyV34Host7portDelEN3Vel4NameE");
FunctionOf<&Host::portDel> hostPortDel __asm__("__wrap__ZN17NetworkTopologyV34Host7portDelEN3Vel4NameE");
Ptr<Port> hostPortDel(Host * self, Name name) { return recorded(realOfHostPortDel, "portDel", self, name); }

FunctionOf<&Host::portGroupIs>
    realOfHostPortGroupIs __asm__("__real__ZN17NetworkTopologyV34Host11portGroupIsEN3Vel4NameE");
FunctionOf<&Host::portGroupIs>
    hostPortGroupIs __asm__("__wrap__ZN17NetworkTopologyV34Host11portGroupIsEN3Vel4NameE");
Ptr<PortGroup> hostPortGroupIs(Host * self, Name name) {
    return recorded(realOfHostPortGroupIs, "portGroupIs", self, name);
}

FunctionOf<&Host::portGroupDel>
    realOfHostPortGroupDel __asm__("__real__ZN17NetworkTopologyV34Host12portGroupDelEN3Vel4NameE");
FunctionOf<&Host::portGroupDel>
    hostPortGroupDel __asm__("__wrap__ZN17NetworkTopologyV34Host12portGroupDelEN3Vel4NameE");
Ptr<PortGroup> hostPortGroupDel(Host * self, Name name) {
    return recorded(realOfHostPortGroupDel, "portGroupDel", self, name);
}

FunctionOf<&Host::mlagIs>
    realOfHostMlagIs __asm__("__real__ZN17NetworkTopologyV34Host6mlagIsEN3Vel4NameES2_");
FunctionOf<&Host::mlagIs> hostMlagIs __asm__("__wrap__ZN17NetworkTopologyV34Host6mlagIsEN3Vel4NameES2_");
Ptr<MlagPort> hostMlagIs(Host * self, Name name, Name secondaryName) {
    return recorded(realOfHostMlagIs, "mlagIs", self, name, secondaryName);
}

FunctionOf<&Host::mlagDel>
    realOfHostMlagDel __asm__("__real__ZN17NetworkTopologyV34Host7mlagDelEN3Vel4NameE");
FunctionOf<&Host::mlagDel> hostMlagDel __asm__("__wrap__ZN17NetworkTopologyV34Host7mlagDelEN3Vel4NameE");
Ptr<MlagPort> hostMlagDel(Host * self, Name name) {
    return recorded(realOfHostMlagDel, "mlagDel", self, name);
}

FunctionOf<&Host::mlagRawIs>
    realOfHostMlagRawIs __asm__("__real__ZN17NetworkTopologyV34Host9mlagRawIsERKN3Vel3PtrINS_8MlagPortEEE");
FunctionOf<&Host::mlagRawIs>
    hostMlagRawIs __asm__("__wrap__ZN17NetworkTopologyV34Host9mlagRawIsERKN3Vel3PtrINS_8MlagPortEEE");
void hostMlagRawIs(Host * self, Ptr<MlagPort> const & mlag) {
    return recorded(realOfHostMlagRawIs, "mlagRawIs", self, mlag);
}

FunctionOf<&Host::mlagRawDel>
    realOfHostMlagRawDel __asm__("__real__ZN17NetworkTopologyV34Host10mlagRawDelEN3Vel4NameE");
FunctionOf<&Host::mlagRawDel>
    hostMlagRawDel __asm__("__wrap__ZN17NetworkTopologyV34Host10mlagRawDelEN3Vel4NameE");
void hostMlagRawDel(Host * self, Name name) {
    return recorded(realOfHostMlagRawDel, "mlagRawDel", self, name);
}

FunctionOf<&Host::logicalPortIs> realOfHostLogicalPortIs __asm__(
    "__real__ZN17NetworkTopologyV34Host13logicalPortIsERKN3Vel3PtrIKNS_8PortBaseEEE");
FunctionOf<&Host::logicalPortIs> hostLogicalPortIs __asm__(
    "__wrap__ZN17NetworkTopologyV34Host13logicalPortIsERKN3Vel3PtrIKNS_8PortBaseEEE");
void hostLogicalPortIs(Host * self, Ptr<PortBase const> const & port) {
    return recorded(realOfHostLogicalPortIs, "logicalPortIs", self, port);
}

FunctionOf<&Host::logicalPortDel>
    realOfHostLogicalPortDel __asm__("__real__ZN17NetworkTopologyV34Host14logicalPortDelEN3Vel4NameE");
FunctionOf<&Host::logicalPortDel>
    hostLogicalPortDel __asm__("__wrap__ZN17NetworkTopologyV34Host14logicalPortDelEN3Vel4NameE");
void hostLogicalPortDel(Host * self, Name name) {
    return recorded(realOfHostLogicalPortDel, "logicalPortDel", self, name);
}

FunctionOf<&PortBase::typeIs>
    realOfPortBaseTypeIs __asm__("__real__ZN17NetworkTopologyV38PortBase6typeIsENS_8PortTypeE");
FunctionOf<&PortBase::typeIs>
    portBaseTypeIs __asm__("__wrap__ZN17NetworkTopologyV38PortBase6typeIsENS_8PortTypeE");
void portBaseTypeIs(PortBase * self, PortType type) {
    return recorded(realOfPortBaseTypeIs, "typeIs", self, type);
}

FunctionOf<&Port::portGroupIs>
    realOfPortPortGroupIs __asm__("__real__ZN17NetworkTopologyV34Port11portGroupIsEPNS_9PortGroupE");
FunctionOf<&Port::portGroupIs>
    portPortGroupIs __asm__("__wrap__ZN17NetworkTopologyV34Port11portGroupIsEPNS_9PortGroupE");
void portPortGroupIs(Port * self, PortGroup * portGroup) {
    return recorded(realOfPortPortGroupIs, "portGroupIs", self, portGroup);
}

FunctionOf<&PortGroup::memberPortIs> realOfPortGroupMemberPortIs __asm__(
    "__real__ZN17NetworkTopologyV39PortGroup12memberPortIsERKN3Vel3PtrINS_4PortEEE");
FunctionOf<&PortGroup::memberPortIs> portGroupMemberPortIs __asm__(
    "__wrap__ZN17NetworkTopologyV39PortGroup12memberPortIsERKN3Vel3PtrINS_4PortEEE");
void portGroupMemberPortIs(PortGroup * self, Ptr<Port> const & port) {
    return recorded(realOfPortGroupMemberPortIs, "memberPortIs", self, port);
}

FunctionOf<&PortGroup::memberPortDel> realOfPortGroupMemberPortDel __asm__(
    "__real__ZN17NetworkTopologyV39PortGroup13memberPortDelEN3Vel4NameE");
FunctionOf<&PortGroup::memberPortDel>
    portGroupMemberPortDel __asm__("__wrap__ZN17NetworkTopologyV39PortGroup13memberPortDelEN3Vel4NameE");
void portGroupMemberPortDel(PortGroup * self, Name name) {
    return recorded(realOfPortGroupMemberPortDel, "memberPortDel", self, name);
}

FunctionOf<&PortGroup::mlagIs>
    realOfPortGroupMlagIs __asm__("__real__ZN17NetworkTopologyV39PortGroup6mlagIsEPKNS_8MlagPortE");
FunctionOf<&PortGroup::mlagIs>
    portGroupMlagIs __asm__("__wrap__ZN17NetworkTopologyV39PortGroup6mlagIsEPKNS_8MlagPortE");
void portGroupMlagIs(PortGroup * self, MlagPort const * mlag) {
    return recorded(realOfPortGroupMlagIs, "mlagIs", self, mlag);
}

FunctionOf<&MlagPort::localPortGroupIs> realOfMlagPortLocalPortGroupIs __asm__(
    "__real__ZN17NetworkTopologyV38MlagPort16localPortGroupIsERKN3Vel3PtrINS_9PortGroupEEE");
FunctionOf<&MlagPort::localPortGroupIs> mlagPortLocalPortGroupIs __asm__(
    "__wrap__ZN17NetworkTopologyV38MlagPort16localPortGroupIsERKN3Vel3PtrINS_9PortGroupEEE");
void mlagPortLocalPortGroupIs(MlagPort * self, Ptr<PortGroup> const & portGroup) {
    return recorded(realOfMlagPortLocalPortGroupIs, "localPortGroupIs", self, portGroup);
}

FunctionOf<&DirectedEdge::toPortIs> realOfDirectedEdgeToPortIs __asm__(
    "__real__ZN17NetworkTopologyV312DirectedEdge8toPortIsERKNS_7PortKeyEb");
FunctionOf<&DirectedEdge::toPortIs>
    directedEdgeToPortIs __asm__("__wrap__ZN17NetworkTopologyV312DirectedEdge8toPortIsERKNS_7PortKeyEb");
void directedEdgeToPortIs(DirectedEdge * self, PortKey const & key, bool flag) {
    return recorded(realOfDirectedEdgeToPortIs, "toPortIs", self, key, flag);
}

FunctionOf<&DirectedEdge::toPortDel> realOfDirectedEdgeToPortDel __asm__(
    "__real__ZN17NetworkTopologyV312DirectedEdge9toPortDelERKNS_7PortKeyE");
FunctionOf<&DirectedEdge::toPortDel>
    directedEdgeToPortDel __asm__("__wrap__ZN17NetworkTopologyV312DirectedEdge9toPortDelERKNS_7PortKeyE");
void directedEdgeToPortDel(DirectedEdge * self, PortKey const & key) {
    return recorded(realOfDirectedEdgeToPortDel, "toPortDel", self, key);
}

}  // namespace TestSupport
