#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/Vel/VelType.h"
#include "tests/tools/cli/RunProgram.h"
#include "tools/format/NaturalOrder.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

json inspected(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"inspect", "--format", "json"});
    ProgramRun const run = runProgram(arguments);
    EXPECT_EQ(run.status, 0) << run.messages;
    EXPECT_THAT(run.messages, IsEmpty());
    return json::parse(run.output);
}

json const & named(json const & list, std::string const & name) {
    for (json const & one : list) {
        if (one.at("name") == name) return one;
    }
    throw std::runtime_error("no " + name);
}

// The types that the program registers: the libraries' own, without those of other tests of this program.
std::vector<Vel::VelType const *> libraryTypes() {
    std::vector<Vel::VelType const *> types = Vel::typeNodes();
    std::erase_if(types, [](Vel::VelType const * type) { return type->name().starts_with("Other::"); });
    return types;
}

TEST(Inspect, PrintsEveryRegisteredTypeOnceByName) {
    std::vector<std::string> printed;
    for (json const & type : inspected({})) printed.push_back(type.at("name"));
    std::vector<std::string> expected;
    for (Vel::VelType const * const type : libraryTypes()) expected.emplace_back(type->name());
    EXPECT_THAT(printed, ::testing::UnorderedElementsAreArray(expected));
    EXPECT_TRUE(std::is_sorted(printed.begin(), printed.end(), NaturalLess()));
    for (char const * name : {"NetworkTopologyAggregator::V2Sm", "NetworkTopologyAggregator::PortBaseFinder",
                              "NetworkTopology::HostV2", "NetworkTopologyV3::PortKey", "void"}) {
        EXPECT_THAT(printed, ::testing::Contains(name));
    }
    std::string const text = runProgram({"inspect"}).output;
    for (std::string const & name : expected) EXPECT_THAT("\n" + text, HasSubstr("\n" + name + "  "));
}

void expectPrinted(json const & printed, Vel::VelAttr const & attribute) {
    EXPECT_EQ(printed.at("name"), attribute.name());
    EXPECT_EQ(printed.at("index"), attribute.index());
    EXPECT_EQ(printed.at("type"), attribute.type()->name());
    EXPECT_EQ(printed.value("immutable", false), attribute.isImmutable());
    EXPECT_EQ(printed.contains("key"), attribute.keyType() != nullptr);
    if (attribute.keyType()) {
        EXPECT_EQ(printed.at("key").at("type"), attribute.keyType()->name());
        EXPECT_EQ(printed.at("key").at("name"), attribute.keyName());
    }
    EXPECT_EQ(printed.at("operations").size(),
              static_cast<std::size_t>(__builtin_popcount(attribute.operations())));
}

void expectPrinted(json const & printed, std::span<Vel::VelArg const> arguments) {
    json expected = json::array();
    for (Vel::VelArg const & argument : arguments)
        expected.push_back({{"name", argument.name}, {"type", argument.type->name()}});
    EXPECT_EQ(printed, expected);
}

// What is printed is what the record of this very type says.
TEST(Inspect, TellsAllThatTheRecordsHold) {
    json const types = inspected({});
    for (Vel::VelType const * const record : libraryTypes()) {
        SCOPED_TRACE(record->name());
        json const & type = named(types, std::string(record->name()));
        EXPECT_EQ(type.value("base", ""), record->base() ? record->base()->name() : "");
        EXPECT_EQ(type.contains("constructorArguments"), record->isConstructible());
        expectPrinted(type.value("constructorArguments", json::array()), record->ctorArgs());
        ASSERT_EQ(type.at("attributes").size(), record->attributes().size());
        for (std::size_t i = 0; i < record->attributes().size(); ++i) {
            Vel::VelAttr const & attribute = record->attributes()[i];
            SCOPED_TRACE(attribute.name());
            json const & printed = type.at("attributes").at(i);
            expectPrinted(printed, attribute);
            expectPrinted(printed.value("arguments", json::array()), attribute.args());
        }
        EXPECT_EQ(type.value("enumerators", json::array()).size(), record->enumerators().size());
    }
    json const & type = named(types, "NetworkTopology::HostV2");
    EXPECT_EQ(type.at("kind"), "object");
    json const & hostname = named(type.at("attributes"), "hostname");
    EXPECT_EQ(hostname.at("kind"), "value");
    EXPECT_EQ(hostname.at("operations"), (json{"read", "set"}));
    EXPECT_EQ(named(type.at("attributes"), "port").at("kind"), "collection");
    EXPECT_EQ(named(type.at("attributes"), "logicalPort").at("kind"), "map");
    EXPECT_EQ(named(type.at("attributes"), "mlagPeerLink").at("kind"), "reference");
}

