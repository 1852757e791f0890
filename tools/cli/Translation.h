#pragma once

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tools/cli/LoadedTopology.h"
#include "translator/V2Sm.h"

namespace TopologyTools {

// Whether the translator follows a version-2 model while it is filled, or meets it full.
enum class Attach { before, after };

// A version-2 model and the version-3 model that the translator has made of it, and keeps in step with it.
struct Translation {
    NetworkTopology::StatusV2::Ptr v2;
    NetworkTopologyV3::Status::Ptr v3;
    NetworkTopologyAggregator::V2Sm::Ptr translator;  // What it has made goes when it goes.
};

Translation translate(Fill const & fill, Attach attach);

}  // namespace TopologyTools
