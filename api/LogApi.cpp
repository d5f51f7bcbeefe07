#include "api/LogApi.h"

#include "api/StampedMessage.h"

namespace seldial {

std::string LogApi::toJSONString() const {
  return toJSONString(std::time(nullptr));
}

std::string LogApi::toJSONString(std::time_t now) const {
  return stampedMessage(now, "event", "Log", Message,
                        R"(","event":"Log","message":"error while serializing [log]"})");
}

}  // namespace seldial
