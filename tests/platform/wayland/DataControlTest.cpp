// Reading copied text from another program, and the data control of newer compositors.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "platform/wayland/Clipboard.h"
#include "platform/wayland/ClipboardText.h"
#include "tests/support/Sockets.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"
#include "tests/support/wayland/ExtDataControl.h"

namespace seldial::platform::wayland {
namespace {

using Clock = std::chrono::steady_clock;

class CopiedText : public testing::Test {
 protected:
  CopiedText() { EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0); }
  ~CopiedText() override {
    close(ends[0]);
    endText();
  }

  void send(const std::string& text) const {
    EXPECT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void endText() {
    if (ends[1] != -1) close(std::exchange(ends[1], -1));
  }

  int ends[2] = {-1, -1};
};

TEST_F(CopiedText, IsReadToItsEnd) {
  send("020 ");
  send("1234");
  endText();
  EXPECT_EQ(readToEnd(ends[0], Clock::now() + tests::kTimeLimit), "020 1234");
}

TEST_F(CopiedText, IsAbandonedWithoutAnEnd) {
  send("020");
  EXPECT_EQ(readToEnd(ends[0], Clock::now() + std::chrono::milliseconds(20)), std::nullopt);
}

TEST_F(CopiedText, ThatArrivesByteByByteIsAbandonedInTime) {
  std::atomic<bool> over{false};
  std::thread owner([&] {
    while (!over) {
      send("0");
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
  EXPECT_EQ(readToEnd(ends[0], Clock::now() + std::chrono::milliseconds(100)), std::nullopt);
  over = true;
  owner.join();
}

class NewerDataControl : public testing::Test {
 protected:
  void takeOwnership(DataControl& data) {
    data.takeOwnership();
    ASSERT_TRUE(display.synchronise());
  }

  tests::TemporaryDirectory directory;
  tests::ExtDataControl compositor{directory.path("wayland")};
  linux_port::MainLoop loop;
  Display display{dup(tests::Peer::connectedTo(directory.path("wayland")).fd), loop, [] {}};
};

TEST_F(NewerDataControl, IsPreferredToTheOlderOne) {
  DataControl data(display);
  takeOwnership(data);
  EXPECT_THAT(compositor.offeredTypes(),
              testing::Optional(testing::ElementsAre(kEmptyClipboardType)));
  EXPECT_EQ(data.copiedText(), std::nullopt);
  compositor.copy("020 1234");
  EXPECT_EQ(data.copiedText(), "020 1234");
}

TEST_F(NewerDataControl, SelectedTextIsNotCopiedText) {
  DataControl data(display);
  takeOwnership(data);
  compositor.select("020 1234");
  EXPECT_EQ(data.copiedText(), std::nullopt);
}

TEST_F(NewerDataControl, AnOlderTextThatAManagerTakesUpIsNotCopied) {
  DataControl data(display);
  ASSERT_TRUE(display.synchronise());
  compositor.copy("020 1234");
  takeOwnership(data);
  compositor.copy("020 1234");
  ASSERT_TRUE(display.synchronise());
  EXPECT_TRUE(data.awaitQuiet());
  EXPECT_EQ(data.copiedText(), std::nullopt);
}

TEST_F(NewerDataControl, AnEmptyTextMayBeAManagersCopyOfOurEmptyClipboard) {
  DataControl data(display);
  takeOwnership(data);
  compositor.copy("");
  EXPECT_EQ(data.copiedText(), "");
  takeOwnership(data);
  compositor.readClipboard();
  compositor.copy("");
  EXPECT_EQ(data.copiedText(), std::nullopt);
}

/// An application that copies on the copy keystroke.
class Application final : public CopyKeys {
 public:
  Application(tests::ExtDataControl& compositor, Display& display, std::vector<std::string> copies)
      : compositor_(compositor), display_(display), copies_(std::move(copies)) {}

  bool type(Chord /*chord*/) override {
    const std::string text = typed < copies_.size() ? copies_[typed] : "";
    ++typed;
    if (!display_.synchronise()) return false;
    compositor_.readClipboard();  // as a manager does
    if (!text.empty()) compositor_.copy(text);
    return true;
  }

  std::size_t typed = 0;

 private:
  tests::ExtDataControl& compositor_;
  Display& display_;
  const std::vector<std::string> copies_;
};

/// The result of a use of the hot key beside a manager that reads the empty clipboard.
struct BesideAManager : NewerDataControl {
  std::optional<std::string> use(std::vector<std::string> copies) {
    DataControl data(display);
    Application application(compositor, display, std::move(copies));
    WaylandClipboard clipboard(data, application, [] { return std::vector<std::string>(); });
    clipboard.clear();
    EXPECT_TRUE(clipboard.copySelection());
    auto text = clipboard.text();
    EXPECT_EQ(application.typed, 2);
    return text;
  }
};

TEST_F(BesideAManager, ATextThatIsCopiedTwiceIsTheApplications) {
  EXPECT_EQ(use({"020 1234", "020 1234"}), "020 1234");
}

TEST_F(BesideAManager, ATextThatComesOnceIsNot) {
  EXPECT_EQ(use({"020 1234"}), std::nullopt);
}

TEST_F(NewerDataControl, OffersAreDestroyed) {
  DataControl data(display);
  for (int i = 0; i < 3; ++i) {
    takeOwnership(data);
    compositor.select("020");
    compositor.copy("020 1234");
    EXPECT_EQ(data.copiedText(), "020 1234");
  }
  EXPECT_TRUE(display.synchronise());
  EXPECT_EQ(compositor.offers(), 2);  // the clipboard's and the selection's
}

}  // namespace
}  // namespace seldial::platform::wayland
