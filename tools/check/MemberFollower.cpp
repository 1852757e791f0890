#include <utility>

#include "platform/NetworkTopologyV3/PortType.h"
#include "tools/check/EntryFollowing.h"
#include "tools/check/Followers.h"

namespace TopologyTools {

using NetworkTopology::MlagV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopologyV3::PortType;

namespace {

PortType shownType(PortTypeV2 type) {
    switch (type) {
    case PortTypeV2::port: return PortType::port;
    case PortTypeV2::portGroup: return PortType::portGroup;
    case PortTypeV2::mlag: return PortType::mlag;
    default: return PortType::unknown;
    }
}

}  // namespace

template <class Model, class Reactor>
MemberFollower<Model, Reactor>::MemberFollower(ExpectedOutput & output, std::string hostName,
                                               Model const & model)
    : output_(output), hostName_(std::move(hostName)), name_(textOf(model.name())) {
    follow(model);
    object_ = output_.memberIs(hostName_, model);
    output_.adopted(object_);
    output_.entriesOf(object_, &model);
}

template <class Model, class Reactor>
void MemberFollower<Model, Reactor>::follow(Model const & model) {
    this->notifierIs(Vel::Ptr<Model const>(&model));
    this->isRegisteredNotifieeIs(true);
    this->hasNotificationActiveIs(true);
}

template <class Model, class Reactor>
void MemberFollower<Model, Reactor>::rebind(Model const & model) {
    follow(model);
    if (!object_) return;
    object_->astray = {};
    object_->boundIs(output_.line());
    output_.entriesOf(object_, &model);
    output_.valueIs(object_, "type", shownText(shownType(model.type())));
    writeLink();
}

template <class Model, class Reactor>
void MemberFollower<Model, Reactor>::retire() {
    std::string_view const collection = collectionOf(*this->notifier());
    this->notifierIs(nullptr);
    if (!object_) return;
    output_.entriesOf(object_, nullptr);
    output_.memberDel(hostName_, collection, name_);
}

template <class Model, class Reactor>
void MemberFollower<Model, Reactor>::onType() {
    if (isActive_)
        output_.valueIs(object_, "type", shownText(shownType(this->notifier()->type())));
    else
        output_.missed(object_, "type", Rule::notificationsOff);
}

template <class Model, class Reactor>
void MemberFollower<Model, Reactor>::onLink(std::string_view attribute) {
    if (isActive_)
        writeLink();
    else
        output_.missed(object_, attribute, Rule::notificationsOff);
}

template class MemberFollower<PortV2>;
template class MemberFollower<PortGroupV2>;
template class MemberFollower<MlagV2>;

void PortFollower::writeLink() {
    PortGroupV2::Ptr const group = notifier()->portGroup();
    output_.referenceIs(object_, "portGroup", bool(group), output_.portBaseOf(group.get()));
}

void PortGroupFollower::writeLink() {
    MlagV2::Ptr const mlag = notifier()->mlag();
    output_.referenceIs(object_, "mlag", bool(mlag), output_.portBaseOf(mlag.get()));
}

void MlagFollower::writeLink() {
    PortGroupV2::Ptr const group = notifier()->localPortGroup();
    output_.referenceIs(object_, "localPortGroup", bool(group), output_.portBaseOf(group.get()));
}

void PortGroupFollower::onMemberPort(Vel::Name name) {
    followEntry(output_, isActive_, object_, "memberPort", textOf(name), notifier()->memberPortEntry(name));
}

}  // namespace TopologyTools
