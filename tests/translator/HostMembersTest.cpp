// The three registries of a host reactor, which are held to the same, and the two collections of the host
// that have none.
#include <map>
#include <set>
#include <string>
#include <string_view>

#include <gmock/gmock.h>

#include "platform/Vel/Exceptions.h"
#include "tests/translator/support/Followed.h"
#include "tests/translator/support/Journal.h"
#include "tests/translator/support/KindsOfMembers.h"

namespace {

using NetworkTopology::HostV2;
using NetworkTopology::MlagV2;
using NetworkTopology::PortV2;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using TestSupport::Followed;
using TestSupport::Journal;
using TestSupport::KindNames;
using TestSupport::KindsOfMembers;
using TestSupport::Lines;
using TestSupport::WriteLog;

template <class Kind>
struct Members : Followed {
    std::string const className = Kind::className;
    std::string const is = std::string("/host/a ") + Kind::is + "(";
    std::string const del = std::string("/host/a ") + Kind::del + "(";

    std::set<std::string> names() const {
        std::set<std::string> names;
        for (auto const & reactor : Kind::reactors(*host)) names.emplace(reactor->fwkKey().view());
        return names;
    }
};

TYPED_TEST_SUITE(Members, KindsOfMembers, KindNames);

TYPED_TEST(Members, AreEnteredOnceMadeAndActive) {
    using Kind = TypeParam;
    auto const input = Kind::made("x");
    Journal journal;
    auto const reactor = Kind::reactorIs(*this->host, input);
    EXPECT_THAT(journal.taken(),
                ElementsAre(std::string("trace ") + Kind::create, this->is + "'x'" + Kind::secondary + ")",
                            this->className + " active"));
    EXPECT_EQ(Kind::reactor(*this->host, "x"), reactor);
    EXPECT_EQ(reactor->notifier(), input.get());
    EXPECT_EQ(reactor->owner(), this->host.get());
    EXPECT_FALSE(reactor->velMarkedForDeletion());
    EXPECT_TRUE(reactor->isRegisteredNotifiee());
}

TYPED_TEST(Members, AreFoundUnderTheNameOfTheirObject) {
    using Kind = TypeParam;
    auto const reactor = Kind::reactor(*this->host, Kind::own);
    ASSERT_NE(reactor, nullptr);
    EXPECT_EQ(reactor->fwkKey(), Kind::own);
    EXPECT_EQ(Kind::reactor(*this->host, "unknown"), nullptr);
    EXPECT_EQ(Kind::reactors(*this->host).size(), 1U);
}

TYPED_TEST(Members, OfAnObjectThatIsFollowedAlreadyAreLeftAsTheyAre) {
    using Kind = TypeParam;
    auto const reactor = Kind::reactor(*this->host, Kind::own);
    reactor->velDoZombieReactors(true);
    Journal journal;
    EXPECT_EQ(Kind::reactorIs(*this->host, Kind::inputIs(*this->hostV2, Kind::own)), reactor);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_TRUE(reactor->velMarkedForDeletion());
}

TYPED_TEST(Members, OfAnotherObjectOfTheSameNameAreReboundAndKept) {
    using Kind = TypeParam;
    auto const reactor = Kind::reactor(*this->host, Kind::own);
    auto const output = Kind::outputOf(*reactor);
    auto const other = Kind::made(Kind::own);
    EXPECT_EQ(Kind::reactorIs(*this->host, other), reactor);
    EXPECT_EQ(reactor->notifier(), other.get());
    EXPECT_EQ(Kind::reactor(*this->host, Kind::own), reactor);
    EXPECT_EQ(Kind::reactors(*this->host).size(), 1U);
    EXPECT_EQ(Kind::output(*this->hostV3(), Kind::own), output);
}

TYPED_TEST(Members, TakeOnTheMarkOfTheirHostWhenTheyAreMadeOrRebound) {
    using Kind = TypeParam;
    auto const reactor = Kind::reactor(*this->host, Kind::own);
    reactor->velDoZombieReactors(true);
    Kind::reactorIs(*this->host, Kind::made(Kind::own));
    EXPECT_FALSE(reactor->velMarkedForDeletion());
    EXPECT_TRUE(reactor->hasNotificationActive());
    this->host->velDoZombieReactors(true);
    this->models.v3->hostIs("a");
    Journal journal;
    auto const late = Kind::reactorIs(*this->host, Kind::made("x"));
    EXPECT_THAT(journal.taken(),
                ElementsAre(std::string("trace ") + Kind::create, this->is + "'x'" + Kind::secondary + ")",
                            this->className + " active", this->className + " inactive", "trace cleanup",
                            this->del + "'x')", this->className + " marked"));
    EXPECT_TRUE(late->velMarkedForDeletion());
}

TYPED_TEST(Members, RefuseNullWithTheTextThatEndsInAQuote) {
    using Kind = TypeParam;
    Journal journal;
    try {
        Kind::reactorIs(*this->host, nullptr);
        FAIL() << "null was taken";
    } catch (Vel::RangeException const & exception) {
        EXPECT_STREQ(exception.what(), Kind::nullText);
    }
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(Kind::reactors(*this->host).size(), 1U);
}

TYPED_TEST(Members, AreMadeByTheRegistryAlone) {
    using Kind = TypeParam;
    auto const reactor = Kind::newReactor(*this->host, Kind::made("x"));
    EXPECT_TRUE(reactor->hasNotificationActive());
    EXPECT_EQ(Kind::reactor(*this->host, "x"), reactor);
    auto const & tracked = *TypeParam::Reactor::velAllocTrackTypeInfo_;
    EXPECT_EQ(tracked.live(), 2U);
    EXPECT_EQ(tracked.typeName(), "NetworkTopologyAggregator::V2Sm::VelHost::" + this->className);
    EXPECT_EQ(tracked.size(), sizeof(typename TypeParam::Reactor));
}

TYPED_TEST(Members, AreDeletedInThisOrder) {
    using Kind = TypeParam;
    auto reactor = Kind::reactor(*this->host, Kind::own);
    Journal journal;
    std::map<std::string, bool> entered;
    auto const follower = this->inside(std::string("/host/a ") + Kind::on + "('" + Kind::own + "')", [&] {
        entered["duringCleanUp"] = bool(Kind::reactor(*this->host, Kind::own));
    });
    Kind::reactorDel(*this->host, Kind::own);
    EXPECT_THAT(journal.taken(),
                ElementsAre(this->className + " inactive", "trace cleanup",
                            this->del + "'" + Kind::own + "')", this->className + " marked"));
    EXPECT_THAT(entered, ElementsAre(testing::Pair("duringCleanUp", false)));
    EXPECT_EQ(reactor->owner(), nullptr);
    EXPECT_FALSE(reactor->hasNotificationActive());
    EXPECT_TRUE(reactor->velMarkedForDeletion());
    EXPECT_EQ(Kind::output(*this->hostV3(), Kind::own), nullptr);
    reactor = nullptr;
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " destroyed"));
}

