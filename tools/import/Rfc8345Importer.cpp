#include "tools/import/Rfc8345Importer.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "tools/import/TopologyBuilder.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {
namespace {

constexpr std::string_view networkModule = "ietf-network";
constexpr std::string_view topologyModule = "ietf-network-topology";
constexpr std::string_view layer2Module = "ietf-l2-topology";

class Rfc8345Reader {
public:
    Rfc8345Reader(std::string_view format, SourceText const & text, ImportOptions const & options)
        : text_(text), options_(options), builder_(format, text) {}

    ImportResult read() {
        JsonValue const root = parseJson(text_.bytes(), text_.fileName());
        JsonValue const & network = networkOf(root);
        readNodes(network);
        readMembers();
        readLinks(network);
        return builder_.finish(network.position());
    }

private:
    using Elements = std::vector<JsonValue>;

    struct GroupMember {
        std::string node;
        std::string group;
        std::string tp;
        TextPosition position;
    };

    struct LinkEnd {
        std::string node;
        std::string tp;  // Empty: none was named.
        TextPosition position;
    };

    InputError error(JsonValue const & value, std::string message) const {
        return InputError(text_.fileName(), value.position(), std::move(message));
    }

    void require(JsonValue const & value, JsonKind kind, std::string_view what) const {
        if (value.kind() != kind) {
            throw error(value, std::string(what) + ": expected " +
                                   (kind == JsonKind::boolean ? "a " : "an ") +
                                   std::string(jsonKindName(kind)) + "; found " +
                                   std::string(jsonKindName(value.kind())));
        }
    }

    // The member `name`, with the prefix of its module or without. Null if there is none.
    JsonValue const * find(JsonValue const & object, std::string_view module, std::string_view name) const {
        JsonMember const * const prefixed = object.member(std::string(module) + ':' + std::string(name));
        JsonMember const * const bare = object.member(name);
        if (prefixed != nullptr && bare != nullptr) {
            throw InputError(text_.fileName(), bare->position,
                             quotedText(name) + " and " + quotedText(prefixed->name) +
                                 "; expected one of them");
        }
        JsonMember const * const found = prefixed != nullptr ? prefixed : bare;
        return found != nullptr ? &found->value : nullptr;
    }

    // Elements of a list of objects; none if the list is absent.
    Elements const & list(JsonValue const & object, std::string_view module, std::string_view name) const {
        static Elements const none;
        JsonValue const * const found = find(object, module, name);
        if (found == nullptr) {
            return none;
        }
        require(*found, JsonKind::array, name);
        for (JsonValue const & element : found->elements()) {
            require(element, JsonKind::object, name);
        }
        return found->elements();
    }

    // A string leaf; null if it is absent.
    JsonValue const * leaf(JsonValue const & object, std::string_view module, std::string_view name) const {
        JsonValue const * const found = find(object, module, name);
        if (found != nullptr && !found->isString()) {
            throw error(*found, std::string(name) + ": expected a string; found " +
                                    std::string(jsonKindName(found->kind())));
        }
        return found;
    }

    // A string leaf that identifies something.
    JsonValue const & identifier(JsonValue const & object, std::string_view module,
                                 std::string_view name) const {
        JsonValue const * const found = leaf(object, module, name);
        if (found == nullptr) {
            throw error(object, "no " + std::string(name) + "; expected a string");
        }
        if (found->string().empty()) {
            throw error(*found, std::string(name) + " is empty; expected a name");
        }
        return *found;
    }

    // Refuses a key that stands already in the list it belongs to.
    void requireNew(std::unordered_map<std::string, TextPosition> & known, JsonValue const & key,
                    std::string_view name) const {
        auto const [at, isNew] = known.emplace(key.string(), key.position());
        if (!isNew) {
            throw error(key, "duplicate " + std::string(name) + ' ' + quotedText(key.string()) +
                                 "; first at line " + std::to_string(at->second.line) + ", column " +
                                 std::to_string(at->second.column));
        }
    }

