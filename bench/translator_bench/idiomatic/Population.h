// How the peer finds what it writes to, and how it fills an empty output.
#pragma once

#include <iostream>
#include <memory>
#include <utility>

#include "bench/translator_bench/idiomatic/Input.h"
#include "bench/translator_bench/idiomatic/Output.h"

namespace Bench::Peer {

inline int traceLevel = 0;

inline void traced(char const * operation) {
    if (traceLevel >= 5) std::clog << operation << '\n';
}

// Finds the counterparts of input objects, by name and through the output each time.
class Finder {
public:
    explicit Finder(std::shared_ptr<V3::Status> output) : output_(std::move(output)) {}

    V3::Status & output() const { return *output_; }

    std::shared_ptr<V3::Host> host(std::shared_ptr<V2::Host const> const & host) const {
        traced("host");
        return host ? output_->host(host->name()) : nullptr;
    }
    std::shared_ptr<V3::Port> port(std::shared_ptr<V2::Port const> const & port) const {
        traced("port");
        auto const host = hostOf(port);
        return host ? host->port(port->name()) : nullptr;
    }
    std::shared_ptr<V3::PortGroup> portGroup(std::shared_ptr<V2::PortGroup const> const & group) const {
        traced("portGroup");
        auto const host = hostOf(group);
        return host ? host->portGroup(group->name()) : nullptr;
    }
    std::shared_ptr<V3::Mlag> mlag(std::shared_ptr<V2::Mlag const> const & mlag) const {
        traced("mlag");
        auto const host = hostOf(mlag);
        return host ? host->mlag(mlag->name()) : nullptr;
    }
    std::shared_ptr<V3::PortBase> portBase(std::shared_ptr<V2::PortBase const> const & port) const {
        traced("portBase");
        auto const host = hostOf(port);
        if (!host) return nullptr;
        switch (port->kind()) {
        case V2::PortBase::Kind::port: return host->port(port->name());
        case V2::PortBase::Kind::portGroup: return host->portGroup(port->name());
        case V2::PortBase::Kind::mlag: return host->mlag(port->name());
        }
        return nullptr;
    }

private:
    template <class Member>
    std::shared_ptr<V3::Host> hostOf(std::shared_ptr<Member const> const & member) const {
        auto const host = member ? member->host() : nullptr;
        return host ? output_->host(host->name()) : nullptr;
    }

    std::shared_ptr<V3::Status> const output_;
};

// Links come after everything in the host that they may refer to. Types are not written.
inline void populateHost(V2::Host const & input, Finder const & finder) {
    auto const output = finder.output().hostIs(input.name());
    for (auto const & [name, port] : input.ports()) output->portIs(name);
    for (auto const & [name, group] : input.portGroups()) output->portGroupIs(name);
    for (auto const & [name, mlag] : input.mlags()) output->mlagIs(name, mlag->secondaryName());
    for (auto const & [name, mlag] : input.mlagRaws()) output->mlagRawIs(finder.mlag(mlag));
    for (auto const & [name, port] : input.logicalPorts()) output->logicalPortIs(finder.portBase(port));
    for (auto const & [name, port] : input.ports()) {
        output->port(name)->portGroupIs(finder.portGroup(port->portGroup()));
    }
    for (auto const & [name, group] : input.portGroups()) {
        auto const written = output->portGroup(name);
        for (auto const & [memberName, member] : group->memberPorts()) {
            written->memberPortIs(finder.port(member));
        }
        written->mlagIs(finder.mlag(group->mlag()));
    }
    for (auto const & [name, mlag] : input.mlags()) {
        output->mlag(name)->localPortGroupIs(finder.portGroup(mlag->localPortGroup()));
    }
    output->hostnameIs(input.hostname());
    output->mlagSystemIdIs(input.mlagSystemId());
    output->mlagDomainIdIs(input.mlagDomainId());
    output->mlagStateIs(input.mlagState());
    output->mlagPeerLinkIs(finder.portBase(input.mlagPeerLink()));
}

inline void populateEdge(V2::Edge const & input, Finder const & finder) {
    auto const fromPort = finder.port(input.fromPort());
    if (!fromPort) return;
    auto const output = finder.output().edgeIs(fromPort->key());
    for (auto const & [port, flag] : input.toPorts()) {
        if (auto const toPort = finder.port(port)) output->toPortIs(toPort->key(), flag);
    }
}

inline void populate(V2::Status const & input, Finder const & finder) {
    traced("populate");
    for (auto const & [name, host] : input.hosts()) populateHost(*host, finder);
    finder.output().localhostIs(finder.host(input.localhost()));
    for (auto const & [fromPort, edge] : input.edges()) populateEdge(*edge, finder);
}

}  // namespace Bench::Peer
