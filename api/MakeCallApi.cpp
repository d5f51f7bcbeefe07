#include "api/MakeCallApi.h"

#include "api/JSONWriter.h"

namespace seldial {

std::optional<std::string> MakeCallApi::toJSONString() const {
  JSONDictionary dictionary;
  // A request written as a command: it is the client that is to act on it.
  dictionary["command"] = "MakeCall";
  dictionary["number"] = Number.value_or("");
  return writeJSON(dictionary);
}

}  // namespace seldial
