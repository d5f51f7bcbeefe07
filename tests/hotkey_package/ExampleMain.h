// Code shared by the programs that use an example like a user.
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

/// The main function of a program that is called with the directory of the example, and optionally
/// with another name. `useExample` gets the path of the example and throws if it does not work.
inline int exampleMain(int argc, char* argv[], const std::string& example,
                       const std::function<void(const std::string& program)>& useExample) {
  try {
    expect(argc == 2 || argc == 3, "usage: give the directory of the example");
    useExample(std::string(argv[1]) + "/" + (argc == 3 ? argv[2] : example));
  } catch (const std::exception& failure) {
    (void)std::fprintf(stderr, "%s: %s\n", example.c_str(), failure.what());
    return 1;
  }
  return 0;
}

}  // namespace seldial::tests
