// A version-3 model as sorted lines, for comparing what two models hold.
//
//     / localhost=/host/leaf-1
//     /host/leaf-1 hostname='leaf-1.example' mlagDomainId='' mlagSystemId=00:00:00:00:00:00 ...
//     /host/leaf-1/port/eth-1 type=port portGroup=/host/leaf-1/portGroup/bond-1
//     /edge[/host/leaf-1/port/eth-1] toPort /host/spine-1/port/eth-7=true
//
// What a reference leads to outside the model (its host, or it from its host, has been removed) is followed
// by "(gone)".
#pragma once

#include <string>
#include <vector>

#include "platform/NetworkTopologyV3/Status.h"

namespace TestSupport {

std::vector<std::string> dumped(NetworkTopologyV3::Status const & status);

}  // namespace TestSupport
