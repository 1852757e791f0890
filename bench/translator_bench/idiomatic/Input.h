// The peer's version-2 model: nodes in shared pointers, references back that do not hold, and a signal per
// attribute and collection. An object announces only what differs from before.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include "bench/translator_bench/idiomatic/Model.h"

namespace Bench::Peer::V2 {

class Host;
class Mlag;

// What ports, port groups and MLAGs share.
class PortBase {
public:
    enum class Kind { port, portGroup, mlag };

    Kind kind() const { return kind_; }
    std::string const & name() const { return name_; }
    // Null once the object has left its host.
    std::shared_ptr<Host> host() const { return host_.lock(); }
    PortType type() const { return type_; }
    void typeIs(PortType type) { attributeIs(type_, type, typeChanged); }

    Signal<> mutable typeChanged;

protected:
    PortBase(Kind kind, std::string name, std::weak_ptr<Host> host)
        : kind_(kind), name_(std::move(name)), host_(std::move(host)) {}
    ~PortBase() = default;

private:
    friend class Host;

    Kind const kind_;
    std::string const name_;
    std::weak_ptr<Host> host_;
    PortType type_ = PortType::unknown;
};

class PortGroup;

class Port final : public PortBase {
public:
    Port(std::string name, std::weak_ptr<Host> host)
        : PortBase(Kind::port, std::move(name), std::move(host)) {}

    std::shared_ptr<PortGroup> portGroup() const { return portGroup_.lock(); }
    void portGroupIs(std::shared_ptr<PortGroup> const & group) {
        attributeIs(portGroup_, group, portGroupChanged);
    }

    Signal<> mutable portGroupChanged;

private:
    std::weak_ptr<PortGroup> portGroup_;
};

class PortGroup final : public PortBase {
public:
    PortGroup(std::string name, std::weak_ptr<Host> host)
        : PortBase(Kind::portGroup, std::move(name), std::move(host)) {}

    auto const & memberPorts() const { return memberPorts_; }
    std::shared_ptr<Port> memberPort(std::string const & name) const { return valueOf(memberPorts_, name); }
    void memberPortIs(std::string const & name, std::shared_ptr<Port> const & port) {
        if (valueIs(memberPorts_, name, port)) memberPortChanged(name);
    }
    void memberPortDel(std::string const & name) {
        if (memberPorts_.erase(name)) memberPortChanged(name);
    }

    std::shared_ptr<Mlag> mlag() const { return mlag_.lock(); }
    void mlagIs(std::shared_ptr<Mlag> const & mlag) { attributeIs(mlag_, mlag, mlagChanged); }

    Signal<std::string const &> mutable memberPortChanged;
    Signal<> mutable mlagChanged;

private:
    std::unordered_map<std::string, std::shared_ptr<Port>> memberPorts_;
    std::weak_ptr<Mlag> mlag_;
};

class Mlag final : public PortBase {
public:
    Mlag(std::string name, std::string secondaryName, std::weak_ptr<Host> host)
        : PortBase(Kind::mlag, std::move(name), std::move(host)), secondaryName_(std::move(secondaryName)) {}

    std::string const & secondaryName() const { return secondaryName_; }
    std::shared_ptr<PortGroup> const & localPortGroup() const { return localPortGroup_; }
    void localPortGroupIs(std::shared_ptr<PortGroup> const & group) {
        attributeIs(localPortGroup_, group, localPortGroupChanged);
    }

    Signal<> mutable localPortGroupChanged;

private:
    std::string const secondaryName_;
    std::shared_ptr<PortGroup> localPortGroup_;
};

class Host final : public std::enable_shared_from_this<Host> {
public:
    explicit Host(std::string name) : name_(std::move(name)) {}

    std::string const & name() const { return name_; }

    std::string const & hostname() const { return hostname_; }
    void hostnameIs(std::string const & value) { attributeIs(hostname_, value, hostnameChanged); }
    std::uint64_t mlagSystemId() const { return mlagSystemId_; }
    void mlagSystemIdIs(std::uint64_t value) { attributeIs(mlagSystemId_, value, mlagSystemIdChanged); }
    std::string const & mlagDomainId() const { return mlagDomainId_; }
    void mlagDomainIdIs(std::string const & value) { attributeIs(mlagDomainId_, value, mlagDomainIdChanged); }
    MlagState mlagState() const { return mlagState_; }
    void mlagStateIs(MlagState value) { attributeIs(mlagState_, value, mlagStateChanged); }
    std::shared_ptr<PortBase const> const & mlagPeerLink() const { return mlagPeerLink_; }
    void mlagPeerLinkIs(std::shared_ptr<PortBase const> const & value) {
        attributeIs(mlagPeerLink_, value, mlagPeerLinkChanged);
    }

    auto const & ports() const { return ports_; }
    std::shared_ptr<Port> port(std::string const & name) const { return valueOf(ports_, name); }
    std::shared_ptr<Port> portIs(std::string const & name) { return memberIs(ports_, name, portChanged); }
    void portDel(std::string const & name) { memberDel(ports_, name, portChanged); }

