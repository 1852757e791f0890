#include "tools/cli/Output.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace TopologyTools {
namespace {

bool isSet(char const * variable) {
    char const * const value = std::getenv(variable);
    return value && *value;
}

}  // namespace

Output::Output(std::string const & path)
    : name_(path == "-" ? "standard output" : path), descriptor_(STDOUT_FILENO) {
    if (path == "-") return;
    descriptor_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor_ < 0) fail(errno);
}

Output::~Output() {
    if (descriptor_ > STDOUT_FILENO) ::close(descriptor_);
}

void Output::write(std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EPIPE) {
            throw OutputClosed();
        } else if (errno != EINTR) {
            fail(errno);
        }
    }
}

void Output::close() {
    if (descriptor_ <= STDOUT_FILENO) return;
    if (::close(std::exchange(descriptor_, -1)) != 0) fail(errno);
}

void Output::fail(int error) const {
    throw OutputError("cannot write to " + name_ + ": " + std::strerror(error));
}

bool standardOutputWantsColours() {
    char const * const terminal = std::getenv("TERM");
    bool const isDumb = terminal && std::string_view(terminal) == "dumb";
    return isatty(STDOUT_FILENO) && !isSet("NO_COLOR") && !isDumb;
}

void message(std::string_view text) {
    std::string line(text);
    if (!line.empty() && line.back() != '\n') line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace TopologyTools
