#include "bench/translator_bench/Product.h"

#include <string_view>

#include "bench/translator_bench/OutputText.h"

namespace Bench {

namespace {

using NetworkTopologyV3::PortKey;

template <class TextLike>
std::string textOf(TextLike const & text) {
    return std::string(text.view());
}

// The host and the port, without its kind: in the fabric only ports have edges.
std::string textOf(PortKey const & key) {
    Vel::String const whole = key.member();
    std::string_view const member = whole.view();
    return textOf(key.host()) + std::string(member.substr(member.find('/')));
}

template <class Pointer>
std::string nameOf(Pointer const & object) {
    return object ? textOf(object->name()) : "-";
}

template <class Entries>
OutputText::References referencesOf(Entries const & entries) {
    OutputText::References references;
    for (auto const & entry : entries) references.emplace(textOf(entry.key()), nameOf(entry.value()));
    return references;
}

void write(NetworkTopologyV3::Host const & host, OutputText & text) {
    std::string const name = textOf(host.name());
    text.host({.name = name,
               .hostname = textOf(host.hostname()),
               .mlagDomainId = textOf(host.mlagDomainId()),
               .mlagSystemId = host.mlagSystemId().value(),
               .mlagState = static_cast<unsigned>(host.mlagState()),
               .mlagPeerLink = nameOf(host.mlagPeerLink()),
               .mlagRaw = referencesOf(host.mlagRaw()),
               .logicalPort = referencesOf(host.logicalPort())});
    for (auto const & port : host.port()) {
        text.port({.host = name,
                   .name = textOf(port->name()),
                   .type = static_cast<unsigned>(port->type()),
                   .portGroup = nameOf(port->portGroup())});
    }
    for (auto const & group : host.portGroup()) {
        text.portGroup({.host = name,
                        .name = textOf(group->name()),
                        .mlag = nameOf(group->mlag()),
                        .memberPort = referencesOf(group->memberPort())});
    }
    for (auto const & mlag : host.mlag()) {
        text.mlag({.host = name,
                   .name = textOf(mlag->name()),
                   .secondaryName = textOf(mlag->secondaryName()),
                   .localPortGroup = nameOf(mlag->localPortGroup())});
    }
}

}  // namespace

void Product::write(OutputText & text) const {
    NetworkTopologyV3::Status const & output = *output_;
    for (auto const & host : output.host()) Bench::write(*host, text);
    for (auto const & edge : output.edge()) {
        OutputText::Destinations destinations;
        for (auto const & to : edge->toPort()) destinations.emplace(textOf(to.key()), to.value());
        text.edge(textOf(edge->fromPort()), destinations);
    }
    text.localhost(nameOf(output.localhost()));
}

}  // namespace Bench
