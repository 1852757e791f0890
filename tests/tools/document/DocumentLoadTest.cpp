#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tests/tools/document/DocumentTesting.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {
namespace {

using namespace NetworkTopology;

class DocumentLoad : public DocumentTest {
protected:
    static void load(std::string_view text, Vel::GenericIf const & root) {
        loadDocument(parseJson(text, "t.json"), "t.json", root);
    }
};

using Log = std::vector<std::string>;

template <class Base>
class Recorder : public Base {
public:
    Recorder(Log & log, std::string place, Vel::Ptr<Vel::PtrInterface const> const & notifier)
        : log_(log), place_(std::move(place)) {
        this->notifierIs(notifier);
        this->isRegisteredNotifieeIs(true);
        this->hasNotificationActiveIs(true);
    }

protected:
    void note(std::string const & what) { log_.push_back(place_ + what); }

    Log & log_;
    std::string place_;
    std::vector<Vel::Ptr<Vel::PtrInterface>> below_;  // Reactors.
};

struct PortRecorder final : Recorder<PortV2::NotifieeConst> {
    using Recorder::Recorder;
    void onType() override { note("/type"); }
    void onPortGroup() override { note("/portGroup"); }
};
struct GroupRecorder final : Recorder<PortGroupV2::NotifieeConst> {
    using Recorder::Recorder;
    void onType() override { note("/type"); }
    void onMemberPort(Vel::Name name) override { note("/memberPort/" + std::string(name.view())); }
    void onMlag() override { note("/mlag"); }
};
struct MlagRecorder final : Recorder<MlagV2::NotifieeConst> {
    using Recorder::Recorder;
    void onType() override { note("/type"); }
    void onLocalPortGroup() override { note("/localPortGroup"); }
};
struct EdgeRecorder final : Recorder<DirectedEdgeV2::NotifieeConst> {
    using Recorder::Recorder;
    void onToPort(PortBaseV2::PtrConst const & port) override {
        note("/toPort/" + std::string(port->name().view()));
    }
};
struct HostRecorder final : Recorder<HostV2::NotifieeConst> {
    using Recorder::Recorder;
    void onHostname() override { note("/hostname"); }
    void onMlagPeerLink() override { note("/mlagPeerLink"); }
    void onLogicalPort(Vel::Name name) override { note("/logicalPort/" + std::string(name.view())); }
    void onPort(Vel::Name name) override { follow<PortRecorder>("/port/", name, notifier()->port(name)); }
    void onPortGroup(Vel::Name name) override {
        follow<GroupRecorder>("/portGroup/", name, notifier()->portGroup(name));
    }
    void onMlag(Vel::Name name) override {
        auto const mlag = notifier()->mlag(name);
        follow<MlagRecorder>("/mlag/", name, mlag);
        log_.back() += " with " + std::string(mlag->secondaryName().view());
    }
    template <class R>
    void follow(std::string const & collection, Vel::Name const & name,
                Vel::Ptr<Vel::PtrInterface const> const & o) {
        note(collection + std::string(name.view()));
        below_.push_back(new R(log_, log_.back(), o));
    }
};
struct StatusRecorder final : Recorder<StatusV2::NotifieeConst> {
    using Recorder::Recorder;
    void onHost(Vel::Name name) override {
        note("/host/" + std::string(name.view()));
        below_.push_back(new HostRecorder(log_, log_.back(), notifier()->host(name)));
    }
    void onLocalhost() override { note("/localhost"); }
    void onEdge(PortBaseV2::PtrConst const & from) override {
        note("/edge/" + std::string(from->name().view()));
        below_.push_back(new EdgeRecorder(log_, log_.back(), notifier()->edge(from)));
    }
};

TEST_F(DocumentLoad, MakesEveryObjectThenSetsAttributesThenReferences) {
    auto const status = StatusV2::StatusV2Is();
    Log log;
    Vel::Ptr<StatusRecorder> const recorder = new StatusRecorder(log, "", status);
    load(R"({"edge":{"/host/b/port/p":{"toPort":{"/host/a/port/q":true}}},"localhost":"/host/b","host":{
        "b":{"mlagPeerLink":"/host/a/portGroup/g","hostname":"B","port":{"p":{"portGroup":"/host/a/portGroup/g",
             "type":"port"}}},
        "a":{"logicalPort":{"x":"/host/b/port/p"},"mlag":{"m":{"localPortGroup":"/host/a/portGroup/g",
             "secondaryName":"s"}},"portGroup":{"g":{"mlag":"/host/a/mlag/m","memberPort":{"q":"/host/a/port/q"},
             "type":"portGroup"}},"port":{"q":{}},"hostname":"A"}}})",
         Vel::GenericIf::of(status));
    EXPECT_EQ(log,
              (Log{"/host/b", "/host/b/port/p", "/host/a", "/host/a/port/q", "/host/a/portGroup/g",
                   "/host/a/mlag/m with s", "/edge/p",
                   // Attributes.
                   "/host/b/hostname", "/host/b/port/p/type", "/host/a/hostname", "/host/a/portGroup/g/type",
                   // References.
                   "/localhost", "/host/b/mlagPeerLink", "/host/b/port/p/portGroup", "/host/a/logicalPort/x",
                   "/host/a/portGroup/g/memberPort/q", "/host/a/portGroup/g/mlag",
                   "/host/a/mlag/m/localPortGroup", "/edge/p/toPort/q"}));
}

