// Value collections: hash maps from a key to a value (a reference, a flag), for attributes such as the
// logical ports of a host.
//
// The entries are nodes of the same engine that holds entity collections, so order, growth and walks that
// survive removals are those of HashMap.h. An iterator holds its entry: after the entry has been removed, its
// key and value stay readable until the iterator moves.
//
// Usage
//     for (auto const & entry : host->logicalPort()) use(entry.key(), entry.value());
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <utility>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/HashMap.h"

namespace Vel {

// Keys as lookups take them: what identifies the key, without a counted reference to it.
namespace HashHelper {

struct KeyPointer {
    PtrInterface const * pointer;
};
struct KeyString {
    String const & string;
};

}  // namespace HashHelper

// What every value collection has in common.
struct HashMap2018Generic {
    // The entry of that key in `table`, or null.
    template <class Table>
    static auto lookupNodeG(Table const & table, HashHelper::KeyPointer key) noexcept {
        std::uint32_t const hash =
            key.pointer ? VelHashBase<false>::hashU32(reinterpret_cast<std::uintptr_t>(key.pointer)) : 0;
        return table.find(hash, [&](auto const & node) { return node.key() == key.pointer; });
    }
    template <class Table>
    static auto lookupNodeG(Table const & table, HashHelper::KeyString key) noexcept {
        return table.find(key.string.reversedHash(),
                          [&](auto const & node) { return node.key() == key.string; });
    }
};

// What the untyped iterator has to know of an instantiation.
struct HashMap2018VTable {
    HashMapGeneric const & (*nodes)(HashMap2018Generic const & map);
    HashMapGeneric::KeyTable const & keys;
};

// An entry of which the types are not known.
class HashMap2018NodeGeneric : public HashMapMember {
public:
    // False from the moment when the entry has been removed.
    bool isPresent() const noexcept { return !hasLeft(); }

protected:
    HashMap2018NodeGeneric() noexcept = default;
};

// Steps over any value collection.
class HashMap2018IteratorGeneric {
public:
    // Starts at the first entry.
    HashMap2018IteratorGeneric(HashMap2018Generic const * map, HashMap2018VTable const * table) noexcept
        : generic_(table->nodes(*map), table->keys) {}
    // Starts at `node`; null is the end.
    HashMap2018IteratorGeneric(HashMapGeneric const & nodes, HashMapGeneric::KeyTable const & keys,
                               HashMapMember * node) noexcept
        : generic_(nodes, keys, node) {}

    void advance() noexcept { generic_.advance(); }
    // The entry that the iterator stands on, removed or not; null at the end.
    HashMap2018NodeGeneric const * currNodeMaybeStale() const noexcept {
        return static_cast<HashMap2018NodeGeneric const *>(generic_.current().get());
    }
    // Null also when the entry has been removed.
    HashMap2018NodeGeneric const * currNodeNonStale() const noexcept {
        HashMap2018NodeGeneric const * const node = currNodeMaybeStale();
        return node && node->isPresent() ? node : nullptr;
    }

private:
    HashMapIteratorGeneric generic_;
};

// One entry.
template <class Tag, class Key, class Value>
class HashMap2018Node final : public HashMap2018NodeGeneric,
                              public AllocTracked<HashMap2018Node<Tag, Key, Value>> {
public:
    static constexpr std::uint32_t kInOneBucket = [] {
        if constexpr (requires { Tag::kInOneBucket; }) {
            return Tag::kInOneBucket;
        } else {
            return 1;
        }
    }();

    HashMap2018Node(Key const & key, Value const & value) : value_(value), key_(key) {}

    Key const & key() const noexcept {
        if constexpr (kKeyIsValuesName) {
            return value_->name();
        } else {
            return key_;
        }
    }
    Value const & value() const noexcept { return value_; }
    Key const & collectionKey() const noexcept { return key(); }

    [[gnu::always_inline]] void referenceDel() const noexcept {
        if (this->referenceDelIsLast()) [[unlikely]]
            end();
    }

private:
    template <class, class, class>
    friend class HashMap2018;

    // Out of the way of those who let go of one of several references.
    [[gnu::noinline]] void end() const noexcept { delete this; }

    static constexpr bool kKeyIsValuesName = requires { requires Tag::kKeyIsValuesName; };
    struct NoKey {
        explicit NoKey(Key const &) noexcept {}
    };

    Value value_;
    [[no_unique_address]] std::conditional_t<kKeyIsValuesName, NoKey, Key> const key_;
};

template <class Node>
class HashMap2018Iterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using pointer = Node const *;
    using reference = Node const &;

