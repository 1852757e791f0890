#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace TopologyTools {

// Output that cannot be written. The message names where to, and why not.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Thrown when whoever reads the output has closed it: there is nothing more to do, and nothing to complain
// of.
class OutputClosed {};

// Where results go: standard output or a file. Nothing is buffered, so what write() has taken is out, and
// every fault is told.
class Output {
public:
    // Standard output for "-". A file is made anew. Throws OutputError.
    explicit Output(std::string const & path);
    ~Output();
    Output(Output const &) = delete;
    Output & operator=(Output const &) = delete;

    // Throws OutputError or OutputClosed. REQUIRES: SIGPIPE is ignored.
    void write(std::string_view bytes);
    // Of a file, some faults show only here. Throws OutputError.
    void close();

private:
    [[noreturn]] void fail(int error) const;

    std::string name_;
    int descriptor_;
};

// Whether standard output is a terminal whose user has not asked for plain text (NO_COLOR, TERM=dumb).
bool standardOutputWantsColours();

// Writes `text` as lines to standard error. Faults are ignored: there is no place to tell of them.
void message(std::string_view text);

}  // namespace TopologyTools
