// Entity collections: intrusive hash collections of framework objects.
//
// Each member carries its bucket link (a counted reference to the next member of its bucket) and the hash of
// the key under which it was inserted. The number of buckets is a power of two; the bucket of a key is the
// top bits of its 32-bit hash; within a bucket, members stand in the order of their keys, which for keys that
// take long to compare, and for members with `kInOneBucket`, begins with their hashes. A name hashes to the
// bit-reversed hash of its string, 0 for the empty name; a pointer to the hash of its value, 0 for null.
//
// Growth
//     Empty collections and those of one member need no bucket array. The array doubles when there are more
//     members than buckets and never shrinks. When memory for it cannot be had, chains grow longer instead. A
//     member class whose collections are small, and looked into all the time, has `kBucketsPerMember` of more
//     than one: chains are shorter. One whose collections are many and mostly hold a few has `kInOneBucket`:
//     up to so many members take no array.
//
// Walking while the collection changes
//     An iterator holds its current member. Removing that member, or any other, and inserting members is
//     allowed during a walk: no member that is there from the beginning to the end of a walk is missed or met
//     twice, even if the collection grows meanwhile, because an iterator keeps to the order of the bucket
//     count with which it started. Members added during a walk may or may not be met.
//
// Keys
//     A member is found under the key with which it was inserted, whatever it says of itself later. So a
//     member class offers `collectionKey()`, which never changes between insertion and removal.
//
// One engine, `HashMapGeneric`, does the work for all instantiations; the typed skin `HashMap` casts.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <type_traits>
#include <utility>

#include "platform/Vel/Export.h"
#include "platform/Vel/Name.h"
#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace Vel {

// What an object needs to stand in a collection.
class HashMapMember : public PtrInterface {
protected:
    HashMapMember() noexcept = default;
    // `hash` is that of the key under which this will stand.
    explicit HashMapMember(std::uint32_t hash) noexcept : bucketHash_(hash) {}

    // Of the key: at hand without a look at the key, which may lie elsewhere.
    std::uint32_t collectionHash() const noexcept { return bucketHash_; }
    // For classes that want to know it of themselves at no cost: that this has been taken out of its
    // collection, and will stand in no other. It has no next member then, and is its own.
    void leftIs() noexcept { bucketNext_ = this; }
    bool hasLeft() const noexcept { return bucketNext_ == this; }

private:
    friend class HashMapCursor;
    friend class HashMapGeneric;
    std::uint32_t bucketHash_ = 0;
    // A counted reference, which the collection takes and gives back: a member that stands in none has none.
    // Its own address when it `hasLeft`.
    HashMapMember * bucketNext_ = nullptr;
};

class VEL_EXPORT HashMapGeneric {
public:
    // The key callbacks of an instantiation. `key` points to a key of the instantiation's key type. The
    // engine sets bucket links itself, because every member has its link in the same place.
    struct KeyTable {
        std::uint32_t (*hash)(void const * key);
        bool (*keyEquals)(HashMapMember const & member, void const * key);
        bool (*keyLessThan)(HashMapMember const & member, void const * key);
        // The key under which `member` stands, or stood when it was removed.
        void const * (*key)(HashMapMember const & member);
    };

    HashMapGeneric(HashMapGeneric const &) = delete;
    HashMapGeneric & operator=(HashMapGeneric const &) = delete;

    std::uint32_t size() const noexcept { return size_; }
    // Another number after each insertion, removal and growth; begins anew after four million of them.
    std::uint32_t modificationCount() const noexcept { return state_ / kModification; }
    unsigned bucketBits() const noexcept { return -state_ % kHashBits; }
    static constexpr std::uint32_t bucketOf(std::uint32_t hash, unsigned bucketBits) noexcept {
        return static_cast<std::uint32_t>(std::uint64_t{hash} >> (kHashBits - bucketBits));
    }

protected:
    friend class HashMapCursor;

    // The first bucket array has `initialSize` buckets, or the next power of two; a hint, which buys no more
    // than 32,768.
    explicit HashMapGeneric(unsigned initialSize) noexcept;
    ~HashMapGeneric() { emptyAllBuckets(); }

