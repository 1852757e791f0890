#include "platform/NetworkTopology/PortTypeV2.h"

#include "platform/Vel/GenericIf.h"

namespace NetworkTopology {

namespace {

constexpr Vel::VelEnumerator enumerators[] = {
    {"unknown", static_cast<std::uint32_t>(PortTypeV2::unknown)},
    {"port", static_cast<std::uint32_t>(PortTypeV2::port)},
    {"portGroup", static_cast<std::uint32_t>(PortTypeV2::portGroup)},
    {"mlag", static_cast<std::uint32_t>(PortTypeV2::mlag)},
};

}  // namespace

constinit Vel::VelType const _velType_PortTypeV2{{
    .name = "NetworkTopology::PortTypeV2",
    .fromStrRep = Vel::GenericIfImpl::enumeratorFromStrRep,
    .kind = Vel::VelType::Kind::enumeration,
    .toStrRep = Vel::GenericIfImpl::enumeratorToStrRep,
    .enumerators = enumerators,
}};

namespace {

Vel::TypeRegistration const registration(_velType_PortTypeV2);

}  // namespace

}  // namespace NetworkTopology
