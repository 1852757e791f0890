#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "tools/cli/LoadedTopology.h"

namespace TopologyTools {

struct Translation;

// The topology that a subcommand translates, and how.
struct TopologyOptions {
    std::string file;
    std::string attach = "before";
    ImportOptions import;
};

// Adds FILE and what belongs to it.
void addTopologyOptions(CLI::App & command, TopologyOptions & options);

// Whether the translator is to follow the topology while it is built.
bool attachesBefore(TopologyOptions const & options);
// Reads FILE and tells of guesses as messages. Throws InputError.
LoadedTopology read(TopologyOptions const & options);
// The same, and translates. For callers that include Translation.h.
Translation translate(TopologyOptions const & options);

}  // namespace TopologyTools