    std::uint32_t bucketCount() const noexcept { return std::uint32_t{1} << bucketBits(); }
    // Makes so many buckets, or the next power of two, if there are fewer; a hint.
    void bucketsIs(std::uint64_t buckets) noexcept;

    // A counted reference to a member, or null: that of a bucket to its first one, or of a member to the
    // next.
    using Link = HashMapMember *;

    // The links of the bucket in which members of that hash stand, one after the other; the last one is null.
    Link * linkAtHash(std::uint32_t hash) noexcept {
        std::uint32_t const state = state_;
        if (isSingle(state)) [[unlikely]]
            return &single_;
        return &buckets_[std::uint64_t{hash} >> state % kShifts];
    }
    static Link * nextLink(Link link) noexcept { return &link->bucketNext_; }
    // Whether one more member finds as many buckets for each as that.
    bool hasRoom(unsigned bucketsPerMember) const noexcept {
        return std::uint64_t{size_} * bucketsPerMember << state_ % kShifts >> kHashBits == 0;
    }
    // Makes twice as many buckets, or the first array, with one at least for each member and one more; a
    // hint.
    [[gnu::cold]] void grow() noexcept {
        auto const bits = static_cast<unsigned>(std::bit_width(size_));
        bucketBitsIs(std::max({bucketBits() + 1, initialBucketBits(), bits}));
    }
    // Inserts `member` under a key of that hash, where `link` points. REQUIRES: no member stands under that
    // key, `member` stands nowhere, and the key's place is there.
    void newMemberG(Link & link, Ptr<HashMapMember> member, std::uint32_t hash) noexcept {
        member->bucketHash_ = hash;
        member->bucketNext_ = link;
        link = member.release();
        ++size_;
        state_ += kModification;
    }
    // Takes the member out to which `link` points.
    Ptr<HashMapMember> deleteMember(Link & link) noexcept {
        // The link moves past the member, which must not keep its old successors alive.
        HashMapMember * const member = link;
        link = std::exchange(member->bucketNext_, nullptr);
        --size_;
        state_ += kModification;
        return Ptr<HashMapMember>::adopted(member);
    }
    // Null where there are several.
    Link * onlyBucket() noexcept {
        if (isSingle(state_)) [[unlikely]]
            return &single_;
        return nullptr;
    }
    Link const * onlyBucket() const noexcept { return const_cast<HashMapGeneric *>(this)->onlyBucket(); }
    // The only bucket's, while there is but one and that is not empty; else null.
    Link * onlyLink() noexcept { return isSingle(state_) && single_ ? &single_ : nullptr; }
    // Takes every member out, one by one, so that no chain is released recursively; frees the buckets.
    void emptyAllBuckets() noexcept {
        // A member's destructor may come back to this collection, so nothing is assumed between two members.
        while (Link * const link = onlyLink()) deleteMember(*link);
        if (!isSingle(state_)) emptyArray();
    }
    // Takes the members out, bucket by bucket; `before(rest)` is called before each bucket with the links of
    // it and of those behind it.
    template <class Before>
    void emptyBuckets(Before const & before) noexcept {
        while (size_ != 0) {
            // A member's destructor may come back to this collection, and leave it with another array.
            std::span<Link> const links(buckets(), bucketCount());
            std::uint32_t const shift = state_ % kShifts;
            auto const isSameArray = [&] { return state_ % kShifts == shift && buckets() == links.data(); };
            for (std::size_t bucket = 0; bucket < links.size() && isSameArray(); ++bucket) {
                before(links.subspan(bucket));
                while (links[bucket]) {
                    deleteMember(links[bucket]);
                    if (!isSameArray()) break;
                }
            }
        }
    }
    // Calls `visit` on every member, in order.
    template <class Visit>
    void forEach(Visit const & visit) const {
        Link const * const links = buckets();
        for (std::uint32_t bucket = 0, count = bucketCount(); bucket < count; ++bucket) {
            for (HashMapMember * m = links[bucket]; m; m = nextInBucket(*m)) visit(*m);
        }
    }
    // The first member of the bucket in which members of that hash stand; null when it is empty.
    HashMapMember * startAtHash(std::uint32_t hash) const noexcept {
        std::uint32_t const state = state_;
        if (isSingle(state)) [[unlikely]]
            return single_;
        return buckets_[std::uint64_t{hash} >> state % kShifts];
    }
    static HashMapMember * nextInBucket(HashMapMember const & member) noexcept { return member.bucketNext_; }
    [[gnu::always_inline]] void fetch(std::uint32_t hash) const noexcept {
        std::uint32_t const state = state_;
        if (!isSingle(state)) __builtin_prefetch(&buckets_[std::uint64_t{hash} >> state % kShifts]);
    }
    static std::uint32_t bucketHash(HashMapMember const & member) noexcept { return member.bucketHash_; }

