#include "translator/VelPortGroup.h"

#include <gmock/gmock.h>

#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"

namespace {

using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using TestSupport::Journal;
using TestSupport::WriteLog;

struct VelPortGroup : TestSupport::Followed {
    PortGroupV2::Ptr const group = hostV2->portGroup("g");
    NetworkTopologyV3::PortGroup::Ptr const groupV3 = hostV3()->portGroup("g");
    Vel::Ptr<V2Sm::VelHost::VelPortGroup> const reactor = host->portGroup("g");
};

// Members

TEST_F(VelPortGroup, WritesTheCounterpartOfAMember) {
    hostV2->portIs("q");
    Journal journal;
    group->memberPortIs("q", hostV2->port("q"));
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleMemberPort", "trace toPortV3",
                                             "/host/a/portGroup/g memberPortIs(/host/a/port/q)"));
    EXPECT_EQ(groupV3->memberPort("q"), hostV3()->port("q"));
}

TEST_F(VelPortGroup, WritesANullMemberForAPortWithoutCounterpart) {
    Journal journal;
    group->memberPortIs("x", PortV2::PortV2Is("x"));
    group->memberPortIs("y", nullptr);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace handleMemberPort", "trace toPortV3",
                            "/host/a/portGroup/g memberPortIs(null)", "trace handleMemberPort",
                            "trace toPortV3", "/host/a/portGroup/g memberPortIs(null)"));
    EXPECT_EQ(groupV3->memberPort().size(), 1U);
}

TEST_F(VelPortGroup, DeletesAMemberByItsNameWhetherOrNotItWasOne) {
    group->memberPortIs("x", nullptr);
    Journal journal;
    group->memberPortDel("p");
    group->memberPortDel("x");
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace handleMemberPort", "/host/a/portGroup/g memberPortDel('p')",
                            "trace handleMemberPort", "/host/a/portGroup/g memberPortDel('x')"));
    EXPECT_EQ(groupV3->memberPort().size(), 0U);
}

TEST_F(VelPortGroup, DeletesAllMembersNameByName) {
    group->memberPortIs("q", hostV2->portIs("q"));
    WriteLog log;
    group->memberPortDelAll();
    EXPECT_THAT(log.taken(), UnorderedElementsAre("/host/a/portGroup/g memberPortDel('p')",
                                                  "/host/a/portGroup/g memberPortDel('q')"));
}

TEST_F(VelPortGroup, IgnoresMembersWhileItIsRetired) {
    reactor->velDoZombieReactors(true);
    reactor->hasNotificationActiveIs(true);
    Journal journal;
    group->memberPortDel("p");
    reactor->onMemberPort("p");
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_NE(groupV3->memberPort("p"), nullptr);
    // Only the notification asks.
    reactor->handleMemberPort("p");
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace handleMemberPort", "/host/a/portGroup/g memberPortDel('p')"));
}

TEST_F(VelPortGroup, IgnoresNotificationsOfMembersWithoutName) {
    Journal journal;
    reactor->onMemberPortvelImmediate();
    reactor->onMemberPort();
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TEST_F(VelPortGroup, OfAGroupThatHasMembersWritesNoneByItself) {
    auto const other = PortGroupV2::PortGroupV2Is("x");
    other->memberPortIs("p", hostV2->port("p"));
    other->mlagIs(hostV2->mlag("m"));
    WriteLog log;
    hostV2->portGroupIs(other);
    EXPECT_THAT(log.taken(), ElementsAre("/host/a portGroupIs('x')"));
    EXPECT_EQ(hostV3()->portGroup("x")->mlag(), nullptr);
}

TEST_F(VelPortGroup, ReboundTakesTypeAndMlagButNoMembers) {
    auto const other = PortGroupV2::PortGroupV2Is("g");
    other->memberPortIs("q", hostV2->portIs("q"));
    other->typeIs(PortTypeV2::portGroup);
    other->mlagIs(hostV2->mlag("m"));
    Journal journal;
    reactor->notifierIs(other);
    EXPECT_THAT(journal.taken(), ElementsAre("trace toPortTypeV3", "/host/a/portGroup/g typeIs(portGroup)",
                                             "trace toMlagV3", "/host/a/portGroup/g mlagIs(/host/a/mlag/m)"));
    EXPECT_NE(groupV3->memberPort("p"), nullptr);
    EXPECT_EQ(groupV3->memberPort("q"), nullptr);
}

TEST_F(VelPortGroup, WritesNoMemberWithoutObjectOutputOwnerOrTranslator) {
    struct {
        char const * name;
        std::function<void()> take;
    } const cases[] = {
        {"translator", [&] { host->ownerIs(nullptr); }},
        {"owner", [&] { reactor->ownerIs(nullptr); }},
        {"output", [&] { reactor->v3PortGroupIs(nullptr); }},
        {"object", [&] { reactor->notifierIs(nullptr); }},
    };
    for (auto const & [name, take] : cases) {
        SCOPED_TRACE(name);
        take();
        Journal journal;
        reactor->handleMemberPort("p");
        EXPECT_THAT(journal.taken(), ElementsAre("trace handleMemberPort"));
    }
    host->ownerIs(sm.get());
}

// MLAG

TEST_F(VelPortGroup, WritesTheCounterpartOfItsMlag) {
    hostV2->mlagIs("n", "");
    Journal journal;
    group->mlagIs(hostV2->mlag("n"));
    EXPECT_THAT(journal.taken(), ElementsAre("trace toMlagV3", "/host/a/portGroup/g mlagIs(/host/a/mlag/n)"));
    group->mlagIs(nullptr);
    EXPECT_THAT(journal.taken(), ElementsAre("trace toMlagV3", "/host/a/portGroup/g mlagIs(null)"));
}

TEST_F(VelPortGroup, WritesNoMlagForOneWithoutCounterpart) {
    WriteLog log;
    group->mlagIs(MlagV2::MlagV2Is("x", ""));
    EXPECT_THAT(log.taken(), ElementsAre("/host/a/portGroup/g mlagIs(null)"));
}

}  // namespace
