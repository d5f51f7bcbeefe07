// The examples in the pages and the messages of the real program match docs/protocol.schema.json.
#include <set>

#include "tests/support/SeldialProcess.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"

namespace seldial::tests {
namespace {

struct Verdict {
  int status;
  std::vector<std::string> lines;
};

Verdict validated(const std::vector<std::string>& files) {
  std::vector<std::string> command{SELDIAL_VALIDATE, SELDIAL_SCHEMA};
  command.insert(command.end(), files.begin(), files.end());
  ChildProcess validator(std::move(command), {}, "install python3-jsonschema",
                         {Streams::Errors::kWithOutput, {}});
  auto lines = validator.restOfLines();
  return {validator.wait(), std::move(lines)};
}

std::string joined(const std::vector<std::string>& lines) {
  std::string all;
  for (const auto& line : lines) all += line + "\n";
  return all;
}

std::set<std::string> kinds(const Verdict& verdict) {
  return {verdict.lines.begin(), verdict.lines.end()};
}

const std::set<std::string> kAllMessages{"SetHotKey", "HotkeyState", "Error", "MakeCall", "Log"};

TEST(Protocol, TheManualHasAValidExampleOfEachMessage) {
  const Verdict verdict = validated({SELDIAL_DOCS "/manual.md"});
  EXPECT_EQ(verdict.status, 0) << joined(verdict.lines);
  EXPECT_EQ(kinds(verdict), kAllMessages);
}

TEST(Protocol, TheExamplesOfTheReadmeAreValid) {
  const Verdict verdict = validated({SELDIAL_DOCS "/../README.md"});
  EXPECT_EQ(verdict.status, 0) << joined(verdict.lines);
  EXPECT_THAT(verdict.lines, testing::Contains("MakeCall"));
}

TEST(Protocol, TheExamplesThatShowapiPrintsAreValid) {
  SeldialProcess seldial({"-showapi"});
  const TemporaryFile printed(joined(seldial.restOfLines()));
  const Verdict verdict = validated({printed.path()});
  EXPECT_EQ(verdict.status, 0) << joined(verdict.lines);
  EXPECT_EQ(kinds(verdict), kAllMessages);
}

TEST(Protocol, TheSchemaRejectsInvalidMessages) {
  const std::vector<std::string> wrong{
      R"({"command":"MakeCall"})",
      R"({"command":"MakeCall","number":5})",
      R"({"response":"HotkeyState"})",
      R"({"response":"HotkeyState","result":"true"})",
      R"({"response":"HotkeyState","result":false})",
      R"({"response":"HotkeyState","result":true,"failreason":""})",
      R"({"response":"Error","message":"","datetime":"2017-02-06T14:10:32+01:00"})",
      R"({"event":"Log","message":""})",
      R"({"command":"SetHotKey","virtualkey":65535})",
      R"({"command":"SetHotKey","readdelay":-1})",
      R"({"command":"SetHotKey","modifierAlt":"true"})",
      R"({})"};
  const TemporaryFile messages(joined(wrong));
  const Verdict verdict = validated({messages.path()});
  EXPECT_EQ(verdict.status, 1);
  EXPECT_THAT(verdict.lines, testing::AllOf(testing::SizeIs(wrong.size()),
                                            testing::Each(testing::StartsWith("invalid: "))));
}

TEST(Protocol, KeysOfLaterVersionsAreAccepted) {
  const TemporaryFile messages(R"({"command":"MakeCall","number":"1","later":[{}]})");
  EXPECT_EQ(validated({messages.path()}).lines, std::vector<std::string>{"MakeCall"});
}

class ProtocolOfTheProgram : public ProgramTest {
 protected:
  void press() {
    keyboard.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
    keyboard.release(std::vector<std::uint8_t>{kKeyD, kKeyLeftAlt, kKeyLeftControl});
  }

  XServer server;
  Keyboard keyboard{server.display()};
};

TEST_F(ProtocolOfTheProgram, AllItsMessagesAreValid) {
  XClientSettings selected;
  selected.copy = answersWith("☎ \"1\"/2\\\n\t\x7f");
  const XClient editor(server.display(), selected);
  start({"-jsonlog"}, server.display());
  ASSERT_TRUE(process->waitForLine("listen ok"));
  std::vector<std::string> messages;
  const auto answered = [&](const std::string& command) {
    messages.push_back(answerTo(command).value_or("{}"));
  };
  answered("");
  answered(R"({"command":"\u0001\"/é"})");
  answered(R"({"command":"SetHotKey"})");
  answered(R"({"command":"SetHotKey","virtualkey":52})");
  answered(
      R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2,"readdelay":200})");
  press();
  messages.push_back(client.nextMessage().value_or("{}"));
  terminate();

  const TemporaryFile overTheSocket(joined(messages));
  const TemporaryFile onStandardOutput(joined(process->restOfLines()));
  const Verdict verdict = validated({overTheSocket.path(), onStandardOutput.path()});
  EXPECT_EQ(verdict.status, 0) << joined(verdict.lines);
  EXPECT_EQ(kinds(verdict), (std::set<std::string>{"HotkeyState", "Error", "MakeCall", "Log"}));
  EXPECT_THAT(verdict.lines, testing::SizeIs(testing::Gt(2 * messages.size())));
}

}  // namespace
}  // namespace seldial::tests
