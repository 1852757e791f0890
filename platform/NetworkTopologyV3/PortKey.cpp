#include "platform/NetworkTopologyV3/PortKey.h"

#include <array>
#include <cstddef>
#include <ostream>

#include "platform/Vel/GenericIf.h"
#include "platform/Vel/HashMap.h"

namespace NetworkTopologyV3 {

namespace {

// Appends a slash and `token`, escaped as RFC 6901, section 3, says.
void appendToken(std::string & pointer, std::string_view token) {
    pointer += '/';
    for (char const byte : token) {
        if (byte == '~') {
            pointer += "~0";
        } else if (byte == '/') {
            pointer += "~1";
        } else {
            pointer += byte;
        }
    }
}

// What an escaped token stands for; nothing when a `~` is not followed by 0 or 1.
std::optional<std::string> unescaped(std::string_view token) {
    std::string result;
    result.reserve(token.size());
    for (std::size_t at = 0; at < token.size(); ++at) {
        if (token[at] != '~') {
            result += token[at];
        } else if (++at < token.size() && (token[at] == '0' || token[at] == '1')) {
            result += token[at] == '0' ? '~' : '/';
        } else {
            return std::nullopt;
        }
    }
    return result;
}

// The tokens of a pointer that has exactly four, still escaped.
std::optional<std::array<std::string_view, 4>> fourTokens(std::string_view pointer) noexcept {
    std::array<std::string_view, 4> tokens;
    for (std::string_view & token : tokens) {
        if (pointer.empty() || pointer.front() != '/') return std::nullopt;
        pointer.remove_prefix(1);
        token = pointer.substr(0, pointer.find('/'));
        pointer.remove_prefix(token.size());
    }
    if (!pointer.empty()) return std::nullopt;
    return tokens;
}

}  // namespace

Vel::String PortKey::memberOf(std::string_view kind, Vel::Name const & name) {
    std::string member;
    member.reserve(kind.size() + 1 + name.size());
    member.append(kind).append("/").append(name.view());
    return member;
}

std::string PortKey::jsonPointer() const {
    std::string pointer;
    if (empty()) return pointer;
    std::string_view const member = member_.view();
    std::size_t const slash = member.find('/');
    pointer += "/host";
    appendToken(pointer, host_.view());
    appendToken(pointer, member.substr(0, slash));
    if (slash != std::string_view::npos) appendToken(pointer, member.substr(slash + 1));
    return pointer;
}

std::optional<PortKey> PortKey::fromJsonPointer(std::string_view pointer) {
    auto const tokens = fourTokens(pointer);
    if (!tokens) return std::nullopt;
    auto const & [collection, host, kind, name] = *tokens;
    if (collection != "host" || (kind != kPort && kind != kPortGroup && kind != kMlag)) return std::nullopt;
    std::optional<std::string> const hostName = unescaped(host);
    std::optional<std::string> const portName = unescaped(name);
    if (!hostName || !portName) return std::nullopt;
    return PortKey(*hostName, memberOf(kind, Vel::Name(*portName)));
}

std::uint32_t PortKey::hash() const noexcept {
    // Hosts have ports of the same names, and a port name says little about its host: all bits of both hashes
    // have to reach all bits of the result.
    std::uint64_t const both = std::uint64_t{host_.hash()} << 32 | member_.hash();
    return Vel::VelHashBase<false>::hashU32(both);
}

std::ostream & operator<<(std::ostream & out, PortKey const & key) { return out << key.jsonPointer(); }

constinit Vel::VelType const PortKey::_velType{{
    .name = "NetworkTopologyV3::PortKey",
    .fromStrRep = [](Vel::VelType const &, std::string_view text) -> Vel::GenericIf {
        if (auto const key = PortKey::fromJsonPointer(text)) return Vel::GenericIf::wrap(*key);
        throw Vel::RangeException("expected a port key such as /host/leaf-1/port/eth-1, found \"" +
                                  std::string(text) + '"');
    },
    .kind = Vel::VelType::Kind::value,
    .toStrRep = [](Vel::GenericIf const & value) { return value.as<PortKey>().jsonPointer(); },
}};

namespace {

Vel::TypeRegistration const registration(PortKey::_velType);

}  // namespace

}  // namespace NetworkTopologyV3
