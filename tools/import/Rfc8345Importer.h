#pragma once

#include "tools/import/Importer.h"

namespace TopologyTools {

// Network topologies of RFC 8345 in JSON (RFC 7951), with the layer-2 attributes of RFC 8944.
//
// - A node is a host, named by its node-id; a termination point is a port of it, named by its tp-id.
// - A termination point is a port group if its layer-2 attributes say "lag": true, or if supporting
// termination
//   points of it are on the same node of the same network. Its members are those, and the member-link-tp of
//   the layer-2 attributes. Supporting termination points elsewhere are another layer and are not looked at.
// - A link is one destination of the edge that leaves its source. A source-tp or dest-tp that is left out, or
// empty as
//   in drafts of the RFC, gets a port of its own, with a warning (TopologyBuilder::portTowards).
// - A link that names a node or termination point that is not there creates it, with a warning.
// - Top level: the container "ietf-network:networks", or the bare list "ietf-network:network". Names are
// accepted
//   without their module prefix too, as drafts wrote them. Every other member is ignored.
// - One network is read. If the file holds several, the options must name one.
class Rfc8345Importer : public Importer {
public:
    std::string_view name() const override { return "rfc8345"; }
    bool recognises(std::string_view bytes) const override;
    ImportResult read(SourceText const & text, ImportOptions const & options) const override;
};

}  // namespace TopologyTools
