#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace TopologyTools {

// Graphviz is missing, or it failed. The message is meant for the user.
class GraphvizError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What a run of Graphviz' program `dot` gave.
struct GraphvizResult {
    std::string output;
    std::string complaints;  // What it wrote to its standard error: warnings.
};

// Runs `dot` from PATH, without a shell, on a graph in the DOT language. `format` is one of its output
// formats, such as "svg". Throws GraphvizError when there is no such program or it does not end well.
GraphvizResult runGraphviz(std::string_view graph, std::string const & format);

}  // namespace TopologyTools
