#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace TopologyTools {

// Where input comes from: standard input or a file.
class Input {
public:
    // Standard input for "-". Throws InputError when a file cannot be opened.
    explicit Input(std::string const & path);
    ~Input();
    Input(Input const &) = delete;
    Input & operator=(Input const &) = delete;

    std::string const & name() const { return name_; }  // For messages.
    int descriptor() const { return descriptor_; }

    // Reads what is there, waiting for the first byte, and returns how many bytes it was; 0 at the end.
    // Throws InputError.
    std::size_t read(std::span<char> buffer);

private:
    [[noreturn]] void fail(int error) const;

    std::string name_;
    int descriptor_;
};

}  // namespace TopologyTools
