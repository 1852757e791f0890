#include "tools/follow/ModelRecorder.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/tools/document/DocumentTesting.h"
#include "tests/tools/follow/FollowTesting.h"
#include "tools/follow/FollowVersion3.h"

namespace TopologyTools {
namespace {

using namespace NetworkTopologyV3;
using nlohmann::json;

class Recorder : public DocumentTest {
protected:
    Recorder() { applyOperation(document_, recorder_.whole()); }

    // What has been told since the last call, which leads to the document as it
    // is now.
    std::string told() {
        sortEntries(told_);
        for (PatchOperation const & operation : told_) applyOperation(document_, operation);
        std::string const lines = spelled(told_);
        told_.clear();
        EXPECT_EQ(document_, json(documentTree(Vel::GenericIf::of(status_)))) << lines;
        return lines;
    }

    Status::Ptr const status_ = Status::StatusIs();
    std::vector<PatchOperation> told_;
    ModelRecorder recorder_{Vel::GenericIf::of(status_), followVersion3,
                            [this](PatchOperation operation) { told_.push_back(std::move(operation)); }};
    json document_;
};

TEST_F(Recorder, TellsOfWholeCollectionDeletions) {
    for (char const * name : {"a", "b"}) {
        Host::Ptr const host = status_->hostIs(name);
        for (char const * member : {"x", "y"}) {
            host->portIs(member);
            host->portGroupIs(member);
            host->mlagIs(member, "s");
            host->mlagRawIs(host->mlag(member));
            host->logicalPortIs(host->port(member));
            host->portGroup(member)->memberPortIs(host->port(member));
            status_->edgeIs(host->port(member)->portKey())->toPortIs(host->port(member)->portKey(), true);
        }
    }
    status_->localhostIs(status_->host("b"));
    told();
    Host::Ptr const host = status_->host("a");
    host->mlagRawDelAll();
    EXPECT_EQ(told(), "remove /host/a/mlagRaw/x\nremove "
                      "/host/a/mlagRaw/y\nremove /host/a/mlagRaw\n");
    host->portDelAll();
    EXPECT_EQ(told(), "remove /host/a/port/x\n"
                      "replace /host/a/logicalPort/x null\n"
                      "replace /host/a/portGroup/x/memberPort/x null\n"
                      "remove /host/a/port/y\n"
                      "remove /host/a/port\n"
                      "replace /host/a/logicalPort/y null\n"
                      "replace /host/a/portGroup/y/memberPort/y null\n");
    host->logicalPortDelAll();
    host->portGroup("x")->memberPortDelAll();
    host->portGroupDelAll();
    host->mlagDelAll();
    told();
    EXPECT_EQ(document_.at("host").at("a"), json::object());
    status_->edgeDelAll();
    told();
    EXPECT_FALSE(document_.contains("edge"));
    status_->hostDelAll();
    EXPECT_EQ(told(), "remove /host/a\nremove /host/b\nremove /host\nremove /localhost\n");
    EXPECT_EQ(document_, json::object());
}

// A reactor that was there before the recorder, and answers a change before the
// recorder has heard of it.
class Meddler final : public Status::NotifieeConst {
public:
    using Status::NotifieeConst::onHost;
    explicit Meddler(std::function<void()> meddle) : meddle_(std::move(meddle)) {}
    void onHost(Vel::Name) override {
        if (auto const meddle = std::exchange(meddle_, nullptr)) meddle();
    }
    void onHostvelImmediate() override { onHost("" /* any */); }

private:
    std::function<void()> meddle_;
};

class Meddled : public DocumentTest {
protected:
    // Makes `change` while a reactor in front of the recorder answers with
    // `answer`.
    std::string changed(std::function<void()> const & change, std::function<void()> const & answer) {
        Vel::Ptr<Meddler> const meddler = new Meddler(answer);
        meddler->notifierIs(status_);
        meddler->isRegisteredNotifieeIs(true);
        std::vector<PatchOperation> operations;
        ModelRecorder const recorder(
            Vel::GenericIf::of(status_), followVersion3,
            [&](PatchOperation operation) { operations.push_back(std::move(operation)); });
        json document;
        applyOperation(document, recorder.whole());
        meddler->hasNotificationActiveIs(true);
        change();
        for (PatchOperation const & operation : operations) applyOperation(document, operation);
        EXPECT_EQ(document, json(documentTree(Vel::GenericIf::of(status_)))) << spelled(operations);
        meddler->notifierIs(nullptr);
        return spelled(operations);
    }

