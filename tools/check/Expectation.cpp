#include "tools/check/Expectation.h"

#include <utility>

#include "tools/check/EntryFollowing.h"

namespace TopologyTools {
namespace {

// Makes what follows a host.
auto makerOfFollowers(ExpectedOutput & output) {
    return [&output](NetworkTopology::HostV2 const & host) {
        return Vel::Ptr<HostFollower>(new HostFollower(output, host));
    };
}

}  // namespace

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::HostV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::StatusV2;

// Hears of every change of the input, also while the translator does not.
class Expectation::StatusFollower final : public StatusV2::NotifieeConst {
public:
    explicit StatusFollower(Expectation & expectation) : expectation_(expectation) {}

    void follow(StatusV2::PtrConst const & status) {
        notifierIs(status);
        isRegisteredNotifieeIs(true);
        hasNotificationActiveIs(true);
    }

    void onHost(Vel::Name name) override { expectation_.hostChanged(name); }
    void onHostvelImmediate() override { expectation_.followHosts(expectation_.missedBy()); }
    void onLocalhost() override { expectation_.localhostChanged(); }
    void onEdge(EdgeFollower::Destination const & fromPort) override {
        expectation_.edgeChanged(fromPort, expectation_.missedBy());
    }
    void onEdgevelImmediate() override { expectation_.followEdges(expectation_.missedBy()); }

private:
    Expectation & expectation_;
};

Expectation::Expectation(StatusV2::PtrConst const & input)
    : status_(new StatusFollower(*this)), hosts_(output_, "host") {
    status_->follow(input);
    writeLocalhost();
    populate();
    followHosts(Rule::none);
    followEdges(Rule::none);
}

Expectation::~Expectation() { status_->notifierIs(nullptr); }

StatusV2 const & Expectation::input() const { return *status_->notifier(); }

Rule Expectation::missedBy() const {
    if (!isInputBound_) return Rule::inputUnbound;
    return isStatusActive_ ? Rule::none : Rule::notificationsOff;
}

void Expectation::inputIs(StatusV2::PtrConst const & input) {
    if (!input) {
        isInputBound_ = false;
        return;
    }
    bool const isNew = status_->notifier() != input.get();
    bool const wasBound = std::exchange(isInputBound_, true);
    if (!isNew && wasBound) return;
    if (isNew) status_->follow(input);
    if (!wasBound) isStatusActive_ = isActive_;
    // After none was bound, only the local host is written.
    Rule const missedBy = wasBound ? Rule::none : Rule::inputUnbound;
    if (isNew) followHosts(missedBy);
    writeLocalhost();
    if (isNew) followEdges(missedBy);
}

void Expectation::outputIsBoundIs(bool bound) { output_.isBoundIs(bound); }

void Expectation::notificationActiveIs(bool active) {
    isActive_ = active;
    if (isInputBound_) isStatusActive_ = active;
    hosts_.activeIs(active);
    for (auto const & [fromPort, edge] : edges_) edge->activeIs(active);
}

std::optional<Followed> Expectation::followed(std::vector<std::string> const & path) const {
    if (path.size() == 2) return hosts_.followed(path[1]);
    HostFollower const * const host = hosts_.find(path[1]);
    return host ? host->member(path[2], path[3]) : std::nullopt;
}

EdgeFollower const * Expectation::edge(PortBaseV2 const * fromPort) const {
    auto const found = edges_.find(fromPort);
    return found == edges_.end() ? nullptr : found->second.get();
}

Provenance Expectation::unfollowed(PortBaseV2 const * fromPort) const {
    auto const found = unfollowed_.find(fromPort);
    return found == unfollowed_.end() ? Provenance() : found->second;
}

void Expectation::hostChanged(Vel::Name const & name) {
    HostV2::PtrConst const host = input().host(name);
    hosts_.changed(root(), textOf(name), host.get(), missedBy(), makerOfFollowers(output_));
}

void Expectation::followHosts(Rule missedBy) {
    auto const lookup = [this](std::string const & name) { return input().host(Vel::Name(name)); };
    hosts_.resync(root(), input().host(), missedBy, lookup, makerOfFollowers(output_));
}

void Expectation::localhostChanged() {
    if (Rule const missed = missedBy(); missed != Rule::none)
        output_.missed(root(), "localhost", missed);
    else
        writeLocalhost();
}

void Expectation::writeLocalhost() {
    if (!output_.isBound()) return output_.missed(root(), "localhost", Rule::outputUnbound);
    auto const & host = input().localhost();
    output_.referenceIs(root(), "localhost", bool(host), output_.hostOf(host.get()));
}

void Expectation::edgeChanged(EdgeFollower::Destination const & fromPort, Rule missedBy) {
    DirectedEdgeV2::PtrConst const edge = input().edge(fromPort);
    auto const found = edges_.find(fromPort.get());
    bool const isFollowed = edge && found != edges_.end() && found->second->follows(edge.get());
    unfollowed_.erase(fromPort.get());
    if (isFollowed) return;
    if (missedBy != Rule::none) {
        if (found != edges_.end()) found->second->astrayIs(missedBy);
        if (edge) unfollowed_[fromPort.get()] = output_.now(missedBy);
    } else if (!edge) {
        if (found == edges_.end()) return;
        Vel::Ptr<EdgeFollower> const follower = found->second;
        edges_.erase(found);
        follower->retire();
    } else if (found != edges_.end()) {
        found->second->rebind(*edge);
    } else {
        edges_.emplace(fromPort.get(), new EdgeFollower(output_, *edge));
    }
}

void Expectation::followEdges(Rule missedBy) {
    unfollowed_.clear();
    for (auto const & edge : input().edge()) edgeChanged(edge->fromPort(), missedBy);
    for (auto next = edges_.begin(); next != edges_.end();) {
        EdgeFollower::Destination const fromPort = (next++)->second->notifier()->fromPort();
        if (!input().edge(fromPort)) edgeChanged(fromPort, missedBy);
    }
}

void Expectation::populate() {
    for (auto const & host : input().host()) populateHost(*host);
    writeLocalhost();
    for (auto const & edge : input().edge()) populateEdge(*edge);
}

void Expectation::populateHost(HostV2 const & host) {
    std::string const name = textOf(host.name());
    ExpectedPtr const object = output_.hostIs(name);
    for (auto const & port : host.port()) output_.memberIs(name, *port);
    for (auto const & group : host.portGroup()) output_.memberIs(name, *group);
    for (auto const & mlag : host.mlag()) output_.memberIs(name, *mlag);
    populateEntries(host, object);
    for (auto const & port : host.port()) populateLink(*port, "portGroup", port->portGroup().get());
    for (auto const & group : host.portGroup()) {
        populateMembers(*group);
        populateLink(*group, "mlag", group->mlag().get());
    }
    for (auto const & mlag : host.mlag()) {
        populateLink(*mlag, "localPortGroup", mlag->localPortGroup().get());
    }
    writeHostAttributes(output_, object, host);
}

void Expectation::populateEntries(HostV2 const & host, ExpectedPtr const & object) {
    output_.entriesOf(object, &host);
    for (auto const & raw : host.mlagRaw()) {
        auto const & mlag = raw.value();
        // In this host, whichever host the MLAG is of.
        ExpectedPtr const target = mlag ? object->member("mlag", mlag->name().view()) : nullptr;
        bool const isOwn = !mlag || mlag->host() == &host;
        output_.entryIs(object, "mlagRaw", textOf(raw.key()), bool(mlag), target,
                        isOwn ? Rule::none : Rule::rawMlagPopulatedLocally);
    }
    for (auto const & logical : host.logicalPort()) {
        followEntry(output_, true, object, "logicalPort", textOf(logical.key()), &logical);
    }
}

void Expectation::populateMembers(PortGroupV2 const & group) {
    ExpectedPtr const object = output_.portBaseOf(&group);
    output_.entriesOf(object, &group);
    for (auto const & member : group.memberPort()) {
        followEntry(output_, true, object, "memberPort", textOf(member.key()), &member);
    }
}

void Expectation::populateLink(PortBaseV2 const & member, std::string_view attribute,
                               PortBaseV2 const * target) {
    output_.referenceIs(output_.portBaseOf(&member), attribute, target != nullptr,
                        output_.portBaseOf(target));
}

void Expectation::populateEdge(DirectedEdgeV2 const & edge) {
    ExpectedPtr const made = output_.edgeIs(output_.portBaseOf(edge.fromPort().get()));
    if (!made) return;
    for (auto const & entry : edge.toPort()) {
        ExpectedPtr const target = output_.portBaseOf(entry.key().get());
        if (target) expectDestination(output_, *made, target, entry.value(), 0);
    }
}

}  // namespace TopologyTools
