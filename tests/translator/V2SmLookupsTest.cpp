#include <array>
#include <cstdint>

#include <gmock/gmock.h>

#include "finder/PortBaseFinder.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/Topologies.h"
#include "translator/V2Sm.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyV3::PortType;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::Journal;
using TestSupport::Trace;
using TestSupport::TraceLog;

// A port base of each kind, all of one name, of host "a", with and without counterparts.
struct Lookups : testing::Test {
    Lookups() {
        host->portIs(port);
        host->portGroupIs(group);
        host->mlagIs(mlag);
    }

    void addCounterparts() {
        auto const hostV3 = models.v3->hostIs("a");
        portV3 = hostV3->portIs("x");
        groupV3 = hostV3->portGroupIs("x");
        mlagV3 = hostV3->mlagIs("x", "y");
    }

    void expectNothingOfTheMembers() {
        EXPECT_EQ(sm->toPortV3(port), nullptr);
        EXPECT_EQ(sm->toPortGroupV3(group), nullptr);
        EXPECT_EQ(sm->toMlagV3(mlag), nullptr);
        for (PortBaseV2 * const portBase : std::array<PortBaseV2 *, 3>{port.get(), group.get(), mlag.get()}) {
            EXPECT_EQ(sm->toPortBaseV3(portBase), nullptr);
        }
    }

    TestSupport::Models const models;
    HostV2::Ptr const host = models.v2->hostIs("a");
    PortV2::Ptr const port = PortV2::PortV2Is("x");
    PortGroupV2::Ptr const group = PortGroupV2::PortGroupV2Is("x");
    MlagV2::Ptr const mlag = MlagV2::MlagV2Is("x", "y");
    // Bound to the output alone, so that what is in there is the test's business.
    V2Sm::Ptr const sm = NetworkTopologyAggregator::v2SmFactory("sm", nullptr, models.v3);
    NetworkTopologyV3::Port::Ptr portV3;
    NetworkTopologyV3::PortGroup::Ptr groupV3;
    NetworkTopologyV3::MlagPort::Ptr mlagV3;
};

TEST_F(Lookups, OfNullGiveNull) {
    EXPECT_EQ(sm->toHostV3(nullptr), nullptr);
    EXPECT_EQ(sm->toPortBaseV3(nullptr), nullptr);
    EXPECT_EQ(sm->toPortV3(nullptr), nullptr);
    EXPECT_EQ(sm->toPortGroupV3(nullptr), nullptr);
    EXPECT_EQ(sm->toMlagV3(nullptr), nullptr);
}

TEST_F(Lookups, GoByTheNamesOfHostAndMember) {
    addCounterparts();
    EXPECT_EQ(sm->toHostV3(host), models.v3->host("a"));
    EXPECT_EQ(sm->toPortV3(port), portV3.get());
    EXPECT_EQ(sm->toPortGroupV3(group), groupV3.get());
    EXPECT_EQ(sm->toMlagV3(mlag), mlagV3.get());
}

TEST_F(Lookups, OfAPortBaseTellTheThreeKindsOfOneNameApart) {
    addCounterparts();
    EXPECT_EQ(sm->toPortBaseV3(port), portV3);
    EXPECT_EQ(sm->toPortBaseV3(group), groupV3);
    EXPECT_EQ(sm->toPortBaseV3(mlag), mlagV3);
}

TEST_F(Lookups, DoNotFindAnotherKindOfTheSameName) {
    models.v3->hostIs("a")->portGroupIs("x");
    EXPECT_EQ(sm->toPortV3(port), nullptr);
    EXPECT_EQ(sm->toPortBaseV3(port), nullptr);
    EXPECT_EQ(sm->toMlagV3(mlag), nullptr);
    EXPECT_EQ(sm->toPortBaseV3(mlag), nullptr);
    models.v3->host("a")->portGroupDel("x");
    models.v3->host("a")->portIs("x");
    EXPECT_EQ(sm->toPortGroupV3(group), nullptr);
    EXPECT_EQ(sm->toPortBaseV3(group), nullptr);
}

TEST_F(Lookups, DoNotFindTheSameNameInAnotherHost) {
    auto const other = models.v3->hostIs("b");
    models.v3->hostIs("a");
    other->portIs("x");
    other->portGroupIs("x");
    other->mlagIs("x", "y");
    expectNothingOfTheMembers();
}

TEST_F(Lookups, OfAMemberThatIsNotMirroredGiveNull) {
    models.v3->hostIs("a");
    expectNothingOfTheMembers();
}

