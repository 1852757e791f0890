// What a fabric of any size costs, phase by phase: loading the input, translating it, changes of each kind,
// and the end of the translator. Each size runs in a process of its own, so that memory is that of one model.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "bench/translator_bench/Benchmarks.h"
#include "bench/translator_bench/Fabric.h"

namespace Bench {

inline constexpr unsigned kScaleReference = 4096;

// Of each kind, on targets from all over the model.
inline constexpr unsigned kScaleChanges = 1u << 15;

struct Phase {
    std::string name;
    double seconds;
    double units;  // Ports or changes.
    // Of the process, when the phase has ended: now, and the most so far.
    double residentMiB, peakMiB;

    double nsPerUnit() const { return seconds * 1e9 / units; }
};

// The phases as they go by, with a progress bar where standard error is a terminal.
class PhaseLog {
public:
    PhaseLog(unsigned hosts, unsigned phases);

    // `timed()` returns the seconds that count.
    void phase(char const * name, double units, std::function<double()> const & timed);
    std::vector<Phase> const & phases() const { return phases_; }

private:
    void progress(char const * name) const;

    unsigned const hosts_;
    unsigned const expected_;
    std::vector<Phase> phases_;
};

template <class Work>
double secondsOf(Work const & work) {
    auto const start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <class Subject>
std::vector<Phase> phasesOf(unsigned hosts) {
    Fabric const fabric(hosts, kScaleChanges);
    std::optional<Subject> subject;
    unsigned phases = 3;
    forEachWorkload<Subject>(
        [&]<class Workload>(std::type_identity<Workload>) { phases += Workload::kTranslated; });
    PhaseLog log(hosts, phases);
    log.phase("load", fabric.ports(), [&] { return secondsOf([&] { subject.emplace(fabric); }); });
    log.phase("translate", fabric.ports(), [&] { return secondsOf([&] { subject->translate(); }); });
    forEachWorkload<Subject>([&]<class Workload>(std::type_identity<Workload>) {
        if constexpr (Workload::kTranslated) {
            log.phase(Workload::kName, kScaleChanges, [&] {
                Workload workload(*subject, fabric);
                Clock unused;
                return secondsOf([&] {
                    for (unsigned made = 0; made < kScaleChanges; made += Workload::changes) {
                        workload.step(unused);
                    }
                });
            });
        }
    });
    log.phase("teardown", fabric.ports(), [&] { return secondsOf([&] { subject->dropTranslator(); }); });
    return log.phases();
}

// Prints the phases for `hosts` hosts beside those for the reference, each in a process of its own; returns
// the exit status.
int printScale(unsigned hosts, std::function<std::vector<Phase>(unsigned hosts)> const & phasesOf);

}  // namespace Bench
