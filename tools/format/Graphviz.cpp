#include "tools/format/Graphviz.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace TopologyTools {
namespace {

[[noreturn]] void fail(std::string const & what, int error) {
    throw GraphvizError(what + ": " + std::strerror(error));
}

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor && other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor & operator=(Descriptor && other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Descriptor() { close(); }

    int get() const { return descriptor_; }
    bool isOpen() const { return descriptor_ >= 0; }
    void close() {
        if (isOpen()) ::close(std::exchange(descriptor_, -1));
    }

private:
    int descriptor_ = -1;
};

struct Pipe {
    Descriptor read;
    Descriptor write;

    Pipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) fail("cannot make a pipe", errno);
        read = Descriptor(ends[0]);
        write = Descriptor(ends[1]);
        // The child takes the numbers 0 to 2; an end that had one of them would be closed under its hands.
        for (Descriptor * end : {&read, &write}) {
            if (end->get() > 2) continue;
            int const moved = fcntl(end->get(), F_DUPFD_CLOEXEC, 3);
            if (moved < 0) fail("cannot make a pipe", errno);
            *end = Descriptor(moved);
        }
    }
};

// Starts `dot` with its standard streams on the far ends of the pipes.
pid_t start(std::string const & format, Pipe const & in, Pipe const & out, Pipe const & complaints) {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_adddup2(&actions, in.read.get(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out.write.get(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, complaints.write.get(), STDERR_FILENO);
    // A signal that this process ignores would stay ignored there.
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    std::string option = "-T" + format;
    char program[] = "dot";
    char * const arguments[] = {program, option.data(), nullptr};
    pid_t child = 0;
    int const error = posix_spawnp(&child, program, &actions, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error == ENOENT) {
        throw GraphvizError(
            "cannot find the program dot; pictures are drawn by Graphviz (Debian package graphviz)");
    }
    if (error != 0) fail("cannot run dot", error);
    return child;
}

// Feeds `graph` to the child and collects what it answers, both at once: either side may stop until the other
// goes on.
void exchange(std::string_view graph, Pipe & in, Pipe & out, Pipe & complaints, GraphvizResult & result) {
    fcntl(in.write.get(), F_SETFL, fcntl(in.write.get(), F_GETFL) | O_NONBLOCK);
    auto const read = [](Descriptor & from, std::string & to) {
        std::array<char, 65536> buffer;
        ssize_t const count = ::read(from.get(), buffer.data(), buffer.size());
        if (count > 0) {
            to.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            from.close();
        }
    };
    while (out.read.isOpen() || complaints.read.isOpen()) {
        if (graph.empty()) in.write.close();
        // Closed ones are negative here, and poll() passes over them.
        std::array<pollfd, 3> waits{
            {{in.write.get(), POLLOUT, 0}, {out.read.get(), POLLIN, 0}, {complaints.read.get(), POLLIN, 0}}};
        if (poll(waits.data(), waits.size(), -1) < 0) {
            if (errno == EINTR) continue;
            fail("cannot wait for dot", errno);
        }
        if (waits[0].revents) {
            ssize_t const count = ::write(in.write.get(), graph.data(), graph.size());
            if (count >= 0) {
                graph.remove_prefix(static_cast<std::size_t>(count));
            } else if (errno != EINTR && errno != EAGAIN) {
                // It has stopped reading. Its status will say whether that was right.
                in.write.close();
                graph = {};
            }
        }
        if (waits[1].revents) read(out.read, result.output);
        if (waits[2].revents) read(complaints.read, result.complaints);
    }
}

// Writing to a program that has ended must give an error, not a signal.
class SigpipeIgnored {
public:
    SigpipeIgnored() : before_(std::signal(SIGPIPE, SIG_IGN)) {}
    ~SigpipeIgnored() { std::signal(SIGPIPE, before_); }
    SigpipeIgnored(SigpipeIgnored const &) = delete;
    SigpipeIgnored & operator=(SigpipeIgnored const &) = delete;

private:
    void (*before_)(int);
};

std::string lastLine(std::string_view text) {
    while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
    return std::string(text.substr(text.rfind('\n') + 1));
}

}  // namespace

GraphvizResult runGraphviz(std::string_view graph, std::string const & format) {
    SigpipeIgnored const sigpipe;
    Pipe in;
    Pipe out;
    Pipe complaints;
    pid_t const child = start(format, in, out, complaints);
    in.read.close();
    out.write.close();
    complaints.write.close();

    GraphvizResult result;
    exchange(graph, in, out, complaints, result);
    in.write.close();
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status)) {
        throw GraphvizError(std::string("dot was ended by a signal: ") + strsignal(WTERMSIG(status)));
    }
    if (WEXITSTATUS(status) != 0) {
        std::string message = "dot failed with status " + std::to_string(WEXITSTATUS(status));
        if (!result.complaints.empty()) message += ": " + lastLine(result.complaints);
        throw GraphvizError(message);
    }
    return result;
}

}  // namespace TopologyTools
