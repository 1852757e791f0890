// Tells each change of a live model as the JSON Patch operation that brings about the same in its document.
//
// Usage
//     ModelRecorder recorder(Vel::GenericIf::of(status), followVersion3,
//                            [&](PatchOperation operation) { told.push_back(std::move(operation)); });
//     told.push_back(recorder.whole());
//     status->hostIs("leaf-1");  // And other changes of the model: each is told before its mutator returns.
//
// Whoever applies the operations, in order, to the document of `whole` has at any time the document that
// writeDocument would give, but for changes of which the model has not told yet.
//
// How it works
//     Every object that stands in the document has a node with a reactor. A callback leads to one place: an
//     attribute, or what stands under one key. That place alone is rendered and compared with what it showed
//     before, so the work for a change does not grow with the model. An operation is told at once, from
//     inside the callback.
//
// References
//     A reference shows a path while its target stands in the document, and null otherwise (an attribute is
//     then left out). Nobody tells of that when the target comes or goes, so the recorder knows of every
//     target who refers to it. Of what a removal turned to null it tells after the removal, in the order of
//     paths.
//
// Collections
//     A collection appears in its object right before its first entry and goes right after its last.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/Vel/GenericIf.h"
#include "tools/document/JsonSink.h"
#include "tools/document/ObjectPaths.h"
#include "tools/document/Shape.h"
#include "tools/follow/ObjectFollower.h"
#include "tools/follow/PatchOperation.h"

namespace TopologyTools {

class ModelRecorder {
public:
    using Tell = std::function<void(PatchOperation operation)>;

    // `root` is the status of the model, of whose objects `follow` makes the reactors. `tell` must not change
    // the model. Throws DocumentError; so do, out of the model's mutators, changes that no document can show.
    ModelRecorder(Vel::GenericIf const & root, Follow follow, Tell tell);
    ~ModelRecorder();
    ModelRecorder(ModelRecorder const &) = delete;
    ModelRecorder & operator=(ModelRecorder const &) = delete;

    // The operation that puts the document, as it is now, in place of any other.
    PatchOperation whole() const;

    // How many places have been rendered.
    std::size_t renderedForTesting() const { return rendered_; }

private:
    class Node;
    // A member of an object, or with the key an entry of one; attributes have the empty key.
    using PlaceKey = std::pair<MemberShape const *, std::string>;
    struct Place {
        std::optional<nlohmann::ordered_json> shown;  // No object. Nothing where the document has nothing.
        Identity target = nullptr;                    // What the place refers to. May be long gone.
    };
    // Finds all entries of one collection together.
    struct PlaceOrder {
        using is_transparent = void;
        bool operator()(PlaceKey const & a, PlaceKey const & b) const { return a < b; }
        bool operator()(PlaceKey const & a, MemberShape const * b) const { return std::less<>()(a.first, b); }
        bool operator()(MemberShape const * a, PlaceKey const & b) const { return std::less<>()(a, b.first); }
    };
    using Places = std::map<PlaceKey, Place, PlaceOrder>;
    using Members = std::map<PlaceKey, std::unique_ptr<Node>, PlaceOrder>;
    using Referrer = std::pair<Node *, PlaceKey const *>;

    void entityChanged(Node & owner, MemberShape const & collection, Vel::GenericIf const & key);
    // Makes nodes for an object that enters, and all that it holds, and tells nothing; the same for one that
    // leaves. Their identities are appended to `moved`.
    std::unique_ptr<Node> enter(Node * owner, MemberShape const * collection, std::string key,
                                ObjectShape const & shape, Vel::GenericIf const & object,
                                std::vector<Identity> & moved);
    void leave(Node & node, std::vector<Identity> & moved);
    void showAll(Node & node);
    // Tells what has changed at the places that refer to these.
    void tellReferrers(std::vector<Identity> const & targets);

    // Brings a place up to date, and tells if it has changed.
    void update(Node & owner, MemberShape const & member, std::string const & key);
    // The same without telling. Returns what the place showed before, and what it shows now.
    struct Change {
        std::optional<nlohmann::ordered_json> before;
        std::optional<nlohmann::ordered_json> now;
    };
    Change show(Node & owner, MemberShape const & member, std::string const & key);
    Place render(Node const & owner, MemberShape const & member, std::string const & key);
    void targetIs(Node & owner, Places::value_type & place, Identity target);

    // `value` is nothing where nothing is any more. `isAlone`: the collection has no other entry.
    void tellAttribute(Node const & owner, MemberShape const & member, bool wasThere,
                       std::optional<std::string> value) const;
    void tellEntry(Node const & owner, PlaceKey const & place, bool wasThere, bool isAlone,
                   std::optional<std::string> value) const;

    DocumentShape const shape_;
    Follow const follow_;
    Tell const tell_;
    std::unordered_map<Identity, Node *> nodes_;  // Of all objects that stand in the document.
    std::unordered_map<Identity, std::set<Referrer>> referrers_;
    PathOf const pathOf_;
    std::size_t rendered_ = 0;
    std::unique_ptr<Node> root_;
};

}  // namespace TopologyTools
