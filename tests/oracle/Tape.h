#pragma once

#include "tests/oracle/Oracle.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

// Histories of operations, made at random or from bytes, and run against two subjects at once.
//
// A tape is a row of steps: an operation and four small numbers. The numbers choose among what the steps
// before them made (modulo how much there is), so every tape is legal to run, and so is a tape with steps cut
// out. decode() turns it into calls on handles. A step that lacks an operand (a port where there is no host
// yet, a translator operation while there is no translator) is left out.
//
// A handle stands for one counted reference that the tape holds to a model object, until `drop`. Handle 0 is
// null. Operations that create or return give a handle that was not used before, also for an object that has
// one already. Dropped handles are used no more.
namespace oracle {

using Handle = int;

enum class Op : std::uint8_t {
    // version-2 objects on their own
    StatusV2New,
    HostV2New,
    MemberV2New,
    EdgeV2New,
    Drop,
    // StatusV2
    StatusHost,
    StatusHostIs,
    StatusHostDel,
    StatusHostDelAll,
    StatusEdge,
    StatusEdgeIs,
    StatusEdgeDel,
    StatusEdgeDelAll,
    StatusLocalhostIs,
    // HostV2
    HostnameIs,
    HostnameAddedByOwnerIs,
    MlagSystemIdIs,
    MlagDomainIdIs,
    MlagStateIs,
    MlagPeerLinkIs,
    MemberCreate,
    MemberIs,
    MemberDel,
    MemberDelAll,
    LogicalPortIs,
    LogicalPortDel,
    LogicalPortDelAll,
    MlagRawIs,
    MlagRawDel,
    MlagRawDelAll,
    // port bases
    TypeIs,
    AddedByOwnerIs,
    PortGroupIs,
    MemberPortIs,
    MemberPortDel,
    MemberPortDelAll,
    GroupMlagIs,
    SecondaryNameIs,
    LocalPortGroupIs,
    PeerPortGroupIs,
    // DirectedEdgeV2
    ToPortIs,
    ToPortDel,
    ToPortDelAll,
    // version 3, written by another
    StatusV3New,
    OutputHostIs,
    OutputHostDel,
    OutputMemberIs,
    OutputMemberDel,
    // the translator
    Create,
    Destroy,
    V2Is,
    V3Is,
    V2Del,
    V3Del,
    PopulateV3,
    HostIs,
    HostDel,
    HostDelAll,
    EdgeIs,
    EdgeDel,
    EdgeDelAll,
    VelDoZombieReactors,
    HasNotificationActiveIs,
    // one reactor of the translator
    HostMemberIs,
    HostMemberDel,
    HostMemberDelAll,
    HostReactorDoZombie,
    MemberReactorDoZombie,
    EdgeReactorDoZombie,
    HostReactorUnbind,
    MemberReactorUnbind,
    EdgeReactorUnbind,
};

inline constexpr std::size_t kOpCount = static_cast<std::size_t>(Op::EdgeReactorUnbind) + 1;

struct Step {
    Op op = Op::StatusV2New;
    std::array<std::uint8_t, 4> operand = {};

    bool operator==(Step const &) const = default;
};

using Tape = std::vector<Step>;

// One decoded step. Which fields count depends on the operation; apply() shows it.
struct Call {
    Op op = Op::StatusV2New;
    std::size_t step = 0;  // its place on the tape
    Handle self = 0;
    Handle object = 0;
    Handle out = 0;
    MemberKind kind = MemberKind::Port;
    Name name;
    Name second;
    int number = 0;
    bool flag = false;
};

// A reactor: its key as it answers now, and its flags.
struct ReactorState {
    // "root", "VelV2", "VelV3", "host", "edge", or collectionName() of a member's kind.
    std::string kind = {};
    // Of the object followed; of an edge's from-port; empty for a status or without an object.
    Name name = {};
    bool bound = false;
    bool active = false;
    bool zombie = false;
    std::vector<ReactorState> children = {};  // in any order

