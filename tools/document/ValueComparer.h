// JSON values compared with what stands in a live model.
#pragma once

#include <optional>
#include <string>

#include "platform/Vel/GenericIf.h"
#include "tools/document/ObjectPaths.h"
#include "tools/document/PathStep.h"
#include "tools/document/Resolver.h"
#include "tools/document/Shape.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

// Each comparison throws InputError at the first difference, with the path in the document at which it is.
// What a document leaves out, because it holds its default or has left, may be left out of the value, too.
class ValueComparer {
public:
    // `base` is where the value stands that is compared. All have to outlive the comparer.
    ValueComparer(Vel::GenericIf const & root, DocumentShape const & shape, std::string const & fileName,
                  std::string const & base)
        : root_(root), shape_(shape), resolver_(root, shape), fileName_(fileName), base_(base) {}

    void member(Vel::GenericIf const & owner, MemberShape const & member, JsonValue const & expected,
                PathStep const * at = nullptr);
    // `live` is what stands under a key of a collection.
    void entry(Vel::GenericIf const & live, MemberShape const & collection, JsonValue const & expected,
               PathStep const * at = nullptr);

private:
    [[noreturn]] void fail(JsonValue const & expected, std::string const & found, PathStep const * at) const;
    [[noreturn]] void fail(TextPosition position, std::string const & expected, std::string const & found,
                           PathStep const * at) const;

    // The document's path of a live object. Only where a null, or nothing, is expected, or a comparison has
    // failed, is a walk over the model needed.
    std::optional<std::string> path(Vel::GenericIf const & object);

    void value(Vel::GenericIf const & live, MemberShape const & member, JsonValue const & expected,
               PathStep const * at) const;
    void reference(Vel::GenericIf const & live, JsonValue const & expected, PathStep const * at);
    void object(Vel::GenericIf const & live, ObjectShape const & shape, JsonValue const & expected,
                PathStep const * at);
    void collection(Vel::GenericIf const & owner, MemberShape const & member, JsonValue const & expected,
                    PathStep const * at);
    void requireObject(JsonValue const & expected, PathStep const * at) const;
    // Of a member of which nothing is expected.
    void requireDefault(Vel::GenericIf const & owner, MemberShape const & member, TextPosition position,
                        PathStep const * at);
    // Every entry that the document shows is a member of `expected`; null for a value without members.
    void requireNoOther(Vel::GenericIf const & owner, MemberShape const & member, JsonValue const * expected,
                        TextPosition position, PathStep const * at);

    Vel::GenericIf const & root_;
    DocumentShape const & shape_;
    Resolver const resolver_;
    std::string const & fileName_;
    std::string const & base_;
    std::optional<ObjectPaths> paths_;
};

}  // namespace TopologyTools
