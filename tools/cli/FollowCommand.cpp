#include <cstddef>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tools/cli/ChangeLines.h"
#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/TopologyOptions.h"
#include "tools/cli/Translation.h"
#include "tools/document/DocumentWriter.h"
#include "tools/follow/ModelRecorder.h"
#include "tools/follow/Replay.h"

namespace TopologyTools {
namespace {

struct FollowOptions {
    TopologyOptions topology;
    std::string changes = "-";
    bool keepGoing = false;
    bool verify = false;
};

// A fault of the program itself.
class Fault : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

// The operations that the translator causes, on their way out.
class Follower {
public:
    Follower(FollowOptions const & options, Follow const & follow)
        : translation_(translate(options.topology)),
          changes_(options.changes, *translation_.v2,
                   options.keepGoing ? BadLine::isToldAndSkipped : BadLine::ends),
          recorder_(root_, follow,
                    [this](PatchOperation operation) { told_.push_back(std::move(operation)); }) {
        if (options.verify) replay_.emplace();
    }

    ExitStatus run() {
        told_.push_back(recorder_.whole());
        writeTold(0);
        while (auto const number = changes_.applyNext()) writeTold(*number);
        return changes_.exitStatus();
    }

private:
    // What has been told goes out between two changes, lest a fault of the output meet the model in the
    // middle of one.
    void writeTold(std::size_t cause) {
        sortEntries(told_);
        std::ostringstream lines;
        for (PatchOperation const & operation : told_) writeLine(operation, cause, lines);
        told_.clear();
        output_.write(lines.view());
        if (!replay_) return;
        if (auto const fault = replay_->fault(lines.view(), documentTree(root_))) {
            throw Fault("internal fault: after line " + std::to_string(cause) + ", " + *fault);
        }
    }

    Output output_{"-"};
    Translation translation_;
    Vel::GenericIf const root_ = Vel::GenericIf::of(translation_.v3);
    ChangeLines changes_;
    std::vector<PatchOperation> told_;  // Since the last line.
    ModelRecorder recorder_;
    std::optional<Replay> replay_;  // With --verify.
};

int followChanges(FollowOptions const & options, Follow const & follow) {
    if (options.topology.file == "-" && options.changes == "-") {
        throw std::invalid_argument("FILE and CHANGES cannot both be standard input");
    }
    try {
        return Follower(options, follow).run();
    } catch (Fault const & fault) {
        message(std::string("topology-sync: ") + fault.what());
        return kDoesNotHold;
    }
}

}  // namespace

Subcommand followCommand(CLI::App & program, Follow follow) {
    CLI::App * const command =
        program.add_subcommand("follow", "Print what the translator does about changes of a topology");
    auto const options = std::make_shared<FollowOptions>();
    addTopologyOptions(*command, options->topology);
    command
        ->add_option("CHANGES", options->changes,
                     "JSON Patch operations (RFC 6902: add, replace, remove, test)\n"
                     "on the version-2 document, one a line; - is standard input\n"
                     "(default). Each is applied as soon as its line is there")
        ->type_name("");
    command->add_flag("--keep-going", options->keepGoing,
                      "Tell of a line that cannot be applied, and go on; the exit\n"
                      "status is then 2 in the end");
    command->add_flag("--verify", options->verify,
                      "After each line, compare what the output leads to with the\n"
                      "model; 1 if they differ, which is a fault of this program");
    command->footer("Prints JSON Patch operations on the version-3 document, one a line. The first\n"
                    "one puts the document of FILE in place; \"cause\" is the number of the line in\n"
                    "CHANGES that caused the operation. An interrupt (SIGINT, SIGTERM) is taken as\n"
                    "the end of CHANGES.");
    return {command, [options, follow = std::move(follow)] { return followChanges(*options, follow); }};
}

}  // namespace TopologyTools
