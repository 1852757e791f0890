#include "tools/check/Explanation.h"

#include <algorithm>

#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using NetworkTopology::PortBaseV2;
using nlohmann::json;

namespace {

template <class Map, class Key>
auto find(Map const & map, Key const & key) -> decltype(&map.begin()->second) {
    auto const found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

template <class Value>
Value const * find(ExpectedObject::ByAttribute<ExpectedObject::Named<Value>> const & map,
                   std::string_view attribute, std::string const & key) {
    auto const * const named = find(map, attribute);
    return named ? find(*named, key) : nullptr;
}

// The object, or the nearest of what holds it, that is astray.
Provenance astray(ExpectedObject const * object) {
    for (; object; object = object->parent().get()) {
        if (object->astray) return object->astray;
    }
    return {};
}

// What was noted of a place itself, unless its object went astray later.
Provenance noted(Provenance const & own, ExpectedObject const & owner) {
    Provenance const lost = astray(&owner);
    return !own || (lost && lost.line > own.line) ? lost : own;
}

// Why a reference that was written and resolved does not lead to where version 2 leads.
Provenance misled(ExpectedCell const & cell) {
    if (!cell.target) return {};
    if (!cell.target->isThere()) return {Rule::targetLeft, cell.target->leftLine()};
    if (Provenance const lost = astray(cell.target.get())) return lost;
    return {Rule::sameName, std::max(cell.last.line, cell.target->boundLine())};
}

Provenance firstOf(Provenance const & first, Provenance const & second) { return first ? first : second; }

}  // namespace

std::optional<std::string> entryLeadingTo(json const & document, std::string const & ownerPath,
                                          std::string_view collection, json const & target) {
    json::json_pointer const place(joinJsonPointer(ownerPath, collection));
    if (target.is_null() || !document.contains(place)) return std::nullopt;
    std::optional<std::string> last;
    for (auto const & [key, value] : document.at(place).items()) {
        if (value == target) last = key;
    }
    return last;
}

Provenance Explanation::attribute(ExpectedObject const & owner, std::string_view name) const {
    ExpectedCell const & cell = owner.attributes.at(name);
    if (cell.last.rule == Rule::secondaryNameKept) return cell.last;
    return firstOf(noted(cell.last, owner), misled(cell));
}

Provenance Explanation::member(ExpectedObject const & owner, std::string_view collection,
                               std::string const & key) const {
    if (ExpectedPtr const object = owner.member(collection, key)) return astray(object.get());
    Provenance const * const missing = find(owner.missing, collection, key);
    return missing ? noted(*missing, owner) : astray(&owner);
}

Provenance Explanation::edge(std::string const & key) const {
    ExpectedPtr const edge = expectation_.root()->member("edge", key);
    return edge ? leftEdge(*edge) : missingEdge(key);
}

Provenance Explanation::leftEdge(ExpectedObject const & edge) const {
    if (edge.astray) return edge.astray;
    ExpectedObject const & anchor = *edge.anchor;
    if (!anchor.isThere()) return {Rule::edgeLeftBehind, anchor.leftLine()};
    return firstOf(astray(&anchor), {Rule::edgeLeftBehind, anchor.boundLine()});
}

Provenance Explanation::missingEdge(std::string const & key) const {
    PortBaseV2 const * const fromPort = following_.portBase(key);
    if (Provenance const unfollowed = expectation_.unfollowed(fromPort)) return unfollowed;
    EdgeFollower const * const follower = expectation_.edge(fromPort);
    if (!follower) return {};
    if (!follower->object()) return follower->unresolved();
    if (!follower->object()->isThere()) return {Rule::edgeShared, follower->object()->leftLine()};
    ExpectedPtr const port = following_.expected(key);
    return {Rule::keyKept, port ? port->boundLine() : follower->boundLine()};
}

Provenance Explanation::entry(ExpectedObject const & owner, std::string_view collection,
                              std::string const & key, Shown const & calledFor) const {
    ExpectedCell const * const cell = find(owner.entries, collection, key);
    auto const source =
        calledFor ? entryLeadingTo(document_, owner.path(), collection, *calledFor) : std::nullopt;
    if (source) return missingEntry(owner, collection, cell, *source);
    return cell ? leftEntry(owner, collection, key, *cell) : Provenance();
}

Provenance Explanation::missingEntry(ExpectedObject const & owner, std::string_view collection,
                                     ExpectedCell const * cell, std::string const & source) const {
    auto const * const handledEntries = find(owner.handled, collection);
    HandledEntry const * const handled = handledEntries ? find(*handledEntries, source) : nullptr;
    if (!handled) return noted({Rule::entryUnwritten, owner.boundLine()}, owner);
    Provenance const own = noted(handled->last, owner);
    return own || !cell ? own : misled(*cell);
}

Provenance Explanation::leftEntry(ExpectedObject const & owner, std::string_view collection,
                                  std::string const & key, ExpectedCell const & cell) const {
    Provenance const own = noted(cell.last, owner);
    if (own) return own;
    Provenance const leads = misled(cell);
    if (leads.rule != Rule::sameName) return leads;
    auto const * const handledEntries = find(owner.handled, collection);
    HandledEntry const * const handled = handledEntries ? find(*handledEntries, cell.source) : nullptr;
    bool const isWritersOwn = handled && handled->isWritten && handled->name == key;
    return isWritersOwn ? leads : Provenance{Rule::entryUnwritten, owner.boundLine()};
}

Provenance Explanation::destination(ExpectedObject const & edge, std::string const & key,
                                    Shown const & calledFor) const {
    ExpectedCell const * const cell = find(edge.entries, "toPort", key);
    if (cell && cell->last.rule != Rule::none) return noted(cell->last, edge);
    if (Provenance const lost = astray(&edge)) return lost;
    PortBaseV2 const * const fromPort = following_.portBase(edge.key());
    if (Provenance const unfollowed = expectation_.unfollowed(fromPort)) return unfollowed;
    EdgeFollower const * const follower = expectation_.edge(fromPort);
    if (!follower) return {};
    if (!cell) return missingDestination(edge, *follower, key);
    if (!calledFor) return leftDestination(*follower, *cell);
    // Two version-2 destinations of one key.
    return {cell->writer == follower->binding() ? Rule::sameName : Rule::edgeShared, cell->last.line};
}

Provenance Explanation::missingDestination(ExpectedObject const & edge, EdgeFollower const & follower,
                                           std::string const & key) const {
    if (Provenance const * const removed = find(edge.missing, "toPort", key)) return *removed;
    HandledEntry const * const handled = follower.handled(following_.portBase(key));
    if (!handled) return {Rule::entryUnwritten, follower.boundLine()};
    if (handled->last) return handled->last;
    ExpectedPtr const port = following_.expected(key);
    Line const line = port ? port->boundLine() : handled->last.line;
    return {handled->name == key ? Rule::edgeShared : Rule::keyKept, line};
}

Provenance Explanation::leftDestination(EdgeFollower const & follower, ExpectedCell const & cell) const {
    Provenance const leads = misled(cell);
    if (leads.rule == Rule::targetLeft) return {Rule::destinationLeftBehind, leads.line};
    if (leads.rule != Rule::sameName) return leads;
    Line const written = cell.last.line;
    if (cell.target->boundLine() > written) return {Rule::destinationLeftBehind, cell.target->boundLine()};
    if (cell.writer == follower.binding()) return leads;
    if (follower.boundLine() > written) return {Rule::destinationLeftBehind, follower.boundLine()};
    return {Rule::edgeShared, written};
}

}  // namespace TopologyTools