    auto const & portGroups() const { return portGroups_; }
    std::shared_ptr<PortGroup> portGroup(std::string const & name) const {
        return valueOf(portGroups_, name);
    }
    std::shared_ptr<PortGroup> portGroupIs(std::string const & name) {
        return memberIs(portGroups_, name, portGroupChanged);
    }
    void portGroupDel(std::string const & name) { memberDel(portGroups_, name, portGroupChanged); }

    auto const & mlags() const { return mlags_; }
    std::shared_ptr<Mlag> mlag(std::string const & name) const { return valueOf(mlags_, name); }
    std::shared_ptr<Mlag> mlagIs(std::string const & name, std::string const & secondaryName) {
        return memberIs(mlags_, name, mlagChanged, secondaryName);
    }
    void mlagDel(std::string const & name) { memberDel(mlags_, name, mlagChanged); }

    auto const & mlagRaws() const { return mlagRaws_; }
    void mlagRawIs(std::string const & name, std::shared_ptr<Mlag> const & mlag) {
        if (valueIs(mlagRaws_, name, mlag)) mlagRawChanged(name);
    }
    void mlagRawDel(std::string const & name) {
        if (mlagRaws_.erase(name)) mlagRawChanged(name);
    }

    auto const & logicalPorts() const { return logicalPorts_; }
    void logicalPortIs(std::string const & name, std::shared_ptr<PortBase const> const & port) {
        if (valueIs(logicalPorts_, name, port)) logicalPortChanged(name);
    }
    void logicalPortDel(std::string const & name) {
        if (logicalPorts_.erase(name)) logicalPortChanged(name);
    }

    Signal<> mutable hostnameChanged;
    Signal<> mutable mlagSystemIdChanged;
    Signal<> mutable mlagDomainIdChanged;
    Signal<> mutable mlagStateChanged;
    Signal<> mutable mlagPeerLinkChanged;
    Signal<std::string const &> mutable portChanged;
    Signal<std::string const &> mutable portGroupChanged;
    Signal<std::string const &> mutable mlagChanged;
    Signal<std::string const &> mutable mlagRawChanged;
    Signal<std::string const &> mutable logicalPortChanged;

private:
    template <class Member, class... More>
    std::shared_ptr<Member> memberIs(std::unordered_map<std::string, std::shared_ptr<Member>> & members,
                                     std::string const & name, Signal<std::string const &> const & changed,
                                     More const &... more) {
        return Peer::memberIs(
            members, name, [&] { return std::make_shared<Member>(name, more..., weak_from_this()); },
            changed);
    }
    template <class Member>
    static void memberDel(std::unordered_map<std::string, std::shared_ptr<Member>> & members,
                          std::string const & name, Signal<std::string const &> const & changed) {
        auto const left = members.extract(name);
        if (!left) return;
        left.mapped()->host_.reset();
        changed(left.key());
    }

    std::string const name_;
    std::string hostname_;
    std::string mlagDomainId_;
    std::uint64_t mlagSystemId_ = 0;
    MlagState mlagState_ = MlagState::unknown;
    std::shared_ptr<PortBase const> mlagPeerLink_;
    std::unordered_map<std::string, std::shared_ptr<Port>> ports_;
    std::unordered_map<std::string, std::shared_ptr<PortGroup>> portGroups_;
    std::unordered_map<std::string, std::shared_ptr<Mlag>> mlags_;
    std::unordered_map<std::string, std::shared_ptr<Mlag>> mlagRaws_;
    std::unordered_map<std::string, std::shared_ptr<PortBase const>> logicalPorts_;
};

// Edges are between ports: the fabric has no others.
class Edge final {
public:
    explicit Edge(std::shared_ptr<Port const> fromPort) : fromPort_(std::move(fromPort)) {}

    std::shared_ptr<Port const> const & fromPort() const { return fromPort_; }
    auto const & toPorts() const { return toPorts_; }
    void toPortIs(std::shared_ptr<Port const> const & port, bool flag) {
        if (valueIs(toPorts_, port, flag)) toPortChanged(port);
    }
    void toPortDel(std::shared_ptr<Port const> const & port) {
        if (toPorts_.erase(port)) toPortChanged(port);
    }

    Signal<std::shared_ptr<Port const> const &> mutable toPortChanged;

private:
    std::shared_ptr<Port const> const fromPort_;
    std::unordered_map<std::shared_ptr<Port const>, bool> toPorts_;
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
    std::shared_ptr<Edge> edge(std::shared_ptr<Port const> const & fromPort) const {
        return valueOf(edges_, fromPort);
    }
    std::shared_ptr<Edge> edgeIs(std::shared_ptr<Port const> const & fromPort) {
        return memberIs(
            edges_, fromPort, [&] { return std::make_shared<Edge>(fromPort); }, edgeChanged);
    }
    void edgeDel(std::shared_ptr<Port const> const & fromPort) {
        if (auto const left = edges_.extract(fromPort)) edgeChanged(left.key());
    }

    Signal<std::string const &> mutable hostChanged;
    Signal<> mutable localhostChanged;
    Signal<std::shared_ptr<Port const> const &> mutable edgeChanged;

private:
    std::unordered_map<std::string, std::shared_ptr<Host>> hosts_;
    std::shared_ptr<Host> localhost_;
    std::unordered_map<std::shared_ptr<Port const>, std::shared_ptr<Edge>> edges_;
};

}  // namespace Bench::Peer::V2
