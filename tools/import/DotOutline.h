#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/json/SourceText.h"

namespace TopologyTools {

// Where things stand in a Graphviz file. libcgraph reads the graph but keeps no positions, so the places that
// messages name are taken from a second look at the tokens. That look is tolerant: what is no graph is
// libcgraph's to refuse.

// A link between two nodes that are written out at both sides of "--" or "->".
struct DotLink {
    std::string tail;
    std::string head;
    std::size_t offset;  // of the tail's name
};

struct DotOutline {
    std::size_t start = 0;       // of the first token
    std::vector<DotLink> links;  // in the order of the file; without links from or to a subgraph
    std::map<std::string, std::size_t> mention;  // of every node: its first
};

// Throws InputError for what libcgraph would take wrongly without a word: a second graph in the file, which
// it would leave unread, and a comment that does not end, which would reach into the next file that it reads.
DotOutline outlineDot(SourceText const & text);

// Whether the first token could begin a graph: "strict", "graph" or "digraph".
bool looksLikeDot(std::string_view bytes);

}  // namespace TopologyTools
