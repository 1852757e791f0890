#include "tools/check/Rule.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace TopologyTools {
namespace {

constexpr auto rules = std::to_array<RuleText>({
    {Rule::typeUnwritten, "type-unwritten",
     "The type of a port base is not written when the port base is made",
     "Making a version-3 port, port group or MLAG port writes no type, and the first translation of a whole "
     "topology writes none either; a type follows from the next change of the version-2 type, or when "
     "another "
     "version-2 object takes the place of the one that is followed.",
     "Write the version-2 type with another value and back; writing the same value tells nobody."},
    {Rule::linkUnwritten, "link-unwritten",
     "The group, MLAG or local port group of a port base is not written when the port base is made",
     "A port base that appears in a host with its link set already gets a version-3 counterpart without the "
     "link; it follows from the next change of the version-2 link. The first translation does write links.",
     "Clear the version-2 link and set it again."},
    {Rule::hostAttributeUnwritten, "host-attribute-unwritten",
     "The attributes of a host that appears with them set are not written",
     "Making a version-3 host for a new version-2 host writes its peer link and nothing else. The hostname "
     "and "
     "the MLAG attributes follow from their next changes, or when another host takes the place of this one. "
     "The first translation does write them.",
     "Write the version-2 attribute with another value and back."},
    {Rule::entryUnwritten, "entry-unwritten",
     "Members, raw MLAGs, logical ports and destinations follow only one by one, as each changes",
     "The member ports of a group, the raw MLAGs and logical ports of a host and the destinations of an edge "
     "are not walked when their owner appears with them, or takes the place of another owner: what the new "
     "owner holds already is missing until it changes, and what the old owner held stays.",
     "Change the version-2 entry away and back; an entry that only version 3 holds goes when the version-2 "
     "entry of that key is added and removed."},
    {Rule::referenceUnresolved, "reference-unresolved",
     "A reference that leads to nothing when it is written stays null",
     "References are resolved by name at the moment when they are written. A target that has no version-3 "
     "counterpart at that moment gives null (or, in a collection, no entry), and its later appearance is not "
     "noticed: nobody waits for it. During the first translation a target in a host that comes later is such "
     "a case.",
     "Clear the version-2 reference and set it again, now that its target is there."},
    {Rule::targetLeft, "target-left", "A reference outlives the version-3 object to which it leads",
     "The version-3 object has left the topology; an attribute that refers to it reads as null, and an entry "
     "of a collection stays, with null in its place. A new object of the same name is not taken for it.",
     "Remove the version-2 entry, or clear the version-2 reference and set it again."},
    {Rule::sameName, "same-name", "A version-3 reference leads to whatever bears the name now",
     "Objects correspond by name only. When a version-2 object is replaced by another one of its name, its "
     "version-3 counterpart stays and serves the new one, and version-3 references to it stay too, while "
     "version-2 references still lead to the object that has gone.",
     "Write the version-2 reference again: clear it, or point it at the new object."},
    {Rule::secondaryNameKept, "secondary-name-kept", "The secondary name of an MLAG is taken once",
     "It is given when the version-3 MLAG port is made and cannot change afterwards; changes of the "
     "version-2 secondary name tell nobody.",
     "Remove the version-2 MLAG and add it again with the new secondary name."},
    {Rule::rawMlagPopulatedLocally, "raw-mlag-populated-locally",
     "The first translation looks for a raw MLAG in the host that lists it",
     "It takes the MLAG port of that name in the listing host, or nothing when there is none, also where the "
     "version-2 entry leads to an MLAG of another host; later changes of an entry are resolved in the host "
     "that holds the MLAG.",
     "Set the version-2 entry to null and back."},
    {Rule::entryLeftBehind, "entry-left-behind",
     "An entry stays when the version-2 entry under another key is changed or removed",
     "Version-3 entries stand under the names of their targets, version-2 entries under keys of their own. "
     "Removing a version-2 entry removes the version-3 entry of that key; pointing it elsewhere, or at "
     "nothing, removes none.",
     "Add a version-2 entry under the target's name and remove it."},
    {Rule::entryRemovedByKey, "entry-removed-by-key",
     "Removing a version-2 entry removes the version-3 entry of that key, whatever it stands for",
     "Version-3 entries stand under the names of their targets: the key of a removed version-2 entry may be "
     "the name of another entry's target.",
     "Set the version-2 entry that leads to the target to null and back."},
    {Rule::entryOverwritten, "entry-overwritten",
     "Of several entries whose targets share a name the last one stands",
     "Version-3 entries stand under the names of their targets, so entries for targets of one name in "
     "different hosts share one place; the one written last holds it, be it another than in a fresh "
     "translation.",
     "Set the version-2 entry that is to stand to null and back."},
    {Rule::edgeLeftBehind, "edge-left-behind", "An edge stays when its port leaves before it",
     "An edge is removed under the key of its port. Once the port, or its host, has left or has been "
     "replaced, the key cannot be told any more, and the version-3 edge stays.",
     "Have a port of that name, add an edge from it, and remove that edge."},
    {Rule::edgeUnresolved, "edge-unresolved", "An edge whose port has no counterpart yet is not made",
     "The version-3 edge is made when the version-2 edge appears; if its port has no version-3 counterpart "
     "at that moment, the next change of a destination tries again, and nothing else does.",
     "Change a destination of the edge, or remove the edge and add it again."},
    {Rule::edgeShared, "edge-shared", "Edges from version-2 ports of one name share one version-3 edge",
     "A version-3 edge stands under the name of its port. While a departed port of that name still has an "
     "edge in version 2, both are mirrored into one version-3 edge, and removing either, or a destination of "
     "either, removes it for both.",
     "Remove the version-2 edge and add it again."},
    {Rule::keyKept, "key-kept",
     "An edge, or a destination, keeps the key that its port had when it was written",
     "When a version-2 port moves to another host, its edges and the edges that lead to it are not written "
     "again.",
     "Remove the version-2 edge and add it again, or change the flag of the destination and back."},
    {Rule::destinationLeftBehind, "destination-left-behind",
     "A destination stays when its port leaves before it, or when the edge is replaced",
     "A destination is removed under the key of its port, which cannot be told once the port has left; and "
     "an "
     "edge that takes the place of another keeps the destinations that the other had.",
     "Remove the version-2 edge and add it again."},
    {Rule::inputUnbound, "input-unbound",
     "The version-2 status was not bound, or was bound after none had been",
     "Hosts, edges and the local host are followed through the bound status alone, and binding one after "
     "none "
     "was bound writes the local host and nothing else.",
     "Bind the status, then remove what differs from version 2 and add it again (or add and remove it)."},
    {Rule::outputUnbound, "output-unbound", "The version-3 status was not bound",
     "Without a version-3 status nothing is made or removed and no reference can be resolved; binding one "
     "translates nothing again.",
     "Bind the status, then remove what differs from version 2 and add it again (or add and remove it)."},
    {Rule::notificationsOff, "notifications-off",
     "Changes made while notifications were off are not caught up",
     "While the translator's notifications are off it hears of no change, and switching them on again "
     "compares "
     "nothing.",
     "Switch notifications on, then make the change again."},
});

static_assert(rules.size() == static_cast<std::size_t>(Rule::notificationsOff));

constexpr std::size_t pageColumns = 110;

}  // namespace

