#include "tests/reflection/support/EveryType.h"

#include <map>
#include <memory>

#include "tests/NetworkTopology/Recorders.h"
#include "tests/NetworkTopologyV3/Recorders.h"

namespace TestSupport {

namespace {

namespace V3 = NetworkTopologyV3;
using Vel::GenericIf;
using Vel::VelAttr;

template <class Recorder>
Taken recordedV2(GenericIf const & object) {
    auto const recorder =
        NetworkTopologyTest::followedBy<Recorder>(object.as<Vel::Ptr<Vel::PtrInterface const>>());
    return [recorder] { return recorder->taken(); };
}

template <class Recorder>
Taken recordedV3(GenericIf const & object) {
    auto const journal = std::make_shared<V3::Journal>();
    auto const recorder = V3::recorderOf<Recorder>(object.as<Vel::Ptr<Vel::PtrInterface const>>(), *journal);
    return [journal, recorder] { return journal->take(); };
}

}  // namespace

std::string fullName(VelAttr const & attr) {
    return std::string(attr.owner()->name()) + "::" + std::string(attr.name());
}

Taken followed(GenericIf const & object) {
    static std::map<std::string, Taken (*)(GenericIf const &)> const recorders = {
        {"NetworkTopology::StatusV2", &recordedV2<NetworkTopologyTest::StatusRecorder>},
        {"NetworkTopology::HostV2", &recordedV2<NetworkTopologyTest::HostRecorder>},
        {"NetworkTopology::PortV2", &recordedV2<NetworkTopologyTest::PortRecorder>},
        {"NetworkTopology::PortGroupV2", &recordedV2<NetworkTopologyTest::PortGroupRecorder>},
        {"NetworkTopology::MlagV2", &recordedV2<NetworkTopologyTest::MlagRecorder>},
        {"NetworkTopology::DirectedEdgeV2", &recordedV2<NetworkTopologyTest::EdgeRecorder>},
        {"NetworkTopologyV3::Status", &recordedV3<V3::StatusRecorder>},
        {"NetworkTopologyV3::Host", &recordedV3<V3::HostRecorder>},
        {"NetworkTopologyV3::Port", &recordedV3<V3::PortRecorder>},
        {"NetworkTopologyV3::PortGroup", &recordedV3<V3::PortGroupRecorder>},
        {"NetworkTopologyV3::MlagPort", &recordedV3<V3::MlagPortRecorder>},
        {"NetworkTopologyV3::DirectedEdge", &recordedV3<V3::DirectedEdgeRecorder>},
    };
    auto const found = recorders.find(object.typeName());
    return found == recorders.end() ? [] { return std::vector<std::string>(); } : found->second(object);
}

std::vector<GenericIf> EveryType::objects() const {
    auto const host = scene.host();
    auto const hostV3 = scene.models.v3->host("a");
    scene.finder.call("find", {host->port("p")});
    return {scene.models.v2,   host,
            host->port("p"),   host->portGroup("g"),
            host->mlag("m"),   scene.models.v2->edge(host->port("p")),
            scene.models.v3,   hostV3,
            hostV3->port("p"), hostV3->portGroup("g"),
            hostV3->mlag("m"), scene.models.v3->edge(hostV3->port("p")->portKey()),
            scene.translator,  scene.finder};
}

std::vector<GenericIf> EveryType::bareObjects() const {
    auto const bare = bareStatus->hostIs("bare");
    return {bareStatus, bare, bare->portIs("p"), bare->portGroupIs("g"), bare->mlagIs("m", "")};
}

void EveryType::forEveryAttribute(std::vector<GenericIf> const & objects,
                                  std::function<void(GenericIf const &, VelAttr const &)> const & act) const {
    for (GenericIf const & object : objects) {
        for (Vel::VelType const * type = object.type(); type; type = type->base()) {
            for (VelAttr const & attr : type->attributes()) {
                SCOPED_TRACE(object.typeName() + ": " + fullName(attr));
                act(object, attr);
            }
        }
    }
}

}  // namespace TestSupport