    bool operator==(ReactorState const &) const = default;
    bool operator<(ReactorState const & other) const;
    void sort();  // into an order that tells of equal states that they are equal
    std::string text(std::string const & indent = "") const;
};

// What can be driven: the oracle, or an adapter over real models and a real translator.
//
// An adapter keeps a table from handle to object. On drop it lets its counted reference go but keeps the
// plain pointer, since a walk may be asked for an object that only the model holds on to. Range errors
// (std::range_error) pass through. Where a handle may be null, the parameter says so; `kind` is that of the
// member that a handle stands for.
class Subject {
public:
    virtual ~Subject() = default;

    virtual void statusV2New(Handle out) = 0;
    virtual void hostV2New(Handle out, Name const & name) = 0;
    virtual void memberV2New(Handle out, MemberKind kind, Name const & name, Name const & secondaryName) = 0;
    virtual void edgeV2New(Handle out, Handle fromPortOrNull) = 0;
    virtual void drop(Handle object) = 0;

    virtual void statusHost(Handle status, Name const & name, Handle out) = 0;  // StatusV2::hostIs(Name)
    virtual void statusHostIs(Handle status, Handle hostOrNull) = 0;  // StatusV2::hostIs(Ptr<HostV2>)
    virtual void statusHostDel(Handle status, Name const & name) = 0;
    virtual void statusHostDelAll(Handle status) = 0;
    virtual void statusEdge(Handle status, Handle fromPort, Handle out) = 0;  // edgeIs(Ptr<PortBaseV2 const>)
    virtual void statusEdgeIs(Handle status, Handle edgeOrNull) = 0;          // edgeIs(Ptr<DirectedEdgeV2>)
    virtual void statusEdgeDel(Handle status, Handle fromPortOrNull) = 0;
    virtual void statusEdgeDelAll(Handle status) = 0;
    virtual void statusLocalhostIs(Handle status, Handle hostOrNull) = 0;

    virtual void hostnameIs(Handle host, std::string const & value) = 0;
    virtual void hostnameAddedByOwnerIs(Handle host, bool value) = 0;
    virtual void mlagSystemIdIs(Handle host, std::uint64_t value) = 0;  // the address read as a number
    virtual void mlagDomainIdIs(Handle host, std::string const & value) = 0;
    virtual void mlagStateIs(Handle host, int value) = 0;
    virtual void mlagPeerLinkIs(Handle host, Handle portBaseOrNull) = 0;
    // HostV2::portIs(Name), portGroupIs(Name), mlagIs(Name, Name)
    virtual void memberCreate(Handle host, MemberKind kind, Name const & name, Name const & secondaryName,
                              Handle out) = 0;
    virtual void memberIs(Handle host, MemberKind kind,
                          Handle memberOrNull) = 0;  // HostV2::portIs(Ptr<PortV2>) and kin
    virtual void memberDel(Handle host, MemberKind kind, Name const & name) = 0;
    virtual void memberDelAll(Handle host, MemberKind kind) = 0;
    virtual void logicalPortIs(Handle host, Name const & name, Handle portBaseOrNull) = 0;
    virtual void logicalPortDel(Handle host, Name const & name) = 0;
    virtual void logicalPortDelAll(Handle host) = 0;
    virtual void mlagRawIs(Handle host, Name const & name, Handle mlagOrNull) = 0;
    virtual void mlagRawDel(Handle host, Name const & name) = 0;
    virtual void mlagRawDelAll(Handle host) = 0;

    virtual void typeIs(Handle portBase, int value) = 0;
    virtual void addedByOwnerIs(Handle portBase, bool value) = 0;
    virtual void portGroupIs(Handle port, Handle groupOrNull) = 0;
    virtual void memberPortIs(Handle group, Name const & name, Handle portOrNull) = 0;
    virtual void memberPortDel(Handle group, Name const & name) = 0;
    virtual void memberPortDelAll(Handle group) = 0;
    virtual void groupMlagIs(Handle group, Handle mlagOrNull) = 0;
    virtual void secondaryNameIs(Handle mlag, Name const & value) = 0;
    virtual void localPortGroupIs(Handle mlag, Handle groupOrNull) = 0;
    virtual void peerPortGroupIs(Handle mlag, Handle groupOrNull) = 0;

