#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace seldial {

/// Reads one command line, argument by argument: options with a value, which follows or is joined
/// by "=", and options without.
class OptionReader {
 public:
  /// Both outlive the reader. `error` is where one sentence goes that says what makes no sense.
  OptionReader(const std::vector<std::string>& arguments, std::string& error)
      : arguments_(arguments), error_(error) {}
  virtual ~OptionReader() = default;
  OptionReader(const OptionReader&) = delete;
  OptionReader& operator=(const OptionReader&) = delete;

 protected:
  /// False at the first argument that makes no sense.
  bool readAll() {
    while (next_ < arguments_.size()) {
      if (!readOption(arguments_[next_++])) return false;
    }
    return true;
  }

  bool fail(std::string error) {
    error_ = std::move(error);
    return false;
  }

 private:
  [[nodiscard]] virtual bool takesValue(const std::string& name) const = 0;
  /// False, by fail(), when the value makes no sense.
  virtual bool setValue(const std::string& name, const std::string& value) = 0;
  /// False when there is no such option.
  virtual bool setFlag(const std::string& name) = 0;

  bool readOption(const std::string& argument) {
    const auto equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    if (!takesValue(name)) return setFlag(argument) || fail("there is no option " + argument);
    if (equals != std::string::npos) return setValue(name, argument.substr(equals + 1));
    if (next_ == arguments_.size()) return fail(name + " needs a value");
    return setValue(name, arguments_[next_++]);
  }

  const std::vector<std::string>& arguments_;
  std::string& error_;
  std::size_t next_ = 0;
};

}  // namespace seldial
