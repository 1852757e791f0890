// The program's own arguments: one of
//     --memory H, --memory-peer H   the heap that a port takes in each part, for H hosts
//     --dump H, --dump-peer H       the output after changes of every kind
//     --dump-end H, --dump-end-peer H    the output after these, removals, and the translator's end
//     --scale H                     seconds and memory of each phase for H hosts, beside those for 4096
//     --compiler                    what this was built with
// or Google Benchmark's, and `--iterations=N`: every benchmark makes exactly N iterations.
#pragma once

#include <malloc.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include "bench/translator_bench/Benchmarks.h"
#include "bench/translator_bench/Fabric.h"
#include "bench/translator_bench/OutputText.h"
#include "bench/translator_bench/Scale.h"
#include "platform/Vel/SlabPool.h"

namespace Bench {

#ifdef __clang__
inline constexpr char const * kCompiler = __VERSION__;
#else
inline constexpr char const * kCompiler = "GCC " __VERSION__;
#endif

// Of the pool only what is in slabs counts: the rest has not been touched, or waits to be used again.
inline std::size_t heapBytesInUse() {
    auto const heap = ::mallinfo2();
    auto const pool = Vel::SlabPool::usage();
    return heap.uordblks + heap.hblkhd - pool.held + pool.inSlabs;
}

template <class Subject>
int printMemory(unsigned hosts) {
    // A mapping of its own counts with what lies around it to align it, which nobody touches.
    ::mallopt(M_MMAP_MAX, 0);
    Fabric const fabric(hosts);
    std::size_t const nothing = heapBytesInUse();
    Subject subject(fabric);
    std::size_t const withInput = heapBytesInUse() - subject.input().heapBytes();
    subject.populate();
    std::size_t const withOutput = heapBytesInUse() - subject.input().heapBytes();
    subject.translate();
    std::size_t const withTranslator = heapBytesInUse() - subject.input().heapBytes();
    auto const perPort = [&](std::size_t from, std::size_t to) {
        return static_cast<double>(to - from) / fabric.ports();
    };
    std::printf("%u hosts, %u ports; heap bytes per port: input %.0f, output %.0f, translator %.0f\n", hosts,
                fabric.ports(), perPort(nothing, withInput), perPort(withInput, withOutput),
                perPort(withOutput, withTranslator));
    return EXIT_SUCCESS;
}

template <class Subject>
void printOutput(Subject const & subject) {
    OutputText text;
    subject.write(text);
    text.print(std::cout);
}

// One leaf, which is the local host, and some ports of the others; not both ends of a link.
template <class Subject>
void removeSome(Fabric const & fabric, Subject & subject) {
    subject.input().hostDel(0);
    for (unsigned port = Fabric::kPorts; port < fabric.ports() / 2; port += 3) {
        subject.input().portDel(fabric.port(port));
    }
}

template <class Subject>
void changeSomeOfAll(Fabric const & fabric, Subject & subject) {
    auto const steps = [&]<class Workload>(std::type_identity<Workload>, unsigned count) {
        Workload workload(subject, fabric);
        Clock unused;
        for (unsigned i = 0; i < count; ++i) workload.step(unused);
    };
    using All = Workloads<Subject>;
    unsigned const ports = fabric.ports();
    steps(std::type_identity<typename All::HostChurn>(), fabric.hosts() / 2);
    steps(std::type_identity<typename All::PortChurn>(), ports / 2);
    steps(std::type_identity<typename All::TypeChange>(), ports * 4 / 3);
    steps(std::type_identity<typename All::PortGroupChange>(), ports / 2);
    steps(std::type_identity<typename All::MemberPortChange>(), ports / 4);
    steps(std::type_identity<typename All::EdgeFlagChange>(), ports / 3);
    steps(std::type_identity<typename All::HostnameChange>(), fabric.hosts() / 2);
}

template <class Subject>
int printOutputAfterChanges(unsigned hosts) {
    Fabric const fabric(hosts);
    Subject subject(fabric);
    subject.translate();
    changeSomeOfAll(fabric, subject);
    printOutput(subject);
    return EXIT_SUCCESS;
}

template <class Subject>
int printOutputAtTheEnd(unsigned hosts) {
    Fabric const fabric(hosts);
    Subject subject(fabric);
    subject.translate();
    changeSomeOfAll(fabric, subject);
    std::cout << "after removals:\n";
    removeSome(fabric, subject);
    printOutput(subject);
    std::cout << "after the translator:\n";
    subject.dropTranslator();
    printOutput(subject);
    return EXIT_SUCCESS;
}

template <class Number>
std::optional<Number> numberIn(std::string_view text) {
    Number number{};
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number <= 0) return std::nullopt;
    return number;
}

inline int refuse(std::string_view argument, char const * expected) {
    std::cerr << "translator_bench: " << argument << ": expected " << expected << '\n';
    return 2;
}

// Takes `--iterations=N` out of the arguments: 0 when it is not there, nothing when there is no number in it.
inline std::optional<std::int64_t> takeIterations(int & argc, char ** argv) {
    constexpr std::string_view kIterations = "--iterations=";
    std::int64_t iterations = 0;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        std::string_view const argument = argv[i];
        if (!argument.starts_with(kIterations)) {
            argv[kept++] = argv[i];
            continue;
        }
        auto const number = numberIn<std::int64_t>(argument.substr(kIterations.size()));
        if (!number) return std::nullopt;
        iterations = *number;
    }
    argc = kept;
    return iterations;
}

template <class Subject, class Peer>
int runBenchmarks(int argc, char ** argv, std::string const & peerPrefix) {
    // Freed memory stays in the heap: no page faults in the timed parts, whatever lies at its end.
    ::mallopt(M_TRIM_THRESHOLD, -1);
    ::mallopt(M_MMAP_MAX, 0);
    auto const iterations = takeIterations(argc, argv);
    if (!iterations) return refuse("--iterations", "a number of iterations");
    registerBenchmarks<Subject>("", *iterations);
    registerBenchmarks<Peer>(peerPrefix, *iterations);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    Prepared::drop();
    return EXIT_SUCCESS;
}

// `Subject` is what is measured, `Peer` what runs beside it under names that begin with `peerPrefix`.
template <class Subject, class Peer>
int run(int argc, char ** argv, std::string const & peerPrefix) {
    struct Mode {
        std::string_view option;
        int (*run)(unsigned hosts);
    };
    constexpr Mode kModes[] = {
        {"--memory", printMemory<Subject>},
        {"--memory-peer", printMemory<Peer>},
        {"--dump", printOutputAfterChanges<Subject>},
        {"--dump-peer", printOutputAfterChanges<Peer>},
        {"--dump-end", printOutputAtTheEnd<Subject>},
        {"--dump-end-peer", printOutputAtTheEnd<Peer>},
        {"--scale", [](unsigned hosts) { return printScale(hosts, phasesOf<Subject>); }},
    };
    std::string_view const first = argc > 1 ? argv[1] : "";
    if (first == "--compiler") {
        std::cout << kCompiler << '\n';
        return EXIT_SUCCESS;
    }
    for (auto const & mode : kModes) {
        if (first != mode.option) continue;
        auto const hosts = argc == 3 ? numberIn<unsigned>(argv[2]) : std::nullopt;
        if (!hosts || *hosts % 2 != 0) return refuse(first, "an even number of hosts after it, and no more");
        return mode.run(*hosts);
    }
    return runBenchmarks<Subject, Peer>(argc, argv, peerPrefix);
}

}  // namespace Bench
