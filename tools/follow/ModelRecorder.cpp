#include "tools/follow/ModelRecorder.h"

#include <cstdint>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <type_traits>

#include "tools/document/ModelRenderer.h"
#include "tools/document/PathStep.h"
#include "tools/document/Resolver.h"

namespace TopologyTools {
namespace {

using nlohmann::ordered_json;
using Vel::GenericIf;
using Kind = MemberShape::Kind;

void write(ordered_json const & scalar, JsonSink & sink) {
    if (scalar.is_boolean())
        sink.boolean(scalar.get<bool>());
    else if (scalar.is_number())
        sink.number(scalar.get<std::uint32_t>());
    else if (scalar.is_string())
        sink.string(scalar.get_ref<std::string const &>());
    else
        sink.null();
}

std::string_view op(bool wasThere, bool isThere) {
    if (!isThere) return "remove";
    return wasThere ? "replace" : "add";
}

// The JSON text of what `write` gives a sink.
template <class Write>
std::string textOf(Write const & write) {
    std::ostringstream out;
    JsonTextSink sink(out, -1);
    write(sink);
    return std::move(out).str();
}

// The entries of one collection, of a map keyed by collection and key.
template <class Iterator>
struct Entries {
    Iterator first;
    Iterator last;

    Iterator begin() const { return first; }
    Iterator end() const { return last; }
    bool empty() const { return first == last; }
};
template <class Map>
auto entriesOf(Map & map, MemberShape const & collection) {
    // Not equal_range, which walks over all of them.
    auto const first = map.lower_bound(&collection);
    return Entries<std::remove_const_t<decltype(first)>>{first, map.upper_bound(&collection)};
}

// Whether the collection has an entry under another key.
template <class Map>
bool hasAnother(Map const & map, MemberShape const & collection, std::string const & key) {
    auto const entries = entriesOf(map, collection);
    if (entries.empty()) return false;
    return entries.begin()->first.second != key || std::next(entries.begin()) != entries.end();
}

}  // namespace

class ModelRecorder::Node final : public ObjectFollower {
public:
    Node(ModelRecorder & recorder, Node const * owner, MemberShape const * collection, std::string key,
         ObjectShape const & itsShape, GenericIf const & itsObject)
        : shape(itsShape),
          object(itsObject),
          key_(std::move(key)),
          collectionStep_{owner ? owner->at() : nullptr, collection ? collection->name() : ""},
          step_{&collectionStep_, key_},
          isRoot_(!owner),
          recorder_(recorder),
          reactor_(recorder.follow_(object, *this)) {}
    ~Node() override { reactor_->notifierIs(nullptr); }

    PathStep const * at() const { return isRoot_ ? nullptr : &step_; }

    void attributeChanged(std::string_view name) override { recorder_.update(*this, member(name), ""); }
    void entryChanged(std::string_view name, GenericIf const & key) override {
        MemberShape const & collection = member(name);
        if (collection.element)
            recorder_.entityChanged(*this, collection, key);
        else
            recorder_.update(*this, collection, collection.keyText(key));
    }
    void entriesChanged(std::string_view name) override {
        MemberShape const & collection = member(name);
        std::map<std::string, GenericIf> keys;
        auto const shown = [&](auto const & entry) {
            keys.emplace(entry.first.second, *collection.key(entry.first.second));
        };
        for (auto const & entry : entriesOf(places, collection)) shown(entry);
        for (auto const & entry : entriesOf(members, collection)) shown(entry);
        for (auto const & entry : object.members(name)) {
            keys.emplace(collection.keyText(entry.key()), entry.key());
        }
        for (auto const & [text, key] : keys) entryChanged(name, key);
    }

    void write(JsonSink & sink) const {
        sink.beginObject();
        for (MemberShape const & member : shape.members) {
            if (member.isCollection()) {
                writeEntries(member, sink);
            } else if (auto const place = places.find({&member, ""}); place != places.end()) {
                if (!place->second.shown) continue;
                sink.name(member.name());
                TopologyTools::write(*place->second.shown, sink);
            }
        }
        sink.endObject();
    }

    std::string text() const {
        return textOf([this](JsonSink & sink) { write(sink); });
    }

