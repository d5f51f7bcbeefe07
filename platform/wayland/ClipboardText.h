// The text of a Wayland clipboard: its types, and reading it from the pipe into which the owner
// writes it.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "platform/linux/MainLoop.h"

namespace seldial::platform::wayland {

/// The types of UTF-8 text, best first. All stand for the same text; programs differ in which they
/// offer.
inline constexpr const char* kTextTypes[]{"text/plain;charset=utf-8", "text/plain;charset=UTF-8",
                                          "UTF8_STRING", "text/plain"};

/// The index of a type in kTextTypes; their number if it is not text.
[[nodiscard]] std::size_t textTypeRank(const char* type);

/// The type that our empty clipboard offers: clipboard managers would fill a clipboard without any
/// type with an old text.
inline constexpr const char* kEmptyClipboardType = "application/x-seldial-empty";

/// Reads a pipe to its end and appends to `text`. Nothing if no data arrives for a second, the end
/// is not reached by `deadline`, there are more than 256 MiB, or a read fails.
std::optional<std::string> readToEnd(int pipe, std::chrono::steady_clock::time_point deadline,
                                     std::string text = {});

/// Reads the text that an owner writes into a pipe, and repairs invalid UTF-8. Nothing if it is
/// longer than 256 MiB, no data arrives for a second, or the transfer takes longer than 5 seconds:
/// the main thread waits, and an owner could send byte by byte.
[[nodiscard]] std::optional<std::string> readClipboardText(int pipe);

/// A text that is read as it arrives, even while the loop blocks: many owners write the whole text
/// at once and do nothing else until it is read. Main thread only.
class IncomingText final : public linux_port::EventSource {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  explicit IncomingText(linux_port::MainLoop& loop);
  ~IncomingText() override;
  IncomingText(const IncomingText&) = delete;
  IncomingText& operator=(const IncomingText&) = delete;

  /// Reads from a new pipe and abandons the previous one. Returns its other end, which the caller
  /// passes to the owner and closes; -1 when the system has no descriptor left.
  [[nodiscard]] int begin();
  /// The same from a pipe that exists, of which it takes ownership.
  void beginFrom(int pipe);
  void abandon();
  /// The text, if all of it has arrived. Does not wait.
  [[nodiscard]] std::optional<std::string> arrived();

  /// Whether a text has been begun whose end has not been read.
  [[nodiscard]] bool arriving() const { return pipe_ != -1; }

  /// Waits for the end of the text and returns it, with the limits of readClipboardText(). Nothing
  /// if no text has been begun.
  [[nodiscard]] std::optional<std::string> finish();

  [[nodiscard]] int descriptor() const override { return epoll_; }
  void readable() override { readArrived(); }
  bool readableWhileBlocked() override;

 private:
  bool readArrived();
  void closePipe();

  linux_port::MainLoop& loop_;
  const int epoll_;                  ///< watches pipe_, which may change while the loop blocks
  int pipe_ = -1;                    ///< -1 if no more is to arrive
  std::optional<std::string> text_;  ///< what has arrived; nothing if there is no transfer
};

}  // namespace seldial::platform::wayland