    // The member after `member`, which may have left, in bucket-then-key order, or the first one when given
    // none; `bucketBits`, at most that of the collection, says how many buckets that order has. Sets
    // `bucket`.
    HashMapMember * findNextG(HashMapMember const * member, unsigned bucketBits, KeyTable const & keys,
                              std::uint32_t & bucket) const noexcept;
    // The first member of the first non-empty bucket after `bucket`, which it moves on. REQUIRES: `bucket` is
    // one of the present array.
    HashMapMember * findNextBucket(std::uint32_t & bucket) const noexcept;

private:
    static constexpr unsigned kMostBucketBits = 31;
    static constexpr unsigned kMostInitialBucketBits = 15;

    Link * buckets() noexcept { return isSingle(state_) ? &single_ : buckets_; }
    Link const * buckets() const noexcept { return isSingle(state_) ? &single_ : buckets_; }
    // Whether there is but one bucket.
    static bool isSingle(std::uint32_t state) noexcept { return (state & kHashBits) != 0; }
    void bucketBitsIs(unsigned bits) noexcept;
    void emptyArray() noexcept;
    // Of the first array.
    unsigned initialBucketBits() const noexcept { return state_ / kInitialBits % kInitialBitCounts; }

    static constexpr unsigned kHashBits = 32;
    static constexpr std::uint32_t kShifts = 2 * kHashBits;
    static constexpr std::uint32_t kInitialBits = kShifts;
    static constexpr std::uint32_t kInitialBitCounts = kMostInitialBucketBits + 1;
    static constexpr std::uint32_t kModification = kInitialBits * kInitialBitCounts;

    // There is a collection in every edge and every group, most of them with one member or none: hence no
    // word without need.
    union {
        Link single_;  // The only bucket, without bits.
        Link * buckets_;
    };
    std::uint32_t size_ = 0;
    // From the lowest bit on: six for what shifts a hash to the number of its bucket, which is 32 less the
    // bits of that number; four for the bits of the first array's numbers; and the modification count. What a
    // walk depends on is so compared at once.
    std::uint32_t state_;
};

// The place of a walk, without the member that stands there: whoever walks holds that.
class VEL_EXPORT HashMapCursor {
public:
    // Before the first member.
    HashMapCursor(HashMapGeneric const & map, HashMapGeneric::KeyTable const & keys) noexcept
        : map_(&map), keys_(&keys), state_(map.state_), last_(map.bucketCount() - 1) {}

