#include "tools/format/TextFormat.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/format/NaturalOrder.h"
#include "tools/format/PrintedName.h"
#include "tools/format/TextTable.h"

namespace TopologyTools {
namespace {

using Kind = TopologyView::Kind;
using Reference = TopologyView::Reference;

constexpr std::string_view kIndent = "  ";
// Lists are broken so that a line stays within this many columns in a table.
constexpr std::size_t kListWidth = 72;

std::string_view kindText(std::optional<Kind> kind) {
    if (!kind) return "no port";
    switch (*kind) {
    case Kind::port: return "port";
    case Kind::portGroup: return "group";
    case Kind::mlag: return "MLAG";
    }
    return {};
}

TextCell orNone(std::optional<std::string> text) {
    return text ? TextCell{*std::move(text)} : TextCell::none();
}

TextCell const kBothWays{"<->", Ink::good};
TextCell const kOut{"-->", Ink::attention};
TextCell const kIn{"<--", Ink::attention};

TextCell arrow(TopologyView::Connection const & connection) {
    if (connection.out && connection.in) return kBothWays;
    return connection.out ? kOut : kIn;
}

// What is worth a remark in a connection; mostly nothing.
std::string remarks(TopologyView::Connection const & connection) {
    std::vector<std::string> all;
    if (!connection.peer.present) all.emplace_back("has left");
    if (connection.out == false) all.emplace_back("out: false");
    if (connection.in == false) all.emplace_back("in: false");
    std::string text;
    for (std::string const & one : all) text += (text.empty() ? "" : ", ") + one;
    return text;
}

class HostText {
public:
    HostText(TopologyView const & view, TopologyView::Host const & host, bool colours)
        : view_(view), host_(host), colours_(colours) {}

    std::string text() {
        title();
        ports();
        groups();
        mlags();
        list("logical ports", host_.logicalPorts, true);
        list("raw MLAGs", host_.rawMlags, false);
        return std::move(text_);
    }

private:
    void title() {
        text_ += inked(printedName(host_.name), Ink::strong, colours_);
        if (!host_.hostname.empty()) text_ += "  " + printedName(host_.hostname);
        if (view_.localhostIsPresent && view_.localhost == host_.name) {
            text_ += "  " + inked("(localhost)", Ink::good, colours_);
        }
        text_ += '\n';
        if (!host_.hasMlagAttributes()) return;

        std::string line;
        auto const add = [&](std::string_view what, std::string const & value) {
            if (value.empty()) return;
            line += (line.empty() ? "" : ", ") + inked(what, Ink::faint, colours_) + ' ' + value;
        };
        if (!host_.mlagDomainId.empty()) add("domain", printedName(host_.mlagDomainId));
        add("state", host_.mlagState);
        add("system", host_.mlagSystemId);
        if (host_.mlagPeerLink) add("peer link", printedReference(*host_.mlagPeerLink, host_.name, true));
        text_ += std::string(kIndent) + "MLAG " + line + '\n';
    }

    std::optional<std::string> local(std::optional<Reference> const & reference) const {
        if (!reference) return std::nullopt;
        return printedReference(*reference, host_.name, false);
    }

    // One row per connection, and one for a port base without any. The row's first cells are `cells`, and
    // those below each other in `list` are the cell after them.
    void addRows(TextTable & table, std::vector<TextCell> const & cells, TopologyView::PortBase const & port,
                 std::vector<std::string> const & list = {}) const {
        std::size_t const listColumn = cells.size() - 1;
        std::size_t const connections = port.connections.size() + (port.leadsNowhere ? 1 : 0);
        for (std::size_t i = 0; i == 0 || i < connections || i < list.size(); ++i) {
            std::vector<TextCell> row(cells.size());
            if (i == 0) row = cells;
            if (i < list.size()) row[listColumn].text = list[i];
            if (i < port.connections.size()) {
                TopologyView::Connection const & connection = port.connections[i];
                row.push_back(arrow(connection));
                row.push_back({printedName(connection.peer.host)});
                row.push_back({peerName(connection.peer)});
                row.push_back({remarks(connection), Ink::attention});
            } else if (i < connections) {
                row.push_back(kOut);
                row.push_back({"nowhere", Ink::attention});
            }
            table.add(std::move(row));
        }
    }