std::span<RuleText const> allRules() { return rules; }

RuleText const & ruleText(Rule rule) {
    return *std::find_if(rules.begin(), rules.end(),
                         [&](RuleText const & text) { return text.rule == rule; });
}

std::string wrapped(std::string_view text, std::size_t columns, std::string_view indent) {
    std::string lines;
    while (!text.empty()) {
        std::size_t end = text.size();
        if (end > columns - indent.size()) end = text.rfind(' ', columns - indent.size());
        lines += std::string(indent) + std::string(text.substr(0, end)) + '\n';
        text.remove_prefix(std::min(text.size(), end + 1));
    }
    return lines;
}

std::string knownDifferencesPage() {
    std::string page = "# Known differences\n\n";
    page += wrapped(
        "A version-3 model that a translator keeps in step may differ from what a fresh translation of "
        "the same version-2 model would give, and yet nothing is wrong: the translator follows changes "
        "as they come and repairs nothing afterwards. These are all the ways in which that happens, "
        "under the names that `topology-sync check` reports; any other difference is a fault.",
        pageColumns);
    page += '\n';
    page +=
        wrapped("This page is made: `topology-sync check --rules > docs/known-differences.md`.", pageColumns);
    for (RuleText const & rule : rules) {
        page += "\n## " + std::string(rule.id) + "\n\n";
        page += wrapped("**" + std::string(rule.title) + ".** " + std::string(rule.why), pageColumns);
        page += '\n';
        page += wrapped("To close it: " + std::string(rule.close), pageColumns);
    }
    return page;
}

}  // namespace TopologyTools
