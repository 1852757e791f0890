#include "tests/translator/support/Topologies.h"

#include <gtest/gtest.h>

namespace TestSupport {

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

}  // namespace

HostV2::Ptr addHostWithOneOfEach(StatusV2 & v2, Vel::Name const & name) {
    auto const host = v2.hostIs(name);
    auto const port = host->portIs("p");
    auto const group = host->portGroupIs("g");
    auto const mlag = host->mlagIs("m", "m2");
    port->typeIs(PortTypeV2::port);
    port->portGroupIs(group);
    group->memberPortIs("p", port);
    group->mlagIs(mlag);
    mlag->localPortGroupIs(group);
    host->mlagRawIs("m", mlag);
    host->logicalPortIs("g", group);
    host->hostnameIs(std::string(name.view()) + ".example");
    host->mlagSystemIdIs({2, 0, 0, 0, 0, 1});
    host->mlagDomainIdIs("rack");
    host->mlagStateIs(Mlag::MlagState::active);
    host->mlagPeerLinkIs(port);
    return host;
}

void fillWithOneOfEach(StatusV2 & v2) {
    auto const host = addHostWithOneOfEach(v2, "a");
    v2.localhostIs(host);
    v2.edgeIs(host->port("p"))->toPortIs(host->portGroup("g"), true);
}

void fillWithThreeHosts(StatusV2 & v2) {
    std::array const hosts = {addHostWithOneOfEach(v2, "a"), addHostWithOneOfEach(v2, "b"),
                              addHostWithOneOfEach(v2, "c")};
    for (std::size_t i = 0; i < hosts.size(); ++i) {
        HostV2 & host = *hosts[i];
        HostV2 & next = *hosts[(i + 1) % hosts.size()];
        HostV2 & last = *hosts[(i + 2) % hosts.size()];
        host.mlagPeerLinkIs(next.portGroup("g"));
        host.logicalPortIs("far", next.port("p"));
        host.mlagRawIs("far", next.mlag("m"));
        host.portIs("q")->portGroupIs(next.portGroup("g"));
        host.portGroupIs("h")->mlagIs(next.mlag("m"));
        host.portGroup("h")->memberPortIs("far", next.port("q"));
        host.mlagIs("n", "n2")->localPortGroupIs(next.portGroup("h"));
        auto const edge = v2.edgeIs(host.port("p"));
        edge->toPortIs(next.port("p"), true);
        edge->toPortIs(last.mlag("m"), false);
    }
    v2.localhostIs(hosts[1]);
}

NetworkTopologyAggregator::V2Sm::Ptr unpopulated(Models const & models) {
    auto const sm = NetworkTopologyAggregator::v2SmFactory("sm", nullptr, models.v3);
    sm->v2Is(models.v2);
    return sm;
}

