// The work of one change does not depend on how large the models are.
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/Allocations.h"
#include "tests/translator/support/FlagLog.h"
#include "tests/translator/support/Topologies.h"
#include "tests/translator/support/TraceLog.h"
#include "tests/translator/support/WalkCount.h"
#include "tests/translator/support/WriteLog.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyAggregator::v2SmFactory;
using TestSupport::AllocationCount;
using TestSupport::FlagLog;
using TestSupport::TraceLog;
using TestSupport::WalkCount;
using TestSupport::WriteLog;

struct Work {
    std::size_t writes = 0;
    std::size_t lookups = 0;  // And the other traced operations.
    std::size_t flags = 0;
    std::uint64_t steps = 0;
    std::uint64_t allocations = 0;

    friend bool operator==(Work const &, Work const &) = default;
    friend void PrintTo(Work const & work, std::ostream * out) {
        *out << work.writes << " writes, " << work.lookups << " lookups, " << work.flags << " flags, "
             << work.steps << " steps, " << work.allocations << " allocations";
    }
};

// A fabric in which every collection grows with `ports`: host "a" has so many of them. No size is near the
// point where some collection takes more buckets.
struct Fabric {
    explicit Fabric(int ports) {
        int const others = ports / 25;
        for (int i = 0; i < ports; ++i) a->portIs("p" + std::to_string(i))->portGroupIs(g);
        for (int i = 0; i < others; ++i) {
            auto const name = "n" + std::to_string(i);
            auto const port = a->port("p" + std::to_string(i));
            auto const group = a->portGroupIs(name);
            auto const mlag = a->mlagIs(name, "");
            g->memberPortIs(port->name(), port);
            a->logicalPortIs(name, group);
            a->mlagRawIs(name, mlag);
            models.v2->edgeIs(port)->toPortIs(group, true);
            edge->toPortIs(port, true);
            TestSupport::addHostWithOneOfEach(*models.v2, name);
        }
        sm = v2SmFactory("sm", models.v2, models.v3);
    }

    TestSupport::Models const models = {};
    HostV2::Ptr const a = TestSupport::addHostWithOneOfEach(*models.v2, "a");
    HostV2::Ptr const b = TestSupport::addHostWithOneOfEach(*models.v2, "b");
    PortGroupV2::Ptr const g = a->portGroup("g");
    MlagV2::Ptr const m = a->mlag("m");
    PortGroupV2::Ptr const groupOfB = b->portGroup("g");
    Vel::Ptr<PortV2> const p = a->port("p");
    DirectedEdgeV2::Ptr const edge = models.v2->edgeIs(p);
    V2Sm::Ptr sm;

    // What stands nowhere yet. Names are made beforehand, too.
    Vel::Name const name = "new";
    Vel::Name const text = "some text that is long enough";
    Vel::Ptr<PortV2> const newPort = PortV2::PortV2Is(name);
    Vel::Ptr<PortV2> const otherPort = PortV2::PortV2Is("p");
    PortGroupV2::Ptr const newGroup = PortGroupV2::PortGroupV2Is(name);
    PortGroupV2::Ptr const otherGroup = PortGroupV2::PortGroupV2Is("g");
    MlagV2::Ptr const newMlag = MlagV2::MlagV2Is(name, text);
    MlagV2::Ptr const otherMlag = MlagV2::MlagV2Is("m", text);
    HostV2::Ptr const newHost = HostV2::HostV2Is(name);
    HostV2::Ptr const otherB = HostV2::HostV2Is("b");
    DirectedEdgeV2::Ptr const otherEdge = DirectedEdgeV2::DirectedEdgeV2Is(p);
};

struct MeasuredChange {
    char const * name;
    void (*make)(Fabric & in);
    void (*undo)(Fabric & in);
};