    Status::Ptr const status_ = Status::StatusIs();
};

TEST_F(Meddled, WhatComesBackWithinItsRemovalIsReplaced) {
    status_->hostIs("a")->portIs("p");
    Host::Ptr const b = status_->hostIs("b");
    b->logicalPortIs(status_->host("a")->port("p"));
    EXPECT_EQ(changed([&] { status_->hostDel("a"); }, [&] { status_->hostIs("a")->hostnameIs("A"); }),
              "replace /host/a {}\n"
              "replace /host/b/logicalPort/p null\n"
              "add /host/a/hostname \"A\"\n");
}

TEST_F(Meddled, WhatGoesWithinItsAdditionIsNotTold) {
    EXPECT_EQ(changed([&] { status_->hostIs("a"); }, [&] { status_->hostDel("a"); }), "");
}

TEST_F(Meddled, WhatIsFilledWithinItsAdditionIsToldWhole) {
    Host::Ptr const b = status_->hostIs("b");
    EXPECT_EQ(changed([&] { status_->hostIs("a"); },
                      [&] {
                          status_->host("a")->portIs("p");
                          b->mlagPeerLinkIs(status_->host("a")->port("p"));
                          status_->host("a")->logicalPortIs(status_->host("a")->port("p"));
                      }),
              "add /host/a "
              "{\"port\":{\"p\":{}},\"logicalPort\":{\"p\":\"/host/a/port/p\"}}\n"
              "add /host/b/mlagPeerLink \"/host/a/port/p\"\n");
}

TEST_F(Meddled, ACollectionMayBeFilledWithinItsDeletion) {
    status_->hostIs("a")->hostnameIs("A");
    status_->hostIs("b");
    EXPECT_EQ(changed([&] { status_->hostDelAll(); },
                      [&] {
                          status_->hostIs("a");
                          status_->hostIs("c");
                      }),
              "replace /host/a {}\n"
              "add /host/c {}\n"
              "remove /host/b\n");
}

TEST_F(Recorder, ReferencesToTheDeadAreForgotten) {
    Host::Ptr const host = status_->hostIs("a");
    Port::Ptr const port = host->portIs("p");
    port->portGroupIs(host->portGroupIs("g").get());
    told();
    host->portGroupDel("g");  // It dies, and the port's pointer with it.
    EXPECT_EQ(port->portGroup(), nullptr);
    EXPECT_EQ(told(), "remove /host/a/portGroup/g\nremove "
                      "/host/a/portGroup\nremove /host/a/port/p/portGroup\n");
    // Whoever is made next may have its address.
    for (int i = 0; i < 100; ++i) host->portGroupIs("g" + std::to_string(i));
    told();
}

TEST_F(Recorder, ReferencesStayWithWhatHasLeft) {
    Host::Ptr const host = status_->hostIs("a");
    Port::Ptr const port = host->portIs("p");
    status_->hostIs("b")->logicalPortIs(port);
    told();
    host->portDel("p");
    EXPECT_EQ(told(), "remove /host/a/port/p\nremove /host/a/port\nreplace "
                      "/host/b/logicalPort/p null\n");
    host->portIs("p");
    EXPECT_EQ(told(), "add /host/a/port {}\nadd /host/a/port/p {}\n");
    status_->host("b")->logicalPortIs(host->port("p"));
    EXPECT_EQ(told(), "replace /host/b/logicalPort/p \"/host/a/port/p\"\n");
    port->typeIs(PortType::mlag);  // Not in the document any more.
    EXPECT_EQ(told(), "");
    status_->hostDel("a");
    host->hostnameIs("gone");
    EXPECT_EQ(told(), "remove /host/a\nreplace /host/b/logicalPort/p null\n");
    status_->localhostIs(host);
    EXPECT_EQ(told(), "");
}

TEST_F(Recorder, TellsNothingOnceItIsGone) {
    Host::Ptr const host = status_->hostIs("a");
    std::vector<PatchOperation> operations;
    {
        ModelRecorder const second(Vel::GenericIf::of(status_), followVersion3,
                                   [&](PatchOperation o) { operations.push_back(std::move(o)); });
        host->hostnameIs("1");
        EXPECT_EQ(spelled(operations), "add /host/a/hostname \"1\"\n");
    }
    host->hostnameIs("2");
    status_->hostDel("a");
    EXPECT_EQ(operations.size(), 1u);
}

TEST_F(Recorder, KeepsNothingAliveThatHasLeft) {
    Host::Ptr host = status_->hostIs("a");
    Vel::Ptr<PortGroup> group = host->portGroupIs("g");
    host->portGroupDel("g");
    EXPECT_EQ(group->references(), 1u);
    status_->hostDel("a");
    EXPECT_EQ(host->references(), 1u);
}

// Tells of the logical ports of a host as a whole, and of nothing else.
class WholeReactor final : public Host::NotifieeConst {
public:
    explicit WholeReactor(ObjectFollower & follower) : follower_(follower) {}
    void onLogicalPort(Vel::Name) override {}
    void onLogicalPort() override { follower_.entriesChanged("logicalPort"); }

private:
    ObjectFollower & follower_;
};

Vel::Ptr<Vel::PtrInterface::NotifieeConst> followWhole(Vel::GenericIf const & object,
                                                       ObjectFollower & follower) {
    if (object.type() != &Host::_velType) return followVersion3(object, follower);
    Vel::Ptr<WholeReactor> const reactor = new WholeReactor(follower);
    reactor->notifierIs(object.as<Vel::Ptr<Vel::PtrInterface const>>());
    reactor->isRegisteredNotifieeIs(true);
    reactor->hasNotificationActiveIs(true);
    return reactor;
}

TEST_F(Recorder, LooksAtAllEntriesThatAReactorTellsOfAsAWhole) {
    Host::Ptr const host = status_->hostIs("a");
    host->logicalPortIs(host->portIs("p"));
    host->logicalPortIs(host->portIs("q"));
    std::vector<PatchOperation> operations;
    ModelRecorder const recorder(Vel::GenericIf::of(status_), followWhole,
                                 [&](PatchOperation o) { operations.push_back(std::move(o)); });
    host->logicalPortDelAll();
    EXPECT_EQ(spelled(operations), "remove /host/a/logicalPort/p\n"
                                   "remove /host/a/logicalPort/q\n"
                                   "remove /host/a/logicalPort\n");
    operations.clear();
    host->logicalPortIs(host->port("q"));
    EXPECT_EQ(spelled(operations), "add /host/a/logicalPort {}\n"
                                   "add /host/a/logicalPort/q \"/host/a/port/q\"\n");
}

// Random changes of every kind that the type records offer.
class RandomChanges {
public:
    RandomChanges(Vel::GenericIf root, unsigned seed)
        : random_(seed), shape_(*root.type()), root_(std::move(root)) {}

