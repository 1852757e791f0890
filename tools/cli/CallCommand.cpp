#include <cassert>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/Vel/GenericIf.h"
#include "tools/call/CallResult.h"
#include "tools/call/NamedObjects.h"
#include "tools/call/NamedOperation.h"
#include "tools/cli/Output.h"
#include "tools/cli/Subcommand.h"
#include "tools/cli/TopologyOptions.h"
#include "tools/cli/TypeNames.h"
#include "tools/follow/FollowVersion3.h"
#include "tools/follow/ModelRecorder.h"
#include "tools/json/InputError.h"

namespace TopologyTools {
namespace {

using nlohmann::ordered_json;
using Vel::GenericIf;
using Vel::VelAttr;
using Vel::VelType;

struct CallOptions {
    TopologyOptions topology;
    std::string attribute;
    std::vector<std::string> arguments;
    std::vector<std::string> with;
    std::optional<std::string> key;
    std::optional<std::string> fromKey;
    std::vector<std::string> add;
    std::optional<std::string> remove;
    std::optional<std::string> set;
    bool effect = false;
    std::string format = "text";
};

// "TYPE.ATTRIBUTE", taken apart.
struct NamedAttribute {
    VelType const & type;
    VelAttr const & attr;
};

NamedAttribute namedAttribute(std::string const & text) {
    std::size_t const dot = text.rfind('.');
    if (dot == std::string::npos) {
        throw std::invalid_argument("expected TYPE.ATTRIBUTE, such as V2Sm.toPortV3; found " +
                                    quotedText(text));
    }
    VelType const & type = typeNamed(text.substr(0, dot));
    if (VelAttr const * const attr = type.attribute(std::string_view(text).substr(dot + 1)))
        return {type, *attr};
    std::string names;
    for (VelAttr const & attr : type.attributes())
        names += (names.empty() ? "" : ", ") + std::string(attr.name());
    throw std::invalid_argument(std::string(type.name()) + " has no attribute " +
                                quotedText(std::string_view(text).substr(dot + 1)) + "; expected " +
                                (names.empty() ? "none, for it has none" : "one of " + names));
}

ConstructorWords constructorWords(std::vector<std::string> const & with) {
    ConstructorWords words;
    for (std::string const & one : with) {
        std::size_t const equals = one.find('=');
        if (equals == std::string::npos) {
            throw std::invalid_argument("--with: expected NAME=VALUE, found " + quotedText(one));
        }
        if (!words.emplace(one.substr(0, equals), one.substr(equals + 1)).second) {
            throw std::invalid_argument("--with: " + quotedText(one.substr(0, equals)) + " is given twice");
        }
    }
    return words;
}

// The one operation that the options tell.
NamedOperation operationOf(CallOptions const & options, VelAttr const & attr) {
    std::vector<NamedOperation> told;
    if (options.key) told.push_back({Vel::kLookUp, {*options.key}});
    if (options.fromKey) told.push_back({Vel::kIterate, {*options.fromKey}});
    if (!options.add.empty()) told.push_back({Vel::kAdd, options.add});
    if (options.remove) told.push_back({Vel::kRemove, {*options.remove}});
    if (options.set) told.push_back({Vel::kSet, {*options.set}});
    Vel::AttributeOperation const plain = plainOperation(attr);
    if (told.empty() && (plain == Vel::kCall || options.arguments.empty())) return {plain, options.arguments};
    if (told.size() == 1 && options.arguments.empty()) return told.front();
    throw std::invalid_argument(
        told.size() > 1 ? "expected one of --key, --from-key, --add, --remove and --set, found several"
                        : std::string(attr.owner()->name()) + "::" + std::string(attr.name()) +
                              (told.empty() ? " is no function and takes no ARG"
                                            : " takes no ARG beside an option that says what to do") +
                              ", found " + quotedText(options.arguments.front()));
}

GenericIf objectOf(VelType const & type, NamedObjects const & objects, ConstructorWords const & words,
                   NamedOperation const & operation) {
    GenericIf object = objects.present(type);
    if (object.isNull()) return objects.construct(type, words, operation.words);
    if (!words.empty() && &type != &NamedObjects::translatorType()) {
        throw std::invalid_argument("--with: the " + std::string(type.name()) + " is that of the topology");
    }
    return object;
}

// What an operation does to a version-3 model.
class Effect {
public:
    explicit Effect(ModelDocument const & output)
        : recorder_(output.root(), followVersion3,
                    [this](PatchOperation operation) { told_.push_back(std::move(operation)); }) {}

