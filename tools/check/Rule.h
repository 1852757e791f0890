// Why a version-3 model may differ from what its version-2 model calls for without a fault: the behaviours of
// the translator that leave such differences, each with a name that reports and documentation use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace TopologyTools {

enum class Rule : std::uint8_t {
    none,  // Not a rule: the place holds what its last change called for.
    typeUnwritten,
    linkUnwritten,
    hostAttributeUnwritten,
    entryUnwritten,
    referenceUnresolved,
    targetLeft,
    sameName,
    secondaryNameKept,
    rawMlagPopulatedLocally,
    entryLeftBehind,
    entryRemovedByKey,
    entryOverwritten,
    edgeLeftBehind,
    edgeUnresolved,
    edgeShared,
    keyKept,
    destinationLeftBehind,
    inputUnbound,
    outputUnbound,
    notificationsOff,
};

struct RuleText {
    Rule rule;
    std::string_view id;
    std::string_view title;
    std::string_view why;    // A sentence.
    std::string_view close;  // What closes such a difference, as a sentence.
};

// All rules, in the order in which documentation tells them.
std::span<RuleText const> allRules();
// REQUIRES: not Rule::none.
RuleText const & ruleText(Rule rule);

// `text` in lines of at most so many columns, `indent` included, each ended.
std::string wrapped(std::string_view text, std::size_t columns, std::string_view indent = {});

// docs/known-differences.md: what `topology-sync check --rules` prints.
std::string knownDifferencesPage();

}  // namespace TopologyTools
