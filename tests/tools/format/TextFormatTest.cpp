#include "tools/format/TextFormat.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/format/FormatTesting.h"
#include "tools/json/SourceText.h"

namespace TopologyTools {
namespace {

using namespace Testing;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

std::string text(Status::Ptr const & status) { return textFormat(topologyView(*status), false); }

TEST(TextFormat, ShowsARack) {
    EXPECT_EQ(text(rack()),
              R"(leaf-1  leaf-1.example  (localhost)
  MLAG domain rack, state active, system 02:00:00:00:00:01, peer link peer (group)

  PORT    TYPE  GROUP        PEER    PEER PORT
  eth-2   port  bond-1  <->  server  eth-1
  eth-3   port  -
  eth-9   port  peer    <->  leaf-2  eth-9
  eth-10  port  peer    <->  leaf-2  eth-10
  eth-11  port  -       <->  spine   eth-1

  GROUP   TYPE       MLAG  MEMBERS
  bond-1  portGroup  m-1   eth-2
  peer    portGroup  -     eth-9, eth-10

  MLAG  TYPE  SECONDARY  LOCAL GROUP
  m-1   mlag  m-1-peer   bond-1

  logical ports  bond-1 (group), m-1 (MLAG)

  raw MLAGs  m-1

leaf-2  leaf-2.example
  MLAG domain rack, state active, system 02:00:00:00:00:01, peer link peer (group)

  PORT    TYPE  GROUP        PEER    PEER PORT
  eth-2   port  bond-1  <->  server  eth-2
  eth-3   port  -
  eth-9   port  peer    <->  leaf-1  eth-9
  eth-10  port  peer    <->  leaf-1  eth-10
  eth-11  port  -       <->  spine   eth-2

  GROUP   TYPE       MLAG  MEMBERS
  bond-1  portGroup  m-1   eth-2
  peer    portGroup  -     eth-9, eth-10

  MLAG  TYPE  SECONDARY  LOCAL GROUP
  m-1   mlag  m-1-peer   bond-1

  logical ports  bond-1 (group), m-1 (MLAG)

  raw MLAGs  m-1

server
  PORT   TYPE  GROUP       PEER    PEER PORT
  eth-1  port  bond   <->  leaf-1  eth-2
  eth-2  port  bond   <->  leaf-2  eth-2

  GROUP  TYPE       MEMBERS
  bond   portGroup  eth-1, eth-2

spine
  PORT   TYPE       PEER    PEER PORT
  eth-1  port  <->  leaf-1  eth-11
  eth-2  port  <->  leaf-2  eth-11

HOST         HOST    LINKS
leaf-1  <->  leaf-2      2
leaf-1  <->  server      1
leaf-1  <->  spine       1
leaf-2  <->  server      1
leaf-2  <->  spine       1

4 hosts, 14 ports, 5 port groups, 2 MLAGs, 12 edges to 12 destinations
)");
}

TEST(TextFormat, ShowsWhatIsOutOfTheOrdinary) {
    Status::Ptr const status = Status::StatusIs();
    Host::Ptr const a = status->hostIs("a");
    Host::Ptr const b = status->hostIs("b");
    PortGroup::Ptr const bond = a->portGroupIs("bond");
    Port::Ptr const foreign = b->portIs("p-1");
    Port::Ptr const goes = b->portIs("goes");
    bond->memberPortIs(foreign);
    bond->memberPortIs(goes);
    foreign->portGroupIs(bond.get());
    edge(*status, *bond, *foreign, false);
    edge(*status, *bond, *goes);
    edge(*status, *goes, *foreign);
    Port::Ptr const looped = b->portIs("p-2");
    edge(*status, *looped, *looped);
    status->edgeIs(b->portIs("p-3")->portKey());
    edge(*status, *goes, *goes);
    status->edgeIs(PortKey());
    b->mlagPeerLinkIs(bond);
    b->portDel("goes");
    status->localhostIs(status->hostIs("c"));
    status->hostDel("c");
    EXPECT_EQ(text(status), R"(a
  GROUP  TYPE     MEMBERS                              PEER  PEER PORT  REMARKS
  bond   unknown  goes of b (has left), p-1 of b  -->  b     goes       has left
                                                  -->  b     p-1        out: false

b
  MLAG peer link bond (group) of a

  PORT  TYPE     GROUP           PEER     PEER PORT     REMARKS
  p-1   unknown  bond of a  <--  a        bond (group)  in: false
                            <--  b        goes          has left
  p-2   unknown  -          <->  b        p-2
  p-3   unknown  -          -->  nowhere

HOST       HOST  LINKS
a     -->  b         2
b     <->  b         2
b     -->  b         1

edges of ports that have left
  goes (port) of b (has left) <-> goes (port) of b (has left)
  "" (no port) of "" (has left) --> nowhere

2 hosts, 3 ports, 1 port group, 0 MLAGs, 5 edges to 5 destinations
)");
}

TEST(TextFormat, NamesCannotBreakLinesOrSteerTheTerminal) {
    Status::Ptr const status = hostileModel();
    std::string const all = text(status) + summaryFormat(topologyView(*status), false);
    EXPECT_EQ(findInvalidUtf8(all), std::string::npos);
    for (char const c : all) EXPECT_TRUE(c == '\n' || (static_cast<unsigned char>(c) >= 0x20 && c != 0x7f));
    EXPECT_THAT(all, HasSubstr("\n\"\\u0000nul\\u0000\"  \"\\u0000nul\\u0000\"\n"));
    EXPECT_THAT(all, Not(HasSubstr("\u202e")));
}

TEST(TextFormat, AnEmptyModelHasNothing) {
    EXPECT_EQ(text(Status::StatusIs()),
              "0 hosts, 0 ports, 0 port groups, 0 MLAGs, 0 edges to 0 destinations\n");
}

TEST(SummaryFormat, Counts) {
    EXPECT_EQ(summaryFormat(topologyView(*rack()), false),
              R"(hosts                      4
ports                      14
port groups                5
MLAGs                      2
edges                      12
destinations               12
links both ways            6
links one way              0
edges without destination  0
edge ends that have left   0
localhost                  leaf-1
)");
}

TEST(SummaryFormat, CountsWhatIsOutOfTheOrdinary) {
    Status::Ptr const status = Status::StatusIs();
    Host::Ptr const host = status->hostIs("h");
    Port::Ptr const goes = host->portIs("goes");
    Port::Ptr const stays = host->portIs("stays");
    edge(*status, *stays, *goes);
    edge(*status, *stays, *stays);
    status->edgeIs(goes->portKey());
    host->portDel("goes");
    status->localhostIs(host);
    status->hostDel("h");
    EXPECT_EQ(summaryFormat(topologyView(*status), false),
              R"(hosts                      0
ports                      0
port groups                0
MLAGs                      0
edges                      2
destinations               2
links both ways            1
links one way              1
edges without destination  1
edge ends that have left   2
localhost                  h (has left)
)");
}

}  // namespace
}  // namespace TopologyTools
