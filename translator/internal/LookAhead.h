// Fetches into the processor's caches what the next steps of a walk will need. For the translator's own
// sources only.
//
// A walk meets edges in the order of their hashes, so that each of them, its ports, their hosts and the
// counterparts of these lie anywhere. One edge needs a dozen things, of which each says where the next one
// is; one after the other they cost more than everything that is done with them. Edges have nothing to do
// with one another: looked up for a batch of edges at a time, the same things arrive side by side.
//
// So do the ports of a host, which need little more than themselves.
//
// No model is changed, nothing is traced or kept: whatever happens to the models between two steps, the walk
// itself looks everything up again.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/NetworkTopology/DirectedEdgeV2.h"
#include "platform/NetworkTopology/HostV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/NetworkTopologyV3/Host.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "translator/V2Sm.h"

namespace NetworkTopologyAggregator {

// How many members are looked at together, and below how many of a topology it is not worth it.
inline constexpr std::size_t kAtOnce = 24;
inline constexpr std::uint32_t kFewest = 8192;

// Things that begin to be fetched when they are added. What is too many is dropped: nothing depends on it.
template <class T, std::size_t kMost>
class Batch {
public:
    void add(T * item) noexcept {
        if (!item || size_ == kMost) return;
        __builtin_prefetch(item);
        items_[size_++] = item;
    }
    void clear() noexcept { size_ = 0; }
    std::size_t size() const noexcept { return size_; }
    T * operator[](std::size_t i) const noexcept { return items_[i]; }
    T * const * begin() const noexcept { return items_.data(); }
    T * const * end() const noexcept { return items_.data() + size_; }

private:
    std::array<T *, kMost> items_;
    std::size_t size_ = 0;
};

// Those after the place of a walk.
template <class Member>
class MembersAhead {
public:
    // `isWorthIt`: it is not where most of what the walk needs is in the caches already.
    explicit MembersAhead(bool isWorthIt) noexcept : isWorthIt_(isWorthIt) {}

    // To be asked at each step of the walk: whether there is a new batch.
    template <class Walk>
    bool next(Walk const & walk) noexcept {
        if (!isWorthIt_ || steps_-- != 0) [[likely]]
            return false;
        members_.clear();
        walk.ahead(kBuckets, [&](Member & member) { members_.add(&member); });
        // Those behind them, which so come last and are looked at last.
        for (std::size_t i = 0; i < members_.size(); ++i) members_.add(Walk::nextInBucket(*members_[i]));
        // With the last of them the next batch is due.
        steps_ = members_.size() > 1 ? members_.size() - 1 : 0;
        return true;
    }
    auto const & members() const noexcept { return members_; }

private:
    static constexpr std::uint32_t kBuckets = 16;

    bool const isWorthIt_;
    std::size_t steps_ = 0;  // Until the next batch.
    Batch<Member, kAtOnce> members_;
};

// What a walk over the ports of a host needs of each: itself and its name.
class PortNamesAhead {
public:
    // `host` is one of so many hosts, which are taken to be alike.
    PortNamesAhead(NetworkTopology::HostV2 const & host, std::uint32_t hosts) noexcept
        : ports_(std::uint64_t{host.port().size()} * hosts >= kFewest) {}

    template <class Walk>
    void fetch(Walk const & walk) noexcept {
        if (!ports_.next(walk)) return;
        for (auto const * const port : ports_.members()) __builtin_prefetch(port->name().data());
    }

private:
    MembersAhead<NetworkTopology::PortV2 const> ports_;
};

// Ports of the input, their hosts, and the counterparts of both.
class PortsAhead {
public:
    // Null is left out.
    void add(NetworkTopology::PortBaseV2 const * port) noexcept { ports_.add(port); }
    // Looks the counterparts up. REQUIRES: the input has not changed since `add`.
    void fetch(NetworkTopologyV3::Status const & output) noexcept {
        std::array<NetworkTopology::HostV2 const *, kMost> hosts;
        std::array<NetworkTopologyV3::Host const *, kMost> hostsV3;
        auto host = hosts.begin();
        for (auto const * const port : ports_) *host++ = port->holder();
        auto hostV3 = hostsV3.begin();
        for (std::size_t i = 0; i < ports_.size(); ++i) {
            *hostV3++ = hosts[i] ? output.findHost(hosts[i]->name(), hosts[i]->nameHash()) : nullptr;
        }
        hostV3 = hostsV3.begin();
        for (auto const * const port : ports_) {
            if (*hostV3) counterparts_.add((*hostV3)->findPort(port->name(), port->nameHash()));
            ++hostV3;
        }
    }
    // Of the ports proper among them.
    auto const & counterparts() const noexcept { return counterparts_; }

private:
    static constexpr std::size_t kMost = 2 * kAtOnce;
    Batch<NetworkTopology::PortBaseV2 const, kMost> ports_;
    Batch<NetworkTopologyV3::Port const, kMost> counterparts_;
};

// What the population will need of the next edges.
class EdgesAhead {
public:
    explicit EdgesAhead(std::uint32_t edges) noexcept : edges_(edges >= kFewest) {}

    // `walk` is about to work on the edge that it stands on.
    template <class Walk>
    void fetch(Walk const & walk, NetworkTopologyV3::Status const & output) noexcept {
        if (!edges_.next(walk)) return;
        PortsAhead ports;
        for (auto const * const edge : edges_.members()) {
            ports.add(edge->fromPort().get());
            if (auto const * const destination = edge->toPort().single()) ports.add(destination->key().get());
        }
        ports.fetch(output);
        for (auto const * const port : ports.counterparts()) output.fetchEdge(port->portKeyHash());
    }

private:
    MembersAhead<NetworkTopology::DirectedEdgeV2 const> edges_;
};

// What the constructors of the next edges' reactors will need.
class EdgeReactorsAhead {
public:
    explicit EdgeReactorsAhead(std::uint32_t edges) noexcept : edges_(edges >= kFewest) {}

    // Null for no output.
    template <class Walk>
    void fetch(Walk const & walk, NetworkTopologyV3::Status const * output) noexcept {
        if (!edges_.next(walk) || !output) return;
        PortsAhead ports;
        for (auto const * const edge : edges_.members()) ports.add(edge->fromPort().get());
        ports.fetch(*output);
        Batch<NetworkTopologyV3::DirectedEdge const, kAtOnce> edgesV3;
        for (auto const * const port : ports.counterparts()) {
            if (port->hasPortKey()) edgesV3.add(output->findEdge(port->portKey()));
        }
    }

private:
    MembersAhead<NetworkTopology::DirectedEdgeV2 const> edges_;
};

// What the retirement of the next edges' reactors will need.
class RetirementsAhead {
public:
    explicit RetirementsAhead(std::uint32_t reactors) noexcept : reactors_(reactors >= kFewest) {}

    // Null for no output.
    template <class Walk>
    void fetch(Walk const & walk, NetworkTopologyV3::Status const * output) noexcept {
        if (!reactors_.next(walk) || !output) return;
        PortsAhead ports;
        for (auto const * const reactor : reactors_.members()) {
            __builtin_prefetch(reactor->notifier());
            ports.add(reactor->collectionKey().get());
        }
        ports.fetch(*output);
    }

private:
    MembersAhead<V2Sm::VelEdge> reactors_;
};

}  // namespace NetworkTopologyAggregator
