#include "tools/format/TextTable.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "tools/format/PrintedName.h"

namespace TopologyTools {

std::string inked(std::string_view text, Ink ink, bool colours) {
    if (!colours || text.empty() || ink == Ink::plain) return std::string(text);
    char const * start = "";
    switch (ink) {
    case Ink::plain: break;
    case Ink::strong: start = "\x1b[1m"; break;
    case Ink::faint: start = "\x1b[2m"; break;
    case Ink::good: start = "\x1b[32m"; break;
    case Ink::attention: start = "\x1b[33m"; break;
    }
    return start + std::string(text) + "\x1b[0m";
}

void TextTable::add(std::vector<TextCell> row) {
    assert(row.size() <= headings_.size());
    row.resize(headings_.size());
    rows_.push_back(std::move(row));
}

std::string TextTable::text(std::string_view indent, bool colours) const {
    std::vector<std::size_t> shown;
    std::vector<std::size_t> widths(headings_.size());
    for (std::size_t column = 0; column < headings_.size(); ++column) {
        bool used = false;
        widths[column] = displayWidth(headings_[column]);
        for (auto const & row : rows_) {
            used |= !row[column].text.empty() && row[column] != TextCell::none();
            widths[column] = std::max(widths[column], displayWidth(row[column].text));
        }
        if (used) shown.push_back(column);
    }

    auto const line = [&](auto const & cellOf) {
        std::string text(indent);
        std::size_t gap = 0;  // Blanks owed before the next text.
        for (std::size_t const column : shown) {
            TextCell const cell = cellOf(column);
            std::size_t const rest = widths[column] - displayWidth(cell.text);
            bool const right = std::find(right_.begin(), right_.end(), column) != right_.end();
            if (right) gap += rest;
            if (!cell.text.empty()) {
                text.append(gap, ' ');
                text += inked(cell.text, cell.ink, colours);
                gap = 0;
            }
            gap += right ? 2 : rest + 2;
        }
        return text + '\n';
    };

    std::string text;
    if (rows_.empty()) return text;
    bool const headed =
        std::any_of(shown.begin(), shown.end(), [&](auto column) { return !headings_[column].empty(); });
    if (headed) text += line([&](std::size_t column) { return TextCell{headings_[column], Ink::faint}; });
    for (auto const & row : rows_) {
        text += line([&](std::size_t column) { return row[column]; });
    }
    return text;
}

std::vector<std::string> wrappedList(std::vector<std::string> const & items, std::size_t width) {
    std::vector<std::string> lines;
    std::size_t used = 0;
    for (std::string const & item : items) {
        std::size_t const itemWidth = displayWidth(item);
        if (!lines.empty() && used + 2 + itemWidth + 1 <= width) {
            lines.back() += ", " + item;
            used += 2 + itemWidth;
            continue;
        }
        if (!lines.empty()) lines.back() += ',';
        lines.push_back(item);
        used = itemWidth;
    }
    return lines;
}

}  // namespace TopologyTools
