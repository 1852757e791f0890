#include "tools/document/DocumentWriter.h"

#include <ostream>

#include "platform/Vel/Exceptions.h"

namespace TopologyTools {
namespace {

void render(Vel::GenericIf const & root, JsonSink & sink) {
    if (!root.isObject() || !root.type()) {
        throw Vel::RangeException("expected an object with a type record, found " + root.typeName());
    }
    DocumentShape const shape(*root.type());
    ObjectPaths const paths(root, shape);
    ModelRenderer(sink, paths.pathOf()).object(root, shape.root(), nullptr);
}

}  // namespace

void writeDocument(Vel::GenericIf const & root, std::ostream & out, int indent) {
    JsonTextSink sink(out, indent);
    render(root, sink);
    if (indent >= 0) out << '\n';
}

nlohmann::ordered_json documentTree(Vel::GenericIf const & root) {
    JsonTreeSink sink;
    render(root, sink);
    return sink.takeRoot();
}

}  // namespace TopologyTools