    // Null when there is none.
    HashMapMember * first() noexcept {
        HashMapMember * const first = map_->buckets()[0];
        return first || map_->size_ == 0 ? first : map_->findNextBucket(bucket_);
    }
    // Where `member` stands; null is the end.
    void placeIs(HashMapMember const * member) noexcept {
        if (member) bucket_ = HashMapGeneric::bucketOf(member->bucketHash_, bucketBits());
    }
    // The one after `current`, which may have left; null when there is none.
    HashMapMember * after(HashMapMember const & current) noexcept {
        // The collection's state may be the same again after millions of changes.
        if (map_->state_ != state_ || current.hasLeft()) [[unlikely]]
            return afterChange(current);
        if (HashMapMember * const next = current.bucketNext_) [[unlikely]]
            return next;
        // Mostly the next bucket has a member.
        if (bucket_ < last_) {
            if (HashMapMember * const next = map_->buckets_[bucket_ + 1]) {
                ++bucket_;
                return next;
            }
        }
        return map_->findNextBucket(bucket_);
    }
    // Calls `visit` on the first member of each of the next buckets after the present one, as far as they
    // are not empty. Looks at no member. Of a collection that has grown meanwhile it shows others.
    template <class Visit>
    void ahead(std::uint32_t buckets, Visit const & visit) const noexcept {
        HashMapGeneric::Link const * const links = map_->buckets();
        std::uint32_t const end = std::min(map_->bucketCount() - 1, bucket_ + buckets);
        for (std::uint32_t bucket = bucket_; bucket < end;) {
            if (HashMapMember * const member = links[++bucket]) visit(*member);
        }
    }

    static HashMapMember * nextInBucket(HashMapMember const & member) noexcept { return member.bucketNext_; }

private:
    unsigned bucketBits() const noexcept { return static_cast<unsigned>(std::bit_width(last_)); }
    HashMapMember * afterChange(HashMapMember const & current) noexcept;

    HashMapGeneric const * map_;
    HashMapGeneric::KeyTable const * keys_;
    std::uint32_t bucket_ = 0;
    std::uint32_t state_;  // Of the collection, as long as it has the buckets of this walk's order.
    std::uint32_t last_;   // Bucket of this walk's order.
};

// Holds the member on which it stands.
class HashMapIteratorGeneric {
public:
    HashMapIteratorGeneric(HashMapGeneric const & map, HashMapGeneric::KeyTable const & keys) noexcept
        : cursor_(map, keys), current_(cursor_.first()) {}
    // Starts at `member`; null is the end.
    HashMapIteratorGeneric(HashMapGeneric const & map, HashMapGeneric::KeyTable const & keys,
                           HashMapMember * member) noexcept
        : cursor_(map, keys), current_(member) {
        cursor_.placeIs(member);
    }

    // Null at the end.
    Ptr<HashMapMember> const & current() const noexcept { return current_; }
    // Does nothing at the end.
    void advance() noexcept {
        if (current_) current_ = Ptr<HashMapMember>(cursor_.after(*current_));
    }

private:
    HashMapCursor cursor_;
    Ptr<HashMapMember> current_;
};

// The framework's integer hash. `kReversed` tells whether the result is bit-reversed. Objects that lie side
// by side, as those of one class do, spread more evenly over the top bits than at random, for which the
// multiplier was searched; what lies at other equal distances does not always.
template <bool kReversed>
struct VelHashBase {
    static std::uint32_t hashU32(std::uintptr_t value) noexcept {
        auto const hash = static_cast<std::uint32_t>(value * 0x7f85a7896acb6513u >> 32);
        return kReversed ? bitReverse(hash) : hash;
    }
};

