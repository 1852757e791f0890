#include "translator/VelMlag.h"

#include <gmock/gmock.h>

#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"

namespace {

using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::Journal;
using TestSupport::WriteLog;

struct VelMlag : TestSupport::Followed {
    MlagV2::Ptr const mlag = hostV2->mlag("m");
};

TEST_F(VelMlag, IsMadeWithItsOwnNameFirstAndItsSecondaryNameSecond) {
    WriteLog log;
    hostV2->mlagIs("x", "x-secondary");
    EXPECT_THAT(log.taken(), ElementsAre("/host/a mlagIs('x', 'x-secondary')"));
    EXPECT_EQ(hostV3()->mlag("x")->name(), "x");
    EXPECT_EQ(hostV3()->mlag("x")->secondaryName(), "x-secondary");
    EXPECT_EQ(hostV3()->mlag("x-secondary"), nullptr);
}

TEST_F(VelMlag, PassesAnySecondaryNameOnUnchanged) {
    WriteLog log;
    hostV2->mlagIs("x", "");
    hostV2->mlagIs("y", "y");
    EXPECT_THAT(log.taken(), ElementsAre("/host/a mlagIs('x', '')", "/host/a mlagIs('y', 'y')"));
}

TEST_F(VelMlag, DoesNotFollowItsSecondaryName) {
    Journal journal;
    mlag->secondaryNameIs("other");
    EXPECT_THAT(journal.taken(), IsEmpty());
    auto const replacement = MlagV2::MlagV2Is("m", "replaced");
    hostV2->mlagIs(replacement);
    EXPECT_EQ(hostV3()->mlag("m")->secondaryName(), "m2");
}

TEST_F(VelMlag, DoesNotFollowItsPeerGroup) {
    Journal journal;
    mlag->peerPortGroupIs(hostV2->portGroupIs("h"));
    host->mlag("m")->onPeerPortGroup();
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace createV3PortGroup", "/host/a portGroupIs('h')", "VelPortGroup active"));
}

TEST_F(VelMlag, WritesTheCounterpartOfItsLocalGroup) {
    hostV2->portGroupIs("h");
    Journal journal;
    mlag->localPortGroupIs(hostV2->portGroup("h"));
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace toPortGroupV3", "/host/a/mlag/m localPortGroupIs(/host/a/portGroup/h)"));
    mlag->localPortGroupIs(nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("trace toPortGroupV3", "/host/a/mlag/m localPortGroupIs(null)"));
}

TEST_F(VelMlag, WritesNoLocalGroupForOneWithoutCounterpart) {
    WriteLog log;
    mlag->localPortGroupIs(PortGroupV2::PortGroupV2Is("x"));
    EXPECT_THAT(log.taken(), ElementsAre("/host/a/mlag/m localPortGroupIs(null)"));
}

TEST_F(VelMlag, ReboundTakesTypeAndLocalGroupOfItsNewMlag) {
    auto const other = MlagV2::MlagV2Is("m", "");
    other->typeIs(PortTypeV2::mlag);
    other->localPortGroupIs(hostV2->portGroup("g"));
    other->peerPortGroupIs(hostV2->portGroup("g"));
    Journal journal;
    host->mlag("m")->notifierIs(other);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace toPortTypeV3", "/host/a/mlag/m typeIs(mlag)", "trace toPortGroupV3",
                            "/host/a/mlag/m localPortGroupIs(/host/a/portGroup/g)"));
}

TEST_F(VelMlag, OfOneNameInTwoHostsAreTwoWithSecondaryNamesOfTheirOwn) {
    models.v2->hostIs("b")->mlagIs("m", "b2");
    EXPECT_EQ(models.v3->host("b")->mlag("m")->secondaryName(), "b2");
    EXPECT_EQ(hostV3()->mlag("m")->secondaryName(), "m2");
    EXPECT_NE(models.v3->host("b")->mlag("m"), hostV3()->mlag("m"));
}

}  // namespace
