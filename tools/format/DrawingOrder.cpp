#include "tools/format/DrawingOrder.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <queue>
#include <set>
#include <string_view>

namespace TopologyTools {
namespace {

using Kind = TopologyView::Kind;
using Reference = TopologyView::Reference;
using Neighbours = std::vector<std::vector<std::size_t>>;

// Distances from everywhere to everywhere take the square of the size; beyond this many hosts a picture is
// not worth that.
constexpr std::size_t kMostHostsMeasured = 2000;

// Distances from `start`; -1 where there is no way.
std::vector<int> distances(Neighbours const & neighbours, std::size_t start) {
    std::vector<int> distance(neighbours.size(), -1);
    std::queue<std::size_t> next;
    distance[start] = 0;
    for (next.push(start); !next.empty(); next.pop()) {
        for (std::size_t const host : neighbours[next.front()]) {
            if (distance[host] >= 0) continue;
            distance[host] = distance[next.front()] + 1;
            next.push(host);
        }
    }
    return distance;
}

class Levels {
public:
    explicit Levels(TopologyView const & view)
        : view_(view), neighbours_(view.hosts.size()), levels_(view.hosts.size()) {
        for (std::size_t i = 0; i < view.hosts.size(); ++i) indexOf_[view.hosts[i].name] = i;
        for (TopologyView::Link const & link : view.links) {
            auto const one = indexOf_.find(link.one.host);
            auto const other = indexOf_.find(link.other.host);
            if (one == indexOf_.end() || other == indexOf_.end() || one == other) continue;
            neighbours_[one->second].push_back(other->second);
            neighbours_[other->second].push_back(one->second);
        }
    }

    std::vector<int> find() {
        placeByMlag();
        spread();
        for (std::size_t host = 0; host < levels_.size(); ++host) {
            if (levels_[host]) continue;
            for (std::size_t const centre : centresAround(host)) levels_[centre] = 0;
            spread();
        }
        std::vector<int> result;
        for (std::optional<int> const & level : levels_) result.push_back(*level);
        return result;
    }

private:
    bool sharesMlags(TopologyView::Host const & host) const {
        return !host.mlags.empty() || host.mlagPeerLink;
    }

    // Whether an MLAG of its host ends there.
    bool isMultiChassis(TopologyView::Host const & host, Reference const & end) const {
        if (end.kind == Kind::mlag) return true;
        auto const named = [](auto const & ports, std::string const & name) {
            return std::find_if(ports.begin(), ports.end(),
                                [&](auto const & port) { return port.name == name; });
        };
        std::string group = end.name;
        if (end.kind == Kind::port) {
            auto const port = named(host.ports, end.name);
            if (port == host.ports.end() || !port->group || port->group->host != host.name) return false;
            group = port->group->name;
        }
        auto const at = named(host.groups, group);
        return at != host.groups.end() && at->mlag;
    }

    void placeByMlag() {
        for (std::size_t i = 0; i < view_.hosts.size(); ++i) {
            if (sharesMlags(view_.hosts[i])) levels_[i] = 0;
        }
        auto const below = [this](Reference const & end, Reference const & peer) {
            auto const host = indexOf_.find(end.host);
            auto const other = indexOf_.find(peer.host);
            if (host == indexOf_.end() || other == indexOf_.end() || levels_[other->second] == 0) return;
            if (isMultiChassis(view_.hosts[host->second], end)) levels_[other->second] = 1;
        };
        for (TopologyView::Link const & link : view_.links) {
            below(link.one, link.other);
            below(link.other, link.one);
        }
        for (std::size_t i = 0; i < levels_.size(); ++i) {
            if (levels_[i] != 0) continue;
            for (std::size_t const host : neighbours_[i]) {
                if (!levels_[host]) levels_[host] = -1;
            }
        }
    }

    // Hosts without a level get one from the nearest host that has one: further away from the middle.
    void spread() {
        std::queue<std::size_t> next;
        for (std::size_t i = 0; i < levels_.size(); ++i) {
            if (levels_[i]) next.push(i);
        }
        for (; !next.empty(); next.pop()) {
            for (std::size_t const host : neighbours_[next.front()]) {
                if (levels_[host]) continue;
                int const level = *levels_[next.front()];
                levels_[host] = level < 0 ? level - 1 : level + 1;
                next.push(host);
            }
        }
    }

    // Of the hosts that can be reached from `start`, those with the least sum of distances to the others.
    std::vector<std::size_t> centresAround(std::size_t start) const {
        std::vector<std::size_t> all;
        std::vector<int> const reached = distances(neighbours_, start);
        for (std::size_t i = 0; i < reached.size(); ++i) {
            if (reached[i] >= 0) all.push_back(i);
        }
        if (all.size() > kMostHostsMeasured) return {start};
        std::vector<std::size_t> best;
        long least = std::numeric_limits<long>::max();
        for (std::size_t const host : all) {
            long sum = 0;
            for (int const distance : distances(neighbours_, host)) sum += std::max(distance, 0);
            if (sum < least) best.clear();
            if (sum <= least) best.push_back(host);
            least = std::min(least, sum);
        }
        return best;
    }

    TopologyView const & view_;
    std::map<std::string_view, std::size_t> indexOf_;
    Neighbours neighbours_;
    std::vector<std::optional<int>> levels_;
};

}  // namespace

DrawingOrder::DrawingOrder(TopologyView const & view) {
    std::vector<int> const levels = Levels(view).find();
    for (std::size_t i = 0; i < levels.size(); ++i) level_[view.hosts[i].name] = levels[i];
}

bool DrawingOrder::isAbove(Reference const & a, Reference const & b) const {
    auto const level = [this](Reference const & end) {
        auto const at = level_.find(end.host);
        return at == level_.end() ? std::numeric_limits<int>::max() : at->second;
    };
    return level(a) != level(b) ? level(a) < level(b) : a < b;
}

}  // namespace TopologyTools
