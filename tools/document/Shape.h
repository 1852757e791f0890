// How the objects of a model appear in a document, worked out from their type records.
//
// An attribute is a member of its object's JSON object when it can be both read and set, or when the making
// of the object takes it (the secondary name of an MLAG); a collection is one when its members can be walked,
// looked up, added and removed. What else a record lists (keys, back-references, functions) follows from
// where an object stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "platform/Vel/VelType.h"

namespace TopologyTools {

struct ObjectShape;

// One member of an object.
struct MemberShape {
    enum class Kind : std::uint8_t {
        value,
        reference,        // a JSON Pointer, or null
        collection,       // objects by key
        valueCollection,  // values or references by key
    };
    enum class KeyKind : std::uint8_t {
        none,    // no collection
        name,    // the text itself
        text,    // the text of a value
        object,  // a JSON Pointer
    };

    Vel::VelAttr const * attr;
    Kind kind;
    KeyKind keyKind = KeyKind::none;
    bool isSettable = false;
    // Where the argument stands that makes the object with this value; the key is argument 0.
    std::optional<std::size_t> makeArgument = std::nullopt;
    // Of a value collection: whether its entries refer to objects.
    bool holdsReferences = false;
    // Of a value collection: whether an entry stands under its target's name and under no other key.
    bool keyIsTargetsName = false;
    // Of a collection: whether references may lead to its members or to what they hold.
    bool holdsTargets = false;
    // Of a collection.
    ObjectShape const * element = nullptr;
    // Of a value that has one.
    std::optional<Vel::GenericIf> defaultValue = std::nullopt;

    std::string_view name() const { return attr->name(); }
    Vel::VelType const & type() const { return *attr->type(); }
    bool isCollection() const { return keyKind != KeyKind::none; }
    // The attribute of `owner`. REQUIRES: a value or reference.
    Vel::GenericIf read(Vel::GenericIf const & owner) const { return owner.operate({Vel::kRead, attr}, {}); }
    // What the collection of `owner` holds under a key; null for nothing.
    Vel::GenericIf lookUp(Vel::GenericIf const & owner, Vel::GenericIf const & key) const {
        return owner.operate({Vel::kLookUp, attr}, {&key, 1});
    }
    // For messages: what a collection holds, as in "expected ...".
    std::string expectedEntry() const;
    // The key that `text` stands for; nothing when it stands for none. REQUIRES: keys are names or values.
    std::optional<Vel::GenericIf> key(std::string_view text) const;
    // The reverse. REQUIRES: keys are names or values.
    std::string keyText(Vel::GenericIf const & key) const;
};

// The members of an object, those of base classes first, each in the order of its record.
struct ObjectShape {
    Vel::VelType const * type;
    // The collection in which the object stands; null for the root.
    Vel::VelAttr const * collection;
    std::vector<MemberShape> members;

    // Null when there is none of that name.
    MemberShape const * member(std::string_view name) const;
    // For messages: what members there are, as in "expected ...".
    std::string expectedMember() const;
};

// The shapes of a root object and of all that it holds.
class DocumentShape {
public:
    // Throws std::logic_error for records that documents cannot show: a making that takes a value which its
    // object does not tell, or which has no default.
    explicit DocumentShape(Vel::VelType const & root);
    DocumentShape(DocumentShape const &) = delete;
    DocumentShape & operator=(DocumentShape const &) = delete;

    ObjectShape const & root() const { return objects_.front(); }
    // The root's first; one for every collection.
    std::deque<ObjectShape> const & objects() const { return objects_; }

private:
    ObjectShape & objectShape(Vel::VelType const & type, Vel::VelAttr const * collection);
    void findTargets();

    std::deque<ObjectShape> objects_;
};

// The name of a type without its namespace, for messages.
std::string_view shortName(Vel::VelType const & type);
// The same with the article that it takes: "a PortV2", "an Edge".
std::string nounFor(Vel::VelType const & type);

}  // namespace TopologyTools
