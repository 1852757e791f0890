#include <memory>
#include <string>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/document/Schema.h"

namespace TopologyTools {

Subcommand schemaCommand(CLI::App & program) {
    CLI::App * const command = program.add_subcommand("schema", "Print the JSON Schema of documents");
    auto const model = std::make_shared<std::string>();
    addChoice(*command, "MODEL", *model, {"v2", "v3"}, "v2: what translate reads; v3: what it prints as JSON")
        ->required();
    return {command, [model] {
                Vel::VelType const & root = *model == "v2" ? NetworkTopology::StatusV2::_velType
                                                           : NetworkTopologyV3::Status::_velType;
                Output("-").write(schemaOf(root).dump(2) + '\n');
                return kDone;
            }};
}

}  // namespace TopologyTools
