// A translator under examination: compares at any time what it has made with what its version-2 model calls
// for, and tells differences that follow from how it works from faults.
//
// Usage
//     auto const v2 = NetworkTopology::StatusV2::StatusV2Is();
//     Checker checker(v2);           // makes the translator; v2 may hold something already
//     for (...) {
//         checker.lineIs(++line);    // what changes from now on
//         ...                        // changes of v2
//     }
//     for (Difference const & difference : checker.differences()) ...
//
// What version 2 calls for is what a fresh load of its present document gives, with the translator attached
// before. A place that is not as the required behaviour makes it is a fault, also where it is as called for.
// So is a difference that nothing explains.
//
// Not supported
//     Changes of the translator other than those below; writing the version-3 model. A translator that is
//     retired as a whole, another version-3 status, and one that held something before cannot come about: a
//     Checker makes its translator and an empty version-3 status itself, and lets neither be replaced.
#pragma once

#include <vector>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tools/check/Difference.h"
#include "tools/check/Expectation.h"
#include "translator/V2Sm.h"

namespace TopologyTools {

class Checker {
public:
    explicit Checker(NetworkTopology::StatusV2::PtrConst const & v2);

    NetworkTopologyV3::Status::Ptr const & v3() const { return v3_; }

    void lineIs(Line line) { expectation_.lineIs(line); }
    // What the translator offers besides following its input. Null unbinds.
    void inputIs(NetworkTopology::StatusV2::PtrConst const & v2);
    void outputIsBoundIs(bool bound);
    void notificationActiveIs(bool active);

    // Throws DocumentError when a model cannot be shown as a document.
    std::vector<Difference> differences() const;

private:
    NetworkTopologyV3::Status::Ptr const v3_;
    NetworkTopologyAggregator::V2Sm::Ptr const translator_;
    Expectation expectation_;
};

}  // namespace TopologyTools
