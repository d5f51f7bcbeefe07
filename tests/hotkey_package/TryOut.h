// What the programs share that use an example as a person would.
#pragma once

#include <cstdio>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>

namespace seldial::tests {

inline void expect(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

/// The exit status of a program that is called with the directory of the example of that name, and
/// perhaps with another name: `tryOut` gets its path, and throws when it is not as it should be.
inline int tryOutIn(int argc, char* argv[], const std::string& example,
                    const std::function<void(const std::string& program)>& tryOut) {
  try {
    expect(argc == 2 || argc == 3, "usage: give the directory of the example");
    tryOut(std::string(argv[1]) + "/" + (argc == 3 ? argv[2] : example));
  } catch (const std::exception& failure) {
    (void)std::fprintf(stderr, "%s: %s\n", example.c_str(), failure.what());
    return 1;
  }
  return 0;
}

}  // namespace seldial::tests
