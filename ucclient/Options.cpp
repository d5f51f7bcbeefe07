#include "ucclient/Options.h"

#include "client/Options.h"

namespace seldial {
namespace {

class Reader final : public OptionReader {
 public:
  using OptionReader::OptionReader;

  std::optional<Options> read() {
    if (!readAll() || !setHotKey()) return std::nullopt;
    return options_;
  }

 private:
  [[nodiscard]] bool takesValue(const std::string& name) const override {
    return name == "--hotkey" || name == "--delay" || name == "--seldial";
  }

  bool setValue(const std::string& name, const std::string& value) override {
    if (name == "--hotkey") options_.spelling = value;
    if (name == "--seldial") options_.seldial = value;
    if (name != "--delay") return true;
    const auto delay = delayFrom(value);
    if (!delay) return fail("--delay takes milliseconds from 0 to 65535, not " + value);
    options_.delay = *delay;
    return true;
  }

  bool setFlag(const std::string& name) override {
    if (name == "--conversation") return options_.conversation = true;
    if (name == "--help" || name == "-h") return options_.help = true;
    return false;
  }

  bool setHotKey() {
    std::string why;
    const auto hotKey = hotKeyFromSpelling(options_.spelling, why);
    if (!hotKey) return fail("--hotkey " + options_.spelling + ": " + why);
    options_.hotKey = *hotKey;
    return true;
  }

  Options options_;
};

}  // namespace

std::optional<Options> optionsFrom(const std::vector<std::string>& arguments, std::string& error) {
  return Reader(arguments, error).read();
}

const char* helpText() {
  return R"(usage: seldial-uc [--hotkey KEYS] [--delay MS] [--conversation] [--seldial PATH]

Starts seldial, registers a hot key and prints every number that is dialled with
it, until Ctrl-C.

  --hotkey KEYS   the hot key, ctrl+alt+d if not given: any of ctrl, alt, shift and
                  super, and one key, such as d, 7, f5, space, left or keypad0
  --delay MS      how long the other application gets to copy its selection, from 0
                  to 65535 milliseconds, 500 if not given
  --conversation  show everything that passes over the two sockets
  --seldial PATH  the program to start; if not given, the seldial beside this
                  program, or else the one in PATH
  --help          print this text

Each message is printed as it came, and for each call a line "Dial: NUMBER".
Exit status: 0 after SIGINT, SIGTERM or SIGHUP; 1 when the hot key is refused or
seldial ends; 2 when the command line is wrong.
)";
}

}  // namespace seldial