    explicit HashMap2018Iterator(HashMap2018IteratorGeneric generic) noexcept
        : generic_(std::move(generic)) {}

    void advance() noexcept { generic_.advance(); }
    Node const * currNodeMaybeStale() const noexcept {
        return static_cast<Node const *>(generic_.currNodeMaybeStale());
    }
    Node const * currNodeNonStale() const noexcept {
        return static_cast<Node const *>(generic_.currNodeNonStale());
    }

    Node const & operator*() const noexcept { return *currNodeMaybeStale(); }
    Node const * operator->() const noexcept { return currNodeMaybeStale(); }
    HashMap2018Iterator & operator++() noexcept {
        advance();
        return *this;
    }
    void operator++(int) noexcept { advance(); }
    explicit operator bool() const noexcept { return currNodeMaybeStale() != nullptr; }
    friend bool operator==(HashMap2018Iterator const & a, std::default_sentinel_t) noexcept {
        return a.currNodeMaybeStale() == nullptr;
    }

private:
    HashMap2018IteratorGeneric generic_;
};

// `Tag` names the attribute, so that the entries of each are tracked under a name of their own. It may say
// `kInOneBucket`, which counts for the entries; and `kKeyIsValuesName`: each entry holds an object, never
// null, under the name of that, which never changes, and so needs no key of its own; whoever replaces the
// object replaces the key.
template <class Tag, class Key, class Value>
class HashMap2018 : public HashMap2018Generic {
    using Nodes = HashMap<HashMap2018Node<Tag, Key, Value>, Key, Tag>;

public:
    using Node = HashMap2018Node<Tag, Key, Value>;
    using Iterator = HashMap2018Iterator<Node>;
    using Range = HashMapRange<HashMap2018, Iterator>;

    HashMap2018() noexcept = default;
    ~HashMap2018() { nodes_.emptyAllBuckets(); }

    std::uint32_t size() const noexcept { return nodes_.size(); }

    // The entry of that key, or null.
    Node const * operator[](Key const & key) const noexcept { return nodes_[key]; }
    template <class IsKeyOf>
    Node const * find(std::uint32_t hash, IsKeyOf const & isKeyOf) const noexcept {
        return nodes_.find(hash, isKeyOf);
    }

    // Sets the value of `key`, adding an entry when there is none; false when it had that value already.
    [[gnu::always_inline]] bool valueIs(Key const & key, Value const & value) {
        typename Nodes::Place place(nodes_, key);
        if (Node * const node = nodes_.find(place, key)) {
            if (node->value_ == value) return false;
            node->value_ = value;
        } else {
            nodes_.newMember(place, new Node(key, value));
        }
        return true;
    }
    // Returns the entry that was taken out; null when there was none.
    Vel::Ptr<Node> valueDel(Key const & key) noexcept {
        Vel::Ptr<Node> node = nodes_.deleteMember(key);
        if (node) node->leftIs();
        return node;
    }

    template <class AnyIterator = Iterator>
    AnyIterator iterator() const noexcept {
        return AnyIterator(HashMap2018IteratorGeneric(this, &kTable));
    }
    // Starts at the entry of that key; at the end when there is none.
    template <class AnyIterator = Iterator>
    AnyIterator iteratorAt(Key const & key) const noexcept {
        return AnyIterator(nodes_.template iteratorAt<HashMap2018IteratorGeneric>(key));
    }

    static constexpr HashMap2018VTable kTable{[](HashMap2018Generic const & map) -> HashMapGeneric const & {
                                                  return static_cast<HashMap2018 const &>(map).nodes_;
                                              },
                                              Nodes::keys()};

private:
    Nodes nodes_{1};
};

}  // namespace Vel
