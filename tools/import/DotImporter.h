#pragma once

#include "tools/import/Importer.h"

namespace TopologyTools {

// Cabling plans in the language of Graphviz, read by its own library: "leaf1":"swp1" -- "spine1":"swp1".
//
// - A node is a host, alone or linked, in a subgraph or not; the port of a node in a link is a port of that
// host.
// - A link of an undirected graph is an edge each way, a link of a directed graph one edge. The drawing
// attribute "dir"
//   says nothing about cables and is not looked at.
// - A compass point after a port ("swp1":n) is left out. One alone (leaf1:n) is where to draw the line and
// not a port.
// - A link end without a port gets one of its own (TopologyBuilder::portTowards), with a warning: one per end
// in a plan
//   that names ports elsewhere, one for the whole file in a graph that names none.
// - A link that repeats the ports of an earlier one is left out, with a warning. So is one that Graphviz
// itself merges
//   into another: a strict graph keeps one link between two nodes, and links of one "key" are the same link.
// - An HTML-like name is the text between its angle brackets.
// - What Graphviz says about the file becomes a warning if it reads the graph nevertheless (as it does for
// "};" at
//   the end), and an error otherwise; it tells the line only.
// - One graph is read; a file with a second one is refused.
class DotImporter : public Importer {
public:
    std::string_view name() const override { return "dot"; }
    bool recognises(std::string_view bytes) const override;
    ImportResult read(SourceText const & text, ImportOptions const & options) const override;
};

}  // namespace TopologyTools
