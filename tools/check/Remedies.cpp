#include "tools/check/Remedies.h"

#include <utility>
#include <vector>

#include "tools/json/JsonPointer.h"

namespace TopologyTools {

using nlohmann::json;
using nlohmann::ordered_json;

namespace {

ordered_json add(std::string const & path, json const & value) {
    return {{"op", "add"}, {"path", path}, {"value", value}};
}

ordered_json remove(std::string const & path) { return {{"op", "remove"}, {"path", path}}; }

// A value of the type that is not its default.
json sample(Vel::VelType const & type) {
    if (type.kind() == Vel::VelType::Kind::enumeration) return type.enumerators()[1].name;
    return type.name() == "Keln::EthAddr" ? "02:00:00:00:00:01" : "x";
}

Remedy removeAndAdd(std::string const & path, json const & value) {
    return {"Remove " + path + " and add it again.", {remove(path), add(path, value)}};
}

}  // namespace

std::optional<json> Remedies::at(std::string const & path) const {
    json::json_pointer const place(path);
    return document_.contains(place) ? std::optional<json>(document_.at(place)) : std::nullopt;
}

Remedy Remedies::value(std::string const & path, MemberShape const & attribute) const {
    if (!attribute.isSettable) {
        return {"Remove the object that has " + path + " and add it again.", {}};
    }
    std::string const sentence = "Write " + path + " with another value and back.";
    if (auto const value = at(path)) return {sentence, {remove(path), add(path, *value)}};
    return {sentence, {add(path, sample(attribute.type())), remove(path)}};
}

Remedy Remedies::reference(std::string const & path) const {
    if (auto const value = at(path)) {
        return {"Clear " + path + " and set it again.", {remove(path), add(path, *value)}};
    }
    // Clearing what is null already tells nobody; what has left reads as null.
    auto const target = possibleTarget(path);
    if (!target) return {"Set " + path + " and clear it again.", {}};
    return {"Set " + path + " and clear it again.", {add(path, *target), remove(path)}};
}

std::optional<std::string> Remedies::possibleTarget(std::string const & path) const {
    std::vector<std::string> const tokens = parseJsonPointer(path);
    std::string const host = tokens.size() > 1 ? formatJsonPointer({tokens[0], tokens[1]}) : std::string();
    std::vector<std::string_view> collections;
    std::string const & attribute = tokens.back();
    if (attribute == "localhost")
        collections = {"host"};
    else if (attribute == "mlagPeerLink")
        collections = {"port", "portGroup", "mlag"};
    else
        collections = {attribute == "mlag" ? "mlag" : "portGroup"};
    for (std::string_view const collection : collections) {
        std::string const place = joinJsonPointer(host, collection);
        auto const members = at(place);
        if (members && !members->empty()) return joinJsonPointer(place, members->begin().key());
    }
    return std::nullopt;
}

Remedy Remedies::object(Stray const & object) const {
    std::string const & path = object.path;
    auto const value = at(path);
    Remedy remedy;
    if (value)
        remedy = removeAndAdd(path, *value);
    else if (path.starts_with("/edge/"))
        remedy = leftEdge(path);
    else
        remedy = {"Add " + path + " and remove it.", {add(path, json::object()), remove(path)}};
    if (!object.staysOnce) return remedy;
    remedy.sentence.back() = ',';
    remedy.sentence += " and do so once more.";
    std::vector<ordered_json> const once = remedy.lines;
    remedy.lines.insert(remedy.lines.end(), once.begin(), once.end());
    return remedy;
}

Remedy Remedies::leftEdge(std::string const & path) const {
    std::vector<std::string> const port = parseJsonPointer(parseJsonPointer(path).back());
    std::string const portPath = formatJsonPointer(port);
    std::string const hostPath = formatJsonPointer({port[0], port[1]});
    std::vector<ordered_json> lines{add(path, json::object()), remove(path)};
    if (at(portPath)) return {"Add " + path + " and remove it.", std::move(lines)};
    bool const hasHost = at(hostPath).has_value();
    json const members = {{port[2], {{port[3], json::object()}}}};
    lines.insert(lines.begin(), hasHost ? add(portPath, json::object()) : add(hostPath, members));
    lines.push_back(remove(hasHost ? portPath : hostPath));
    return {"Add " + portPath + ", then add " + path + " and remove it; the port may leave again.",
            std::move(lines)};
}

Remedy Remedies::destination(Stray const & edge, std::string const & key) const {
    std::string const path = joinJsonPointer(joinJsonPointer(edge.path, "toPort"), key);
    auto const flag = at(path);
    if (flag && edge.isFollowed) {
        return {"Change the flag " + path + " and change it back.",
                {add(path, !flag->get<bool>()), add(path, *flag)}};
    }
    return object(edge);
}

Remedy Remedies::entry(std::string const & collectionPath, std::string const & key,
                       std::optional<std::string> const & source) const {
    if (source) {
        std::string const path = joinJsonPointer(collectionPath, *source);
        return {"Set " + path + " to null and back.", {add(path, nullptr), add(path, *at(path))}};
    }
    std::string const path = joinJsonPointer(collectionPath, key);
    auto const own = at(path);
    if (!own) return {"Add " + path + ", as null, and remove it.", {add(path, nullptr), remove(path)}};
    if (own->is_null()) return {"Remove " + path + ".", {remove(path)}};
    return removeAndAdd(path, *own);
}

}  // namespace TopologyTools
