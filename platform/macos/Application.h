#pragma once

#include <string>
#include <vector>

#include "platform/Application.h"

namespace seldial::platform::macos {

/// The shared application of Cocoa, as the program knows it.
class MacApplication final : public platform::Application {
 public:
  explicit MacApplication(std::vector<std::string> arguments);

  [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }
  void terminate(ApplicationDelegate* sender) override;
  void usleep(std::uint32_t microseconds) override;

 private:
  const std::vector<std::string> arguments_;
};

}  // namespace seldial::platform::macos