// A reactor that is retired already is switched off all the same.
TYPED_TEST(Members, AreSwitchedOffLastWhenTheyAreDeleted) {
    using Kind = TypeParam;
    auto const reactor = Kind::reactor(*this->host, Kind::own);
    reactor->velDoZombieReactors(true);
    reactor->hasNotificationActiveIs(true);
    Journal journal;
    Kind::reactorDel(*this->host, Kind::own);
    EXPECT_THAT(journal.taken(), ElementsAre(this->className + " inactive"));
}

TYPED_TEST(Members, OfAnUnknownNameAreDeletedWithoutAnything) {
    using Kind = TypeParam;
    Journal journal;
    Kind::reactorDel(*this->host, "unknown");
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(Kind::reactors(*this->host).size(), 1U);
}

TYPED_TEST(Members, AreDeletedWhereAnIteratorStands) {
    using Kind = TypeParam;
    Kind::inputIs(*this->hostV2, "x");
    Kind::inputIs(*this->hostV2, "y");
    auto const range = Kind::reactors(*this->host);
    auto const at = range.at(Vel::Name("x"));
    Kind::reactorDel(*this->host, at);
    EXPECT_THAT(this->names(), UnorderedElementsAre(Kind::own, "y"));
    // It still stands on the reactor that has gone, and at the end it stands on nothing.
    Kind::reactorDel(*this->host, at);
    Kind::reactorDel(*this->host, range.at(Vel::Name("unknown")));
    EXPECT_THAT(this->names(), UnorderedElementsAre(Kind::own, "y"));
}

