#include "tools/import/TopologyBuilder.h"

#include <algorithm>
#include <cassert>

namespace TopologyTools {

TopologyBuilder::TopologyBuilder(std::string_view format, SourceText const & text)
    : format_(format), text_(text) {}

bool TopologyBuilder::host(std::string const & name) {
    if (!indexOf_.emplace(name, hosts_.size()).second) {
        return false;
    }
    hosts_.emplace_back().name = name;
    return true;
}

bool TopologyBuilder::port(std::string const & host, std::string const & name) {
    return end(host, name, EndKind::port);
}

bool TopologyBuilder::portGroup(std::string const & host, std::string const & name) {
    return end(host, name, EndKind::portGroup);
}

bool TopologyBuilder::end(std::string const & host, std::string const & name, EndKind kind) {
    Host & owner = hostNamed(host);
    if (!owner.kindOf.emplace(name, kind).second) {
        return false;
    }
    owner.ends.push_back({name, kind});
    return true;
}

bool TopologyBuilder::edge(EdgeEnd const & from, EdgeEnd const & to) {
    assert(kindOf(from.host, from.name) == from.kind && kindOf(to.host, to.name) == to.kind);
    if (!known_.emplace(from, to).second) {
        return false;
    }
    edges_.push_back({from, to});
    return true;
}

void TopologyBuilder::member(std::string const & host, std::string const & group, std::string const & port) {
    Host & owner = hostNamed(host);
    bool const isNew = owner.groupOf.emplace(port, group).second;
    assert(isNew);
    static_cast<void>(isNew);
    owner.members.emplace_back(group, port);
}

bool TopologyBuilder::hasHost(std::string const & name) const { return indexOf_.count(name) != 0; }

std::optional<EndKind> TopologyBuilder::kindOf(std::string const & host, std::string const & name) const {
    Host const & owner = hostNamed(host);
    auto const at = owner.kindOf.find(name);
    return at == owner.kindOf.end() ? std::nullopt : std::optional<EndKind>(at->second);
}

std::optional<std::string> TopologyBuilder::groupOf(std::string const & host,
                                                    std::string const & port) const {
    Host const & owner = hostNamed(host);
    auto const at = owner.groupOf.find(port);
    return at == owner.groupOf.end() ? std::nullopt : std::optional<std::string>(at->second);
}

std::string TopologyBuilder::portTowards(std::string const & host, std::string const & peer) {
    unsigned & last = hostNamed(host).lastSuffix[peer];
    std::string name;
    do {
        ++last;
        name = last == 1 ? peer : peer + '-' + std::to_string(last);
    } while (!port(host, name));
    return name;
}

void TopologyBuilder::warn(TextPosition position, std::string message) {
    diagnostics_.push_back({text_.fileName(), position, std::move(message)});
}

ImportResult TopologyBuilder::finish(TextPosition place) {
    if (hosts_.empty()) {
        throw InputError(text_.fileName(), place,
                         "no host in it, read as " + format_ + "; expected at least one node");
    }
    ImportResult result;
    result.format = format_;
    for (Host const & host : hosts_) {
        result.operations.push_back(HostOperation{host.name});
    }
    for (Host const & host : hosts_) {
        for (Named const & end : host.ends) {
            if (end.kind == EndKind::port) {
                result.operations.push_back(PortOperation{host.name, end.name});
            } else {
                result.operations.push_back(PortGroupOperation{host.name, end.name});
            }
        }
    }
    for (Host const & host : hosts_) {
        for (auto const & [group, port] : host.members) {
            result.operations.push_back(MemberOperation{host.name, group, port});
        }
    }
    std::move(edges_.begin(), edges_.end(), std::back_inserter(result.operations));
    std::stable_sort(diagnostics_.begin(), diagnostics_.end(),
                     [](Diagnostic const & a, Diagnostic const & b) {
                         return std::pair(a.position.line, a.position.column) <
                                std::pair(b.position.line, b.position.column);
                     });
    result.diagnostics = std::move(diagnostics_);
    return result;
}

TopologyBuilder::Host & TopologyBuilder::hostNamed(std::string const & name) {
    return hosts_[indexOf_.at(name)];
}

TopologyBuilder::Host const & TopologyBuilder::hostNamed(std::string const & name) const {
    return hosts_[indexOf_.at(name)];
}

}  // namespace TopologyTools
