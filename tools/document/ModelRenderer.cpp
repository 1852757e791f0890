#include "tools/document/ModelRenderer.h"

#include <algorithm>
#include <cstdio>

#include "tools/document/ValueForm.h"
#include "tools/json/SourceText.h"

namespace TopologyTools {
namespace {

using Vel::GenericIf;
using Vel::VelType;

// The bytes as they are where they are printable ASCII, in hexadecimal elsewhere.
std::string printable(std::string_view bytes) {
    std::string text;
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7f) {
            text += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(byte));
            text += escape;
        }
    }
    return text;
}

void requireUtf8(std::string_view text, PathStep const * at) {
    if (findInvalidUtf8(text) == std::string_view::npos) return;
    throw DocumentError(pointerTo(at),
                        "expected text encoded in UTF-8 (RFC 3629); found \"" + printable(text) + '"');
}

}  // namespace

DocumentError::DocumentError(std::string_view pointer, std::string const & message)
    : std::runtime_error(printable(pointer) + ": " + message) {}

void requireKey(MemberShape const & collection, std::string_view key, PathStep const * at) {
    requireUtf8(key, at);
    if (collection.keyKind == MemberShape::KeyKind::text && !collection.key(key)) {
        throw DocumentError(pointerTo(at), "expected " + expectedValue(*collection.attr->keyType()) +
                                               " as key; found \"" + printable(key) + '"');
    }
}

void ModelRenderer::object(GenericIf const & object, ObjectShape const & shape, PathStep const * at) {
    sink_.beginObject();
    for (MemberShape const & member : shape.members) {
        PathStep const here{at, member.name()};
        switch (member.kind) {
        case MemberShape::Kind::value: {
            GenericIf const value = member.read(object);
            if (value == member.defaultValue) break;
            sink_.name(member.name());
            this->value(value, &here);
            break;
        }
        case MemberShape::Kind::reference: {
            auto const path = pathOf_(member.read(object));
            if (!path) break;
            sink_.name(member.name());
            reference(path, &here);
            break;
        }
        case MemberShape::Kind::collection:
        case MemberShape::Kind::valueCollection: {
            auto const found = entries(object, member, &here);
            if (found.empty()) break;
            sink_.name(member.name());
            entries(found, member, &here);
            break;
        }
        }
    }
    sink_.endObject();
}

void ModelRenderer::member(GenericIf const & owner, MemberShape const & member, PathStep const * at) {
    switch (member.kind) {
    case MemberShape::Kind::value: value(member.read(owner), at); break;
    case MemberShape::Kind::reference: reference(pathOf_(member.read(owner)), at); break;
    case MemberShape::Kind::collection:
    case MemberShape::Kind::valueCollection: entries(entries(owner, member, at), member, at); break;
    }
}

void ModelRenderer::entry(GenericIf const & value, MemberShape const & collection, PathStep const * at) {
    if (collection.element) {
        object(value, *collection.element, at);
    } else if (collection.holdsReferences) {
        reference(pathOf_(value), at);
    } else {
        this->value(value, at);
    }
}

std::vector<ModelRenderer::Entry> ModelRenderer::entries(GenericIf const & owner, MemberShape const & member,
                                                         PathStep const * at) const {
    std::vector<Entry> found;
    for (auto const & entry : owner.members(member.name())) {
        GenericIf const key = entry.key();
        if (member.keyKind != MemberShape::KeyKind::object) {
            found.push_back({member.keyText(key), entry.object()});
        } else if (auto path = pathOf_(key)) {
            found.push_back({std::move(*path), entry.object()});
        }
    }
    for (Entry const & entry : found) {
        PathStep const here{at, entry.key};
        requireKey(member, entry.key, &here);
    }
    std::sort(found.begin(), found.end(), [](Entry const & a, Entry const & b) { return a.key < b.key; });
    return found;
}

void ModelRenderer::entries(std::vector<Entry> const & entries, MemberShape const & member,
                            PathStep const * at) {
    sink_.beginObject();
    for (Entry const & entry : entries) {
        sink_.name(entry.key);
        PathStep const here{at, entry.key};
        this->entry(entry.value, member, &here);
    }
    sink_.endObject();
}

void ModelRenderer::value(GenericIf const & value, PathStep const * at) {
    VelType const & type = *value.type();
    if (&type == Vel::VelTypeOf<bool>::record) return sink_.boolean(value.as<bool>());
    if (&type == Vel::VelTypeOf<unsigned int>::record) return sink_.number(value.as<unsigned int>());
    std::string const text = value.strRep();
    if (type.kind() == VelType::Kind::enumeration && !valueFromText(text, type)) {
        throw DocumentError(pointerTo(at), "expected " + expectedValue(type) + "; found " + text);
    }
    requireUtf8(text, at);
    sink_.string(text);
}

void ModelRenderer::reference(std::optional<std::string> const & path, PathStep const * at) {
    if (!path) return sink_.null();
    requireUtf8(*path, at);
    sink_.string(*path);
}

}  // namespace TopologyTools
