#include "ucclient/Console.h"

#include <cstdio>

namespace seldial {
namespace {

void printLine(const std::string& line) {
  std::puts(line.c_str());
}

void appendEscape(std::string& result, unsigned character) {
  char escape[8];
  std::snprintf(escape, sizeof escape, "\\u%04x", character);
  result += escape;
}

}  // namespace

void Console::sent(const std::string& command) const {
  onDialerSocket(printable(command).c_str());
}

void Console::received(const std::string& message) const {
  const std::string line = printable(message);
  if (conversation_) {
    onClientSocket(line.c_str());
  } else {
    printLine(line);
  }
}

void Console::onDialerSocket(const char* event) const {
  if (conversation_) printLine(std::string("dialer → ") + event);
}

void Console::onClientSocket(const char* event) const {
  if (conversation_) printLine(std::string("client ← ") + event);
}

void Console::hotKeySet(const std::string& spelling) const {
  printLine("Hot key " + printable(spelling) +
            " is set: select a number in any application and press it.");
}

void Console::dial(const std::string& number) const {
  printLine("Dial: " + printable(number));
}

void Console::dialled() const {
  printLine("Dialled.");
}

void Console::notDialled(const std::string& why) const {
  error("nothing was dialled: " + why);
}

void Console::error(const std::string& sentence) const {
  std::fprintf(stderr, "seldial-uc: %s\n", printable(sentence).c_str());
}

bool Console::broken() const {
  return std::ferror(stdout) != 0;
}

std::string printable(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto following = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    // U+0080 to U+009F are C2 80 to C2 9F in UTF-8.
    const bool c1 = byte == 0xC2 && following >= 0x80 && following <= 0x9F;
    if (c1) {
      appendEscape(result, following);
      ++i;
    } else if (byte < 0x20 || byte == 0x7F) {
      appendEscape(result, byte);
    } else {
      result += text[i];
    }
  }
  return result;
}

}  // namespace seldial
