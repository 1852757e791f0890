#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/check/Checker.h"
#include "tools/check/Report.h"
#include "tools/check/Rule.h"
#include "tools/cli/ChangeLines.h"
#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/TopologyOptions.h"

namespace TopologyTools {
namespace {

struct CheckOptions {
    TopologyOptions topology;
    std::optional<std::string> changes;
    bool keepGoing = false;
    std::string format = "text";
};

ExitStatus applyChanges(CheckOptions const & options, NetworkTopology::StatusV2 & v2, Checker & checker) {
    if (!options.changes) return kDone;
    ChangeLines lines(*options.changes, v2, options.keepGoing ? BadLine::isToldAndSkipped : BadLine::ends);
    while (lines.applyNext([&](std::size_t number) { checker.lineIs(number); })) {
    }
    return lines.exitStatus();
}

int check(CheckOptions const & options) {
    if (options.topology.file == "-" && options.changes == "-") {
        throw std::invalid_argument("FILE and CHANGES cannot both be standard input");
    }
    LoadedTopology const topology = read(options.topology);
    NetworkTopology::StatusV2::Ptr const v2 = NetworkTopology::StatusV2::StatusV2Is();
    bool const isBefore = attachesBefore(options.topology);
    if (!isBefore) topology.fill(*v2);
    Checker checker(v2);
    if (isBefore) topology.fill(*v2);
    ExitStatus const status = applyChanges(options, *v2, checker);

    std::vector<Difference> const differences = checker.differences();
    Output("-").write(options.format == "json" ? checkReportAsJson(differences).dump(2) + '\n'
                                               : checkReport(differences, standardOutputWantsColours()));
    if (status != kDone) return status;
    bool const isFaulty = std::any_of(differences.begin(), differences.end(),
                                      [](Difference const & difference) { return difference.isFault(); });
    return isFaulty ? kDoesNotHold : kDone;
}

}  // namespace

Subcommand checkCommand(CLI::App & program) {
    CLI::App * const command = program.add_subcommand(
        "check", "Compare the version-3 model with what the version-2 model calls for");
    auto const options = std::make_shared<CheckOptions>();
    addTopologyOptions(*command, options->topology);
    command
        ->add_option("CHANGES", options->changes,
                     "JSON Patch operations, one a line, to apply before comparing;\n"
                     "- is standard input")
        ->type_name("");
    command->add_flag("--keep-going", options->keepGoing, "Tell of a bad line and go on with the next");
    addChoice(*command, "--format", options->format, {"text", "json"},
              "text: by rule (default); json: counts and differences");
    // A flag that prints and ends, whatever else is given or missing, is what a version flag is.
    command->set_version_flag(
        "--rules",
        [] {
            std::string page = knownDifferencesPage();
            page.pop_back();
            return page;
        },
        "Print the rules that explain differences, and exit");
    return {command, [options] { return check(*options); }};
}

}  // namespace TopologyTools
