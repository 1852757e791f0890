// What each kind of change of the version-2 model leads to.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tools/document/DocumentTesting.h"
#include "tests/tools/follow/FollowTesting.h"

namespace TopologyTools {
namespace {

std::string const kStart =
    R"({"localhost":"/host/a","host":{"a":{"hostname":"A","mlagPeerLink":"/host/a/portGroup/g","port":{"p":)"
    R"({"type":"port","portGroup":"/host/a/portGroup/g"},"q":{}},"portGroup":{"g":{"memberPort":)"
    R"({"p":"/host/a/port/p"},"mlag":"/host/a/mlag/m"}},"mlag":{"m":{"secondaryName":"s",)"
    R"("localPortGroup":"/host/a/portGroup/g"}},"mlagRaw":{"m":"/host/a/mlag/m"},)"
    R"("logicalPort":{"x":"/host/b/port/x"}},"b":{"port":{"x":{}}}},)"
    R"("edge":{"/host/a/port/p":{"toPort":{"/host/a/port/q":false,"/host/b/port/x":true}}}})";

class TranslatorChanges : public DocumentTest {
protected:
    std::string add(std::string const & path, std::string const & value) {
        return recording_.apply(R"({"op":"add","path":")" + path + R"(","value":)" + value + '}');
    }
    std::string remove(std::string const & path) {
        return recording_.apply(R"({"op":"remove","path":")" + path + "\"}");
    }

