#include "tools/document/DocumentReader.h"

#include <stdexcept>

#include "platform/Vel/Exceptions.h"
#include "tools/document/Resolver.h"
#include "tools/document/Shape.h"
#include "tools/document/ValueApplier.h"
#include "tools/document/ValueChecker.h"

namespace TopologyTools {
namespace {

using Vel::GenericIf;

void check(JsonValue const & document, std::string const & fileName, DocumentShape const & shape) {
    Resolver resolver(GenericIf(), shape);
    resolver.plannedIs({}, &document);
    ValueChecker(fileName, {}, resolver).object(document, shape.root());
}

void apply(JsonValue const & document, GenericIf const & root, DocumentShape const & shape) {
    Resolver const resolver(root, shape);
    ValueApplier applier(resolver);
    applier.fill(root, shape.root(), document);
    applier.finish();
}

void requireEmpty(GenericIf const & root, ObjectShape const & shape) {
    for (MemberShape const & member : shape.members) {
        bool holds = false;
        if (member.isCollection()) {
            auto const members = root.members(member.name());
            holds = members.begin() != members.end();
        } else {
            GenericIf const value = member.read(root);
            holds = !value.isNull() && value != member.defaultValue;
        }
        if (holds) {
            throw std::invalid_argument("a document is loaded into an empty " +
                                        std::string(shape.type->name()) + "; this one has a " +
                                        std::string(member.name()));
        }
    }
}

}  // namespace

GenericIf readDocument(JsonValue const & document, std::string const & fileName, std::string_view rootType) {
    Vel::VelType const * const type = Vel::typeNode(rootType);
    if (!type) throw Vel::RangeException("unknown type \"" + std::string(rootType) + '"');
    DocumentShape const shape(*type);
    check(document, fileName, shape);
    GenericIf root = Vel::construct(*type, {});
    apply(document, root, shape);
    return root;
}

void loadDocument(JsonValue const & document, std::string const & fileName, GenericIf const & root) {
    DocumentShape const shape(*root.type());
    requireEmpty(root, shape.root());
    check(document, fileName, shape);
    apply(document, root, shape);
}

}  // namespace TopologyTools