    static std::string peerName(Reference const & peer) {
        std::string name = printedName(peer.name);
        if (peer.kind != Kind::port) name += " (" + std::string(kindText(peer.kind)) + ')';
        return name;
    }

    // Stands apart from what is above it, if that is more than the host's name.
    void section(std::string const & lines) {
        if (lines.empty()) return;
        if (!isFirstSection_ || host_.hasMlagAttributes()) text_ += '\n';
        isFirstSection_ = false;
        text_ += lines;
    }

    void ports() {
        TextTable table({"PORT", "TYPE", "GROUP", "", "PEER", "PEER PORT", "REMARKS"});
        for (auto const & port : host_.ports) {
            addRows(table, {{printedName(port.name)}, {port.type}, orNone(local(port.group))}, port);
        }
        section(table.text(kIndent, colours_));
    }

    void groups() {
        TextTable table({"GROUP", "TYPE", "MLAG", "MEMBERS", "", "PEER", "PEER PORT", "REMARKS"});
        for (auto const & group : host_.groups) {
            std::vector<std::string> members;
            for (Reference const & member : group.members) {
                members.push_back(printedReference(member, host_.name, false));
            }
            addRows(table,
                    {{printedName(group.name)}, {group.type}, orNone(local(group.mlag)), TextCell::none()},
                    group, wrappedList(members, kListWidth));
        }
        section(table.text(kIndent, colours_));
    }

    void mlags() {
        TextTable table({"MLAG", "TYPE", "SECONDARY", "LOCAL GROUP", "", "PEER", "PEER PORT", "REMARKS"});
        for (auto const & mlag : host_.mlags) {
            addRows(
                table,
                {{printedName(mlag.name)},
                 {mlag.type},
                 mlag.secondaryName.empty() ? TextCell::none() : TextCell{printedName(mlag.secondaryName)},
                 orNone(local(mlag.localGroup))},
                mlag);
        }
        section(table.text(kIndent, colours_));
    }

    void list(std::string_view heading, std::vector<Reference> const & references, bool withKind) {
        std::vector<std::string> items;
        items.reserve(references.size());
        for (Reference const & reference : references) {
            items.push_back(printedReference(reference, host_.name, withKind));
        }
        std::string lines;
        std::string before = std::string(kIndent) + inked(heading, Ink::faint, colours_) + "  ";
        for (std::string const & line : wrappedList(items, kListWidth)) {
            lines += before + line + '\n';
            before = std::string(kIndent.size() + heading.size() + 2, ' ');
        }
        section(lines);
    }

    TopologyView const & view_;
    TopologyView::Host const & host_;
    bool colours_;
    bool isFirstSection_ = true;
    std::string text_;
};

struct Directions {
    std::size_t both = 0;
    std::size_t forth = 0;
    std::size_t back = 0;

