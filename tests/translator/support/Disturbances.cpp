#include "tests/translator/support/Disturbances.h"

#include <gtest/gtest.h>

#include "tests/translator/support/OutputFollower.h"
#include "tests/translator/support/Tracked.h"

namespace TestSupport {

using NetworkTopologyAggregator::V2Sm;

namespace {

// Does `what` to the reactor of host "a", if it is there.
Disturbance ofHost(std::string name, std::function<void(Scene & scene, V2Sm::VelHost & host)> what) {
    return {std::move(name), [what = std::move(what)](Scene & scene) {
                auto const host = scene.sm ? scene.sm->host("a") : nullptr;
                if (host) what(scene, *host);
            }};
}

// Does `what` to each reactor of a member of host "a" and of an edge.
template <class What>
Disturbance ofMembersAndEdges(std::string name, What const & what) {
    return {std::move(name), [what](Scene & scene) {
                V2Sm::Ptr const sm = scene.sm;
                if (!sm) return;
                for (auto const & edge : sm->edge()) what(scene, *edge);
                V2Sm::VelHost::Ptr const host = sm->host("a");
                if (!host) return;
                for (auto const & port : host->port()) what(scene, *port);
                for (auto const & group : host->portGroup()) what(scene, *group);
                for (auto const & mlag : host->mlag()) what(scene, *mlag);
            }};
}

// Every reactor that is in a registry is found there and knows who holds it.
void expectSound(V2Sm & sm) {
    auto const expectOwned = [](auto const & reactor, auto const & found, auto * owner) {
        EXPECT_EQ(found, reactor);
        EXPECT_EQ(reactor->owner(), owner);
        EXPECT_EQ(reactor->isRegisteredNotifiee(), reactor->notifier() != nullptr);
    };
    if (auto const velV2 = sm.velV2()) {
        EXPECT_EQ(velV2->owner(), &sm);
    }
    if (auto const velV3 = sm.velV3()) {
        EXPECT_EQ(velV3->owner(), &sm);
    }
    for (auto const & edge : sm.edge()) expectOwned(edge, sm.edge(edge->collectionKey()), &sm);
    for (auto const & host : sm.host()) {
        expectOwned(host, sm.host(host->collectionKey()), &sm);
        for (auto const & port : host->port()) {
            expectOwned(port, host->port(port->collectionKey()), host.get());
        }
        for (auto const & group : host->portGroup()) {
            expectOwned(group, host->portGroup(group->collectionKey()), host.get());
        }
        for (auto const & mlag : host->mlag()) {
            expectOwned(mlag, host->mlag(mlag->collectionKey()), host.get());
        }
    }
}

}  // namespace

std::vector<Disturbance> const & disturbancesOfTheRoot() {
    static std::vector<Disturbance> const disturbances = {
        {"LetGo", [](Scene & scene) { scene.sm = nullptr; }},
        {"V2Del", [](Scene & scene) { scene.sm->v2Del(); }},
        {"V3Del", [](Scene & scene) { scene.sm->v3Del(); }},
        {"V2IsNull", [](Scene & scene) { scene.sm->v2Is(nullptr); }},
        {"V3IsNull", [](Scene & scene) { scene.sm->v3Is(nullptr); }},
        {"V2IsOther", [](Scene & scene) { scene.sm->v2Is(scene.others.v2); }},
        {"V3IsOther", [](Scene & scene) { scene.sm->v3Is(scene.others.v3); }},
        {"V2Afresh",
         [](Scene & scene) {
             scene.sm->v2Del();
             scene.sm->v2Is(scene.models.v2);
         }},
        {"V3Afresh",
         [](Scene & scene) {
             scene.sm->v3Del();
             scene.sm->v3Is(scene.models.v3);
         }},
        {"V2DelThenLetGo",
         [](Scene & scene) {
             scene.sm->v2Del();
             scene.sm = nullptr;
         }},
        {"Inactive", [](Scene & scene) { scene.sm->hasNotificationActiveIs(false); }},
        {"Retired", [](Scene & scene) { scene.sm->velDoZombieReactors(true); }},
        {"RetiredAndRevived",
         [](Scene & scene) {
             scene.sm->velDoZombieReactors(true);
             scene.sm->velDoZombieReactors(false);
         }},
        {"HostDelAll", [](Scene & scene) { scene.sm->hostDelAll(); }},
        {"EdgeDelAll", [](Scene & scene) { scene.sm->edgeDelAll(); }},
        {"Populated", [](Scene & scene) { scene.sm->populateV3(); }},
        {"Resynchronised",
         [](Scene & scene) {
             if (auto const velV2 = scene.sm->velV2()) {
                 velV2->onHostvelImmediate();
                 velV2->onEdgevelImmediate();
             }
         }},
    };
    return disturbances;
}

std::vector<Disturbance> const & disturbancesOfTheReactors() {
    static std::vector<Disturbance> const disturbances = {
        ofHost("HostUnbound", [](Scene &, V2Sm::VelHost & host) { host.notifierIs(nullptr); }),
        ofHost("HostRebound",
               [](Scene & scene, V2Sm::VelHost & host) { host.notifierIs(scene.others.v2->host("a")); }),
        ofHost("HostUnboundAndReboundAgain",
               [](Scene & scene, V2Sm::VelHost & host) {
                   host.notifierIs(nullptr);
                   host.notifierIs(scene.models.v2->host("a"));
               }),
        ofHost("HostInactive", [](Scene &, V2Sm::VelHost & host) { host.hasNotificationActiveIs(false); }),
        ofHost("HostRetired", [](Scene &, V2Sm::VelHost & host) { host.velDoZombieReactors(true); }),
        ofHost("HostRetiredAndRevived",
               [](Scene &, V2Sm::VelHost & host) {
                   host.velDoZombieReactors(true);
                   host.velDoZombieReactors(false);
               }),
        ofHost("HostDeleted", [](Scene & scene, V2Sm::VelHost &) { scene.sm->hostDel("a"); }),
        ofHost("HostDeletedAndMadeAgain",
               [](Scene & scene, V2Sm::VelHost &) {
                   auto const hostV2 = scene.sm->hostDel("a");
                   if (hostV2) scene.sm->hostIs(hostV2);
               }),
        ofHost("HostWithoutOutput", [](Scene &, V2Sm::VelHost & host) { host.v3HostIs(nullptr); }),
        ofHost("HostWithANewOutput",
               [](Scene & scene, V2Sm::VelHost & host) {
                   scene.models.v3->hostDel("a");
                   host.v3HostIs(host.createV3Host());
               }),
        ofHost("MembersDeleted",
               [](Scene &, V2Sm::VelHost & host) {
                   host.portDelAll();
                   host.portGroupDelAll();
                   host.mlagDelAll();
               }),
        ofMembersAndEdges("MembersUnbound", [](Scene &, auto & reactor) { reactor.notifierIs(nullptr); }),
        ofMembersAndEdges("MembersRetired",
                          [](Scene &, auto & reactor) { reactor.velDoZombieReactors(true); }),
        ofMembersAndEdges("MembersRetiredAndRevived",
                          [](Scene &, auto & reactor) {
                              reactor.velDoZombieReactors(true);
                              reactor.velDoZombieReactors(false);
                          }),
        ofMembersAndEdges("MembersRetiredAndRootLetGo",
                          [](Scene & scene, auto & reactor) {
                              reactor.velDoZombieReactors(true);
                              scene.sm = nullptr;
                          }),
    };
    return disturbances;
}

std::vector<Disturbance> const & disturbancesOfTheModels() {
    static std::vector<Disturbance> const disturbances = [] {
        std::vector<Disturbance> made;
        for (Change const & change : everyKindOfChange()) {
            made.push_back({change.name, [&change](Scene & scene) { change.make(*scene.models.v2); }});
        }
        made.push_back({"OutputHostDelAll", [](Scene & scene) { scene.models.v3->hostDelAll(); }});
        made.push_back({"OutputEdgeDelAll", [](Scene & scene) { scene.models.v3->edgeDelAll(); }});
        made.push_back({"OutputMembersDelAll", [](Scene & scene) {
                            for (auto const & host : scene.models.v3->host()) {
                                host->portDelAll();
                                host->portGroupDelAll();
                                host->mlagDelAll();
                            }
                        }});
        made.push_back({"ManyHosts", [](Scene & scene) {
                            for (int i = 0; i < 40; ++i) {
                                scene.models.v2->hostIs("many-" + std::to_string(i))->portIs("p");
                            }
                        }});
        return made;
    }();
    return disturbances;
}

void followingScene(Scene & scene) {
    scene.sm = NetworkTopologyAggregator::v2SmFactory("sm", scene.models.v2, scene.models.v3);
}

void disturbEveryChange(Disturbance const & disturbance, std::function<void(Scene & scene)> const & prepare,
                        std::function<void(Scene & scene)> const & work, std::size_t least) {
    SCOPED_TRACE(disturbance.name);
    auto const steps = forEveryStep([&](std::size_t n) {
        bool disturbed = false;
        {
            Scene scene;
            fillWithThreeHosts(*scene.models.v2);
            addHostWithOneOfEach(*scene.others.v2, "a");
            addHostWithOneOfEach(*scene.others.v2, "other");
            prepare(scene);
            std::size_t changes = 0;
            {
                OutputFollower const follower(scene.models.v3, [&](auto const &) {
                    if (++changes != n) return;
                    disturbed = true;
                    disturbance.make(scene);
                });
                work(scene);
            }
            if (scene.sm) expectSound(*scene.sm);
            scene.sm = nullptr;
        }
        expectNoTranslatorObjects();
        return disturbed && !testing::Test::HasFailure();
    });
    EXPECT_GE(steps, least);
}

}  // namespace TestSupport
