// Where a command text is judged. The error texts speak of a standard input stream, which is never
// read: they are kept word for word.
#include "api/MessageRecords.h"
#include "app/AppDelegate.h"
#include "app/Lowercased.h"

namespace seldial {

void AppDelegate::processInputString(const std::optional<std::string>& input) {
  if (!input) return answerError("error reading from standard input stream");
  if (input->empty()) return answerError("empty string on standard input stream");
  const auto command = SetHotKeyApi::fromJSONString(*input);
  if (!command.Command) return answerError("command tag not found");
  if (lowercased(*command.Command) == "sethotkey") return processSetHotKey(command);
  answerError("invalid command: " + *command.Command);
}

void AppDelegate::answerError(const std::string& message) {
  log(message);
  emitMessage(ErrorApi{message}.toJSONString());
}

}  // namespace seldial
