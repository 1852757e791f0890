#include "bench/translator_bench/OutputText.h"

#include <ostream>

namespace Bench {

namespace {

std::string textOf(OutputText::References const & references) {
    std::string text;
    for (auto const & [key, name] : references) text += ' ' + key + ':' + name;
    return text;
}

}  // namespace

void OutputText::host(Host const & host) {
    lines_.insert(host.name + ' ' + host.hostname + ' ' + host.mlagDomainId + ' ' +
                  std::to_string(host.mlagSystemId) + ' ' + std::to_string(host.mlagState) + " peerLink " +
                  host.mlagPeerLink + " raw" + textOf(host.mlagRaw) + " logical" + textOf(host.logicalPort));
}

void OutputText::port(Port const & port) {
    lines_.insert(port.host + ' ' + port.name + " type " + std::to_string(port.type) + " group " +
                  port.portGroup);
}

void OutputText::portGroup(PortGroup const & group) {
    lines_.insert(group.host + ' ' + group.name + " mlag " + group.mlag + " members" +
                  textOf(group.memberPort));
}

void OutputText::mlag(Mlag const & mlag) {
    lines_.insert(mlag.host + ' ' + mlag.name + " secondary " + mlag.secondaryName + " local " +
                  mlag.localPortGroup);
}

void OutputText::edge(std::string const & fromPort, Destinations const & toPort) {
    std::string line = "edge " + fromPort + " to";
    for (auto const & [port, flag] : toPort) line += ' ' + port + (flag ? '+' : '-');
    lines_.insert(line);
}

void OutputText::localhost(std::string const & name) { lines_.insert("localhost " + name); }

void OutputText::print(std::ostream & out) const {
    for (auto const & line : lines_) out << line << '\n';
}

}  // namespace Bench
