// Ports, port groups and MLAG ports: their attributes, and what refers to what.
#include "platform/NetworkTopologyV3/PortBase.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/NetworkTopologyV3/Recorders.h"

namespace NetworkTopologyV3 {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PortBaseTest : public testing::Test {
protected:
    Vel::Ptr<Host> host = Status::StatusIs()->hostIs("leaf-1");
    Vel::Ptr<Port> port = host->portIs("eth-1");
    Vel::Ptr<PortGroup> group = host->portGroupIs("bond-1");
    Vel::Ptr<MlagPort> mlag = host->mlagIs("m-1", "m-1b");
    Journal journal;
};

TEST_F(PortBaseTest, StartsWithDefaults) {
    EXPECT_EQ(port->type(), PortType::unknown);
    EXPECT_EQ(port->portGroup(), nullptr);
    EXPECT_EQ(group->type(), PortType::unknown);
    EXPECT_EQ(group->mlag(), nullptr);
    EXPECT_TRUE(group->memberPort().empty());
    EXPECT_EQ(mlag->type(), PortType::unknown);
    EXPECT_EQ(mlag->localPortGroup(), nullptr);
}

TEST_F(PortBaseTest, TellsOfItsType) {
    for (Vel::Ptr<PortBase> const & portBase :
         {PortBase::Ptr(port), PortBase::Ptr(group), PortBase::Ptr(mlag)}) {
        auto const recorder = recorderOf<PortBaseRecorder>(portBase, journal);
        portBase->typeIs(PortType::mlag);
        EXPECT_EQ(portBase->type(), PortType::mlag);
        EXPECT_THAT(journal.take(), ElementsAre("onType()"));
        portBase->typeIs(PortType::mlag);
        EXPECT_THAT(journal.take(), IsEmpty());
        portBase->typeIs(static_cast<PortType>(0xffffffffu));
        EXPECT_EQ(portBase->type(), static_cast<PortType>(0xffffffffu));
        EXPECT_THAT(journal.take(), ElementsAre("onType()"));
    }
}

TEST_F(PortBaseTest, APortTellsOfItsPortGroup) {
    auto const recorder = recorderOf<PortRecorder>(port, journal);
    port->portGroupIs(group.get());
    EXPECT_EQ(port->portGroup(), group.get());
    EXPECT_THAT(journal.take(), ElementsAre("onPortGroup()"));
    port->portGroupIs(group.get());
    EXPECT_THAT(journal.take(), IsEmpty());
    port->portGroupIs(nullptr);
    EXPECT_EQ(port->portGroup(), nullptr);
    EXPECT_THAT(journal.take(), ElementsAre("onPortGroup()"));
    port->portGroupIs(nullptr);
    EXPECT_THAT(journal.take(), IsEmpty());
}

TEST_F(PortBaseTest, APortGroupTellsOfItsMlagPort) {
    auto const recorder = recorderOf<PortGroupRecorder>(group, journal);
    group->mlagIs(mlag.get());
    EXPECT_EQ(group->mlag(), mlag.get());
    EXPECT_THAT(journal.take(), ElementsAre("onMlag()"));
    group->mlagIs(mlag.get());
    EXPECT_THAT(journal.take(), IsEmpty());
    group->mlagIs(nullptr);
    EXPECT_EQ(group->mlag(), nullptr);
    EXPECT_THAT(journal.take(), ElementsAre("onMlag()"));
}

TEST_F(PortBaseTest, AnMlagPortTellsOfItsLocalPortGroup) {
    auto const recorder = recorderOf<MlagPortRecorder>(mlag, journal);
    mlag->localPortGroupIs(group);
    EXPECT_EQ(mlag->localPortGroup(), group);
    EXPECT_THAT(journal.take(), ElementsAre("onLocalPortGroup()"));
    mlag->localPortGroupIs(mlag->localPortGroup());
    EXPECT_THAT(journal.take(), IsEmpty());
    mlag->localPortGroupIs(nullptr);
    EXPECT_EQ(mlag->localPortGroup(), nullptr);
    EXPECT_THAT(journal.take(), ElementsAre("onLocalPortGroup()"));
}

TEST_F(PortBaseTest, AMlagPortKeepsItsLocalPortGroupAndThatItsMembers) {
    mlag->localPortGroupIs(group);
    group->memberPortIs(port);
    host = nullptr;
    port = nullptr;
    group = nullptr;
    EXPECT_EQ(mlag->localPortGroup()->memberPort("eth-1")->name(), "eth-1");
}

TEST_F(PortBaseTest, ReferencesBackAreNotCounted) {
    port->portGroupIs(group.get());
    group->mlagIs(mlag.get());
    EXPECT_EQ(group->references(), 2U);  // The host's and ours.
    EXPECT_EQ(mlag->references(), 2U);
}

TEST_F(PortBaseTest, ReferencesBackTurnNullSilentlyWhenTheirTargetDies) {
    Vel::Ptr<Port> const second = host->portIs("eth-2");
    port->portGroupIs(group.get());
    second->portGroupIs(group.get());
    group->mlagIs(mlag.get());
    auto const portRecorder = recorderOf<PortRecorder>(port, journal);
    auto const groupRecorder = recorderOf<PortGroupRecorder>(group, journal);
    host->mlagDelAll();
    EXPECT_EQ(group->mlag(), mlag.get());
    mlag = nullptr;
    EXPECT_EQ(group->mlag(), nullptr);

    groupRecorder->notifierIs(nullptr);
    host->portGroupDelAll();
    EXPECT_EQ(port->portGroup(), group.get());
    group = nullptr;
    EXPECT_EQ(port->portGroup(), nullptr);
    EXPECT_EQ(second->portGroup(), nullptr);
    EXPECT_THAT(journal.take(), IsEmpty());

    group = host->portGroupIs("bond-1");
    port->portGroupIs(group.get());
    EXPECT_EQ(port->portGroup(), group.get());
    EXPECT_EQ(second->portGroup(), nullptr);
    EXPECT_THAT(journal.take(), ElementsAre("onPortGroup()"));
}

TEST_F(PortBaseTest, AWriteOfNullWhereTheTargetHasDiedIsEqual) {
    port->portGroupIs(group.get());
    host->portGroupDel("bond-1");
    group = nullptr;
    auto const recorder = recorderOf<PortRecorder>(port, journal);
    port->portGroupIs(nullptr);
    EXPECT_THAT(journal.take(), IsEmpty());
}

TEST_F(PortBaseTest, WhatPointsBackMayDieFirst) {
    port->portGroupIs(group.get());
    group->mlagIs(mlag.get());
    host->portDel("eth-1");
    port = nullptr;
    host->portGroupDel("bond-1");
    group = nullptr;
    EXPECT_EQ(host->mlag("m-1"), mlag);
}

TEST_F(PortBaseTest, PortGroupAndMlagPortThatReferToEachOtherKeepNobodyAlive) {
    auto const ports = Port::velAllocTrackTypeInfo_->live();
    auto const groups = PortGroup::velAllocTrackTypeInfo_->live();
    auto const mlags = MlagPort::velAllocTrackTypeInfo_->live();
    {
        Vel::Ptr<Status> const status = Status::StatusIs();
        Vel::Ptr<Host> const other = status->hostIs("leaf-2");
        Vel::Ptr<Port> const member = other->portIs("eth-1");
        Vel::Ptr<PortGroup> const bond = other->portGroupIs("bond-1");
        Vel::Ptr<MlagPort> const local = other->mlagIs("m-1", "");
        bond->memberPortIs(member);
        member->portGroupIs(bond.get());
        local->localPortGroupIs(bond);
        bond->mlagIs(local.get());
        other->logicalPortIs(local);
        other->mlagRawIs(local);
        other->mlagPeerLinkIs(bond);
        status->localhostIs(other);
    }
    EXPECT_EQ(Port::velAllocTrackTypeInfo_->live(), ports);
    EXPECT_EQ(PortGroup::velAllocTrackTypeInfo_->live(), groups);
    EXPECT_EQ(MlagPort::velAllocTrackTypeInfo_->live(), mlags);
}

TEST_F(PortBaseTest, ReferencesMayCrossHosts) {
    Vel::Ptr<Host> other = Status::StatusIs()->hostIs("leaf-2");
    group->memberPortIs(other->portIs("eth-9"));
    other->portIs("eth-9")->portGroupIs(group.get());
    mlag->localPortGroupIs(other->portGroupIs("far"));
    Vel::Ptr<Port> const far = other->port("eth-9");
    other = nullptr;
    EXPECT_EQ(far->host(), nullptr);
    EXPECT_EQ(group->memberPort("eth-9"), far);
    EXPECT_EQ(far->portGroup(), group.get());
    EXPECT_EQ(mlag->localPortGroup()->portKey(), PortKey("leaf-2", "portGroup/far"));
}

TEST_F(PortBaseTest, ACallbackMayReleaseTheObject) {
    host->portDelAll();
    host->portGroupDelAll();
    host->mlagDelAll();
    Vel::Ptr<Vel::PtrInterface> recorder;
    auto const releasing = [&](auto & object) {
        journal.then = [&](std::string const &) {
            recorder = nullptr;
            object = nullptr;
        };
        return object.get();
    };
    recorder = recorderOf<PortRecorder>(port, journal);
    releasing(port)->portGroupIs(group.get());
    EXPECT_EQ(port, nullptr);
    recorder = recorderOf<PortGroupRecorder>(group, journal);
    releasing(group)->mlagIs(mlag.get());
    EXPECT_EQ(group, nullptr);
    recorder = recorderOf<PortBaseRecorder>(mlag, journal);
    releasing(mlag)->typeIs(PortType::mlag);
    EXPECT_EQ(mlag, nullptr);
    EXPECT_THAT(journal.take(), ElementsAre("onPortGroup()", "onMlag()", "onType()"));
}

TEST_F(PortBaseTest, NestedWritesOfOneAttributeAreToldAtOnce) {
    auto const recorder = recorderOf<PortRecorder>(port, journal);
    std::vector<PortType> seen;
    journal.then = [&](std::string const &) {
        seen.push_back(port->type());
        if (port->type() == PortType::port) port->typeIs(PortType::portGroup);
        if (port->type() == PortType::portGroup) port->typeIs(PortType::mlag);
    };
    port->typeIs(PortType::port);
    EXPECT_EQ(port->type(), PortType::mlag);
    EXPECT_THAT(seen, ElementsAre(PortType::port, PortType::portGroup, PortType::mlag));
}

}  // namespace

}  // namespace NetworkTopologyV3
