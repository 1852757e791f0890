#include "tools/import/GraphmlImporter.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include <pugixml.hpp>

#include "tools/import/TopologyBuilder.h"

namespace TopologyTools {
namespace {

// The name of an element or attribute without its namespace prefix.
std::string_view localName(char const * name) {
    std::string_view const whole = name;
    return whole.substr(whole.find(':') == std::string_view::npos ? 0 : whole.find(':') + 1);
}

bool isElement(pugi::xml_node node, std::string_view name) {
    return node.type() == pugi::node_element && localName(node.name()) == name;
}

std::string trimmed(std::string_view text) {
    std::size_t const start = text.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) {
        return {};
    }
    return std::string(text.substr(start, text.find_last_not_of(" \t\r\n") - start + 1));
}

class GraphmlReader {
public:
    GraphmlReader(std::string_view format, SourceText const & text) : text_(text), builder_(format, text) {}

    ImportResult read() {
        std::size_t const nul = text_.bytes().find('\0');
        if (nul != std::string_view::npos) {  // the parser would end there
            throw text_.error(nul, byteName('\0') + "; expected text");
        }
        pugi::xml_parse_result const parsed = document_.load_buffer(
            text_.bytes().data(), text_.bytes().size(), pugi::parse_default, pugi::encoding_utf8);
        if (parsed.status == pugi::status_no_document_element) {
            throw text_.error(0, "no XML element in it; expected graphml");
        }
        if (!parsed) {
            throw text_.error(std::min(static_cast<std::size_t>(parsed.offset), text_.bytes().size()),
                              std::string("XML: ") + parsed.description());
        }
        pugi::xml_node const root = document_.document_element();
        if (!isElement(root, "graphml")) {
            throw error(root, "element " + quotedText(root.name()) + "; expected graphml");
        }
        pugi::xml_node const graph = graphIn(root);
        findLabelKey(root);
        readNodes(graph);
        readEdges(graph);
        return builder_.finish(position(graph));
    }

private:
    struct Node {
        std::string id;
        std::string label;
        pugi::xml_node element;
    };

    struct End {
        std::string host;
        std::string port;  // empty: none was named
    };

    struct Link {
        End source;
        End target;
        bool directed;
        pugi::xml_node element;
    };

    // Of the '<' of an element. The parser remembers where its name stands.
    TextPosition position(pugi::xml_node element) const {
        return text_.position(static_cast<std::size_t>(element.offset_debug()) - 1);
    }

    InputError error(pugi::xml_node element, std::string message) const {
        return InputError(text_.fileName(), position(element), std::move(message));
    }

    // A text of the file. Character references can spell what is no character.
    std::string checked(pugi::xml_node element, std::string value) const {
        if (findInvalidUtf8(value) != std::string::npos) {
            throw error(element, "a character reference to a surrogate; expected a character");
        }
        return value;
    }

    // Empty if the element has no such attribute.
    std::string attribute(pugi::xml_node element, char const * name) const {
        return checked(element, element.attribute(name).value());
    }

    std::string requiredAttribute(pugi::xml_node element, char const * name) const {
        std::string value = attribute(element, name);
        if (value.empty()) {
            throw error(element,
                        std::string(localName(element.name())) + " without " + name + "; expected one");
        }
        return value;
    }

    pugi::xml_node graphIn(pugi::xml_node root) const {
        pugi::xml_node graph;
        for (pugi::xml_node const child : root.children()) {
            if (isElement(child, "graph")) {
                if (graph) {
                    throw error(child, "a second graph in the file; expected one");
                }
                graph = child;
            }
        }
        if (!graph) {
            throw error(root, "no graph in it; expected one");
        }
        return graph;
    }

    void findLabelKey(pugi::xml_node root) {
        for (pugi::xml_node const key : root.children()) {
            std::string_view const target = key.attribute("for").as_string("all");
            if (isElement(key, "key") && std::string_view(key.attribute("attr.name").value()) == "label" &&
                (target == "node" || target == "all")) {
                labelKey_ = key.attribute("id").value();
                return;
            }
        }
    }

    std::string labelOf(pugi::xml_node node) const {
        for (pugi::xml_node const data : node.children()) {
            if (labelKey_ && isElement(data, "data") && *labelKey_ == data.attribute("key").value()) {
                return checked(data, trimmed(data.text().get()));
            }
        }
        return {};
    }

    void readNodes(pugi::xml_node graph) {
        std::vector<Node> nodes;
        std::unordered_map<std::string, TextPosition> known;
        for (pugi::xml_node const child : graph.children()) {
            if (isElement(child, "hyperedge")) {
                throw error(child, "a hyperedge; expected edges between two nodes only");
            }
            if (isElement(child, "node") || isElement(child, "edge")) {
                refuseNestedGraph(child);
            }
            if (!isElement(child, "node")) {
                continue;
            }
            std::string id = requiredAttribute(child, "id");
            auto const [first, isNew] = known.emplace(id, position(child));
            if (!isNew) {
                throw error(child, "duplicate node " + quotedText(id) + "; first at line " +
                                       std::to_string(first->second.line) + ", column " +
                                       std::to_string(first->second.column));
            }
            nodes.push_back({std::move(id), labelOf(child), child});
        }
        nameHosts(nodes);
        for (Node const & node : nodes) {
            readPorts(node);
        }
    }

