#include "tests/oracle/Oracle.h"
#include "tests/oracle/Tape.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace oracle {
namespace {

constexpr auto kPort = MemberKind::Port;
constexpr auto kGroup = MemberKind::PortGroup;
constexpr auto kMlag = MemberKind::Mlag;

using Texts = std::vector<std::string>;

class Model : public testing::Test {
protected:
    ~Model() override { o.check(); }

    Id host(Name const & name) { return o.statusHost(input, name); }
    Id port(Id host, Name const & name) { return o.memberCreate(host, kPort, name); }
    Id group(Id host, Name const & name) { return o.memberCreate(host, kGroup, name); }
    Id mlag(Id host, Name const & name, Name const & secondary = "") {
        return o.memberCreate(host, kMlag, name, secondary);
    }
    void attach() { o.create(input, output); }
    Document out() const { return o.document(output); }

    Texts written() const {
        Texts result;
        for (auto const & write : o.writes()) result.push_back(write.text());
        return result;
    }
    bool wrote(std::string const & text) const {
        auto const texts = written();
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    }
    bool wroteBy(std::string const & mutator) const {
        return std::any_of(o.writes().begin(), o.writes().end(),
                           [&](Write const & write) { return write.mutator == mutator; });
    }

    Oracle o;
    Id input = o.statusV2New();
    Id output = o.statusV3New();
};

std::string rangeText(std::function<void()> const & call) {
    try {
        call();
    } catch (std::range_error const & error) {
        return error.what();
    }
    return "nothing raised";
}

// ---- the input model

using InputModel = Model;

TEST_F(InputModel, EdgesAreFoundByTheIdentityOfTheirFromPort) {
    Id const a = host("a");
    Id const p = port(a, "p");
    o.statusEdge(input, p);
    Id const other = o.memberV2New(kPort, "p");
    o.memberIs(a, kPort, other);
    EXPECT_FALSE(o.statusV2(input).edge.contains(other));
    EXPECT_TRUE(o.statusV2(input).edge.contains(p));
}

TEST_F(InputModel, ARemovedMemberStaysReadableWithoutHost) {
    Id const p = port(host("a"), "p");
    o.memberDel(o.statusV2(input).host.at("a"), kPort, "p");
    EXPECT_EQ(o.portBaseV2(p).host, kNull);
    EXPECT_EQ(o.portBaseV2(p).name, "p");
}

TEST_F(InputModel, AMemberOfARemovedHostKeepsItsHostAsLongAsThatLives) {
    Id const a = host("a");
    Id const p = port(a, "p");
    o.statusHostDel(input, "a");
    EXPECT_EQ(o.portBaseV2(p).host, a);
    o.drop(a);
    EXPECT_EQ(o.portBaseV2(p).host, kNull);
}

TEST_F(InputModel, BackReferencesBecomeNullWhenTheirTargetDies) {
    Id const a = host("a");
    Id const p = port(a, "p");
    Id const g = group(a, "g");
    Id const m = mlag(a, "m");
    o.portGroupIs(p, g);
    o.groupMlagIs(g, m);
    o.localPortGroupIs(m, g);
    o.drop(g);
    o.memberDel(a, kGroup, "g");
    EXPECT_EQ(o.portBaseV2(p).portGroup, g);  // the MLAG owns it
    o.localPortGroupIs(m, kNull);
    EXPECT_EQ(o.portBaseV2(p).portGroup, kNull);
    EXPECT_FALSE(o.alive(g));
}

TEST_F(InputModel, RefusesNullAndWhatStandsElsewhere) {
    Id const other = o.statusV2New();
    Id const a = host("a");
    Id const b = host("b");
    Id const p = port(a, "p");
    Id const e = o.statusEdge(input, p);
    EXPECT_THROW(o.statusHostIs(input, kNull), std::range_error);
    EXPECT_THROW(o.statusEdgeIs(input, kNull), std::range_error);
    EXPECT_THROW(o.memberIs(a, kPort, kNull), std::range_error);
    EXPECT_THROW(o.statusHostIs(other, a), std::range_error);
    EXPECT_THROW(o.statusEdgeIs(other, e), std::range_error);
    EXPECT_THROW(o.memberIs(b, kPort, p), std::range_error);
    o.memberDel(a, kPort, "p");
    o.memberIs(b, kPort, p);
    EXPECT_EQ(o.portBaseV2(p).host, b);
}

TEST_F(InputModel, EqualWritesNotifyNobody) {
    Id const a = host("a");
    Id const p = port(a, "p");
    Id const e = o.statusEdge(input, p);
    attach();
    auto const quiet = [&](std::function<void()> const & call) {
        call();
        return written().empty();
    };
    EXPECT_TRUE(quiet([&] { o.hostnameIs(a, ""); }));
    EXPECT_TRUE(quiet([&] { o.mlagSystemIdIs(a, 0); }));
    EXPECT_TRUE(quiet([&] { o.mlagDomainIdIs(a, ""); }));
    EXPECT_TRUE(quiet([&] { o.mlagStateIs(a, 0); }));
    EXPECT_TRUE(quiet([&] { o.mlagPeerLinkIs(a, kNull); }));
    EXPECT_TRUE(quiet([&] { o.statusHostIs(input, a); }));
    EXPECT_TRUE(quiet([&] { o.memberIs(a, kPort, p); }));
    EXPECT_TRUE(quiet([&] { o.statusEdgeIs(input, e); }));
    EXPECT_TRUE(quiet([&] { o.typeIs(p, 0); }));
    EXPECT_TRUE(quiet([&] { o.portGroupIs(p, kNull); }));
    EXPECT_TRUE(quiet([&] { o.statusLocalhostIs(input, kNull); }));
    EXPECT_TRUE(quiet([&] { o.memberDelAll(a, kMlag); }));
    EXPECT_TRUE(quiet([&] { o.logicalPortDelAll(a); }));
    o.toPortIs(e, p, true);
    EXPECT_TRUE(quiet([&] { o.toPortIs(e, p, true); }));
    EXPECT_TRUE(quiet([&] { o.toPortDel(e, a); }));
    o.logicalPortIs(a, "l", p);
    EXPECT_TRUE(quiet([&] { o.logicalPortIs(a, "l", p); }));
}

// ---- the output model

using OutputModel = Model;

TEST_F(OutputModel, AnEdgeTakenAgainKeepsItsDestinations) {
    Id const a = host("a");
    Id const p = port(a, "p");
    Id const q = port(a, "q");
    o.toPortIs(o.statusEdge(input, p), q, true);
    attach();
    o.outputEdgeIs(output, "/host/a/port/p");
    EXPECT_EQ(written(), Texts{"/ edgeIs(/host/a/port/p)"});
    EXPECT_FALSE(o.writes()[0].changed);
    EXPECT_EQ(out().edge.at("/host/a/port/p"), (std::map<std::string, bool>{{"/host/a/port/q", true}}));
}

TEST_F(OutputModel, RemovingWhatIsAbsentChangesNothing) {
    o.outputHostDel(output, "a");
    EXPECT_TRUE(o.changes().empty());
    o.outputHostIs(output, "a");
    o.outputMemberDel(output, "a", kPort, "p");
    EXPECT_TRUE(o.changes().empty());
}

TEST_F(OutputModel, AnotherFlagReplacesTheFlag) {
    Id const a = host("a");
    Id const e = o.statusEdge(input, port(a, "p"));
    Id const q = port(a, "q");
    attach();
    o.toPortIs(e, q, true);
    o.toPortIs(e, q, false);
    EXPECT_EQ(o.changes(), Texts{"/edge/~1host~1a~1port~1p toPortIs(/host/a/port/q, false)"});
}

TEST_F(OutputModel, APortAndAGroupOfOneNameHaveTwoKeys) {
    attach();
    o.outputHostIs(output, "a");
    o.outputMemberIs(output, "a", kPort, "x");
    o.outputMemberIs(output, "a", kGroup, "x");
    EXPECT_NE(o.portKey(o.outputMember(output, "a", kPort, "x")),
              o.portKey(o.outputMember(output, "a", kGroup, "x")));
}

TEST_F(OutputModel, NamesAreEscapedInPaths) {
    EXPECT_EQ(memberPath("x/y~", kPort, ""), "/host/x~1y~0/port/");
}

// ---- root

using Root = Model;

TEST_F(Root, WithoutInputMakesNoReactor) {
    o.create(kNull, output);
    EXPECT_EQ(o.velV2(), kNull);
    EXPECT_NE(o.velV3(), kNull);
    EXPECT_TRUE(o.hostReactors().empty());
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(Root, WithoutOutputWritesNoLocalhost) {
    o.statusLocalhostIs(input, host("a"));
    o.create(input, kNull);
    EXPECT_EQ(o.velV3(), kNull);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{"a"}));
    EXPECT_EQ(o.reactorOutput(o.hostReactor("a")), kNull);
}

