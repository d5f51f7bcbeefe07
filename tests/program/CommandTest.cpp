// Commands, good and bad, through the real program's sockets.
#include "tests/program/ProgramTest.h"

namespace seldial::program {
namespace {

using Command = ProgramTest;
using testing::EndsWith;

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
  const char* const expected[] = {"Unix socket server; did start listening",
                                  "Unix socket server; did accept client with id: ",
                                  "Unix socket now taking input from client: ",
                                  "Unix socket server; did receive: {\"command\":\"SetHotKey\"}; "
                                  "from client with id: ",
                                  "Unix socket server; client with id did disconnect: ",
                                  "Process Unix socket input string.",
                                  "process set hotkey",
                                  "\"invalid virtual key value\"",
                                  "Unix socket client connect ok at path ",
                                  "Unix socket client bytes written (",
                                  "Now closing unix socket client."};
  for (const char* part : expected) {
    const auto line = process->nextLine();
    ASSERT_TRUE(line);
    EXPECT_NE(line->find(part), std::string::npos) << *line << "\ninstead of " << part;
  }
  process->signal(15);
  EXPECT_THAT(process->restOfOutput(), EndsWith(""));
  EXPECT_EQ(process->wait(), 0);
}

TEST_F(Command, AnEmptyConnectionIsAnswered) {
  startListening();
  EXPECT_THAT(answerTo(""), IsError("empty string on standard input stream"));
}

TEST_F(Command, WhatIsNoCommandHasNoTag) {
  startListening();
  for (const char* text : {" ", "\n", R"({"command":"SetHot)", "hello", "42", "{}",
                           R"({"command":"SetHotKey"}{"command":"SetHotKey"})", R"({"command":{}})",
                           "{\"command\":\"\xff\"}", "\xef\xbf", "nul\1"}) {
    EXPECT_THAT(answerTo(text), IsError(kNoTag)) << text;
  }
  EXPECT_THAT(answerTo(std::string("{}\0", 3)), IsError(kNoTag));
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

TEST_F(Command, ACharacterCutAtTheChunkBoundaryLeavesAHole) {
  startListening();
  // Everything is sent at once: the program reads 256 bytes a time, and the cut falls inside "é".
  const std::string opening = R"({"command":")";
  const std::string command = opening + std::string(255 - opening.size(), 'a') + "é\"}";
  EXPECT_THAT(answerTo(command), IsError(kNoTag));
}

TEST_F(Command, ALongCommandArrivesWhole) {
  startListening();
  const std::string name(100000, 'x');
  EXPECT_THAT(answerTo(R"({"command":")" + name + "\"}"), IsError("invalid command: " + name));
}

TEST_F(Command, MillionsOfNestedBracketsAreNoCommand) {
  startListening();
  const std::string deep(5000000, '[');
  EXPECT_THAT(answerTo(R"({"a":)" + deep), IsError(kNoTag));
  EXPECT_THAT(answerTo(deep), IsError(kNoTag));
  EXPECT_THAT(answerTo(R"({"command":)" + deep + std::string(deep.size(), ']') + "}"),
              IsError(kNoTag));
}

TEST_F(Command, ATopLevelArrayIsALineOnStandardErrorAndAnAbort) {
  startListening();
  sendCommand(in, {"[1]"});
  EXPECT_EQ(process->wait(), -6);
  EXPECT_NE(process->restOfErrors(), "");
  EXPECT_FALSE(client.hasConnection());
}

TEST_F(Command, ASecondClientPurgesTheFirst) {
  startListening();
  const int first = connectTo(in);
  ASSERT_EQ(send(first, "half", 4, 0), 4);
  ASSERT_TRUE(process->waitForLine("did receive: half"));
  const int second = connectTo(in);
  EXPECT_TRUE(process->waitForLine("did contain half; PURGED !!!"));
  ASSERT_EQ(send(first, "more", 4, 0), 4);
  EXPECT_TRUE(process->waitForLine("Unix socket received message from unrecognized client."));
  close(first);
  EXPECT_TRUE(process->waitForLine("client with id did disconnect"));
  ASSERT_EQ(send(second, "{}", 2, 0), 2);
  close(second);
  EXPECT_THAT(client.nextMessage(), IsError(kNoTag));
}

}  // namespace
}  // namespace seldial::program