    std::string change() {
        std::vector<Object> const objects = this->objects();
        Object const & object = objects[random_() % objects.size()];
        auto const & members = object.shape->members;
        MemberShape const & member = members[random_() % members.size()];
        std::string const what = std::string(object.shape->type->name()) + " " + std::string(member.name());
        if (!member.isCollection()) {
            if (!member.isSettable) return what;
            object.object.attrIs(member.name(), member.kind == MemberShape::Kind::reference
                                                    ? target(member.type(), objects)
                                                    : value(member.type()));
            return "set " + what;
        }
        unsigned const kind = random_() % 10;
        if (kind == 0) {
            object.object.call(std::string(member.name()) + "DelAll", {});
            return "delete all " + what;
        }
        if (member.kind == MemberShape::Kind::valueCollection && kind < 7) {
            Vel::GenericIf const held =
                member.holdsReferences ? target(member.type(), objects) : value(member.type());
            if (held.isNull()) return what;
            Vel::GenericIf const key = member.keyIsTargetsName ? held.attr("name") : this->key(member);
            object.object.memberIs(member.name(), {key, held});
            return "enter " + what;
        }
        Vel::GenericIf const key = this->key(member);
        if (kind < 7) {
            std::vector<Vel::GenericIf> arguments{key};
            for (Vel::VelArg const & argument : member.attr->args().subspan(1))
                arguments.push_back(value(*argument.type));
            Vel::GenericIf const made = object.object.memberIs(member.name(), arguments);
            known_.push_back(made);
            return "make " + what;
        }
        object.object.memberDel(member.name(), key);
        return "delete " + what;
    }

private:
    struct Object {
        Vel::GenericIf object;
        ObjectShape const * shape;
    };

