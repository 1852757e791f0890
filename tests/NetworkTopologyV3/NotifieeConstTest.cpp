// The reactor classes: what they accept, what reaches them, and how their callbacks lie in memory.
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/NetworkTopologyV3/Recorders.h"

namespace NetworkTopologyV3 {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One object of every class of the model.
struct Objects {
    Vel::Ptr<Status> status = Status::StatusIs();
    Vel::Ptr<Host> host = status->hostIs("leaf-1");
    Vel::Ptr<Port> port = host->portIs("eth-1");
    Vel::Ptr<PortGroup> group = host->portGroupIs("bond-1");
    Vel::Ptr<MlagPort> mlag = host->mlagIs("m-1", "");
    Vel::Ptr<DirectedEdge> edge = status->edgeIs(port->portKey());

    std::vector<Vel::Ptr<Vel::PtrInterface const>> all() const {
        return {status, host, port, group, mlag, edge};
    }
};

// The indices of the objects that a reactor binds to.
template <class Recorder>
std::vector<int> accepted(Objects const & objects) {
    Journal journal;
    Vel::Ptr<Recorder> const recorder = new Recorder(journal);
    std::vector<int> result;
    int index = 0;
    for (Vel::Ptr<Vel::PtrInterface const> const & object : objects.all()) {
        recorder->notifierIs(object);
        if (recorder->notifierObject()) {
            EXPECT_EQ(recorder->notifierObject(), object);
            EXPECT_EQ(recorder->notifier(), object.get());
            result.push_back(index);
        }
        ++index;
    }
    recorder->notifierIs(nullptr);
    EXPECT_EQ(recorder->notifier(), nullptr);
    return result;
}

TEST(NotifieeConst, BindsToObjectsOfItsOwnClassAlone) {
    Objects const objects;
    EXPECT_THAT(accepted<StatusRecorder>(objects), ElementsAre(0));
    EXPECT_THAT(accepted<HostRecorder>(objects), ElementsAre(1));
    EXPECT_THAT(accepted<PortRecorder>(objects), ElementsAre(2));
    EXPECT_THAT(accepted<PortGroupRecorder>(objects), ElementsAre(3));
    EXPECT_THAT(accepted<MlagPortRecorder>(objects), ElementsAre(4));
    EXPECT_THAT(accepted<DirectedEdgeRecorder>(objects), ElementsAre(5));
}

TEST(NotifieeConst, OfAPortBaseBindsToAnyPortBase) {
    EXPECT_THAT(accepted<PortBaseRecorder>(Objects()), ElementsAre(2, 3, 4));
}

TEST(NotifieeConst, AWrongObjectUnbinds) {
    Objects const objects;
    Journal journal;
    auto const recorder = recorderOf<PortRecorder>(objects.port, journal);
    recorder->notifierIs(objects.group);
    EXPECT_EQ(recorder->notifier(), nullptr);
    EXPECT_FALSE(recorder->isRegisteredNotifiee());
    objects.port->typeIs(PortType::port);
    objects.group->typeIs(PortType::port);
    EXPECT_THAT(journal.take(), IsEmpty());
}

TEST(NotifieeConst, RebindingMovesTheRegistration) {
    Objects const objects;
    Vel::Ptr<Port> const second = objects.host->portIs("eth-2");
    Journal journal;
    auto const recorder = recorderOf<PortRecorder>(objects.port, journal);
    recorder->notifierIs(second);
    objects.port->typeIs(PortType::port);
    EXPECT_THAT(journal.take(), IsEmpty());
    second->typeIs(PortType::port);
    second->portGroupIs(objects.group.get());
    EXPECT_THAT(journal.take(), ElementsAre("onType()", "onPortGroup()"));
}

TEST(NotifieeConst, OfAPortBaseHasTheTypeAloneOfEveryKind) {
    Objects const objects;
    Journal plain;
    auto const ofPort = recorderOf<PortBaseRecorder>(objects.port, plain);
    auto const ofGroup = recorderOf<PortBaseRecorder>(objects.group, plain);
    auto const ofMlag = recorderOf<PortBaseRecorder>(objects.mlag, plain);
    Journal journal;
    auto const port = recorderOf<PortRecorder>(objects.port, journal);
    auto const group = recorderOf<PortGroupRecorder>(objects.group, journal);
    auto const mlag = recorderOf<MlagPortRecorder>(objects.mlag, journal);

    objects.port->portGroupIs(objects.group.get());
    objects.group->memberPortIs(objects.port);
    objects.group->mlagIs(objects.mlag.get());
    objects.group->memberPortDelAll();
    objects.mlag->localPortGroupIs(objects.group);
    EXPECT_THAT(plain.take(), IsEmpty());
    EXPECT_THAT(journal.take(), ElementsAre("onPortGroup()", "onMemberPort(eth-1)", "onMemberPort()",
                                            "onMlag()", "onMemberPort(eth-1)", "onMemberPortvelImmediate()",
                                            "onMemberPort()", "onLocalPortGroup()"));

    objects.port->typeIs(PortType::port);
    objects.group->typeIs(PortType::port);
    objects.mlag->typeIs(PortType::port);
    EXPECT_THAT(plain.take(), ElementsAre("onType()", "onType()", "onType()"));
    EXPECT_THAT(journal.take(), ElementsAre("onType()", "onType()", "onType()"));
}

TEST(NotifieeConst, HasNothingWhileInactiveOrNotRegistered) {
    Objects const objects;
    Journal journal;
    auto const recorder = recorderOf<HostRecorder>(objects.host, journal);
    recorder->hasNotificationActiveIs(false);
    objects.host->hostnameIs("a");
    recorder->hasNotificationActiveIs(true);
    recorder->isRegisteredNotifieeIs(false);
    objects.host->hostnameIs("b");
    recorder->isRegisteredNotifieeIs(true);
    objects.host->hostnameIs("c");
    EXPECT_THAT(journal.take(), ElementsAre("onHostname()"));
}

TEST(NotifieeConst, IsToldOnceHoweverOftenItEnters) {
    Objects const objects;
    Journal journal;
    auto const recorder = recorderOf<HostRecorder>(objects.host, journal);
    recorder->isRegisteredNotifieeIs(true);
    objects.host->hostnameIs("a");
    EXPECT_THAT(journal.take(), ElementsAre("onHostname()"));
}

TEST(NotifieeConst, KeepsItsNotifierAlive) {
    Journal journal;
    auto const recorder = recorderOf<HostRecorder>(Objects().host, journal);
    EXPECT_EQ(recorder->notifier()->name(), "leaf-1");
    EXPECT_EQ(recorder->notifier()->port("eth-1")->host(), recorder->notifier());
}

TEST(NotifieeConst, DefaultCallbacksDoNothing) {
    Objects const objects;
    class Quiet final : public Status::NotifieeConst {};
    class QuietHost final : public Host::NotifieeConst {};
    class QuietGroup final : public PortGroup::NotifieeConst {};
    class QuietEdge final : public DirectedEdge::NotifieeConst {};
    auto const start = [](Vel::Ptr<Vel::PtrInterface::NotifieeConst> reactor, auto const & notifier) {
        reactor->notifierIs(notifier);
        reactor->isRegisteredNotifieeIs(true);
        reactor->hasNotificationActiveIs(true);
        return reactor;
    };
    std::vector<Vel::Ptr<Vel::PtrInterface::NotifieeConst>> const reactors{
        start(new Quiet, objects.status), start(new QuietHost, objects.host),
        start(new QuietGroup, objects.group), start(new QuietEdge, objects.edge)};
    EXPECT_NO_THROW({
        objects.status->hostIs("other");
        objects.status->hostDelAll();
        objects.status->edgeDelAll();
        objects.status->localhostIs(objects.host);
        objects.host->hostnameIs("a");
        objects.host->logicalPortIs(objects.port);
        objects.host->logicalPortDelAll();
        objects.host->portDelAll();
        objects.group->memberPortIs(objects.port);
        objects.group->memberPortDelAll();
        objects.edge->toPortIs(objects.port->portKey(), true);
        objects.edge->toPortDelAll();
    });
    for (auto const & reactor : reactors) EXPECT_TRUE(reactor->isRegisteredNotifiee());
}

TEST(Notifiee, WritesTheStatusThatItFollows) {
    class Writer final : public Status::Notifiee {
    public:
        using Status::Notifiee::onHost;
        void onHost(Vel::Name name) override {
            if (name == "a") notifier()->hostIs("b")->hostnameIs("written");
        }
    };
    Vel::Ptr<Status> const status = Status::StatusIs();
    Vel::Ptr<Writer> const writer = new Writer;
    EXPECT_EQ(writer->notifier(), nullptr);
    writer->notifierIs(status);
    static_assert(std::is_same_v<decltype(writer->notifier()), Status *>);
    EXPECT_EQ(writer->notifier(), status.get());
    writer->isRegisteredNotifieeIs(true);
    writer->hasNotificationActiveIs(true);
    status->hostIs("a");
    ASSERT_NE(status->host("b"), nullptr);
    EXPECT_EQ(status->host("b")->hostname(), "written");
    writer->notifierIs(status->host("b"));
    EXPECT_EQ(writer->notifier(), nullptr);
}

}  // namespace

}  // namespace NetworkTopologyV3