    virtual void toPortIs(Handle edge, Handle portBase, bool flag) = 0;
    virtual void toPortDel(Handle edge, Handle portBase) = 0;
    virtual void toPortDelAll(Handle edge) = 0;

    virtual void statusV3New(Handle out) = 0;
    virtual void outputHostIs(Handle status, Name const & name) = 0;
    virtual void outputHostDel(Handle status, Name const & name) = 0;
    // On the version-3 host of that name; without one, nothing. An MLAG port is made with an empty secondary
    // name.
    virtual void outputMemberIs(Handle status, Name const & host, MemberKind kind, Name const & name) = 0;
    virtual void outputMemberDel(Handle status, Name const & host, MemberKind kind, Name const & name) = 0;

    virtual void create(Handle statusV2OrNull, Handle statusV3OrNull) = 0;
    virtual void destroy() = 0;
    virtual void v2Is(Handle statusOrNull) = 0;
    virtual void v3Is(Handle statusOrNull) = 0;
    virtual bool v2Del() = 0;  // whether there was one
    virtual bool v3Del() = 0;  // whether there was one
    virtual void populateV3() = 0;
    virtual void hostIs(Handle hostOrNull) = 0;
    virtual std::string
    hostDel(Name const & name) = 0;  // quoted name of the host that was followed, or "null"
    virtual void hostDelAll() = 0;
    virtual void edgeIs(Handle edgeOrNull) = 0;
    virtual bool edgeDel(Handle fromPortOrNull) = 0;  // whether an edge came back
    virtual void edgeDelAll() = 0;
    virtual void velDoZombieReactors(bool zombie) = 0;
    virtual void hasNotificationActiveIs(bool active) = 0;

    // On one reactor; absent, nothing happens.
    virtual void hostMemberIs(Name const & host, MemberKind kind,
                              Handle memberOrNull) = 0;  // VelHost::portIs and kin
    virtual void hostMemberDel(Name const & host, MemberKind kind, Name const & name) = 0;
    virtual void hostMemberDelAll(Name const & host, MemberKind kind) = 0;
    virtual void hostReactorDoZombie(Name const & host, bool zombie) = 0;
    virtual void memberReactorDoZombie(Name const & host, MemberKind kind, Name const & name,
                                       bool zombie) = 0;
    virtual void edgeReactorDoZombie(Handle fromPort, bool zombie) = 0;
    virtual void hostReactorUnbind(Name const & host) = 0;  // notifierIs(null)
    virtual void memberReactorUnbind(Name const & host, MemberKind kind, Name const & name) = 0;
    virtual void edgeReactorUnbind(Handle fromPort) = 0;

    virtual Document document(Handle statusV3) const = 0;

    // Compared only when both subjects answer.

    // What the latest operation changed in version 3, as Oracle::changes() gives it.
    virtual std::optional<std::vector<std::string>> changes() const { return std::nullopt; }
    // A version-2 object as facts() renders it.
    virtual std::optional<std::string> describe(Handle) const { return std::nullopt; }
    // The root; without a translator, a reactor of kind "none".
    virtual std::optional<ReactorState> reactors() const { return std::nullopt; }

