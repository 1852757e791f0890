// What the reactors on ports, port groups and MLAGs have in common.
#include <gmock/gmock.h>

#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/KindsOfMembers.h"
#include "tests/translator/support/Spelling.h"

namespace {

using NetworkTopology::PortTypeV2;
using NetworkTopologyV3::PortType;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::Followed;
using TestSupport::Journal;
using TestSupport::KindNames;
using TestSupport::KindsOfMembers;
using TestSupport::WriteLog;

// The reactor on what `fillWithOneOfEach` makes of the kind.
template <class Kind>
struct MemberReactor : Followed {
    MemberReactor() : reactor(Kind::reactor(*host, Kind::own)), input(Kind::inputIs(*hostV2, Kind::own)) {}

    // A new reactor of the host on a new object "x", which is in no registry.
    Vel::Ptr<typename Kind::Reactor> unregistered() {
        return new typename Kind::Reactor(Kind::made("x"), host.get());
    }
    NetworkTopologyV3::PortBase::Ptr output(Vel::Name const & name) { return Kind::output(*hostV3(), name); }
    // "/host/a/port/p typeIs(port)"
    std::string write(std::string const & what) const { return target + " " + what; }

    Vel::Ptr<typename Kind::Reactor> reactor;
    Vel::Ptr<typename Kind::Input> const input;
    std::string const className = Kind::className;
    std::string const create = std::string("trace ") + Kind::create;
    std::string const is = std::string("/host/a ") + Kind::is + "(";
    std::string const del = std::string("/host/a ") + Kind::del + "(";
    std::string const delOwn = del + "'" + Kind::own + "')";
    std::string const target = TestSupport::spelled(output(Kind::own));
};

TYPED_TEST_SUITE(MemberReactor, KindsOfMembers, KindNames);

// Making

TYPED_TEST(MemberReactor, IsMadeRegisteredButNotActiveAndMakesItsObject) {
    Journal journal;
    auto const reactor = this->unregistered();
    EXPECT_THAT(journal.taken(), ElementsAre(this->create, this->is + "'x'" + TypeParam::secondary + ")"));
    EXPECT_TRUE(reactor->isRegisteredNotifiee());
    EXPECT_FALSE(reactor->hasNotificationActive());
    EXPECT_EQ(reactor->owner(), this->host.get());
    EXPECT_EQ(TypeParam::outputOf(*reactor), this->output("x"));
    EXPECT_EQ(TypeParam::reactor(*this->host, "x"), nullptr);
}

TYPED_TEST(MemberReactor, LeavesTypeAndLinkOfANewObjectAtTheirDefaults) {
    using Kind = TypeParam;
    this->hostV2->portIs("y");
    auto const input = Kind::made("x");
    input->typeIs(PortTypeV2::portGroup);
    WriteLog log;
    Kind::inputIs(*this->hostV2, input);
    EXPECT_THAT(log.taken(), ElementsAre(this->is + "'x'" + Kind::secondary + ")"));
    EXPECT_EQ(this->output("x")->type(), PortType::unknown);
    input->typeIs(PortTypeV2::mlag);
    EXPECT_EQ(this->output("x")->type(), PortType::mlag);
}

TYPED_TEST(MemberReactor, TakesTheObjectThatIsThereAlready) {
    auto const present = TypeParam::outputIs(*this->hostV3(), "x");
    present->typeIs(PortType::mlag);
    auto const reactor = this->unregistered();
    EXPECT_EQ(TypeParam::outputOf(*reactor), present);
    EXPECT_EQ(present->type(), PortType::mlag);
}

TYPED_TEST(MemberReactor, CreatesItsObjectAnewWhenAsked) {
    using Kind = TypeParam;
    auto const before = Kind::outputOf(*this->reactor);
    EXPECT_EQ(Kind::created(*this->reactor), before);
    this->hostV3()->portDelAll();
    this->hostV3()->portGroupDelAll();
    this->hostV3()->mlagDelAll();
    auto const created = Kind::created(*this->reactor);
    EXPECT_NE(created, before);
    EXPECT_EQ(created, this->output(Kind::own));
    // Storing it is another operation.
    EXPECT_EQ(Kind::outputOf(*this->reactor), before);
}

TYPED_TEST(MemberReactor, CreatesNothingWithoutOutputStatusHostOrRoot) {
    using Kind = TypeParam;
    struct {
        char const * name;
        std::function<void()> take;
    } const cases[] = {
        {"version-3 host", [&] { this->models.v3->hostDelAll(); }},
        {"output status", [&] { this->sm->v3Del(); }},
        {"input host", [&] { this->host->notifierIs(nullptr); }},
        {"root", [&] { this->host->ownerIs(nullptr); }},
    };
    for (auto const & [name, take] : cases) {
        SCOPED_TRACE(name);
        take();
        Journal journal;
        EXPECT_EQ(Kind::created(*this->reactor), nullptr);
        auto const made = this->unregistered();
        EXPECT_EQ(Kind::outputOf(*made), nullptr);
        EXPECT_THAT(journal.taken(), ElementsAre(this->create, this->create));
    }
    this->sm->hostDelAll();
}

TYPED_TEST(MemberReactor, HoldsItsObjectAndReleasesIt) {
    using Kind = TypeParam;
    auto const output = Kind::outputOf(*this->reactor);
    auto const references = output->references();
    Kind::withoutOutput(*this->reactor);
    EXPECT_EQ(output->references(), references - 1);
    Kind::withoutOutput(*this->reactor);
    EXPECT_EQ(output->references(), references - 1);
}

// Handlers

TYPED_TEST(MemberReactor, WritesTheTypeOfItsObject) {
    struct {
        PortTypeV2 type;
        char const * written;
    } const cases[] = {
        {PortTypeV2::mlag, "typeIs(mlag)"},       {PortTypeV2::portGroup, "typeIs(portGroup)"},
        {PortTypeV2::port, "typeIs(port)"},       {static_cast<PortTypeV2>(4), "typeIs(unknown)"},
        {PortTypeV2::unknown, "typeIs(unknown)"}, {static_cast<PortTypeV2>(0xffffffff), "typeIs(unknown)"},
    };
    this->input->typeIs(PortTypeV2::unknown);
    for (auto const & [type, written] : cases) {
        Journal journal;
        this->input->typeIs(type);
        this->reactor->onType();
        auto const lines = journal.taken();
        EXPECT_EQ(lines.back(), this->write(written));
        EXPECT_EQ(lines[lines.size() - 2], "trace toPortTypeV3");
    }
}

// The handlers do not trace; the lookups do.
TYPED_TEST(MemberReactor, WritesAlsoWhatIsThereAlready) {
    this->input->typeIs(PortTypeV2::mlag);
    TypeParam::linkDel(*this->input);
    Journal journal;
    this->reactor->onType();
    this->reactor->onType();
    auto const lines = journal.taken();
    EXPECT_THAT(lines, ElementsAre("trace toPortTypeV3", this->write("typeIs(mlag)"), "trace toPortTypeV3",
                                   this->write("typeIs(mlag)")));
    TypeParam::onLink(*this->reactor);
    EXPECT_THAT(journal.taken(), ElementsAre(testing::StartsWith("trace to"), this->write(TypeParam::link)));
}

TYPED_TEST(MemberReactor, WithoutObjectOrOutputWritesNothing) {
    auto const nothing = [&] {
        Journal journal;
        this->reactor->onType();
        TypeParam::onLink(*this->reactor);
        EXPECT_THAT(journal.taken(), IsEmpty());
    };
    TypeParam::withoutOutput(*this->reactor);
    nothing();
    this->reactor->notifierIs(nullptr);
    nothing();
    auto const other = TypeParam::reactorIs(*this->host, TypeParam::made("x"));
    other->notifierIs(nullptr);
    Journal journal;
    other->onType();
    TypeParam::onLink(*other);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TYPED_TEST(MemberReactor, WithoutOwnerWritesTypeZeroAndNoLink) {
    this->input->typeIs(PortTypeV2::mlag);
    this->reactor->ownerIs(nullptr);
    Journal journal;
    this->reactor->onType();
    TypeParam::onLink(*this->reactor);
    EXPECT_THAT(journal.taken(), ElementsAre(this->write("typeIs(unknown)"), this->write(TypeParam::link)));
    this->reactor->ownerIs(this->host.get());
}

TYPED_TEST(MemberReactor, WithoutTranslatorWritesTypeZeroAndNoLink) {
    this->input->typeIs(PortTypeV2::mlag);
    this->host->ownerIs(nullptr);
    Journal journal;
    this->reactor->onType();
    TypeParam::onLink(*this->reactor);
    EXPECT_THAT(journal.taken(), ElementsAre(this->write("typeIs(unknown)"), this->write(TypeParam::link)));
    this->host->ownerIs(this->sm.get());
}

TYPED_TEST(MemberReactor, IgnoresWhoAddedItsObject) {
    Journal journal;
    this->input->addedByOwnerIs(true);
    this->reactor->onAddedByOwner();
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TYPED_TEST(MemberReactor, WritesIntoItsObjectAlsoWhenThatHasLeftItsHost) {
    auto const output = TypeParam::outputOf(*this->reactor);
    this->models.v3->hostDelAll();
    this->input->typeIs(PortTypeV2::mlag);
    EXPECT_EQ(output->type(), PortType::mlag);
}

// Binding

TYPED_TEST(MemberReactor, BoundToTheSameObjectDoesNotEvenRegister) {
    this->reactor->isRegisteredNotifieeIs(false);
    Journal journal;
    this->reactor->notifierIs(this->input);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_FALSE(this->reactor->isRegisteredNotifiee());
}

TYPED_TEST(MemberReactor, BoundToAnotherObjectWritesTypeThenLinkAndRegisters) {
    auto const other = TypeParam::made(TypeParam::own);
    other->typeIs(PortTypeV2::portGroup);
    this->reactor->isRegisteredNotifieeIs(false);
    Journal journal;
    this->reactor->notifierIs(other);
    EXPECT_THAT(journal.taken(), ElementsAre("trace toPortTypeV3", this->write("typeIs(portGroup)"),
                                             testing::StartsWith("trace to"), this->write(TypeParam::link)));
    EXPECT_TRUE(this->reactor->isRegisteredNotifiee());
    EXPECT_EQ(this->reactor->notifier(), other.get());
    other->typeIs(PortTypeV2::mlag);
    this->input->typeIs(PortTypeV2::unknown);
    EXPECT_EQ(this->output(TypeParam::own)->type(), PortType::mlag);
}

TYPED_TEST(MemberReactor, BoundToAnotherObjectWithoutOutputOnlyRegisters) {
    TypeParam::withoutOutput(*this->reactor);
    Journal journal;
    this->reactor->notifierIs(TypeParam::made(TypeParam::own));
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(this->reactor->isRegisteredNotifiee());
}

TYPED_TEST(MemberReactor, UnboundWritesNothingAndHasNoKey) {
    Journal journal;
    this->reactor->notifierIs(nullptr);
    EXPECT_EQ(this->reactor->notifier(), nullptr);
    EXPECT_EQ(this->reactor->fwkKey(), "");
    this->reactor->notifierIs(nullptr);
    this->input->typeIs(PortTypeV2::mlag);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TYPED_TEST(MemberReactor, TakesAnObjectOfAnotherClassForNull) {
    Journal journal;
    this->reactor->notifierIs(this->hostV2);
    EXPECT_EQ(this->reactor->notifier(), nullptr);
    this->reactor->notifierIs(this->hostV2);
    EXPECT_THAT(journal.taken(), IsEmpty());
    this->reactor->notifierIs(this->input);
    EXPECT_EQ(this->reactor->notifier(), this->input.get());
}

// A change of the new object from inside what its binding writes is not lost.
TYPED_TEST(MemberReactor, HearsOfItsNewObjectAlreadyWhileItsTypeIsWritten) {
    auto const other = TypeParam::made(TypeParam::own);
    other->typeIs(PortTypeV2::portGroup);
    auto const follower = this->inside(this->target + " onType()", [&] { other->typeIs(PortTypeV2::mlag); });
    this->reactor->notifierIs(other);
    EXPECT_EQ(this->output(TypeParam::own)->type(), PortType::mlag);
}

// Clean-up

TYPED_TEST(MemberReactor, CleansUpByName) {
    Journal journal;
    this->reactor->cleanup();
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", this->delOwn));
    EXPECT_EQ(this->output(TypeParam::own), nullptr);
    // Again: deleting what is not there changes nothing.
    this->reactor->cleanup();
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", this->delOwn));
}

TYPED_TEST(MemberReactor, WhoseVersion3HostHasGoneCleansUpNothing) {
    this->models.v3->hostDelAll();
    Journal journal;
    this->reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(),
                ElementsAre(this->className + " inactive", "trace cleanup", this->className + " marked"));
}

TYPED_TEST(MemberReactor, WithoutObjectOutputOrRootCleansUpNothing) {
    TypeParam::outputIs(*this->hostV3(), "");
    struct {
        char const * name;
        std::function<void()> take;
    } const cases[] = {
        {"output", [&] { TypeParam::withoutOutput(*this->reactor); }},
        {"object", [&] { this->reactor->notifierIs(nullptr); }},
        {"root", [&] { this->host->ownerIs(nullptr); }},
        {"owner", [&] { this->reactor->ownerIs(nullptr); }},
    };
    for (auto const & [name, take] : cases) {
        SCOPED_TRACE(name);
        take();
        Journal journal;
        this->reactor->cleanup();
        EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup"));
    }
    EXPECT_NE(this->output(""), nullptr);
    this->host->ownerIs(this->sm.get());
}

// Retirement

TYPED_TEST(MemberReactor, IsRetiredInThisOrder) {
    Journal journal;
    this->reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " inactive", "trace cleanup", this->delOwn,
                                             this->className + " marked"));
    EXPECT_EQ(this->reactor->owner(), this->host.get());
    this->input->typeIs(PortTypeV2::mlag);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TYPED_TEST(MemberReactor, IsRevivedInTheSameOrderAndCleansUpAgain) {
    this->reactor->velDoZombieReactors(true);
    TypeParam::outputIs(*this->hostV3(), TypeParam::own);
    Journal journal;
    this->reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " active", "trace cleanup", this->delOwn,
                                             this->className + " unmarked"));
    EXPECT_EQ(this->output(TypeParam::own), nullptr);
}

