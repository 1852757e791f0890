#include "tools/cli/Translation.h"

namespace TopologyTools {

Translation translate(Fill const & fill, Attach attach) {
    Translation result;
    result.v2 = NetworkTopology::StatusV2::StatusV2Is();
    result.v3 = NetworkTopologyV3::Status::StatusIs();
    if (attach == Attach::after) fill(*result.v2);
    result.translator = NetworkTopologyAggregator::v2SmFactory("topology-sync", result.v2, result.v3);
    if (attach == Attach::before) fill(*result.v2);
    return result;
}

}  // namespace TopologyTools
