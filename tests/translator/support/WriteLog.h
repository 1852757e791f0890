// What is written into a version-3 model: every call of a mutator, in order, with those that change nothing
// (equal and null writes) and those that another write brought about.
//
// Usage
//     WriteLog log;
//     port->portGroupIs(nullptr);
//     EXPECT_THAT(log.taken(), ElementsAre("/host/leaf-1/port/eth-1 portGroupIs(null)"));
//
// How it works
//     The mutators are not virtual, and a call that changes nothing reaches no follower. So the linker puts a
//     recorder before each of them, for calls from one object file into another. That is why this program
//     holds the libraries' object files instead of the shared libraries. A mutator that is renamed or takes
//     something else breaks the link; one that returns something else does not compile; one that the
//     translator calls and that has no recorder fails the test `translator.EveryMutatorIsRecorded`.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace TestSupport {

struct Write {
    std::string target;  // As Spelling.h has it.
    std::string mutator;
    std::vector<std::string> arguments;
    void const * object;  // The target itself: two statuses are spelled alike.

    // "/host/leaf-1 mlagIs('m-1', 'm-1b')"
    std::string text() const;
};

using Lines = std::vector<std::string>;

// Records from its making to its end; scopes may nest, and then every log records. One thread only.
class WriteLog {
public:
    using Callback = std::function<void(Write const & write)>;

    WriteLog();
    ~WriteLog();
    WriteLog(WriteLog const &) = delete;
    WriteLog & operator=(WriteLog const &) = delete;

    std::vector<Write> const & writes() const { return writes_; }
    std::size_t size() const { return writes_.size(); }
    Lines lines() const;
    // Only those of one mutator ("mlagRawIs"), or into one target ("/host/leaf-1").
    Lines linesOf(std::string_view mutator) const;
    Lines linesInto(std::string_view target) const;
    // The lines, of which the log is rid.
    Lines taken();
    void clear() { writes_.clear(); }

    // `callback` is called for each write from now on, once it is recorded and before the model changes. It
    // may throw, as a model without memory does.
    void beforeWriteIs(Callback callback) { beforeWrite_ = std::move(callback); }

    // For the recorders.
    static bool isRecording();
    static void record(Write const & write);

private:
    std::vector<Write> writes_;
    Callback beforeWrite_;
    WriteLog * outer_;
};

}  // namespace TestSupport
