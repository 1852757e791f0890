#include "tools/format/DotFormat.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/format/DotHost.h"
#include "tools/format/DrawingOrder.h"
#include "tools/format/TextFormat.h"

namespace TopologyTools {
namespace {

using Kind = TopologyView::Kind;
using Reference = TopologyView::Reference;
using Side = DotHost::Side;

class Drawing {
public:
    explicit Drawing(TopologyView const & view) : view_(view) {}

    std::string text() {
        text_ =
            "digraph topology {\n"
            "    graph [bgcolor=\"#ffffff\", nodesep=\"0.4\", ranksep=\"1.0\", fontname=\"Helvetica\"];\n"
            "    node [shape=\"plain\", fontname=\"Helvetica\", fontsize=\"10\"];\n"
            "    edge [dir=\"both\", arrowhead=\"none\", arrowtail=\"none\", arrowsize=\"0.9\", color=\"" +
            std::string(kDotLine) + "\"];\n\n";
        hosts();
        links();
        edgesWithoutDestination();
        return std::move(text_) + "}\n";
    }

private:
    struct Place {
        DotHost * host;
        DotHost::Cell cell;
    };

    // A link, turned so that `above` is drawn above `below`.
    struct Line {
        Reference const & above;
        Reference const & below;
        std::optional<bool> down;
        std::optional<bool> up;
    };

    void hosts() {
        nodes_.reserve(view_.hosts.size());  // places_ points to them.
        for (TopologyView::Host const & host : view_.hosts) {
            bool const isLocalhost = view_.localhostIsPresent && view_.localhost == host.name;
            nodes_.emplace_back(host, isLocalhost, "h" + std::to_string(nodes_.size()));
            auto const enter = [&](Kind kind, auto const & ports) {
                for (std::size_t i = 0; i < ports.size(); ++i) {
                    places_.emplace(Reference{host.name, kind, ports[i].name, true},
                                    Place{&nodes_.back(), {kind, i}});
                }
            };
            enter(Kind::port, host.ports);
            enter(Kind::portGroup, host.groups);
            enter(Kind::mlag, host.mlags);
        }
        DrawingOrder const order(view_);
        for (TopologyView::Link const & link : view_.links) {
            if (order.isAbove(link.other, link.one)) {
                lines_.push_back({link.other, link.one, link.back, link.forth});
            } else {
                lines_.push_back({link.one, link.other, link.forth, link.back});
            }
            Line const & line = lines_.back();
            if (isPeerLink(line)) continue;
            if (Place const * const above = find(line.above)) above->host->linkIs(above->cell, Side::bottom);
            if (Place const * const below = find(line.below)) below->host->linkIs(below->cell, Side::top);
        }
        for (DotHost & node : nodes_) {
            node.layOut();
            text_ += node.text();
        }
    }

    Place const * find(Reference const & reference) const {
        auto const at = places_.find(reference);
        return at == places_.end() ? nullptr : &at->second;
    }

    bool isPeerLink(Line const & line) const {
        auto const isPeerLinkOfItsHost = [this](Reference const & reference) {
            Place const * const place = find(reference);
            return place && place->host->isPeerLink(place->cell);
        };
        return isPeerLinkOfItsHost(line.above) && isPeerLinkOfItsHost(line.below);
    }

    // What an edge names as its end: a cell or, for a port base that is not there, a node of its own, which
    // is made when it is first asked for.
    std::string end(Reference const & reference, Side side) {
        if (Place const * const place = find(reference)) return place->host->end(place->cell, side);
        auto const [at, isNew] = departed_.emplace(reference, "x" + std::to_string(departed_.size()));
        if (isNew) {
            text_ += "    " + at->second + " [shape=\"box\", style=\"dashed\", color=\"" +
                     std::string(kDotLine) + "\", label=<" + dotLabel(printedReference(reference, {}, true)) +
                     ">];\n";
        }
        return at->second;
    }

    void links() {
        for (Line const & line : lines_) {
            bool const peerLink = isPeerLink(line);
            bool const toItself = line.above == line.below;
            std::string const above = end(line.above, Side::bottom);
            std::string const below = end(line.below, peerLink || toItself ? Side::bottom : Side::top);
            std::string const tip = printedReference(line.above, {}, false) +
                                    (line.down && line.up ? " <-> "
                                     : line.down          ? " --> "
                                                          : " <-- ") +
                                    printedReference(line.below, {}, false);
            text_ += "    " + above + " -> " + below + " [tooltip=" + dotTooltip(tip);
            bool const oneWay = line.down.has_value() != line.up.has_value();
            if (oneWay) text_ += line.down ? ", arrowhead=\"normal\"" : ", arrowtail=\"normal\"";
            if (peerLink) text_ += ", penwidth=\"3\", color=\"" + std::string(kDotPeerLink) + '"';
            // Peers stand side by side. Between neighbours Graphviz draws no arrow, though.
            if (peerLink && !oneWay) text_ += ", constraint=\"false\"";
            if (line.down == false || line.up == false) text_ += ", style=\"dashed\"";
            text_ += "];\n";
        }
    }

    void edgesWithoutDestination() {
        std::size_t count = 0;
        for (Reference const & from : view_.edgesWithoutDestination) {
            std::string const start = end(from, Side::bottom);
            std::string const nowhere = "n" + std::to_string(count++);
            text_ += "    " + nowhere + " [shape=\"point\", tooltip=\"no destination\"];\n";
            text_ += "    " + start + " -> " + nowhere + " [arrowhead=\"normal\", tooltip=" +
                     dotTooltip(printedReference(from, {}, false) + " --> nowhere") + "];\n";
        }
    }

    TopologyView const & view_;
    std::string text_;
    std::vector<DotHost> nodes_;
    std::map<Reference, Place> places_;
    std::vector<Line> lines_;
    std::map<Reference, std::string> departed_;
};

}  // namespace

std::string dotFormat(TopologyView const & view) { return Drawing(view).text(); }

}  // namespace TopologyTools
