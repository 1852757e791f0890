#pragma once

#include <functional>
#include <vector>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tools/cli/InputFile.h"
#include "tools/import/Importer.h"
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

// Fills an empty version-2 model.
using Fill = std::function<void(NetworkTopology::StatusV2 &)>;

Translation translate(Fill const & fill, Attach attach);

// A topology that has been read and checked, but stands in no model yet.
struct LoadedTopology {
    Fill fill;
    std::vector<Diagnostic> diagnostics;
};

// Reads a version-2 document, or a topology in another format, as which one `options` say or the bytes look.
// Throws InputError.
LoadedTopology readTopology(InputFile const & file, ImportOptions const & options);

}  // namespace TopologyTools
