#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

#include "client/Configuration.h"
#include "client/Connection.h"
#include "client/Options.h"

extern char** environ;  // NOLINT: the name is the system's

namespace seldial {
namespace {

constexpr const char* kUnit = "seldial-uc.service";

std::string unitPath() {
  return configurationHome() + "/systemd/user/" + kUnit;
}

std::string entryPath() {
  return configurationHome() + "/autostart/seldial-uc.desktop";
}

bool exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

/// Whether the errors of systemctl are shown, on standard error.
enum class Errors { kShown, kHidden };

/// Runs "systemctl --user" and waits until it ends. True if it succeeds.
bool systemctl(std::vector<std::string> arguments, Errors errors = Errors::kShown) {
  std::vector<std::string> command{"systemctl", "--user", "--quiet"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(command.size() + 1);
  for (std::string& word : command) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (errors == Errors::kHidden) {
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  pid_t process = 0;
  const int failed =
      posix_spawnp(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) return false;
  int status = 0;
  while (waitpid(process, &status, 0) == -1 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Whether units that belong to the graphical session are started with it.
bool systemdRunsSession() {
  return systemctl({"is-active", "graphical-session.target"}, Errors::kHidden);
}

bool writeFile(const std::string& path, const std::string& content, std::string& result) {
  std::error_code ignored;  // opening the file then fails
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
  std::ofstream file(path);
  file << content;
  file.close();
  if (!file.fail()) return true;
  result = "cannot write " + path;
  return false;
}

/// The text with `mark` before each of `characters`.
std::string escaped(const std::string& text, std::string_view characters, char mark = '\\') {
  std::string result;
  for (const char letter : text) {
    if (characters.find(letter) != std::string_view::npos) result += mark;
    result += letter;
  }
  return result;
}

bool enableUnit(const std::string& program, std::string& result) {
  if (!writeFile(unitPath(), loginUnit(program), result)) return false;
  std::string ignored;
  const bool isRunning = askRunningClient(kStatusRequest, ignored).has_value();
  if (!systemctl({"daemon-reload"}) || !systemctl({"enable", kUnit}) ||
      (!isRunning && !systemctl({"start", kUnit}))) {
    result = "systemctl could not enable or start " + unitPath();
    return false;
  }
  result = "seldial-uc starts at login, by " + unitPath();
  return true;
}

bool disableUnit(std::string& result) {
  const bool isDisabled = systemctl({"disable", "--now", kUnit});
  unlink(unitPath().c_str());
  if (!isDisabled || !systemctl({"daemon-reload"})) {
    result = "systemctl could not disable " + std::string(kUnit);
    return false;
  }
  return true;
}

}  // namespace

std::string loginUnit(const std::string& program) {
  std::string path = escaped(program, "\\\"");
  path = escaped(escaped(path, "%", '%'), "$", '$');
  return "[Unit]\n"
         "Description=Dials the selected number when a hot key is pressed\n"
         "PartOf=graphical-session.target\n"
         "After=graphical-session.target\n"
         "StartLimitIntervalSec=60\n"
         "StartLimitBurst=5\n"
         "\n"
         "[Service]\n"
         "ExecStart=\"" +
         path +
         "\"\n"
         "Restart=on-failure\n"
         "RestartSec=5\n"
         "# Invalid options: a restart would not help.\n"
         "RestartPreventExitStatus=2\n"
         "\n"
         "[Install]\n"
         "WantedBy=graphical-session.target\n";
}

std::string autostartEntry(const std::string& program) {
  // The value is a string, in which a backslash is doubled, with an argument in quotes.
  return "[Desktop Entry]\n"
         "Type=Application\n"
         "Name=Seldial\n"
         "Comment=Dials the selected number when a hot key is pressed\n"
         "Icon=call-start\n"
         "NoDisplay=true\n"
         "Exec=\"" +
         escaped(escaped(escaped(program, "\\\"`$"), "\\"), "%", '%') + "\"\n";
}

bool startsAtLogin() {
  return exists(entryPath()) || startsBySystemd();
}

bool startsBySystemd() {
  return exists(unitPath());
}

bool enableLoginStart(const std::string& program, std::string& result) {
  // So that it never starts twice, or from an old path.
  if (!disableLoginStart(result)) return false;
  if (systemdRunsSession()) return enableUnit(program, result);
  if (!writeFile(entryPath(), autostartEntry(program), result)) return false;
  result = "seldial-uc starts at the next login, by " + entryPath();
  return true;
}

bool disableLoginStart(std::string& result) {
  if (exists(unitPath()) && !disableUnit(result)) return false;
  unlink(entryPath().c_str());
  result = "seldial-uc does not start at login";
  return true;
}

}  // namespace seldial
