#include <gtest/gtest.h>

#include "settings/Duration.h"

namespace tool {
namespace {

TEST(DurationTest, SecondsMinutesAndHours) {
  EXPECT_EQ(SecondsOf("90"), 90);
  EXPECT_EQ(SecondsOf("90s"), 90);
  EXPECT_EQ(SecondsOf("10m"), 600);
  EXPECT_EQ(SecondsOf("2h"), 7200);
  EXPECT_EQ(SecondsOf("0.5m"), 30);
  EXPECT_EQ(SecondsOf("0"), 0);
  EXPECT_EQ(SecondsOf("0h"), 0);
  EXPECT_EQ(SecondsOf("277777h"), 999997200);
}

// A slip must not become a limit that nobody meant, or none.
TEST(DurationTest, WhatIsNoTimeIsRefused) {
  for (const char* const text :
       {"",    "s",     "m",   "-1",  "-1m", "+1",   " 1",   "1 m",   "1M",      "1d",
        "1ms", "1h30m", "ten", "nan", "inf", "infh", "0x10", "1e400", "277778h", "1000000001"})
    EXPECT_EQ(SecondsOf(text), std::nullopt) << text;
}

}  // namespace
}  // namespace tool
