#pragma once

namespace TopologyTools {

// The program: parses its arguments, does what they say and returns its exit status. 0: done; 1: what was
// checked does not hold; 2: bad usage, bad input, or output that cannot be written. Results go to standard
// output and messages to standard error; a reader that closes the pipe early is no error. Changes how the
// process treats SIGPIPE.
int commandLine(int argc, char const * const * argv);

}  // namespace TopologyTools
