#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

// What the translator must do, once more, slowly and on plain data.
//
// Model objects are integers in tables. Which of them are alive is found by marking from what is held:
// handles of the caller, reactors and what reactors are bound to or made. Marking runs after every single
// step, and references that do not own (a port's group, a group's MLAG, a member's host) become null as soon
// as their target is no longer marked.
//
// Usage: an operation that returns an object gives the caller a hold on it, and drop() lets it go.
//
//     Oracle oracle;
//     Id input = oracle.statusV2New();
//     Id output = oracle.statusV3New();
//     oracle.create(input, output);
//     Id host = oracle.statusHost(input, "leaf-1");
//     oracle.memberCreate(host, MemberKind::Port, "eth-1");
//     std::cout << oracle.dump();
//
// Order: collections have no order that a user may rely on, and nearly nothing depends on it. What does: a
// reference to another host is resolved while the hosts are walked (population, binding to another input), so
// it finds only what the walk has made already; and where two entries come out under one version-3 key, the
// later one stays. WalkOrder says in which order a collection is walked; without it, keys are walked in
// ascending order.
//
// Not expressed: reactors of others that change the models from inside a delivery, exceptions from callbacks,
// tracing, the generic interface.
namespace oracle {

using Id = int;  // Never used twice; kNull is the null reference.
using Name = std::string;

inline constexpr Id kNull = 0;

enum class MemberKind { Port, PortGroup, Mlag };

inline constexpr MemberKind kMemberKinds[] = {MemberKind::Port, MemberKind::PortGroup, MemberKind::Mlag};

char const * collectionName(MemberKind kind);

// A collection of the version-2 model, as seen by a walk.
enum class Walk { Host, Edge, Port, PortGroup, Mlag, LogicalPort, MlagRaw, MemberPort, ToPort };

// Both get the keys in ascending order and may only permute them. `ports` serves Edge and ToPort, whose keys
// are port bases (a null from-port is kNull), `names` all others.
struct WalkOrder {
    std::function<void(Walk, Id owner, std::vector<Name> &)> names;
    std::function<void(Walk, Id owner, std::vector<Id> &)> ports;
};

struct Options {
    // A host that is replaced under its name stays alive until the replacement has been delivered, even if
    // nothing but the status held it.
    bool replacedHostOutlivesDelivery = true;
};

// One call of a version-3 mutator, also when it changed nothing.
struct Write {
    std::string target;  // path; begins with "departed:" when the object was no longer in a status
    std::string mutator;
    std::vector<std::string> arguments;
    bool changed = false;  // the model has a new value, so its followers were told

    std::string text() const;
};

// A version-3 model as text. A reference is the path of its target (see memberPath) or "null"; it is "null"
// too when the target is not to be found under that path of this very status.
struct Document {
    struct Port {
        int type = 0;
        std::string portGroup = "null";

        bool operator==(Port const &) const = default;
    };
    struct PortGroup {
        int type = 0;
        std::map<Name, std::string> memberPort;
        std::string mlag = "null";

        bool operator==(PortGroup const &) const = default;
    };
    struct Mlag {
        int type = 0;
        Name secondaryName;
        std::string localPortGroup = "null";

        bool operator==(Mlag const &) const = default;
    };
    struct Host {
        std::string hostname;
        std::uint64_t mlagSystemId = 0;
        std::string mlagDomainId;
        int mlagState = 0;
        std::string mlagPeerLink = "null";
        std::map<Name, Port> port;
        std::map<Name, PortGroup> portGroup;
        std::map<Name, Mlag> mlag;
        std::map<Name, std::string> mlagRaw;
        std::map<Name, std::string> logicalPort;

        bool operator==(Host const &) const = default;
    };

    std::string localhost = "null";
    std::map<Name, Host> host;
    std::map<std::string, std::map<std::string, bool>> edge;  // by the path that the port base has, or had

