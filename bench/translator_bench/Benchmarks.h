// The benchmarks of one translator, and the command line of the program that runs them.
//
// `Subject` is a translator with both its models:
//     explicit Subject(Fabric const &)    the input, complete, and an empty output
//     input()                             the input's InputWriter
//     setType(port, number), setGroup(port, group), addMember(group, port), removeMember(group, port),
//     setFlag(edge, destination, flag), setHostname(host, text)      one change each
//     populate()                          fills the output and leaves no translator
//     translate(), dropTranslator(), dropOutput()
//     write(OutputText &)                 the output
//
// A workload is made on a subject, untimed; `step()` makes the changes of `changes` iterations. What is left
// out of the time is left out of the counts of callgrind, too.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#endif

#include "bench/translator_bench/Fabric.h"

namespace Bench {

// Interrupts what is measured, the time and the counts of callgrind, for what is not.
class Clock {
public:
    explicit Clock(benchmark::State * state = nullptr) noexcept : state_(state) {}

    void stop() {
        CALLGRIND_STOP_INSTRUMENTATION;
        if (state_) state_->PauseTiming();
    }
    void start() {
        if (state_) state_->ResumeTiming();
        CALLGRIND_START_INSTRUMENTATION;
    }

private:
    benchmark::State * state_;  // Null where nobody measures.
};

// The targets of a workload, visited one after the other, over and over: the working set is the whole model,
// or as much of it as the fabric lets a workload visit.
template <class Target>
class Round {
public:
    template <class TargetOf>
    Round(Fabric const & fabric, unsigned targets, TargetOf const & targetOf) {
        std::vector<std::uint32_t> const order = fabric.visitingOrder(targets);
        targets_.reserve(order.size());
        for (std::uint32_t const i : order) targets_.push_back(targetOf(i));
    }

    Target const & next() {
        if (at_ == targets_.size()) {
            at_ = 0;
            ++round_;
        }
        return targets_[at_++];
    }
    // Of the target that `next` gave last; the first round is 1.
    unsigned round() const noexcept { return round_; }

private:
    std::vector<Target> targets_;
    std::size_t at_ = 0;
    unsigned round_ = 1;
};

template <class Subject>
struct Workloads {
    using Port = typename Subject::Port;
    using PortGroup = typename Subject::PortGroup;
    using Host = typename Subject::Host;
    using Edge = typename Subject::Edge;
    using Text = typename Subject::Text;

    // The translator is made on a complete input. Once before that, so that no run pays for the first use of
    // the heap.
    struct FullTranslation {
        static constexpr char const * kName = "full_translation";
        static constexpr bool kTranslated = false;
        Subject & subject;
        unsigned changes;

        FullTranslation(Subject & s, Fabric const & fabric) : subject(s), changes(fabric.ports()) {
            subject.translate();
            drop();
        }
        void step(Clock & clock) {
            subject.translate();
            clock.stop();
            drop();
            clock.start();
        }
        void drop() {
            subject.dropTranslator();
            subject.dropOutput();
        }
    };

    struct TypeChange {
        static constexpr char const * kName = "type_change";
        static constexpr bool kTranslated = true;
        static constexpr unsigned changes = 1;
        Subject & subject;
        Round<Port> targets;

        TypeChange(Subject & s, Fabric const & fabric)
            : subject(s),
              targets(fabric, fabric.ports(), [&](unsigned i) { return s.input().port(fabric.port(i)); }) {}
        void step(Clock &) {
            Port const & port = targets.next();
            subject.setType(port, 1 + targets.round() % 3);
        }
    };

    struct PortGroupChange {
        static constexpr char const * kName = "port_group_change";
        static constexpr bool kTranslated = true;
        static constexpr unsigned changes = 1;
        struct Target {
            Port port;
            PortGroup evenRounds, oddRounds;
        };
        Subject & subject;
        Round<Target> targets;

        PortGroupChange(Subject & s, Fabric const & fabric)
            : subject(s), targets(fabric, fabric.ports(), [&](unsigned i) {
                  auto const at = fabric.port(i);
                  auto const further = [&](unsigned steps) {
                      unsigned const now = Fabric::groupOf(at.number).value_or(0);
                      return s.input().portGroup(at.host, (now + steps) % Fabric::kGroups);
                  };
                  return Target{s.input().port(at), further(3), further(8)};
              }) {}
        void step(Clock &) {
            Target const & target = targets.next();
            subject.setGroup(target.port, targets.round() % 2 ? target.oddRounds : target.evenRounds);
        }
    };

    // Ports that are in no group enter one of their host, and leave it again.
    struct MemberPortChange {
        static constexpr char const * kName = "member_port_change";
        static constexpr bool kTranslated = true;
        static constexpr unsigned changes = 2;
        struct Target {
            Port port;
            PortGroup group;
        };
        Subject & subject;
        Round<Target> targets;

        MemberPortChange(Subject & s, Fabric const & fabric)
            : subject(s), targets(fabric, fabric.hosts() * Fabric::kFirstMember, [&](unsigned i) {
                  Fabric::Port const at{i / Fabric::kFirstMember, i % Fabric::kFirstMember};
                  return Target{s.input().port(at),
                                s.input().portGroup(at.host, (at.number + at.host) % Fabric::kGroups)};
              }) {}
        void step(Clock &) {
            Target const & target = targets.next();
            subject.addMember(target.group, target.port);
            subject.removeMember(target.group, target.port);
        }
    };

    struct EdgeFlagChange {
        static constexpr char const * kName = "edge_flag_change";
        static constexpr bool kTranslated = true;
        static constexpr unsigned changes = 1;
        struct Target {
            Edge edge;
            Port destination;
        };
        Subject & subject;
        Round<Target> targets;

