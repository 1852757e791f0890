#include "tools/check/EntryFollowing.h"
#include "tools/check/Followers.h"

namespace TopologyTools {

using NetworkTopology::HostV2;

namespace {

// Makes a `Follower` of a member.
template <class Follower>
auto makerOf(ExpectedOutput & output, std::string const & hostName) {
    return [&](auto const & member) { return Vel::Ptr<Follower>(new Follower(output, hostName, member)); };
}

void writePeerLink(ExpectedOutput & output, ExpectedPtr const & object, HostV2 const & host) {
    auto const & link = host.mlagPeerLink();
    output.referenceIs(object, "mlagPeerLink", bool(link), output.portBaseOf(link.get()));
}

}  // namespace

void writeHostAttributes(ExpectedOutput & output, ExpectedPtr const & object, HostV2 const & host) {
    output.valueIs(object, "hostname", shownText(host.hostname()));
    output.valueIs(object, "mlagSystemId", shownText(host.mlagSystemId()));
    output.valueIs(object, "mlagDomainId", shownText(host.mlagDomainId()));
    output.valueIs(object, "mlagState", shownText(host.mlagState()));
    writePeerLink(output, object, host);
}

HostFollower::HostFollower(ExpectedOutput & output, HostV2 const & host)
    : output_(output),
      name_(textOf(host.name())),
      ports_(output, "port"),
      groups_(output, "portGroup"),
      mlags_(output, "mlag") {
    notifierIs(HostV2::PtrConst(&host));
    isRegisteredNotifieeIs(true);
    hasNotificationActiveIs(true);
    object_ = output_.hostIs(name_);
    output_.adopted(object_);
    output_.entriesOf(object_, &host);
    writePeerLink(output_, object_, host);
    followPorts(Rule::none);
    followGroups(Rule::none);
    followMlags(Rule::none);
}

std::optional<Followed> HostFollower::member(std::string_view collection, std::string_view name) const {
    if (collection == "port") return ports_.followed(name);
    return collection == "portGroup" ? groups_.followed(name) : mlags_.followed(name);
}

void HostFollower::activeIs(bool active) {
    if (active == isActive_) return;
    isActive_ = active;
    ports_.activeIs(active);
    groups_.activeIs(active);
    mlags_.activeIs(active);
}

void HostFollower::rebind(HostV2 const & host) {
    notifierIs(HostV2::PtrConst(&host));
    isRegisteredNotifieeIs(true);
    hasNotificationActiveIs(true);
    if (object_) {
        object_->astray = {};
        object_->boundIs(output_.line());
        output_.entriesOf(object_, &host);
        writeHostAttributes(output_, object_, host);
    }
    followPorts(Rule::none);
    followGroups(Rule::none);
    followMlags(Rule::none);
}

void HostFollower::retire() {
    notifierIs(nullptr);
    if (object_) {
        output_.entriesOf(object_, nullptr);
        output_.hostDel(name_);
    }
    ports_.retire();
    groups_.retire();
    mlags_.retire();
}

template <class Value>
void HostFollower::follow(std::string_view attribute, Value const & value) {
    if (isActive_)
        output_.valueIs(object_, attribute, shownText(value));
    else
        output_.missed(object_, attribute, Rule::notificationsOff);
}

void HostFollower::onHostname() { follow("hostname", notifier()->hostname()); }
void HostFollower::onMlagSystemId() { follow("mlagSystemId", notifier()->mlagSystemId()); }
void HostFollower::onMlagDomainId() { follow("mlagDomainId", notifier()->mlagDomainId()); }
void HostFollower::onMlagState() { follow("mlagState", notifier()->mlagState()); }

void HostFollower::onMlagPeerLink() {
    if (isActive_)
        writePeerLink(output_, object_, *notifier());
    else
        output_.missed(object_, "mlagPeerLink", Rule::notificationsOff);
}

void HostFollower::onPort(Vel::Name name) {
    auto const port = notifier()->port(name);
    ports_.changed(object_, textOf(name), port.get(), missedBy(), makerOf<PortFollower>(output_, name_));
}

void HostFollower::onPortGroup(Vel::Name name) {
    auto const group = notifier()->portGroup(name);
    groups_.changed(object_, textOf(name), group.get(), missedBy(),
                    makerOf<PortGroupFollower>(output_, name_));
}

void HostFollower::onMlag(Vel::Name name) {
    auto const mlag = notifier()->mlag(name);
    mlags_.changed(object_, textOf(name), mlag.get(), missedBy(), makerOf<MlagFollower>(output_, name_));
}

void HostFollower::onPortvelImmediate() { followPorts(missedBy()); }
void HostFollower::onPortGroupvelImmediate() { followGroups(missedBy()); }
void HostFollower::onMlagvelImmediate() { followMlags(missedBy()); }

void HostFollower::followPorts(Rule missedBy) {
    auto const lookup = [this](std::string const & name) { return notifier()->port(Vel::Name(name)); };
    ports_.resync(object_, notifier()->port(), missedBy, lookup, makerOf<PortFollower>(output_, name_));
}

void HostFollower::followGroups(Rule missedBy) {
    auto const lookup = [this](std::string const & name) { return notifier()->portGroup(Vel::Name(name)); };
    groups_.resync(object_, notifier()->portGroup(), missedBy, lookup,
                   makerOf<PortGroupFollower>(output_, name_));
}

void HostFollower::followMlags(Rule missedBy) {
    auto const lookup = [this](std::string const & name) { return notifier()->mlag(Vel::Name(name)); };
    mlags_.resync(object_, notifier()->mlag(), missedBy, lookup, makerOf<MlagFollower>(output_, name_));
}

void HostFollower::onMlagRaw(Vel::Name name) {
    followEntry(output_, isActive_, object_, "mlagRaw", textOf(name), notifier()->mlagRawEntry(name));
}

void HostFollower::onLogicalPort(Vel::Name name) {
    followEntry(output_, isActive_, object_, "logicalPort", textOf(name), notifier()->logicalPortEntry(name));
}

}  // namespace TopologyTools
