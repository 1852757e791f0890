#pragma once

#include <string>

namespace TopologyTools {

struct InputFile {
    std::string name;  // For messages.
    std::string bytes;
};

// Reads a file to its end; "-" is standard input. Throws InputError when it cannot be read.
InputFile readInput(std::string const & path);

}  // namespace TopologyTools
