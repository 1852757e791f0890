#include "bench/translator_bench/Scale.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace Bench {

namespace {

double memoryMiB(std::string_view field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(field)) return std::strtod(line.c_str() + field.size(), nullptr) / 1024;
    }
    return 0;
}

void send(std::FILE * out, std::vector<Phase> const & phases) {
    for (auto const & phase : phases) {
        std::fprintf(out, "%s %.9g %.9g %.9g %.9g\n", phase.name.c_str(), phase.seconds, phase.units,
                     phase.residentMiB, phase.peakMiB);
    }
}

std::vector<Phase> receive(std::FILE * in) {
    std::vector<Phase> phases;
    char name[64];
    Phase phase;
    while (std::fscanf(in, "%63s %lf %lf %lf %lf", name, &phase.seconds, &phase.units, &phase.residentMiB,
                       &phase.peakMiB) == 5) {
        phase.name = name;
        phases.push_back(phase);
    }
    return phases;
}

// The child leaves without running the destructors of a model that may fill the memory.
[[noreturn]] void runChild(int out, unsigned hosts,
                           std::function<std::vector<Phase>(unsigned)> const & phasesOf) {
    try {
        std::FILE * const file = ::fdopen(out, "w");
        send(file, phasesOf(hosts));
        std::fflush(file);
        ::_exit(EXIT_SUCCESS);
    } catch (std::exception const & failure) {
        std::fprintf(stderr, "\n%s\n", failure.what());
        ::_exit(EXIT_FAILURE);
    }
}

std::vector<Phase> phasesInChild(unsigned hosts,
                                 std::function<std::vector<Phase>(unsigned)> const & phasesOf) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    ::pid_t const child = ::fork();
    if (child < 0) throw std::runtime_error("no process");
    if (child == 0) {
        ::close(ends[0]);
        runChild(ends[1], hosts, phasesOf);
    }
    ::close(ends[1]);
    std::FILE * const in = ::fdopen(ends[0], "r");
    auto phases = receive(in);
    std::fclose(in);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status != 0)
        throw std::runtime_error("a fabric of " + std::to_string(hosts) + " hosts did not end well");
    return phases;
}

void printTable(unsigned hosts, std::vector<Phase> const & phases, std::vector<Phase> const & reference) {
    std::printf(
        "%u hosts, %u ports; ns are per port, or per change for what is called a change or churn.\n\n", hosts,
        Fabric(hosts).ports());
    std::printf("| phase | seconds | ns | resident MiB | peak MiB | ns, %u hosts | times that |\n",
                kScaleReference);
    std::printf("| --- | ---: | ---: | ---: | ---: | ---: | ---: |\n");
    for (std::size_t i = 0; i < phases.size(); ++i) {
        auto const & phase = phases[i];
        std::printf("| %s | %.3f | %.0f | %.0f | %.0f | %.0f | %.2f |\n", phase.name.c_str(), phase.seconds,
                    phase.nsPerUnit(), phase.residentMiB, phase.peakMiB, reference[i].nsPerUnit(),
                    phase.nsPerUnit() / reference[i].nsPerUnit());
    }
}

}  // namespace

PhaseLog::PhaseLog(unsigned hosts, unsigned phases) : hosts_(hosts), expected_(phases) {}

void PhaseLog::phase(char const * name, double units, std::function<double()> const & timed) {
    progress(name);
    double const seconds = timed();
    phases_.push_back({name, seconds, units, memoryMiB("VmRSS:"), memoryMiB("VmHWM:")});
    if (phases_.size() == expected_) progress("done");
}

void PhaseLog::progress(char const * name) const {
    if (!::isatty(STDERR_FILENO)) return;
    std::string bar(expected_, '.');
    for (std::size_t i = 0; i < phases_.size(); ++i) bar[i] = '#';
    bool const atEnd = phases_.size() == expected_;
    std::fprintf(stderr, "\r\033[K%u hosts [%s] %s%s", hosts_, bar.c_str(), name, atEnd ? "\n" : "");
}

int printScale(unsigned hosts, std::function<std::vector<Phase>(unsigned)> const & phasesOf) {
    try {
        auto const reference = phasesInChild(kScaleReference, phasesOf);
        printTable(hosts, phasesInChild(hosts, phasesOf), reference);
        return EXIT_SUCCESS;
    } catch (std::exception const & failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return EXIT_FAILURE;
    }
}

}  // namespace Bench
