#pragma once

#include "tools/follow/ObjectFollower.h"

namespace TopologyTools {

// A Follow for the objects of the version-3 model; std::logic_error for any other object.
Vel::Ptr<Vel::PtrInterface::NotifieeConst> followVersion3(Vel::GenericIf const & object,
                                                          ObjectFollower & follower);

}  // namespace TopologyTools
