#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TopologyTools {

// One JSON Patch operation (RFC 6902) that has been carried out on a document.
struct PatchOperation {
    std::string_view op;  // "add", "replace" or "remove".
    std::string path;
    std::optional<std::string> value = std::nullopt;  // As JSON text; nothing for "remove".
    bool isOfEntry = false;                           // Whether the path ends in the key of a collection.
};

// Puts operations on entries of one collection that follow one another into the order of their keys. That
// changes nothing but the order in which collections keyed by address are walked.
void sortEntries(std::vector<PatchOperation> & operations);

// Writes the operation as a line of its own, with a member "cause".
void writeLine(PatchOperation const & operation, std::size_t cause, std::ostream & out);

}  // namespace TopologyTools
