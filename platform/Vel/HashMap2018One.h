// Value collections of flags that mostly hold one entry, such as the destinations of an edge: `HashMap2018`
// (HashMap2018.h) of a tag that says so.
//
// Usage
//     struct ToPortTag { static constexpr bool kMostlyOne = true; };
//     using ToPort = Vel::HashMap2018<ToPortTag, Key, bool>;
//
// A single entry stands in the collection itself, which is the size of a key and a word: nothing is made and
// destroyed with it, and it is found where the model object is. When a second one is added, both move into a
// table of entries (that of HashMap2018.h), which the collection keeps for the rest of its life.
//
// So an entry is valid until one is added or removed. Walks survive both, as with all collections: an
// iterator that stands on a single entry holds a copy of it, which stays readable when that has been removed.
// Where it is now, only the iterator knows: a reference to its key that was taken before shows the empty key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

#include "platform/Vel/HashMap.h"
#include "platform/Vel/HashMap2018.h"

namespace Vel {

template <class Tag>
concept MostlyOne = requires { requires Tag::kMostlyOne; };

// One entry.
template <class Key>
class HashMap2018Flag {
public:
    HashMap2018Flag(Key key, bool flag) noexcept
        : key_(std::move(key)), state_(kSingle | kPresent | (flag ? kFlag : 0)) {}

    Key const & key() const noexcept { return key_; }
    bool value() const noexcept { return (state_ & kFlag) != 0; }

    // Of one key.
    friend bool operator==(HashMap2018Flag const & a, HashMap2018Flag const & b) noexcept {
        return a.value() == b.value();
    }

private:
    template <class, class, class>
    friend class HashMap2018;

    static constexpr std::uintptr_t kSingle = 1;
    static constexpr std::uintptr_t kPresent = 2;
    static constexpr std::uintptr_t kFlag = 4;
    static constexpr std::uintptr_t kRemoval = 8;

    HashMap2018Flag() noexcept : state_(kSingle) {}

    Key key_;
    // Of an entry in a collection: these bits, and above them how often one has been taken out. Or the
    // address of the collection's table, which is even.
    std::uintptr_t state_;
};

template <class Tag, class Key>
    requires MostlyOne<Tag>
class HashMap2018<Tag, Key, bool> {
    struct SeveralTag;
    using Table = HashMap2018<SeveralTag, Key, HashMap2018Flag<Key>>;

public:
    using Node = HashMap2018Flag<Key>;
    class Iterator;
    using Range = HashMapRange<HashMap2018, Iterator>;

    HashMap2018() noexcept = default;
    ~HashMap2018() {
        if (!isSingle()) [[unlikely]]
            delete &table();
    }
    HashMap2018(HashMap2018 const &) = delete;
    HashMap2018 & operator=(HashMap2018 const &) = delete;

    std::uint32_t size() const noexcept { return isSingle() ? (single() ? 1 : 0) : table().size(); }

    // The entry of that key, or null.
    Node const * operator[](Key const & key) const noexcept {
        if (Node const * const only = single()) return isOf(*only, key) ? only : nullptr;
        return isSingle() ? nullptr : inTable(key);
    }
    // The single entry; null when there is none, or a table. Looks at no key.
    Node const * single() const noexcept {
        constexpr std::uintptr_t kBits = Node::kSingle | Node::kPresent;
        return (node_.state_ & kBits) == kBits ? &node_ : nullptr;
    }

    // Sets the flag of `key`, adding an entry when there is none; false when it had that flag already.
    [[gnu::always_inline]] bool valueIs(Key const & key, bool flag) {
        std::uintptr_t const bit = flag ? Node::kFlag : 0;
        std::uintptr_t const state = node_.state_;
        if (single()) {
            if (!isOf(node_, key)) return valueInTableIs(key, flag);
            node_.state_ = (state & ~Node::kFlag) | bit;
            return node_.state_ != state;
        }
        if (!isSingle()) [[unlikely]]
            return valueInTableIs(key, flag);
        node_.key_ = key;
        node_.state_ = state | Node::kPresent | bit;
        return true;
    }
    // Returns the entry that was taken out; nothing when there was none.
    std::optional<Node> valueDel(Key const & key) noexcept {
        if (!isSingle()) [[unlikely]]
            return valueInTableDel(key);
        if (!single() || !isOf(node_, key)) return std::nullopt;
        std::uintptr_t const state = node_.state_;
        node_.state_ = (state + Node::kRemoval) & ~(Node::kPresent | Node::kFlag);
        return Node(std::exchange(node_.key_, Key()), (state & Node::kFlag) != 0);
    }

