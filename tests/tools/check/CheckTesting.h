// What the tests of the checker share.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/NetworkTopology/StatusV2.h"
#include "tools/check/Checker.h"
#include "tools/document/Patch.h"

namespace TopologyTools {

inline std::string described(std::vector<Difference> const & differences) {
    auto const shown = [](std::optional<nlohmann::json> const & value) {
        return value ? value->dump() : std::string("nothing");
    };
    std::string text;
    for (Difference const & d : differences) {
        text += (d.isFault() ? std::string("FAULT") : std::string(ruleText(d.why.rule).id)) + " since " +
                std::to_string(d.why.line) + " at " + d.path + ": present " + shown(d.present) +
                ", expected " + shown(d.expected) + ", called for " + shown(d.calledFor) + '\n';
    }
    return text;
}

inline std::vector<Difference> faultsAmong(std::vector<Difference> const & differences) {
    std::vector<Difference> faults;
    for (Difference const & d : differences) {
        if (d.isFault()) faults.push_back(d);
    }
    return faults;
}

// Applies lines to a model of which nobody else removes anything.
inline void applyLines(NetworkTopology::StatusV2 & v2, std::vector<std::string> const & lines) {
    ModelPatcher patcher(Vel::GenericIf::of(NetworkTopology::StatusV2::Ptr(&v2)));
    for (std::size_t i = 0; i < lines.size(); ++i) patcher.applyLine(lines[i], "lines", i + 1);
}

// A version-2 model under a checker, changed by lines or through its own mutators.
class Checked {
public:
    // The model may hold something before the checker is attached.
    explicit Checked(NetworkTopology::StatusV2::Ptr model = NetworkTopology::StatusV2::StatusV2Is())
        : v2(std::move(model)) {}

    NetworkTopology::StatusV2::Ptr const v2;
    Checker checker{v2};

    // What is changed from now on belongs to the next line.
    Line nextLine() {
        checker.lineIs(++line_);
        return line_;
    }
    void apply(std::string const & line) {
        nextLine();
        patcher_.applyLine(line, "changes", line_);
    }
    void apply(std::vector<nlohmann::ordered_json> const & lines) {
        for (auto const & line : lines) apply(line.dump());
    }

private:
    ModelPatcher patcher_{Vel::GenericIf::of(v2)};
    Line line_ = 0;
};

}  // namespace TopologyTools
