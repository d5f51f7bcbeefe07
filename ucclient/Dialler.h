#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ucclient/ChildProcess.h"
#include "ucclient/Dialling.h"
#include "ucclient/MainThread.h"

namespace seldial {

/// Dials the number of a selection: finds it, lets the user choose where that is needed, and runs
/// the program that calls. Main thread only.
class Dialler {
 public:
  /// What happens, on the main thread. No sentence contains a number or a part of the selection.
  struct Events {
    std::function<void(const std::string& number)> dialled;   ///< the program was started
    std::function<void(const std::string& sentence)> failed;  ///< the program ended with an error
    std::function<void(const std::string& sentence)> notDialled;  ///< and why, no full stop
  };

  Dialler(DialSettings settings, std::shared_ptr<MainThread> mainThread, Events events);
  ~Dialler();
  Dialler(const Dialler&) = delete;
  Dialler& operator=(const Dialler&) = delete;

  /// An earlier selection for which a choice is open, or that can still be undone, is given up.
  void dial(const std::string& selection);

 private:
  class Choice;

  void startUnlessUndone(const std::string& selection, const FoundNumber& number);
  void choose(const std::string& selection, std::vector<FoundNumber> numbers);
  void start(const std::string& selection, const FoundNumber& number);

  const DialSettings settings_;
  const std::shared_ptr<MainThread> mainThread_;
  const std::shared_ptr<const Events> events_;
  std::shared_ptr<Choice> choice_;
  std::shared_ptr<const char> pending_;  ///< exists while a call can be undone
};

}  // namespace seldial
