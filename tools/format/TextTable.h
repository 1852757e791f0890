#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TopologyTools {

// How a text is set off where the output is a terminal that wants colours.
enum class Ink { plain, strong, faint, good, attention };

// `text` in that ink, or as it is when `colours` is off.
std::string inked(std::string_view text, Ink ink, bool colours);

struct TextCell {
    std::string text;  // REQUIRES: UTF-8 without control characters.
    Ink ink = Ink::plain;

    // What stands where there is nothing.
    static TextCell none() { return {"-", Ink::faint}; }

    friend bool operator==(TextCell const &, TextCell const &) = default;
};

// Rows in aligned columns under headings. A column in which all rows are empty or none() is left out, and so
// is the line of headings when all are empty. No line ends in blanks.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> headings) : headings_(std::move(headings)) {}

    // Texts in this column stand at its right edge.
    void alignRight(std::size_t column) { right_.push_back(column); }

    // Cells that are not given are empty. REQUIRES: one of the cells has text, and there are no more cells
    // than headings.
    void add(std::vector<TextCell> row);

    bool empty() const { return rows_.empty(); }

    // Each line starts with `indent`. Without rows there is nothing, not even headings.
    std::string text(std::string_view indent, bool colours) const;

private:
    std::vector<std::string> headings_;
    std::vector<std::size_t> right_;
    std::vector<std::vector<TextCell>> rows_;
};

// The items joined by ", ", broken into lines of at most `width` columns where that is possible; an item is
// never broken. No item gives no line.
std::vector<std::string> wrappedList(std::vector<std::string> const & items, std::size_t width);

}  // namespace TopologyTools
