// The changes of version 2 that close differences, as sentences and as JSON Patch operations.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "tools/check/Difference.h"
#include "tools/check/Following.h"
#include "tools/document/Shape.h"

namespace TopologyTools {

class Remedies {
public:
    // `document` is the version-2 document; it must outlive the remedies.
    explicit Remedies(nlohmann::json const & document) : document_(document) {}

    // The paths are the same in both models.
    Remedy value(std::string const & path, MemberShape const & attribute) const;
    Remedy reference(std::string const & path) const;
    // A host, a port base or an edge.
    Remedy object(Stray const & object) const;
    Remedy destination(Stray const & edge, std::string const & key) const;
    // `source`: the version-2 key whose entry is to stand; nothing when none is to.
    Remedy entry(std::string const & collectionPath, std::string const & key,
                 std::optional<std::string> const & source) const;

private:
    std::optional<nlohmann::json> at(std::string const & path) const;
    // A path to which the reference at `path` could lead; nothing when there is none.
    std::optional<std::string> possibleTarget(std::string const & path) const;
    Remedy leftEdge(std::string const & path) const;

    nlohmann::json const & document_;
};

}  // namespace TopologyTools
