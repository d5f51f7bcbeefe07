#include "api/StampedMessage.h"

#include "api/JSONWriter.h"
#include "api/MessageTimestamp.h"

namespace seldial {

std::string stampedMessage(std::time_t now, const char* kind, const char* name,
                           const std::string& message, const char* fallback) {
  const std::string datetime = messageTimestamp(now);
  JSONDictionary dictionary;
  dictionary["datetime"] = datetime;
  dictionary[kind] = name;
  dictionary["message"] = message;
  if (auto text = writeJSON(dictionary)) return *std::move(text);
  return R"({"datetime":")" + datetime + fallback;
}

}  // namespace seldial
