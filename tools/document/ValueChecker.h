// JSON values checked against the type records, completely, before anything of them enters a model.
#pragma once

#include <string>
#include <string_view>

#include "platform/Vel/VelType.h"
#include "tools/document/PathStep.h"
#include "tools/document/Resolver.h"
#include "tools/document/Shape.h"
#include "tools/json/InputError.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

// Each check throws InputError at the first fault, in the order of the text, with the path in the document at
// which the value stands or is to stand. What passes can enter the model without a fault.
class ValueChecker {
public:
    // References must lead to what `resolver` finds. `base` is where the value stands that is checked.
    ValueChecker(std::string fileName, std::string base, Resolver const & resolver)
        : fileName_(std::move(fileName)), base_(std::move(base)), resolver_(resolver) {}

    void object(JsonValue const & json, ObjectShape const & shape, PathStep const * at = nullptr) const;
    void member(JsonValue const & json, MemberShape const & member, PathStep const * at = nullptr) const;
    // What stands, or is to stand, under a key of a collection.
    void entry(JsonValue const & json, MemberShape const & collection, std::string_view key,
               PathStep const * at = nullptr) const;
    // A key that is to enter a collection.
    void key(std::string_view key, TextPosition position, MemberShape const & collection,
             PathStep const * at = nullptr) const;

    InputError error(TextPosition position, std::string const & expected, std::string const & found,
                     PathStep const * at = nullptr) const;

private:
    void requireObject(JsonValue const & json, PathStep const * at) const;
    void reference(JsonValue const & json, Vel::VelType const & wanted, PathStep const * at) const;
    // Requires that the pointer `text` leads to a `wanted`; `expected` says so in a message.
    void target(std::string const & text, TextPosition position, Vel::VelType const & wanted,
                std::string const & expected, PathStep const * at) const;

    std::string fileName_;
    std::string base_;
    Resolver const & resolver_;
};

}  // namespace TopologyTools
