// The contents of the bundle's Info.plist and of the example launch agent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

namespace seldial {
namespace {

using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

std::string contentOf(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The text of the <string> elements within `xml`.
std::vector<std::string> stringsIn(const std::string& xml) {
  static const std::regex kString("<string>([^<]*)</string>");
  std::vector<std::string> strings;
  for (std::sregex_iterator match(xml.begin(), xml.end(), kString), end; match != end; ++match) {
    strings.push_back((*match)[1]);
  }
  return strings;
}

/// A property list. Keys are searched for in its text, at any level.
struct PropertyList {
  explicit PropertyList(const std::string& path) : xml(contentOf(path)) {}

  /// The element after that key: a text, "true/", "false/", or the unparsed elements of an array.
  /// Empty if there is no such key.
  std::string operator[](const std::string& key) const {
    const std::regex element("<key>" + key +
                             "</key>\\s*(?:<string>([^<]*)</string>|<(true/|false/)>|"
                             "<array>([^]*?)</array>)");
    std::smatch found;
    if (!std::regex_search(xml, found, element)) return "";
    return found[1].str() + found[2].str() + found[3].str();
  }

  const std::string xml;
};

TEST(InfoPlist, NamesTheProgramAndItsVersion) {
  const PropertyList info(SELDIAL_INFO_PLIST);
  EXPECT_EQ(info["CFBundlePackageType"], "APPL");
  EXPECT_EQ(info["CFBundleExecutable"], "Seldial");
  EXPECT_EQ(info["CFBundleIdentifier"], "org.seldial.Seldial");
  EXPECT_EQ(info["CFBundleShortVersionString"], SELDIAL_VERSION);
  EXPECT_EQ(info["CFBundleVersion"], SELDIAL_VERSION);
  EXPECT_EQ(info["CFBundleInfoDictionaryVersion"], "6.0");
}

TEST(InfoPlist, RunsFrom1011WithoutADockIconAndCanPostKeys) {
  const PropertyList info(SELDIAL_INFO_PLIST);
  EXPECT_EQ(info["LSMinimumSystemVersion"], "10.11");
  EXPECT_EQ(info["LSUIElement"], "true/");
  EXPECT_EQ(info["LSBackgroundOnly"], "");
}

TEST(InfoPlist, NamesAPrincipalClassOfTheProgramAndNoNib) {
  const PropertyList info(SELDIAL_INFO_PLIST);
  const std::string source = SELDIAL_PACKAGING "/../../platform/macos/ApplicationMain.mm";
  EXPECT_THAT(contentOf(source), HasSubstr("@interface " + info["NSPrincipalClass"] + " : "));
  EXPECT_EQ(info["NSMainNibFile"], "");
}

TEST(InfoPlist, NamesAnIconThatExists) {
  const PropertyList info(SELDIAL_INFO_PLIST);
  const std::string icon = contentOf(SELDIAL_PACKAGING "/" + info["CFBundleIconFile"] + ".icns");
  ASSERT_GT(icon.size(), 8U);
  EXPECT_THAT(icon, StartsWith("icns"));
  std::size_t length = 0;
  for (const char byte : icon.substr(4, 4)) length = length << 8 | static_cast<unsigned char>(byte);
  EXPECT_EQ(length, icon.size());
}

TEST(LaunchAgent, StartsTheBundlesProgramInTheUsersSession) {
  const PropertyList info(SELDIAL_INFO_PLIST);
  const PropertyList agent(SELDIAL_PACKAGING "/launch-agent.plist");
  EXPECT_EQ(agent["Label"], info["CFBundleIdentifier"]);
  EXPECT_EQ(agent["LimitLoadToSessionType"], "Aqua");
  EXPECT_EQ(agent["RunAtLoad"], "true/");
  EXPECT_EQ(stringsIn(agent["ProgramArguments"]).at(0),
            "/Applications/Seldial.app/Contents/MacOS/" + info["CFBundleExecutable"]);
}

/// The folder that `argument`, "NAME=/folder/file", names, after checking NAME and the path's
/// length.
std::string socketFolder(const std::string& argument, const std::string& name) {
  EXPECT_THAT(argument, StartsWith(name + "=/"));
  const std::string path = argument.substr(name.size() + 1);
  constexpr std::size_t kLongestPath = 103;  // sun_path of macOS, without its final zero
  EXPECT_LE(path.size() + std::string("a-rather-long-user-name").size(), kLongestPath);
  return path.substr(0, path.rfind('/'));
}

// Nothing creates a folder for the sockets, so it must be one that every account has.
TEST(LaunchAgent, PutsItsSocketsIntoAFolderThatExists) {
  const PropertyList agent(SELDIAL_PACKAGING "/launch-agent.plist");
  const auto arguments = stringsIn(agent["ProgramArguments"]);
  ASSERT_THAT(arguments, SizeIs(3));
  const std::string everyAccountHas = "/Users/NAME/Library/Application Support";
  EXPECT_EQ(socketFolder(arguments[1], "dialerpipename"), everyAccountHas);
  EXPECT_EQ(socketFolder(arguments[2], "clientpipename"), everyAccountHas);
}

}  // namespace
}  // namespace seldial
