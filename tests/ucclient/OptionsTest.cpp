#include <gtest/gtest.h>

#include "platform/VirtualKeys.h"
#include "ucclient/Options.h"

namespace seldial {
namespace {

using Arguments = std::vector<std::string>;

Options read(const Arguments& arguments) {
  std::string error;
  const auto options = optionsFrom(arguments, error);
  EXPECT_TRUE(options) << error;
  return options.value_or(Options());
}

std::string errorOf(const Arguments& arguments) {
  std::string error;
  EXPECT_FALSE(optionsFrom(arguments, error));
  return error;
}

TEST(Options, WithoutArgumentsCtrlAltDAndHalfASecond) {
  const Options options = read({});
  EXPECT_EQ(options.hotKey.modifierFlags,
            platform::kModifierFlagControl | platform::kModifierFlagOption);
  EXPECT_EQ(options.hotKey.virtualKey, 2);
  EXPECT_EQ(options.delay, 500);
  EXPECT_EQ(options.seldial, "");
  EXPECT_FALSE(options.conversation || options.help);
}

TEST(Options, ValuesAsTheNextArgumentOrAfterAnEqualsSign) {
  for (const Arguments& arguments :
       {Arguments{"--hotkey", "super+=", "--delay", "20", "--seldial", "/opt/seldial"},
        Arguments{"--hotkey=super+=", "--delay=20", "--seldial=/opt/seldial"}}) {
    const Options options = read(arguments);
    EXPECT_EQ(options.hotKey.modifierFlags, platform::kModifierFlagCommand);
    EXPECT_EQ(options.hotKey.virtualKey, 24);
    EXPECT_EQ(options.delay, 20);
    EXPECT_EQ(options.seldial, "/opt/seldial");
  }
}

TEST(Options, Switches) {
  EXPECT_TRUE(read({"--conversation"}).conversation);
  EXPECT_TRUE(read({"--help"}).help);
}

TEST(Options, DelayGoesFrom0To65535) {
  EXPECT_EQ(read({"--delay", "0"}).delay, 0);
  EXPECT_EQ(read({"--delay", "65535"}).delay, 65535);
  for (const char* const wrong : {"65536", "-1", "", "1.5", "abc", "100000", " 5"}) {
    EXPECT_EQ(errorOf({"--delay", wrong}),
              std::string("--delay takes milliseconds from 0 to 65535, not ") + wrong);
  }
}

TEST(Options, WhatMakesNoSenseIsSaid) {
  EXPECT_EQ(errorOf({"--hotkey"}), "--hotkey needs a value");
  EXPECT_EQ(errorOf({"--verbose"}), "there is no option --verbose");
  EXPECT_EQ(errorOf({"--conversation=yes"}), "there is no option --conversation=yes");
  EXPECT_EQ(errorOf({"ctrl+d"}), "there is no option ctrl+d");
  EXPECT_EQ(errorOf({"--hotkey", "ctrl+nokey"}),
            "--hotkey ctrl+nokey: \"nokey\" is neither a modifier nor a key");
}

}  // namespace
}  // namespace seldial
