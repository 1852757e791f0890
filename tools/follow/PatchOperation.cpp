#include "tools/follow/PatchOperation.h"

#include <algorithm>
#include <ostream>

#include "tools/document/JsonSink.h"

namespace TopologyTools {
namespace {

bool areInOneCollection(PatchOperation const & a, PatchOperation const & b) {
    if (!a.isOfEntry || !b.isOfEntry) return false;
    std::string_view const pathOfA = a.path;
    std::string_view const pathOfB = b.path;
    return pathOfA.substr(0, pathOfA.rfind('/')) == pathOfB.substr(0, pathOfB.rfind('/'));
}

}  // namespace

void sortEntries(std::vector<PatchOperation> & operations) {
    for (auto first = operations.begin(); first != operations.end();) {
        auto const isElsewhere = [&](PatchOperation const & o) { return !areInOneCollection(*first, o); };
        auto const last = std::find_if(first + 1, operations.end(), isElsewhere);
        // Stable: what happened to one key keeps its order.
        std::stable_sort(first, last,
                         [](PatchOperation const & a, PatchOperation const & b) { return a.path < b.path; });
        first = last;
    }
}

void writeLine(PatchOperation const & operation, std::size_t cause, std::ostream & out) {
    out << R"({"op":")" << operation.op << R"(","path":)";
    JsonTextSink(out, -1).string(operation.path);
    if (operation.value) out << R"(,"value":)" << *operation.value;
    out << R"(,"cause":)" << cause << "}\n";
}

}  // namespace TopologyTools
