// Reading copied text from another program, and the data control of newer compositors.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <functional>
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

// More than a pipe holds: the owner can end only if the loop reads.
TEST(IncomingText, IsReadWhileTheLoopBlocks) {
  linux_port::MainLoop loop;
  IncomingText incoming(loop);
  const std::string text(1UL << 20, '7');
  std::thread owner([&, pipe = incoming.begin()] {
    for (std::size_t sent = 0; sent < text.size();) {
      const auto count = write(pipe, text.data() + sent, text.size() - sent);
      if (count <= 0) break;
      sent += static_cast<std::size_t>(count);
    }
    close(pipe);
    loop.interrupt();
  });
  loop.block(tests::kTimeLimit);
  EXPECT_TRUE(loop.interrupted());
  EXPECT_EQ(incoming.finish(), text);
  owner.join();
}

TEST(IncomingText, IsNothingOnceItIsAbandoned) {
  linux_port::MainLoop loop;
  IncomingText incoming(loop);
  EXPECT_EQ(incoming.finish(), std::nullopt);
  close(incoming.begin());
  incoming.abandon();
  EXPECT_EQ(incoming.finish(), std::nullopt);
  close(incoming.begin());
  EXPECT_EQ(incoming.finish(), "");
}

class NewerDataControl : public testing::Test {
 protected:
  /// Copies a text, and serves the display as a blocked loop does until the text is requested.
  void copyAndAwaitRequest(DataControl& data, const std::string& text) {
    takeOwnership(data);
    ASSERT_TRUE(data.awaitQuiet());
    compositor.copy(text);
    ASSERT_TRUE(tests::eventually([&] {
      display.readableWhileBlocked();
      return compositor.requests() == 1;
    }));
  }

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
  DataControl data(display, loop);
  takeOwnership(data);
  EXPECT_THAT(compositor.offeredTypes(),
              testing::Optional(testing::ElementsAre(kEmptyClipboardType)));
  EXPECT_EQ(data.copiedText(), std::nullopt);
  compositor.copy("020 1234");
  EXPECT_EQ(data.copiedText(), "020 1234");
}

TEST_F(NewerDataControl, SelectedTextIsNotCopiedText) {
  DataControl data(display, loop);
  takeOwnership(data);
  compositor.select("020 1234");
  EXPECT_EQ(data.copiedText(), std::nullopt);
}

TEST_F(NewerDataControl, AnOlderTextThatAManagerTakesUpIsNotCopied) {
  DataControl data(display, loop);
  ASSERT_TRUE(display.synchronise());
  compositor.copy("020 1234");
  takeOwnership(data);
  compositor.copy("020 1234");
  ASSERT_TRUE(display.synchronise());
  EXPECT_TRUE(data.awaitQuiet());
  EXPECT_EQ(data.copiedText(), std::nullopt);
}

TEST_F(NewerDataControl, AnEmptyTextMayBeAManagersCopyOfOurEmptyClipboard) {
  DataControl data(display, loop);
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
    if (!display_.synchronise()) return false;  // the clipboard is cleared
    if (!text.empty()) compositor_.copy(text);
    if (!replaceCopy) return true;
    // The text is requested, and the compositor has handled that.
    if (!display_.synchronise() || !display_.synchronise()) return false;
    replaceCopy();
    return true;
  }

  std::size_t typed = 0;
  std::function<void()> replaceCopy;  ///< as a manager does; may be null

 private:
  tests::ExtDataControl& compositor_;
  Display& display_;
  const std::vector<std::string> copies_;
};

/// The result of a use of the hot key beside a manager that reads the empty clipboard.
struct BesideAManager : NewerDataControl {
  std::optional<std::string> use(std::vector<std::string> copies,
                                 std::function<void()> replaceCopy = {}) {
    compositor.readEachClipboard();
    DataControl data(display, loop);
    Application application(compositor, display, std::move(copies));
    application.replaceCopy = std::move(replaceCopy);
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

TEST_F(BesideAManager, ACopyThatTheManagerReplacesIsDialled) {
  EXPECT_EQ(use({"020 1234", "020 1234"}, [&] { compositor.copyNoText(); }), "020 1234");
}

TEST_F(BesideAManager, ACopyThatTheManagerReplacesByAnEmptyTextIsDialled) {
  EXPECT_EQ(use({"020 1234", "020 1234"}, [&] { compositor.copy(""); }), "020 1234");
}

TEST_F(NewerDataControl, TextIsRequestedWhileTheLoopBlocks) {
  DataControl data(display, loop);
  copyAndAwaitRequest(data, "020 1234");
  EXPECT_EQ(data.copiedText(), "020 1234");
  EXPECT_EQ(compositor.requests(), 1);
}

TEST_F(NewerDataControl, ALaterCopyReplacesTextThatHasArrived) {
  DataControl data(display, loop);
  copyAndAwaitRequest(data, "020 1234");
  compositor.copy("020 5678");
  EXPECT_EQ(data.copiedText(), "020 5678");
}

TEST_F(NewerDataControl, AnOwnerThatHasNoTextYetIsAskedAgain) {
  DataControl data(display, loop);
  copyAndAwaitRequest(data, "");
  compositor.change("020 1234");
  EXPECT_EQ(data.copiedText(), "020 1234");
}

TEST_F(NewerDataControl, OtherCopiesAreNotRequested) {
  DataControl data(display, loop);
  takeOwnership(data);
  ASSERT_TRUE(data.awaitQuiet());
  EXPECT_EQ(data.copiedText(), std::nullopt);
  compositor.copy("020 1234");
  EXPECT_TRUE(display.synchronise());  // handles the copy
  EXPECT_TRUE(display.synchronise());  // a request would have arrived
  EXPECT_EQ(compositor.requests(), 0);
}

TEST_F(NewerDataControl, OffersAreDestroyed) {
  DataControl data(display, loop);
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
