#include "platform/NetworkTopology/PortBaseV2.h"

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "platform/NetworkTopology/PortBaseVisitor.h"
#include "platform/NetworkTopology/StatusV2.h"
#include "tests/NetworkTopology/Recorders.h"
#include "tests/support/DeepDestruction.h"

namespace NetworkTopologyTest {
namespace {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortBaseV2;
using NetworkTopology::PortBaseVisitor;
using NetworkTopology::PortGroupV2;
using NetworkTopology::PortTypeV2;
using NetworkTopology::PortV2;
using NetworkTopology::StatusV2;

// Makes the change that only this kind has a callback for.
void ownChange(PortV2 & port) { port.portGroupIs(PortGroupV2::PortGroupV2Is("own")); }
void ownChange(PortGroupV2 & group) { group.memberPortIs("own", PortV2::PortV2Is("own")); }
void ownChange(MlagV2 & mlag) { mlag.peerPortGroupIs(PortGroupV2::PortGroupV2Is("own")); }

template <class Kind>
class PortBase : public testing::Test {
protected:
    static Vel::Ptr<Kind> made(Vel::Name const & name) {
        if constexpr (std::is_same_v<Kind, PortV2>) return PortV2::PortV2Is(name);
        if constexpr (std::is_same_v<Kind, PortGroupV2>) return PortGroupV2::PortGroupV2Is(name);
        if constexpr (std::is_same_v<Kind, MlagV2>) return MlagV2::MlagV2Is(name, "second");
    }
    static void add(HostV2 & host, Vel::Ptr<Kind> const & object) {
        if constexpr (std::is_same_v<Kind, PortV2>) host.portIs(object);
        if constexpr (std::is_same_v<Kind, PortGroupV2>) host.portGroupIs(object);
        if constexpr (std::is_same_v<Kind, MlagV2>) host.mlagIs(object);
    }