TYPED_TEST(Members, AreAllDeletedEachOnce) {
    using Kind = TypeParam;
    for (char const * const name : {"u", "v", "w", "x", "y", "z"}) Kind::inputIs(*this->hostV2, name);
    WriteLog log;
    Kind::reactorDelAll(*this->host);
    EXPECT_EQ(Kind::reactors(*this->host).size(), 0U);
    Lines expected;
    for (char const * const name : {Kind::own, "u", "v", "w", "x", "y", "z"}) {
        expected.push_back(this->del + "'" + name + "')");
    }
    EXPECT_THAT(log.taken(), testing::UnorderedElementsAreArray(expected));
    Kind::reactorDelAll(*this->host);
    EXPECT_THAT(log.taken(), IsEmpty());
}

TYPED_TEST(Members, MayBeDeletedWhileTheyAreWalked) {
    using Kind = TypeParam;
    for (char const * const name : {"u", "v", "w", "x", "y", "z"}) Kind::inputIs(*this->hostV2, name);
    std::size_t met = 0;
    for (auto const & reactor : Kind::reactors(*this->host)) {
        Kind::reactorDel(*this->host, reactor->fwkKey());
        ++met;
    }
    EXPECT_EQ(met, 7U);
    EXPECT_EQ(Kind::reactors(*this->host).size(), 0U);
}

TYPED_TEST(Members, FollowTheKeyedNotification) {
    using Kind = TypeParam;
    Kind::inputIs(*this->hostV2, "x");
    EXPECT_THAT(this->names(), UnorderedElementsAre(Kind::own, "x"));
    auto const reactor = Kind::reactor(*this->host, "x");
    auto const replacement = Kind::made("x");
    Kind::inputIs(*this->hostV2, replacement);
    EXPECT_EQ(Kind::reactor(*this->host, "x"), reactor);
    EXPECT_EQ(reactor->notifier(), replacement.get());
    Kind::inputDel(*this->hostV2, "x");
    EXPECT_THAT(this->names(), ElementsAre(Kind::own));
    EXPECT_EQ(reactor->owner(), nullptr);
}

TYPED_TEST(Members, AreLookedUpInTheInputByTheKeyedNotification) {
    using Kind = TypeParam;
    // What the input does not hold is deleted, what it holds is entered, whatever has happened.
    Kind::reactorIs(*this->host, Kind::made("stray"));
    Kind::onKey(*this->host, "stray");
    Kind::onKey(*this->host, "unknown");
    EXPECT_THAT(this->names(), ElementsAre(Kind::own));
    Kind::reactorDel(*this->host, Kind::own);
    Kind::onKey(*this->host, Kind::own);
    EXPECT_THAT(this->names(), ElementsAre(Kind::own));
}