TEST_F(DocumentLoad, AMissingSecondaryNameIsTheEmptyName) {
    auto const v2Status =
        readText(R"({"host":{"a":{"mlag":{"m":{},"n":{"secondaryName":"s"}}}}})", v2).as<StatusV2::Ptr>();
    EXPECT_EQ(v2Status->host("a")->mlag("m")->secondaryName(), "");
    EXPECT_EQ(v2Status->host("a")->mlag("n")->secondaryName(), "s");
    auto const v3Status = readText(R"({"host":{"a":{"mlag":{"m":{},"n":{"secondaryName":"s"}}}}})", v3)
                              .as<NetworkTopologyV3::Status::Ptr>();
    EXPECT_EQ(v3Status->host("a")->mlag("m")->secondaryName(), "");
    EXPECT_EQ(v3Status->host("a")->mlag("n")->secondaryName(), "s");
}

TEST_F(DocumentLoad, GivesOutObjectsThatCanBeChanged) {
    auto const status = readText(R"({"host":{"a":{}}})", v2).as<StatusV2::Ptr>();
    status->host("a")->hostnameIs("x");
    EXPECT_EQ(written(Vel::GenericIf::of(status)), R"({"host":{"a":{"hostname":"x"}}})");
}

TEST_F(DocumentLoad, RefusesAStatusThatHoldsSomething) {
    auto const refuses = [](StatusV2::Ptr const & status) {
        std::string const before = written(Vel::GenericIf::of(status));
        EXPECT_THROW(load("{}", Vel::GenericIf::of(status)), std::invalid_argument);
        EXPECT_EQ(written(Vel::GenericIf::of(status)), before);
    };
    auto const withHost = StatusV2::StatusV2Is();
    withHost->hostIs("a");
    refuses(withHost);
    auto const withEdge = StatusV2::StatusV2Is();
    withEdge->edgeIs(PortV2::PtrConst(PortV2::PortV2Is("p")));
    refuses(withEdge);
    auto const withLocalhost = StatusV2::StatusV2Is();
    withLocalhost->localhostIs(HostV2::HostV2Is("a"));
    refuses(withLocalhost);
}

// Removes a port as soon as its host has an edge.
struct Remover final : Recorder<StatusV2::NotifieeConst> {
    Remover(Log & log, StatusV2::Ptr const & status) : Recorder(log, "", status), status_(*status) {}
    void onEdge(PortBaseV2::PtrConst const &) override { status_.host("a")->portDel("q"); }
    StatusV2 & status_;
};

TEST_F(DocumentLoad, LeavesOutWhatAReactorRemovesMeanwhile) {
    auto const status = StatusV2::StatusV2Is();
    Log log;
    Vel::Ptr<Remover> const remover = new Remover(log, status);
    load(R"({"host":{"a":{"mlagPeerLink":"/host/a/port/q","logicalPort":{"q":"/host/a/port/q"},)"
         R"("port":{"p":{},"q":{"type":"port"}}}},"edge":{"/host/a/port/p":{"toPort":{"/host/a/port/q":true,)"
         R"("/host/a/port/p":true}},"/host/a/port/q":{}}})",
         Vel::GenericIf::of(status));
    EXPECT_EQ(written(Vel::GenericIf::of(status)),
              R"({"host":{"a":{"port":{"p":{}},"logicalPort":{"q":null}}},)"
              R"("edge":{"/host/a/port/p":{"toPort":{"/host/a/port/p":true}}}})");
    EXPECT_EQ(status->edge().size(), 1U);
}

struct Thrower final : Recorder<StatusV2::NotifieeConst> {
    using Recorder::Recorder;
    void onLocalhost() override { throw std::runtime_error("from a reactor"); }
};

TEST_F(DocumentLoad, LetsAReactorsExceptionPass) {
    auto const status = StatusV2::StatusV2Is();
    Log log;
    Vel::Ptr<Thrower> const thrower = new Thrower(log, "", status);
    EXPECT_THROW(load(R"({"host":{"a":{}},"localhost":"/host/a"})", Vel::GenericIf::of(status)),
                 std::runtime_error);
    EXPECT_EQ(written(Vel::GenericIf::of(status)), R"({"host":{"a":{}},"localhost":"/host/a"})");
}

}  // namespace
}  // namespace TopologyTools
