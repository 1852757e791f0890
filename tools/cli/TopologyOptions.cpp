#include "tools/cli/TopologyOptions.h"

#include <string_view>
#include <vector>

#include "tools/cli/InputFile.h"
#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/Translation.h"

namespace TopologyTools {

void addTopologyOptions(CLI::App & command, TopologyOptions & options) {
    command
        .add_option("FILE", options.file,
                    "A version-2 document, or a topology as RFC 8345 JSON,\n"
                    "Graphviz or GraphML; - is standard input")
        ->required()
        ->type_name("");
    addChoice(command, "--attach", options.attach, {"before", "after"},
              "before: the translator sees every change while the topology\n"
              "is built (default); after: it meets a topology that stands");
    std::vector<std::string> inputs{std::string(ownDocumentFormat)};
    for (std::string_view const format : importFormats()) inputs.emplace_back(format);
    addChoice(command, "--from", options.import.from, inputs,
              "The format of FILE; recognised by its content if not given");
    command.add_option("--network", options.import.network, "Which network, of a file that holds several")
        ->type_name("ID");
}

bool attachesBefore(TopologyOptions const & options) { return options.attach == "before"; }

LoadedTopology read(TopologyOptions const & options) {
    LoadedTopology topology = readTopology(readInput(options.file), options.import);
    for (Diagnostic const & diagnostic : topology.diagnostics) message(diagnostic.text());
    return topology;
}

Translation translate(TopologyOptions const & options) {
    return translate(read(options).fill, attachesBefore(options) ? Attach::before : Attach::after);
}

}  // namespace TopologyTools
