#pragma once

#include <functional>
#include <vector>

#include "platform/NetworkTopology/StatusV2.h"
#include "tools/cli/InputFile.h"
#include "tools/import/Importer.h"

namespace TopologyTools {

// Fills an empty version-2 model.
using Fill = std::function<void(NetworkTopology::StatusV2 &)>;

// A topology that has been read and checked, but stands in no model yet.
struct LoadedTopology {
    Fill fill;
    std::vector<Diagnostic> diagnostics;
};

// Reads a version-2 document, or a topology in another format, as which one `options` say or the bytes look.
// Throws InputError.
LoadedTopology readTopology(InputFile const & file, ImportOptions const & options);

}  // namespace TopologyTools
