// The clipboard with selections that other programs own.
#include "tests/platform/x11/X11Test.h"
#include "tests/support/Waiting.h"
#include "tests/support/desktop/ClipboardManager.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::platform::x11 {
namespace {

using ClipboardTest = X11Test;

std::string longText(std::size_t size) {
  std::string text;
  text.reserve(size);
  while (text.size() < size) text += "line " + std::to_string(text.size()) + "\n";
  text.resize(size);
  return text;
}

/// A client that requests the clipboard, like a program that pastes.
class Requestor {
 public:
  explicit Requestor(const std::string& display)
      : connection_(connectToServer(display)), window_(xcb_generate_id(connection_)) {
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, rootOf(connection_), 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  }
  ~Requestor() { xcb_disconnect(connection_); }
  Requestor(const Requestor&) = delete;
  Requestor& operator=(const Requestor&) = delete;

  xcb_atom_t named(const std::string& name) { return atom(connection_, name); }

  /// Returns once the owner has received the request.
  void send(const std::string& target, bool namesProperty = true) {
    const auto property = namesProperty ? named("ANSWER") : xcb_atom_t{XCB_ATOM_NONE};
    xcb_convert_selection(connection_, window_, named("CLIPBOARD"), named(target), property,
                          XCB_CURRENT_TIME);
    synchronise(connection_);
  }

  /// The 32-bit values of the answer; nothing if the request is refused.
  std::optional<std::vector<std::uint32_t>> ask(const std::string& target,
                                                bool namesProperty = true) {
    send(target, namesProperty);
    return answer();
  }

  /// Destroys its window before the answer.
  void destroyWindow() {
    xcb_destroy_window(connection_, window_);
    synchronise(connection_);
  }

  std::optional<std::vector<std::uint32_t>> answer() {
    auto event = freed(xcb_wait_for_event(connection_));
    while (event && (event->response_type & 0x7F) != XCB_SELECTION_NOTIFY) {
      event = freed(xcb_wait_for_event(connection_));
    }
    if (!event) return {};
    const auto given = reinterpret_cast<xcb_selection_notify_event_t*>(event.get())->property;
    if (given == XCB_ATOM_NONE) return {};
    const auto cookie = xcb_get_property(connection_, 1, window_, given, XCB_ATOM_ANY, 0, 1024);
    const auto reply = freed(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply) return {};
    const auto* const values = static_cast<std::uint32_t*>(xcb_get_property_value(reply.get()));
    return std::vector<std::uint32_t>(values, values + reply->value_len);
  }

