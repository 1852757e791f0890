// What the tests of documents share.
#pragma once

#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"
#include "platform/Vel/GenericIf.h"
#include "tools/document/DocumentReader.h"
#include "tools/document/DocumentWriter.h"

namespace TopologyTools {

inline constexpr std::string_view v2 = "NetworkTopology::StatusV2";
inline constexpr std::string_view v3 = "NetworkTopologyV3::Status";

inline Vel::GenericIf readText(std::string_view text, std::string_view rootType) {
    return readDocument(parseJson(text, "t.json"), "t.json", rootType);
}

inline std::string written(Vel::GenericIf const & root, int indent = -1) {
    std::ostringstream out;
    writeDocument(root, out, indent);
    return out.str();
}

// What the document becomes on its way through the model, on one line.
inline std::string rewritten(std::string_view text, std::string_view rootType) {
    return written(readText(text, rootType));
}

inline std::string readingError(std::string_view text, std::string_view rootType) {
    try {
        readText(text, rootType);
    } catch (InputError const & error) {
        return error.what();
    }
    return "no error";
}

// How many objects of every tracked class there are.
inline std::map<std::string, std::uint64_t> liveObjects() {
    std::map<std::string, std::uint64_t> live;
    for (Vel::AllocTrackTypeInfo const * type : Vel::allocTrackTypes()) {
        if (type->live() != 0) live[type->typeName()] = type->live();
    }
    return live;
}

// Every test ends, its fixture's members gone, with as many objects as it began with.
class DocumentTest : public testing::Test {
protected:
    ~DocumentTest() override { EXPECT_EQ(liveObjects(), before_); }

private:
    std::map<std::string, std::uint64_t> const before_ = liveObjects();
};

}  // namespace TopologyTools
