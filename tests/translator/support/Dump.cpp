#include "tests/translator/support/Dump.h"

#include <algorithm>

#include "tests/translator/support/Spelling.h"

namespace TestSupport {

namespace {

using NetworkTopologyV3::Host;
using NetworkTopologyV3::PortBase;
using NetworkTopologyV3::Status;

class Dump {
public:
    explicit Dump(Status const & status) : status_(status) {
        add("/ localhost=" + reference(status.localhost().get()));
        for (auto const & host : status.host()) add(*host);
        for (auto const & edge : status.edge()) {
            add(spelled(edge));
            for (auto const & entry : edge->toPort()) {
                add(spelled(edge) + " toPort " + spelled(entry.key()) + "=" + spelled(entry.value()));
            }
        }
        std::ranges::sort(lines_);
    }

    std::vector<std::string> taken() { return std::move(lines_); }

private:
    void add(std::string line) { lines_.push_back(std::move(line)); }

    void add(Host const & host) {
        add(spelled(host) + " hostname=" + spelled(host.hostname()) +
            " mlagDomainId=" + spelled(host.mlagDomainId()) +
            " mlagSystemId=" + spelled(host.mlagSystemId()) + " mlagState=" + spelled(host.mlagState()) +
            " mlagPeerLink=" + reference(host.mlagPeerLink().get()));
        for (auto const & port : host.port()) {
            add(common(*port) + " portGroup=" + reference(port->portGroup()));
        }
        for (auto const & group : host.portGroup()) {
            add(common(*group) + " mlag=" + reference(group->mlag()));
            for (auto const & entry : group->memberPort()) {
                add(spelled(*group) + " memberPort " + spelled(entry.key()) + "=" +
                    reference(entry.value().get()));
            }
        }
        for (auto const & mlag : host.mlag()) {
            add(common(*mlag) + " secondaryName=" + spelled(mlag->secondaryName()) +
                " localPortGroup=" + reference(mlag->localPortGroup().get()));
        }
        for (auto const & entry : host.mlagRaw()) {
            add(spelled(host) + " mlagRaw " + spelled(entry.key()) + "=" + reference(entry.value().get()));
        }
        for (auto const & entry : host.logicalPort()) {
            add(spelled(host) + " logicalPort " + spelled(entry.key()) + "=" +
                reference(entry.value().get()));
        }
    }

    static std::string common(PortBase const & portBase) {
        return spelled(portBase) + " type=" + spelled(portBase.type());
    }

    bool holds(Host const * host) const { return host && status_.host(host->name()) == host; }
    std::string reference(Host const * host) const {
        return spelled(host) + (host && !holds(host) ? "(gone)" : "");
    }
    std::string reference(PortBase const * portBase) const {
        return spelled(portBase) + (portBase && !holds(portBase->host()) ? "(gone)" : "");
    }

    Status const & status_;
    std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> dumped(Status const & status) { return Dump(status).taken(); }

}  // namespace TestSupport