 private:
  xcb_connection_t* connection_;
  xcb_window_t window_;
};

TEST_F(ClipboardTest, AClipboardWithoutAnOwnerIsEmpty) {
  EXPECT_EQ(port.text(), std::nullopt);
}

TEST_F(ClipboardTest, ATextIsReadExactly) {
  XClient client(server.display());
  for (const std::string& text :
       {std::string("+31 20 123 4567"), std::string("J\xC3\xB6rg \xE2\x98\x8E\n"),
        std::string("  \t\r\n"), std::string("a\0b", 3)}) {
    client.own("CLIPBOARD", answersWith(text));
    EXPECT_EQ(port.text(), text);
  }
}

TEST_F(ClipboardTest, ATrailingNulIsNotText) {
  XClient client(server.display());
  client.own("CLIPBOARD", answersWith(std::string("4930123\0", 8)));
  EXPECT_EQ(port.text(), "4930123");
}

TEST_F(ClipboardTest, AnEmptyTextIsAText) {
  XClient client(server.display());
  client.own("CLIPBOARD", answersWith(""));
  EXPECT_EQ(port.text(), "");
  client.own("CLIPBOARD", answersWith("", 100));
  EXPECT_EQ(port.text(), "");
}

TEST_F(ClipboardTest, ClearingLeavesNothingToRead) {
  XClient client(server.display());
  client.own("CLIPBOARD", answersWith("old"));
  port.clear();
  EXPECT_EQ(port.text(), std::nullopt);
}

TEST_F(ClipboardTest, ATextCopiedAfterClearingIsRead) {
  XClient client(server.display());
  port.clear();
  client.own("CLIPBOARD", answersWith("new"));
  EXPECT_EQ(port.text(), "new");
  port.clear();
  EXPECT_EQ(port.text(), std::nullopt);
}

TEST_F(ClipboardTest, AClipboardManagerDoesNotRestoreTheOldText) {
  const ClipboardManager manager(server.display(), "old");
  ASSERT_EQ(port.text(), "old");
  port.clear();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(port.text(), std::nullopt);
  EXPECT_EQ(manager.restoreCount(), 0);
}

TEST_F(ClipboardTest, ClearedItOffersItsTargetsAndNothingElse) {
  Requestor requestor(server.display());
  port.clear();
  const auto targets = requestor.ask("TARGETS");
  ASSERT_TRUE(targets);
  EXPECT_EQ(*targets, (std::vector{requestor.named("TARGETS"), requestor.named("TIMESTAMP")}));
  EXPECT_EQ(requestor.ask("TARGETS", false), targets);
  const auto since = requestor.ask("TIMESTAMP");
  ASSERT_TRUE(since);
  EXPECT_EQ(since->size(), 1U);
  EXPECT_NE(since->front(), 0U);
  EXPECT_EQ(requestor.ask("UTF8_STRING"), std::nullopt);
  EXPECT_EQ(requestor.ask("STRING"), std::nullopt);
  EXPECT_EQ(requestor.ask("MULTIPLE"), std::nullopt);
}

TEST_F(ClipboardTest, ARequestorThatIsGoneBeforeTheAnswerDoesNoHarm) {
  Requestor requestor(server.display());
  port.clear();
  port.call([&] {
    requestor.send("TARGETS");
    requestor.destroyWindow();
  });
  port.settle();
  XClient client(server.display());
  client.own("CLIPBOARD", answersWith("later"));
  EXPECT_EQ(port.text(), "later");
}

TEST_F(ClipboardTest, OnlyTheOwnerWithTheFocusIsTheFocusedProgramThatOwnsIt) {
  setenv("DISPLAY", server.display().c_str(), 1);
  XClientSettings settings;
  settings.machine = "elsewhere";  // so that both are not taken for this process
  XClient owner(server.display(), settings);
  EXPECT_FALSE(focusedProgramOwnsClipboard());  // nobody owns it
  owner.own("CLIPBOARD", answersWith("text"));
  // Repeated, because on a busy machine a second may be too short.
  EXPECT_TRUE(eventually(focusedProgramOwnsClipboard));
  const XClient other(server.display(), settings);
  EXPECT_FALSE(focusedProgramOwnsClipboard());
  owner.takeFocus();
  EXPECT_TRUE(eventually(focusedProgramOwnsClipboard));
}

class BlockedClipboard : public X11Test {
 protected:
  /// Blocks the main thread after `before`, on that thread; returns once the block begins.
  void block(const std::function<void()>& before) {
    std::promise<void> blocking;
    blocked_ = std::async(std::launch::async, [&, before] {
      port.call([&] {
        before();
        blocking.set_value();
        port.loop().block(std::chrono::seconds(2));
        ended = true;
      });
    });
    blocking.get_future().wait();
  }

  void TearDown() override {
    blocked_.get();
    X11Test::TearDown();
  }

  Requestor requestor{server.display()};
  std::atomic<bool> ended{false};

