// Recording doubles of the platform interfaces. Each records its calls in order and returns what
// the test has set. Doubles can share `Calls` to record the order across interfaces.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Application.h"
#include "platform/Clipboard.h"
#include "platform/HotKeyEvents.h"
#include "platform/Ports.h"

namespace seldial::tests {

/// The calls that doubles received, in order, for one thread. For several threads see Journal.h.
using Calls = std::vector<std::string>;

/// Keeps posted tasks until the test runs them. Single-threaded: the caller is the main thread
/// unless the test says otherwise.
class ManualMainQueue final : public platform::MainQueue {
 public:
  void async(Task task) override {
    tasks.push_back(std::move(task));
    ++wakeUps;
  }
  void asyncBeforeNext(Task task) override { tasks.push_back(std::move(task)); }
  [[nodiscard]] bool isMainThread() const override { return onMainThread; }

  /// Runs every task, including those posted meanwhile.
  void drain() {
    while (!tasks.empty()) {
      const Task task = std::move(tasks.front());
      tasks.pop_front();
      task();
    }
  }

  std::deque<Task> tasks;
  int wakeUps = 0;  ///< tasks of async()
  bool onMainThread = true;
};

class RecordingApplication final : public platform::Application {
 public:
  explicit RecordingApplication(Calls* calls = nullptr) : calls_(calls) {}

  [[nodiscard]] const std::vector<std::string>& arguments() const override { return commandLine; }
  void terminate(platform::ApplicationDelegate* sender) override {
    terminateSenders.push_back(sender);
  }
  void usleep(std::uint32_t microseconds) override {
    sleeps.push_back(microseconds);
    if (calls_ != nullptr) calls_->push_back("usleep " + std::to_string(microseconds));
  }

  std::vector<std::string> commandLine;
  std::vector<platform::ApplicationDelegate*> terminateSenders;
  std::vector<std::uint32_t> sleeps;

 private:
  Calls* calls_;
};

/// Records "clear", "copySelection" and "text". copySelection() calls `onCopy`, with which a test
/// acts as the focused application.
class FakeClipboard final : public platform::Clipboard {
 public:
  explicit FakeClipboard(Calls* calls = nullptr) : calls_(calls) {}

  void clear() override {
    note("clear");
    contents.reset();
  }
  [[nodiscard]] bool copySelection() override {
    note("copySelection");
    if (!refuseCopy) onCopy();
    return !refuseCopy;
  }
  [[nodiscard]] std::optional<std::string> text() override {
    note("text");
    return contents;
  }

  std::optional<std::string> contents;
  bool refuseCopy = false;
  std::function<void()> onCopy = [] {};

 private:
  void note(const char* call) {
    if (calls_ != nullptr) calls_->push_back(call);
  }

  Calls* calls_;
};

/// Accepts every combination that is not already taken, until told to refuse.
class FakeHotKeyEvents final : public platform::HotKeyEvents {
 public:
  struct Registration {
    platform::HotKeyRef ref = 0;
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;
    platform::HotKeyID hotKeyID;
  };

  void installReleasedHandler(ReleasedHandler handler) override {
    released = std::move(handler);
    ++handlersInstalled;
  }
  std::optional<platform::HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    platform::HotKeyID hotKeyID) override {
    ++requests;
    if (refuse) return {};
    for (const auto& taken : registrations) {
      if (taken.keyCode == keyCode && taken.modifiers == modifiers) return {};
    }
    registrations.push_back({nextRef_, keyCode, modifiers, hotKeyID});
    return nextRef_++;
  }
  void unregisterHotKey(platform::HotKeyRef ref) override {
    unregistered.push_back(ref);
    for (auto it = registrations.begin(); it != registrations.end(); ++it) {
      if (it->ref == ref) {
        registrations.erase(it);
        return;
      }
    }
  }

  /// Simulates the user releasing the hot key with that id.
  void release(std::uint32_t id) {
    platform::HotKeyReleased event;
    event.hotKeyID.id = id;
    if (released) released(event);
  }

  bool refuse = false;
  int requests = 0;
  int handlersInstalled = 0;
  ReleasedHandler released;
  std::vector<Registration> registrations;
  std::vector<platform::HotKeyRef> unregistered;

 private:
  platform::HotKeyRef nextRef_ = 1000;
};

}  // namespace seldial::tests
