#include "tools/call/NamedObjects.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "tools/document/ValueForm.h"
#include "tools/json/InputError.h"
#include "tools/json/JsonPointer.h"

namespace TopologyTools {
namespace {

using Vel::GenericIf;
using Vel::VelArg;
using Vel::VelType;

std::optional<std::uint32_t> number(std::string const & word) {
    std::uint32_t value = 0;
    char const * const end = word.data() + word.size();
    auto const read = std::from_chars(word.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return value;
}

// Pointers to the object at a place, or around it, and to all that this stands in, the innermost first. Empty
// for what is no pointer, and for the document itself.
std::vector<std::string> placesAbove(std::string const & pointer) {
    std::vector<std::string> all;
    try {
        std::vector<std::string> tokens = parseJsonPointer(pointer);
        // An object takes two: its collection and its key.
        for (tokens.resize(tokens.size() / 2 * 2); !tokens.empty(); tokens.resize(tokens.size() - 2)) {
            all.push_back(formatJsonPointer(tokens));
        }
    } catch (JsonPointerError const &) {
    }
    return all;
}

std::string constructorOf(VelType const & type) { return "the constructor of " + std::string(type.name()); }

}  // namespace

NamedObjects::NamedObjects(ConstructorWords const & words, Fill const & fill, bool attachedBefore)
    : input_(Vel::construct("NetworkTopology::StatusV2", {})),
      output_(Vel::construct("NetworkTopologyV3::Status", {})) {
    if (!attachedBefore) fill(input_.root());
    translator_ = construct(translatorType(), words, {});
    if (attachedBefore) fill(input_.root());
}

VelType const & NamedObjects::translatorType() {
    constexpr std::string_view name = "NetworkTopologyAggregator::V2Sm";
    VelType const * const type = Vel::typeNode(name);
    if (!type) throw Vel::RangeException("type " + std::string(name) + " is not registered");
    return *type;
}

GenericIf NamedObjects::present(VelType const & type) const {
    for (GenericIf const & object : {input_.root(), output_.root(), translator_}) {
        if (object.type() == &type) return object;
    }
    return nullptr;
}

GenericIf NamedObjects::construct(VelType const & type, ConstructorWords const & words,
                                  std::vector<std::string> const & places) const {
    std::string const where = constructorOf(type);
    std::vector<std::string> known;
    for (auto const & [name, word] : words) {
        bool const isArgument = std::any_of(type.ctorArgs().begin(), type.ctorArgs().end(),
                                            [&name = name](VelArg const & arg) { return arg.name == name; });
        if (!isArgument) throw Vel::RangeException(where + " has no argument " + quotedText(name));
        known.push_back(word);
    }
    known.insert(known.end(), places.begin(), places.end());
    std::vector<GenericIf> args;
    for (VelArg const & arg : type.ctorArgs()) {
        auto const word = words.find(arg.name);
        args.push_back(word == words.end() ? byDefault(where, arg, known)
                                           : argument(where, arg, word->second));
    }
    return Vel::construct(type, args);
}

GenericIf NamedObjects::byDefault(std::string_view where, VelArg const & arg,
                                  std::vector<std::string> const & places) const {
    if (arg.type->kind() != VelType::Kind::object) return argument(where, arg, "topology-sync");
    ModelDocument const & document = documentOf(*arg.type);
    if (document.root().type() == arg.type) return document.root();
    bool isTold = false;
    for (std::string const & place : places) {
        for (std::string const & pointer : placesAbove(place)) {
            isTold = true;
            GenericIf object = document.object(pointer);
            if (!object.isNull() && object.type()->isA(*arg.type)) return object;
        }
    }
    for (MemberShape const & member : document.shape().root().members) {
        if (isTold || member.kind != MemberShape::Kind::reference || !member.type().isA(*arg.type)) continue;
        GenericIf object = document.root().attr(member.name());
        if (!object.isNull()) return object;
    }
    Vel::GenericIfImpl::throwArgument(
        where, arg.name, ("is missing; give it with --with " + std::string(arg.name) + "=POINTER").c_str());
}

ModelDocument const & NamedObjects::documentOf(VelType const & type) const {
    return output_.holds(type) ? output_ : input_;
}

GenericIf NamedObjects::parsed(VelType const & type, std::string const & word) const {
    if (type.kind() == VelType::Kind::object) {
        if (word == "null") return nullptr;
        GenericIf object = documentOf(type).object(word);
        if (!object.isNull()) return object;
        throw Vel::RangeException("expected the JSON Pointer of a " + std::string(type.name()) +
                                  " that is there, or null; found " + quotedText(word));
    }
    auto const value = type.kind() == VelType::Kind::enumeration ? number(word) : std::nullopt;
    return value ? Vel::enumeratorFromNumber(type, *value) : type.fromStrRep(word);
}

GenericIf NamedObjects::argument(std::string_view where, VelArg const & arg, std::string const & word) const {
    try {
        return parsed(*arg.type, word);
    } catch (Vel::RangeException const & wrong) {
        Vel::GenericIfImpl::throwArgument(where, arg.name, wrong.what());
    } catch (JsonPointerError const & wrong) {
        Vel::GenericIfImpl::throwArgument(where, arg.name, wrong.what());
    }
}

}  // namespace TopologyTools
