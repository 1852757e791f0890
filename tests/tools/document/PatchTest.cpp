#include "tools/document/Patch.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "tests/tools/document/DocumentTesting.h"
#include "tests/tools/document/RandomModel.h"

namespace TopologyTools {
namespace {

using namespace NetworkTopology;

constexpr std::string_view start =
    R"({"host":{"a":{"hostname":"A","mlagState":"active","mlagPeerLink":"/host/a/portGroup/g","port":{"p":)"
    R"({"type":"port","portGroup":"/host/a/portGroup/g"},"q":{}},"portGroup":{"g":{"memberPort":)"
    R"({"p":"/host/a/port/p"},"mlag":"/host/a/mlag/m"}},"mlag":{"m":{"secondaryName":"s",)"
    R"("localPortGroup":"/host/a/portGroup/g"}},"mlagRaw":{"m":"/host/a/mlag/m","n":null},)"
    R"("logicalPort":{"l":"/host/b/port/x"}},"b":{"port":{"x":{}}}},"localhost":"/host/a",)"
    R"("edge":{"/host/a/port/p":{"toPort":{"/host/a/port/q":false,"/host/b/port/x":true}}}})";

class Patching : public DocumentTest {
protected:
    std::string document() const { return written(status_); }

    // The error, or "" when there was none.
    std::string apply(std::string const & line) {
        try {
            patcher_.applyLine(line, "changes", 7);
        } catch (InputError const & error) {
            return error.what();
        }
        return "";
    }
    std::string apply(std::string const & op, std::string const & path, std::string const & value = "") {
        return apply(R"({"op":")" + op + R"(","path":")" + path + '"' +
                     (value.empty() ? "" : R"(,"value":)" + value) + '}');
    }
    // What the document of `start` becomes; `start` itself after an error.
    std::string after(std::string const & op, std::string const & path, std::string const & value = "") {
        EXPECT_EQ(apply(op, path, value), "");
        return document();
    }
    StatusV2::Ptr status() const { return status_.as<StatusV2::Ptr>(); }