std::vector<Change> const & everyKindOfChange() {
    static auto const a = [](StatusV2 & v2) { return v2.hostIs("a"); };
    static auto const edge = [](StatusV2 & v2) { return v2.edgeIs(a(v2)->portIs("p")); };
    static std::vector<Change> const changes = {
        {"AddHost", [](StatusV2 & v2) { addHostWithOneOfEach(v2, "new"); }},
        {"Hostname", [](StatusV2 & v2) { a(v2)->hostnameIs("other.example"); }},
        {"HostnameAddedByOwner", [](StatusV2 & v2) { a(v2)->hostnameAddedByOwnerIs(true); }},
        {"MlagSystemId", [](StatusV2 & v2) { a(v2)->mlagSystemIdIs({2, 0, 0, 0, 0, 9}); }},
        {"MlagDomainId", [](StatusV2 & v2) { a(v2)->mlagDomainIdIs("row"); }},
        {"MlagState", [](StatusV2 & v2) { a(v2)->mlagStateIs(Mlag::MlagState::inactive); }},
        {"MlagPeerLink", [](StatusV2 & v2) { a(v2)->mlagPeerLinkIs(a(v2)->portIs("p")); }},
        {"NoMlagPeerLink", [](StatusV2 & v2) { a(v2)->mlagPeerLinkIs(nullptr); }},
        {"Localhost", [](StatusV2 & v2) { v2.localhostIs(a(v2)); }},
        {"NoLocalhost", [](StatusV2 & v2) { v2.localhostIs(nullptr); }},
        {"AddPort", [](StatusV2 & v2) { a(v2)->portIs("new"); }},
        {"PortType", [](StatusV2 & v2) { a(v2)->portIs("p")->typeIs(PortTypeV2::mlag); }},
        {"PortAddedByOwner", [](StatusV2 & v2) { a(v2)->portIs("p")->addedByOwnerIs(true); }},
        {"PortWithoutGroup", [](StatusV2 & v2) { a(v2)->portIs("p")->portGroupIs(nullptr); }},
        {"PortIntoGroup",
         [](StatusV2 & v2) { a(v2)->portIs("p")->portGroupIs(a(v2)->portGroupIs("h")); }},
        {"AddPortGroup", [](StatusV2 & v2) { a(v2)->portGroupIs("new"); }},
        {"PortGroupType", [](StatusV2 & v2) { a(v2)->portGroupIs("g")->typeIs(PortTypeV2::portGroup); }},
        {"AddMemberPort",
         [](StatusV2 & v2) { a(v2)->portGroupIs("g")->memberPortIs("new", a(v2)->portIs("q")); }},
        {"AddNullMemberPort", [](StatusV2 & v2) { a(v2)->portGroupIs("g")->memberPortIs("null", nullptr); }},
        {"RemoveMemberPort", [](StatusV2 & v2) { a(v2)->portGroupIs("g")->memberPortDel("p"); }},
        {"RemoveAllMemberPorts", [](StatusV2 & v2) { a(v2)->portGroupIs("h")->memberPortDelAll(); }},
        {"PortGroupWithoutMlag", [](StatusV2 & v2) { a(v2)->portGroupIs("g")->mlagIs(nullptr); }},
        {"PortGroupIntoMlag",
         [](StatusV2 & v2) { a(v2)->portGroupIs("g")->mlagIs(a(v2)->mlagIs("n", "n2")); }},
        {"AddMlag", [](StatusV2 & v2) { a(v2)->mlagIs("new", "new2"); }},
        {"MlagType", [](StatusV2 & v2) { a(v2)->mlagIs("m", "m2")->typeIs(PortTypeV2::mlag); }},
        {"MlagSecondaryName", [](StatusV2 & v2) { a(v2)->mlagIs("m", "m2")->secondaryNameIs("m3"); }},
        {"MlagWithoutLocalPortGroup",
         [](StatusV2 & v2) { a(v2)->mlagIs("m", "m2")->localPortGroupIs(nullptr); }},
        {"MlagLocalPortGroup",
         [](StatusV2 & v2) {
             a(v2)->mlagIs("m", "m2")->localPortGroupIs(a(v2)->portGroupIs("h"));
         }},
        {"MlagPeerPortGroup",
         [](StatusV2 & v2) {
             a(v2)->mlagIs("m", "m2")->peerPortGroupIs(a(v2)->portGroupIs("h"));
         }},
        {"AddMlagRaw", [](StatusV2 & v2) { a(v2)->mlagRawIs("n", a(v2)->mlagIs("n", "n2")); }},
        {"AddNullMlagRaw", [](StatusV2 & v2) { a(v2)->mlagRawIs("null", nullptr); }},
        {"RemoveMlagRaw", [](StatusV2 & v2) { a(v2)->mlagRawDel("m"); }},
        {"RemoveAllMlagRaws", [](StatusV2 & v2) { a(v2)->mlagRawDelAll(); }},
        {"AddLogicalPort", [](StatusV2 & v2) { a(v2)->logicalPortIs("p", a(v2)->portIs("p")); }},
        {"AddNullLogicalPort", [](StatusV2 & v2) { a(v2)->logicalPortIs("null", nullptr); }},
        {"RemoveLogicalPort", [](StatusV2 & v2) { a(v2)->logicalPortDel("g"); }},
        {"RemoveAllLogicalPorts", [](StatusV2 & v2) { a(v2)->logicalPortDelAll(); }},
        {"AddEdge",
         [](StatusV2 & v2) {
             v2.edgeIs(a(v2)->portGroupIs("g"))->toPortIs(a(v2)->portIs("q"), true);
         }},
        {"AddEdgeFromNothing", [](StatusV2 & v2) { v2.edgeIs(Vel::Ptr<NetworkTopology::PortBaseV2 const>()); }},
        {"AddToPort", [](StatusV2 & v2) { edge(v2)->toPortIs(a(v2)->portIs("q"), true); }},
        {"AddNullToPort", [](StatusV2 & v2) { edge(v2)->toPortIs(nullptr, true); }},
        {"ToPortFlag", [](StatusV2 & v2) { edge(v2)->toPortIs(a(v2)->portIs("q"), false); }},
        {"RemoveToPort", [](StatusV2 & v2) { edge(v2)->toPortDel(a(v2)->portIs("q")); }},
        {"ReplaceEdge",
         [](StatusV2 & v2) { v2.edgeIs(DirectedEdgeV2::DirectedEdgeV2Is(a(v2)->portIs("p"))); }},
        {"RemoveAllToPorts", [](StatusV2 & v2) { edge(v2)->toPortDelAll(); }},
        {"RemoveEdge", [](StatusV2 & v2) { v2.edgeDel(a(v2)->portIs("p")); }},
        {"ReplacePort", [](StatusV2 & v2) { a(v2)->portIs(PortV2::PortV2Is("p")); }},
        {"ReplacePortGroup", [](StatusV2 & v2) { a(v2)->portGroupIs(PortGroupV2::PortGroupV2Is("g")); }},
        {"ReplaceMlag", [](StatusV2 & v2) { a(v2)->mlagIs(MlagV2::MlagV2Is("m", "m4")); }},
        {"RemovePort", [](StatusV2 & v2) { a(v2)->portDel("p"); }},
        {"RemovePortGroup", [](StatusV2 & v2) { a(v2)->portGroupDel("g"); }},
        {"RemoveMlag", [](StatusV2 & v2) { a(v2)->mlagDel("m"); }},
        {"RemoveAllPorts", [](StatusV2 & v2) { a(v2)->portDelAll(); }},
        {"RemoveAllPortGroups", [](StatusV2 & v2) { a(v2)->portGroupDelAll(); }},
        {"RemoveAllMlags", [](StatusV2 & v2) { a(v2)->mlagDelAll(); }},
        {"ReplaceHost",
         [](StatusV2 & v2) {
             auto const host = HostV2::HostV2Is("b");
             host->portIs("p");
             host->hostnameIs("replaced.example");
             v2.hostIs(host);
         }},
        {"RemoveHost", [](StatusV2 & v2) { v2.hostDel("c"); }},
        {"RemoveAllEdges", [](StatusV2 & v2) { v2.edgeDelAll(); }},
        {"RemoveAllHosts", [](StatusV2 & v2) { v2.hostDelAll(); }},
    };
    return changes;
}

std::size_t forEveryStep(std::function<bool(std::size_t n)> const & run) {
    constexpr std::size_t tooMany = 100'000;
    std::size_t n = 1;
    while (run(n)) {
        if (++n == tooMany) {
            ADD_FAILURE() << "no end of steps";
            break;
        }
    }
    return n - 1;
}

}  // namespace TestSupport
