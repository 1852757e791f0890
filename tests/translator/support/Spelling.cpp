#include "tests/translator/support/Spelling.h"

#include <array>
#include <string_view>

namespace TestSupport {

namespace {

// Enumerators by value; a value beyond them is spelled as a number.
template <std::size_t n>
std::string nameOf(std::array<std::string_view, n> const & names, std::size_t value) {
    return value < n ? std::string(names[value]) : std::to_string(value);
}

std::string escaped(std::string_view bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (unsigned char const byte : bytes) {
        if (byte >= 0x20 && byte < 0x7f) {
            text += static_cast<char>(byte);
        } else {
            text += {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
        }
    }
    return text;
}

}  // namespace

std::string spelled(NetworkTopologyV3::Status const &) { return "/"; }

std::string spelled(NetworkTopologyV3::Host const & host) { return "/host/" + escaped(host.name().view()); }

std::string spelled(NetworkTopologyV3::PortBase const & portBase) { return spelled(portBase.portKey()); }

std::string spelled(NetworkTopologyV3::DirectedEdge const & edge) {
    return "/edge[" + spelled(edge.fromPort()) + "]";
}

std::string spelled(Vel::String const & text) { return "'" + escaped(text.view()) + "'"; }

std::string spelled(Keln::EthAddr const & address) { return address.text(); }

std::string spelled(Mlag::MlagState state) {
    return nameOf<4>({"unknown", "disabled", "inactive", "active"}, static_cast<std::size_t>(state));
}

std::string spelled(NetworkTopologyV3::PortType type) {
    return nameOf<4>({"unknown", "port", "portGroup", "mlag"}, static_cast<std::size_t>(type));
}

std::string spelled(NetworkTopologyV3::PortKey const & key) { return escaped(key.jsonPointer()); }

std::string spelled(bool flag) { return flag ? "true" : "false"; }

}  // namespace TestSupport
