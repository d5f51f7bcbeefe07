#include "platform/Random.h"

#include <unistd.h>

namespace seldial::platform {

bool fillWithRandom(void* bytes, std::size_t size) {
  return getentropy(bytes, size) == 0;
}

}  // namespace seldial::platform