    std::vector<Object> objects() const {
        std::vector<Object> all{{root_, &shape_.root()}};
        for (std::size_t i = 0; i < all.size(); ++i) {
            Object const object = all[i];
            for (MemberShape const & member : object.shape->members) {
                if (!member.element) continue;
                for (auto const & entry : object.object.members(member.name()))
                    all.push_back({entry.object(), member.element});
            }
        }
        return all;
    }
    // Null, something in the model or, sometimes, something that may have left
    // it.
    Vel::GenericIf target(Vel::VelType const & type, std::vector<Object> const & objects) {
        std::vector<Vel::GenericIf> fitting(1);
        for (Object const & object : objects)
            if (object.shape->type->isA(type)) fitting.push_back(object.object);
        if (random_() % 4 == 0) {
            for (Vel::GenericIf const & object : known_)
                if (object.type()->isA(type)) fitting.push_back(object);
        }
        return fitting[random_() % fitting.size()];
    }
    Vel::GenericIf value(Vel::VelType const & type) {
        if (&type == Vel::VelTypeOf<bool>::record) return random_() % 2 == 0;
        if (type.kind() == Vel::VelType::Kind::enumeration) {
            auto const & enumerators = type.enumerators();
            return Vel::enumeratorFromNumber(type, enumerators[random_() % enumerators.size()].value);
        }
        if (type.name() == "Keln::EthAddr") {
            return type.fromStrRep(random_() % 2 == 0 ? "00:00:00:00:00:00" : "02:00:00:00:00:0f");
        }
        return type.fromStrRep(names_[random_() % names_.size()]);
    }
    Vel::GenericIf key(MemberShape const & collection) {
        if (collection.keyKind == MemberShape::KeyKind::name)
            return *collection.key(names_[random_() % names_.size()]);
        return *collection.key("/host/" + names_[1 + random_() % 2] + "/port/" + names_[1 + random_() % 3]);
    }

    std::mt19937 random_;
    DocumentShape const shape_;
    Vel::GenericIf const root_;
    std::vector<std::string> const names_{"", "a", "b", "c"};
    std::vector<Vel::GenericIf> known_;
};

TEST_F(Recorder, FollowsRandomChanges) {
    std::map<std::string, unsigned> kinds;
    for (unsigned seed = 0; seed < 4; ++seed) {
        RandomChanges changes(Vel::GenericIf::of(status_), seed);
        for (unsigned i = 0; i < 500; ++i) {
            std::string const what = changes.change();
            told();
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", change " << i << ": " << what;
            ++kinds[what];
        }
    }
    // Every attribute and collection has had its turn, and each of the ways in
    // which collections change.
    for (char const * what :
         {"set NetworkTopologyV3::Status localhost", "set NetworkTopologyV3::Host hostname",
          "set NetworkTopologyV3::Host mlagPeerLink", "set NetworkTopologyV3::Port type",
          "set NetworkTopologyV3::PortGroup mlag", "delete all NetworkTopologyV3::Host port",
          "set NetworkTopologyV3::MlagPort localPortGroup",
          "delete all NetworkTopologyV3::DirectedEdge toPort",
          "enter NetworkTopologyV3::PortGroup memberPort", "delete NetworkTopologyV3::Host mlagRaw",
          "make NetworkTopologyV3::Status edge"}) {
        EXPECT_GT(kinds[what], 0u) << what;
    }
}

}  // namespace
}  // namespace TopologyTools
