// Tracked objects that outlive the test which made them.
#pragma once

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace TestSupport {

// How many objects of each tracked class live.
class LiveObjects {
public:
    LiveObjects();

    // Fails the running test, by the name of each class, if more or fewer objects live than when this was
    // made.
    void expectTheSameNow() const;
    // Fails for each class of which an object lives.
    static void expectNone();

private:
    std::vector<std::uint64_t> live_;  // In the order of Vel::allocTrackTypes(), which only ever gets longer.
};

// Holds every test to leaving nothing behind, and the whole program, too.
class LiveObjectsListener final : public testing::EmptyTestEventListener {
public:
    void OnTestStart(testing::TestInfo const &) override { before_ = LiveObjects(); }
    void OnTestEnd(testing::TestInfo const &) override { before_.expectTheSameNow(); }
    void OnEnvironmentsTearDownStart(testing::UnitTest const &) override { LiveObjects::expectNone(); }

private:
    LiveObjects before_;
};

}  // namespace TestSupport
