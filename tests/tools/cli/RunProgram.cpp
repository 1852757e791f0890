#include "tests/tools/cli/RunProgram.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace TopologyTools::Testing {
namespace {

class Descriptor {
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {
        if (descriptor < 0) throw std::system_error(errno, std::generic_category());
    }
    Descriptor(Descriptor && other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    ~Descriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    int get() const { return descriptor_; }
    int release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_;
};

// A file without a name.
Descriptor scratch() { return Descriptor(open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600)); }

std::string bytesOf(int file) {
    std::string bytes(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
    if (pread(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("cannot read back");
    }
    return bytes;
}

std::vector<std::string> environmentWith(std::vector<std::string> const & changes) {
    std::vector<std::string> all;
    for (char ** variable = environ; *variable; ++variable) {
        std::string const entry = *variable;
        bool isReplaced = false;
        for (std::string const & change : changes) {
            isReplaced |= entry.starts_with(change.substr(0, change.find('=') + 1));
        }
        if (!isReplaced) all.push_back(entry);
    }
    all.insert(all.end(), changes.begin(), changes.end());
    return all;
}

std::vector<char *> pointers(std::vector<std::string> & strings) {
    std::vector<char *> all;
    for (std::string & string : strings) all.push_back(string.data());
    all.push_back(nullptr);
    return all;
}

// All that a terminal shows until nobody writes to it any more.
std::string shown(Descriptor const & terminal) {
    std::string text;
    std::array<char, 4096> buffer;
    for (;;) {
        ssize_t const count = read(terminal.get(), buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

// Starts the program with these as standard input, standard output (-1 for none) and standard error.
pid_t started(std::vector<std::string> const & arguments, std::vector<std::string> const & environment,
              int input, int output, int messages) {
    std::vector<std::string> words{TOPOLOGY_SYNC_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = environmentWith(environment);
    std::vector<char *> const argv = pointers(words);
    std::vector<char *> const envp = pointers(variables);
    pid_t const child = fork();
    if (child < 0) throw std::system_error(errno, std::generic_category());
    if (child != 0) return child;
    dup2(input, STDIN_FILENO);
    if (output < 0)
        ::close(STDOUT_FILENO);
    else
        dup2(output, STDOUT_FILENO);
    dup2(messages, STDERR_FILENO);
    std::signal(SIGPIPE, SIG_DFL);
    execve(argv[0], argv.data(), envp.data());
    _exit(127);
}

int statusOf(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? 1000 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ProgramRun runProgram(std::vector<std::string> const & arguments, RunOptions const & options) {
    Descriptor const input = scratch();
    Descriptor output =
        options.outputFile
            ? Descriptor(open(options.outputFile->c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600))
            : scratch();
    Descriptor const messages = scratch();
    if (pwrite(input.get(), options.input.data(), options.input.size(), 0) !=
        static_cast<ssize_t>(options.input.size())) {
        throw std::runtime_error("cannot write the input");
    }
    std::optional<Descriptor> terminal;
    int outputEnd = output.get();
    std::optional<Descriptor> otherEnd;
    if (options.outputIsClosedPipe) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
        ::close(ends[0]);
        otherEnd.emplace(ends[1]);
        outputEnd = ends[1];
    } else if (options.outputIsTerminal) {
        int master = -1;
        int slave = -1;
        if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) {
            throw std::system_error(errno, std::generic_category());
        }
        fcntl(master, F_SETFD, FD_CLOEXEC);
        fcntl(slave, F_SETFD, FD_CLOEXEC);
        terminal.emplace(master);
        otherEnd.emplace(slave);
        outputEnd = slave;
    }

    pid_t const child = started(arguments, options.environment, input.get(),
                                options.outputIsClosed ? -1 : outputEnd, messages.get());
    otherEnd.reset();
    ProgramRun run;
    if (terminal) run.output = shown(*terminal);
    run.status = statusOf(child);
    if (!terminal && !options.outputFile) run.output = bytesOf(output.get());
    run.messages = bytesOf(messages.get());
    return run;
}

RunningProgram::RunningProgram(std::vector<std::string> const & arguments) {
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
    messages_ = scratch().release();
    input_ = input[1];
    output_ = output[0];
    child_ = started(arguments, {}, input[0], output[1], messages_);
    ::close(input[0]);
    ::close(output[1]);
}

RunningProgram::~RunningProgram() {
    if (child_ >= 0) {
        kill(child_, SIGKILL);
        statusOf(child_);
    }
    closeInput();
    closeOutput();
    ::close(messages_);
}

void RunningProgram::write(std::string_view bytes) const {
    if (::write(input_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        throw std::system_error(errno, std::generic_category());
    }
}

void RunningProgram::closeInput() {
    if (input_ >= 0) ::close(std::exchange(input_, -1));
}

void RunningProgram::closeOutput() {
    if (output_ >= 0) ::close(std::exchange(output_, -1));
}

std::optional<std::string> RunningProgram::readLine() {
    constexpr int patience = 60000;  // Milliseconds.
    for (;;) {
        if (std::size_t const end = bytes_.find('\n'); end != std::string::npos) {
            std::string const line = bytes_.substr(0, end);
            bytes_.erase(0, end + 1);
            return line;
        }
        pollfd waitedFor{output_, POLLIN, 0};
        if (poll(&waitedFor, 1, patience) <= 0) throw std::runtime_error("no line of output came");
        std::array<char, 4096> buffer;
        ssize_t const count = read(output_, buffer.data(), buffer.size());
        if (count <= 0) return std::nullopt;
        bytes_.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

void RunningProgram::signal(int number) const { kill(child_, number); }

ProgramRun RunningProgram::wait() {
    closeInput();
    ProgramRun run;
    while (output_ >= 0) {
        auto const line = readLine();
        if (!line) break;
        run.output += *line + '\n';
    }
    run.output += bytes_;
    run.status = statusOf(std::exchange(child_, -1));
    run.messages = bytesOf(messages_);
    return run;
}

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "topology-sync-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::system_error(errno, std::generic_category());
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::path(std::string_view name) const { return path_ + '/' + std::string(name); }

std::string TemporaryFolder::file(std::string_view name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
}

std::string fileBytes(std::string const & path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot open " + path);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return std::move(bytes).str();
}

}  // namespace TopologyTools::Testing
