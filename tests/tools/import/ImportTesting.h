#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/SourceTree.h"
#include "tools/import/Importer.h"

namespace TopologyTools::ImportTesting {

inline ImportOptions from(std::string format) {
    ImportOptions options;
    options.from = std::move(format);
    return options;
}

inline ImportOptions network(std::string id) {
    ImportOptions options;
    options.network = std::move(id);
    return options;
}

inline std::string text(EdgeEnd const & end) {
    return end.host + (end.kind == EndKind::port ? ":" : "::") + end.name;
}

inline std::string text(Operation const & operation) {
    if (auto const * host = std::get_if<HostOperation>(&operation)) {
        return "host " + host->name;
    }
    if (auto const * port = std::get_if<PortOperation>(&operation)) {
        return "port " + port->host + ':' + port->name;
    }
    if (auto const * group = std::get_if<PortGroupOperation>(&operation)) {
        return "group " + group->host + "::" + group->name;
    }
    if (auto const * member = std::get_if<MemberOperation>(&operation)) {
        return "member " + member->host + "::" + member->group + " <- " + member->port;
    }
    auto const & edge = std::get<EdgeOperation>(operation);
    return "edge " + text(edge.from) + " -> " + text(edge.to) + (edge.flag ? "" : " false");
}

// One line per operation; a port stands after ':', a port group after "::".
inline std::string operationsOf(std::string_view bytes, ImportOptions const & options = {}) {
    std::string out;
    for (Operation const & operation : importTopology(bytes, "t", options).operations) {
        out += text(operation) + '\n';
    }
    return out;
}

inline std::string warningsOf(std::string_view bytes, ImportOptions const & options = {}) {
    std::string out;
    for (Diagnostic const & diagnostic : importTopology(bytes, "t", options).diagnostics) {
        out += diagnostic.text() + '\n';
    }
    return out;
}

inline std::string errorOf(std::string_view bytes, ImportOptions const & options = {}) {
    try {
        importTopology(bytes, "t", options);
    } catch (InputError const & error) {
        return error.what();
    }
    return "no error";
}

// "t:line:column: " of the only occurrence of `needle` in `bytes`.
inline std::string at(std::string_view bytes, std::string_view needle) {
    std::size_t const offset = bytes.find(needle);
    EXPECT_NE(offset, std::string_view::npos) << needle;
    EXPECT_EQ(bytes.find(needle, offset + 1), std::string_view::npos) << needle;
    std::string_view const before = bytes.substr(0, offset);
    auto const line = std::count(before.begin(), before.end(), '\n') + 1;
    std::size_t const column = offset - (before.rfind('\n') + 1) + 1;
    return "t:" + std::to_string(line) + ':' + std::to_string(column) + ": ";
}

struct Counts {
    std::size_t hosts = 0;
    std::size_t ports = 0;
    std::size_t groups = 0;
    std::size_t members = 0;
    std::size_t destinations = 0;

    bool operator==(Counts const &) const = default;
};

inline std::ostream & operator<<(std::ostream & out, Counts const & c) {
    return out << c.hosts << " hosts, " << c.ports << " ports, " << c.groups << " groups, " << c.members
               << " members, " << c.destinations << " destinations";
}

inline Counts countsOf(ImportResult const & result) {
    std::array<std::size_t, std::variant_size_v<Operation>> counts{};
    for (Operation const & operation : result.operations) {
        ++counts.at(operation.index());
    }
    return {counts[0], counts[1], counts[2], counts[3], counts[4]};
}

// Public sample files, kept beside the source tree; none where they are not there.
inline std::optional<std::string> sample(std::string const & name) {
    std::ifstream file(TestSupport::sourcePath("../shared/data/") + name, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace TopologyTools::ImportTesting
