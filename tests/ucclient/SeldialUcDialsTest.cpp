// The client dials: a selection on a private desktop, the real seldial, and a program that acts as
// a softphone and reports its arguments.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "tests/support/desktop/Keyboard.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/XClient.h"
#include "tests/support/desktop/XServer.h"
#include "tests/ucclient/RunningClient.h"
#include "tests/ucclient/Softphone.h"

namespace seldial {
namespace {

class SeldialUcDials : public testing::Test {
 protected:
  /// Starts the client and returns once its hot key is set.
  RunningClient& start(std::vector<std::string> arguments,
                       const std::string& path = "/usr/bin:/bin") {
    arguments.insert(arguments.end(), {"--delay", "1000", "--region", "NL"});
    client_ = std::make_unique<RunningClient>(arguments, server_.environment(), path);
    client_->expectLine(R"({"response":"HotkeyState","result":true})");
    (void)client_->process().readLine();  // the same for people
    return *client_;
  }

  /// Presses the hot key while this is selected.
  void use(const std::string& selection, bool copies = true) {
    tests::XClientSettings settings;
    settings.copies = copies;
    settings.copy = tests::answersWith(selection);
    editor_.reset();
    editor_ = std::make_unique<tests::XClient>(server_.display(), settings);
    tests::Keyboard keyboard(server_.display());
    keyboard.press({tests::kKeyLeftControl, tests::kKeyLeftAlt, tests::kKeyD});
    keyboard.release({tests::kKeyD, tests::kKeyLeftAlt, tests::kKeyLeftControl});
  }

