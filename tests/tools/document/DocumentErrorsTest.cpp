#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tests/tools/document/DocumentTesting.h"

namespace TopologyTools {
namespace {

class DocumentErrors : public DocumentTest {};

struct Case {
    std::string_view text;
    std::string_view error;
};

void expectErrors(std::string_view rootType, std::vector<Case> const & cases) {
    for (Case const & c : cases) EXPECT_EQ(readingError(c.text, rootType), c.error) << c.text;
}

TEST_F(DocumentErrors, AWrongKind) {
    expectErrors(
        v2,
        {{"[]", "t.json:1:1: expected an object; found an array"},
         {"\n 7", "t.json:2:2: expected an object; found 7"},
         {R"({"host":[]})", "t.json:1:9: /host: expected an object; found an array"},
         {R"({"host":null})", "t.json:1:9: /host: expected an object; found null"},
         {R"({"host":{"a":null}})", "t.json:1:14: /host/a: expected an object; found null"},
         {R"({"host":{"a":"b"}})", "t.json:1:14: /host/a: expected an object; found \"b\""},
         {R"({"host":{"a":{"port":true}}})", "t.json:1:22: /host/a/port: expected an object; found true"},
         {R"({"host":{"a":{"mlagRaw":1e3}}})", "t.json:1:25: /host/a/mlagRaw: expected an object; found 1e3"},
         {R"({"edge":false})", "t.json:1:9: /edge: expected an object; found false"},
         {R"({"host":{"a":{"hostname":7}}})", "t.json:1:26: /host/a/hostname: expected a string; found 7"},
         {R"({"host":{"a":{"hostname":null}}})",
          "t.json:1:26: /host/a/hostname: expected a string; found null"},
         {R"({"host":{"a":{"mlagDomainId":{}}}})",
          "t.json:1:30: /host/a/mlagDomainId: expected a string; found an object"},
         {R"({"host":{"a":{"hostnameAddedByOwner":"true"}}})",
          "t.json:1:38: /host/a/hostnameAddedByOwner: expected true or false; found \"true\""},
         {R"({"host":{"a":{"hostnameAddedByOwner":1}}})",
          "t.json:1:38: /host/a/hostnameAddedByOwner: expected true or false; found 1"},
         {R"({"host":{"a":{"mlag":{"m":{"secondaryName":null}}}}})",
          "t.json:1:44: /host/a/mlag/m/secondaryName: expected a string; found null"},
         {R"({"localhost":{}})",
          "t.json:1:14: /localhost: expected a JSON Pointer to a HostV2, or null; found an object"}});
}

TEST_F(DocumentErrors, AnUnknownMember) {
    expectErrors(
        v2,
        {{R"({"hosts":{}})",
          "t.json:1:2: /hosts: expected one of the members host, localhost, edge; found \"hosts\""},
         {"{\"host\":{\"a\":{\n  \"name\": \"a\"}}}",
          "t.json:2:3: /host/a/name: expected one of the members hostname, hostnameAddedByOwner, "
          "mlagSystemId, "
          "mlagDomainId, mlagState, mlagPeerLink, port, portGroup, mlag, mlagRaw, logicalPort; found "
          "\"name\""},
         {R"({"host":{"a":{"port":{"p":{"host":"/host/a"}}}}})",
          "t.json:1:28: /host/a/port/p/host: expected one of the members type, addedByOwner, portGroup; "
          "found \"host\""},
         {R"({"host":{"a":{"port":{"p":{"secondaryName":"x"}}}}})",
          "t.json:1:28: /host/a/port/p/secondaryName: expected one of the members type, addedByOwner, "
          "portGroup; "
          "found \"secondaryName\""},
         {R"({"host":{"a":{"port":{"p":{}}}},"edge":{"/host/a/port/p":{"fromPort":"/host/a/port/p"}}})",
          "t.json:1:59: /edge/~1host~1a~1port~1p/fromPort: expected one of the members toPort; found "
          "\"fromPort\""},
         {R"({"host":{"a":{"portDelAll":{}}}})",
          "t.json:1:15: /host/a/portDelAll: expected one of the members hostname, hostnameAddedByOwner, "
          "mlagSystemId, mlagDomainId, mlagState, mlagPeerLink, port, portGroup, mlag, mlagRaw, logicalPort; "
          "found \"portDelAll\""}});
    EXPECT_EQ(readingError(R"({"host":{"a":{"port":{"p":{"portKey":"/host/a/port/p"}}}}})", v3),
              "t.json:1:28: /host/a/port/p/portKey: expected one of the members type, portGroup; "
              "found \"portKey\"");
}

TEST_F(DocumentErrors, AValueThatStandsForNothing) {
    expectErrors(
        v2,
        {{R"({"host":{"a":{"port":{"eth-1":{"type":"lagg"}}}}})",
          "t.json:1:39: /host/a/port/eth-1/type: expected one of unknown, port, portGroup, mlag; found "
          "\"lagg\""},
         {R"({"host":{"a":{"port":{"p":{"type":1}}}}})",
          "t.json:1:35: /host/a/port/p/type: expected one of unknown, port, portGroup, mlag; found 1"},
         {R"({"host":{"a":{"port":{"p":{"type":""}}}}})",
          "t.json:1:35: /host/a/port/p/type: expected one of unknown, port, portGroup, mlag; found \"\""},
         {R"({"host":{"a":{"mlagState":"Active"}}})",
          "t.json:1:27: /host/a/mlagState: expected one of unknown, disabled, inactive, active; found "
          "\"Active\""},
         {R"({"host":{"a":{"mlagSystemId":"02:00:00:00:00"}}})",
          "t.json:1:30: /host/a/mlagSystemId: expected an Ethernet address such as \"02:00:5e:10:00:01\"; "
          "found \"02:00:00:00:00\""},
         {R"({"host":{"a":{"mlagSystemId":""}}})",
          "t.json:1:30: /host/a/mlagSystemId: expected an Ethernet address such as \"02:00:5e:10:00:01\"; "
          "found \"\""},
         {R"({"host":{"a":{"mlagSystemId":0}}})", "t.json:1:30: /host/a/mlagSystemId: expected an Ethernet "
                                                  "address such as \"02:00:5e:10:00:01\"; found 0"}});
}

TEST_F(DocumentErrors, AReferenceThatLeadsNowhere) {
    constexpr std::string_view wanted = "expected a JSON Pointer to a PortBaseV2, or null; ";
    auto const linkError = [&](std::string_view link) {
        return readingError(R"({"host":{"a":{"mlagPeerLink":)" + std::string(link) + R"(,"port":{"p":{}}}}})",
                            v2);
    };
    auto const expected = [&](std::string_view rest) {
        return "t.json:1:30: /host/a/mlagPeerLink: " + std::string(wanted) + std::string(rest);
    };
    EXPECT_EQ(linkError("\"/host/a/port/p\""), "no error");
    EXPECT_EQ(linkError("null"), "no error");
    EXPECT_EQ(linkError("7"), expected("found 7"));
    EXPECT_EQ(linkError("{}"), expected("found an object"));
    EXPECT_EQ(linkError("\"/host/a/port/q\""),
              expected("found \"/host/a/port/q\", where the document has nothing"));
    EXPECT_EQ(linkError("\"/host/b/port/p\""),
              expected("found \"/host/b/port/p\", where the document has nothing"));
    EXPECT_EQ(linkError("\"/host/a/mlag/p\""),
              expected("found \"/host/a/mlag/p\", where the document has nothing"));
    EXPECT_EQ(linkError("\"/host/a/port/p/\""),
              expected("found \"/host/a/port/p/\", where the document has nothing"));
    EXPECT_EQ(linkError("\"/hosts/a\""), expected("found \"/hosts/a\", where the document has nothing"));
    EXPECT_EQ(linkError("\"/\""), expected("found \"/\", where the document has nothing"));
    EXPECT_EQ(linkError("\"/host\""), expected("found \"/host\", which is no object of a collection"));
    EXPECT_EQ(linkError("\"/localhost\""),
              expected("found \"/localhost\", which is no object of a collection"));
    EXPECT_EQ(linkError("\"/host/a/mlagPeerLink\""),
              expected("found \"/host/a/mlagPeerLink\", which is no object of a collection"));
    EXPECT_EQ(linkError("\"/host/a/logicalPort/p\""),
              expected("found \"/host/a/logicalPort/p\", which is no object of a collection"));
    EXPECT_EQ(linkError("\"/host/a\""), expected("found \"/host/a\", which is a HostV2"));
    EXPECT_EQ(linkError("\"\""), expected("found \"\", which is a StatusV2"));
    EXPECT_EQ(linkError("\"host/a/port/p\""),
              expected("not a JSON Pointer: \"host/a/port/p\"; expected \"\" or a text that starts with '/' "
                       "(RFC 6901, section 3)"));
    EXPECT_EQ(linkError("\"/host/a/port/~2\""),
              expected("not a JSON Pointer: \"/host/a/port/~2\"; expected '0' or '1' after '~' (RFC 6901, "
                       "section 3)"));
}

TEST_F(DocumentErrors, AReferenceToTheWrongClass) {
    expectErrors(
        v2,
        {{R"({"host":{"a":{"port":{"p":{"portGroup":"/host/a/port/p"}}}}})",
          "t.json:1:40: /host/a/port/p/portGroup: expected a JSON Pointer to a PortGroupV2, or null; "
          "found \"/host/a/port/p\", which is a PortV2"},
         {R"({"host":{"a":{"port":{"p":{}},"mlagRaw":{"p":"/host/a/port/p"}}}})",
          "t.json:1:46: /host/a/mlagRaw/p: expected a JSON Pointer to a MlagV2, or null; "
          "found \"/host/a/port/p\", which is a PortV2"},
         {R"({"host":{"a":{"port":{"p":{}}}},"localhost":"/host/a/port/p"})",
          "t.json:1:45: /localhost: expected a JSON Pointer to a HostV2, or null; found \"/host/a/port/p\", "
          "which is a PortV2"},
         {R"({"host":{"a":{"port":{"p":{}}}},"edge":{"/host/a/port/p":{}},"localhost":"/edge/~1host~1a~1port~1p"})",
          "t.json:1:74: /localhost: expected a JSON Pointer to a HostV2, or null; "
          "found \"/edge/~1host~1a~1port~1p\", which is a DirectedEdgeV2"}});
}

TEST_F(DocumentErrors, AKeyThatLeadsNowhere) {
    expectErrors(
        v2,
        {{R"({"edge":{"/host/a/port/p":{}}})",
          "t.json:1:10: /edge/~1host~1a~1port~1p: expected a JSON Pointer to a PortBaseV2 as key; "
          "found \"/host/a/port/p\", where the document has nothing"},
         {R"({"edge":{"p":{}}})",
          "t.json:1:10: /edge/p: expected a JSON Pointer to a PortBaseV2 as key; not a JSON Pointer: \"p\"; "
          "expected \"\" or a text that starts with '/' (RFC 6901, section 3)"},
         {R"({"host":{"a":{}},"edge":{"/host/a":{}}})",
          "t.json:1:26: /edge/~1host~1a: expected a JSON Pointer to a PortBaseV2 as key; found \"/host/a\", "
          "which is a HostV2"},
         {R"({"host":{"a":{"port":{"p":{}}}},"edge":{"/host/a/port/p":{"toPort":{"/host/a/port/q":true}}}})",
          "t.json:1:69: /edge/~1host~1a~1port~1p/toPort/~1host~1a~1port~1q: expected a JSON Pointer to a "
          "PortBaseV2 as key; found \"/host/a/port/q\", where the document has nothing"},
         {R"({"host":{"a":{"port":{"p":{}}}},"edge":{"/host/a/port/p":{"toPort":{"/host/a/port/p":null}}}})",
          "t.json:1:86: /edge/~1host~1a~1port~1p/toPort/~1host~1a~1port~1p: expected true or false; found "
          "null"}});
    constexpr std::string_view wanted =
        "expected a JSON Pointer such as \"/host/leaf-1/port/eth-1\" as key; ";
    EXPECT_EQ(readingError(R"({"edge":{"p":{}}})", v3),
              "t.json:1:10: /edge/p: " + std::string(wanted) + "found \"p\"");
    EXPECT_EQ(readingError(R"({"edge":{"":{}}})", v3),
              "t.json:1:10: /edge/: " + std::string(wanted) + "found \"\"");
    EXPECT_EQ(readingError(R"({"edge":{"/host/a/port/p":{"toPort":{"/host/a/edge/p":true}}}})", v3),
              "t.json:1:38: /edge/~1host~1a~1port~1p/toPort/~1host~1a~1edge~1p: " + std::string(wanted) +
                  "found \"/host/a/edge/p\"");
}

TEST_F(DocumentErrors, AVersion3EntryUnderAnotherNameThanItsTargets) {
    expectErrors(
        v3, {{R"({"host":{"a":{"mlag":{"m":{}},"mlagRaw":{"n":"/host/a/mlag/m"}}}})",
              "t.json:1:46: /host/a/mlagRaw/n: expected a target named \"n\", as the key is; "
              "found \"/host/a/mlag/m\""},
             {R"({"host":{"a":{"port":{"p/":{}},"logicalPort":{"p":"/host/a/port/p~1"}}}})",
              "t.json:1:51: /host/a/logicalPort/p: expected a target named \"p\", as the key is; "
              "found \"/host/a/port/p~1\""},
             {R"({"host":{"a":{"port":{"p":{}},"portGroup":{"g":{"memberPort":{"":"/host/a/port/p"}}}}}})",
              "t.json:1:66: /host/a/portGroup/g/memberPort/: expected a target named \"\", as the key is; "
              "found \"/host/a/port/p\""}});
}

TEST_F(DocumentErrors, AMemberThatComesTwice) {
    expectErrors(v2, {{R"({"host":{"a":{}, "a":{}}})",
                       "t.json:1:18: /host/a: duplicate member name \"a\"; first at line 1, column 10"}});
}

TEST_F(DocumentErrors, ThePathOfAFaultStaysOnOneLine) {
    EXPECT_EQ(readingError(R"({"host":{"\u0000/\n~":{"hostname":"\u0000","mlagState":"\u0000"}}})", v2),
              "t.json:1:56: /host/\\u0000~1\\u000a~0/mlagState: expected one of unknown, disabled, inactive, "
              "active; "
              "found \"\\u0000\"");
}

TEST_F(DocumentErrors, TheFirstFaultIsTold) {
    EXPECT_EQ(
        readingError("{\"edge\":{\"x\":{}},\n\"host\":7}", v2),
        "t.json:1:10: /edge/x: expected a JSON Pointer to a PortBaseV2 as key; not a JSON Pointer: \"x\"; "
        "expected \"\" or a text that starts with '/' (RFC 6901, section 3)");
}

TEST_F(DocumentErrors, AnUnknownRootType) {
    EXPECT_THROW(readText("{}", "NetworkTopology::Status"), Vel::RangeException);
}

// Every fault at the very end of a document that has everything, so that anything done too early would show.
TEST_F(DocumentErrors, AFaultAnywhereChangesNothing) {
    using namespace NetworkTopology;
    auto const status = StatusV2::StatusV2Is();
    auto const before = liveObjects();
    struct Reactor : StatusV2::NotifieeConst {
        void onHost(Vel::Name) override { ++calls; }
        void onEdge(PortBaseV2::PtrConst const &) override { ++calls; }
        void onLocalhost() override { ++calls; }
        int calls = 0;
    };
    Vel::Ptr<Reactor> const reactor = new Reactor;
    reactor->notifierIs(status);
    reactor->isRegisteredNotifieeIs(true);
    reactor->hasNotificationActiveIs(true);
    auto const withReactor = liveObjects();
    for (std::string_view const last :
         {R"("mlagState":"x")", R"("name":"z")", R"("port":{"p":{"portGroup":"/host/z/portGroup/g"}})",
          R"("mlagRaw":{"m":"/host/a/port/p"})", R"("mlagSystemId":"0")"}) {
        std::string const text =
            R"({"localhost":"/host/a","edge":{"/host/a/port/p":{"toPort":{"/host/a/port/p":true}}},"host":{"a":{"port":)"
            R"({"p":{"type":"port"}},"mlag":{"m":{}},"mlagRaw":{"m":"/host/a/mlag/m"}},"z":{)" +
            std::string(last) + "}}}";
        EXPECT_THROW(loadDocument(parseJson(text, "t.json"), "t.json", Vel::GenericIf::of(status)),
                     InputError);
        EXPECT_EQ(reactor->calls, 0) << last;
        EXPECT_EQ(written(Vel::GenericIf::of(status)), "{}") << last;
        EXPECT_EQ(liveObjects(), withReactor) << last;
    }
    loadDocument(parseJson(R"({"host":{"a":{}}})", "t.json"), "t.json", Vel::GenericIf::of(status));
    EXPECT_EQ(reactor->calls, 1);
    EXPECT_NE(liveObjects(), before);
}

}  // namespace
}  // namespace TopologyTools
