#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tests/tools/document/DocumentTesting.h"

namespace TopologyTools {
namespace {

using namespace std::string_literals;

class DocumentRoundTrip : public DocumentTest {};

constexpr std::string_view everythingOfV2 = R"({
  "host": {
    "leaf-1": {
      "hostname": "leaf-1.example",
      "hostnameAddedByOwner": true,
      "mlagSystemId": "02:00:00:00:00:0a",
      "mlagDomainId": "rack-1",
      "mlagState": "active",
      "mlagPeerLink": "/host/leaf-1/portGroup/peer",
      "port": {
        "eth-1": {
          "type": "port",
          "addedByOwner": true,
          "portGroup": "/host/leaf-1/portGroup/bond-1"
        },
        "eth-2": {}
      },
      "portGroup": {
        "bond-1": {
          "type": "portGroup",
          "memberPort": {
            "another-name": "/host/leaf-1/port/eth-2",
            "eth-1": "/host/leaf-1/port/eth-1",
            "gone": null
          },
          "mlag": "/host/leaf-1/mlag/m-1"
        },
        "peer": {}
      },
      "mlag": {
        "m-1": {
          "type": "mlag",
          "secondaryName": "m-1b",
          "localPortGroup": "/host/leaf-1/portGroup/bond-1",
          "peerPortGroup": "/host/spine-1/portGroup/bond-1"
        },
        "m-2": {}
      },
      "mlagRaw": {
        "m-1": "/host/leaf-1/mlag/m-1",
        "m-3": null
      },
      "logicalPort": {
        "bond-1": "/host/leaf-1/portGroup/bond-1",
        "elsewhere": "/host/spine-1/port/eth-7"
      }
    },
    "spine-1": {
      "port": {
        "eth-7": {}
      },
      "portGroup": {
        "bond-1": {}
      }
    }
  },
  "localhost": "/host/leaf-1",
  "edge": {
    "/host/leaf-1/mlag/m-2": {},
    "/host/leaf-1/port/eth-1": {
      "toPort": {
        "/host/leaf-1/port/eth-2": false,
        "/host/spine-1/port/eth-7": true
      }
    }
  }
}
)";

constexpr std::string_view everythingOfV3 = R"({
  "host": {
    "leaf-1": {
      "hostname": "leaf-1.example",
      "mlagDomainId": "rack-1",
      "mlagSystemId": "02:00:00:00:00:0a",
      "mlagState": "inactive",
      "mlagPeerLink": "/host/leaf-1/portGroup/peer",
      "port": {
        "eth-1": {
          "type": "port",
          "portGroup": "/host/leaf-1/portGroup/bond-1"
        },
        "eth-2": {}
      },
      "portGroup": {
        "bond-1": {
          "type": "portGroup",
          "memberPort": {
            "eth-1": "/host/leaf-1/port/eth-1"
          },
          "mlag": "/host/leaf-1/mlag/m-1"
        },
        "peer": {}
      },
      "mlag": {
        "m-1": {
          "type": "mlag",
          "secondaryName": "m-1b",
          "localPortGroup": "/host/leaf-1/portGroup/bond-1"
        }
      },
      "mlagRaw": {
        "m-1": "/host/leaf-1/mlag/m-1"
      },
      "logicalPort": {
        "eth-7": "/host/spine-1/port/eth-7"
      }
    },
    "spine-1": {
      "port": {
        "eth-7": {}
      }
    }
  },
  "localhost": "/host/leaf-1",
  "edge": {
    "/host/leaf-1/mlag/departed": {},
    "/host/leaf-1/port/eth-1": {
      "toPort": {
        "/host/leaf-1/port/eth-2": false,
        "/host/unknown/portGroup/bond-7": true
      }
    }
  }
}
)";

TEST_F(DocumentRoundTrip, EveryAttributeOfVersion2) {
    EXPECT_EQ(written(readText(everythingOfV2, v2), 2), everythingOfV2);
}

TEST_F(DocumentRoundTrip, EveryAttributeOfVersion3) {
    EXPECT_EQ(written(readText(everythingOfV3, v3), 2), everythingOfV3);
}

TEST_F(DocumentRoundTrip, AnEmptyModel) {
    for (auto const type : {v2, v3}) {
        EXPECT_EQ(rewritten("{}", type), "{}");
        EXPECT_EQ(written(readText(" {\n} ", type), 2), "{}\n");
    }
}

TEST_F(DocumentRoundTrip, TheTreeIsTheText) {
    for (auto const & [text, type] : {std::pair(everythingOfV2, v2), std::pair(everythingOfV3, v3)}) {
        EXPECT_EQ(documentTree(readText(text, type)).dump(2) + '\n', text);
    }
}

