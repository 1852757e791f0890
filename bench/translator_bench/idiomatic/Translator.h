// The peer's translator: fills the output, then a listener per input object mirrors each change. A listener
// keeps its own counterpart; everything else is looked up by name when it is written.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include <boost/signals2/connection.hpp>

#include "bench/translator_bench/idiomatic/Input.h"
#include "bench/translator_bench/idiomatic/Output.h"
#include "bench/translator_bench/idiomatic/Population.h"

namespace Bench::Peer {

template <std::size_t n>
using Connections = std::array<boost::signals2::scoped_connection, n>;

class PortListener {
public:
    PortListener(Finder const & finder, std::shared_ptr<V2::Port const> input, V3::Host & host)
        : finder_(finder),
          input_(std::move(input)),
          output_(host.portIs(input_->name())),
          connections_{{
              input_->typeChanged.connect([this] { output_->typeIs(input_->type()); }),
              input_->portGroupChanged.connect([this] { mirrorPortGroup(); }),
          }} {
        traced("PortListener");
    }

private:
    void mirrorPortGroup() { output_->portGroupIs(finder_.portGroup(input_->portGroup())); }

    Finder const & finder_;
    std::shared_ptr<V2::Port const> const input_;
    std::shared_ptr<V3::Port> const output_;
    Connections<2> const connections_;
};

class PortGroupListener {
public:
    PortGroupListener(Finder const & finder, std::shared_ptr<V2::PortGroup const> input, V3::Host & host)
        : finder_(finder),
          input_(std::move(input)),
          output_(host.portGroupIs(input_->name())),
          connections_{{
              input_->typeChanged.connect([this] { output_->typeIs(input_->type()); }),
              input_->memberPortChanged.connect([this](std::string const & name) { mirrorMember(name); }),
              input_->mlagChanged.connect([this] { output_->mlagIs(finder_.mlag(input_->mlag())); }),
          }} {
        traced("PortGroupListener");
    }

private:
    void mirrorMember(std::string const & name) {
        traced("mirrorMember");
        auto const at = input_->memberPorts().find(name);
        if (at == input_->memberPorts().end()) return output_->memberPortDel(name);
        output_->memberPortIs(finder_.port(at->second));
    }

    Finder const & finder_;
    std::shared_ptr<V2::PortGroup const> const input_;
    std::shared_ptr<V3::PortGroup> const output_;
    Connections<3> const connections_;
};

class MlagListener {
public:
    MlagListener(Finder const & finder, std::shared_ptr<V2::Mlag const> input, V3::Host & host)
        : finder_(finder),
          input_(std::move(input)),
          output_(host.mlagIs(input_->name(), input_->secondaryName())),
          connections_{{
              input_->typeChanged.connect([this] { output_->typeIs(input_->type()); }),
              input_->localPortGroupChanged.connect([this] { mirrorLocalPortGroup(); }),
          }} {
        traced("MlagListener");
    }

private:
    void mirrorLocalPortGroup() { output_->localPortGroupIs(finder_.portGroup(input_->localPortGroup())); }

    Finder const & finder_;
    std::shared_ptr<V2::Mlag const> const input_;
    std::shared_ptr<V3::Mlag> const output_;
    Connections<2> const connections_;
};

class HostListener {
public:
    HostListener(Finder const & finder, std::shared_ptr<V2::Host const> input)
        : finder_(finder),
          input_(std::move(input)),
          output_(finder.output().hostIs(input_->name())),
          connections_{{
              input_->hostnameChanged.connect([this] { output_->hostnameIs(input_->hostname()); }),
              input_->mlagSystemIdChanged.connect(
                  [this] { output_->mlagSystemIdIs(input_->mlagSystemId()); }),
              input_->mlagDomainIdChanged.connect(
                  [this] { output_->mlagDomainIdIs(input_->mlagDomainId()); }),
              input_->mlagStateChanged.connect([this] { output_->mlagStateIs(input_->mlagState()); }),
              input_->mlagPeerLinkChanged.connect([this] { mirrorPeerLink(); }),
              input_->portChanged.connect([this](std::string const & name) { mirrorPort(name); }),
              input_->portGroupChanged.connect([this](std::string const & name) { mirrorPortGroup(name); }),
              input_->mlagChanged.connect([this](std::string const & name) { mirrorMlag(name); }),
              input_->mlagRawChanged.connect([this](std::string const & name) { mirrorMlagRaw(name); }),
              input_->logicalPortChanged.connect(
                  [this](std::string const & name) { mirrorLogicalPort(name); }),
          }} {
        traced("HostListener");
        for (auto const & [name, port] : input_->ports()) ports_.try_emplace(name, finder, port, *output_);
        for (auto const & [name, group] : input_->portGroups()) {
            portGroups_.try_emplace(name, finder, group, *output_);
        }
        for (auto const & [name, mlag] : input_->mlags()) mlags_.try_emplace(name, finder, mlag, *output_);
    }

private:
    void mirrorPeerLink() { output_->mlagPeerLinkIs(finder_.portBase(input_->mlagPeerLink())); }
    void mirrorPort(std::string const & name) {
        if (auto const port = input_->port(name)) {
            ports_.try_emplace(name, finder_, port, *output_);
        } else if (ports_.erase(name)) {
            output_->portDel(name);
        }
    }
    void mirrorPortGroup(std::string const & name) {
        if (auto const group = input_->portGroup(name)) {
            portGroups_.try_emplace(name, finder_, group, *output_);
        } else if (portGroups_.erase(name)) {
            output_->portGroupDel(name);
        }
    }
    void mirrorMlag(std::string const & name) {
        if (auto const mlag = input_->mlag(name)) {
            mlags_.try_emplace(name, finder_, mlag, *output_);
        } else if (mlags_.erase(name)) {
            output_->mlagDel(name);
        }
    }
    void mirrorMlagRaw(std::string const & name) {
        traced("mirrorMlagRaw");
        auto const at = input_->mlagRaws().find(name);
        if (at == input_->mlagRaws().end()) return output_->mlagRawDel(name);
        output_->mlagRawIs(finder_.mlag(at->second));
    }
    void mirrorLogicalPort(std::string const & name) {
        traced("mirrorLogicalPort");
        auto const at = input_->logicalPorts().find(name);
        if (at == input_->logicalPorts().end()) return output_->logicalPortDel(name);
        output_->logicalPortIs(finder_.portBase(at->second));
    }

