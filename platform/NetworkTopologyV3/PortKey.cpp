#include "platform/NetworkTopologyV3/PortKey.h"

#include <array>
#include <cstddef>
#include <ostream>

#include "platform/Vel/GenericIf.h"
#include "platform/Vel/NumberHash.h"

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

// Numbered ports of numbered hosts fill the buckets of a topology evenly: what makes the hash of the port's
// name even stays as it is, and the number in the host's name, of which its hash has the `numberHash`, joins
// it as that of a group.
std::uint32_t PortKey::hashOf(Vel::String const & host, Kind kind, Vel::Name const & name) noexcept {
    auto const ofKind = static_cast<std::uint32_t>(kind);
    std::uint32_t const ofHost = Vel::reversedOuterGroupHash(Vel::numberHash(host.hash()));
    return ((name.reversedHash() ^ ofHost) & ~std::uint32_t{3}) | ofKind;
}

PortKey::Data::Data(Vel::String const & h, Kind kind, Vel::Name const & n) noexcept
    : host(h), name(n), hash(hashOf(h, kind, n)) {}

PortKey::PortKey(Vel::String const & host, std::string_view kind, Vel::Name const & name) {
    for (Kind const known : {Kind::port, Kind::portGroup, Kind::mlag}) {
        if (kind == textOf(known)) data_ = new Data(host, known, name);
    }
    if (!data_) *this = PortKey(host, memberOf(kind, name));
}

PortKey::PortKey(Vel::String const & host, Vel::String const & member) {
    if (host.empty() && member.empty()) return;
    std::string_view const text = member.view();
    for (Kind const kind : {Kind::port, Kind::portGroup, Kind::mlag}) {
        std::string_view const prefix = textOf(kind);
        if (!text.starts_with(prefix) || !text.substr(prefix.size()).starts_with('/')) continue;
        data_ = new Data(host, kind, text.substr(prefix.size() + 1));
        return;
    }
    data_ = new Data(host, Kind::none, Vel::Name(member));
}

std::string_view PortKey::textOf(Kind kind) noexcept {
    switch (kind) {
    case Kind::port: return kPort;
    case Kind::portGroup: return kPortGroup;
    case Kind::mlag: return kMlag;
    case Kind::none: break;
    }
    return {};
}

Vel::String PortKey::memberOf(std::string_view kind, Vel::Name const & name) {
    std::string member;
    member.reserve(kind.size() + 1 + name.size());
    member.append(kind).append("/").append(name.view());
    return member;
}

Vel::String PortKey::member() const {
    if (!data_ || data_->kind() == Kind::none) return data_ ? data_->name : Vel::Name();
    return memberOf(textOf(data_->kind()), data_->name);
}

bool PortKey::equalData(PortKey const & a, PortKey const & b) noexcept {
    if (!a.data_ || !b.data_) return false;
    // The hash tells the kind.
    return a.data_->hash == b.data_->hash && a.data_->name == b.data_->name && a.data_->host == b.data_->host;
}

std::strong_ordering operator<=>(PortKey const & a, PortKey const & b) noexcept {
    if (a.isSame(b)) return std::strong_ordering::equal;
    if (!a.data_ || !b.data_) return a.data_ ? std::strong_ordering::greater : std::strong_ordering::less;
    if (auto const order = a.data_->host <=> b.data_->host; order != 0) return order;
    if (a.data_->kind() == b.data_->kind()) return a.data_->name <=> b.data_->name;
    // Members of two kinds differ before their names begin: a slash comes before every letter.
    if (a.data_->kind() != PortKey::Kind::none && b.data_->kind() != PortKey::Kind::none) {
        return PortKey::textOf(a.data_->kind()) <=> PortKey::textOf(b.data_->kind());
    }
    bool const isAPlain = a.data_->kind() == PortKey::Kind::none;
    PortKey::Data const & plain = isAPlain ? *a.data_ : *b.data_;
    PortKey::Data const & other = isAPlain ? *b.data_ : *a.data_;
    // A text without a kind against one in three pieces, of which none is put together.
    std::string_view text = plain.name.view();
    auto const order = [&] {
        for (std::string_view const piece :
             {PortKey::textOf(other.kind()), std::string_view("/"), other.name.view()}) {
            if (auto const found = text.substr(0, piece.size()) <=> piece; found != 0) return found;
            text.remove_prefix(piece.size());
        }
        return text <=> std::string_view();
    }();
    return isAPlain ? order : 0 <=> order;
}

std::string PortKey::jsonPointer() const {
    std::string pointer;
    if (empty()) return pointer;
    Vel::String const whole = member();
    std::string_view const member = whole.view();
    std::size_t const slash = member.find('/');
    pointer += "/host";
    appendToken(pointer, data_->host.view());
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
    return PortKey(*hostName, kind, Vel::Name(*portName));
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
