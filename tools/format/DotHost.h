#pragma once

#include <compare>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/format/TopologyView.h"

namespace TopologyTools {

// The colour of lines and borders in a picture, and that of peer links.
constexpr std::string_view kDotLine = "#5b6b7a";
constexpr std::string_view kDotPeerLink = "#b5452c";

// `text` as it stands in an HTML-like label. REQUIRES: UTF-8 without control characters.
std::string dotLabel(std::string_view text);

// `text` as a quoted string for the attribute tooltip. REQUIRES: UTF-8 without control characters.
std::string dotTooltip(std::string_view text);

// One host as a node of a graph: a table with the host's name in its middle. Ports whose links lead up stand
// above the name, all others below it; the ports of a group stand side by side with the group next to them,
// and next to the group the MLAGs that run over it.
class DotHost {
public:
    struct Cell {
        TopologyView::Kind kind;
        std::size_t index;  // In the host's ports, groups or MLAGs.

        friend auto operator<=>(Cell const &, Cell const &) = default;
    };
    enum class Side { top, bottom };

    // `host` must outlive this object.
    DotHost(TopologyView::Host const & host, bool isLocalhost, std::string id);

    // A link of the cell leads to that side. REQUIRES: layOut() has not been called.
    void linkIs(Cell cell, Side side);
    void layOut();

    // Whether the cell is the host's peer link, or a member of it.
    bool isPeerLink(Cell cell) const { return peerLink_.contains(cell); }

    // What an edge names as its end. With a side, the edge leaves the node there if the cell stands on that
    // side. REQUIRES: layOut() has been called.
    std::string end(Cell cell, Side side) const;

    // The node. REQUIRES: layOut() has been called.
    std::string text() const;

private:
    struct Block {
        std::vector<std::size_t> mlags;
        std::size_t group;
        std::vector<std::size_t> ports;
    };
    struct Half {
        std::vector<Block> blocks;
        std::vector<Cell> loose;  // In no block.
        std::vector<Cell> idle;   // Nor in any link.
    };

    template <class Ports>
    void peerLinkIs(Ports const & ports, TopologyView::Kind kind, TopologyView::Reference const & reference);
    std::vector<std::string> facts() const;
    Side sideOf(std::vector<Cell> const & cells) const;
    void place(std::vector<Cell> const & cells, Side side);
    std::string linesOf(Side side) const;
    std::string blockText(Block const & block, Side side) const;
    std::string looseText(std::vector<Cell> const & cells) const;
    std::string cellText(Cell cell, std::size_t span) const;
    bool isIdle(Cell cell) const;
    TopologyView::PortBase const & portBase(Cell cell) const;

    TopologyView::Host const & host_;
    bool isLocalhost_;
    std::string id_;
    std::set<Cell> peerLink_;
    std::map<Cell, int> balance_;  // How many more links lead down than up.
    std::map<Cell, Side> sides_;
    Half top_;
    Half bottom_;
};

}  // namespace TopologyTools
