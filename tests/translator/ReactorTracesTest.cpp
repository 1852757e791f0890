// What each traced operation of the reactors writes, word by word, and that the others write nothing.
#include <gmock/gmock.h>

#include "tests/translator/support/Followed.h"
#include "tests/translator/support/TraceLog.h"

namespace {

using testing::IsEmpty;
using TestSupport::Trace;
using TestSupport::TraceLog;

struct Traces : TestSupport::Followed {
    // The first record of `operation`.
    static Trace first(std::function<void()> const & operation) {
        TraceLog log;
        operation();
        return log.traces().empty() ? Trace{} : log.traces().front();
    }

    Vel::Ptr<NetworkTopology::PortV2> const portV2 = hostV2->port("p");
    Vel::Ptr<V2Sm::VelEdge> const edge = sm->edge(portV2);
};

TEST_F(Traces, HoldTheSignatureAndTheShortName) {
    auto const port = host->port("p");
    auto const group = host->portGroup("g");
    auto const mlag = host->mlag("m");
    struct {
        char const * function;
        char const * message;
        std::function<void()> operation;
    } const cases[] = {
        {"createV3Host",
         "NetworkTopologyV3::Host::Ptr NetworkTopologyAggregator::V2Sm::VelHost::createV3Host()",
         [&] { host->createV3Host(); }},
        {"cleanup", "void NetworkTopologyAggregator::V2Sm::VelHost::cleanup()", [&] { host->cleanup(); }},
        {"handleLogicalPort", "void NetworkTopologyAggregator::V2Sm::VelHost::handleLogicalPort(Vel::Name)",
         [&] { host->handleLogicalPort("g"); }},
        {"handleMlagRaw", "void NetworkTopologyAggregator::V2Sm::VelHost::handleMlagRaw(Vel::Name)",
         [&] { host->handleMlagRaw("m"); }},
        {"createV3Port",
         "NetworkTopologyV3::Port::Ptr NetworkTopologyAggregator::V2Sm::VelHost::VelPort::createV3Port()",
         [&] { port->createV3Port(); }},
        {"cleanup", "void NetworkTopologyAggregator::V2Sm::VelHost::VelPort::cleanup()",
         [&] { port->cleanup(); }},
        {"createV3PortGroup",
         "NetworkTopologyV3::PortGroup::Ptr "
         "NetworkTopologyAggregator::V2Sm::VelHost::VelPortGroup::createV3PortGroup()",
         [&] { group->createV3PortGroup(); }},
        {"handleMemberPort",
         "void NetworkTopologyAggregator::V2Sm::VelHost::VelPortGroup::handleMemberPort(Vel::Name)",
         [&] { group->handleMemberPort("p"); }},
        {"cleanup", "void NetworkTopologyAggregator::V2Sm::VelHost::VelPortGroup::cleanup()",
         [&] { group->cleanup(); }},
        {"createV3Mlag",
         "NetworkTopologyV3::MlagPort::Ptr "
         "NetworkTopologyAggregator::V2Sm::VelHost::VelMlag::createV3Mlag()",
         [&] { mlag->createV3Mlag(); }},
        {"cleanup", "void NetworkTopologyAggregator::V2Sm::VelHost::VelMlag::cleanup()",
         [&] { mlag->cleanup(); }},
        {"createV3Edge",
         "NetworkTopologyV3::DirectedEdge::Ptr NetworkTopologyAggregator::V2Sm::VelEdge::createV3Edge()",
         [&] { edge->createV3Edge(); }},
        {"handleToPort", "void NetworkTopologyAggregator::V2Sm::VelEdge::handleToPort(const PtrConst&)",
         [&] { edge->handleToPort(portV2); }},
        {"cleanup", "void NetworkTopologyAggregator::V2Sm::VelEdge::cleanup()", [&] { edge->cleanup(); }},
    };
    for (auto const & [function, message, operation] : cases) {
        SCOPED_TRACE(message);
        auto const trace = first(operation);
        EXPECT_EQ(trace.facility, "NetworkTopologyAggregator");
        EXPECT_EQ(trace.level, 5);
        EXPECT_EQ(trace.file, "V2Sm");
        EXPECT_GT(trace.line, 0);
        EXPECT_EQ(trace.function, function);
        EXPECT_EQ(trace.message, message);
    }
}

// Each trace point has a line of its own.
TEST_F(Traces, TellTheirLines) {
    TraceLog log;
    host->createV3Host();
    host->cleanup();
    host->handleLogicalPort("unknown");
    host->handleMlagRaw("unknown");
    ASSERT_EQ(log.traces().size(), 4U);
    for (std::size_t i = 1; i < 4; ++i) EXPECT_NE(log.traces()[i].line, log.traces()[i - 1].line);
}

TEST_F(Traces, ComeFromNoOtherOperation) {
    auto const port = host->port("p");
    TraceLog log;
    host->onHostname();
    host->onMlagSystemId();
    host->onMlagDomainId();
    host->onMlagState();
    host->onPort("p");
    host->onPortGroup("unknown");
    host->onPortvelImmediate();
    host->onPortGroupvelImmediate();
    host->onMlagvelImmediate();
    host->portIs(portV2);
    host->portDel("unknown");
    host->notifierIs(hostV2);
    host->hasNotificationActiveIs(false);
    host->hasNotificationActiveIs(true);
    port->v3PortIs(port->v3Port());
    sm->hostIs(hostV2);
    sm->hostDel("unknown");
    sm->edgeIs(models.v2->edge(portV2));
    sm->edgeDel(nullptr);
    sm->velV2()->onHost("a");
    sm->velV2()->onEdge(portV2);
    sm->velV2()->onHostvelImmediate();
    sm->velV2()->onEdgevelImmediate();
    EXPECT_THAT(log.functions(), IsEmpty());
}

TEST_F(Traces, OfOperationsThatFindNothingToDoAreWrittenAllTheSame) {
    sm->v3Del();
    TraceLog log;
    host->createV3Host();
    host->cleanup();
    host->port("p")->createV3Port();
    host->port("p")->cleanup();
    edge->cleanup();
    EXPECT_THAT(log.functions(),
                testing::ElementsAre("createV3Host", "cleanup", "createV3Port", "cleanup", "cleanup"));
}

}  // namespace
