// The translator and both models of these libraries, as the subject of the benchmarks.
#pragma once

#include <array>
#include <cstdint>

#include "bench/translator_bench/Fabric.h"
#include "bench/translator_bench/InputWriter.h"
#include "translator/V2Sm.h"

namespace Bench {

class OutputText;

struct ProductInput {
    using Name = Vel::Name;
    using Text = Vel::String;
    using Status = NetworkTopology::StatusV2::Ptr;
    using Host = NetworkTopology::HostV2::Ptr;
    using Port = NetworkTopology::PortV2::Ptr;
    using PortGroup = NetworkTopology::PortGroupV2::Ptr;
    using Mlag = NetworkTopology::MlagV2::Ptr;
    using Edge = NetworkTopology::DirectedEdgeV2::Ptr;

    static constexpr auto kPort = NetworkTopology::PortTypeV2::port;
    static constexpr auto kPortGroup = NetworkTopology::PortTypeV2::portGroup;
    static constexpr auto kMlag = NetworkTopology::PortTypeV2::mlag;
    static constexpr auto kMlagState = ::Mlag::MlagState::disabled;

    static Status newStatus() { return NetworkTopology::StatusV2::StatusV2Is(); }
    static Keln::EthAddr systemId(std::uint64_t number) noexcept {
        std::array<std::uint8_t, 6> octets;
        for (auto octet = octets.rbegin(); octet != octets.rend(); ++octet, number >>= 8) {
            *octet = static_cast<std::uint8_t>(number);
        }
        return Keln::EthAddr(octets);
    }
};

class Product {
public:
    using Port = ProductInput::Port;
    using PortGroup = ProductInput::PortGroup;
    using Host = ProductInput::Host;
    using Edge = ProductInput::Edge;
    using Text = ProductInput::Text;

    explicit Product(Fabric const & fabric) : input_(fabric) {}

    InputWriter<ProductInput> & input() noexcept { return input_; }

    void setType(Port const & port, unsigned type) {
        port->typeIs(static_cast<NetworkTopology::PortTypeV2>(type));
    }
    void setGroup(Port const & port, PortGroup const & group) { port->portGroupIs(group); }
    void addMember(PortGroup const & group, Port const & port) { group->memberPortIs(port->name(), port); }
    void removeMember(PortGroup const & group, Port const & port) { group->memberPortDel(port->name()); }
    void setFlag(Edge const & edge, Port const & destination, bool flag) {
        edge->toPortIs(destination, flag);
    }
    void setHostname(Host const & host, Text const & text) { host->hostnameIs(text); }

    void populate() {
        auto const translator = NetworkTopologyAggregator::V2Sm::V2SmIs("populate", nullptr, output_);
        translator->v2Is(input_.status());
        translator->populateV3();
    }
    void translate() {
        translator_ = NetworkTopologyAggregator::V2Sm::V2SmIs("translate", input_.status(), output_);
    }
    void dropTranslator() { translator_ = nullptr; }
    void dropOutput() { output_ = NetworkTopologyV3::Status::StatusIs(); }

    void write(OutputText & text) const;

private:
    InputWriter<ProductInput> input_;
    NetworkTopologyV3::Status::Ptr output_ = NetworkTopologyV3::Status::StatusIs();
    NetworkTopologyAggregator::V2Sm::Ptr translator_;
};

}  // namespace Bench
