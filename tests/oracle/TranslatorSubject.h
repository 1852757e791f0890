// The real models and a real translator as a subject of tapes.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/oracle/Tape.h"
#include "translator/V2Sm.h"

namespace oracle {

class TranslatorSubject final : public Subject {
public:
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
    std::optional<std::string> describe(Handle object) const override;
    std::optional<ReactorState> reactors() const override;
    std::vector<Name> walkNames(Walk walk, Handle owner) const override;
    std::vector<Handle> walkPorts(Walk walk, Handle owner) const override;

private:
    void hold(Handle out, Vel::PtrInterface * object);
    template <class T>
    T * at(Handle handle) const;
    NetworkTopology::PortBaseV2 * portBase(Handle handle) const;
    NetworkTopologyAggregator::V2Sm::VelHost * hostReactor(Name const & host) const;

    std::map<Handle, Vel::Ptr<Vel::PtrInterface>> held_;
    std::map<Handle, Vel::PtrInterface *> objects_;  // Dropped ones stay: the model may still hold them.
    std::map<NetworkTopology::PortBaseV2 const *, Handle> ports_;
    NetworkTopologyAggregator::V2Sm::Ptr translator_;
};

}  // namespace oracle
