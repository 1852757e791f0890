// Reactors of every class of the model that write down their callbacks.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/NetworkTopologyV3/Status.h"

namespace NetworkTopologyV3 {

// What several reactors were told, in order: "onHost(leaf-1)", "onHost()".
class Journal {
public:
    void call(std::string const & callback) {
        calls_.push_back(callback);
        if (then) then(callback);
    }
    template <class Key>
    void call(char const * callback, Key const & key) {
        std::ostringstream text;
        text << callback << '(' << key << ')';
        call(text.str());
    }

    // What was written down since the last call.
    std::vector<std::string> take() { return std::exchange(calls_, {}); }

    // Runs inside every callback.
    std::function<void(std::string const & callback)> then;

private:
    std::vector<std::string> calls_;
};

class StatusRecorder : public Status::NotifieeConst {
public:
    explicit StatusRecorder(Journal & journal) : journal_(journal) {}

    void onHost(Vel::Name name) override { journal_.call("onHost", name); }
    void onHostvelImmediate() override { journal_.call("onHostvelImmediate()"); }
    void onHost() override { journal_.call("onHost()"); }
    void onLocalhost() override { journal_.call("onLocalhost()"); }
    void onEdge(PortKey const & key) override { journal_.call("onEdge", key); }
    void onEdgevelImmediate() override { journal_.call("onEdgevelImmediate()"); }
    void onEdge() override { journal_.call("onEdge()"); }

private:
    Journal & journal_;
};

class HostRecorder : public Host::NotifieeConst {
public:
    explicit HostRecorder(Journal & journal) : journal_(journal) {}

    void onHostname() override { journal_.call("onHostname()"); }
    void onMlagDomainId() override { journal_.call("onMlagDomainId()"); }
    void onMlagSystemId() override { journal_.call("onMlagSystemId()"); }
    void onMlagState() override { journal_.call("onMlagState()"); }
    void onMlagPeerLink() override { journal_.call("onMlagPeerLink()"); }
    void onPort(Vel::Name name) override { journal_.call("onPort", name); }
    void onPortvelImmediate() override { journal_.call("onPortvelImmediate()"); }
    void onPort() override { journal_.call("onPort()"); }
    void onPortGroup(Vel::Name name) override { journal_.call("onPortGroup", name); }
    void onPortGroupvelImmediate() override { journal_.call("onPortGroupvelImmediate()"); }
    void onPortGroup() override { journal_.call("onPortGroup()"); }
    void onMlag(Vel::Name name) override { journal_.call("onMlag", name); }
    void onMlagvelImmediate() override { journal_.call("onMlagvelImmediate()"); }
    void onMlag() override { journal_.call("onMlag()"); }
    void onMlagRaw(Vel::Name name) override { journal_.call("onMlagRaw", name); }
    void onMlagRawvelImmediate() override { journal_.call("onMlagRawvelImmediate()"); }
    void onMlagRaw() override { journal_.call("onMlagRaw()"); }
    void onLogicalPort(Vel::Name name) override { journal_.call("onLogicalPort", name); }
    void onLogicalPortvelImmediate() override { journal_.call("onLogicalPortvelImmediate()"); }
    void onLogicalPort() override { journal_.call("onLogicalPort()"); }

private:
    Journal & journal_;
};

class PortBaseRecorder : public PortBase::NotifieeConst {
public:
    explicit PortBaseRecorder(Journal & journal) : journal_(journal) {}

    void onType() override { journal_.call("onType()"); }

private:
    Journal & journal_;
};

class PortRecorder : public Port::NotifieeConst {
public:
    explicit PortRecorder(Journal & journal) : journal_(journal) {}

    void onType() override { journal_.call("onType()"); }
    void onPortGroup() override { journal_.call("onPortGroup()"); }

private:
    Journal & journal_;
};

class PortGroupRecorder : public PortGroup::NotifieeConst {
public:
    explicit PortGroupRecorder(Journal & journal) : journal_(journal) {}

    void onType() override { journal_.call("onType()"); }
    void onMemberPort(Vel::Name name) override { journal_.call("onMemberPort", name); }
    void onMemberPortvelImmediate() override { journal_.call("onMemberPortvelImmediate()"); }
    void onMemberPort() override { journal_.call("onMemberPort()"); }
    void onMlag() override { journal_.call("onMlag()"); }

private:
    Journal & journal_;
};

class MlagPortRecorder : public MlagPort::NotifieeConst {
public:
    explicit MlagPortRecorder(Journal & journal) : journal_(journal) {}

    void onType() override { journal_.call("onType()"); }
    void onLocalPortGroup() override { journal_.call("onLocalPortGroup()"); }

private:
    Journal & journal_;
};

class DirectedEdgeRecorder : public DirectedEdge::NotifieeConst {
public:
    explicit DirectedEdgeRecorder(Journal & journal) : journal_(journal) {}

    void onToPort(PortKey const & key) override { journal_.call("onToPort", key); }
    void onToPortvelImmediate() override { journal_.call("onToPortvelImmediate()"); }
    void onToPort() override { journal_.call("onToPort()"); }

private:
    Journal & journal_;
};

// A reactor that follows `notifier` from now on.
template <class Recorder>
Vel::Ptr<Recorder> recorderOf(Vel::Ptr<Vel::PtrInterface const> const & notifier, Journal & journal) {
    Vel::Ptr<Recorder> const recorder = new Recorder(journal);
    recorder->notifierIs(notifier);
    recorder->isRegisteredNotifieeIs(true);
    recorder->hasNotificationActiveIs(true);
    return recorder;
}

}  // namespace NetworkTopologyV3
