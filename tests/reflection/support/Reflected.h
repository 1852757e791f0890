// What the tests of the generic interface share: objects that are reached by name alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tests/translator/support/Topologies.h"

namespace TestSupport {

inline constexpr std::string_view kTranslator = "NetworkTopologyAggregator::V2Sm";
inline constexpr std::string_view kFinder = "NetworkTopologyAggregator::PortBaseFinder";

// One object of each of the two types, both made by name, over host "a" with one of everything.
struct Reflected {
    Reflected() : Reflected(fillWithOneOfEach) {}
    explicit Reflected(void (*fill)(NetworkTopology::StatusV2 &));

    NetworkTopology::HostV2::Ptr host(Vel::Name const & name = "a") const { return models.v2->host(name); }
    Vel::GenericIf const & object(std::string_view type) const {
        return type == kFinder ? finder : translator;
    }
    // A value of that type: the one of its kind that the models hold, or one that stands for something.
    Vel::GenericIf sample(Vel::VelType const & type) const;
    std::vector<Vel::GenericIf> samples(std::span<Vel::VelArg const> args) const;
    // A key of a collection; of anything else, some name.
    Vel::GenericIf key(Vel::VelAttr const & attr) const;

    Models models;
    Vel::GenericIf translator;
    Vel::GenericIf finder;
};

// A value in words: "null", "HostV2 a", "DirectedEdgeV2 from p", "portGroup".
std::string inWords(Vel::GenericIf const & value);
// Every entry of a walk, as "key: object", by key.
std::vector<std::string> inWords(Vel::GenericIf::Members const & members);

// What `act` raises: "not supported: " or "range: " and the text; "nothing".
std::string raised(std::function<void()> const & act);

}  // namespace TestSupport
