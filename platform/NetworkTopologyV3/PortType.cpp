#include "platform/NetworkTopologyV3/PortType.h"

#include "platform/Vel/GenericIf.h"

namespace NetworkTopologyV3 {

namespace {

constexpr Vel::VelEnumerator enumerators[] = {
    {"unknown", static_cast<std::uint32_t>(PortType::unknown)},
    {"port", static_cast<std::uint32_t>(PortType::port)},
    {"portGroup", static_cast<std::uint32_t>(PortType::portGroup)},
    {"mlag", static_cast<std::uint32_t>(PortType::mlag)},
};

}  // namespace

constinit Vel::VelType const _velType_PortType{{
    .name = "NetworkTopologyV3::PortType",
    .fromStrRep = Vel::GenericIfImpl::enumeratorFromStrRep,
    .kind = Vel::VelType::Kind::enumeration,
    .toStrRep = Vel::GenericIfImpl::enumeratorToStrRep,
    .enumerators = enumerators,
}};

namespace {

Vel::TypeRegistration const registration(_velType_PortType);

}  // namespace

}  // namespace NetworkTopologyV3
