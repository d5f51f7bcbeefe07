#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "api/Timestamps.h"
#include "tests/api/Fixtures.h"

namespace seldial {
namespace {

TEST(MessageTimestamp, IsLocalTimeWithTheOffsetWithoutAColon) {
  const LocalTimeZone zone("CET-1");
  EXPECT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T14:10:32+0100");
}

TEST(MessageTimestamp, WestOfGMTAndAtGMTAndAtHalfAnHour) {
  {
    const LocalTimeZone zone("EST5");
    EXPECT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T08:10:32-0500");
  }
  {
    const LocalTimeZone zone("UTC0");
    EXPECT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T13:10:32+0000");
  }
  const LocalTimeZone zone("IST-5:30");
  EXPECT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T18:40:32+0530");
}

TEST(MessageTimestamp, FollowsSummerTime) {
  const LocalTimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T14:10:32+0100");
  EXPECT_EQ(messageTimestamp(1498914632), "2017-07-01T15:10:32+0200");
}

TEST(MessageTimestamp, AYearBefore1000HasFourDigits) {
  const LocalTimeZone zone("UTC0");
  constexpr std::time_t kYear999 = -30610224001;  // its last second
  EXPECT_EQ(messageTimestamp(kYear999), "0999-12-31T23:59:59+0000");
  EXPECT_EQ(isoDateFormatter().stringFromDate(kYear999), "0999-12-31T23:59:59Z");
  EXPECT_EQ(isoDateFormatter().dateFromString("0999-12-31T23:59:59Z"), kYear999);
}

TEST(MessageTimestamp, AnOffsetOfLessThanAMinuteIsZeroWithAPlusSign) {
  for (const char* posix : {"LMT0:00:30", "LMT-0:00:30", "LMT0:00:59"}) {
    const LocalTimeZone zone(posix);
    EXPECT_THAT(messageTimestamp(kFebruary2017), testing::EndsWith("+0000")) << posix;
    EXPECT_THAT(isoDateFormatter().stringFromDate(kFebruary2017), testing::EndsWith("Z")) << posix;
  }
}

TEST(MessageTimestamp, SecondsOfAnOffsetAreLeftOut) {
  {
    const LocalTimeZone zone("LMT0:01:59");
    EXPECT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T13:08:33-0001");
    EXPECT_EQ(isoDateFormatter().stringFromDate(kFebruary2017), "2017-02-06T13:08:33-00:01");
  }
  const LocalTimeZone zone("LMT-0:19:32");
  EXPECT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T13:30:04+0019");
}

TEST(MessageTimestamp, IsTheCurrentTime) {
  const LocalTimeZone zone("EST5");
  const std::string before = messageTimestamp(std::time(nullptr));
  const std::string stamp = messageTimestamp();
  const std::string after = messageTimestamp(std::time(nullptr));
  EXPECT_LE(before, stamp);
  EXPECT_LE(stamp, after);
}

TEST(MessageTimestamp, AnyThreadMayCallAtTheSameTime) {
  const LocalTimeZone zone("CET-1");
  std::array<std::thread, 8> threads;
  for (auto& thread : threads) {
    thread = std::thread([] {
      for (int round = 0; round < 500; ++round) {
        ASSERT_EQ(messageTimestamp(kFebruary2017), "2017-02-06T14:10:32+0100");
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

TEST(ISODateFormatter, WritesTheOffsetWithAColonOrZForGMT) {
  {
    const LocalTimeZone zone("CET-1");
    EXPECT_EQ(isoDateFormatter().stringFromDate(kFebruary2017), "2017-02-06T14:10:32+01:00");
  }
  const LocalTimeZone zone("UTC0");
  EXPECT_EQ(isoDateFormatter().stringFromDate(kFebruary2017), "2017-02-06T13:10:32Z");
}

TEST(ISODateFormatter, ReadsADateWhateverTheLocalZone) {
  const LocalTimeZone zone("EST5");
  for (const auto* text : {"2017-02-06T13:10:32Z", "2017-02-06T14:10:32+01:00",
                           "2017-02-06T08:10:32-05:00", "2017-02-06T13:10:32+00:00"}) {
    EXPECT_EQ(isoDateFormatter().dateFromString(text), kFebruary2017) << text;
  }
  EXPECT_EQ(isoDateFormatter().dateFromString("1969-12-31T23:59:59Z"), -1);
}

TEST(ISODateFormatter, RejectsOtherFormsAndDatesThatDoNotExist) {
  for (const auto* text :
       {"", "2017-02-06", "2017-02-06T14:10:32", "2017-02-06T14:10:32+0100", "2017-02-06 14:10:32Z",
        "2017-02-06T14:10:32z", "2017-02-06T14:10:32Zx", "2017-2-06T14:10:32Z",
        "2017-02-30T14:10:32Z", "2017-13-06T14:10:32Z", "2017-00-06T14:10:32Z",
        "2017-02-06T24:10:32Z", "2017-02-06T14:60:32Z", "2017-02-06T14:10:60Z",
        "2017-02-06T14:10:32+24:00", "2017-02-06T14:10:32+01:60", "2017-02-06T14:10:32 01:00"}) {
    EXPECT_EQ(isoDateFormatter().dateFromString(text), std::nullopt) << text;
  }
}

TEST(ISODateFormatter, IsShared) {
  EXPECT_EQ(&isoDateFormatter(), &isoDateFormatter());
}

}  // namespace
}  // namespace seldial
