#include "tools/check/Checker.h"

#include <sstream>
#include <string>
#include <utility>

#include "tools/check/Comparison.h"
#include "tools/cli/Translation.h"
#include "tools/document/DocumentWriter.h"

namespace TopologyTools {
namespace {

std::string document(Vel::GenericIf const & status) {
    std::ostringstream out;
    writeDocument(status, out, -1);
    return std::move(out).str();
}

// What a fresh load of a version-2 document gives.
std::string freshTranslation(std::string const & input) {
    ImportOptions const options{.from = std::string(ownDocumentFormat), .network = {}};
    LoadedTopology const topology = readTopology({"version-2 model", input}, options);
    return document(Vel::GenericIf::of(translate(topology.fill, Attach::before).v3));
}

}  // namespace

Checker::Checker(NetworkTopology::StatusV2::PtrConst const & v2)
    : v3_(NetworkTopologyV3::Status::StatusIs()),
      translator_(NetworkTopologyAggregator::v2SmFactory("topology-sync", v2, v3_)),
      expectation_(v2) {}

void Checker::inputIs(NetworkTopology::StatusV2::PtrConst const & v2) {
    translator_->v2Is(v2);
    expectation_.inputIs(v2);
}

void Checker::outputIsBoundIs(bool bound) {
    translator_->v3Is(bound ? v3_ : nullptr);
    expectation_.outputIsBoundIs(bound);
}

void Checker::notificationActiveIs(bool active) {
    translator_->hasNotificationActiveIs(active);
    expectation_.notificationActiveIs(active);
}

std::vector<Difference> Checker::differences() const {
    using nlohmann::json;
    NetworkTopology::StatusV2::PtrConst const v2(&expectation_.input());
    std::string const input = document(Vel::GenericIf::of(v2));
    return compareDocuments(json::parse(document(Vel::GenericIf::of(v3_))), expectation_,
                            json::parse(freshTranslation(input)), json::parse(input));
}

}  // namespace TopologyTools