// Every kind; what empties a collection empties one of the small host.
constexpr MeasuredChange changes[] = {
    {"hostname", [](Fabric & in) { in.a->hostnameIs(in.text); },
     [](Fabric & in) { in.a->hostnameIs(in.name); }},
    {"mlagSystemId",
     [](Fabric & in) {
         in.a->mlagSystemIdIs({2, 0, 0, 0, 0, 9});
     },
     [](Fabric & in) { in.a->mlagSystemIdIs({}); }},
    {"mlagDomainId", [](Fabric & in) { in.a->mlagDomainIdIs(in.text); },
     [](Fabric & in) { in.a->mlagDomainIdIs(in.name); }},
    {"mlagState", [](Fabric & in) { in.a->mlagStateIs(Mlag::MlagState::inactive); },
     [](Fabric & in) { in.a->mlagStateIs(Mlag::MlagState::active); }},
    {"mlagPeerLink", [](Fabric & in) { in.a->mlagPeerLinkIs(in.g); },
     [](Fabric & in) { in.a->mlagPeerLinkIs(in.p); }},
    {"localhost", [](Fabric & in) { in.models.v2->localhostIs(in.b); },
     [](Fabric & in) { in.models.v2->localhostIs(in.a); }},
    {"port added", [](Fabric & in) { in.a->portIs(in.newPort); },
     [](Fabric & in) { in.a->portDel(in.name); }},
    {"port removed", [](Fabric & in) { in.a->portDel(in.p->name()); },
     [](Fabric & in) { in.a->portIs(in.p); }},
    {"port replaced", [](Fabric & in) { in.a->portIs(in.otherPort); },
     [](Fabric & in) { in.a->portIs(in.p); }},
    {"port type", [](Fabric & in) { in.p->typeIs(PortTypeV2::mlag); },
     [](Fabric & in) { in.p->typeIs(PortTypeV2::port); }},
    {"group of a port", [](Fabric & in) { in.p->portGroupIs(nullptr); },
     [](Fabric & in) { in.p->portGroupIs(in.g); }},
    {"group added", [](Fabric & in) { in.a->portGroupIs(in.newGroup); },
     [](Fabric & in) { in.a->portGroupDel(in.name); }},
    {"group replaced", [](Fabric & in) { in.b->portGroupIs(in.otherGroup); },
     [](Fabric & in) { in.b->portGroupIs(in.groupOfB); }},
    {"member added", [](Fabric & in) { in.g->memberPortIs(in.name, in.p); },
     [](Fabric & in) { in.g->memberPortDel(in.name); }},
    {"member removed", [](Fabric & in) { in.g->memberPortDel(in.p->name()); },
     [](Fabric & in) { in.g->memberPortIs(in.p->name(), in.p); }},
    {"MLAG of a group", [](Fabric & in) { in.g->mlagIs(nullptr); }, [](Fabric & in) { in.g->mlagIs(in.m); }},
    {"MLAG added", [](Fabric & in) { in.a->mlagIs(in.newMlag); },
     [](Fabric & in) { in.a->mlagDel(in.name); }},
    {"MLAG replaced", [](Fabric & in) { in.a->mlagIs(in.otherMlag); },
     [](Fabric & in) { in.a->mlagIs(in.m); }},
    {"group of an MLAG", [](Fabric & in) { in.m->localPortGroupIs(nullptr); },
     [](Fabric & in) { in.m->localPortGroupIs(in.g); }},
    {"raw MLAG added", [](Fabric & in) { in.a->mlagRawIs(in.name, in.m); },
     [](Fabric & in) { in.a->mlagRawDel(in.name); }},
    {"raw MLAG removed", [](Fabric & in) { in.a->mlagRawDel("m"); },
     [](Fabric & in) { in.a->mlagRawIs("m", in.m); }},
    {"logical port added", [](Fabric & in) { in.a->logicalPortIs(in.name, in.p); },
     [](Fabric & in) { in.a->logicalPortDel(in.name); }},
    {"logical port removed", [](Fabric & in) { in.a->logicalPortDel("g"); },
     [](Fabric & in) { in.a->logicalPortIs("g", in.g); }},
    {"host added", [](Fabric & in) { in.models.v2->hostIs(in.newHost); },
     [](Fabric & in) { in.models.v2->hostDel(in.name); }},
    {"host replaced", [](Fabric & in) { in.models.v2->hostIs(in.otherB); },
     [](Fabric & in) { in.models.v2->hostIs(in.b); }},
    {"host removed", [](Fabric & in) { in.models.v2->hostDel("b"); },
     [](Fabric & in) { in.models.v2->hostIs(in.b); }},
    {"edge added", [](Fabric & in) { in.models.v2->edgeIs(in.g); },
     [](Fabric & in) { in.models.v2->edgeDel(in.g); }},
    {"edge replaced", [](Fabric & in) { in.models.v2->edgeIs(in.otherEdge); },
     [](Fabric & in) { in.models.v2->edgeIs(in.edge); }},
    {"destination added", [](Fabric & in) { in.edge->toPortIs(in.m, true); },
     [](Fabric & in) { in.edge->toPortDel(in.m); }},
    {"destination removed", [](Fabric & in) { in.edge->toPortDel(in.a->port("p0")); },
     [](Fabric & in) { in.edge->toPortIs(in.a->port("p0"), true); }},
    {"flag of a destination", [](Fabric & in) { in.edge->toPortIs(in.a->port("p0"), false); },
     [](Fabric & in) { in.edge->toPortIs(in.a->port("p0"), true); }},
    {"all ports removed", [](Fabric & in) { in.b->portDelAll(); }, [](Fabric & in) { in.b->portIs("p"); }},
    {"all groups removed", [](Fabric & in) { in.b->portGroupDelAll(); },
     [](Fabric & in) { in.b->portGroupIs("g"); }},
    {"all MLAGs removed", [](Fabric & in) { in.b->mlagDelAll(); },
     [](Fabric & in) { in.b->mlagIs("m", "m2"); }},
    {"edge removed", [](Fabric & in) { in.models.v2->edgeDel(in.g); },
     [](Fabric & in) { in.models.v2->edgeIs(in.g); }},
    {"same input again", [](Fabric & in) { in.sm->v2Is(in.models.v2); }, [](Fabric &) {}},
};

