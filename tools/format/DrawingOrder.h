#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "tools/format/NaturalOrder.h"
#include "tools/format/TopologyView.h"

namespace TopologyTools {

// Which hosts a picture shows above which. The hosts that share MLAGs stand in the middle: what they reach
// through an MLAG stands below them, their other neighbours above. Where nothing is said by MLAGs, the hosts
// from which all others are near stand on top. Hosts that are on one level are in natural order.
class DrawingOrder {
public:
    explicit DrawingOrder(TopologyView const & view);

    // Of two ends of a link.
    bool isAbove(TopologyView::Reference const & a, TopologyView::Reference const & b) const;

private:
    std::map<std::string, int, NaturalLess> level_;
};

}  // namespace TopologyTools