    // In which order this subject walks a collection; an empty result means that it does not say. An
    // OracleSubject can follow. walkPorts() serves Walk::Edge (the from-ports) and Walk::ToPort, and answers
    // with any handle of each port.
    virtual std::vector<Name> walkNames(Walk, Handle) const { return {}; }
    virtual std::vector<Handle> walkPorts(Walk, Handle) const { return {}; }
};

// One line "name=value, name=value". Values: strings quoted(), numbers in decimal, flags 0 or 1, references
// as the quoted name of their target or "null", collections as the sorted list of quoted keys in brackets
// (edge and toPort: number of entries). Attributes, in this order:
//   StatusV2        host, edge, localhost
//   HostV2          name, hostname, hostnameAddedByOwner, mlagSystemId, mlagDomainId, mlagState,
//   mlagPeerLink, port,
//                   portGroup, mlag, logicalPort, mlagRaw
//   PortV2          name, host, type, addedByOwner, portGroup
//   PortGroupV2     name, host, type, addedByOwner, memberPort, mlag
//   MlagV2          name, host, type, addedByOwner, secondaryName, localPortGroup, peerPortGroup
//   DirectedEdgeV2  fromPort, toPort
std::string facts(std::vector<std::pair<std::string, std::string>> const & attributes);
std::string bracketed(std::vector<Name> names);  // sorts

// The oracle as a subject. With a leader it walks every collection in the leader's order; the leader must
// have carried out the operation already.
class OracleSubject : public Subject {
public:
    explicit OracleSubject(Subject const * leader = nullptr, Options options = {});

    Oracle & oracle() { return oracle_; }
    Oracle const & oracle() const { return oracle_; }
    Id idOf(Handle handle) const { return handle == 0 ? kNull : ids_.at(handle); }

    void statusV2New(Handle out) override;
    void hostV2New(Handle out, Name const & name) override;
    void memberV2New(Handle out, MemberKind kind, Name const & name, Name const & secondaryName) override;
    void edgeV2New(Handle out, Handle fromPort) override;
    void drop(Handle object) override;
    void statusHost(Handle status, Name const & name, Handle out) override;
    void statusHostIs(Handle status, Handle host) override;
    void statusHostDel(Handle status, Name const & name) override;
    void statusHostDelAll(Handle status) override;
    void statusEdge(Handle status, Handle fromPort, Handle out) override;
    void statusEdgeIs(Handle status, Handle edge) override;
    void statusEdgeDel(Handle status, Handle fromPort) override;
    void statusEdgeDelAll(Handle status) override;
    void statusLocalhostIs(Handle status, Handle host) override;
    void hostnameIs(Handle host, std::string const & value) override;
    void hostnameAddedByOwnerIs(Handle host, bool value) override;
    void mlagSystemIdIs(Handle host, std::uint64_t value) override;
    void mlagDomainIdIs(Handle host, std::string const & value) override;
    void mlagStateIs(Handle host, int value) override;
    void mlagPeerLinkIs(Handle host, Handle portBase) override;
    void memberCreate(Handle host, MemberKind kind, Name const & name, Name const & secondaryName,
                      Handle out) override;
    void memberIs(Handle host, MemberKind kind, Handle member) override;
    void memberDel(Handle host, MemberKind kind, Name const & name) override;
    void memberDelAll(Handle host, MemberKind kind) override;
    void logicalPortIs(Handle host, Name const & name, Handle portBase) override;
    void logicalPortDel(Handle host, Name const & name) override;
    void logicalPortDelAll(Handle host) override;
    void mlagRawIs(Handle host, Name const & name, Handle mlag) override;
    void mlagRawDel(Handle host, Name const & name) override;
    void mlagRawDelAll(Handle host) override;
    void typeIs(Handle portBase, int value) override;
    void addedByOwnerIs(Handle portBase, bool value) override;
    void portGroupIs(Handle port, Handle group) override;
    void memberPortIs(Handle group, Name const & name, Handle port) override;
    void memberPortDel(Handle group, Name const & name) override;
    void memberPortDelAll(Handle group) override;
    void groupMlagIs(Handle group, Handle mlag) override;
    void secondaryNameIs(Handle mlag, Name const & value) override;
    void localPortGroupIs(Handle mlag, Handle group) override;
    void peerPortGroupIs(Handle mlag, Handle group) override;
    void toPortIs(Handle edge, Handle portBase, bool flag) override;
    void toPortDel(Handle edge, Handle portBase) override;
    void toPortDelAll(Handle edge) override;
    void statusV3New(Handle out) override;
    void outputHostIs(Handle status, Name const & name) override;
    void outputHostDel(Handle status, Name const & name) override;
    void outputMemberIs(Handle status, Name const & host, MemberKind kind, Name const & name) override;
    void outputMemberDel(Handle status, Name const & host, MemberKind kind, Name const & name) override;
    void create(Handle statusV2, Handle statusV3) override;
    void destroy() override;
    void v2Is(Handle status) override;
    void v3Is(Handle status) override;
    bool v2Del() override;
    bool v3Del() override;
    void populateV3() override;
    void hostIs(Handle host) override;
    std::string hostDel(Name const & name) override;
    void hostDelAll() override;
    void edgeIs(Handle edge) override;
    bool edgeDel(Handle fromPort) override;
    void edgeDelAll() override;
    void velDoZombieReactors(bool zombie) override;
    void hasNotificationActiveIs(bool active) override;
    void hostMemberIs(Name const & host, MemberKind kind, Handle member) override;
    void hostMemberDel(Name const & host, MemberKind kind, Name const & name) override;
    void hostMemberDelAll(Name const & host, MemberKind kind) override;
    void hostReactorDoZombie(Name const & host, bool zombie) override;
    void memberReactorDoZombie(Name const & host, MemberKind kind, Name const & name, bool zombie) override;
    void edgeReactorDoZombie(Handle fromPort, bool zombie) override;
    void hostReactorUnbind(Name const & host) override;
    void memberReactorUnbind(Name const & host, MemberKind kind, Name const & name) override;
    void edgeReactorUnbind(Handle fromPort) override;
    Document document(Handle statusV3) const override;
    std::optional<std::vector<std::string>> changes() const override;
    std::optional<std::string> describe(Handle object) const override;
    std::optional<ReactorState> reactors() const override;

protected:
    Id id(Handle handle) const { return idOf(handle); }
    Handle handle(Id id) const { return id == kNull ? 0 : handles_.at(id); }

private:
    void named(Handle out, Id id);

