#include "ucclient/Options.h"

#include <unistd.h>

#include <cerrno>
#include <map>

#include "client/Configuration.h"
#include "client/Options.h"
#include "platform/System.h"

namespace seldial {
namespace {

/// Reads the command line. If readFile() was called before, the command line overrides the file.
class Reader final : public OptionReader {
 public:
  using OptionReader::OptionReader;

  /// Reads the settings of the file. A file that does not exist has none.
  bool readFile(const std::string& path) {
    std::string error;
    const auto settings = readConfiguration(path, error);
    if (!settings) return fail(error);
    hyphens_ = "";
    for (const Setting& setting : *settings) {
      place_ = path + ":" + std::to_string(setting.line) + ": ";
      if (!readSetting(setting)) return false;
    }
    place_ = "";
    hyphens_ = "--";
    return true;
  }

  /// Reads the command line without the checks that also depend on the file.
  bool readArguments() {
    dialWasGiven_ = openWasGiven_ = false;  // they replace those of the file
    return readAll();
  }

  /// The options, if they are consistent.
  std::optional<Options> checked() {
    if (!checkDialling()) return std::nullopt;
    return options_;
  }

  [[nodiscard]] const Options& options() const { return options_; }

 private:
  using Setter = bool (Reader::*)(const std::string& value);

  /// The options that are also settings of the configuration file.
  static const std::map<std::string, Setter>& setters() {
    static const std::map<std::string, Setter> all = {
        {"--hotkey", &Reader::setSpelling}, {"--seldial", &Reader::setSeldial},
        {"--delay", &Reader::setDelay},     {"--dial", &Reader::setDial},
        {"--open", &Reader::setOpen},       {"--region", &Reader::setRegion},
        {"--format", &Reader::setFormat},   {"--prefix", &Reader::setPrefix},
        {"--confirm", &Reader::setConfirm}, {"--undo-time", &Reader::setUndoTime}};
    return all;
  }

  bool readSetting(const Setting& setting) {
    if (setting.name == "conversation") return setConversation(setting.value);
    const auto setter = setters().find("--" + setting.name);
    if (setter == setters().end()) return fail("unknown setting " + setting.name);
    return (this->*setter->second)(setting.value);
  }

  /// The name of an option as the user writes it, on the command line or in the file.
  [[nodiscard]] std::string named(const char* name) const { return hyphens_ + name; }

  [[nodiscard]] bool takesValue(const std::string& name) const override {
    return name == "--config" || setters().count(name) != 0;
  }

  bool setValue(const std::string& name, const std::string& value) override {
    if (name == "--config") return setConfiguration(value);
    return (this->*setters().at(name))(value);
  }

  bool setFlag(const std::string& name) override {
    if (name == "--conversation") return options_.conversation = true;
    if (name == "--help" || name == "-h") return options_.help = true;
    if (name == "--version") return options_.version = true;
    return false;
  }

  bool setConfiguration(const std::string& value) {
    options_.configuration = value;
    const bool exists = access(value.c_str(), R_OK) == 0;
    return exists || fail("--config " + value + ": " + platform::errorText(errno));
  }

  bool setConversation(const std::string& value) {
    options_.conversation = value == "true";
    return value == "true" || value == "false" ||
           fail("conversation takes true or false, not " + value);
  }

  bool setSpelling(const std::string& value) {
    std::string why;
    options_.spelling = value;
    const auto hotKey = hotKeyFromSpelling(value, why);
    if (!hotKey) return fail(named("hotkey ") + value + ": " + why);
    options_.hotKey = *hotKey;
    return true;
  }

  bool setSeldial(const std::string& value) {
    options_.seldial = value;
    return true;
  }

  bool setDelay(const std::string& value) {
    const auto delay = parseDelay(value);
    if (!delay) return fail(named("delay") + " takes milliseconds from 0 to 65535, not " + value);
    options_.delay = *delay;
    return true;
  }

  bool setDial(const std::string& value) {
    std::string why;
    const auto command = parseDialCommand(value, why);
    if (!command) return fail(named("dial ") + value + ": " + why);
    dialling().command = *command;
    dialling().scheme.clear();
    dialWasGiven_ = true;
    return checkOneAction();
  }

  bool setOpen(const std::string& value) {
    if (value != "tel" && value != "sip" && value != "callto") {
      return fail(named("open") + " takes tel, sip or callto, not " + value);
    }
    dialling().scheme = value;
    dialling().command.clear();
    openWasGiven_ = true;
    return checkOneAction();
  }

  bool setRegion(const std::string& value) {
    std::string& region = dialling().region;
    region = value;
    for (char& letter : region) {
      if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    }
    return isKnownRegion(region) ||
           fail(named("region") + " takes the two letters of a country, such as NL, not " + value);
  }

  bool setFormat(const std::string& value) {
    return choose(value,
                  {{"e164", NumberFormat::kE164},
                   {"national", NumberFormat::kNational},
                   {"raw", NumberFormat::kRaw}},
                  dialling().format) ||
           fail(named("format") + " takes e164, national or raw, not " + value);
  }

