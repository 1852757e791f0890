#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/Translation.h"
#include "tools/document/DocumentWriter.h"
#include "tools/format/DotFormat.h"
#include "tools/format/Graphviz.h"
#include "tools/format/TextFormat.h"
#include "tools/format/TopologyView.h"

namespace TopologyTools {
namespace {

struct Options {
    std::string file;
    std::string attach = "before";
    std::string format = "json";
    ImportOptions import;
    std::string output = "-";
};

std::string formatted(NetworkTopologyV3::Status::Ptr const & status, std::string const & format,
                      bool colours) {
    if (format == "json") {
        std::ostringstream out;
        writeDocument(Vel::GenericIf::of(status), out, 2);
        return std::move(out).str();
    }
    TopologyView const view = topologyView(*status);
    if (format == "text") return textFormat(view, colours);
    if (format == "summary") return summaryFormat(view, colours);
    if (format == "dot") return dotFormat(view);
    GraphvizResult result = runGraphviz(dotFormat(view), format);
    if (!result.complaints.empty()) message("dot: " + result.complaints);
    return std::move(result.output);
}

int translateFile(Options const & options) {
    LoadedTopology const topology = readTopology(readInput(options.file), options.import);
    for (Diagnostic const & diagnostic : topology.diagnostics) message(diagnostic.text());
    Translation const translation =
        translate(topology.fill, options.attach == "after" ? Attach::after : Attach::before);
    bool const colours = options.output == "-" && standardOutputWantsColours();
    std::string const text = formatted(translation.v3, options.format, colours);

    // Only now, lest a fault in the input cost an older result.
    Output output(options.output);
    output.write(text);
    output.close();
    return kDone;
}

}  // namespace

Subcommand translateCommand(CLI::App & program) {
    CLI::App * const command = program.add_subcommand("translate", "Print the version-3 model of a topology");
    auto const options = std::make_shared<Options>();
    command
        ->add_option("FILE", options->file,
                     "A version-2 document, or a topology as RFC 8345 JSON,\n"
                     "Graphviz or GraphML; - is standard input")
        ->required()
        ->type_name("");
    addChoice(*command, "--attach", options->attach, {"before", "after"},
              "before: the translator sees every change while the topology\n"
              "is built (default); after: it meets a topology that stands");
    addChoice(*command, "--format", options->format, {"json", "text", "summary", "dot", "svg"},
              "json: a document (default); text: tables; summary: counts;\n"
              "dot: a Graphviz graph; svg: a picture, drawn by Graphviz");
    std::vector<std::string> inputs{std::string(ownDocumentFormat)};
    for (std::string_view const format : importFormats()) inputs.emplace_back(format);
    addChoice(*command, "--from", options->import.from, inputs,
              "The format of FILE; recognised by its content if not given");
    command->add_option("--network", options->import.network, "Which network, of a file that holds several")
        ->type_name("ID");
    command->add_option("--output", options->output, "Write to this file instead of standard output")
        ->type_name("FILE");
    return {command, [options] { return translateFile(*options); }};
}

}  // namespace TopologyTools
