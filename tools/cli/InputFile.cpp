#include "tools/cli/InputFile.h"

#include <vector>

#include "tools/cli/Input.h"

namespace TopologyTools {

InputFile readInput(std::string const & path) {
    Input input(path);
    InputFile file{input.name(), {}};
    std::vector<char> buffer(1 << 16);
    while (std::size_t const count = input.read(buffer)) file.bytes.append(buffer.data(), count);
    return file;
}

}  // namespace TopologyTools
