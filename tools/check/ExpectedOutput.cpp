#include "tools/check/ExpectedOutput.h"

#include "platform/Keln/EthAddr.h"
#include "platform/Mlag/MlagState.h"
#include "platform/NetworkTopology/MlagV2.h"
#include "platform/NetworkTopology/PortGroupV2.h"
#include "platform/NetworkTopology/PortV2.h"
#include "platform/NetworkTopologyV3/PortType.h"

namespace TopologyTools {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;

std::string_view collectionOf(PortBaseV2 const & portBase) {
    if (dynamic_cast<NetworkTopology::PortV2 const *>(&portBase)) return "port";
    if (dynamic_cast<NetworkTopology::PortGroupV2 const *>(&portBase)) return "portGroup";
    return "mlag";
}

ExpectedOutput::ExpectedOutput() : root_(std::make_shared<ExpectedObject>(nullptr, "", "", 0)) {
    root_->attributes["localhost"];
    root_->members = {{"host", {}}, {"edge", {}}};
}

ExpectedOutput::~ExpectedOutput() { root_->clear(); }

ExpectedPtr ExpectedOutput::hostOf(HostV2 const * host) const {
    return host && isBound_ ? root_->member("host", host->name().view()) : nullptr;
}

ExpectedPtr ExpectedOutput::portBaseOf(PortBaseV2 const * portBase) const {
    ExpectedPtr const host = portBase ? hostOf(portBase->host()) : nullptr;
    return host ? host->member(collectionOf(*portBase), portBase->name().view()) : nullptr;
}

ExpectedPtr ExpectedOutput::make(ExpectedPtr const & parent, std::string_view collection,
                                 std::string const & key) {
    ExpectedPtr object = std::make_shared<ExpectedObject>(parent, collection, key, line_);
    parent->members[collection][key] = object;
    parent->missing[collection].erase(key);
    return object;
}

ExpectedPtr ExpectedOutput::hostIs(std::string const & name) {
    if (!isBound_) return nullptr;
    if (ExpectedPtr present = root_->member("host", name)) return present;
    ExpectedPtr host = make(root_, "host", name);
    setValue(*host, "hostname", "", Rule::hostAttributeUnwritten);
    setValue(*host, "mlagDomainId", "", Rule::hostAttributeUnwritten);
    setValue(*host, "mlagSystemId", shownText(Keln::EthAddr()), Rule::hostAttributeUnwritten);
    setValue(*host, "mlagState", shownText(Mlag::MlagState::unknown), Rule::hostAttributeUnwritten);
    host->attributes["mlagPeerLink"];
    host->members = {{"port", {}}, {"portGroup", {}}, {"mlag", {}}};
    host->entries = {{"mlagRaw", {}}, {"logicalPort", {}}};
    return host;
}

ExpectedPtr ExpectedOutput::memberIs(std::string const & hostName, PortBaseV2 const & member) {
    ExpectedPtr const host = isBound_ ? root_->member("host", hostName) : nullptr;
    if (!host) return nullptr;
    std::string_view const collection = collectionOf(member);
    std::string const name = textOf(member.name());
    if (ExpectedPtr present = host->member(collection, name)) return present;
    ExpectedPtr object = make(host, collection, name);
    setValue(*object, "type", shownText(NetworkTopologyV3::PortType::unknown), Rule::typeUnwritten);
    if (collection == "port") {
        object->attributes["portGroup"].last = now(Rule::linkUnwritten);
    } else if (collection == "portGroup") {
        object->attributes["mlag"].last = now(Rule::linkUnwritten);
        object->entries = {{"memberPort", {}}};
    } else {
        object->attributes["localPortGroup"].last = now(Rule::linkUnwritten);
        auto const & mlag = static_cast<MlagV2 const &>(member);
        setValue(*object, "secondaryName", textOf(mlag.secondaryName()), Rule::secondaryNameKept);
    }
    return object;
}

ExpectedPtr ExpectedOutput::edgeIs(ExpectedPtr const & fromPort) {
    if (!isBound_ || !fromPort) return nullptr;
    std::string const key = fromPort->path();
    ExpectedPtr edge = root_->member("edge", key);
    if (!edge) {
        edge = make(root_, "edge", key);
        edge->entries = {{"toPort", {}}};
    }
    edge->anchor = fromPort;
    return edge;
}

void ExpectedOutput::hostDel(std::string const & name) {
    if (isBound_)
        root_->memberDel("host", name, line_);
    else
        astray(root_->member("host", name), Rule::outputUnbound);
}

void ExpectedOutput::memberDel(std::string const & hostName, std::string_view collection,
                               std::string const & name) {
    ExpectedPtr const host = root_->member("host", hostName);
    if (!host) return;
    if (isBound_)
        host->memberDel(collection, name, line_);
    else
        astray(host->member(collection, name), Rule::outputUnbound);
}

void ExpectedOutput::edgeDel(ExpectedPtr const & fromPort) {
    if (fromPort) root_->memberDel("edge", fromPort->path(), line_);
}

void ExpectedOutput::setValue(ExpectedObject & object, std::string_view attribute, std::string const & value,
                              Rule rule) {
    ExpectedCell & cell = object.attributes[attribute];
    cell.value = value;
    cell.last = now(rule);
}

void ExpectedOutput::valueIs(ExpectedPtr const & object, std::string_view attribute,
                             std::string const & value) {
    if (object && object->isThere()) setValue(*object, attribute, value, Rule::none);
}

void ExpectedOutput::referenceIs(ExpectedPtr const & object, std::string_view attribute, bool isSet,
                                 ExpectedPtr const & target) {
    if (!object || !object->isThere()) return;
    ExpectedCell & cell = object->attributes[attribute];
    cell.target = target;
    cell.last = now(target || !isSet ? Rule::none
                    : isBound_       ? Rule::referenceUnresolved
                                     : Rule::outputUnbound);
}

void ExpectedOutput::missed(ExpectedPtr const & object, std::string_view attribute, Rule rule) {
    if (object && object->isThere()) object->attributes[attribute].last = now(rule);
}

void ExpectedOutput::adopted(ExpectedPtr const & object) {
    if (!object || object->boundLine() == line_) return;
    object->astray = {};
    object->boundIs(line_);
    for (auto & [attribute, cell] : object->attributes) {
        if (attribute == "secondaryName") continue;  // Which is given once, when the object is made.
        Rule const rule = attribute == "type"    ? Rule::typeUnwritten
                          : cell.value.is_null() ? Rule::linkUnwritten
                                                 : Rule::hostAttributeUnwritten;
        cell.last = now(rule);
    }
}

void ExpectedOutput::astray(ExpectedPtr const & object, Rule rule) {
    if (object) object->astray = now(rule);
}

void ExpectedOutput::entriesOf(ExpectedPtr const & object, void const * source) {
    if (!object || object->entrySource == source) return;
    object->entrySource = source;
    object->handled.clear();
}

void ExpectedOutput::leaveBehind(ExpectedObject & object, std::string_view collection,
                                 std::string const & key, HandledEntry const & handled, Rule rule) {
    auto & entries = object.entries[collection];
    auto const cell = entries.find(handled.name);
    if (handled.isWritten && cell != entries.end() && cell->second.source == key) {
        cell->second.last = now(rule);
    }
}

void ExpectedOutput::takeFromOthers(ExpectedObject & object, std::string_view collection,
                                    std::string const & name, std::string const & key, Rule rule) {
    auto & entries = object.entries[collection];
    auto const cell = entries.find(name);
    if (cell == entries.end() || cell->second.source == key) return;
    auto & handled = object.handled[collection];
    auto const other = handled.find(cell->second.source);
    if (other != handled.end() && other->second.isWritten && other->second.name == name) {
        other->second = {now(rule), "", false};
    }
}

void ExpectedOutput::entryIs(ExpectedPtr const & object, std::string_view collection, std::string const & key,
                             bool isSet, ExpectedPtr const & target, Rule rule) {
    if (!object || !object->isThere()) return;
    HandledEntry & handled = object->handled[collection][key];
    if (!target || handled.name != target->key()) {
        leaveBehind(*object, collection, key, handled, Rule::entryLeftBehind);
    }
    if (!target) {
        Rule const unresolved = isBound_ ? Rule::referenceUnresolved : Rule::outputUnbound;
        handled = {now(rule != Rule::none || !isSet ? rule : unresolved), "", false};
        return;
    }
    takeFromOthers(*object, collection, target->key(), key, Rule::entryOverwritten);
    handled = {now(rule), target->key(), true};
    ExpectedCell & cell = object->entries[collection][target->key()];
    cell.target = target;
    cell.last = now(rule);
    cell.source = key;
}

void ExpectedOutput::entryDel(ExpectedPtr const & object, std::string_view collection,
                              std::string const & key) {
    if (!object || !object->isThere()) return;
    auto & handled = object->handled[collection];
    if (auto const own = handled.find(key); own != handled.end()) {
        if (own->second.name != key)
            leaveBehind(*object, collection, key, own->second, Rule::entryLeftBehind);
        handled.erase(own);
    }
    takeFromOthers(*object, collection, key, key, Rule::entryRemovedByKey);
    object->entries[collection].erase(key);
}

void ExpectedOutput::entryMissed(ExpectedPtr const & object, std::string_view collection,
                                 std::string const & key, bool isThere) {
    if (!object || !object->isThere()) return;
    auto & handled = object->handled[collection];
    leaveBehind(*object, collection, key, handled[key], Rule::notificationsOff);
    if (isThere)
        handled[key] = {now(Rule::notificationsOff), "", false};
    else
        handled.erase(key);
}

}  // namespace TopologyTools
