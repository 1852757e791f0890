// Changes to a live model, written as JSON Patch operations (RFC 6902) against its document.
//
// Usage
//     ModelPatcher patcher(Vel::GenericIf::of(status));
//     for (std::size_t number = 1; std::getline(in, line); ++number) {
//         patcher.applyLine(line, "changes.ndjson", number);
//     }
//
// Operations
//     add, replace, remove and test, below the root. Each is checked completely before it changes anything.
//     An attribute is always there: `add` and `replace` set it, `remove` sets its default, `test` compares.
//     So is a collection, of which `remove` is the model's whole-collection deletion; `add` and `replace` put
//     other members in place of all. A member of a collection has to be there for `replace`, `remove` and
//     `test`. Adding over one replaces it as one change of that key, by an object that holds its own members
//     already; otherwise what enters enters in the order that ValueApplier.h tells.
//     `test` takes a member that holds its default as there, whether the operation's value says so or not.
//
// What has left
//     References to what has been removed read as null. An edge whose port base has left is not in the
//     document, but can still be removed under its old path, while no other edge is there.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tools/document/Shape.h"
#include "tools/json/InputError.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {

class ModelPatcher {
public:
    // `root` is the status of a model whose collections take objects in place of their members. From now on
    // members are removed through this patcher; what others remove is not found under its old path.
    explicit ModelPatcher(Vel::GenericIf root);

    // Applies one operation. Throws InputError, with the path of the fault, for an operation that is not
    // valid, does not fit the model, or is a test that fails; the model is then as it was. An exception out
    // of a reactor of the model passes, and the operation ends there.
    void apply(JsonValue const & json, std::string const & fileName);

    // The same for a line of a stream, without its LF; false for a blank line. A CR at its end is ignored.
    bool applyLine(std::string_view line, std::string const & fileName, std::size_t lineNumber);

private:
    struct Operation;
    struct Place;

    Place place(Operation const & operation) const;
    void set(Operation const & operation, Place const & place);
    void setMember(Operation const & operation, Place const & place);
    void setEntry(Operation const & operation, Place const & place);
    void remove(Operation const & operation, Place const & place);
    void removeAll(Operation const & operation, Place const & place);
    void removeEntry(Operation const & operation, Place const & place);
    void test(Operation const & operation, Place const & place) const;

    // Whether members of `collection` are found under the old paths of their keys: the root's own, keyed by
    // objects.
    bool isKeyedByDeparted(MemberShape const & collection) const;
    // Notes of an object at `path` that is about to leave, and of all that it holds, what is still a key.
    void noteDeparting(Vel::GenericIf const & object, ObjectShape const & shape, std::string const & path);
    // The key of a member that has the old path `path`, once.
    std::optional<Vel::GenericIf> takeDeparted(MemberShape const & collection, std::string const & path);

    Vel::GenericIf root_;
    DocumentShape shape_;
    // The keys of members that the document does not show, by the paths that they had; the first to go first.
    std::map<std::string, std::deque<Vel::GenericIf>, std::less<>> departed_;
};

}  // namespace TopologyTools