    Recording recording_{kStart};
};

TEST_F(TranslatorChanges, OfAHostsAttributes) {
    EXPECT_EQ(add("/host/a/hostname", "\"B\""), "replace /host/a/hostname \"B\"\n");
    EXPECT_EQ(add("/host/a/hostname", "\"B\""), "");
    EXPECT_EQ(remove("/host/a/hostname"), "remove /host/a/hostname\n");
    EXPECT_EQ(add("/host/a/mlagDomainId", "\"d\""), "add /host/a/mlagDomainId \"d\"\n");
    EXPECT_EQ(add("/host/a/mlagSystemId", "\"02:00:00:00:00:0A\""),
              "add /host/a/mlagSystemId \"02:00:00:00:00:0a\"\n");
    EXPECT_EQ(add("/host/a/mlagSystemId", "\"00:00:00:00:00:00\""), "remove /host/a/mlagSystemId\n");
    EXPECT_EQ(add("/host/a/mlagState", "\"active\""), "add /host/a/mlagState \"active\"\n");
    EXPECT_EQ(add("/host/a/mlagState", "\"inactive\""), "replace /host/a/mlagState \"inactive\"\n");
    EXPECT_EQ(add("/host/a/mlagPeerLink", "\"/host/b/port/x\""),
              "replace /host/a/mlagPeerLink \"/host/b/port/x\"\n");
    EXPECT_EQ(add("/host/a/mlagPeerLink", "null"), "remove /host/a/mlagPeerLink\n");
    EXPECT_EQ(add("/host/a/hostnameAddedByOwner", "true"),
              "");  // Version 3 has no such attribute.
}

TEST_F(TranslatorChanges, OfTheLocalhost) {
    EXPECT_EQ(add("/localhost", "\"/host/b\""), "replace /localhost \"/host/b\"\n");
    EXPECT_EQ(remove("/localhost"), "remove /localhost\n");
    EXPECT_EQ(add("/localhost", "\"/host/a\""), "add /localhost \"/host/a\"\n");
}

TEST_F(TranslatorChanges, OfHosts) {
    EXPECT_EQ(add("/host/c", R"({"hostname":"C","port":{"y":{"type":"port"}}})"),
              "add /host/c {}\n"
              "add /host/c/port {}\n"
              "add /host/c/port/y {}\n"
              "add /host/c/hostname \"C\"\n"
              "add /host/c/port/y/type \"port\"\n");
    EXPECT_EQ(remove("/host/c"), "remove /host/c\n");
    EXPECT_EQ(remove("/host"), "remove /host/a\n"
                               "remove /localhost\n"
                               "remove /host/b\n"
                               "remove /host\n");
    EXPECT_EQ(add("/host/a", "{}"), "add /host {}\nadd /host/a {}\n");
}

TEST_F(TranslatorChanges, OfPortsAndTheirAttributes) {
    EXPECT_EQ(add("/host/b/port/y", "{}"), "add /host/b/port/y {}\n");
    EXPECT_EQ(add("/host/b/port/y/type", "\"mlag\""), "add /host/b/port/y/type \"mlag\"\n");
    EXPECT_EQ(add("/host/b/port/y/addedByOwner", "true"), "");
    EXPECT_EQ(add("/host/b/port/y/portGroup", "\"/host/a/portGroup/g\""),
              "add /host/b/port/y/portGroup \"/host/a/portGroup/g\"\n");
    EXPECT_EQ(remove("/host/b/port/y"), "remove /host/b/port/y\n");
    EXPECT_EQ(remove("/host/b/port"), "remove /host/b/port/x\n"
                                      "remove /host/b/port\n"
                                      "replace /host/a/logicalPort/x null\n");
}

TEST_F(TranslatorChanges, OfPortGroupsAndTheirMembers) {
    EXPECT_EQ(add("/host/b/portGroup/h", "{}"), "add /host/b/portGroup {}\nadd /host/b/portGroup/h {}\n");
    EXPECT_EQ(add("/host/b/portGroup/h/memberPort/q", "\"/host/a/port/q\""),
              "add /host/b/portGroup/h/memberPort {}\n"
              "add /host/b/portGroup/h/memberPort/q \"/host/a/port/q\"\n");
    EXPECT_EQ(remove("/host/a/port/q"), "remove /host/a/port/q\n"
                                        "replace /host/b/portGroup/h/memberPort/q null\n");
    EXPECT_EQ(remove("/host/b/portGroup/h/memberPort"), "remove /host/b/portGroup/h/memberPort/q\n"
                                                        "remove /host/b/portGroup/h/memberPort\n");
    EXPECT_EQ(add("/host/b/portGroup/h/mlag", "\"/host/a/mlag/m\""),
              "add /host/b/portGroup/h/mlag \"/host/a/mlag/m\"\n");
    EXPECT_EQ(remove("/host/b/portGroup"), "remove /host/b/portGroup/h\nremove /host/b/portGroup\n");
}

TEST_F(TranslatorChanges, OfMlags) {
    EXPECT_EQ(add("/host/b/mlag/n", R"({"secondaryName":"t"})"),
              "add /host/b/mlag {}\n"
              "add /host/b/mlag/n {\"secondaryName\":\"t\"}\n");
    EXPECT_EQ(add("/host/b/mlag/n/secondaryName", "\"u\""), "");
    EXPECT_EQ(add("/host/b/mlag/n/peerPortGroup", "\"/host/a/portGroup/g\""), "");
    EXPECT_EQ(add("/host/b/mlag/n/localPortGroup", "\"/host/a/portGroup/g\""),
              "add /host/b/mlag/n/localPortGroup \"/host/a/portGroup/g\"\n");
    EXPECT_EQ(add("/host/b/mlagRaw/n", "\"/host/b/mlag/n\""), "add /host/b/mlagRaw {}\n"
                                                              "add /host/b/mlagRaw/n \"/host/b/mlag/n\"\n");
    EXPECT_EQ(remove("/host/b/mlag"), "remove /host/b/mlag/n\n"
                                      "remove /host/b/mlag\n"
                                      "replace /host/b/mlagRaw/n null\n");
    EXPECT_EQ(remove("/host/b/mlagRaw"), "remove /host/b/mlagRaw/n\nremove /host/b/mlagRaw\n");
}

TEST_F(TranslatorChanges, OfLogicalPorts) {
    EXPECT_EQ(add("/host/a/logicalPort/m", "\"/host/a/mlag/m\""),
              "add /host/a/logicalPort/m \"/host/a/mlag/m\"\n");
    EXPECT_EQ(remove("/host/a/logicalPort"), "remove /host/a/logicalPort/m\n"
                                             "remove /host/a/logicalPort/x\n"
                                             "remove /host/a/logicalPort\n");
}

TEST_F(TranslatorChanges, OfEdges) {
    EXPECT_EQ(add("/edge/~1host~1b~1port~1x", R"({"toPort":{"/host/a/port/q":true,"/host/a/port/p":false}})"),
              "add /edge/~1host~1b~1port~1x {}\n"
              "add /edge/~1host~1b~1port~1x/toPort {}\n"
              "add /edge/~1host~1b~1port~1x/toPort/~1host~1a~1port~1p false\n"
              "add /edge/~1host~1b~1port~1x/toPort/~1host~1a~1port~1q true\n");
    EXPECT_EQ(add("/edge/~1host~1b~1port~1x/toPort/~1host~1a~1port~1p", "true"),
              "replace /edge/~1host~1b~1port~1x/toPort/~1host~1a~1port~1p true\n");
    EXPECT_EQ(remove("/edge/~1host~1b~1port~1x/toPort"),
              "remove /edge/~1host~1b~1port~1x/toPort/~1host~1a~1port~1p\n"
              "remove /edge/~1host~1b~1port~1x/toPort/~1host~1a~1port~1q\n"
              "remove /edge/~1host~1b~1port~1x/toPort\n");
    EXPECT_EQ(remove("/edge"), "remove /edge/~1host~1a~1port~1p\n"
                               "remove /edge/~1host~1b~1port~1x\n"
                               "remove /edge\n");
}

// One change of the group turns four places to null; nobody has written any of
// them.
TEST_F(TranslatorChanges, OfWhatLosesItsTarget) {
    EXPECT_EQ(remove("/host/a/portGroup/g"), "remove /host/a/portGroup/g\n"
                                             "remove /host/a/portGroup\n"
                                             "remove /host/a/mlag/m/localPortGroup\n"
                                             "remove /host/a/mlagPeerLink\n"
                                             "remove /host/a/port/p/portGroup\n");
}

TEST_F(TranslatorChanges, OfAHostThatTakesThePlaceOfAnother) {
    add("/host/b/logicalPort/p", "\"/host/a/port/p\"");
    add("/host/a", R"({"hostname":"again","port":{"p":{"type":"port"}}})");
    nlohmann::json const & host = recording_.document().at("host").at("a");
    EXPECT_EQ(host.at("hostname"), "again");
    EXPECT_EQ(host.at("port").dump(), R"({"p":{"type":"port"}})");
    EXPECT_FALSE(host.contains("portGroup"));
}

TEST_F(TranslatorChanges, TakeEveryName) {
    std::string const name = R"(~0 ~1 \u0000 \" \n \u00e9)";
    std::string const path = "/host/a/port/" + std::string(R"(~00 ~01 \u0000 \" \n \u00e9)");
    add(path, "{\"portGroup\":\"/host/a/portGroup/g\"}");
    add("/host/a/logicalPort/" + std::string(R"(~00 ~01 \u0000 \" \n \u00e9)"), '"' + path + '"');
    EXPECT_EQ(recording_.document().at("host").at("a").at("port").size(), 3u);
    EXPECT_EQ(recording_.document().at("host").at("a").at("logicalPort").size(), 2u);
    add("/host/a/port/", "{}");
    EXPECT_TRUE(recording_.document().at("host").at("a").at("port").contains(""));
}

}  // namespace
}  // namespace TopologyTools