        EdgeFlagChange(Subject & s, Fabric const & fabric)
            : subject(s), targets(fabric, fabric.ports(), [&](unsigned i) {
                  auto const from = fabric.port(i);
                  return Target{s.input().edge(from), s.input().port(fabric.otherEnd(from))};
              }) {}
        void step(Clock &) {
            Target const & target = targets.next();
            subject.setFlag(target.edge, target.destination, targets.round() % 2 == 0);
        }
    };

    struct PortChurn {
        static constexpr char const * kName = "port_churn";
        static constexpr bool kTranslated = true;
        static constexpr unsigned changes = 1;
        Subject & subject;
        Round<Fabric::Port> targets;

        PortChurn(Subject & s, Fabric const & fabric)
            : subject(s), targets(fabric, fabric.ports(), [&](unsigned i) { return fabric.port(i); }) {}
        void step(Clock &) {
            Fabric::Port const at = targets.next();
            subject.input().portDel(at);
            subject.input().portIs(at);
        }
    };

    struct HostChurn {
        static constexpr char const * kName = "host_churn";
        static constexpr bool kTranslated = true;
        static constexpr unsigned changes = Fabric::kPorts;
        Subject & subject;
        Round<unsigned> targets;

        HostChurn(Subject & s, Fabric const & fabric)
            : subject(s), targets(fabric, fabric.hosts(), [](unsigned i) { return i; }) {}
        void step(Clock &) {
            unsigned const host = targets.next();
            subject.input().hostDel(host);
            subject.input().hostIs(host);
        }
    };

    struct HostnameChange {
        static constexpr char const * kName = "hostname_change";
        static constexpr bool kTranslated = true;
        static constexpr unsigned changes = 1;
        struct Target {
            Host host;
            Text evenRounds, oddRounds;
        };
        Subject & subject;
        Round<Target> targets;

        HostnameChange(Subject & s, Fabric const & fabric)
            : subject(s), targets(fabric, fabric.hosts(), [&](unsigned i) {
                  return Target{s.input().host(i), Text(Fabric::hostname(i)), Text(Fabric::otherHostname(i))};
              }) {}
        void step(Clock &) {
            Target const & target = targets.next();
            subject.setHostname(target.host, targets.round() % 2 ? target.oddRounds : target.evenRounds);
        }
    };

    struct Teardown {
        static constexpr char const * kName = "teardown";
        static constexpr bool kTranslated = false;
        Subject & subject;
        unsigned changes;

        Teardown(Subject & s, Fabric const & fabric) : subject(s), changes(fabric.ports()) {
            subject.translate();
            subject.dropTranslator();
        }
        void step(Clock & clock) {
            clock.stop();
            subject.dropOutput();
            subject.translate();
            clock.start();
            subject.dropTranslator();
        }
    };
};

// Google Benchmark calls a benchmark several times to find out how often to repeat it. All these calls share
// what was prepared; the next benchmark, or the next size, begins with new models.
class Prepared {
public:
    virtual ~Prepared() = default;

    template <class Subject, class Workload>
    static Workload & workload(unsigned hosts);
    static void drop() { current_.reset(); }

private:
    template <class Subject, class Workload>
    struct Of;
    static inline std::unique_ptr<Prepared> current_;
};

template <class Subject, class Workload>
struct Prepared::Of final : Prepared {
    explicit Of(unsigned hosts)
        : fabric(hosts), subject(fabric), workload((translateIfWanted(subject), subject), fabric) {}
    static void translateIfWanted(Subject & subject) {
        if constexpr (Workload::kTranslated) subject.translate();
    }

    Fabric const fabric;
    Subject subject;
    Workload workload;
};

template <class Subject, class Workload>
Workload & Prepared::workload(unsigned hosts) {
    auto * present = dynamic_cast<Of<Subject, Workload> *>(current_.get());
    if (!present || present->fabric.hosts() != hosts) {
        current_.reset();
        auto made = std::make_unique<Of<Subject, Workload>>(hosts);
        present = made.get();
        current_ = std::move(made);
    }
    return present->workload;
}

template <class Subject, class Workload>
void measure(benchmark::State & state) {
    auto & workload = Prepared::workload<Subject, Workload>(static_cast<unsigned>(state.range(0)));
    Clock clock(&state);
    CALLGRIND_START_INSTRUMENTATION;
    while (state.KeepRunningBatch(workload.changes)) workload.step(clock);
    CALLGRIND_STOP_INSTRUMENTATION;
}

// `action(workloadType)` for each of the nine, wrapped in a std::type_identity, in the order of the table.
template <class Subject, class Action>
void forEachWorkload(Action const & action) {
    using All = Workloads<Subject>;
    action(std::type_identity<typename All::FullTranslation>());
    action(std::type_identity<typename All::TypeChange>());
    action(std::type_identity<typename All::PortGroupChange>());
    action(std::type_identity<typename All::MemberPortChange>());
    action(std::type_identity<typename All::EdgeFlagChange>());
    action(std::type_identity<typename All::PortChurn>());
    action(std::type_identity<typename All::HostChurn>());
    action(std::type_identity<typename All::HostnameChange>());
    action(std::type_identity<typename All::Teardown>());
}

// Registers the nine under `prefix`, for 16, 256 and 4096 hosts. `iterations` 0 lets Google Benchmark choose.
template <class Subject>
void registerBenchmarks(std::string const & prefix, std::int64_t iterations) {
    forEachWorkload<Subject>([&]<class Workload>(std::type_identity<Workload>) {
        auto * const registered =
            benchmark::RegisterBenchmark((prefix + Workload::kName).c_str(), measure<Subject, Workload>);
        for (int const hosts : {16, 256, 4096}) registered->Arg(hosts);
        if (iterations != 0) registered->Iterations(iterations);
    });
}

}  // namespace Bench
