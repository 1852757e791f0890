#include "tools/cli/LoadedTopology.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/Vel/GenericIf.h"
#include "tools/document/DocumentReader.h"
#include "tools/import/ModelBuilder.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

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
