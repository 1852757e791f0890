// Reactors that follow a version-2 model and tell an ExpectedOutput what its translator has to do. They stand
// where the translator's own reactors stand, but hear of every change: what the translator does not hear,
// because its notifications are off, they note as missed.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/NetworkTopology/DirectedEdgeV2.h"
#include "platform/NetworkTopology/HostV2.h"
#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/Vel/Ptr.h"
#include "tools/check/ExpectedOutput.h"
#include "tools/check/NamedFollowers.h"

namespace TopologyTools {

// What the reactors of ports, port groups and MLAGs have in common. `Reactor` is the reactor class of
// `Model`.
template <class Model, class Reactor = typename Model::NotifieeConst>
class MemberFollower : public Reactor {
public:
    // The counterpart; null when there was no place for it.
    ExpectedPtr const & object() const { return object_; }
    bool follows(Vel::PtrInterface const * model) const { return this->notifierObject().get() == model; }
    void activeIs(bool active) { isActive_ = active; }
    // Follows another object of the name.
    void rebind(Model const & model);
    // Deletes the counterpart; a follower that has none leaves alone what bears its name.
    void retire();

    void onType() final;

protected:
    // Makes or finds the counterpart, and writes nothing to it.
    MemberFollower(ExpectedOutput & output, std::string hostName, Model const & model);

    // Writes the one link of the kind.
    virtual void writeLink() = 0;
    // Follows a change of it.
    void onLink(std::string_view attribute);

    ExpectedOutput & output_;
    std::string const hostName_;
    std::string const name_;
    ExpectedPtr object_;
    bool isActive_ = true;

private:
    void follow(Model const & model);
};

class PortFollower final : public MemberFollower<NetworkTopology::PortV2> {
public:
    PortFollower(ExpectedOutput & output, std::string hostName, NetworkTopology::PortV2 const & port)
        : MemberFollower(output, std::move(hostName), port) {}
    void onPortGroup() override { onLink("portGroup"); }

private:
    void writeLink() override;
};

class PortGroupFollower final : public MemberFollower<NetworkTopology::PortGroupV2> {
public:
    PortGroupFollower(ExpectedOutput & output, std::string hostName,
                      NetworkTopology::PortGroupV2 const & group)
        : MemberFollower(output, std::move(hostName), group) {}
    void onMlag() override { onLink("mlag"); }
    void onMemberPort(Vel::Name name) override;

private:
    void writeLink() override;
};

class MlagFollower final : public MemberFollower<NetworkTopology::MlagV2> {
public:
    MlagFollower(ExpectedOutput & output, std::string hostName, NetworkTopology::MlagV2 const & mlag)
        : MemberFollower(output, std::move(hostName), mlag) {}
    void onLocalPortGroup() override { onLink("localPortGroup"); }

private:
    void writeLink() override;
};

class HostFollower final : public NetworkTopology::HostV2::NotifieeConst {
public:
    HostFollower(ExpectedOutput & output, NetworkTopology::HostV2 const & host);

    ExpectedPtr const & object() const { return object_; }
    bool follows(Vel::PtrInterface const * model) const { return notifierObject().get() == model; }
    // What follows a port base of the host; nothing when nothing does.
    std::optional<Followed> member(std::string_view collection, std::string_view name) const;
    void activeIs(bool active);
    void rebind(NetworkTopology::HostV2 const & host);
    void retire();

    void onHostname() override;
    void onMlagSystemId() override;
    void onMlagDomainId() override;
    void onMlagState() override;
    void onMlagPeerLink() override;
    void onPort(Vel::Name name) override;
    void onPortvelImmediate() override;
    void onPortGroup(Vel::Name name) override;
    void onPortGroupvelImmediate() override;
    void onMlag(Vel::Name name) override;
    void onMlagvelImmediate() override;
    void onMlagRaw(Vel::Name name) override;
    void onLogicalPort(Vel::Name name) override;

private:
    // A change of the attribute: writes the value, or notes that the translator missed it.
    template <class Value>
    void follow(std::string_view attribute, Value const & value);
    Rule missedBy() const { return isActive_ ? Rule::none : Rule::notificationsOff; }
    void followPorts(Rule missedBy);
    void followGroups(Rule missedBy);
    void followMlags(Rule missedBy);

    ExpectedOutput & output_;
    std::string const name_;
    ExpectedPtr object_;
    bool isActive_ = true;
    NamedFollowers<PortFollower> ports_;
    NamedFollowers<PortGroupFollower> groups_;
    NamedFollowers<MlagFollower> mlags_;
};

// Writes all attributes of a host.
void writeHostAttributes(ExpectedOutput & output, ExpectedPtr const & object,
                         NetworkTopology::HostV2 const & host);

class EdgeFollower final : public NetworkTopology::DirectedEdgeV2::NotifieeConst {
public:
    using Destination = Vel::Ptr<NetworkTopology::PortBaseV2 const>;

    EdgeFollower(ExpectedOutput & output, NetworkTopology::DirectedEdgeV2 const & edge);

    // The version-3 edge; null while there is none.
    ExpectedPtr const & object() const { return object_; }
    bool follows(Vel::PtrInterface const * model) const { return notifierObject().get() == model; }
    std::uint64_t binding() const { return binding_; }
    // When it began to follow the edge that it follows.
    Line boundLine() const { return bound_; }
    // What became of a destination; null when nobody told of it.
    HandledEntry const * handled(NetworkTopology::PortBaseV2 const * destination) const;
    // Why there is no version-3 edge.
    Provenance const & unresolved() const { return unresolved_; }
    void astrayIs(Rule rule);
    void activeIs(bool active) { isActive_ = active; }
    void rebind(NetworkTopology::DirectedEdgeV2 const & edge);
    void retire();

    void onToPort(Destination const & destination) override;

private:
    void follow(NetworkTopology::DirectedEdgeV2 const & edge);
    void make();
    void write(Destination const & destination);
    void unresolved(Destination const & destination, bool isThere);
    // A change of the destination has had no effect on the output.
    void missed(Destination const & destination, bool isThere, Rule rule);

    ExpectedOutput & output_;
    ExpectedPtr object_;
    bool isActive_ = true;
    std::uint64_t binding_ = 0;
    Line bound_ = 0;
    Provenance unresolved_;
    std::map<NetworkTopology::PortBaseV2 const *, HandledEntry> handled_;
};

// Writes one destination of an edge.
void expectDestination(ExpectedOutput const & output, ExpectedObject & edge, ExpectedPtr const & destination,
                       bool flag, std::uint64_t writer);

}  // namespace TopologyTools
