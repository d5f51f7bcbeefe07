#include "ucclient/Console.h"

#include <cstdio>

#include "ucclient/Printable.h"

namespace seldial {
namespace {

void printLine(const std::string& line) {
  std::puts(line.c_str());
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

void Console::trouble(const std::string& sentence) const {
  std::fprintf(stderr, "seldial-uc: %s\n", printable(sentence).c_str());
}

bool Console::broken() const {
  return std::ferror(stdout) != 0;
}

}  // namespace seldial
