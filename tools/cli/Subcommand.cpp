#include "tools/cli/Subcommand.h"

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace TopologyTools {
namespace {

std::optional<std::uint64_t> wholeNumber(std::string_view text) {
    std::uint64_t number = 0;
    char const * const end = text.data() + text.size();
    auto const read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return number;
}

}  // namespace

CLI::Option * addNumber(CLI::App & command, std::string const & name, std::uint64_t & value,
                        std::uint64_t least, std::uint64_t greatest, std::string const & help) {
    auto const isOneOfThem = [least, greatest](std::string const & word) {
        auto const number = wholeNumber(word);
        if (number && *number >= least && *number <= greatest) return std::string();
        return "expected a whole number from " + std::to_string(least) + " to " + std::to_string(greatest) +
               ", found " + word;
    };
    // CLI11 would take other spellings of numbers too.
    return command.add_option(name, value, help)->type_name("NUMBER")->check(isOneOfThem, "");
}

}  // namespace TopologyTools