// How keys of a type hash and compare. A key type of a model offers `hash()`, `==`, `<`, and where
// `==` takes long `isSame`, which may take equal keys for different ones but costs next to nothing. One whose
// hash lies elsewhere, so that a look at it takes longer than `isSame`, says so with `kHashesLate`; one for
// which `<` takes long, with `kOrdersByHash`.
template <class Key>
struct HashMapKey {
    // Whether hashing one takes longer than finding that two are the same.
    static constexpr bool kHashesLate = requires { requires Key::kHashesLate; };
    // Whether keys stand in the order of their hashes first: members have theirs at hand.
    static constexpr bool kOrdersByHash = requires { requires Key::kOrdersByHash; };
    // Whether comparing two takes no longer than comparing their hashes.
    static constexpr bool kComparesFast = false;
    static std::uint32_t hash(Key const & key) noexcept { return key.hash(); }
    static bool isSame(Key const & a, Key const & b) noexcept {
        if constexpr (requires { a.isSame(b); }) {
            return a.isSame(b);
        } else {
            return a == b;
        }
    }
    static bool equals(Key const & a, Key const & b) noexcept { return a == b; }
    static bool lessThan(Key const & a, Key const & b) noexcept {
        if constexpr (kOrdersByHash) {
            if (hash(a) != hash(b)) return hash(a) < hash(b);
        }
        return a < b;
    }
};
template <>
struct HashMapKey<String> {
    static constexpr bool kHashesLate = false;
    static constexpr bool kOrdersByHash = false;
    static constexpr bool kComparesFast = false;
    static std::uint32_t hash(String const & key) noexcept { return key.reversedHash(); }
    static bool isSame(String const & a, String const & b) noexcept { return a.data() == b.data(); }
    // Most keys are copies of the one that is looked for.
    static bool equals(String const & a, String const & b) noexcept {
        if (isSame(a, b)) [[likely]]
            return true;
        return a == b;
    }
    static bool lessThan(String const & a, String const & b) noexcept { return a < b; }
};
template <>
struct HashMapKey<Name> : HashMapKey<String> {};
template <class T>
struct HashMapKey<Ptr<T>> {
    static constexpr bool kHashesLate = true;
    static constexpr bool kOrdersByHash = false;
    static constexpr bool kComparesFast = true;
    static std::uint32_t hash(Ptr<T> const & key) noexcept {
        return key ? VelHashBase<false>::hashU32(value(key)) : 0;
    }
    static bool isSame(Ptr<T> const & a, Ptr<T> const & b) noexcept { return a == b; }
    static bool equals(Ptr<T> const & a, Ptr<T> const & b) noexcept { return a == b; }
    static bool lessThan(Ptr<T> const & a, Ptr<T> const & b) noexcept { return value(a) < value(b); }

private:
    // Of the framework object, which is what lookups by plain pointer have.
    static std::uintptr_t value(Ptr<T> const & key) noexcept {
        return reinterpret_cast<std::uintptr_t>(static_cast<PtrInterface const *>(key.get()));
    }
};

// Steps over a collection of `Member`, which may be const.
template <class Member>
class HashMapIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Ptr<Member>;
    using difference_type = std::ptrdiff_t;
    using pointer = Ptr<Member> const *;
    using reference = Ptr<Member> const &;

    HashMapIterator(HashMapGeneric const & map, HashMapGeneric::KeyTable const & keys) noexcept
        : cursor_(map, keys), current_(static_cast<Member *>(cursor_.first())) {}
    // Starts at `member`; null is the end.
    HashMapIterator(HashMapGeneric const & map, HashMapGeneric::KeyTable const & keys,
                    Member * member) noexcept
        : cursor_(map, keys), current_(member) {
        cursor_.placeIs(member);
    }

    // Valid until the iterator moves. Null at the end.
    Ptr<Member> const & operator*() const noexcept { return current_; }
    Ptr<Member> const * operator->() const noexcept { return &current_; }
    // Does nothing at the end.
    HashMapIterator & operator++() noexcept {
        if (current_) current_ = Ptr<Member>(static_cast<Member *>(cursor_.after(*current_)));
        return *this;
    }
    void operator++(int) noexcept { ++*this; }
    // For those who want to fetch what they will need: calls `visit(member)` on the first one in each of the
    // next buckets, and does not look at any itself.
    template <class Visit>
    void ahead(std::uint32_t buckets, Visit const & visit) const noexcept {
        cursor_.ahead(buckets, [&](HashMapMember & member) { visit(static_cast<Member &>(member)); });
    }
    // The one after `member` in its bucket; null for the last one.
    static Member * nextInBucket(Member & member) noexcept {
        return static_cast<Member *>(HashMapCursor::nextInBucket(member));
    }
    explicit operator bool() const noexcept { return bool(current_); }
    friend bool operator==(HashMapIterator const & a, std::default_sentinel_t) noexcept {
        return !a.current_;
    }

private:
    HashMapCursor cursor_;
    Ptr<Member> current_;
};

// What `for (auto const & member : object->collection())` walks. Keeps the object that owns the collection
// alive for the walk.
template <class Map, class Iterator>
class HashMapRange {
public:
    HashMapRange(Map const & map, PtrInterface const & owner) noexcept : keepOwner_(owner), map_(map) {}

