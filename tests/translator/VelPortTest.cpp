#include "translator/VelPort.h"

#include <gmock/gmock.h>

#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/TraceLog.h"

namespace {

using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopologyV3::PortType;
using testing::ElementsAre;
using TestSupport::Journal;
using TestSupport::WriteLog;

struct VelPort : TestSupport::Followed {};

TEST_F(VelPort, OfAPortInAGroupStartsWithDefaultsUntilItsNotifications) {
    auto const port = PortV2::PortV2Is("x");
    port->typeIs(PortTypeV2::portGroup);
    port->portGroupIs(hostV2->portGroup("g"));
    WriteLog log;
    hostV2->portIs(port);
    EXPECT_THAT(log.taken(), ElementsAre("/host/a portIs('x')"));
    auto const portV3 = hostV3()->port("x");
    EXPECT_EQ(portV3->type(), PortType::unknown);
    EXPECT_EQ(portV3->portGroup(), nullptr);
    host->port("x")->onType();
    host->port("x")->onPortGroup();
    EXPECT_EQ(portV3->type(), PortType::portGroup);
    EXPECT_EQ(portV3->portGroup(), hostV3()->portGroup("g").get());
}

TEST_F(VelPort, ReboundTakesTypeAndGroupOfItsNewPort) {
    auto const port = PortV2::PortV2Is("p");
    port->typeIs(PortTypeV2::mlag);
    Journal journal;
    host->port("p")->notifierIs(port);
    EXPECT_THAT(journal.taken(), ElementsAre("trace toPortTypeV3", "/host/a/port/p typeIs(mlag)",
                                             "trace toPortGroupV3", "/host/a/port/p portGroupIs(null)"));
}

TEST_F(VelPort, ReboundByATraceSinkReadsTheGroupOfItsNewPort) {
    auto const reactor = host->port("p");
    reactor->notifierIs(PortV2::PortV2Is("p"));  // Which nobody else holds.
    TestSupport::TraceLog traces;
    traces.onTraceIs([&](TestSupport::Trace const & trace) {
        if (trace.function == "toPortGroupV3") reactor->notifierIs(hostV2->port("p"));
    });
    reactor->onPortGroup();
    EXPECT_EQ(hostV3()->port("p")->portGroup(), hostV3()->portGroup("g").get());
}

TEST_F(VelPort, UnboundByATraceSinkWritesNoGroup) {
    auto const reactor = host->port("p");
    TestSupport::TraceLog traces;
    traces.onTraceIs([&](TestSupport::Trace const & trace) {
        if (trace.function == "toPortGroupV3") reactor->notifierIs(nullptr);
    });
    hostV2->port("p")->portGroupIs(nullptr);
    EXPECT_EQ(hostV3()->port("p")->portGroup(), nullptr);
}

TEST_F(VelPort, WritesTheCounterpartOfItsGroup) {
    auto const group = hostV2->portGroupIs("h");
    Journal journal;
    hostV2->port("p")->portGroupIs(group);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace toPortGroupV3", "/host/a/port/p portGroupIs(/host/a/portGroup/h)"));
    hostV2->port("p")->portGroupIs(nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("trace toPortGroupV3", "/host/a/port/p portGroupIs(null)"));
}

TEST_F(VelPort, WritesTheCounterpartOfAGroupOfAnotherHost) {
    auto const group = models.v2->hostIs("b")->portGroupIs("g");
    hostV2->port("p")->portGroupIs(group);
    EXPECT_EQ(hostV3()->port("p")->portGroup(), models.v3->host("b")->portGroup("g").get());
}

TEST_F(VelPort, WritesNoGroupForOneWithoutCounterpart) {
    hostV2->portGroupIs("h");
    hostV3()->portGroupDel("h");
    WriteLog log;
    hostV2->port("p")->portGroupIs(hostV2->portGroup("h"));
    EXPECT_THAT(log.taken(), ElementsAre("/host/a/port/p portGroupIs(null)"));
    // Nobody comes back to it when the group gets one.
    hostV3()->portGroupIs("h");
    EXPECT_EQ(hostV3()->port("p")->portGroup(), nullptr);
}

TEST_F(VelPort, WritesNoGroupForOneThatHasLeftItsHost) {
    auto const group = hostV2->portGroupIs("h");
    hostV2->portGroupDel("h");
    WriteLog log;
    hostV2->port("p")->portGroupIs(group);
    EXPECT_THAT(log.taken(), ElementsAre("/host/a/port/p portGroupIs(null)"));
}

}  // namespace
