// Valid and invalid commands through the real program's sockets.
#include <csignal>

#include "tests/support/SeldialProcess.h"

namespace seldial::tests {
namespace {

using Command = ProgramTest;

constexpr const char* kNoTag = "command tag not found";

TEST_F(Command, WithoutADesktopASetHotKeyIsRefusedOnBothOutputs) {
  startListening();
  const auto answer = answerTo(R"({"command":"SetHotKey","virtualkey":2,"modifierCtrl":true})");
  EXPECT_THAT(answer, IsHotkeyStateFalse("hotkey not set"));
  EXPECT_TRUE(process->waitForLine(answer.value_or("nothing")));
}

TEST_F(Command, TheWholeConversationIsLoggedInOrder) {
  startListening();
  sendCommand(in, {R"({"command":"SetHotKey"})"});
  const std::string received = R"(did receive: {"command":"SetHotKey"}; from client with id: )";
  const std::string expected[] = {"Unix socket server; did start listening",
                                  "Unix socket server; did accept client with id: ",
                                  "Unix socket now taking input from client: ",
                                  "Unix socket server; " + received,
                                  "Unix socket server; client with id did disconnect: ",
                                  "Process Unix socket input string.",
                                  "process set hotkey",
                                  "\"invalid virtual key value\"",
                                  "Unix socket client connect ok at path ",
                                  "Unix socket client bytes written (",
                                  "Now closing unix socket client."};
  for (const auto& part : expected) {
    EXPECT_THAT(process->readLine(), testing::HasSubstr(part));
  }
}

TEST_F(Command, AnEmptyConnectionIsAnswered) {
  startListening();
  EXPECT_THAT(answerTo(""), IsError("empty string on standard input stream"));
}

TEST_F(Command, InputThatIsNotACommandHasNoTag) {
  startListening();
  for (const char* text :
       {" ", "\n", R"({"command":"SetHot)", "hello", "42", "{}",
        R"({"command":"SetHotKey"}{"command":"SetHotKey"})", R"({"command":{}})", "nul\1"}) {
    EXPECT_THAT(answerTo(text), IsError(kNoTag)) << text;
  }
  EXPECT_THAT(answerTo(std::string("{}\0", 3)), IsError(kNoTag));
}

TEST_F(Command, InvalidUtf8IsDropped) {
  startListening();
  for (const char* bytes : {"{\"command\":\"\xff\"}", "\xef\xbf", "\xed\xa0\x80"}) {
    EXPECT_THAT(answerTo(bytes), IsError("empty string on standard input stream"));
  }
}

TEST_F(Command, WrongKindsAndNumbersOutOfRangeTakeTheirDefaults) {
  startListening();
  for (const char* key : {"-1", "65536", "\"19\"", "19.5", "null", "[2]", "{}", "1e30",
                          "9223372036854775808", "65535"}) {
    EXPECT_THAT(answerTo(R"({"command":"SetHotKey","virtualkey":)" + std::string(key) + "}"),
                IsHotkeyStateFalse("invalid virtual key value"))
        << key;
  }
  EXPECT_THAT(answerTo(R"({"command":"SetHotKey","virtualkey":1e999})"), IsError(kNoTag));
}

TEST_F(Command, ACharacterSplitBetweenChunksDropsBothChunks) {
  startListening();
  // Everything is sent at once and read 256 bytes at a time. The second chunk ends inside "é", so
  // the second and the third chunk are dropped.
  const std::string opening = R"({"command":")";
  const std::string command = opening + std::string(511 - opening.size(), 'a') + "é\"}";
  EXPECT_THAT(answerTo(command), IsError(kNoTag));
  EXPECT_TRUE(process->waitForLine("did receive: " + command.substr(0, 256) + "; from"));
  EXPECT_TRUE(process->waitForLine("did receive nothing; from client with id: "));
  EXPECT_TRUE(process->waitForLine("did receive nothing; from client with id: "));
}

TEST_F(Command, ALongCommandArrivesWhole) {
  startListening();
  const std::string name(100000, 'x');
  EXPECT_THAT(answerTo(R"({"command":")" + name + "\"}"), IsError("invalid command: " + name));
}

TEST_F(Command, MillionsOfNestedBracketsAreNotACommand) {
  startQuietly();
  const std::string deep(5000000, '[');
  EXPECT_THAT(answerTo(R"({"a":)" + deep), IsError(kNoTag));
  EXPECT_THAT(answerTo(deep), IsError(kNoTag));
  EXPECT_THAT(answerTo(R"({"command":)" + deep + std::string(deep.size(), ']') + "}"),
              IsError(kNoTag));
}

TEST_F(Command, ATopLevelArrayIsALineOnStandardErrorAndAnAbort) {
  startListening();
  sendCommand(in, {"[1]"});
  EXPECT_EQ(process->wait(), 128 + SIGABRT);
  EXPECT_NE(process->errors(), "");
  EXPECT_FALSE(client.hasConnection());
}

TEST_F(Command, ASecondClientPurgesTheFirst) {
  startListening();
  Peer first = Peer::connectedTo(in);
  ASSERT_TRUE(first.send("half"));
  ASSERT_TRUE(process->waitForLine("did receive: half"));
  Peer second = Peer::connectedTo(in);
  EXPECT_TRUE(process->waitForLine("did contain half; PURGED !!!"));
  ASSERT_TRUE(first.send("more"));
  EXPECT_TRUE(process->waitForLine("Unix socket received message from unrecognized client."));
  first.leave();
  EXPECT_TRUE(process->waitForLine("client with id did disconnect"));
  ASSERT_TRUE(second.send("{}"));
  second.leave();
  EXPECT_THAT(client.nextMessage(), IsError(kNoTag));
}

}  // namespace
}  // namespace seldial::tests