    template <class AnyIterator = Iterator>
    AnyIterator iterator() const noexcept {
        return AnyIterator(*this);
    }
    // Starts at the entry of that key; at the end when there is none.
    template <class AnyIterator = Iterator>
    AnyIterator iteratorAt(Key const & key) const noexcept {
        return AnyIterator(*this, key);
    }

private:
    static bool isOf(Node const & node, Key const & key) noexcept {
        return HashMapKey<Key>::equals(node.key_, key);
    }
    bool isSingle() const noexcept { return (node_.state_ & Node::kSingle) != 0; }
    Table & table() const noexcept { return *reinterpret_cast<Table *>(node_.state_); }

    [[gnu::noinline]] Node const * inTable(Key const & key) const noexcept {
        auto const * const entry = table()[key];
        return entry ? &entry->value() : nullptr;
    }
    [[gnu::cold, gnu::noinline]] bool valueInTableIs(Key const & key, bool flag) {
        if (!isSingle()) return table().valueIs(key, Node(key, flag));
        auto table = std::make_unique<Table>();
        table->valueIs(node_.key_, node_);
        table->valueIs(key, Node(key, flag));
        node_.state_ = reinterpret_cast<std::uintptr_t>(table.release());
        node_.key_ = Key();
        return true;
    }
    [[gnu::noinline]] std::optional<Node> valueInTableDel(Key const & key) noexcept {
        auto const entry = table().valueDel(key);
        return entry ? std::optional<Node>(entry->value()) : std::nullopt;
    }

    Node node_;
};

// Steps over the collection and is itself what it shows: the entry in hand.
template <class Tag, class Key>
    requires MostlyOne<Tag>
class HashMap2018<Tag, Key, bool>::Iterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Iterator;
    using difference_type = std::ptrdiff_t;
    using pointer = Iterator const *;
    using reference = Iterator const &;

    explicit Iterator(HashMap2018 const & map) noexcept : map_(&map) {
        if (map.isSingle()) {
            arrive(map.single());
        } else {
            several_.emplace(map.table().iterator());
        }
    }
    Iterator(HashMap2018 const & map, Key const & key) noexcept : map_(&map) {
        if (map.isSingle()) {
            arrive(map[key]);
        } else {
            several_.emplace(map.table().iteratorAt(key));
        }
    }

    // Of the entry in hand, which lives in the collection as long as it is present. REQUIRES: not at the end.
    Key const & key() const noexcept {
        if (several_) return (*several_)->key();
        Node const * const node = inHand();
        return node ? node->key() : key_;
    }
    // Once it has been removed, as it was when the walk came to it; of an entry of the same key in a table,
    // as that is.
    bool value() const noexcept {
        if (several_) return (*several_)->value().value();
        Node const * const node = inHand();
        return node ? node->value() : (state_ & Node::kFlag) != 0;
    }
    // False from the moment when the entry has been removed, until a table has one of its key.
    bool isPresent() const noexcept { return several_ ? (*several_)->isPresent() : inHand() != nullptr; }

    Iterator const & operator*() const noexcept { return *this; }
    Iterator const * operator->() const noexcept { return this; }
    // Does nothing at the end.
    Iterator & operator++() noexcept {
        if (several_) {
            ++*several_;
            passBy();
        } else if (state_ != 0) {
            leave();
        }
        return *this;
    }
    void operator++(int) noexcept { ++*this; }
    explicit operator bool() const noexcept { return several_ ? bool(*several_) : state_ != 0; }
    friend bool operator==(Iterator const & a, std::default_sentinel_t) noexcept { return !a; }

private:
    static std::uintptr_t removals(std::uintptr_t state) noexcept { return state / Node::kRemoval; }

    // At the single entry, or at the end.
    void arrive(Node const * single) noexcept {
        key_ = single ? single->key_ : Key();
        state_ = single ? single->state_ : 0;
    }
    // Where the single entry that the walk came to is now; null when it has been removed.
    Node const * inHand() const noexcept {
        if (!map_->isSingle()) return (*map_)[key_];
        return removals(map_->node_.state_) == removals(state_) ? &map_->node_ : nullptr;
    }
    // From a single entry to what has been added since: to the one that stands there now if it comes later in
    // the order of keys, or to all in the table.
    void leave() noexcept {
        if (!map_->isSingle()) {
            several_.emplace(map_->table().iterator());
            passBy();
            return;
        }
        Node const * const present = inHand() ? nullptr : map_->single();
        arrive(present && HashMapKey<Key>::lessThan(key_, present->key_) ? present : nullptr);
    }
    // The single entry that the walk began with is not met again in the table.
    void passBy() noexcept {
        if (state_ != 0 && *several_ && HashMapKey<Key>::equals((*several_)->key(), key_)) ++*several_;
    }

    HashMap2018 const * map_;
    // The single entry that the walk came to: its key, and the collection's state then. 0 for none.
    Key key_;
    std::uintptr_t state_ = 0;
    // From the moment on when the walk goes over a table.
    std::optional<typename Table::Iterator> several_;
};

}  // namespace Vel
