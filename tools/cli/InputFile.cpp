#include "tools/cli/InputFile.h"

#include <cerrno>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "tools/json/InputError.h"

namespace TopologyTools {

InputFile readInput(std::string const & path) {
    bool const isStandardInput = path == "-";
    InputFile file{isStandardInput ? "<stdin>" : path, {}};
    auto const fail = [&file](int error) {
        throw InputError(file.name, {}, std::string("cannot be read: ") + std::strerror(error));
    };
    int const descriptor = isStandardInput ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) fail(errno);

    std::vector<char> buffer(1 << 16);
    int error = 0;
    for (;;) {
        ssize_t const count = read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            file.bytes.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            error = errno;
            break;
        }
    }
    if (!isStandardInput) close(descriptor);
    if (error != 0) fail(error);
    return file;
}

}  // namespace TopologyTools