    Subject const * leader_;
    Oracle oracle_;
    std::map<Handle, Id> ids_;      // dropped handles stay, as the object may live on
    std::map<Id, Handle> handles_;  // the latest of each object
};

std::vector<Call> decode(Tape const & tape);

// Carries out one call and tells what came of it: a returned value, "range", "range: TEXT" for the
// translator's own range errors, or nothing.
std::string apply(Call const & call, Subject & subject);

struct Difference {
    std::size_t call = 0;  // index into decode(tape)
    std::string what;
    std::string a;
    std::string b;

    std::string text() const;
};

// Drives both, b first (so that an OracleSubject as a may follow the walks of b), and compares after every
// call; version-2 objects only now and then and at the end.
std::optional<Difference> run(Tape const & tape, Subject & a, Subject & b);

struct GeneratorOptions {
    std::size_t steps = 120;
    bool outputWrites = true;       // another writer changes version 3
    bool reactorOperations = true;  // single reactors are retired, revived and unbound
    bool drops = true;              // handles are let go, so that objects die
};

// The same tape for the same seed and options, on every platform.
Tape generate(std::uint64_t seed, GeneratorOptions const & options = {});

// Five bytes a step; what is left over is ignored.
Tape fromBytes(std::span<std::uint8_t const> bytes);

// A tape that still fails, from which no step can be taken and no operand made smaller.
Tape shrink(Tape tape, std::function<bool(Tape const &)> const & fails);

// The tape as C++ calls, one line each.
std::string render(Tape const & tape);
std::vector<std::string> renderCalls(Tape const & tape);

// Runs `count` generated tapes on fresh pairs of subjects. The result is null, or the first failure as text;
// shrunk, which takes hundreds of runs, or as it was made.
using SubjectPair = std::pair<std::unique_ptr<Subject>, std::unique_ptr<Subject>>;
std::optional<std::string> firstFailure(std::function<SubjectPair()> const & makePair,
                                        std::uint64_t firstSeed, std::size_t count,
                                        GeneratorOptions const & options = {}, bool shrinks = true);

}  // namespace oracle