    Iterator begin() const noexcept { return map_.template iterator<Iterator>(); }
    std::default_sentinel_t end() const noexcept { return {}; }
    // From the member of that key on; the end when there is none.
    template <class Key>
    Iterator at(Key const & key) const noexcept {
        return map_.template iteratorAt<Iterator>(key);
    }
    std::uint32_t size() const noexcept { return map_.size(); }
    bool empty() const noexcept { return map_.size() == 0; }
    // Of a collection that mostly has one entry (HashMap2018One.h).
    auto const * single() const noexcept { return map_.single(); }

private:
    KeepAlive const keepOwner_;
    Map const & map_;
};

// The typed skin. `Model` is the class that owns the collection.
template <class Member, class Key, class Model>
class HashMap : public HashMapGeneric {
public:
    using Range = HashMapRange<HashMap, HashMapIterator<Member>>;
    using ConstRange = HashMapRange<HashMap, HashMapIterator<Member const>>;

    explicit HashMap(unsigned initialSize) noexcept : HashMapGeneric(initialSize) {}

    // Where members of one hash stand, so that whoever adds what was not there need not look for that again.
    class Place {
    public:
        Place(HashMap & map, Key const & key) noexcept {
            if constexpr (kHashesLate) {
                bucket_ = map.onlyBucket();
                if (bucket_) return;
            }
            hash_ = HashMapKey<Key>::hash(key);
            bucket_ = map.linkAtHash(hash_);
        }
        Place(HashMap & map, std::uint32_t hash) noexcept : bucket_(map.linkAtHash(hash)), hash_(hash) {}

    private:
        friend class HashMap;

        Link * bucket_;
        // Perhaps not known where keys hash late, and there is one bucket.
        std::uint32_t hash_ = 0;
    };

