#include "tools/cli/CommandLine.h"

#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/json/InputError.h"

namespace TopologyTools {
namespace {

void print(std::string const & text) { Output("-").write(text); }

// The subcommand that the arguments name, for messages; the program itself where they name none.
CLI::App const & named(CLI::App const & program) {
    auto const commands = program.get_subcommands();
    return commands.empty() ? program : *commands.front();
}

std::string fullName(CLI::App const & command) {
    CLI::App const * const parent = command.get_parent();
    return parent ? parent->get_name() + ' ' + command.get_name() : command.get_name();
}

// A word that nothing expects is a likelier cause than what is missing because of it.
std::string explanation(CLI::App const & program, CLI::ParseError const & wrong) {
    std::vector<std::string> const unexpected = program.remaining(true);
    return unexpected.empty() ? wrong.what() : "unexpected argument " + quotedText(unexpected.front());
}

int run(int argc, char const * const * argv) {
    CLI::App program("Translates version-2 network topologies into version-3 ones.", "topology-sync");
    program.set_help_flag("-h,--help", "Print this help and exit");
    program.set_version_flag("--version", "topology-sync " TOPOLOGY_SYNC_VERSION,
                             "Print the version and exit");
    program.require_subcommand(1);
    std::vector<Subcommand> const commands{
        translateCommand(program), followCommand(program), checkCommand(program), generateCommand(program),
        inspectCommand(program),   callCommand(program),   schemaCommand(program)};
    try {
        program.parse(argc, argv);
    } catch (CLI::CallForHelp const &) {
        print(program.help());
        return kDone;
    } catch (CLI::CallForVersion const & version) {
        print(std::string(version.what()) + '\n');
        return kDone;
    } catch (CLI::ParseError const & wrong) {
        std::string const name = fullName(named(program));
        message(name + ": " + explanation(program, wrong) + "\nSee " + name + " --help");
        return kBadInput;
    }
    for (Subcommand const & command : commands) {
        if (command.declaration->parsed()) return command.run();
    }
    return kBadInput;
}

}  // namespace

int commandLine(int argc, char const * const * argv) {
    // A closed pipe is to be an error of the write that meets it.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return run(argc, argv);
    } catch (OutputClosed const &) {
        return kDone;
    } catch (InputError const & error) {
        message(error.what());
    } catch (std::bad_alloc const &) {
        message("topology-sync: out of memory");
    } catch (std::exception const & error) {
        message(std::string("topology-sync: ") + error.what());
    }
    return kBadInput;
}

}  // namespace TopologyTools
