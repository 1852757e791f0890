#include "bench/translator_bench/Fabric.h"

#include <cassert>
#include <numeric>
#include <random>
#include <string_view>
#include <utility>

namespace Bench {

namespace {

constexpr std::uint64_t kWiringSeed = 1;
constexpr std::uint64_t kVisitingSeed = 2;

std::string numbered(std::string_view before, unsigned number, std::string_view after = {}) {
    return std::string(before) + std::to_string(number) + std::string(after);
}

// As wide as those of all other hosts.
std::string numberedHost(std::string_view before, unsigned number) {
    std::string const digits = std::to_string(number);
    return std::string(before) + std::string(digits.size() < 6 ? 6 - digits.size() : 0, '0') + digits;
}

}  // namespace

Fabric::Fabric(unsigned hosts, unsigned mostVisited) : hosts_(hosts), mostVisited_(mostVisited) {
    assert(hosts != 0 && hosts % 2 == 0);
    std::mt19937_64 random(kWiringSeed);
    for (unsigned & spine : spineOfFirstLeaf_) spine = static_cast<unsigned>(random() % (hosts / 2));
}

Fabric::Port Fabric::otherEnd(Port port) const noexcept {
    unsigned const half = hosts_ / 2;
    unsigned const shift = spineOfFirstLeaf_[port.number];
    if (port.host < half) return {half + (port.host + shift) % half, port.number};
    return {(port.host - shift) % half, port.number};  // The host's number is at least half, the shift less.
}

std::optional<unsigned> Fabric::groupOf(unsigned port) noexcept {
    if (port < kFirstMember) return std::nullopt;
    return (port - kFirstMember) / kMembersPerGroup;
}

std::string Fabric::hostName(unsigned host) { return numberedHost("host-", host + 1); }
std::string Fabric::portName(unsigned port) { return numbered("port-", port + 1); }
std::string Fabric::groupName(unsigned group) { return numbered("group-", group + 1); }
std::string Fabric::mlagName(unsigned mlag) { return numbered("mlag-", mlag + 1); }
std::string Fabric::secondaryMlagName(unsigned mlag) { return numbered("mlag-", mlag + 1, "-peer"); }
std::string Fabric::hostname(unsigned host) { return numberedHost("leaf-", host + 1); }
std::string Fabric::otherHostname(unsigned host) { return numberedHost("node-", host + 1); }
std::string Fabric::mlagDomainId(unsigned host) { return numberedHost("dom-", host / 2 + 1); }
std::uint64_t Fabric::mlagSystemId(unsigned host) { return 0x02'00'00'00'00'00 + host / 2; }

std::vector<std::uint32_t> Fabric::visitingOrder(unsigned n) const {
    std::vector<std::uint32_t> order(n);
    std::iota(order.begin(), order.end(), 0u);
    std::mt19937_64 random(kVisitingSeed);
    for (unsigned left = n; left > 1; --left) std::swap(order[left - 1], order[random() % left]);
    if (n > mostVisited_) {
        order.resize(mostVisited_);
        order.shrink_to_fit();
    }
    return order;
}

}  // namespace Bench
