#include "tools/check/Following.h"

#include <vector>

#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using NetworkTopology::PortBaseV2;
using Tokens = std::vector<std::string>;

namespace {

Tokens firstOf(Tokens const & tokens, std::size_t count) {
    return {tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace

std::optional<Stray> Following::stray(std::string const & path) const {
    Tokens const tokens = parseJsonPointer(path);
    if (tokens.empty() || tokens[0] != "host") return std::nullopt;
    for (std::size_t count = 2; count <= 4 && count <= tokens.size(); count += 2) {
        Tokens const place = firstOf(tokens, count);
        auto const * const model = this->model(place);
        if (!model) return std::nullopt;
        auto const followed = expectation_.followed(place);
        ExpectedPtr const standing = expected(place);
        bool const isFollowed = followed && followed->model == model && followed->object == standing;
        if (!standing || !isFollowed) return object(formatJsonPointer(place));
    }
    return std::nullopt;
}

Stray Following::object(std::string const & path) const {
    Tokens const place = parseJsonPointer(path);
    ExpectedPtr const standing = expected(place);
    auto const followed = expectation_.followed(place);
    bool const isKept = followed && followed->object == standing;
    return {.path = path, .staysOnce = standing && !isKept && (followed || model(place))};
}

Stray Following::edge(std::string const & key) const {
    Vel::Ptr<PortBaseV2 const> const fromPort = portBase(key);
    auto const edge = fromPort ? expectation_.input().edge(fromPort) : nullptr;
    EdgeFollower const * const follower = fromPort ? expectation_.edge(fromPort.get()) : nullptr;
    ExpectedPtr const standing = expectation_.root()->member("edge", key);
    bool const hasObject = follower && follower->object();
    return {.path = joinJsonPointer("/edge", key),
            .staysOnce = standing && !hasObject && (follower || edge),
            .isFollowed = hasObject && follower->follows(edge.get()) && follower->object() == standing};
}

std::optional<std::string> Following::missing(std::string const & path) const {
    Tokens const tokens = parseJsonPointer(path);
    for (std::size_t count = 2; count <= tokens.size(); count += 2) {
        Tokens const place = firstOf(tokens, count);
        if (!expected(place)) return formatJsonPointer(place);
    }
    return std::nullopt;
}

ExpectedPtr Following::expected(std::string const & path) const { return expected(parseJsonPointer(path)); }

ExpectedPtr Following::expected(Tokens const & path) const {
    ExpectedPtr object = expectation_.root();
    for (std::size_t at = 0; object && at + 1 < path.size(); at += 2)
        object = object->member(path[at], path[at + 1]);
    return object;
}

PortBaseV2 const * Following::portBase(std::string const & path) const {
    Tokens const tokens = parseJsonPointer(path);
    return tokens.size() == 4 ? static_cast<PortBaseV2 const *>(model(tokens)) : nullptr;
}

Vel::PtrInterface const * Following::model(Tokens const & path) const {
    auto const host = expectation_.input().host(Vel::Name(path[1]));
    if (!host || path.size() == 2) return host.get();
    Vel::Name const name(path[3]);
    PortBaseV2 const * portBase = nullptr;
    if (path[2] == "port")
        portBase = host->port(name).get();
    else if (path[2] == "portGroup")
        portBase = host->portGroup(name).get();
    else
        portBase = host->mlag(name).get();
    return portBase;
}

}  // namespace TopologyTools
