// Objects, attributes and entries of a live model as JSON.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tools/document/JsonSink.h"
#include "tools/document/ObjectPaths.h"
#include "tools/document/PathStep.h"
#include "tools/document/Shape.h"

namespace TopologyTools {

// A model that JSON cannot show as it is: a name or text that is not UTF-8, a number for which an enumeration
// has no name, or a key without a text. Nothing is ever shown in the place of such a value. what() begins
// with the JSON Pointer to the fault.
class DocumentError : public std::runtime_error {
public:
    // `pointer` may hold any bytes.
    DocumentError(std::string_view pointer, std::string const & message);
};

// Throws DocumentError for a key that documents cannot show.
void requireKey(MemberShape const & collection, std::string_view key, PathStep const * at);

// What is shown
//     Members that hold their default are left out of their object: it is there without saying so. Keys come
//     in the order of their bytes. A reference becomes the path of its target. A target that is not in the
//     document is null; an entry under the key of such an object is left out.
//
// Each function gives the sink one value and throws DocumentError; `at` is where the value stands.
class ModelRenderer {
public:
    // `sink` must outlive the renderer.
    ModelRenderer(JsonSink & sink, PathOf pathOf) : sink_(sink), pathOf_(std::move(pathOf)) {}

    void object(Vel::GenericIf const & object, ObjectShape const & shape, PathStep const * at);
    // One member of `owner`, its default included.
    void member(Vel::GenericIf const & owner, MemberShape const & member, PathStep const * at);
    // What stands under a key of a collection: an object, or a value or reference.
    void entry(Vel::GenericIf const & value, MemberShape const & collection, PathStep const * at);

private:
    struct Entry {
        std::string key;
        Vel::GenericIf value;
    };

    // Sorted. Throws for a key that is not UTF-8.
    std::vector<Entry> entries(Vel::GenericIf const & owner, MemberShape const & member,
                               PathStep const * at) const;
    void entries(std::vector<Entry> const & entries, MemberShape const & member, PathStep const * at);
    void value(Vel::GenericIf const & value, PathStep const * at);
    void reference(std::optional<std::string> const & path, PathStep const * at);

    JsonSink & sink_;
    PathOf pathOf_;
};

}  // namespace TopologyTools