    bool operator==(Document const &) const = default;
    std::string text() const;
};

std::string hostPath(Name const & host);
std::string memberPath(Name const & host, MemberKind kind, Name const & member);
std::string quoted(std::string const & text);

class Oracle {
public:
    // Version 2. All three kinds of port base share one record; the fields of the other kinds stay at their
    // defaults.
    struct PortBaseV2 {
        MemberKind kind = MemberKind::Port;
        Name name;
        Id host = kNull;  // not owning
        int type = 0;
        bool addedByOwner = false;
        Id portGroup = kNull;           // of a port; not owning
        std::map<Name, Id> memberPort;  // of a group; entries may be null
        Id mlag = kNull;                // of a group; not owning
        Name secondaryName;             // of an MLAG
        Id localPortGroup = kNull;      // of an MLAG
        Id peerPortGroup = kNull;       // of an MLAG
    };
    struct HostV2 {
        Name name;
        Id status = kNull;  // the collection it stands in; not owning
        std::string hostname;
        bool hostnameAddedByOwner = false;
        std::uint64_t mlagSystemId = 0;
        std::string mlagDomainId;
        int mlagState = 0;
        Id mlagPeerLink = kNull;
        std::map<Name, Id> member[3];
        std::map<Name, Id> logicalPort;  // entries may be null
        std::map<Name, Id> mlagRaw;      // entries may be null
    };
    struct EdgeV2 {
        Id fromPort = kNull;
        Id status = kNull;  // the collection it stands in; not owning
        std::map<Id, bool> toPort;
    };
    struct StatusV2 {
        std::map<Name, Id> host;
        std::map<Id, Id> edge;  // by from-port
        Id localhost = kNull;
    };

    explicit Oracle(Options options = {}, WalkOrder order = {});

    void walkOrderIs(WalkOrder order) { order_ = std::move(order); }

    // Version-2 objects on their own.
    Id statusV2New();
    Id hostV2New(Name const & name);
    Id memberV2New(MemberKind kind, Name const & name, Name const & secondaryName = "");
    Id edgeV2New(Id fromPort);

    void hold(Id object);
    void drop(Id object);
    bool alive(Id object) const;

    // StatusV2. Range errors: a null object, or one that stands in another status.
    Id statusHost(Id status, Name const & name);  // create or return
    void statusHostIs(Id status, Id host);
    void statusHostDel(Id status, Name const & name);
    void statusHostDelAll(Id status);
    Id statusEdge(Id status, Id fromPort);  // create or return
    void statusEdgeIs(Id status, Id edge);
    void statusEdgeDel(Id status, Id fromPort);
    void statusEdgeDelAll(Id status);
    void statusLocalhostIs(Id status, Id host);

    // HostV2. Range errors as above.
    void hostnameIs(Id host, std::string const & value);
    void hostnameAddedByOwnerIs(Id host, bool value);
    void mlagSystemIdIs(Id host, std::uint64_t value);
    void mlagDomainIdIs(Id host, std::string const & value);
    void mlagStateIs(Id host, int value);
    void mlagPeerLinkIs(Id host, Id portBase);
    Id memberCreate(Id host, MemberKind kind, Name const & name,
                    Name const & secondaryName = "");  // or return
    void memberIs(Id host, MemberKind kind, Id member);
    void memberDel(Id host, MemberKind kind, Name const & name);
    void memberDelAll(Id host, MemberKind kind);
    void logicalPortIs(Id host, Name const & name, Id portBase);
    void logicalPortDel(Id host, Name const & name);
    void logicalPortDelAll(Id host);
    void mlagRawIs(Id host, Name const & name, Id mlag);
    void mlagRawDel(Id host, Name const & name);
    void mlagRawDelAll(Id host);

    // Port bases.
    void typeIs(Id portBase, int value);
    void addedByOwnerIs(Id portBase, bool value);
    void portGroupIs(Id port, Id group);
    void memberPortIs(Id group, Name const & name, Id port);
    void memberPortDel(Id group, Name const & name);
    void memberPortDelAll(Id group);
    void groupMlagIs(Id group, Id mlag);
    void secondaryNameIs(Id mlag, Name const & value);
    void localPortGroupIs(Id mlag, Id group);
    void peerPortGroupIs(Id mlag, Id group);

