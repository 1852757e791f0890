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

// Reads FILE, tells of guesses as messages, and translates. Throws InputError.
Translation translate(TopologyOptions const & options);

}  // namespace TopologyTools
