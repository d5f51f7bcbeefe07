#include "api/ErrorApi.h"

#include "api/StampedMessage.h"

namespace seldial {

std::string ErrorApi::toJSONString() const {
  return toJSONString(std::time(nullptr));
}

std::string ErrorApi::toJSONString(std::time_t now) const {
  return stampedMessage(now, "response", "Error", Message,
                        R"(","response":"Error","message":"cascading error while serializing"})");
}

}  // namespace seldial