    // DirectedEdgeV2.
    void toPortIs(Id edge, Id portBase, bool flag);
    void toPortDel(Id edge, Id portBase);
    void toPortDelAll(Id edge);

    // Version 3, as another writer of the output sees it.
    Id statusV3New();
    void outputHostIs(Id status, Name const & name);
    void outputHostDel(Id status, Name const & name);
    void outputMemberIs(Id status, Name const & host, MemberKind kind,
                        Name const & name);  // host absent: nothing
    void outputMemberDel(Id status, Name const & host, MemberKind kind,
                         Name const & name);  // host absent: nothing
    void outputEdgeIs(Id status, std::string const & key);

    // The translator. At most one at a time; every operation but create() needs it.
    bool exists() const { return root_.has_value(); }
    void create(Id statusV2, Id statusV3);
    void destroy();
    void v2Is(Id statusV2);
    void v3Is(Id statusV3);
    Id v2Del();  // The caller gets no hold on the result here and below: it is an identity to compare.
    Id v3Del();
    void populateV3();
    Id hostIs(Id host);  // the reactor
    Id hostDel(Name const & name);
    void hostDelAll();
    Id edgeIs(Id edge);  // the reactor
    Id edgeDel(Id fromPort);
    void edgeDelAll();
    void velDoZombieReactors(bool zombie);
    void hasNotificationActiveIs(bool active);

    // Operations on one reactor of the translator. An absent reactor: nothing happens.
    Id hostMemberIs(Name const & host, MemberKind kind, Id member);
    void hostMemberDel(Name const & host, MemberKind kind, Name const & name);
    void hostMemberDelAll(Name const & host, MemberKind kind);
    void reactorNotifierIs(Id reactor, Id object);
    void reactorDoZombie(Id reactor, bool zombie);

    // Lookups of the translator: version-3 objects, or null.
    Id toHostV3(Id hostV2) const;
    Id toPortBaseV3(Id portBaseV2) const;  // also serves for one known to be a port, a group or an MLAG
    static int toPortTypeV3(int typeV2);

    // Looking at reactors; null when absent.
    Id velV2() const;
    Id velV3() const;
    Id hostReactor(Name const & name) const;
    Id memberReactor(Name const & host, MemberKind kind, Name const & name) const;
    Id edgeReactor(Id fromPort) const;
    std::set<Name> hostReactors() const;
    std::set<Name> memberReactors(Name const & host, MemberKind kind) const;
    std::set<Id> edgeReactors() const;  // by from-port
    Id reactorNotifier(Id reactor) const;
    Id reactorOutput(Id reactor) const;
    bool reactorActive(Id reactor) const;
    bool reactorZombie(Id reactor) const;
    bool active() const;
    bool zombie() const;

    // Looking at the models.
    enum class KindV2 { None, Status, Host, PortBase, Edge };
    KindV2 kindV2(Id object) const;
    StatusV2 const & statusV2(Id id) const { return statusV2_.at(id); }
    HostV2 const & hostV2(Id id) const { return hostV2_.at(id); }
    PortBaseV2 const & portBaseV2(Id id) const { return portBaseV2_.at(id); }
    EdgeV2 const & edgeV2(Id id) const { return edgeV2_.at(id); }
    Id outputHost(Id status, Name const & name) const;
    Id outputMember(Id status, Name const & host, MemberKind kind, Name const & name) const;
    Id outputEdge(Id status, std::string const & key) const;
    std::string portKey(Id portBaseV3) const { return portBaseV3_.at(portBaseV3).key; }

    // What the latest operation did to version-3 objects, in order. Among members of one collection the order
    // follows the walk.
    std::vector<Write> const & writes() const { return writes_; }
    // The texts of those that changed something, sorted.
    std::vector<std::string> changes() const;

