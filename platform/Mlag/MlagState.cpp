#include "platform/Mlag/MlagState.h"

#include "platform/Vel/GenericIf.h"

namespace Mlag {

namespace {

constexpr Vel::VelEnumerator enumerators[] = {
    {"unknown", static_cast<std::uint32_t>(MlagState::unknown)},
    {"disabled", static_cast<std::uint32_t>(MlagState::disabled)},
    {"inactive", static_cast<std::uint32_t>(MlagState::inactive)},
    {"active", static_cast<std::uint32_t>(MlagState::active)},
};

}  // namespace

constinit Vel::VelType const _velType_MlagState{{
    .name = "Mlag::MlagState",
    .fromStrRep = Vel::GenericIfImpl::enumeratorFromStrRep,
    .kind = Vel::VelType::Kind::enumeration,
    .toStrRep = Vel::GenericIfImpl::enumeratorToStrRep,
    .enumerators = enumerators,
}};

namespace {

Vel::TypeRegistration const registration(_velType_MlagState);

}  // namespace

}  // namespace Mlag
