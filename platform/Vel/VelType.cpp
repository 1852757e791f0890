#include "platform/Vel/VelType.h"

#include <algorithm>
#include <mutex>

#include "platform/Vel/GenericIf.h"

namespace Vel {

namespace {

struct Registry {
    std::mutex mutex;
    std::vector<VelType const *> types;
};

// Never destroyed: libraries unregister their types while the process ends, in any order.
Registry & registry() {
    static auto * const instance = new Registry;
    return *instance;
}

GenericIf boolFromStrRep(VelType const &, std::string_view text) {
    if (text == "true") return true;
    if (text == "false") return false;
    throw RangeException("expected true or false, found \"" + std::string(text) + "\"");
}

GenericIf unsignedFromStrRep(VelType const &, std::string_view text) {
    std::uint64_t value = 0;
    bool good = !text.empty() && text.size() <= 10;
    for (char const c : text) {
        good = good && c >= '0' && c <= '9';
        if (good) value = value * 10 + static_cast<unsigned>(c - '0');
    }
    if (!good || value > 0xffffffffu) {
        throw RangeException("expected a number from 0 to 4294967295, found \"" + std::string(text) + "\"");
    }
    return static_cast<unsigned int>(value);
}

}  // namespace

// Named without angle brackets, between which clang-format loses the place of `const`.
using BuiltinBool = Builtin<bool>;
using BuiltinUnsigned = Builtin<unsigned int>;

constinit VelType const BuiltinBool::_velType{{
    .name = "bool",
    .fromStrRep = boolFromStrRep,
    .kind = VelType::Kind::value,
    .toStrRep = [](GenericIf const & value) { return std::string(value.as<bool>() ? "true" : "false"); },
}};

constinit VelType const BuiltinUnsigned::_velType{{
    .name = "unsigned int",
    .fromStrRep = unsignedFromStrRep,
    .kind = VelType::Kind::value,
    .toStrRep = [](GenericIf const & value) { return std::to_string(value.as<unsigned int>()); },
}};

constinit VelType const _velType_void{{.name = "void", .kind = VelType::Kind::nothing}};

constinit VelType const String::_velType{{
    .name = "Vel::String",
    .fromStrRep = [](VelType const &, std::string_view text) { return GenericIf(String(text)); },
    .kind = VelType::Kind::value,
    .toStrRep = [](GenericIf const & value) { return std::string(value.as<String>().view()); },
}};

constinit VelType const Name::_velType{{
    .name = "Vel::Name",
    .fromStrRep = [](VelType const &, std::string_view text) { return GenericIf(Name(text)); },
    .kind = VelType::Kind::value,
    .toStrRep = [](GenericIf const & value) { return std::string(value.as<Name>().view()); },
}};

constinit VelType const PtrInterface::_velType{{
    .name = "Vel::PtrInterface",
    .fromPtrInterface = GenericIfImpl::GenericIfPtrInterface<PtrInterface>::fromPtrInterface,
    .fromStrRep = GenericIfImpl::GenericIfPtrInterface<PtrInterface>::fromStrRep,
}};

namespace {

TypeRegistration const registrations[] = {
    TypeRegistration(Builtin<bool>::_velType), TypeRegistration(Builtin<unsigned int>::_velType),
    TypeRegistration(_velType_void),           TypeRegistration(String::_velType),
    TypeRegistration(Name::_velType),          TypeRegistration(PtrInterface::_velType),
};

}  // namespace

VelAttr const * VelType::attribute(std::string_view name) const noexcept {
    for (VelType const * type = this; type; type = type->base()) {
        for (VelAttr const & attr : type->attributes()) {
            if (attr.name() == name) return &attr;
        }
    }
    return nullptr;
}

bool VelType::isA(VelType const & other) const noexcept {
    VelType const * type = this;
    while (type && type != &other) type = type->base();
    return type != nullptr;
}

GenericIf VelType::genericIf(void const * object, bool isConst) const {
    if (!object) return nullptr;
    if (!record_.fromPtrInterface)
        throw OpNotSupportedException(std::string(name()) + " is not an object type");
    return record_.fromPtrInterface(static_cast<PtrInterface const *>(object), isConst);
}

GenericIf VelType::fromStrRep(std::string_view text) const {
    if (!record_.fromStrRep) {
        throw OpNotSupportedException(std::string(name()) + " has no text representation");
    }
    return record_.fromStrRep(*this, text);
}

std::string VelType::strRep(GenericIf const & value) const {
    if (!record_.toStrRep) throw OpNotSupportedException(std::string(name()) + " has no text representation");
    return record_.toStrRep(value);
}

void typeNodeIs(VelType const * type) {
    if (!type) throwRangeException("null type given to Vel::typeNodeIs");
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    for (VelType const * known : all.types) {
        if (known->name() == type->name()) {
            throw RangeException("type " + std::string(type->name()) + " is registered already");
        }
    }
    all.types.push_back(type);
}

void typeNodeDel(VelType const * type) noexcept {
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    std::erase(all.types, type);
}

VelType const * typeNode(std::string_view name) {
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    auto const found = std::find_if(all.types.begin(), all.types.end(),
                                    [&](VelType const * type) { return type->name() == name; });
    return found == all.types.end() ? nullptr : *found;
}

std::vector<VelType const *> typeNodes() {
    Registry & all = registry();
    std::lock_guard const lock(all.mutex);
    return all.types;
}

}  // namespace Vel
