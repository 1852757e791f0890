#include "tools/document/Schema.h"

#include <algorithm>
#include <map>
#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "tests/tools/document/DocumentTesting.h"
#include "tests/tools/document/RandomModel.h"

namespace TopologyTools {
namespace {

using Json = nlohmann::ordered_json;

Json schemaFor(std::string_view rootType) { return schemaOf(*Vel::typeNode(rootType)); }

// Validates with the keywords of JSON Schema that our schemas use, and refuses every other one.
class Validator {
public:
    explicit Validator(Json const & schema) : root_(schema) {}

    bool isValid(Json const & value) const { return isValid(value, root_); }

private:
    bool isValid(Json const & value, Json const & schema) const {
        if (schema.is_boolean()) return schema.get<bool>();
        for (auto const & [keyword, rule] : schema.items()) {
            if (!holds(keyword, rule, value, schema)) return false;
        }
        return true;
    }

    bool holds(std::string const & keyword, Json const & rule, Json const & value,
               Json const & schema) const {
        if (keyword == "$schema" || keyword == "title" || keyword == "$defs") return true;
        if (keyword == "$ref")
            return isValid(value, root_.at(Json::json_pointer(rule.get<std::string>().substr(1))));
        if (keyword == "type") {
            return rule.is_array() ? std::any_of(rule.begin(), rule.end(),
                                                 [&](Json const & one) { return isOfType(value, one); })
                                   : isOfType(value, rule);
        }
        if (keyword == "enum") return std::find(rule.begin(), rule.end(), value) != rule.end();
        if (keyword == "minimum") return !value.is_number() || value >= rule;
        if (keyword == "maximum") return !value.is_number() || value <= rule;
        if (keyword == "pattern") {
            auto const pattern = rule.get<std::string>();
            std::regex const & regex = patterns_.try_emplace(pattern, pattern).first->second;
            return !value.is_string() || std::regex_search(value.get<std::string>(), regex);
        }
        if (!value.is_object()) return true;
        if (keyword == "properties") {
            return std::all_of(value.items().begin(), value.items().end(), [&](auto const & member) {
                return !rule.contains(member.key()) || isValid(member.value(), rule.at(member.key()));
            });
        }
        if (keyword == "additionalProperties") {
            Json const known = schema.value("properties", Json::object());
            return std::all_of(value.items().begin(), value.items().end(), [&](auto const & member) {
                return known.contains(member.key()) || isValid(member.value(), rule);
            });
        }
        if (keyword == "propertyNames") {
            return std::all_of(value.items().begin(), value.items().end(),
                               [&](auto const & member) { return isValid(Json(member.key()), rule); });
        }
        throw std::logic_error("unknown keyword " + keyword);
    }

    static bool isOfType(Json const & value, std::string const & type) {
        return (type == "object" && value.is_object()) || (type == "string" && value.is_string()) ||
               (type == "boolean" && value.is_boolean()) || (type == "null" && value.is_null()) ||
               (type == "integer" && value.is_number_integer());
    }

