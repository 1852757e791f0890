#pragma once

#include <ostream>
#include <streambuf>
#include <vector>

#include "tools/cli/Output.h"

namespace TopologyTools {

// An output as a stream, for what comes in many small pieces. What Output::write throws passes through it.
// What has not been flushed when it goes is not written.
class OutputStream final : public std::ostream {
public:
    // `output` must outlive the stream.
    explicit OutputStream(Output & output) : std::ostream(nullptr), buffer_(output) {
        rdbuf(&buffer_);
        exceptions(std::ios::badbit);
    }

private:
    class Buffer final : public std::streambuf {
    public:
        explicit Buffer(Output & output) : output_(output), bytes_(1 << 16) { clear(); }

    private:
        int_type overflow(int_type next) override;
        int sync() override;
        void clear() { setp(bytes_.data(), bytes_.data() + bytes_.size()); }

        Output & output_;
        std::vector<char> bytes_;
    };

    Buffer buffer_;
};

}  // namespace TopologyTools