TEST_F(DocumentRoundTrip, DefaultsAreReadAndNotWritten) {
    EXPECT_EQ(rewritten(R"({"localhost": null, "edge": {}, "host": {"a": {"hostname": "",
        "hostnameAddedByOwner": false, "mlagSystemId": "00:00:00:00:00:00", "mlagDomainId": "",
        "mlagState": "unknown", "mlagPeerLink": null, "port": {}, "portGroup": {"g": {"type": "unknown",
        "addedByOwner": false, "memberPort": {}, "mlag": null}}, "mlag": {"m": {"secondaryName": "",
        "localPortGroup": null, "peerPortGroup": null}}, "mlagRaw": {}, "logicalPort": {}}}})",
                        v2),
              R"({"host":{"a":{"portGroup":{"g":{}},"mlag":{"m":{}}}}})");
}

TEST_F(DocumentRoundTrip, AddressesAreReadInEitherCaseAndWrittenInSmallLetters) {
    EXPECT_EQ(rewritten(R"({"host":{"a":{"mlagSystemId":"0A:bC:De:fF:00:01"}}})", v2),
              R"({"host":{"a":{"mlagSystemId":"0a:bc:de:ff:00:01"}}})");
}

TEST_F(DocumentRoundTrip, KeysComeInTheOrderOfTheirBytes) {
    EXPECT_EQ(
        rewritten(R"({"host":{"b":{},"é":{},"a":{},"":{},"B":{},"eth-10":{},"eth-2":{},"~":{},"aa":{}}})",
                  v2),
        R"({"host":{"":{},"B":{},"a":{},"aa":{},"b":{},"eth-10":{},"eth-2":{},"~":{},"é":{}}})");
    // As they stand in the text: '/' is written "~1" within a pointer, and '~' comes after every letter.
    EXPECT_EQ(rewritten(R"({"host":{"a/b":{"port":{"p":{}}},"az":{"port":{"p":{}}}},)"
                        R"("edge":{"/host/a~1b/port/p":{},"/host/az/port/p":{}}})",
                        v2),
              R"({"host":{"a/b":{"port":{"p":{}}},"az":{"port":{"p":{}}}},)"
              R"("edge":{"/host/az/port/p":{},"/host/a~1b/port/p":{}}})");
}

TEST_F(DocumentRoundTrip, ReferencesMayRunInAnyDirection) {
    constexpr std::string_view text =
        R"({"edge":{"/host/z/port/p":{"toPort":{"/host/a/port/p":true}}},"localhost":"/host/z","host":{)"
        R"("z":{"port":{"p":{}},"logicalPort":{"p":"/host/a/port/p"}},"a":{"mlagPeerLink":"/host/z/port/p",)"
        R"("port":{"p":{}}}}})";
    EXPECT_EQ(rewritten(text, v2),
              R"({"host":{"a":{"mlagPeerLink":"/host/z/port/p","port":{"p":{}}},)"
              R"("z":{"port":{"p":{}},"logicalPort":{"p":"/host/a/port/p"}}},"localhost":"/host/z",)"
              R"("edge":{"/host/z/port/p":{"toPort":{"/host/a/port/p":true}}}})");
}

TEST_F(DocumentRoundTrip, NamesMayBeAnyText) {
    constexpr std::string_view text =
        R"({"host":{"":{"port":{"":{},"\u0000":{},"/":{},"~":{},"~0":{},"~01":{},"~1":{}},"logicalPort":{)"
        R"("":"/host//port/","\u0000":"/host//port/\u0000","/":"/host//port/~1","~":"/host//port/~0",)"
        R"("~0":"/host//port/~00","~01":"/host//port/~001","~1":"/host//port/~01"}},)"
        R"("\"\\\n\t\u001f":{"hostname":"\"\\\n\t\u001f","port":{"𝄞":{}}},)"
        R"("host":{"port":{"port":{}}}},"localhost":"/host/",)"
        R"("edge":{"/host//port/":{},"/host//port/~001":{"toPort":{"/host/\"\\\n\t\u001f/port/𝄞":true,)"
        R"("/host/host/port/port":true}}}})";
    EXPECT_EQ(rewritten(text, v2), text);
    EXPECT_EQ(rewritten(text, v3), text);
}