    void add(TopologyView::Link const & link) {
        ++(link.forth && link.back ? both : link.forth ? forth : back);
    }
};

// Between which hosts there are links, and how many.
std::string linkText(TopologyView const & view, bool colours) {
    using Hosts = std::pair<std::string, std::string>;
    auto const less = [](Hosts const & a, Hosts const & b) {
        auto const order = naturalOrder(a.first, b.first);
        return order != 0 ? order < 0 : naturalOrder(a.second, b.second) < 0;
    };
    std::map<Hosts, Directions, decltype(less)> pairs;
    for (TopologyView::Link const & link : view.links) pairs[{link.one.host, link.other.host}].add(link);

    TextTable table({"HOST", "", "HOST", "LINKS"});
    table.alignRight(3);
    for (auto const & [hosts, directions] : pairs) {
        auto const add = [&table, &hosts = hosts](std::size_t count, TextCell const & sign) {
            if (!count) return;
            table.add(
                {{printedName(hosts.first)}, sign, {printedName(hosts.second)}, {std::to_string(count)}});
        };
        add(directions.both, kBothWays);
        add(directions.forth, kOut);
        add(directions.back, kIn);
    }
    return table.text({}, colours);
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}

// What has an edge, but is not among the hosts printed.
std::string strayText(TopologyView const & view, bool colours) {
    std::vector<std::string> lines;
    for (TopologyView::Link const & link : view.links) {
        if (link.one.present || link.other.present) continue;
        TopologyView::Connection const connection{link.other, link.forth, link.back};
        lines.push_back(printedReference(link.one, {}, true) + ' ' + arrow(connection).text + ' ' +
                        printedReference(link.other, {}, true));
    }
    for (Reference const & from : view.edgesWithoutDestination) {
        if (!from.present) lines.push_back(printedReference(from, {}, true) + " --> nowhere");
    }
    std::string text;
    if (lines.empty()) return text;
    text += inked("edges of ports that have left", Ink::attention, colours) + '\n';
    for (std::string const & line : lines) text += std::string(kIndent) + line + '\n';
    return text;
}

struct Counts {
    explicit Counts(TopologyView const & view) {
        for (auto const & host : view.hosts) {
            ports += host.ports.size();
            groups += host.groups.size();
            mlags += host.mlags.size();
        }
        std::set<Reference> ends(view.edgesWithoutDestination.begin(), view.edgesWithoutDestination.end());
        for (auto const & link : view.links) {
            links.add(link);
            ends.insert({link.one, link.other});
        }
        departed =
            std::count_if(ends.begin(), ends.end(), [](Reference const & end) { return !end.present; });
    }

    std::size_t ports = 0;
    std::size_t groups = 0;
    std::size_t mlags = 0;
    std::ptrdiff_t departed = 0;
    Directions links;
};

std::string localhostText(TopologyView const & view) {
    return printedName(*view.localhost) + (view.localhostIsPresent ? "" : " (has left)");
}

}  // namespace

std::string printedReference(Reference const & reference, std::string_view host, bool withKind) {
    std::string text = printedName(reference.name);
    if (withKind) text += " (" + std::string(kindText(reference.kind)) + ')';
    if (reference.host != host || host.empty()) text += " of " + printedName(reference.host);
    if (!reference.present) text += " (has left)";
    return text;
}

std::string textFormat(TopologyView const & view, bool colours) {
    std::string text;
    for (auto const & host : view.hosts) text += HostText(view, host, colours).text() + '\n';
    if (std::string const links = linkText(view, colours); !links.empty()) text += links + '\n';
    if (std::string const stray = strayText(view, colours); !stray.empty()) text += stray + '\n';

    Counts const counts(view);
    text += counted(view.hosts.size(), "host", "hosts") + ", " + counted(counts.ports, "port", "ports") +
            ", " + counted(counts.groups, "port group", "port groups") + ", " +
            counted(counts.mlags, "MLAG", "MLAGs") + ", " + counted(view.edges, "edge", "edges") + " to " +
            counted(view.destinations, "destination", "destinations") + '\n';
    return text;
}

std::string summaryFormat(TopologyView const & view, bool colours) {
    Counts const counts(view);
    TextTable table({"", ""});
    auto const add = [&table](char const * what, auto count) {
        table.add({{what}, {std::to_string(count), count ? Ink::strong : Ink::faint}});
    };
    add("hosts", view.hosts.size());
    add("ports", counts.ports);
    add("port groups", counts.groups);
    add("MLAGs", counts.mlags);
    add("edges", view.edges);
    add("destinations", view.destinations);
    add("links both ways", counts.links.both);
    add("links one way", counts.links.forth + counts.links.back);
    add("edges without destination", view.edgesWithoutDestination.size());
    add("edge ends that have left", counts.departed);
    table.add({{"localhost"}, view.localhost ? TextCell{localhostText(view)} : TextCell::none()});
    return table.text({}, colours);
}

}  // namespace TopologyTools
