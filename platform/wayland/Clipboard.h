// Copying on Wayland: the clipboard through data control, and the copy keystroke through the
// interface that the compositor offers for typing.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/linux/Applications.h"
#include "platform/wayland/ClipboardText.h"
#include "platform/wayland/CopyKeystroke.h"
#include "platform/wayland/Display.h"
#include "platform/wayland/FocusedProgram.h"
#include "platform/wayland/ManagerWatch.h"

struct zwlr_data_control_device_v1;
struct zwlr_data_control_offer_v1;
struct zwlr_data_control_source_v1;

namespace seldial::platform::wayland {

/// The clipboard of a seat, without a window, through the data control interface for clipboard
/// managers. Main thread only.
class DataControl {
 public:
  /// The display must offer a seat and data control. It and the loop must outlive this object.
  DataControl(Display& display, linux_port::MainLoop& loop);
  ~DataControl();
  DataControl(const DataControl&) = delete;
  DataControl& operator=(const DataControl&) = delete;

  /// Takes ownership of the clipboard, without any text. What other programs put there afterwards
  /// counts as copied. Neither sends the requests at once nor waits for the compositor, which
  /// handles requests in order: a key that is typed next arrives later.
  void takeOwnership();

  /// Returns when the next text on the clipboard can only be a copy: at once, unless a clipboard
  /// manager may be about to put an older text there. False if other programs keep changing the
  /// clipboard for three seconds. What they put there until then does not count as copied.
  /// Afterwards, until copiedText(), text is requested as soon as a program has copied it.
  [[nodiscard]] bool awaitQuiet();

  /// The text that has been copied since takeOwnership() and awaitQuiet(). Nothing if the
  /// compositor refused to give us the clipboard, no program has copied, the copied data is not
  /// text, it is longer than 256 MiB, no piece of it arrives for a second, or the transfer takes
  /// longer than 5 seconds. Nothing either for an empty text that may be a clipboard manager's copy
  /// of our empty clipboard.
  [[nodiscard]] std::optional<std::string> copiedText();

  /// Whether copiedText() may be what a clipboard manager put into the empty clipboard. Then the
  /// application must copy again, after takeOwnershipAgain() and awaitQuiet().
  [[nodiscard]] bool mayBeFromManager() const { return managers_.mayBeFromManager(); }
  void takeOwnershipAgain();

  /// Handles events for that long.
  void wait(ManagerWatch::Clock::duration time);

  // Called by libwayland.
  void offerCreated(zwlr_data_control_offer_v1* offer);
  void offerHasType(zwlr_data_control_offer_v1* offer, const char* type);
  void clipboardChanged(zwlr_data_control_offer_v1* offer);
  void primaryChanged(zwlr_data_control_offer_v1* offer);
  void deviceFinished();
  void sourceCancelled(zwlr_data_control_source_v1* source);
  void emptyWasRead(zwlr_data_control_source_v1* source);
  void ownershipTaken();

 private:
  struct Offer {
    std::size_t textType;     ///< the best type of text, an index of kTextTypes
    bool isOurEmpty = false;  ///< our empty clipboard, or a copy of it
  };

  void take();
  [[nodiscard]] bool copied() const;
  void requestEarly();
  void request();
  void forget(zwlr_data_control_offer_v1* offer);

  Display& display_;
  Owned<zwlr_data_control_device_v1> device_;
  zwlr_data_control_source_v1* empty_ = nullptr;    ///< ours; null once it was replaced
  std::set<zwlr_data_control_source_v1*> sources_;  ///< ours that were not cancelled yet
  std::map<zwlr_data_control_offer_v1*, Offer> offers_;
  zwlr_data_control_offer_v1* clipboard_ = nullptr;  ///< one of offers_
  zwlr_data_control_offer_v1* primary_ = nullptr;    ///< one of offers_; never read
  Owned<wl_callback> takeCallback_;                  ///< until the clipboard is ours
  bool changed_ = false;                             ///< since takeOwnership() and awaitQuiet()
  bool ownershipTaken_ = false;                      ///< takeOwnership() succeeded
  ManagerWatch managers_;
  bool awaitsCopy_ = false;  ///< from awaitQuiet() to copiedText()
  IncomingText incoming_;
  bool begun_ = false;      ///< incoming_ is a text that has been copied since takeOwnership()
  bool requested_ = false;  ///< incoming_ is the text of clipboard_
  std::string replaced_;    ///< a text that has been copied before that
};

/// Types into a terminal only a chord that the terminal copies on and does not pass to the program
/// running in it. In terminals without such a chord nothing is copied. Main thread only.
class WaylandClipboard final : public Clipboard {
 public:
  WaylandClipboard(DataControl& data, CopyKeys& keys, FocusedProgram focusedProgram)
      : data_(data), keys_(keys), focusedProgram_(std::move(focusedProgram)) {}

  void clear() override;
  [[nodiscard]] bool copySelection() override;
  [[nodiscard]] std::optional<std::string> text() override;

 private:
  bool type();
  std::optional<std::string> copyAgain(const std::string& text);

  DataControl& data_;
  CopyKeys& keys_;
  const FocusedProgram focusedProgram_;
  std::vector<std::string> names_;  ///< of the program that copied last
  linux_port::TerminalKind terminal_ = linux_port::TerminalKind::kNone;  ///< its kind
  Chord chord_ = Chord::kControlInsert;                                  ///< on which it copies
  std::optional<ManagerWatch::Clock::time_point> typed_;  ///< nothing if nothing was typed
};

}  // namespace seldial::platform::wayland
