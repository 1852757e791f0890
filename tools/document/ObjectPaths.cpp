#include "tools/document/ObjectPaths.h"

#include "platform/Vel/Ptr.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {

Identity identityOf(Vel::GenericIf const & object) {
    return object.as<Vel::Ptr<Vel::PtrInterface const>>().get();
}

ObjectPaths::ObjectPaths(Vel::GenericIf const & root, DocumentShape const & shape) : root_(identityOf(root)) {
    enter(root, shape.root());
}

void ObjectPaths::enter(Vel::GenericIf const & object, ObjectShape const & shape) {
    Identity const parent = identityOf(object);
    for (MemberShape const & member : shape.members) {
        if (!member.holdsTargets) continue;
        for (auto const & entry : object.members(member.name())) {
            Vel::GenericIf const key = entry.key();
            Vel::GenericIf const held = entry.object();
            Vel::String const text = member.keyKind == MemberShape::KeyKind::name
                                         ? Vel::String(key.as<Vel::Name>())
                                         : Vel::String(member.keyText(key));
            places_.try_emplace(identityOf(held), Place{parent, &member, text});
            enter(held, *member.element);
        }
    }
}

std::optional<std::string> ObjectPaths::path(Vel::GenericIf const & object) const {
    if (object.isNull()) return std::nullopt;
    if (identityOf(object) == root_) return std::string();
    auto const found = places_.find(identityOf(object));
    if (found == places_.end()) return std::nullopt;
    std::string pointer;
    append(pointer, found->second);
    return pointer;
}

void ObjectPaths::append(std::string & pointer, Place const & place) const {
    // Only the root has no place.
    auto const parent = places_.find(place.parent);
    if (parent != places_.end()) append(pointer, parent->second);
    pointer += '/';
    pointer += escapeJsonPointerToken(place.collection->name());
    pointer += '/';
    pointer += escapeJsonPointerToken(place.key.view());
}

}  // namespace TopologyTools
