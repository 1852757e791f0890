#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace TopologyTools {

// A place in a text. Lines and columns count from 1; a column counts bytes, as the editors do that jump to
// "file:line:column". 0 means not known.
struct TextPosition {
    std::size_t line = 0;
    std::size_t column = 0;

    bool operator==(TextPosition const &) const = default;
};

// "file:line:column: ", leaving out what is not known.
std::string locationPrefix(std::string_view file, TextPosition position);

// `text` between quotation marks, with quotation marks, backslashes and control characters escaped as in
// JSON, so that a message stays on one line. A text of more than 60 bytes is cut at a character and ends in
// "...".
std::string quotedText(std::string_view text);

// Input that cannot be used. what() reads "file:line:column: pointer: message", without the parts that are
// not known.
class InputError : public std::runtime_error {
public:
    InputError(std::string file, TextPosition position, std::string message, std::string pointer = {});

    std::string const & file() const { return file_; }
    TextPosition position() const { return position_; }
    std::string const & message() const { return message_; }

    // JSON Pointer (RFC 6901) to the value at fault, within the JSON text that was read. Empty when the fault
    // has none: a syntax error, or the whole text.
    std::string const & pointer() const { return pointer_; }

private:
    std::string file_;
    TextPosition position_;
    std::string message_;
    std::string pointer_;
};

}  // namespace TopologyTools