    // Makes room for that many members at once; a hint.
    void reserve(std::uint32_t members) noexcept {
        if (members > 1) this->bucketsIs(std::uint64_t{members} * bucketsPerMember());
    }
    // The member of that key, or null. Never inserts.
    Member * operator[](Key const & key) const noexcept {
        if constexpr (kHashesLate) {
            if (Link const * const only = this->onlyBucket()) return findUnhashed(*only, key);
        }
        return find(HashMapKey<Key>::hash(key), key);
    }
    // The same for a key whose hash is known.
    Member * find(std::uint32_t hash, Key const & key) const noexcept {
        return findIn(startAtHash(hash), hash, key);
    }
    // The same for those who will add a member when there is none.
    Member * find(Place const & place, Key const & key) const noexcept {
        if constexpr (kHashesLate && !HashMapKey<Key>::kComparesFast) {
            if (this->onlyBucket()) return findUnhashed(*place.bucket_, key);
        }
        return findIn(*place.bucket_, place.hash_, key);
    }
    // The same for a key in another form: its hash, and whether it is that of a member.
    template <class IsKeyOf>
    Member * find(std::uint32_t hash, IsKeyOf const & isKeyOf) const noexcept {
        for (HashMapMember * m = startAtHash(hash); m; m = nextInBucket(*m)) {
            auto * const member = static_cast<Member *>(m);
            if (bucketHash(*m) == hash && isKeyOf(*member)) return member;
        }
        return nullptr;
    }
    // For those who will look up, or add, a key of that hash soon.
    [[gnu::always_inline]] void fetch(std::uint32_t hash) const noexcept { HashMapGeneric::fetch(hash); }
    // Fetches the first member of the bucket in which members of that hash stand.
    [[gnu::always_inline]] void fetchFirst(std::uint32_t hash) const noexcept {
        __builtin_prefetch(startAtHash(hash));
    }
    void newMember(Ptr<Member> member) noexcept {
        std::uint32_t const hash = HashMapKey<Key>::hash(member->collectionKey());
        newMember(hash, std::move(member));
    }
    void newMember(std::uint32_t hash, Ptr<Member> member) noexcept {
        newMemberAt(linkAtHash(hash), hash, std::move(member));
    }
    // REQUIRES: the collection has not changed since `place` was made with the member's key.
    void newMember(Place const & place, Ptr<Member> member) noexcept {
        std::uint32_t hash = place.hash_;
        if constexpr (kHashesLate) {
            if (this->onlyBucket()) hash = HashMapKey<Key>::hash(member->collectionKey());
        }
        newMemberAt(place.bucket_, hash, std::move(member));
    }
    // Takes the member of that key out and returns it; null when there is none.
    Ptr<Member> deleteMember(Key const & key) noexcept {
        if constexpr (kHashesLate) {
            if (Link * const only = this->onlyBucket()) return deleteFrom(only, key, isAny);
        }
        return deleteMember(HashMapKey<Key>::hash(key), key);
    }
    Ptr<Member> deleteMember(std::uint32_t hash, Key const & key) noexcept {
        return deleteFrom(linkAtHash(hash), key, [hash](HashMapMember const & member) {
            return HashMapKey<Key>::kComparesFast || bucketHash(member) == hash;
        });
    }
    // Most have one member or none, whose class is known here.
    void emptyAllBuckets() noexcept {
        while (Link * const link = onlyLink()) takenOut(*link);
        HashMapGeneric::emptyAllBuckets();
    }
    // The same for large collections whose members refer to things that lie anywhere: `ahead(member)` fetches
    // what the destructors of some of those that come next will need.
    template <class Ahead>
    void emptyAllBuckets(Ahead const & ahead) noexcept {
        constexpr std::size_t kAhead = 8;  // Buckets.
        this->emptyBuckets([&](std::span<Link const> links) {
            if (links.size() > 2 * kAhead) __builtin_prefetch(links[2 * kAhead]);
            if (links.size() > kAhead && links[kAhead]) ahead(static_cast<Member const &>(*links[kAhead]));
        });
        emptyAllBuckets();
    }
    // Calls `visit(member)` on every member, in order. REQUIRES: that changes no collection, and releases
    // nothing; else walk with an iterator.
    template <class Visit>
    void forEach(Visit const & visit) const {
        HashMapGeneric::forEach([&](HashMapMember & member) { visit(static_cast<Member &>(member)); });
    }
    // What the engine's own functions take.
    static constexpr KeyTable const & keys() noexcept { return kKeys; }

    template <class Iterator = HashMapIterator<Member>>
    Iterator iterator() const noexcept {
        return Iterator(*this, kKeys);
    }
    // Starts at the member of that key; at the end when there is none.
    template <class Iterator = HashMapIterator<Member>>
    Iterator iteratorAt(Key const & key) const noexcept {
        return Iterator(*this, kKeys, (*this)[key]);
    }

private:
    // Such a key is not hashed for the only bucket of a small collection.
    static constexpr bool kHashesLate = HashMapKey<Key>::kHashesLate;
    // With several members in a bucket as a rule, most pairs of them are told apart by their hashes.
    static constexpr bool kOrdersByHash = [] {
        if constexpr (requires { Member::kInOneBucket; }) {
            return Member::kInOneBucket > 1;
        } else {
            return false;
        }
    }();

