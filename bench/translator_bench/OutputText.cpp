#include "bench/translator_bench/OutputText.h"

#include <ostream>

namespace Bench {

namespace {

// In the order of the whole entries, as a tool that compares such texts sorts them: a colon comes after the
// digits, so that "group-10:..." stands before "group-1:...".
std::string textOf(OutputText::References const & references) {
    std::set<std::string> entries;
    for (auto const & [key, name] : references) entries.insert(' ' + key + ':' + name);
    std::string text;
    for (auto const & entry : entries) text += entry;
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
