#include "tools/generate/FabricDocument.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "tools/document/JsonSink.h"

namespace TopologyTools {
namespace {

std::string numbered(std::string_view word, std::uint64_t index) {
    return std::string(word) + '-' + std::to_string(index + 1);
}

std::string leafName(std::uint64_t index) { return numbered("leaf", index); }
std::string spineName(std::uint64_t index) { return numbered("spine", index); }
std::string portName(std::uint64_t index) { return numbered("eth", index); }

// The JSON Pointer to what a host holds. None of the names has to be escaped.
std::string pathTo(std::string_view host, std::string_view collection, std::string_view name) {
    return "/host/" + std::string(host) + '/' + std::string(collection) + '/' + std::string(name);
}

class FabricWriter {
public:
    FabricWriter(FabricNumbers const & numbers, std::ostream & out) : fabric_(numbers), sink_(out, 2) {}

    void write() {
        sink_.beginObject();
        string("localhost", "/host/" + leafName(0));
        object("host", [&] {
            for (std::uint64_t i = 0; i != fabric_.leaves(); ++i) leaf(i);
            for (std::uint64_t i = 0; i != fabric_.spines(); ++i) spine(i);
        });
        object("edge", [&] {
            for (std::uint64_t i = 0; i != fabric_.leaves(); ++i) edgesOfLeaf(i);
            for (std::uint64_t i = 0; i != fabric_.spines(); ++i) edgesOfSpine(i);
        });
        sink_.endObject();
    }

private:
    // Two ports make a bond; the last bond has one if their number is odd.
    std::uint64_t bonds() const { return (fabric_.serverPorts() + 1) / 2; }
    std::uint64_t firstOfBond(std::uint64_t bond) const { return fabric_.uplinks() + 2 * bond; }
    std::uint64_t endOfBond(std::uint64_t bond) const {
        return std::min(firstOfBond(bond) + 2, firstOfPeerPorts());
    }
    std::uint64_t firstOfPeerPorts() const { return fabric_.ports() - 2; }

    template <class Members>
    void object(std::string_view name, Members const & members) {
        sink_.name(name);
        sink_.beginObject();
        members();
        sink_.endObject();
    }
    void string(std::string_view name, std::string_view value) {
        sink_.name(name);
        sink_.string(value);
    }
    void flag(std::string_view name, bool value) {
        sink_.name(name);
        sink_.boolean(value);
    }

    void leaf(std::uint64_t index) {
        std::string const name = leafName(index);
        auto const other = fabric_.otherLeaf(index);
        object(name, [&] {
            hostname(name);
            if (index == 0) flag("hostnameAddedByOwner", true);
            if (other) mlagAttributes(index);
            object("port", [&] {
                for (std::uint64_t i = 0; i != fabric_.ports(); ++i) portOfLeaf(index, i);
            });
            object("portGroup", [&] {
                for (std::uint64_t i = 0; i != bonds(); ++i) bond(index, i);
                if (other) group(name, "peer", firstOfPeerPorts(), fabric_.ports(), "");
            });
            if (other) mlags(index, *other);
            logicalPortsOfLeaf(index);
        });
    }

    void hostname(std::string const & name) { string("hostname", name + ".fabric.example"); }

    void mlagAttributes(std::uint64_t index) {
        std::uint64_t const rack = index / 2;
        std::uint64_t const bits = fabric_.chance('a', rack);
        std::array<char, 18> address;
        std::snprintf(address.data(), address.size(), "02:%02x:%02x:%02x:%02x:%02x",
                      static_cast<unsigned>(bits >> 8 & 0xff), static_cast<unsigned>(bits & 0xff),
                      static_cast<unsigned>(rack >> 16 & 0xff), static_cast<unsigned>(rack >> 8 & 0xff),
                      static_cast<unsigned>(rack & 0xff));
        string("mlagSystemId", address.data());
        string("mlagDomainId", numbered("rack", rack));
        string("mlagState", fabric_.chance('m', rack) % 8 == 0 ? "inactive" : "active");
        string("mlagPeerLink", pathTo(leafName(index), "portGroup", "peer"));
    }

    void portOfLeaf(std::uint64_t leaf, std::uint64_t index) {
        object(portName(index), [&] {
            string("type", "port");
            if (leaf == 0) flag("addedByOwner", true);
            if (index < fabric_.uplinks()) return;
            if (index < firstOfPeerPorts()) {
                std::uint64_t const bond = (index - fabric_.uplinks()) / 2;
                string("portGroup", pathTo(leafName(leaf), "portGroup", numbered("bond", bond)));
            } else if (fabric_.otherLeaf(leaf)) {
                string("portGroup", pathTo(leafName(leaf), "portGroup", "peer"));
            }
        });
    }

