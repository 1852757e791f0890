// What may be done to a translator at work from inside any of its writes.
//
// Usage
//     disturbEveryChange(disturbance, followingScene, [](Scene & scene) { scene.sm->hostDel("a"); });
#pragma once

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/translator/support/Topologies.h"
#include "translator/V2Sm.h"

namespace TestSupport {

// A translator at work, and what may take the place of its statuses.
struct Scene {
    Models const models = {};
    Models const others = {};
    NetworkTopologyAggregator::V2Sm::Ptr sm;
};

struct Disturbance {
    std::string name;
    std::function<void(Scene & scene)> make;

    friend void PrintTo(Disturbance const & disturbance, std::ostream * out) { *out << disturbance.name; }
};

// What disturbs the root itself.
std::vector<Disturbance> const & disturbancesOfTheRoot();
// What disturbs the reactors of host "a" and of its edge, as far as they are there.
std::vector<Disturbance> const & disturbancesOfTheReactors();
// What disturbs the models: every kind of change of the input, and another writer of the output.
std::vector<Disturbance> const & disturbancesOfTheModels();

// A translator of three hosts that follows its input.
void followingScene(Scene & scene);

// Runs `work` again and again, each time with the disturbance inside the next change of the output, until
// there are no more changes to be disturbed. After each, every reactor that is in a registry belongs there;
// at the end of each, nothing of the translator is left. `least` changes there are.
void disturbEveryChange(Disturbance const & disturbance, std::function<void(Scene & scene)> const & prepare,
                        std::function<void(Scene & scene)> const & work, std::size_t least = 1);

}  // namespace TestSupport
