#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "client/Configuration.h"
#include "client/Options.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {
namespace {

using testing::StartsWith;

class Configuration : public testing::Test {
 protected:
  void write(const std::string& content) { std::ofstream(path_) << content; }

  [[nodiscard]] std::string content() const {
    std::ostringstream text;
    text << std::ifstream(path_).rdbuf();
    return text.str();
  }

  /// The settings as "LINE NAME=VALUE;...".
  [[nodiscard]] std::string settings() const {
    std::string error;
    const auto settings = readConfiguration(path_, error);
    if (!settings) return error;
    std::string all;
    for (const Setting& one : *settings) {
      all += std::to_string(one.line) + " " + one.name + "=" + one.value + ";";
    }
    return all;
  }

  void change(const std::map<std::string, std::optional<std::string>>& values) {
    std::string error;
    EXPECT_TRUE(writeConfiguration(path_, values, error)) << error;
  }

  const tests::TemporaryDirectory directory_;
  std::string path_ = directory_.path("seldial-uc.toml");
};

TEST_F(Configuration, SettingsAreStringsNumbersAndBooleans) {
  write(
      "# mine\nregion = \"NL\"  # Dutch\n\nconversation = true\ndelay = 50\ndial = '''a "
      "\"b\"'''\n");
  EXPECT_EQ(settings(), "2 region=NL;4 conversation=true;5 delay=50;6 dial=a \"b\";");
}

TEST_F(Configuration, AFileThatDoesNotExistHasNoSettings) {
  EXPECT_EQ(settings(), "");
}

TEST_F(Configuration, InvalidTOMLIsReportedWithItsLine) {
  write("region = \"NL\"\nhotkey = ctrl+d\n");
  EXPECT_THAT(settings(), StartsWith(path_ + ":2: "));
  write("region = \"NL\"\nregion = \"DE\"\n");
  EXPECT_THAT(settings(), StartsWith(path_ + ":2: "));
  write("region = \"\xFF\"\n");
  EXPECT_THAT(settings(), StartsWith(path_ + ":1: "));
}

TEST_F(Configuration, ValuesOfOtherTypesAreReported) {
  const std::string rest = " takes a text, a whole number, true or false";
  write("\ndelay = 1.5\n");
  EXPECT_EQ(settings(), path_ + ":2: delay" + rest);
  write("[phone]\ndial = \"x\"\n");
  EXPECT_EQ(settings(), path_ + ":1: phone" + rest);
}

TEST_F(Configuration, AFileThatCannotBeReadIsReported) {
  mkdir(path_.c_str(), 0700);
  EXPECT_EQ(settings(), "cannot read " + path_ + ": Is a directory");
}

TEST_F(Configuration, ANewFileHasAHeadingAndTheSettings) {
  path_ = directory_.path("config") + "/seldial/seldial-uc.toml";
  change({{"hotkey", "super+f5"}, {"delay", "50"}, {"region", std::nullopt}});
  EXPECT_THAT(content(), StartsWith("# Settings of seldial-uc"));
  EXPECT_EQ(settings(), "4 delay=50;5 hotkey=super+f5;");
}

TEST_F(Configuration, AChangeKeepsEverythingElse) {
  write("# é\nregion = \"Nü\"  # é, mine\ndelay = 500\n\nhotkey = '''x\ny''' # z\n# end");
  change({{"region", "DE"}, {"hotkey", "f5"}, {"open", "tel"}, {"delay", "50"}});
  EXPECT_EQ(content(),
            "# é\nregion = \"DE\"  # é, mine\ndelay = 50\n\nhotkey = \"f5\" # z\n# end\n"
            "open = \"tel\"\n");
}

TEST_F(Configuration, ASettingIsRemovedWithItsLine) {
  write("open = \"tel\"\ndelay = 5\nregion = \"NL\"");
  change({{"open", std::nullopt}});
  EXPECT_EQ(content(), "delay = 5\nregion = \"NL\"");
  change({{"region", std::nullopt}});
  EXPECT_EQ(content(), "delay = 5\n");
}

TEST_F(Configuration, AnyTextIsReadBackUnaltered) {
  for (const char* const value : {"", "a \"b\" 'c' \\", "\t\x01\x7F\r\n", "é ☎", "00", "-1", "1e5",
                                  "true", "99999999999999"}) {
    change({{"dial", value}});
    EXPECT_EQ(settings(), "4 dial=" + std::string(value) + ";");
  }
}

TEST_F(Configuration, AFileThatIsNotValidIsNotChanged) {
  write("hotkey = \n");
  std::string error;
  EXPECT_FALSE(writeConfiguration(path_, {{"delay", "5"}}, error));
  EXPECT_THAT(error, StartsWith(path_ + ":1: "));
  EXPECT_EQ(content(), "hotkey = \n");
}

TEST_F(Configuration, ASymbolicLinkIsPreserved) {
  const std::string file = directory_.path("dotfile");
  std::ofstream(file) << "delay = 5\n";
  ASSERT_EQ(symlink(file.c_str(), path_.c_str()), 0);
  change({{"delay", "6"}});
  EXPECT_EQ(content(), "delay = 6\n");
  struct stat status {};
  ASSERT_EQ(lstat(path_.c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
}

TEST_F(Configuration, AFailureToWriteIsReported) {
  path_ = "/proc/nowhere/seldial-uc.toml";
  std::string error;
  EXPECT_FALSE(writeConfiguration(path_, {{"delay", "5"}}, error));
  EXPECT_THAT(error, StartsWith("cannot write " + path_ + ": "));
}

TEST_F(Configuration, TheDefaultPath) {
  setenv("HOME", "/home/me", 1);
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(defaultConfigurationPath(), "/home/me/.config/seldial/seldial-uc.toml");
  setenv("XDG_CONFIG_HOME", "/etc/me", 1);
  EXPECT_EQ(defaultConfigurationPath(), "/etc/me/seldial/seldial-uc.toml");
  setenv("XDG_CONFIG_HOME", "relative", 1);
  setenv("HOME", "", 1);
  EXPECT_EQ(defaultConfigurationPath(), "");
}

}  // namespace
}  // namespace seldial
