// Version-3 models for the tests of the formats.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/NetworkTopologyV3/Status.h"

namespace TopologyTools::Testing {

using NetworkTopologyV3::Host;
using NetworkTopologyV3::MlagPort;
using NetworkTopologyV3::Port;
using NetworkTopologyV3::PortBase;
using NetworkTopologyV3::PortGroup;
using NetworkTopologyV3::PortKey;
using NetworkTopologyV3::PortType;
using NetworkTopologyV3::Status;

inline void edge(Status & status, PortBase const & from, PortBase const & to, bool flag = true) {
    status.edgeIs(from.portKey())->toPortIs(to.portKey(), flag);
}

inline void link(Status & status, PortBase const & one, PortBase const & other) {
    edge(status, one, other);
    edge(status, other, one);
}

inline Port::Ptr typedPort(Host & host, std::string_view name) {
    Port::Ptr const port = host.portIs(name);
    port->typeIs(PortType::port);
    return port;
}

inline PortGroup::Ptr group(Host & host, std::string_view name, std::vector<std::string> const & ports) {
    PortGroup::Ptr const group = host.portGroupIs(name);
    group->typeIs(PortType::portGroup);
    for (std::string const & member : ports) {
        Port::Ptr const port = typedPort(host, member);
        group->memberPortIs(port);
        port->portGroupIs(group.get());
    }
    return group;
}

inline MlagPort::Ptr mlag(Host & host, std::string_view name, std::string_view secondaryName,
                          PortGroup::Ptr const & localGroup) {
    MlagPort::Ptr const mlag = host.mlagIs(name, secondaryName);
    mlag->typeIs(PortType::mlag);
    mlag->localPortGroupIs(localGroup);
    localGroup->mlagIs(mlag.get());
    return mlag;
}

// A server with a bond to both of two leaves, which are one MLAG domain, below a spine.
inline Status::Ptr rack() {
    Status::Ptr const status = Status::StatusIs();
    Host::Ptr const server = status->hostIs("server");
    group(*server, "bond", {"eth-1", "eth-2"});
    Host::Ptr const spine = status->hostIs("spine");
    for (std::string const number : {"1", "2"}) {
        Host::Ptr const leaf = status->hostIs("leaf-" + number);
        leaf->hostnameIs("leaf-" + number + ".example");
        leaf->mlagDomainIdIs("rack");
        leaf->mlagStateIs(Mlag::MlagState::active);
        leaf->mlagSystemIdIs(Keln::EthAddr(2, 0, 0, 0, 0, 1));
        leaf->mlagPeerLinkIs(group(*leaf, "peer", {"eth-9", "eth-10"}));
        MlagPort::Ptr const toServer = mlag(*leaf, "m-1", "m-1-peer", group(*leaf, "bond-1", {"eth-2"}));
        leaf->mlagRawIs(toServer);
        leaf->logicalPortIs(toServer);
        leaf->logicalPortIs(leaf->portGroup("bond-1"));
        typedPort(*leaf, "eth-3");
        link(*status, *leaf->port("eth-2"), *server->port("eth-" + number));
        link(*status, *typedPort(*leaf, "eth-11"), *typedPort(*spine, "eth-" + number));
    }
    for (char const * name : {"eth-9", "eth-10"}) {
        link(*status, *status->host("leaf-1")->port(name), *status->host("leaf-2")->port(name));
    }
    status->localhostIs(status->host("leaf-1"));
    return status;
}

// Names that mean something to a terminal, to Graphviz, to XML or to JSON, and names that are hard to see.
inline std::vector<std::string> hostileNames() {
    using namespace std::string_literals;
    return {"",
            "-",
            "a\"b<c>&d\\N\\n{|}",
            "line\nbreak\r\t",
            "\0nul\0"s,
            "tail\\",
            "\\",
            "\"",
            "<b>bold</b>",
            "&amp; &#0; &bogus;",
            "]]>",
            "caf\u00e9 \u4e2d\u6587 \U0001f600",
            "\u202eright to left",
            "\x1b[31mred",
            "n",  // A compass point to Graphviz.
            "node:p0:ne",
            "/host/a~0b~1c",
            "   ",
            "%n%s\\E\\T\\H",
            std::string(300, 'x')};
}

// A host for every hostile name, with a port, a group and an MLAG of that name, linked in a ring and to
// themselves; ports that have left; edges to nowhere and from nowhere.
inline Status::Ptr hostileModel(std::vector<std::string> const & names = hostileNames()) {
    Status::Ptr const status = Status::StatusIs();
    for (std::string const & name : names) {
        Host::Ptr const host = status->hostIs(name);
        host->hostnameIs(name);
        host->mlagDomainIdIs(name);
        PortGroup::Ptr const bond = group(*host, name, {name});
        host->mlagRawIs(mlag(*host, name, name, bond));
        host->logicalPortIs(bond);
        host->mlagPeerLinkIs(bond);
        edge(*status, *bond, *bond);
        Port::Ptr const gone = host->portIs("gone " + name);
        edge(*status, *gone, *bond);
        edge(*status, *bond, *gone, false);
        host->logicalPortIs(gone);
        host->portDel(gone->name());
        status->edgeIs(host->mlag(name)->portKey());
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string const & next = names[(i + 1) % names.size()];
        edge(*status, *status->host(names[i])->port(names[i]), *status->host(next)->port(next), i % 2 == 0);
    }
    status->edgeIs(PortKey())->toPortIs(PortKey("no host", "no kind"), true);
    status->localhostIs(status->host(names.front()));
    return status;
}

}  // namespace TopologyTools::Testing
