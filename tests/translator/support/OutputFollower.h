// A follower of a whole version-3 model: of the status and of every object in it, from the moment when the
// object enters.
//
// Usage
//     OutputFollower follower(v3, [&](std::string const & change) { ... });
//
// `change` is the callback with the object that it is about: "/ onHost('leaf-1')", "/host/leaf-1
// onHostname()". Of a change of one key only the keyed callback is told. What is told may do anything but end
// the follower; it may throw.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "platform/NetworkTopologyV3/Status.h"

namespace TestSupport {

class OutputFollower {
public:
    using Callback = std::function<void(std::string const & change)>;

    OutputFollower(NetworkTopologyV3::Status::Ptr const & status, Callback callback);
    ~OutputFollower();
    OutputFollower(OutputFollower const &) = delete;
    OutputFollower & operator=(OutputFollower const &) = delete;

    // How many changes there have been.
    std::size_t changes() const { return changes_; }

    // For its reactors.
    void tell(std::string const & change);

private:
    class StatusReactor;

    Callback const callback_;
    std::size_t changes_ = 0;
    Vel::Ptr<StatusReactor> const status_;
};

}  // namespace TestSupport
