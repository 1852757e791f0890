// Runs topology-sync as a user does.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TopologyTools::Testing {

struct ProgramRun {
    int status = -1;  // The exit status; 1000 and the signal when a signal ended it.
    std::string output;
    std::string messages;
};

struct RunOptions {
    std::string input = {};                     // Standard input.
    std::vector<std::string> environment = {};  // "NAME=value"; takes the place of variables of that name.
    // Standard output: a file to write to, a pipe whose reader has gone, none at all, or a terminal; what
    // goes elsewhere is not in ProgramRun::output.
    std::optional<std::string> outputFile = {};
    bool outputIsClosedPipe = false;
    bool outputIsClosed = false;
    bool outputIsTerminal = false;
};

ProgramRun runProgram(std::vector<std::string> const & arguments, RunOptions const & options = {});

// A folder of its own for every test, gone when the test is over.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const &) = delete;
    TemporaryFolder & operator=(TemporaryFolder const &) = delete;

    std::string path(std::string_view name = {}) const;
    // Returns the new file's path.
    std::string file(std::string_view name, std::string_view bytes) const;

private:
    std::string path_;
};

// Throws std::runtime_error when there is no such file.
std::string fileBytes(std::string const & path);

}  // namespace TopologyTools::Testing
