// Writes the fabric into an input model, and makes each of the changes that are measured.
//
// `Input` names the model's types and gives its constants: `Name` and `Text`, both made from a std::string;
// the references `Status`, `Host`, `Port`, `PortGroup`, `Mlag` and `Edge`; `newStatus()`; the types `kPort`,
// `kPortGroup` and `kMlag`; `kMlagState`; and `systemId(number)`. The mutators are those of the version-2
// model.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "bench/translator_bench/Fabric.h"

namespace Bench {

template <class Input>
class InputWriter {
public:
    using Name = typename Input::Name;
    using Text = typename Input::Text;
    using Host = typename Input::Host;
    using Port = typename Input::Port;
    using PortGroup = typename Input::PortGroup;
    using Edge = typename Input::Edge;

    explicit InputWriter(Fabric const & fabric)
        : fabric_(fabric),
          hosts_(fabric.hosts()),
          ports_(fabric.ports()),
          groups_(std::size_t{fabric.hosts()} * Fabric::kGroups),
          edges_(fabric.ports()) {
        namesAre(portNames_, Fabric::kPorts, Fabric::portName);
        namesAre(groupNames_, Fabric::kGroups, Fabric::groupName);
        namesAre(mlagNames_, Fabric::kMlags, Fabric::mlagName);
        namesAre(secondaryMlagNames_, Fabric::kMlags, Fabric::secondaryMlagName);
        namesAre(hostNames_, fabric.hosts(), Fabric::hostName);
        namesAre(hostnames_, fabric.hosts(), Fabric::hostname);
        namesAre(mlagDomainIds_, fabric.hosts(), Fabric::mlagDomainId);
        for (unsigned host = 0; host < fabric.hosts(); ++host) hostWithMembersIs(host);
        for (unsigned port = 0; port < fabric.ports(); ++port) edgeIs(fabric.port(port));
        status_->localhostIs(hosts_[0]);
    }

    typename Input::Status const & status() const { return status_; }
    Host const & host(unsigned host) const { return hosts_[host]; }
    Port const & port(Fabric::Port port) const { return ports_[fabric_.index(port)]; }
    PortGroup const & portGroup(unsigned host, unsigned group) const {
        return groups_[std::size_t{host} * Fabric::kGroups + group];
    }
    // The edge that begins at `from`.
    Edge const & edge(Fabric::Port from) const { return edges_[fabric_.index(from)]; }

    // A port goes with its membership and its edges in both directions: 3 changes, 4 for a member of a group.
    void portDel(Fabric::Port at) {
        edgesDel(at);
        if (auto const group = Fabric::groupOf(at.number)) {
            portGroup(at.host, *group)->memberPortDel(portNames_[at.number]);
        }
        hosts_[at.host]->portDel(portNames_[at.number]);
    }
    // The same in the other direction: 5 changes, 7 for a member of a group.
    void portIs(Fabric::Port at) {
        newPort(at);
        membershipIs(at);
        edgesAre(at);
    }

    void hostDel(unsigned host) {
        if (host == 0) status_->localhostIs(nullptr);
        for (unsigned port = 0; port < Fabric::kPorts; ++port) edgesDel({host, port});
        status_->hostDel(hostNames_[host]);
    }
    void hostIs(unsigned host) {
        hostWithMembersIs(host);
        for (unsigned port = 0; port < Fabric::kPorts; ++port) edgesAre({host, port});
        if (host == 0) status_->localhostIs(hosts_[0]);
    }

    // Heap of the writer itself; what the references and names in it refer to is the model's.
    std::size_t heapBytes() const {
        auto const bytesOf = [](auto const &... vectors) {
            return (... + (vectors.capacity() * sizeof(vectors[0])));
        };
        return bytesOf(hosts_, ports_, groups_, edges_, portNames_, groupNames_, mlagNames_,
                       secondaryMlagNames_, hostNames_, hostnames_, mlagDomainIds_);
    }

private:
    template <class T, class TextOf>
    static void namesAre(std::vector<T> & names, unsigned count, TextOf const & textOf) {
        names.reserve(count);
        for (unsigned i = 0; i < count; ++i) names.emplace_back(textOf(i));
    }

    void newPort(Fabric::Port at) {
        Port & port = ports_[fabric_.index(at)];
        port = hosts_[at.host]->portIs(portNames_[at.number]);
        port->typeIs(Input::kPort);
    }
    void membershipIs(Fabric::Port at) {
        auto const group = Fabric::groupOf(at.number);
        if (!group) return;
        port(at)->portGroupIs(portGroup(at.host, *group));
        portGroup(at.host, *group)->memberPortIs(portNames_[at.number], port(at));
    }
    void hostWithMembersIs(unsigned h) {
        Host const host = hosts_[h] = status_->hostIs(hostNames_[h]);
        for (unsigned p = 0; p < Fabric::kPorts; ++p) newPort({h, p});
        for (unsigned g = 0; g < Fabric::kGroups; ++g) {
            PortGroup & group = groups_[std::size_t{h} * Fabric::kGroups + g];
            group = host->portGroupIs(groupNames_[g]);
            group->typeIs(Input::kPortGroup);
            host->logicalPortIs(groupNames_[g], group);
        }
        for (unsigned m = 0; m < Fabric::kMlags; ++m) {
            typename Input::Mlag const mlag = host->mlagIs(mlagNames_[m], secondaryMlagNames_[m]);
            mlag->typeIs(Input::kMlag);
            host->mlagRawIs(mlagNames_[m], mlag);
            mlag->localPortGroupIs(portGroup(h, m));
            portGroup(h, m)->mlagIs(mlag);
        }
        for (unsigned p = 0; p < Fabric::kPorts; ++p) membershipIs({h, p});
        host->hostnameIs(hostnames_[h]);
        host->mlagSystemIdIs(Input::systemId(Fabric::mlagSystemId(h)));
        host->mlagDomainIdIs(mlagDomainIds_[h]);
        host->mlagStateIs(Input::kMlagState);
        host->mlagPeerLinkIs(portGroup(h, Fabric::kPeerLinkGroup));
    }

    void edgeIs(Fabric::Port from) {
        Edge & edge = edges_[fabric_.index(from)];
        edge = status_->edgeIs(port(from));
        edge->toPortIs(port(fabric_.otherEnd(from)), true);
    }
    // The port's own edge, and the port as destination of that of the other end.
    void edgesAre(Fabric::Port at) {
        edgeIs(at);
        edge(fabric_.otherEnd(at))->toPortIs(port(at), true);
    }
    void edgesDel(Fabric::Port at) {
        edge(fabric_.otherEnd(at))->toPortDel(port(at));
        edges_[fabric_.index(at)] = nullptr;
        status_->edgeDel(port(at));
    }

    Fabric const fabric_;
    typename Input::Status const status_ = Input::newStatus();
    std::vector<Name> portNames_, groupNames_, mlagNames_, secondaryMlagNames_, hostNames_;
    std::vector<Text> hostnames_, mlagDomainIds_;
    std::vector<Host> hosts_;
    std::vector<Port> ports_;
    std::vector<PortGroup> groups_;
    std::vector<Edge> edges_;
};

}  // namespace Bench