TEST_F(Root, BindingTheBoundInputDoesNothing) {
    Id const a = host("a");
    attach();
    o.hasNotificationActiveIs(false);
    o.hostnameIs(a, "x");
    port(a, "p");
    o.v2Is(input);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_FALSE(o.reactorActive(o.velV2()));
    EXPECT_TRUE(o.memberReactors("a", kPort).empty());
}

TEST_F(Root, UnbindingTheInputLeavesReactorsAndOutput) {
    Id const a = host("a");
    o.statusEdge(input, port(a, "p"));
    attach();
    auto const before = o.dump();
    o.v2Is(kNull);
    EXPECT_EQ(o.velV2(), kNull);
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{"a"}));
    EXPECT_EQ(o.edgeReactors().size(), 1u);
    EXPECT_EQ(o.dump(), before);
}

TEST_F(Root, V2DelReturnsTheInputAndLeavesReactorsAndOutput) {
    host("a");
    attach();
    auto const before = o.dump();
    EXPECT_EQ(o.v2Del(), input);
    EXPECT_EQ(o.v2Del(), kNull);
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{"a"}));
    EXPECT_EQ(o.dump(), before);
}

TEST_F(Root, V3DelReturnsTheOutput) {
    attach();
    EXPECT_EQ(o.v3Del(), output);
    EXPECT_EQ(o.v3Del(), kNull);
}

TEST_F(Root, AnotherInputBringsReactorsInLineWithoutPopulation) {
    host("a");
    host("b");
    attach();
    Id const other = o.statusV2New();
    Id const b = o.statusHost(other, "b");
    Id const c = o.statusHost(other, "c");
    o.hostnameIs(b, "bb");
    o.hostnameIs(c, "cc");
    o.v2Is(other);
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{"b", "c"}));
    EXPECT_FALSE(out().host.contains("a"));
    EXPECT_EQ(out().host.at("b").hostname, "bb");  // pointed at another host
    EXPECT_EQ(out().host.at("c").hostname, "");    // made, and not populated
}

TEST_F(Root, BindingAfterUnbindingWritesLocalhostOnly) {
    Id const a = host("a");
    attach();
    o.v2Del();
    Id const other = o.statusV2New();
    o.statusLocalhostIs(other, a);
    o.statusHost(other, "z");
    o.v2Is(other);
    EXPECT_EQ(written(), Texts{"/ localhostIs(/host/a)"});
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{"a"}));
    o.statusHost(other, "y");
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{"a", "y"}));
}

TEST_F(Root, ANewInputReactorTakesOnTheFlagsOfTheRoot) {
    attach();
    o.hasNotificationActiveIs(false);
    o.v2Del();
    o.v2Is(input);
    EXPECT_FALSE(o.reactorActive(o.velV2()));
    o.hasNotificationActiveIs(true);
    EXPECT_TRUE(o.reactorActive(o.velV2()));
    o.velDoZombieReactors(true);
    o.v2Del();
    o.v2Is(input);
    EXPECT_TRUE(o.reactorZombie(o.velV2()));
    EXPECT_FALSE(o.reactorActive(o.velV2()));
}

