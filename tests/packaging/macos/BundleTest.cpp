// What macOS reads of the bundle and of the launchd example, and where the program agrees with it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tests/packaging/macos/PropertyList.h"

namespace seldial {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string contentOf(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(InfoPlist, NamesTheProgramAndItsVersion) {
  const auto info = PropertyList::read(SELDIAL_INFO_PLIST);
  EXPECT_EQ(info["CFBundlePackageType"], "APPL");
  EXPECT_EQ(info["CFBundleExecutable"], "Seldial");
  EXPECT_EQ(info["CFBundleIdentifier"], "org.seldial.Seldial");
  EXPECT_EQ(info["CFBundleShortVersionString"], SELDIAL_VERSION);
  EXPECT_EQ(info["CFBundleVersion"], SELDIAL_VERSION);
  EXPECT_EQ(info["CFBundleInfoDictionaryVersion"], "6.0");
}

TEST(InfoPlist, RunsFrom1011OnWithoutADockIconAndYetMayPostKeys) {
  const auto info = PropertyList::read(SELDIAL_INFO_PLIST);
  EXPECT_EQ(info["LSMinimumSystemVersion"], "10.11");
  EXPECT_EQ(info["LSUIElement"], "true");
  EXPECT_EQ(info["LSBackgroundOnly"], "");
}

TEST(InfoPlist, ItsPrincipalClassIsOneOfTheProgramAndThereIsNoNib) {
  const auto info = PropertyList::read(SELDIAL_INFO_PLIST);
  const std::string source = SELDIAL_PACKAGING "/../../platform/macos/SeldialApplication.h";
  EXPECT_THAT(contentOf(source), HasSubstr("@interface " + info["NSPrincipalClass"] + " : "));
  EXPECT_EQ(info["NSMainNibFile"], "");
}

TEST(InfoPlist, ItsIconIsThere) {
  const auto info = PropertyList::read(SELDIAL_INFO_PLIST);
  const std::string icon = contentOf(SELDIAL_PACKAGING "/" + info["CFBundleIconFile"] + ".icns");
  ASSERT_GT(icon.size(), 8U);
  EXPECT_THAT(icon, StartsWith("icns"));
  std::size_t length = 0;
  for (const char byte : icon.substr(4, 4)) length = length << 8 | static_cast<unsigned char>(byte);
  EXPECT_EQ(length, icon.size());
}

TEST(LaunchAgent, StartsTheProgramOfTheBundleWithTwoPathsInTheUsersSession) {
  const auto info = PropertyList::read(SELDIAL_INFO_PLIST);
  const auto agent = PropertyList::read(SELDIAL_PACKAGING "/launch-agent.plist");
  EXPECT_EQ(agent["Label"], info["CFBundleIdentifier"]);
  EXPECT_EQ(agent["LimitLoadToSessionType"], "Aqua");
  EXPECT_EQ(agent["RunAtLoad"], "true");
  const auto& arguments = agent.entries.at("ProgramArguments").items;
  ASSERT_EQ(arguments.size(), 3U);
  EXPECT_EQ(arguments[0].text,
            "/Applications/Seldial.app/Contents/MacOS/" + info["CFBundleExecutable"]);
  EXPECT_THAT(arguments[1].text, StartsWith("dialerpipename=/"));
  EXPECT_THAT(arguments[2].text, StartsWith("clientpipename=/"));
}

}  // namespace
}  // namespace seldial
