// The version-3 document that is expected, with what is known of every place: when it was last written, or
// left as it is although it should have been written, and why.
//
// An object here stands for one object of the model: when it has left, another one of its name is a different
// object, and a reference to the one that left leads to nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "tools/check/Rule.h"

namespace TopologyTools {

// The number of a line of changes; 0 is what came before the first.
using Line = std::size_t;

struct Provenance {
    Rule rule = Rule::none;
    Line line = 0;

    explicit operator bool() const { return rule != Rule::none; }
};

class ExpectedObject;
using ExpectedPtr = std::shared_ptr<ExpectedObject>;

// An attribute, or an entry of a collection of values or references.
struct ExpectedCell {
    nlohmann::json value;      // Of a value: what a document shows, its default included.
    ExpectedPtr target;        // Of a reference; of a destination, the port base that its key was taken of.
    Provenance last;           // Of the last write, or of the last change that should have been one.
    std::string source;        // Of an entry: the version-2 key that it was written for.
    std::uint64_t writer = 0;  // Of an entry: the binding that wrote it.
};

// What became of the entries of one version-2 collection, by their keys: entries that nobody told of are
// missing here.
struct HandledEntry {
    Provenance last;
    std::string name;  // The version-3 key under which it was written last; empty before that.
    bool isWritten = false;
};
using HandledEntries = std::map<std::string, HandledEntry>;

class ExpectedObject {
public:
    template <class Value>
    using Named = std::map<std::string, Value, std::less<>>;
    // By the names of attributes, which are literals.
    template <class Value>
    using ByAttribute = std::map<std::string_view, Value>;

    // `collection` is where the object stands in its parent.
    ExpectedObject(ExpectedPtr parent, std::string_view collection, std::string key, Line line)
        : parent_(std::move(parent)), collection_(collection), key_(std::move(key)), bound_(line) {}

    ExpectedPtr const & parent() const { return parent_; }
    std::string const & key() const { return key_; }
    // The JSON Pointer to where it stands, or stood.
    std::string path() const;
    // Whether it stands in the document: neither it nor what holds it has left.
    bool isThere() const;
    // When it ceased to be there. REQUIRES: it did.
    Line leftLine() const;
    // When the version-2 object for which it stands was last replaced, or it was made.
    Line boundLine() const { return bound_; }
    void boundIs(Line line) { bound_ = line; }

    ExpectedPtr member(std::string_view collection, std::string_view key) const;
    // Leaves its collection, with all that it holds.
    void memberDel(std::string_view collection, std::string_view key, Line line);
    // Forgets what it holds, which breaks the cycles that references make.
    void clear();

    // Why neither the object nor what it holds follows version 2 any more.
    Provenance astray;
    ByAttribute<ExpectedCell> attributes;
    ByAttribute<Named<ExpectedPtr>> members;
    ByAttribute<Named<ExpectedCell>> entries;
    ByAttribute<HandledEntries> handled;
    // Members that version 2 has, and that were not made.
    ByAttribute<Named<Provenance>> missing;
    // Of a host or group: the version-2 object whose entries were handled; for comparison only.
    void const * entrySource = nullptr;
    // Of an edge: the port base from which it was made.
    ExpectedPtr anchor;

private:
    ExpectedPtr parent_;  // Null for the root.
    std::string_view collection_;
    std::string key_;
    Line bound_;
    bool hasLeft_ = false;
    Line left_ = 0;
};

// What a document shows for a reference: a path, or null.
nlohmann::json shownReference(ExpectedPtr const & target);

}  // namespace TopologyTools
