// Whether what stands in the version-3 document is kept in step with version 2, and if not, where that breaks
// off: no change below that place has an effect.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/NetworkTopology/PortBaseV2.h"
#include "tools/check/Expectation.h"

namespace TopologyTools {

// An object of which no counterpart, or another one than stands in the document, is kept in step.
struct Stray {
    std::string path;
    // Whether the next removal of the version-2 object leaves the version-3 object: what follows it, if
    // anything does, does not write to it.
    bool staysOnce = false;
    // Of an edge: whether it is not stray at all.
    bool isFollowed = false;
};

class Following {
public:
    explicit Following(Expectation const & expectation) : expectation_(expectation) {}

    // The outermost stray object on a path to a host, to a port base or to something in one, as far as
    // version 2 has it.
    std::optional<Stray> stray(std::string const & path) const;
    // A host or port base, or an edge, that stands in the document, also when version 2 has none.
    Stray object(std::string const & path) const;
    Stray edge(std::string const & key) const;

    // The outermost object on a path that is not expected in the document; nothing when all are.
    std::optional<std::string> missing(std::string const & path) const;
    // The port base of version 2 at a path; null when there is none.
    NetworkTopology::PortBaseV2 const * portBase(std::string const & path) const;
    // What is expected at a path to a host or port base; null when nothing is.
    ExpectedPtr expected(std::string const & path) const;

private:
    Vel::PtrInterface const * model(std::vector<std::string> const & path) const;
    ExpectedPtr expected(std::vector<std::string> const & path) const;

    Expectation const & expectation_;
};

}  // namespace TopologyTools