    Document document(Id statusV3) const;
    // Every version-3 status that is alive, in order of creation.
    std::string dump() const;

    // Throws std::logic_error when the tables contradict each other. For tests of the oracle itself.
    void check() const;

private:
    struct PortBaseV3 {
        MemberKind kind = MemberKind::Port;
        Name name;
        std::string key;
        Id host = kNull;  // not owning
        int type = 0;
        Id portGroup = kNull;  // of a port; not owning
        std::map<Name, Id> memberPort;
        Id mlag = kNull;  // of a group; not owning
        Name secondaryName;
        Id localPortGroup = kNull;
    };
    struct HostV3 {
        Name name;
        Id status = kNull;  // not owning
        std::string hostname;
        std::uint64_t mlagSystemId = 0;
        std::string mlagDomainId;
        int mlagState = 0;
        Id mlagPeerLink = kNull;
        std::map<Name, Id> member[3];
        std::map<Name, Id> logicalPort;
        std::map<Name, Id> mlagRaw;
    };
    struct EdgeV3 {
        std::string key;
        Id status = kNull;  // not owning
        std::map<std::string, bool> toPort;
    };
    struct StatusV3 {
        std::map<Name, Id> host;
        std::map<std::string, Id> edge;
        Id localhost = kNull;
    };

    enum class ReactorKind { V2, V3, Host, Member, Edge };
    struct Reactor {
        ReactorKind kind;
        Id owner = kNull;  // kRoot, or the host reactor of a member; null once it was let go
        Id notifier = kNull;
        bool registered = false;
        int serial = 0;  // rises with every registration
        bool active = false;
        bool zombie = false;
        MemberKind memberKind = MemberKind::Port;
        Id output = kNull;
        std::map<Name, Id> member[3];  // of a host reactor
    };
    struct Root {
        Id v2 = kNull;
        Id v3 = kNull;
        std::map<Name, Id> host;
        std::map<Id, Id> edge;
        bool active = false;
        bool zombie = false;
    };
    class Operation;

    // A set of objects. Marking runs after every step of every tape, so it may not cost an allocation an
    // object.
    class Marks {
    public:
        explicit Marks(Id last) : marked_(static_cast<std::size_t>(last) + 1) {}

        bool contains(Id id) const { return marked_[static_cast<std::size_t>(id)]; }
        std::size_t size() const { return size_; }
        // Whether it was not there before.
        bool insert(Id id) {
            if (contains(id)) return false;
            marked_[static_cast<std::size_t>(id)] = true;
            ++size_;
            return true;
        }

    private:
        std::vector<bool> marked_;
        std::size_t size_ = 0;
    };

    static constexpr Id kRoot = -1;

    // Life.
    Id next() { return ++lastId_; }
    void mark(Id object, Marks & marked) const;
    void sweep();

    // Walks.
    std::vector<Name> walk(Walk kind, Id owner, std::map<Name, Id> const & collection) const;
    template <class Value>
    std::vector<Id> walk(Walk kind, Id owner, std::map<Id, Value> const & collection) const;

    // Delivery.
    void deliver(Id object, std::function<void(Id reactor)> const & callback);
    void bind(Id reactor, Id object);
    void enlist(Id reactor);

    // Version-3 mutators.
    void wrote(Id target, std::string const & mutator, std::vector<std::string> arguments, bool changed);
    std::string pathV3(Id object) const;
    std::string reference(Id object) const;
    bool departed(Id object) const;
    template <class Value>
    void hostAttributeIs(Id host, std::string const & mutator, Value HostV3::*field, Value const & value,
                         std::string const & shown);
    Id hostV3Is(Id status, Name const & name);
    void hostV3Del(Id status, Name const & name);
    void localhostV3Is(Id status, Id host);
    Id edgeV3Is(Id status, std::string const & key);
    void edgeV3Del(Id status, std::string const & key);
    Id memberV3Is(Id host, MemberKind kind, Name const & name, Name const & secondaryName);
    void memberV3Del(Id host, MemberKind kind, Name const & name);
    void peerLinkV3Is(Id host, Id portBase);
    void entryV3Is(Id host, std::map<Name, Id> HostV3::*collection, std::string const & mutator, Id portBase);
    void entryV3Del(Id host, std::map<Name, Id> HostV3::*collection, std::string const & mutator,
                    Name const & name);
    void typeV3Is(Id portBase, int type);
    void linkV3Is(Id portBase, std::string const & mutator, Id PortBaseV3::*field, Id target);
    void memberPortV3Is(Id group, Id port);
    void memberPortV3Del(Id group, Name const & name);
    void toPortV3Is(Id edge, std::string const & key, bool flag);
    void toPortV3Del(Id edge, std::string const & key);

