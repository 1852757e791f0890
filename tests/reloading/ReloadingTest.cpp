// The aggregator, loaded and unloaded by a program that knows of it nothing but its file.
#include <cstddef>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <malloc.h>

#include "platform/NetworkTopology/StatusV2.h"
#include "platform/NetworkTopologyV3/Status.h"
#include "platform/Vel/GenericIf.h"

namespace {

using Vel::GenericIf;
using Vel::Name;

constexpr char const * kTranslator = "NetworkTopologyAggregator::V2Sm";
constexpr char const * kFinder = "NetworkTopologyAggregator::PortBaseFinder";

class Loaded {
public:
    Loaded() : handle_(dlopen(NTA_AGGREGATOR_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
        if (!handle_) ADD_FAILURE() << dlerror();
    }
    ~Loaded() {
        if (handle_) dlclose(handle_);
    }
    Loaded(Loaded const &) = delete;
    Loaded & operator=(Loaded const &) = delete;

    static bool isLoaded() {
        void * const handle = dlopen(NTA_AGGREGATOR_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
        if (handle) dlclose(handle);
        return handle != nullptr;
    }

private:
    void * handle_;
};

// Bytes that are allocated now; always the same where a sanitizer keeps its own heap.
std::size_t bytesInUse() { return mallinfo2().uordblks; }

// Translates and walks, all by name. Returns how many hosts the output has.
std::size_t translateByName() {
    auto const v2 = NetworkTopology::StatusV2::StatusV2Is();
    auto const v3 = NetworkTopologyV3::Status::StatusIs();
    auto const port = v2->hostIs(Name("a"))->portIs(Name("p"));
    v2->edgeIs(port)->toPortIs(port, true);
    GenericIf const sm = Vel::construct(kTranslator, {{"name", Name("sm")}, {"v2", v2}, {"v3", v3}});
    v2->hostIs(Name("b"));
    for (auto const & entry : sm.members("host"))
        EXPECT_FALSE(sm.call("toHostV3", {entry.object()}).isNull());
    GenericIf const finder = Vel::construct(kFinder, {{"hostV2", v2->host("a")}, {"hostV3", v3->host("a")}});
    EXPECT_EQ(finder.call("find", {port}), sm.call("toPortV3", {port}));
    return v3->host().size();
}

TEST(Reloading, OfALibraryThatIsNotLoadedBringsItsTypes) {
    ASSERT_FALSE(Loaded::isLoaded());
    EXPECT_EQ(Vel::typeNode(kTranslator), nullptr);
    {
        Loaded const library;
        EXPECT_NE(Vel::typeNode(kTranslator), nullptr);
        EXPECT_NE(Vel::typeNode(kFinder), nullptr);
    }
    EXPECT_FALSE(Loaded::isLoaded());
    EXPECT_EQ(Vel::typeNode(kTranslator), nullptr);
    EXPECT_EQ(Vel::typeNode(kFinder), nullptr);
}

TEST(Reloading, AThousandTimesLeavesTheRegistryAsItWas) {
    std::vector<Vel::VelType const *> const before = Vel::typeNodes();
    for (int i = 0; i < 1000; ++i) {
        {
            Loaded const library;
            std::vector<Vel::VelType const *> const all = Vel::typeNodes();
            ASSERT_EQ(all.size(), before.size() + 2);
            EXPECT_EQ(all[before.size()]->name(), kFinder);
            EXPECT_EQ(all[before.size() + 1]->name(), kTranslator);
            ASSERT_EQ(translateByName(), 2U);
        }
        ASSERT_FALSE(Loaded::isLoaded());
        ASSERT_EQ(Vel::typeNodes(), before);
    }
}

TEST(Reloading, AThousandTimesLeavesNothingAllocated) {
    constexpr std::size_t rounds = 1000;
    std::size_t before = 0;
    for (std::size_t i = 0; i < rounds + 10; ++i) {
        if (i == 10) before = bytesInUse();
        Loaded const library;
        translateByName();
    }
    // A constant that were never freed would show as more than this for each time.
    EXPECT_LT(bytesInUse(), before + 4 * rounds);
}

// References of the models may outlive the library that wrote them.
TEST(Reloading, LeavesTheModelsThatItWrote) {
    auto const v3 = NetworkTopologyV3::Status::StatusIs();
    {
        auto const v2 = NetworkTopology::StatusV2::StatusV2Is();
        v2->hostIs(Name("a"))->portIs(Name("p"));
        Loaded const library;
        Vel::construct(kTranslator, {{"name", Name("sm")}, {"v2", v2}, {"v3", v3}});
        v3->hostIs(Name("a"))->hostnameIs("still here");
    }
    EXPECT_FALSE(Loaded::isLoaded());
    v3->hostIs(Name("a"))->portIs(Name("p"));
    EXPECT_EQ(v3->host("a")->hostname(), "still here");
}

}  // namespace
