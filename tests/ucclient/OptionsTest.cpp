#include <gtest/gtest.h>

#include <fstream>

#include "platform/VirtualKeys.h"
#include "tests/support/TemporaryDirectory.h"
#include "ucclient/Options.h"

namespace seldial {
namespace {

using Arguments = std::vector<std::string>;

Options read(const Arguments& arguments, const std::string& configuration = {}) {
  std::string error;
  const auto options = readOptions(arguments, configuration, error);
  EXPECT_TRUE(options) << error;
  return options.value_or(Options());
}

std::string errorOf(const Arguments& arguments, const std::string& configuration = {}) {
  std::string error;
  EXPECT_FALSE(readOptions(arguments, configuration, error));
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
  EXPECT_EQ(read({"--confirm", "undo"}).dialling.confirm, Confirm::kUndo);
  EXPECT_EQ(read({"--undo-time", "60"}).dialling.undoTime, std::chrono::seconds(60));
  EXPECT_EQ(read({"--open", "sip"}).dialling.scheme, "sip");
}

TEST(Options, InvalidDialSettingsAreReported) {
  EXPECT_EQ(errorOf({"--dial", ""}), "--dial : there is no program");
  EXPECT_EQ(errorOf({"--dial", "'x"}),
            "--dial 'x: a quote is not closed, or nothing follows a backslash");
  EXPECT_EQ(errorOf({"--dial=x", "--open=tel"}), "--dial and --open cannot be used together");
  EXPECT_EQ(errorOf({"--open", "http"}), "--open takes tel, sip or callto, not http");
  EXPECT_EQ(errorOf({"--region", "Holland"}),
            "--region takes the two letters of a country, such as NL, not Holland");
  EXPECT_EQ(errorOf({"--format", "E.164"}), "--format takes e164, national or raw, not E.164");
  for (const char* const time : {"0", "61", "x"}) {
    EXPECT_EQ(errorOf({"--undo-time", time}),
              std::string("--undo-time takes seconds from 1 to 60, not ") + time);
  }
  EXPECT_EQ(errorOf({"--prefix", "0w"}), "--prefix takes digits, * and #, not 0w");
  EXPECT_EQ(errorOf({"--confirm", "yes"}),
            "--confirm takes always, undo, several or never, not yes");
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

/// A configuration file.
class OptionsFile : public testing::Test {
 protected:
  const std::string& file(const std::string& content) {
    std::ofstream(path_) << content;
    return path_;
  }

  const tests::TemporaryDirectory directory_;
  const std::string path_ = directory_.path("file");
};

TEST_F(OptionsFile, HasEverySetting) {
  const Options options = read({}, file(R"(
hotkey = "super+f5"
delay = 20
seldial = "/opt/seldial"
conversation = true
dial = "call {tel}"
region = "nl"
format = "national"
prefix = "0"
confirm = "always"
)"));
  EXPECT_EQ(options.spelling, "super+f5");
  EXPECT_EQ(options.hotKey.virtualKey, 96);
  EXPECT_EQ(options.delay, 20);
  EXPECT_EQ(options.seldial, "/opt/seldial");
  EXPECT_TRUE(options.conversation);
  EXPECT_EQ(options.dialling.command, (Arguments{"call", "{tel}"}));
  EXPECT_EQ(options.dialling.region, "NL");
  EXPECT_EQ(options.dialling.format, NumberFormat::kNational);
  EXPECT_EQ(options.dialling.prefix, "0");
  EXPECT_EQ(options.dialling.confirm, Confirm::kAlways);
  EXPECT_EQ(read({}, file("open = \"callto\"")).dialling.scheme, "callto");
}

TEST_F(OptionsFile, TheCommandLineTakesPrecedence) {
  const auto& path = file("delay = 20\nregion = \"NL\"\ndial = \"x\"\n");
  EXPECT_EQ(read({"--delay=30"}, path).delay, 30);
  EXPECT_EQ(read({"--delay=30"}, path).dialling.region, "NL");
  EXPECT_EQ(read({"--dial", "y"}, path).dialling.command, (Arguments{"y", "{}"}));
  const auto opened = read({"--open", "tel"}, path).dialling;
  EXPECT_EQ(opened.scheme, "tel");
  EXPECT_TRUE(opened.command.empty());
}

TEST_F(OptionsFile, CanBeNamedInsteadOfTheDefaultOne) {
  file("delay = 20");
  EXPECT_EQ(read({"--config", path_}, "/nowhere").delay, 20);
  EXPECT_EQ(read({}, "/nowhere").delay, 500);
  EXPECT_EQ(errorOf({"--config", "/nowhere"}), "--config /nowhere: No such file or directory");
}

TEST_F(OptionsFile, InvalidSettingsAreReportedWithFileAndLine) {
  const std::vector<std::pair<std::string, std::string>> errors = {
      {"\ndelay = 70000", "2: delay takes milliseconds from 0 to 65535, not 70000"},
      {"hotkey = \"ctrl\"", "1: hotkey ctrl: there are only modifiers; a hot key needs a key"},
      {"dial = \"'\"", "1: dial ': a quote is not closed, or nothing follows a backslash"},
      {"dial = \"x\"\nopen = \"tel\"", "2: dial and open cannot be used together"},
      {"open = \"http\"", "1: open takes tel, sip or callto, not http"},
      {"region = 31", "1: region takes the two letters of a country, such as NL, not 31"},
      {"format = \"x\"", "1: format takes e164, national or raw, not x"},
      {"prefix = \"x\"", "1: prefix takes digits, * and #, not x"},
      {"confirm = true", "1: confirm takes always, undo, several or never, not true"},
      {"conversation = 1", "1: conversation takes true or false, not 1"},
      {"help = true", "1: unknown setting help"},
      {"--delay = 5", "1: unknown setting --delay"},
  };
  for (const auto& [content, error] : errors) {
    EXPECT_EQ(errorOf({}, file(content)), path_ + ":" + error);
  }
}

TEST_F(OptionsFile, HelpNeedsNoValidFile) {
  EXPECT_TRUE(read({"--help"}, file("?")).help);
}

TEST(Options, InvalidArgumentsAreReported) {
  EXPECT_EQ(errorOf({"--hotkey"}), "--hotkey needs a value");
  EXPECT_EQ(errorOf({"--verbose"}), "unknown option --verbose");
  EXPECT_EQ(errorOf({"--conversation=yes"}), "unknown option --conversation=yes");
  EXPECT_EQ(errorOf({"ctrl+d"}), "unknown option ctrl+d");
  EXPECT_EQ(errorOf({"--hotkey", "ctrl+nokey"}),
            "--hotkey ctrl+nokey: \"nokey\" is neither a modifier nor a key");
}

}  // namespace
}  // namespace seldial
