#include "platform/NetworkTopologyV3/PortKey.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/NetworkTopologyV3/Status.h"
#include "tests/support/Allocations.h"
#include "tests/support/Probes.h"

namespace NetworkTopologyV3 {

namespace {

using std::string_literals::operator""s;

PortKey keyOf(std::string_view host, std::string_view kind, std::string_view name) {
    return PortKey(host, PortKey::memberOf(kind, Vel::Name(name)));
}

std::string printed(PortKey const & key) {
    std::ostringstream out;
    out << key;
    return out.str();
}

TEST(PortKey, IsEmptyByDefault) {
    PortKey const key;
    EXPECT_TRUE(key.empty());
    EXPECT_EQ(key, PortKey("", ""));
    EXPECT_EQ(key.hash(), 0U);
    EXPECT_EQ(printed(key), "");
    EXPECT_NE(key, keyOf("", PortKey::kPort, ""));
    EXPECT_FALSE(keyOf("", PortKey::kPort, "").empty());
}

TEST(PortKey, HoldsTheHostsNameAndAStringOfKindAndName) {
    Vel::Ptr<Host> const host = Status::StatusIs()->hostIs("leaf-1");
    EXPECT_EQ(host->portIs("a")->portKey().host(), "leaf-1");
    EXPECT_EQ(host->portIs("a")->portKey().member(), "port/a");
    EXPECT_EQ(host->portGroupIs("a")->portKey().member(), "portGroup/a");
    EXPECT_EQ(host->mlagIs("a", "b")->portKey().member(), "mlag/a");
}

TEST(PortKey, TellsKindsAndHostsApart) {
    std::vector<PortKey> keys;
    for (char const * host : {"", "a", "b"}) {
        for (std::string_view kind : {PortKey::kPort, PortKey::kPortGroup, PortKey::kMlag}) {
            for (char const * name : {"", "a", "port/a", "Group/a"}) keys.push_back(keyOf(host, kind, name));
        }
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        for (std::size_t j = 0; j < keys.size(); ++j) {
            EXPECT_EQ(keys[i] == keys[j], i == j) << keys[i] << ' ' << keys[j];
            EXPECT_EQ((keys[i] <=> keys[j]) == std::strong_ordering::equal, i == j);
            EXPECT_EQ(keys[i] < keys[j], (keys[i] <=> keys[j]) < 0);
            EXPECT_EQ(keys[i]<keys[j], keys[j]> keys[i]);
        }
    }
    EXPECT_EQ(std::set<PortKey>(keys.begin(), keys.end()).size(), keys.size());
    EXPECT_EQ(std::unordered_set<PortKey>(keys.begin(), keys.end()).size(), keys.size());
}

TEST(PortKey, OrdersByHostAndThenByMemberAndByUnsignedBytes) {
    EXPECT_LT(keyOf("a", PortKey::kPort, "z"), keyOf("b", PortKey::kPort, "a"));
    EXPECT_LT(keyOf("a", PortKey::kMlag, "z"), keyOf("a", PortKey::kPort, "a"));
    EXPECT_LT(keyOf("a", PortKey::kPort, "z"), keyOf("a", PortKey::kPort, "\x80"));
}

TEST(PortKey, EqualKeysOfDifferentStringsAreEqualAndHashEqually) {
    PortKey const a = keyOf("leaf-1", PortKey::kPort, "eth-1");
    PortKey const b = keyOf("leaf-"s + "1", PortKey::kPort, "eth-"s + "1");
    EXPECT_NE(a.host().data(), b.host().data());
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.hash(), b.hash());
    EXPECT_EQ(std::hash<PortKey>()(a), std::hash<PortKey>()(b));
}

TEST(PortKey, HashesSpreadOverHostsWithTheSamePorts) {
    std::unordered_set<std::uint32_t> hashes;
    std::vector<unsigned> buckets(1024);
    for (int host = 0; host < 256; ++host) {
        for (int port = 0; port < 64; ++port) {
            PortKey const key =
                keyOf("leaf-" + std::to_string(host), PortKey::kPort, "eth-" + std::to_string(port));
            hashes.insert(key.hash());
            ++buckets[key.hash() >> 22];
        }
    }
    // Of 16384 random numbers of 32 bits, a pair is equal once in 32 times.
    EXPECT_GE(hashes.size(), 16383U);
    // On average 16 stand in a bucket; 48 would be eight standard deviations more.
    for (unsigned const members : buckets) EXPECT_LT(members, 48U);
}

TEST(PortKey, NumberedPortsOfNumberedHostsHaveBucketsOfTheirOwn) {
    for (unsigned const ports : {16U, 48U, 64U}) {
        for (unsigned const hosts : {1U, 2U, 16U, 100U, 256U}) {
            std::vector<std::uint32_t> hashes;
            for (unsigned host = 1; host <= hosts; ++host) {
                for (unsigned port = 1; port <= ports; ++port) {
                    PortKey const key =
                        keyOf("leaf-" + std::to_string(host), PortKey::kPort, "eth-" + std::to_string(port));
                    hashes.push_back(key.hash());
                }
            }
            EXPECT_LT(TestSupport::probes(hashes), 1.45) << hosts << " hosts of " << ports << " ports";
        }
    }
}

TEST(PortKey, HashesSpreadOverHostsAndPortsThatAreNumberedAtADistance) {
    for (unsigned const ofHosts : {1U, 4U, 10U, 100U, 256U}) {
        for (unsigned const ofPorts : {1U, 4U, 8U}) {
            std::vector<std::uint32_t> hashes;
            for (unsigned host = 0; host < 64; ++host) {
                for (unsigned port = 0; port < 32; ++port) {
                    PortKey const key = keyOf("leaf-" + std::to_string(host * ofHosts), PortKey::kPort,
                                              "Ethernet" + std::to_string(port * ofPorts));
                    hashes.push_back(key.hash());
                }
            }
            EXPECT_LT(TestSupport::probes(hashes), 1.8) << "distances " << ofHosts << " and " << ofPorts;
        }
    }
}

TEST(PortKey, HashesTellHostsSlotsPortsAndKindsApart) {
    std::unordered_set<std::uint32_t> hashes;
    for (unsigned host = 0; host < 32; ++host) {
        for (unsigned slot = 0; slot < 8; ++slot) {
            for (unsigned port = 0; port < 32; ++port) {
                std::string const name = std::to_string(slot) + "/" + std::to_string(port);
                for (auto const kind : {PortKey::kPort, PortKey::kPortGroup, PortKey::kMlag}) {
                    hashes.insert(keyOf("leaf-" + std::to_string(host), kind, name).hash());
                }
            }
        }
    }
    // Of as many random numbers of 32 bits, a pair is equal once in 14 times.
    EXPECT_GE(hashes.size(), 32U * 8 * 32 * 3 - 1);
}

TEST(PortKey, PrintsAsAJsonPointer) {
    EXPECT_EQ(printed(keyOf("leaf-1", PortKey::kPort, "eth-1")), "/host/leaf-1/port/eth-1");
    EXPECT_EQ(printed(keyOf("leaf-1", PortKey::kPortGroup, "bond-1")), "/host/leaf-1/portGroup/bond-1");
    EXPECT_EQ(printed(keyOf("leaf-1", PortKey::kMlag, "m-1")), "/host/leaf-1/mlag/m-1");
    EXPECT_EQ(printed(keyOf("a/b", PortKey::kPort, "Ethernet1/1")), "/host/a~1b/port/Ethernet1~11");
    EXPECT_EQ(printed(keyOf("~", PortKey::kPort, "~1/~0")), "/host/~0/port/~01~1~00");
    EXPECT_EQ(printed(keyOf("", PortKey::kPort, "")), "/host//port/");
    EXPECT_EQ(printed(keyOf("a\0b"s, PortKey::kPort, "\x80")), "/host/a\0b/port/\x80"s);
}

TEST(PortKey, IsReadBackFromItsJsonPointer) {
    std::vector<std::string> const names{
        "",   "eth-1", "Ethernet1/1", "~",      "~1",       "~0/1", "/",
        "//", "\0"s,   "\x80\xff",    "port/a", "a\0b/c~"s, " ",    std::string(300, '/')};
    for (std::string const & host : names) {
        for (std::string_view kind : {PortKey::kPort, PortKey::kPortGroup, PortKey::kMlag}) {
            for (std::string const & name : names) {
                PortKey const key = keyOf(host, kind, name);
                std::optional<PortKey> const read = PortKey::fromJsonPointer(key.jsonPointer());
                ASSERT_TRUE(read) << key;
                EXPECT_EQ(*read, key);
                EXPECT_EQ(read->hash(), key.hash());
            }
        }
    }
}

TEST(PortKey, AnyOtherTextIsNoKey) {
    for (std::string_view const text : {"",
                                        "/",
                                        "/host",
                                        "/host/a",
                                        "/host/a/port",
                                        "host/a/port/b",
                                        "/host/a/port/b/",
                                        "/host/a/port/b/c",
                                        "/host/a/ports/b",
                                        "/host/a/Port/b",
                                        "/host/a//b",
                                        "/hosts/a/port/b",
                                        "//host/a/port/b",
                                        "/edge/a/port/b",
                                        "/host/a~/port/b",
                                        "/host/a/port/b~",
                                        "/host/a/port/~2",
                                        "/host/~/port/b",
                                        "/host/a~~0/port/b",
                                        "/host/a/logicalPort/b",
                                        " /host/a/port/b",
                                        "#/host/a/port/b",
                                        "/h~0ost/a/port/b"}) {
        EXPECT_FALSE(PortKey::fromJsonPointer(text)) << text;
    }
}

TEST(PortKey, IsTheSameAfterTheFirstCallWithoutAnAllocation) {
    Vel::Ptr<Host> const host = Status::StatusIs()->hostIs("leaf-1");
    Vel::Ptr<Port> const port = host->portIs("a port name that no string keeps inside itself");
    PortKey const first = port->portKey();
    TestSupport::AllocationCount const allocations;
    PortKey const second = port->portKey();
    EXPECT_EQ(allocations.value(), 0U);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first.host().data(), host->name().data());
}

