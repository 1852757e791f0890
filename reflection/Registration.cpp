// Registers the library's types while it is loaded; when it is unloaded, they are forgotten.
//
// The classes' own `fwkType` stands here, because every object of theirs needs it: an archive's linker then
// takes this file along with the first translator or finder, though nobody names it.

// First, so that the standard streams are set up before the constants below and are there until those have
// gone.
#include <iostream>

#include "finder/PortBaseFinder.h"
#include "platform/Vel/String.h"
#include "platform/Vel/VelType.h"
#include "translator/V2Sm.h"

namespace NetworkTopologyAggregator {

namespace {

// What the name of a namespace begins with.
Vel::String const namespacePrefix("ns-");

// One after the other: generic tools list types in the order in which they were registered.
Vel::TypeRegistration const finderRegistration(PortBaseFinder::_velType);
Vel::TypeRegistration const translatorRegistration(V2Sm::_velType);

}  // namespace

Vel::VelType const * PortBaseFinder::fwkType() const { return &_velType; }
Vel::VelType const * V2Sm::fwkType() const { return &_velType; }

}  // namespace NetworkTopologyAggregator
