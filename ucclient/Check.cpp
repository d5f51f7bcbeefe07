#include "ucclient/Check.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>

#include "client/Configuration.h"
#include "client/Connection.h"
#include "client/Options.h"
#include "client/Protocol.h"
#include "platform/System.h"
#include "ucclient/Options.h"
#include "ucclient/Paths.h"

namespace seldial {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// Whether execvp() would find it.
bool isProgram(const std::string& program) {
  if (program.find('/') != std::string::npos) return access(program.c_str(), X_OK) == 0;
  const std::string path = variable("PATH");
  for (std::size_t begin = 0; begin <= path.size();) {
    const auto end = std::min(path.find(':', begin), path.size());
    const std::string file = path.substr(begin, end - begin).append("/").append(program);
    if (access(file.c_str(), X_OK) == 0) return true;
    begin = end + 1;
  }
  return false;
}

/// Prints one line per check, and the sections of the page that help.
class Report {
 public:
  /// `section` is the section of docs/troubleshooting.md that helps if the check fails.
  void add(bool passed, const std::string& what, const std::string& text,
           const char* section = nullptr) {
    std::printf("%-5s %-14s %s\n", passed ? "ok" : "wrong", what.c_str(), text.c_str());
    std::fflush(stdout);  // so that a pipe gets each line at once, too
    passed_ = passed_ && passed;
    if (!passed && section != nullptr) sections_.insert(section);
  }

  /// Prints the sections. Returns whether all checks succeeded.
  [[nodiscard]] bool finish() const {
    for (const std::string& section : sections_) {
      std::printf("see   docs/troubleshooting.md#%s\n", section.c_str());
    }
    return passed_;
  }

 private:
  bool passed_ = true;
  std::set<std::string> sections_;
};

constexpr const char* kRefused = "the-answer-is-hotkey-not-set";
constexpr const char* kNotFound = "no-number-is-found";
constexpr const char* kEnded = "seldial-ends";
constexpr const char* kNotDialled = "seldial-uc-does-not-dial";

/// Seldial itself reports on standard error what the compositor lacks.
void reportCompositor(Report& report, const std::optional<std::string>& compositor) {
  report.add(compositor.has_value(), "compositor",
             compositor ? *compositor + ": " + mechanismFor(*compositor)
                        : "none answers at WAYLAND_DISPLAY, so Seldial uses DISPLAY",
             kRefused);
}

void checkSession(Report& report) {
  const std::string type = variable("XDG_SESSION_TYPE");
  const std::string display = variable("DISPLAY");
  const std::string wayland = variable("WAYLAND_DISPLAY");
  const std::string desktop = variable("XDG_CURRENT_DESKTOP");
  std::string text = type.empty() ? "of unknown type" : type;
  if (!desktop.empty()) text += ", " + desktop;
  if (!wayland.empty()) text += ", WAYLAND_DISPLAY " + wayland;
  text += display.empty() ? ", DISPLAY is not set" : ", DISPLAY " + display;
  report.add(!display.empty() || !wayland.empty(), "session", text, kRefused);
  if (!wayland.empty()) reportCompositor(report, compositorAt(wayland));
  const bool hasBus =
      !variable("DBUS_SESSION_BUS_ADDRESS").empty() || !variable("XDG_RUNTIME_DIR").empty();
  report.add(hasBus, "notifications", hasBus ? "over the session bus" : "there is no session bus",
             kNotDialled);
}

std::string likelyReasons() {
  if (variable("DISPLAY").empty() && variable("WAYLAND_DISPLAY").empty()) {
    return "There is no desktop";
  }
  std::string names;
  for (const std::string& holder : likelyKeyHolders())
    names += (names.empty() ? "" : ", ") + holder;
  if (names.empty()) return "Another program holds it, or the keyboard has no such key";
  return "These running programs use hot keys: " + names +
         ". Or another program holds it, or the keyboard has no such key";
}

void reportCopy(Report& report, const TrialRun& trial, const std::string& window) {
  if (window.empty()) {
    report.add(true, "copy", "not tried: that needs seldial-shortcut and an X11 session");
  } else if (trial.copyFailure()) {
    report.add(false, "copy", *trial.copyFailure(), kNotFound);
  } else {
    report.add(true, "copy", "a selected text was copied");
  }
}

/// Whether the desktop asks the user before a program gets a hot key.
bool asksForHotKeys() {
  return !variable("WAYLAND_DISPLAY").empty() &&
         variable("XDG_CURRENT_DESKTOP").find("GNOME") != std::string::npos;
}

/// Tests copying, and also the hot key unless the running client holds it.
void tryOut(Report& report, const Options& options, const std::string& program, bool isHeld) {
  std::string why;
  // A combination that hardly any program uses.
  const HotKey unusedHotKey =
      hotKeyFromSpelling("ctrl+alt+shift+super+f12", why).value_or(HotKey());
  const std::string shortcut = findProgram("seldial-shortcut", executableDirectory());
  const bool canShow = variable("WAYLAND_DISPLAY").empty() && isProgram(shortcut);
  const std::string window = canShow ? shortcut : "";
  TrialRun trial(isHeld ? unusedHotKey : options.hotKey, options.delay, window);
  const auto answer = trial.run(program, why);
  if (!answer) {
    report.add(false, "hot key", why, kEnded);
  } else if (answer->kind == Message::Kind::HotKeySet) {
    if (!isHeld) report.add(true, "hot key", options.spelling + " is free");
    reportCopy(report, trial, window);
  } else {
    report.add(false, "hot key",
               options.spelling + " is refused: " + answer->text + ". " + likelyReasons(),
               kRefused);
  }
}

void checkHotKey(Report& report, const Options& options) {
  const std::string program =
      options.seldial.empty() ? findSeldial(executableDirectory()) : options.seldial;
  report.add(isProgram(program), "program", program, kNotDialled);
  std::string why;
  const auto running = askRunningClient(kHotKeyRequest, why);
  report.add(true, "client", running ? "seldial-uc is running" : why);
  const bool isHeld = running && *running == hotKeySpelling(options.hotKey);
  if (isHeld) report.add(true, "hot key", options.spelling + " is held by the running seldial-uc");
  if (isHeld && asksForHotKeys()) {
    report.add(true, "copy", "not tried: GNOME would ask about a hot key for the trial");
  } else {
    tryOut(report, options, program, isHeld);
  }
}

void checkDialling(Report& report, const DialSettings& dialling) {
  const std::string program = dialling.scheme.empty() && dialling.dials() ? dialling.command.front()
                                                                          : platform::uriOpener();
  if (!dialling.dials()) {
    report.add(false, "dialling", "neither dial nor open is set: numbers are only printed",
               kNotDialled);
  } else {
    report.add(isProgram(program), "dialling",
               isProgram(program) ? "by " + program : "there is no program " + program,
               kNotDialled);
  }
  report.add(true, "region", dialling.region.empty() ? "none" : dialling.region);
}

}  // namespace

bool checkEverything(const Options& options) {
  Report report;
  checkSession(report);
  const std::string file =
      options.configuration.empty() ? defaultConfigurationPath() : options.configuration;
  report.add(true, "configuration", access(file.c_str(), R_OK) == 0 ? file : "none at " + file);
  checkHotKey(report, options);
  checkDialling(report, options.dialling);
  report.add(true, "login", startsAtLogin() ? "seldial-uc starts" : "seldial-uc does not start");
  return report.finish();
}

}  // namespace seldial
