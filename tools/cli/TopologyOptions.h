#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "tools/cli/Translation.h"

namespace TopologyTools {

// The topology that a subcommand translates, and how.
struct TopologyOptions {
    std::string file;
    std::string attach = "before";
    ImportOptions import;
};

// Adds FILE and what belongs to it.
void addTopologyOptions(CLI::App & command, TopologyOptions & options);

// Reads FILE and tells of guesses as messages. Throws InputError.
LoadedTopology read(TopologyOptions const & options);
// The same, and translates.
Translation translate(TopologyOptions const & options);

}  // namespace TopologyTools
