// The followers of one collection of a version-2 model that is keyed by names, one for each member: what the
// translator keeps in a registry.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Vel/Ptr.h"
#include "tools/check/ExpectedOutput.h"

namespace TopologyTools {

// What a follower follows, and what it writes to.
struct Followed {
    Vel::PtrInterface const * model = nullptr;  // For comparison.
    ExpectedPtr object;                         // Null when there was no place for it.
};

// `owner` is always the expected object that holds the counterparts; null when there is none.
template <class Follower>
class NamedFollowers {
public:
    NamedFollowers(ExpectedOutput & output, std::string_view collection)
        : output_(output), collection_(collection) {}

    // Null when there is none.
    Follower const * find(std::string_view name) const {
        auto const found = followers_.find(name);
        return found == followers_.end() ? nullptr : found->second.get();
    }

    // Nothing when there is no follower of that name.
    std::optional<Followed> followed(std::string_view name) const {
        Follower const * const follower = find(name);
        if (!follower) return std::nullopt;
        return Followed{follower->notifierObject().get(), follower->object()};
    }

    // Version 2 now holds `model` under the name; null for nothing. `make(model)` makes a follower. With a
    // rule the translator has not heard of it.
    template <class Model, class Make>
    void changed(ExpectedPtr const & owner, std::string const & name, Model const * model, Rule missedBy,
                 Make const & make) {
        if (missedBy != Rule::none)
            missed(owner, name, model, missedBy);
        else if (model)
            is(owner, name, *model, make);
        else
            del(owner, name);
    }

    // Version 2 now holds `members`, and `lookup(name)` is what it holds under a name. The translator first
    // goes through those that are there, then through those that are not.
    template <class Range, class Lookup, class Make>
    void resync(ExpectedPtr const & owner, Range const & members, Rule missedBy, Lookup const & lookup,
                Make const & make) {
        for (auto const & member : members) {
            changed(owner, textOf(member->name()), member.get(), missedBy, make);
        }
        for (auto next = followers_.begin(); next != followers_.end();) {
            std::string const name = (next++)->first;
            if (auto const member = lookup(name); !member) changed(owner, name, member.get(), missedBy, make);
        }
        if (owner)
            std::erase_if(owner->missing[collection_], [&](auto const & m) { return !lookup(m.first); });
    }

    void activeIs(bool active) {
        for (auto const & [name, follower] : followers_) follower->activeIs(active);
    }
    void retire() {
        for (auto const & [name, follower] : std::exchange(followers_, {})) follower->retire();
    }

private:
    void missed(ExpectedPtr const & owner, std::string const & name, Vel::PtrInterface const * model,
                Rule rule) {
        if (!owner) return;
        Follower const * const follower = find(name);
        if (model && follower && follower->follows(model)) rule = Rule::none;
        ExpectedPtr const object = owner->member(collection_, name);
        if (object) object->astray = rule == Rule::none ? Provenance() : output_.now(rule);
        if (!model)
            owner->missing[collection_].erase(name);
        else if (!object && rule != Rule::none)
            owner->missing[collection_][name] = output_.now(rule);
    }

    template <class Model, class Make>
    void is(ExpectedPtr const & owner, std::string const & name, Model const & model, Make const & make) {
        auto const found = followers_.find(name);
        if (found == followers_.end()) {
            Vel::Ptr<Follower> const made = make(model);
            followers_.emplace(name, made);
            if (owner && !made->object())
                owner->missing[collection_][name] = output_.now(Rule::outputUnbound);
        } else if (!found->second->follows(&model)) {
            found->second->rebind(model);
        }
    }

    void del(ExpectedPtr const & owner, std::string const & name) {
        if (owner) owner->missing[collection_].erase(name);
        auto const found = followers_.find(name);
        if (found == followers_.end()) return;
        Vel::Ptr<Follower> const follower = found->second;
        followers_.erase(found);
        follower->retire();
    }

    ExpectedOutput & output_;
    std::string_view const collection_;
    std::map<std::string, Vel::Ptr<Follower>, std::less<>> followers_;
};

}  // namespace TopologyTools