    Vel::GenericIf const status_ = readText(start, v2);
    ModelPatcher patcher_{status_};
};

// `text` with `what` in place of `part`, which it has once.
std::string with(std::string text, std::string_view part, std::string_view what) {
    std::size_t const at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    EXPECT_EQ(text.find(part, at + 1), std::string::npos) << part;
    return text.replace(at, part.size(), what);
}

TEST_F(Patching, SetsAnAttribute) {
    EXPECT_EQ(after("replace", "/host/a/hostname", "\"B\""), with(std::string(start), "\"A\"", "\"B\""));
    EXPECT_EQ(after("add", "/host/a/hostname", "\"A\""), start);
    EXPECT_EQ(after("add", "/host/a/port/p/type", "\"mlag\""),
              with(std::string(start), "\"type\":\"port\"", "\"type\":\"mlag\""));
}

TEST_F(Patching, AnAttributeIsAlwaysThere) {
    EXPECT_EQ(after("replace", "/host/b/hostname", "\"B\""),
              with(std::string(start), R"("b":{"port")", R"("b":{"hostname":"B","port")"));
    EXPECT_EQ(after("remove", "/host/b/hostname"), start);
    EXPECT_EQ(after("remove", "/host/b/hostname"), start);
    EXPECT_EQ(after("test", "/host/b/hostname", "\"\""), start);
    EXPECT_EQ(after("test", "/host/b/mlagSystemId", "\"00:00:00:00:00:00\""), start);
    EXPECT_EQ(after("test", "/host/b/mlagPeerLink", "null"), start);
    EXPECT_EQ(after("test", "/host/b/portGroup", "{}"), start);
}

TEST_F(Patching, RemovingAnAttributeSetsItsDefault) {
    EXPECT_EQ(after("remove", "/host/a/mlagState"), with(std::string(start), R"("mlagState":"active",)", ""));
    EXPECT_EQ(status()->host("a")->mlagState(), Mlag::MlagState::unknown);
    EXPECT_EQ(apply("remove", "/localhost"), "");
    EXPECT_EQ(status()->localhost(), nullptr);
    EXPECT_EQ(apply("remove", "/host/a/mlag/m/secondaryName"), "");
    EXPECT_EQ(status()->host("a")->mlag("m")->secondaryName(), "");
}

TEST_F(Patching, SetsAReference) {
    EXPECT_EQ(after("replace", "/host/a/mlagPeerLink", "\"/host/b/port/x\""),
              with(std::string(start), R"("mlagPeerLink":"/host/a/portGroup/g")",
                   R"("mlagPeerLink":"/host/b/port/x")"));
    EXPECT_EQ(after("replace", "/localhost", "null"),
              with(with(std::string(start), R"("mlagPeerLink":"/host/a/portGroup/g")",
                        R"("mlagPeerLink":"/host/b/port/x")"),
                   R"("localhost":"/host/a",)", ""));
}

TEST_F(Patching, ChangesTheSecondaryNameOfAnMlag) {
    EXPECT_EQ(after("replace", "/host/a/mlag/m/secondaryName", "\"t\""),
              with(std::string(start), R"("secondaryName":"s")", R"("secondaryName":"t")"));
}

TEST_F(Patching, AddsAMemberWithAllThatItHolds) {
    EXPECT_EQ(
        after("add", "/host/c",
              R"({"mlagPeerLink":"/host/c/port/y","logicalPort":{"k":"/host/a/port/p","j":null},)"
              R"("port":{"y":{"portGroup":"/host/c/portGroup/h","type":"port"}},"portGroup":{"h":{}},)"
              R"("mlag":{"m":{"secondaryName":"t","localPortGroup":"/host/c/portGroup/h"}}})"),
        with(std::string(start), R"("b":{"port":{"x":{}}})",
             R"("b":{"port":{"x":{}}},"c":{"mlagPeerLink":"/host/c/port/y","port":{"y":{"type":"port",)"
             R"("portGroup":"/host/c/portGroup/h"}},"portGroup":{"h":{}},"mlag":{"m":{"secondaryName":"t",)"
             R"("localPortGroup":"/host/c/portGroup/h"}},"logicalPort":{"j":null,"k":"/host/a/port/p"}})"));
}

TEST_F(Patching, AddsAnEdge) {
    EXPECT_EQ(after("add", "/edge/~1host~1b~1port~1x", R"({"toPort":{"/host/a/port/p":false}})"),
              with(std::string(start), R"("/host/b/port/x":true}}}})",
                   R"("/host/b/port/x":true}},"/host/b/port/x":{"toPort":{"/host/a/port/p":false}}}})"));
}

TEST_F(Patching, AddsChangesAndRemovesEntries) {
    EXPECT_EQ(apply("add", "/host/a/logicalPort/k", "\"/host/a/mlag/m\""), "");
    EXPECT_EQ(apply("replace", "/host/a/logicalPort/l", "null"), "");
    EXPECT_EQ(apply("remove", "/host/a/mlagRaw/n"), "");
    EXPECT_EQ(apply("add", "/host/a/mlagRaw/m", "null"), "");
    EXPECT_EQ(apply("replace", "/edge/~1host~1a~1port~1p/toPort/~1host~1a~1port~1q", "true"), "");
    EXPECT_EQ(apply("add", "/edge/~1host~1a~1port~1p/toPort/~1host~1a~1portGroup~1g", "false"), "");
    EXPECT_EQ(apply("remove", "/edge/~1host~1a~1port~1p/toPort/~1host~1b~1port~1x"), "");
    EXPECT_EQ(documentTree(status_).at("host").at("a").at("logicalPort").dump(),
              R"({"k":"/host/a/mlag/m","l":null})");
    EXPECT_EQ(documentTree(status_).at("host").at("a").at("mlagRaw").dump(), R"({"m":null})");
    EXPECT_EQ(documentTree(status_).at("edge").dump(),
              R"({"/host/a/port/p":{"toPort":{"/host/a/port/q":true,"/host/a/portGroup/g":false}}})");
}

TEST_F(Patching, RemovesAMember) {
    EXPECT_EQ(apply("remove", "/host/a/port/q"), "");
    EXPECT_EQ(apply("remove", "/edge/~1host~1a~1port~1p"), "");
    EXPECT_EQ(apply("remove", "/host/b"), "");
    EXPECT_EQ(status()->host().size(), 1U);
    EXPECT_EQ(status()->edge().size(), 0U);
    EXPECT_EQ(status()->host("a")->port().size(), 1U);
    EXPECT_EQ(documentTree(status_).at("host").at("a").at("logicalPort").dump(), R"({"l":null})");
}

// Records what happens to one host, and what its new port holds at that moment.
struct HostWatch final : HostV2::NotifieeConst {
    explicit HostWatch(HostV2::PtrConst const & host) {
        notifierIs(host);
        isRegisteredNotifieeIs(true);
        hasNotificationActiveIs(true);
    }
    void onPortGroup(Vel::Name name) override { log += "portGroup " + std::string(name.view()) + ' '; }
    void onPort(Vel::Name name) override { log += "port " + std::string(name.view()) + ' '; }
    void onPortvelImmediate() override { log += "all ports "; }
    void onMlagRaw(Vel::Name name) override { log += "mlagRaw " + std::string(name.view()) + ' '; }
    void onMlagRawvelImmediate() override { log += "all mlagRaw "; }
    std::string log;
};
struct StatusWatch final : StatusV2::NotifieeConst {
    explicit StatusWatch(StatusV2::PtrConst const & status) {
        notifierIs(status);
        isRegisteredNotifieeIs(true);
        hasNotificationActiveIs(true);
    }
    void onHost(Vel::Name name) override {
        auto const host = notifier()->host(name);
        log += "host " + std::string(name.view());
        if (host)
            log += " with " + std::to_string(host->port().size()) + " ports, name " +
                   std::string(host->hostname().view());
        log += "; ";
    }
    void onHostvelImmediate() override { log += "all hosts; "; }
    void onEdge(PortBaseV2::PtrConst const & from) override {
        auto const edge = notifier()->edge(from);
        log += "edge " + std::string(from->name().view()) + (edge ? " there; " : " gone; ");
    }
    void onEdgevelImmediate() override { log += "all edges; "; }
    std::string log;
};

TEST_F(Patching, ReplacesAMemberAsOneChangeOfItsKey) {
    for (std::string const op : {"add", "replace"}) {
        Vel::Ptr<StatusWatch> const watch = new StatusWatch(status());
        auto const old = status()->host("b");
        EXPECT_EQ(apply(op, "/host/b",
                        R"({"hostname":"B","port":{"x":{"type":"mlag"},"y":{}},)"
                        R"("mlagPeerLink":"/host/b/port/y"})"),
                  "");
        EXPECT_EQ(watch->log, "host b with 2 ports, name ; ");
        EXPECT_NE(status()->host("b"), old);
        EXPECT_EQ(documentTree(status_).at("host").at("b").dump(),
                  R"({"hostname":"B","mlagPeerLink":"/host/b/port/y","port":{"x":{"type":"mlag"},"y":{}}})");
    }
}

TEST_F(Patching, ReplacesAnEdgeAsOneChangeOfItsKey) {
    Vel::Ptr<StatusWatch> const watch = new StatusWatch(status());
    EXPECT_EQ(apply("add", "/edge/~1host~1a~1port~1p", R"({"toPort":{"/host/a/port/q":true}})"), "");
    EXPECT_EQ(watch->log, "edge p there; ");
    EXPECT_EQ(documentTree(status_).at("edge").dump(),
              R"({"/host/a/port/p":{"toPort":{"/host/a/port/q":true}}})");
}

TEST_F(Patching, AReplacedMlagHasItsNewSecondaryName) {
    EXPECT_EQ(apply("replace", "/host/a/mlag/m", R"({"secondaryName":"t"})"), "");
    EXPECT_EQ(documentTree(status_).at("host").at("a").at("mlag").dump(), R"({"m":{"secondaryName":"t"}})");
    EXPECT_EQ(apply("replace", "/host/a/mlag/m", "{}"), "");
    EXPECT_EQ(documentTree(status_).at("host").at("a").at("mlag").dump(), R"({"m":{}})");
}

TEST_F(Patching, RemovesAWholeCollectionAtOnce) {
    Vel::Ptr<StatusWatch> const watch = new StatusWatch(status());
    Vel::Ptr<HostWatch> const hostWatch = new HostWatch(status()->host("a"));
    EXPECT_EQ(apply("remove", "/host/a/port"), "");
    EXPECT_EQ(apply("remove", "/host/a/mlagRaw"), "");
    EXPECT_EQ(hostWatch->log.substr(0, 10), "all ports ");
    EXPECT_TRUE(hostWatch->log == "all ports mlagRaw m mlagRaw n all mlagRaw " ||
                hostWatch->log == "all ports mlagRaw n mlagRaw m all mlagRaw ");
    EXPECT_EQ(apply("remove", "/edge"), "");
    EXPECT_EQ(apply("remove", "/host"), "");
    EXPECT_EQ(watch->log, "all edges; all hosts; ");
    EXPECT_EQ(document(), "{}");
    EXPECT_EQ(apply("remove", "/host"), "");
}

TEST_F(Patching, PutsOtherMembersInPlaceOfAll) {
    EXPECT_EQ(apply("replace", "/host",
                    R"({"c":{"port":{"y":{}},"mlagPeerLink":"/host/d/port/z"},"d":{"port":{"z":{}}}})"),
              "");
    EXPECT_EQ(apply("add", "/edge", R"({"/host/c/port/y":{"toPort":{"/host/d/port/z":true}}})"), "");
    EXPECT_EQ(apply("add", "/host/c/logicalPort", R"({"k":"/host/c/port/y"})"), "");
    EXPECT_EQ(apply("add", "/host/c/logicalPort", R"({"l":null})"), "");
    EXPECT_EQ(document(),
              R"({"host":{"c":{"mlagPeerLink":"/host/d/port/z","port":{"y":{}},"logicalPort":{"l":null}},)"
              R"("d":{"port":{"z":{}}}},"edge":{"/host/c/port/y":{"toPort":{"/host/d/port/z":true}}}})");
}

TEST_F(Patching, AnEdgeWhosePortHasLeftIsStillRemovedUnderItsOldPath) {
    EXPECT_EQ(apply("remove", "/host/a/port/p"), "");
    EXPECT_EQ(status()->edge().size(), 1U);
    EXPECT_EQ(documentTree(status_).count("edge"), 0U);
    EXPECT_EQ(apply("test", "/edge/~1host~1a~1port~1p", "{}"),
              "changes:7:21: /edge/~1host~1a~1port~1p: expected a DirectedEdgeV2; found nothing");
    EXPECT_EQ(apply("remove", "/edge/~1host~1a~1port~1p"), "");
    EXPECT_EQ(status()->edge().size(), 0U);
    EXPECT_EQ(apply("remove", "/edge/~1host~1a~1port~1p"),
              "changes:7:23: /edge/~1host~1a~1port~1p: expected a DirectedEdgeV2; found nothing");
}

TEST_F(Patching, TheEdgeThatIsShownIsRemovedBeforeOneWhosePortHasLeft) {
    auto const old = status()->host("a")->port("p");
    EXPECT_EQ(apply("replace", "/host/a/port/p", "{}"), "");
    EXPECT_EQ(apply("add", "/edge/~1host~1a~1port~1p", "{}"), "");
    EXPECT_EQ(status()->edge().size(), 2U);
    EXPECT_EQ(apply("remove", "/edge/~1host~1a~1port~1p"), "");
    EXPECT_NE(status()->edge(old), nullptr);
    EXPECT_EQ(apply("remove", "/edge/~1host~1a~1port~1p"), "");
    EXPECT_EQ(status()->edge().size(), 0U);
}

TEST_F(Patching, EdgesOfEveryPortThatLeavesWithItsHostAreFound) {
    EXPECT_EQ(apply("add", "/edge/~1host~1a~1portGroup~1g", "{}"), "");
    EXPECT_EQ(apply("add", "/edge/~1host~1a~1mlag~1m", "{}"), "");
    EXPECT_EQ(apply("add", "/edge/~1host~1b~1port~1x", "{}"), "");
    EXPECT_EQ(apply("replace", "/host/a", "{}"), "");
    EXPECT_EQ(apply("remove", "/host"), "");
    for (std::string const path : {"a~1port~1p", "a~1portGroup~1g", "a~1mlag~1m", "b~1port~1x"}) {
        EXPECT_EQ(apply("remove", "/edge/~1host~1" + path), "");
        EXPECT_NE(apply("remove", "/edge/~1host~1" + path), "");
    }
    EXPECT_EQ(status()->edge().size(), 0U);
}

TEST_F(Patching, EdgesOfSeveralPortsThatLeftOnePathGoInTheOrderInWhichTheyLeft) {
    auto const first = status()->host("a")->port("p");
    EXPECT_EQ(apply("replace", "/host/a/port/p", "{}"), "");
    auto const second = status()->host("a")->port("p");
    EXPECT_EQ(apply("add", "/edge/~1host~1a~1port~1p", "{}"), "");
    EXPECT_EQ(apply("remove", "/host/a/port"), "");
    EXPECT_EQ(apply("remove", "/edge/~1host~1a~1port~1p"), "");
    EXPECT_EQ(status()->edge(first), nullptr);
    EXPECT_NE(status()->edge(second), nullptr);
    status()->edgeDel(second);
    EXPECT_NE(apply("remove", "/edge/~1host~1a~1port~1p"), "");
}

TEST_F(Patching, NothingIsKeptOfPortsThatLeftWithoutAnEdge) {
    auto const port = status()->host("a")->port("q");
    for (std::string const path : {"/edge", "/localhost", "/host"}) EXPECT_EQ(apply("remove", path), "");
    EXPECT_EQ(port->references(), 1U);
}

TEST_F(Patching, TestsWhatIsThere) {
    for (auto const & [path, value] : std::vector<std::pair<std::string, std::string>>{
             {"/host/a/hostname", "\"A\""},
             {"/host/a/mlagState", "\"active\""},
             {"/host/a/mlagPeerLink", "\"/host/a/portGroup/g\""},
             {"/host/a/hostnameAddedByOwner", "false"},
             {"/host/a/mlagRaw", R"({"n":null,"m":"/host/a/mlag/m"})"},
             {"/host/a/mlagRaw/n", "null"},
             {"/host/a/port", R"({"q":{"type":"unknown","portGroup":null,"addedByOwner":false},)"
                              R"("p":{"portGroup":"/host/a/portGroup/g","type":"port"}})"},
             {"/host/a/mlag/m", R"({"localPortGroup":"/host/a/portGroup/g","secondaryName":"s"})"},
             {"/host/b", R"({"port":{"x":{}},"mlagRaw":{}})"},
             {"/localhost", "\"/host/a\""},
             {"/edge", R"({"/host/a/port/p":{"toPort":{"/host/b/port/x":true,"/host/a/port/q":false}}})"},
             {"/edge/~1host~1a~1port~1p/toPort/~1host~1b~1port~1x", "true"}}) {
        EXPECT_EQ(apply("test", path, value), "");
    }
    EXPECT_EQ(document(), start);
}

TEST_F(Patching, AFailingTestTellsWhereAndWhat) {
    auto const failure = [&](std::string const & path, std::string const & value) {
        std::string const error = apply("test", path, value);
        EXPECT_EQ(document(), start);
        std::size_t const at = error.find(" /");
        return at == std::string::npos ? error : error.substr(at + 1);
    };
    EXPECT_EQ(apply("test", "/host/a/hostname", "\"B\""),
              "changes:7:48: /host/a/hostname: test failed: expected \"B\"; found \"A\"");
    EXPECT_EQ(failure("/host/a/hostname", "7"), "/host/a/hostname: test failed: expected 7; found \"A\"");
    EXPECT_EQ(failure("/host/a/hostnameAddedByOwner", "true"),
              "/host/a/hostnameAddedByOwner: test failed: expected true; found false");
    EXPECT_EQ(failure("/host/a/mlagPeerLink", "null"),
              "/host/a/mlagPeerLink: test failed: expected null; found \"/host/a/portGroup/g\"");
    EXPECT_EQ(
        failure("/host/a/mlagPeerLink", "\"/host/a/port/p\""),
        "/host/a/mlagPeerLink: test failed: expected \"/host/a/port/p\"; found \"/host/a/portGroup/g\"");
    EXPECT_EQ(failure("/host/a/mlagPeerLink", "\"x\""),
              "/host/a/mlagPeerLink: test failed: expected \"x\"; found \"/host/a/portGroup/g\"");
    EXPECT_EQ(failure("/host/b/mlagPeerLink", "\"/host/z\""),
              "/host/b/mlagPeerLink: test failed: expected \"/host/z\"; found null");
    EXPECT_EQ(failure("/host/b", R"({"port":{"x":{"type":"port"}}})"),
              "/host/b/port/x/type: test failed: expected \"port\"; found \"unknown\"");
    EXPECT_EQ(failure("/host/b", R"({"port":{"x":{},"y":{}}})"),
              "/host/b/port/y: test failed: expected an object; found nothing");
    EXPECT_EQ(failure("/host/b", "{}"), "/host/b/port/x: test failed: expected nothing; found a PortV2");
    EXPECT_EQ(failure("/host/b/port", "[]"), "/host/b/port: test failed: expected an array; found an object");
    EXPECT_EQ(failure("/host/a/mlag/m", "{}"),
              "/host/a/mlag/m/secondaryName: test failed: expected nothing; found \"s\"");
    EXPECT_EQ(failure("/host/a/mlag/m", R"({"secondaryName":"s"})"),
              "/host/a/mlag/m/localPortGroup: test failed: expected nothing; found \"/host/a/portGroup/g\"");
    EXPECT_EQ(failure("/host/b", R"({"name":"b","port":{"x":{}}})"),
              "/host/b/name: test failed: expected \"b\"; found nothing");
    EXPECT_EQ(failure("/host/a/mlagRaw", R"({"m":"/host/a/mlag/m"})"),
              "/host/a/mlagRaw/n: test failed: expected nothing; found an entry");
    EXPECT_EQ(failure("/edge", "{}"),
              "/edge/~1host~1a~1port~1p: test failed: expected nothing; found a DirectedEdgeV2");
    EXPECT_EQ(
        failure("/edge/~1host~1a~1port~1p", R"({"toPort":{"/host/b/port/x":true}})"),
        "/edge/~1host~1a~1port~1p/toPort/~1host~1a~1port~1q: test failed: expected nothing; found an entry");
    EXPECT_EQ(failure("/host/c", "{}"), "/host/c: expected a HostV2; found nothing");
    EXPECT_EQ(failure("/host/a/logicalPort/z", "null"),
              "/host/a/logicalPort/z: expected an entry; found nothing");
}

TEST_F(Patching, AFailingTestShowsValuesAsTheDocumentDoes) {
    EXPECT_EQ(apply("replace", "/host/b/hostnameAddedByOwner", "true"), "");
    EXPECT_EQ(apply("test", "/host/b", R"({"port":{"x":{}}})"),
              "changes:7:39: /host/b/hostnameAddedByOwner: test failed: expected nothing; found true");
}

TEST_F(Patching, WhatHasLeftTestsAsTheDocumentShowsIt) {
    EXPECT_EQ(apply("remove", "/host/b"), "");
    EXPECT_EQ(apply("remove", "/host/a/portGroup"), "");
    EXPECT_EQ(apply("test", "/host/a/logicalPort", R"({"l":null})"), "");
    EXPECT_EQ(apply("test", "/host/a/mlagPeerLink", "null"), "");
    EXPECT_EQ(apply("test", "/host/a/mlag/m", R"({"secondaryName":"s"})"), "");
    EXPECT_EQ(apply("test", "/edge", R"({"/host/a/port/p":{"toPort":{"/host/a/port/q":false}}})"), "");
    EXPECT_EQ(
        apply("test", "/edge/~1host~1a~1port~1p/toPort/~1host~1b~1port~1x", "true"),
        "changes:7:21: /edge/~1host~1a~1port~1p/toPort/~1host~1b~1port~1x: expected an entry; found nothing");
}

TEST_F(Patching, ABadOperationIsToldAndChangesNothing) {
    struct Case {
        std::string line;
        std::string error;
    };
    for (Case const & c : std::vector<Case>{
             {"7", "changes:7:1: expected an object, one JSON Patch operation; found 7"},
             {"{", "changes:7:2: expected a member name in quotation marks or '}'; found end of input"},
             {"{}", "changes:7:1: expected a JSON Patch operation with a member \"op\"; found none"},
             {R"({"op":7})", "changes:7:7: expected a string as \"op\"; found 7"},
             {R"({"op":"move","from":"/host/a","path":"/host/c"})",
              "changes:7:7: expected one of add, remove, replace, test as \"op\"; found \"move\""},
             {R"({"op":"copy"})",
              "changes:7:7: expected one of add, remove, replace, test as \"op\"; found \"copy\""},
             {R"({"op":"Add"})",
              "changes:7:7: expected one of add, remove, replace, test as \"op\"; found \"Add\""},
             {R"({"op":"add"})",
              "changes:7:1: expected a JSON Patch operation with a member \"path\"; found none"},
             {R"({"op":"add","path":null})", "changes:7:20: expected a string as \"path\"; found null"},
             {R"({"op":"add","path":"host","value":{}})",
              "changes:7:20: not a JSON Pointer: \"host\"; expected \"\" or a text that starts with '/' (RFC "
              "6901, "
              "section 3)"},
             {R"({"op":"add","path":"/host/a"})",
              "changes:7:1: expected a JSON Patch operation with a member \"value\"; found none"},
             {R"({"op":"add","path":"","value":{}})",
              "changes:7:20: expected a path below the root of the document; found \"\""},
             {R"({"op":"test","path":"","value":{}})",
              "changes:7:21: expected a path below the root of the document; found \"\""},
             {R"({"op":"remove","path":""})",
              "changes:7:23: expected a path below the root of the document; found \"\""},
             {R"({"op":"add","op":"add"})",
              "changes:7:13: /op: duplicate member name \"op\"; first at line 7, column 2"}}) {
        EXPECT_EQ(apply(c.line), c.error) << c.line;
        EXPECT_EQ(document(), start);
    }
}

TEST_F(Patching, APathThatLeadsNowhereIsToldAndChangesNothing) {
    struct Case {
        std::string op;
        std::string path;
        std::string error;
    };
    for (Case const & c : std::vector<Case>{
             {"add", "/hosts", "/hosts: expected one of the members host, localhost, edge; found \"hosts\""},
             {"add", "/host/c/hostname", "/host/c: expected a HostV2; found nothing"},
             {"remove", "/host/c", "/host/c: expected a HostV2; found nothing"},
             {"replace", "/host/c", "/host/c: expected a HostV2; found nothing"},
             {"remove", "/host/a/port/z", "/host/a/port/z: expected a PortV2; found nothing"},
             {"add", "/host/a/port/p/name",
              "/host/a/port/p/name: expected one of the members type, addedByOwner, portGroup; found "
              "\"name\""},
             {"add", "/host/a/hostname/x",
              "/host/a/hostname/x: expected the path to end at /host/a/hostname; found more"},
             {"add", "/host/a/mlagRaw/m/type",
              "/host/a/mlagRaw/m/type: expected the path to end at /host/a/mlagRaw/m; found more"},
             {"add", "/localhost/hostname",
              "/localhost/hostname: expected the path to end at /localhost; found more"},
             {"replace", "/host/a/mlagRaw/z", "/host/a/mlagRaw/z: expected an entry; found nothing"},
             {"remove", "/host/a/mlagRaw/z", "/host/a/mlagRaw/z: expected an entry; found nothing"},
             {"remove", "/edge/~1host~1a~1port~1q",
              "/edge/~1host~1a~1port~1q: expected a DirectedEdgeV2; found nothing"},
             {"remove", "/edge/x", "/edge/x: expected a DirectedEdgeV2; found nothing"},
             {"replace", "/edge/~1host~1a~1port~1q",
              "/edge/~1host~1a~1port~1q: expected a DirectedEdgeV2; found nothing"},
             {"add", "/edge/~1host~1z~1port~1q",
              "/edge/~1host~1z~1port~1q: expected a JSON Pointer to a PortBaseV2 as key; found "
              "\"/host/z/port/q\", "
              "where the document has nothing"},
             {"add", "/edge/~1host~1a~1port~1q/toPort/~1host~1a~1port~1p",
              "/edge/~1host~1a~1port~1q: expected a DirectedEdgeV2; found nothing"},
             {"remove", "/edge/~1host~1a~1port~1p/toPort/~1host~1a~1mlag~1m",
              "/edge/~1host~1a~1port~1p/toPort/~1host~1a~1mlag~1m: expected an entry; found nothing"}}) {
        std::size_t const column = std::string(R"({"op":"","path":)").size() + c.op.size() + 1;
        EXPECT_EQ(apply(c.op, c.path, "{}"), "changes:7:" + std::to_string(column) + ": " + c.error);
        EXPECT_EQ(document(), start);
    }
}

TEST_F(Patching, AValueThatDoesNotFitIsToldAndChangesNothing) {
    struct Case {
        std::string path;
        std::string value;
        std::string error;
    };
    for (Case const & c : std::vector<Case>{
             {"/host/a/hostname", "null", "/host/a/hostname: expected a string; found null"},
             {"/host/a/port/p/type", "\"lagg\"",
              "/host/a/port/p/type: expected one of unknown, port, portGroup, mlag; found \"lagg\""},
             {"/host/c", R"({"port":{"p":{"type":"port"}},"mlagState":"up"})",
              "/host/c/mlagState: expected one of unknown, disabled, inactive, active; found \"up\""},
             {"/host/a", R"({"mlagPeerLink":"/host/a/port/p"})",  // Which would leave with the old host.
              "/host/a/mlagPeerLink: expected a JSON Pointer to a PortBaseV2, or null; found "
              "\"/host/a/port/p\", "
              "where the document has nothing"},
             {"/host/a/port", R"({"z":{"portGroup":"/host/a/port/q"}})",
              "/host/a/port/z/portGroup: expected a JSON Pointer to a PortGroupV2, or null; found "
              "\"/host/a/port/q\", "
              "where the document has nothing"},
             {"/host", R"({"c":{"mlagPeerLink":"/host/a/port/p"}})",
              "/host/c/mlagPeerLink: expected a JSON Pointer to a PortBaseV2, or null; found "
              "\"/host/a/port/p\", "
              "where the document has nothing"},
             {"/localhost", "\"/host/c\"",
              "/localhost: expected a JSON Pointer to a HostV2, or null; found \"/host/c\", where the "
              "document has "
              "nothing"},
             {"/host/a/mlagRaw/z", "\"/host/a/port/p\"",
              "/host/a/mlagRaw/z: expected a JSON Pointer to a MlagV2, or null; found \"/host/a/port/p\", "
              "which is a "
              "PortV2"},
             {"/edge/~1host~1a~1port~1p", R"({"toPort":{"/host/a":true}})",
              "/edge/~1host~1a~1port~1p/toPort/~1host~1a: expected a JSON Pointer to a PortBaseV2 as key; "
              "found "
              "\"/host/a\", which is a HostV2"},
             {"/edge/~1host~1a~1port~1p/toPort/~1host~1a~1port~1q", "null",
              "/edge/~1host~1a~1port~1p/toPort/~1host~1a~1port~1q: expected true or false; found null"}}) {
        std::string const error = apply("add", c.path, c.value);
        EXPECT_EQ(error.substr(std::min(error.find(" /") + 1, error.size())), c.error) << error;
        EXPECT_EQ(document(), start);
    }
}

TEST_F(Patching, ReadsLines) {
    EXPECT_FALSE(patcher_.applyLine("", "changes", 1));
    EXPECT_FALSE(patcher_.applyLine(" \t\r", "changes", 2));
    EXPECT_TRUE(patcher_.applyLine("{\"op\":\"remove\",\"path\":\"/edge\"}\r", "changes", 3));
    EXPECT_TRUE(patcher_.applyLine(R"( {"from":7,"path":"/localhost","x":[],"op":"remove","value":3} )",
                                   "changes", 4));
    EXPECT_EQ(documentTree(status_).count("edge") + documentTree(status_).count("localhost"), 0U);
}

TEST_F(Patching, LetsAReactorsExceptionPass) {
    struct Thrower final : HostV2::NotifieeConst {
        void onHostname() override { throw std::runtime_error("from a reactor"); }
    };
    Vel::Ptr<Thrower> const thrower = new Thrower;
    thrower->notifierIs(status()->host("a"));
    thrower->isRegisteredNotifieeIs(true);
    thrower->hasNotificationActiveIs(true);
    EXPECT_THROW(apply("remove", "/host/a/hostname"), std::runtime_error);
    EXPECT_EQ(status()->host("a")->hostname(), "");
}

TEST(PatchingVersion3, RefusesWhatIsGivenWhenAnObjectIsMade) {
    auto const status = readText(R"({"host":{"a":{"mlag":{"m":{"secondaryName":"s"}}}}})", v3);
    ModelPatcher patcher(status);
    auto const error = [&](std::string const & line) {
        try {
            patcher.applyLine(line, "changes", 7);
        } catch (InputError const & wrong) {
            return std::string(wrong.what());
        }
        return std::string();
    };
    EXPECT_EQ(error(R"({"op":"add","path":"/host/a/mlag/m/secondaryName","value":"t"})"),
              "changes:7:20: /host/a/mlag/m/secondaryName: expected an attribute that can be changed; found "
              "one that "
              "is given when the object is made");
    EXPECT_EQ(error(R"({"op":"remove","path":"/host/a/mlag/m/secondaryName"})"),
              "changes:7:23: /host/a/mlag/m/secondaryName: expected an attribute that can be changed; found "
              "one that "
              "is given when the object is made");
    EXPECT_EQ(error(R"({"op":"test","path":"/host/a/mlag/m/secondaryName","value":"s"})"), "");
}

// Turns one random model into another by a handful of operations, and back.
TEST(PatchingRandomModels, AModelBecomesAnyOther) {
    auto const before = liveObjects();
    for (unsigned seed = 0; seed < 40; ++seed) {
        RandomModel const from(v2, seed);
        RandomModel const to(v2, seed + 1000);
        ModelPatcher patcher(from.root());
        std::string const original = written(from.root());
        auto const become = [&](std::string const & text) {
            auto const tree = nlohmann::ordered_json::parse(text);
            auto const replace = [&](std::string const & member, nlohmann::ordered_json const & otherwise) {
                nlohmann::ordered_json operation{{"op", "replace"}, {"path", "/" + member}};
                operation["value"] = tree.value(member, otherwise);
                EXPECT_TRUE(patcher.applyLine(operation.dump(), "changes", 1));
                operation["op"] = "test";
                EXPECT_TRUE(patcher.applyLine(operation.dump(), "changes", 2));
            };
            replace("host", nlohmann::ordered_json::object());
            replace("edge", nlohmann::ordered_json::object());
            replace("localhost", nullptr);
            EXPECT_EQ(written(from.root()), text) << "seed " << seed;
        };
        become(written(to.root()));
        become(original);
    }
    EXPECT_EQ(liveObjects(), before);
}

}  // namespace
}  // namespace TopologyTools
