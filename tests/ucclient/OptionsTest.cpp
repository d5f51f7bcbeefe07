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
  EXPECT_TRUE(read({"--version"}).version);
}

TEST(Options, DelayGoesFrom0To65535) {
  EXPECT_EQ(read({"--delay", "0"}).delay, 0);
  EXPECT_EQ(read({"--delay", "65535"}).delay, 65535);
  for (const char* const wrong : {"65536", "-1", "", "1.5", "abc", "100000", " 5"}) {
    EXPECT_EQ(errorOf({"--delay", wrong}),
              std::string("--delay takes milliseconds from 0 to 65535, not ") + wrong);
  }
}

TEST(Options, ByDefaultNothingIsDialled) {
  EXPECT_FALSE(read({"--region", "NL"}).dialling.dials());
}

TEST(Options, HowToDial) {
  const auto dialling = read({"--dial", "call --to {tel}", "--region=nl", "--format=national",
                              "--prefix", "0", "--confirm", "always"})
                            .dialling;
  EXPECT_EQ(dialling.command, (Arguments{"call", "--to", "{tel}"}));
  EXPECT_EQ(dialling.region, "NL");
  EXPECT_EQ(dialling.format, NumberFormat::kNational);
  EXPECT_EQ(dialling.prefix, "0");
  EXPECT_EQ(dialling.confirm, Confirm::kAlways);
  EXPECT_EQ(read({"--open", "sip"}).dialling.scheme, "sip");
}

TEST(Options, NonsenseAboutDiallingIsSaid) {
  EXPECT_EQ(errorOf({"--dial", ""}), "--dial : there is no program");
  EXPECT_EQ(errorOf({"--dial", "'x"}),
            "--dial 'x: a quote is not closed, or nothing follows a backslash");
  EXPECT_EQ(errorOf({"--dial=x", "--open=tel"}), "--dial and --open cannot be used together");
  EXPECT_EQ(errorOf({"--open", "http"}), "--open takes tel, sip or callto, not http");
  EXPECT_EQ(errorOf({"--region", "Holland"}),
            "--region takes the two letters of a country, such as NL, not Holland");
  EXPECT_EQ(errorOf({"--format", "E.164"}), "--format takes e164, national or raw, not E.164");
  EXPECT_EQ(errorOf({"--prefix", "0w"}), "--prefix takes digits, * and #, not 0w");
  EXPECT_EQ(errorOf({"--confirm", "yes"}), "--confirm takes always, several or never, not yes");
}

TEST(Options, APrefixNeedsARegion) {
  setenv("LC_ALL", "C", 1);
  EXPECT_EQ(errorOf({"--open=tel", "--prefix=9"}),
            "--prefix needs --region, because the locale names no country");
  EXPECT_EQ(read({"--open=tel", "--prefix=9", "--format=raw"}).dialling.prefix, "9");
  setenv("LC_ALL", "nl_NL.UTF-8", 1);
  EXPECT_EQ(read({"--open=tel", "--prefix=9"}).dialling.region, "NL");
  unsetenv("LC_ALL");
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
