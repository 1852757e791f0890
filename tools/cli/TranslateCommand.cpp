#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/TopologyOptions.h"
#include "tools/cli/Translation.h"
#include "tools/document/DocumentWriter.h"
#include "tools/format/DotFormat.h"
#include "tools/format/Graphviz.h"
#include "tools/format/TextFormat.h"
#include "tools/format/TopologyView.h"

namespace TopologyTools {
namespace {

struct TranslateOptions {
    TopologyOptions topology;
    std::string format = "json";
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

int translateFile(TranslateOptions const & options) {
    Translation const translation = translate(options.topology);
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
    auto const options = std::make_shared<TranslateOptions>();
    addTopologyOptions(*command, options->topology);
    addChoice(*command, "--format", options->format, {"json", "text", "summary", "dot", "svg"},
              "json: a document (default); text: tables; summary: counts;\n"
              "dot: a Graphviz graph; svg: a picture, drawn by Graphviz");
    command->add_option("--output", options->output, "Write to this file instead of standard output")
        ->type_name("FILE");
    return {command, [options] { return translateFile(*options); }};
}

}  // namespace TopologyTools