  bool setPrefix(const std::string& value) {
    dialling().prefix = value;
    return value.find_first_not_of("0123456789*#") == std::string::npos ||
           fail(named("prefix") + " takes digits, * and #, not " + value);
  }

  bool setConfirm(const std::string& value) {
    return choose(value,
                  {{"always", Confirm::kAlways},
                   {"undo", Confirm::kUndo},
                   {"several", Confirm::kSeveral},
                   {"never", Confirm::kNever}},
                  dialling().confirm) ||
           fail(named("confirm") + " takes always, undo, several or never, not " + value);
  }

  bool setUndoTime(const std::string& value) {
    const auto seconds = parseDelay(value);
    dialling().undoTime = std::chrono::seconds(seconds.value_or(0));
    return (seconds && *seconds >= 1 && *seconds <= 60) ||
           fail(named("undo-time") + " takes seconds from 1 to 60, not " + value);
  }

  template <class Value>
  static bool choose(const std::string& name, const std::map<std::string, Value>& values,
                     Value& chosen) {
    const auto entry = values.find(name);
    if (entry != values.end()) chosen = entry->second;
    return entry != values.end();
  }

  bool checkOneAction() {
    return !(dialWasGiven_ && openWasGiven_) ||
           fail(named("dial") + " and " + named("open") + " cannot be used together");
  }

  bool checkDialling() {
    if (!dialling().dials()) return true;
    if (dialling().region.empty()) dialling().region = regionOfLocale();
    const bool needsRegion = !dialling().prefix.empty() && dialling().format != NumberFormat::kRaw;
    return !needsRegion || !dialling().region.empty() ||
           fail("--prefix needs --region, because the locale names no country");
  }

  DialSettings& dialling() { return options_.dialling; }

  std::string hyphens_ = "--";  ///< before the name of an option; empty in the file
  bool dialWasGiven_ = false;
  bool openWasGiven_ = false;
  Options options_;
};

}  // namespace

std::optional<Options> readOptions(const std::vector<std::string>& arguments,
                                   const std::string& defaultConfiguration, std::string& error) {
  Reader commandLine(arguments, error);  // first only for the name of the file
  if (!commandLine.readArguments()) return std::nullopt;
  const Options& given = commandLine.options();
  if (given.help || given.version) return given;
  const std::string& file =
      given.configuration.empty() ? defaultConfiguration : given.configuration;
  Reader reader(arguments, error);
  if ((!file.empty() && !reader.readFile(file)) || !reader.readArguments()) return std::nullopt;
  return reader.checked();
}

const char* helpText() {
  return R"(usage: seldial-uc [--dial COMMAND | --open SCHEME] [OPTION...]
       seldial-uc COMMAND

Starts seldial and dials the selected number each time the hot key is pressed,
until Ctrl-C. Without --dial or --open it only prints the numbers.

Dialling:
  --dial COMMAND  run a program to dial, such as 'twinkle --call {}'.
                  {} is the number, {tel} its tel: URI, {text} the selection.
                  No shell is used
  --open SCHEME   let the desktop open a URI: tel, sip or callto
  --region CC     the country of numbers without a country code, such as NL;
                  default: from the locale
  --format F      dial the number as e164 (+31201234567, the default), national
                  (0201234567) or raw (the digits as selected)
  --prefix DIGITS dial these digits first, for an outside line
  --confirm WHEN  ask before dialling: always, several (if there are several numbers
                  or the number is ambiguous; the default), undo (like several, and
                  every other call can be undone before it begins), or never (do not
                  dial what several would ask about)
  --undo-time S   how long a call can be undone, from 1 to 60 seconds; default 2

Seldial:
  --hotkey KEYS   the hot key: any of ctrl, alt, shift and super, and one key, such
                  as d, 7, f5, space, left or keypad0; default ctrl+alt+d
  --delay MS      how long the other application gets to copy its selection, from 0
                  to 65535 milliseconds; default 500
  --seldial PATH  the program to start; default: the seldial next to this program,
                  otherwise the one in PATH
  --config FILE   the configuration file; default: seldial/seldial-uc.toml under
                  XDG_CONFIG_HOME or ~/.config. Its settings are these options without
                  hyphens, such as region = "NL". The command line takes precedence
  --conversation  show everything that is sent over the two sockets
  --help          print this text
  --version       print the version

Commands:
  check           check everything that dialling needs: session, programs, hot key
  enable          start seldial-uc at login, with the configuration file
  disable         do not start seldial-uc at login
  status          show the state and the last calls of the running seldial-uc
  reload          make the running seldial-uc read its configuration file again
  settings        open the settings window
  press           use the hot key, on Wayland desktops without hot keys for programs

Commands for a seldial that another program runs:
  send SOCKET [--hotkey KEYS] [--delay MS]   set its hot key
  raw SOCKET      send standard input to it, unaltered
  listen SOCKET   print the messages that it sends

Exit status: 0 after SIGINT, SIGTERM or SIGHUP; 1 if the hot key is refused or
seldial ends; 2 if the command line or the configuration file is invalid.
)";
}

}  // namespace seldial
