// A translator at work, for tests of its reactors.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/translator/support/OutputFollower.h"
#include "tests/translator/support/Topologies.h"
#include "translator/V2Sm.h"

namespace TestSupport {

// Host "a" with one of everything (`fillWithOneOfEach`) and its translator.
struct FollowedScene {
    using V2Sm = NetworkTopologyAggregator::V2Sm;

    FollowedScene() {
        fillWithOneOfEach(*models.v2);
        sm = NetworkTopologyAggregator::v2SmFactory("sm", models.v2, models.v3);
        hostV2 = models.v2->host("a");
        host = sm->host("a");
    }

    // The version-3 host "a"; null when it is not there.
    NetworkTopologyV3::Host::Ptr hostV3() const { return models.v3->host("a"); }

    // Does `what` inside the change of the output that is told as `change`, the first time that it is.
    std::unique_ptr<OutputFollower> inside(std::string change, std::function<void()> what) const {
        return std::make_unique<OutputFollower>(models.v3,
                                                [change = std::move(change), what = std::move(what),
                                                 done = false](std::string const & told) mutable {
                                                    if (told == change && !std::exchange(done, true)) what();
                                                });
    }

    Models const models = {};
    V2Sm::Ptr sm;
    NetworkTopology::HostV2::Ptr hostV2;
    V2Sm::VelHost::Ptr host;
};

struct Followed : testing::Test, FollowedScene {};

}  // namespace TestSupport
