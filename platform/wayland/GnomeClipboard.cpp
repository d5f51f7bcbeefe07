#include "platform/wayland/GnomeClipboard.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/Applications.h"
#include "platform/wayland/FocusedProgram.h"

namespace seldial::platform::wayland {
namespace {

bool isOwnProcess(const std::filesystem::path& process) {
  struct stat status {};
  return stat(process.c_str(), &status) == 0 && status.st_uid == geteuid();
}

/// Whether every copy keystroke does harm in the program, or copies text that is not selected.
bool isUnsupported(const std::string& name) {
  constexpr std::string_view kEmacs = "emacs";  // emacs-gtk, emacs-pgtk
  return linux_port::isUnsupported({name}) ||
         strncasecmp(name.c_str(), kEmacs.data(), kEmacs.size()) == 0;
}

bool isOtherTerminal(const std::string& name) {
  return linux_port::terminalKind(name) == linux_port::TerminalKind::kOther;
}

}  // namespace

std::vector<std::string> runningPrograms() {
  std::vector<std::string> programs;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const std::string number = entry.path().filename();
    if (std::isdigit(static_cast<unsigned char>(number[0])) == 0 || !isOwnProcess(entry.path()))
      continue;
    auto name = processName(static_cast<std::uint32_t>(std::stoul(number)));
    if (!name.empty()) programs.push_back(std::move(name));
  }
  return programs;
}

void GnomeClipboard::clear() {
  taken_ = remote_.open() && remote_.takeClipboard();
}

bool GnomeClipboard::copySelection() {
  typed_.reset();
  if (!taken_) return false;
  programs_ = runningPrograms_();
  const auto alone = std::find_if(programs_.begin(), programs_.end(), isUnsupported);
  if (alone != programs_.end()) {
    reportOnce("while " + *alone + " runs, nothing is copied under GNOME");
    return true;
  }
  const auto terminal = std::find_if(programs_.begin(), programs_.end(), isOtherTerminal);
  byCopyKey_ = terminal != programs_.end();
  if (byCopyKey_) {
    reportOnce("while " + *terminal +
               " runs, Seldial copies only from programs that support the Copy key");
  } else {
    lastReport_.clear();
  }
  return type();
}

bool GnomeClipboard::type() {
  typed_ = Clock::now();
  return byCopyKey_ ? remote_.type(XKB_KEY_XF86Copy) : remote_.type(XKB_KEY_Insert, true);
}

/// Makes the application copy once more, when no extension of GNOME Shell puts an older text on the
/// clipboard any more.
std::optional<std::string> GnomeClipboard::copyAgain() {
  const auto delay = Clock::now() - *typed_;
  if (!remote_.clearAgain() || !type()) return {};
  remote_.wait(delay);
  return remote_.copiedText();
}

/// Writes one line to standard error, unless it repeats the previous one.
void GnomeClipboard::reportOnce(const std::string& line) {
  if (std::exchange(lastReport_, line) != line) printError("seldial: " + line);
}

std::optional<std::string> GnomeClipboard::text() {
  auto text = std::exchange(taken_, false) ? remote_.copiedText() : std::nullopt;
  const bool unclear = text && !text->empty() && remote_.mayBeFromExtension();
  if (typed_ && (unclear || remote_.isCopyLost())) text = copyAgain();
  remote_.close();
  // Terminals copy an empty text if nothing is selected.
  if (text && (text->empty() || linux_port::mayBeCurrentLine(programs_, *text))) return {};
  return text;
}

}  // namespace seldial::platform::wayland
