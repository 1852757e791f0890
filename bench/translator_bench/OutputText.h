// An output as text: a line per object, sorted, the same for the same topology whichever subject holds it.
// Null references are "-". Types are shown for ports alone.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <set>
#include <string>

namespace Bench {

class OutputText {
public:
    // Keys, each with the name of what stands under it.
    using References = std::map<std::string, std::string>;
    // Ports, each with its flag.
    using Destinations = std::map<std::string, bool>;

    struct Host {
        std::string name, hostname, mlagDomainId;
        std::uint64_t mlagSystemId;
        unsigned mlagState;
        std::string mlagPeerLink;
        References mlagRaw, logicalPort;
    };
    void host(Host const & host);

    struct Port {
        std::string host, name;
        unsigned type;
        std::string portGroup;
    };
    void port(Port const & port);

    struct PortGroup {
        std::string host, name, mlag;
        References memberPort;
    };
    void portGroup(PortGroup const & group);

    struct Mlag {
        std::string host, name, secondaryName, localPortGroup;
    };
    void mlag(Mlag const & mlag);

    void edge(std::string const & fromPort, Destinations const & toPort);
    void localhost(std::string const & name);

    void print(std::ostream & out) const;

private:
    std::set<std::string> lines_;
};

}  // namespace Bench