    void bond(std::uint64_t leaf, std::uint64_t index) {
        std::string const mlag = fabric_.otherLeaf(leaf) ? numbered("mlag", index) : "";
        group(leafName(leaf), numbered("bond", index), firstOfBond(index), endOfBond(index), mlag);
    }

    // A group of the ports from `first` to before `end`, which belongs to `mlag` unless that is empty.
    void group(std::string const & host, std::string const & name, std::uint64_t first, std::uint64_t end,
               std::string const & mlag) {
        object(name, [&] {
            string("type", "portGroup");
            object("memberPort", [&] {
                for (std::uint64_t i = first; i != end; ++i) {
                    string(portName(i), pathTo(host, "port", portName(i)));
                }
            });
            if (!mlag.empty()) string("mlag", pathTo(host, "mlag", mlag));
        });
    }

    void mlags(std::uint64_t leaf, std::uint64_t other) {
        object("mlag", [&] {
            for (std::uint64_t i = 0; i != bonds(); ++i) {
                object(numbered("mlag", i), [&] {
                    string("type", "mlag");
                    string("secondaryName", numbered("server", leaf / 2 * bonds() + i));
                    string("localPortGroup", pathTo(leafName(leaf), "portGroup", numbered("bond", i)));
                    string("peerPortGroup", pathTo(leafName(other), "portGroup", numbered("bond", i)));
                });
            }
        });
        object("mlagRaw", [&] { references(leafName(leaf), "mlag", "mlag", bonds()); });
    }

    // An entry for each of the first `count` objects of that kind, under its name.
    void references(std::string const & host, std::string_view kind, std::string_view word,
                    std::uint64_t count) {
        for (std::uint64_t i = 0; i != count; ++i) {
            string(numbered(word, i), pathTo(host, kind, numbered(word, i)));
        }
    }

    // What somebody configures: uplinks, and of what carries a server the outermost.
    void logicalPortsOfLeaf(std::uint64_t index) {
        std::string const host = leafName(index);
        object("logicalPort", [&] {
            references(host, "port", "eth", fabric_.uplinks());
            if (fabric_.otherLeaf(index)) {
                references(host, "mlag", "mlag", bonds());
                string("peer", pathTo(host, "portGroup", "peer"));
            } else {
                references(host, "portGroup", "bond", bonds());
            }
        });
    }

    void spine(std::uint64_t index) {
        std::string const name = spineName(index);
        object(name, [&] {
            hostname(name);
            object("port", [&] {
                for (std::uint64_t i = 0; i != fabric_.ports(); ++i) {
                    object(portName(i), [&] { string("type", "port"); });
                }
            });
            object("logicalPort", [&] { references(name, "port", "eth", fabric_.ports()); });
        });
    }

    void edgesOfLeaf(std::uint64_t index) {
        std::string const name = leafName(index);
        for (std::uint64_t i = 0; i != fabric_.uplinks(); ++i) {
            Fabric::PortIndex const end = fabric_.spineEnd({index, i});
            edge(pathTo(name, "port", portName(i)), pathTo(spineName(end.host), "port", portName(end.port)),
                 uplinkIsUp(index, i));
        }
        auto const other = fabric_.otherLeaf(index);
        if (!other) return;
        for (std::uint64_t i = firstOfPeerPorts(); i != fabric_.ports(); ++i) {
            edge(pathTo(name, "port", portName(i)), pathTo(leafName(*other), "port", portName(i)), true);
        }
        edge(pathTo(name, "portGroup", "peer"), pathTo(leafName(*other), "portGroup", "peer"), true);
    }

    void edgesOfSpine(std::uint64_t index) {
        for (std::uint64_t i = 0; i != fabric_.ports(); ++i) {
            auto const end = fabric_.leafEnd({index, i});
            if (!end) continue;
            edge(pathTo(spineName(index), "port", portName(i)),
                 pathTo(leafName(end->host), "port", portName(end->port)), uplinkIsUp(end->host, end->port));
        }
    }

    bool uplinkIsUp(std::uint64_t leaf, std::uint64_t uplink) const {
        return fabric_.chance('u', leaf * fabric_.uplinks() + uplink) % 16 != 0;
    }

    void edge(std::string const & from, std::string const & to, bool isUp) {
        object(from, [&] { object("toPort", [&] { flag(to, isUp); }); });
    }

    Fabric const fabric_;
    JsonTextSink sink_;
};

}  // namespace

void writeFabric(FabricNumbers const & numbers, std::ostream & out) {
    FabricWriter(numbers, out).write();
    out << '\n';
}

}  // namespace TopologyTools
