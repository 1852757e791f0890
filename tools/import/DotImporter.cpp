#include "tools/import/DotImporter.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include <cgraph.h>

#include "tools/import/DotOutline.h"
#include "tools/import/TopologyBuilder.h"

namespace TopologyTools {
namespace {

struct GraphCloser {
    void operator()(Agraph_t * graph) const { agclose(graph); }
};
using Graph = std::unique_ptr<Agraph_t, GraphCloser>;

// What libcgraph says about a text.
struct Complaint {
    bool isError;
    TextPosition position;
    std::string message;
};

struct ReadGraph {
    Graph graph;  // null if the text is no graph, or could not be read to the end of it
    std::vector<Complaint> complaints;
};

// The reader of libcgraph: its state, its line count and the receiver of its messages are global, so one text
// is read at a time, and every reading sets them anew.
class GraphReader {
public:
    explicit GraphReader(std::string_view bytes) : lock_(mutex()), unread_(bytes) {
        messages().clear();
        formerReceiver_ = agseterrf(receive);
    }

    ~GraphReader() { agseterrf(formerReceiver_); }

    GraphReader(GraphReader const &) = delete;
    GraphReader & operator=(GraphReader const &) = delete;

    ReadGraph read() {
        agsetfile(nullptr);  // forgets the name that a "#" directive gave, and counts lines from 1 again
        Agiodisc_t io = AgIoDisc;
        io.afread = give;
        Agdisc_t discipline = AgDefaultDisc;
        discipline.io = &io;
        ReadGraph result;
        result.graph.reset(agread(this, &discipline));
        std::vector<Complaint> const within = complaints();
        bool const whole =
            std::none_of(within.begin(), within.end(), [](Complaint const & c) { return c.isError; });
        if (result.graph) {
            // Reading on to the end finds what is wrong behind the graph, and leaves nothing for the next.
            while (Graph(agread(this, &discipline))) {
            }
        }
        if (!whole) {
            result.graph.reset();  // out of its depth, the library returns what it has read so far
        }
        result.complaints = complaints();
        return result;
    }

private:
    static std::mutex & mutex() {
        static std::mutex instance;
        return instance;
    }

    static std::string & messages() {
        static std::string instance;
        return instance;
    }

    // One message arrives in several pieces.
    static int receive(char * piece) {
        messages() += piece;
        return 0;
    }

    // Hands out a line at a time, as the library's own readers do.
    static int give(void * reader, char * buffer, int size) {
        std::string_view & unread = static_cast<GraphReader *>(reader)->unread_;
        std::size_t const lineEnd = unread.find('\n');
        std::size_t const line = lineEnd == std::string_view::npos ? unread.size() : lineEnd + 1;
        std::size_t const count = std::min(line, static_cast<std::size_t>(size));
        std::copy_n(unread.data(), count, buffer);
        unread.remove_prefix(count);
        return static_cast<int>(count);
    }

    static std::vector<Complaint> complaints() {
        std::vector<Complaint> found;
        std::string_view rest = messages();
        while (!rest.empty()) {
            std::string_view const line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(line.size() + 1, rest.size()));
            for (std::string_view const level : {"Error: ", "Warning: "}) {
                if (line.substr(0, level.size()) == level) {  // other lines quote the text
                    found.push_back(complaint(level == "Error: ", line.substr(level.size())));
                }
            }
        }
        return found;
    }

    // "syntax error in line 3 near ';'" tells its line; anything else is passed on as it is, also what tells
    // a line of the file that a "#" directive names ("other.gv: syntax error in line 3").
    static Complaint complaint(bool isError, std::string_view message) {
        constexpr std::string_view lead = " in line ";
        std::size_t const at = message.find(lead);
        if (at == std::string_view::npos || message.substr(0, at).find(':') != std::string_view::npos) {
            return {isError, {}, "Graphviz: " + std::string(message)};
        }
        char * end = nullptr;
        std::string const rest(message.substr(at + lead.size()));
        std::size_t const line = std::strtoul(rest.c_str(), &end, 10);
        std::string const where = *end != '\0' ? std::string(end) : " at the end of the text";
        return {isError, {line, 0}, "Graphviz: " + std::string(message.substr(0, at)) + where};
    }

    std::lock_guard<std::mutex> lock_;
    std::string_view unread_;
    agusererrf formerReceiver_ = nullptr;
};

std::string attribute(Agedge_t * edge, char const * name) {
    std::string writable = name;
    char const * const value = agget(edge, writable.data());
    return value != nullptr ? value : "";
}

bool isCompassPoint(std::string_view text) {
    constexpr std::array<std::string_view, 10> points{"n", "ne", "e", "se", "s", "sw", "w", "nw", "c", "_"};
    return std::find(points.begin(), points.end(), text) != points.end();
}

// The port in a node's port "port:compass"; empty if there is none.
std::string portIn(std::string const & text) {
    std::size_t const colon = text.rfind(':');
    if (colon != std::string::npos && isCompassPoint(std::string_view(text).substr(colon + 1))) {
        return text.substr(0, colon);
    }
    return isCompassPoint(text) ? std::string() : text;
}

class DotReader {
public:
    DotReader(std::string_view format, SourceText const & text)
        : text_(text), outline_(outlineDot(text)), builder_(format, text) {}

