#pragma once

#include <functional>

#include "platform/Vel/Ptr.h"
#include "platform/Vel/PtrInterface.h"

namespace TestSupport {

// Releases `object` from inside a destructor below which `depth` others run, and calls `look` from there: of
// destructions that nest deeply, the inner ones wait until the outer ones have ended.
void releaseDeep(unsigned depth, Vel::Ptr<Vel::PtrInterface> object, std::function<void()> const & look);

}  // namespace TestSupport
