// Runs a fuzz target over stored inputs without libFuzzer, so that the ordinary tests can do it
// with any compiler. Arguments: files, and directories of files.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int replay(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad()) {
    std::fprintf(stderr, "%s: cannot be read\n", file.c_str());
    return -1;
  }
  std::fprintf(stderr, "%s\n", file.c_str());  // shows which one crashed
  // A copy of exactly this size, so that a sanitizer detects a read beyond its end.
  const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(data.data(), data.size());
  return 1;
}

int replayAll(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return replay(path);
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    const int replayed = replay(entry.path());
    if (replayed < 0) return -1;
    count += replayed;
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int index = 1; index < argc; ++index) {
    const int replayed = replayAll(argv[index]);
    if (replayed < 0) return 1;
    count += replayed;
  }
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
