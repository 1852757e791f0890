#include "tools/format/DotHost.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "tools/format/PrintedName.h"

namespace TopologyTools {
namespace {

using Kind = TopologyView::Kind;
using Reference = TopologyView::Reference;

constexpr char const * kHostFill = "#2f4b66";
constexpr char const * kLocalhostFill = "#1d6f5c";
constexpr char const * kBackground = "#f7f7f4";
constexpr char const * kMlagFill = "#f3d9b1";
constexpr char const * kGroupFill = "#d7e3f4";
constexpr char const * kPortFill = "#ffffff";
constexpr char const * kPeerLinkFill = "#f3c3b7";
constexpr char const * kIdleText = "#9aa3ab";

// Ports side by side before a new line begins.
constexpr std::size_t kPortsPerLine = 10;

// `text` with what XML gives a meaning written as entities, which is how Graphviz wants all text, and with
// `backslash` for every backslash, which Graphviz takes for the start of an escape.
std::string escapedText(std::string_view text, std::string_view backslash) {
    std::string escaped;
    for (char const byte : text) {
        switch (byte) {
        case '&': escaped += "&amp;"; break;
        case '<': escaped += "&lt;"; break;
        case '>': escaped += "&gt;"; break;
        case '"': escaped += "&quot;"; break;
        case '\\': escaped += backslash; break;
        default: escaped += byte;
        }
    }
    return escaped;
}

template <class Ports>
std::optional<std::size_t> indexOf(Ports const & ports, std::string const & name) {
    auto const at =
        std::find_if(ports.begin(), ports.end(), [&](auto const & port) { return port.name == name; });
    if (at == ports.end()) return std::nullopt;
    return static_cast<std::size_t>(at - ports.begin());
}

std::string cellId(DotHost::Cell cell) {
    char const letter = cell.kind == Kind::port ? 'p' : cell.kind == Kind::portGroup ? 'g' : 'm';
    return letter + std::to_string(cell.index);
}

}  // namespace

std::string dotLabel(std::string_view text) { return escapedText(text, "\\\\"); }

// Graphviz takes escapes out of the tooltip of a node once and out of that of an edge twice, so no number of
// backslashes is right for both. One that only looks like a backslash is left alone.
std::string dotTooltip(std::string_view text) { return '"' + escapedText(text, "\u29f5") + '"'; }

DotHost::DotHost(TopologyView::Host const & host, bool isLocalhost, std::string id)
    : host_(host), isLocalhost_(isLocalhost), id_(std::move(id)) {
    if (!host.mlagPeerLink) return;
    peerLinkIs(host.ports, Kind::port, *host.mlagPeerLink);
    peerLinkIs(host.groups, Kind::portGroup, *host.mlagPeerLink);
    peerLinkIs(host.mlags, Kind::mlag, *host.mlagPeerLink);
}

template <class Ports>
void DotHost::peerLinkIs(Ports const & ports, Kind kind, Reference const & reference) {
    if (!reference.present || reference.kind != kind || reference.host != host_.name) return;
    auto const index = indexOf(ports, reference.name);
    if (!index) return;
    peerLink_.insert({kind, *index});
    if (kind != Kind::portGroup) return;
    for (Reference const & member : host_.groups[*index].members) peerLinkIs(host_.ports, Kind::port, member);
}

void DotHost::linkIs(Cell cell, Side side) { balance_[cell] += side == Side::bottom ? 1 : -1; }

void DotHost::layOut() {
    std::vector<Block> blocks(host_.groups.size());
    std::vector<Cell> loose;
    for (std::size_t i = 0; i < blocks.size(); ++i) blocks[i].group = i;
    // The block over whose group a port or MLAG is drawn; none if it has no group, or another host's.
    auto const blockOf = [&](std::optional<Reference> const & group) -> Block * {
        if (!group || !group->present || group->host != host_.name) return nullptr;
        auto const index = indexOf(host_.groups, group->name);
        return index ? &blocks[*index] : nullptr;
    };
    for (std::size_t i = 0; i < host_.mlags.size(); ++i) {
        if (Block * const block = blockOf(host_.mlags[i].localGroup)) {
            block->mlags.push_back(i);
        } else {
            loose.push_back({Kind::mlag, i});
        }
    }
    for (std::size_t i = 0; i < host_.ports.size(); ++i) {
        if (Block * const block = blockOf(host_.ports[i].group)) {
            block->ports.push_back(i);
        } else {
            loose.push_back({Kind::port, i});
        }
    }
    // What MLAGs run over comes first, the peer link last.
    std::stable_sort(blocks.begin(), blocks.end(), [this](Block const & a, Block const & b) {
        auto const rank = [this](Block const & block) {
            return isPeerLink({Kind::portGroup, block.group}) ? 2 : block.mlags.empty() ? 1 : 0;
        };
        return rank(a) < rank(b);
    });

    for (Block & block : blocks) {
        std::vector<Cell> cells{{Kind::portGroup, block.group}};
        for (std::size_t const port : block.ports) cells.push_back({Kind::port, port});
        for (std::size_t const mlag : block.mlags) cells.push_back({Kind::mlag, mlag});
        Side const side = sideOf(cells);
        place(cells, side);
        (side == Side::top ? top_ : bottom_).blocks.push_back(std::move(block));
    }
    for (Cell const cell : loose) {
        Side const side = sideOf({cell});
        place({cell}, side);
        Half & half = side == Side::top ? top_ : bottom_;
        (isIdle(cell) ? half.idle : half.loose).push_back(cell);
    }
}

// The side to which most links of the cells lead, taken together.
DotHost::Side DotHost::sideOf(std::vector<Cell> const & cells) const {
    int sum = 0;
    for (Cell const cell : cells) {
        if (auto const at = balance_.find(cell); at != balance_.end()) sum += at->second;
    }
    return sum < 0 ? Side::top : Side::bottom;
}

void DotHost::place(std::vector<Cell> const & cells, Side side) {
    for (Cell const cell : cells) sides_[cell] = side;
}

std::string DotHost::end(Cell cell, Side side) const {
    std::string name = id_ + ':' + cellId(cell);
    if (sides_.at(cell) != side) return name;
    return name + (side == Side::top ? ":n" : ":s");
}

std::vector<std::string> DotHost::facts() const {
    std::vector<std::string> lines;
    if (!host_.hostname.empty()) lines.push_back(printedName(host_.hostname));
    if (isLocalhost_) lines.emplace_back("localhost");
    std::string mlag;
    auto const add = [&mlag](std::string const & fact) {
        if (!fact.empty()) mlag += (mlag.empty() ? "MLAG " : ", ") + fact;
    };
    if (!host_.mlagDomainId.empty()) add(printedName(host_.mlagDomainId));
    add(host_.mlagState);
    add(host_.mlagSystemId);
    if (!mlag.empty()) lines.push_back(mlag);
    return lines;
}

std::string DotHost::text() const {
    std::string text = "    " + id_ + " [tooltip=" + dotTooltip(printedName(host_.name)) +
                       ", label=<<TABLE BORDER=\"1\" CELLBORDER=\"0\" CELLSPACING=\"0\" COLOR=\"";
    text += std::string(kDotLine) + "\" BGCOLOR=\"" + kBackground + "\">\n" + linesOf(Side::top);
    text += std::string("        <TR><TD CELLPADDING=\"4\" BGCOLOR=\"") +
            (isLocalhost_ ? kLocalhostFill : kHostFill) + "\"><FONT COLOR=\"#ffffff\" POINT-SIZE=\"13\"><B>" +
            dotLabel(printedName(host_.name)) + "</B></FONT>";
    for (std::string const & line : facts()) {
        text += "<BR/><FONT COLOR=\"#dfe6ec\" POINT-SIZE=\"9\">" + dotLabel(line) + "</FONT>";
    }
    return text + "</TD></TR>\n" + linesOf(Side::bottom) + "    </TABLE>>];\n";
}

std::string DotHost::linesOf(Side side) const {
    Half const & half = side == Side::top ? top_ : bottom_;
    std::vector<std::string> lines;
    std::size_t used = kPortsPerLine;
    for (Block const & block : half.blocks) {
        std::size_t const columns = std::clamp<std::size_t>(block.ports.size(), 1, kPortsPerLine);
        if (used + columns > kPortsPerLine) {
            lines.emplace_back("        <TR><TD><TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"3\" "
                               "CELLPADDING=\"0\"><TR>\n");
            used = 0;
        }
        lines.back() += blockText(block, side);
        used += columns;
    }
    for (std::string & line : lines) line += "        </TR></TABLE></TD></TR>\n";
    // What is first stands next to the name; there no link has to cross what has none.
    if (!half.idle.empty()) lines.insert(lines.begin(), looseText(half.idle));
    if (!half.loose.empty()) lines.push_back(looseText(half.loose));
    if (side == Side::top) std::reverse(lines.begin(), lines.end());
    std::string text;
    for (std::string const & line : lines) text += line;
    return text;
}

std::string DotHost::blockText(Block const & block, Side side) const {
    std::size_t const columns = std::clamp<std::size_t>(block.ports.size(), 1, kPortsPerLine);
    std::vector<std::string> rows;
    for (std::size_t const mlag : block.mlags) rows.push_back(cellText({Kind::mlag, mlag}, columns));
    rows.push_back(cellText({Kind::portGroup, block.group}, columns));
    for (std::size_t i = 0; i < block.ports.size(); ++i) {
        if (i % columns == 0) rows.emplace_back();
        bool const isLast = i + 1 == block.ports.size();
        rows.back() += cellText({Kind::port, block.ports[i]}, isLast ? columns - i % columns : 1);
    }
    if (side == Side::top) std::reverse(rows.begin(), rows.end());
    std::string text =
        "            <TD><TABLE BORDER=\"0\" CELLBORDER=\"1\" CELLSPACING=\"0\" CELLPADDING=\"3\" COLOR=\"" +
        std::string(kDotLine) + "\">";
    for (std::string const & row : rows) text += "<TR>" + row + "</TR>";
    return text + "</TABLE></TD>\n";
}

std::string DotHost::looseText(std::vector<Cell> const & cells) const {
    std::size_t const columns = std::min(cells.size(), kPortsPerLine);
    std::string text =
        "        <TR><TD><TABLE BORDER=\"0\" CELLBORDER=\"1\" CELLSPACING=\"3\" CELLPADDING=\"3\" COLOR=\"" +
        std::string(kDotLine) + "\">\n";
    for (std::size_t i = 0; i < cells.size(); i += columns) {
        text += "            <TR>";
        std::size_t const end = std::min(i + columns, cells.size());
        for (std::size_t j = i; j < end; ++j) text += cellText(cells[j], 1);
        if (end - i < columns)
            text += "<TD BORDER=\"0\" COLSPAN=\"" + std::to_string(columns - (end - i)) + "\"></TD>";
        text += "</TR>\n";
    }
    return text + "        </TABLE></TD></TR>\n";
}

std::string DotHost::cellText(Cell cell, std::size_t span) const {
    char const * const fill = cell.kind == Kind::mlag        ? kMlagFill
                              : cell.kind == Kind::portGroup ? kGroupFill
                                                             : kPortFill;
    std::string text =
        "<TD PORT=\"" + cellId(cell) + "\" BGCOLOR=\"" + (isPeerLink(cell) ? kPeerLinkFill : fill) + '"';
    if (span > 1) text += " COLSPAN=\"" + std::to_string(span) + '"';
    std::string label = dotLabel(printedName(portBase(cell).name));
    if (isIdle(cell)) label = std::string("<FONT COLOR=\"") + kIdleText + "\">" + label + "</FONT>";
    return text + '>' + label + "</TD>";
}

// A port without a link is drawn faint. Groups and MLAGs are there for what their ports do.
bool DotHost::isIdle(Cell cell) const {
    TopologyView::PortBase const & port = portBase(cell);
    return cell.kind == Kind::port && !port.leadsNowhere && port.connections.empty();
}

TopologyView::PortBase const & DotHost::portBase(Cell cell) const {
    switch (cell.kind) {
    case Kind::mlag: return host_.mlags[cell.index];
    case Kind::portGroup: return host_.groups[cell.index];
    case Kind::port: break;
    }
    return host_.ports[cell.index];
}

}  // namespace TopologyTools
