// The peer's version-3 model. It announces changes of its status alone, as nobody follows the rest of it
// here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include "bench/translator_bench/idiomatic/Model.h"

namespace Bench::Peer::V3 {

// Names a port for edges, which hold no objects.
struct PortKey {
    std::string host;
    std::string port;

    friend bool operator==(PortKey const &, PortKey const &) = default;
};

struct PortKeyHash {
    std::size_t operator()(PortKey const & key) const {
        std::size_t const host = std::hash<std::string>()(key.host);
        return host ^ (std::hash<std::string>()(key.port) + 0x9e3779b97f4a7c15 + (host << 6) + (host >> 2));
    }
};

class Host;
class Mlag;

// What ports, port groups and MLAGs share.
class PortBase {
public:
    std::string const & name() const { return name_; }
    PortKey key() const;
    PortType type() const { return type_; }
    void typeIs(PortType type) { type_ = type; }

protected:
    PortBase(std::string name, std::weak_ptr<Host> host) : name_(std::move(name)), host_(std::move(host)) {}
    ~PortBase() = default;

private:
    std::string const name_;
    std::weak_ptr<Host> const host_;
    PortType type_ = PortType::unknown;
};

class PortGroup;

class Port final : public PortBase {
public:
    Port(std::string name, std::weak_ptr<Host> host) : PortBase(std::move(name), std::move(host)) {}

    std::shared_ptr<PortGroup> portGroup() const { return portGroup_.lock(); }
    void portGroupIs(std::shared_ptr<PortGroup> const & group) { portGroup_ = group; }

private:
    std::weak_ptr<PortGroup> portGroup_;
};

class PortGroup final : public PortBase {
public:
    PortGroup(std::string name, std::weak_ptr<Host> host) : PortBase(std::move(name), std::move(host)) {}

    auto const & memberPorts() const { return memberPorts_; }
    // Entries stand under the name of what they refer to, here and below; null is ignored.
    void memberPortIs(std::shared_ptr<Port> const & port) {
        if (port) memberPorts_.insert_or_assign(port->name(), port);
    }
    void memberPortDel(std::string const & name) { memberPorts_.erase(name); }

    std::shared_ptr<Mlag> mlag() const { return mlag_.lock(); }
    void mlagIs(std::shared_ptr<Mlag> const & mlag) { mlag_ = mlag; }

private:
    std::unordered_map<std::string, std::shared_ptr<Port>> memberPorts_;
    std::weak_ptr<Mlag> mlag_;
};

class Mlag final : public PortBase {
public:
    Mlag(std::string name, std::string secondaryName, std::weak_ptr<Host> host)
        : PortBase(std::move(name), std::move(host)), secondaryName_(std::move(secondaryName)) {}

    std::string const & secondaryName() const { return secondaryName_; }
    std::shared_ptr<PortGroup> const & localPortGroup() const { return localPortGroup_; }
    void localPortGroupIs(std::shared_ptr<PortGroup> const & group) { localPortGroup_ = group; }

private:
    std::string const secondaryName_;
    std::shared_ptr<PortGroup> localPortGroup_;
};

class Host final : public std::enable_shared_from_this<Host> {
public:
    explicit Host(std::string name) : name_(std::move(name)) {}

    std::string const & name() const { return name_; }

    std::string const & hostname() const { return hostname_; }
    void hostnameIs(std::string const & value) { hostname_ = value; }
    std::uint64_t mlagSystemId() const { return mlagSystemId_; }
    void mlagSystemIdIs(std::uint64_t value) { mlagSystemId_ = value; }
    std::string const & mlagDomainId() const { return mlagDomainId_; }
    void mlagDomainIdIs(std::string const & value) { mlagDomainId_ = value; }
    MlagState mlagState() const { return mlagState_; }
    void mlagStateIs(MlagState value) { mlagState_ = value; }
    std::shared_ptr<PortBase> const & mlagPeerLink() const { return mlagPeerLink_; }
    void mlagPeerLinkIs(std::shared_ptr<PortBase> const & value) { mlagPeerLink_ = value; }

    auto const & ports() const { return ports_; }
    std::shared_ptr<Port> port(std::string const & name) const { return valueOf(ports_, name); }
    std::shared_ptr<Port> portIs(std::string const & name) { return memberIs(ports_, name); }
    void portDel(std::string const & name) { ports_.erase(name); }

