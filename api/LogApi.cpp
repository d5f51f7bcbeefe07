#include "api/LogApi.h"

#include "api/StampedMessage.h"

namespace seldial {

std::string LogApi::toJSONString() const {
  return stampedMessage("event", "Log", Message,
                        R"(","event":"Log","message":"error while serializing [log]"})");
}

}  // namespace seldial