 private:
  std::future<void> blocked_;
};

TEST_F(BlockedClipboard, OtherProgramsAreAnswered) {
  port.clear();
  block([] {});
  EXPECT_TRUE(requestor.ask("TARGETS"));
  EXPECT_FALSE(ended);
}

TEST_F(BlockedClipboard, AnEarlierRequestIsAnswered) {
  port.clear();
  block([&] {
    requestor.send("TARGETS");
    // Its reply arrives together with the request, so that no data is left to read.
    EXPECT_EQ(port.clipboard().text(), std::nullopt);
  });
  EXPECT_TRUE(requestor.answer());
  EXPECT_FALSE(ended);
}

TEST_F(ClipboardTest, ALatin1TextBecomesUtf8) {
  XClient client(server.display());
  client.own("CLIPBOARD", Answers{{{"STRING", "STRING", "caf\xE9 \xA7 1"}}});
  EXPECT_EQ(port.text(), "caf\xC3\xA9 \xC2\xA7 1");
}

TEST_F(ClipboardTest, TheTypeOfTheAnswerCountsNotTheTarget) {
  XClient client(server.display());
  client.own("CLIPBOARD", Answers{{{"STRING", "UTF8_STRING", "caf\xC3\xA9"}}});
  EXPECT_EQ(port.text(), "caf\xC3\xA9");
  client.own("CLIPBOARD", Answers{{{"UTF8_STRING", "STRING", "caf\xE9"}}});
  EXPECT_EQ(port.text(), "caf\xC3\xA9");
  client.own("CLIPBOARD",
             Answers{{{"UTF8_STRING", "image/png", "png"}, {"STRING", "STRING", "text"}}});
  EXPECT_EQ(port.text(), "text");
}

TEST_F(ClipboardTest, TheSecondTargetIsRequestedIfTheFirstIsRefused) {
  XClient client(server.display());
  client.own("CLIPBOARD",
             Answers{{{"STRING", "STRING", "escaped"},
                      {"text/plain;charset=utf-8", "text/plain;charset=utf-8", "plain"}}});
  EXPECT_EQ(port.text(), "plain");
}

TEST_F(ClipboardTest, InvalidTextIsRepaired) {
  XClient client(server.display());
  client.own("CLIPBOARD", answersWith("+31 \xED\xA0\xBD\xED\xB8\x80 20\xFF"));
  EXPECT_EQ(port.text(), "+31 \xF0\x9F\x98\x80 20\xEF\xBF\xBD");
}

TEST_F(ClipboardTest, AnImageIsNoText) {
  XClient client(server.display());
  client.own("CLIPBOARD", Answers{{{"image/png", "image/png", "\x89PNG"}}});
  EXPECT_EQ(port.text(), std::nullopt);
}

TEST_F(ClipboardTest, ALargeTextArrivesWhole) {
  XClient client(server.display());
  const auto text = longText(20'000'000);
  client.own("CLIPBOARD", answersWith(text, 250'000));
  EXPECT_TRUE(port.text() == text);
}

TEST_F(ClipboardTest, ATextInUnevenPiecesArrivesWhole) {
  XClient client(server.display());
  for (const std::size_t size : {1U, 999U, 1000U, 1001U, 300'001U}) {
    const auto text = longText(size);
    client.own("CLIPBOARD", answersWith(text, size > 2000 ? 299'999 : 1000));
    EXPECT_TRUE(port.text() == text) << size;
  }
}

TEST_F(ClipboardTest, ALargeTextInOnePropertyArrivesWhole) {
  XClient client(server.display());
  const auto text = longText(5'000'000);
  client.own("CLIPBOARD", answersWith(text));
  EXPECT_TRUE(port.text() == text);
}

TEST_F(ClipboardTest, AnOwnerThatNeverAnswersYieldsNothing) {
  XClient client(server.display());
  Answers never;
  never.never = true;
  client.own("CLIPBOARD", never);
  EXPECT_EQ(port.text(), std::nullopt);
  client.own("CLIPBOARD", answersWith("later"));
  EXPECT_EQ(port.text(), "later");
}

TEST_F(ClipboardTest, AnOwnerThatStopsInTheMiddleYieldsNothing) {
  XClient client(server.display());
  auto answers = answersWith(longText(10'000), 1000);
  answers.chunksUntilSilence = 3;
  client.own("CLIPBOARD", answers);
  EXPECT_EQ(port.text(), std::nullopt);
  client.own("CLIPBOARD", answersWith("later"));
  EXPECT_EQ(port.text(), "later");
}

TEST_F(ClipboardTest, AnOwnerThatDiesInTheMiddleYieldsNothing) {
  XClientSettings settings;
  settings.endsWhenSilent = true;
  XClient client(server.display(), settings);
  auto answers = answersWith(longText(10'000), 1000);
  answers.chunksUntilSilence = 3;
  client.own("CLIPBOARD", answers);
  EXPECT_EQ(port.text(), std::nullopt);
  XClient next(server.display());
  next.own("CLIPBOARD", answersWith("later"));
  EXPECT_EQ(port.text(), "later");
}

TEST_F(ClipboardTest, AnOwnerThatIsGoneYieldsNothing) {
  {
    XClient client(server.display());
    client.own("CLIPBOARD", answersWith("text"));
  }
  EXPECT_EQ(port.text(), std::nullopt);
}

}  // namespace
}  // namespace seldial::platform::x11
