#include "tests/reflection/support/Reflected.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace TestSupport {

using Vel::GenericIf;

Reflected::Reflected(void (*fill)(NetworkTopology::StatusV2 &)) {
    fill(*models.v2);
    translator =
        Vel::construct(kTranslator, {{"name", Vel::Name("sm")}, {"v2", models.v2}, {"v3", models.v3}});
    finder = Vel::construct(kFinder, {{"hostV2", host()}, {"hostV3", models.v3->host("a")}});
}

GenericIf Reflected::sample(Vel::VelType const & type) const {
    std::vector<GenericIf> const values = {
        Vel::Name("a"),
        true,
        7U,
        GenericIf::wrap(NetworkTopology::PortTypeV2::portGroup),
        models.v2,
        models.v3,
        host(),
        host()->port("p"),
        host()->portGroup("g"),
        host()->mlag("m"),
        models.v2->edge(host()->port("p")),
        models.v3->host("a"),
        models.v3->host("a")->port("p"),
        models.v3->host("a")->mlag("m"),
        GenericIf::wrap(models.v3->host("a")->port("p")->portKey()),
    };
    auto const found = std::find_if(values.begin(), values.end(),
                                    [&](GenericIf const & value) { return value.type()->isA(type); });
    if (found != values.end()) return *found;
    ADD_FAILURE() << "no sample of " << type.name();
    return nullptr;
}

std::vector<GenericIf> Reflected::samples(std::span<Vel::VelArg const> args) const {
    std::vector<GenericIf> values;
    for (Vel::VelArg const & arg : args) values.push_back(sample(*arg.type));
    return values;
}

GenericIf Reflected::key(Vel::VelAttr const & attr) const {
    return sample(attr.keyType() ? *attr.keyType() : Vel::Name::_velType);
}

std::string inWords(GenericIf const & value) {
    if (value.isNull()) return "null";
    if (!value.isObject()) return value.strRep();
    std::string const type = value.typeName();
    std::string text = type.substr(type.rfind(':') + 1);
    if (value.type()->attribute("name")) return text + ' ' + inWords(value.attr("name"));
    if (!value.type()->attribute("fromPort")) return text;
    GenericIf const fromPort = value.attr("fromPort");
    return text + " from " + (fromPort.isObject() ? inWords(fromPort.attr("name")) : inWords(fromPort));
}

std::vector<std::string> inWords(GenericIf::Members const & members) {
    std::vector<std::string> all;
    for (auto const & entry : members) all.push_back(inWords(entry.key()) + ": " + inWords(entry.object()));
    std::sort(all.begin(), all.end());
    return all;
}

std::string raised(std::function<void()> const & act) {
    try {
        act();
    } catch (Vel::RangeException const & error) {
        return std::string("range: ") + error.what();
    } catch (Vel::OpNotSupportedException const & error) {
        return std::string("not supported: ") + error.what();
    }
    return "nothing";
}

}  // namespace TestSupport