TEST_F(Lookups, WithoutTheVersion3HostGiveNull) {
    EXPECT_EQ(sm->toHostV3(host), nullptr);
    expectNothingOfTheMembers();
}

TEST_F(Lookups, WithoutTheOutputStatusGiveNull) {
    addCounterparts();
    sm->v3Del();
    EXPECT_EQ(sm->toHostV3(host), nullptr);
    expectNothingOfTheMembers();
}

TEST_F(Lookups, OfAMemberThatHasLeftItsHostGiveNull) {
    addCounterparts();
    host->portDel("x");
    host->portGroupDel("x");
    host->mlagDel("x");
    expectNothingOfTheMembers();
}

TEST_F(Lookups, OfAMemberOfNoHostGiveNull) {
    addCounterparts();
    EXPECT_EQ(sm->toPortV3(PortV2::PortV2Is("x")), nullptr);
    EXPECT_EQ(sm->toPortGroupV3(PortGroupV2::PortGroupV2Is("x")), nullptr);
    EXPECT_EQ(sm->toMlagV3(MlagV2::MlagV2Is("x", "y")), nullptr);
    EXPECT_EQ(sm->toPortBaseV3(PortV2::PortV2Is("x")), nullptr);
}

TEST_F(Lookups, GoByNameAlsoForAHostOutsideTheStatus) {
    addCounterparts();
    auto const stray = HostV2::HostV2Is("a");
    EXPECT_EQ(sm->toHostV3(stray), models.v3->host("a"));
    EXPECT_EQ(sm->toPortV3(stray->portIs("x")), portV3.get());
    EXPECT_EQ(sm->toPortBaseV3(stray->mlagIs("x", "y")), mlagV3);
}

TEST_F(Lookups, AskTheOutputThatIsBoundNow) {
    addCounterparts();
    auto const other = NetworkTopologyV3::Status::StatusIs();
    auto const otherPort = other->hostIs("a")->portIs("x");
    sm->v3Is(other);
    EXPECT_EQ(sm->toHostV3(host), other->host("a"));
    EXPECT_EQ(sm->toPortV3(port), otherPort.get());
    EXPECT_EQ(sm->toPortBaseV3(port), otherPort);
    EXPECT_EQ(sm->toPortGroupV3(group), nullptr);
}

TEST_F(Lookups, FindObjectsOfAnyName) {
    for (std::string_view const name : {std::string_view(), std::string_view("\0", 1),
                                        std::string_view("a\0b", 3), std::string_view("\xff\x80")}) {
        auto const hostV2 = models.v2->hostIs(name);
        auto const hostV3 = models.v3->hostIs(name);
        auto const port = hostV3->portIs(name);
        auto const group = hostV3->portGroupIs(name);
        auto const mlag = hostV3->mlagIs(name, name);
        EXPECT_EQ(sm->toHostV3(hostV2), hostV3);
        EXPECT_EQ(sm->toPortV3(hostV2->portIs(name)), port.get());
        EXPECT_EQ(sm->toPortBaseV3(hostV2->portGroupIs(name)), group);
        EXPECT_EQ(sm->toMlagV3(hostV2->mlagIs(name, name)), mlag.get());
    }
    EXPECT_EQ(models.v3->host().size(), 4U);
}

TEST_F(Lookups, LeaveNoReferenceBehindButTheOneTheyReturn) {
    addCounterparts();
    auto const hostV3 = models.v3->host("a");
    std::uint32_t const hosts = hostV3->references();
    std::uint32_t const ports = portV3->references();
    sm->toPortV3(port);
    sm->toPortGroupV3(group);
    sm->toMlagV3(mlag);
    sm->toPortBaseV3(port);
    EXPECT_EQ(portV3->references(), ports);
    EXPECT_EQ(hostV3->references(), hosts);
    auto const held = sm->toPortBaseV3(port);
    EXPECT_EQ(portV3->references(), ports + 1);
}

TEST_F(Lookups, WriteNothingAndCreateNothing) {
    Journal journal;
    sm->toHostV3(host);
    expectNothingOfTheMembers();
    sm->toPortTypeV3(PortTypeV2::mlag);
    for (auto const & line : journal.lines()) EXPECT_THAT(line, testing::StartsWith("trace to"));
    EXPECT_EQ(models.v3->host().size(), 0U);
}

