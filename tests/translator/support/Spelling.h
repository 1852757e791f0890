// How tests spell version-3 objects and values.
//
//     /                               the status
//     /host/leaf-1                    a host
//     /host/leaf-1/port/eth-1         a port base, and its key; also after it has left its host
//     /edge[/host/leaf-1/port/eth-1]  an edge
//     'leaf-1'                        a name or a text; a byte that does not print is spelled \x00
//     null                            no object
#pragma once

#include <string>

#include "platform/NetworkTopologyV3/Status.h"

namespace TestSupport {

std::string spelled(NetworkTopologyV3::Status const & status);
std::string spelled(NetworkTopologyV3::Host const & host);
std::string spelled(NetworkTopologyV3::PortBase const & portBase);
std::string spelled(NetworkTopologyV3::DirectedEdge const & edge);

template <class T>
std::string spelled(T * object) {
    return object ? spelled(*object) : "null";
}
template <class T>
std::string spelled(Vel::Ptr<T> const & object) {
    return spelled(object.get());
}

std::string spelled(Vel::String const & text);
std::string spelled(Keln::EthAddr const & address);
std::string spelled(Mlag::MlagState state);
std::string spelled(NetworkTopologyV3::PortType type);
std::string spelled(NetworkTopologyV3::PortKey const & key);
std::string spelled(bool flag);

}  // namespace TestSupport
