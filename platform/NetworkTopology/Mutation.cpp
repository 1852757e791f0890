#include "platform/NetworkTopology/Mutation.h"

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/Vel/Exceptions.h"

namespace NetworkTopology {

namespace {

std::string quoted(Vel::Name const & name) { return '"' + std::string(name.view()) + '"'; }

}  // namespace

void Mutation::refuseNull(char const * attribute) {
    Vel::throwRangeException(
        (std::string("null object to mutator for ") + attribute + " not allowed").c_str());
}

void Mutation::refuseOwned(char const * attribute, std::string const & member, std::string const & owner,
                           std::string const & other) {
    Vel::throwRangeException(
        (std::string(attribute) + ": " + member + " of " + owner + " cannot also stand in " + other).c_str());
}

std::string Mutation::described(Vel::Name const & key) { return quoted(key); }

std::string Mutation::described(Vel::Ptr<PortBaseV2 const> const & key) {
    if (!key) return "edge without from-port";
    HostV2 const * const host = key->host();
    return "edge from " + quoted(key->name()) + (host ? " of " + described(*host) : std::string());
}

std::string Mutation::described(HostV2 const & host) { return "host " + quoted(host.name()); }

std::string Mutation::described(StatusV2 const &) { return "a status"; }

}  // namespace NetworkTopology
