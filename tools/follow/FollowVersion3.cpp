#include "tools/follow/FollowVersion3.h"

#include <stdexcept>
#include <string>

#include "platform/NetworkTopologyV3/Status.h"

namespace TopologyTools {
namespace {

using namespace NetworkTopologyV3;
using AnyReactor = Vel::PtrInterface::NotifieeConst;

// `Base` is the reactor class of the class that is followed. Of a change of one key the keyed callback alone
// is passed on, and of a whole-collection deletion only what no keyed callback tells.
template <class Base>
class Reactor : public Base {
public:
    explicit Reactor(ObjectFollower & follower) : follower_(follower) {}

protected:
    void attribute(std::string_view name) { follower_.attributeChanged(name); }
    template <class Key>
    void entry(std::string_view collection, Key const & key) {
        follower_.entryChanged(collection, Vel::GenericIf::wrap(key));
    }
    void entries(std::string_view collection) { follower_.entriesChanged(collection); }

private:
    ObjectFollower & follower_;
};

template <class Base>
class PortBaseReactor : public Reactor<Base> {
public:
    using Reactor<Base>::Reactor;
    void onType() override { this->attribute("type"); }
};

class PortReactor final : public PortBaseReactor<Port::NotifieeConst> {
public:
    using PortBaseReactor::PortBaseReactor;
    void onPortGroup() override { attribute("portGroup"); }
};

class PortGroupReactor final : public PortBaseReactor<PortGroup::NotifieeConst> {
public:
    using PortBaseReactor::PortBaseReactor;
    using PortGroup::NotifieeConst::onMemberPort;
    void onMemberPort(Vel::Name name) override { entry("memberPort", name); }
    void onMlag() override { attribute("mlag"); }
};

class MlagReactor final : public PortBaseReactor<MlagPort::NotifieeConst> {
public:
    using PortBaseReactor::PortBaseReactor;
    void onLocalPortGroup() override { attribute("localPortGroup"); }
};

class EdgeReactor final : public Reactor<DirectedEdge::NotifieeConst> {
public:
    using DirectedEdge::NotifieeConst::onToPort;
    using Reactor::Reactor;
    void onToPort(PortKey const & key) override { entry("toPort", key); }
};

class HostReactor final : public Reactor<Host::NotifieeConst> {
public:
    using Host::NotifieeConst::onLogicalPort;
    using Host::NotifieeConst::onMlag;
    using Host::NotifieeConst::onMlagRaw;
    using Host::NotifieeConst::onPort;
    using Host::NotifieeConst::onPortGroup;
    using Reactor::Reactor;
    void onHostname() override { attribute("hostname"); }
    void onMlagDomainId() override { attribute("mlagDomainId"); }
    void onMlagSystemId() override { attribute("mlagSystemId"); }
    void onMlagState() override { attribute("mlagState"); }
    void onMlagPeerLink() override { attribute("mlagPeerLink"); }
    void onPort(Vel::Name name) override { entry("port", name); }
    void onPortvelImmediate() override { entries("port"); }
    void onPortGroup(Vel::Name name) override { entry("portGroup", name); }
    void onPortGroupvelImmediate() override { entries("portGroup"); }
    void onMlag(Vel::Name name) override { entry("mlag", name); }
    void onMlagvelImmediate() override { entries("mlag"); }
    void onMlagRaw(Vel::Name name) override { entry("mlagRaw", name); }
    void onLogicalPort(Vel::Name name) override { entry("logicalPort", name); }
};

class StatusReactor final : public Reactor<Status::NotifieeConst> {
public:
    using Reactor::Reactor;
    using Status::NotifieeConst::onEdge;
    using Status::NotifieeConst::onHost;
    void onHost(Vel::Name name) override { entry("host", name); }
    void onHostvelImmediate() override { entries("host"); }
    void onLocalhost() override { attribute("localhost"); }
    void onEdge(PortKey const & key) override { entry("edge", key); }
    void onEdgevelImmediate() override { entries("edge"); }
};

template <class ReactorClass>
Vel::Ptr<AnyReactor> newReactor(ObjectFollower & follower) {
    return new ReactorClass(follower);
}

constexpr struct {
    Vel::VelType const * type;
    Vel::Ptr<AnyReactor> (*newReactor)(ObjectFollower & follower);
} classes[] = {
    {&Status::_velType, newReactor<StatusReactor>}, {&Host::_velType, newReactor<HostReactor>},
    {&Port::_velType, newReactor<PortReactor>},     {&PortGroup::_velType, newReactor<PortGroupReactor>},
    {&MlagPort::_velType, newReactor<MlagReactor>}, {&DirectedEdge::_velType, newReactor<EdgeReactor>},
};

}  // namespace

Vel::Ptr<AnyReactor> followVersion3(Vel::GenericIf const & object, ObjectFollower & follower) {
    for (auto const & known : classes) {
        if (object.type() != known.type) continue;
        Vel::Ptr<AnyReactor> reactor = known.newReactor(follower);
        reactor->notifierIs(object.as<Vel::Ptr<Vel::PtrInterface const>>());
        reactor->isRegisteredNotifieeIs(true);
        reactor->hasNotificationActiveIs(true);
        return reactor;
    }
    throw std::logic_error("expected an object of the version-3 model; found " + object.typeName());
}

}  // namespace TopologyTools