    static constexpr unsigned bucketsPerMember() noexcept {
        if constexpr (requires { Member::kBucketsPerMember; }) {
            return Member::kBucketsPerMember;
        } else {
            return 1;
        }
    }
    // Whether one more member stands in the only bucket.
    bool fitsOneBucket() const noexcept {
        if constexpr (requires { Member::kInOneBucket; }) {
            return this->onlyBucket() && this->size() < Member::kInOneBucket;
        } else {
            return false;
        }
    }
    static Key const & keyOf(HashMapMember const & member) noexcept {
        return static_cast<Member const &>(member).collectionKey();
    }
    static bool isAny(HashMapMember const &) noexcept { return true; }
    // Among `m` and those behind it, whatever their hashes.
    static Member * findUnhashed(HashMapMember * m, Key const & key) noexcept {
        while (m && !HashMapKey<Key>::equals(keyOf(*m), key)) m = nextInBucket(*m);
        return static_cast<Member *>(m);
    }
    // Among `m` and those behind it.
    static Member * findIn(HashMapMember * m, std::uint32_t hash, Key const & key) noexcept {
        if constexpr (HashMapKey<Key>::kComparesFast) return findUnhashed(m, key);
        for (; m; m = nextInBucket(*m)) {
            if (bucketHash(*m) != hash) [[unlikely]]
                continue;
            if (HashMapKey<Key>::isSame(keyOf(*m), key)) [[likely]]
                return static_cast<Member *>(m);
            // Out of line whatever goes beyond a look at both.
            return findFrom(m, hash, key);
        }
        return nullptr;
    }
    // Takes the member of that key out that is `*link` or stands behind it. `mayBe(member)` is false of most
    // members that have another key.
    template <class MayBe>
    Ptr<Member> deleteFrom(Link * link, Key const & key, MayBe const & mayBe) noexcept {
        for (; *link; link = nextLink(*link)) {
            if (!mayBe(**link)) [[unlikely]]
                continue;
            if (HashMapKey<Key>::equals(keyOf(**link), key)) [[likely]]
                return takenOut(*link);
        }
        return nullptr;
    }
    void newMemberAt(Link * link, std::uint32_t hash, Ptr<Member> member) noexcept {
        if (!hasRoom(bucketsPerMember()) && !fitsOneBucket()) [[unlikely]] {
            grow();
            link = linkAtHash(hash);
        }
        if (*link) [[unlikely]]
            link = placeOf(link, hash, member->collectionKey());
        newMemberG(*link, std::move(member), hash);
    }
    // What `link` points to.
    Ptr<Member> takenOut(Link & link) noexcept {
        return Ptr<Member>::adopted(static_cast<Member *>(HashMapGeneric::deleteMember(link).release()));
    }
    // Where a key of that hash, which no member has, belongs among the members behind `link`.
    [[gnu::noinline]] static Link * placeOf(Link * link, std::uint32_t hash, Key const & key) noexcept {
        while (*link && isBefore(**link, hash, key)) link = nextLink(*link);
        return link;
    }
    static bool isBefore(HashMapMember const & member, std::uint32_t hash, Key const & key) noexcept {
        if constexpr (kOrdersByHash || HashMapKey<Key>::kOrdersByHash) {
            if (bucketHash(member) != hash) return bucketHash(member) < hash;
        }
        return HashMapKey<Key>::lessThan(keyOf(member), key);
    }
    static bool isBefore(Key const & key, Key const & other) noexcept {
        if constexpr (kOrdersByHash) {
            std::uint32_t const hash = HashMapKey<Key>::hash(key);
            std::uint32_t const otherHash = HashMapKey<Key>::hash(other);
            if (hash != otherHash) return hash < otherHash;
        }
        return HashMapKey<Key>::lessThan(key, other);
    }
    [[gnu::noinline]] static Member * findFrom(HashMapMember * m, std::uint32_t hash,
                                               Key const & key) noexcept {
        for (; m; m = nextInBucket(*m)) {
            if (bucketHash(*m) != hash) continue;
            if (HashMapKey<Key>::equals(keyOf(*m), key)) return static_cast<Member *>(m);
            // Another key of the same hash: past the key's place there is no need to go on.
            if (isPast(key, *m)) [[unlikely]]
                return nullptr;
        }
        return nullptr;
    }
    [[gnu::cold, gnu::noinline]] static bool isPast(Key const & key, HashMapMember const & member) noexcept {
        return isBefore(key, keyOf(member));
    }
    static Key const & keyAt(void const * key) noexcept { return *static_cast<Key const *>(key); }

    static constexpr KeyTable kKeys{
        [](void const * key) { return HashMapKey<Key>::hash(keyAt(key)); },
        [](HashMapMember const & member, void const * key) {
            return HashMapKey<Key>::equals(keyOf(member), keyAt(key));
        },
        [](HashMapMember const & member, void const * key) { return isBefore(keyOf(member), keyAt(key)); },
        [](HashMapMember const & member) -> void const * { return &keyOf(member); }};
};

}  // namespace Vel