    JsonValue const & networkOf(JsonValue const & root) {
        require(root, JsonKind::object, "top level");
        JsonValue const * const networks = find(root, networkModule, "networks");
        if (networks != nullptr) {
            require(*networks, JsonKind::object, "networks");
        }
        JsonValue const & parent = networks != nullptr ? *networks : root;
        Elements const & found = list(parent, networkModule, "network");
        if (found.empty()) {
            throw error(parent, "no network; expected \"ietf-network:networks\" with a list \"network\"");
        }
        std::unordered_map<std::string, TextPosition> known;
        std::string ids;
        JsonValue const * wanted = nullptr;
        for (JsonValue const & network : found) {
            JsonValue const & id = identifier(network, networkModule, "network-id");
            requireNew(known, id, "network-id");
            ids += (ids.empty() ? "" : ", ") + quotedText(id.string());
            if (options_.network ? id.string() == *options_.network : found.size() == 1) {
                wanted = &network;
                network_ = id.string();
            }
        }
        if (wanted == nullptr && options_.network) {
            throw error(parent, "no network " + quotedText(*options_.network) + "; expected one of " + ids);
        }
        if (wanted == nullptr) {
            throw error(parent,
                        std::to_string(found.size()) + " networks; expected --network to name one of " + ids);
        }
        return *wanted;
    }

    void readNodes(JsonValue const & network) {
        std::unordered_map<std::string, TextPosition> knownNodes;
        for (JsonValue const & node : list(network, networkModule, "node")) {
            JsonValue const & id = identifier(node, networkModule, "node-id");
            requireNew(knownNodes, id, "node-id");
            builder_.host(id.string());
            std::unordered_map<std::string, TextPosition> knownTps;
            for (JsonValue const & tp : list(node, topologyModule, "termination-point")) {
                JsonValue const & tpId = identifier(tp, topologyModule, "tp-id");
                requireNew(knownTps, tpId, "tp-id");
                readTerminationPoint(tp, id.string(), tpId.string());
            }
        }
    }

    void readTerminationPoint(JsonValue const & tp, std::string const & node, std::string const & tpId) {
        std::size_t const membersBefore = members_.size();
        for (JsonValue const & supporting : list(tp, topologyModule, "supporting-termination-point")) {
            JsonValue const & ref = identifier(supporting, topologyModule, "tp-ref");
            if (identifier(supporting, topologyModule, "network-ref").string() == network_ &&
                identifier(supporting, topologyModule, "node-ref").string() == node) {
                members_.push_back({node, tpId, ref.string(), ref.position()});
            }
        }
        bool lag = false;
        if (JsonValue const * const attributes = find(tp, layer2Module, "l2-termination-point-attributes")) {
            require(*attributes, JsonKind::object, "l2-termination-point-attributes");
            lag = readLag(*attributes, node, tpId);
        }
        if (lag || members_.size() != membersBefore) {
            builder_.portGroup(node, tpId);
        } else {
            builder_.port(node, tpId);
        }
    }

    bool readLag(JsonValue const & attributes, std::string const & node, std::string const & tpId) {
        JsonValue const * const flag = find(attributes, layer2Module, "lag");
        if (flag != nullptr) {
            require(*flag, JsonKind::boolean, "lag");
        }
        bool const lag = flag != nullptr && flag->boolean();
        JsonValue const * const refs = find(attributes, layer2Module, "member-link-tp");
        if (refs == nullptr) {
            return lag;
        }
        require(*refs, JsonKind::array, "member-link-tp");
        if (!lag) {
            builder_.warn(refs->position(),
                          "member-link-tp of " + quotedText(tpId) + " ignored; it is no lag");
            return false;
        }
        for (JsonValue const & ref : refs->elements()) {
            if (!ref.isString()) {
                throw error(ref, "member-link-tp: expected a string; found " +
                                     std::string(jsonKindName(ref.kind())));
            }
            if (ref.string().empty()) {
                throw error(ref, "member-link-tp is empty; expected a name");
            }
            members_.push_back({node, tpId, ref.string(), ref.position()});
        }
        return true;
    }

