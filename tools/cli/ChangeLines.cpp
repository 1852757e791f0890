#include "tools/cli/ChangeLines.h"

#include "tools/cli/Output.h"
#include "tools/json/InputError.h"

namespace TopologyTools {

ChangeLines::ChangeLines(std::string const & path, NetworkTopology::StatusV2 & status, BadLine badLine)
    : lines_(path, interruption_),
      patcher_(Vel::GenericIf::of(NetworkTopology::StatusV2::Ptr(&status))),
      badLine_(badLine) {}

std::optional<std::size_t> ChangeLines::applyNext(std::function<void(std::size_t)> const & before) {
    while (auto const line = lines_.next()) {
        if (before) before(lines_.number());
        try {
            if (patcher_.applyLine(*line, lines_.name(), lines_.number())) return lines_.number();
        } catch (InputError const & error) {
            if (badLine_ == BadLine::ends) throw;
            hasBadLines_ = true;
            message(error.what());
        }
    }
    return std::nullopt;
}

}  // namespace TopologyTools
