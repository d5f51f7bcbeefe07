#include "api/ErrorApi.h"

#include "api/StampedMessage.h"

namespace seldial {

std::string ErrorApi::toJSONString() const {
  return stampedMessage("response", "Error", Message,
                        R"(","response":"Error","message":"cascading error while serializing"})");
}

}  // namespace seldial