    Vel::Ptr<Kind> const object_ = made("x");
};

using Kinds = testing::Types<PortV2, PortGroupV2, MlagV2>;
struct KindName {
    template <class Kind>
    static std::string GetName(int) {
        if (std::is_same_v<Kind, PortV2>) return "Port";
        return std::is_same_v<Kind, PortGroupV2> ? "PortGroup" : "Mlag";
    }
};
TYPED_TEST_SUITE(PortBase, Kinds, KindName);

TYPED_TEST(PortBase, BeginsWithDefaults) {
    EXPECT_EQ(this->object_->name(), "x");
    EXPECT_EQ(this->object_->collectionKey(), "x");
    EXPECT_EQ(this->object_->type(), PortTypeV2::unknown);
    EXPECT_FALSE(this->object_->addedByOwner());
    EXPECT_EQ(this->object_->host(), nullptr);
}

TYPED_TEST(PortBase, TellsOfEachAttributeOnceAndOnlyWhenItChanges) {
    auto const follower = followed(this->object_);
    this->object_->typeIs(PortTypeV2::mlag);
    this->object_->addedByOwnerIs(true);
    EXPECT_EQ(follower->taken(), Calls({"onType", "onAddedByOwner"}));
    this->object_->typeIs(PortTypeV2::mlag);
    this->object_->addedByOwnerIs(true);
    EXPECT_EQ(follower->taken(), Calls());
    EXPECT_EQ(this->object_->type(), PortTypeV2::mlag);
    EXPECT_TRUE(this->object_->addedByOwner());
}

TYPED_TEST(PortBase, StoresATypeThatHasNoName) {
    for (std::uint32_t const value : {4U, 0xffffffffU, 1U, 0U}) {
        this->object_->typeIs(static_cast<PortTypeV2>(value));
        EXPECT_EQ(static_cast<std::uint32_t>(this->object_->type()), value);
    }
}

TYPED_TEST(PortBase, IsFollowedByReactorsOfItsKindAndOfAnyKindAtOnce) {
    auto const before = followedBy<PortBaseRecorder>(this->object_);
    auto const own = followed(this->object_);
    auto const after = followedBy<PortBaseRecorder>(this->object_);
    this->object_->typeIs(PortTypeV2::port);
    EXPECT_EQ(before->taken(), Calls{"onType"});
    EXPECT_EQ(own->taken(), Calls{"onType"});
    EXPECT_EQ(after->taken(), Calls{"onType"});

    ownChange(*this->object_);
    EXPECT_EQ(before->taken(), Calls());
    EXPECT_NE(own->taken(), Calls());
    EXPECT_EQ(after->taken(), Calls());
}

TYPED_TEST(PortBase, TellsAReactorOfAnyKindNothingOfItsOwnChanges) {
    auto const follower = followedBy<PortBaseV2::NotifieeConst>(this->object_);
    ownChange(*this->object_);
    this->object_->typeIs(PortTypeV2::port);
    this->object_->addedByOwnerIs(true);
    EXPECT_EQ(follower->notifier(), this->object_.get());
}

TYPED_TEST(PortBase, BindsReactorsOfItsKindAndOfAnyKindAlone) {
    Vel::Ptr<PortBaseRecorder> const any = new PortBaseRecorder;
    any->notifierIs(this->object_);
    EXPECT_EQ(any->notifier(), this->object_.get());
    any->notifierIs(HostV2::HostV2Is("h"));
    EXPECT_EQ(any->notifier(), nullptr);

    auto const bindsTo = [&](auto reactor) {
        reactor->notifierIs(this->object_);
        bool const bound = reactor->notifier() != nullptr;
        EXPECT_EQ(reactor->notifierObject() != nullptr, bound);
        return bound;
    };
    EXPECT_EQ(bindsTo(Vel::Ptr<PortRecorder>(new PortRecorder)), (std::is_same_v<TypeParam, PortV2>));
    EXPECT_EQ(bindsTo(Vel::Ptr<PortGroupRecorder>(new PortGroupRecorder)),
              (std::is_same_v<TypeParam, PortGroupV2>));
    EXPECT_EQ(bindsTo(Vel::Ptr<MlagRecorder>(new MlagRecorder)), (std::is_same_v<TypeParam, MlagV2>));
}

TYPED_TEST(PortBase, UnbindsAReactorThatIsGivenAnotherKind) {
    auto const follower = followed(this->object_);
    auto const other = PortV2::PortV2Is("y");
    auto const otherGroup = PortGroupV2::PortGroupV2Is("y");
    if (std::is_same_v<TypeParam, PortV2>) {
        follower->notifierIs(otherGroup);
    } else {
        follower->notifierIs(other);
    }
    EXPECT_EQ(follower->notifier(), nullptr);
    EXPECT_FALSE(follower->isRegisteredNotifiee());
    this->object_->typeIs(PortTypeV2::port);
    EXPECT_EQ(follower->taken(), Calls());
    EXPECT_EQ(this->object_->references(), 1U);
}

TYPED_TEST(PortBase, OutlivesItsHost) {
    auto host = HostV2::HostV2Is("h");
    this->add(*host, this->object_);
    EXPECT_EQ(this->object_->host(), host.get());
    this->object_->typeIs(PortTypeV2::port);
    host = nullptr;
    EXPECT_EQ(this->object_->host(), nullptr);
    EXPECT_EQ(this->object_->name(), "x");
    EXPECT_EQ(this->object_->type(), PortTypeV2::port);
}

// Deep in a destruction, that of the host waits for the outer ones.
TYPED_TEST(PortBase, HasNoHostFromTheMomentWhenTheLastReferenceToItGoes) {
    auto const hosts = [] {
        auto const * const tracked = HostV2::velAllocTrackTypeInfo_;
        return tracked ? tracked->live() : 0;
    };
    std::uint64_t const before = hosts();
    int waited = 0;
    for (unsigned depth = 0; depth < 40; ++depth) {
        auto host = HostV2::HostV2Is("h");
        this->add(*host, this->object_);
        bool looked = false;
        TestSupport::releaseDeep(depth, std::move(host), [&] {
            EXPECT_EQ(this->object_->host(), nullptr);
            if (hosts() != before) ++waited;
            looked = true;
        });
        EXPECT_TRUE(looked);
        EXPECT_EQ(this->object_->host(), nullptr);
        EXPECT_EQ(hosts(), before);
    }
    EXPECT_GT(waited, 0);
}

class RecordingVisitor final : public PortBaseVisitor {
public:
    void visitPort(Vel::Ptr<PortV2 const> const & port) override { visited("port", port); }
    void visitPortGroup(Vel::Ptr<PortGroupV2 const> const & group) override { visited("portGroup", group); }
    void visitMlag(Vel::Ptr<MlagV2 const> const & mlag) override { visited("mlag", mlag); }

    std::string visits;
    Vel::Ptr<PortBaseV2 const> last;

private:
    void visited(char const * operation, Vel::Ptr<PortBaseV2 const> const & object) {
        visits += operation;
        last = object;
    }
};

TEST(PortBaseVisitor, IsSentToTheOneOperationThatFitsTheClass) {
    Vel::Ptr<PortBaseV2> const objects[] = {PortV2::PortV2Is("x"), PortGroupV2::PortGroupV2Is("x"),
                                            MlagV2::MlagV2Is("x", "y")};
    char const * const expected[] = {"port", "portGroup", "mlag"};
    for (int i = 0; i < 3; ++i) {
        // What the object says of its type does not matter.
        objects[i]->typeIs(PortTypeV2::unknown);
        Vel::Ptr<RecordingVisitor> const visitor = new RecordingVisitor;
        objects[i]->accept(visitor);
        EXPECT_EQ(visitor->visits, expected[i]);
        EXPECT_EQ(visitor->last, objects[i]);
        visitor->last = nullptr;
        EXPECT_EQ(objects[i]->references(), 1U);
    }
}

TEST(PortBaseVisitor, DoesNothingUnlessOverridden) {
    Vel::Ptr<PortBaseVisitor> const visitor = new PortBaseVisitor;
    PortV2::PortV2Is("x")->accept(visitor);
    PortGroupV2::PortGroupV2Is("x")->accept(visitor);
    MlagV2::MlagV2Is("x", "y")->accept(visitor);
    EXPECT_EQ(visitor->references(), 1U);
}

TEST(PortBaseVisitor, MayBeNull) { PortV2::PortV2Is("x")->accept(nullptr); }

}  // namespace
}  // namespace NetworkTopologyTest
