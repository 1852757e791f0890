// Goes by names alone: refers to nothing of the aggregator and to no class of a model. Linking is enough.
// Prints the types that are registered.
#include "platform/Vel/GenericIf.h"

#include <cstdio>

int main() {
    Vel::GenericIf const v2 = Vel::construct("NetworkTopology::StatusV2", {});
    Vel::GenericIf const v3 = Vel::construct("NetworkTopologyV3::Status", {});
    v2.memberIs("host", {Vel::Name("leaf-1")});
    Vel::GenericIf const translator = Vel::construct(
        "NetworkTopologyAggregator::V2Sm", {{"name", Vel::Name("translator")}, {"v2", v2}, {"v3", v3}});
    int hosts = 0;
    for (auto const & entry : translator.members("host")) hosts += entry.key().as<Vel::Name>() == "leaf-1";
    bool const isThere = hosts == 1 && !v3.member("host", Vel::Name("leaf-1")).isNull();
    for (Vel::VelType const * const type : Vel::typeNodes())
        std::printf("%.*s\n", static_cast<int>(type->name().size()), type->name().data());
    return isThere ? 0 : 1;
}
