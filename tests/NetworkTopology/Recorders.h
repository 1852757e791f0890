// Reactors that write down the callbacks which they get.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/NetworkTopology/StatusV2.h"

namespace NetworkTopologyTest {

using Calls = std::vector<std::string>;

inline std::string text(Vel::Name const & key) { return std::string(key.view()); }
inline std::string text(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & key) {
    return key ? text(key->name()) : "null";
}

template <class Reactor>
class Recording : public Reactor {
public:
    // Runs inside each callback, after it has been written down.
    std::function<void(std::string const & call)> act;
    int exceptions = 0;

    // What was written down since the last time.
    Calls taken() { return std::exchange(calls_, {}); }
    void onNotificationException() override { ++exceptions; }

protected:
    void record(std::string const & call) {
        calls_.push_back(call);
        // A copy: what `act` does may destroy this reactor or set another `act`.
        if (auto const now = act) now(call);
    }
    template <class Key>
    void record(std::string const & callback, Key const & key) {
        record(callback + '(' + text(key) + ')');
    }

private:
    Calls calls_;
};

class StatusRecorder final : public Recording<NetworkTopology::StatusV2::NotifieeConst> {
public:
    void onHost(Vel::Name name) override { record("onHost", name); }
    void onHostvelImmediate() override { record("onHostvelImmediate"); }
    void onHost() override { record("onHost"); }
    void onLocalhost() override { record("onLocalhost"); }
    void onEdge(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & fromPort) override {
        record("onEdge", fromPort);
    }
    void onEdgevelImmediate() override { record("onEdgevelImmediate"); }
    void onEdge() override { record("onEdge"); }
};

class HostRecorder final : public Recording<NetworkTopology::HostV2::NotifieeConst> {
public:
    void onHostname() override { record("onHostname"); }
    void onHostnameAddedByOwner() override { record("onHostnameAddedByOwner"); }
    void onMlagSystemId() override { record("onMlagSystemId"); }
    void onMlagDomainId() override { record("onMlagDomainId"); }
    void onMlagState() override { record("onMlagState"); }
    void onMlagPeerLink() override { record("onMlagPeerLink"); }
    void onPort(Vel::Name name) override { record("onPort", name); }
    void onPortvelImmediate() override { record("onPortvelImmediate"); }
    void onPort() override { record("onPort"); }
    void onPortGroup(Vel::Name name) override { record("onPortGroup", name); }
    void onPortGroupvelImmediate() override { record("onPortGroupvelImmediate"); }
    void onPortGroup() override { record("onPortGroup"); }
    void onMlag(Vel::Name name) override { record("onMlag", name); }
    void onMlagvelImmediate() override { record("onMlagvelImmediate"); }
    void onMlag() override { record("onMlag"); }
    void onMlagRaw(Vel::Name name) override { record("onMlagRaw", name); }
    void onMlagRawvelImmediate() override { record("onMlagRawvelImmediate"); }
    void onMlagRaw() override { record("onMlagRaw"); }
    void onLogicalPort(Vel::Name name) override { record("onLogicalPort", name); }
    void onLogicalPortvelImmediate() override { record("onLogicalPortvelImmediate"); }
    void onLogicalPort() override { record("onLogicalPort"); }
};

template <class Reactor>
class PortBaseRecording : public Recording<Reactor> {
public:
    void onType() override { this->record("onType"); }
    void onAddedByOwner() override { this->record("onAddedByOwner"); }
};

class PortBaseRecorder final : public PortBaseRecording<NetworkTopology::PortBaseV2::NotifieeConst> {};

class PortRecorder final : public PortBaseRecording<NetworkTopology::PortV2::NotifieeConst> {
public:
    void onPortGroup() override { record("onPortGroup"); }
};

class PortGroupRecorder final : public PortBaseRecording<NetworkTopology::PortGroupV2::NotifieeConst> {
public:
    void onMemberPort(Vel::Name name) override { record("onMemberPort", name); }
    void onMemberPortvelImmediate() override { record("onMemberPortvelImmediate"); }
    void onMemberPort() override { record("onMemberPort"); }
    void onMlag() override { record("onMlag"); }
};

class MlagRecorder final : public PortBaseRecording<NetworkTopology::MlagV2::NotifieeConst> {
public:
    void onLocalPortGroup() override { record("onLocalPortGroup"); }
    void onPeerPortGroup() override { record("onPeerPortGroup"); }
};

class EdgeRecorder final : public Recording<NetworkTopology::DirectedEdgeV2::NotifieeConst> {
public:
    void onToPort(Vel::Ptr<NetworkTopology::PortBaseV2 const> const & port) override {
        record("onToPort", port);
    }
    void onToPortvelImmediate() override { record("onToPortvelImmediate"); }
    void onToPort() override { record("onToPort"); }
};

template <class Model>
struct RecorderOf;
template <>
struct RecorderOf<NetworkTopology::StatusV2> {
    using type = StatusRecorder;
};
template <>
struct RecorderOf<NetworkTopology::HostV2> {
    using type = HostRecorder;
};
template <>
struct RecorderOf<NetworkTopology::PortV2> {
    using type = PortRecorder;
};
template <>
struct RecorderOf<NetworkTopology::PortGroupV2> {
    using type = PortGroupRecorder;
};
template <>
struct RecorderOf<NetworkTopology::MlagV2> {
    using type = MlagRecorder;
};
template <>
struct RecorderOf<NetworkTopology::DirectedEdgeV2> {
    using type = EdgeRecorder;
};

// A reactor of class `Recorder` that follows `object`: bound, registered and active.
template <class Recorder>
Vel::Ptr<Recorder> followedBy(Vel::Ptr<Vel::PtrInterface const> const & object) {
    Vel::Ptr<Recorder> const recorder = new Recorder;
    recorder->notifierIs(object);
    recorder->isRegisteredNotifieeIs(true);
    recorder->hasNotificationActiveIs(true);
    return recorder;
}

template <class Model>
Vel::Ptr<typename RecorderOf<Model>::type> followed(Vel::Ptr<Model> const & object) {
    return followedBy<typename RecorderOf<Model>::type>(object);
}

}  // namespace NetworkTopologyTest
