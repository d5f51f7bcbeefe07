#include "ucclient/Options.h"

#include <algorithm>
#include <map>

#include "client/Options.h"

namespace seldial {
namespace {

class Reader final : public OptionReader {
 public:
  using OptionReader::OptionReader;

  std::optional<Options> read() {
    if (!readAll() || !setHotKey() || !checkDialling()) return std::nullopt;
    return options_;
  }

 private:
  using Setter = bool (Reader::*)(const std::string& value);

  static const std::map<std::string, Setter>& setters() {
    static const std::map<std::string, Setter> all = {
        {"--hotkey", &Reader::setSpelling}, {"--seldial", &Reader::setSeldial},
        {"--delay", &Reader::setDelay},     {"--dial", &Reader::setDial},
        {"--open", &Reader::setOpen},       {"--region", &Reader::setRegion},
        {"--format", &Reader::setFormat},   {"--prefix", &Reader::setPrefix},
        {"--confirm", &Reader::setConfirm}};
    return all;
  }

  [[nodiscard]] bool takesValue(const std::string& name) const override {
    return setters().count(name) != 0;
  }

  bool setValue(const std::string& name, const std::string& value) override {
    return (this->*setters().at(name))(value);
  }

  bool setFlag(const std::string& name) override {
    if (name == "--conversation") return options_.conversation = true;
    if (name == "--help" || name == "-h") return options_.help = true;
    if (name == "--version") return options_.version = true;
    return false;
  }

  bool setSpelling(const std::string& value) {
    options_.spelling = value;
    return true;
  }

  bool setSeldial(const std::string& value) {
    options_.seldial = value;
    return true;
  }

  bool setDelay(const std::string& value) {
    const auto delay = delayFrom(value);
    if (!delay) return fail("--delay takes milliseconds from 0 to 65535, not " + value);
    options_.delay = *delay;
    return true;
  }

  bool setDial(const std::string& value) {
    std::string why;
    const auto command = dialCommandFrom(value, why);
    if (!command) return fail("--dial " + value + ": " + why);
    dialling().command = *command;
    return true;
  }

  bool setOpen(const std::string& value) {
    if (value != "tel" && value != "sip" && value != "callto") {
      return fail("--open takes tel, sip or callto, not " + value);
    }
    dialling().scheme = value;
    return true;
  }

  bool setRegion(const std::string& value) {
    std::string& region = dialling().region;
    region = value;
    for (char& letter : region) {
      if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    }
    return isKnownRegion(region) ||
           fail("--region takes the two letters of a country, such as NL, not " + value);
  }

  bool setFormat(const std::string& value) {
    return choose(value,
                  {{"e164", NumberFormat::kE164},
                   {"national", NumberFormat::kNational},
                   {"raw", NumberFormat::kRaw}},
                  dialling().format) ||
           fail("--format takes e164, national or raw, not " + value);
  }

  bool setPrefix(const std::string& value) {
    dialling().prefix = value;
    return value.find_first_not_of("0123456789*#") == std::string::npos ||
           fail("--prefix takes digits, * and #, not " + value);
  }

  bool setConfirm(const std::string& value) {
    return choose(value,
                  {{"always", Confirm::kAlways},
                   {"several", Confirm::kSeveral},
                   {"never", Confirm::kNever}},
                  dialling().confirm) ||
           fail("--confirm takes always, several or never, not " + value);
  }

  template <class Value>
  static bool choose(const std::string& name, const std::map<std::string, Value>& values,
                     Value& chosen) {
    const auto entry = values.find(name);
    if (entry != values.end()) chosen = entry->second;
    return entry != values.end();
  }

  bool setHotKey() {
    std::string why;
    const auto hotKey = hotKeyFromSpelling(options_.spelling, why);
    if (!hotKey) return fail("--hotkey " + options_.spelling + ": " + why);
    options_.hotKey = *hotKey;
    return true;
  }

  bool checkDialling() {
    if (!dialling().command.empty() && !dialling().scheme.empty()) {
      return fail("--dial and --open cannot be used together");
    }
    if (!dialling().dials()) return true;
    if (dialling().region.empty()) dialling().region = regionOfLocale();
    const bool needsRegion = !dialling().prefix.empty() && dialling().format != NumberFormat::kRaw;
    return !needsRegion || !dialling().region.empty() ||
           fail("--prefix needs --region, because the locale names no country");
  }

  DialSettings& dialling() { return options_.dialling; }

  Options options_;
};

}  // namespace

std::optional<Options> optionsFrom(const std::vector<std::string>& arguments, std::string& error) {
  return Reader(arguments, error).read();
}

const char* helpText() {
  return R"(usage: seldial-uc [--dial COMMAND | --open SCHEME] [OPTION...]

Starts seldial, registers a hot key and dials every number that is selected with
it, until Ctrl-C. Without --dial or --open it only prints the numbers.

Dialling:
  --dial COMMAND  run a program to dial, for example --dial 'twinkle --call {}'.
                  {} is the number, {tel} its tel: URI, {text} the selection.
                  No shell is used
  --open SCHEME   let the desktop open a URI: tel, sip or callto
  --region CC     the country whose national numbers are meant, such as NL; if not
                  given, the locale's
  --format F      dial the number as e164 (+31201234567, the default), national
                  (0201234567) or raw (the digits as selected)
  --prefix DIGITS dial these digits first, for an outside line
  --confirm WHEN  ask before dialling: always, several (if there are several numbers
                  or it is not certain what the number is; the default), or never
                  (then such a selection is not dialled)

Seldial:
  --hotkey KEYS   the hot key, ctrl+alt+d if not given: any of ctrl, alt, shift and
                  super, and one key, such as d, 7, f5, space, left or keypad0
  --delay MS      how long the other application gets to copy its selection, from 0
                  to 65535 milliseconds, 500 if not given
  --seldial PATH  the program to start; if not given, the seldial beside this
                  program, or else the one in PATH
  --conversation  show everything that passes over the two sockets
  --help          print this text
  --version       print the version

Exit status: 0 after SIGINT, SIGTERM or SIGHUP; 1 when the hot key is refused or
seldial ends; 2 when the command line is wrong.
)";
}

}  // namespace seldial
