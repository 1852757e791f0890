#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/follow/FollowVersion3.h"

namespace TopologyTools {

// Exit status of the program.
enum ExitStatus { kDone = 0, kDoesNotHold = 1, kBadInput = 2 };

// One subcommand: its declaration in the command line, and what it does once that has been parsed. `run`
// returns an exit status, or throws.
struct Subcommand {
    CLI::App * declaration;
    std::function<int()> run;
};

// Adds an option or a positional argument that takes one of a few words; its help and its messages list them.
template <class Value>
CLI::Option * addChoice(CLI::App & command, std::string const & name, Value & value,
                        std::vector<std::string> const & words, std::string const & help) {
    std::string list;
    for (std::string const & word : words) list += (list.empty() ? "" : "|") + word;
    auto const isOneOfThem = [words, list](std::string const & word) {
        bool const found = std::find(words.begin(), words.end(), word) != words.end();
        return found ? std::string() : "expected " + list + ", found " + word;
    };
    return command.add_option(name, value, help)->type_name(list)->check(isOneOfThem, "");
}

// Adds an option that takes a whole number in decimal digits, from `least` to `greatest`.
CLI::Option * addNumber(CLI::App & command, std::string const & name, std::uint64_t & value,
                        std::uint64_t least, std::uint64_t greatest, std::string const & help);

// Each declares its subcommand below `program`.
Subcommand translateCommand(CLI::App & program);
Subcommand generateCommand(CLI::App & program);
Subcommand checkCommand(CLI::App & program);
Subcommand inspectCommand(CLI::App & program);
Subcommand callCommand(CLI::App & program);
Subcommand schemaCommand(CLI::App & program);
// `follow` makes the reactors by which the version-3 model is followed.
Subcommand followCommand(CLI::App & program, Follow follow = followVersion3);

}  // namespace TopologyTools
