#include "tools/cli/TypeNames.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "tools/format/NaturalOrder.h"
#include "tools/json/InputError.h"

namespace TopologyTools {
namespace {

using Vel::VelType;

// Whether `type` is called that, with or without its namespace.
bool isNamed(VelType const & type, std::string_view name) {
    std::string_view const full = type.name();
    return full == name ||
           (full.ends_with(name) && full.substr(0, full.size() - name.size()).ends_with("::"));
}

}  // namespace

std::vector<VelType const *> registeredTypes() {
    std::vector<VelType const *> types = Vel::typeNodes();
    std::sort(types.begin(), types.end(),
              [](VelType const * a, VelType const * b) { return NaturalLess()(a->name(), b->name()); });
    return types;
}

std::vector<VelType const *> typesNamed(std::string const & name) {
    std::vector<VelType const *> types = registeredTypes();
    std::erase_if(types, [&](VelType const * type) { return !isNamed(*type, name); });
    if (types.empty()) {
        throw std::invalid_argument("no type " + quotedText(name) +
                                    "; without TYPE, inspect prints all that there are");
    }
    return types;
}

VelType const & typeNamed(std::string const & name) {
    std::vector<VelType const *> const types = typesNamed(name);
    if (types.size() == 1) return *types.front();
    std::string all;
    for (VelType const * type : types) {
        if (type->name() == name) return *type;
        all += (all.empty() ? "" : ", ") + std::string(type->name());
    }
    throw std::invalid_argument("type " + quotedText(name) + " is ambiguous; expected one of " + all);
}

}  // namespace TopologyTools