TYPED_TEST(Members, AreBroughtIntoLineByTheImmediateNotification) {
    using Kind = TypeParam;
    Kind::reactorIs(*this->host, Kind::made("stray"));
    this->host->hasNotificationActiveIs(false);
    Kind::inputIs(*this->hostV2, "unseen");
    this->host->hasNotificationActiveIs(true);
    EXPECT_THAT(this->names(), UnorderedElementsAre(Kind::own, "stray"));
    // A stray one is not deleted by the coming of another.
    Kind::reactorIs(*this->host, Kind::inputIs(*this->hostV2, "new"));
    EXPECT_THAT(this->names(), UnorderedElementsAre(Kind::own, "stray", "new"));
    WriteLog log;
    Kind::onAll(*this->host);
    EXPECT_THAT(this->names(), UnorderedElementsAre(Kind::own, "unseen", "new"));
    // Additions first.
    EXPECT_THAT(log.lines(),
                ElementsAre(this->is + "'unseen'" + Kind::secondary + ")", this->del + "'stray')"));
}

TYPED_TEST(Members, OfAHostThatLosesThemAllAreAllDeleted) {
    using Kind = TypeParam;
    for (char const * const name : {"x", "y"}) Kind::inputIs(*this->hostV2, name);
    Kind::inputDelAll(*this->hostV2);
    EXPECT_EQ(Kind::reactors(*this->host).size(), 0U);
    EXPECT_EQ(Kind::output(*this->hostV3(), "x"), nullptr);
}

TYPED_TEST(Members, OfAReactorWithoutHostIgnoreNotifications) {
    using Kind = TypeParam;
    this->host->notifierIs(nullptr);
    Journal journal;
    Kind::onKey(*this->host, Kind::own);
    Kind::onKey(*this->host, "unknown");
    Kind::onAll(*this->host);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_THAT(this->names(), ElementsAre(Kind::own));
}

TYPED_TEST(Members, AreLeftAloneByTheUnkeyedNotificationAndTheHookOfTheCollection) {
    using Kind = TypeParam;
    Kind::reactorDel(*this->host, Kind::own);
    Journal journal;
    Kind::onUnkeyed(*this->host);
    Kind::notify(*this->host, Kind::own);
    EXPECT_THAT(journal.taken(), IsEmpty());
    EXPECT_EQ(Kind::reactors(*this->host).size(), 0U);
}

TYPED_TEST(Members, AreCleanedUpByTheHookAndNothingElse) {
    using Kind = TypeParam;
    auto const reactor = Kind::reactor(*this->host, Kind::own);
    Journal journal;
    Kind::hook(*this->host, reactor);
    EXPECT_THAT(journal.taken(), ElementsAre("trace cleanup", this->del + "'" + Kind::own + "')"));
    EXPECT_EQ(Kind::reactor(*this->host, Kind::own), reactor);
}

TYPED_TEST(Members, OfSimilarNamesAreToldApart) {
    using Kind = TypeParam;
    std::string_view const names[] = {std::string_view(),       std::string_view("\0", 1),
                                      std::string_view("a"),    std::string_view("a\0", 2),
                                      std::string_view("\xff"), std::string_view("\x7f")};
    for (auto const name : names) Kind::inputIs(*this->hostV2, name);
    EXPECT_EQ(Kind::reactors(*this->host).size(), std::size(names) + 1);
    for (auto const name : names) {
        EXPECT_NE(Kind::output(*this->hostV3(), name), nullptr);
        Kind::inputDel(*this->hostV2, name);
        EXPECT_EQ(Kind::output(*this->hostV3(), name), nullptr);
        EXPECT_EQ(Kind::reactor(*this->host, name), nullptr);
    }
    EXPECT_THAT(this->names(), ElementsAre(Kind::own));
}

