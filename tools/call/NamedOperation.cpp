#include "tools/call/NamedOperation.h"

#include <span>

namespace TopologyTools {
namespace {

using Vel::GenericIf;
using Vel::VelArg;
using Vel::VelAttr;

// What an operation takes.
std::vector<VelArg> table(Vel::AttributeOperation operation, VelAttr const & attr) {
    VelArg const value{attr.name().data(), attr.type()};
    std::vector<VelArg> listed(attr.args().begin(), attr.args().end());
    switch (operation) {
    case Vel::kRead: return {};
    case Vel::kSet: return {value};
    case Vel::kCall: return listed;
    // A member is made of what its collection lists, the key first; reactors follow objects that are there
    // already.
    case Vel::kAdd: return listed.empty() ? std::vector{value} : listed;
    case Vel::kLookUp:
    case Vel::kRemove:
    case Vel::kIterate: return {{attr.keyName().data(), attr.keyType()}};
    }
    return {};
}

}  // namespace

Vel::AttributeOperation plainOperation(VelAttr const & attr) {
    switch (attr.kind()) {
    case VelAttr::Kind::function: return Vel::kCall;
    case VelAttr::Kind::collection:
    case VelAttr::Kind::valueCollection: return Vel::kIterate;
    default: return Vel::kRead;
    }
}

CallAnswer perform(NamedOperation const & operation, VelAttr const & attr, GenericIf const & object,
                   NamedObjects const & objects) {
    if (!attr.offers(operation.operation)) {
        Vel::GenericIfImpl::throwOpNotSupportedException({operation.operation, &attr});
    }
    std::string const where = std::string(attr.owner()->name()) + "::" + std::string(attr.name());
    std::vector<VelArg> const takes = table(operation.operation, attr);
    std::vector<GenericIf> args(operation.words.size());
    bool const isWalk = operation.operation == Vel::kIterate;
    if (!isWalk || !args.empty()) {
        Vel::GenericIfImpl::checkArgumentCount(where, takes, args, takes.size());
    }
    for (std::size_t i = 0; i < args.size(); ++i) {
        args[i] = objects.argument(where, takes[i], operation.words[i]);
    }
    CallAnswer answer;
    if (!isWalk) {
        answer.value = object.operate({operation.operation, &attr}, args);
        return answer;
    }
    auto const members =
        args.empty() ? object.members(attr.name()) : object.members(attr.name(), args.front());
    for (auto const & entry : members) answer.entries.push_back({entry.key(), entry.object()});
    return answer;
}

}  // namespace TopologyTools
