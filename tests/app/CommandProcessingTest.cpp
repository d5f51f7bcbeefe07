#include "tests/app/AppTest.h"

namespace seldial {
namespace {

using testing::SizeIs;

class CommandProcessing : public AppTest {
 protected:
  /// Processes `input`, expects one Error as the answer, and returns its message, still escaped.
  std::string errorFor(const std::optional<std::string>& input) {
    const tests::CapturedOutput answer;
    app->processInputString(input);
    const auto lines = answer.lines();
    EXPECT_THAT(lines, SizeIs(1));
    if (lines.empty()) return {};
    EXPECT_EQ(jsonText(lines[0], "response"), "Error");
    EXPECT_THAT(jsonText(lines[0], "datetime"), SizeIs(24));
    return jsonText(lines[0], "message");
  }
};

TEST_F(CommandProcessing, AbsentInputIsAReadingError) {
  EXPECT_EQ(errorFor(std::nullopt), "error reading from standard input stream");
}

TEST_F(CommandProcessing, TheEmptyTextIsASeparateError) {
  EXPECT_EQ(errorFor(""), "empty string on standard input stream");
}

TEST_F(CommandProcessing, SpacesOrALineFeedAreNeitherACommandNorEmpty) {
  for (const char* text : {" ", "   ", "\n", "\t\r\n"}) {
    EXPECT_EQ(errorFor(text), "command tag not found");
  }
}

TEST_F(CommandProcessing, AnObjectWithoutATextualCommandHasNoCommandTag) {
  EXPECT_EQ(errorFor("{}"), "command tag not found");
  EXPECT_EQ(errorFor(R"({"command":5})"), "command tag not found");
  EXPECT_EQ(errorFor(R"({"command":null})"), "command tag not found");
  EXPECT_EQ(errorFor(R"({"command":["SetHotKey"]})"), "command tag not found");
  EXPECT_EQ(errorFor(R"({"Command":"SetHotKey"})"), "command tag not found");
}

TEST_F(CommandProcessing, TextThatIsNotJsonHasNoCommandTag) {
  for (const char* text : {"hello", "42", "{", R"({"command":"SetHotKey")", "true", "\xff"}) {
    EXPECT_EQ(errorFor(text), "command tag not found") << text;
  }
}

TEST_F(CommandProcessing, AnOutgoingMessageAsCommandIsInvalid) {
  EXPECT_EQ(errorFor(R"({"command":"MakeCall"})"), "invalid command: MakeCall");
}

TEST_F(CommandProcessing, AnEmptyCommandIsInvalidWithNothingAfterTheSpace) {
  EXPECT_EQ(errorFor(R"({"command":""})"), "invalid command: ");
}

TEST_F(CommandProcessing, AnInvalidCommandIsNamedInItsOwnLetterCase) {
  EXPECT_EQ(errorFor(R"({"command":"SetHotKeys"})"), "invalid command: SetHotKeys");
  EXPECT_EQ(errorFor(R"({"command":" sethotkey"})"), "invalid command:  sethotkey");
}

TEST_F(CommandProcessing, SetHotKeyIsDispatchedInAnyLetterCase) {
  for (const char* name : {"SETHOTKEY", "SetHotKey", "SetHotkey", "sethotkey"}) {
    const tests::CapturedOutput answer;
    app->processInputString(std::string(R"({"command":")") + name + R"("})");
    ASSERT_THAT(answer.lines(), SizeIs(1));
    EXPECT_EQ(jsonText(answer.lines()[0], "response"), "HotkeyState");
  }
}

TEST_F(CommandProcessing, TwoObjectsInOneTextAreNotOneCommand) {
  EXPECT_EQ(errorFor(R"({"command":"SetHotKey"}{"command":"SetHotKey"})"), "command tag not found");
}

TEST_F(CommandProcessing, ATopLevelArrayStopsTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(app->processInputString("[1]"), "");
}

TEST_F(CommandProcessing, AnErrorIsLoggedThenPrintedThenSent) {
  const tests::UcListener client(directory.path("out"));
  app->FlagLog = true;
  app->ValueClientPipeName = directory.path("out");
  app->processInputString("");
  const auto printed = lines();
  ASSERT_GE(printed.size(), 3U);
  EXPECT_EQ(printed[0], "Log> empty string on standard input stream");
  EXPECT_EQ(jsonText(printed[1], "message"), "empty string on standard input stream");
  EXPECT_EQ(printed[2], "Log> Unix socket client connect ok at path " + directory.path("out"));
  EXPECT_EQ(client.nextMessage(), printed[1]);
}

}  // namespace
}  // namespace seldial
