// The peer of the benchmarks: both models and the translator as they are written with the standard library
// and boost's signals, each object in a shared pointer, each collection an unordered map from strings.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "bench/translator_bench/Fabric.h"
#include "bench/translator_bench/InputWriter.h"
#include "bench/translator_bench/idiomatic/Translator.h"

namespace Bench {

class OutputText;

struct IdiomaticInput {
    using Name = std::string;
    using Text = std::string;
    using Status = std::shared_ptr<Peer::V2::Status>;
    using Host = std::shared_ptr<Peer::V2::Host>;
    using Port = std::shared_ptr<Peer::V2::Port>;
    using PortGroup = std::shared_ptr<Peer::V2::PortGroup>;
    using Mlag = std::shared_ptr<Peer::V2::Mlag>;
    using Edge = std::shared_ptr<Peer::V2::Edge>;

    static constexpr auto kPort = Peer::PortType::port;
    static constexpr auto kPortGroup = Peer::PortType::portGroup;
    static constexpr auto kMlag = Peer::PortType::mlag;
    static constexpr auto kMlagState = Peer::MlagState::disabled;

    static Status newStatus() { return std::make_shared<Peer::V2::Status>(); }
    static std::uint64_t systemId(std::uint64_t number) { return number; }
};

class Idiomatic {
public:
    using Port = IdiomaticInput::Port;
    using PortGroup = IdiomaticInput::PortGroup;
    using Host = IdiomaticInput::Host;
    using Edge = IdiomaticInput::Edge;
    using Text = IdiomaticInput::Text;

    explicit Idiomatic(Fabric const & fabric) : input_(fabric) {}

    InputWriter<IdiomaticInput> & input() { return input_; }

    void setType(Port const & port, unsigned type) { port->typeIs(static_cast<Peer::PortType>(type)); }
    void setGroup(Port const & port, PortGroup const & group) { port->portGroupIs(group); }
    void addMember(PortGroup const & group, Port const & port) { group->memberPortIs(port->name(), port); }
    void removeMember(PortGroup const & group, Port const & port) { group->memberPortDel(port->name()); }
    void setFlag(Edge const & edge, Port const & destination, bool flag) {
        edge->toPortIs(destination, flag);
    }
    void setHostname(Host const & host, Text const & text) { host->hostnameIs(text); }

    void populate() { Peer::populate(*input_.status(), Peer::Finder(output_)); }
    void translate() { translator_ = std::make_unique<Peer::Translator>(input_.status(), output_); }
    void dropTranslator() { translator_ = nullptr; }
    void dropOutput() { output_ = std::make_shared<Peer::V3::Status>(); }

    void write(OutputText & text) const;

private:
    InputWriter<IdiomaticInput> input_;
    std::shared_ptr<Peer::V3::Status> output_ = std::make_shared<Peer::V3::Status>();
    std::unique_ptr<Peer::Translator> translator_;
};

}  // namespace Bench
