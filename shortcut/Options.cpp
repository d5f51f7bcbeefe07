#include "shortcut/Options.h"

#include "client/Options.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial {
namespace {

class Reader final : public OptionReader {
 public:
  using OptionReader::OptionReader;

  std::optional<ShortcutOptions> read() {
    if (!readAll()) return std::nullopt;
    if (int{print_} + int{!options_.socket.empty()} + int{options_.settings} > 1) {
      fail("--print, --socket and --settings cannot be used together");
      return std::nullopt;
    }
    if (!options_.testCopy.empty() && !options_.hotKey) {
      fail("--test-copy needs --hotkey");
      return std::nullopt;
    }
    if (options_.socket.empty() && !options_.client.empty()) {
      fail("--client needs --socket");
      return std::nullopt;
    }
    return options_;
  }

 private:
  [[nodiscard]] bool takesValue(const std::string& name) const override {
    return name == "--hotkey" || name == "--delay" || name == "--socket" || name == "--config" ||
           name == "--client" || name == "--test-copy";
  }

  bool setFlag(const std::string& name) override {
    if (name == "--print") return print_ = true;
    if (name == "--settings") return options_.settings = true;
    if (name == "--help" || name == "-h") return options_.help = true;
    if (name == "--version") return options_.version = true;
    return false;
  }

  bool setValue(const std::string& name, const std::string& value) override {
    if (name == "--hotkey") return setHotKey(value);
    if (name == "--config") return setConfiguration(value);
    if (name == "--test-copy") return setTestCopy(value);
    if (name == "--delay") return setDelay(value);
    return setPath(name, value, name == "--client" ? options_.client : options_.socket);
  }

  bool setHotKey(const std::string& value) {
    std::string why;
    options_.hotKey = hotKeyFromSpelling(value, why);
    return options_.hotKey ? true : fail("--hotkey " + value + ": " + why);
  }

  bool setDelay(const std::string& value) {
    options_.delay = parseDelay(value);
    if (options_.delay) return true;
    return fail("--delay takes milliseconds from 0 to 65535, not " + value);
  }

  bool setPath(const std::string& name, const std::string& value, std::string& path) {
    path = value;
    const bool usable = GDUnixSocketClient::initWithSocketPath(value) != nullptr;
    return usable ? true : fail(name + " takes a standardised path with a slash, not " + value);
  }

  bool setTestCopy(const std::string& value) {
    options_.testCopy = value;
    return !value.empty() || fail("--test-copy needs a text");
  }

  bool setConfiguration(const std::string& value) {
    options_.configuration = value;
    return true;
  }

  bool print_ = false;
  ShortcutOptions options_;
};

}  // namespace

std::optional<ShortcutOptions> readShortcutOptions(const std::vector<std::string>& arguments,
                                                   std::string& error) {
  return Reader(arguments, error).read();
}

const char* shortcutHelpText() {
  return R"(usage: seldial-shortcut [--print | --socket PATH | --settings] [OPTION...]

Shows a window for recording and trying out a shortcut. Then prints the command
that sets it, sends it to seldial, or saves it with the settings of seldial-uc.

  --print         print the command, one line of JSON; this is the default
  --socket PATH   send the command to the seldial that listens at PATH
  --client PATH   with --socket: wait for the answer, which that seldial delivers to
                  PATH, its clientpipename, unless another program listens there
  --settings      show, change and apply the configuration of seldial-uc
  --config FILE   the configuration file; default: seldial/seldial-uc.toml under
                  XDG_CONFIG_HOME or ~/.config
  --hotkey KEYS   the shortcut to start with: any of ctrl, alt, shift and super, and
                  one key, such as d, 7, f5, space, left or keypad0
  --delay MS      how long the other application gets to copy its selection, from 0
                  to 65535 milliseconds; default 500
  --test-copy TEXT  show TEXT, selected, and type the shortcut; used by seldial-uc
                  check to test whether Seldial can copy
  --help          print this text
  --version       print the version

Exit status: 0 if the shortcut was passed on; 1 if the window was closed without
that, or there is no X11 desktop; 2 if the command line is invalid.
)";
}

}  // namespace seldial
