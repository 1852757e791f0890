#include "tests/Vel/Rack.h"

#include "platform/Vel/VelAttrs.h"

namespace VelTest {
namespace {

constexpr Vel::VelEnumerator sides[] = {{"unknown", 0}, {"front", 1}, {"back", 2}};

}  // namespace

constinit Vel::VelType const _velType_Side{{
    .name = "VelTest::Side",
    .fromStrRep = Vel::GenericIfImpl::enumeratorFromStrRep,
    .kind = Vel::VelType::Kind::enumeration,
    .toStrRep = Vel::GenericIfImpl::enumeratorToStrRep,
    .enumerators = sides,
}};

namespace {

constexpr Vel::VelArg nameArg[] = {{"name", &Vel::Name::_velType}};
constexpr Vel::VelArg loadArgs[] = {{"name", &Vel::Name::_velType},
                                    {"load", Vel::VelTypeOf<unsigned>::record}};
constexpr Vel::VelArg heightWithArgs[] = {{"more", Vel::VelTypeOf<unsigned>::record},
                                          {"doubled", Vel::VelTypeOf<bool>::record}};

using Attrs = Vel::Attrs<Rack>;

constexpr Vel::VelAttr attributes[] = {
    Attrs::immutable<&Rack::name>("name", 1),
    Attrs::value<&Rack::height, &Rack::heightIs>("height", 2),
    Attrs::value<&Rack::side, &Rack::sideIs>("side", 3),
    Attrs::value<&Rack::beside, &Rack::besideIs>("beside", 4),
    Attrs::function<&Rack::heightWith, unsigned, bool>("heightWith", 5, heightWithArgs),
    Attrs::function<&Rack::reset>("reset", 6, {}),
    Attrs::collection<Rack, Vel::Name, [](Rack & o) { return o.drawer(); },
                      [](Rack & o, Vel::Name const & key) { return o.drawer(key); },
                      [](Rack & o, Vel::Ptr<Rack> const & drawer) { return o.drawerIs(drawer); },
                      &Rack::drawerDel, [](Rack & o, Vel::Name const & key) { return o.drawerIs(key); },
                      Vel::Name>("drawer", 7, "name", nameArg),
    Attrs::valueCollection<Vel::Name, unsigned, [](Rack & o) { return o.load(); },
                           [](Rack & o, Vel::Name const & key) { return o.load(key); }, &Rack::loadIs,
                           &Rack::loadDel>("load", 8, "name", loadArgs),
};

}  // namespace

constinit Vel::VelType const Rack::_velType{{
    .name = "VelTest::Rack",
    .base = &Vel::PtrInterface::_velType,
    .attributes = attributes,
    .ctorArgs = nameArg,
    .fromPtrInterface = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromPtrInterface,
    .fromStrRep = Vel::GenericIfImpl::GenericIfPtrInterface<Vel::PtrInterface>::fromStrRep,
    .genericIfFromCtorArgs = Vel::GenericIfImpl::fromCtorArgs<
        Rack, [](Vel::Name const & name) { return Vel::Ptr<Rack>(new Rack(name)); }, Vel::Name>,
    .genericIfAttributeOp = Vel::GenericIfImpl::attributeOp,
    .genericIfIterator = Vel::GenericIfImpl::iterator,
    .genericIfIteratorKey = Vel::GenericIfImpl::iteratorKey,
}};

namespace {

Vel::TypeRegistration const registration(Rack::_velType);

}  // namespace
}  // namespace VelTest
