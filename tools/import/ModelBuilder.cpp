#include "tools/import/ModelBuilder.h"

#include <cassert>

namespace TopologyTools {
namespace {

using NetworkTopology::HostV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

class ModelBuilder {
public:
    explicit ModelBuilder(StatusV2 & status) : status_(status) {}

    void operator()(HostOperation const & operation) { status_.hostIs(operation.name); }

    void operator()(PortOperation const & operation) {
        host(operation.host)->portIs(operation.name)->typeIs(PortTypeV2::port);
    }

    void operator()(PortGroupOperation const & operation) {
        host(operation.host)->portGroupIs(operation.name)->typeIs(PortTypeV2::portGroup);
    }

    void operator()(MemberOperation const & operation) {
        PortGroupV2::Ptr const group = host(operation.host)->portGroup(operation.group);
        PortV2::Ptr const port = host(operation.host)->port(operation.port);
        assert(group && port);
        group->memberPortIs(operation.port, port);
        port->portGroupIs(group);
    }

    void operator()(EdgeOperation const & operation) {
        status_.edgeIs(end(operation.from))->toPortIs(end(operation.to), operation.flag);
    }

private:
    HostV2::Ptr host(std::string const & name) {
        HostV2::Ptr host = status_.host(name);
        assert(host);
        return host;
    }

    PortBaseV2::PtrConst end(EdgeEnd const & end) {
        PortBaseV2::PtrConst port;
        switch (end.kind) {
        case EndKind::port: port = host(end.host)->port(end.name); break;
        case EndKind::portGroup: port = host(end.host)->portGroup(end.name); break;
        }
        assert(port);
        return port;
    }

    StatusV2 & status_;
};

}  // namespace

void applyOperations(std::vector<Operation> const & operations, StatusV2 & status) {
    ModelBuilder builder(status);
    for (Operation const & operation : operations) std::visit(builder, operation);
}

}  // namespace TopologyTools
