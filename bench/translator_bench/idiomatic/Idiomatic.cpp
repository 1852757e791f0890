#include "bench/translator_bench/idiomatic/Idiomatic.h"

#include "bench/translator_bench/OutputText.h"

namespace Bench {

namespace {

std::string textOf(Peer::V3::PortKey const & key) { return key.host + '/' + key.port; }

template <class Object>
std::string nameOf(std::shared_ptr<Object> const & object) {
    return object ? object->name() : "-";
}

template <class Entries>
OutputText::References referencesOf(Entries const & entries) {
    OutputText::References references;
    for (auto const & [key, object] : entries) references.emplace(key, nameOf(object));
    return references;
}

void write(Peer::V3::Host const & host, OutputText & text) {
    text.host({.name = host.name(),
               .hostname = host.hostname(),
               .mlagDomainId = host.mlagDomainId(),
               .mlagSystemId = host.mlagSystemId(),
               .mlagState = static_cast<unsigned>(host.mlagState()),
               .mlagPeerLink = nameOf(host.mlagPeerLink()),
               .mlagRaw = referencesOf(host.mlagRaws()),
               .logicalPort = referencesOf(host.logicalPorts())});
    for (auto const & [name, port] : host.ports()) {
        text.port({.host = host.name(),
                   .name = name,
                   .type = static_cast<unsigned>(port->type()),
                   .portGroup = nameOf(port->portGroup())});
    }
    for (auto const & [name, group] : host.portGroups()) {
        text.portGroup({.host = host.name(),
                        .name = name,
                        .mlag = nameOf(group->mlag()),
                        .memberPort = referencesOf(group->memberPorts())});
    }
    for (auto const & [name, mlag] : host.mlags()) {
        text.mlag({.host = host.name(),
                   .name = name,
                   .secondaryName = mlag->secondaryName(),
                   .localPortGroup = nameOf(mlag->localPortGroup())});
    }
}

}  // namespace

void Idiomatic::write(OutputText & text) const {
    for (auto const & [name, host] : output_->hosts()) Bench::write(*host, text);
    for (auto const & [fromPort, edge] : output_->edges()) {
        OutputText::Destinations destinations;
        for (auto const & [toPort, flag] : edge->toPorts()) destinations.emplace(textOf(toPort), flag);
        text.edge(textOf(fromPort), destinations);
    }
    text.localhost(nameOf(output_->localhost()));
}

}  // namespace Bench
