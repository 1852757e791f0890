#include "tools/check/Report.h"

#include <algorithm>
#include <cstddef>

#include "tools/format/PrintedName.h"
#include "tools/format/TextTable.h"

namespace TopologyTools {
namespace {

using nlohmann::ordered_json;

std::string counted(std::size_t count, std::string const & noun) {
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string shownValue(std::optional<nlohmann::json> const & value) {
    if (!value) return "nothing";
    return value->is_object() && !value->empty() ? "{...}" : value->dump();
}

std::string sinceText(Line line) {
    return line == 0 ? "since FILE was loaded" : "since line " + std::to_string(line);
}

std::string summary(std::size_t faults, std::size_t explained) {
    if (faults + explained == 0) return "The version-3 model is what the version-2 model calls for.\n";
    return counted(faults, "fault") + "; " + counted(explained, "difference") +
           (explained == 1 ? " follows" : " follow") + " from how the translator works.\n";
}

std::string faultText(Difference const & fault, bool colours) {
    std::string text = "  " + inked(printedName(fault.path), Ink::strong, colours) + '\n';
    text += "    present " + shownValue(fault.present) + ", expected " + shownValue(fault.expected) +
            ", called for " + shownValue(fault.calledFor) + '\n';
    return text;
}

std::string explainedText(Difference const & difference, bool colours) {
    std::string text = "  " + inked(printedName(difference.path), Ink::strong, colours) + '\n';
    text += "    present " + shownValue(difference.present) + ", called for " +
            shownValue(difference.calledFor) + ", " + sinceText(difference.why.line) + '\n';
    text += "    to close: " + difference.remedy.sentence + '\n';
    for (ordered_json const & line : difference.remedy.lines) text += "      " + line.dump() + '\n';
    return text;
}

std::size_t countOf(std::vector<Difference> const & differences, Rule rule) {
    return static_cast<std::size_t>(
        std::count_if(differences.begin(), differences.end(),
                      [&](Difference const & difference) { return difference.why.rule == rule; }));
}

std::string ruleSection(RuleText const & rule, std::vector<Difference> const & differences, bool colours) {
    std::string text = '\n' + inked(rule.id, Ink::good, colours) + ": " + std::string(rule.title) + " (" +
                       counted(countOf(differences, rule.rule), "difference") + ")\n";
    text += wrapped(rule.why, 100, "  ");
    for (Difference const & difference : differences) {
        if (difference.why.rule == rule.rule) text += explainedText(difference, colours);
    }
    return text;
}

ordered_json asJson(Difference const & difference) {
    ordered_json json{{"path", difference.path}};
    if (difference.calledFor) json["calledFor"] = *difference.calledFor;
    if (difference.present) json["present"] = *difference.present;
    if (difference.isFault()) {
        if (difference.expected) json["expected"] = *difference.expected;
        json["verdict"] = "fault";
        return json;
    }
    json["verdict"] = "explained";
    json["rule"] = ruleText(difference.why.rule).id;
    json["why"] = ruleText(difference.why.rule).why;
    json["since"] = difference.why.line;
    json["close"] = difference.remedy.sentence;
    if (!difference.remedy.lines.empty()) json["closingLines"] = difference.remedy.lines;
    return json;
}

}  // namespace

std::string checkReport(std::vector<Difference> const & differences, bool colours) {
    std::size_t const faults = countOf(differences, Rule::none);
    std::string text = summary(faults, differences.size() - faults);
    if (faults != 0) {
        text += '\n' + inked("fault", Ink::attention, colours) + ": " + counted(faults, "place") +
                " not as the translator must make it\n";
        for (Difference const & difference : differences) {
            if (difference.isFault()) text += faultText(difference, colours);
        }
    }
    for (RuleText const & rule : allRules()) {
        if (countOf(differences, rule.rule) != 0) text += ruleSection(rule, differences, colours);
    }
    return text;
}

ordered_json checkReportAsJson(std::vector<Difference> const & differences) {
    std::size_t const faults = countOf(differences, Rule::none);
    ordered_json json{{"faults", faults},
                      {"explained", differences.size() - faults},
                      {"rules", ordered_json::object()},
                      {"differences", ordered_json::array()}};
    for (RuleText const & rule : allRules()) {
        if (auto const count = countOf(differences, rule.rule)) json["rules"][std::string(rule.id)] = count;
    }
    for (Difference const & difference : differences) json["differences"].push_back(asJson(difference));
    return json;
}

}  // namespace TopologyTools
