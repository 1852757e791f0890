// A model as the document that shows it: from JSON Pointers to objects, and back.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/Vel/GenericIf.h"
#include "tools/document/ObjectPaths.h"
#include "tools/document/Resolver.h"
#include "tools/document/Shape.h"

namespace TopologyTools {

class ModelDocument {
public:
    // `root` is the status of a model.
    explicit ModelDocument(Vel::GenericIf root)
        : root_(std::move(root)), shape_(*root_.type()), resolver_(root_, shape_) {}

    Vel::GenericIf const & root() const { return root_; }
    DocumentShape const & shape() const { return shape_; }
    // Whether objects of that type, or of one derived from it, stand in such documents.
    bool holds(Vel::VelType const & type) const;
    // Null when nothing stands there. Throws JsonPointerError.
    Vel::GenericIf object(std::string_view pointer) const { return resolver_.object(pointer); }

private:
    Vel::GenericIf root_;
    DocumentShape shape_;
    Resolver resolver_;
};

// Where the objects of a model stand, as it was when this was made. Unlike ObjectPaths it also knows of
// objects that no reference may lead to.
class DocumentPlaces {
public:
    explicit DocumentPlaces(ModelDocument const & document);

    // Nothing for an object that does not stand in the document.
    std::optional<std::string> path(Vel::GenericIf const & object) const;

private:
    ObjectPaths targets_;
    std::unordered_map<Identity, std::string> others_;
};

}  // namespace TopologyTools
