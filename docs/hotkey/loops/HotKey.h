// Code shared by the three programs, which differ only in their loops.
#pragma once

#include <seldial/hotkey/QKHotKeyCenter.h>
#include <seldial/hotkey/QKKeyStrings.h>
#include <seldial/hotkey/ServedDesktop.h>
#include <seldial/hotkey/VirtualKeys.h>

#include <cstdlib>
#include <iostream>
#include <memory>

/// Connects to the desktop and registers Control+Option+D, which prints a line each time it is
/// used. Null if that fails.
inline std::unique_ptr<seldial::platform::ServedDesktop> desktopWithHotKey() {
  using namespace seldial;
  constexpr auto kModifiers = platform::kModifierFlagControl | platform::kModifierFlagOption;
  auto desktop = platform::ServedDesktop::connect([] { std::exit(1); });
  if (!desktop) {
    std::cerr << "There is no X11 desktop.\n";
    return nullptr;
  }
  QKHotKeyCenter::setHotKeyEvents(desktop->hotKeyEvents());
  const auto hotKey = QKHotKeyCenter::sharedHotKeyCenter()->registerHotKeyWithKeyCode(
      platform::kVK_ANSI_D, kModifiers, [](const QKKeyEvent&) {
        std::cout << "used\n" << std::flush;
      });
  if (!hotKey) {
    std::cerr << "The hot key cannot be registered. Does another program hold it?\n";
    return nullptr;
  }
  std::cout << QKStringFromKeyCode(platform::kVK_ANSI_D, kModifiers) << "\n" << std::flush;
  return desktop;
}
