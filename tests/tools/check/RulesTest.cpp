// Every rule is the explanation of a difference that can come about, with the line since which it is there,
// and what closes it does.

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tools/check/CheckTesting.h"

namespace TopologyTools {
namespace {

using namespace NetworkTopology;

struct Scenario {
    char const * name;
    Rule rule;
    std::string path;
    Line since;
    std::function<void(Checked &)> make;
    // What the model holds before the translator is attached.
    std::vector<std::string> before = {};

    friend void PrintTo(Scenario const & scenario, std::ostream * out) { *out << scenario.name; }
};

std::string added(std::string const & path, std::string const & value) {
    return R"({"op":"add","path":")" + path + R"(","value":)" + value + '}';
}
std::string removed(std::string const & path) { return R"({"op":"remove","path":")" + path + "\"}"; }

std::string const kHost = added("/host/a", R"({"port":{"p":{},"q":{}},"portGroup":{"g":{}}})");
std::string const kEdgeKey = "/edge/~1host~1a~1port~1p";
std::string const kEdge = added(kEdgeKey, R"({"toPort":{"/host/a/port/q":true}})");

// A change through the model's own mutators, which can do what lines cannot.
template <class Change>
void change(Checked & checked, Change const & change) {
    checked.nextLine();
    change(*checked.v2);
}

// Applies all lines.
std::function<void(Checked &)> lines(std::vector<std::string> const & all) {
    return [all](Checked & checked) {
        for (std::string const & line : all) checked.apply(line);
    };
}

HostV2::Ptr hostWithEverythingSet() {
    HostV2::Ptr const host = HostV2::HostV2Is("a");
    host->hostnameIs("a.example");
    host->logicalPortIs("p", host->portIs("p"));
    host->mlagPeerLinkIs(host->port("p"));
    return host;
}

void unbindWhile(Checked & checked, std::function<void(Checker &, bool)> const & bind,
                 std::vector<std::string> const & changes) {
    bind(checked.checker, false);
    lines(changes)(checked);
    bind(checked.checker, true);
}

std::vector<Scenario> scenarios() {
    auto const input = [](Checked & checked, std::vector<std::string> const & changes) {
        unbindWhile(
            checked, [&](Checker & c, bool on) { c.inputIs(on ? checked.v2 : nullptr); }, changes);
    };
    auto const output = [](Checked & checked, std::vector<std::string> const & changes) {
        unbindWhile(
            checked, [](Checker & c, bool on) { c.outputIsBoundIs(on); }, changes);
    };
    auto const notifications = [](Checked & checked, std::vector<std::string> const & changes) {
        unbindWhile(
            checked, [](Checker & c, bool on) { c.notificationActiveIs(on); }, changes);
    };
    return {
        {"TypeOfAPortThatEntersWithIt", Rule::typeUnwritten, "/host/a/port/n/type", 2,
         [](Checked & c) {
             c.apply(kHost);
             change(c, [](StatusV2 & v2) {
                 auto const port = PortV2::PortV2Is("n");
                 port->typeIs(PortTypeV2::port);
                 v2.host("a")->portIs(port);
             });
         }},
        {"TypeOfAPortThatWasThere",
         Rule::typeUnwritten,
         "/host/a/port/p/type",
         0,
         [](Checked &) {},
         {added("/host/a", R"({"port":{"p":{"type":"port"}}})")}},
        {"GroupOfAPortThatEntersWithIt", Rule::linkUnwritten, "/host/a/port/n/portGroup", 2,
         [](Checked & c) {
             c.apply(kHost);
             change(c, [](StatusV2 & v2) {
                 auto const port = PortV2::PortV2Is("n");
                 port->portGroupIs(v2.host("a")->portGroup("g"));
                 v2.host("a")->portIs(port);
             });
         }},
        {"HostnameOfAHostThatEntersWithIt", Rule::hostAttributeUnwritten, "/host/a/hostname", 1,
         [](Checked & c) { change(c, [](StatusV2 & v2) { v2.hostIs(hostWithEverythingSet()); }); }},
        {"LogicalPortOfAHostThatEntersWithIt", Rule::entryUnwritten, "/host/a/logicalPort/p", 1,
         [](Checked & c) { change(c, [](StatusV2 & v2) { v2.hostIs(hostWithEverythingSet()); }); }},
        {"LogicalPortOfAHostThatIsReplaced", Rule::entryUnwritten, "/host/a/logicalPort/p", 3,
         lines({kHost, added("/host/a/logicalPort/p", R"("/host/a/port/p")"),
                added("/host/a", R"({"port":{"p":{}}})")})},
        {"DestinationOfAnEdgeThatEntersWithIt", Rule::entryUnwritten, kEdgeKey + "/toPort/~1host~1a~1port~1q",
         2,
         [](Checked & c) {
             c.apply(kHost);
             change(c, [](StatusV2 & v2) {
                 auto const edge = DirectedEdgeV2::DirectedEdgeV2Is(v2.host("a")->port("p"));
                 edge->toPortIs(v2.host("a")->port("q"), true);
                 v2.edgeIs(edge);
             });
         }},
        {"LocalhostThatEntersLater", Rule::referenceUnresolved, "/localhost", 1,
         [](Checked & c) {
             auto const host = HostV2::HostV2Is("a");
             change(c, [&](StatusV2 & v2) { v2.localhostIs(host); });
             change(c, [&](StatusV2 & v2) { v2.hostIs(host); });
         }},
        {"PeerLinkOfAHostThatEntersWithIt", Rule::referenceUnresolved, "/host/a/mlagPeerLink", 1,
         [](Checked & c) { change(c, [](StatusV2 & v2) { v2.hostIs(hostWithEverythingSet()); }); }},
        {"LogicalPortWhosePortEntersLater", Rule::referenceUnresolved, "/host/a/logicalPort/n", 2,
         [](Checked & c) {
             c.apply(kHost);
             auto const port = PortV2::PortV2Is("n");
             change(c, [&](StatusV2 & v2) { v2.host("a")->logicalPortIs("n", port); });
             change(c, [&](StatusV2 & v2) { v2.host("a")->portIs(port); });
         }},
        {"DestinationThatEntersLater", Rule::referenceUnresolved, kEdgeKey + "/toPort/~1host~1a~1port~1n", 3,
         [](Checked & c) {
             lines({kHost, kEdge})(c);
             auto const port = PortV2::PortV2Is("n");
             change(c, [&](StatusV2 & v2) { v2.edge(v2.host("a")->port("p"))->toPortIs(port, true); });
             change(c, [&](StatusV2 & v2) { v2.host("a")->portIs(port); });
         }},
        {"LogicalPortWhosePortLeft", Rule::targetLeft, "/host/a/logicalPort/p", 3,
         lines({kHost, added("/host/a/logicalPort/p", R"("/host/a/port/p")"), removed("/host/a/port/p")})},
        {"GroupThatLeftAndCameBack", Rule::targetLeft, "/host/a/port/p/portGroup", 3,
         [](Checked & c) {
             lines({kHost, added("/host/a/port/p/portGroup", R"("/host/a/portGroup/g")")})(c);
             PortGroupV2::Ptr group;
             change(c, [&](StatusV2 & v2) { group = v2.host("a")->portGroupDel("g"); });
             change(c, [&](StatusV2 & v2) { v2.host("a")->portGroupIs(group); });
         }},
        {"LocalhostThatIsReplaced", Rule::sameName, "/localhost", 3,
         lines({kHost, added("/localhost", R"("/host/a")"), added("/host/a", "{}")})},
        {"LogicalPortWhosePortIsReplaced", Rule::sameName, "/host/a/logicalPort/p", 3,
         lines(
             {kHost, added("/host/a/logicalPort/x", R"("/host/a/port/p")"), added("/host/a/port/p", "{}")})},
        {"SecondaryNameThatChanges", Rule::secondaryNameKept, "/host/a/mlag/m/secondaryName", 1,
         lines({added("/host/a", R"({"mlag":{"m":{"secondaryName":"m2"}}})"),
                added("/host/a/mlag/m/secondaryName", R"("m3")")})},
        {"RawMlagOfAnotherHost",
         Rule::rawMlagPopulatedLocally,
         "/host/a/mlagRaw/m",
         0,
         [](Checked &) {},
         {added("/host/b", R"({"mlag":{"m":{}}})"),
          added("/host/a", R"({"mlagRaw":{"m":"/host/b/mlag/m"}})")}},
        {"RawMlagOfAnotherHostWithANamesake",
         Rule::rawMlagPopulatedLocally,
         "/host/a/mlagRaw/m",
         0,
         [](Checked &) {},
         {added("/host/b", R"({"mlag":{"m":{}}})"),
          added("/host/a", R"({"mlag":{"m":{}},"mlagRaw":{"m":"/host/b/mlag/m"}})")}},
        {"EntryPointedElsewhere", Rule::entryLeftBehind, "/host/a/logicalPort/p", 3,
         lines({kHost, added("/host/a/logicalPort/x", R"("/host/a/port/p")"),
                added("/host/a/logicalPort/x", R"("/host/a/port/q")")})},
        {"EntryRemovedUnderItsOwnKey", Rule::entryLeftBehind, "/host/a/portGroup/g/memberPort/p", 3,
         lines({kHost, added("/host/a/portGroup/g/memberPort/x", R"("/host/a/port/p")"),
                removed("/host/a/portGroup/g/memberPort/x")})},
        {"EntryUnderTheKeyOfAnother", Rule::entryRemovedByKey, "/host/a/logicalPort/p", 4,
         lines({kHost, added("/host/a/logicalPort/x", R"("/host/a/port/p")"),
                added("/host/a/logicalPort/p", R"("/host/a/port/q")"), removed("/host/a/logicalPort/p")})},
        {"EntriesForTargetsOfOneName", Rule::entryOverwritten, "/host/a/logicalPort/p", 4,
         lines({kHost, added("/host/b", R"({"port":{"p":{}}})"),
                added("/host/a/logicalPort/x", R"("/host/a/port/p")"),
                added("/host/a/logicalPort/w", R"("/host/b/port/p")")})},
        {"EdgeWhosePortLeft", Rule::edgeLeftBehind, kEdgeKey, 3,
         lines({kHost, kEdge, removed("/host/a/port/p")})},
        {"EdgeWhoseHostLeft", Rule::edgeLeftBehind, kEdgeKey, 3, lines({kHost, kEdge, removed("/host/a")})},
        {"EdgeWhosePortIsReplaced", Rule::edgeLeftBehind, kEdgeKey, 3,
         lines({kHost, kEdge, added("/host/a/port/p", "{}")})},
        {"EdgeRemovedAfterItsPort", Rule::edgeLeftBehind, kEdgeKey, 3,
         lines({kHost, kEdge, removed("/host/a/port/p"), removed(kEdgeKey)})},
        {"EdgeWhosePortEntersLater", Rule::edgeUnresolved, kEdgeKey, 2,
         [](Checked & c) {
             c.apply(added("/host/a", "{}"));
             auto const port = PortV2::PortV2Is("p");
             change(c, [&](StatusV2 & v2) { v2.edgeIs(port); });
             change(c, [&](StatusV2 & v2) { v2.host("a")->portIs(port); });
         }},
        {"EdgeRemovedWithThatOfADepartedNamesake", Rule::edgeShared, kEdgeKey, 6,
         [](Checked & c) {
             lines({kHost, added("/localhost", R"("/host/a")"), kEdge})(c);
             auto const departed = c.v2->host("a")->port("p");
             lines({added("/host/a", R"({"port":{"p":{},"q":{}}})"), kEdge})(c);
             // The local host keeps the old host alive, and with it the port's host.
             change(c, [&](StatusV2 & v2) { v2.edgeDel(departed); });
         }},
        {"DestinationRemovedWithThatOfADepartedNamesake", Rule::edgeShared,
         kEdgeKey + "/toPort/~1host~1a~1port~1q", 6,
         [](Checked & c) {
             lines({kHost, added("/localhost", R"("/host/a")"), kEdge})(c);
             auto const departed = c.v2->edge(c.v2->host("a")->port("p"));
             lines({added("/host/a", R"({"port":{"p":{},"q":{}}})"), kEdge})(c);
             change(c, [&](StatusV2 &) { departed->toPortDelAll(); });
         }},
        {"EdgeWhosePortMoves", Rule::keyKept, "/edge/~1host~1b~1port~1p", 4,
         [](Checked & c) {
             lines({kHost, kEdge, added("/host/b", "{}")})(c);
             change(c, [&](StatusV2 & v2) { v2.host("b")->portIs(v2.host("a")->portDel("p")); });
         }},
        {"DestinationThatMoves", Rule::keyKept, kEdgeKey + "/toPort/~1host~1b~1port~1q", 4,
         [](Checked & c) {
             lines({kHost, kEdge, added("/host/b", "{}")})(c);
             change(c, [&](StatusV2 & v2) { v2.host("b")->portIs(v2.host("a")->portDel("q")); });
         }},
        {"DestinationThatLeft", Rule::destinationLeftBehind, kEdgeKey + "/toPort/~1host~1a~1port~1q", 3,
         lines({kHost, kEdge, removed("/host/a/port/q")})},
        {"DestinationThatIsReplaced", Rule::destinationLeftBehind, kEdgeKey + "/toPort/~1host~1a~1port~1q", 3,
         lines({kHost, kEdge, added("/host/a/port/q", "{}")})},
        {"DestinationOfAnEdgeThatIsReplaced", Rule::destinationLeftBehind,
         kEdgeKey + "/toPort/~1host~1a~1port~1q", 3, lines({kHost, kEdge, added(kEdgeKey, "{}")})},
        {"HostAddedWithoutInput", Rule::inputUnbound, "/host/b", 2,
         [=](Checked & c) {
             c.apply(kHost);
             input(c, {added("/host/b", "{}")});
         }},
        {"HostRemovedWithoutInput", Rule::inputUnbound, "/host/a", 2,
         [=](Checked & c) {
             c.apply(kHost);
             input(c, {removed("/host/a")});
         }},
        {"EdgeAddedWithoutInput", Rule::inputUnbound, kEdgeKey, 2,
         [=](Checked & c) {
             c.apply(kHost);
             input(c, {kEdge});
         }},
        {"EdgeRemovedWithoutInput", Rule::inputUnbound, kEdgeKey, 3,
         [=](Checked & c) {
             lines({kHost, kEdge})(c);
             input(c, {removed(kEdgeKey)});
         }},
        {"HostAddedWithoutOutput", Rule::outputUnbound, "/host/a", 1,
         [=](Checked & c) { output(c, {kHost}); }},
        {"HostRemovedWithoutOutput", Rule::outputUnbound, "/host/a", 2,
         [=](Checked & c) {
             c.apply(kHost);
             output(c, {removed("/host/a")});
         }},
        {"PortAddedWithoutOutput", Rule::outputUnbound, "/host/a/port/n", 2,
         [=](Checked & c) {
             c.apply(kHost);
             output(c, {added("/host/a/port/n", "{}")});
         }},
        {"PortRemovedWithoutOutput", Rule::outputUnbound, "/host/a/port/q", 2,
         [=](Checked & c) {
             c.apply(kHost);
             output(c, {removed("/host/a/port/q")});
         }},
        {"GroupSetWithoutOutput", Rule::outputUnbound, "/host/a/port/p/portGroup", 2,
         [=](Checked & c) {
             c.apply(kHost);
             output(c, {added("/host/a/port/p/portGroup", R"("/host/a/portGroup/g")")});
         }},
        {"EdgeAddedWithoutOutput", Rule::outputUnbound, kEdgeKey, 2,
         [=](Checked & c) {
             c.apply(kHost);
             output(c, {added(kEdgeKey, "{}")});
         }},
        {"DestinationRemovedWithoutOutput", Rule::outputUnbound, kEdgeKey + "/toPort/~1host~1a~1port~1q", 3,
         [=](Checked & c) {
             lines({kHost, kEdge})(c);
             output(c, {removed(kEdgeKey + "/toPort/~1host~1a~1port~1q")});
         }},
        {"LocalhostSetUnnoticed", Rule::notificationsOff, "/localhost", 2,
         [=](Checked & c) {
             c.apply(kHost);
             notifications(c, {added("/localhost", R"("/host/a")")});
         }},
        {"HostnameSetUnnoticed", Rule::notificationsOff, "/host/a/hostname", 2,
         [=](Checked & c) {
             c.apply(kHost);
             notifications(c, {added("/host/a/hostname", R"("x")")});
         }},
        {"TypeSetUnnoticed", Rule::notificationsOff, "/host/a/port/p/type", 2,
         [=](Checked & c) {
             c.apply(kHost);
             notifications(c, {added("/host/a/port/p/type", R"("mlag")")});
         }},
        {"PortAddedUnnoticed", Rule::notificationsOff, "/host/a/port/n", 2,
         [=](Checked & c) {
             c.apply(kHost);
             notifications(c, {added("/host/a/port/n", "{}")});
         }},
        {"PortsRemovedUnnoticed", Rule::notificationsOff, "/host/a/port/p", 2,
         [=](Checked & c) {
             c.apply(kHost);
             notifications(c, {removed("/host/a/port")});
         }},
        {"PortReplacedUnnoticed", Rule::notificationsOff, "/host/a/port/p/type", 2,
         [=](Checked & c) {
             c.apply(kHost);
             notifications(c, {added("/host/a/port/p", R"({"type":"mlag"})")});
         }},
        {"LogicalPortAddedUnnoticed", Rule::notificationsOff, "/host/a/logicalPort/p", 2,
         [=](Checked & c) {
             c.apply(kHost);
             notifications(c, {added("/host/a/logicalPort/p", R"("/host/a/port/p")")});
         }},
        {"LogicalPortRemovedUnnoticed", Rule::notificationsOff, "/host/a/logicalPort/p", 3,
         [=](Checked & c) {
             lines({kHost, added("/host/a/logicalPort/p", R"("/host/a/port/p")")})(c);
             notifications(c, {removed("/host/a/logicalPort/p")});
         }},
        {"EdgesRemovedUnnoticed", Rule::notificationsOff, kEdgeKey, 3,
         [=](Checked & c) {
             lines({kHost, kEdge})(c);
             notifications(c, {removed("/edge")});
         }},
        {"FlagChangedUnnoticed", Rule::notificationsOff, kEdgeKey + "/toPort/~1host~1a~1port~1q", 3,
         [=](Checked & c) {
             lines({kHost, kEdge})(c);
             notifications(c, {added(kEdgeKey + "/toPort/~1host~1a~1port~1q", "false")});
         }},
    };
}

Difference const * at(std::vector<Difference> const & differences, std::string const & path) {
    auto const found = std::find_if(differences.begin(), differences.end(),
                                    [&](Difference const & difference) { return difference.path == path; });
    return found == differences.end() ? nullptr : &*found;
}

class Rules : public testing::TestWithParam<Scenario> {};

TEST_P(Rules, ExplainAndClose) {
    Scenario const & scenario = GetParam();
    StatusV2::Ptr const v2 = StatusV2::StatusV2Is();
    applyLines(*v2, scenario.before);
    Checked checked(v2);
    scenario.make(checked);

    auto const differences = checked.checker.differences();
    EXPECT_TRUE(faultsAmong(differences).empty()) << described(differences);
    Difference const * const difference = at(differences, scenario.path);
    ASSERT_TRUE(difference) << described(differences);
    EXPECT_EQ(difference->why.rule, scenario.rule) << described(differences);
    EXPECT_EQ(difference->why.line, scenario.since) << described(differences);
    EXPECT_NE(difference->present, difference->calledFor);
    EXPECT_EQ(difference->present, difference->expected);
    EXPECT_NE(difference->remedy.sentence, "");
    if (scenario.rule == Rule::secondaryNameKept) return;

    ASSERT_FALSE(difference->remedy.lines.empty());
    checked.apply(difference->remedy.lines);
    auto const rest = checked.checker.differences();
    EXPECT_FALSE(at(rest, scenario.path)) << difference->remedy.sentence << '\n' << described(rest);
    EXPECT_TRUE(faultsAmong(rest).empty()) << described(rest);
}

INSTANTIATE_TEST_SUITE_P(Each, Rules, testing::ValuesIn(scenarios()),
                         [](auto const & info) { return std::string(info.param.name); });

TEST(RuleTable, HasAScenarioForEveryRule) {
    std::set<Rule> met;
    for (Scenario const & scenario : scenarios()) met.insert(scenario.rule);
    for (RuleText const & rule : allRules()) EXPECT_TRUE(met.contains(rule.rule)) << rule.id;
}

TEST(RuleTable, NamesEveryRuleOnce) {
    std::set<std::string_view> ids;
    std::set<Rule> rules;
    for (RuleText const & rule : allRules()) {
        EXPECT_TRUE(ids.insert(rule.id).second) << rule.id;
        EXPECT_TRUE(rules.insert(rule.rule).second) << rule.id;
        EXPECT_EQ(&ruleText(rule.rule), &rule);
        EXPECT_NE(rule.rule, Rule::none);
    }
}

TEST(Remedy, HasNoLinesWhileNothingIsFollowed) {
    Checked checked;
    checked.apply(kHost);
    checked.checker.notificationActiveIs(false);
    checked.apply(added("/host/a/hostname", R"("x")"));
    auto const differences = checked.checker.differences();
    ASSERT_EQ(differences.size(), 1u);
    EXPECT_TRUE(differences[0].remedy.lines.empty());
    EXPECT_EQ(differences[0].remedy.sentence, ruleText(Rule::notificationsOff).close);
}

}  // namespace
}  // namespace TopologyTools
