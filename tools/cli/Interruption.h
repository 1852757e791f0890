#pragma once

#include <csignal>

namespace TopologyTools {

// While it lives, SIGINT and SIGTERM do not end the process: the first of them is kept, for whoever is at
// work to come to an end; the next one of its kind ends the process as ever. A signal that the process has
// been told to ignore stays ignored. REQUIRES: there is one at a time.
class Interruption {
public:
    // Throws std::system_error.
    Interruption();
    ~Interruption();
    Interruption(Interruption const &) = delete;
    Interruption & operator=(Interruption const &) = delete;

    // Whether a signal has come.
    bool hasCome() const;
    // Waits until there is something to be read, or no more to come; false when a signal came first.
    bool waitForInput(int descriptor) const;

private:
    int ends_[2];  // Of a pipe into which the signals' handler writes, to end the waiting.
    struct sigaction onInterrupt_;
    struct sigaction onTermination_;
};

}  // namespace TopologyTools
