#include "platform/x11/copy/CurrentLine.h"

#include <strings.h>

#include <algorithm>
#include <array>

namespace seldial::platform::x11 {
namespace {

/// Seen in Kate, KWrite and Qt Creator; the others document it.
constexpr std::array kEditors{
    // The KTextEditor component.
    "kate",
    "kdevelop",
    "kile",
    "kwrite",
    "org.kde.kate",
    "org.kde.kdevelop",
    "org.kde.kile",
    "org.kde.kwrite",
    // Visual Studio Code and its builds.
    "code",
    "code - insiders",
    "code-oss",
    "codium",
    "vscodium",
    "atom",
    "pulsar",
    "notepad++.exe",  // under Wine
    "org.qt-project.qtcreator",
    "qtcreator",
    "sublime_text",
};

/// "jetbrains-idea" and so on.
constexpr std::string_view kJetBrains = "jetbrains-";

bool isEditor(const std::string& name) {
  if (strncasecmp(name.c_str(), kJetBrains.data(), kJetBrains.size()) == 0) return true;
  return std::any_of(kEditors.begin(), kEditors.end(),
                     [&](const char* editor) { return strcasecmp(name.c_str(), editor) == 0; });
}

}  // namespace

bool mayBeCurrentLine(const std::vector<std::string>& names, std::string_view text) {
  const auto newline = text.find('\n');
  const bool isOnly = newline != std::string_view::npos && text.rfind('\n') == newline;
  const bool isLine = isOnly && (newline == 0 || newline == text.size() - 1);
  return isLine && std::any_of(names.begin(), names.end(), isEditor);
}

}  // namespace seldial::platform::x11