    void refuseNestedGraph(pugi::xml_node element) const {
        for (pugi::xml_node const child : element.children()) {
            if (isElement(child, "graph")) {
                throw error(child, "a graph within element " + quotedText(element.name()) +
                                       "; expected nodes and edges of one graph only");
            }
        }
    }

    void nameHosts(std::vector<Node> const & nodes) {
        std::unordered_map<std::string, unsigned> wanted;
        for (Node const & node : nodes) {
            ++wanted[node.label.empty() ? node.id : node.label];
        }
        for (Node const & node : nodes) {
            std::string name = node.label.empty() ? node.id : node.label;
            if (!node.label.empty() && wanted[name] > 1) {
                do {
                    name += " (" + node.id + ')';
                } while (wanted.count(name) != 0);
                ++wanted[name];
            }
            hostOf_.emplace(node.id, name);
            builder_.host(name);
        }
    }

    void readPorts(Node const & node) {
        std::string const & host = hostOf_.at(node.id);
        std::vector<pugi::xml_node> open{node.element};
        while (!open.empty()) {
            pugi::xml_node const element = open.back();
            open.pop_back();
            if (element != node.element) {
                std::string const name = requiredAttribute(element, "name");
                if (!builder_.port(host, name)) {
                    throw error(element,
                                "duplicate port " + quotedText(name) + " of node " + quotedText(node.id));
                }
            }
            for (pugi::xml_node child = element.last_child(); child; child = child.previous_sibling()) {
                if (isElement(child, "port")) {
                    open.push_back(child);
                }
            }
        }
    }

    bool isDirected(pugi::xml_node edge, bool byDefault) const {
        std::string_view const directed = edge.attribute("directed").value();
        if (directed.empty()) {
            return byDefault;
        }
        if (directed != "true" && directed != "false") {
            throw error(edge, "directed=" + quotedText(directed) + "; expected \"true\" or \"false\"");
        }
        return directed == "true";
    }

    bool directedByDefault(pugi::xml_node graph) {
        std::string_view const value = graph.attribute("edgedefault").value();
        if (value.empty()) {
            builder_.warn(position(graph), "graph without edgedefault; taken as undirected");
        } else if (value != "directed" && value != "undirected") {
            throw error(graph,
                        "edgedefault=" + quotedText(value) + "; expected \"directed\" or \"undirected\"");
        }
        return value == "directed";
    }

    End endOf(pugi::xml_node edge, char const * nodeAttribute, char const * portAttribute) {
        std::string const id = requiredAttribute(edge, nodeAttribute);
        auto const host = hostOf_.find(id);
        if (host == hostOf_.end()) {
            throw error(edge,
                        std::string(nodeAttribute) + '=' + quotedText(id) + "; expected the id of a node");
        }
        std::string port = attribute(edge, portAttribute);
        if (!port.empty() && builder_.port(host->second, port)) {
            builder_.warn(position(edge), "port " + quotedText(port) + " is not declared by node " +
                                              quotedText(id) + "; created");
        }
        return {host->second, std::move(port)};
    }

    EdgeEnd edgeEnd(End const & end, std::string const & peer) {
        return {end.host, EndKind::port, end.port.empty() ? builder_.portTowards(end.host, peer) : end.port};
    }

    void readEdges(pugi::xml_node graph) {
        bool const byDefault = directedByDefault(graph);
        std::vector<Link> links;
        for (pugi::xml_node const child : graph.children()) {
            if (isElement(child, "edge")) {
                End source = endOf(child, "source", "sourceport");
                End target = endOf(child, "target", "targetport");
                links.push_back({std::move(source), std::move(target), isDirected(child, byDefault), child});
            }
        }
        for (Link const & link : links) {  // after all of them are read: made names must not meet given ones
            EdgeEnd const source = edgeEnd(link.source, link.target.host);
            EdgeEnd const target = edgeEnd(link.target, link.source.host);
            bool isNew = builder_.edge(source, target);
            if (!link.directed && builder_.edge(target, source)) {
                isNew = true;
            }
            if (!isNew) {
                builder_.warn(position(link.element), "edge left out; an earlier one joins the same ports");
            }
        }
    }

    SourceText const & text_;
    TopologyBuilder builder_;
    pugi::xml_document document_;
    std::optional<std::string> labelKey_;
    std::unordered_map<std::string, std::string> hostOf_;  // by node id
};

}  // namespace

bool GraphmlImporter::recognises(std::string_view bytes) const {
    if (bytes.substr(0, 64).find('<') == std::string_view::npos) {
        return false;
    }
    pugi::xml_document document;  // keeps what stood before a fault
    static_cast<void>(
        document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default, pugi::encoding_utf8));
    return isElement(document.document_element(), "graphml");
}

ImportResult GraphmlImporter::read(SourceText const & text, ImportOptions const & options) const {
    if (options.network) {
        throw InputError(text.fileName(), {},
                         "no network " + quotedText(*options.network) +
                             "; a GraphML file holds one without a name");
    }
    return GraphmlReader(name(), text).read();
}

}  // namespace TopologyTools