TEST(Inspect, TellsWhatIsOnlyInSomeTypes) {
    json const types = inspected({});
    EXPECT_EQ(named(types, "NetworkTopologyV3::Port").at("base"), "NetworkTopologyV3::PortBase");
    EXPECT_FALSE(named(types, "NetworkTopologyV3::Port").contains("constructorArguments"));
    json const type = inspected({"PortTypeV2"}).at(0);
    EXPECT_EQ(type.at("kind"), "enumeration");
    EXPECT_EQ(type.at("enumerators").at(2), (json{{"name", "portGroup"}, {"value", 2}}));
}

TEST(Inspect, TellsHowTheTranslatorAndTheFinderAreDriven) {
    json const translator = inspected({"V2Sm"}).at(0);
    EXPECT_EQ(translator.at("attributes").size(), 12U);
    EXPECT_EQ(translator.at("constructorArguments").size(), 3U);
    json const & lookup = named(translator.at("attributes"), "toPortV3");
    EXPECT_EQ(lookup.at("index"), 135);
    EXPECT_EQ(lookup.at("kind"), "function");
    EXPECT_EQ(lookup.at("type"), "NetworkTopologyV3::Port");
    EXPECT_EQ(lookup.at("arguments"), (json{{{"name", "portV2"}, {"type", "NetworkTopology::PortV2"}}}));
    json const & edge = named(translator.at("attributes"), "edge");
    EXPECT_EQ(edge.at("key"), (json{{"name", "fromPort"}, {"type", "NetworkTopology::PortBaseV2"}}));
    EXPECT_EQ(edge.at("operations"), (json{"look up", "add", "remove", "iterate"}));
    json const finder = inspected({"PortBaseFinder"}).at(0);
    EXPECT_EQ(finder.at("base"), "NetworkTopology::PortBaseVisitor");
    EXPECT_EQ(finder.at("attributes").size(), 7U);
    EXPECT_EQ(named(finder.at("attributes"), "hostV2").at("immutable"), true);
    EXPECT_THAT(runProgram({"inspect", "V2Sm"}).output,
                ::testing::ContainsRegex(" 130  name +immutable value +Vel::Name +read\n"));
}

TEST(Inspect, FindsATypeWithoutItsNamespace) {
    EXPECT_EQ(inspected({"HostV2"}), inspected({"NetworkTopology::HostV2"}));
    EXPECT_EQ(inspected({"Host"}).at(0).at("name"), "NetworkTopologyV3::Host");
    for (char const * unknown : {"ost", "hostv2", "Topology::HostV2", "::HostV2"}) {
        ProgramRun const run = runProgram({"inspect", unknown});
        EXPECT_EQ(run.status, 2) << unknown;
        EXPECT_THAT(run.output, IsEmpty());
        EXPECT_EQ(run.messages, "topology-sync: no type \"" + std::string(unknown) +
                                    "\"; without TYPE, inspect prints all that there are\n");
    }
}

TEST(Inspect, PrintsTablesByDefault) {
    ProgramRun const run = runProgram({"inspect", "PortTypeV2"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "NetworkTopology::PortTypeV2  enumeration\n"
                          "  VALUE  ENUMERATOR\n"
                          "      0  unknown\n"
                          "      1  port\n"
                          "      2  portGroup\n"
                          "      3  mlag\n");
    std::string const host = runProgram({"inspect", "HostV2"}).output;
    EXPECT_THAT(host, HasSubstr("\n  constructed from (name: Vel::Name)\n"));
    EXPECT_THAT(host, ::testing::ContainsRegex("  INDEX  NAME +KIND +TYPE +KEY +ARGUMENTS +OPERATIONS\n"));
    EXPECT_THAT(host, ::testing::ContainsRegex(" hostname +value +Vel::String +read, set\n"));
    EXPECT_EQ(runProgram({"inspect", "--format", "text"}).output, runProgram({"inspect"}).output);
}

TEST(Schema, IsAJsonSchemaOfTheModelThatWasAskedFor) {
    for (std::string const model : {"v2", "v3"}) {
        ProgramRun const run = runProgram({"schema", model});
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.messages, IsEmpty());
        json const schema = json::parse(run.output);
        EXPECT_EQ(schema.at("$schema"), "https://json-schema.org/draft/2020-12/schema");
        bool const isV2 = model == "v2";
        EXPECT_EQ(schema.dump().find("hostnameAddedByOwner") != std::string::npos, isV2);
    }
}

}  // namespace
}  // namespace TopologyTools
