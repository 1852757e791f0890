#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/cli/Input.h"
#include "tools/cli/Interruption.h"

namespace TopologyTools {

// The lines of a file or of standard input, each given as soon as it is there. A line of any length takes
// time and memory in proportion to its length.
class InputLines {
public:
    // Standard input for "-". `interruption` ends the lines. Throws InputError.
    InputLines(std::string const & path, Interruption const & interruption)
        : input_(path), interruption_(interruption), buffer_(1 << 16) {}

    std::string const & name() const { return input_.name(); }  // For messages.

    // The next line without its LF, valid until the next call; nothing when there are no more. Bytes after
    // the last LF are a line, unless they are still awaited when the interruption comes. Throws InputError.
    std::optional<std::string_view> next();
    // Which line the last one was, from 1.
    std::size_t number() const { return number_; }

private:
    // Takes in more of the input; false when there is no more.
    bool read();

    Input input_;
    Interruption const & interruption_;
    std::vector<char> buffer_;
    std::string bytes_;      // Read, from the start of a line.
    std::size_t start_ = 0;  // Of the next line in them.
    std::size_t number_ = 0;
};

}  // namespace TopologyTools
