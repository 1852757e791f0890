#include "platform/NetworkTopologyV3/Mutation.h"

#include <string>

#include "platform/Vel/Exceptions.h"

namespace NetworkTopologyV3 {

void Mutation::refuseKey(Vel::Name const & key, Vel::Name const & name) {
    throw Vel::RangeException("an object stands under its name: expected key \"" + std::string(name.view()) +
                              "\", found \"" + std::string(key.view()) + '"');
}

}  // namespace NetworkTopologyV3
