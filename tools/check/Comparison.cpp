#include "tools/check/Comparison.h"

#include <set>
#include <string>
#include <utility>

#include "platform/NetworkTopologyV3/Status.h"
#include "tools/check/Explanation.h"
#include "tools/check/Following.h"
#include "tools/check/Remedies.h"
#include "tools/document/Shape.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {
namespace {

using Kind = MemberShape::Kind;
using nlohmann::json;

// What stands under a name, or nothing.
json const * under(json const * object, std::string_view name) {
    if (!object) return nullptr;
    auto const found = object->find(name);
    return found == object->end() ? nullptr : &*found;
}

Shown shown(json const * value) { return value ? Shown(*value) : std::nullopt; }

class Comparison {
public:
    Comparison(Expectation const & expectation, json const & input)
        : expectation_(expectation),
          input_(input),
          explanation_(expectation, input),
          following_(expectation),
          remedies_(input) {}

    std::vector<Difference> run(json const & present, json const & calledFor) {
        DocumentShape const shape(NetworkTopologyV3::Status::_velType);
        object(shape.root(), &present, *expectation_.root(), &calledFor);
        return std::move(differences_);
    }

private:
    // `calledFor` is null where nothing like the object is called for: that has been told already, and what
    // is in the object is only to be as expected.
    void object(ObjectShape const & shape, json const * present, ExpectedObject const & expected,
                json const * calledFor) {
        for (MemberShape const & member : shape.members) {
            json const * const p = under(present, member.name());
            json const * const c = under(calledFor, member.name());
            switch (member.kind) {
            case Kind::value:
            case Kind::reference: attribute(member, p, expected, calledFor ? &c : nullptr); break;
            case Kind::collection: members(member, p, expected, c, calledFor != nullptr); break;
            case Kind::valueCollection: entries(member, p, expected, c, calledFor != nullptr); break;
            }
        }
    }

    void attribute(MemberShape const & member, json const * present, ExpectedObject const & owner,
                   json const * const * calledFor) {
        json const absent = member.defaultValue ? json(member.defaultValue->strRep()) : json(nullptr);
        ExpectedCell const & cell = owner.attributes.at(member.name());
        bool const isReference = member.kind == Kind::reference;
        json const expected = isReference ? shownReference(cell.target) : cell.value;
        json const p = present ? *present : absent;
        json const c = !calledFor ? p : *calledFor ? **calledFor : absent;
        if (p == expected && p == c) return;
        std::string const path = joinJsonPointer(owner.path(), member.name());
        Difference difference{path, p, c, expected, {}, {}};
        if (p == expected) {
            difference.why = explanation_.attribute(owner, member.name());
            difference.remedy = inOwner(owner, isReference ? waiting(c, remedies_.reference(path))
                                                           : remedies_.value(path, member));
        }
        add(std::move(difference));
    }

    void members(MemberShape const & collection, json const * present, ExpectedObject const & owner,
                 json const * calledFor, bool isInScope) {
        std::set<std::string> keys = keysOf(present, calledFor);
        for (auto const & [key, member] : owner.members.at(collection.name())) keys.insert(key);
        for (std::string const & key : keys) {
            json const * const p = under(present, key);
            json const * const c = under(calledFor, key);
            ExpectedPtr const expected = owner.member(collection.name(), key);
            bool const isAsExpected = (p != nullptr) == (expected != nullptr);
            bool const isAsCalledFor = !isInScope || (p != nullptr) == (c != nullptr);
            if (!isAsExpected || !isAsCalledFor) {
                member(collection, key, p, owner, c, isAsExpected);
            }
            if (p && expected) object(*collection.element, p, *expected, c);
        }
    }

    void member(MemberShape const & collection, std::string const & key, json const * present,
                ExpectedObject const & owner, json const * calledFor, bool isAsExpected) {
        std::string const path = joinJsonPointer(joinJsonPointer(owner.path(), collection.name()), key);
        Difference difference{path, shown(present), shown(calledFor), shown(present), {}, {}};
        if (!isAsExpected) {
            difference.expected = present ? std::nullopt : Shown(json::object());
        } else if (collection.name() == "edge") {
            difference.why = explanation_.edge(key);
            difference.remedy = ofEdge(key, remedies_.object(following_.edge(key)));
        } else {
            difference.why = explanation_.member(owner, collection.name(), key);
            difference.remedy = inOwner(owner, remedies_.object(following_.object(path)));
        }
        add(std::move(difference));
    }

