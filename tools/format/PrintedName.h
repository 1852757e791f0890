#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace TopologyTools {

// A name as text on one line. Most names are printed as they are; a name is printed between quotation marks
// when it could be misread otherwise: an empty one, "-", one with blanks at an end, with a quotation mark, a
// list's comma or something that cannot be seen. Between the marks, characters that cannot be seen or that
// would steer a terminal are escaped as in C, and so are bytes that are not UTF-8. The result is UTF-8.
std::string printedName(std::string_view name);

// How many columns a terminal gives to `text`. REQUIRES: UTF-8 without control characters.
std::size_t displayWidth(std::string_view text);

}  // namespace TopologyTools
