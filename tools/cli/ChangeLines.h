// Changes to a version-2 model: a stream of JSON Patch operations, one a line, applied as they arrive.
//
// Usage
//     ChangeLines changes("-", *translation.v2, BadLine::ends);
//     while (auto const number = changes.applyNext()) tellWhatChanged(*number);
//     return changes.exitStatus();
//
// Interruption
//     SIGINT and SIGTERM are the end of the stream: the line at hand is finished, and so is what the caller
//     does about it. A second one ends the process.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "platform/NetworkTopology/StatusV2.h"
#include "tools/cli/InputLines.h"
#include "tools/cli/Interruption.h"
#include "tools/cli/Subcommand.h"
#include "tools/document/Patch.h"

namespace TopologyTools {

// What a line is to do that does not hold an operation which fits the model.
enum class BadLine { ends, isToldAndSkipped };

class ChangeLines {
public:
    // Standard input for "-". Throws InputError.
    ChangeLines(std::string const & path, NetworkTopology::StatusV2 & status, BadLine badLine);

    // Applies the next operation and gives the number of its line; nothing when there are no more. Throws
    // InputError for a bad line that ends the stream, and when the stream cannot be read. An exception out of
    // a reactor of the model passes. `before` is called with the number of every line that is about to be
    // applied, be it bad or blank.
    std::optional<std::size_t> applyNext(std::function<void(std::size_t)> const & before = {});

    ExitStatus exitStatus() const { return hasBadLines_ ? kBadInput : kDone; }

private:
    Interruption interruption_;
    InputLines lines_;
    ModelPatcher patcher_;
    BadLine badLine_;
    bool hasBadLines_ = false;
};

}  // namespace TopologyTools
