// How the time to translate a whole input grows with it: ns per port for fabrics of 16, 256 and 4096 hosts
// with 64 ports each.
//
// A linear pass still takes longer per port once it outgrows the caches. So the same walk that only enters
// every port into a std::unordered_map runs beside it, in turns, and what counts is how many times its time
// the translation takes:
//     ns_per_port      the translation
//     map_ns_per_port  the map
//     times_map        the one by the other
//     growth           times_map, by what it is for 16 hosts: 1 is as linear as the map
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <unordered_map>

#include "translator/V2Sm.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::StatusV2;
using NetworkTopologyAggregator::V2Sm;
using NetworkTopologyV3::Status;

constexpr int kSmallest = 16;
constexpr int kPorts = 64;
constexpr int kGroups = 8;

// Each port is in one of the host's groups and has an edge to the same port of the next host; each group is a
// logical port, and the first one carries an MLAG.
StatusV2::Ptr fabric(int hosts) {
    auto v2 = StatusV2::StatusV2Is();
    HostV2::Ptr last;
    for (int h = 0; h < hosts; ++h) {
        auto const host = v2->hostIs("host-" + std::to_string(h));
        host->hostnameIs("host-" + std::to_string(h) + ".example");
        for (int g = 0; g < kGroups; ++g) {
            auto const group = host->portGroupIs("bond-" + std::to_string(g));
            host->logicalPortIs(group->name(), group);
        }
        auto const mlag = host->mlagIs("mlag", "mlag-peer");
        mlag->localPortGroupIs(host->portGroup("bond-0"));
        host->portGroup("bond-0")->mlagIs(mlag);
        host->mlagRawIs("mlag", mlag);
        host->mlagPeerLinkIs(host->portGroup("bond-1"));
        for (int p = 0; p < kPorts; ++p) {
            auto const port = host->portIs("eth-" + std::to_string(p));
            auto const group = host->portGroup("bond-" + std::to_string(p % kGroups));
            port->typeIs(PortTypeV2::port);
            port->portGroupIs(group);
            group->memberPortIs(port->name(), port);
            if (last) v2->edgeIs(last->port(port->name()))->toPortIs(port, true);
        }
        last = host;
    }
    v2->localhostIs(last);
    return v2;
}

template <class Work>
double seconds(Work const & work) {
    auto const start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double secondsForMap(StatusV2 const & v2) {
    std::unordered_map<std::string, std::string> groups;
    return seconds([&] {
        for (auto const & host : v2.host()) {
            for (auto const & port : host->port()) {
                groups.emplace(std::string(host->name().view()) + '/' + std::string(port->name().view()),
                               port->portGroup()->name().view());
            }
        }
        benchmark::DoNotOptimize(groups);
    });
}

// `translate(v2)` returns how long it took.
template <class Translate>
void compareWithMap(benchmark::State & state, double & timesMapOfTheSmallest, Translate const & translate) {
    auto const hosts = static_cast<int>(state.range(0));
    auto const v2 = fabric(hosts);
    double translation = 0;
    double map = 0;
    for (auto _ : state) {
        double const took = translate(v2);
        state.SetIterationTime(took);
        translation += took;
        map += secondsForMap(*v2);
    }
    double const ports = static_cast<double>(state.iterations()) * hosts * kPorts;
    double const timesMap = translation / map;
    // The last run of the smallest one counts: the ones before it only find out how many iterations to make.
    if (hosts == kSmallest) timesMapOfTheSmallest = timesMap;
    state.counters["ns_per_port"] = translation * 1e9 / ports;
    state.counters["map_ns_per_port"] = map * 1e9 / ports;
    state.counters["times_map"] = timesMap;
    state.counters["growth"] = timesMap / timesMapOfTheSmallest;
    v2->hostDelAll();
    v2->edgeDelAll();
}

// A translator from nothing: the population, and one reactor for everything that it will follow.
void creation(benchmark::State & state) {
    static double timesMapOfTheSmallest = 0;
    compareWithMap(state, timesMapOfTheSmallest, [](StatusV2::Ptr const & v2) {
        auto const v3 = Status::StatusIs();
        V2Sm::Ptr sm;
        return seconds([&] { sm = V2Sm::V2SmIs("sm", v2, v3); });
    });
}

// The population alone, into an empty output.
void population(benchmark::State & state) {
    static double timesMapOfTheSmallest = 0;
    compareWithMap(state, timesMapOfTheSmallest, [](StatusV2::Ptr const & v2) {
        auto const sm = V2Sm::V2SmIs("sm", nullptr, Status::StatusIs());
        sm->v2Is(v2);
        return seconds([&] { sm->populateV3(); });
    });
}

BENCHMARK(creation)->Arg(kSmallest)->Arg(256)->Arg(4096)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(population)->Arg(kSmallest)->Arg(256)->Arg(4096)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
