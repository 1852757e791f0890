#include "tools/document/Schema.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tools/document/Shape.h"
#include "tools/document/ValueForm.h"

namespace TopologyTools {
namespace {

using Json = nlohmann::ordered_json;

// Patterns as ECMA-262 has them.
constexpr char const * token = "([^/~]|~[01])*";
constexpr char const * anyPointer = "^(/([^/~]|~[01])*)*$";

class SchemaMaker {
public:
    explicit SchemaMaker(Vel::VelType const & root) : shape_(root) {}

    Json make() const {
        Json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"}};
        schema.update(object(shape_.root()));
        Json definitions = Json::object();
        for (ObjectShape const & shape : shape_.objects()) {
            if (shape.collection) definitions[definitionName(shape)] = object(shape);
        }
        if (!definitions.empty()) schema["$defs"] = definitions;
        return schema;
    }

private:
    static std::string definitionName(ObjectShape const & shape) {
        return std::string(shortName(*shape.collection->owner())) + '.' +
               std::string(shape.collection->name());
    }

    Json object(ObjectShape const & shape) const {
        Json properties = Json::object();
        for (MemberShape const & member : shape.members)
            properties[std::string(member.name())] = this->member(member);
        return {{"title", shape.type->name()},
                {"type", "object"},
                {"properties", properties},
                {"additionalProperties", false}};
    }

    Json member(MemberShape const & member) const {
        switch (member.kind) {
        case MemberShape::Kind::value: return valueSchema(member.type());
        case MemberShape::Kind::reference: return reference(member.type());
        case MemberShape::Kind::collection:
        case MemberShape::Kind::valueCollection: break;
        }
        Json schema{{"type", "object"}};
        Vel::VelType const & keyType = *member.attr->keyType();
        if (member.keyKind == MemberShape::KeyKind::object) {
            schema["propertyNames"] = {{"pattern", pointerPattern(keyType)}};
        } else if (member.keyKind == MemberShape::KeyKind::text) {
            schema["propertyNames"] = valueSchema(keyType);
        }
        if (member.element) {
            schema["additionalProperties"] = {{"$ref", "#/$defs/" + definitionName(*member.element)}};
        } else {
            schema["additionalProperties"] =
                member.holdsReferences ? reference(member.type()) : valueSchema(member.type());
        }
        return schema;
    }

    Json reference(Vel::VelType const & wanted) const {
        return {{"type", {"string", "null"}}, {"pattern", pointerPattern(wanted)}};
    }

    // What a JSON Pointer to a `wanted` looks like.
    std::string pointerPattern(Vel::VelType const & wanted) const {
        std::string alternatives;
        std::vector<ObjectShape const *> path;
        if (!addPaths(shape_.root(), {}, wanted, path, alternatives)) return anyPointer;
        return "^(" + alternatives + ")$";
    }

    // False when a class holds objects of its own class, so that paths have any length.
    bool addPaths(ObjectShape const & shape, std::string const & prefix, Vel::VelType const & wanted,
                  std::vector<ObjectShape const *> & path, std::string & alternatives) const {
        if (std::find(path.begin(), path.end(), &shape) != path.end()) return false;
        path.push_back(&shape);
        for (MemberShape const & member : shape.members) {
            if (!member.holdsTargets) continue;
            std::string const here = prefix + '/' + std::string(member.name()) + '/' + token;
            if (member.type().isA(wanted)) alternatives += (alternatives.empty() ? "" : "|") + here;
            if (!addPaths(*member.element, here, wanted, path, alternatives)) return false;
        }
        path.pop_back();
        return true;
    }

    DocumentShape shape_;
};

}  // namespace

nlohmann::ordered_json schemaOf(Vel::VelType const & root) { return SchemaMaker(root).make(); }

}  // namespace TopologyTools
