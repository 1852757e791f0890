#include "tools/format/TopologyView.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "platform/Vel/GenericIf.h"
#include "tools/format/NaturalOrder.h"

namespace TopologyTools {
namespace {

using NetworkTopologyV3::PortKey;
using Kind = TopologyView::Kind;
using Reference = TopologyView::Reference;

std::optional<Kind> kindNamed(std::string_view name) {
    if (name == PortKey::kPort) return Kind::port;
    if (name == PortKey::kPortGroup) return Kind::portGroup;
    if (name == PortKey::kMlag) return Kind::mlag;
    return std::nullopt;
}

std::string text(Vel::String const & string) { return std::string(string.view()); }

template <class Enum>
std::string enumerator(Enum value) {
    return Vel::GenericIf::wrap(value).strRep();
}

template <class Named>
void sortByName(std::vector<Named> & all) {
    std::sort(all.begin(), all.end(),
              [](Named const & a, Named const & b) { return NaturalLess()(a.name, b.name); });
}

class Reader {
public:
    explicit Reader(NetworkTopologyV3::Status const & status) : status_(status) {}

    TopologyView read() {
        for (auto const & host : status_.host()) {
            for (auto const & port : host->port()) presentIs(*port);
            for (auto const & group : host->portGroup()) presentIs(*group);
            for (auto const & mlag : host->mlag()) presentIs(*mlag);
        }
        for (auto const & host : status_.host()) view_.hosts.push_back(readHost(*host));
        sortByName(view_.hosts);
        if (auto const & localhost = status_.localhost()) {
            view_.localhost = text(localhost->name());
            view_.localhostIsPresent = status_.host(localhost->name()) == localhost;
        }
        readEdges();
        connect();
        return std::move(view_);
    }

private:
    void presentIs(NetworkTopologyV3::PortBase const & port) { present_.insert(port.portKey()); }

    Reference reference(PortKey const & key) const {
        Vel::String const whole = key.member();
        std::string_view const member = whole.view();
        std::size_t const slash = member.find('/');
        Reference result{text(key.host()), kindNamed(member.substr(0, slash)), {}, present_.contains(key)};
        if (slash != std::string_view::npos) result.name = member.substr(slash + 1);
        return result;
    }

    // A port base that has left its host may have the key of one that stands there now.
    Reference reference(NetworkTopologyV3::PortBase const & port) const {
        Reference result = reference(port.portKey());
        result.present = result.present && port.host() && status_.host(port.host()->name()) == port.host();
        return result;
    }

    template <class Port>
    std::optional<Reference> referenceIfAny(Port const & port) const {
        if (!port) return std::nullopt;
        return reference(*port);
    }

    template <class Range>
    std::vector<Reference> referencesOf(Range const & entries) const {
        std::vector<Reference> all;
        for (auto const & entry : entries) {
            if (entry.value()) all.push_back(reference(*entry.value()));
        }
        std::sort(all.begin(), all.end());
        return all;
    }

    template <class View>
    View readPortBase(NetworkTopologyV3::PortBase const & port) const {
        View view;
        view.name = text(port.name());
        view.type = enumerator(port.type());
        return view;
    }

    TopologyView::Host readHost(NetworkTopologyV3::Host const & host) const {
        TopologyView::Host view;
        view.name = text(host.name());
        view.hostname = text(host.hostname());
        view.mlagDomainId = text(host.mlagDomainId());
        if (host.mlagState() != Mlag::MlagState::unknown) view.mlagState = enumerator(host.mlagState());
        if (!host.mlagSystemId().isZero()) view.mlagSystemId = host.mlagSystemId().text();
        view.mlagPeerLink = referenceIfAny(host.mlagPeerLink());
        for (auto const & port : host.port()) {
            view.ports.push_back(readPortBase<TopologyView::Port>(*port));
            view.ports.back().group = referenceIfAny(port->portGroup());
        }
        for (auto const & group : host.portGroup()) {
            view.groups.push_back(readPortBase<TopologyView::PortGroup>(*group));
            view.groups.back().members = referencesOf(group->memberPort());
            view.groups.back().mlag = referenceIfAny(group->mlag());
        }
        for (auto const & mlag : host.mlag()) {
            view.mlags.push_back(readPortBase<TopologyView::Mlag>(*mlag));
            view.mlags.back().secondaryName = text(mlag->secondaryName());
            view.mlags.back().localGroup = referenceIfAny(mlag->localPortGroup());
        }
        sortByName(view.ports);
        sortByName(view.groups);
        sortByName(view.mlags);
        view.logicalPorts = referencesOf(host.logicalPort());
        view.rawMlags = referencesOf(host.mlagRaw());
        return view;
    }

    void readEdges() {
        std::map<std::pair<Reference, Reference>, TopologyView::Link> links;
        for (auto const & edge : status_.edge()) {
            ++view_.edges;
            Reference const from = reference(edge->fromPort());
            std::size_t const before = view_.destinations;
            for (auto const & entry : edge->toPort()) {
                ++view_.destinations;
                Reference const to = reference(entry.key());
                bool const forth = from <= to;
                auto & link = links[forth ? std::pair(from, to) : std::pair(to, from)];
                (forth ? link.forth : link.back) = entry.value();
                if (from == to) link.back = link.forth;
            }
            if (view_.destinations == before) view_.edgesWithoutDestination.push_back(from);
        }
        for (auto & [ends, link] : links) {
            std::tie(link.one, link.other) = ends;
            view_.links.push_back(std::move(link));
        }
        std::sort(view_.edgesWithoutDestination.begin(), view_.edgesWithoutDestination.end());
    }

    // Gives every port base its links.
    void connect() {
        std::map<Reference, TopologyView::PortBase *> byReference;
        for (auto & host : view_.hosts) {
            auto const enter = [&](auto & ports, Kind kind) {
                for (auto & port : ports) byReference[Reference{host.name, kind, port.name, true}] = &port;
            };
            enter(host.ports, Kind::port);
            enter(host.groups, Kind::portGroup);
            enter(host.mlags, Kind::mlag);
        }
        auto const find = [&](Reference const & reference) -> TopologyView::PortBase * {
            auto const at = byReference.find(reference);
            return at == byReference.end() ? nullptr : at->second;
        };
        for (TopologyView::Link const & link : view_.links) {
            if (auto * const one = find(link.one))
                one->connections.push_back({link.other, link.forth, link.back});
            if (auto * const other = find(link.other); other && link.one != link.other) {
                other->connections.push_back({link.one, link.back, link.forth});
            }
        }
        for (Reference const & from : view_.edgesWithoutDestination) {
            if (auto * const port = find(from)) port->leadsNowhere = true;
        }
        for (auto & [reference, port] : byReference) {
            std::sort(port->connections.begin(), port->connections.end(),
                      [](auto const & a, auto const & b) { return a.peer < b.peer; });
        }
    }

    NetworkTopologyV3::Status const & status_;
    std::unordered_set<PortKey> present_;
    TopologyView view_;
};

}  // namespace

std::strong_ordering operator<=>(Reference const & a, Reference const & b) {
    if (auto const order = naturalOrder(a.host, b.host); order != 0) return order;
    if (auto const order = a.kind <=> b.kind; order != 0) return order;
    if (auto const order = naturalOrder(a.name, b.name); order != 0) return order;
    return a.present <=> b.present;
}

TopologyView topologyView(NetworkTopologyV3::Status const & status) { return Reader(status).read(); }

}  // namespace TopologyTools
