#include "client/Configuration.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>

#define TOML_EXCEPTIONS 0  // NOLINT: configures toml++
#include <toml++/toml.h>

#include "platform/System.h"

namespace seldial {
namespace {

constexpr const char* kHeading =
    "# Settings of seldial-uc: the options of its command line, without the hyphens. The shortcut\n"
    "# window changes this file too; it keeps your comments.\n\n";

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openFile(const std::string& path, const char* mode) {
  return {std::fopen(path.c_str(), mode), std::fclose};
}

std::string failure(const char* what, const std::string& path) {
  return std::string("cannot ") + what + " " + path + ": " + platform::errorText(errno);
}

/// The contents of the file; empty if it does not exist, nothing after an error.
std::optional<std::string> contentOf(const std::string& path, std::string& error) {
  const File file = openFile(path, "rb");
  if (!file && errno == ENOENT) return "";
  std::string content;
  char buffer[4096];
  for (std::size_t count = file ? sizeof buffer : 0; count == sizeof buffer;) {
    count = std::fread(buffer, 1, sizeof buffer, file.get());
    content.append(buffer, count);
  }
  if (file && std::ferror(file.get()) == 0) return content;
  error = failure("read", path);
  return std::nullopt;
}

std::string placeIn(const std::string& path, const toml::source_position& position) {
  return path + ":" + std::to_string(position.line) + ": ";
}

std::optional<toml::table> parsed(const std::string& content, const std::string& path,
                                  std::string& error) {
  toml::parse_result result = toml::parse(content);
  if (result) return std::move(result).table();
  error = placeIn(path, result.error().source().begin) + std::string(result.error().description());
  return std::nullopt;
}

/// The text of a string, integer or boolean; nothing for other values.
std::optional<std::string> textOf(const toml::node& value) {
  if (const auto* const text = value.as_string()) return text->get();
  if (const auto* const number = value.as_integer()) return std::to_string(number->get());
  if (const auto* const flag = value.as_boolean()) return flag->get() ? "true" : "false";
  return std::nullopt;
}

/// As a TOML value: an integer or boolean unquoted, everything else as a string.
std::string written(const std::string& value) {
  const bool isNumber = !value.empty() && value.size() < 10 && (value == "0" || value[0] != '0') &&
                        value.find_first_not_of("0123456789") == std::string::npos;
  if (isNumber || value == "true" || value == "false") return value;
  std::string result = "\"";
  for (const char letter : value) {
    const auto byte = static_cast<unsigned char>(letter);
    char escape[8] = {letter};
    if (letter == '"' || letter == '\\') {
      std::snprintf(escape, sizeof escape, "\\%c", letter);
    } else if (byte < 0x20 || byte == 0x7F) {
      std::snprintf(escape, sizeof escape, "\\u%04X", byte);
    }
    result += escape;
  }
  return result + "\"";
}

/// The byte offset of a position that is given in lines and characters.
std::size_t offsetOf(const std::string& content, const toml::source_position& position) {
  std::size_t at = 0;
  for (toml::source_index line = 1; line < position.line; ++line) at = content.find('\n', at) + 1;
  for (toml::source_index column = 1; column < position.column && at < content.size(); ++column) {
    do {
      ++at;
    } while (at < content.size() && (static_cast<unsigned char>(content[at]) & 0xC0) == 0x80);
  }
  return at;
}

/// Replaces one value in the text, removes its lines, or adds a line for it.
void change(std::string& content, const toml::table& table, const std::string& name,
            const std::optional<std::string>& value) {
  const toml::node* const present = table.get(name);
  if (present == nullptr) {
    if (!content.empty() && content.back() != '\n') content += '\n';
    if (value) content += name + " = " + written(*value) + "\n";
    return;
  }
  auto begin = offsetOf(content, present->source().begin);
  auto end = offsetOf(content, present->source().end);
  if (!value) {
    begin = begin == 0 ? 0 : content.rfind('\n', begin - 1) + 1;  // 0 on the first line
    end = std::min(content.find('\n', end), content.size() - 1) + 1;
  }
  content.replace(begin, end - begin, value ? written(*value) : "");
}

/// Writes a temporary file in the same directory and renames it. If `path` is a symbolic link,
/// replaces the file that it refers to.
bool replaceFile(const std::string& path, const std::string& content, std::string& error) {
  std::error_code ignored;  // opening the file then fails
  const auto target = std::filesystem::weakly_canonical(path, ignored);
  std::filesystem::create_directories(target.parent_path(), ignored);
  const std::string temporaryPath = target.string() + ".new";
  File file = openFile(temporaryPath, "wb");
  const bool isWritten =
      file && std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  const bool isClosed = file && std::fclose(file.release()) == 0;
  if (isWritten && isClosed && std::rename(temporaryPath.c_str(), target.c_str()) == 0) return true;
  error = failure("write", path);
  return false;
}

}  // namespace

std::optional<std::vector<Setting>> readConfiguration(const std::string& path, std::string& error) {
  const auto content = contentOf(path, error);
  const auto table = content ? parsed(*content, path, error) : std::nullopt;
  if (!table) return std::nullopt;
  std::vector<Setting> settings;
  for (const auto& [key, value] : *table) {
    const auto text = textOf(value);
    if (!text) {
      error = placeIn(path, value.source().begin) + std::string(key.str()) +
              " takes a text, a whole number, true or false";
      return std::nullopt;
    }
    settings.push_back({std::string(key.str()), *text, value.source().begin.line});
  }
  std::sort(settings.begin(), settings.end(),
            [](const Setting& a, const Setting& b) { return a.line < b.line; });
  return settings;
}

bool writeConfiguration(const std::string& path,
                        const std::map<std::string, std::optional<std::string>>& values,
                        std::string& error) {
  auto content = contentOf(path, error);
  if (!content) return false;
  if (content->empty()) *content = kHeading;
  for (const auto& [name, value] : values) {
    const auto table = parsed(*content, path, error);  // positions shift with each change
    if (!table) return false;
    change(*content, *table, name, value);
  }
  return replaceFile(path, *content, error);
}

}  // namespace seldial