    std::string lines() const {
        std::string text;
        for (ordered_json const & operation : json()) text += operation.dump() + '\n';
        return text;
    }
    ordered_json json() const {
        std::vector<PatchOperation> operations = told_;
        sortEntries(operations);
        ordered_json list = ordered_json::array();
        for (PatchOperation const & operation : operations) {
            ordered_json one{{"op", operation.op}, {"path", operation.path}};
            if (operation.value) one["value"] = ordered_json::parse(*operation.value);
            list.push_back(std::move(one));
        }
        return list;
    }

private:
    std::vector<PatchOperation> told_;
    ModelRecorder recorder_;
};

int call(CallOptions const & options) {
    auto const & [type, attr] = namedAttribute(options.attribute);
    NamedOperation const operation = operationOf(options, attr);
    ConstructorWords const words = constructorWords(options.with);
    LoadedTopology const topology = read(options.topology);
    NamedObjects const objects(
        &type == &NamedObjects::translatorType() ? words : ConstructorWords(),
        [&](GenericIf const & input) {
            auto const status = input.as<NetworkTopology::StatusV2::Ptr>();
            assert(status);
            topology.fill(*status);
        },
        attachesBefore(options.topology));
    GenericIf const object = objectOf(type, objects, words, operation);
    std::optional<Effect> effect;
    if (options.effect) effect.emplace(objects.output());
    CallAnswer const answer = perform(operation, attr, object, objects);

    CallResult const result(objects);
    if (options.format == "json") {
        ordered_json json{{"result", result.json(answer, operation)}};
        if (effect) json["effect"] = effect->json();
        Output("-").write(json.dump(2, ' ', false, ordered_json::error_handler_t::replace) + '\n');
    } else {
        Output("-").write(result.text(answer, operation, attr, standardOutputWantsColours()) +
                          (effect ? effect->lines() : ""));
    }
    return kDone;
}

}  // namespace

Subcommand callCommand(CLI::App & program) {
    CLI::App * const command = program.add_subcommand(
        "call", "Call, read or walk an attribute of the translator or the finder by name");
    auto const options = std::make_shared<CallOptions>();
    addTopologyOptions(*command, options->topology);
    command
        ->add_option("TYPE.ATTRIBUTE", options->attribute,
                     "A type, with or without namespace, and one of its attributes;\n"
                     "inspect lists both")
        ->required()
        ->type_name("");
    command->add_option("ARG", options->arguments, "What a function takes, in the order that inspect tells")
        ->type_name("");
    command->add_option("--key", options->key, "Look up the member of that key")->type_name("KEY");
    command
        ->add_option("--from-key", options->fromKey,
                     "Walk a collection from the member of that key on, in the\n"
                     "collection's own order")
        ->type_name("KEY");
    command
        ->add_option("--add", options->add,
                     "Add an object; of a model's collection, make the member of\n"
                     "that key, or of what --add gives one after the other")
        ->type_name("OBJECT")
        ->allow_extra_args(false);
    command->add_option("--remove", options->remove, "Remove the member of that key")->type_name("KEY");
    command->add_option("--set", options->set, "Set a value or reference")->type_name("VALUE");
    command
        ->add_option("--with", options->with,
                     "What to construct the object with: an argument's name and\n"
                     "value; repeatable. By default a translator translates FILE,\n"
                     "and a finder searches the host that the ARG lies in, or the\n"
                     "local host")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    command->add_flag("--effect", options->effect,
                      "Print also what that did to the version-3 model, as JSON Patch\n"
                      "operations on its document");
    addChoice(*command, "--format", options->format, {"text", "json"},
              "text: a line, or a table (default); json: types and values");
    command->footer("A function is called, a collection walked and anything else read, unless an\n"
                    "option says otherwise. Values are written as in documents: a JSON Pointer for\n"
                    "an object (/host/leaf-1/port/eth-1), null for none, a plain name, the name or\n"
                    "number of an enumerator.\n"
                    "  topology-sync call FILE V2Sm.toPortV3 /host/leaf-1/port/eth-1\n"
                    "  topology-sync call FILE V2Sm.host --remove leaf-1 --effect");
    return {command, [options] { return call(*options); }};
}

}  // namespace TopologyTools
