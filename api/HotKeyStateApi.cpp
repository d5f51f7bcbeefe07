#include "api/HotKeyStateApi.h"

#include "api/JSONWriter.h"

namespace seldial {

std::optional<std::string> HotKeyStateApi::toJSONString() const {
  JSONDictionary dictionary;
  dictionary["response"] = "HotkeyState";
  dictionary["result"] = Result;
  if (FailReason) dictionary["failreason"] = *FailReason;
  return writeJSON(dictionary);
}

}  // namespace seldial
