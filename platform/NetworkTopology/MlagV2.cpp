#include "platform/NetworkTopology/MlagV2.h"

#include <utility>

#include "platform/NetworkTopology/PortBaseVisitor.h"

namespace NetworkTopology {

MlagV2::MlagV2(Vel::Name name, Vel::Name secondaryName) noexcept
    : PortBaseV2(Kind::mlag, std::move(name)), secondaryName_(std::move(secondaryName)) {}

MlagV2::~MlagV2() = default;

Vel::Ptr<MlagV2> MlagV2::MlagV2Is(Vel::Name name, Vel::Name secondaryName) {
    return new MlagV2(std::move(name), std::move(secondaryName));
}

void MlagV2::secondaryNameIs(Vel::Name const & value) { secondaryName_ = value; }

void MlagV2::localPortGroupIs(Vel::Ptr<PortGroupV2> const & value) {
    if (Vel::replaced(localPortGroup_, value)) {
        notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onLocalPortGroup(); });
    }
}

void MlagV2::peerPortGroupIs(Vel::Ptr<PortGroupV2> const & value) {
    if (Vel::replaced(peerPortGroup_, value)) {
        notifyKind<NotifieeConst>([](NotifieeConst & r) { r.onPeerPortGroup(); });
    }
}

void MlagV2::accept(Vel::Ptr<PortBaseVisitor> const & visitor) const {
    if (visitor) visitor->visitMlag(this);
}

MlagV2::NotifieeConst::~NotifieeConst() = default;

void MlagV2::NotifieeConst::onLocalPortGroup() {}
void MlagV2::NotifieeConst::onPeerPortGroup() {}

}  // namespace NetworkTopology
