// Members of collections, for tests: keyed by a name, and by a key whose hash the test chooses.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <utility>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/HashMap.h"
#include "platform/Vel/Name.h"

namespace VelTest {

inline Vel::Name name(int i) { return Vel::Name("eth-" + std::to_string(i)); }

struct ChosenKey {
    std::uint32_t chosenHash = 0;
    std::uint32_t rank = 0;

    std::uint32_t hash() const noexcept { return chosenHash; }
    friend bool operator==(ChosenKey const &, ChosenKey const &) = default;
    friend bool operator<(ChosenKey const & a, ChosenKey const & b) noexcept {
        return std::pair(a.rank, a.chosenHash) < std::pair(b.rank, b.chosenHash);
    }
    friend std::ostream & operator<<(std::ostream & out, ChosenKey const & key) {
        return out << std::hex << key.chosenHash << std::dec << '/' << key.rank;
    }
};

template <class Key>
class Member final : public Vel::HashMapMember, public Vel::AllocTracked<Member<Key>> {
public:
    explicit Member(Key key) : key_(std::move(key)) {}
    ~Member() override {
        if (onDestruction) onDestruction(*this);
    }
    Key const & collectionKey() const noexcept { return key_; }

    std::function<void(Member &)> onDestruction;

private:
    Key const key_;
};

template <class Key>
std::uint64_t liveMembers() {
    auto const * const record = Member<Key>::velAllocTrackTypeInfo_;
    return record ? record->live() : 0;
}

// A collection that lets tests at the engine beneath.
template <class Key>
class Collection : public Vel::HashMap<Member<Key>, Key, Collection<Key>> {
public:
    using Base = Vel::HashMap<Member<Key>, Key, Collection<Key>>;
    using Item = Member<Key>;

    explicit Collection(unsigned initialSize = 1) noexcept : Base(initialSize) {}

    using Vel::HashMapGeneric::findNextBucket;
    using Vel::HashMapGeneric::findNextG;
    using Vel::HashMapGeneric::startAtHash;

    Vel::Ptr<Item> add(Key key) {
        Vel::Ptr<Item> item = new Item(std::move(key));
        this->newMember(item);
        return item;
    }

    // The order in which a collection of `bucketBits` holds its members.
    static bool before(Key const & a, Key const & b, unsigned bucketBits) {
        std::uint32_t const bucketOfA =
            Vel::HashMapGeneric::bucketOf(Vel::HashMapKey<Key>::hash(a), bucketBits);
        std::uint32_t const bucketOfB =
            Vel::HashMapGeneric::bucketOf(Vel::HashMapKey<Key>::hash(b), bucketBits);
        return bucketOfA != bucketOfB ? bucketOfA < bucketOfB : Vel::HashMapKey<Key>::lessThan(a, b);
    }

    static constexpr Vel::HashMapGeneric::KeyTable kTable{
        [](void const * key) { return Vel::HashMapKey<Key>::hash(*static_cast<Key const *>(key)); },
        [](Vel::HashMapMember const & member, void const * key) {
            return static_cast<Item const &>(member).collectionKey() == *static_cast<Key const *>(key);
        },
        [](Vel::HashMapMember const & member, void const * key) {
            return Vel::HashMapKey<Key>::lessThan(static_cast<Item const &>(member).collectionKey(),
                                                  *static_cast<Key const *>(key));
        },
        [](Vel::HashMapMember const & member) -> void const * {
            return &static_cast<Item const &>(member).collectionKey();
        }};
};

using NamedMember = Member<Vel::Name>;
using NamedCollection = Collection<Vel::Name>;
using ChosenMember = Member<ChosenKey>;
using ChosenCollection = Collection<ChosenKey>;

}  // namespace VelTest
