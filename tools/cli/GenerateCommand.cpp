#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "tools/cli/Output.h"
#include "tools/cli/OutputStream.h"
#include "tools/cli/Subcommand.h"
#include "tools/generate/FabricDocument.h"

namespace TopologyTools {
namespace {

int generate(FabricNumbers const & numbers) {
    Output output("-");
    OutputStream stream(output);
    writeFabric(numbers, stream);
    stream.flush();
    return kDone;
}

std::string between(std::uint64_t fewest, std::uint64_t most) {
    return std::to_string(fewest) + " to " + std::to_string(most);
}

}  // namespace

Subcommand generateCommand(CLI::App & program) {
    CLI::App * const command =
        program.add_subcommand("generate", "Print a leaf-spine fabric as a version-2 document");
    auto const numbers = std::make_shared<FabricNumbers>();
    addNumber(*command, "--hosts", numbers->hosts, Fabric::fewestHosts, Fabric::mostHosts,
              "How many leaves and spines there are together, " +
                  between(Fabric::fewestHosts, Fabric::mostHosts))
        ->required();
    addNumber(*command, "--ports", numbers->portsPerHost, Fabric::fewestPorts, Fabric::mostPorts,
              "How many ports each of them has, " + between(Fabric::fewestPorts, Fabric::mostPorts) + ";\n" +
                  std::to_string(numbers->portsPerHost) + " if not given");
    addNumber(*command, "--seed", numbers->seed, 0, std::numeric_limits<std::uint64_t>::max(),
              "Another number gives other cables, addresses and states;\n" + std::to_string(numbers->seed) +
                  " if not given");
    return {command, [numbers] { return generate(*numbers); }};
}

}  // namespace TopologyTools
