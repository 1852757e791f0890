// What a translator must have made of a version-2 model, kept up change by change.
//
// An Expectation follows the version-2 model with reactors of its own, never looks at the translator or at
// its output, and keeps for every place of the version-3 document the value that the required behaviour
// gives, gaps included, together with the line on which it was last written, or left, and why. The cost of a
// change does not depend on the size of the model.
//
// What happens to the translator itself (statuses bound and unbound, notifications off and on) is not told by
// the model: whoever does it tells the Expectation too.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/NetworkTopology/StatusV2.h"
#include "tools/check/ExpectedOutput.h"
#include "tools/check/Followers.h"
#include "tools/check/NamedFollowers.h"

namespace TopologyTools {

class Expectation {
public:
    // As a translator that is made now, with an output that is empty.
    explicit Expectation(NetworkTopology::StatusV2::PtrConst const & input);
    ~Expectation();
    Expectation(Expectation const &) = delete;
    Expectation & operator=(Expectation const &) = delete;

    // Changes from now on belong to this line.
    void lineIs(Line line) { output_.lineIs(line); }

    // The translator's `v2Is`, `v3Is` (with null, or the one output that there is),
    // `hasNotificationActiveIs`.
    void inputIs(NetworkTopology::StatusV2::PtrConst const & input);
    void outputIsBoundIs(bool bound);
    void notificationActiveIs(bool active);

    // The model that is, or was last, the input.
    NetworkTopology::StatusV2 const & input() const;
    // Whether a change of the model would be followed now.
    bool isFollowing() const { return isInputBound_ && isStatusActive_ && output_.isBound(); }
    ExpectedPtr const & root() const { return output_.root(); }

    // What follows the host, or port base, at a path; nothing when nothing does.
    std::optional<Followed> followed(std::vector<std::string> const & path) const;
    EdgeFollower const * edge(NetworkTopology::PortBaseV2 const * fromPort) const;
    // Why nothing follows the edge from that port.
    Provenance unfollowed(NetworkTopology::PortBaseV2 const * fromPort) const;

private:
    class StatusFollower;

    // Why the translator does not hear of a change of the input now.
    Rule missedBy() const;
    void populate();
    void populateHost(NetworkTopology::HostV2 const & host);
    void populateEntries(NetworkTopology::HostV2 const & host, ExpectedPtr const & object);
    void populateMembers(NetworkTopology::PortGroupV2 const & group);
    void populateLink(NetworkTopology::PortBaseV2 const & member, std::string_view attribute,
                      NetworkTopology::PortBaseV2 const * target);
    void populateEdge(NetworkTopology::DirectedEdgeV2 const & edge);
    void hostChanged(Vel::Name const & name);
    void edgeChanged(EdgeFollower::Destination const & fromPort, Rule missedBy);
    void followHosts(Rule missedBy);
    void followEdges(Rule missedBy);
    void writeLocalhost();
    void localhostChanged();

    ExpectedOutput output_;
    Vel::Ptr<StatusFollower> status_;
    bool isInputBound_ = true;
    bool isActive_ = true;        // The translator as a whole.
    bool isStatusActive_ = true;  // What follows its input status.
    NamedFollowers<HostFollower> hosts_;
    std::map<NetworkTopology::PortBaseV2 const *, Vel::Ptr<EdgeFollower>> edges_;
    std::map<NetworkTopology::PortBaseV2 const *, Provenance> unfollowed_;
};

}  // namespace TopologyTools
