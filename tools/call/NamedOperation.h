// One operation on one attribute, told by words.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tools/call/NamedObjects.h"

namespace TopologyTools {

struct NamedOperation {
    Vel::AttributeOperation operation;
    // What it takes: arguments of a function, a key, an object or a value. A walk takes the key at which to
    // begin, or nothing.
    std::vector<std::string> words;
};

// What an attribute does when nothing but its name is given: it is called, walked or read.
Vel::AttributeOperation plainOperation(Vel::VelAttr const & attr);

// What it answered: a value, or the entries of a walk.
struct CallAnswer {
    struct Entry {
        Vel::GenericIf key;
        Vel::GenericIf object;
    };
    Vel::GenericIf value;
    std::vector<Entry> entries;
};

// Carries it out on `object`. Throws Vel::OpNotSupportedException for what the attribute does not offer, and
// Vel::RangeException for words that stand for nothing that it takes.
CallAnswer perform(NamedOperation const & operation, Vel::VelAttr const & attr, Vel::GenericIf const & object,
                   NamedObjects const & objects);

}  // namespace TopologyTools
