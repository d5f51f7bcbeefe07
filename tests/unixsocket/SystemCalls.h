// A say in the system calls of the socket library: the linker routes them through here
// (--wrap, see CMakeLists.txt), in test programs that ask for it alone.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace seldial::tests {

/// One call that the library is about to make, or has made.
struct SystemCall {
  std::string name;             ///< "socket", "bind", "getentropy", ...
  int descriptor;               ///< that it is made on; -1 when it has none
  std::size_t* size = nullptr;  ///< of a write, to be changed
};

/// What the test wants done, for as long as this lives. One at a time. The functions run on the
/// thread that makes the call.
class SystemCalls {
 public:
  /// Before a call: an errno to fail with instead of being made, or nothing.
  using Before = std::function<std::optional<int>(const SystemCall&)>;

  /// After a call that was made; errno is kept.
  using After = std::function<void(const SystemCall&)>;

  SystemCalls() = default;
  ~SystemCalls() { set({}); }
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  /// Both wait until no call is inside the functions that were there before.
  static void set(Before before, After after = {});
  static void limitWrites(std::size_t longestWrite);
};

/// For SystemCalls::set(): the call of that name fails with `error`, from its `first` one (0) on,
/// `times` times.
SystemCalls::Before failing(const std::string& name, int error, int first = 0, int times = 1000000);

}  // namespace seldial::tests
