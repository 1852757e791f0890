// Keyed collections of reactors: how a reactor enters and leaves one, and how one is brought into line with
// its input collection. The same for hosts, edges, ports, port groups and MLAGs. For the translator's own
// sources only.
//
// Every step that writes the output may come back: a follower of the output changes the input, whose
// notification changes the very registry that is being worked on. So what was looked up before such a step is
// looked up again after it.
//
// What is called from one place for each kind of reactor is compiled into that place.
#pragma once

#include <cstdint>

#include "platform/Vel/HashMap.h"
#include "platform/Vel/Ptr.h"

namespace NetworkTopologyAggregator {

// Lets go of a reactor that has left its registry: its version-3 object is deleted, and it gets nothing more.
// That holds as well when the deletion throws: nobody would come back to clear the owner of a reactor that is
// in no registry, and its destructor must not try, and throw, again.
template <class Reactor>
void retire(Reactor & reactor) {
    struct Departure {
        ~Departure() {
            reactor.ownerIs(nullptr);
            reactor.hasNotificationActiveIs(false);
        }
        Reactor & reactor;
    } const departure{reactor};
    reactor.velDoZombieReactors(true);
}

// Makes a reactor on `input` and enters it under its key, which has that hash. REQUIRES: something keeps
// `owner` alive.
template <class Reactor, class Key, class Owner, class Input>
Vel::Ptr<Reactor> newReactor(Vel::HashMap<Reactor, Key, Owner> & registry, std::uint32_t hash,
                             Vel::Ptr<Input const> const & input, Owner * owner) {
    std::uint32_t const modifications = registry.modificationCount();
    Vel::Ptr<Reactor> reactor = new Reactor(input, owner);
    reactor->hasNotificationActiveIs(true);
    if (registry.modificationCount() != modifications) [[unlikely]] {
        if (Reactor * const present = registry.find(hash, reactor->collectionKey())) {
            // The same object has been mirrored from inside the constructor. One reactor per key: the later
            // one goes, without taking the version-3 object with it.
            reactor->ownerIs(nullptr);
            return present;
        }
    }
    registry.newMember(hash, reactor);
    return reactor;
}

// Makes sure that the reactor under `key`, which has that hash, follows `input`: returns it as it is, rebinds
// it, or makes it. REQUIRES: something keeps `owner`, and `input` with the key that lives in it, alive.
template <class Reactor, class Key, class Owner, class Input>
[[gnu::always_inline]] inline Vel::Ptr<Reactor>
reactorIs(Vel::HashMap<Reactor, Key, Owner> & registry, std::uint32_t hash,
          Vel::Ptr<Input const> const & input, Key const & key, Owner * owner) {
    Vel::Ptr<Reactor> reactor = registry.find(hash, key);
    if (!reactor) {
        reactor = newReactor(registry, hash, input, owner);
    } else if (reactor->notifier() == input.get()) {
        return reactor;
    } else {
        reactor->notifierIs(input);
        Vel::Ptr<Reactor> present = registry.find(hash, key);
        if (present != reactor) {
            retire(*reactor);
            return present;
        }
    }
    reactor->velDoZombieReactors(owner->velMarkedForDeletion());
    return reactor;
}

// Takes the reactor under `key`, which has that hash, out, lets go of it and returns it; null when there is
// none.
template <class Reactor, class Key, class Owner>
[[gnu::always_inline]] inline Vel::Ptr<Reactor> reactorDel(Vel::HashMap<Reactor, Key, Owner> & registry,
                                                           std::uint32_t hash, Key const & key) {
    Vel::Ptr<Reactor> reactor = registry.deleteMember(hash, key);
    if (reactor) retire(*reactor);
    return reactor;
}

// Brings a registry into line with its input collection under one key: `add(member)` for the `Member` that
// `find()` gives, `del()` where it gives none. A follower of what `add` writes may take the member out of the
// input again before there is a reactor that could be let go, so it is looked up once more. `goOn()` is asked
// before each lookup, as below.
template <class Member, class GoOn, class Find, class Add, class Del>
void reconcileKey(GoOn const & goOn, Find const & find, Add const & add, Del const & del) {
    if (!goOn()) return;
    if (Vel::Ptr<Member const> const member = find()) {
        add(member);
        if (!goOn() || find()) return;
    }
    del();
}

// Brings a registry into line with its input collection in two passes: `add(member)` for every member of the
// input, then `del(key)` for every reactor whose key the input lacks, which `isInInput(key)` tells. Both
// change the collections that are being walked. `goOn()` tells before each step whether to go on: the one
// before may have let go of the reactor on whose behalf this runs. `ahead(walk)` may look at what comes next
// in the input.
template <class InputRange, class Registry, class GoOn, class Add, class IsInInput, class Del, class Ahead>
void reconcile(InputRange const & input, Registry & registry, GoOn const & goOn, Add const & add,
               IsInInput const & isInInput, Del const & del, Ahead const & ahead) {
    registry.reserve(input.size());
    for (auto member = input.begin(); member; ++member) {
        if (!goOn()) return;
        ahead(member);
        add(*member);
    }
    for (auto reactor = registry.iterator(); reactor && goOn(); ++reactor) {
        auto const & key = (*reactor)->collectionKey();  // Which the walk keeps.
        if (!isInInput(key)) del(key);
    }
}
template <class InputRange, class Registry, class GoOn, class Add, class IsInInput, class Del>
void reconcile(InputRange const & input, Registry & registry, GoOn const & goOn, Add const & add,
               IsInInput const & isInInput, Del const & del) {
    reconcile(input, registry, goOn, add, isInInput, del, [](auto const &) {});
}

}  // namespace NetworkTopologyAggregator