TYPED_TEST(MemberReactor, RetiredOrRevivedTwiceDoesNothingMore) {
    Journal journal;
    this->reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), IsEmpty());
    this->reactor->velDoZombieReactors(true);
    journal.taken();
    this->reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TYPED_TEST(MemberReactor, RetiredWithoutObjectKeepsItsNotificationsAsTheyAre) {
    this->reactor->notifierIs(nullptr);
    Journal journal;
    this->reactor->velDoZombieReactors(true);
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", this->className + " marked"));
}

TYPED_TEST(MemberReactor, RetiredOrRevivedWithoutOwnerOnlyGetsItsFlags) {
    this->reactor->ownerIs(nullptr);
    Journal journal;
    this->reactor->velDoZombieReactors(true);
    this->reactor->velDoZombieReactors(false);
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " inactive", this->className + " marked",
                                             this->className + " active", this->className + " unmarked"));
    this->reactor->ownerIs(this->host.get());
}

TYPED_TEST(MemberReactor, RevivedWritesIntoItsOldObjectAndMakesNoNewOne) {
    auto const output = TypeParam::outputOf(*this->reactor);
    this->reactor->velDoZombieReactors(true);
    this->reactor->velDoZombieReactors(false);
    this->input->typeIs(PortTypeV2::mlag);
    EXPECT_EQ(output->type(), PortType::mlag);
    EXPECT_EQ(output->host(), nullptr);
    EXPECT_EQ(this->output(TypeParam::own), nullptr);
}

