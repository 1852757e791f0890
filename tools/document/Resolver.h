// From JSON Pointers to what they stand for in a live model.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tools/document/Shape.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

// What a reference leads to.
struct Target {
    enum class Kind : std::uint8_t {
        object,
        absent,
        noObject,  // A member, or something inside one, that is no object of a collection.
    };
    Kind kind;
    Vel::VelType const * type = nullptr;  // Of an object.
    Vel::GenericIf object;                // Null for an object that is yet to be made.
};

// Finds the targets of references in a model, and in a value that is yet to enter it.
class Resolver {
public:
    // `root` may be null: a model yet to be made. The shape must outlive the resolver.
    Resolver(Vel::GenericIf root, DocumentShape const & shape) : root_(std::move(root)), shape_(shape) {}

    // From now on the model counts as if `value` stood at `path`, in place of what stands there; null undoes
    // that. The value must outlive its use here, and need not be valid.
    void plannedIs(std::vector<std::string> path, JsonValue const * value);

    Target target(std::vector<std::string> const & tokens) const;
    // The target, within the live model alone, of a valid reference; null when it is not there.
    Vel::GenericIf object(std::string_view pointer) const;

    // The key of a collection that `text` stands for, in the live model; nothing when it stands for none.
    std::optional<Vel::GenericIf> key(MemberShape const & collection, std::string_view text) const;

private:
    Vel::GenericIf root_;
    DocumentShape const & shape_;
    std::vector<std::string> plannedPath_;
    JsonValue const * planned_ = nullptr;
};

// Whether the collection `member` of `owner` holds the key, be it with a value of null.
bool holdsKey(Vel::GenericIf const & owner, MemberShape const & member, Vel::GenericIf const & key);

}  // namespace TopologyTools
