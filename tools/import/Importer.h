#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tools/json/InputError.h"
#include "tools/json/SourceText.h"

namespace TopologyTools {

// Topologies from other formats.
//
// An importer turns the bytes of a file into operations that build the same topology in any model: hosts with
// ports and port groups, the member ports of groups, and one edge operation per destination. Whoever applies
// them needs to know nothing of the format. Files that cannot be read raise InputError; what could be read
// only by guessing is read and reported as a diagnostic that names the place.
//
// Order: all hosts come first, in the order of the file, then ports and port groups host by host, then
// members, then edges in the order of the file. So an operation only refers to what stands already, and none
// is repeated.

struct HostOperation {
    std::string name;

    bool operator==(HostOperation const &) const = default;
};

struct PortOperation {
    std::string host;
    std::string name;

    bool operator==(PortOperation const &) const = default;
};

struct PortGroupOperation {
    std::string host;
    std::string name;

    bool operator==(PortGroupOperation const &) const = default;
};

// A port of a host joins a port group of the same host. A port joins one group at most.
struct MemberOperation {
    std::string host;
    std::string group;
    std::string port;

    bool operator==(MemberOperation const &) const = default;
};

enum class EndKind { port, portGroup };

struct EdgeEnd {
    std::string host;
    EndKind kind = EndKind::port;
    std::string name;

    auto operator<=>(EdgeEnd const &) const = default;
};

// One destination of the directed edge that leaves `from`.
struct EdgeOperation {
    EdgeEnd from;
    EdgeEnd to;
    bool flag =
        true;  // What the edge stores for the destination. No format read here can say anything but true.

    bool operator==(EdgeOperation const &) const = default;
};

using Operation =
    std::variant<HostOperation, PortOperation, PortGroupOperation, MemberOperation, EdgeOperation>;

// Something that was read by a guess. The text is "file:line:column: warning: message".
struct Diagnostic {
    std::string file;
    TextPosition position;
    std::string message;

    std::string text() const;
};

struct ImportOptions {
    std::optional<std::string> from;     // name of the format; recognised by content when absent
    std::optional<std::string> network;  // which network, of a format that holds several in one file
};

struct ImportResult {
    std::string format;
    std::vector<Operation> operations;    // at least one host
    std::vector<Diagnostic> diagnostics;  // by position
};

// One format. Implementations have no state.
class Importer {
public:
    virtual ~Importer() = default;

    virtual std::string_view name() const = 0;

    // Whether `bytes` look like this format. A broken file of the format should still be recognised, so that
    // its reader can say what is wrong with it.
    virtual bool recognises(std::string_view bytes) const = 0;

    // Throws InputError. REQUIRES: the text is UTF-8.
    virtual ImportResult read(SourceText const & text, ImportOptions const & options) const = 0;
};

// Format name of our own version-2 documents, which are no import.
constexpr std::string_view ownDocumentFormat = "v2";

// Names that ImportOptions::from may hold.
std::vector<std::string_view> importFormats();

// The format that `bytes` look like: a name of importFormats(), ownDocumentFormat, or none.
std::optional<std::string_view> recognise(std::string_view bytes);

// Reads `bytes` as the format that `options` names, otherwise as the one recognised. Throws InputError, also
// when the format is unknown, when the bytes turn out to be our own document, and when the file holds no host
// at all: a wrong guess must not pass for an empty network.
ImportResult importTopology(std::string_view bytes, std::string const & fileName,
                            ImportOptions const & options);

}  // namespace TopologyTools
