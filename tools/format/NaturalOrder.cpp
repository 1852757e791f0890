#include "tools/format/NaturalOrder.h"

#include <algorithm>
#include <cstddef>

namespace TopologyTools {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Takes the run of digits at the front of `rest`, without the zeros that it starts with.
std::string_view takeNumber(std::string_view & rest) {
    auto const end =
        static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), isDigit) - rest.begin());
    std::string_view number = rest.substr(0, end);
    rest.remove_prefix(end);
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

}  // namespace

std::strong_ordering naturalOrder(std::string_view a, std::string_view b) {
    std::string_view restA = a;
    std::string_view restB = b;
    while (!restA.empty() && !restB.empty()) {
        if (isDigit(restA.front()) && isDigit(restB.front())) {
            std::string_view const numberA = takeNumber(restA);
            std::string_view const numberB = takeNumber(restB);
            if (auto const order = numberA.size() <=> numberB.size(); order != 0) return order;
            if (auto const order = numberA <=> numberB; order != 0) return order;
        } else {
            auto const order =
                static_cast<unsigned char>(restA.front()) <=> static_cast<unsigned char>(restB.front());
            if (order != 0) return order;
            restA.remove_prefix(1);
            restB.remove_prefix(1);
        }
    }
    if (auto const order = restA.size() <=> restB.size(); order != 0) return order;
    if (auto const order = a.size() <=> b.size(); order != 0) return order;
    return a <=> b;
}

}  // namespace TopologyTools
