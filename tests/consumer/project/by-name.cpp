// Includes nothing of the aggregator: linking it is enough.
#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "platform/Vel/GenericIf.h"

#include <cstdio>

int main() {
    auto const v2 = NetworkTopology::StatusV2::StatusV2Is();
    auto const v3 = NetworkTopologyV3::Status::StatusIs();
    v2->hostIs(Vel::Name("leaf-1"));
    Vel::GenericIf const translator = Vel::construct(
        "NetworkTopologyAggregator::V2Sm", {{"name", Vel::Name("translator")}, {"v2", v2}, {"v3", v3}});
    int hosts = 0;
    for (auto const & entry : translator.members("host")) hosts += entry.key().as<Vel::Name>() == "leaf-1";
    bool const isThere =
        hosts == 1 && v3->host("leaf-1") && Vel::typeNode("NetworkTopologyAggregator::PortBaseFinder");
    std::printf("by name: %s\n", isThere ? "the translator is constructed and walked" : "the walk failed");
    return isThere ? 0 : 1;
}
