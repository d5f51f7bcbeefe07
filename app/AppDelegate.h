// The application: all of its state, and every operation on it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/Application.h"
#include "platform/Ports.h"

namespace seldial {

class GDUnixSocketEventsCS;
class GDUnixSocketServer;
class QKHotKey;
struct HotKeyStateApi;
struct SetHotKeyApi;

/// The one object that holds the application's state, alive for the whole process. The main thread
/// owns every field and runs every operation, but for log(), which any thread may call; nothing
/// here takes a lock. No operation reports a failure to its caller: the UC client is answered in
/// band, and internal failures become log lines.
class AppDelegate final : public platform::ApplicationDelegate,
                          public std::enable_shared_from_this<AppDelegate> {
 public:
  static std::shared_ptr<AppDelegate> init(const platform::Ports& ports);

  std::weak_ptr<void> window;               ///< the desktop's notion of one; never used
  std::shared_ptr<QKHotKey> CurrentHotKey;  ///< the registered hot key, or none
  std::uint16_t ReadPasteboardDelay = 500;  ///< from the copy keystroke to the read, ms
  std::shared_ptr<GDUnixSocketServer> UnixSocketServer;  ///< the incoming socket, or none
  std::string UnixSocketConnetedClientId;  ///< the one current client; the misspelling is kept
  std::string UnixSocketInputString;       ///< what the current client has sent so far
  std::shared_ptr<GDUnixSocketEventsCS> UnixSocketEventsCS;  ///< made on first use
  bool FlagChangeLog = false;                                ///< print the change log and quit
  bool FlagHelp = false;                                     ///< print the usage text and quit
  bool FlagLog = false;                                      ///< print plain log lines
  bool FlagJsonLog = false;                                  ///< print log lines as JSON
  bool FlagShowApi = false;                                  ///< print the API reference and quit
  std::optional<std::string> ValueDialerPipeName;            ///< path of the incoming socket
  std::optional<std::string> ValueClientPipeName;            ///< path of the outgoing socket

  // StartUp.cpp
  void applicationWillFinishLaunching() override;
  void applicationDidFinishLaunching() override;
  void applicationWillTerminate() override;
  /// Connects to the desktop, which the operations on hot keys and the clipboard need.
  void connectToDesktop();
  /// Sets the flags and values from the platform's argument list; ignores what it does not know.
  void parseCommandLine();

  // ConsoleTexts.cpp: fixed texts, to standard output
  void showBanner();
  void showHelp();
  void showChangeLog();
  void showApi();

  // Logging.cpp
  /// Writes `message` to standard output in the forms that the flags ask for; any thread.
  void log(const std::string& message);

  // SocketChannels.cpp: the incoming channel
  /// Listens at ValueDialerPipeName, after removing what lies there; does nothing without one.
  void startUnixSocketServer();
  /// Makes the newly accepted client the current one; an earlier one's input is purged.
  void takeUnixSocketInput(const std::string& clientID);
  /// Adds a received text to the input, if it is the current client's.
  void appendUnixSocketInput(const std::string& clientID, const std::string& text);
  /// Processes the whole input when its client, the current one, has disconnected.
  void processUnixSocketInputString(const std::string& clientID);
  /// The adapter of every socket, made on first use.
  std::shared_ptr<GDUnixSocketEventsCS> unixSocketEvents();

  // CommandProcessing.cpp
  /// Judges one complete command text; an absent text and an empty one are different errors.
  void processInputString(const std::optional<std::string>& input);

  // HotKeyDialing.cpp
  /// Replaces the registered hot key by the command's and answers with a HotkeyState.
  void processSetHotKey(const SetHotKeyApi& command);
  void unregisterCurrentHotKey();
  void sendHotKeyStateOk();
  /// Copies the selection, waits ReadPasteboardDelay, and emits what was copied as a MakeCall.
  /// Blocks the main thread for the wait.
  void hotKeyPressed();
  void copySelectionToPasteboard();

  // OutputDelivery.cpp
  /// One message to the UC client: a line on standard output, then the outgoing socket.
  void emitMessage(const std::string& message);
  /// Delivers one message over a connection of its own; does nothing without ValueClientPipeName.
  void sendToClientPipe(const std::string& message);

 private:
  explicit AppDelegate(platform::Ports ports);

  void answerError(const std::string& message);
  void sendHotKeyState(const HotKeyStateApi& state);

  const platform::Ports ports_;
  platform::DesktopPorts desktop_;  ///< empty until connectToDesktop()
};

}  // namespace seldial