    ImportResult read() {
        ReadGraph const read = GraphReader(graphText()).read();
        Agraph_t * const graph = read.graph.get();
        if (graph == nullptr) {
            if (read.complaints.empty()) {
                throw text_.error(outline_.start, "no graph in it; expected \"graph\" or \"digraph\"");
            }
            auto const isError = [](Complaint const & complaint) { return complaint.isError; };
            auto const first = std::find_if(read.complaints.begin(), read.complaints.end(), isError);
            Complaint const & told = first != read.complaints.end() ? *first : read.complaints.front();
            throw InputError(text_.fileName(), told.position, told.message);
        }
        for (Complaint const & complaint : read.complaints) {
            builder_.warn(complaint.position, complaint.message + "; the graph was read");
        }
        directed_ = agisdirected(graph) != 0;
        readNodes(graph);
        readLinks();
        return builder_.finish(text_.position(outline_.start));
    }

private:
    struct End {
        std::string host;
        std::string written;  // the port as it stands in the file
        std::string port;     // empty: none was named
    };

    struct Link {
        unsigned sequence;
        End tail;
        End head;
        std::size_t offset = 0;
    };

    std::string_view graphText() const {
        std::string_view bytes = text_.bytes();
        std::size_t const nul = bytes.find('\0');
        if (nul != std::string_view::npos) {
            throw text_.error(nul, byteName('\0') + "; expected text");
        }
        if (bytes.substr(0, byteOrderMark.size()) == byteOrderMark) {
            bytes.remove_prefix(byteOrderMark.size());  // some versions of libcgraph stumble over it
        }
        return bytes;
    }

    static End endOf(Agnode_t * node, std::string written) {
        std::string port = portIn(written);
        return {agnameof(node), std::move(written), std::move(port)};
    }

    void readNodes(Agraph_t * graph) {
        for (Agnode_t * node = agfstnode(graph); node != nullptr; node = agnxtnode(graph, node)) {
            builder_.host(agnameof(node));
            for (Agedge_t * edge = agfstout(graph, node); edge != nullptr; edge = agnxtout(graph, edge)) {
                links_.push_back({AGSEQ(edge), endOf(agtail(edge), attribute(edge, TAILPORT_ID)),
                                  endOf(aghead(edge), attribute(edge, HEADPORT_ID))});
            }
        }
        std::sort(links_.begin(), links_.end(),
                  [](Link const & a, Link const & b) { return a.sequence < b.sequence; });
        locateLinks();
    }

    std::pair<std::string, std::string> pairOf(std::string const & tail, std::string const & head) const {
        return directed_ || tail < head ? std::pair(tail, head) : std::pair(head, tail);
    }

    // Gives every link its place in the file, and reports what the file has and the graph has not.
    void locateLinks() {
        std::map<std::pair<std::string, std::string>, std::deque<std::size_t>> written;
        for (DotLink const & link : outline_.links) {
            written[pairOf(link.tail, link.head)].push_back(link.offset);
        }
        std::map<std::pair<std::string, std::string>, std::size_t> kept;
        for (Link const & link : links_) {
            ++kept[pairOf(link.tail.host, link.head.host)];
        }
        for (auto & [hosts, offsets] : written) {
            // What merges leaves the ports of the last, so the first ones are those that are lost.
            while (offsets.size() > kept[hosts]) {
                builder_.warn(
                    text_.position(offsets.front()),
                    "link left out; a strict graph or an equal key merges it into another between " +
                        quotedText(hosts.first) + " and " + quotedText(hosts.second));
                offsets.pop_front();
            }
        }
        for (Link & link : links_) {
            std::deque<std::size_t> & offsets = written[pairOf(link.tail.host, link.head.host)];
            if (offsets.empty()) {  // a side of it is a subgraph
                link.offset = outline_.mention[link.tail.host];
            } else {
                link.offset = offsets.front();
                offsets.pop_front();
            }
        }
    }

    void readLinks() {
        std::size_t portless = 0;
        for (Link const & link : links_) {
            for (End const * end : {&link.tail, &link.head}) {
                if (end->port.empty()) {
                    ++portless;
                } else {
                    builder_.port(end->host, end->port);
                }
            }
        }
        bool const plain = portless == 2 * links_.size();
        if (plain && portless != 0) {
            builder_.warn(text_.position(links_.front().offset),
                          "no link names a port; each of the " + std::to_string(portless) +
                              " link ends got a port named after the host at its other end");
        }
        for (Link const & link : links_) {
            EdgeEnd const tail = edgeEnd(link.tail, link.head.host, link.offset, plain);
            EdgeEnd const head = edgeEnd(link.head, link.tail.host, link.offset, plain);
            bool isNew = builder_.edge(tail, head);
            if (!directed_ && builder_.edge(head, tail)) {
                isNew = true;
            }
            if (!isNew) {
                builder_.warn(text_.position(link.offset),
                              "link left out; an earlier one joins the same ports");
            }
        }
    }

    EdgeEnd edgeEnd(End const & end, std::string const & peer, std::size_t offset, bool quiet) {
        if (!end.port.empty()) {
            return {end.host, EndKind::port, end.port};
        }
        std::string const made = builder_.portTowards(end.host, peer);
        if (!quiet) {
            std::string const why = end.written.empty()
                                        ? "has no port on this link"
                                        : "has only a compass point (" + end.written + ") on this link";
            builder_.warn(text_.position(offset),
                          quotedText(end.host) + ' ' + why + "; port " + quotedText(made) + " created");
        }
        return {end.host, EndKind::port, made};
    }

    SourceText const & text_;
    DotOutline outline_;
    TopologyBuilder builder_;
    bool directed_ = false;
    std::vector<Link> links_;  // in the order of the file
};

}  // namespace

bool DotImporter::recognises(std::string_view bytes) const { return looksLikeDot(bytes); }

ImportResult DotImporter::read(SourceText const & text, ImportOptions const & options) const {
    if (options.network) {
        throw InputError(text.fileName(), {},
                         "no network " + quotedText(*options.network) +
                             "; a Graphviz file holds one without a name");
    }
    return DotReader(name(), text).read();
}

}  // namespace TopologyTools