TEST_F(DocumentRoundTrip, APortAGroupAndAnMlagMayHaveOneName) {
    constexpr std::string_view text =
        R"({"host":{"a":{"port":{"x":{}},"portGroup":{"x":{}},"mlag":{"x":{}}}},)"
        R"("edge":{"/host/a/mlag/x":{"toPort":{"/host/a/port/x":true,"/host/a/portGroup/x":true}}}})";
    EXPECT_EQ(rewritten(text, v2), text);
    EXPECT_EQ(rewritten(text, v3), text);
}

TEST_F(DocumentRoundTrip, ANullEntryOfVersion3IsAcceptedAndLeavesNothing) {
    EXPECT_EQ(rewritten(R"({"host":{"a":{"portGroup":{"g":{"memberPort":{"p":null}}},"mlagRaw":{"m":null},)"
                        R"("logicalPort":{"p":null}}}})",
                        v3),
              R"({"host":{"a":{"portGroup":{"g":{}}}}})");
}

TEST_F(DocumentRoundTrip, AnObjectThatHasLeftReadsAsNull) {
    using namespace NetworkTopology;
    auto const root = readText(everythingOfV2, v2);
    auto const status = root.as<StatusV2::Ptr>();
    auto const leaf = status->host("leaf-1");
    leaf->portDel("eth-1");
    leaf->portGroupDel("peer");
    status->hostDel("spine-1");
    EXPECT_EQ(
        written(root),
        R"({"host":{"leaf-1":{"hostname":"leaf-1.example","hostnameAddedByOwner":true,)"
        R"("mlagSystemId":"02:00:00:00:00:0a","mlagDomainId":"rack-1","mlagState":"active",)"
        R"("port":{"eth-2":{}},"portGroup":{"bond-1":{"type":"portGroup","memberPort":{)"
        R"("another-name":"/host/leaf-1/port/eth-2","eth-1":null,"gone":null},"mlag":"/host/leaf-1/mlag/m-1"}},)"
        R"("mlag":{"m-1":{"type":"mlag","secondaryName":"m-1b","localPortGroup":"/host/leaf-1/portGroup/bond-1"},)"
        R"("m-2":{}},"mlagRaw":{"m-1":"/host/leaf-1/mlag/m-1","m-3":null},)"
        R"("logicalPort":{"bond-1":"/host/leaf-1/portGroup/bond-1","elsewhere":null}}},)"
        R"("localhost":"/host/leaf-1","edge":{"/host/leaf-1/mlag/m-2":{}}})");
    status->hostDelAll();
    EXPECT_EQ(written(root), "{}");
}

TEST_F(DocumentRoundTrip, ADestinationThatHasLeftIsLeftOut) {
    auto const root =
        readText(R"({"host":{"a":{"port":{"p":{},"q":{},"r":{}}}},"edge":{"/host/a/port/p":{"toPort":)"
                 R"({"/host/a/port/q":true,"/host/a/port/r":false}}}})",
                 v2);
    root.as<NetworkTopology::StatusV2::Ptr>()->host("a")->portDel("q");
    EXPECT_EQ(written(root), R"({"host":{"a":{"port":{"p":{},"r":{}}}},)"
                             R"("edge":{"/host/a/port/p":{"toPort":{"/host/a/port/r":false}}}})");
}

TEST_F(DocumentRoundTrip, AnObjectOfTheSameNameIsNotTheOneThatLeft) {
    auto const root = readText(R"({"host":{"a":{"mlagPeerLink":"/host/a/port/p","port":{"p":{}}}},)"
                               R"("edge":{"/host/a/port/p":{}}})",
                               v2);
    auto const host = root.as<NetworkTopology::StatusV2::Ptr>()->host("a");
    host->portDel("p");
    host->portIs("p");
    EXPECT_EQ(written(root), R"({"host":{"a":{"port":{"p":{}}}}})");
}

TEST_F(DocumentRoundTrip, AVersion3EntryWhoseTargetLeftReadsAsNullAndItsEdgesStay) {
    using namespace NetworkTopologyV3;
    auto const root = readText(everythingOfV3, v3);
    auto const status = root.as<Status::Ptr>();
    status->host("leaf-1")->portDel("eth-1");
    status->hostDel("spine-1");
    EXPECT_EQ(
        written(root),
        R"({"host":{"leaf-1":{"hostname":"leaf-1.example","mlagDomainId":"rack-1",)"
        R"("mlagSystemId":"02:00:00:00:00:0a","mlagState":"inactive",)"
        R"("mlagPeerLink":"/host/leaf-1/portGroup/peer","port":{"eth-2":{}},"portGroup":{"bond-1":)"
        R"({"type":"portGroup","memberPort":{"eth-1":null},"mlag":"/host/leaf-1/mlag/m-1"},"peer":{}},)"
        R"("mlag":{"m-1":{"type":"mlag","secondaryName":"m-1b",)"
        R"("localPortGroup":"/host/leaf-1/portGroup/bond-1"}},"mlagRaw":{"m-1":"/host/leaf-1/mlag/m-1"},)"
        R"("logicalPort":{"eth-7":null}}},"localhost":"/host/leaf-1","edge":{"/host/leaf-1/mlag/departed":{},)"
        R"("/host/leaf-1/port/eth-1":{"toPort":{"/host/leaf-1/port/eth-2":false,)"
        R"("/host/unknown/portGroup/bond-7":true}}}})");
}

