#include "tests/translator/support/WriteLog.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "platform/NetworkTopologyV3/Status.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::Lines;
using TestSupport::WriteLog;

struct WriteLogTest : testing::Test {
    NetworkTopologyV3::Status::Ptr const status = NetworkTopologyV3::Status::StatusIs();
    NetworkTopologyV3::Host::Ptr const host = status->hostIs("a");
    NetworkTopologyV3::Port::Ptr const port = host->portIs("p");
    NetworkTopologyV3::PortGroup::Ptr const group = host->portGroupIs("g");
    NetworkTopologyV3::MlagPort::Ptr const mlag = host->mlagIs("m", "m2");
    NetworkTopologyV3::DirectedEdge::Ptr const edge = status->edgeIs(port->portKey());
    WriteLog log;
};

TEST_F(WriteLogTest, RecordsEveryMutatorOfTheStatus) {
    status->hostIs("b");
    status->localhostIs(host);
    status->edgeIs(group->portKey());
    status->edgeDel(mlag->portKey());
    status->hostDel("b");
    EXPECT_THAT(log.lines(),
                ElementsAre("/ hostIs('b')", "/ localhostIs(/host/a)", "/ edgeIs(/host/a/portGroup/g)",
                            "/ edgeDel(/host/a/mlag/m)", "/ hostDel('b')"));
}

TEST_F(WriteLogTest, RecordsEveryMutatorOfAHost) {
    host->hostnameIs("a.example");
    host->mlagDomainIdIs("rack");
    host->mlagSystemIdIs({2, 0, 0, 0, 0, 1});
    host->mlagStateIs(Mlag::MlagState::active);
    host->mlagPeerLinkIs(group);
    host->portIs("q");
    host->portDel("q");
    host->portGroupIs("h");
    host->portGroupDel("h");
    host->mlagIs("n", "n2");
    host->mlagDel("n");
    host->mlagRawIs(mlag);
    host->mlagRawDel("m");
    host->logicalPortIs(mlag);
    host->logicalPortDel("m");
    EXPECT_THAT(log.lines(),
                ElementsAre("/host/a hostnameIs('a.example')", "/host/a mlagDomainIdIs('rack')",
                            "/host/a mlagSystemIdIs(02:00:00:00:00:01)", "/host/a mlagStateIs(active)",
                            "/host/a mlagPeerLinkIs(/host/a/portGroup/g)", "/host/a portIs('q')",
                            "/host/a portDel('q')", "/host/a portGroupIs('h')", "/host/a portGroupDel('h')",
                            "/host/a mlagIs('n', 'n2')", "/host/a mlagDel('n')",
                            "/host/a mlagRawIs(/host/a/mlag/m)", "/host/a mlagRawDel('m')",
                            "/host/a logicalPortIs(/host/a/mlag/m)", "/host/a logicalPortDel('m')"));
}

TEST_F(WriteLogTest, RecordsEveryMutatorOfPortBasesAndEdges) {
    port->typeIs(NetworkTopologyV3::PortType::port);
    port->portGroupIs(group.get());
    group->memberPortIs(port);
    group->memberPortDel("p");
    group->mlagIs(mlag.get());
    mlag->localPortGroupIs(group);
    edge->toPortIs(group->portKey(), false);
    edge->toPortDel(group->portKey());
    EXPECT_THAT(log.lines(),
                ElementsAre("/host/a/port/p typeIs(port)", "/host/a/port/p portGroupIs(/host/a/portGroup/g)",
                            "/host/a/portGroup/g memberPortIs(/host/a/port/p)",
                            "/host/a/portGroup/g memberPortDel('p')",
                            "/host/a/portGroup/g mlagIs(/host/a/mlag/m)",
                            "/host/a/mlag/m localPortGroupIs(/host/a/portGroup/g)",
                            "/edge[/host/a/port/p] toPortIs(/host/a/portGroup/g, false)",
                            "/edge[/host/a/port/p] toPortDel(/host/a/portGroup/g)"));
}

TEST_F(WriteLogTest, RecordsWritesThatChangeNothing) {
    host->hostnameIs("");
    host->mlagRawIs(nullptr);
    host->logicalPortIs(nullptr);
    group->memberPortIs(nullptr);
    port->portGroupIs(nullptr);
    status->localhostIs(nullptr);
    status->hostDel("b");
    EXPECT_THAT(log.lines(),
                ElementsAre("/host/a hostnameIs('')", "/host/a mlagRawIs(null)",
                            "/host/a logicalPortIs(null)", "/host/a/portGroup/g memberPortIs(null)",
                            "/host/a/port/p portGroupIs(null)", "/ localhostIs(null)", "/ hostDel('b')"));
}

TEST_F(WriteLogTest, SpellsValuesWithoutAName) {
    host->mlagStateIs(static_cast<Mlag::MlagState>(9));
    port->typeIs(static_cast<NetworkTopologyV3::PortType>(7));
    host->hostnameIs(std::string_view("\0\x7f\xc3", 3));
    status->hostDel("a");
    port->portGroupIs(nullptr);
    EXPECT_THAT(log.lines(), ElementsAre("/host/a mlagStateIs(9)", "/host/a/port/p typeIs(7)",
                                         R"(/host/a hostnameIs('\x00\x7f\xc3'))", "/ hostDel('a')",
                                         "/host/a/port/p portGroupIs(null)"));
}

TEST_F(WriteLogTest, DoesWhatIsWritten) {
    host->hostnameIs("a.example");
    host->mlagIs("n", "n2");
    EXPECT_EQ(host->hostname(), "a.example");
    EXPECT_EQ(host->mlag("n")->secondaryName(), "n2");
    EXPECT_EQ(status->hostIs("a"), host);
}

TEST_F(WriteLogTest, SelectsByMutatorAndByTarget) {
    host->mlagRawIs(nullptr);
    status->hostIs("b")->mlagRawIs(nullptr);
    EXPECT_THAT(log.linesOf("mlagRawIs"), ElementsAre("/host/a mlagRawIs(null)", "/host/b mlagRawIs(null)"));
    EXPECT_THAT(log.linesInto("/host/b"), ElementsAre("/host/b mlagRawIs(null)"));
    EXPECT_EQ(log.writes().front().object, host.get());
    EXPECT_EQ(log.taken().size(), 3U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(WriteLogTest, LogsOfNestedScopesBothRecord) {
    {
        WriteLog inner;
        port->portGroupIs(nullptr);
        EXPECT_EQ(inner.size(), 1U);
    }
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(WriteLogTest, CallsBackBeforeTheModelChanges) {
    log.beforeWriteIs([&](TestSupport::Write const & write) {
        EXPECT_EQ(write.mutator, "hostnameIs");
        EXPECT_EQ(host->hostname(), "");
        throw std::runtime_error("no");
    });
    EXPECT_THROW(host->hostnameIs("a.example"), std::runtime_error);
    EXPECT_EQ(host->hostname(), "");
    EXPECT_EQ(log.size(), 1U);
}

}  // namespace