    Json root_;
    mutable std::map<std::string, std::regex> patterns_;
};

TEST(DocumentSchema, SaysWhatTheRootHolds) {
    Json const schema = schemaFor(v2);
    EXPECT_EQ(schema.at("$schema"), "https://json-schema.org/draft/2020-12/schema");
    Json root = schema;
    root.erase("$defs");
    EXPECT_EQ(root.dump(2), R"({
  "$schema": "https://json-schema.org/draft/2020-12/schema",
  "title": "NetworkTopology::StatusV2",
  "type": "object",
  "properties": {
    "host": {
      "type": "object",
      "additionalProperties": {
        "$ref": "#/$defs/StatusV2.host"
      }
    },
    "localhost": {
      "type": [
        "string",
        "null"
      ],
      "pattern": "^(/host/([^/~]|~[01])*)$"
    },
    "edge": {
      "type": "object",
      "propertyNames": {
        "pattern": "^(/host/([^/~]|~[01])*/port/([^/~]|~[01])*|/host/([^/~]|~[01])*/portGroup/([^/~]|~[01])*|/host/([^/~]|~[01])*/mlag/([^/~]|~[01])*)$"
      },
      "additionalProperties": {
        "$ref": "#/$defs/StatusV2.edge"
      }
    }
  },
  "additionalProperties": false
})");
}

TEST(DocumentSchema, DefinesTheObjectsOfEveryCollection) {
    auto const names = [](std::string_view rootType) {
        std::string all;
        Json const schema = schemaFor(rootType);
        for (auto const & [name, definition] : schema.at("$defs").items()) all += name + ' ';
        return all;
    };
    EXPECT_EQ(names(v2), "StatusV2.host HostV2.port HostV2.portGroup HostV2.mlag StatusV2.edge ");
    EXPECT_EQ(names(v3), "Status.host Host.port Host.portGroup Host.mlag Status.edge ");
    EXPECT_EQ(
        schemaFor(v3).at("$defs").at("Host.mlag").dump(),
        R"({"title":"NetworkTopologyV3::MlagPort","type":"object","properties":{)"
        R"("type":{"enum":["unknown","port","portGroup","mlag"]},"secondaryName":{"type":"string"},)"
        R"("localPortGroup":{"type":["string","null"],)"
        R"("pattern":"^(/host/([^/~]|~[01])*/portGroup/([^/~]|~[01])*)$"}},"additionalProperties":false})");
    EXPECT_EQ(schemaFor(v3).at("properties").at("edge").at("propertyNames").dump(),
              R"({"type":"string","pattern":"^/host/([^/~]|~[01])*/(port|portGroup|mlag)/([^/~]|~[01])*$"})");
}

TEST(DocumentSchema, HoldsForEveryDocumentThatIsWritten) {
    for (auto const type : {v2, v3}) {
        Validator const validator(schemaFor(type));
        for (unsigned seed = 0; seed < 20; ++seed) {
            RandomModel model(type, seed);
            EXPECT_TRUE(validator.isValid(documentTree(model.root()))) << seed;
            model.removeSome();
            EXPECT_TRUE(validator.isValid(documentTree(model.root()))) << seed;
        }
    }
}

TEST(DocumentSchema, RefusesWhatTheReaderRefuses) {
    Validator const validator(schemaFor(v2));
    constexpr std::string_view good =
        R"({"host":{"a":{"mlagSystemId":"0A:00:00:00:00:01","port":{"p":{"type":"port"}},"mlag":{"m":)"
        R"({"secondaryName":"s"}},"logicalPort":{"p":"/host/a/port/p","q":null}}},"localhost":"/host/a",)"
        R"("edge":{"/host/a/port/p":{"toPort":{"/host/a/port/p":true}}}})";
    EXPECT_EQ(readingError(good, v2), "no error");
    EXPECT_TRUE(validator.isValid(Json::parse(good)));
    for (std::string_view const bad :
         {R"([])", R"({"hosts":{}})", R"({"host":[]})", R"({"host":{"a":null}})",
          R"({"host":{"a":{"name":"a"}}})", R"({"host":{"a":{"hostname":7}}})",
          R"({"host":{"a":{"hostname":null}}})", R"({"host":{"a":{"hostnameAddedByOwner":"true"}}})",
          R"({"host":{"a":{"mlagState":"up"}}})", R"({"host":{"a":{"mlagSystemId":"1:2:3:4:5:6"}}})",
          R"({"host":{"a":{"mlagPeerLink":7}}})", R"({"host":{"a":{"mlagPeerLink":"/host/a"}}})",
          R"({"host":{"a":{"mlagRaw":{"m":{}}}}})", R"({"host":{"a":{"port":{"p":{"secondaryName":"s"}}}}})",
          R"({"localhost":"host/a"})", R"({"localhost":"/host/~2"})", R"({"edge":{"p":{}}})",
          R"({"edge":{"/host/a":{}}})"}) {
        EXPECT_NE(readingError(bad, v2), "no error") << bad;
        EXPECT_FALSE(validator.isValid(Json::parse(bad))) << bad;
    }
}

}  // namespace
}  // namespace TopologyTools
