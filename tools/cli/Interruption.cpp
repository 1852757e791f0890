#include "tools/cli/Interruption.h"

#include <atomic>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace TopologyTools {
namespace {

volatile std::sig_atomic_t signalHasCome = 0;
// Where the handler writes. Lock-free, as a handler needs it.
std::atomic<int> wakingEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void keepSignal(int) {
    int const error = errno;
    signalHasCome = 1;
    // A pipe that is full wakes whoever waits as well.
    [[maybe_unused]] ssize_t const written = write(wakingEnd, "", 1);
    errno = error;
}

void handle(int signal, struct sigaction & before) {
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN) return;
    struct sigaction keep {};
    keep.sa_handler = keepSignal;
    keep.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigemptyset(&keep.sa_mask);
    sigaction(signal, &keep, nullptr);
}

}  // namespace

Interruption::Interruption() {
    if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) throw std::system_error(errno, std::generic_category());
    wakingEnd = ends_[1];
    signalHasCome = 0;
    handle(SIGINT, onInterrupt_);
    handle(SIGTERM, onTermination_);
}

Interruption::~Interruption() {
    sigaction(SIGINT, &onInterrupt_, nullptr);
    sigaction(SIGTERM, &onTermination_, nullptr);
    wakingEnd = -1;
    close(ends_[0]);
    close(ends_[1]);
}

bool Interruption::hasCome() const { return signalHasCome != 0; }

bool Interruption::waitForInput(int descriptor) const {
    pollfd waitedFor[2] = {{descriptor, POLLIN, 0}, {ends_[0], POLLIN, 0}};
    while (!hasCome()) {
        // What cannot be waited for can be read without waiting, or tells its error then.
        if (poll(waitedFor, 2, -1) > 0 && waitedFor[0].revents != 0) return !hasCome();
    }
    return false;
}

}  // namespace TopologyTools
