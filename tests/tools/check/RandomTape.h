// Random changes of a version-2 model and of the translator that follows it, of every kind that the library
// allows: objects that leave and come back, that replace others, that are filled before they enter,
// references to what has left, statuses unbound, notifications off.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "tests/tools/check/CheckTesting.h"

namespace TopologyTools {

class RandomTape {
public:
    RandomTape(Checked & checked, unsigned seed) : checked_(checked), v2_(*checked.v2), random_(seed) {}

    // Makes one change and gives its description.
    std::string step();

private:
    template <class Object>
    using Pool = std::vector<Vel::Ptr<Object>>;
    using PortBase = NetworkTopology::PortBaseV2;

    std::size_t below(std::size_t end) { return random_() % end; }
    bool chance(unsigned percent) { return below(100) < percent; }
    Vel::Name name() { return std::vector<char const *>{"p", "q", "r/~"}[below(3)]; }
    Vel::Name hostName() { return std::vector<char const *>{"a", "b", ""}[below(3)]; }
    // Something that was ever made; null now and then.
    template <class Object>
    Vel::Ptr<Object> anyOf(Pool<Object> const & pool);
    Vel::Ptr<PortBase const> anyPortBase();
    // A host of the model; null when there is none.
    Vel::Ptr<NetworkTopology::HostV2> anyHost();

    Vel::Ptr<NetworkTopology::HostV2> newHost();
    void fill(NetworkTopology::HostV2 & host);
    void changeHosts();
    void changeMembers(NetworkTopology::HostV2 & host);
    void changeAttributes(NetworkTopology::HostV2 & host);
    void changeEntries(NetworkTopology::HostV2 & host);
    void changePortBases();
    void changeEdges();
    void changeTranslator();
    void forget();

    Checked & checked_;
    NetworkTopology::StatusV2 & v2_;
    std::mt19937 random_;
    Pool<NetworkTopology::HostV2> hosts_;
    Pool<NetworkTopology::PortV2> ports_;
    Pool<NetworkTopology::PortGroupV2> groups_;
    Pool<NetworkTopology::MlagV2> mlags_;
};

}  // namespace TopologyTools
