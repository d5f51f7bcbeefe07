// The window in which the number to call is chosen, as a process: its input and its output.
#include <gtest/gtest.h>

#include <memory>

#include "tests/support/ChildProcess.h"
#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/Windows.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"
#include "tests/ucclient/InvalidArguments.h"
#include "tests/ucclient/RunningClient.h"
#include "tests/ucclient/Softphone.h"

namespace seldial {
namespace {

using namespace tests;  // NOLINT: keys and keyboards by their short names

class Chooser : public testing::Test {
 protected:
  /// Opens the window and waits until it accepts keys. The exit status is the line after the
  /// answer.
  std::unique_ptr<ChildProcess> open(const std::string& numbers,
                                     const std::string& locale = "C.UTF-8") {
    auto process = std::make_unique<ChildProcess>(
        std::vector<std::string>{"sh", "-c", "printf '" + numbers + "' | $C; echo status $?"},
        std::vector<std::string>{server_.environment(), "C=" SELDIAL_CHOOSER_PROGRAM,
                                 "LC_ALL=" + locale});
    (void)Windows(server_.display()).waitForFocus("seldial-choose");
    return process;
  }

  XServer server_;
  WindowManager manager_{server_.display()};
  Keyboard keyboard_{server_.display()};
};

TEST_F(Chooser, ReturnCallsTheFirstNumber) {
  const auto window = open("+31201234567\\n+31207654321\\n");
  keyboard_.tap(kKeyReturn);
  EXPECT_EQ(window->readLine(), "0");
  EXPECT_EQ(window->readLine(), "status 0");
}

TEST_F(Chooser, TheArrowKeysChooseAnother) {
  const auto window = open("+31201234567\\n+31207654321\\n");
  keyboard_.tap(kKeyDown);
  keyboard_.tap(kKeyReturn);
  EXPECT_EQ(window->readLine(), "1");
}

TEST_F(Chooser, EscapeChoosesNothing) {
  const auto window = open("112\\n");
  keyboard_.tap(kKeyEscape);
  EXPECT_EQ(window->readLine(), "status 1");
}

#ifdef SELDIAL_TRANSLATED
TEST_F(Chooser, SpeaksTheLanguageOfTheSession) {
  const auto window = open("112\\n", "de_DE.UTF-8");
  keyboard_.press({kKeyLeftAlt, kKeyA});  // "Anrufen"
  keyboard_.release({kKeyA, kKeyLeftAlt});
  EXPECT_EQ(window->readLine(), "0");
}
#endif

TEST_F(Chooser, TheClientDialsWhatWasChosen) {
  const Softphone phone("phone");
  RunningClient client({"--dial", phone.path(), "--delay", "500", "--region", "NL"},
                       server_.environment());
  (void)client.process().readLine();
  (void)client.process().readLine();  // the hot key is set
  XClientSettings settings;
  settings.copy = answersWith("020 123 4567 / 020 765 4321");
  const XClient editor(server_.display(), settings);
  keyboard_.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  keyboard_.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
  (void)Windows(server_.display()).waitForFocus("seldial-choose");
  keyboard_.tap(kKeyDown);
  keyboard_.tap(kKeyReturn);
  EXPECT_EQ(phone.called(), "[+31207654321]");
  client.expectLine("Dialled.");
}

TEST_F(Chooser, TheClientAsksIfCallsCannotBeUndone) {
  const Softphone phone("phone");
  RunningClient client(
      {"--dial", phone.path(), "--confirm", "undo", "--delay", "500", "--region", "NL"},
      server_.environment());
  ASSERT_TRUE(client.process().waitForLine("is set: "));
  XClientSettings settings;
  settings.copy = answersWith("020 123 4567");
  const XClient editor(server_.display(), settings);
  keyboard_.press({kKeyLeftControl, kKeyLeftAlt, kKeyD});
  keyboard_.release({kKeyD, kKeyLeftAlt, kKeyLeftControl});
  (void)Windows(server_.display()).waitForFocus("seldial-choose");
  keyboard_.tap(kKeyReturn);
  EXPECT_EQ(phone.called(), "[+31201234567]");
}

TEST(ChooserOptions, TheVersionIsPrinted) {
  ChildProcess process({SELDIAL_CHOOSER_PROGRAM, "--version"}, {"DISPLAY="});
  EXPECT_EQ(process.readLine(), "seldial-choose " SELDIAL_VERSION);
  EXPECT_EQ(process.wait(), 0);
}

TEST(ChooserOptions, InvalidArgumentsAreReportedAndEndWithAStatus) {
  const InvalidArguments invalid(SELDIAL_CHOOSER_PROGRAM);
  invalid.tryAllOptions(2);
  invalid.expectRefusal({});
  invalid.expectRefusal({"112"});
  invalid.expectRefusal({"-platform", "offscreen"});
}

TEST_F(Chooser, WithoutNumbersThereIsNoWindow) {
  ChildProcess process({"sh", "-c", "exec " SELDIAL_CHOOSER_PROGRAM " </dev/null"}, {"DISPLAY="});
  EXPECT_EQ(process.wait(), 2);
}

}  // namespace
}  // namespace seldial