    Finder const & finder_;
    std::shared_ptr<V2::Host const> const input_;
    std::shared_ptr<V3::Host> const output_;
    std::unordered_map<std::string, PortListener> ports_;
    std::unordered_map<std::string, PortGroupListener> portGroups_;
    std::unordered_map<std::string, MlagListener> mlags_;
    Connections<10> const connections_;
};

class EdgeListener {
public:
    EdgeListener(Finder const & finder, std::shared_ptr<V2::Edge const> input)
        : finder_(finder),
          input_(std::move(input)),
          output_(counterpart()),
          connection_(input_->toPortChanged.connect([this](auto const & port) { mirrorToPort(port); })) {
        traced("EdgeListener");
    }

private:
    // Null as long as the port at which the edge begins has no counterpart.
    std::shared_ptr<V3::Edge> counterpart() const {
        auto const fromPort = finder_.port(input_->fromPort());
        return fromPort ? finder_.output().edgeIs(fromPort->key()) : nullptr;
    }
    void mirrorToPort(std::shared_ptr<V2::Port const> const & port) {
        traced("mirrorToPort");
        if (!output_ && (output_ = counterpart())) {
            for (auto const & [present, flag] : input_->toPorts()) writeToPort(present);
        }
        if (output_) writeToPort(port);
    }
    void writeToPort(std::shared_ptr<V2::Port const> const & port) {
        auto const counterpart = finder_.port(port);
        if (!counterpart) return;
        auto const at = input_->toPorts().find(port);
        if (at == input_->toPorts().end()) return output_->toPortDel(counterpart->key());
        output_->toPortIs(counterpart->key(), at->second);
    }

    Finder const & finder_;
    std::shared_ptr<V2::Edge const> const input_;
    std::shared_ptr<V3::Edge> output_;
    boost::signals2::scoped_connection const connection_;
};

class Translator {
public:
    Translator(std::shared_ptr<V2::Status const> input, std::shared_ptr<V3::Status> output)
        : input_(std::move(input)),
          finder_(std::move(output)),
          connections_{{
              input_->hostChanged.connect([this](std::string const & name) { mirrorHost(name); }),
              input_->localhostChanged.connect([this] { mirrorLocalhost(); }),
              input_->edgeChanged.connect([this](auto const & fromPort) { mirrorEdge(fromPort); }),
          }} {
        populate(*input_, finder_);
        for (auto const & [name, host] : input_->hosts()) hosts_.try_emplace(name, finder_, host);
        for (auto const & [fromPort, edge] : input_->edges()) edges_.try_emplace(fromPort, finder_, edge);
    }
    // The hosts leave the output, each with everything in it; the edges stay.
    ~Translator() {
        for (auto const & [name, host] : hosts_) finder_.output().hostDel(name);
    }
    Translator(Translator const &) = delete;
    Translator & operator=(Translator const &) = delete;

private:
    void mirrorHost(std::string const & name) {
        if (auto const host = input_->host(name)) {
            hosts_.try_emplace(name, finder_, host);
        } else if (hosts_.erase(name)) {
            finder_.output().hostDel(name);
        }
    }
    void mirrorLocalhost() { finder_.output().localhostIs(finder_.host(input_->localhost())); }
    void mirrorEdge(std::shared_ptr<V2::Port const> const & fromPort) {
        if (auto const edge = input_->edge(fromPort)) {
            edges_.try_emplace(fromPort, finder_, edge);
        } else if (edges_.erase(fromPort)) {
            if (auto const port = finder_.port(fromPort)) finder_.output().edgeDel(port->key());
        }
    }

    std::shared_ptr<V2::Status const> const input_;
    Finder const finder_;
    std::unordered_map<std::string, HostListener> hosts_;
    std::unordered_map<std::shared_ptr<V2::Port const>, EdgeListener> edges_;
    Connections<3> const connections_;
};

}  // namespace Bench::Peer
