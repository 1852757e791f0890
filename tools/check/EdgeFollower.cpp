#include "tools/check/Followers.h"

namespace TopologyTools {

using NetworkTopology::DirectedEdgeV2;
using NetworkTopology::PortBaseV2;

void expectDestination(ExpectedOutput const & output, ExpectedObject & edge, ExpectedPtr const & destination,
                       bool flag, std::uint64_t writer) {
    std::string const key = destination->path();
    edge.missing["toPort"].erase(key);
    ExpectedCell & cell = edge.entries["toPort"][key];
    cell.value = flag;
    cell.target = destination;
    cell.last = output.now(Rule::none);
    cell.writer = writer;
}

EdgeFollower::EdgeFollower(ExpectedOutput & output, DirectedEdgeV2 const & edge) : output_(output) {
    follow(edge);
    make();
}

HandledEntry const * EdgeFollower::handled(PortBaseV2 const * destination) const {
    auto const found = handled_.find(destination);
    return found == handled_.end() ? nullptr : &found->second;
}

void EdgeFollower::follow(DirectedEdgeV2 const & edge) {
    notifierIs(DirectedEdgeV2::PtrConst(&edge));
    isRegisteredNotifieeIs(true);
    hasNotificationActiveIs(true);
    binding_ = output_.newBinding();
    bound_ = output_.line();
    handled_.clear();
}

void EdgeFollower::make() {
    object_ = output_.edgeIs(output_.portBaseOf(notifier()->fromPort().get()));
    if (object_) object_->astray = {};
    unresolved_ = output_.now(output_.isBound() ? Rule::edgeUnresolved : Rule::outputUnbound);
}

void EdgeFollower::astrayIs(Rule rule) {
    if (object_ && object_->isThere())
        output_.astray(object_, rule);
    else
        unresolved_ = output_.now(rule);
}

void EdgeFollower::rebind(DirectedEdgeV2 const & edge) {
    follow(edge);
    if (object_) object_->astray = {};
}

void EdgeFollower::retire() {
    PortBaseV2::PtrConst const fromPort = notifier()->fromPort();
    notifierIs(nullptr);
    if (!object_) return;
    if (!output_.isBound())
        output_.astray(object_, Rule::outputUnbound);
    else
        output_.edgeDel(output_.portBaseOf(fromPort.get()));
}

void EdgeFollower::onToPort(Destination const & destination) {
    if (!isActive_) {
        bool const isThere = notifier()->toPort(destination).has_value();
        return missed(destination, isThere, Rule::notificationsOff);
    }
    if (!object_) {
        make();
        if (object_) {
            for (auto const & entry : notifier()->toPort()) write(entry.key());
        }
    }
    write(destination);
}

void EdgeFollower::write(Destination const & destination) {
    auto const flag = notifier()->toPort(destination);
    ExpectedPtr const target = output_.portBaseOf(destination.get());
    if (!target || !object_) return unresolved(destination, flag.has_value());
    std::string const key = target->path();
    if (flag) {
        handled_[destination.get()] = {output_.now(Rule::none), key, true};
        expectDestination(output_, *object_, target, *flag, binding_);
        return;
    }
    handled_.erase(destination.get());
    auto & entries = object_->entries["toPort"];
    auto const cell = entries.find(key);
    if (cell == entries.end()) return;
    if (cell->second.writer != binding_) object_->missing["toPort"][key] = output_.now(Rule::edgeShared);
    entries.erase(cell);
}

void EdgeFollower::unresolved(Destination const & destination, bool isThere) {
    if (!output_.isBound()) return missed(destination, isThere, Rule::outputUnbound);
    if (isThere)
        handled_[destination.get()] = {
            output_.now(object_ ? Rule::referenceUnresolved : Rule::edgeUnresolved), "", false};
    else
        handled_.erase(destination.get());
}

void EdgeFollower::missed(Destination const & destination, bool isThere, Rule rule) {
    HandledEntry & handled = handled_[destination.get()];
    if (handled.isWritten && object_) {
        auto & entries = object_->entries["toPort"];
        auto const cell = entries.find(handled.name);
        if (cell != entries.end() && cell->second.writer == binding_) cell->second.last = output_.now(rule);
    }
    if (isThere)
        handled.last = output_.now(rule);
    else
        handled_.erase(destination.get());
}

}  // namespace TopologyTools
