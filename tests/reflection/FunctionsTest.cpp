// Functions called by name answer, and leave behind, what the same calls do in compiled code.
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "finder/PortBaseFinder.h"
#include "platform/NetworkTopologyV3/MlagPort.h"
#include "tests/reflection/support/Reflected.h"

namespace {

namespace V2 = NetworkTopology;
using NetworkTopologyAggregator::PortBaseFinder;
using NetworkTopologyAggregator::V2Sm;
using TestSupport::Reflected;
using Vel::GenericIf;
using Vel::VelAttr;

class Functions : public testing::Test {
protected:
    // Everything that the first two hosts hold, something that no host holds, and null.
    std::vector<GenericIf> candidates() const {
        std::vector<GenericIf> all;
        for (char const * const name : {"a", "b"}) {
            auto const host = scene.host(name);
            all.emplace_back(host);
            for (auto const & port : host->port()) all.emplace_back(port);
            for (auto const & group : host->portGroup()) all.emplace_back(group);
            for (auto const & mlag : host->mlag()) all.emplace_back(mlag);
        }
        all.emplace_back(V2::HostV2::HostV2Is("a"));
        all.emplace_back(V2::PortV2::PortV2Is("p"));
        all.emplace_back(V2::PortGroupV2::PortGroupV2Is("g"));
        all.emplace_back(V2::MlagV2::MlagV2Is("m", ""));
        return all;
    }

    // Calls `act` with every candidate that the function takes.
    void forEveryArgument(GenericIf const & object, char const * function,
                          std::function<void(GenericIf const & arg)> const & act) const {
        SCOPED_TRACE(function);
        VelAttr const & attr = *object.type()->attribute(function);
        ASSERT_EQ(attr.args().size(), 1U);
        std::size_t met = 0;
        for (GenericIf const & arg : candidates()) {
            if (!arg.type()->isA(*attr.args()[0].type)) continue;
            act(arg);
            ++met;
        }
        act(nullptr);
        EXPECT_GE(met, 3U);
    }

    Reflected const scene{TestSupport::fillWithThreeHosts};
};

TEST_F(Functions, OfTheTranslatorLookUpWhatItsLookupsDo) {
    V2Sm & sm = *scene.translator.as<V2Sm::Ptr>();
    struct Lookup {
        char const * name;
        std::function<GenericIf(GenericIf const & arg)> compiled;
    };
    Lookup const lookups[] = {
        {"toHostV3",
         [&](GenericIf const & arg) { return GenericIf::of(sm.toHostV3(arg.as<V2::HostV2::PtrConst>())); }},
        {"toPortBaseV3",
         [&](GenericIf const & arg) {
             return GenericIf::of(sm.toPortBaseV3(arg.as<V2::PortBaseV2::PtrConst>()));
         }},
        {"toPortV3",
         [&](GenericIf const & arg) { return GenericIf::wrap(sm.toPortV3(arg.as<V2::PortV2::PtrConst>())); }},
        {"toPortGroupV3",
         [&](GenericIf const & arg) {
             return GenericIf::wrap(sm.toPortGroupV3(arg.as<V2::PortGroupV2::PtrConst>()));
         }},
        {"toMlagV3",
         [&](GenericIf const & arg) { return GenericIf::wrap(sm.toMlagV3(arg.as<V2::MlagV2::PtrConst>())); }},
    };
    for (Lookup const & lookup : lookups) {
        std::size_t found = 0;
        forEveryArgument(scene.translator, lookup.name, [&](GenericIf const & arg) {
            GenericIf const answer = scene.translator.call(lookup.name, {arg});
            EXPECT_EQ(answer, lookup.compiled(arg)) << TestSupport::inWords(arg);
            found += !answer.isNull();
        });
        EXPECT_GE(found, 2U);
    }
}

// Of one scene two finders: one is called by name, the other one as compiled.
TEST_F(Functions, OfTheFinderLeaveTheResultThatItsVisitsDo) {
    auto const compiled =
        NetworkTopologyAggregator::portBaseFinderFactory(scene.host(), scene.models.v3->host("a"));
    struct Visit {
        char const * name;
        std::function<void(GenericIf const & arg)> compiled;
    };
    Visit const visits[] = {
        {"visitPort", [&](GenericIf const & arg) { compiled->visitPort(arg.as<V2::PortV2::PtrConst>()); }},
        {"visitPortGroup",
         [&](GenericIf const & arg) { compiled->visitPortGroup(arg.as<V2::PortGroupV2::PtrConst>()); }},
        {"visitMlag", [&](GenericIf const & arg) { compiled->visitMlag(arg.as<V2::MlagV2::PtrConst>()); }},
        {"find", [&](GenericIf const & arg) { compiled->find(arg.as<V2::PortBaseV2::PtrConst>()); }},
    };
    for (Visit const & visit : visits) {
        std::size_t found = 0;
        forEveryArgument(scene.finder, visit.name, [&](GenericIf const & arg) {
            GenericIf const answer = scene.finder.call(visit.name, {arg});
            visit.compiled(arg);
            GenericIf const result = scene.finder.attr("result");
            EXPECT_EQ(result, GenericIf::of(compiled->result())) << TestSupport::inWords(arg);
            EXPECT_EQ(answer, std::string_view(visit.name) == "find" ? result : GenericIf());
            found += !result.isNull();
        });
        EXPECT_GE(found, 2U);
    }
}

// A port, a group and an MLAG of one name: each visit finds its own kind.
TEST_F(Functions, OfTheFinderKeepToTheKind) {
    auto const host = scene.models.v2->hostIs("same");
    GenericIf const visited[] = {host->portIs("x"), host->portGroupIs("x"), host->mlagIs("x", "")};
    auto const hostV3 = scene.models.v3->host("same");
    GenericIf const expected[] = {hostV3->port("x"), hostV3->portGroup("x"), hostV3->mlag("x")};
    char const * const visits[] = {"visitPort", "visitPortGroup", "visitMlag"};
    GenericIf const finder = Vel::construct(TestSupport::kFinder, {{"hostV2", host}, {"hostV3", hostV3}});
    for (std::size_t i = 0; i < 3; ++i) {
        finder.call(visits[i], {visited[i]});
        EXPECT_EQ(finder.attr("result"), expected[i]) << visits[i];
        EXPECT_EQ(finder.call("find", {visited[i]}), expected[i]) << visits[i];
    }
    hostV3->mlagDel("x");
    finder.call("visitMlag", {visited[2]});
    EXPECT_TRUE(finder.attr("result").isNull());
}

}  // namespace