    auto const & portGroups() const { return portGroups_; }
    std::shared_ptr<PortGroup> portGroup(std::string const & name) const {
        return valueOf(portGroups_, name);
    }
    std::shared_ptr<PortGroup> portGroupIs(std::string const & name) { return memberIs(portGroups_, name); }
    void portGroupDel(std::string const & name) { portGroups_.erase(name); }

    auto const & mlags() const { return mlags_; }
    std::shared_ptr<Mlag> mlag(std::string const & name) const { return valueOf(mlags_, name); }
    std::shared_ptr<Mlag> mlagIs(std::string const & name, std::string const & secondaryName) {
        return memberIs(mlags_, name, secondaryName);
    }
    void mlagDel(std::string const & name) { mlags_.erase(name); }

    auto const & mlagRaws() const { return mlagRaws_; }
    void mlagRawIs(std::shared_ptr<Mlag> const & mlag) {
        if (mlag) mlagRaws_.insert_or_assign(mlag->name(), mlag);
    }
    void mlagRawDel(std::string const & name) { mlagRaws_.erase(name); }

    auto const & logicalPorts() const { return logicalPorts_; }
    void logicalPortIs(std::shared_ptr<PortBase> const & port) {
        if (port) logicalPorts_.insert_or_assign(port->name(), port);
    }
    void logicalPortDel(std::string const & name) { logicalPorts_.erase(name); }

private:
    template <class Member, class... More>
    std::shared_ptr<Member> memberIs(std::unordered_map<std::string, std::shared_ptr<Member>> & members,
                                     std::string const & name, More const &... more) {
        auto const [at, isNew] = members.try_emplace(name);
        if (isNew) at->second = std::make_shared<Member>(name, more..., weak_from_this());
        return at->second;
    }

    std::string const name_;
    std::string hostname_;
    std::string mlagDomainId_;
    std::uint64_t mlagSystemId_ = 0;
    MlagState mlagState_ = MlagState::unknown;
    std::shared_ptr<PortBase> mlagPeerLink_;
    std::unordered_map<std::string, std::shared_ptr<Port>> ports_;
    std::unordered_map<std::string, std::shared_ptr<PortGroup>> portGroups_;
    std::unordered_map<std::string, std::shared_ptr<Mlag>> mlags_;
    std::unordered_map<std::string, std::shared_ptr<Mlag>> mlagRaws_;
    std::unordered_map<std::string, std::shared_ptr<PortBase>> logicalPorts_;
};

inline PortKey PortBase::key() const {
    auto const host = host_.lock();
    return {host ? host->name() : std::string(), name_};
}

class Edge final {
public:
    explicit Edge(PortKey fromPort) : fromPort_(std::move(fromPort)) {}

    PortKey const & fromPort() const { return fromPort_; }
    auto const & toPorts() const { return toPorts_; }
    void toPortIs(PortKey const & port, bool flag) { toPorts_.insert_or_assign(port, flag); }
    void toPortDel(PortKey const & port) { toPorts_.erase(port); }

private:
    PortKey const fromPort_;
    std::unordered_map<PortKey, bool, PortKeyHash> toPorts_;
};

class Status final {
public:
    auto const & hosts() const { return hosts_; }
    std::shared_ptr<Host> host(std::string const & name) const { return valueOf(hosts_, name); }
    std::shared_ptr<Host> hostIs(std::string const & name) {
        return memberIs(
            hosts_, name, [&] { return std::make_shared<Host>(name); }, hostChanged);
    }
    void hostDel(std::string const & name) {
        if (auto const left = hosts_.extract(name)) hostChanged(left.key());
    }

    std::shared_ptr<Host> const & localhost() const { return localhost_; }
    void localhostIs(std::shared_ptr<Host> const & host) { attributeIs(localhost_, host, localhostChanged); }

    auto const & edges() const { return edges_; }
    std::shared_ptr<Edge> edgeIs(PortKey const & fromPort) {
        return memberIs(
            edges_, fromPort, [&] { return std::make_shared<Edge>(fromPort); }, edgeChanged);
    }
    void edgeDel(PortKey const & fromPort) {
        if (auto const left = edges_.extract(fromPort)) edgeChanged(left.key());
    }

    Signal<std::string const &> mutable hostChanged;
    Signal<> mutable localhostChanged;
    Signal<PortKey const &> mutable edgeChanged;

private:
    std::unordered_map<std::string, std::shared_ptr<Host>> hosts_;
    std::shared_ptr<Host> localhost_;
    std::unordered_map<PortKey, std::shared_ptr<Edge>, PortKeyHash> edges_;
};

}  // namespace Bench::Peer::V3