TEST_F(DocumentRoundTrip, AnEdgeFromNowhereIsLeftOut) {
    using namespace NetworkTopology;
    auto const status = StatusV2::StatusV2Is();
    status->edgeIs(PortBaseV2::PtrConst());
    EXPECT_EQ(written(Vel::GenericIf::of(status)), "{}");
}

TEST_F(DocumentRoundTrip, AModelThatCannotBeChangedIsWrittenToo) {
    auto const status = readText(everythingOfV2, v2).as<NetworkTopology::StatusV2::Ptr>();
    EXPECT_EQ(written(Vel::GenericIf::of(NetworkTopology::StatusV2::PtrConst(status)), 2), everythingOfV2);
}

std::string writingError(Vel::GenericIf const & root) {
    std::string tree;
    try {
        documentTree(root);
    } catch (DocumentError const & error) {
        tree = error.what();
    }
    try {
        written(root);
    } catch (DocumentError const & error) {
        return tree == error.what() ? tree : "the tree has another error: " + tree;
    }
    return "no error";
}

TEST_F(DocumentRoundTrip, ANameThatIsNotUtf8CannotBeWritten) {
    using namespace NetworkTopology;
    auto const status = StatusV2::StatusV2Is();
    auto const host = status->hostIs("a~b\n");
    auto const port = host->portIs("caf\xe9");
    EXPECT_EQ(writingError(Vel::GenericIf::of(status)),
              "/host/a~0b\\x0a/port/caf\\xe9: expected text encoded in UTF-8 (RFC 3629); found \"caf\\xe9\"");
    host->portDelAll();
    host->logicalPortIs("\xff", nullptr);
    EXPECT_EQ(
        writingError(Vel::GenericIf::of(status)),
        "/host/a~0b\\x0a/logicalPort/\\xff: expected text encoded in UTF-8 (RFC 3629); found \"\\xff\"");
    host->logicalPortDelAll();
    host->hostnameIs("x\xed\xa0\x80");
    EXPECT_EQ(
        writingError(Vel::GenericIf::of(status)),
        "/host/a~0b\\x0a/hostname: expected text encoded in UTF-8 (RFC 3629); found \"x\\xed\\xa0\\x80\"");
    host->hostnameIs("x");
    EXPECT_EQ(writingError(Vel::GenericIf::of(status)), "no error");
}

TEST_F(DocumentRoundTrip, ANumberWithoutAnEnumeratorCannotBeWritten) {
    using namespace NetworkTopology;
    auto const status = StatusV2::StatusV2Is();
    status->hostIs("a")->portIs("p")->typeIs(static_cast<PortTypeV2>(7));
    EXPECT_EQ(writingError(Vel::GenericIf::of(status)),
              "/host/a/port/p/type: expected one of unknown, port, portGroup, mlag; found 7");
}

TEST_F(DocumentRoundTrip, AKeyThatNoPortHasCannotBeWritten) {
    using namespace NetworkTopologyV3;
    auto const status = Status::StatusIs();
    status->edgeIs(PortKey());
    EXPECT_EQ(writingError(Vel::GenericIf::of(status)),
              "/edge/: expected a JSON Pointer such as \"/host/leaf-1/port/eth-1\" as key; found \"\"");
    status->edgeDelAll();
    status->edgeIs(PortKey("a", "lag/1"));
    EXPECT_EQ(writingError(Vel::GenericIf::of(status)),
              "/edge/~1host~1a~1lag~11: expected a JSON Pointer such as \"/host/leaf-1/port/eth-1\" as key; "
              "found \"/host/a/lag/1\"");
}

TEST_F(DocumentRoundTrip, OnlyAnObjectIsADocument) {
    EXPECT_THROW(written(Vel::GenericIf()), Vel::RangeException);
    EXPECT_THROW(written(Vel::GenericIf(Vel::Name("a"))), Vel::RangeException);
}

}  // namespace
}  // namespace TopologyTools
