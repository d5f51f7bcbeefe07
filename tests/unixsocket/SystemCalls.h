// Interception of the socket library's system calls. The linker routes them through here (--wrap,
// see CMakeLists.txt) in the test programs that request it.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace seldial::tests {

/// One call that the library is about to make, or has made.
struct SystemCall {
  std::string name;             ///< "socket", "bind", "getentropy", ...
  int descriptor;               ///< of the call; -1 if it has none
  std::size_t* size = nullptr;  ///< of a write, to be changed
};

/// Installs functions of the test for the lifetime of the object. One at a time. The functions run
/// on the thread that makes the call.
class SystemCalls {
 public:
  /// Called before a call. Returns the errno with which the call fails without being made, or
  /// nothing.
  using Before = std::function<std::optional<int>(const SystemCall&)>;

  /// Called after a call that was made. errno is preserved.
  using After = std::function<void(const SystemCall&)>;

  SystemCalls() = default;
  ~SystemCalls() { set({}); }
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  /// Both wait until no call is inside the previous functions.
  static void set(Before before, After after = {});
  static void limitWrites(std::size_t maxSize);
};

/// For SystemCalls::set(): makes the call of that name fail with `error`, `times` times, beginning
/// with call number `first`, counted from 0.
SystemCalls::Before failing(const std::string& name, int error, int first = 0, int times = 1000000);

}  // namespace seldial::tests
