#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tools/import/Importer.h"

namespace TopologyTools {

// Collects what an importer finds, in any order and as often as it finds it, and puts it out as operations in
// the order that Importer.h promises.
//
// The ports and port groups of a host share one space of names here, since in no format read does a port have
// the name of a group on its host.
class TopologyBuilder {
public:
    TopologyBuilder(std::string_view format, SourceText const & text);

    // Each tells whether it added something new.
    bool host(std::string const & name);
    bool port(std::string const & host, std::string const & name);       // REQUIRES: the host stands
    bool portGroup(std::string const & host, std::string const & name);  // REQUIRES: the host stands
    bool edge(EdgeEnd const & from, EdgeEnd const & to);                 // REQUIRES: both ends stand

    // REQUIRES: port and group stand, and the port is a member of no group.
    void member(std::string const & host, std::string const & group, std::string const & port);

    bool hasHost(std::string const & name) const;

    // What carries this name on the host; none if nothing does. REQUIRES: the host stands.
    std::optional<EndKind> kindOf(std::string const & host, std::string const & name) const;

    // The group whose member the port is; none if it is none. REQUIRES: the host stands.
    std::optional<std::string> groupOf(std::string const & host, std::string const & port) const;

    // Adds a port for a link end that the file gives no port, and returns its name: that of the host at the
    // other end, followed by "-2", "-3" and so on if that is taken. So a name says where its link goes, and
    // depends on nothing but the file. REQUIRES: the host stands, and so does every port that the file names,
    // lest one of them bear the new name.
    std::string portTowards(std::string const & host, std::string const & peer);

    void warn(TextPosition position, std::string message);

    // Throws InputError at `place` when there is no host. REQUIRES: called once, last.
    ImportResult finish(TextPosition place);

private:
    struct Named {
        std::string name;
        EndKind kind;
    };
    struct Host {
        std::string name;
        std::vector<Named> ends;
        std::unordered_map<std::string, EndKind> kindOf;
        std::unordered_map<std::string, unsigned> lastSuffix;      // of portTowards(), by peer
        std::vector<std::pair<std::string, std::string>> members;  // group, port
        std::unordered_map<std::string, std::string> groupOf;      // by port
    };

    Host & hostNamed(std::string const & name);
    Host const & hostNamed(std::string const & name) const;
    bool end(std::string const & host, std::string const & name, EndKind kind);

    std::string format_;
    SourceText const & text_;
    std::vector<Host> hosts_;
    std::unordered_map<std::string, std::size_t> indexOf_;
    std::vector<EdgeOperation> edges_;
    std::set<std::pair<EdgeEnd, EdgeEnd>> known_;
    std::vector<Diagnostic> diagnostics_;
};

}  // namespace TopologyTools