TEST_F(Root, TheZombieStateItHasDoesNotReachItsChildren) {
    host("a");
    attach();
    o.reactorDoZombie(o.hostReactor("a"), true);
    o.velDoZombieReactors(false);
    EXPECT_TRUE(o.reactorZombie(o.hostReactor("a")));
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(Root, NotificationsOffLetsChangesPassAndOnDoesNotCatchUp) {
    Id const a = host("a");
    attach();
    o.hasNotificationActiveIs(false);
    o.hostnameIs(a, "x");
    host("b");
    EXPECT_TRUE(o.writes().empty());
    o.hasNotificationActiveIs(true);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_FALSE(out().host.contains("b"));
    o.hostnameIs(a, "y");
    EXPECT_EQ(o.changes(), Texts{"/host/a hostnameIs(\"y\")"});
}

TEST_F(Root, DestructionTakesHostsAndLeavesEdgesBehind) {
    Id const a = host("a");
    Id const p = port(a, "p");
    o.toPortIs(o.statusEdge(input, p), p, true);
    o.statusLocalhostIs(input, a);
    attach();
    o.destroy();
    EXPECT_FALSE(o.exists());
    EXPECT_EQ(out().text(), "localhost: null\n"
                            "edge /host/a/port/p\n"
                            "  toPort /host/a/port/p: true\n");
    EXPECT_FALSE(wroteBy("edgeDel"));
}

TEST_F(Root, AnotherOutputGetsLaterWritesOnly) {
    Id const a = host("a");
    Id const p = port(a, "p");
    attach();
    Id const second = o.statusV3New();
    o.v3Is(second);
    EXPECT_TRUE(o.writes().empty());
    o.typeIs(p, 1);  // the reactor holds the port of the first output
    EXPECT_EQ(out().host.at("a").port.at("p").type, 1);
    EXPECT_EQ(o.document(second).text(), "localhost: null\n");
    host("b");
    EXPECT_TRUE(o.document(second).host.contains("b"));
    port(a, "q");  // there is no host a in the second output
    EXPECT_EQ(o.reactorOutput(o.memberReactor("a", kPort, "q")), kNull);
}

TEST_F(Root, WithoutOutputEveryKindOfChangePasses) {
    Id const a = host("a");
    Id const p = port(a, "p");
    attach();
    o.v3Del();
    Id const g = group(a, "g");
    o.memberPortIs(g, "p", p);
    o.groupMlagIs(g, mlag(a, "m"));
    o.logicalPortIs(a, "p", p);
    o.mlagRawIs(a, "m", kNull);
    o.statusLocalhostIs(input, host("b"));
    Id const e = o.statusEdge(input, p);
    o.toPortIs(e, p, true);
    o.statusEdgeDel(input, p);
    o.memberDel(a, kGroup, "g");
    o.populateV3();
    o.statusHostDelAll(input);
    o.destroy();
    EXPECT_TRUE(out().host.at("a").logicalPort.empty());
    EXPECT_TRUE(out().host.at("a").portGroup.empty());
    EXPECT_TRUE(out().edge.empty());
}

// ---- status reactors

using StatusReactors = Model;

TEST_F(StatusReactors, AnUnknownHostNameDoesNothingVisible) {
    attach();
    o.statusHostDel(input, "nobody");
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(StatusReactors, AHostThatIsGoneFromTheInputLosesItsReactor) {
    host("a");
    attach();
    o.statusHostDel(input, "a");
    EXPECT_TRUE(o.hostReactors().empty());
    EXPECT_EQ(o.changes(), Texts{"/ hostDel(\"a\")"});
}

TEST_F(StatusReactors, ChangesAfterTheRootLetGoDoNothing) {
    attach();
    o.v2Del();
    host("a");
    EXPECT_TRUE(o.writes().empty());
    EXPECT_TRUE(o.hostReactors().empty());
}

TEST_F(StatusReactors, ALocalhostWithoutCounterpartIsWrittenAsNull) {
    o.statusLocalhostIs(input, host("a"));
    attach();
    EXPECT_EQ(out().localhost, "/host/a");
    o.statusLocalhostIs(input, o.hostV2New("elsewhere"));
    EXPECT_EQ(written(), Texts{"/ localhostIs(null)"});
    EXPECT_EQ(out().localhost, "null");
}

TEST_F(StatusReactors, LocalhostIsNotWrittenAgainWhenItsHostComes) {
    Id const a = o.hostV2New("a");
    o.statusLocalhostIs(input, a);
    attach();
    o.statusHostIs(input, a);
    EXPECT_TRUE(out().host.contains("a"));
    EXPECT_EQ(out().localhost, "null");
}

TEST_F(StatusReactors, WithoutOutputLocalhostWritesNothing) {
    o.create(input, kNull);
    o.statusLocalhostIs(input, host("a"));
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(StatusReactors, ChangesOfTheOutputAreIgnored) {
    host("a");
    attach();
    o.outputHostDel(output, "a");
    EXPECT_EQ(written(), Texts{"/ hostDel(\"a\")"});
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{"a"}));
}

TEST_F(StatusReactors, DeletingTheWholeCollectionRetiresEveryReactor) {
    Id const a = host("a");
    host("b");
    Id const p = port(a, "p");
    o.statusEdge(input, p);
    attach();
    o.statusEdgeDelAll(input);
    EXPECT_TRUE(o.edgeReactors().empty());
    EXPECT_TRUE(out().edge.empty());
    o.statusHostDelAll(input);
    EXPECT_TRUE(o.hostReactors().empty());
    EXPECT_TRUE(out().host.empty());
}

TEST_F(StatusReactors, BindingAnotherInputLosesTheEdgeOfAPortOfTheSamePath) {
    Id const p = port(host("a"), "p");
    o.statusEdge(input, p);
    attach();
    Id const other = o.statusV2New();
    Id const p2 = o.memberCreate(o.statusHost(other, "a"), kPort, "p");
    o.statusEdge(other, p2);
    o.v2Is(other);
    // The new reactor took the edge that stood there; retiring the old reactor then removed it under the same
    // key.
    EXPECT_EQ(o.edgeReactors(), (std::set<Id>{p2}));
    EXPECT_TRUE(out().edge.empty());
}

// ---- host registry

using HostRegistry = Model;

TEST_F(HostRegistry, TheSameHostTwiceChangesNothing) {
    Id const a = host("a");
    attach();
    Id const reactor = o.hostReactor("a");
    EXPECT_EQ(o.hostIs(a), reactor);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(HostRegistry, AnotherHostOfTheNameRebindsTheReactor) {
    host("a");
    attach();
    Id const reactor = o.hostReactor("a");
    Id const a2 = o.hostV2New("a");
    o.statusHostIs(input, a2);
    EXPECT_EQ(o.hostReactor("a"), reactor);
    EXPECT_EQ(o.reactorNotifier(reactor), a2);
    EXPECT_FALSE(wroteBy("hostIs"));
    EXPECT_FALSE(wroteBy("hostDel"));
}

TEST_F(HostRegistry, DeletingAnUnknownNameReturnsNull) {
    attach();
    EXPECT_EQ(o.hostDel("a"), kNull);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(HostRegistry, DeletingReturnsTheHostAndTakesTheOutputWithIt) {
    Id const a = host("a");
    attach();
    EXPECT_EQ(o.hostDel("a"), a);
    EXPECT_FALSE(out().host.contains("a"));
}

TEST_F(HostRegistry, DeletingAllCleansUpEachOnce) {
    host("a");
    host("b");
    attach();
    o.hostDelAll();
    EXPECT_EQ(written(), (Texts{"/ hostDel(\"a\")", "/ hostDel(\"b\")"}));
    EXPECT_TRUE(o.hostReactors().empty());
    o.hostDelAll();
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(HostRegistry, NullIsRefusedWithItsText) {
    attach();
    EXPECT_EQ(rangeText([&] { o.hostIs(kNull); }),
              "null _host parameter to mutator for NetworkTopologyAggregator::V2Sm::host not allowed\"");
    EXPECT_TRUE(o.hostReactors().empty());
}

TEST_F(HostRegistry, AReactorMadeWhileTheRootIsAZombieStartsAsOne) {
    attach();
    o.velDoZombieReactors(true);
    o.hostIs(o.hostV2New("a"));
    EXPECT_TRUE(o.reactorZombie(o.hostReactor("a")));
    EXPECT_FALSE(out().host.contains("a"));
    EXPECT_TRUE(wrote("/ hostIs(\"a\")"));
}

TEST_F(HostRegistry, AReactorThatLostItsHostIsFoundUnderItsKeyAndDeletesNoOther) {
    host("a");
    host("");
    attach();
    o.reactorNotifierIs(o.hostReactor("a"), kNull);
    EXPECT_EQ(o.hostDel("a"), kNull);
    EXPECT_EQ(o.hostReactors(), (std::set<Name>{""}));
    EXPECT_TRUE(out().host.contains("a"));
    EXPECT_TRUE(out().host.contains(""));
}

// ---- population

using Population = Model;

TEST_F(Population, AnEmptyInputWritesOnlyLocalhost) {
    attach();
    // once by the status reactor, once by the population
    EXPECT_EQ(written(), (Texts{"/ localhostIs(null)", "/ localhostIs(null)"}));
    o.populateV3();
    EXPECT_EQ(written(), Texts{"/ localhostIs(null)"});
}

TEST_F(Population, ARawMlagWithoutCounterpartStillMakesTheCall) {
    Id const a = host("a");
    o.mlagRawIs(a, "raw", o.memberV2New(kMlag, "m"));
    o.mlagRawIs(a, "void", kNull);
    attach();
    auto const texts = written();
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "/host/a mlagRawIs(null)"), 2);
    EXPECT_TRUE(out().host.at("a").mlagRaw.empty());
}

TEST_F(Population, ARawMlagIsKeyedByTheNameOfTheMlag) {
    Id const a = host("a");
    o.mlagRawIs(a, "raw", mlag(a, "m"));
    attach();
    EXPECT_EQ(out().host.at("a").mlagRaw, (std::map<Name, std::string>{{"m", "/host/a/mlag/m"}}));
}

TEST_F(Population, AnEdgeWithoutDestinationsIsMade) {
    o.statusEdge(input, port(host("a"), "p"));
    attach();
    EXPECT_TRUE(out().edge.at("/host/a/port/p").empty());
}

TEST_F(Population, TheFlagFalseIsWrittenAsFalse) {
    Id const a = host("a");
    o.toPortIs(o.statusEdge(input, port(a, "p")), port(a, "q"), false);
    attach();
    EXPECT_FALSE(out().edge.at("/host/a/port/p").at("/host/a/port/q"));
}

class FilledModel : public Model {
protected:
    FilledModel() {
        o.hostnameIs(a, "leaf");
        o.mlagSystemIdIs(a, 7);
        o.mlagDomainIdIs(a, "rack");
        o.mlagStateIs(a, 3);
        o.mlagPeerLinkIs(a, g);
        o.typeIs(p, 2);
        o.portGroupIs(p, g);
        o.memberPortIs(g, "p", p);
        o.groupMlagIs(g, m);
        o.localPortGroupIs(m, g);
        o.mlagRawIs(a, "m", m);
        o.logicalPortIs(a, "g", g);
        o.toPortIs(e, b1, true);
        o.statusLocalhostIs(input, a);
    }

    Id a = host("a");
    Id b = host("b");
    Id p = port(a, "p");
    Id g = group(a, "g");
    Id m = mlag(a, "m", "m2");
    Id b1 = port(b, "1");
    Id e = o.statusEdge(input, p);
};

using FullPopulation = FilledModel;

TEST_F(FullPopulation, CopiesEverythingButTypes) {
    attach();
    EXPECT_EQ(out().text(), "localhost: /host/a\n"
                            "host \"a\"\n"
                            "  hostname: \"leaf\"\n"
                            "  mlagSystemId: 7\n"
                            "  mlagDomainId: \"rack\"\n"
                            "  mlagState: 3\n"
                            "  mlagPeerLink: /host/a/portGroup/g\n"
                            "  port \"p\": type 0, portGroup /host/a/portGroup/g\n"
                            "  portGroup \"g\": type 0, mlag /host/a/mlag/m\n"
                            "    memberPort \"p\": /host/a/port/p\n"
                            "  mlag \"m\": type 0, secondaryName \"m2\", localPortGroup /host/a/portGroup/g\n"
                            "  mlagRaw \"m\": /host/a/mlag/m\n"
                            "  logicalPort \"g\": /host/a/portGroup/g\n"
                            "host \"b\"\n"
                            "  hostname: \"\"\n"
                            "  mlagSystemId: 0\n"
                            "  mlagDomainId: \"\"\n"
                            "  mlagState: 0\n"
                            "  mlagPeerLink: null\n"
                            "  port \"1\": type 0, portGroup null\n"
                            "edge /host/a/port/p\n"
                            "  toPort /host/b/port/1: true\n");
    EXPECT_FALSE(wroteBy("typeIs"));
}

TEST_F(FullPopulation, ASecondTimeChangesNothing) {
    attach();
    auto const before = o.dump();
    o.populateV3();
    EXPECT_FALSE(o.writes().empty());
    EXPECT_TRUE(o.changes().empty());
    EXPECT_EQ(o.dump(), before);
}

TEST_F(FullPopulation, WritesInTheRequiredOrder) {
    o.statusHostDel(input, "b");
    attach();
    o.populateV3();
    EXPECT_EQ(written(),
              (Texts{"/ hostIs(\"a\")", "/host/a portIs(\"p\")", "/host/a portGroupIs(\"g\")",
                     "/host/a mlagIs(\"m\", \"m2\")", "/host/a mlagRawIs(/host/a/mlag/m)",
                     "/host/a logicalPortIs(/host/a/portGroup/g)",
                     "/host/a/port/p portGroupIs(/host/a/portGroup/g)",
                     "/host/a/portGroup/g memberPortIs(/host/a/port/p)",
                     "/host/a/portGroup/g mlagIs(/host/a/mlag/m)",
                     "/host/a/mlag/m localPortGroupIs(/host/a/portGroup/g)", "/host/a hostnameIs(\"leaf\")",
                     "/host/a mlagSystemIdIs(7)", "/host/a mlagDomainIdIs(\"rack\")",
                     "/host/a mlagStateIs(3)", "/host/a mlagPeerLinkIs(/host/a/portGroup/g)",
                     "/ localhostIs(/host/a)", "/ edgeIs(/host/a/port/p)"}));
}

TEST_F(FullPopulation, LeavesWhatTheInputDoesNotHave) {
    o.outputHostIs(output, "old");
    o.outputMemberIs(output, "old", kPort, "x");
    o.outputEdgeIs(output, "/host/old/port/x");
    attach();
    EXPECT_TRUE(out().host.at("old").port.contains("x"));
    EXPECT_TRUE(out().edge.contains("/host/old/port/x"));
}

TEST(PopulationOrder, ReferencesToAHostNotReachedYetStayNullButForPeerLinks) {
    auto const translated = [](bool descending) {
        WalkOrder order;
        order.names = [&](Walk, Id, std::vector<Name> & names) {
            if (descending) std::reverse(names.begin(), names.end());
        };
        Oracle o({}, order);
        Id const input = o.statusV2New();
        Id const output = o.statusV3New();
        Id const a = o.statusHost(input, "a");
        Id const b = o.statusHost(input, "b");
        Id const bp = o.memberCreate(b, kPort, "p");
        o.logicalPortIs(a, "p", bp);
        o.mlagPeerLinkIs(a, bp);
        o.portGroupIs(o.memberCreate(a, kPort, "q"), o.memberCreate(b, kGroup, "g"));
        o.create(input, output);
        return o.document(output).host.at("a");
    };
    auto const early = translated(false);
    EXPECT_TRUE(early.logicalPort.empty());
    EXPECT_EQ(early.port.at("q").portGroup, "null");
    EXPECT_EQ(early.mlagPeerLink, "/host/b/port/p");
    auto const late = translated(true);
    EXPECT_EQ(late.logicalPort, (std::map<Name, std::string>{{"p", "/host/b/port/p"}}));
    EXPECT_EQ(late.port.at("q").portGroup, "/host/b/portGroup/g");
    EXPECT_EQ(late.mlagPeerLink, "/host/b/port/p");
}

TEST_F(Population, EdgesAndDestinationsThatDoNotResolveAreLeftOut) {
    Id const a = host("a");
    Id const stray = o.memberV2New(kPort, "stray");
    o.statusEdge(input, stray);
    o.statusEdgeIs(input, o.edgeV2New(kNull));
    Id const e = o.statusEdge(input, port(a, "p"));
    o.toPortIs(e, stray, true);
    attach();
    EXPECT_EQ(out().edge, (std::map<std::string, std::map<std::string, bool>>{{"/host/a/port/p", {}}}));
    EXPECT_EQ(o.edgeReactors().size(), 3u);
}

TEST_F(Population, GivenAnOrderWithOtherKeysItRefuses) {
    host("a");
    WalkOrder order;
    order.names = [](Walk, Id, std::vector<Name> & names) { names.push_back("ghost"); };
    o.walkOrderIs(order);
    EXPECT_THROW(attach(), std::logic_error);
}

// ---- host reactor

using HostReactor = FilledModel;

TEST_F(HostReactor, AnUnsetPeerLinkIsWrittenAsNull) {
    attach();
    o.mlagPeerLinkIs(a, kNull);
    EXPECT_EQ(written(), Texts{"/host/a mlagPeerLinkIs(null)"});
}

TEST_F(HostReactor, FollowsItsFiveAttributes) {
    attach();
    o.hostnameIs(b, "spine");
    EXPECT_EQ(written(), Texts{"/host/b hostnameIs(\"spine\")"});
    o.mlagSystemIdIs(b, 9);
    EXPECT_EQ(written(), Texts{"/host/b mlagSystemIdIs(9)"});
    o.mlagDomainIdIs(b, "d");
    EXPECT_EQ(written(), Texts{"/host/b mlagDomainIdIs(\"d\")"});
    o.mlagStateIs(b, 2);
    EXPECT_EQ(written(), Texts{"/host/b mlagStateIs(2)"});
    o.mlagPeerLinkIs(b, p);
    EXPECT_EQ(written(), Texts{"/host/b mlagPeerLinkIs(/host/a/port/p)"});
    o.hostnameAddedByOwnerIs(b, true);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(HostReactor, TheSameHostAgainNeitherWritesNorRegistersAgain) {
    attach();
    o.reactorNotifierIs(o.hostReactor("a"), a);
    EXPECT_TRUE(o.writes().empty());
    o.hostnameIs(a, "once");
    EXPECT_EQ(o.writes().size(), 1u);
}

TEST_F(HostReactor, PointedAtNullItLeavesEverything) {
    attach();
    auto const before = o.dump();
    o.reactorNotifierIs(o.hostReactor("a"), kNull);
    EXPECT_EQ(o.dump(), before);
    EXPECT_EQ(o.memberReactors("a", kPort), (std::set<Name>{"p"}));
    o.hostnameIs(a, "unheard");
    EXPECT_TRUE(o.writes().empty());
    o.typeIs(p, 3);
    EXPECT_EQ(o.changes(), Texts{"/host/a/port/p typeIs(3)"});
}

TEST_F(HostReactor, RevivingItDeletesTheOutputHostAgain) {
    attach();
    Id const reactor = o.hostReactor("a");
    o.reactorDoZombie(reactor, true);
    EXPECT_FALSE(out().host.contains("a"));
    o.outputHostIs(output, "a");
    o.reactorDoZombie(reactor, false);
    EXPECT_EQ(o.changes(), Texts{"/ hostDel(\"a\")"});
    EXPECT_FALSE(out().host.contains("a"));
    EXPECT_TRUE(o.reactorActive(reactor));
}

TEST_F(HostReactor, ARevivedOneWritesToTheHostThatHasDeparted) {
    attach();
    o.velDoZombieReactors(true);
    o.velDoZombieReactors(false);
    o.hostnameIs(a, "ghost");
    EXPECT_EQ(o.changes(), Texts{"departed:/host/a hostnameIs(\"ghost\")"});
    o.typeIs(p, 1);
    EXPECT_EQ(o.changes(), Texts{"departed:/host/a/port/p typeIs(1)"});
    Id const q = port(a, "q");
    EXPECT_EQ(o.reactorOutput(o.memberReactor("a", kPort, "q")), kNull);
    o.typeIs(q, 1);
    EXPECT_TRUE(o.writes().empty());
    o.populateV3();
    EXPECT_TRUE(out().host.at("a").port.contains("q"));
    EXPECT_EQ(out().host.at("a").hostname, "ghost");
    o.typeIs(p, 2);
    EXPECT_EQ(out().host.at("a").port.at("p").type, 0);  // still the old one that is written to
}

TEST_F(HostReactor, AnotherHostRewritesAttributesAndReconcilesMembers) {
    attach();
    Id const a2 = o.hostV2New("a");
    o.hostnameIs(a2, "new");
    o.memberCreate(a2, kGroup, "g");
    o.memberCreate(a2, kPort, "q");
    o.statusHostIs(input, a2);
    for (char const * mutator :
         {"hostnameIs", "mlagSystemIdIs", "mlagDomainIdIs", "mlagStateIs", "mlagPeerLinkIs"}) {
        EXPECT_TRUE(wroteBy(mutator)) << mutator;
    }
    EXPECT_EQ(out().host.at("a").hostname, "new");
    EXPECT_EQ(out().host.at("a").mlagPeerLink, "null");
    EXPECT_EQ(o.memberReactors("a", kPort), (std::set<Name>{"q"}));
    EXPECT_EQ(o.memberReactors("a", kGroup), (std::set<Name>{"g"}));
    EXPECT_TRUE(o.memberReactors("a", kMlag).empty());
    EXPECT_TRUE(wrote("/host/a portDel(\"p\")"));
    EXPECT_TRUE(wrote("/host/a portIs(\"q\")"));
    EXPECT_FALSE(wrote("/host/a portGroupIs(\"g\")"));
}

TEST_F(HostReactor, CreationWritesThePeerLinkAndNothingElse) {
    attach();
    Id const c = o.hostV2New("c");
    o.hostnameIs(c, "cc");
    o.mlagStateIs(c, 2);
    o.mlagPeerLinkIs(c, p);
    o.statusHostIs(input, c);
    EXPECT_EQ(written(), (Texts{"/ hostIs(\"c\")", "/host/c mlagPeerLinkIs(/host/a/port/p)"}));
    EXPECT_EQ(out().host.at("c").hostname, "");
}

TEST_F(HostReactor, AtCreationAPeerLinkToAnOwnMemberIsNull) {
    attach();
    Id const c = o.hostV2New("c");
    o.mlagPeerLinkIs(c, o.memberCreate(c, kGroup, "peer"));
    o.statusHostIs(input, c);
    EXPECT_EQ(out().host.at("c").mlagPeerLink, "null");
    EXPECT_TRUE(out().host.at("c").portGroup.contains("peer"));
}

TEST_F(HostReactor, AHostRemovedAndAddedAgainIsAnotherObject) {
    attach();
    Id const before = o.outputHost(output, "b");
    o.statusHostDel(input, "b");
    o.statusHostIs(input, b);
    EXPECT_NE(o.outputHost(output, "b"), before);
    EXPECT_FALSE(o.alive(before));
    EXPECT_TRUE(out().host.at("b").port.contains("1"));
}

TEST_F(HostReactor, ReferencesToADepartedHostShowAsNullAndKeepItAlive) {
    attach();
    o.mlagPeerLinkIs(b, g);
    Id const groupV3 = o.outputMember(output, "a", kGroup, "g");
    o.statusHostDel(input, "a");
    EXPECT_EQ(out().host.at("b").mlagPeerLink, "null");
    EXPECT_EQ(out().localhost, "null");
    EXPECT_TRUE(o.alive(groupV3));
    o.statusHostIs(input, a);
    EXPECT_EQ(out().host.at("b").mlagPeerLink, "null");  // nobody writes it again
    o.mlagPeerLinkIs(b, kNull);
    EXPECT_FALSE(o.changes().empty());
    o.statusLocalhostIs(input, kNull);
    EXPECT_FALSE(o.alive(groupV3));
}

// ---- member registries

using MemberRegistries = FilledModel;

TEST_F(MemberRegistries, TheSamePortKeepsItsReactor) {
    attach();
    Id const reactor = o.memberReactor("a", kPort, "p");
    EXPECT_EQ(o.hostMemberIs("a", kPort, p), reactor);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(MemberRegistries, DeletingAPortReactorRemovesTheOutputPort) {
    attach();
    o.hostMemberDel("a", kPort, "p");
    EXPECT_EQ(o.changes(), Texts{"/host/a portDel(\"p\")"});
    EXPECT_TRUE(o.memberReactors("a", kPort).empty());
    o.hostMemberDel("a", kPort, "p");
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(MemberRegistries, OnlyTheWholeCollectionFindsAPortThatWentUnnoticed) {
    Id const q = port(a, "q");
    attach();
    o.hasNotificationActiveIs(false);
    o.memberDel(a, kPort, "p");
    o.hasNotificationActiveIs(true);
    o.hostMemberIs("a", kPort, q);
    EXPECT_TRUE(o.memberReactors("a", kPort).contains("p"));
    port(a, "r");
    EXPECT_TRUE(o.memberReactors("a", kPort).contains("p"));
    o.memberDelAll(a, kPort);
    EXPECT_TRUE(o.memberReactors("a", kPort).empty());
    EXPECT_TRUE(out().host.at("a").port.empty());
}

TEST_F(MemberRegistries, DeletingAllEmptiesOneRegistry) {
    attach();
    o.hostMemberDelAll("a", kGroup);
    EXPECT_TRUE(out().host.at("a").portGroup.empty());
    EXPECT_TRUE(out().host.at("a").port.contains("p"));
    EXPECT_EQ(out().host.at("a").port.at("p").portGroup, "null");
    EXPECT_EQ(out().host.at("a").mlag.at("m").localPortGroup, "null");
}

TEST_F(MemberRegistries, LogicalPortsAndRawMlagsAreDeletedByName) {
    attach();
    o.logicalPortDel(a, "g");
    EXPECT_EQ(o.changes(), Texts{"/host/a logicalPortDel(\"g\")"});
    o.mlagRawDel(a, "m");
    EXPECT_EQ(o.changes(), Texts{"/host/a mlagRawDel(\"m\")"});
}

TEST_F(MemberRegistries, AnEntryUnderAnotherKeyThanItsTargetsNameIsNotFoundForDeletion) {
    attach();
    o.logicalPortIs(a, "alias", p);
    EXPECT_EQ(out().host.at("a").logicalPort.at("p"), "/host/a/port/p");
    o.logicalPortDel(a, "alias");
    EXPECT_EQ(written(), Texts{"/host/a logicalPortDel(\"alias\")"});
    EXPECT_TRUE(o.changes().empty());
    EXPECT_TRUE(out().host.at("a").logicalPort.contains("p"));
}

TEST_F(MemberRegistries, AnEntryThatDoesNotResolveLeavesTheOldOne) {
    attach();
    o.logicalPortIs(a, "g", o.memberV2New(kGroup, "g"));
    EXPECT_EQ(written(), Texts{"/host/a logicalPortIs(null)"});
    EXPECT_EQ(out().host.at("a").logicalPort.at("g"), "/host/a/portGroup/g");
    o.mlagRawIs(a, "m", kNull);
    EXPECT_EQ(written(), Texts{"/host/a mlagRawIs(null)"});
    EXPECT_TRUE(out().host.at("a").mlagRaw.contains("m"));
}

TEST_F(MemberRegistries, DeletingAllEntriesOfAValueCollectionActsKeyByKey) {
    o.logicalPortIs(a, "p", p);
    attach();
    o.logicalPortDelAll(a);
    EXPECT_EQ(o.changes(), (Texts{"/host/a logicalPortDel(\"g\")", "/host/a logicalPortDel(\"p\")"}));
    o.mlagRawDelAll(a);
    EXPECT_EQ(o.changes(), Texts{"/host/a mlagRawDel(\"m\")"});
}

TEST_F(MemberRegistries, ALogicalPortOfAHostThatComesLaterWaitsForItsNotification) {
    attach();
    Id const c = o.hostV2New("c");
    Id const cp = o.memberCreate(c, kPort, "p");
    o.logicalPortIs(c, "p", cp);
    o.statusHostIs(input, c);
    EXPECT_TRUE(out().host.at("c").logicalPort.empty());
    Id const c2 = o.hostV2New("c");
    o.logicalPortIs(c2, "p", o.memberCreate(c2, kPort, "p"));
    o.statusHostIs(input, c2);
    EXPECT_TRUE(out().host.at("c").logicalPort.empty());
    o.logicalPortIs(c2, "again",
                    o.statusV2(input).host.at("c") == c2 ? o.hostV2(c2).member[0].at("p") : kNull);
    EXPECT_EQ(out().host.at("c").logicalPort, (std::map<Name, std::string>{{"p", "/host/c/port/p"}}));
}

TEST_F(MemberRegistries, NullIsRefusedWithItsTexts) {
    attach();
    EXPECT_EQ(
        rangeText([&] { o.hostMemberIs("a", kPort, kNull); }),
        "null _port parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::port not allowed\"");
    EXPECT_EQ(
        rangeText([&] { o.hostMemberIs("a", kGroup, kNull); }),
        "null _portGroup parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::portGroup not "
        "allowed\"");
    EXPECT_EQ(
        rangeText([&] { o.hostMemberIs("a", kMlag, kNull); }),
        "null _mlag parameter to mutator for NetworkTopologyAggregator::V2Sm::VelHost::mlag not allowed\"");
}

// ---- port reactor

using PortReactor = FilledModel;

TEST_F(PortReactor, ANewPortBeginsWithDefaults) {
    attach();
    Id const q = o.memberV2New(kPort, "q");
    o.typeIs(q, 2);
    o.portGroupIs(q, g);
    o.memberIs(a, kPort, q);
    EXPECT_EQ(written(), Texts{"/host/a portIs(\"q\")"});
    EXPECT_EQ(out().host.at("a").port.at("q").type, 0);
    EXPECT_EQ(out().host.at("a").port.at("q").portGroup, "null");
    o.typeIs(q, 3);
    EXPECT_EQ(o.changes(), Texts{"/host/a/port/q typeIs(3)"});
    o.portGroupIs(q, kNull);
    o.portGroupIs(q, g);
    EXPECT_EQ(o.changes(), Texts{"/host/a/port/q portGroupIs(/host/a/portGroup/g)"});
}

TEST_F(PortReactor, AnotherPortOfTheNameIsCopiedOntoTheSameOutputPort) {
    attach();
    Id const before = o.outputMember(output, "a", kPort, "p");
    Id const p2 = o.memberV2New(kPort, "p");
    o.typeIs(p2, 1);
    o.memberIs(a, kPort, p2);
    EXPECT_EQ(written(), (Texts{"/host/a/port/p typeIs(1)", "/host/a/port/p portGroupIs(null)"}));
    EXPECT_EQ(o.outputMember(output, "a", kPort, "p"), before);
}

TEST_F(PortReactor, TheSamePortAgainWritesNothing) {
    attach();
    o.reactorNotifierIs(o.memberReactor("a", kPort, "p"), p);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(PortReactor, AGroupWithoutCounterpartIsWrittenAsNull) {
    attach();
    o.portGroupIs(p, o.memberV2New(kGroup, "loose"));
    EXPECT_EQ(written(), Texts{"/host/a/port/p portGroupIs(null)"});
}

TEST_F(PortReactor, RetiredWithoutOutputHostItDeletesNothing) {
    attach();
    o.outputHostDel(output, "a");
    o.memberDel(a, kPort, "p");
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(PortReactor, DestroyedAsAZombieItDoesNotCleanUpAgain) {
    attach();
    o.reactorDoZombie(o.memberReactor("a", kPort, "p"), true);
    EXPECT_EQ(o.changes(), Texts{"/host/a portDel(\"p\")"});
    o.outputMemberIs(output, "a", kPort, "p");
    o.memberDel(a, kPort, "p");
    EXPECT_TRUE(o.writes().empty());
    EXPECT_TRUE(out().host.at("a").port.contains("p"));
}

TEST_F(PortReactor, OtherTypesThanTheDefinedOnesAreWrittenAsZero) {
    attach();
    o.typeIs(p, 3);
    o.typeIs(p, 4);
    EXPECT_EQ(written(), Texts{"/host/a/port/p typeIs(0)"});
    o.addedByOwnerIs(p, true);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(PortReactor, ADeletedGroupLeavesANullPointerInThePort) {
    attach();
    o.memberDel(a, kGroup, "g");
    EXPECT_EQ(o.changes(), Texts{"/host/a portGroupDel(\"g\")"});
    EXPECT_EQ(out().host.at("a").port.at("p").portGroup, "null");
    o.portGroupIs(p, kNull);
    // The MLAG and the peer link still hold the departed group, so there is a pointer to clear.
    EXPECT_EQ(o.changes(), Texts{"/host/a/port/p portGroupIs(null)"});
}

// ---- port group reactor

using PortGroupReactor = FilledModel;

TEST_F(PortGroupReactor, AMemberWithoutCounterpartStillMakesTheCall) {
    attach();
    o.memberPortIs(g, "loose", o.memberV2New(kPort, "loose"));
    EXPECT_EQ(written(), Texts{"/host/a/portGroup/g memberPortIs(null)"});
    EXPECT_TRUE(o.changes().empty());
    o.memberPortIs(g, "none", kNull);
    EXPECT_EQ(written(), Texts{"/host/a/portGroup/g memberPortIs(null)"});
}

TEST_F(PortGroupReactor, RemovingAnEntryDeletesUnderItsKeyWhetherOrNotItWasThere) {
    attach();
    o.memberPortDel(g, "p");
    EXPECT_EQ(o.changes(), Texts{"/host/a/portGroup/g memberPortDel(\"p\")"});
    o.memberPortIs(g, "none", kNull);
    o.memberPortDel(g, "none");
    EXPECT_EQ(written(), Texts{"/host/a/portGroup/g memberPortDel(\"none\")"});
    EXPECT_TRUE(o.changes().empty());
}

TEST_F(PortGroupReactor, AsAZombieItIgnoresMembers) {
    attach();
    Id const reactor = o.memberReactor("a", kGroup, "g");
    o.velDoZombieReactors(true);
    o.hasNotificationActiveIs(true);
    ASSERT_TRUE(o.reactorZombie(reactor));
    ASSERT_TRUE(o.reactorActive(reactor));
    o.memberPortDel(g, "p");
    EXPECT_TRUE(o.writes().empty());
    o.typeIs(g, 2);  // attributes are followed all the same
    EXPECT_EQ(o.changes(), Texts{"departed:/host/a/portGroup/g typeIs(2)"});
}

TEST_F(PortGroupReactor, CreationCopiesNoMembers) {
    attach();
    Id const g2 = o.memberV2New(kGroup, "g2");
    o.memberPortIs(g2, "p", p);
    o.memberIs(a, kGroup, g2);
    EXPECT_EQ(written(), Texts{"/host/a portGroupIs(\"g2\")"});
    EXPECT_TRUE(out().host.at("a").portGroup.at("g2").memberPort.empty());
}

TEST_F(PortGroupReactor, AnotherGroupOfTheNameKeepsTheOldMembers) {
    attach();
    Id const g2 = o.memberV2New(kGroup, "g");
    o.typeIs(g2, 2);
    o.memberIs(a, kGroup, g2);
    EXPECT_EQ(written(), (Texts{"/host/a/portGroup/g typeIs(2)", "/host/a/portGroup/g mlagIs(null)"}));
    EXPECT_TRUE(out().host.at("a").portGroup.at("g").memberPort.contains("p"));
}

TEST_F(PortGroupReactor, AnMlagWithoutCounterpartIsWrittenAsNull) {
    attach();
    o.groupMlagIs(g, o.memberV2New(kMlag, "loose"));
    EXPECT_EQ(written(), Texts{"/host/a/portGroup/g mlagIs(null)"});
}

TEST_F(PortGroupReactor, AMemberThatLeavesItsHostStaysAsAnEntryWithoutTarget) {
    attach();
    o.memberDel(a, kPort, "p");
    EXPECT_EQ(out().host.at("a").portGroup.at("g").memberPort, (std::map<Name, std::string>{{"p", "null"}}));
}

TEST_F(PortGroupReactor, DeletingAllMembersActsKeyByKey) {
    attach();
    o.memberPortDelAll(g);
    EXPECT_EQ(o.changes(), Texts{"/host/a/portGroup/g memberPortDel(\"p\")"});
}

// ---- MLAG reactor

using MlagReactor = FilledModel;

TEST_F(MlagReactor, ThePeerGroupIsNotTranslated) {
    attach();
    o.peerPortGroupIs(m, g);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(MlagReactor, ALocalGroupWithoutCounterpartIsWrittenAsNull) {
    attach();
    o.localPortGroupIs(m, o.memberV2New(kGroup, "loose"));
    EXPECT_EQ(written(), Texts{"/host/a/mlag/m localPortGroupIs(null)"});
}

TEST_F(MlagReactor, OneNameOnTwoHostsMakesTwoMlagPorts) {
    attach();
    mlag(b, "m", "other");
    EXPECT_EQ(out().host.at("a").mlag.at("m").secondaryName, "m2");
    EXPECT_EQ(out().host.at("b").mlag.at("m").secondaryName, "other");
}

TEST_F(MlagReactor, IsMadeWithItsOwnNameFirst) {
    attach();
    mlag(b, "first", "second");
    EXPECT_EQ(written(), Texts{"/host/b mlagIs(\"first\", \"second\")"});
}

TEST_F(MlagReactor, ASecondaryNameChangedLaterCountsForTheNextCreationOnly) {
    attach();
    o.secondaryNameIs(m, "changed");
    EXPECT_TRUE(o.writes().empty());
    o.populateV3();
    EXPECT_EQ(out().host.at("a").mlag.at("m").secondaryName, "m2");
    o.memberDel(a, kMlag, "m");
    o.memberIs(a, kMlag, m);
    EXPECT_EQ(out().host.at("a").mlag.at("m").secondaryName, "changed");
}

// ---- lookups

using Lookups = FilledModel;

TEST_F(Lookups, APortThatTheOutputHostLacksIsNull) {
    attach();
    o.outputMemberDel(output, "a", kPort, "p");
    EXPECT_EQ(o.toPortBaseV3(p), kNull);
}

TEST_F(Lookups, KindsAreSeparateNameSpaces) {
    Id const portG = port(a, "g");
    attach();
    EXPECT_EQ(o.toPortBaseV3(portG), o.outputMember(output, "a", kPort, "g"));
    EXPECT_EQ(o.toPortBaseV3(g), o.outputMember(output, "a", kGroup, "g"));
    EXPECT_NE(o.toPortBaseV3(g), o.toPortBaseV3(portG));
}

TEST_F(Lookups, WithoutOwningHostTheResultIsNull) {
    attach();
    EXPECT_EQ(o.toPortBaseV3(o.memberV2New(kPort, "p")), kNull);
    EXPECT_EQ(o.toPortBaseV3(kNull), kNull);
    EXPECT_EQ(o.toHostV3(kNull), kNull);
}

TEST_F(Lookups, APortOfAHostOutsideTheStatusIsFoundByItsNames) {
    attach();
    Id const twin = o.hostV2New("a");
    EXPECT_EQ(o.toPortBaseV3(o.memberCreate(twin, kPort, "p")), o.outputMember(output, "a", kPort, "p"));
}

TEST_F(Lookups, TypesMapToThemselvesOrZero) {
    EXPECT_EQ(Oracle::toPortTypeV3(-1), 0);
    EXPECT_EQ(Oracle::toPortTypeV3(0), 0);
    EXPECT_EQ(Oracle::toPortTypeV3(1), 1);
    EXPECT_EQ(Oracle::toPortTypeV3(2), 2);
    EXPECT_EQ(Oracle::toPortTypeV3(3), 3);
    EXPECT_EQ(Oracle::toPortTypeV3(4), 0);
}

TEST_F(Lookups, WithoutOutputTheResultIsNull) {
    attach();
    o.v3Del();
    EXPECT_EQ(o.toHostV3(a), kNull);
    EXPECT_EQ(o.toPortBaseV3(p), kNull);
}

// ---- edges

using Edges = FilledModel;

TEST_F(Edges, TheSameEdgeTwiceMakesOneReactor) {
    attach();
    Id const reactor = o.edgeReactor(p);
    EXPECT_EQ(o.edgeIs(e), reactor);
    EXPECT_TRUE(o.writes().empty());
}

TEST_F(Edges, AnotherEdgeOfThePortKeepsReactorAndOutputEdge) {
    attach();
    Id const reactor = o.edgeReactor(p);
    Id const edgeV3 = o.reactorOutput(reactor);
    Id const e2 = o.edgeV2New(p);
    o.toPortIs(e2, g, true);
    o.statusEdgeIs(input, e2);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_EQ(o.edgeReactor(p), reactor);
    EXPECT_EQ(o.reactorNotifier(reactor), e2);
    EXPECT_EQ(o.reactorOutput(reactor), edgeV3);
    EXPECT_EQ(out().edge.at("/host/a/port/p"), (std::map<std::string, bool>{{"/host/b/port/1", true}}));
}

TEST_F(Edges, ADestinationThatDoesNotResolveIsIgnored) {
    attach();
    Id const loose = o.memberV2New(kPort, "loose");
    o.toPortIs(e, loose, true);
    EXPECT_TRUE(o.writes().empty());
    o.memberDel(b, kPort, "1");
    o.toPortDel(e, b1);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_TRUE(out().edge.at("/host/a/port/p").contains("/host/b/port/1"));
}

TEST_F(Edges, ADestinationWithFlagFalseIsKept) {
    attach();
    o.toPortIs(e, b1, false);
    EXPECT_EQ(o.changes(), Texts{"/edge/~1host~1a~1port~1p toPortIs(/host/b/port/1, false)"});
    o.toPortDel(e, b1);
    EXPECT_EQ(o.changes(), Texts{"/edge/~1host~1a~1port~1p toPortDel(/host/b/port/1)"});
}

TEST_F(Edges, RetiredAfterItsPortLeftItStaysInTheOutput) {
    attach();
    o.memberDel(a, kPort, "p");
    o.statusEdgeDel(input, p);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_TRUE(o.edgeReactors().empty());
    EXPECT_TRUE(out().edge.contains("/host/a/port/p"));
}

TEST_F(Edges, RetiredAfterItsOutputHostIsGoneItStaysInTheOutput) {
    attach();
    o.statusHostDel(input, "a");
    o.statusEdgeDel(input, p);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_TRUE(out().edge.contains("/host/a/port/p"));
}

TEST_F(Edges, DeletingAnUnknownKeyReturnsNull) {
    attach();
    EXPECT_EQ(o.edgeDel(b1), kNull);
    EXPECT_EQ(o.edgeDel(kNull), kNull);
    EXPECT_EQ(o.edgeDel(p), e);
    EXPECT_TRUE(out().edge.empty());
}

TEST_F(Edges, NullIsRefusedWithItsText) {
    attach();
    EXPECT_EQ(rangeText([&] { o.edgeIs(kNull); }),
              "null _edge parameter to mutator for NetworkTopologyAggregator::V2Sm::edge not allowed\"");
}

TEST_F(Edges, AnEdgeMadeWhileTheRootIsAZombieIsMadeAndRemoved) {
    attach();
    o.velDoZombieReactors(true);
    o.outputHostIs(output, "b");
    o.outputMemberIs(output, "b", kPort, "1");
    o.edgeIs(o.edgeV2New(b1));
    EXPECT_EQ(written(), (Texts{"/ edgeIs(/host/b/port/1)", "/ edgeDel(/host/b/port/1)"}));
    EXPECT_TRUE(o.reactorZombie(o.edgeReactor(b1)));
}

TEST_F(Edges, DeletingAllLeavesWhatCleanupCannotFind) {
    o.statusEdge(input, b1);
    attach();
    o.memberDel(b, kPort, "1");
    o.edgeDelAll();
    EXPECT_TRUE(o.edgeReactors().empty());
    EXPECT_EQ(out().edge.size(), 1u);
    EXPECT_TRUE(out().edge.contains("/host/b/port/1"));
}

TEST_F(Edges, AReactorThatLostItsEdgeHoldsTheFromPortThatIsItsKey) {
    Id const port = o.memberCreate(b, kPort, "x");
    Id const edge = o.statusEdge(input, port);
    attach();
    o.reactorNotifierIs(o.edgeReactor(port), kNull);
    o.v2Del();
    o.statusEdgeDel(input, port);
    o.memberDel(b, kPort, "x");
    o.drop(edge);
    o.drop(port);
    EXPECT_FALSE(o.alive(edge));
    EXPECT_TRUE(o.alive(port));
    o.edgeDelAll();
    EXPECT_FALSE(o.alive(port));
}

TEST_F(Edges, DeletingAllDestinationsActsKeyByKey) {
    o.toPortIs(e, g, false);
    attach();
    o.toPortDelAll(e);
    EXPECT_EQ(o.changes(), (Texts{"/edge/~1host~1a~1port~1p toPortDel(/host/a/portGroup/g)",
                                  "/edge/~1host~1a~1port~1p toPortDel(/host/b/port/1)"}));
}

TEST_F(Edges, NewEdgesDoNotGetTheirDestinations) {
    attach();
    Id const e2 = o.edgeV2New(b1);
    o.toPortIs(e2, p, true);
    o.statusEdgeIs(input, e2);
    EXPECT_EQ(written(), Texts{"/ edgeIs(/host/b/port/1)"});
}

TEST_F(Edges, AFromPortThatResolvesLaterIsTriedAgainWithTheNextDestination) {
    attach();
    Id const late = o.memberV2New(kPort, "late");
    Id const e2 = o.statusEdge(input, late);
    o.toPortIs(e2, p, true);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_EQ(o.reactorOutput(o.edgeReactor(late)), kNull);
    o.memberIs(b, kPort, late);
    o.toPortIs(e2, o.memberV2New(kPort, "unresolved"), true);
    EXPECT_EQ(o.changes(), (Texts{"/ edgeIs(/host/b/port/late)",
                                  "/edge/~1host~1b~1port~1late toPortIs(/host/a/port/p, true)"}));
    o.toPortIs(e2, g, false);
    EXPECT_EQ(o.writes().size(), 1u);
}

TEST_F(Edges, RetiredWithoutOutputEdgeItRemovesNothing) {
    Id const late = o.memberV2New(kPort, "late");
    o.statusEdge(input, late);
    attach();
    o.memberIs(b, kPort, late);
    o.outputEdgeIs(output, "/host/b/port/late");
    o.statusEdgeDel(input, late);
    EXPECT_TRUE(o.writes().empty());
    EXPECT_TRUE(out().edge.contains("/host/b/port/late"));
}

TEST_F(Edges, APortOfTheSameNameDoesNotInheritTheEdge) {
    attach();
    o.statusHostDel(input, "a");
    Id const a2 = host("a");
    Id const p2 = port(a2, "p");
    // The old port still has its old host, of the same name: destinations are found through the new one.
    o.toPortIs(e, p2, true);
    EXPECT_EQ(o.changes(), Texts{"/edge/~1host~1a~1port~1p toPortIs(/host/a/port/p, true)"});
    o.statusEdge(input, p2);
    EXPECT_EQ(o.edgeReactors(), (std::set<Id>{p, p2}));
    EXPECT_EQ(out().edge.size(), 1u);
    o.statusEdgeDel(input, p);
    EXPECT_TRUE(out().edge.empty());  // of both
}

TEST_F(Edges, RevivedTheyHaveNoOutputEdgeInTheStatus) {
    attach();
    Id const reactor = o.edgeReactor(p);
    o.reactorDoZombie(reactor, true);
    EXPECT_EQ(o.changes(), Texts{"/ edgeDel(/host/a/port/p)"});
    o.toPortIs(e, g, true);
    EXPECT_TRUE(o.writes().empty());
    o.outputEdgeIs(output, "/host/a/port/p");
    o.reactorDoZombie(reactor, false);
    EXPECT_EQ(o.changes(), Texts{"/ edgeDel(/host/a/port/p)"});
    o.toPortDel(e, b1);
    EXPECT_EQ(o.changes(), Texts{"departed:/edge/~1host~1a~1port~1p toPortDel(/host/b/port/1)"});
}

// ---- replaced hosts and what keeps them

TEST(ReplacedHost, LivesOnDuringTheDeliveryIfSoChosen) {
    auto const peerLink = [](bool outlives) {
        Oracle o({.replacedHostOutlivesDelivery = outlives});
        Id const input = o.statusV2New();
        Id const output = o.statusV3New();
        Id const old = o.statusHost(input, "a");
        Id const p = o.memberCreate(old, kPort, "p");
        o.create(input, output);
        Id const a = o.hostV2New("a");
        o.memberCreate(a, kPort, "p");
        o.mlagPeerLinkIs(a, p);
        o.drop(old);
        o.statusHostIs(input, a);
        return o.document(output).host.at("a").mlagPeerLink;
    };
    EXPECT_EQ(peerLink(true), "/host/a/port/p");
    EXPECT_EQ(peerLink(false), "null");
}

// ---- tapes

constexpr std::size_t kTapes = 400;

class OppositeOrder : public OracleSubject {
public:
    OppositeOrder() {
        WalkOrder order;
        order.names = [](Walk, Id, std::vector<Name> & names) { std::reverse(names.begin(), names.end()); };
        order.ports = [](Walk, Id, std::vector<Id> & ports) { std::reverse(ports.begin(), ports.end()); };
        oracle().walkOrderIs(order);
    }

    std::vector<Name> walkNames(Walk walk, Handle owner) const override {
        auto const & self = oracle();
        std::vector<Name> names;
        auto const all = [&](std::map<Name, Id> const & table) {
            for (auto const & [name, object] : table) names.insert(names.begin(), name);
        };
        switch (walk) {
        case Walk::Host: all(self.statusV2(id(owner)).host); break;
        case Walk::Port: all(self.hostV2(id(owner)).member[0]); break;
        case Walk::PortGroup: all(self.hostV2(id(owner)).member[1]); break;
        case Walk::Mlag: all(self.hostV2(id(owner)).member[2]); break;
        case Walk::LogicalPort: all(self.hostV2(id(owner)).logicalPort); break;
        case Walk::MlagRaw: all(self.hostV2(id(owner)).mlagRaw); break;
        case Walk::MemberPort: all(self.portBaseV2(id(owner)).memberPort); break;
        case Walk::Edge:
        case Walk::ToPort: break;
        }
        return names;
    }
    std::vector<Handle> walkPorts(Walk walk, Handle owner) const override {
        auto const & self = oracle();
        std::vector<Handle> ports;
        auto const all = [&](auto const & table) {
            for (auto const & [port, value] : table) ports.insert(ports.begin(), handle(port));
        };
        if (walk == Walk::Edge)
            all(self.statusV2(id(owner)).edge);
        else
            all(self.edgeV2(id(owner)).toPort);
        return ports;
    }
};

TEST(Tape, TheSameSeedGivesTheSameTape) {
    EXPECT_EQ(generate(7), generate(7));
    EXPECT_NE(generate(7), generate(8));
    EXPECT_EQ(generate(7).size(), GeneratorOptions().steps);
}

TEST(Tape, BytesBecomeSteps) {
    std::vector<std::uint8_t> const bytes = {255, 1, 2, 3, 4, 0, 9};
    auto const tape = fromBytes(bytes);
    ASSERT_EQ(tape.size(), 1u);
    EXPECT_EQ(tape[0], (Step{static_cast<Op>(255 % kOpCount), {1, 2, 3, 4}}));
}

TEST(Tape, EveryOperationIsReachedAndRendered) {
    std::set<Op> reached;
    for (std::uint64_t seed = 0; seed < kTapes; ++seed) {
        auto const tape = generate(seed);
        auto const calls = decode(tape);
        auto const lines = renderCalls(tape);
        ASSERT_EQ(lines.size(), calls.size());
        for (std::size_t i = 0; i < calls.size(); ++i) {
            reached.insert(calls[i].op);
            ASSERT_FALSE(lines[i].empty()) << static_cast<int>(calls[i].op);
        }
    }
    EXPECT_EQ(reached.size(), kOpCount);
}

TEST(Tape, TheOracleStaysConsistentAndEndsEmpty) {
    for (std::uint64_t seed = 0; seed < kTapes; ++seed) {
        OracleSubject subject;
        std::set<Handle> held;
        bool attached = false;
        for (auto const & call : decode(generate(seed))) {
            apply(call, subject);
            ASSERT_NO_THROW(subject.oracle().check()) << "seed " << seed;
            if (call.out != 0) held.insert(call.out);
            if (call.op == Op::Drop) held.erase(call.self);
            attached = subject.oracle().exists();
        }
        if (attached) subject.destroy();
        Id everything = kNull;
        for (Handle const handle : held) subject.drop(handle);
        for (Id object = 1; object < 100000; ++object) everything += subject.oracle().alive(object);
        EXPECT_EQ(everything, 0) << "seed " << seed;
    }
}

TEST(Tape, OneWhoFollowsTheWalksOfTheOtherArrivesAtTheSame) {
    auto const failure = firstFailure(
        [] {
            auto leader = std::make_unique<OppositeOrder>();
            auto follower = std::make_unique<OracleSubject>(leader.get());
            return SubjectPair{std::move(follower), std::move(leader)};
        },
        0, kTapes);
    EXPECT_FALSE(failure.has_value()) << *failure;
}

TEST(Tape, TheOrderOfWalksShowsInHistoriesThatAreKnownToDependOnIt) {
    auto const failure = firstFailure(
        [] {
            return SubjectPair{std::make_unique<OracleSubject>(), std::make_unique<OppositeOrder>()};
        },
        0, kTapes);
    EXPECT_TRUE(failure.has_value());
}

// Faults of the kinds that a translator might have; each must be found, and boiled down to a few steps.
class ForgetsMemberRemoval : public OracleSubject {
    void memberPortDel(Handle, Name const &) override {}
};
class WritesTypeAtCreation : public OracleSubject {
    void memberCreate(Handle host, MemberKind kind, Name const & name, Name const & secondaryName,
                      Handle out) override {
        OracleSubject::memberCreate(host, kind, name, secondaryName, out);
        int const type = oracle().portBaseV2(id(out)).type;
        OracleSubject::typeIs(out, type + 1);
        OracleSubject::typeIs(out, type);
    }
    void typeIs(Handle portBase, int value) override {
        OracleSubject::typeIs(portBase, value);
        OracleSubject::typeIs(portBase, value == 1 ? 1 : 0);
    }
};
class SwapsMlagNames : public OracleSubject {
    void memberCreate(Handle host, MemberKind kind, Name const & name, Name const & secondaryName,
                      Handle out) override {
        OracleSubject::memberCreate(host, kind, name, kind == kMlag ? name : secondaryName, out);
    }
};
class PopulatesOnRebinding : public OracleSubject {
    void v2Is(Handle status) override {
        OracleSubject::v2Is(status);
        OracleSubject::populateV3();
    }
};
class TakesEdgesAlongWhenDestroyed : public OracleSubject {
    void destroy() override {
        OracleSubject::edgeDelAll();
        OracleSubject::destroy();
    }
};
class ForgetsToRaise : public OracleSubject {
    void hostIs(Handle host) override {
        if (host != 0) OracleSubject::hostIs(host);
    }
};

template <class Faulty>
class Faults : public testing::Test {};
using AllFaults = testing::Types<ForgetsMemberRemoval, WritesTypeAtCreation, SwapsMlagNames,
                                 PopulatesOnRebinding, TakesEdgesAlongWhenDestroyed, ForgetsToRaise>;
TYPED_TEST_SUITE(Faults, AllFaults);

TYPED_TEST(Faults, AreFoundAndShrunk) {
    auto const pair = [] {
        return SubjectPair{std::make_unique<OracleSubject>(), std::make_unique<TypeParam>()};
    };
    auto const failure = firstFailure(pair, 0, kTapes);
    ASSERT_TRUE(failure.has_value());
    std::cout << *failure << '\n';
    auto const steps = std::stoi(failure->substr(failure->find("shrunk to ") + 10));
    EXPECT_LE(steps, 12);
}

TEST(Tape, AShrunkTapeReadsAsCalls) {
    auto const pair = [] {
        return SubjectPair{std::make_unique<OracleSubject>(), std::make_unique<ForgetsToRaise>()};
    };
    auto const failure = firstFailure(pair, 0, kTapes);
    ASSERT_TRUE(failure.has_value());
    EXPECT_NE(failure->find("t = V2Sm::V2SmIs(\"t\", "), std::string::npos);
    EXPECT_NE(failure->find("t->hostIs(nullptr);"), std::string::npos);
    EXPECT_NE(failure->find("what came of the call differs"), std::string::npos);
}

}  // namespace
}  // namespace oracle
