// Why the expected version-3 document differs in a place from what version 2 calls for.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "tools/check/Expectation.h"
#include "tools/check/ExpectedModel.h"
#include "tools/check/Following.h"

namespace TopologyTools {

using Shown = std::optional<nlohmann::json>;

// Answers from what the Expectation noted; each answer is without a rule when nothing that it noted explains
// the difference. REQUIRES for all: there is a difference in that place.
class Explanation {
public:
    // `document` is the version-2 document. Both must outlive the explanation.
    Explanation(Expectation const & expectation, nlohmann::json const & document)
        : expectation_(expectation), document_(document), following_(expectation) {}

    Provenance attribute(ExpectedObject const & owner, std::string_view name) const;
    // A host, or a port base of one.
    Provenance member(ExpectedObject const & owner, std::string_view collection,
                      std::string const & key) const;
    Provenance edge(std::string const & key) const;
    // An entry that stands under the name of its target.
    Provenance entry(ExpectedObject const & owner, std::string_view collection, std::string const & key,
                     Shown const & calledFor) const;
    Provenance destination(ExpectedObject const & edge, std::string const & key,
                           Shown const & calledFor) const;

private:
    Provenance missingEdge(std::string const & key) const;
    Provenance leftEdge(ExpectedObject const & edge) const;
    Provenance missingEntry(ExpectedObject const & owner, std::string_view collection,
                            ExpectedCell const * cell, std::string const & source) const;
    Provenance leftEntry(ExpectedObject const & owner, std::string_view collection, std::string const & key,
                         ExpectedCell const & cell) const;
    Provenance missingDestination(ExpectedObject const & edge, EdgeFollower const & follower,
                                  std::string const & key) const;
    Provenance leftDestination(EdgeFollower const & follower, ExpectedCell const & cell) const;

    Expectation const & expectation_;
    nlohmann::json const & document_;
    Following const following_;
};

// The version-2 entry that a fresh translation takes for the version-3 entry with that target: the last one,
// in the order of the document, that leads there. Nothing when none does.
std::optional<std::string> entryLeadingTo(nlohmann::json const & document, std::string const & ownerPath,
                                          std::string_view collection, nlohmann::json const & target);

}  // namespace TopologyTools
