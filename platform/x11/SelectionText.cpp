#include "platform/x11/SelectionText.h"

#include "platform/x11/SelectionTransfer.h"

namespace seldial::platform::x11 {
namespace {

/// How long an owner has for its first answer, whatever it has been asked before.
constexpr std::chrono::seconds kPatience{1};

constexpr std::size_t kMostBytes = std::size_t{256} * 1024 * 1024;

std::string utf8FromLatin1(const std::string& latin1) {
  std::string utf8;
  utf8.reserve(latin1.size());
  for (const char character : latin1) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x80) {
      utf8 += character;
    } else {
      utf8 += static_cast<char>(0xC0 | code >> 6);
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

}  // namespace

std::optional<std::string> readSelectionText(Connection& connection, EventPump& pump,
                                             xcb_atom_t selection) {
  const Atoms& atoms = connection.atoms();
  const auto deadline = EventPump::Clock::now() + kPatience;
  SelectionTransfer transfer(connection, pump, kMostBytes);
  // In this order: some owners put escape sequences into STRING for what Latin-1 lacks.
  for (const auto target : {atoms.utf8String, atoms.utf8PlainText, xcb_atom_t{XCB_ATOM_STRING}}) {
    auto answer = transfer.ask(selection, target, deadline);
    if (!answer) return {};
    // Owners answer with another type than they were asked for; the type is what counts.
    if (answer->type == XCB_ATOM_STRING) return utf8FromLatin1(answer->bytes);
    if (answer->type == atoms.utf8String || answer->type == atoms.utf8PlainText) {
      return std::move(answer->bytes);
    }
  }
  return {};
}

}  // namespace seldial::platform::x11
