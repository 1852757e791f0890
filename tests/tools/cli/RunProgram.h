// Runs topology-sync as a user does.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/SourceTree.h"

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

// The program at work, while the test writes its input and reads its output.
class RunningProgram {
public:
    explicit RunningProgram(std::vector<std::string> const & arguments);
    // Ends the program if it still runs.
    ~RunningProgram();
    RunningProgram(RunningProgram const &) = delete;
    RunningProgram & operator=(RunningProgram const &) = delete;

    void write(std::string_view bytes) const;
    void closeInput();
    // The next line of output, without its LF, as soon as it is there; nothing at the end. Throws
    // std::runtime_error when it does not come.
    std::optional<std::string> readLine();
    void closeOutput();
    void signal(int number) const;
    // Closes the input. What has not been read is in ProgramRun::output.
    ProgramRun wait();

private:
    int child_;
    int input_;
    int output_;
    int messages_;
    std::string bytes_;  // Read, but not yet given.
};

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

// The path of an example in which two hosts form an MLAG domain.
inline std::string const kFabric = TestSupport::sourcePath("examples/dual-homed-fabric.json");

// Throws std::runtime_error when there is no such file.
std::string fileBytes(std::string const & path);

}  // namespace TopologyTools::Testing
