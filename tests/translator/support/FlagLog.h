// What becomes of the flags of the root and its reactors: which of them are switched on and off, marked for
// deletion and destroyed, in order.
//
// Flags are in no model and reach no follower; but their order is part of how the translator lets go of
// things. The linker puts a recorder before the framework's flag operations, as in WriteLog.h.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/PtrInterface.h"

namespace TestSupport {

struct FlagWrite {
    std::string className;  // Without its namespace: "VelHost".
    std::string what;       // "active", "inactive", "marked", "unmarked", "destroyed".
    Vel::PtrInterface const * object;

    // "VelHost inactive"
    std::string text() const { return className + " " + what; }
};

// Records from its making to its end. One at a time.
class FlagLog {
public:
    using Callback = std::function<void(FlagWrite const & write)>;

    explicit FlagLog(Callback callback = {});
    ~FlagLog();
    FlagLog(FlagLog const &) = delete;
    FlagLog & operator=(FlagLog const &) = delete;

    std::vector<FlagWrite> const & writes() const { return writes_; }
    std::vector<std::string> lines() const;

    // For the recorders.
    static void record(Vel::PtrInterface const & object, std::string_view what);

private:
    // Whether that is what was last recorded of the object.
    bool lastIs(Vel::PtrInterface const & object, std::string_view what) const;

    std::vector<FlagWrite> writes_;
    Callback callback_;
};

}  // namespace TestSupport
