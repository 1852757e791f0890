#include "tests/tools/follow/FollowTesting.h"

#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tools/document/DocumentReader.h"
#include "tools/document/DocumentWriter.h"
#include "tools/follow/FollowVersion3.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using nlohmann::json;

void applyOperation(json & document, PatchOperation const & operation) {
    auto const refuse = [&](char const * why) {
        throw std::runtime_error(std::string(operation.op) + ' ' + operation.path + ": " + why);
    };
    std::vector<std::string> tokens = parseJsonPointer(operation.path);
    json value = operation.value ? json::parse(*operation.value) : json();
    if (operation.value.has_value() != (operation.op != "remove")) refuse("value");
    if (tokens.empty()) {
        if (operation.op != "replace") refuse("the root is replaced only");
        document = std::move(value);
        return;
    }
    std::string const last = tokens.back();
    tokens.pop_back();
    json * object = &document;
    for (std::string const & token : tokens) {
        if (!object->is_object() || !object->contains(token)) refuse("no parent");
        object = &object->at(token);
    }
    if (!object->is_object()) refuse("the parent is no object");
    if (object->contains(last) == (operation.op == "add")) refuse("there already, or not there");
    if (operation.op == "remove")
        object->erase(last);
    else
        (*object)[last] = std::move(value);
}

namespace {

NetworkTopologyAggregator::V2Sm::Ptr attach(NetworkTopology::StatusV2::Ptr const & v2,
                                            NetworkTopologyV3::Status::Ptr const & v3,
                                            std::string const & document) {
    auto const translator = NetworkTopologyAggregator::v2SmFactory("test", v2, v3);
    loadDocument(parseJson(document, "v2.json"), "v2.json", Vel::GenericIf::of(v2));
    return translator;
}

}  // namespace

Recording::Recording(std::string const & document)
    : translator(attach(v2, v3, document)),
      recorder(Vel::GenericIf::of(v3), followVersion3,
               [this](PatchOperation operation) { told.push_back(std::move(operation)); }),
      patcher_(Vel::GenericIf::of(v2)) {
    applyOperation(document_, recorder.whole());
    EXPECT_EQ(document_, json(documentTree(Vel::GenericIf::of(v3))));
}

std::string Recording::apply(std::string const & change) {
    told.clear();
    patcher_.applyLine(change, "changes", 1);
    std::string const inTheOrderTold = spelled(told);
    json asTold = document_;
    for (PatchOperation const & operation : told) applyOperation(asTold, operation);
    sortEntries(told);
    for (PatchOperation const & operation : told) applyOperation(document_, operation);
    EXPECT_EQ(asTold, document_) << inTheOrderTold;
    EXPECT_EQ(document_, json(documentTree(Vel::GenericIf::of(v3)))) << change << '\n' << inTheOrderTold;
    return spelled(told);
}

std::string spelled(std::vector<PatchOperation> const & operations) {
    std::string lines;
    for (PatchOperation const & operation : operations) {
        lines += std::string(operation.op) + ' ' + operation.path;
        if (operation.value) lines += ' ' + *operation.value;
        lines += '\n';
    }
    return lines;
}

}  // namespace TopologyTools
