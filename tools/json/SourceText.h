#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/json/InputError.h"

namespace TopologyTools {

// What some editors put before a text in UTF-8.
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

// The bytes of an input file together with its name, so that a byte offset can be told as line and column.
// Lines end with LF (so CR LF too); a CR alone ends no line. The bytes are not copied and must outlive the
// object.
class SourceText {
public:
    // firstLine: the number of the first line of `bytes`, for a piece taken out of a longer file.
    SourceText(std::string fileName, std::string_view bytes, std::size_t firstLine = 1);

    std::string const & fileName() const { return fileName_; }
    std::string_view bytes() const { return bytes_; }

    // REQUIRES: offset <= bytes().size(). The end of the text has a position too.
    TextPosition position(std::size_t offset) const;

    InputError error(std::size_t offset, std::string message, std::string pointer = {}) const;

    // Throws InputError at the first byte that is not part of well-formed UTF-8 (RFC 3629).
    void requireUtf8() const;

private:
    std::string fileName_;
    std::string_view bytes_;
    std::size_t firstLine_;
    std::vector<std::size_t> lineStarts_;
};

// Offset of the first byte of `bytes` that does not belong to a well-formed UTF-8 sequence (RFC 3629, section
// 4: no overlong form, no surrogate, nothing above U+10FFFF); npos when all is well. A sequence cut short is
// at fault at its first byte.
std::size_t findInvalidUtf8(std::string_view bytes);

// "byte 0x0a", for messages about a byte that must not be printed.
std::string byteName(char byte);

}  // namespace TopologyTools