    // Shared by the version-2 mutators.
    void hostChanged(Id status, Name const & name);
    void edgeChanged(Id status, Id fromPort);
    void memberChanged(Id host, MemberKind kind, Name const & name);
    void hostCollectionChanged(Id reactor);
    void edgeCollectionChanged(Id reactor);

    // Translator.
    Id inputStatus() const;
    Id outputStatus() const;
    bool hasTranslator(Id reactor) const;
    Reactor & at(Id reactor) { return reactors_.at(reactor); }
    Reactor const & at(Id reactor) const { return reactors_.at(reactor); }
    Id newReactor(ReactorKind kind, Id owner);
    void populate();
    void populateHost(Id host, Id status);
    void writeLocalhost(Id reactor);
    Id newVelV2(Id status);
    Id newVelV3(Id status);
    void velV2NotifierIs(Id reactor, Id status);
    Id hostReactorIs(Id host);
    Id hostReactorDel(Name const & name);
    Id newHostReactor(Id host);
    void hostReactorNotifierIs(Id reactor, Id host);
    void writeHostname(Id reactor);
    void writeMlagSystemId(Id reactor);
    void writeMlagDomainId(Id reactor);
    void writeMlagState(Id reactor);
    void writePeerLink(Id reactor);
    void reconcileMembers(Id reactor, MemberKind kind);
    void logicalPortChanged(Id reactor, Name const & name);
    void mlagRawChanged(Id reactor, Name const & name);
    Id memberReactorIs(Id hostReactor, MemberKind kind, Id member);
    void memberReactorDel(Id hostReactor, MemberKind kind, Name const & name);
    Id newMemberReactor(Id hostReactor, MemberKind kind, Id member);
    void memberReactorNotifierIs(Id reactor, Id member);
    void writeType(Id reactor);
    void writeLink(Id reactor);
    void memberPortChanged(Id reactor, Name const & name);
    Id edgeReactorIs(Id edge);
    Id edgeReactorDel(Id fromPort);
    Id newEdgeReactor(Id edge);
    Id createEdge(Id reactor);
    void edgeReactorNotifierIs(Id reactor, Id edge);
    void toPortChanged(Id reactor, Id toPort);
    void cleanup(Id reactor);
    void zombieIs(Id reactor, bool zombie);
    void activeIs(Id reactor, bool active);
    void letGo(Id reactor);
    void destroyReactor(Id reactor);

    Options options_;
    WalkOrder order_;
    Id lastId_ = kNull;
    int lastSerial_ = 0;
    std::map<Id, StatusV2> statusV2_;
    std::map<Id, HostV2> hostV2_;
    std::map<Id, PortBaseV2> portBaseV2_;
    std::map<Id, EdgeV2> edgeV2_;
    std::map<Id, StatusV3> statusV3_;
    std::map<Id, HostV3> hostV3_;
    std::map<Id, PortBaseV3> portBaseV3_;
    std::map<Id, EdgeV3> edgeV3_;
    std::map<Id, Reactor> reactors_;
    std::optional<Root> root_;
    std::map<Id, int> held_;  // by handles of the caller
    std::vector<Id> inHand_;  // by the operation in progress
    std::vector<Write> writes_;
};

}  // namespace oracle