TYPED_TEST(MemberReactor, RevivedAfterItWasLetGoEndsWithoutCleaningUp) {
    TypeParam::inputDel(*this->hostV2, TypeParam::own);
    TypeParam::inputIs(*this->hostV2, TypeParam::own);
    WriteLog log;
    this->reactor->velDoZombieReactors(false);
    this->reactor = nullptr;
    EXPECT_THAT(log.taken(), IsEmpty());
    EXPECT_NE(this->output(TypeParam::own), nullptr);
}

TYPED_TEST(MemberReactor, DestroyedWhileItLivesCleansUpOnce) {
    auto reactor = this->unregistered();
    Journal journal;
    reactor = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " destroyed", "trace cleanup",
                                             this->del + "'x')", this->className + " marked"));
}

TYPED_TEST(MemberReactor, DestroyedAfterItWasRetiredDoesNotCleanUpAgain) {
    auto reactor = this->unregistered();
    reactor->velDoZombieReactors(true);
    TypeParam::outputIs(*this->hostV3(), "x");
    Journal journal;
    reactor = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " destroyed"));
    EXPECT_NE(this->output("x"), nullptr);
}

TYPED_TEST(MemberReactor, DestroyedWithoutOwnerWritesNothing) {
    auto reactor = this->unregistered();
    reactor->ownerIs(nullptr);
    WriteLog log;
    reactor = nullptr;
    EXPECT_THAT(log.taken(), IsEmpty());
}

