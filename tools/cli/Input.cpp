#include "tools/cli/Input.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "tools/json/InputError.h"

namespace TopologyTools {

Input::Input(std::string const & path) : name_(path == "-" ? "<stdin>" : path), descriptor_(STDIN_FILENO) {
    if (path == "-") return;
    descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor_ < 0) fail(errno);
}

Input::~Input() {
    if (descriptor_ != STDIN_FILENO) close(descriptor_);
}

std::size_t Input::read(std::span<char> buffer) {
    for (;;) {
        ssize_t const count = ::read(descriptor_, buffer.data(), buffer.size());
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) fail(errno);
    }
}

void Input::fail(int error) const {
    throw InputError(name_, {}, std::string("cannot be read: ") + std::strerror(error));
}

}  // namespace TopologyTools
