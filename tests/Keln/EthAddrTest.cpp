#include "platform/Keln/EthAddr.h"

#include <iomanip>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "platform/Vel/Exceptions.h"
#include "platform/Vel/GenericIf.h"

namespace KelnTest {
namespace {

using Keln::EthAddr;

TEST(EthAddr, IsZeroByDefault) {
    EXPECT_TRUE(EthAddr().isZero());
    EXPECT_EQ(EthAddr().text(), "00:00:00:00:00:00");
    EXPECT_FALSE(EthAddr(0, 0, 0, 0, 0, 1).isZero());
    EXPECT_FALSE(EthAddr(1, 0, 0, 0, 0, 0).isZero());
}

TEST(EthAddr, PrintsEveryOctetAsTwoSmallDigits) {
    EXPECT_EQ(EthAddr(0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff).text(), "aa:bb:cc:dd:ee:ff");
    EXPECT_EQ(EthAddr(0x01, 0x23, 0x45, 0x67, 0x89, 0x0a).text(), "01:23:45:67:89:0a");
}

TEST(EthAddr, PrintsTheSameOnAnyStream) {
    std::ostringstream out;
    out << std::uppercase << std::showbase << std::oct << EthAddr(2, 0, 0, 0, 0, 0xab);
    EXPECT_EQ(out.str(), "02:00:00:00:00:ab");
}

TEST(EthAddr, ReadsWhatItPrints) {
    for (int octet = 0; octet < 256; ++octet) {
        auto const value = static_cast<std::uint8_t>(octet);
        EthAddr const address(value, static_cast<std::uint8_t>(~value), 1, value, 3, value);
        EXPECT_EQ(EthAddr::parse(address.text()), address);
    }
}

TEST(EthAddr, ReadsEitherCase) {
    EthAddr const address(0xab, 0xcd, 0xef, 0xab, 0xcd, 0xef);
    EXPECT_EQ(EthAddr::parse("ab:cd:ef:ab:cd:ef"), address);
    EXPECT_EQ(EthAddr::parse("AB:CD:EF:AB:CD:EF"), address);
    EXPECT_EQ(EthAddr::parse("aB:Cd:eF:AB:cd:Ef"), address);
}

TEST(EthAddr, ReadsNothingElse) {
    using namespace std::string_view_literals;
    for (std::string_view const text : {
             ""sv,
             "00"sv,
             "02:00:00:00:00"sv,
             "02:00:00:00:00:"sv,
             "02:00:00:00:00:0"sv,
             "02:00:00:00:00:001"sv,
             "02:00:00:00:00:01:"sv,
             "02:00:00:00:00:01:02"sv,
             " 02:00:00:00:00:01"sv,
             "02:00:00:00:00:01 "sv,
             "02:00:00:00:00:01\0"sv,
             "02-00-00-00-00-01"sv,
             "02:00:00-00:00:01"sv,
             "0200.0000.0001"sv,
             "020000000001"sv,
             "2:0:0:0:0:1"sv,
             "02:00:00:00:00:0g"sv,
             "02:00:00:00:00:g0"sv,
             "02:00:00:00:00:/1"sv,
             "02:00:00:00:00::1"sv,
             "02:00:00:00:00:@1"sv,
             "02:00:00:00:00:`1"sv,
             "02:00:00:00:00: 1"sv,
             "02:00:00:00:00:+1"sv,
             "0x:00:00:00:00:01"sv,
             ":02:00:00:00:00:0"sv,
             "02:00:00:00:00\0:1"sv,
             "02:00:00:00:00:0\xb9"sv,
         }) {
        EXPECT_EQ(EthAddr::parse(text), std::nullopt) << text;
    }
}

TEST(EthAddr, OrdersByItsOctetsFromTheFirst) {
    EthAddr const low(1, 0, 0, 0, 0, 0xff);
    EthAddr const high(1, 0, 0, 0, 1, 0);
    EXPECT_LT(low, high);
    EXPECT_GT(EthAddr(0xff, 0, 0, 0, 0, 0), EthAddr(0x7f, 0xff, 0xff, 0xff, 0xff, 0xff));
    EXPECT_EQ(low, EthAddr(1, 0, 0, 0, 0, 0xff));
    EXPECT_NE(low, high);
}

TEST(EthAddr, IsANumberOf48Bits) {
    EXPECT_EQ(EthAddr(0x01, 0x02, 0x03, 0x04, 0x05, 0x06).value(), 0x010203040506U);
    EXPECT_EQ(EthAddr(std::array<std::uint8_t, 6>{1, 2, 3, 4, 5, 6}), EthAddr(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(std::hash<EthAddr>()(EthAddr(1, 2, 3, 4, 5, 6)),
              std::hash<EthAddr>()(EthAddr(1, 2, 3, 4, 5, 6)));
    EXPECT_NE(std::hash<EthAddr>()(EthAddr(1, 2, 3, 4, 5, 6)),
              std::hash<EthAddr>()(EthAddr(1, 2, 3, 4, 5, 7)));
    EXPECT_EQ(sizeof(EthAddr), 6U);
}

TEST(EthAddr, IsReadAndPrintedThroughItsTypeRecord) {
    Vel::VelType const * const type = Vel::typeNode("Keln::EthAddr");
    ASSERT_EQ(type, &EthAddr::_velType);
    Vel::GenericIf const value = type->fromStrRep("02:00:00:00:00:AB");
    EXPECT_EQ(value.as<EthAddr>(), EthAddr(2, 0, 0, 0, 0, 0xab));
    EXPECT_EQ(value.strRep(), "02:00:00:00:00:ab");
    EXPECT_EQ(value, Vel::GenericIf::wrap(EthAddr(2, 0, 0, 0, 0, 0xab)));
    try {
        type->fromStrRep("02:00");
        FAIL() << "not refused";
    } catch (Vel::RangeException const & refusal) {
        EXPECT_STREQ(refusal.what(),
                     "expected an Ethernet address such as 02:00:5e:10:00:01, found \"02:00\"");
    }
}

}  // namespace
}  // namespace KelnTest
