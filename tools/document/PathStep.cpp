#include "tools/document/PathStep.h"

#include "tools/json/JsonPointer.h"

namespace TopologyTools {

std::string pointerTo(PathStep const * last, std::string_view base) {
    return last ? joinJsonPointer(pointerTo(last->parent, base), last->token) : std::string(base);
}

}  // namespace TopologyTools