// However the framework orders them.
TYPED_TEST(Members, AreBroughtIntoLineWhateverTheirOrder) {
    using Kind = TypeParam;
    auto const other = HostV2::HostV2Is("a");
    std::set<std::string> expected;
    for (int i = 0; i < 64; ++i) {
        auto const name = "n" + std::to_string(i);
        if (i % 3 != 0) Kind::inputIs(*this->hostV2, name);
        if (i % 3 == 1) continue;
        Kind::inputIs(*other, name);
        expected.insert(name);
    }
    this->host->notifierIs(other);
    EXPECT_EQ(this->names(), expected);
    std::uint32_t found = 0;
    for (auto const & name : expected) found += bool(Kind::output(*this->hostV3(), name)) ? 1 : 0;
    EXPECT_EQ(found, expected.size());
}

TEST_F(Followed, KeepsMembersOfOneNameApartByTheirKinds) {
    hostV2->portIs("x");
    hostV2->portGroupIs("x");
    hostV2->mlagIs("x", "");
    hostV2->portDel("x");
    EXPECT_EQ(host->port("x"), nullptr);
    EXPECT_NE(host->portGroup("x"), nullptr);
    EXPECT_NE(host->mlag("x"), nullptr);
    EXPECT_NE(hostV3()->portGroup("x"), nullptr);
    EXPECT_NE(hostV3()->mlag("x"), nullptr);
}

TEST_F(Followed, FindsAMemberThatHasLostItsObjectUnderItsOldName) {
    auto const port = host->port("p");
    port->notifierIs(nullptr);
    EXPECT_EQ(port->fwkKey(), "");
    EXPECT_EQ(host->port("p"), port);
    EXPECT_EQ(host->port(""), nullptr);
    EXPECT_EQ(host->portIs(hostV2->port("p")), port);
    port->notifierIs(nullptr);
    host->portDelAll();
    EXPECT_EQ(host->port().size(), 0U);
}

// Logical ports and raw MLAGs

struct Mirrored : Followed {};

TEST_F(Mirrored, LogicalPortIsWrittenWithItsCounterpart) {
    Journal journal;
    hostV2->logicalPortIs("p", hostV2->port("p"));
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleLogicalPort", "trace toPortBaseV3",
                                             "/host/a logicalPortIs(/host/a/port/p)"));
    EXPECT_EQ(hostV3()->logicalPort("p"), hostV3()->port("p"));
}

TEST_F(Mirrored, LogicalPortThatLeadsNowhereIsWrittenAsNull) {
    Journal journal;
    hostV2->logicalPortIs("x", nullptr);
    hostV2->logicalPortIs("y", PortV2::PortV2Is("y"));
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace handleLogicalPort", "trace toPortBaseV3", "/host/a logicalPortIs(null)",
                            "trace handleLogicalPort", "trace toPortBaseV3", "/host/a logicalPortIs(null)"));
    EXPECT_EQ(hostV3()->logicalPort().size(), 1U);
}

TEST_F(Mirrored, LogicalPortIsDeletedByItsName) {
    Journal journal;
    hostV2->logicalPortDel("g");
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleLogicalPort", "/host/a logicalPortDel('g')"));
    EXPECT_EQ(hostV3()->logicalPort().size(), 0U);
    host->onLogicalPort("unknown");
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleLogicalPort", "/host/a logicalPortDel('unknown')"));
}

TEST_F(Mirrored, RawMlagIsWrittenWithItsCounterpart) {
    auto const other = hostV2->mlagIs("n", "n2");
    Journal journal;
    hostV2->mlagRawIs("n", other);
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace handleMlagRaw", "trace toMlagV3", "/host/a mlagRawIs(/host/a/mlag/n)"));
    EXPECT_EQ(hostV3()->mlagRaw("n"), hostV3()->mlag("n"));
}

TEST_F(Mirrored, RawMlagThatLeadsNowhereIsWrittenAsNull) {
    Journal journal;
    hostV2->mlagRawIs("x", nullptr);
    hostV2->mlagRawIs("y", MlagV2::MlagV2Is("y", ""));
    EXPECT_THAT(journal.taken(),
                ElementsAre("trace handleMlagRaw", "trace toMlagV3", "/host/a mlagRawIs(null)",
                            "trace handleMlagRaw", "trace toMlagV3", "/host/a mlagRawIs(null)"));
    EXPECT_EQ(hostV3()->mlagRaw().size(), 1U);
}

