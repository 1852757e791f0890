"""Faults that a programmer could make in the translator, for seeded_faults.py to plant one at a time."""

import dataclasses


@dataclasses.dataclass(frozen=True)
class Fault:
    name: str
    file: str
    old: str  # Occurs once in the file.
    new: str
    wrong: str  # What goes wrong.


FAULTS = [
    Fault(
        "owners-cleared-first",
        "translator/V2Sm.cpp",
        """\
    velDoZombieReactors(true);
    clearOwners();
    edge_.emptyAllBuckets([](VelEdge const & reactor) {
""",
        """\
    clearOwners();
    velDoZombieReactors(true);
    edge_.emptyAllBuckets([](VelEdge const & reactor) {
""",
        "a translator that goes leaves in the output what it has made",
    ),
    Fault(
        "edges-retired-first",
        "translator/V2Sm.cpp",
        """\
    for (auto reactor = host_.iterator(); reactor; ++reactor) (*reactor)->velDoZombieReactors(zombie);
    RetirementsAhead ahead(edge_.size());
    for (auto reactor = edge_.iterator(); reactor; ++reactor) {
        ahead.fetch(reactor, output());
        (*reactor)->velDoZombieReactors(zombie);
    }
""",
        """\
    for (auto reactor = edge_.iterator(); reactor; ++reactor) (*reactor)->velDoZombieReactors(zombie);
    for (auto reactor = host_.iterator(); reactor; ++reactor) (*reactor)->velDoZombieReactors(zombie);
""",
        "retirement takes edges away that are to stay because their hosts have gone before them",
    ),
    Fault(
        "raw-mlag-by-key",
        "translator/V2Sm.cpp",
        "hostV3->mlag(raw.value()->name())",
        "hostV3->mlag(raw.key())",
        "population looks for a raw MLAG under the key of its entry instead of its own name",
    ),
    Fault(
        "destination-ends-the-walk",
        "translator/V2Sm.cpp",
        """\
        if (auto const toPort = toPortBaseV3(toPortV2)) {
            edgeV3->toPortIs(toPort->portKey(), destination.value());
        }
""",
        """\
        auto const toPort = toPortBaseV3(toPortV2);
        if (!toPort) return;
        edgeV3->toPortIs(toPort->portKey(), destination.value());
""",
        "population drops the destinations behind one that does not resolve",
    ),
    Fault(
        "mlag-by-secondary-name",
        "translator/V2Sm.cpp",
        "hostV3->findMlag(mlagV2->name(), mlagV2->nameHash())",
        "hostV3->findMlag(mlagV2->secondaryName())",
        "an MLAG is looked up under its secondary name",
    ),
    Fault(
        "late-edge-alone",
        "translator/VelEdge.cpp",
        """\
    v3Edge_ = createV3Edge();
    Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const edge = notifier();
""",
        """\
    v3Edge_ = createV3Edge();
    Vel::Ptr<NetworkTopology::DirectedEdgeV2 const> const edge = nullptr;
""",
        "an edge that is made late gets the destination that made it, and not those before",
    ),
    Fault(
        "false-is-absent",
        "translator/VelEdge.cpp",
        "if (auto const * const entry = notifier()->toPortEntry(toPort)) {",
        "if (auto const * const entry = notifier()->toPortEntry(toPort); entry && entry->value()) {",
        "a destination whose flag is false is taken for one that has gone",
    ),
    Fault(
        "edge-never-made",
        "translator/VelEdge.cpp",
        "if (!host || !sm_ || !v3Edge_) return;",
        "if (!host || !sm_) return;",
        "a reactor that never had a version-3 edge takes away another's",
    ),
    Fault(
        "rebound-edge-made",
        "translator/VelEdge.cpp",
        """\
    NetworkTopology::DirectedEdgeV2::NotifieeConst::notifierIs(edge);
    isRegisteredNotifieeIs(true);
}
""",
        """\
    NetworkTopology::DirectedEdgeV2::NotifieeConst::notifierIs(edge);
    isRegisteredNotifieeIs(true);
    if (edge) v3Edge_ = createV3Edge();
}
""",
        "binding another edge makes the version-3 edge again",
    ),
    Fault(
        "attributes-after-host",
        "translator/VelHost.cpp",
        """\
    copyAttributes();
    isRegisteredNotifieeIs(true);
    v3HostIs(createV3Host());
""",
        """\
    isRegisteredNotifieeIs(true);
    v3HostIs(createV3Host());
    copyAttributes();
""",
        "a host that appears with its attributes set gets them at once",
    ),
    Fault(
        "rebind-without-peer-link",
        "translator/VelHost.cpp",
        "    if (host) onMlagPeerLink();\n",
        "",
        "a host that takes the place of another keeps the other's peer link",
    ),
    Fault(
        "host-never-made",
        "translator/VelHost.cpp",
        "if (status && notifier() && v3Host_) status->hostDel(name());",
        "if (status && notifier()) status->hostDel(name());",
        "a reactor that never had a version-3 host takes away another's",
    ),
    Fault(
        "null-logical-port-deletes",
        "translator/VelHost.cpp",
        "if (auto const * const entry = notifier()->logicalPortEntry(name)) {",
        "if (auto const * const entry = notifier()->logicalPortEntry(name); entry && entry->value()) {",
        "an entry that leads to nothing is taken for one that has gone",
    ),
    Fault(
        "groups-against-ports",
        "translator/VelHost.cpp",
        "return host->findPortGroup(name) != nullptr;",
        "return host->findPort(name) != nullptr;",
        "the reactors of port groups are held against the ports",
    ),
    Fault(
        "unkeyed-mlags-missed",
        "translator/VelHost.cpp",
        "    if (notifier()) reconcileMlags();\n",
        "",
        "nothing happens when all MLAGs of a host go at once",
    ),
    Fault(
        "rebind-without-link",
        "translator/VelHost.h",
        """\
        onType();
        reactor().writeLink();
""",
        """\
        onType();
""",
        "a port base that takes the place of another keeps the other's link",
    ),
    Fault(
        "nameless-host",
        "translator/VelHost.h",
        """\
        NetworkTopologyV3::Status * const status = host ? translator->output() : nullptr;
        return status ? status->findHost(host->name(), host->nameHash()) : nullptr;
""",
        """\
        NetworkTopologyV3::Status * const status = translator ? translator->output() : nullptr;
        return status ? status->findHost(host ? host->name() : Vel::Name()) : nullptr;
""",
        "the members of a host reactor without a host write to the version-3 host with the empty name",
    ),
    Fault(
        "secondary-name-repeats-name",
        "translator/VelMlag.cpp",
        "host->mlagIs(notifier()->name(), notifier()->secondaryName())",
        "host->mlagIs(notifier()->name(), notifier()->name())",
        "an MLAG port gets its name as secondary name",
    ),
    Fault(
        "group-never-left",
        "translator/VelPort.cpp",
        """\
    v3Port()->portGroupIs(translator ? translator->toPortGroupV3Of(*this) : nullptr);
""",
        """\
    auto * const group = translator ? translator->toPortGroupV3Of(*this) : nullptr;
    if (group) v3Port()->portGroupIs(group);
""",
        "a port that leaves its group stays in it",
    ),
    Fault(
        "retired-group-writes",
        "translator/VelPortGroup.cpp",
        "if (!velMarkedForDeletion()) [[likely]]",
        "if (true)",
        "a retired reactor whose notifications are on mirrors member ports",
    ),
    Fault(
        "localhost-before-hosts",
        "translator/VelStatus.cpp",
        """\
        onHostvelImmediate();
        onLocalhost();
        onEdgevelImmediate();
""",
        """\
        onLocalhost();
        onHostvelImmediate();
        onEdgevelImmediate();
""",
        "binding another input looks for the local host before its hosts are there",
    ),
    Fault(
        "same-name-is-same",
        "translator/internal/Registry.h",
        "} else if (reactor->notifier() == input.get()) {",
        "} else if (reactor->fwkKey() == key) {",
        "a new object of a known name is not followed",
    ),
    Fault(
        "life-not-the-owners",
        "translator/internal/Registry.h",
        "    reactor->velDoZombieReactors(owner->velMarkedForDeletion());\n",
        "",
        "a reactor that a retired owner makes is not retired, and one that it finds is not revived",
    ),
    Fault(
        "key-of-the-unbound",
        "translator/internal/Registry.h",
        "auto const & key = (*reactor)->collectionKey();",
        "auto const & key = (*reactor)->fwkKey();",
        "a reactor that has lost its object is not found under the key that it was entered with",
    ),
    Fault(
        "port-for-a-group",
        "finder/PortBaseFinder.cpp",
        """\
    result_ = hostV3_ && group ? hostV3_->findPortGroup(group->name(), group->nameHash()) : nullptr;
""",
        """\
    result_ = hostV3_ && group ? hostV3_->findPortGroup(group->name(), group->nameHash()) : nullptr;
    if (!result_ && hostV3_ && group) result_ = hostV3_->findPort(group->name());
""",
        "a port group that is not there is taken for the port of its name",
    ),
]
