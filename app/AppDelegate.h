// The application: all of its state and all operations on it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "api/JSON.h"
#include "platform/Application.h"
#include "platform/Ports.h"

namespace seldial {

class GDUnixSocketClient;
class GDUnixSocketEventsCS;
class GDUnixSocketServer;
class QKHotKey;
struct HotKeyStateApi;
struct SetHotKeyApi;

/// The object that holds the application's state; it lives as long as the process. The main thread
/// owns every field and runs every operation except log() and applicationMustEnd(), which any
/// thread may call. No operation reports a failure to its caller: a message informs the UC client,
/// and internal failures become log lines.
class AppDelegate final : public platform::ApplicationDelegate,
                          public std::enable_shared_from_this<AppDelegate> {
 public:
  static std::shared_ptr<AppDelegate> init(const platform::Ports& ports);

  std::weak_ptr<void> window;               ///< never used
  std::shared_ptr<QKHotKey> CurrentHotKey;  ///< the registered hot key, or null
  std::uint16_t ReadPasteboardDelay = 500;  ///< ms between the copy keystroke and the read
  std::shared_ptr<GDUnixSocketServer> UnixSocketServer;  ///< the incoming socket, or null
  std::string UnixSocketConnetedClientId;  ///< the current client; the misspelling is kept
  std::string UnixSocketInputString;       ///< what the current client has sent so far
  std::shared_ptr<GDUnixSocketEventsCS> UnixSocketEventsCS;  ///< created on first use
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
  /// Closes the incoming and the outgoing socket; the main thread may be waiting for either.
  void applicationMustEnd() override;
  /// Connects to the desktop. Required before the operations on hot keys and the clipboard.
  void connectToDesktop();
  /// Sets the flags and values from the command line; ignores unknown arguments.
  void parseCommandLine();

  // ConsoleTexts.cpp: fixed texts, to standard output
  void showBanner();
  void showHelp();
  void showChangeLog();
  void showApi();

  // SocketChannels.cpp: the incoming channel
  /// Listens at ValueDialerPipeName after removing what is there; does nothing if it is not set.
  void startUnixSocketServer();
  /// Makes a newly accepted client the current one and discards the input of the previous one.
  void takeUnixSocketInput(const std::string& clientID);
  /// Appends received text to the input if it comes from the current client.
  void appendUnixSocketInput(const std::string& clientID, std::string text);
  /// Processes the input when its client, the current one, has disconnected.
  void processUnixSocketInputString(const std::string& clientID);
  /// The delegate of every socket, created on first use.
  std::shared_ptr<GDUnixSocketEventsCS> unixSocketEvents();

  // Commands.cpp
  /// Processes one complete command text. A missing text and an empty text are different errors.
  void processInputString(std::optional<std::string> input);
  /// Replaces the registered hot key with the command's and answers with a HotkeyState.
  void processSetHotKey(const SetHotKeyApi& command);
  void unregisterCurrentHotKey();
  void sendHotKeyStateOk();
  /// Copies the selection, waits ReadPasteboardDelay, and emits the copied text as a MakeCall.
  /// Blocks the main thread while it waits.
  void hotKeyPressed();
  void copySelectionToPasteboard();

  // Output.cpp
  /// Writes `message` to standard output in the forms that the flags ask for. Any thread.
  void log(const std::string& message);
  /// Emits a message for the UC client: a line on standard output, then the outgoing socket.
  void emitMessage(const JSONString& message);
  /// Delivers one message over its own connection; does nothing if ValueClientPipeName is not set.
  void sendToClientPipe(const JSONString& message);

 private:
  explicit AppDelegate(platform::Ports ports);

  void answerError(std::string message);
  void prepareToSend(const std::shared_ptr<GDUnixSocketClient>& client);
  void sendHotKeyState(const HotKeyStateApi& state);
  /// `text` with A to Z in lower case; other letters are unchanged.
  static std::string lowercased(std::string text);

  const platform::Ports ports_;
  platform::DesktopPorts desktop_;  ///< empty until connectToDesktop()

  std::mutex endLock_;  ///< guards the members below, which applicationMustEnd() uses
  bool mustEnd_ = false;
  std::weak_ptr<GDUnixSocketServer> incoming_;
  std::weak_ptr<GDUnixSocketClient> outgoing_;  ///< of the message that is being sent
};

}  // namespace seldial