    void readMembers() {
        for (GroupMember const & m : members_) {
            std::string const subject = "member " + quotedText(m.tp) + " of " + quotedText(m.group);
            if (builder_.port(m.node, m.tp)) {
                builder_.warn(m.position, subject + " is not on node " + quotedText(m.node) + "; created");
            }
            if (builder_.kindOf(m.node, m.tp) == EndKind::portGroup) {
                builder_.warn(m.position, subject + " left out; it is a port group itself");
                continue;
            }
            std::optional<std::string> const standing = builder_.groupOf(m.node, m.tp);
            if (!standing) {
                builder_.member(m.node, m.group, m.tp);
            } else if (*standing != m.group) {
                builder_.warn(m.position, subject + " left out; it is a member of " + quotedText(*standing));
            }
        }
    }

    LinkEnd linkEnd(JsonValue const & link, std::string const & subject, std::string_view side,
                    std::string const & prefix) {
        JsonValue const * const container = find(link, topologyModule, side);
        if (container == nullptr) {
            throw error(link, subject + " has no " + std::string(side) + "; expected an object");
        }
        require(*container, JsonKind::object, side);
        JsonValue const & node = identifier(*container, topologyModule, prefix + "-node");
        JsonValue const * const tp = leaf(*container, topologyModule, prefix + "-tp");
        LinkEnd end{node.string(), tp != nullptr ? tp->string() : std::string(), container->position()};
        bool const newNode = builder_.host(end.node);
        if (newNode) {
            builder_.warn(node.position(), subject + ": node " + quotedText(end.node) +
                                               " is not in network " + quotedText(network_) + "; created");
        }
        if (!end.tp.empty() && !builder_.kindOf(end.node, end.tp)) {
            builder_.port(end.node, end.tp);
            if (!newNode) {
                builder_.warn(tp->position(), subject + ": termination point " + quotedText(end.tp) +
                                                  " is not on node " + quotedText(end.node) + "; created");
            }
        }
        return end;
    }

    EdgeEnd edgeEnd(LinkEnd const & end, std::string const & subject, std::string const & peer) {
        if (end.tp.empty()) {
            std::string const made = builder_.portTowards(end.node, peer);
            builder_.warn(end.position, subject + ": no termination point on node " + quotedText(end.node) +
                                            "; port " + quotedText(made) + " created");
            return {end.node, EndKind::port, made};
        }
        return {end.node, *builder_.kindOf(end.node, end.tp), end.tp};
    }

    void readLinks(JsonValue const & network) {
        struct Link {
            std::string subject;
            TextPosition position;
            LinkEnd source;
            LinkEnd destination;
        };
        std::vector<Link> links;
        for (JsonValue const & link : list(network, topologyModule, "link")) {
            JsonValue const * const id = leaf(link, topologyModule, "link-id");
            std::string const subject =
                id != nullptr ? "link " + quotedText(id->string()) : std::string("link");
            LinkEnd source = linkEnd(link, subject, "source", "source");
            LinkEnd destination = linkEnd(link, subject, "destination", "dest");
            links.push_back({subject, link.position(), std::move(source), std::move(destination)});
        }
        for (Link const & link : links) {  // after all of them are read: made names must not meet given ones
            EdgeEnd const from = edgeEnd(link.source, link.subject, link.destination.node);
            EdgeEnd const to = edgeEnd(link.destination, link.subject, link.source.node);
            if (!builder_.edge(from, to)) {
                builder_.warn(link.position,
                              link.subject + " left out; an earlier link joins the same points");
            }
        }
    }

    SourceText const & text_;
    ImportOptions const & options_;
    TopologyBuilder builder_;
    std::string network_;
    std::vector<GroupMember> members_;
};

}  // namespace

bool Rfc8345Importer::recognises(std::string_view bytes) const {
    return glanceAtJson(bytes, {"ietf-network:networks", "ietf-network:network", "networks", "network"})
        .member.has_value();
}

ImportResult Rfc8345Importer::read(SourceText const & text, ImportOptions const & options) const {
    return Rfc8345Reader(name(), text, options).read();
}

}  // namespace TopologyTools
