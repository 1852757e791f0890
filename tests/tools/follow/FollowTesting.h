// What the tests of recording share.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tools/document/Patch.h"
#include "tools/follow/ModelRecorder.h"
#include "translator/V2Sm.h"

namespace TopologyTools {

// A reader of operations, as RFC 6902 has them and stricter: what is added was
// not there before. Throws std::runtime_error for an operation that cannot be
// applied.
void applyOperation(nlohmann::json & document, PatchOperation const & operation);

// A version-2 model, the translator and the version-3 model, whose changes are
// recorded and replayed.
class Recording {
public:
    // The version-2 document that the model begins with; the translator is attached before.
    explicit Recording(std::string const & document = "{}");

    // Applies one change to the version-2 document, and returns the operations
    // that it led to, a line each. Expects that they lead to the version-3
    // document as it is then. Throws InputError.
    std::string apply(std::string const & change);

    nlohmann::json const & document() const { return document_; }

    NetworkTopology::StatusV2::Ptr const v2 = NetworkTopology::StatusV2::StatusV2Is();
    NetworkTopologyV3::Status::Ptr const v3 = NetworkTopologyV3::Status::StatusIs();
    NetworkTopologyAggregator::V2Sm::Ptr const translator;
    std::vector<PatchOperation> told;
    ModelRecorder recorder;

private:
    ModelPatcher patcher_;
    nlohmann::json document_;  // As a reader has it.
};

// The operations as lines, without a cause: `add /host/a {"hostname":"A"}`.
std::string spelled(std::vector<PatchOperation> const & operations);

}  // namespace TopologyTools
