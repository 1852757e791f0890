#include "tests/translator/support/OutputFollower.h"

#include <map>
#include <utility>

#include "tests/translator/support/Following.h"
#include "tests/translator/support/Spelling.h"

namespace TestSupport {

namespace {

using namespace NetworkTopologyV3;

// Binds a new reactor of that class, which follows from then on.
template <class Reactor, class Object>
Vel::Ptr<Reactor> newReactor(OutputFollower & follower, Vel::Ptr<Object> const & object) {
    Vel::Ptr<Reactor> const reactor = following<Reactor>(object, follower);
    reactor->followMembers();
    return reactor;
}

// `Base` is the reactor class of the model class that is followed.
template <class Base>
class Reactor : public Base {
public:
    explicit Reactor(OutputFollower & follower) : follower_(follower) {}

    void followMembers() {}
    // Tests throw on purpose; the default traces.
    void onNotificationException() override {}

protected:
    void tell(std::string const & callback) { follower_.tell(spelled(*this->notifier()) + " " + callback); }

    // Keeps one reactor on the object of each key. A delivery in which a reactor is let go holds it.
    template <class Member, class Key, class Object>
    void follow(std::map<Key, Vel::Ptr<Member>> & reactors, Key const & key,
                Vel::Ptr<Object> const & object) {
        auto const found = reactors.find(key);
        if (found != reactors.end() && found->second->notifier() == object.get()) return;
        if (found != reactors.end()) {
            found->second->notifierIs(nullptr);
            reactors.erase(found);
        }
        if (object) reactors[key] = newReactor<Member>(follower_, object);
    }

    OutputFollower & follower_;
};

template <class Base>
class PortBaseReactor : public Reactor<Base> {
public:
    using Reactor<Base>::Reactor;
    void onType() override { this->tell("onType()"); }
};

class PortReactor final : public PortBaseReactor<Port::NotifieeConst> {
public:
    using PortBaseReactor::PortBaseReactor;
    void onPortGroup() override { tell("onPortGroup()"); }
};

class PortGroupReactor final : public PortBaseReactor<PortGroup::NotifieeConst> {
public:
    using PortBaseReactor::PortBaseReactor;
    using PortGroup::NotifieeConst::onMemberPort;
    void onMemberPort(Vel::Name name) override { tell("onMemberPort(" + spelled(name) + ")"); }
    void onMlag() override { tell("onMlag()"); }
};

class MlagReactor final : public PortBaseReactor<MlagPort::NotifieeConst> {
public:
    using PortBaseReactor::PortBaseReactor;
    void onLocalPortGroup() override { tell("onLocalPortGroup()"); }
};

class EdgeReactor final : public Reactor<DirectedEdge::NotifieeConst> {
public:
    using DirectedEdge::NotifieeConst::onToPort;
    using Reactor::Reactor;
    void onToPort(PortKey const & key) override { tell("onToPort(" + spelled(key) + ")"); }
};

class HostReactor final : public Reactor<Host::NotifieeConst> {
public:
    using Host::NotifieeConst::onLogicalPort;
    using Host::NotifieeConst::onMlag;
    using Host::NotifieeConst::onMlagRaw;
    using Host::NotifieeConst::onPort;
    using Host::NotifieeConst::onPortGroup;
    using Reactor::Reactor;

    void followMembers() {
        for (auto const & port : notifier()->port()) follow(port_, port->name(), port);
        for (auto const & group : notifier()->portGroup()) follow(portGroup_, group->name(), group);
        for (auto const & mlag : notifier()->mlag()) follow(mlag_, mlag->name(), mlag);
    }
    void onHostname() override { tell("onHostname()"); }
    void onMlagDomainId() override { tell("onMlagDomainId()"); }
    void onMlagSystemId() override { tell("onMlagSystemId()"); }
    void onMlagState() override { tell("onMlagState()"); }
    void onMlagPeerLink() override { tell("onMlagPeerLink()"); }
    void onPort(Vel::Name name) override {
        follow(port_, name, notifier()->port(name));
        tell("onPort(" + spelled(name) + ")");
    }
    void onPortGroup(Vel::Name name) override {
        follow(portGroup_, name, notifier()->portGroup(name));
        tell("onPortGroup(" + spelled(name) + ")");
    }
    void onMlag(Vel::Name name) override {
        follow(mlag_, name, notifier()->mlag(name));
        tell("onMlag(" + spelled(name) + ")");
    }
    void onMlagRaw(Vel::Name name) override { tell("onMlagRaw(" + spelled(name) + ")"); }
    void onLogicalPort(Vel::Name name) override { tell("onLogicalPort(" + spelled(name) + ")"); }

private:
    std::map<Vel::Name, Vel::Ptr<PortReactor>> port_;
    std::map<Vel::Name, Vel::Ptr<PortGroupReactor>> portGroup_;
    std::map<Vel::Name, Vel::Ptr<MlagReactor>> mlag_;
};

}  // namespace

class OutputFollower::StatusReactor final : public Reactor<Status::NotifieeConst> {
public:
    using Reactor::Reactor;
    using Status::NotifieeConst::onEdge;
    using Status::NotifieeConst::onHost;

    void followMembers() {
        for (auto const & host : notifier()->host()) follow(host_, host->name(), host);
        for (auto const & edge : notifier()->edge()) follow(edge_, edge->fromPort(), edge);
    }
    void onHost(Vel::Name name) override {
        follow(host_, name, notifier()->host(name));
        tell("onHost(" + spelled(name) + ")");
    }
    void onLocalhost() override { tell("onLocalhost()"); }
    void onEdge(PortKey const & key) override {
        follow(edge_, key, notifier()->edge(key));
        tell("onEdge(" + spelled(key) + ")");
    }

private:
    std::map<Vel::Name, Vel::Ptr<HostReactor>> host_;
    std::map<PortKey, Vel::Ptr<EdgeReactor>> edge_;
};

OutputFollower::OutputFollower(Status::Ptr const & status, Callback callback)
    : callback_(std::move(callback)), status_(newReactor<StatusReactor>(*this, status)) {}

OutputFollower::~OutputFollower() { status_->notifierIs(nullptr); }

void OutputFollower::tell(std::string const & change) {
    ++changes_;
    callback_(change);
}

}  // namespace TestSupport