    void entries(MemberShape const & collection, json const * present, ExpectedObject const & owner,
                 json const * calledFor, bool isInScope) {
        auto const & cells = owner.entries.at(collection.name());
        std::set<std::string> keys = keysOf(present, calledFor);
        for (auto const & [key, cell] : cells) keys.insert(key);
        for (std::string const & key : keys) {
            auto const cell = cells.find(key);
            Shown expected;
            if (cell != cells.end()) {
                expected =
                    collection.holdsReferences ? shownReference(cell->second.target) : cell->second.value;
            }
            Shown const p = shown(under(present, key));
            Shown const c = isInScope ? shown(under(calledFor, key)) : p;
            if (p == expected && p == c) continue;
            entry(collection, key, owner, Difference{{}, p, c, expected, {}, {}});
        }
    }

    void entry(MemberShape const & collection, std::string const & key, ExpectedObject const & owner,
               Difference difference) {
        std::string const collectionPath = joinJsonPointer(owner.path(), collection.name());
        difference.path = joinJsonPointer(collectionPath, key);
        Shown const & calledFor = difference.calledFor;
        if (difference.present != difference.expected) {
            // A fault.
        } else if (collection.holdsReferences) {
            auto const source = calledFor
                                    ? entryLeadingTo(input_, owner.path(), collection.name(), *calledFor)
                                    : std::nullopt;
            difference.why = explanation_.entry(owner, collection.name(), key, calledFor);
            difference.remedy = inOwner(
                owner, waiting(calledFor.value_or(nullptr), remedies_.entry(collectionPath, key, source)));
        } else {
            difference.why = explanation_.destination(owner, key, calledFor);
            difference.remedy =
                ofEdge(owner.key(), waiting(calledFor ? json(key) : nullptr,
                                            remedies_.destination(following_.edge(owner.key()), key)));
        }
        add(std::move(difference));
    }

    static std::set<std::string> keysOf(json const * a, json const * b) {
        std::set<std::string> keys;
        for (json const * const object : {a, b}) {
            if (!object) continue;
            for (auto const & [key, value] : object->items()) keys.insert(key);
        }
        return keys;
    }

    // A remedy that has no effect before the version-3 model holds what stands at `target`, a path or null.
    Remedy waiting(json const & target, Remedy remedy) const {
        auto const missing = target.is_null() ? std::nullopt : following_.missing(target.get<std::string>());
        if (missing) return after(*missing, remedy);
        return remedy;
    }
    static Remedy after(std::string const & path, Remedy const & remedy) {
        return {"Once " + path + " is followed: " + remedy.sentence, {}};
    }

    // Where nothing follows the owner of a place, that is to be set right first.
    Remedy inOwner(ExpectedObject const & owner, Remedy remedy) const {
        auto const stray = following_.stray(owner.path());
        if (stray) return remedies_.object(*stray);
        return remedy;
    }
    // The same for an edge, which depends on its port.
    Remedy ofEdge(std::string const & key, Remedy remedy) const {
        auto const stray = following_.stray(key);
        if (stray) return after(stray->path, remedy);
        return remedy;
    }

    void add(Difference difference) {
        if (difference.isFault()) {
            difference.remedy = {};
        } else if (!expectation_.isFollowing()) {
            difference.remedy = {std::string(ruleText(difference.why.rule).close), {}};
        }
        differences_.push_back(std::move(difference));
    }

    Expectation const & expectation_;
    json const & input_;
    Explanation const explanation_;
    Following const following_;
    Remedies const remedies_;
    std::vector<Difference> differences_;
};

}  // namespace

std::vector<Difference> compareDocuments(json const & present, Expectation const & expectation,
                                         json const & calledFor, json const & input) {
    return Comparison(expectation, input).run(present, calledFor);
}

}  // namespace TopologyTools
