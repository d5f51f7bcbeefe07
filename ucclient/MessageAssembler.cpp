#include "ucclient/MessageAssembler.h"

#include <utility>

namespace seldial {

void MessageAssembler::append(const std::string& connection, const std::string& chunk) {
  partial_[connection] += chunk;
}

std::string MessageAssembler::finish(const std::string& connection) {
  std::string message = std::move(partial_[connection]);
  partial_.erase(connection);
  return message;
}

void MessageAssembler::discard(const std::string& connection) {
  partial_.erase(connection);
}

}  // namespace seldial
