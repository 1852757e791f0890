#include "tools/call/ModelDocument.h"

#include <algorithm>

#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using Vel::GenericIf;

bool ModelDocument::holds(Vel::VelType const & type) const {
    auto const & objects = shape_.objects();
    return std::any_of(objects.begin(), objects.end(),
                       [&](ObjectShape const & object) { return object.type->isA(type); });
}

DocumentPlaces::DocumentPlaces(ModelDocument const & document) : targets_(document.root(), document.shape()) {
    for (MemberShape const & member : document.shape().root().members) {
        if (member.kind != MemberShape::Kind::collection || member.holdsTargets) continue;
        std::string const collection = joinJsonPointer("", member.name());
        for (auto const & entry : document.root().members(member.name())) {
            bool const isObject = member.keyKind == MemberShape::KeyKind::object;
            auto const key =
                isObject ? targets_.path(entry.key()) : std::optional(member.keyText(entry.key()));
            if (key) others_.emplace(identityOf(entry.object()), joinJsonPointer(collection, *key));
        }
    }
}

std::optional<std::string> DocumentPlaces::path(GenericIf const & object) const {
    if (auto path = targets_.path(object)) return path;
    auto const found = others_.find(identityOf(object));
    return found == others_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace TopologyTools