TEST_F(Mirrored, RawMlagIsDeletedByItsName) {
    Journal journal;
    hostV2->mlagRawDel("m");
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleMlagRaw", "/host/a mlagRawDel('m')"));
    EXPECT_EQ(hostV3()->mlagRaw().size(), 0U);
    host->onMlagRaw("unknown");
    EXPECT_THAT(journal.taken(), ElementsAre("trace handleMlagRaw", "/host/a mlagRawDel('unknown')"));
}

TEST_F(Mirrored, EntriesAreLeftAloneByNotificationsWithoutName) {
    Journal journal;
    host->onLogicalPortvelImmediate();
    host->onMlagRawvelImmediate();
    host->onLogicalPort();
    host->onMlagRaw();
    EXPECT_THAT(journal.taken(), IsEmpty());
}

// The model tells each name of a collection that it empties.
TEST_F(Mirrored, EntriesThatAllGoAreDeletedNameByName) {
    hostV2->logicalPortIs("p", hostV2->port("p"));
    WriteLog log;
    hostV2->logicalPortDelAll();
    EXPECT_THAT(log.taken(),
                UnorderedElementsAre("/host/a logicalPortDel('g')", "/host/a logicalPortDel('p')"));
    hostV2->mlagRawDelAll();
    EXPECT_THAT(log.taken(), ElementsAre("/host/a mlagRawDel('m')"));
}

TEST_F(Mirrored, EntriesFromBeforeTheReactorWaitForTheirNotifications) {
    auto const other = HostV2::HostV2Is("a");
    other->logicalPortIs("p", other->portIs("p"));
    other->mlagRawIs("m", other->mlagIs("m", ""));
    hostV3()->logicalPortDelAll();
    hostV3()->mlagRawDelAll();
    WriteLog log;
    models.v2->hostIs(other);
    EXPECT_THAT(log.linesOf("logicalPortIs"), IsEmpty());
    EXPECT_THAT(log.linesOf("mlagRawIs"), IsEmpty());
    other->logicalPortIs("p", nullptr);
    other->logicalPortIs("p", other->port("p"));
    EXPECT_EQ(hostV3()->logicalPort("p"), hostV3()->port("p"));
}

TEST_F(Mirrored, EntriesOfANewHostWaitForTheirNotifications) {
    auto const other = HostV2::HostV2Is("x");
    other->logicalPortIs("p", other->portIs("p"));
    other->mlagRawIs("m", other->mlagIs("m", ""));
    models.v2->hostIs(other);
    EXPECT_EQ(models.v3->host("x")->logicalPort().size(), 0U);
    EXPECT_EQ(models.v3->host("x")->mlagRaw().size(), 0U);
    other->mlagRawDel("m");
    other->mlagRawIs("m", other->mlag("m"));
    EXPECT_EQ(models.v3->host("x")->mlagRaw("m"), models.v3->host("x")->mlag("m"));
}

TEST_F(Mirrored, EntriesOfAReactorWithoutHostOrOutputOrRootAreNotWritten) {
    struct {
        char const * name;
        std::function<void()> take;
    } const cases[] = {
        {"owner", [&] { host->ownerIs(nullptr); }},
        {"output", [&] { host->v3HostIs(nullptr); }},
        {"host", [&] { host->notifierIs(nullptr); }},
    };
    for (auto const & [name, take] : cases) {
        SCOPED_TRACE(name);
        take();
        Journal journal;
        host->handleLogicalPort("g");
        host->handleMlagRaw("m");
        EXPECT_THAT(journal.taken(), ElementsAre("trace handleLogicalPort", "trace handleMlagRaw"));
    }
    sm->hostDelAll();
}

}  // namespace
