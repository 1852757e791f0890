#include "translator/V2Sm.h"

#include <cstdio>

int main() {
    auto const v2 = NetworkTopology::StatusV2::StatusV2Is();
    auto const v3 = NetworkTopologyV3::Status::StatusIs();
    v2->hostIs(Vel::Name("leaf-1"))->portIs(Vel::Name("eth-1"));

    auto const translator = NetworkTopologyAggregator::v2SmFactory("translator", v2, v3);
    v2->host("leaf-1")->port("eth-1")->typeIs(NetworkTopology::PortTypeV2::port);
    v2->hostIs(Vel::Name("leaf-2"));

    auto const host = v3->host("leaf-1");
    auto const port = host ? host->port("eth-1") : nullptr;
    bool const inStep = port && port->type() == NetworkTopologyV3::PortType::port && v3->host("leaf-2");
    std::printf("aggregator: %s\n", inStep ? "the version-3 model is in step" : "the models differ");
    return inStep ? 0 : 1;
}
