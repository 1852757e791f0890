#pragma once

#include "tools/import/Importer.h"

namespace TopologyTools {

// GraphML, the format of many collections of network maps.
//
// - A node is a host. It bears its "label" data if no other node bears the same, otherwise "label (id)";
// without a
//   label it bears its id.
// - An edge is one link: an edge each way, or only from source to target if it is directed (its own
// "directed", else
//   the graph's "edgedefault"; a graph that says neither is taken as undirected, with a warning).
// - Ports are those that nodes declare and edges name in sourceport and targetport; a port that is named but
// not
//   declared is created, with a warning. An edge without them, as in nearly every map, ends at each side in a
//   port of its own that bears the name of the host at the other end, with "-2", "-3" and so on for parallel
//   links (TopologyBuilder::portTowards). So port names say where they lead and stay the same from one
//   reading to the next.
// - Ports within ports count as ports of the node. Every other data is ignored.
// - Refused: hyperedges, graphs within nodes or edges, more than one graph, an edge to a node that is not
// there.
// - Text is UTF-8, whatever the XML declaration says. Entities of a document type are not expanded.
class GraphmlImporter : public Importer {
public:
    std::string_view name() const override { return "graphml"; }
    bool recognises(std::string_view bytes) const override;
    ImportResult read(SourceText const & text, ImportOptions const & options) const override;
};

}  // namespace TopologyTools
