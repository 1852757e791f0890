#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/NetworkTopologyV3/Status.h"

namespace TopologyTools {

// A version-3 model read once for printing: everything in natural order of names, enumerators and addresses
// as text, references told by name, and the edges of both directions joined into links. It does not follow
// the model, and needs it no longer.
struct TopologyView {
    // In the order in which the port bases of a host are printed.
    enum class Kind { port, portGroup, mlag };

    // A port base as something refers to it.
    struct Reference {
        std::string host;
        std::optional<Kind> kind;  // None in a key that no port base can have.
        std::string name;
        bool present = false;  // Whether a host of the model holds it.

        friend bool operator==(Reference const &, Reference const &) = default;
        friend std::strong_ordering operator<=>(Reference const & a, Reference const & b);
    };

    // What joins two port bases: an edge's destination, or the one and its way back. `one` is never after
    // `other`; what leads from a port base to itself leads both ways.
    struct Link {
        Reference one;
        Reference other;
        std::optional<bool> forth;  // The destination's flag; none when no edge leads from one to other.
        std::optional<bool> back;   // The same from other to one.
    };

    // A link as it looks from one of its ends.
    struct Connection {
        Reference peer;
        std::optional<bool> out;
        std::optional<bool> in;
    };

    struct PortBase {
        std::string name;
        std::string type;
        bool leadsNowhere = false;            // Has an edge without destination.
        std::vector<Connection> connections;  // By peer.
    };
    struct Port : PortBase {
        std::optional<Reference> group;
    };
    struct PortGroup : PortBase {
        std::vector<Reference> members;
        std::optional<Reference> mlag;
    };
    struct Mlag : PortBase {
        std::string secondaryName;
        std::optional<Reference> localGroup;
    };

    struct Host {
        std::string name;
        std::string hostname;
        std::string mlagDomainId;
        std::string mlagState;  // Empty for the default, as are all attributes here.
        std::string mlagSystemId;
        std::optional<Reference> mlagPeerLink;
        std::vector<Port> ports;
        std::vector<PortGroup> groups;
        std::vector<Mlag> mlags;
        std::vector<Reference> logicalPorts;
        std::vector<Reference> rawMlags;

        bool hasMlagAttributes() const {
            return !mlagDomainId.empty() || !mlagState.empty() || !mlagSystemId.empty() || mlagPeerLink;
        }
    };

    std::optional<std::string> localhost;
    bool localhostIsPresent = false;
    std::vector<Host> hosts;
    std::vector<Link> links;
    std::vector<Reference> edgesWithoutDestination;
    std::size_t edges = 0;
    std::size_t destinations = 0;
};

TopologyView topologyView(NetworkTopologyV3::Status const & status);

}  // namespace TopologyTools
