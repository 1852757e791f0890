// What the translator's writes do to the expected version-3 document. One function for each operation that
// the translator has on its output; each notes on which line, and for what reason, the place got what it
// holds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/NetworkTopology/HostV2.h"
#include "platform/NetworkTopology/PortBaseV2.h"
#include "platform/Vel/GenericIf.h"
#include "tools/check/ExpectedModel.h"

namespace TopologyTools {

inline std::string textOf(Vel::String const & text) { return std::string(text.view()); }

// The document's text for a value.
template <class Value>
std::string shownText(Value const & value) {
    return Vel::GenericIf::wrap(value).strRep();
}

// The collection of its host in which a port base of that class stands; the same in both models.
std::string_view collectionOf(NetworkTopology::PortBaseV2 const & portBase);

class ExpectedOutput {
public:
    ExpectedOutput();
    ~ExpectedOutput();
    ExpectedOutput(ExpectedOutput const &) = delete;
    ExpectedOutput & operator=(ExpectedOutput const &) = delete;

    ExpectedPtr const & root() const { return root_; }
    Line line() const { return line_; }
    void lineIs(Line line) { line_ = line; }
    bool isBound() const { return isBound_; }
    void isBoundIs(bool bound) { isBound_ = bound; }
    Provenance now(Rule rule) const { return {rule, line_}; }
    // A number that no other binding has.
    std::uint64_t newBinding() { return ++lastBinding_; }

    // The counterpart of a version-2 object; null where there is none, or no output to look into.
    ExpectedPtr hostOf(NetworkTopology::HostV2 const * host) const;
    ExpectedPtr portBaseOf(NetworkTopology::PortBaseV2 const * portBase) const;

    // Each makes an object or finds the one that is there; null when there is no place for it.
    ExpectedPtr hostIs(std::string const & name);
    ExpectedPtr memberIs(std::string const & hostName, NetworkTopology::PortBaseV2 const & member);
    ExpectedPtr edgeIs(ExpectedPtr const & fromPort);
    void hostDel(std::string const & name);
    void memberDel(std::string const & hostName, std::string_view collection, std::string const & name);
    void edgeDel(ExpectedPtr const & fromPort);

    // The rest do nothing without an object.
    void valueIs(ExpectedPtr const & object, std::string_view attribute, std::string const & value);
    // `isSet`: whether the version-2 reference is not null.
    void referenceIs(ExpectedPtr const & object, std::string_view attribute, bool isSet,
                     ExpectedPtr const & target);
    // A change of the version-2 attribute has not been followed.
    void missed(ExpectedPtr const & object, std::string_view attribute, Rule rule);
    // A version-2 object is followed from now on by what found `object` as it is, having written nothing.
    void adopted(ExpectedPtr const & object);
    void astray(ExpectedPtr const & object, Rule rule);

    // Entries of collections under names of targets. `source` is the version-2 object that holds them; `key`
    // the key there. A target that is not the one to which version 2 leads is noted with a rule.
    void entriesOf(ExpectedPtr const & object, void const * source);
    void entryIs(ExpectedPtr const & object, std::string_view collection, std::string const & key, bool isSet,
                 ExpectedPtr const & target, Rule rule = Rule::none);
    void entryDel(ExpectedPtr const & object, std::string_view collection, std::string const & key);
    void entryMissed(ExpectedPtr const & object, std::string_view collection, std::string const & key,
                     bool isThere);

private:
    ExpectedPtr make(ExpectedPtr const & parent, std::string_view collection, std::string const & key);
    void setValue(ExpectedObject & object, std::string_view attribute, std::string const & value, Rule rule);
    void leaveBehind(ExpectedObject & object, std::string_view collection, std::string const & key,
                     HandledEntry const & handled, Rule rule);
    // The entry under `name` goes or is taken over: whatever else it was written for is without one.
    void takeFromOthers(ExpectedObject & object, std::string_view collection, std::string const & name,
                        std::string const & key, Rule rule);

    ExpectedPtr const root_;
    Line line_ = 0;
    bool isBound_ = true;
    std::uint64_t lastBinding_ = 0;
};

}  // namespace TopologyTools
