#include "tools/document/Resolver.h"

#include <algorithm>

#include "tools/json/JsonPointer.h"

namespace TopologyTools {
namespace {

using Vel::GenericIf;

// The member of a value that may not be an object; null when there is none.
JsonValue const * memberOf(JsonValue const * value, std::string_view name) {
    if (!value || !value->isObject()) return nullptr;
    JsonMember const * const member = value->member(name);
    return member ? &member->value : nullptr;
}

}  // namespace

void Resolver::plannedIs(std::vector<std::string> path, JsonValue const * value) {
    plannedPath_ = std::move(path);
    planned_ = value;
}

Target Resolver::target(std::vector<std::string> const & tokens) const {
    if (tokens.empty()) return {Target::Kind::object, shape_.root().type, root_};
    ObjectShape const * shape = &shape_.root();
    GenericIf live = root_;
    // Whether what is looked at belongs to the planned value, and where in it.
    bool isPlanned = planned_ && plannedPath_.empty();
    JsonValue const * json = isPlanned ? planned_ : nullptr;
    auto const enterPlanned = [&](std::size_t depth) {
        if (isPlanned || !planned_ || plannedPath_.size() != depth ||
            !std::equal(plannedPath_.begin(), plannedPath_.end(), tokens.begin())) {
            return false;
        }
        json = planned_;
        return isPlanned = true;
    };

    for (std::size_t at = 0; at < tokens.size(); at += 2) {
        MemberShape const * const member = shape->member(tokens[at]);
        bool const isWhole = at + 1 == tokens.size();
        if (!member || member->kind != MemberShape::Kind::collection || isWhole) {
            return {member ? Target::Kind::noObject : Target::Kind::absent, nullptr, {}};
        }
        shape = member->element;
        if (isPlanned)
            json = memberOf(json, tokens[at]);
        else
            enterPlanned(at + 1);
        if (isPlanned)
            json = memberOf(json, tokens[at + 1]);
        else
            enterPlanned(at + 2);
        if (isPlanned) {
            if (!json) return {Target::Kind::absent, nullptr, {}};
            continue;
        }
        auto const key = this->key(*member, tokens[at + 1]);
        live = live.isNull() || !key ? GenericIf() : member->lookUp(live, *key);
        if (live.isNull()) return {Target::Kind::absent, nullptr, {}};
    }
    return {Target::Kind::object, shape->type, isPlanned ? GenericIf() : live};
}

GenericIf Resolver::object(std::string_view pointer) const {
    Target const found = target(parseJsonPointer(pointer));
    return found.object;
}

std::optional<GenericIf> Resolver::key(MemberShape const & collection, std::string_view text) const {
    if (collection.keyKind != MemberShape::KeyKind::object) return collection.key(text);
    try {
        GenericIf const object = this->object(text);
        if (object.isNull() || !object.type()->isA(*collection.attr->keyType())) return std::nullopt;
        return object;
    } catch (JsonPointerError const &) {
        return std::nullopt;
    }
}

bool holdsKey(GenericIf const & owner, MemberShape const & member, GenericIf const & key) {
    auto const from = owner.members(member.name(), key);
    return from.begin() != from.end();
}

}  // namespace TopologyTools