// What one change takes, together with what the model itself does about it.
Work workOf(MeasuredChange const & change, Fabric & in) {
    // The first time may make something that stays.
    change.make(in);
    change.undo(in);
    Work work;
    {
        WalkCount const steps;
        AllocationCount const allocations;
        change.make(in);
        work.allocations = allocations.value();
        work.steps = steps.value();
    }
    change.undo(in);
    {
        WriteLog const writes;
        TraceLog const traces;
        FlagLog const flags;
        change.make(in);
        work.writes = writes.size();
        work.lookups = traces.traces().size();
        work.flags = flags.writes().size();
    }
    change.undo(in);
    return work;
}

TEST(ChangeCost, OfEveryKindOfChangeIsTheSameInAFabricAHundredTimesAsLarge) {
    Fabric small(1'000);
    Fabric large(100'000);
    for (MeasuredChange const & change : changes) {
        SCOPED_TRACE(change.name);
        auto const work = workOf(change, small);
        EXPECT_EQ(workOf(change, large), work);
        EXPECT_LE(work.steps, 12U);
    }
}

// That the counters count: what goes over a collection takes work for each of its members.
TEST(ChangeCost, OfGoingOverACollectionIsThatOfItsMembers) {
    auto const workOfGoingOver = [](int ports) {
        Fabric fabric(ports);
        Work work;
        {
            WalkCount const steps;
            fabric.sm->populateV3();
            work.steps = steps.value();
        }
        WriteLog const writes;
        fabric.g->memberPortDelAll();
        work.writes = writes.size();
        return work;
    };
    auto const small = workOfGoingOver(1'000);
    auto const large = workOfGoingOver(3'000);
    EXPECT_EQ(small.writes, 41U);
    EXPECT_EQ(large.writes, 121U);
    EXPECT_GT(large.steps, small.steps + 500U);
}

}  // namespace
