#include "tools/cli/Translation.h"

#include <memory>
#include <string>
#include <utility>

#include "platform/Vel/GenericIf.h"
#include "tools/document/DocumentReader.h"
#include "tools/import/ModelBuilder.h"
#include "tools/json/LocatedJson.h"

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

LoadedTopology readTopology(InputFile const & file, ImportOptions const & options) {
    std::optional<std::string> format = options.from;
    if (!format) {
        auto const recognised = recognise(file.bytes);
        if (!recognised) {
            throw InputError(
                file.name, {},
                file.bytes.empty()
                    ? "is empty; expected a topology"
                    : "format not recognised; expected a version-2 document, RFC 8345, Graphviz or "
                      "GraphML, or --from to name the format");
        }
        format = *recognised;
    }
    if (*format == ownDocumentFormat) {
        if (options.network) {
            throw InputError(file.name, {},
                             "--network is for files with several networks; this is a version-2 document");
        }
        auto const document = std::make_shared<JsonValue const>(parseJson(file.bytes, file.name));
        return {[document, name = file.name](NetworkTopology::StatusV2 & status) {
                    loadDocument(*document, name,
                                 Vel::GenericIf::of(NetworkTopology::StatusV2::Ptr(&status)));
                },
                {}};
    }
    ImportResult result = importTopology(file.bytes, file.name, options);
    return {[operations = std::move(result.operations)](NetworkTopology::StatusV2 & status) {
                applyOperations(operations, status);
            },
            std::move(result.diagnostics)};
}

}  // namespace TopologyTools