TEST(PortKey, HasAHashThatIsKnownBeforeItIsAskedFor) {
    Vel::Ptr<Host> host = Status::StatusIs()->hostIs("leaf-1");
    std::vector<Vel::Ptr<PortBase>> const all = {host->portIs("a"), host->portGroupIs("a"),
                                                 host->mlagIs("a", "b"), host->portIs("left")};
    host->portDel("left");
    host = nullptr;
    for (auto const & portBase : all) {
        EXPECT_FALSE(portBase->hasPortKey());
        std::uint32_t const before = portBase->portKeyHash();
        EXPECT_EQ(before, portBase->portKey().hash());
        EXPECT_TRUE(portBase->hasPortKey());
        EXPECT_EQ(before, portBase->portKeyHash());
    }
}

TEST(PortKey, CanBeAskedForAgainWhenMemoryRanOut) {
    Vel::Ptr<Port> const port = Status::StatusIs()->hostIs("leaf-1")->portIs("eth-1");
    {
        TestSupport::FailingAllocations const failing;
        EXPECT_THROW(port->portKey(), std::bad_alloc);
    }
    EXPECT_EQ(printed(port->portKey()), "/host/leaf-1/port/eth-1");
}

TEST(PortKey, OfAPortThatHasLeftCanBeAskedForAgainWhenMemoryRanOut) {
    Vel::Ptr<Host> host = Status::StatusIs()->hostIs("a host name that no string keeps inside itself");
    Vel::Ptr<Port> const port = host->portIs("eth-1");
    host->portDel("eth-1");
    host = nullptr;
    {
        TestSupport::FailingAllocations const failing;
        EXPECT_THROW(port->portKey(), std::bad_alloc);
        EXPECT_THROW(port->portKey(), std::bad_alloc);
    }
    EXPECT_EQ(printed(port->portKey()), "/host/a host name that no string keeps inside itself/port/eth-1");
    TestSupport::AllocationCount const allocations;
    EXPECT_FALSE(port->portKey().empty());
    EXPECT_EQ(allocations.value(), 0U);
}

TEST(PortKey, OfAPortIsToldWhenThePortHasLeftAndWhenTheHostIsGone) {
    Vel::Ptr<Host> host = Status::StatusIs()->hostIs("leaf-1");
    Vel::Ptr<Port> const left = host->portIs("left");
    Vel::Ptr<Port> const asked = host->portIs("asked");
    Vel::Ptr<Port> const stays = host->portIs("stays");
    PortKey const key = asked->portKey();
    host->portDel("left");
    EXPECT_EQ(printed(left->portKey()), "/host/leaf-1/port/left");
    host = nullptr;
    EXPECT_EQ(stays->host(), nullptr);
    EXPECT_EQ(printed(left->portKey()), "/host/leaf-1/port/left");
    EXPECT_EQ(printed(stays->portKey()), "/host/leaf-1/port/stays");
    EXPECT_EQ(asked->portKey(), key);
}

}  // namespace

}  // namespace NetworkTopologyV3
