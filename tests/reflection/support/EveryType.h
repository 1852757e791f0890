// One object of every class that has attributes, for what holds for all of them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/reflection/support/Reflected.h"

namespace TestSupport {

// "NetworkTopology::HostV2::hostname"
std::string fullName(Vel::VelAttr const & attr);

// Tells which callbacks a follower got since the last time.
using Taken = std::function<std::vector<std::string>()>;

// Follows an object of a model; of anything else nothing is heard.
Taken followed(Vel::GenericIf const & object);

class EveryType : public testing::Test {
protected:
    // One object of every class, with everything set that can be.
    std::vector<Vel::GenericIf> objects() const;
    // Some with nothing set.
    std::vector<Vel::GenericIf> bareObjects() const;

    // Calls `act(object, attribute)` for each attribute of each object, those of bases included.
    void
    forEveryAttribute(std::vector<Vel::GenericIf> const & objects,
                      std::function<void(Vel::GenericIf const &, Vel::VelAttr const &)> const & act) const;

    Reflected const scene{fillWithThreeHosts};
    NetworkTopologyV3::Status::Ptr const bareStatus = NetworkTopologyV3::Status::StatusIs();
};

}  // namespace TestSupport