  tests::XServer server_;
  std::unique_ptr<tests::XClient> editor_;
  std::unique_ptr<RunningClient> client_;
};

TEST_F(SeldialUcDials, AMessySelectionReachesTheSoftphoneAsANumber) {
  const Softphone phone("phone");
  RunningClient& client = start({"--dial", phone.path() + " --call {tel}"});
  use("\n  Tel.: +31 (0)20\u00A0123-4567 ext. 5\r\n");
  EXPECT_EQ(phone.called(), "[--call][tel:+31201234567;ext=5]");
  client.expectLine("Dialled.");
  use("020 123\u202F45\u201167");
  EXPECT_EQ(phone.called(), "[--call][tel:+31201234567]");
  client.expectLine("Dialled.");
}

TEST_F(SeldialUcDials, NoShellReadsTheSelection) {
  const Softphone phone("phone");
  start({"--dial", phone.path() + " {text} {}"});
  const std::string text = "$(touch x) `id` ; rm 'a' \"b\" \x1B[2J * 020 123 4567 \\ | >y";
  use(text + std::string(20000, '!'));
  EXPECT_EQ(phone.called(), "[" + text + std::string(20000, '!') + "][+31201234567]");
}

TEST_F(SeldialUcDials, TheDesktopOpensTheURI) {
  const Softphone opener("xdg-open");
  start({"--open", "tel", "--prefix", "9"}, opener.directory() + ":/usr/bin:/bin");
  use("+49 30 23125123");
  EXPECT_EQ(opener.called(), "[tel:900493023125123]");
}

TEST_F(SeldialUcDials, WhatIsNotDialledIsExplainedAndNeverShown) {
  RunningClient& client = start({"--dial", "/bin/false", "--confirm", "never"});
  const std::string beginning = "seldial-uc: nothing was dialled: ";
  use("hello");
  client.expectLine(beginning + "there is no telephone number in the selection");
  use("020 123 4567\n020 765 4321");
  client.expectLine(beginning + "there is more than one telephone number in the selection");
  use("+49 30 1234,5678");
  client.expectLine(beginning + "the telephone number is ambiguous");
  use("");
  client.expectLine(beginning + "nothing was selected");
  use("x", false);
  client.expectLine(beginning + "nothing was selected");
}

/// Whether a file below the directory contains that text.
bool isInFiles(const std::string& directory, const std::string& text) {
  for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
    std::ostringstream content;
    if (entry.is_regular_file()) content << std::ifstream(entry.path()).rdbuf();
    if (content.str().find(text) != std::string::npos) return true;
  }
  return false;
}

TEST_F(SeldialUcDials, NoNumberIsLeftInAnOutputOrAFile) {
  const Softphone phone("phone");
  const tests::TemporaryDirectory home;
  setenv("HOME", home.path("").c_str(), 1);
  RunningClient& client = start({"--dial", phone.path(), "--confirm", "never"});
  use("020 123 4567");
  EXPECT_EQ(phone.called(), "[+31201234567]");
  client.expectLine("Dialled.");
  use("020 123 4567 or 020 765 4567");
  ASSERT_TRUE(client.process().waitForLine("nothing was dialled"));
  EXPECT_NE(client.outputOf({"status"}).find("called +31201234567"), std::string::npos);
  EXPECT_EQ(client.outputOf({"reload"}), "");
  for (const std::string& directory : {home.path(""), client.directory()}) {
    EXPECT_FALSE(isInFiles(directory, "4567"));
  }
  client.process().signal(SIGTERM);
  for (const std::string& line : client.process().restOfLines()) {
    EXPECT_EQ(line.find("4567"), std::string::npos) << line;
  }
}

TEST_F(SeldialUcDials, AProgramThatFailsIsReported) {
  RunningClient& client = start({"--dial", "/bin/false"});
  use("020 123 4567");
  client.expectLine("Dialled.");
  client.expectLine("seldial-uc: /bin/false ended with status 1");
  client.process().signal(SIGTERM);
  EXPECT_EQ(client.process().wait(), 0);
}

/// The real seldial, which first prints its process ID to standard error.
class SeldialWithPid {
 public:
  SeldialWithPid() {
    std::ofstream(path_) << "#!/bin/sh\necho $$ >&2; exec " SELDIAL " \"$@\"\n";
    chmod(path_.c_str(), 0700);
  }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  const tests::TemporaryDirectory directory_;
  const std::string path_ = directory_.path("seldial");
};

TEST_F(SeldialUcDials, ASeldialThatDiesIsStartedAgain) {
  const Softphone phone("phone");
  const SeldialWithPid seldial;
  RunningClient client({"--dial", phone.path(), "--seldial", seldial.path(), "--region", "NL"},
                       server_.environment());
  for (const char* const pause : {"1", "2"}) {
    const pid_t process = std::stoi(client.process().readLine());
    client.expectLine(R"({"response":"HotkeyState","result":true})");
    (void)client.process().readLine();
    kill(process, SIGKILL);
    client.expectLine(std::string("seldial-uc: seldial was killed by signal 9 (Killed); ") +
                      "restarting it in " + pause + " s");
  }
  (void)client.process().readLine();  // the process id
  client.expectLine(R"({"response":"HotkeyState","result":true})");
  use("020 123 4567");
  EXPECT_EQ(phone.called(), "[+31201234567]");
}

TEST_F(SeldialUcDials, ItCanBeEndedWhileItWaitsToStartSeldialAgain) {
  const SeldialWithPid seldial;
  RunningClient client({"--dial", "true", "--seldial", seldial.path()}, server_.environment());
  const pid_t process = std::stoi(client.process().readLine());
  client.expectLine(R"({"response":"HotkeyState","result":true})");
  kill(process, SIGKILL);
  ASSERT_TRUE(client.process().waitForLine("restarting it"));
  client.process().signal(SIGTERM);
  EXPECT_EQ(client.process().wait(), 0);
  EXPECT_TRUE(client.directoryIsEmpty());
}

TEST_F(SeldialUcDials, LosingTheDesktopEndsIt) {
  RunningClient& client = start({"--dial", "true"});
  server_.kill();
  EXPECT_TRUE(client.process().waitForLine("seldial-uc: seldial ended with status 1"));
  EXPECT_EQ(client.process().wait(), 1);
}

TEST_F(SeldialUcDials, AProgramThatIsNotThereIsReported) {
  RunningClient& client = start({"--dial", "/nowhere/phone"});
  use("020 123 4567");
  client.expectLine(
      "seldial-uc: nothing was dialled: cannot start /nowhere/phone: No such file or directory");
}

}  // namespace
}  // namespace seldial