TYPED_TEST(MemberReactor, ReleasesItsObjectsWhenItIsDestroyed) {
    auto const input = TypeParam::made("x");
    Vel::Ptr<typename TypeParam::Reactor> reactor = new typename TypeParam::Reactor(input, this->host.get());
    auto const output = TypeParam::outputOf(*reactor);
    EXPECT_GT(input->references(), 1U);
    reactor = nullptr;
    EXPECT_EQ(input->references(), 1U);
    EXPECT_EQ(output->references(), 1U);
}

TYPED_TEST(MemberReactor, PassesNotificationsOnOnlyWhenTheyChange) {
    Journal journal;
    this->reactor->hasNotificationActiveIs(true);
    EXPECT_THAT(journal.taken(), IsEmpty());
    this->reactor->hasNotificationActiveIs(false);
    this->reactor->hasNotificationActiveIs(false);
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " inactive"));
    this->input->typeIs(PortTypeV2::mlag);
    EXPECT_THAT(journal.taken(), IsEmpty());
}

TYPED_TEST(MemberReactor, OfOneNameInTwoHostsMakesTwoObjects) {
    auto const other = this->models.v2->hostIs("other");
    TypeParam::inputIs(*other, TypeParam::own);
    auto const second = TypeParam::output(*this->models.v3->host("other"), TypeParam::own);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, this->output(TypeParam::own));
    TypeParam::inputDel(*other, TypeParam::own);
    EXPECT_NE(this->output(TypeParam::own), nullptr);
}

TYPED_TEST(MemberReactor, GoesByTheNamesThatItsObjectsHaveNow) {
    // Somebody points a host reactor at a host of another name: its members follow that name.
    auto const other = NetworkTopology::HostV2::HostV2Is("b");
    this->models.v3->hostIs("b");
    this->host->notifierIs(other);
    auto const reactor = TypeParam::reactorIs(*this->host, TypeParam::made("x"));
    EXPECT_NE(TypeParam::output(*this->models.v3->host("b"), "x"), nullptr);
    EXPECT_EQ(this->output("x"), nullptr);
}

}  // namespace