TEST_F(Lookups, TraceTheirSignaturesAndShortNames) {
    TraceLog traces;
    sm->toHostV3(nullptr);
    sm->toPortBaseV3(nullptr);
    sm->toPortV3(nullptr);
    sm->toPortGroupV3(nullptr);
    sm->toMlagV3(nullptr);
    sm->toPortTypeV3(PortTypeV2::unknown);
    EXPECT_THAT(
        traces.messages(),
        ElementsAre("NetworkTopologyV3::Host::Ptr NetworkTopologyAggregator::V2Sm::toHostV3(const PtrConst&)",
                    "NetworkTopologyV3::PortBase::Ptr "
                    "NetworkTopologyAggregator::V2Sm::toPortBaseV3(const PtrConst&)",
                    "NetworkTopologyV3::Port* NetworkTopologyAggregator::V2Sm::toPortV3(const PtrConst&)",
                    "NetworkTopologyV3::PortGroup* "
                    "NetworkTopologyAggregator::V2Sm::toPortGroupV3(const PtrConst&)",
                    "NetworkTopologyV3::MlagPort* NetworkTopologyAggregator::V2Sm::toMlagV3(const PtrConst&)",
                    "NetworkTopologyV3::PortType "
                    "NetworkTopologyAggregator::V2Sm::toPortTypeV3(NetworkTopology::PortTypeV2)"));
    EXPECT_THAT(traces.functions(), ElementsAre("toHostV3", "toPortBaseV3", "toPortV3", "toPortGroupV3",
                                                "toMlagV3", "toPortTypeV3"));
    for (Trace const & trace : traces.traces()) {
        EXPECT_EQ(trace.file, "V2Sm");
        EXPECT_EQ(trace.facility, "NetworkTopologyAggregator");
        EXPECT_EQ(trace.level, 5);
    }
}

TEST_F(Lookups, TraceOnceAlsoWhenTheyFindSomething) {
    addCounterparts();
    TraceLog traces;
    sm->toHostV3(host);
    sm->toPortBaseV3(group);
    sm->toPortV3(port);
    sm->toPortGroupV3(group);
    sm->toMlagV3(mlag);
    EXPECT_THAT(traces.functions(),
                ElementsAre("toHostV3", "toPortBaseV3", "toPortV3", "toPortGroupV3", "toMlagV3"));
}

// A finder is made for a lookup and goes with it; none is made where there is nothing to look in.
TEST_F(Lookups, OfAPortBaseWithoutHostMakeNoFinder) {
    addCounterparts();
    sm->toPortBaseV3(port);
    auto const made = [] {
        return NetworkTopologyAggregator::PortBaseFinder::velAllocTrackTypeInfo_->total();
    };
    std::uint64_t const before = made();
    sm->toPortBaseV3(PortV2::PortV2Is("x"));
    sm->toPortBaseV3(nullptr);
    EXPECT_EQ(made(), before);
    sm->toPortBaseV3(port);
    EXPECT_EQ(made(), before + 1);
    EXPECT_EQ(NetworkTopologyAggregator::PortBaseFinder::velAllocTrackTypeInfo_->live(), 0U);
}

TEST_F(Lookups, OfTheDefinedPortTypesMapEachToItself) {
    EXPECT_EQ(sm->toPortTypeV3(PortTypeV2::port), PortType::port);
    EXPECT_EQ(sm->toPortTypeV3(PortTypeV2::portGroup), PortType::portGroup);
    EXPECT_EQ(sm->toPortTypeV3(PortTypeV2::mlag), PortType::mlag);
    for (std::uint32_t const value : {1U, 2U, 3U}) {
        EXPECT_EQ(sm->toPortTypeV3(PortTypeV2{value}), PortType{value});
    }
}

TEST_F(Lookups, OfAnyOtherPortTypeGiveUnknown) {
    for (std::uint32_t const value : {0U, 4U, 5U, 257U, 0x80000001U, 0xfffffffdU, 0xffffffffU}) {
        EXPECT_EQ(sm->toPortTypeV3(PortTypeV2{value}), PortType{0}) << value;
    }
}

TEST_F(Lookups, OfAMemberWhoseHostHasLeftTheStatusGoByNameAsBefore) {
    addCounterparts();
    models.v2->hostDel("a");
    EXPECT_EQ(sm->toPortV3(port), portV3.get());
    EXPECT_EQ(sm->toPortBaseV3(mlag), mlagV3);
}

TEST_F(Lookups, OfAMemberWhoseHostHasDiedGiveNull) {
    addCounterparts();
    auto stray = HostV2::HostV2Is("a");
    auto const orphan = stray->portIs("x");
    EXPECT_EQ(sm->toPortV3(orphan), portV3.get());
    stray = nullptr;
    EXPECT_EQ(sm->toPortV3(orphan), nullptr);
    EXPECT_EQ(sm->toPortBaseV3(orphan), nullptr);
}

}  // namespace