    ObjectShape const & shape;
    GenericIf const object;
    Places places;  // Those that show something or refer to something.
    Members members;

private:
    MemberShape const & member(std::string_view name) const {
        if (MemberShape const * const found = shape.member(name)) return *found;
        throw std::logic_error("documents show no " + std::string(name) + " of " +
                               std::string(shape.type->name()));
    }

    void writeEntries(MemberShape const & collection, JsonSink & sink) const {
        auto const objects = entriesOf(members, collection);
        auto const values = entriesOf(places, collection);
        if (objects.empty() && values.empty()) return;
        sink.name(collection.name());
        sink.beginObject();
        for (auto const & [place, node] : objects) {
            sink.name(place.second);
            node->write(sink);
        }
        for (auto const & [place, value] : values) {
            sink.name(place.second);
            TopologyTools::write(*value.shown, sink);
        }
        sink.endObject();
    }

    std::string const key_;
    PathStep const collectionStep_;
    PathStep const step_;
    bool const isRoot_;
    ModelRecorder & recorder_;
    Vel::Ptr<Vel::PtrInterface::NotifieeConst> const reactor_;
};

ModelRecorder::ModelRecorder(GenericIf const & root, Follow follow, Tell tell)
    : shape_(*root.type()),
      follow_(std::move(follow)),
      tell_(std::move(tell)),
      pathOf_([this](GenericIf const & object) -> std::optional<std::string> {
          auto const node = nodes_.find(identityOf(object));
          if (node == nodes_.end()) return std::nullopt;
          return pointerTo(node->second->at());
      }) {
    std::vector<Identity> entered;
    root_ = enter(nullptr, nullptr, "", shape_.root(), root, entered);
    showAll(*root_);
}

ModelRecorder::~ModelRecorder() = default;

PatchOperation ModelRecorder::whole() const { return {"replace", "", root_->text()}; }

void ModelRecorder::entityChanged(Node & owner, MemberShape const & collection, GenericIf const & key) {
    PlaceKey const place(&collection, collection.keyText(key));
    GenericIf const object = collection.lookUp(owner.object, key);
    std::unique_ptr<Node> gone;  // Until all is told: an identity in use is not given to another object.
    if (auto const found = owner.members.find(place); found != owner.members.end()) {
        if (found->second->object == object) return;
        gone = std::move(found->second);
        owner.members.erase(found);
    } else if (object.isNull()) {
        return;
    }
    std::vector<Identity> moved;
    if (gone) leave(*gone, moved);
    Node const * made = nullptr;
    if (!object.isNull()) {
        auto node = enter(&owner, &collection, place.second, *collection.element, object, moved);
        showAll(*node);
        made = (owner.members[place] = std::move(node)).get();
    }
    tellEntry(owner, place, gone != nullptr, !hasAnother(owner.members, collection, place.second),
              made ? std::optional(made->text()) : std::nullopt);
    tellReferrers(moved);
}

std::unique_ptr<ModelRecorder::Node> ModelRecorder::enter(Node * owner, MemberShape const * collection,
                                                          std::string key, ObjectShape const & shape,
                                                          GenericIf const & object,
                                                          std::vector<Identity> & moved) {
    auto node = std::make_unique<Node>(*this, owner, collection, std::move(key), shape, object);
    if (collection) requireKey(*collection, node->at()->token, node->at());
    nodes_[identityOf(object)] = node.get();
    moved.push_back(identityOf(object));
    for (MemberShape const & member : shape.members) {
        if (!member.element) continue;
        for (auto const & entry : object.members(member.name())) {
            std::string const text = member.keyText(entry.key());
            node->members[{&member, text}] =
                enter(node.get(), &member, text, *member.element, entry.object(), moved);
        }
    }
    return node;
}

void ModelRecorder::leave(Node & node, std::vector<Identity> & moved) {
    nodes_.erase(identityOf(node.object));
    moved.push_back(identityOf(node.object));
    for (auto & place : node.places) targetIs(node, place, nullptr);
    for (auto const & [place, member] : node.members) leave(*member, moved);
}

void ModelRecorder::showAll(Node & node) {
    for (MemberShape const & member : node.shape.members) {
        if (!member.isCollection()) {
            show(node, member, "");
        } else if (!member.element) {
            for (auto const & entry : node.object.members(member.name())) {
                show(node, member, member.keyText(entry.key()));
            }
        }
    }
    for (auto const & [place, member] : node.members) showAll(*member);
}

void ModelRecorder::tellReferrers(std::vector<Identity> const & targets) {
    std::map<std::string, Referrer> byPath;
    for (Identity const target : targets) {
        auto const found = referrers_.find(target);
        if (found == referrers_.end()) continue;
        for (auto const & [node, place] : found->second) {
            PathStep const member{node->at(), place->first->name()};
            PathStep const entry{&member, place->second};
            byPath.emplace(pointerTo(&entry), Referrer(node, place));
        }
    }
    for (auto const & [path, referrer] : byPath) {
        PlaceKey const place = *referrer.second;  // The place may go.
        update(*referrer.first, *place.first, place.second);
    }
}

void ModelRecorder::update(Node & owner, MemberShape const & member, std::string const & key) {
    Change const change = show(owner, member, key);
    if (change.before == change.now) return;
    std::optional<std::string> value;
    if (change.now) value = textOf([&](JsonSink & sink) { write(*change.now, sink); });
    bool const wasThere = change.before.has_value();
    if (member.isCollection())
        tellEntry(owner, {&member, key}, wasThere, !hasAnother(owner.places, member, key), std::move(value));
    else
        tellAttribute(owner, member, wasThere, std::move(value));
}

ModelRecorder::Change ModelRecorder::show(Node & owner, MemberShape const & member, std::string const & key) {
    auto const place = owner.places.try_emplace({&member, key}).first;
    Place now = render(owner, member, key);
    Change change{std::exchange(place->second.shown, now.shown), now.shown};
    targetIs(owner, *place, now.target);
    if (!now.shown && !now.target) owner.places.erase(place);
    return change;
}

ModelRecorder::Place ModelRecorder::render(Node const & owner, MemberShape const & member,
                                           std::string const & key) {
    ++rendered_;
    JsonTreeSink sink;
    ModelRenderer renderer(sink, pathOf_);
    PathStep const here{owner.at(), member.name()};
    if (!member.isCollection()) {
        GenericIf const value = member.read(owner.object);
        if (value == member.defaultValue) return {};
        renderer.member(owner.object, member, &here);
        ordered_json shown = sink.takeRoot();
        if (member.kind != Kind::reference) return {std::move(shown)};
        return {shown.is_null() ? std::nullopt : std::optional(std::move(shown)), identityOf(value)};
    }
    PathStep const entry{&here, key};
    requireKey(member, key, &entry);
    GenericIf const modelKey = *member.key(key);
    if (!holdsKey(owner.object, member, modelKey)) return {};
    GenericIf const value = member.lookUp(owner.object, modelKey);
    renderer.entry(value, member, &entry);
    return {sink.takeRoot(), member.holdsReferences ? identityOf(value) : nullptr};
}

void ModelRecorder::targetIs(Node & owner, Places::value_type & place, Identity target) {
    Identity & current = place.second.target;
    if (current == target) return;
    Referrer const referrer(&owner, &place.first);
    if (current) {
        auto const known = referrers_.find(current);
        known->second.erase(referrer);
        if (known->second.empty()) referrers_.erase(known);
    }
    if (target) referrers_[target].insert(referrer);
    current = target;
}

void ModelRecorder::tellAttribute(Node const & owner, MemberShape const & member, bool wasThere,
                                  std::optional<std::string> value) const {
    PathStep const here{owner.at(), member.name()};
    tell_({op(wasThere, value.has_value()), pointerTo(&here), std::move(value)});
}

void ModelRecorder::tellEntry(Node const & owner, PlaceKey const & place, bool wasThere, bool isAlone,
                              std::optional<std::string> value) const {
    PathStep const collection{owner.at(), place.first->name()};
    PathStep const entry{&collection, place.second};
    bool const isThere = value.has_value();
    if (isAlone && !wasThere) tell_({"add", pointerTo(&collection), "{}"});
    tell_({op(wasThere, isThere), pointerTo(&entry), std::move(value), true});
    if (isAlone && !isThere) tell_({"remove", pointerTo(&collection)});
}

}  // namespace TopologyTools
