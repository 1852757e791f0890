// Version-2 topologies, and changes of them, that tests share.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "translator/V2Sm.h"

namespace TestSupport {

// An empty topology of each version.
struct Models {
    NetworkTopology::StatusV2::Ptr const v2 = NetworkTopology::StatusV2::StatusV2Is();
    NetworkTopologyV3::Status::Ptr const v3 = NetworkTopologyV3::Status::StatusIs();
};

// A host with exactly one of everything: port "p" of type 1 in group "g", which is in MLAG "m" ("m2"); raw
// MLAG "m", logical port "g", peer link "p", all attributes set.
NetworkTopology::HostV2::Ptr addHostWithOneOfEach(NetworkTopology::StatusV2 & v2, Vel::Name const & name);

// Host "a" with one of everything; it is the local host, and an edge leads from its port to its group.
void fillWithOneOfEach(NetworkTopology::StatusV2 & v2);

// Hosts "a", "b" and "c" with one of everything; each refers to a port base of the next one ("c" to "a")
// wherever it can, and has an edge to both others. "b" is the local host.
void fillWithThreeHosts(NetworkTopology::StatusV2 & v2);

// Roots that have translated nothing yet, though both statuses are bound and hold something: there are no
// reactors for what the input holds.
NetworkTopologyAggregator::V2Sm::Ptr unpopulated(Models const & models);

// One change of each kind, each of which does something to what `fillWithThreeHosts` makes and is legal
// whatever has become of it.
struct Change {
    std::string name;
    std::function<void(NetworkTopology::StatusV2 & v2)> make;
};
std::vector<Change> const & everyKindOfChange();

// Runs `run(n)` for n = 1, 2, ... until it returns false: it disturbs the n-th step of something and tells
// whether that has had so many steps. Returns how many it had.
std::size_t forEveryStep(std::function<bool(std::size_t n)> const & run);

}  // namespace TestSupport
